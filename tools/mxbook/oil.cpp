// The oil state of the fleet, as the library computes it: the units nearest
// their oil change first.
#include "commands.h"
#include "mxbook/format.h"
#include "mxbook/oil.h"

namespace mxbook::cli {

namespace {

// Hours stay text, as the status writes them.
std::string leftText(const OilState& state) {
    if (!state.left) return "";
    if (*state.left < Minutes()) return minusSign + operating_time::format(Minutes() - *state.left);
    return operating_time::formatOrDoubleZero(*state.left);
}

std::string alertOf(const OilState& state) {
    if (!state.left || !state.limitHours) return "";
    return alertMark(static_cast<double>(state.left->count()) / (*state.limitHours * 60.0));
}

}  // namespace

int runOil(std::ostream& out, const Options& options, const std::optional<std::string>& tail) {
    db::Connection connection;
    openMainDatabase(connection, options);
    Listing listing({{"Tail"},
                     {"Kind"},
                     {"Unit"},
                     {"Serial"},
                     {"Changed"},
                     {"Oil time", true},
                     {"Starts", true},
                     {"Limit, h", true},
                     {"Left", true},
                     {"Alert"}});
    for (const OilState& state : fleetOilState(connection, tail)) {
        const Cell starts = state.starts.empty() ? Cell("") : Cell(state.starts, std::stoll(state.starts));
        const Cell limit =
            state.limitHours ? Cell(std::to_string(*state.limitHours), *state.limitHours) : Cell("");
        listing.add({state.tailNumber, state.kind, state.unit, state.serial,
                     state.changed ? formatDate(*state.changed, "yyyy-mm-dd") : "", state.oilTime, starts, limit,
                     leftText(state), alertOf(state)});
    }
    listing.print(out, options.format);
    return 0;
}

}  // namespace mxbook::cli
