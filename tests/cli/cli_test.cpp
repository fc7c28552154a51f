// The mxbook program driven as a user drives it: arguments in, output and
// exit code out, in a folder of its own.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "mxbook/data.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

Outcome mxbook(const std::vector<std::string>& arguments, const std::filesystem::path& folder) {
    return testing::runMxbook(arguments, folder);
}

int lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

// One demo fleet in a root of its own, shared by the tests that read it.
class CliTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<testing::TempFolder>();
        const Outcome demo = mxbook({"demo", "--root", root()}, folder_->path());
        ASSERT_EQ(demo.exitCode, 0) << demo.err;
    }
    static void TearDownTestSuite() { folder_.reset(); }
    static std::string root() { return (folder_->path() / "velmo").string(); }
    static Outcome run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin() + 1, {"--root", root()});
        return mxbook(arguments, folder_->path());
    }

private:
    static inline std::unique_ptr<testing::TempFolder> folder_;
};

TEST_F(CliTest, DemoFilledTheRootAndInitFindsEverything) {
    const Outcome init = run({"init"});
    ASSERT_EQ(init.exitCode, 0) << init.err;
    for (const char* name : {"main", "report", "documentation", "picture"})
        EXPECT_NE(init.out.find(name), std::string::npos) << name;
    EXPECT_EQ(lines(init.out), 5);
    EXPECT_EQ(init.out.find("created"), std::string::npos);  // all four exist since the demo
    EXPECT_TRUE(std::filesystem::exists(root() + "/VELMO/NALET.FDB"));
    const Outcome again = run({"demo"});
    EXPECT_EQ(again.exitCode, 2);
    EXPECT_NE(again.err.find("holds aircraft already"), std::string::npos) << again.err;
}

TEST_F(CliTest, CallReachesLibraryFunctionsByName) {
    const struct {
        std::vector<std::string> arguments;
        std::string out;
    } cases[] = {
        {{"call", "FunBookYear", "252"}, "г. \n"},
        {{"call", "FunChageToColon", ","}, ":\n"},
        {{"call", "FunChageToPoint", "7"}, "7\n"},
        {{"call", "FunOstatLet", "@sql:select * from REESTR where BORTOVOI_NOMER = 'RA-21001'", "17", "6"}, ""},
        {{"call", "GetProviderExits"}, "1\n"},
        {{"call", "GetUserRoot"}, root() + "/VELMO/\n"},
        {{"call", "--today", "2024-01-02", "FunMsg", "", "24"}, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments[1]);
        const Outcome call = run(c.arguments);
        EXPECT_EQ(call.exitCode, 0) << call.err;
        if (!c.out.empty()) {
            EXPECT_EQ(call.out, c.out);
        }
    }
    const Outcome message = run({"call", "--today", "2024-01-02", "FunMsg", "", "24"});
    EXPECT_EQ(message.err, "Внимание!: Сегодня только 02.01.24. Продолжение невозможно.\n");
    const Outcome generator = run({"call", "GetID", "GEN_ETA_ZCU_ID"});
    const Outcome next = run({"call", "GetID", "GEN_ETA_ZCU_ID"});
    EXPECT_EQ(std::stoi(next.out), std::stoi(generator.out) + 1);
}

TEST_F(CliTest, CallComputesOnTheRowItIsGiven) {
    const Outcome hours = run({"call", "FunOstatChas",
                               "@sql:select * from AGREGAT where GDE_STOIT = 'RA-21001' "
                               "and EDINICA_NARABOTKI = 0 order by ID",
                               "12", "17"});
    ASSERT_EQ(hours.exitCode, 0) << hours.err;
    EXPECT_NE(hours.out.find(':'), std::string::npos) << hours.out;
    const Outcome corrected = run({"call", "--format", "json", "FunHourCorrectToVS", "@REESTR:1", "22", "45"});
    ASSERT_EQ(corrected.exitCode, 0) << corrected.err;
    EXPECT_EQ(corrected.out.rfind("{\"function\": \"FunHourCorrectToVS\", \"result\": \"", 0), 0u) << corrected.out;
    EXPECT_NE(corrected.out.find("\"changed\": []"), std::string::npos);
}

