// The fleet status begins each aircraft with its next forms, for a type with
// a maintenance programme.
#include <gtest/gtest.h>

#include "../remaining/remaining_fixture.h"
#include "mxbook/status.h"

namespace mxbook {
namespace {

class FormLinesTest : public testing::RemainingLifeTest {};

// Interval 100 h, "Ф-1" every 50 h, tolerances 10 h; 90:00 flown, nothing performed:
// the periodic form (step 1: CASE1) at 100:00 is 10:00 away, a tenth of its interval;
// the "Ф-1" at 50:00 is 40:00 past, beyond its tolerance.
TEST_F(FormLinesTest, NextPeriodicFormByNameAndTheLightOneWithTheTimeLeft) {
    insert("PTO_FORMY", {{"TIP_VS", "Ми-8МТВ-1"}, {"VREMIA_F1", 50}, {"VREMIA_FORMA", 100}, {"DOPUSKI", "10%10"},
                         {"COL_VO_FORMA", 6}, {"CASE0", "Ф-1"}, {"CASE1", "Ф-2"}, {"CASE2", "Ф-1"}});
    for (const char* tail : {"RA-1", "RA-2"})
        insert("REESTR", {{"TIP_VS", tail == std::string("RA-1") ? "Ми-8МТВ-1" : "Ан-2"},
                          {"BORTOVOI_NOMER", tail},
                          {"NARABOTKA_PPR_CHASOV", "90:00"},
                          {"KOL_VO_TO", 0},
                          {"KOL_VO_F1", 0}});
    const std::vector<UnitStatus> lines = fleetStatus(connection(), std::nullopt, StatusOrder::aircraft);
    ASSERT_EQ(lines.size(), 2u) << "an aircraft of a type without a programme has no form lines";
    const struct {
        const char* kind;
        const char* name;
        const char* left;
        double share;
    } expected[] = {{"форма ТО", "Ф-2", "10:00", 0.1}, {"форма Ф-1", "Ф-1", "00:00", 0.0}};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        SCOPED_TRACE(expected[i].kind);
        EXPECT_EQ(lines[i].tailNumber, "RA-1");
        EXPECT_EQ(lines[i].kind, expected[i].kind);
        EXPECT_EQ(lines[i].unit, expected[i].name);
        EXPECT_EQ(lines[i].booked.text, "90:00");
        EXPECT_EQ(lines[i].lifeLeft.text, expected[i].left);
        EXPECT_DOUBLE_EQ(lines[i].tightestShare, expected[i].share);
    }
}

}  // namespace
}  // namespace mxbook
