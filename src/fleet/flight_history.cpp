#include "flight_history.h"

#include <algorithm>
#include <cmath>

#include "catalogue.h"

namespace mxbook::fleet {

namespace {

// Ground minutes as a counter takes them: weighted, rounded half away from zero.
int weighted(int groundMinutes, const GroundRule& rule) {
    return rule.counts ? static_cast<int>(std::lround(groundMinutes * rule.factor)) : 0;
}

Flight makeFlight(const AircraftProfile& profile, Date date, Random& random) {
    Flight f;
    f.date = date;
    f.air = random.between(profile.shortestFlight, profile.longestFlight);
    f.ground = random.between(5, 25);
    f.landings = profile.helicopter ? random.between(1, 6) : random.between(1, 2);
    f.helicopterLandings = profile.helicopter ? random.between(0, f.landings) : 0;
    f.aeroplaneLandings = profile.helicopter ? 0 : f.landings;
    for (int place = 0; place < profile.engines; ++place) {
        auto& e = f.engines[static_cast<std::size_t>(place)];
        e.air = f.air;
        e.ground = f.ground + random.between(0, 5);
        e.takeOff = f.air * random.between(5, 15) / 100;
        e.maximal = random.chance(0.05) ? random.between(1, 3) : 0;
        e.nominal = f.air * random.between(40, 70) / 100;
        e.starts = 1;
        e.cycles = f.landings;
    }
    if (!profile.gearboxModel.empty()) {
        f.gearboxTakeOff = f.engines[0].takeOff;
        f.gearboxNominal = f.engines[0].nominal;
        f.gearboxStarts = 1;
    }
    if (!profile.apuModel.empty()) {
        f.apuRunning = random.between(8, 30);
        f.apuGenerator = profile.apuModel == generatorModeApuModel ? random.between(3, f.apuRunning) : 0;
        f.apuStarts = 1;
        f.apuBleeds = random.between(1, 2);
        f.apuCycles = 1;
    }
    if (profile.winch && random.chance(0.08)) {
        f.winchPeople = random.between(0, 4);
        f.winchCargo = random.between(0, 6);
    }
    if (profile.sling && random.chance(0.12)) {
        f.slingTime = std::min(f.air, random.between(10, 90));
        f.slingUses = random.between(1, 5);
        f.hookReleases = f.slingUses;
    }
    f.route = random.pick(routes());
    if (random.chance(0.03)) f.remark = "Замечаний нет, выполнено по плану";
    return f;
}

}  // namespace

void Totals::add(const Flight& f, const AircraftProfile& profile) {
    airframeMinutes += f.air + weighted(f.ground, profile.airframe);
    landings += f.landings;
    helicopterLandings += f.helicopterLandings;
    aeroplaneLandings += f.aeroplaneLandings;
    for (std::size_t place = 0; place < f.engines.size(); ++place) {
        const auto& e = f.engines[place];
        engineMinutes[place] += e.air + weighted(e.ground, profile.engine);
        engineCycles[place] += e.cycles;
        engineStarts[place] += e.starts;
        engineTakeOff[place] += e.takeOff;
        engineNominal[place] += e.nominal;
        engineMaximal[place] += e.maximal;
    }
    if (!profile.gearboxModel.empty()) gearboxMinutes += f.air + weighted(f.ground, profile.gearbox);
    gearboxStarts += f.gearboxStarts;
    gearboxTakeOff += f.gearboxTakeOff;
    gearboxNominal += f.gearboxNominal;
    apuRunning += f.apuRunning;
    apuGenerator += f.apuGenerator;
    apuStarts += f.apuStarts;
    apuBleeds += f.apuBleeds;
    apuCycles += f.apuCycles;
    winchPeople += f.winchPeople;
    winchCargo += f.winchCargo;
}

FlightHistory::FlightHistory(const AircraftProfile& profile, Date first, Date today, Random random)
    : profile_(&profile) {
    // Aircraft fly in seasons: about one day in two in summer, one in five in winter.
    for (Date day = first; day < today; day = day.addDays(1)) {
        const bool summer = day.month() >= 4 && day.month() <= 10;
        if (!random.chance(summer ? 0.5 : 0.2)) continue;
        const int flights = random.between(1, profile.mostFlightsPerDay);
        for (int i = 0; i < flights; ++i) flights_.push_back(makeFlight(profile, day, random));
    }
}

Totals FlightHistory::since(Date from) const {
    Totals totals;
    const auto start =
        std::lower_bound(flights_.begin(), flights_.end(), from, [](const Flight& f, Date d) { return f.date < d; });
    for (auto it = start; it != flights_.end(); ++it) totals.add(*it, *profile_);
    return totals;
}

}  // namespace mxbook::fleet
