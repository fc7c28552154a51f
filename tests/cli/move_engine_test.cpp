// mxbook move engine on a register of our own: an engine taken off one
// aircraft with the unit on it and put on another in a free place, a dry
// run, and what cannot be moved.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mxbook/data.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

class MoveEngineTest : public ::testing::Test {
protected:
    // RA-1 flew 1:00 (one cycle) on 11.03.2024 with engine E1 in place 0, on
    // which unit 111 is mounted; RA-2 flew 0:30 on its second place on
    // 12.03.2024 and has E2 in place 0; two engines share number E9.
    void SetUp() override {
        ASSERT_EQ(run({"init"}).exitCode, 0);
        for (const char* tail : {"'RA-1'", "'RA-2'"})
            execute(std::string("insert into REESTR (TIP_VS, BORTOVOI_NOMER) values ('Ми-8', ") + tail + ")");
        execute(
            "insert into SPRAVKA (DATA_POLETA, TIP_VS, BORTOVOI_NOMER, V_VOZDUHE_1, KOL_VO_CICLOV_1) values "
            "('2024-03-11', 'Ми-8', 'RA-1', '1:00', 1)");
        execute(
            "insert into SPRAVKA (DATA_POLETA, TIP_VS, BORTOVOI_NOMER, V_VOZDUHE_2) values "
            "('2024-03-12', 'Ми-8', 'RA-2', '0:30')");
        for (const char* engine : {"'E1', 'RA-1'", "'E2', 'RA-2'", "'E9', 'Склад'", "'E9', 'Ремонт'"})
            execute(std::string("insert into DVIGATEL (TIP_VS, ZAVODSKOI_NOMER, GDE_STOIT, ODIN_DVA, NARABOTKA_SNE, "
                                "NARABOTKA_PPR, CICLI_PPR) values ('Ми-8', ") +
                    engine + ", 0, '100:00', '50:00', 10)");
        execute(
            "insert into AGREGAT (TIP_VS, ZAVODSKOI_NOMER, GDE_STOIT, EDINICA_NARABOTKI, PLAN_DVIG_VSU, "
            "NUMER_DVIG_VSU, NARABOTKA_SNE, NARABOTKA_PPR) values ('Ми-8', '111', 'RA-1', 0, 1, 'E1', '10:00', "
            "'5:00')");
    }

    Outcome run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin() + 1, {"--root", root(), "--today", "2024-03-15", "--answer", "yes"});
        return testing::runMxbook(arguments, folder_.path());
    }
    void execute(const std::string& sql) const { database().execute(sql); }
    // The engine E1 and the unit 111 as "where;place;hours;cycles / where;hours;moved;".
    std::string state() const {
        db::Connection connection = database();
        db::DataSet row(connection,
                        "select e.GDE_STOIT, e.ODIN_DVA, e.NARABOTKA_PPR, e.CICLI_PPR, a.GDE_STOIT, "
                        "a.NARABOTKA_PPR, a.DATA_USTANOVKI from DVIGATEL e, AGREGAT a "
                        "where e.ZAVODSKOI_NOMER = 'E1' and a.ZAVODSKOI_NOMER = '111'");
        row.open();
        std::string text;
        for (int i = 0; i < row.fieldCount(); ++i) text += row.field(i).asText() + (i == 3 ? " / " : ";");
        return text;
    }

private:
    std::string root() const { return (folder_.path() / "velmo").string(); }
    db::Connection database() const {
        return testing::openMainDatabase(root());
    }
    testing::TempFolder folder_;
};

TEST_F(MoveEngineTest, AnEngineLeavesWithItsUnitAndGoesOnInAFreePlace) {
    const std::string before = state();
    const Outcome dry = run({"move", "engine", "E1", "Склад", "2024-03-10", "--dry-run", "--format", "csv"});
    ASSERT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_EQ(state(), before);

    // Off RA-1: its hour and cycle since the 10th off the engine, the hour off the unit.
    const Outcome off = run({"move", "engine", "E1", "Склад", "2024-03-10", "--format", "csv"});
    ASSERT_EQ(off.exitCode, 0) << off.err;
    EXPECT_EQ(off.out, dry.out);
    EXPECT_EQ(state(), "Склад;0;49:00;9 / Склад;4:00;10.03.2024;");
    EXPECT_NE(off.out.find("NARABOTKA_PPR,50:00,49:00"), std::string::npos) << off.out;

    // On RA-2 in place 1, driven by the second place's 0:30.
    const Outcome on = run({"move", "engine", "E1", "RA-2", "2024-03-11", "--place", "1"});
    ASSERT_EQ(on.exitCode, 0) << on.err;
    EXPECT_EQ(state(), "RA-2;1;49:30;9 / RA-2;4:00;11.03.2024;");
}

TEST_F(MoveEngineTest, WhatCannotBeMovedIsNamed) {
    const struct {
        std::vector<std::string> arguments;
        const char* error;
    } cases[] = {
        {{"move", "engine", "E1", "RA-2", "2024-03-10", "--place", "3"}, "3 is not an engine place"},
        {{"move", "engine", "E1", "RA-2", "2024-03-10"},
         "place 0 of RA-2 is taken: engines stand in places 0 (@DVIGATEL:2); name a free place with --place: 1, 2"},
        {{"move", "engine", "E1", "Луна", "2024-03-10"}, "'Луна' is neither a tail number"},
        {{"move", "engine", "E9", "RA-1", "2024-03-10"}, "names 2 engines"},
        {{"move", "engine", "E0", "RA-1", "2024-03-10"}, "no engine with factory number E0"},
        {{"move", "component", "111", "RA-2", "2024-03-10", "--engine", "E1"}, "no engine with factory number E1 "},
    };
    const std::string before = state();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.error);
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.err.find(c.error), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(state(), before);
}

}  // namespace
}  // namespace mxbook
