// Engines on and off aircraft, and the flights that carry time into or out
// of an engine and the units on it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "carried_flight_time.h"
#include "mxbook/data/data_set.h"

namespace mxbook::movements {

// Positions in an engine's row (DVIGATEL).
namespace engine {
constexpr int name = 2, serial = 3, overhaul = 8, hours = 12, location = 13, cycles = 27, place = 23;
constexpr int columns = 59;
}  // namespace engine

enum class Direction { on, off };

// The engine's place on its aircraft: 0, 1, 2 (anything else reads as the first's columns).
int enginePlace(db::DataSet& engine);

// The flights of the engine's aircraft (its location) and type from `date`,
// in the columns of its place: installing, a first flight on the date is
// left out on No; removing, on Yes, and then counted from the day after the
// aircraft's overhaul where that is later.
FlightSpan engineFlights(db::DataSet& engine, const std::string& aircraftType, Date date, Direction direction,
                         std::function<std::string(Date, const std::string&)> question);

// The engine's counters brought forward (on) or back (off) by those flights;
// installing, counted from the overhaul of the register row of
// `registeredTail` where that is later than `date`.
void moveEngine(db::Connection& connection, db::DataSet& engine, const std::string& aircraftType,
                const std::optional<std::string>& registeredTail, Date date, Direction direction);

}  // namespace mxbook::movements
