// One algorithm sums the oil time of every kind of oil-filled unit; each
// kind is a description of where its time comes from.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "flights/ground_share.h"
#include "mxbook/data/connection.h"
#include "mxbook/date.h"
#include "mxbook/operating_time.h"

namespace mxbook::oil {

// The flight-record columns a unit's oil runs with.
struct FlightColumns {
    std::string_view air;              // added in full
    std::string_view ground = {};      // weighted by the ground share; empty: none
    std::string_view alsoInFull = {};  // a second time added in full (an APU's generator mode)
};

inline constexpr FlightColumns airframeTime{"V_VOZDUHE", "NA_ZEMLE"};
inline constexpr FlightColumns gearboxTime{"V_VOZDUHE_RED", "NA_ZEMLE_RED"};
// The engine at position 0, 1 or 2 (ODIN_DVA); any other position counts as 0.
const FlightColumns& engineTime(int position);

// What one flight adds: time, or APU starts, where a record without a count
// starts the total again from zero.
enum class Measure { minutes, startsSinceLastBlank };

struct OilSource {
    std::string tailNumber;
    std::optional<Date> start;  // the first day counted; none: every flight up to the end
    Date end;                   // the last day counted
    FlightColumns columns;
    Measure measure = Measure::minutes;
    // Whose ground setting weights the ground time: the unit's kind, and the
    // aircraft type (none: the type the register gives the tail).
    flights::GroundColumns groundKind = flights::airframeUnits;
    std::optional<std::string> aircraftType = {};
    Minutes base = {};  // the oil time stored on the unit row
    std::string early = {};  // the result when the aircraft is not registered or has not flown since its repair
};

std::string oilTime(db::Connection& connection, const OilSource& source);

}  // namespace mxbook::oil
