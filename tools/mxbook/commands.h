// The commands of the mxbook program. Each prints to `out` and returns the
// exit code; a failure raises mxbook::Error, which main turns into one line
// and exit code 2.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "output.h"

namespace mxbook::cli {

struct Options {
    Format format = Format::table;
    std::optional<std::string> database;  // --db: the main database's location instead of the settled one
    bool repair = false;                  // init --repair: complete (or rebuild) an incomplete database
};

class RunFolder;

// Settles the four locations, creates the databases that do not exist and
// checks that those that do are whole; --repair completes those that are not.
int runInit(std::ostream& out, const Options& options);
// Init in the run's folder (--root, or a fresh one), a demo fleet, an overview.
int runDemo(std::ostream& out, const Options& options, RunFolder& folder);
// The units of every aircraft (or one) with what is left of their limits.
int runStatus(std::ostream& out, const Options& options, const std::optional<std::string>& tail);
// One library function by name, with its arguments as text.
int runCall(std::ostream& out, const Options& options, const std::string& function,
            const std::vector<std::string>& arguments);
// The names of the functions `call` reaches.
std::vector<std::string> callableFunctions();

// The main database, opened and checked to be whole; raises mxbook::Error
// naming the location and what is wrong (and what to run about it).
void openMainDatabase(db::Connection& connection, const Options& options);

}  // namespace mxbook::cli
