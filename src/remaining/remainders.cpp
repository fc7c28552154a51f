#include "remainders.h"

#include <algorithm>

#include "mxbook/remaining_life.h"
#include "mxbook/text.h"
#include "units/unit_kinds.h"

namespace mxbook::remaining {

namespace {

namespace component {
constexpr int carrierKind = units::componentColumns.carrierKind.position;
constexpr int carrierSerial = units::componentColumns.carrierSerial.position;
constexpr int onEngine = 1;
}  // namespace component

// A unit is derived when its row carries its kind's flag column and it is on
// an aircraft; a general component on an engine follows the engine wherever
// the engine is (in the warehouse, in repair). A null location is on no list.
bool derivationApplies(const db::DataSet& row, const IndirectKind& kind) {
    if (!row.hasField(kind.flagName)) return false;
    const db::Field location = row.field(kind.locationColumn);
    if (location.isNull() || !isOffAircraft(location.asText())) return true;
    if (!kind.generalComponent) return false;
    const db::Field carrier = row.field(component::carrierKind);
    return !carrier.isNull() && carrier.asInt() == component::onEngine && !row.field(component::carrierSerial).isNull();
}

// 0, 1, or -1 for a null or any other flag.
int flagOf(const db::DataSet& row, const IndirectKind& kind) {
    const db::Field flag = row.field(kind.flagColumn);
    if (flag.isNull()) return -1;
    const int value = flag.asInt();
    return value == 0 || value == 1 ? value : -1;
}

bool eitherNull(const db::DataSet& row, int limitColumn, int usedColumn) {
    const db::Field limit = row.field(limitColumn);
    const db::Field used = row.field(usedColumn);
    return limit.isNull() || used.isNull();
}

}  // namespace

std::string derivedComponentTime(db::DataSet& row, int usedColumn) {
    return derivedOperatingTime(Queries(row), row, indirectKind("AGREGAT"), usedColumn);
}

std::string storedText(db::DataSet& row, int usedColumn) { return row.field(usedColumn).asText(); }

HoursDerivation::HoursDerivation(const db::DataSet& row) {
    for (const IndirectKind& kind : indirectKinds())
        if (derivationApplies(row, kind) && flagOf(row, kind) == 1) kinds_.push_back(&kind);
}

std::string HoursDerivation::usedText(db::DataSet& row, int usedColumn) const {
    std::string used = storedText(row, usedColumn);
    for (const IndirectKind* kind : kinds_) {
        std::string derived = derivedOperatingTime(Queries(row), row, *kind, usedColumn);
        if (!derived.empty()) used = std::move(derived);  // an unknown counter or carrier kind keeps the booked hours
    }
    return used;
}

CountRule countRule(const db::DataSet& row) {
    const IndirectKind& components = indirectKind("AGREGAT");
    if (!derivationApplies(row, components)) return CountRule::stored;
    switch (flagOf(row, components)) {
    case 0: return CountRule::stored;
    case 1: return CountRule::derived;
    default: return CountRule::nothingLeft;
    }
}

std::optional<Minutes> minutesLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& used) {
    if (eitherNull(row, limitColumn, usedColumn)) return std::nullopt;
    return Minutes(static_cast<long long>(row.field(limitColumn).asInt()) * 60) -
           operating_time::parseHoursColonTwoDigits(used(row, usedColumn));
}

std::optional<long long> countLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& used) {
    if (eitherNull(row, limitColumn, usedColumn)) return std::nullopt;
    return static_cast<long long>(row.field(limitColumn).asInt()) - parseInt(used(row, usedColumn));
}

std::optional<long long> countLeft(db::DataSet& row, int limitColumn, int usedColumn, CountRule rule) {
    switch (rule) {
    case CountRule::stored: return countLeft(row, limitColumn, usedColumn, storedText);
    case CountRule::derived: return countLeft(row, limitColumn, usedColumn, derivedComponentTime);
    case CountRule::nothingLeft: break;
    }
    if (eitherNull(row, limitColumn, usedColumn)) return std::nullopt;
    return 0;
}

std::optional<long long> derivedCountLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& derived) {
    const auto booked = countLeft(row, limitColumn, usedColumn, storedText);
    if (!booked || *booked <= 0) return booked;
    return countLeft(row, limitColumn, usedColumn, derived);
}

std::string hoursLeftText(std::optional<Minutes> left) {
    return left ? operating_time::formatOrDoubleZero(*left) : std::string(operating_time::doubleZero);
}

std::string countLeftText(std::optional<long long> left) { return std::to_string(std::max(left.value_or(0), 0LL)); }

}  // namespace mxbook::remaining
