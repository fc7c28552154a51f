#pragma once

#include <ostream>

namespace mxbook::cli {

// Creates the four databases embedded in a fresh temporary folder, fills the
// main one with the demo fleet and prints an overview. Returns the exit code.
int runDemo(std::ostream& out);

}  // namespace mxbook::cli
