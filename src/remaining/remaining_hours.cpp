// Hours and counts left of a limit, with the used value derived from the
// carrier where the unit's kind, location and flag say so.
#include <algorithm>

#include "indirect_kinds.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

namespace component {
constexpr int carrierKind = 28;
constexpr int carrierSerial = 29;
constexpr int onEngine = 1;
}  // namespace component

// A unit is derived when its row carries its kind's flag column and it is on
// an aircraft; a general component on an engine follows the engine wherever
// the engine is (in the warehouse, in repair). A null location is on no list.
bool derivationApplies(const db::DataSet& row, const remaining::IndirectKind& kind) {
    if (!row.hasField(kind.flagName)) return false;
    const db::Field location = row.field(kind.locationColumn);
    if (location.isNull() || !isOffAircraft(location.asText())) return true;
    if (!kind.generalComponent) return false;
    const db::Field carrier = row.field(component::carrierKind);
    return !carrier.isNull() && carrier.asInt() == component::onEngine && !row.field(component::carrierSerial).isNull();
}

// 0, 1, or -1 for a null or any other flag.
int flagOf(const db::DataSet& row, const remaining::IndirectKind& kind) {
    const db::Field flag = row.field(kind.flagColumn);
    if (flag.isNull()) return -1;
    const int value = flag.asInt();
    return value == 0 || value == 1 ? value : -1;
}

}  // namespace

bool isOffAircraft(std::string_view location) {
    return std::find(std::begin(offAircraftLocations), std::end(offAircraftLocations), location) !=
           std::end(offAircraftLocations);
}

std::string FunOstatChas(db::DataSet& row, int limitColumn, int usedColumn) {
    const db::Field limit = row.field(limitColumn);
    const db::Field used = row.field(usedColumn);
    if (limit.isNull() || used.isNull()) return std::string(operating_time::doubleZero);
    std::string usedText = used.asText();
    const remaining::Queries queries(row);
    for (const remaining::IndirectKind& kind : remaining::indirectKinds()) {
        if (!derivationApplies(row, kind) || flagOf(row, kind) != 1) continue;
        const std::string derived = remaining::derivedOperatingTime(queries, row, kind, usedColumn);
        if (!derived.empty()) usedText = derived;  // an unknown counter or carrier kind keeps the booked hours
    }
    const Minutes left =
        Minutes(static_cast<long long>(limit.asInt()) * 60) - operating_time::parseHoursColonTwoDigits(usedText);
    return operating_time::formatOrDoubleZero(left);
}

std::string FunOstatInteger(db::DataSet& row, int limitColumn, int usedColumn) {
    const db::Field limitField = row.field(limitColumn);
    const db::Field usedField = row.field(usedColumn);
    if (limitField.isNull() || usedField.isNull()) return "0";
    const long long limit = limitField.asInt();
    const long long used = parseInt(usedField.asText());
    const remaining::IndirectKind& components = remaining::indirectKind("AGREGAT");
    long long left = 0;
    if (!derivationApplies(row, components)) {
        left = limit - used;
    } else if (const int flag = flagOf(row, components); flag == 0) {
        left = limit - used;
    } else if (flag == 1 && limit - used > 0) {
        // The test is made on the booked count, the result on the derived one.
        const std::string derived =
            remaining::derivedOperatingTime(remaining::Queries(row), row, components, usedColumn);
        left = limit - parseInt(derived);
    }
    return std::to_string(std::max(left, 0LL));
}

}  // namespace mxbook
