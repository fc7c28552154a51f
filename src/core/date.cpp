#include "mxbook/date.h"

#include <algorithm>
#include <string>

#include "mxbook/error.h"

namespace mxbook {

namespace {

namespace chr = std::chrono;
using chr::sys_days;
using chr::year_month;
using chr::year_month_day;
// Member functions named year(), month() and day() hide the chrono types
// inside Date's members, so those use these names.
using Year = chr::year;
using Month = chr::month;
using Day = chr::day;

constexpr sys_days dayZero = sys_days(Year(1899) / chr::December / 30);

year_month_day ymdOf(const Date& date) { return year_month_day(date.sysDays()); }

Date fromYmdClamped(year_month ym, unsigned wantedDay) {
    const unsigned last = static_cast<unsigned>((ym / chr::last).day());
    return Date::fromSysDays(sys_days(ym / Day(std::min(wantedDay, last))));
}

}  // namespace

bool Date::isValid(int y, int m, int d) {
    if (y < 1 || y > 9999 || m < 1 || m > 12 || d < 1 || d > 31) return false;
    return year_month_day(Year(y), Month(static_cast<unsigned>(m)), Day(static_cast<unsigned>(d))).ok();
}

Date Date::fromYmd(int y, int m, int d) {
    if (!isValid(y, m, d))
        throw ConversionError(std::to_string(d) + "." + std::to_string(m) + "." + std::to_string(y), "date");
    return fromSysDays(sys_days(Year(y) / Month(static_cast<unsigned>(m)) / Day(static_cast<unsigned>(d))));
}

Date Date::fromSysDays(sys_days days) { return Date(static_cast<int>((days - dayZero).count())); }

sys_days Date::sysDays() const { return dayZero + chr::days(serial_); }

int Date::year() const { return static_cast<int>(ymdOf(*this).year()); }
int Date::month() const { return static_cast<int>(static_cast<unsigned>(ymdOf(*this).month())); }
int Date::day() const { return static_cast<int>(static_cast<unsigned>(ymdOf(*this).day())); }

Date Date::addMonths(int count) const {
    const year_month_day ymd = ymdOf(*this);
    return fromYmdClamped(ymd.year() / ymd.month() + chr::months(count), static_cast<unsigned>(ymd.day()));
}

Date Date::addYears(int count) const {
    const year_month_day ymd = ymdOf(*this);
    return fromYmdClamped((ymd.year() + chr::years(count)) / ymd.month(), static_cast<unsigned>(ymd.day()));
}

Time Time::fromHms(int h, int m, int s, int fraction) {
    if (h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 59 || fraction < 0 || fraction >= ticksPerSecond)
        throw ConversionError(std::to_string(h) + ":" + std::to_string(m) + ":" + std::to_string(s), "time");
    return Time(((h * 60 + m) * 60 + s) * ticksPerSecond + fraction);
}

Time Time::fromTicks(std::int64_t ticks) {
    ticks %= ticksPerDay;
    if (ticks < 0) ticks += ticksPerDay;
    return Time(ticks);
}

}  // namespace mxbook
