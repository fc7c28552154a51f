#include <gtest/gtest.h>

#include "mxbook/date.h"
#include "mxbook/error.h"

namespace mxbook {
namespace {

TEST(Date, DefaultIsDayZeroOfSerialDates) {
    const Date zero;
    EXPECT_EQ(zero.year(), 1899);
    EXPECT_EQ(zero.month(), 12);
    EXPECT_EQ(zero.day(), 30);
    // 1 January 1900 is serial day 2 in the host's date numbering.
    EXPECT_EQ(Date::fromYmd(1900, 1, 1).serial(), 2);
    EXPECT_EQ(Date::fromSerial(45352), Date::fromYmd(2024, 3, 1));
}

TEST(Date, RejectsDaysThatDoNotExist) {
    EXPECT_THROW(Date::fromYmd(2024, 2, 30), ConversionError);
    EXPECT_THROW(Date::fromYmd(2023, 2, 29), ConversionError);
    EXPECT_THROW(Date::fromYmd(2024, 13, 1), ConversionError);
    EXPECT_THROW(Date::fromYmd(2024, 4, 31), ConversionError);
    EXPECT_THROW(Date::fromYmd(0, 1, 1), ConversionError);
    EXPECT_NO_THROW(Date::fromYmd(2024, 2, 29));
}

struct CalendarCase {
    Date start;
    int count;
    Date expected;
};

TEST(Date, AddMonthsKeepsTheDayOrTakesTheMonthsLast) {
    const CalendarCase cases[] = {
        {Date::fromYmd(2024, 1, 31), 1, Date::fromYmd(2024, 2, 29)},
        {Date::fromYmd(2023, 1, 31), 1, Date::fromYmd(2023, 2, 28)},
        {Date::fromYmd(2024, 3, 31), 1, Date::fromYmd(2024, 4, 30)},
        {Date::fromYmd(2024, 5, 15), 7, Date::fromYmd(2024, 12, 15)},
        {Date::fromYmd(2024, 5, 15), 8, Date::fromYmd(2025, 1, 15)},
        {Date::fromYmd(2024, 3, 31), -1, Date::fromYmd(2024, 2, 29)},
        {Date::fromYmd(2024, 1, 10), -13, Date::fromYmd(2022, 12, 10)},
        {Date::fromYmd(2024, 8, 31), 30, Date::fromYmd(2027, 2, 28)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.count);
        EXPECT_EQ(c.start.addMonths(c.count), c.expected);
    }
}

TEST(Date, AddYearsMovesLeapDayToTheLastOfFebruary) {
    const CalendarCase cases[] = {
        {Date::fromYmd(2024, 2, 29), 1, Date::fromYmd(2025, 2, 28)},
        {Date::fromYmd(2024, 2, 29), 4, Date::fromYmd(2028, 2, 29)},
        {Date::fromYmd(2020, 6, 30), -3, Date::fromYmd(2017, 6, 30)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.count);
        EXPECT_EQ(c.start.addYears(c.count), c.expected);
    }
}

TEST(Date, DaysBetweenIsSignedWholeDays) {
    EXPECT_EQ(daysBetween(Date::fromYmd(2024, 2, 28), Date::fromYmd(2024, 3, 1)), 2);
    EXPECT_EQ(daysBetween(Date::fromYmd(2023, 2, 28), Date::fromYmd(2023, 3, 1)), 1);
    EXPECT_EQ(daysBetween(Date::fromYmd(2024, 3, 1), Date::fromYmd(2024, 2, 28)), -2);
    EXPECT_EQ(daysBetween(Date::fromYmd(2023, 1, 1), Date::fromYmd(2024, 1, 1)), 365);
    EXPECT_EQ(Date::fromYmd(2024, 12, 31).addDays(1), Date::fromYmd(2025, 1, 1));
}

TEST(Time, SplitsIntoHoursMinutesAndSeconds) {
    const Time time = Time::fromHms(13, 7, 59, 1234);
    EXPECT_EQ(time.hours(), 13);
    EXPECT_EQ(time.minutes(), 7);
    EXPECT_EQ(time.seconds(), 59);
    EXPECT_EQ(time.fraction(), 1234);
    EXPECT_EQ(time.wholeMinutes(), 13 * 60 + 7);
    EXPECT_THROW(Time::fromHms(24, 0), ConversionError);
    EXPECT_THROW(Time::fromHms(1, 60), ConversionError);
}

TEST(Time, TicksWrapRoundMidnight) {
    EXPECT_EQ(Time::fromTicks(Time::ticksPerDay + 60 * Time::ticksPerSecond), Time::fromHms(0, 1));
    EXPECT_EQ(Time::fromTicks(-60 * Time::ticksPerSecond), Time::fromHms(23, 59));
}

}  // namespace
}  // namespace mxbook
