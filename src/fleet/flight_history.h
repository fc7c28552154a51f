// The flights of one aircraft over the generated years, and what its
// airframe, engines, gearbox and APU have run up by any day.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "mxbook/date.h"
#include "random.h"

namespace mxbook::fleet {

struct AircraftProfile;

// One row of flight records. Times are whole minutes.
struct Flight {
    Date date;
    int air = 0;
    int ground = 0;
    int landings = 0;
    int helicopterLandings = 0;
    int aeroplaneLandings = 0;
    struct Engine {
        int air = 0, ground = 0, takeOff = 0, nominal = 0, maximal = 0, starts = 0, cycles = 0;
    };
    std::array<Engine, 3> engines{};
    int gearboxTakeOff = 0, gearboxNominal = 0, gearboxStarts = 0;
    int apuRunning = 0, apuGenerator = 0, apuStarts = 0, apuBleeds = 0, apuCycles = 0;
    int winchPeople = 0, winchCargo = 0;
    int slingTime = 0, slingUses = 0, hookReleases = 0;
    std::string route;
    std::string remark;
};

// What the flights add to each counter, ground time weighted as the aircraft
// type says (rounded half away from zero per flight, as the carried time is).
struct Totals {
    int airframeMinutes = 0;
    int landings = 0;
    std::array<int, 3> engineMinutes{};
    std::array<int, 3> engineCycles{};
    std::array<int, 3> engineStarts{};
    std::array<int, 3> engineTakeOff{}, engineNominal{}, engineMaximal{};
    int gearboxMinutes = 0;
    int gearboxStarts = 0;
    int gearboxTakeOff = 0, gearboxNominal = 0;
    int apuRunning = 0, apuGenerator = 0, apuStarts = 0, apuBleeds = 0, apuCycles = 0;
    int winchPeople = 0, winchCargo = 0;
    int helicopterLandings = 0, aeroplaneLandings = 0;

    void add(const Flight& flight, const AircraftProfile& profile);
};

class FlightHistory {
public:
    // Flights from `first` to the day before `today`.
    FlightHistory(const AircraftProfile& profile, Date first, Date today, Random random);

    const std::vector<Flight>& flights() const { return flights_; }
    // Everything flown on the days from `from` up to the last record.
    Totals since(Date from) const;

private:
    const AircraftProfile* profile_;
    std::vector<Flight> flights_;
};

}  // namespace mxbook::fleet
