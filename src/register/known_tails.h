// The refusal of a tail number the register lacks.
#pragma once

#include <string>
#include <vector>

namespace mxbook {

// DataError unless `tail` is one of the register's `tails`, offering the
// nearest ones, letter case aside, when any is a typo or two away: "no
// aircraft 'ra-2100'; did you mean RA-21001, RA-21002?".
void requireRegistered(const std::vector<std::string>& tails, const std::string& tail);

}  // namespace mxbook
