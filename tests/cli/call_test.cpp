// The mxbook program as a newcomer meets it: `call` described by itself,
// wrong arguments named with the usage and exit code 1, Ctrl-C.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

Outcome mxbook(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
               std::optional<std::chrono::milliseconds> interruptAfter = std::nullopt) {
    return testing::runMxbook(arguments, folder, {{}, interruptAfter});
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

// Empty databases in a root of their own: nothing here needs a fleet.
class CallTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<testing::TempFolder>();
        const Outcome init = mxbook({"init", "--root", root()}, folder_->path());
        ASSERT_EQ(init.exitCode, 0) << init.err;
    }
    static void TearDownTestSuite() { folder_.reset(); }
    static std::string root() { return (folder_->path() / "velmo").string(); }
    static Outcome run(std::vector<std::string> arguments,
                       std::optional<std::chrono::milliseconds> interruptAfter = std::nullopt) {
        arguments.insert(arguments.begin() + 1, {"--root", root()});
        return mxbook(arguments, folder_->path(), interruptAfter);
    }

private:
    static inline std::unique_ptr<testing::TempFolder> folder_;
};

TEST_F(CallTest, ListAndHelpTellWhatEachFunctionTakesAndReturns) {
    const Outcome list = run({"call", "--list"});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_NE(list.out.find("\nFunOstatChas ROW LIMIT_COLUMN USED_COLUMN\n"), std::string::npos) << list.out;
    EXPECT_NE(list.out.find("\nGetID GENERATOR\n"), std::string::npos);

    const Outcome json = run({"call", "--list", "--format", "json"});
    ASSERT_EQ(json.exitCode, 0) << json.err;
    EXPECT_NE(json.out.find("{\"function\": \"FunOstatChas\", \"arguments\": \"ROW LIMIT_COLUMN USED_COLUMN\", "
                            "\"returns\": \"the hours left"),
              std::string::npos)
        << json.out;
    // Every function listed in both, each with a line on what it returns.
    EXPECT_EQ(std::count(json.out.begin(), json.out.end(), '{'), std::count(list.out.begin(), list.out.end(), '\n'));
    EXPECT_EQ(json.out.find("\"returns\": \"\""), std::string::npos);

    const Outcome help = run({"call", "FunOstatChas", "--help"});
    ASSERT_EQ(help.exitCode, 0) << help.err;
    EXPECT_EQ(firstLine(help.out), "usage: mxbook call FunOstatChas ROW LIMIT_COLUMN USED_COLUMN");
    EXPECT_NE(help.out.find("whole hours in LIMIT_COLUMN"), std::string::npos) << help.out;
    EXPECT_NE(help.out.find("  USED_COLUMN   an integer\n"), std::string::npos) << help.out;
}

