#include "indirect_kinds.h"

#include <algorithm>
#include <vector>

#include "carrier_rule.h"
#include "mxbook/data/value.h"
#include "mxbook/error.h"
#include "mxbook/operating_time.h"
#include "mxbook/text.h"
#include "units/unit_kinds.h"

namespace mxbook::remaining {

namespace {

// Each kind of unit whose flag column names a derivation of its own.
std::vector<IndirectKind> derivedKinds() {
    std::vector<IndirectKind> all;
    for (const units::UnitKind& unit : units::unitKinds()) {
        if (!unit.derivation) continue;
        const units::Derivation& derivation = *unit.derivation;
        all.push_back({.table = unit.table,
                       .flagName = unit.flag->name,
                       .locationColumn = unit.location.position,
                       .flagColumn = unit.flag->position,
                       .installReadingColumn = unit.installReading->position,
                       .blankReadingIsZero = derivation.blankReadingIsZero,
                       .registerGivesLandings = derivation.registerGivesLandings,
                       .fixedOwnColumn = derivation.fixedOwnColumn,
                       .generalComponent = derivation.generalComponent});
    }
    return all;
}

// A general component says what it counts and what carries it.
namespace component {
constexpr int counterKind = 24;    // 0 hours, 1 landings
constexpr int carrierKind = 28;    // 0 airframe, 1 engine
constexpr int carrierSerial = 29;  // the carrying engine's serial number
}  // namespace component

// The carrying engine's counters, by position in its row.
namespace engine {
constexpr int hoursSinceOverhaul = 12;
constexpr int cyclesSinceOverhaul = 27;
}  // namespace engine

// The aircraft's counters since overhaul: hours at column 0, landings at 1.
db::DataSet registerCounters(const Queries& queries, const db::DataSet& row, int tailColumn, bool withLandings) {
    const std::string select = withLandings ? "Select NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR"
                                            : "Select NARABOTKA_PPR_CHASOV From REESTR";
    return queries.open(select + " Where TIP_VS=:type And BORTOVOI_NOMER=:tail Order By ID;",
                        {{"type", row.field(typeColumn).asText()}, {"tail", row.field(tailColumn).asText()}});
}

db::DataSet carryingEngine(const Queries& queries, const db::DataSet& row, int locationColumn) {
    return queries.open("Select * From DVIGATEL Where GDE_STOIT=:location And ZAVODSKOI_NOMER=:serial Order By ID;",
                        {{"location", row.field(locationColumn).asText()},
                         {"serial", row.field(component::carrierSerial).asText()}});
}

// A missing carrier row is an error, as its counter cannot be read.
// The aircraft's counter; `tail` names it when the register has no such row.
Minutes carrierHours(db::DataSet& carrier, int column, const std::string& tail) {
    if (carrier.eof()) throw ConversionError(tail, "tail number of an aircraft in the register");
    return hoursOf(carrier.field(column));
}

int carrierCount(db::DataSet& carrier, int column, const std::string& tail) {
    if (carrier.eof()) throw ConversionError(tail, "tail number of an aircraft in the register");
    return intOrZero(carrier, column);
}

Minutes installReading(const db::DataSet& row, const IndirectKind& kind) {
    const db::Field reading = row.field(kind.installReadingColumn);
    if (reading.isNull() || (kind.blankReadingIsZero && reading.asText().empty())) return Minutes();
    return operating_time::parseHoursUpToColon(reading.asText());
}

std::string hoursTotal(Minutes own, Minutes carrierNow, Minutes atInstallation) {
    return operating_time::format(carriedHours(own, carrierNow, atInstallation));
}

std::string countTotal(int own, int carrierNow, int atInstallation) {
    return std::to_string(carriedCount(own, carrierNow, atInstallation));
}

std::string generalComponentTime(const Queries& queries, db::DataSet& row, const IndirectKind& kind, int own) {
    const db::Field counter = row.field(component::counterKind);
    const db::Field carrier = row.field(component::carrierKind);
    if (counter.isNull() || carrier.isNull()) return {};
    const int counts = counter.asInt();
    const int carriedBy = carrier.asInt();
    if ((counts != 0 && counts != 1) || (carriedBy != 0 && carriedBy != 1)) return {};
    const bool hours = counts == 0;
    if (carriedBy == 0) {
        auto aircraft = registerCounters(queries, row, kind.locationColumn, true);
        const std::string tail = row.field(kind.locationColumn).asText();
        if (hours)
            return hoursTotal(hoursOf(row.field(own)), carrierHours(aircraft, 0, tail), installReading(row, kind));
        return countTotal(countOf(row, own), carrierCount(aircraft, 1, tail), countOf(row, kind.installReadingColumn));
    }
    auto engineRow = carryingEngine(queries, row, kind.locationColumn);
    if (engineRow.eof()) return row.field(own).asText();  // no such engine: the counter as booked
    if (hours)
        return hoursTotal(hoursOf(row.field(own)), hoursOf(engineRow.field(engine::hoursSinceOverhaul)),
                          installReading(row, kind));
    return countTotal(countOf(row, own), intOrZero(engineRow, engine::cyclesSinceOverhaul),
                      countOf(row, kind.installReadingColumn));
}

}  // namespace

db::DataSet Queries::open(std::string sql) const {
    db::DataSet query = prepare(std::move(sql));
    query.open();
    return query;
}

db::DataSet Queries::open(std::string sql, Parameters parameters) const {
    db::DataSet query = prepare(std::move(sql));
    for (const auto& [name, value] : parameters) query.setParam(name, value);
    query.open();
    return query;
}

db::DataSet Queries::prepare(std::string sql) const {
    return connection_ ? db::DataSet(*connection_, std::move(sql)) : row_->onSameConnection(std::move(sql));
}

std::span<const IndirectKind> indirectKinds() {
    static const std::vector<IndirectKind> kinds = derivedKinds();
    return kinds;
}

const IndirectKind& indirectKind(std::string_view table) {
    const std::span<const IndirectKind> kinds = indirectKinds();
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [&](const IndirectKind& k) { return k.table == table; });
    if (found == kinds.end())
        throw ArgumentError(std::string(table) + " has no indirect-accounting column of a known kind of unit");
    return *found;
}

int intOrZero(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return field.isNull() ? 0 : field.asInt();
}

int countOf(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return field.isNull() ? 0 : parseInt(field.asText());
}

Minutes hoursOf(const db::Field& field) {
    return field.isNull() ? Minutes() : operating_time::parseHoursUpToColon(field.asText());
}

std::string derivedOperatingTime(const Queries& queries, db::DataSet& row, const IndirectKind& kind, int ownColumn) {
    const int own = kind.fixedOwnColumn >= 0 ? kind.fixedOwnColumn : ownColumn;
    if (kind.generalComponent) return generalComponentTime(queries, row, kind, own);
    auto aircraft = registerCounters(queries, row, kind.locationColumn, kind.registerGivesLandings);
    return hoursTotal(hoursOf(row.field(own)), carrierHours(aircraft, 0, row.field(kind.locationColumn).asText()),
                      installReading(row, kind));
}

}  // namespace mxbook::remaining
