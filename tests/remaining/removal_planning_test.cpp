#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/remaining_life.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

using Member = std::string (*)(db::Connection&, db::DataSet&, const std::string&, const std::string&);

// A unit row, the aircraft's counters since overhaul (register row of tail
// RA-1) and the planned reading; nullptr: ConversionError.
struct Case {
    const char* what;
    Member member;
    const char* table;
    testing::Columns unit;
    const char* expected;
    db::Value aircraftHours = "1200:15";
    const char* tail = "RA-1";
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.what; }

// clang-format off
// Component columns: 10 overhauls, 43 first-overhaul limit, 14 limit between, 18 used, 24 counter kind.
testing::Columns component(db::Value overhauls, db::Value used, int counterKind = 0) {
    return {{"KOL_VO_REMONTOV", overhauls}, {"RESURS_DO_PR", 2000}, {"RESURS_MR", 3000}, {"NARABOTKA_PPR", used},
            {"EDINICA_NARABOTKI", counterKind}};
}

const Case cases[] = {
    {"hours", &FunPPRPlanDliaSniat, "AGREGAT", component(1, "2500:30"), "1699:45"},
    {"below zero", &FunPPRPlanDliaSniat, "AGREGAT", component(1, "3100:00"), "0:00", "50:00"},
    {"landings", &FunPPRPlanDliaSniat, "AGREGAT", component(1, "2900", 1), "400"},
    {"never overhauled", &FunPPRPlanDliaSniat, "AGREGAT", component(0, "1000:00"), "1100:00", "100:00"},
    {"no register row", &FunPPRPlanDliaSniat, "AGREGAT", component(1, "1:00"), "", "1:00", "RA-9"},
    {"null used, tested", &FunPPRPlanDliaSniat, "AGREGAT", component(1, db::Value()), ""},
    // Installed when the aircraft had 1000:00; at 1100:00 its 400:00 are 500:00.
    {"flag 1", &FunPPRPlanDliaSniat, "AGREGAT",
     {{"TIP_VS", "Ми-8МТВ-1"}, {"GDE_STOIT", "RA-1"}, {"RESURS_MR", 1000}, {"NARABOTKA_PPR", "400:00"},
      {"NARABOTKA_VS_PRI_USTANOVKE", "1000:00"}, {"EDINICA_NARABOTKI", 0}, {"PLAN_DVIG_VSU", 0},
      {"KOL_VO_REMONTOV", 1}, {"NEPRIAMOI_UCHET_NAR_AGREGATA", 1}}, "1600:00", "1100:00"},
    {"ZCU total against 11", &FunPPRPlanDliaSniatZCU, "ZCU",
     {{"KOL_VO_REMONTOV", 0}, {"RESURS_OBSH", 5000}, {"NARABOTKA_SNE", "4000:00"}, {"NARABOTKA_PPR", "1:00"}},
     "1010:00", "10:00"},
    {"null used, untested", &FunPPRPlanDliaSniatLebedka, "LEBEDKA", {{"RESURS_MR", 100}}, nullptr},
    {"gearbox, no register row", &FunPPRPlanDliaSniatDvigRed, "REDUCTOR", {{"MEGREM_RESURS", 1}}, "0:00", "1:00", "RA-9"},
};
// clang-format on

class RemovalPlanningTest : public testing::RemainingLifeTest, public ::testing::WithParamInterface<Case> {};

TEST_P(RemovalPlanningTest, PlannedReading) {
    const Case& c = GetParam();
    insert("REESTR", {{"TIP_VS", "Ми-8МТВ-1"},
                      {"BORTOVOI_NOMER", "RA-1"},
                      {"NARABOTKA_PPR_CHASOV", c.aircraftHours},
                      {"NARABOTKA_PPR_POSADKI", 300}});
    db::DataSet& unit = row(c.table, insert(c.table, c.unit));
    if (!c.expected) {
        EXPECT_THROW(c.member(connection(), unit, "Ми-8МТВ-1", c.tail), ConversionError);
        return;
    }
    EXPECT_EQ(c.member(connection(), unit, "Ми-8МТВ-1", c.tail), c.expected);
    EXPECT_EQ(plannedRemovalReading(connection(), unit, c.table, "Ми-8МТВ-1", c.tail), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Members, RemovalPlanningTest, ::testing::ValuesIn(cases));

using RemovalPlanningFunctionsTest = testing::RemainingLifeTest;

TEST_F(RemovalPlanningFunctionsTest, FromAGivenCounterUsedColumnFirstAndNoMemberForATable) {
    db::DataSet& engine = row("DVIGATEL", insert("DVIGATEL", {{"NARABOTKA_PPR", "10:00"}, {"MEGREM_RESURS", 20}}));
    EXPECT_EQ(FunNarPlanSniatDvig(engine, 12, 16, "100:30"), "110:30");
    EXPECT_THROW(FunNarPlanSniatDvig(engine, 16, 12, "100:30"), ConversionError);
    EXPECT_THROW(FunNarPlanSniatDvig(engine, 12, 999, "100:30"), ArgumentError);
    EXPECT_THROW(plannedRemovalReading(connection(), engine, "REESTR", "Ми-8МТВ-1", "RA-1"), ArgumentError);
}

}  // namespace
}  // namespace mxbook
