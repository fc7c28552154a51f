// The databases as a new user meets them through the mxbook program: which
// one opens when folders differ only in case, what a failure to open says,
// the first run, half-built databases, the demo's output and folder, --db.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <ibase.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "../environment/environment_fixture.h"
#include "data/sql_text.h"
#include "mxbook/data.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/schema.h"
#include "mxbook/text.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

namespace fs = std::filesystem;

using testing::Outcome;

std::string quoted(const std::string& argument) {  // for a shell
    std::string text = "'";
    for (char c : argument) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// The program run as a user runs it; `environment` ("NAME=value" words) is set for it alone.
Outcome mxbook(const std::vector<std::string>& arguments, const fs::path& folder,
               const std::vector<std::string>& environment = {}) {
    return testing::runMxbook(arguments, folder, {environment, std::nullopt});
}

int lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }
bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string connectionString(const std::string& database) {
    return "Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + database;
}

int aircraftIn(const std::string& database) {
    db::Connection connection(connectionString(database));
    connection.open();
    db::DataSet count(connection, "select count(*) from REESTR");
    count.open();
    return count.field(0).asInt();
}

// A main database whose creation stopped after its first statements: the
// generators and the register.
void createHalfBuilt(const std::string& database) {
    db::Connection connection;
    connection.create(connectionString(database));
    const std::vector<std::string> statements = db::detail::splitScript(schema::ddl(schema::Database::main));
    for (std::size_t i = 0; i < 6; ++i) connection.execute(statements.at(i));
}

class DatabasesTest : public ::testing::Test {
protected:
    fs::path path(const std::string& name) const { return folder_.path() / name; }
    std::string at(const std::string& name) const { return path(name).string(); }
    Outcome run(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {}) const {
        return mxbook(arguments, folder_.path(), environment);
    }
    // The one line of a failure, with exit code 2.
    std::string failure(const std::vector<std::string>& arguments) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << outcome.out;
        EXPECT_EQ(lines(outcome.err), 1) << outcome.err;
        return outcome.err;
    }

private:
    testing::TempFolder folder_;
};

// --- Letter case ---------------------------------------------------------

TEST_F(DatabasesTest, TwoFoldersThatDifferOnlyInCaseEachOpenTheirOwnDatabases) {
    const std::string upper = at("X/Fleet"), lower = at("X/fleet");
    ASSERT_EQ(run({"init", "--root", upper}).exitCode, 0);
    db::Connection connection(connectionString(upper + "/VELMO/NALET.FDB"));
    connection.open();
    connection.execute("insert into REESTR (BORTOVOI_NOMER) values ('RA-CASE')");
    connection.close();

    // The other folder gets databases of its own, shown as written.
    const Outcome init = run({"init", "--root", lower});
    ASSERT_EQ(init.exitCode, 0) << init.err;
    EXPECT_TRUE(has(init.out, lower + "/VELMO/NALET.FDB")) << init.out;
    EXPECT_EQ(std::count(init.out.begin(), init.out.end(), '\n'), 5);
    EXPECT_FALSE(has(init.out, "exists")) << init.out;
    EXPECT_TRUE(fs::exists(lower + "/VELMO/NALET.FDB"));
    EXPECT_FALSE(has(init.out, upperCase(lower))) << init.out;

    const Outcome other = run({"status", "--root", lower, "RA-CASE"});
    EXPECT_EQ(other.exitCode, 2);
    EXPECT_EQ(other.err, "mxbook: no aircraft 'RA-CASE' in the register\n");
    const Outcome own = run({"status", "--root", upper, "RA-CASE"});
    EXPECT_EQ(own.exitCode, 0) << own.err;

    // Written through the lower-case folder, read through it; the other is untouched.
    const Outcome first = run({"call", "--root", lower, "GetID", "GEN_ETA_ZCU_ID"});
    const Outcome second = run({"call", "--root", lower, "GetID", "GEN_ETA_ZCU_ID"});
    EXPECT_EQ(first.out, "1\n");
    EXPECT_EQ(second.out, "2\n");
    EXPECT_EQ(run({"call", "--root", upper, "GetID", "GEN_ETA_ZCU_ID"}).out, "1\n");
    EXPECT_EQ(aircraftIn(lower + "/VELMO/NALET.FDB"), 0);
    EXPECT_EQ(aircraftIn(upper + "/VELMO/NALET.FDB"), 1);

    // The values file keeps its upper-cased form.
    EXPECT_TRUE(has(contents(lower + "/VELMO/VelmoValues.ini"), "CONNECTION_STRING=" + upperCase(lower)));
}

