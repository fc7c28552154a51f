#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/remaining_life.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

// Register rows: hour limits 16 and 18 against the hours at 20 and 22,
// landing limits 60 and 61 against the landings at 21 and 23, calendar
// limits 17 and 19 from the dates at 6 and 8. Today is 15 March 2024.
using TightestLimitTest = testing::RemainingLifeTest;

TEST_F(TightestLimitTest, HoursOfTheTighterPairAnOverrunIncluded) {
    const struct {
        const char* what;
        db::Value limitA, usedA, limitB, usedB;
        const char* expected;
        bool secondPairGiven = true;
    } cases[] = {
        {"both left", 10, "8:00", 5, "4:15", "0:45"},
        {"A overrun", 10, "15:00", 10, "1:40", "00:00"},
        {"A overrun by a minute", 10, "10:01", 10, "1:40", "00:00"},
        {"no second pair", 10, "8:00", 5, "4:15", "2:00", false},
        {"B missing", 10, "8:00", 5, db::Value(), "2:00"},
        {"A missing", db::Value(), "8:00", 5, "4:15", "0:45"},
        {"both missing", db::Value(), "8:00", db::Value(), "4:15", "00:00"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        db::DataSet& aircraft = row("REESTR", insert("REESTR", {{"NAZNACHENNY_RESURS", c.limitA},
                                                                {"NARABOTKA_SNE_CHASOV", c.usedA},
                                                                {"MEGREMONTNY_CHAS", c.limitB},
                                                                {"NARABOTKA_PPR_CHASOV", c.usedB}}));
        EXPECT_EQ(
            c.secondPairGiven ? FunOstatChasMin(aircraft, 16, 20, 18, 22) : FunOstatChasMin(aircraft, 16, 20, -1, 22),
            c.expected);
    }
}

// Each pair is derived from its own used column: the aircraft flew 100 h
// since installation, so 1000 - 200:00 and 1100 - 1050:00 are left.
TEST_F(TightestLimitTest, EachPairDerivesItsOwnHours) {
    aircraft("RA-22451", "1100:00");
    db::DataSet& component = row("AGREGAT", insert("AGREGAT", {{"TIP_VS", "Ми-8МТВ-1"},
                                                               {"GDE_STOIT", "RA-22451"},
                                                               {"EDINICA_NARABOTKI", 0},
                                                               {"PLAN_DVIG_VSU", 0},
                                                               {"NEPRIAMOI_UCHET_NAR_AGREGATA", 1},
                                                               {"NARABOTKA_VS_PRI_USTANOVKE", "1000:00"},
                                                               {"RESURS_OBSH", 1000},
                                                               {"NARABOTKA_SNE", "100:00"},
                                                               {"RESURS_MR", 1100},
                                                               {"NARABOTKA_PPR", "950:00"}}));
    EXPECT_EQ(FunOstatChasMin(component, 12, 17, 14, 18), "50:00");
    EXPECT_EQ(remainingMinutes(component, 14, 18), Minutes(50 * 60));
    EXPECT_EQ(remainingMinutes(component, 12, 18), Minutes(-50 * 60));  // overdue in the derived hours alone
}

TEST_F(TightestLimitTest, CountsClearEachOverrunBeforeComparing) {
    const struct {
        db::Value limitA, usedA, limitB, usedB;
        const char* expected;
    } cases[] = {
        {100, 90, db::Value(), 5, "10"}, {db::Value(), 90, 50, 43, "7"},        {100, 105, 50, 20, "0"},
        {100, 90, 50, 60, "0"},          {db::Value(), 1, 5, db::Value(), "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.limitA.asText() + "/" + c.usedA.asText());
        db::DataSet& aircraft = row("REESTR", insert("REESTR", {{"NAZNACHENNY_RESURS_POSADKI", c.limitA},
                                                                {"NARABOTKA_SNE_POSADKI", c.usedA},
                                                                {"MEGREMONTNY_RESURS_POSADKI", c.limitB},
                                                                {"NARABOTKA_PPR_POSADKI", c.usedB}}));
        EXPECT_EQ(FunOstatIntegerMin(aircraft, 60, 21, 61, 23), c.expected);
    }
    db::DataSet& aircraft = row("REESTR", insert("REESTR", {{"NAZNACHENNY_RESURS_POSADKI", 10}}));
    EXPECT_THROW(FunOstatIntegerMin(aircraft, 60, 21, -1, 23), ArgumentError);
}

// A component counted in landings, booked 500 of 500, derived 480 (the
// aircraft's landings stand 20 below its reading): the tightest-limit count
// derives without testing the booked count first.
TEST_F(TightestLimitTest, DerivedCountsWithoutTheBookedTest) {
    aircraft("RA-22451", "0:00", 1000);
    const auto component = [&](int flag, const char* used) -> db::DataSet& {
        return row("AGREGAT", insert("AGREGAT", {{"TIP_VS", "Ми-8МТВ-1"},
                                                 {"GDE_STOIT", "RA-22451"},
                                                 {"EDINICA_NARABOTKI", 1},
                                                 {"PLAN_DVIG_VSU", 0},
                                                 {"NEPRIAMOI_UCHET_NAR_AGREGATA", flag},
                                                 {"NARABOTKA_VS_PRI_USTANOVKE", "1020"},
                                                 {"RESURS_OBSH", 500},
                                                 {"NARABOTKA_SNE", used}}));
    };
    db::DataSet& derived = component(1, "500");
    EXPECT_EQ(FunOstatIntegerMin(derived, 12, 17, 12, 17), "20");
    EXPECT_EQ(FunOstatInteger(derived, 12, 17), "0");
    EXPECT_EQ(FunOstatIntegerMin(component(2, "300"), 12, 17, 12, 17), "0");  // a flag neither 0 nor 1 leaves nothing
}

TEST_F(TightestLimitTest, CalendarLifeOfTheTighterPair) {
    const struct {
        const char* what;
        const char* limitA;
        Date startA;
        const char* expected;
        int limitB = 19;
    } cases[] = {
        {"both left", "10.00", Date::fromYmd(2015, 11, 1), "0л. 10м."},  // 120 - 100 against 60 - 50
        {"A overrun by a month", "01.00", Date::fromYmd(2023, 2, 1), "0"},
        {"no second pair", "10.00", Date::fromYmd(2015, 11, 1), "1г. 8м.", -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        db::DataSet& aircraft = row("REESTR", insert("REESTR", {{"NAZNACHENNY_SROK", c.limitA},
                                                                {"DATA_VYPUSKA", c.startA},
                                                                {"MEGREMONTNY_SROK", "05.00"},
                                                                {"DATA_REMONTA", Date::fromYmd(2020, 1, 1)}}));
        EXPECT_EQ(FunOstatLetMin(aircraft, 17, 6, c.limitB, 8), c.expected);
    }
}

}  // namespace
}  // namespace mxbook
