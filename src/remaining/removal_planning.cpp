// Removal planning: one algorithm over the table of the kinds of unit.
#include <algorithm>
#include <array>

#include "carriers.h"
#include "indirect_kinds.h"
#include "mxbook/error.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

using Derivation = std::string (*)(db::Connection&, db::DataSet&, int);

constexpr int none = -1;

// One member of the removal planning, by the positions of its unit table.
struct PlanningKind {
    std::array<std::string_view, 2> tables;
    std::string_view start = {};    // the result without a register row or on a failed null test
    int overhaulCount = none;       // none: the limit is fixed (`between`)
    int firstOverhaulLimit = none;  // governs while the count is 0 and it is set
    int betweenLimit = none;        // otherwise
    int totalLimit = none;          // when the chosen limit is null
    int usedColumn = none;
    int totalUsedColumn = none;  // the used column with the total limit, where it differs
    bool testsNulls = false;     // register hours, limit and used null: the starting value
    int flagColumn = none;       // 1: the used value is derived
    Derivation derive = nullptr;
    bool landingsByCounterKind = false;  // column 24 = 1: planned in landings
};

// clang-format off
constexpr PlanningKind kinds[] = {
    {.tables = {"AGREGAT"}, .overhaulCount = 10, .firstOverhaulLimit = 43, .betweenLimit = 14, .totalLimit = 12,
     .usedColumn = 18, .testsNulls = true, .flagColumn = 39, .derive = &FunNepNarAgr,
     .landingsByCounterKind = true},
    {.tables = {"VTULKA_NV"}, .overhaulCount = 10, .firstOverhaulLimit = 48, .betweenLimit = 14, .totalLimit = 12,
     .usedColumn = 18, .testsNulls = true, .flagColumn = 39, .derive = &FunNepNarAgr},
    {.tables = {"LOPAST"}, .overhaulCount = 25, .firstOverhaulLimit = 28, .betweenLimit = 30, .totalLimit = 10,
     .usedColumn = 26, .testsNulls = true, .flagColumn = 18, .derive = &FunNepNarLopast},
    {.tables = {"ZCU"}, .overhaulCount = 19, .firstOverhaulLimit = 27, .betweenLimit = 20, .totalLimit = 4,
     .usedColumn = 22, .totalUsedColumn = 11, .flagColumn = 16, .derive = &FunNepNarZCU},
    {.tables = {"HVOSTOVOY_VINT"}, .overhaulCount = 13, .firstOverhaulLimit = 25, .betweenLimit = 21,
     .totalLimit = 19, .usedColumn = 30, .totalUsedColumn = 29, .flagColumn = 27, .derive = &FunNepNarHvostVint},
    {.tables = {"LEBEDKA"}, .overhaulCount = 13, .firstOverhaulLimit = 36, .betweenLimit = 21, .totalLimit = 19,
     .usedColumn = 28, .flagColumn = 25, .derive = &FunNepNarLebedka},
    {.tables = {"DVIGATEL", "REDUCTOR"}, .start = operating_time::zero, .overhaulCount = 9, .firstOverhaulLimit = 14,
     .betweenLimit = 16, .usedColumn = 12},
    {.tables = {"VOZDUSHNY_VINT"}, .start = operating_time::zero, .betweenLimit = 23, .usedColumn = 30},
    {.tables = {"SHLANG"}, .betweenLimit = 5, .usedColumn = 12},
};
// clang-format on

const PlanningKind& kindOf(std::string_view table) {
    const auto found = std::find_if(std::begin(kinds), std::end(kinds), [&](const PlanningKind& k) {
        return std::find(k.tables.begin(), k.tables.end(), table) != k.tables.end();
    });
    if (table.empty() || found == std::end(kinds)) throw ArgumentError(std::string(table) + " has no removal planning");
    return *found;
}

namespace component {
constexpr int counterKind = 24;
constexpr int hours = 0;
constexpr int landings = 1;
}  // namespace component

// The aircraft's hours (0) and landings (1) since its last overhaul.
std::optional<remaining::CarrierRow> registerCounters(db::Connection& connection, const std::string& type,
                                                      const std::string& tail) {
    const db::Value keys[] = {db::Value(type), db::Value(tail)};
    return remaining::findCarrier(remaining::Queries(connection), remaining::aircraftCounters, keys);
}

