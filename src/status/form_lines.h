// An aircraft's next scheduled maintenance forms as lines of the fleet status.
#pragma once

#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/status.h"

namespace mxbook::status {

// The next periodic form, by name, and the next "Ф-1", each with the time
// left to it; none for a type without a maintenance programme.
std::vector<UnitStatus> formLines(db::Connection& connection, const std::string& tail, const std::string& type);

}  // namespace mxbook::status
