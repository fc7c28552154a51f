// Hours and counts left of a limit, with the used value derived from the
// carrier where the unit's kind, location and flag say so.
#include <algorithm>

#include "mxbook/remaining_life.h"
#include "remainders.h"

namespace mxbook {

bool isOffAircraft(std::string_view location) {
    return std::find(std::begin(offAircraftLocations), std::end(offAircraftLocations), location) !=
           std::end(offAircraftLocations);
}

std::optional<Minutes> remainingMinutes(db::DataSet& row, int limitColumn, int usedColumn) {
    const remaining::HoursDerivation derivation(row);
    return remaining::minutesLeft(row, limitColumn, usedColumn,
                                  [&](db::DataSet& unit, int column) { return derivation.usedText(unit, column); });
}

std::optional<long long> remainingCount(db::DataSet& row, int limitColumn, int usedColumn) {
    return remaining::countLeft(row, limitColumn, usedColumn, remaining::countRule(row));
}

std::string FunOstatChas(db::DataSet& row, int limitColumn, int usedColumn) {
    return remaining::hoursLeftText(remainingMinutes(row, limitColumn, usedColumn));
}

std::string FunOstatInteger(db::DataSet& row, int limitColumn, int usedColumn) {
    const remaining::CountRule rule = remaining::countRule(row);
    // The test is made on the booked count, the result on the derived one.
    if (rule == remaining::CountRule::derived)
        return remaining::countLeftText(
            remaining::derivedCountLeft(row, limitColumn, usedColumn, remaining::derivedComponentTime));
    return remaining::countLeftText(remaining::countLeft(row, limitColumn, usedColumn, rule));
}

}  // namespace mxbook
