#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/remaining_life.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

class CalendarLifeTest : public testing::RemainingLifeTest {
protected:
    CalendarLifeTest() { host().todayDate = Date::fromYmd(2024, 1, 2); }

    // A register row: manufacture date at 6, last overhaul at 8, overhauls at
    // 9, total calendar limit at 17, limit between overhauls at 19.
    db::DataSet& aircraftRow(db::Value manufactured, db::Value overhauled, db::Value overhauls, db::Value total,
                             db::Value interval) {
        return row("REESTR", insert("REESTR", {{"DATA_VYPUSKA", manufactured},
                                               {"DATA_REMONTA", overhauled},
                                               {"KOL_VO_REMONTOV", overhauls},
                                               {"NAZNACHENNY_SROK", total},
                                               {"MEGREMONTNY_SROK", interval}}));
    }
};

TEST(BookYear, WordForTheWholeYears) {
    const struct {
        int months;
        const char* word;
    } cases[] = {
        {0, "л. "},   {11, "л. "},  {12, "г. "},   {24, "г. "},   {48, "г. "},   {60, "л. "},
        {132, "л. "}, {156, "л. "}, {168, "л. "},  {179, "л. "},  {180, "л. "},  {240, "л. "},
        {252, "г. "}, {264, "г. "}, {1248, "г. "}, {1332, "г. "}, {1344, "г. "},
    };
    for (const auto& c : cases) EXPECT_EQ(FunBookYear(c.months), c.word) << c.months;
}

TEST_F(CalendarLifeTest, CalendarLifeLeftCountsMonthsNotDays) {
    const struct {
        db::Value limit;
        Date start;
        const char* expected;
    } cases[] = {
        {"05.06", Date::fromYmd(2020, 3, 15), "1г. 8м."},  // 66 months less 46
        {"5.6", Date::fromYmd(2020, 3, 15), "1г. 8м."},
        {"05.06", Date::fromYmd(2020, 3, 31), "1г. 8м."},
        {"10.00", Date::fromYmd(2024, 1, 31), "10л. 0м."},
        {"03.00", Date::fromYmd(2021, 1, 1), "0"},  // exactly used up
        {"03.00", Date::fromYmd(2020, 1, 1), "0"},  // overrun
        {"21.00", Date::fromYmd(2024, 1, 1), "21г. 0м."},
        {db::Value(), Date::fromYmd(2020, 1, 1), "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.limit.asText());
        auto& aircraft = aircraftRow(c.start, db::Value(), 0, c.limit, db::Value());
        EXPECT_EQ(FunOstatLet(aircraft, 17, 6), c.expected);
    }
    EXPECT_EQ(FunOstatLet(aircraftRow(db::Value(), db::Value(), 0, "05.00", db::Value()), 17, 6), "0");
    for (const char* limit : {"5 лет", "05ч06", "05.ч6"}) {  // at the point, and only there
        SCOPED_TRACE(limit);
        EXPECT_THROW(FunOstatLet(aircraftRow(Date::fromYmd(2020, 1, 1), db::Value(), 0, limit, db::Value()), 17, 6),
                     ConversionError);
    }
}

TEST_F(CalendarLifeTest, CalendarTimeRunSinceADate) {
    const struct {
        db::Value start;
        const char* expected;
    } cases[] = {
        {Date::fromYmd(2024, 1, 31), "0"},  // this month
        {Date::fromYmd(2023, 12, 31), "0л. 1м."},
        {Date::fromYmd(2021, 7, 10), "2г. 6м."},
        {Date::fromYmd(1990, 1, 1), "34г. 0м."},
        {Date::fromYmd(2024, 6, 1), "0"},  // in the future
        {db::Value(), "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.start.asText());
        EXPECT_EQ(FunNarabLet(aircraftRow(c.start, db::Value(), 0, db::Value(), db::Value()), 6), c.expected);
    }
}

TEST_F(CalendarLifeTest, RemovalDateIsTheEarlierOfTheTwoLimits) {
    const Date made = Date::fromYmd(2000, 1, 1);
    const struct {
        const char* what;
        db::Value manufactured, overhauled, overhauls, total, interval;
        const char* expected;
    } cases[] = {
        {"never overhauled, month end", Date::fromYmd(2020, 1, 31), Date::fromYmd(2020, 1, 31), 0, "40.00", "00.01",
         "29.02.20"},
        // By position: whatever stands third, "ч" included, separates.
        {"any third character", Date::fromYmd(2020, 1, 31), Date::fromYmd(2020, 1, 31), 0, "40.00", "00ч01",
         "29.02.20"},
        {"total first, any third character", made, Date::fromYmd(2015, 6, 10), 1, "20г00", "08.00", "01.01.20"},
        {"overhauled, interval first", made, Date::fromYmd(2015, 6, 10), 1, "40.00", "08.00", "10.06.23"},
        {"overhauled, total first", made, Date::fromYmd(2015, 6, 10), 1, "20.00", "08.00", "01.01.20"},
        {"overhauled, no total", made, Date::fromYmd(2015, 6, 10), 2, db::Value(), "08.06", "10.12.23"},
        {"overhauled on its manufacture date", made, made, 3, "40.00", "08.00", "01.01.08"},
        {"no interval, never overhauled", made, made, 0, "40.00", db::Value(), "01.01.00"},
        {"no limits", made, made, 0, db::Value(), db::Value(), ""},
        {"no overhaul date", made, db::Value(), 1, "40.00", "08.00", ""},
        // Compared as they read back: 2051 reads back as 1951, before 2049.
        {"read back from two-digit years", made, Date::fromYmd(2040, 1, 1), 1, "51.00", "09.06", "01.01.51"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        auto& aircraft = aircraftRow(c.manufactured, c.overhauled, c.overhauls, c.total, c.interval);
        EXPECT_EQ(FunDataSniatia(aircraft, 8, 9, 6, 19, 17), c.expected);
    }
    // The same column for both limits: the interval counts from the last overhaul.
    auto& sameColumn = aircraftRow(made, Date::fromYmd(2015, 6, 10), 1, "02.00", "08.00");
    EXPECT_EQ(FunDataSniatia(sameColumn, 8, 9, 6, 19, 19), "10.06.23");
    for (const char* interval : {"5.6", "5ч06", "05.0ч"}) {
        SCOPED_TRACE(interval);
        EXPECT_THROW(FunDataSniatia(aircraftRow(made, made, 0, "40.00", interval), 8, 9, 6, 19, 17), ConversionError);
    }
}

}  // namespace
}  // namespace mxbook
