// Calendar days and times of day.
#pragma once

#include <chrono>
#include <compare>
#include <cstdint>

namespace mxbook {

// A calendar day. A default-constructed Date is 30.12.1899, day zero of the
// serial day numbers that the host's date values count from; an empty date
// field reads as that day.
class Date {
public:
    constexpr Date() = default;

    // Throws ConversionError when the day does not exist.
    static Date fromYmd(int year, int month, int day);
    static bool isValid(int year, int month, int day);
    static constexpr Date fromSerial(int serial) { return Date(serial); }
    static Date fromSysDays(std::chrono::sys_days days);

    int year() const;
    int month() const;
    int day() const;
    // Days since 30.12.1899.
    constexpr int serial() const { return serial_; }
    std::chrono::sys_days sysDays() const;

    Date addDays(int days) const { return Date(serial_ + days); }
    // A day that the target month lacks becomes that month's last day
    // (31.01 plus one month is 28.02 or 29.02).
    Date addMonths(int months) const;
    Date addYears(int years) const;

    friend constexpr auto operator<=>(Date, Date) = default;

private:
    constexpr explicit Date(int serial) : serial_(serial) {}
    int serial_ = 0;
};

// Whole days from `from` to `to`; negative when `to` comes first.
constexpr int daysBetween(Date from, Date to) { return to.serial() - from.serial(); }

// A time of day, to the ten-thousandth of a second as Firebird keeps it.
class Time {
public:
    static constexpr std::int64_t ticksPerSecond = 10000;
    static constexpr std::int64_t ticksPerDay = 86400 * ticksPerSecond;

    constexpr Time() = default;
    // Throws ConversionError when a part is out of range.
    static Time fromHms(int hours, int minutes, int seconds = 0, int fraction = 0);
    // Ticks beyond a day wrap round midnight.
    static Time fromTicks(std::int64_t ticks);

    int hours() const { return static_cast<int>(ticks_ / (3600 * ticksPerSecond)); }
    int minutes() const { return static_cast<int>(ticks_ / (60 * ticksPerSecond) % 60); }
    int seconds() const { return static_cast<int>(ticks_ / ticksPerSecond % 60); }
    // Ten-thousandths of a second.
    int fraction() const { return static_cast<int>(ticks_ % ticksPerSecond); }
    constexpr std::int64_t ticks() const { return ticks_; }
    // Hours * 60 + minutes; the seconds are dropped.
    int wholeMinutes() const { return hours() * 60 + minutes(); }

    friend constexpr auto operator<=>(Time, Time) = default;

private:
    constexpr explicit Time(std::int64_t ticks) : ticks_(ticks) {}
    std::int64_t ticks_ = 0;
};

struct Timestamp {
    Date date;
    Time time;

    friend constexpr auto operator<=>(const Timestamp&, const Timestamp&) = default;
};

}  // namespace mxbook
