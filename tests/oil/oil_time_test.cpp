// Oil time on flight records made for each case. Today is 15.03.2024 (the
// fake host's).
#include <gtest/gtest.h>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/oil.h"

namespace mxbook {
namespace {

using testing::Columns;

Date march(int day) { return Date::fromYmd(2024, 3, day); }

class OilTimeTest : public testing::RemainingLifeTest {
protected:
    // An aircraft of its own type, whose ground time counts for airframe and
    // engine-mounted units with the switch and factor given.
    void aircraftOfType(const std::string& tail, const std::string& type, db::Value groundSwitch = "0",
                        db::Value factor = 0.0, Date repaired = Date()) {
        insert("REESTR", {{"TIP_VS", type},
                          {"BORTOVOI_NOMER", tail},
                          {"DATA_REMONTA", repaired.serial() ? db::Value(repaired) : db::Value()}});
        insert("TIPOVYE_DANNYE_VS", {{"TIP_VS", type},
                                     {"ZEMLIA_AGREGATY", groundSwitch},
                                     {"KOL_VO_ZEMLIA_AGREGATY", factor},
                                     {"ZEMLIA_AGR_DVIG", groundSwitch},
                                     {"KOL_VO_ZEMLIA_AGR_DVIG", factor}});
    }

    void flight(const std::string& tail, Date day, Columns times) {
        times.insert(times.begin(), {{"DATA_POLETA", day}, {"BORTOVOI_NOMER", tail}});
        insert("SPRAVKA", times);
    }

    db::DataSet& unit(const std::string& table, Columns columns) {
        columns.emplace_back("TIP_VS", "T");
        return row(table, insert(table, columns));
    }
};

TEST_F(OilTimeTest, GroundTimeIsWeightedAndRoundedPerFlight) {
    const struct {
        const char* air;
        const char* ground;
        const char* groundSwitch;
        db::Value factor;
        const char* oil;
    } cases[] = {
        {"1:30", "0:40", "1", 0.5, "1:50"},  {"0:00", "0:40", "1", 0.3, "0:12"},
        {"0:00", "0:06", "1", 0.25, "0:02"}, {"0:00", "0:25", "1", 0.3, "0:08"},
        {"1:00", "0:40", "0", 1.0, "1:00"},  {"1:00", "0:40", "1", db::Value(), "1:00"},
        {"1:00", "0:40", " 1", 1.0, "1:00"},  // the switch must be "1" exactly
    };
    int n = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ground);
        const std::string tail = "RA-" + std::to_string(++n);
        aircraftOfType(tail, "T" + std::to_string(n), c.groundSwitch, c.factor);
        flight(tail, march(10), {{"V_VOZDUHE", c.air}, {"NA_ZEMLE", c.ground}});
        flight(tail, march(11), {});  // times not logged count as 0:00
        EXPECT_EQ(FunNarMaslo(connection(), tail, "ZEMLIA_AGREGATY", march(1), 0), c.oil);
    }
}

TEST_F(OilTimeTest, EachKindOfUnitRunsWithItsOwnColumns) {
    aircraftOfType("RA-1", "T");
    flight("RA-1", march(10),
           {{"V_VOZDUHE", "1:00"}, {"V_VOZDUHE_1", "2:00"}, {"V_VOZDUHE_2", "3:00"}, {"V_VOZDUHE_3", "4:00"},
            {"V_VOZDUHE_RED", "5:00"}});
    const struct {
        const char* kind;
        int position;
        const char* oil;
    } cases[] = {{"ZEMLIA_AGREGATY", 2, "1:00"}, {"ZEMLIA_AGR_DVIG", 1, "3:00"}, {"ZEMLIA_DVIGATEL", 2, "4:00"},
                 {"ZEMLIA_DVIGATEL", 7, "2:00"}, {"ZEMLIA_REDUCTOR", 0, "5:00"}};
    for (const auto& c : cases) EXPECT_EQ(FunNarMaslo(connection(), "RA-1", c.kind, march(1), c.position), c.oil);
    EXPECT_EQ(FunNarMaslo(connection(), "RA-1", "ZEMLIA_REDUCTOR", march(11), 0), "0:00");
    EXPECT_EQ(FunNarMaslo(connection(), "RA-9", "ZEMLIA_REDUCTOR", march(1), 0), "00:00");  // not registered
    EXPECT_THROW(FunNarMaslo(connection(), "RA-1", "ZEMLIA_LOPASTY", march(1), 0), ArgumentError);
}

