#include "indirect_kinds.h"

#include <algorithm>
#include <vector>

#include "carrier_rule.h"
#include "carriers.h"
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

// The carrying engine's counters, in the order its lookup gives them.
namespace engine {
constexpr std::size_t hoursSinceOverhaul = 0;
constexpr std::size_t cyclesSinceOverhaul = 1;
}  // namespace engine

// The aircraft's counters since overhaul: hours at 0, landings at 1.
std::optional<CarrierRow> registerCounters(const Queries& queries, const db::DataSet& row, int tailColumn) {
    const db::Value keys[] = {row.field(typeColumn).value(), row.field(tailColumn).value()};
    return findCarrier(queries, aircraftCounters, keys);
}

// The carrying engine's hours (0) and cycles (1) since overhaul.
std::optional<CarrierRow> carryingEngine(const Queries& queries, const db::DataSet& row, int locationColumn) {
    const db::Value keys[] = {row.field(locationColumn).value(), row.field(component::carrierSerial).value()};
    return findCarrier(queries, engineAtLocation, keys);
}

// A missing carrier row is an error, as its counter cannot be read.
// The aircraft's counter; `tail` names it when the register has no such row.
Minutes carrierHours(const std::optional<CarrierRow>& carrier, int column, const std::string& tail) {
    if (!carrier) throw ConversionError(tail, "tail number of an aircraft in the register");
    return hoursOf((*carrier)[static_cast<std::size_t>(column)]);
}

int carrierCount(const std::optional<CarrierRow>& carrier, int column, const std::string& tail) {
    if (!carrier) throw ConversionError(tail, "tail number of an aircraft in the register");
    return intOrZero((*carrier)[static_cast<std::size_t>(column)]);
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
        const auto aircraft = registerCounters(queries, row, kind.locationColumn);
        const std::string tail = row.field(kind.locationColumn).asText();
        if (hours)
            return hoursTotal(hoursOf(row.field(own)), carrierHours(aircraft, 0, tail), installReading(row, kind));
        return countTotal(countOf(row, own), carrierCount(aircraft, 1, tail), countOf(row, kind.installReadingColumn));
    }
    const auto engineRow = carryingEngine(queries, row, kind.locationColumn);
    if (!engineRow) return row.field(own).asText();  // no such engine: the counter as booked
    if (hours)
        return hoursTotal(hoursOf(row.field(own)), hoursOf((*engineRow)[engine::hoursSinceOverhaul]),
                          installReading(row, kind));
    return countTotal(countOf(row, own), intOrZero((*engineRow)[engine::cyclesSinceOverhaul]),
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

const void* Queries::attachment() const {
    return connection_ ? connection_->impl().get() : static_cast<const void*>(row_->connectionImpl().get());
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

int intOrZero(const db::DataSet& row, int column) { return intOrZero(row.field(column).value()); }

int intOrZero(const db::Value& value) { return value.isNull() ? 0 : value.asInt(); }

int countOf(const db::DataSet& row, int column) { return countOf(row.field(column).value()); }

int countOf(const db::Value& value) { return value.isNull() ? 0 : parseInt(value.asText()); }

Minutes hoursOf(const db::Value& value) {
    return value.isNull() ? Minutes() : operating_time::parseHoursUpToColon(value.asText());
}

std::string derivedOperatingTime(const Queries& queries, db::DataSet& row, const IndirectKind& kind, int ownColumn) {
    const int own = kind.fixedOwnColumn >= 0 ? kind.fixedOwnColumn : ownColumn;
    if (kind.generalComponent) return generalComponentTime(queries, row, kind, own);
    const auto aircraft = registerCounters(queries, row, kind.locationColumn);
    return hoursTotal(hoursOf(row.field(own)), carrierHours(aircraft, 0, row.field(kind.locationColumn).asText()),
                      installReading(row, kind));
}

}  // namespace mxbook::remaining
