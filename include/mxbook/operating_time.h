// Operating time: whole minutes inside, text of hours and minutes at the
// edges ("7:05", "1234:30"). Every part of the library parses and formats it
// here, with the rule its own algorithm names.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace mxbook {

// A span of operating time, or a correction to one, in whole minutes.
class Minutes {
public:
    constexpr Minutes() = default;
    constexpr explicit Minutes(long long count) : count_(count) {}

    constexpr long long count() const { return count_; }
    // Never below zero: a negative operating time is never shown.
    constexpr Minutes atLeastZero() const { return Minutes(count_ < 0 ? 0 : count_); }

    friend constexpr Minutes operator+(Minutes a, Minutes b) { return Minutes(a.count_ + b.count_); }
    friend constexpr Minutes operator-(Minutes a, Minutes b) { return Minutes(a.count_ - b.count_); }
    constexpr Minutes& operator+=(Minutes other) {
        count_ += other.count_;
        return *this;
    }
    friend constexpr auto operator<=>(Minutes, Minutes) = default;

private:
    long long count_ = 0;
};

namespace operating_time {

// What the corrections and the remaining-hours calculation give for a null
// field or nothing left.
inline constexpr std::string_view doubleZero = "00:00";
// What the derivations and the planning give for zero.
inline constexpr std::string_view zero = "0:00";

// Hours without leading zeros, ":", two digits of minutes: 0:00, 7:05,
// 1234:30. A negative span is written as zero.
std::string format(Minutes minutes);
// As format, but "00:00" when nothing is left (zero or less).
std::string formatOrDoubleZero(Minutes minutes);

// Hours are the characters before the first ":", minutes all characters
// after it: the rule of the calculations, movements and reports.
// Throws ConversionError for a text without ":" or with parts that are not
// integers, or whose total does not fit.
Minutes parseHoursUpToColon(std::string_view text);
// Exactly "H:MM": hours before a ":" that stands three characters before the
// end, two characters of minutes after it; the rule of the remaining hours,
// on which the two rules around it agree.
Minutes parseHoursColonTwoDigits(std::string_view text);
// The rule of an operating time stored on a unit row and added to (the oil
// time, the flight-hours cards): hours before the first ":", minutes the two
// characters after it, whatever follows ("012:07x" is 12:07); a negative
// total is zero.
Minutes parseStoredTime(std::string_view text);
// Hours end three characters before the end and minutes are the last two,
// whatever stands between ("10ч30" is 10:30): the rule of the counter
// corrections. Characters are code points, as text.h counts them.
Minutes parseHoursBeforeLastThree(std::string_view text);

}  // namespace operating_time

}  // namespace mxbook