// A null overhaul count is none: never overhauled.
bool neverOverhauled(const db::DataSet& row, int column) { return remaining::intOrZero(row, column) == 0; }

// Whole hours, or a count; a null fails as an empty text does.
long long wholeNumber(const db::Field& field) { return parseInt(field.asText()); }

Minutes hoursOf(std::string_view text) { return operating_time::parseHoursColonTwoDigits(text); }

std::string plan(db::Connection& connection, db::DataSet& row, const PlanningKind& kind, const std::string& type,
                 const std::string& tail) {
    int limitColumn = kind.betweenLimit;
    int usedColumn = kind.usedColumn;
    if (kind.firstOverhaulLimit != none && neverOverhauled(row, kind.overhaulCount) &&
        !row.field(kind.firstOverhaulLimit).isNull())
        limitColumn = kind.firstOverhaulLimit;
    if (kind.totalLimit != none && row.field(limitColumn).isNull()) {
        limitColumn = kind.totalLimit;
        if (kind.totalUsedColumn != none) usedColumn = kind.totalUsedColumn;
    }
    const std::string start(kind.start);
    const auto aircraft = registerCounters(connection, type, tail);
    if (!aircraft) return start;
    const db::Field limit = row.field(limitColumn);
    const db::Field used = row.field(usedColumn);
    const db::Value& aircraftHours = (*aircraft)[0];
    if (kind.testsNulls && (aircraftHours.isNull() || limit.isNull() || used.isNull())) return start;

    int counterKind = component::hours;
    if (kind.landingsByCounterKind) {
        const db::Field counter = row.field(component::counterKind);
        if (counter.isNull()) return start;
        counterKind = counter.asInt();
        if (counterKind != component::hours && counterKind != component::landings) return start;
    }
    // Flag 1 derives; 0, null or any other keeps the stored text, as does a
    // derivation that knows no value for the unit.
    std::string usedText = used.asText();
    if (kind.flagColumn != none) {
        const db::Field flag = row.field(kind.flagColumn);
        if (!flag.isNull() && flag.asInt() == 1) {
            std::string derived = kind.derive(connection, row, usedColumn);
            if (!derived.empty()) usedText = std::move(derived);
        }
    }
    if (counterKind == component::landings) {
        const long long planned = wholeNumber(limit) - parseInt(usedText) + remaining::intOrZero((*aircraft)[1]);
        return std::to_string(std::max(planned, 0LL));
    }
    const Minutes planned = Minutes(wholeNumber(limit) * 60) - hoursOf(usedText) + hoursOf(aircraftHours.asText());
    return operating_time::format(planned);  // "0:00" below zero
}

}  // namespace

std::string plannedRemovalReading(db::Connection& connection, db::DataSet& row, std::string_view table,
                                  const std::string& aircraftType, const std::string& tailNumber) {
    return plan(connection, row, kindOf(table), aircraftType, tailNumber);
}

std::string FunPPRPlanDliaSniat(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "AGREGAT", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatVtNV(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                    const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "VTULKA_NV", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatZCU(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                   const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "ZCU", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatDvigRed(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                       const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "DVIGATEL", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatHvostVint(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                         const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "HVOSTOVOY_VINT", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatLopast(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                      const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "LOPAST", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatLebedka(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                       const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "LEBEDKA", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatVint(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                    const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "VOZDUSHNY_VINT", aircraftType, tailNumber);
}
std::string FunPPRPlanDliaSniatShlang(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                      const std::string& tailNumber) {
    return plannedRemovalReading(connection, row, "SHLANG", aircraftType, tailNumber);
}

std::string FunNarPlanSniatDvig(db::DataSet& row, int usedColumn, int limitColumn, const std::string& carrierCounter) {
    const Minutes used = hoursOf(row.field(usedColumn).asText());
    const long long limit = wholeNumber(row.field(limitColumn));
    return operating_time::format(Minutes(limit * 60) - used + hoursOf(carrierCounter));
}

}  // namespace mxbook