TEST_F(DatabasesTest, AMatchWithoutRegardToCaseIsAFallbackAndMoreThanOneIsRefused) {
    ASSERT_EQ(run({"init", "--root", at("Fleet")}).exitCode, 0);
    const std::string asWritten = at("FLEET") + "/VELMO/NALET.FDB";
    // One folder matches: it opens.
    EXPECT_EQ(run({"call", "--db", asWritten, "FunMaxDvigExp"}).out, "1\n");
    ASSERT_EQ(run({"init", "--root", at("fleet")}).exitCode, 0);
    const std::string error = failure({"call", "--db", asWritten, "FunMaxDvigExp"});
    EXPECT_TRUE(has(error, at("Fleet") + "/VELMO/NALET.FDB")) << error;
    EXPECT_TRUE(has(error, at("fleet") + "/VELMO/NALET.FDB")) << error;
    EXPECT_TRUE(has(error, "more than one path")) << error;
    // The exact path wins whenever it exists.
    ASSERT_EQ(run({"init", "--root", at("FLEET")}).exitCode, 0);
    EXPECT_EQ(run({"call", "--db", asWritten, "FunMaxDvigExp"}).exitCode, 0);
}

// --- What a failure to open says -------------------------------------------

// A port on the loopback that nothing listens on.
int closedPort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(s, reinterpret_cast<sockaddr*>(&address), size);
    getsockname(s, reinterpret_cast<sockaddr*>(&address), &size);
    close(s);
    return ntohs(address.sin_port);
}

TEST_F(DatabasesTest, EachFailureToOpenSaysWhatIsWrong) {
    fs::create_directories(path("folder.fdb"));
    std::ofstream(path("short.fdb")) << "hi";
    std::ofstream random(path("random.fdb"), std::ios::binary);
    for (int i = 0; i < 20000; ++i) random.put(static_cast<char>((i * 7919) % 251));
    random.close();
    const std::string port = std::to_string(closedPort());
    const struct {
        std::string location;
        std::string says;
    } cases[] = {
        {at("missing.fdb"), "no such file"},
        {at("no/such/folder/x.fdb"), "no such file (its folder"},
        {at("folder.fdb"), "it is a folder, not a database file"},
        {at("short.fdb"), "not a Firebird database"},
        {at("random.fdb"), "not a Firebird database"},
        {"127.0.0.1/" + port + ":/x.fdb", "the database server at 127.0.0.1:" + port + " is unreachable"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.location);
        const std::string error = failure({"call", "--db", c.location, "FunMaxDvigExp"});
        EXPECT_TRUE(has(error, "cannot open the main database " + c.location + ": " + c.says)) << error;
        EXPECT_FALSE(has(error, "one program at a time")) << error;
    }
}

TEST_F(DatabasesTest, OnlyADatabaseOpenInAnotherProgramGetsTheHintOfOneProgramAtATime) {
    if (std::system("command -v isql-fb >/dev/null 2>&1") != 0) GTEST_SKIP() << "no isql-fb to hold the database";
    ASSERT_EQ(run({"init", "--root", at("held")}).exitCode, 0);
    const std::string database = at("held") + "/VELMO/NALET.FDB";
    // isql's engine instance keeps the file from ours while it is attached.
    const std::string pidFile = at("isql.pid");
    const std::string command = "(echo 'select count(*) from REESTR; shell sleep 15;' | isql-fb -user SYSDBA " +
                                quoted(database) + " >/dev/null 2>&1 & echo $! >" + quoted(pidFile) + ")";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string error;
    for (int attempt = 0; attempt < 100 && !has(error, "one program at a time"); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        error = run({"call", "--db", database, "FunMaxDvigExp"}).err;
    }
    const pid_t isql = static_cast<pid_t>(std::stol(contents(pidFile)));
    kill(isql, SIGTERM);
    EXPECT_TRUE(has(error, "cannot open the main database " + database +
                               ": another program has it open; an embedded database is open to one program at a time"))
        << error;
    EXPECT_EQ(lines(error), 1);
}

// --- First run, folders -----------------------------------------------------

TEST_F(DatabasesTest, TheFirstRunWithoutRootAsksForInit) {
    fs::create_directories(path("home"));
    const std::vector<std::string> user = {"HOME=" + at("home"), "XDG_CONFIG_HOME="};
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"status"}, {"call", "FunMaxDvigExp"}}) {
        const Outcome first = run(arguments, user);
        EXPECT_EQ(first.exitCode, 2);
        EXPECT_EQ(lines(first.err), 1) << first.err;
        EXPECT_TRUE(has(first.err, "run `mxbook init` first")) << first.err;
        EXPECT_FALSE(has(first.err, "settings file")) << first.err;
    }
    EXPECT_FALSE(fs::exists(path("home/Documents")));
    const Outcome location = run({"call", "GetUserBase"}, user);
    EXPECT_TRUE(has(location.err, "the folder " + at("home") + "/Documents/VELMO/ for the values file does not exist"))
        << location.err;
}

