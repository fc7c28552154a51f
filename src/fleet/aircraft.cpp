#include "aircraft.h"

#include <algorithm>

#include "mxbook/format.h"

namespace mxbook::fleet {

namespace {

constexpr int hours = 60;

Date laterOf(Date a, Date b) { return a < b ? b : a; }

Date randomDayBetween(Random& random, Date first, Date last) {
    if (last <= first) return first;
    return first.addDays(random.between(0, daysBetween(first, last)));
}

void writeRegister(Generation& g, AircraftPlan& p, const Totals& sinceStart) {
    const AircraftProfile& type = *p.profile;
    Random& r = p.random;
    const int sinceNew = p.minutesBeforeRecords + sinceStart.airframeMinutes;
    const int landingsSinceNew = p.landingsBeforeRecords + sinceStart.landings;
    const int periodic = p.airframe.minutesNow / (type.periodicFormHours * hours);
    const int light = p.airframe.minutesNow / (type.lightFormHours * hours);
    const Date lastFlight = p.history.flights().empty() ? g.historyStart : p.history.flights().back().date;

    auto& register_ = g.table("REESTR");
    auto row = register_.row();
    row.set("TIP_VS", type.type)
        .set("SERIINY_NOMER", g.nextSerial())
        .set("BORTOVOI_NOMER", p.tail)
        .set("ZAVODSKOI_NOMER", g.nextSerial())
        .set("ZAVOD_IZGOTOVITEL", type.helicopter ? "ПАО «Казанский вертолетный завод»" : "PZL Mielec")
        .set("DATA_VYPUSKA", p.manufactured)
        .set("DATA_REMONTA", p.overhauled)
        .set("KOL_VO_REMONTOV", p.overhauls)
        .set("NAZNACHENNY_RESURS", type.helicopter ? 25000 : 20000)
        .set("NAZNACHENNY_SROK", calendarLimit(40))
        .set("MEGREMONTNY_CHAS", type.helicopter ? 2000 : 1500)
        .set("MEGREMONTNY_SROK", calendarLimit(8))
        .set("NARABOTKA_SNE_CHASOV", hoursText(sinceNew))
        .set("NARABOTKA_SNE_POSADKI", landingsSinceNew)
        .set("NARABOTKA_PPR_CHASOV", hoursText(p.airframe.minutesNow))
        .set("NARABOTKA_PPR_POSADKI", p.airframe.countNow)
        .set("SOSTOIANIE", r.chance(0.85) ? 0 : r.between(1, 10))
        .set("DATA_TO", g.today.addDays(-r.between(20, 200)))
        .set("DATA_F1", g.today.addDays(-r.between(1, 60)))
        .set("KOL_VO_TO", periodic)
        .set("KOL_VO_F1", light)
        .set("KOL_VO_DVIGATELEI", type.engines)
        .set("TIP_DVIGATELEI", type.engineModel)
        .set("NAZNACHENNY_RESURS_POSADKI", type.helicopter ? 60000 : 40000)
        .set("MEGREMONTNY_RESURS_POSADKI", type.helicopter ? 15000 : 10000)
        .set("PTO_POKAZYVAT", 1)
        .set("DATA_NACHALA_PTO_KALENDAR", g.today.addDays(-r.between(0, 110)))
        .set("BESSROCHNO", r.chance(0.1))
        .set("DATA_POLETA", lastFlight)
        .set("SOBSTVENNOST", p.owner)
        .set("NARABOTKA_SNE_CHISLO", static_cast<int>(p.history.flights().size()))
        .set("NARABOTKA_PPR_CHISLO", static_cast<int>(p.history.flights().size()))
        .set("VARIANT_VS", type.helicopter ? "Пассажирский" : "Транспортный")
        .set("POSAD_PO_VERTOLET_SNE", sinceStart.helicopterLandings)
        .set("POSAD_PO_VERTOLET_PPR", sinceStart.helicopterLandings)
        .set("POSAD_PO_SAMOLET_SNE", sinceStart.aeroplaneLandings)
        .set("POSAD_PO_SAMOLET_PPR", sinceStart.aeroplaneLandings);
    if (!type.apuModel.empty()) row.set("TIP_VSU", type.apuModel);
    register_.insert(g.batch, row);
}

void writeEngine(Generation& g, AircraftPlan& p, int place) {
    const AircraftProfile& type = *p.profile;
    Random& r = p.random;
    EnginePlan engine{g.nextSerial(), place, {}};
    engine.counters.installed = randomDayBetween(r, g.historyStart.addYears(-2), g.today.addDays(-60));
    const Totals flown = p.history.since(laterOf(engine.counters.installed, g.historyStart));
    const auto slot = static_cast<std::size_t>(place);
    const int overhauls = r.between(0, 3);
    // An engine not yet overhauled is young; an overhauled one has its hours since new and since overhaul.
    const int sinceNewBefore = (overhauls == 0 ? r.between(100, 1500) : r.between(2000, 6000)) * hours;
    const int sinceOverhaulBefore = overhauls == 0 ? sinceNewBefore : r.between(0, 1500) * hours;
    const int cyclesBefore = sinceOverhaulBefore / hours * 2;
    const int startsBefore = sinceOverhaulBefore / hours;
    engine.counters.minutesNow = sinceOverhaulBefore + flown.engineMinutes[slot];
    engine.counters.countNow = cyclesBefore + flown.engineCycles[slot];

    auto& engines = g.table("DVIGATEL");
    auto row = engines.row();
    row.set("TIP_VS", type.type)
        .set("NAZVANIE_DVIGATELYA", type.engineModel)
        .set("ZAVODSKOI_NOMER", engine.serial)
        .set("DATA_VYPUSKA", engine.counters.installed.addYears(-r.between(2, 15)))
        .set("REMONT_DATA", overhauls == 0 ? Date() : engine.counters.installed.addDays(-r.between(10, 400)))
        .set("VSEGO_REMONTOV", overhauls)
        .set("DATA_USTANOVKI", engine.counters.installed)
        .set("NARABOTKA_SNE", hoursText(sinceNewBefore + flown.engineMinutes[slot]))
        .set("NARABOTKA_PPR", hoursText(engine.counters.minutesNow))
        .set("GDE_STOIT", p.tail)
        .set("RESURS_DO_PERV_REM", 3000)
        .set("SROK_DO_PERV_REM", calendarLimit(10))
        .set("MEGREM_RESURS", 2000)
        .set("MEGREM_SROK", calendarLimit(8))
        .set("NAZN_RESURS", 12000)
        .set("NAZN_SROK", calendarLimit(25))
        .set("ODIN_DVA", place)
        .set("NOMINAL_PPR", hoursText(sinceOverhaulBefore / 2 + flown.engineNominal[slot]))
        .set("VZLETNY_PPR", hoursText(sinceOverhaulBefore / 10 + flown.engineTakeOff[slot]))
        .set("MAXIMAL_PPR", hoursText(flown.engineMaximal[slot]))
        .set("CICLI_PPR", engine.counters.countNow)
        .set("CICLI_SNE", sinceNewBefore / hours * 2 + flown.engineCycles[slot])
        .set("ZAPUSKI_SNE", sinceNewBefore / hours + flown.engineStarts[slot])
        .set("ZAPUSKI_PPR", startsBefore + flown.engineStarts[slot])
        .set("NAZN_CICLI", 20000)
        .set("MEGREM_CICLI", 6000)
        .set("NAZN_ZAPUSKI", 10000)
        .set("MEGREM_ZAPUSKI", 3000)
        .set("SOBSTVENNOST", p.owner);
    engines.insert(g.batch, row);
    p.engines.push_back(std::move(engine));
    ++g.summary.engines;
}

void writeGearbox(Generation& g, AircraftPlan& p) {
    Random& r = p.random;
    const Date installed = randomDayBetween(r, g.historyStart.addYears(-1), g.today.addDays(-90));
    const Totals flown = p.history.since(laterOf(installed, g.historyStart));
    const int overhauls = r.between(0, 2);
    const int sinceNewBefore = (overhauls == 0 ? r.between(200, 1500) : r.between(2000, 7000)) * hours;
    const int sinceOverhaulBefore = overhauls == 0 ? sinceNewBefore : r.between(0, 1500) * hours;
    p.gearboxSerial = g.nextSerial();
    auto& gearboxes = g.table("REDUCTOR");
    gearboxes.insert(g.batch, gearboxes.row()
                                  .set("TIP_VS", p.profile->type)
                                  .set("NAZVANIE_REDUCTORA", p.profile->gearboxModel)
                                  .set("ZAVODSKOI_NOMER", *p.gearboxSerial)
                                  .set("DATA_VYPUSKA", installed.addYears(-r.between(2, 15)))
                                  .set("REMONT_DATA", overhauls == 0 ? Date() : installed.addDays(-r.between(10, 300)))
                                  .set("VSEGO_REMONTOV", overhauls)
                                  .set("DATA_USTANOVKI", installed)
                                  .set("NARABOTKA_SNE", hoursText(sinceNewBefore + flown.gearboxMinutes))
                                  .set("NARABOTKA_PPR", hoursText(sinceOverhaulBefore + flown.gearboxMinutes))
                                  .set("GDE_STOIT", p.tail)
                                  .set("RESURS_DO_PERV_REM", 3500)
                                  .set("MEGREM_RESURS", 2000)
                                  .set("MEGREM_SROK", calendarLimit(8))
                                  .set("NAZN_RESURS", 15000)
                                  .set("NAZN_SROK", calendarLimit(30))
                                  .set("PPR_NOMINAL", hoursText(sinceOverhaulBefore / 2 + flown.gearboxNominal))
                                  .set("PPR_VZLETNY", hoursText(sinceOverhaulBefore / 10 + flown.gearboxTakeOff))
                                  .set("PPR_ZAPUSKI", sinceOverhaulBefore / hours + flown.gearboxStarts)
                                  .set("ZAPUSKI_SNE", sinceNewBefore / hours + flown.gearboxStarts)
                                  .set("SOBSTVENNOST", p.owner));
    ++g.summary.gearboxes;
}

void writeApu(Generation& g, AircraftPlan& p) {
    Random& r = p.random;
    ApuPlan apu;
    apu.serial = g.nextSerial();
    apu.model = p.profile->apuModel;
    apu.installed = randomDayBetween(r, g.historyStart.addYears(-1), g.today.addDays(-60));
    const Totals flown = p.history.since(laterOf(apu.installed, g.historyStart));
    const int runningBefore = r.between(100, 2500) * hours;
    const int generatorBefore = apu.model == generatorModeApuModel ? runningBefore / 3 : 0;
    const int startsBefore = runningBefore / hours * 3;
    const int bleedsBefore = startsBefore * 2;
    const int running = runningBefore + flown.apuRunning;
    const int generator = generatorBefore + flown.apuGenerator;
    apu.hoursNow = apu.model == generatorModeApuModel ? running + generator : running;
    apu.startsNow = startsBefore + flown.apuStarts;
    apu.bleedsNow = bleedsBefore + flown.apuBleeds;
    // Overhaul resets nothing here: the APUs of the fleet are before their first overhaul.
    auto& apus = g.table("VSU");
    apus.insert(g.batch, apus.row()
                             .set("NAZVANIE", apu.model)
                             .set("ZAVODSKOY_NOMER", apu.serial)
                             .set("DATA_VYPUSKA", apu.installed.addYears(-r.between(1, 10)))
                             .set("VSEGO_REMONTOV", 0)
                             .set("DATA_USTANOVKI", apu.installed)
                             .set("ZAPUSKI_SNE", apu.startsNow)
                             .set("ZAPUSKI_PPR", apu.startsNow)
                             .set("OTBORY_SNE", apu.bleedsNow)
                             .set("OTBORY_PPR", apu.bleedsNow)
                             .set("GENERATORNY_SNE", hoursText(generator))
                             .set("GENERATORNY_PPR", hoursText(generator))
                             .set("OBSHAIA_SNE", hoursText(running))
                             .set("OBSHAIA_PPR", hoursText(running))
                             .set("SUMMA_SNE", hoursText(running + generator))
                             .set("SUMMA_PPR", hoursText(running + generator))
                             .set("CICLI_SNE", startsBefore + flown.apuCycles)
                             .set("CICLI_PPR", startsBefore + flown.apuCycles)
                             .set("NAZN_ZAPUSKI", 12000)
                             .set("NAZN_OTBORY", 24000)
                             .set("NAZN_GENERATORNY", 3000)
                             .set("NAZN_RESURS", 4000)
                             .set("NAZN_SUMMA", 6000)
                             .set("MEGREM_RESURS", 1500)
                             .set("MEGREM_SROK", calendarLimit(6))
                             .set("NAZN_SROK", calendarLimit(20))
                             .set("MESTO_USTANOVKI", p.tail)
                             .set("TIP_VS", p.profile->type)
                             .set("SOBSTVENNOST", p.owner)
                             .set("NAR_MASLO_CHAS", "0:00")
                             .set("NAR_MASLO_ZAPUSKI", 0)
                             .set("DATA_ZAMENY_MASLO", laterOf(apu.installed, g.today.addDays(-p.random.fork(0x011).between(10, 360)))));
    p.apu = std::move(apu);
    ++g.summary.apus;
}

void writeFlights(Generation& g, const AircraftPlan& p) {
    auto& flights = g.table("SPRAVKA");
    const auto time = [](int minutes) { return db::Value(durationTime(minutes)); };
    const auto count = [](int value, bool present) { return present ? db::Value(value) : db::Value(); };
    for (const Flight& f : p.history.flights()) {
        auto row = flights.row();
        row.set("DATA_POLETA", f.date)
            .set("TIP_VS", p.profile->type)
            .set("BORTOVOI_NOMER", p.tail)
            .set("KVS", p.random.fork(static_cast<std::uint64_t>(f.date.serial())).pick(commanders()))
            .set("V_VOZDUHE", time(f.air))
            .set("NA_ZEMLE", time(f.ground))
            .set("KOL_VO_POSADOK", f.landings)
            .set("POSAD_PO_VERTOLET", f.helicopterLandings)
            .set("POSAD_PO_SAMOLET", f.aeroplaneLandings)
            .set("KOL_VO_CICLOV", f.landings)
            .set("VELMO", f.route);
        for (int place = 0; place < p.profile->engines; ++place) {
            const auto& e = f.engines[static_cast<std::size_t>(place)];
            const std::string n = std::to_string(place + 1);
            row.set("V_VOZDUHE_" + n, time(e.air))
                .set("NA_ZEMLE_" + n, time(e.ground))
                .set("NA_VZLETNOM_" + n, time(e.takeOff))
                .set("NOMINAL_" + n, time(e.nominal))
                .set("MAXIMAL_" + n, time(e.maximal))
                .set("KOL_VO_ZAPUSKOV_" + n, e.starts)
                .set("KOL_VO_CICLOV_" + n, e.cycles);
        }
        const bool gearbox = !p.profile->gearboxModel.empty();
        if (gearbox)
            row.set("V_VOZDUHE_RED", time(f.air))
                .set("NA_ZEMLE_RED", time(f.ground))
                .set("NA_VZLETNOM", time(f.gearboxTakeOff))
                .set("NOMINAL", time(f.gearboxNominal))
                .set("KOL_VO_ZAPUSKOV", f.gearboxStarts);
        if (p.apu)
            row.set("VSU_POLNOE_VREMYA", time(f.apuRunning))
                .set("VSU_V_GENERATORNOM", time(f.apuGenerator))
                .set("VSU_KOL_VO_ZAPUSKOV", f.apuStarts)
                .set("VSU_KOL_VO_OTBOROV", f.apuBleeds)
                .set("VSU_KOL_VO_CICLOV", f.apuCycles);
        row.set("LEBEDKA_CICL_LUDI", count(f.winchPeople, p.profile->winch))
            .set("LEBEDKA_CICL_GRUZY", count(f.winchCargo, p.profile->winch))
            .set("VREMYA_S_PODVESKOI", f.slingTime > 0 ? time(f.slingTime) : db::Value())
            .set("PODVESKA_KOL_VO_PRIMENENIJ", count(f.slingUses, p.profile->sling))
            .set("DG65_KOL_VO_SRABATYVANIJ", count(f.hookReleases, p.profile->sling));
        if (!f.remark.empty()) row.set("REMARCA", f.remark);
        flights.insert(g.batch, row);
        ++g.summary.flights;
    }
}

// The periodic forms of the last overhaul period, each when the airframe's
// hours since overhaul passed a multiple of the form interval; the last few
// are kept as the performed-forms journal shows them.
void writePerformedForms(Generation& g, const AircraftPlan& p) {
    const int interval = p.profile->periodicFormHours * hours;
    const Date counted = laterOf(p.airframe.installed, g.historyStart);
    int minutes = p.airframeMinutesAt(counted);
    struct Form {
        Date date;
        int planerMinutes;
    };
    std::vector<Form> forms;
    for (const Flight& f : p.history.flights()) {
        if (f.date < counted) continue;
        const int before = minutes / interval;
        Totals flight;
        flight.add(f, *p.profile);
        minutes += flight.airframeMinutes;
        if (minutes / interval > before) forms.push_back({f.date.addDays(1), minutes / interval * interval});
    }
    auto& performed = g.table("VYPOLNENNYE_FORMY");
    const std::size_t first = forms.size() > 3 ? forms.size() - 3 : 0;
    for (std::size_t i = first; i < forms.size(); ++i)
        performed.insert(g.batch, performed.row()
                                      .set("TIP_VS", p.profile->type)
                                      .set("BORTOVOY_NOMER", p.tail)
                                      .set("FORMA_TO", "Ф-" + std::to_string(2 + static_cast<int>(i % 3)))
                                      .set("PLANER_PPR", hoursText(forms[i].planerMinutes))
                                      .set("DATA_FORMY", formatDate(forms[i].date, "dd.mm.yyyy"))
                                      .set("DATA_ISPRAVNOSTI", forms[i].date));
}

}  // namespace

AircraftPlan::AircraftPlan(const AircraftProfile& profile_, std::string tail_, Generation& g, Random random_)
    : profile(&profile_),
      tail(std::move(tail_)),
      owner(std::string(random_.pick(owners()).key)),
      random(random_),
      manufactured(g.historyStart.addYears(-random.between(3, 30)).addDays(random.between(0, 364))),
      history(profile_, g.historyStart, g.today, random.fork(1)) {
    overhauls = random.between(0, 3);
    minutesBeforeRecords = random.between(800, 9000) * hours;
    if (overhauls == 0) {
        // A young aircraft, not yet due for its first overhaul: its hours since overhaul count from new.
        manufactured = g.historyStart.addYears(-random.between(1, 4));
        minutesBeforeRecords = random.between(50, 600) * hours;
    }
    overhauled =
        overhauls == 0 ? manufactured : randomDayBetween(random, g.historyStart.addYears(-3), g.today.addDays(-120));
    airframe.installed = overhauled;
    landingsBeforeRecords = minutesBeforeRecords / hours * (profile_.helicopter ? 2 : 1);
    const Date counted = laterOf(overhauled, g.historyStart);
    const Totals flown = history.since(counted);
    // Hours since overhaul: those since new when never overhauled; else some
    // flown between the overhaul and the first record, or none when the overhaul came later.
    int before = 0;
    int landingsBefore = 0;
    if (overhauls == 0) {
        before = minutesBeforeRecords;
        landingsBefore = landingsBeforeRecords;
    } else if (overhauled < g.historyStart) {
        before = std::min(minutesBeforeRecords, random.between(0, 1500) * hours);
        landingsBefore = before / hours * 2;
    }
    airframe.minutesNow = before + flown.airframeMinutes;
    airframe.countNow = landingsBefore + flown.landings;
}

int AircraftPlan::airframeMinutesAt(Date day) const {
    return airframe.minutesNow - history.since(laterOf(day, airframe.installed)).airframeMinutes;
}

int AircraftPlan::airframeLandingsAt(Date day) const {
    return airframe.countNow - history.since(laterOf(day, airframe.installed)).landings;
}

int AircraftPlan::engineMinutesAt(const EnginePlan& engine, Date day) const {
    return engine.counters.minutesNow -
           history.since(laterOf(day, engine.counters.installed)).engineMinutes[static_cast<std::size_t>(engine.place)];
}

int AircraftPlan::engineCyclesAt(const EnginePlan& engine, Date day) const {
    return engine.counters.countNow -
           history.since(laterOf(day, engine.counters.installed)).engineCycles[static_cast<std::size_t>(engine.place)];
}

Date AircraftPlan::firstInstallDay(Date historyStart) const { return laterOf(historyStart, overhauled); }

void writeAircraft(Generation& g, AircraftPlan& p) {
    writeRegister(g, p, p.history.since(g.historyStart));
    for (int place = 0; place < p.profile->engines; ++place) writeEngine(g, p, place);
    if (!p.profile->gearboxModel.empty()) writeGearbox(g, p);
    if (!p.profile->apuModel.empty()) writeApu(g, p);
    writeFlights(g, p);
    writePerformedForms(g, p);
    ++g.summary.aircraft;
}

EnginePlan writeSpareEngine(Generation& g, const AircraftProfile& profile, std::string_view location) {
    Random r = g.random.fork(0x5EA5);
    EnginePlan engine{g.nextSerial(), 0, {g.today.addDays(-r.between(30, 300)), r.between(200, 1500) * hours, 0}};
    engine.counters.countNow = engine.counters.minutesNow / hours * 2;
    auto& engines = g.table("DVIGATEL");
    engines.insert(g.batch, engines.row()
                                .set("TIP_VS", profile.type)
                                .set("NAZVANIE_DVIGATELYA", profile.engineModel)
                                .set("ZAVODSKOI_NOMER", engine.serial)
                                .set("DATA_VYPUSKA", engine.counters.installed.addYears(-8))
                                .set("VSEGO_REMONTOV", 1)
                                .set("REMONT_DATA", engine.counters.installed.addYears(-2))
                                .set("DATA_USTANOVKI", engine.counters.installed)
                                .set("NARABOTKA_SNE", hoursText(engine.counters.minutesNow + 3000 * hours))
                                .set("NARABOTKA_PPR", hoursText(engine.counters.minutesNow))
                                .set("CICLI_PPR", engine.counters.countNow)
                                .set("GDE_STOIT", location)
                                .set("ODIN_DVA", 0)
                                .set("MEGREM_RESURS", 2000)
                                .set("NAZN_RESURS", 12000));
    ++g.summary.engines;
    return engine;
}

}  // namespace mxbook::fleet