TEST_F(CliTest, BadInputIsOneLineNamingWhatFailedAndExitTwo) {
    const struct {
        std::vector<std::string> arguments;
        std::string error;
    } cases[] = {
        {{"call", "NoSuchFunction"}, "no library function NoSuchFunction"},
        {{"call", "FunOstatChas", "@AGREGAT:99999999", "12", "17"}, "no row: @AGREGAT:99999999"},
        {{"call", "--db", "/nonexistent/NALET.FDB", "FunMaxDvigExp"}, "cannot open the main database"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments[1]);
        const Outcome call = run(c.arguments);
        EXPECT_EQ(call.exitCode, 2);
        EXPECT_EQ(lines(call.err), 1) << call.err;
        EXPECT_NE(call.err.find(c.error), std::string::npos) << call.err;
    }
}

// The contents of every table of a database, as one text.
std::string contentsOf(const std::string& database) {
    db::Connection connection("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + database);
    connection.open();
    db::DataSet tables(connection,
                       "select trim(rdb$relation_name) from rdb$relations where rdb$system_flag = 0 order by 1");
    std::string text;
    for (tables.open(); !tables.eof(); tables.next()) {
        db::DataSet rows(connection, "select * from " + tables.field(0).asText() + " order by 1");
        for (rows.open(); !rows.eof(); rows.next())
            for (int i = 0; i < rows.fieldCount(); ++i) text += rows.field(i).asText() + '|';
        text += '\n';
    }
    return text;
}

// Rows holding what people and old files put in them: malformed operating
// time and calendar limits, an aircraft that is not in the register.
struct BadRows {
    int hoursText, hoursDigits, hoursHuge, calendar, unknownTail;
};

BadRows insertBadRows(const std::string& database) {
    db::Connection connection("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + database);
    connection.open();
    const auto insert = [&](const std::string& sql) {
        connection.execute(sql);
        db::DataSet id(connection, "select max(ID) from " + sql.substr(12, sql.find(' ', 12) - 12));
        id.open();
        return id.field(0).asInt();
    };
    const std::string unit =
        "insert into AGREGAT (TIP_VS, GDE_STOIT, EDINICA_NARABOTKI, PLAN_DVIG_VSU, "
        "NEPRIAMOI_UCHET_NAR_AGREGATA, RESURS_OBSH, NARABOTKA_SNE) values ('Ми-8МТВ-1', "
        "'RA-21001', 0, 0, 1, 1000, ";
    BadRows rows{};
    rows.hoursText = insert(unit + "'abc')");
    rows.hoursDigits = insert(unit + "'12:3x')");
    rows.hoursHuge = insert(unit + "'99999999:00')");
    rows.calendar = insert(
        "insert into AGREGAT (TIP_VS, GDE_STOIT, SROK_OBSH, DATA_VYPUSKA, DATA_REMONTA, KOL_VO_REMONTOV) "
        "values ('Ми-8МТВ-1', 'Склад', 'abc', '2010-01-01', '2015-01-01', 1)");
    rows.unknownTail = insert(
        "insert into LOPAST (TIP_VS, GDE_STOIT, NARABOTKA_PPR, NEPRIAMOI_UCHET_NAR_LOPAST) "
        "values ('Ми-8МТВ-1', 'RA-NOPE', '1:00', 1)");
    return rows;
}

// Every callable function given bad input of some kind: one line naming what
// failed, exit code 2, and not a byte of the database changed.
TEST_F(CliTest, BadInputToEveryFunctionChangesNothing) {
    const std::string database = root() + "/VELMO/NALET.FDB";
    const BadRows bad = insertBadRows(database);
    const auto row = [](const char* table, int id) { return "@" + std::string(table) + ":" + std::to_string(id); };
    const std::string before = contentsOf(database);
    const struct {
        std::vector<std::string> arguments;
        std::string error;
        int exitCode = 2;  // 1: a wrong argument, refused before the call
    } cases[] = {
        {{"GetUserRoot", "abc"}, "takes 0 arguments, 1 given", 1},
        {{"GetCommonRoot", ""}, "takes 0 arguments, 1 given", 1},
        {{"GetUserDesktop", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetUserBase", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetBaseDocTO", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetBaseReport", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetUserPhoto", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetFileVersion"}, "takes 1 argument, 0 given", 1},
        {{"GetProviderExits", "1"}, "takes 0 arguments, 1 given", 1},
        {{"FunConnection", "x"}, "takes 0 arguments, 1 given", 1},
        {{"FunConnectDocTO", "x"}, "takes 0 arguments, 1 given", 1},
        {{"FunConnectReport", "x"}, "takes 0 arguments, 1 given", 1},
        {{"FunConPhoto", "x"}, "takes 0 arguments, 1 given", 1},
        {{"GetID", ""}, "is not the name of a generator"},
        {{"GetID", "GEN_ETA_ZCU_ID, 1) from rdb$database; --"}, "is not the name of a generator"},
        {{"FunMaxDvigExp", "x"}, "takes 0 arguments, 1 given", 1},
        {{"FunHourCorrectFromVS", row("AGREGAT", bad.hoursText), "17", "10"}, "'abc' is not a valid operating time"},
        {{"FunHourCorrectToVS", row("AGREGAT", bad.hoursDigits), "17", "10"}, "'12:3x' is not a valid"},
        {{"FunIntegerCorrectFromVS", "@REESTR:1", "abc", "1"}, "'abc' is not an integer", 1},
        {{"FunIntegerCorrectToVS", "@REESTR:99999999", "21", "1"}, "no row: @REESTR:99999999"},
        {{"FunChageToColon", "ab"}, "a key is one character", 1},
        {{"FunChageToPoint", ""}, "a key is one character", 1},
        {{"FunMsg", "x", "abc"}, "'abc' is not an integer", 1},
        {{"GetActiveWindowTitle", "x"}, "takes 0 arguments, 1 given", 1},
        {{"FunNepNarAgr", row("AGREGAT", bad.hoursHuge), "17"}, "'99999999:00' is not a valid operating time"},
        {{"FunNepNarLopast", row("LOPAST", bad.unknownTail), "26"}, "'RA-NOPE' is not a valid tail number"},
        {{"FunNepNarZCU", "@ZCU:99999999", "11"}, "no row: @ZCU:99999999"},
        {{"FunNepNarShlang", "@sql:select * from SHLANG where 1 = 0"}, "no row"},
        {{"FunNepNarHvostVint", "@HVOSTOVOY_VINT:1", "abc"}, "'abc' is not an integer", 1},
        {{"FunNepNarLebedka", "@LEBEDKA:1", ""}, "'' is not an integer", 1},
        {{"FunNepNarTros", "@LEBEDKA:1", "RA-21001", "29", "31.02.2024"}, "'31.02.2024' is not a date", 1},
        {{"FunOstatTros", "@LEBEDKA:1", "29", "23", ""}, "'' is not a date", 1},
        {{"FunOstatChas", row("AGREGAT", bad.hoursText), "12", "17"}, "'abc' is not a valid operating time"},
        {{"FunOstatInteger", row("AGREGAT", bad.hoursDigits), "12", "17"}, "'12:3x' is not a valid integer"},
        {{"FunOstatLet", row("AGREGAT", bad.calendar), "13", "6"}, "'abc' is not a valid calendar limit"},
        {{"FunNarabLet", "@AGREGAT:1", "x"}, "'x' is not an integer", 1},
        {{"FunBookYear", ""}, "'' is not an integer", 1},
        {{"FunDataSniatia", row("AGREGAT", bad.calendar), "9", "10", "6", "13", "13"}, "'abc' is not a valid calendar"},
        {{"FunPPRPlanDliaSniatZCU", "@ZCU:99999999", "Ми-8МТВ-1", "RA-21001"}, "no row: @ZCU:99999999"},
        {{"FunNarPlanSniatDvig", row("AGREGAT", bad.hoursText), "17", "12", "1:00"}, "'abc' is not a valid operating"},
        {{"FunNarPlanSniatDvig", row("AGREGAT", bad.hoursText), "999", "12", "1:00"}, "has no field 999"},
        {{"FunOstatChas", "@AGREGAT':1", "12", "17"}, "is not a table name", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments[0]);
        std::vector<std::string> arguments = {"call"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const Outcome call = run(arguments);
        EXPECT_EQ(call.exitCode, c.exitCode) << call.out;
        const std::string first = call.err.substr(0, call.err.find('\n') + 1);
        EXPECT_NE(first.find(c.error), std::string::npos) << call.err;
        if (c.exitCode == 2) {
            EXPECT_EQ(call.err, first);
        }
    }
    for (const std::string tail : {"RA-1'1", "' or ''='"}) {
        const Outcome status = run({"status", tail});
        EXPECT_EQ(status.exitCode, 2);
        EXPECT_EQ(status.err.rfind("mxbook: no aircraft '" + tail + "'", 0), 0u) << status.err;
        EXPECT_EQ(lines(status.err), 1) << status.err;
    }
    EXPECT_TRUE(contentsOf(database) == before) << "a table changed";
}

}  // namespace
}  // namespace mxbook