TEST_F(DatabasesTest, ARootThatCannotBeMadeOrWrittenIsOneClearLine) {
    std::ofstream(path("a-file")) << "x";
    for (const std::string& root : {at("a-file"), at("a-file") + "/below"}) {
        const std::string error = failure({"init", "--root", root});
        EXPECT_TRUE(has(error, "mxbook: cannot use " + root + " as the root folder (--root): ")) << error;
    }
    EXPECT_TRUE(has(failure({"demo", "--root", at("r"), "--temp"}), "does not go with --root"));
}

TEST_F(DatabasesTest, CallDbReachesEveryFunctionThatOpensTheMainDatabase) {
    ASSERT_EQ(run({"init", "--root", at("mine")}).exitCode, 0);
    ASSERT_EQ(run({"init", "--root", at("theirs")}).exitCode, 0);
    const std::string theirs = at("theirs") + "/VELMO/NALET.FDB";
    fs::remove(at("mine") + "/VELMO/NALET.FDB");
    const std::string values = contents(at("mine") + "/VELMO/VelmoValues.ini");
    const Outcome base = run({"call", "--root", at("mine"), "--db", theirs, "GetUserBase"});
    EXPECT_EQ(base.out, theirs + "\n");
    // FunConnection opens the --db database, not the settled one that is gone.
    const Outcome connected = run({"call", "--root", at("mine"), "--db", theirs, "FunConnection"});
    EXPECT_EQ(connected.exitCode, 0) << connected.err;
    EXPECT_EQ(connected.err, "");
    EXPECT_EQ(contents(at("mine") + "/VELMO/VelmoValues.ini"), values);
    // Without --db the settled one is missing, and the way to make it is named.
    const std::string error = failure({"status", "--root", at("mine")});
    EXPECT_TRUE(has(error, "cannot open the main database " + at("mine") +
                               "/VELMO/NALET.FDB: no such file; run "
                               "`mxbook init --root " +
                               at("mine") + "` to create it"))
        << error;
}

// --- Half-built databases ---------------------------------------------------

TEST_F(DatabasesTest, AHalfBuiltDatabaseIsCalledIncompleteAndRepaired) {
    ASSERT_EQ(run({"init", "--root", at("r")}).exitCode, 0);
    const std::string main = at("r") + "/VELMO/NALET.FDB";
    fs::remove(main);
    createHalfBuilt(main);

    const std::string status = failure({"status", "--root", at("r")});
    EXPECT_TRUE(has(status, "the main database " + main + " is an incomplete database")) << status;
    EXPECT_TRUE(has(status, "`mxbook init --repair --root " + at("r") + "`")) << status;
    EXPECT_TRUE(has(status, "delete " + main)) << status;
    EXPECT_FALSE(has(status, "Table unknown")) << status;

    const Outcome init = run({"init", "--root", at("r")});
    EXPECT_EQ(init.exitCode, 2);
    EXPECT_TRUE(has(init.out, "incomplete")) << init.out;
    EXPECT_TRUE(has(init.err, "is an incomplete database (it lacks index IX_REESTR_BORT_TIP and ")) << init.err;

    // The repair adds what is missing and keeps what is there.
    db::Connection connection(connectionString(main));
    connection.open();
    connection.execute("insert into REESTR (ID) values (77)");
    connection.close();
    const Outcome repair = run({"init", "--root", at("r"), "--repair"});
    ASSERT_EQ(repair.exitCode, 0) << repair.err;
    EXPECT_TRUE(has(repair.out, "completed")) << repair.out;
    EXPECT_EQ(aircraftIn(main), 1);
    EXPECT_EQ(run({"status", "--root", at("r")}).exitCode, 0);
    const Outcome again = run({"init", "--root", at("r")});
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_FALSE(has(again.out, "completed"));
}

TEST_F(DatabasesTest, AnEmptyFileLeftByAKilledCreationIsRebuiltWithRepair) {
    ASSERT_EQ(run({"init", "--root", at("r")}).exitCode, 0);
    const std::string report = at("r") + "/VELMO/REPORT.FDB";
    std::ofstream(report, std::ios::trunc).close();
    // A temporary file of an interrupted build is in the way of none.
    std::ofstream(report + ".building") << "x";
    const Outcome init = run({"init", "--root", at("r")});
    EXPECT_EQ(init.exitCode, 2);
    EXPECT_TRUE(has(init.err, "the report database " + report + " is an incomplete database (an empty file"))
        << init.err;
    const Outcome repair = run({"init", "--root", at("r"), "--repair"});
    ASSERT_EQ(repair.exitCode, 0) << repair.err;
    EXPECT_TRUE(has(repair.out, "rebuilt")) << repair.out;
    EXPECT_GT(fs::file_size(report), 0u);
    EXPECT_FALSE(fs::exists(report + ".building"));
    EXPECT_EQ(run({"init", "--root", at("r")}).exitCode, 0);
}

