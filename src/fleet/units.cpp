#include "units.h"

#include <algorithm>

#include "reference_data.h"
#include "units/unit_kinds.h"

namespace mxbook::fleet {

namespace {

constexpr int hours = 60;

// How a unit came to be where it is: when it was installed, how worn it is
// now, whether its time is derived from the carrier.
struct Installation {
    Date day;
    int usedNow = 0;  // minutes, or a count for units counted in landings
    int overhauledNow = 0;
    int overhauls = 0;
    bool indirect = false;
};

Installation installation(Random& r, Date firstDay, Date today, const ComponentModel& model) {
    Installation i;
    i.day = firstDay.addDays(r.between(0, std::max(0, daysBetween(firstDay, today.addDays(-1)))));
    const Wear wear = randomWear(r, model.totalLimit, model.overhaulLimit, model.countsLandings ? 1 : hours);
    i.usedNow = wear.sinceNew;
    i.overhauledNow = wear.sinceOverhaul;
    i.overhauls = wear.overhauls;
    i.indirect = r.chance(0.6);
    return i;
}

// A counter as the row keeps it, for a unit worn `now` that the carrier has
// run `carried` since installation: an indirectly accounted unit keeps what
// it had at installation (the carrier supplies the rest); another has the
// flights since added, as its installation and the daily entries did.
std::string counterText(int now, int carried, bool indirect, bool countsLandings) {
    const int before = std::max(0, now - carried);
    const int value = indirect ? before : before + carried;
    return countsLandings ? std::to_string(value) : hoursText(value);
}

struct ComponentPlace {
    int carrierKind;  // 0 airframe, 1 engine
    std::string location;
    std::string carrierSerial;
};

void writeComponent(Generation& g, const AircraftProfile& type, const ComponentModel& model,
                    const ComponentPlace& place, const Installation& i, const std::string& reading, int carried,
                    Random& r) {
    const units::UnitKind& columns = units::unitKind("AGREGAT");
    const auto& component = units::componentColumns;
    auto& components = g.table(std::string(columns.table));
    const bool landings = model.countsLandings;
    const auto& keys = g.typeKeys["ETAAGREGAT"];
    const auto key = keys.find(typeKeyOf(type.type, model.name, model.drawingNumber));
    auto row = components.row();
    row.set("TIP_VS", type.type)
        .set(columns.name.name, model.name)
        .set("CHERT_NOMER", model.drawingNumber)
        .set(columns.serial.name, g.nextSerial())
        .set(columns.manufactured.name, i.day.addYears(-r.between(1, 12)))
        .set("KOL_VO_REMONTOV", i.overhauls)
        .set("RESURS_OBSH", model.totalLimit)
        .set("SROK_OBSH", calendarLimit(r.chance(0.5) ? 20 : 15))
        .set("RESURS_MR", model.overhaulLimit)
        .set("SROK_MR", calendarLimit(r.between(3, 8), r.chance(0.3) ? 6 : 0))
        .set("NARABOTKA_SNE", counterText(i.usedNow, carried, i.indirect, landings))
        .set("NARABOTKA_PPR", counterText(i.overhauledNow, carried, i.indirect, landings))
        .set("UCHET_MASLA", model.tracksOil ? 1 : 0)
        .set(component.counterKind.name, landings ? 1 : 0)
        .set("DATA_USTANOVKI", i.day)
        .set(columns.location.name, place.location)
        .set(component.carrierKind.name, place.carrierKind)
        .set("SOBSTVENNOST", "1")
        .set(columns.flag->name, i.indirect ? 1 : 0)
        .set("BEZ_OPISANIYA", 0)
        .set("KALENDAR_OT_USTANOVKI", false);
    if (i.overhauls > 0) row.set("DATA_REMONTA", i.day.addDays(-r.between(30, 700)));
    if (!reading.empty()) row.set(columns.installReading->name, reading);
    if (!place.carrierSerial.empty()) row.set(component.carrierSerial.name, place.carrierSerial);
    if (key != keys.end()) row.set("ID_NAME", key->second);
    if (i.overhauls == 0) row.set("RESURS_DO_PR", model.overhaulLimit * 3 / 2).set("SROK_DO_PR", calendarLimit(6));
    if (model.tracksOil)
        // The oil was changed within the last year, and never before the unit came on.
        row.set("NOMER_TIPA_MASLA", r.between(0, 4))
            .set("NARAB_MASLA", hoursText(r.between(0, 40) * hours))
            .set("DATA_ZAMENY_MASLA", std::max(i.day, g.today.addDays(-r.between(10, 360))))
            .set("RESURS_MASLA", oilLimitHours);
    components.insert(g.batch, row);
    ++g.summary.units;
}

void writeAirframeComponents(Generation& g, const AircraftPlan& p) {
    Random r = p.random.fork(2);
    const auto models = airframeComponents();
    for (int n = 0; n < g.options.componentsPerAircraft; ++n) {
        const ComponentModel& model = models[static_cast<std::size_t>(n) % models.size()];
        const Installation i = installation(r, p.firstInstallDay(g.historyStart), g.today, model);
        const int readingValue = model.countsLandings ? p.airframeLandingsAt(i.day) : p.airframeMinutesAt(i.day);
        const int nowValue = model.countsLandings ? p.airframe.countNow : p.airframe.minutesNow;
        const std::string reading = model.countsLandings ? std::to_string(readingValue) : hoursText(readingValue);
        writeComponent(g, *p.profile, model, {0, p.tail, {}}, i, reading, nowValue - readingValue, r);
    }
}

void writeEngineComponents(Generation& g, const AircraftPlan& p) {
    Random r = p.random.fork(3);
    for (const EnginePlan& engine : p.engines)
        for (const ComponentModel& model : engineComponents()) {
            const Date first = std::max(engine.counters.installed, g.historyStart);
            const Installation i = installation(r, first, g.today, model);
            const int readingValue =
                model.countsLandings ? p.engineCyclesAt(engine, i.day) : p.engineMinutesAt(engine, i.day);
            const int nowValue = model.countsLandings ? engine.counters.countNow : engine.counters.minutesNow;
            const std::string reading = model.countsLandings ? std::to_string(readingValue) : hoursText(readingValue);
            writeComponent(g, *p.profile, model, {1, p.tail, engine.serial}, i, reading, nowValue - readingValue, r);
        }
}

// Units on the APU keep the APU's readings at installation and their own
// hours, starts and air bleeds since new and since overhaul.
void writeApuComponents(Generation& g, const AircraftPlan& p) {
    if (!p.apu) return;
    Random r = p.random.fork(4);
    auto& units = g.table("AGR_VSU");
    const auto& keys = g.typeKeys["ETA_AGR_VSU"];
    for (const ComponentModel& model : apuComponents()) {
        const auto key = keys.find(typeKeyOf(p.profile->type, model.name, model.drawingNumber));
        // Installed with the APU: its readings are where the APU's counters started.
        const int hoursBefore = r.between(0, model.totalLimit * 6 / 10) * hours;
        const int startsBefore = hoursBefore / hours * 2;
        const int readingHours = std::max(0, p.apu->hoursNow - r.between(0, 300) * hours);
        const int readingStarts = std::max(0, p.apu->startsNow - r.between(0, 600));
        const int readingBleeds = std::max(0, p.apu->bleedsNow - r.between(0, 1200));
        auto row = units.row();
        row.set("TIP_VS", p.profile->type)
            .set("GDE_STOIT", p.tail)
            .set("NAZVANIE", model.name)
            .set("CHERT_NOMER", model.drawingNumber)
            .set("ZAVODSKOI_NOMER", g.nextSerial())
            .set("DATA_VYPUSKA", p.apu->installed.addYears(-r.between(1, 6)))
            .set("SOBSTVENNOST", p.owner)
            .set("VSEGO_REMONTOV", 0)
            .set("DATA_USTANOVKI", p.apu->installed)
            .set("NAZN_RESURS", model.totalLimit)
            .set("NAZN_ZAPUSKI", model.totalLimit * 3)
            .set("NAZN_OTBORY", model.totalLimit * 6)
            .set("MEGREM_RESURS", model.overhaulLimit)
            .set("MEGREM_ZAPUSKI", model.overhaulLimit * 3)
            .set("MEGREM_OTBORY", model.overhaulLimit * 6)
            .set("NARABOTKA_VSU_PRI_USTANOVKE", hoursText(readingHours))
            .set("ZAPUSKI_VSU_PRI_USTANOVKE", readingStarts)
            .set("OTBORY_VSU_PRI_USTANOVKE", readingBleeds)
            .set("NARABOTKA_SNE", hoursText(hoursBefore))
            .set("ZAPUSKI_SNE", startsBefore)
            .set("OTBORY_SNE", startsBefore * 2)
            .set("NARABOTKA_PPR", hoursText(hoursBefore))
            .set("ZAPUSKI_PPR", startsBefore)
            .set("OTBORY_PPR", startsBefore * 2)
            .set("UCHET_MASLA", model.tracksOil ? 1 : 0)
            .set("NUMER_DVIG_VSU", p.apu->serial);
        // Filed for every type with an APU; a unit without one names no entry, as a component does.
        if (key != keys.end()) row.set("ID_NAME", key->second);
        if (model.tracksOil)
            row.set("NARAB_MASLA", hoursText(r.between(0, 200) * hours))
                .set("DATA_ZAMENY_MASLA", g.today.addDays(-r.between(10, 300)));
        units.insert(g.batch, row);
        ++g.summary.units;
    }
}

}  // namespace

void writeUnits(Generation& g, const AircraftPlan& p) {
    writeAirframeComponents(g, p);
    writeEngineComponents(g, p);
    writeApuComponents(g, p);
    writeRotorUnits(g, p);
}

void writeOffAircraftUnits(Generation& g, const AircraftProfile& profile) {
    Random r = g.random.fork(0xA00 + static_cast<std::uint64_t>(profile.typeCode));
    const auto models = airframeComponents();
    // Off the aircraft nothing is carried: the counters stand as they were booked.
    for (std::string_view location : offAircraftLocations)
        for (int n = 0; n < 3; ++n) {
            const ComponentModel& model =
                models[static_cast<std::size_t>(r.between(0, static_cast<int>(models.size()) - 1))];
            const Installation i = installation(r, g.today.addDays(-700), g.today, model);
            writeComponent(g, profile, model, {0, std::string(location), {}}, i, {}, 0, r);
        }
    // An engine in repair keeps the units mounted on it, and they still follow its counter.
    const EnginePlan engine = writeSpareEngine(g, profile, "Ремонт");
    for (const ComponentModel& model : engineComponents().first(2)) {
        Installation i = installation(r, engine.counters.installed.addYears(-1), engine.counters.installed, model);
        i.indirect = true;
        const int reading = model.countsLandings ? engine.counters.countNow - r.between(0, 200)
                                                 : engine.counters.minutesNow - r.between(0, 300) * hours;
        writeComponent(g, profile, model, {1, "Ремонт", engine.serial}, i,
                       model.countsLandings ? std::to_string(std::max(reading, 0)) : hoursText(reading), 0, r);
    }
    writeOffAircraftRotorUnits(g, profile);
}

}  // namespace mxbook::fleet
