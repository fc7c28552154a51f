#pragma once

#include <ostream>

namespace mxbook::cli {

// Creates an embedded database in a fresh temporary folder, writes a few
// rows, reads them back and tells what it did. Returns the exit code.
int runDemo(std::ostream& out);

}  // namespace mxbook::cli