TEST(SchemaObjects, AreMissingUntilCompleted) {
    testing::TempFolder folder;
    const std::string database = (folder.path() / "half.fdb").string();
    createHalfBuilt(database);
    db::Connection connection(connectionString(database));
    connection.open();
    const std::vector<std::string> missing = missingSchemaObjects(connection, schema::Database::main);
    ASSERT_FALSE(missing.empty());
    EXPECT_EQ(missing.front(), "index IX_REESTR_BORT_TIP");
    EXPECT_TRUE(std::find(missing.begin(), missing.end(), "table REESTR") == missing.end());
    EXPECT_TRUE(std::find(missing.begin(), missing.end(), "generator GEN_ETA_ZCU_ID") == missing.end());
    EXPECT_TRUE(std::find(missing.begin(), missing.end(), "table SPRAVKA") != missing.end());
    EXPECT_TRUE(std::find(missing.begin(), missing.end(), "index IX_SPRAVKA_BORT_DATA_DESC") != missing.end());
    EXPECT_EQ(completeSchema(connection, schema::Database::main).size(), missing.size());
    EXPECT_TRUE(missingSchemaObjects(connection, schema::Database::main).empty());
    for (schema::Database each : {schema::Database::report, schema::Database::picture}) {
        db::Connection whole;
        schema::createDatabase(whole, each, (folder.path() / std::string(schema::name(each))).string() + ".fdb");
        EXPECT_TRUE(missingSchemaObjects(whole, each).empty());
    }
}

// --- The demo -----------------------------------------------------------------

TEST_F(DatabasesTest, DemoJsonIsOneDocumentAndTempRemovesItsFolder) {
    fs::create_directories(path("tmp"));
    const Outcome demo = run({"demo", "--format", "json", "--temp"}, {"TMPDIR=" + at("tmp")});
    ASSERT_EQ(demo.exitCode, 0) << demo.err;
    EXPECT_EQ(demo.out.front(), '{');
    EXPECT_EQ(demo.out.substr(demo.out.size() - 2), "}\n");
    // One object: the databases and the aircraft inside it, no second array after it.
    EXPECT_EQ(demo.out.find("\"databases\": ["), 1u) << demo.out;
    EXPECT_TRUE(has(demo.out, "\"aircraft\": [{\"Type\": "));
    EXPECT_EQ(demo.out.find("]\n["), std::string::npos);
    EXPECT_FALSE(has(demo.out, "\"folder\""));
    EXPECT_EQ(demo.err, "");
    for (const auto& entry : fs::directory_iterator(path("tmp")))  // the fresh folder is gone
        EXPECT_FALSE(entry.path().filename().string().starts_with("mxbook-demo-")) << entry.path();
}

TEST_F(DatabasesTest, DemoCsvIsOneTableAndSaysWhereItLeftItsFolder) {
    fs::create_directories(path("tmp"));
    const Outcome demo = run({"demo", "--format", "csv"}, {"TMPDIR=" + at("tmp")});
    ASSERT_EQ(demo.exitCode, 0) << demo.err;
    EXPECT_EQ(demo.out.rfind("Type,Tail,", 0), 0u) << demo.out;
    std::istringstream rows(demo.out);
    int headers = 0;
    for (std::string row; std::getline(rows, row);) headers += row.starts_with("Type,") || row.starts_with("Database,");
    EXPECT_EQ(headers, 1);
    EXPECT_EQ(lines(demo.out), 8);
    const std::string said = "mxbook: the demo's databases are in ";
    ASSERT_EQ(demo.err.rfind(said + at("tmp") + "/mxbook-demo-", 0), 0u) << demo.err;
    ASSERT_EQ(lines(demo.err), 1);
    const std::string root = demo.err.substr(said.size(), demo.err.size() - said.size() - 1);
    EXPECT_TRUE(fs::exists(root + "/VELMO/NALET.FDB")) << root;
    EXPECT_FALSE(fs::exists(root + "/VELMO/NALET.FDB.building"));
    EXPECT_EQ(run({"status", "--root", root, "RA-21001", "--format", "csv"}).exitCode, 0);
}

}  // namespace
}  // namespace mxbook
