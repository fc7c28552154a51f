// A realistic fleet in a main database, for the demo, the benchmarks and
// anyone trying the library: aircraft types with their type data and
// maintenance programmes, owners, oil types, aircraft with their engines,
// gearboxes and APUs, units of every kind, and years of flight records whose
// sums agree with the counters.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "mxbook/data/connection.h"
#include "mxbook/date.h"

namespace mxbook::fleet {

struct FleetOptions {
    // The same seed and sizes give the same rows, row for row.
    std::uint64_t seed = 1;
    int aircraft = 7;
    // Years of flight records up to the day before `today`.
    int years = 2;
    // General components per aircraft on the airframe (engine-, APU- and
    // rotor-mounted units come on top, as each aircraft type carries them).
    int componentsPerAircraft = 40;
    // The last day of the records is the day before; a null date takes the
    // host's today.
    Date today;
};

// One aircraft of each type, flown for two years: what `mxbook demo` shows.
FleetOptions demoFleet();
// A hundred aircraft with ten years of records and tens of thousands of units.
FleetOptions benchmarkFleet();

struct FleetSummary {
    int aircraftTypes = 0;
    int aircraft = 0;
    int engines = 0;
    int gearboxes = 0;
    int apus = 0;
    int units = 0;  // every unit row of every kind, engines, gearboxes and APUs excluded
    int flights = 0;
};

// Told how far the work has come: a stage ("aircraft", "flights", ...) and
// the share of the whole that is done, 0 to 1.
using Progress = std::function<void(std::string_view stage, double done)>;

// Fills the empty main database of `connection` (created by
// schema::createDatabase). Throws ArgumentError for sizes out of
// range and db::Error when the database refuses; each aircraft is stored
// with its units and flights at once, so an interrupted run leaves whole
// aircraft only.
FleetSummary generateFleet(db::Connection& connection, const FleetOptions& options, const Progress& progress = {});

}  // namespace mxbook::fleet
