// Calendar life: what is left of a limit "YY.MM", how long a unit has been
// in service, and the date by which it must come off.
#include <cctype>

#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"
#include "remainders.h"

namespace mxbook {

namespace {

int monthNumber(Date date) { return date.year() * 12 + date.month(); }

// Months from the date's month to this month; the days do not count.
int monthsSince(Date start) { return monthNumber(host().today()) - monthNumber(start); }

std::string duration(int months) {
    return std::to_string(months / 12) + FunBookYear(months) + std::to_string(months % 12) + "м.";
}

// "5.6" and "05.06" alike: years before the first ".", at most two characters of months after it.
int limitMonthsAtPoint(const std::string& limit) {
    const auto point = limit.find('.');
    if (point == std::string::npos) throw ConversionError(limit, "calendar limit");
    return parseInt(limit.substr(0, point)) * 12 +
           parseInt(characters(std::string_view(limit).substr(point + 1), 0, 2));
}

// "YY.MM" by position: years are characters 1 and 2, months 4 and 5,
// whatever stands at 3 ("05г06" too).
Date plusLimitByPosition(Date date, const std::string& limit) {
    const auto part = [&](std::size_t at) {
        const std::string_view digits = characters(limit, at, 2);
        if (digits.size() != 2 || !std::isdigit(static_cast<unsigned char>(digits[0])) ||
            !std::isdigit(static_cast<unsigned char>(digits[1])))
            throw ConversionError(limit, "calendar limit");
        return parseInt(digits);
    };
    return date.addYears(part(0)).addMonths(part(3));
}

std::string shortDate(Date date) { return formatDate(date, "dd.mm.yy"); }

// A date as it reads back from its "dd.mm.yy" text.
Date readBack(Date date) {
    FormatSettings twoDigitYears = host().formatSettings();
    twoDigitYears.shortDateFormat = "dd.mm.yy";
    return parseShortDate(shortDate(date), twoDigitYears);
}

}  // namespace

std::string FunBookYear(int months) {
    const std::string years = std::to_string(months / 12);
    if (years == "11" || years == "12" || years == "13" || years == "14") return "л. ";
    const char last = years.back();
    return last >= '1' && last <= '4' ? "г. " : "л. ";
}

std::optional<int> remainingMonths(db::DataSet& row, int calendarLimitColumn, int startDateColumn) {
    const db::Field limit = row.field(calendarLimitColumn);
    const db::Field start = row.field(startDateColumn);
    if (limit.isNull() || start.isNull()) return std::nullopt;
    return limitMonthsAtPoint(limit.asText()) - monthsSince(start.asDate());
}

std::string FunOstatLet(db::DataSet& row, int calendarLimitColumn, int startDateColumn) {
    return remaining::calendarLeftText(remainingMonths(row, calendarLimitColumn, startDateColumn));
}

std::string remaining::calendarLeftText(std::optional<int> months) {
    return months && *months > 0 ? duration(*months) : "0";
}

std::string FunNarabLet(db::DataSet& row, int startDateColumn) {
    const db::Field start = row.field(startDateColumn);
    if (start.isNull()) return "0";
    const int run = monthsSince(start.asDate());
    return run > 0 ? duration(run) : "0";
}

std::string FunDataSniatia(db::DataSet& row, int lastOverhaulDateColumn, int overhaulCountColumn,
                           int manufactureDateColumn, int intervalLimitColumn, int totalLimitColumn) {
    const std::optional<Date> date = removalDate(row, lastOverhaulDateColumn, overhaulCountColumn,
                                                 manufactureDateColumn, intervalLimitColumn, totalLimitColumn);
    return date ? shortDate(*date) : std::string();
}

std::optional<Date> removalDate(db::DataSet& row, int lastOverhaulDateColumn, int overhaulCountColumn,
                                int manufactureDateColumn, int intervalLimitColumn, int totalLimitColumn) {
    const db::Field overhauled = row.field(lastOverhaulDateColumn);
    const db::Field interval = row.field(intervalLimitColumn);
    const db::Field total = row.field(totalLimitColumn);
    if ((interval.isNull() && total.isNull()) || overhauled.isNull()) return std::nullopt;
    const std::string intervalLimit = interval.isNull() ? "00.00" : interval.asText();
    const db::Field manufacturedField = row.field(manufactureDateColumn);
    const Date manufactured = manufacturedField.isNull() ? Date() : manufacturedField.asDate();
    const db::Field count = row.field(overhaulCountColumn);
    if ((count.isNull() || count.asInt() == 0) || overhauled.asDate() == manufactured)
        return plusLimitByPosition(manufactured, intervalLimit);
    const Date byInterval = plusLimitByPosition(overhauled.asDate(), intervalLimit);
    const Date byTotal = total.isNull() || totalLimitColumn == intervalLimitColumn
                             ? byInterval
                             : plusLimitByPosition(manufactured, total.asText());
    // Compared as their "dd.mm.yy" texts read back, as the removal date always was.
    return readBack(byTotal) < readBack(byInterval) ? byTotal : byInterval;
}

}  // namespace mxbook