TEST_F(OilTimeTest, AUnitAddsTheFlightsFromTheLaterOfItsChangeAndInstallation) {
    aircraftOfType("RA-1", "T");
    aircraftOfType("RA-2", "T", "0", 0.0, march(14));  // no flight since its repair
    for (int day : {2, 5, 12}) flight("RA-1", march(day), {{"V_VOZDUHE", day == 12 ? "0:05" : "2:00"}});
    flight("RA-2", march(5), {{"V_VOZDUHE", "2:00"}});
    db::DataSet& component =
        unit("AGREGAT", {{"NARAB_MASLA", "012:07"}, {"DATA_ZAMENY_MASLA", march(1)}, {"DATA_USTANOVKI", march(4)}});
    EXPECT_EQ(FunNarMasloAgregat(connection(), component, "RA-1", march(15)), "14:12");
    EXPECT_EQ(FunNarMasloAgregat(connection(), component, "RA-1", march(10)), "14:07");
    EXPECT_EQ(FunNarMasloAgregat(connection(), component, "RA-1", march(3)), "12:07");
    EXPECT_EQ(FunNarMasloAgregat(connection(), component, "RA-2", march(15)), "012:07");  // as stored
    EXPECT_EQ(FunOstatMasloAgregat(connection(), component, "RA-1", 15, march(15)), "0:48");
    EXPECT_EQ(FunOstatMasloAgregat(connection(), component, "RA-1", 14, march(15)), "0:00");

    db::DataSet& unchanged = unit("AGREGAT", {{"DATA_USTANOVKI", march(10)}});
    EXPECT_EQ(FunNarMasloAgregat(connection(), unchanged, "RA-1", march(15)), "0:05");
    EXPECT_EQ(FunNarMasloAgregat(connection(), unchanged, "RA-2", march(15)), "00:00");
    db::DataSet& ofAnotherCarrier = unit("AGREGAT", {{"NARAB_MASLA", "1:00"}, {"PLAN_DVIG_VSU", 2}});
    EXPECT_EQ(FunNarMasloAgregat(connection(), ofAnotherCarrier, "RA-1", march(15)), "1:00");
    db::DataSet& malformed = unit("AGREGAT", {{"NARAB_MASLA", "12.07"}});
    EXPECT_THROW(FunNarMasloAgregat(connection(), malformed, "RA-1", march(15)), ConversionError);
}

TEST_F(OilTimeTest, AnEngineMountedUnitRunsWithItsEnginesPlace) {
    aircraftOfType("RA-1", "T", "1", 0.5);
    insert("DVIGATEL", {{"ZAVODSKOI_NOMER", "E2"}, {"GDE_STOIT", "RA-1"}, {"ODIN_DVA", 1}});
    insert("DVIGATEL", {{"ZAVODSKOI_NOMER", "E3"}, {"GDE_STOIT", "RA-7"}, {"ODIN_DVA", 2}});
    flight("RA-1", march(10), {{"V_VOZDUHE_1", "1:00"}, {"NA_ZEMLE_1", "0:10"}, {"V_VOZDUHE_2", "3:00"},
                               {"NA_ZEMLE_2", "0:20"}});
    const auto onEngine = [&](const char* serial) {
        return FunNarMasloAgregat(connection(), unit("AGREGAT", {{"PLAN_DVIG_VSU", 1}, {"NUMER_DVIG_VSU", serial}}),
                                  "RA-1", march(15));
    };
    EXPECT_EQ(onEngine("E2"), "3:10");
    EXPECT_EQ(onEngine("E3"), "1:05");  // on another aircraft: the first place
}

TEST_F(OilTimeTest, HubsAndTailRotorsKeepTheirOilInTheirOwnColumns) {
    aircraftOfType("RA-1", "T");
    flight("RA-1", march(3), {{"V_VOZDUHE", "1:00"}});
    flight("RA-1", march(10), {{"V_VOZDUHE", "2:00"}});
    db::DataSet& hub = unit("VTULKA_NV", {{"NARAB_MASLA", "5:00"},
                                          {"DATA_ZAMENY_MASLA", march(1)},
                                          {"NARAB_MASLA_2", "7:00"},
                                          {"DATA_ZAMENY_MASLA_2", march(5)}});
    EXPECT_EQ(FunNarMasloVtNV(connection(), hub, "RA-1", 21, 22, march(15)), "8:00");
    EXPECT_EQ(FunNarMasloVtNV(connection(), hub, "RA-1", 43, 44, march(15)), "9:00");
    EXPECT_EQ(FunOstatMasloVtNV(connection(), hub, "RA-1", 10, 43, 44, march(15)), "1:00");
    EXPECT_THROW(FunNarMasloVtNV(connection(), hub, "RA-1", 60, 44, march(15)), ArgumentError);
    db::DataSet& rotor =
        unit("HVOSTOVOY_VINT", {{"NARAB_MASLA", "1:30"}, {"DATA_ZAMENY_MASLA", march(1)}, {"DATA_USTANOVKI", march(4)}});
    EXPECT_EQ(FunNarMasloHvostVint(connection(), rotor, "RA-1", march(15)), "3:30");
    EXPECT_EQ(FunOstatMasloHvostVint(connection(), rotor, "RA-1", 3, march(15)), "0:00");
}

