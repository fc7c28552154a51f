// The commands of the mxbook program. Each prints to `out` and returns the
// exit code; a failure raises mxbook::Error, which main turns into one line
// and exit code 2, and a wrong argument UsageError (exit code 1).
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/error.h"
#include "mxbook/status.h"
#include "output.h"

namespace mxbook::cli {

// A wrong argument: main prints it with `usage` (the command's own when
// empty) and exits 1.
class UsageError : public Error {
public:
    explicit UsageError(const std::string& message, std::string usage = {})
        : Error(message), usage_(std::move(usage)) {}
    const std::string& usage() const noexcept { return usage_; }

private:
    std::string usage_;
};

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
// The units of every aircraft (or one) with what is left of their limits:
// the tightest of them all first, or by aircraft and kind of unit.
using mxbook::StatusOrder;
int runStatus(std::ostream& out, const Options& options, const std::optional<std::string>& tail, StatusOrder order);
// mxbook move component UNIT TO DATE: UNIT is @AGREGAT:ID or a factory
// number, TO a tail number or an off-aircraft location, DATE YYYY-MM-DD;
// with `engine`, onto the engine of that factory number standing at TO.
struct MoveRequest {
    std::string unit;
    std::string to;
    std::string date;
    std::optional<std::string> engine;
    bool dryRun = false;
};
int runMoveComponent(std::ostream& out, const Options& options, const MoveRequest& request);
// mxbook move engine SERIAL TO DATE: SERIAL is @DVIGATEL:ID or a factory
// number; onto an aircraft, in `place` (0, 1, 2; 0 when not given), which
// no other engine may hold.
// The units mounted on the engine follow it.
struct MoveEngineRequest {
    std::string engine;
    std::string to;
    std::string date;
    std::optional<int> place;
    bool dryRun = false;
};
int runMoveEngine(std::ostream& out, const Options& options, const MoveEngineRequest& request);
// The oil of every oil-filled unit of every aircraft (or one): its oil time
// since the change and what is left of its limit, the nearest change first.
int runOil(std::ostream& out, const Options& options, const std::optional<std::string>& tail);
// A report card (by its name or the builder's exported name) filled for the
// unit the arguments name, and printed: a block of columns a row, or CSV or
// JSON with every column.
int runReport(std::ostream& out, const Options& options, const std::string& card,
              const std::vector<std::string>& arguments);
// The cards, with the arguments each takes.
int runReportList(std::ostream& out, Format format);
// One library function by name, with its arguments as text.
int runCall(std::ostream& out, const Options& options, const std::string& function,
            const std::vector<std::string>& arguments);
// The functions `call` reaches: each one's signature and what it returns.
int runCallList(std::ostream& out, Format format);
// What one function returns and how its arguments are written.
int runCallHelp(std::ostream& out, const std::string& function);

// The main database, opened and checked to be whole; raises mxbook::Error
// naming the location and what is wrong (and what to run about it).
void openMainDatabase(db::Connection& connection, const Options& options);

}  // namespace mxbook::cli
