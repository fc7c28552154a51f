#include "mxbook/fleet.h"

#include <string>

#include "aircraft.h"
#include "generation.h"
#include "mxbook/error.h"
#include "mxbook/host.h"
#include "reference_data.h"
#include "units.h"

namespace mxbook::fleet {

namespace {

void check(const FleetOptions& options) {
    if (options.aircraft < 1 || options.aircraft > 1000)
        throw ArgumentError("the number of aircraft must be 1 to 1000, not " + std::to_string(options.aircraft));
    if (options.years < 1 || options.years > 30)
        throw ArgumentError("the years of flight records must be 1 to 30, not " + std::to_string(options.years));
    if (options.componentsPerAircraft < 0 || options.componentsPerAircraft > 2000)
        throw ArgumentError("the components per aircraft must be 0 to 2000, not " +
                            std::to_string(options.componentsPerAircraft));
}

// Tail numbers are unique across the fleet: the type's prefix and a running number.
std::string tailNumber(const AircraftProfile& profile, int index) {
    return std::string(profile.tailPrefix) + std::to_string(1001 + index);
}

}  // namespace

FleetOptions demoFleet() {
    FleetOptions options;
    options.aircraft = static_cast<int>(aircraftProfiles().size());  // one of each type
    return options;
}

FleetOptions benchmarkFleet() {
    FleetOptions options;
    options.aircraft = 100;
    options.years = 10;
    options.componentsPerAircraft = 200;
    return options;
}

FleetSummary generateFleet(db::Connection& connection, const FleetOptions& options, const Progress& progress) {
    check(options);
    const Date today = options.today.serial() == 0 ? host().today() : options.today;
    Generation g(connection, options, today);
    const auto report = [&](std::string_view stage, double done) {
        if (progress) progress(stage, done);
    };

    report("reference data", 0.0);
    writeReferenceData(g);
    const auto profiles = aircraftProfiles();
    for (const AircraftProfile& profile : profiles) writeOffAircraftUnits(g, profile);
    g.batch.commit();

    for (int i = 0; i < options.aircraft; ++i) {
        const AircraftProfile& profile = profiles[static_cast<std::size_t>(i) % profiles.size()];
        AircraftPlan plan(profile, tailNumber(profile, i), g, g.random.fork(static_cast<std::uint64_t>(i) + 100));
        writeAircraft(g, plan);
        writeUnits(g, plan);
        // Each aircraft is stored whole, with its units and flights.
        g.batch.commit();
        report("aircraft", static_cast<double>(i + 1) / options.aircraft);
    }
    return g.summary;
}

}  // namespace mxbook::fleet
