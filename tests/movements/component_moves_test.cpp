// Installing components on an aircraft and taking them off, on flight
// records made for each case. Today is 15.03.2024 (the fake host's).
#include <gtest/gtest.h>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"

namespace mxbook {
namespace {

constexpr const char* tail = "RA-1";
const Date march10 = Date::fromYmd(2024, 3, 10);

class ComponentMovesTest : public testing::RemainingLifeTest {
protected:
    void SetUp() override {
        RemainingLifeTest::SetUp();
        aircraft(tail, "500:00", 100);
    }

    void flight(int day, const char* air, const char* ground = "0:00", int landings = 1) {
        insert("SPRAVKA", {{"DATA_POLETA", Date::fromYmd(2024, 3, day)},
                           {"TIP_VS", "Ми-8МТВ-1"},
                           {"BORTOVOI_NOMER", tail},
                           {"V_VOZDUHE", air},
                           {"NA_ZEMLE", ground},
                           {"KOL_VO_POSADOK", landings}});
    }

    // A component counted in hours (or landings, `unit` 1) with its own counters.
    db::DataSet& component(const char* sinceNew, const char* sinceOverhaul, int unit = 0,
                           testing::Columns more = {}) {
        testing::Columns columns{{"TIP_VS", "Ми-8МТВ-1"},          {"NAZVANIE", "Насос"},
                                 {"ZAVODSKOI_NOMER", "123"},        {"EDINICA_NARABOTKI", unit},
                                 {"NARABOTKA_SNE", sinceNew},       {"NARABOTKA_PPR", sinceOverhaul},
                                 {"PLAN_DVIG_VSU", 0},              {"NEPRIAMOI_UCHET_NAR_AGREGATA", 0}};
        for (auto& [name, value] : more) {  // given values replace the defaults
            std::erase_if(columns, [&](const auto& column) { return column.first == name; });
            columns.emplace_back(name, value);
        }
        return row("AGREGAT", insert("AGREGAT", columns));
    }

