// Rotor-system and other units: each kind is a row of the table below, and
// one routine writes them all; the columns are those of the kinds of unit.
#include <algorithm>
#include <span>
#include <utility>

#include "units.h"
#include "units/unit_kinds.h"

namespace mxbook::fleet {

namespace {

constexpr int hours = 60;

struct RotorKind {
    std::string_view table;
    std::string_view drawingNumber;
    int (*countOn)(const AircraftProfile&);
    int totalLimit;     // hours
    int overhaulLimit;  // hours; 0: the kind is never overhauled
    std::string_view name = {};           // empty: none written
    bool keepsCalendar = true;            // has SROK_OBSH
    bool keepsFirstOverhaulLimit = true;  // has RESURS_DO_PR and SROK_DO_PR
    bool followsEngine = false;           // counts the first engine's time, not the airframe's
    bool hasCable = false;                // a winch: cable limits and hoists
    bool namesItsHub = false;             // a tail rotor: its hub's serial number
    // The oil blocks (time since the change, date of the change) the kind keeps.
    std::span<const std::pair<std::string_view, std::string_view>> oilBlocks = {};
};

constexpr std::pair<std::string_view, std::string_view> hubOil[] = {
    {"NARAB_MASLA", "DATA_ZAMENY_MASLA"}, {"NARAB_MASLA_2", "DATA_ZAMENY_MASLA_2"}};
constexpr std::pair<std::string_view, std::string_view> tailRotorOil[] = {{"NARAB_MASLA", "DATA_ZAMENY_MASLA"}};

constexpr RotorKind rotorKinds[] = {
    {.table = "VTULKA_NV",
     .drawingNumber = "8-1930-000",
     .countOn = [](const AircraftProfile& p) { return p.helicopter ? 1 : 0; },
     .totalLimit = 12000,
     .overhaulLimit = 2000,
     .name = "Втулка несущего винта",
     .oilBlocks = hubOil},
    {.table = "LOPAST",
     .drawingNumber = "8АТ-2710-00",
     .countOn = [](const AircraftProfile& p) { return p.mainBlades + p.tailBlades; },
     .totalLimit = 8000,
     .overhaulLimit = 2000},
    {.table = "HVOSTOVOY_VINT",
     .drawingNumber = "246-3925-00",
     .countOn = [](const AircraftProfile& p) { return p.tailBlades > 0 ? 1 : 0; },
     .totalLimit = 9000,
     .overhaulLimit = 1500,
     .namesItsHub = true,
     .oilBlocks = tailRotorOil},
    {.table = "LEBEDKA",
     .drawingNumber = "ЛПГ-150М",
     .countOn = [](const AircraftProfile& p) { return p.winch ? 1 : 0; },
     .totalLimit = 6000,
     .overhaulLimit = 1500,
     .hasCable = true},
    {.table = "PODVESKA",
     .drawingNumber = "ВП-3",
     .countOn = [](const AircraftProfile& p) { return p.sling ? 1 : 0; },
     .totalLimit = 5000,
     .overhaulLimit = 1000,
     .keepsFirstOverhaulLimit = false},
    {.table = "SHLANG",
     .drawingNumber = "8А-4500-810",
     .countOn = [](const AircraftProfile& p) { return p.hoses; },
     .totalLimit = 3000,
     .overhaulLimit = 0,
     .keepsCalendar = false},
    {.table = "ZCU",
     .drawingNumber = "ЗЦУ-8",
     .countOn = [](const AircraftProfile& p) { return p.zcuUnits; },
     .totalLimit = 4000,
     .overhaulLimit = 1500,
     .name = "Узел ЗЦУ"},
    {.table = "VOZDUSHNY_VINT",
     .drawingNumber = "АВ-2",
     .countOn = [](const AircraftProfile& p) { return p.propeller ? 1 : 0; },
     .totalLimit = 8000,
     .overhaulLimit = 1000,
     .followsEngine = true},
};

struct UnitState {
    std::string location;
    Date installed;
    int usedNow = 0;  // minutes since new and since overhaul, carried time included
    int overhauledNow = 0;
    int overhauls = 0;
    bool indirect = false;
    int carried = 0;      // minutes the carrier ran since installation
    std::string reading;  // the carrier's hours at installation; empty off the aircraft
};

// The hours a unit worn `now` keeps booked: what it had at installation when
// derived from its carrier, everything when counted directly.
std::string booked(int now, int carried, bool indirect) {
    const int before = std::max(0, now - carried);
    return hoursText(indirect ? before : before + carried);
}

void writeRotorUnit(Generation& g, const RotorKind& kind, std::string_view aircraftType, const UnitState& s,
                    const std::string& owner, Random& r) {
    const units::UnitKind& columns = units::unitKind(kind.table);
    auto& table = g.table(std::string(kind.table));
    const bool indirect = columns.flag && s.indirect;
    auto row = table.row();
    row.set("TIP_VS", aircraftType)
        .set(columns.location.name, s.location)
        .set("CHERT_NOMER", kind.drawingNumber)
        .set(columns.serial.name, g.nextSerial())
        .set(columns.manufactured.name, s.installed.addYears(-r.between(1, 10)))
        .set("DATA_USTANOVKI", s.installed)
        .set("NARABOTKA_SNE", booked(s.usedNow, s.carried, indirect))
        .set("RESURS_OBSH", kind.totalLimit)
        .set("SOBSTVENNOST", owner);
    if (columns.flag) row.set(columns.flag->name, s.indirect ? 1 : 0);
    if (columns.installReading && !s.reading.empty()) row.set(columns.installReading->name, s.reading);
    if (!kind.name.empty()) row.set(columns.name.name, kind.name);
    if (kind.keepsCalendar) row.set("SROK_OBSH", calendarLimit(r.chance(0.5) ? 20 : 12, r.chance(0.2) ? 6 : 0));
    if (kind.overhaulLimit > 0) {
        row.set("NARABOTKA_PPR", booked(s.overhauledNow, s.carried, indirect))
            .set("RESURS_MR", kind.overhaulLimit)
            .set("SROK_MR", calendarLimit(r.between(3, 8)))
            .set("KOL_VO_REMONTOV", s.overhauls);
        if (s.overhauls > 0)
            row.set("DATA_REMONTA", s.installed.addDays(-r.between(30, 700)));
        else if (kind.keepsFirstOverhaulLimit)
            row.set("RESURS_DO_PR", kind.overhaulLimit * 3 / 2).set("SROK_DO_PR", calendarLimit(6));
    }
    if (columns.keepsComponentColumns)
        row.set(units::componentColumns.counterKind.name, 0).set(units::componentColumns.carrierKind.name, 0);
    if (kind.hasCable)
        row.set("RESURS_TROS_LUDI", 1500)
            .set("RESURS_TROS_GRUZY", 3000)
            .set("TROS_CICLI_LUDI", r.between(0, 1400))
            .set("TROS_CICLI_GRUZY", r.between(0, 2800))
            .set("DATA_ZAMENY_TROSA", s.installed.addDays(r.between(-200, 200)));
    if (kind.namesItsHub) row.set("ZAVODSKOY_NOMER_VTULKA", g.nextSerial());
    if (kind.followsEngine) row.set("ODIN_DVA", 0);
    if (!kind.oilBlocks.empty()) {
        // Drawn apart, so that the units after it keep their wear.
        Random oil = r.fork(0x011);
        row.set("RESURS_MASLA", oilLimitHours);
        if (columns.keepsComponentColumns) row.set("UCHET_MASLA", 1);
        for (const auto& [time, date] : kind.oilBlocks)
            row.set(time, hoursText(oil.between(0, 40) * hours))
                .set(date, std::max(s.installed, g.today.addDays(-oil.between(10, 360))));
    }
    table.insert(g.batch, row);
    ++g.summary.units;
}

UnitState wornState(Random& r, const RotorKind& kind) {
    UnitState s;
    const Wear wear = randomWear(r, kind.totalLimit, kind.overhaulLimit, hours);
    s.usedNow = wear.sinceNew;
    s.overhauledNow = wear.sinceOverhaul;
    s.overhauls = wear.overhauls;
    s.indirect = r.chance(0.6);
    return s;
}

}  // namespace

void writeRotorUnits(Generation& g, const AircraftPlan& p) {
    Random r = p.random.fork(5);
    const Date first = p.firstInstallDay(g.historyStart);
    for (const RotorKind& kind : rotorKinds)
        for (int n = kind.countOn(*p.profile); n > 0; --n) {
            UnitState s = wornState(r, kind);
            s.location = p.tail;
            s.installed = first.addDays(r.between(0, std::max(0, daysBetween(first, g.today.addDays(-1)))));
            if (kind.followsEngine && !p.engines.empty()) {
                const int at =
                    p.engineMinutesAt(p.engines.front(), std::max(s.installed, p.engines.front().counters.installed));
                s.carried = p.engines.front().counters.minutesNow - at;
                s.reading = hoursText(at);
            } else {
                const int at = p.airframeMinutesAt(s.installed);
                s.carried = p.airframe.minutesNow - at;
                s.reading = hoursText(at);
            }
            writeRotorUnit(g, kind, p.profile->type, s, p.owner, r);
        }
}

void writeOffAircraftRotorUnits(Generation& g, const AircraftProfile& profile) {
    Random r = g.random.fork(0x0FF + static_cast<std::uint64_t>(profile.typeCode));
    for (std::string_view location : offAircraftLocations)
        for (const RotorKind& kind : rotorKinds) {
            if (kind.countOn(profile) == 0) continue;
            UnitState s = wornState(r, kind);
            s.location = location;
            s.installed = g.today.addDays(-r.between(10, 700));
            writeRotorUnit(g, kind, profile.type, s, "1", r);
        }
}

}  // namespace mxbook::fleet
