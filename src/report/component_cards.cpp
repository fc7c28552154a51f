// The cards of a general component and of a main-rotor hub: one report
// table, the hub's card the component's with its own rules for limits,
// removal date and a second oil block.
#include "card.h"
#include "mxbook/host.h"
#include "mxbook/oil.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::report {

namespace {

// AGREGAT and VTULKA_NV share these columns.
enum : int {
    id = 0, aircraftType = 1, manufactured = 6, overhaulPlant = 7, overhauled = 9, overhaulCount = 10,
    onAircraftCheck = 11, totalLimit = 12, totalCalendar = 13, intervalLimit = 14, intervalCalendar = 15,
    sinceNew = 17, sinceOverhaul = 18, oilTypeNumber = 20, oilTime = 21, oilChanged = 22, measure = 24,
    installed = 26, location = 27, carrierKind = 28, carrierSerial = 29, offAircraftCheck = 31, catalogueKey = 34,
    derived = 39, locationDetail = 40,
};
// The component's own.
enum : int { firstLimit = 43, firstCalendar = 44, calendarFromInstallation = 45 };
// The hub's own.
enum : int {
    secondOilTypeNumber = 42,
    secondOilTime = 43,
    secondOilChanged = 44,
    hubFirstLimit = 48,
    hubFirstCalendar = 49
};

bool derivedOnAircraft(const Card& card) { return !card.inStorage() && card.equals(derived, 1); }

// The start of the total calendar life (C) and of the life since overhaul (D).
int totalStart(const Card& card) {
    if (!card.isSet(calendarFromInstallation) || !card.row.field(calendarFromInstallation).asBool())
        return manufactured;
    return card.overhauls() > 0 ? manufactured : installed;
}
int intervalStart(const Card& card) {
    return card.isSet(calendarFromInstallation) && card.row.field(calendarFromInstallation).asBool() ? installed
                                                                                                     : overhauled;
}

// The operating time, derived from the carrier where the unit takes it from there.
Fill operatingTime(int column, int source, Condition condition) {
    return fill::computedWhen(column, when::all({when::set(source), std::move(condition)}),
                              [source](Card& card) -> Cell {
                                  if (derivedOnAircraft(card)) return FunNepNarAgr(card.connection, card.row, source);
                                  return card.text(source);
                              });
}

// The engine or APU that carries the unit, or its aircraft, or its place off the aircraft.
Fill carrierText() {
    return fill::computed(31, {aircraftType, location}, [](Card& card) -> Cell {
        const db::Field serial = card.row.field(carrierSerial);
        const std::string serialText = serial.isNull() ? "" : trim(serial.asText());
        if (serialText.empty() || serialText == "0") {
            if (!card.inStorage()) return card.text(aircraftType) + " " + card.text(location);
            if (!card.isSet(locationDetail)) return std::nullopt;
            return card.text(location) + " " + card.text(locationDetail);
        }
        const char* sql =
            card.equals(carrierKind, 1)
                ? "select NAZVANIE_DVIGATELYA, ZAVODSKOI_NOMER from DVIGATEL where ZAVODSKOI_NOMER = :key "
                  "order by ID"
            : card.equals(carrierKind, 2)
                ? "select NAZVANIE, ZAVODSKOY_NOMER from VSU where ZAVODSKOY_NOMER = :key order by ID"
                : nullptr;
        if (!sql) return std::nullopt;
        const std::optional<std::vector<Cell>>& carrier = card.lookUp(sql, carrierSerial);
        if (!carrier) return std::nullopt;
        return carrier->at(0).value_or("") + " №" + carrier->at(1).value_or("");
    });
}

// The fills both cards share; each has its catalogue and its limits until the first overhaul.
std::vector<Fill> sharedFills(const std::string& catalogueTable, int firstLimitColumn, int firstCalendarColumn) {
    using namespace fill;
    std::vector<Fill> fills = copies({{1, id}, {4, 4}, {5, 5}, {6, manufactured}, {8, 8}, {10, overhaulCount},
                                      {11, installed}, {13, totalLimit}, {17, intervalLimit}, {21, measure},
                                      {22, 16}, {27, 19}, {30, oilChanged}, {33, location}});
    fills.push_back(copyWhen(7, overhauled, when::set(overhaulPlant)));
    fills.push_back(copyWhen(9, overhauled, when::overhauled()));
    fills.push_back(limitText(15, totalCalendar));
    fills.push_back(limitText(19, intervalCalendar));
    fills.push_back(operatingTime(23, sinceNew, [](const Card&) { return true; }));
    fills.push_back(operatingTime(24, sinceOverhaul, when::overhauled()));
    fills.push_back(oilType(28, oilTypeNumber));
    const std::string catalogue = "select * from " + catalogueTable + " where ID_NAME = :key order by ID_NAME";
    fills.push_back(lookedUp(2, catalogueKey, catalogue, 14));
    fills.push_back(lookedUp(3, catalogueKey, catalogue, 2));
    fills.push_back(carrierText());
    fills.push_back(copy(37, firstLimitColumn));
    fills.push_back(limitText(38, firstCalendarColumn));
    return fills;
}

std::vector<Fill> componentFills() {
    using namespace fill;
    std::vector<Fill> fills = sharedFills("ETAAGREGAT", firstLimit, firstCalendar);
    fills.push_back({12, [](Card& card) -> Cell {
                         if (!card.inStorage()) return card.isSet(onAircraftCheck) ? Cell(card.text(onAircraftCheck))
                                                                                   : std::nullopt;
                         if (!card.isSet(offAircraftCheck)) return std::nullopt;
                         return formatDate(card.row.field(offAircraftCheck).asDate(), fullYear);
                     }});
    // Hours or a count by the unit's measure; nothing for any other measure.
    const auto left = [](Card& card, int limit, int used) -> Cell {
        if (card.equals(measure, 0)) return FunOstatChas(card.row, limit, used);
        if (card.equals(measure, 1)) return FunOstatInteger(card.row, limit, used);
        return std::nullopt;
    };
    fills.push_back(
        computed(14, {totalLimit, sinceNew}, [left](Card& card) { return left(card, totalLimit, sinceNew); }));
    fills.push_back(computed(18, {sinceOverhaul}, [left](Card& card) {
        return left(card, card.choose({firstLimit, intervalLimit}), sinceOverhaul);
    }));
    fills.push_back(computed(16, {totalCalendar, manufactured}, [](Card& card) -> Cell {
        return FunOstatLet(card.row, totalCalendar, totalStart(card));
    }));
    fills.push_back(computed(20, {overhauled}, [](Card& card) -> Cell {
        return FunOstatLet(card.row, card.choose({firstCalendar, intervalCalendar}), intervalStart(card));
    }));
    fills.push_back(computed(25, {sinceOverhaul}, [](Card& card) -> Cell {
        return FunPPRPlanDliaSniat(card.connection, card.row, card.text(aircraftType), card.text(location));
    }));
    fills.push_back({26, [](Card& card) -> Cell {
                         const int calendar = card.equals(measure, 2) ? totalCalendar
                                                                      : card.choose({firstCalendar, intervalCalendar});
                         if (!card.inStorage() && card.isSet(intervalStart(card)))
                             return FunDataSniatia(card.row, intervalStart(card), overhaulCount, totalStart(card),
                                                   calendar, totalCalendar);
                         if (card.inStorage() && card.isSet(overhauled))
                             return FunDataSniatia(card.row, overhauled, overhaulCount, manufactured, calendar,
                                                   totalCalendar);
                         return std::nullopt;
                     }});
    fills.push_back(computedWhen(29, when::all({when::set(oilChanged), derivedOnAircraft}), [](Card& card) -> Cell {
        return FunNarMasloAgregat(card.connection, card.row, card.text(location), host().today());
    }));
    fills.push_back(copyWhen(29, oilTime, [](const Card& card) {
        return !(card.isSet(oilChanged) && derivedOnAircraft(card));
    }));
    fills.push_back(copy(32, 25));
    return fills;
}

std::vector<Fill> hubFills() {
    using namespace fill;
    std::vector<Fill> fills = sharedFills("ETA_VTULKA_NV", hubFirstLimit, hubFirstCalendar);
    fills.push_back(computedWhen(14, when::all({when::set(sinceNew), when::equals(measure, 0)}),
                                 [](Card& card) -> Cell { return FunOstatChas(card.row, totalLimit, sinceNew); }));
    fills.push_back(computed(18, {sinceOverhaul}, [](Card& card) -> Cell {
        return FunOstatChas(card.row, card.choose({hubFirstLimit, intervalLimit}), sinceOverhaul);
    }));
    fills.push_back(computed(16, {totalCalendar, manufactured},
                             [](Card& card) -> Cell { return FunOstatLet(card.row, totalCalendar, manufactured); }));
    fills.push_back(computed(20, {overhauled}, [](Card& card) -> Cell {
        return FunOstatLet(card.row, card.choose({hubFirstCalendar, intervalCalendar}), overhauled);
    }));
    fills.push_back(computed(25, {sinceOverhaul}, [](Card& card) -> Cell {
        return FunPPRPlanDliaSniatVtNV(card.connection, card.row, card.text(aircraftType), card.text(location));
    }));
    fills.push_back(computed(26, {overhauled}, [](Card& card) -> Cell {
        const int calendar =
            card.equals(measure, 2) ? totalCalendar : card.choose({hubFirstCalendar, intervalCalendar});
        return FunDataSniatia(card.row, overhauled, overhaulCount, manufactured, calendar, totalCalendar);
    }));
    // Each oil block: the oil time since its change while the hub is on an
    // aircraft and takes its time from there, else the stored one.
    const auto oilBlock = [&fills](int column, int time, int changed) {
        fills.push_back(computedWhen(column, when::all({when::set(changed), derivedOnAircraft}),
                                     [time, changed](Card& card) -> Cell {
                                         return FunNarMasloVtNV(card.connection, card.row, card.text(location), time,
                                                                changed, host().today());
                                     }));
        fills.push_back(copyWhen(column, time, [changed](const Card& card) {
            return !(card.isSet(changed) && derivedOnAircraft(card));
        }));
    };
    oilBlock(29, oilTime, oilChanged);
    fills.push_back(oilType(34, secondOilTypeNumber));
    oilBlock(35, secondOilTime, secondOilChanged);
    fills.push_back(copy(36, secondOilChanged));
    return fills;
}

}  // namespace

const CardKind& componentCard() {
    static const CardKind card{.source = "select * from AGREGAT where ID = :id",
                               .table = "REPORT_AGREGAT_PODROBNO",
                               .locationColumn = location,
                               .overhaulCountColumn = overhaulCount,
                               .fills = componentFills()};
    return card;
}

const CardKind& hubCard() {
    static const CardKind card{.source = "select * from VTULKA_NV where ID = :id",
                               .table = "REPORT_AGREGAT_PODROBNO",
                               .locationColumn = location,
                               .overhaulCountColumn = overhaulCount,
                               .fills = hubFills()};
    return card;
}

}  // namespace mxbook::report