// The first wrong argument from the left is named by position, before any
// database is opened; the function's usage follows.
TEST_F(CallTest, WrongArgumentsAreNamedByPositionAndExitOne) {
    const struct {
        std::vector<std::string> arguments;
        std::string error;
    } cases[] = {
        {{"FunOstatChas", "@AGREGAT:1", "x", "y"}, "argument 2 (LIMIT_COLUMN): 'x' is not an integer"},
        {{"FunOstatChas", "AGREGAT:1", "x", "17"},
         "argument 1 (ROW): a row is written @TABLE:ID or @sql:SELECT ..., not 'AGREGAT:1'"},
        {{"FunOstatChas", "@AGREGAT:1x", "12", "17"}, "argument 1 (ROW): '1x' is not a row's ID"},
        {{"--db", "/nonexistent/NALET.FDB", "FunOstatChas", "@AGREGAT:99999999", "12", "1.5"},
         "argument 3 (USED_COLUMN): '1.5' is not an integer"},
        {{"FunNepNarTros", "@LEBEDKA:1", "RA-21001", "29", "2024-02-30"},
         "argument 4 (END_DATE): '2024-02-30' is not a date"},
        {{"FunChageToColon", "#"}, ""},  // the character itself, not a code
        {{"FunChageToColon", "ab"}, "argument 1 (KEY): a key is one character, or #code, not 'ab'"},
        {{"FunBookYear"}, "FunBookYear takes 1 argument, 0 given"},
        {{"FunBookYear", "1", "2"}, "FunBookYear takes 1 argument, 2 given"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.back());
        std::vector<std::string> arguments = {"call"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const Outcome call = run(arguments);
        if (c.error.empty()) {
            EXPECT_EQ(call.exitCode, 0) << call.err;
            continue;
        }
        EXPECT_EQ(call.exitCode, 1);
        EXPECT_EQ(firstLine(call.err), "mxbook: " + c.error);
        EXPECT_NE(call.err.find("\nusage: mxbook call Fun"), std::string::npos) << call.err;
        EXPECT_EQ(call.out, "");
    }
}

TEST_F(CallTest, CommandLineMistakesExitOneWithTheUsage) {
    const struct {
        std::vector<std::string> arguments;
        std::string error;
    } cases[] = {
        {{"stauts"}, "no command 'stauts'; did you mean status?"},
        {{"NOSUCH", "--help"}, "no command 'NOSUCH'"},
        {{"call", "--today", "2024-3-15", "FunBookYear", "3"}, "--today: '2024-3-15' is not a date written YYYY-MM-DD"},
        {{"call", "--today", "", "FunBookYear", "3"}, "--today: '' is not a date written YYYY-MM-DD"},
        {{"status", "--today", "2024-02-30"}, "--today: '2024-02-30' is not a date written YYYY-MM-DD"},
        {{"status", "--today", "15.03.2024"}, "--today: '15.03.2024' is not a date written YYYY-MM-DD"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.error);
        const Outcome run = mxbook(c.arguments, std::filesystem::temp_directory_path());
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(firstLine(run.err), "mxbook: " + c.error);
        EXPECT_NE(run.err.find("Usage: mxbook"), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
    const Outcome version = mxbook({"--version"}, std::filesystem::temp_directory_path());
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, MXBOOK_VERSION "\n");
}

TEST_F(CallTest, AnUnknownGeneratorIsNamed) {
    const Outcome call = run({"call", "GetID", "GEN_NOPE"});
    EXPECT_EQ(call.exitCode, 2);
    EXPECT_EQ(call.err, "mxbook: no generator GEN_NOPE in the database\n");
}

TEST_F(CallTest, OilFunctionsAndTheOilStateAnswerOnAnEmptyRegister) {
    const Outcome due = run({"call", "FunNarPlanSniatMasloAgregat", "10:30", "1200:15", "50"});
    EXPECT_EQ(due.out, "1239:45\n") << due.err;
    const Outcome apu = run({"call", "FunNarMasloVSUZapusk", "RA-1", "01.03.2024"});
    EXPECT_EQ(apu.out, "0\n") << apu.err;
    const Outcome oil = run({"oil", "--format", "csv"});
    EXPECT_EQ(oil.out, "Tail,Kind,Unit,Serial,Changed,Oil time,Starts,\"Limit, h\",Left,Alert\n") << oil.err;
    const Outcome unknown = run({"oil", "RA-1"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.err, "mxbook: no aircraft 'RA-1' in the register\n");
}

TEST_F(CallTest, CtrlCEndsAQueryWithOneLineAndExit130) {
    // A row that takes far longer than the test waits to come.
    const Outcome call = run({"call", "FunOstatChas",
                              "@sql:select count(*) from RDB$FIELDS a, RDB$FIELDS b, RDB$FIELDS c, RDB$FIELDS d", "1",
                              "2"},
                             std::chrono::milliseconds(1500));
    EXPECT_EQ(call.exitCode, 130);
    EXPECT_EQ(call.err, "mxbook: interrupted\n");
}

}  // namespace
}  // namespace mxbook
