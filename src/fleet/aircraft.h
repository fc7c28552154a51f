// One aircraft of the fleet: its register row, engines, gearbox, APU, flight
// records and performed forms, with counters that agree with the flights.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue.h"
#include "flight_history.h"
#include "generation.h"

namespace mxbook::fleet {

// A carrier's counter as it stood at the start of a day: its value now less
// what the flights from that day on added.
struct CarrierCounters {
    Date installed;  // flights before this day never reached it
    int minutesNow = 0;
    int countNow = 0;  // landings for the airframe, cycles for an engine, starts for an APU
};

struct EnginePlan {
    std::string serial;
    int place = 0;
    CarrierCounters counters;
};

struct ApuPlan {
    std::string serial;
    std::string model;
    int hoursNow = 0;  // the carrier reading of APU-mounted units (running plus generator for "ТА-14-130")
    int startsNow = 0;
    int bleedsNow = 0;
    Date installed;
};

struct AircraftPlan {
    AircraftPlan(const AircraftProfile& profile, std::string tail, Generation& generation, Random random);

    const AircraftProfile* profile;
    std::string tail;
    std::string owner;
    Random random;
    Date manufactured;
    Date overhauled;
    int overhauls = 0;
    FlightHistory history;
    CarrierCounters airframe;      // since the last overhaul
    int minutesBeforeRecords = 0;  // flown since new before the first flight record
    int landingsBeforeRecords = 0;
    std::vector<EnginePlan> engines;
    std::optional<std::string> gearboxSerial;
    std::optional<ApuPlan> apu;

    // The airframe's hours since overhaul at the start of `day`.
    int airframeMinutesAt(Date day) const;
    int airframeLandingsAt(Date day) const;
    int engineMinutesAt(const EnginePlan& engine, Date day) const;
    int engineCyclesAt(const EnginePlan& engine, Date day) const;
    // The first day from which units of this aircraft may have been installed.
    Date firstInstallDay(Date historyStart) const;
};

// Writes the aircraft's register row, engines, gearbox, APU, flights and
// forms; `plan` gets the serial numbers and counters its units need.
void writeAircraft(Generation& generation, AircraftPlan& plan);

// An engine off the aircraft (in repair), with nothing flown since it left.
EnginePlan writeSpareEngine(Generation& generation, const AircraftProfile& profile, std::string_view location);

}  // namespace mxbook::fleet
