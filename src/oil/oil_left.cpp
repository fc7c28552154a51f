// What is left of an oil limit, and the operating time at which the oil is due.
#include <optional>

#include "mxbook/oil.h"
#include "mxbook/operating_time.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

using namespace operating_time;

// The limit less the oil time; the oil time is "H:MM".
Minutes left(std::string_view oilTime, int limitHours) {
    return Minutes(static_cast<long long>(limitHours) * 60) - parseHoursColonTwoDigits(oilTime);
}

std::string leftText(std::string_view oilTime, int limitHours, std::string_view nothingLeft) {
    const Minutes remaining = left(oilTime, limitHours);
    return remaining > Minutes(0) ? format(remaining) : std::string(nothingLeft);
}

std::string changePoint(std::string_view oilTime, std::string_view currentTime, int limitHours) {
    return format(left(oilTime, limitHours) + parseHoursColonTwoDigits(currentTime));
}

// The oil-time text of a column; none when it is null or blank.
std::optional<std::string> columnText(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    if (field.isNull()) return std::nullopt;
    std::string text = field.asText();
    if (trim(text).empty()) return std::nullopt;
    return text;
}

}  // namespace

std::string FunOstatMaslo(db::DataSet& row, int column, int limitHours) {
    const auto oilTime = columnText(row, column);
    return oilTime ? leftText(*oilTime, limitHours, doubleZero) : std::string(doubleZero);
}

std::string FunOstatMasloAgregat(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                 int limitHours, Date endDate) {
    return leftText(FunNarMasloAgregat(connection, row, tailNumber, endDate), limitHours, zero);
}

std::string FunOstatMasloHvostVint(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                   int limitHours, Date endDate) {
    return leftText(FunNarMasloHvostVint(connection, row, tailNumber, endDate), limitHours, zero);
}

std::string FunOstatMasloVtNV(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                              int limitHours, int baseColumn, int dateColumn, Date endDate) {
    return leftText(FunNarMasloVtNV(connection, row, tailNumber, baseColumn, dateColumn, endDate), limitHours, zero);
}

std::string FunNarPlanSniatMaslo(db::DataSet& row, int column, const std::string& currentTime, int limitHours) {
    // An oil time not known gives no change point rather than the latest possible one.
    const auto oilTime = columnText(row, column);
    return oilTime ? changePoint(*oilTime, currentTime, limitHours) : std::string();
}

std::string FunNarPlanSniatMasloAgregat(const std::string& oilTime, const std::string& currentTime, int limitHours) {
    return changePoint(oilTime, currentTime, limitHours);
}

std::string FunNarPlanSniatMasloHvostVint(const std::string& oilTime, const std::string& currentTime,
                                          int limitHours) {
    return changePoint(oilTime, currentTime, limitHours);
}

}  // namespace mxbook