    static std::string counters(db::DataSet& unit) {
        std::string text;
        for (int column : {16, 17, 18, 21}) text += unit.field(column).asText() + ";";
        return text;
    }
};

TEST_F(ComponentMovesTest, InstallationCarriesWhatTheAircraftFlewSince) {
    flight(11, "1:30");
    flight(12, "2:45");
    flight(13, "0:50");
    db::DataSet& unit = component("100:00", "10:00");
    FunMoveAgregatToVS(connection(), unit, tail, march10);
    EXPECT_EQ(counters(unit), "494:55;105:05;15:05;;");  // 1:30 + 2:45 + 0:50 = 5:05
    EXPECT_TRUE(host().shown.empty());

    db::DataSet& removed = component("100:00", "10:00");
    FunMoveAgregatFromVS(connection(), removed, "Ми-8МТВ-1", tail, march10);
    EXPECT_EQ(counters(removed), ";94:55;4:55;;");
}

TEST_F(ComponentMovesTest, GroundMinutesAreWeightedAndRoundedPerFlight) {
    insert("TIPOVYE_DANNYE_VS", {{"TIP_VS", "Ми-8МТВ-1"}, {"ZEMLIA_AGREGATY", "1"}, {"KOL_VO_ZEMLIA_AGREGATY", 0.5}});
    flight(11, "1:00", "0:25");  // 60 + 12.5 -> 73
    flight(12, "0:40", "0:03");  // 40 + 1.5 -> 42; on the sum it would be 114
    db::DataSet& unit = component("0:00", "0:00");
    FunMoveAgregatToVS(connection(), unit, tail, march10);
    EXPECT_EQ(unit.field(17).asText(), "1:55");
}

TEST_F(ComponentMovesTest, AFlightOnTheMoveDayIsAskedAboutOnce) {
    insert("ETAAGREGAT", {{"ID", 1}, {"ID_NAME", 7}, {"NAZVANIE", "Насос ЭЦН"}, {"CHERT_NOMER", "8А-1"}});
    flight(10, "1:00");
    flight(10, "0:20");
    flight(12, "0:30");
    const struct {
        bool install;
        Answer answer;
        const char* sinceNew;
        const char* unitText;
    } cases[] = {
        {true, Answer::no, "10:30", "«!!! !!! №123»?"},  // No leaves the day out
        {true, Answer::yes, "11:50", "«!!! !!! №123»?"},
        {false, Answer::yes, "9:30", "«Насос ЭЦН 8А-1 № 123»?"},  // Yes leaves the day out
        {false, Answer::no, "8:10", "«Насос ЭЦН 8А-1 № 123»?"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.install ? "install " : "remove ") + (c.answer == Answer::yes ? "yes" : "no"));
        host().shown.clear();
        host().answers = {c.answer};
        db::DataSet& unit = component("10:00", "10:00", 0, {{"ID_NAME", c.install ? 0 : 7}});
        if (c.install)
            FunMoveAgregatToVS(connection(), unit, tail, march10);
        else
            FunMoveAgregatFromVS(connection(), unit, "Ми-8", tail, march10);
        EXPECT_EQ(unit.field(17).asText(), c.sinceNew);
        ASSERT_EQ(host().shown.size(), 1u);
        const auto& asked = host().shown.front();
        EXPECT_EQ(asked.text, std::string("10.03.2024 ") + (c.install ? "Ми-8МТВ-1" : "Ми-8") +
                                  " №RA-1 выполнял полёт.\r\nУчесть налет этого дня в наработке\r\n" + c.unitText);
        EXPECT_EQ(asked.caption, "Внимание!");
        EXPECT_EQ(asked.flags, box::yesNo | box::iconQuestion);
        EXPECT_EQ(asked.owner, host().foreground);
    }
}

TEST_F(ComponentMovesTest, WhatIsCarriedFollowsTheUnitsKind) {
    flight(9, "5:00", "0:00", 9);  // before the move: never carried
    flight(12, "0:30", "0:00", 2);
    flight(13, "0:20", "0:00", 3);
    const testing::Columns oil{{"NARAB_MASLA", "10:00"}, {"DATA_ZAMENY_MASLA", Date::fromYmd(2024, 1, 1)}};
    const struct {
        const char* what;
        int unit;
        testing::Columns more;
        bool install;
        const char* expected;  // 16;17;18;21;
    } cases[] = {
        {"landings", 1, {}, true, "95;25;15;;"},
        {"derived from the aircraft", 0, {{"NEPRIAMOI_UCHET_NAR_AGREGATA", 1}}, true, "499:10;20:00;10:00;;"},
        {"oil", 0, oil, true, "499:10;20:50;10:50;10:50;"},
        {"oil, derived", 0, {{"NEPRIAMOI_UCHET_NAR_AGREGATA", 1}, oil[0], oil[1]}, true, "499:10;20:00;10:00;10:00;"},
        {"landings, removed", 1, oil, false, ";15;5;9:10;"},
        {"landings on an engine, removed", 1, {{"PLAN_DVIG_VSU", 1}, oil[0], oil[1]}, false, ";20;10;9:10;"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        db::DataSet& unit = c.unit == 1 ? component("20", "10", 1, c.more) : component("20:00", "10:00", 0, c.more);
        if (c.install)
            FunMoveAgregatToVS(connection(), unit, tail, march10);
        else
            FunMoveAgregatFromVS(connection(), unit, "Ми-8МТВ-1", tail, march10);
        EXPECT_EQ(counters(unit), c.expected);
    }
}

TEST_F(ComponentMovesTest, NothingIsCarriedFromBeforeTheOverhaulOrWhenNothingWasFlown) {
    aircraft("RA-2", "300:00", 40, Date::fromYmd(2024, 3, 12));
    insert("SPRAVKA", {{"DATA_POLETA", march10}, {"BORTOVOI_NOMER", "RA-2"}, {"V_VOZDUHE", "1:00"}});
    insert("SPRAVKA", {{"DATA_POLETA", Date::fromYmd(2024, 3, 12)}, {"BORTOVOI_NOMER", "RA-2"}, {"V_VOZDUHE", "0:45"}});
    db::DataSet& unit = component("1:00", "1:00");
    FunMoveAgregatToVS(connection(), unit, "RA-2", march10);
    EXPECT_EQ(counters(unit), "299:15;1:45;1:45;;");
    EXPECT_TRUE(host().shown.empty());  // the move day is before the overhaul: no question

    db::DataSet& today = component("1:00", "1:00");
    FunMoveAgregatToVS(connection(), today, tail, Date::fromYmd(2024, 3, 15));
    EXPECT_EQ(counters(today), "500:00;1:00;1:00;;");  // the aircraft's counter as it stands
}

TEST_F(ComponentMovesTest, AMalformedCounterLeavesTheRowAsItWas) {
    flight(11, "1:00");
    db::DataSet& unit = component("100:00", "abc");
    try {
        FunMoveAgregatToVS(connection(), unit, tail, march10);
        FAIL() << "moved";
    } catch (const ConversionError& error) {
        EXPECT_NE(std::string(error.what()).find("NARABOTKA_PPR"), std::string::npos) << error.what();
    }
    EXPECT_EQ(unit.state(), db::DataSet::State::browse);
    EXPECT_EQ(counters(unit), ";100:00;abc;;");
    db::DataSet notAUnit(connection(), "select * from REESTR");
    notAUnit.open();
    EXPECT_THROW(FunMoveAgregatToVS(connection(), notAUnit, tail, march10), ArgumentError);
}

}  // namespace
}  // namespace mxbook
