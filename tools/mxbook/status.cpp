// The fleet status as the library computes it: what is left of each unit's
// limits, the units nearest a limit (or furthest past it) first, or by
// aircraft and kind of unit.
#include <algorithm>
#include <cmath>

#include "commands.h"
#include "mxbook/status.h"

namespace mxbook::cli {

namespace {

Cell cellOf(const StatusValue& value) {
    return value.number ? Cell(value.text, *value.number) : Cell(value.text);
}

Cell tightestCell(double share) {
    const long long percent = std::lround(std::max(share, 0.0) * 100);
    return Cell(std::to_string(percent) + "%", percent);
}

}  // namespace

int runStatus(std::ostream& out, const Options& options, const std::optional<std::string>& tail,
              StatusOrder order) {
    db::Connection connection;
    openMainDatabase(connection, options);
    Listing listing({{"Tail"},
                     {"Kind"},
                     {"Unit"},
                     {"Serial"},
                     {"On"},
                     {"Counts"},
                     {"Booked", true},
                     {"Left", true},
                     {"Left to overhaul", true},
                     {"Left, other"},
                     {"Comes off at", true},
                     {"Tightest", true},
                     {"Tightest limit"},
                     {"Alert"}});
    for (const UnitStatus& unit : fleetStatus(connection, tail, order))
        listing.add({unit.tailNumber, unit.kind, unit.unit, unit.serial, unit.place,
                     unit.countsLandings ? "посадки" : "часы", cellOf(unit.booked), cellOf(unit.lifeLeft),
                     cellOf(unit.overhaulLeft), unit.otherLeft, cellOf(unit.comesOffAt),
                     tightestCell(unit.tightestShare), unit.tightestLimit, alertMark(unit.tightestShare)});
    listing.print(out, options.format);
    return 0;
}

}  // namespace mxbook::cli