TEST_F(OilTimeTest, AnApuCountsItsHoursAndItsStartsSinceTheChange) {
    aircraftOfType("RA-1", "T");
    aircraftOfType("RA-2", "T");
    insert("VSU", {{"NAZVANIE", "ТА-14-130-35"}, {"MESTO_USTANOVKI", "RA-1"}});
    insert("VSU", {{"NAZVANIE", "АИ-9В"}, {"MESTO_USTANOVKI", "RA-2"}});
    for (const char* tail : {"RA-1", "RA-2"})
        for (const db::Value& starts : {db::Value(3), db::Value(2), db::Value(), db::Value(4)})
            flight(tail, march(10),
                   {{"VSU_POLNOE_VREMYA", "0:30"}, {"VSU_V_GENERATORNOM", "0:15"}, {"VSU_KOL_VO_ZAPUSKOV", starts}});
    EXPECT_EQ(FunNarMasloVSUChas(connection(), "RA-1", march(1)), "3:00");
    EXPECT_EQ(FunNarMasloVSUChas(connection(), "RA-2", march(1)), "2:00");
    EXPECT_EQ(FunNarMasloVSUZapusk(connection(), "RA-2", march(1)), "4");
    EXPECT_EQ(FunNarMasloVSUZapusk(connection(), "RA-3", march(1)), "0");
}

TEST_F(OilTimeTest, WhatIsLeftAndWhenTheOilIsDue) {
    db::DataSet& oil = unit("AGREGAT", {{"NARAB_MASLA", "50:00"}, {"PRIMECHANIE", "40:00"}});
    EXPECT_EQ(FunOstatMaslo(oil, 21, 50), "00:00");
    EXPECT_EQ(FunOstatMaslo(oil, 38, 50), "10:00");
    EXPECT_EQ(FunOstatMaslo(oil, 22, 50), "00:00");  // no oil time
    EXPECT_EQ(FunNarPlanSniatMasloAgregat("10:30", "1200:15", 50), "1239:45");
    EXPECT_EQ(FunNarPlanSniatMasloHvostVint("60:00", "0:30", 50), "0:00");
    EXPECT_EQ(FunNarPlanSniatMaslo(oil, 38, "100:00", 50), "110:00");
    EXPECT_EQ(FunNarPlanSniatMaslo(oil, 22, "100:00", 50), "");
    EXPECT_THROW(FunNarPlanSniatMasloAgregat("10:3", "1200:15", 50), ConversionError);
    EXPECT_THROW(FunOstatMaslo(oil, 99, 50), ArgumentError);
}

TEST_F(OilTimeTest, TheFleetStateShowsTheNearestChangeFirst) {
    aircraftOfType("RA-1", "T");
    aircraftOfType("RA-2", "T");
    flight("RA-1", march(10), {{"V_VOZDUHE", "2:00"}, {"VSU_POLNOE_VREMYA", "0:30"}, {"VSU_KOL_VO_ZAPUSKOV", 2}});
    const auto component = [&](const char* serial, const char* oil, int tracked) {
        insert("AGREGAT", {{"ZAVODSKOI_NOMER", serial}, {"GDE_STOIT", "RA-1"}, {"UCHET_MASLA", tracked},
                           {"NARAB_MASLA", oil}, {"DATA_ZAMENY_MASLA", march(1)}, {"RESURS_MASLA", 10}});
    };
    component("fresh", "1:00", 1);
    component("overdue", "9:00", 1);
    component("untracked", "9:00", 0);
    insert("VTULKA_NV", {{"ZAVODSKOY_NOMER", "hub"}, {"GDE_STOIT", "RA-1"}, {"NARAB_MASLA_2", "0:00"}});
    insert("VSU", {{"ZAVODSKOY_NOMER", "apu"}, {"MESTO_USTANOVKI", "RA-1"}, {"DATA_ZAMENY_MASLO", march(1)}});
    std::string shown;
    for (const OilState& state : fleetOilState(connection(), std::nullopt))
        shown += state.serial + " " + state.kind + " " + state.oilTime + " " + state.starts + "|";
    EXPECT_EQ(shown, "overdue агрегат 11:00 |fresh агрегат 3:00 |hub втулка НВ, блок 2 2:00 |apu ВСУ 0:30 2|");
    EXPECT_EQ(fleetOilState(connection(), "RA-1").size(), 4U);
    EXPECT_TRUE(fleetOilState(connection(), "RA-2").empty());
    EXPECT_THROW(fleetOilState(connection(), "RA-3"), DataError);
}

}  // namespace
}  // namespace mxbook
