// mxbook move component on a register of our own: a component taken off one
// aircraft and put on another, a dry run, and destinations and units that
// cannot be moved.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "mxbook/data.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

class MoveTest : public ::testing::Test {
protected:
    // RA-1 flew 1:00 on 11.03.2024 and RA-2 0:30 on 12.03.2024; components
    // with factory numbers 111 (on RA-1), 222 twice (in the store).
    void SetUp() override {
        ASSERT_EQ(run({"init"}).exitCode, 0);
        execute("insert into REESTR (TIP_VS, BORTOVOI_NOMER, NARABOTKA_PPR_CHASOV) values ('Ми-8', 'RA-1', '100:00')");
        execute("insert into REESTR (TIP_VS, BORTOVOI_NOMER, NARABOTKA_PPR_CHASOV) values ('Ка-32', 'RA-2', '200:00')");
        execute("insert into SPRAVKA (DATA_POLETA, TIP_VS, BORTOVOI_NOMER, V_VOZDUHE) values "
                "('2024-03-11', 'Ми-8', 'RA-1', '1:00')");
        execute("insert into SPRAVKA (DATA_POLETA, TIP_VS, BORTOVOI_NOMER, V_VOZDUHE) values "
                "('2024-03-12', 'Ка-32', 'RA-2', '0:30')");
        for (const char* unit : {"'111', 'RA-1'", "'222', 'Склад'", "'222', 'Ремфонд'"})
            execute(std::string("insert into AGREGAT (TIP_VS, ZAVODSKOI_NOMER, GDE_STOIT, EDINICA_NARABOTKI, "
                                "PLAN_DVIG_VSU, NARABOTKA_SNE, NARABOTKA_PPR) values ('Ми-8', ") +
                    unit + ", 0, 0, '10:00', '5:00')");
    }

    std::string root() const { return (folder_.path() / "velmo").string(); }
    Outcome run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin() + 1, {"--root", root(), "--today", "2024-03-15", "--answer", "yes"});
        return testing::runMxbook(arguments, folder_.path());
    }
    void execute(const std::string& sql) const { database().execute(sql); }
    db::Connection database() const {
        return testing::openMainDatabase(root());
    }
    std::string unit111() const {
        db::Connection connection = database();
        db::DataSet row(connection, "select TIP_VS, GDE_STOIT, NARABOTKA_VS_PRI_USTANOVKE, NARABOTKA_SNE, "
                                    "NARABOTKA_PPR from AGREGAT where ZAVODSKOI_NOMER = '111'");
        row.open();
        std::string text;
        for (int i = 0; i < row.fieldCount(); ++i) text += row.field(i).asText() + ";";
        return text;
    }

private:
    testing::TempFolder folder_;
};

TEST_F(MoveTest, AComponentGoesFromOneAircraftToAnotherInOneStep) {
    const Outcome dry = run({"move", "component", "111", "RA-2", "2024-03-10", "--dry-run", "--format", "csv"});
    ASSERT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_EQ(unit111(), "Ми-8;RA-1;;10:00;5:00;");  // nothing stored

    // Off RA-1 (its 1:00 since the 10th taken off), on RA-2 (its 0:30 added).
    const Outcome moved = run({"move", "component", "111", "RA-2", "2024-03-10", "--format", "csv"});
    ASSERT_EQ(moved.exitCode, 0) << moved.err;
    EXPECT_EQ(moved.out, dry.out);
    EXPECT_EQ(unit111(), "Ка-32;RA-2;199:30;9:30;4:30;");
    EXPECT_NE(moved.out.find("NARABOTKA_SNE,10:00,9:30"), std::string::npos) << moved.out;
}

TEST_F(MoveTest, WhatCannotBeMovedIsNamed) {
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* error;
    } cases[] = {
        {{"move", "component", "111", "Луна", "2024-03-10"}, 2, "'Луна' is neither a tail number"},
        {{"move", "component", "222", "RA-1", "2024-03-10"}, 2, "names 2 components"},
        {{"move", "component", "333", "RA-1", "2024-03-10"}, 2, "no component with factory number 333"},
        {{"move", "component", "111", "RA-2", "10.03.2024"}, 1, "not a date written YYYY-MM-DD"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.error);
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.exitCode, c.exitCode);
        EXPECT_NE(outcome.err.find(c.error), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(unit111(), "Ми-8;RA-1;;10:00;5:00;");
}

}  // namespace
}  // namespace mxbook
