#include <algorithm>
#include <climits>

#include "mxbook/conventions.h"

namespace mxbook {

namespace {

std::string correctedHours(db::DataSet& dataSet, int fieldIndex, long long change) {
    const db::Field field = dataSet.field(fieldIndex);
    if (field.isNull()) return std::string(operating_time::doubleZero);
    const Minutes stored = operating_time::parseHoursBeforeLastThree(field.asText());
    return operating_time::format(stored + Minutes(change));
}

int correctedCount(db::DataSet& dataSet, int fieldIndex, long long change) {
    const db::Field field = dataSet.field(fieldIndex);
    if (field.isNull()) return 0;
    const long long value = static_cast<long long>(field.asInt()) + change;
    return static_cast<int>(std::clamp<long long>(value, 0, INT_MAX));
}

}  // namespace

std::string FunHourCorrectFromVS(db::DataSet& dataSet, int fieldIndex, int minutes) {
    return correctedHours(dataSet, fieldIndex, -static_cast<long long>(minutes));
}

std::string FunHourCorrectToVS(db::DataSet& dataSet, int fieldIndex, int minutes) {
    return correctedHours(dataSet, fieldIndex, minutes);
}

int FunIntegerCorrectFromVS(db::DataSet& dataSet, int fieldIndex, int count) {
    return correctedCount(dataSet, fieldIndex, -static_cast<long long>(count));
}

int FunIntegerCorrectToVS(db::DataSet& dataSet, int fieldIndex, int count) {
    return correctedCount(dataSet, fieldIndex, count);
}

}  // namespace mxbook
