// Where a database is opened from: the path as written wins, a match without
// regard to case is a fallback and ambiguity is refused; a location set for
// the run; and what a failure to open says.
#include <gtest/gtest.h>
#include <ibase.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "environment_fixture.h"
#include "mxbook/data.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/schema.h"
#include "mxbook/text.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(LetterCase, TheExactPathWinsAndAmbiguityIsRefused) {
    testing::TempFolder folder;
    const fs::path base = folder.path();
    fs::create_directories(base / "Docs/Velmo");
    std::ofstream(base / "Docs/Velmo/NALET.FDB") << "x";
    const std::string upper = upperCase((base / "Docs/Velmo/NALET.FDB").string());
    // Only the case-blind match exists: it is taken, and what does not exist stays as given.
    EXPECT_EQ(matchLetterCase(upper), (base / "Docs/Velmo/NALET.FDB").string());
    EXPECT_EQ(matchLetterCase(upperCase((base / "Docs/Velmo/NEW/X.FDB").string())),
              (base / "Docs/Velmo").string() + "/NEW/X.FDB");
    // The path as written exists: it is taken, whatever else matches.
    fs::create_directories(base / "docs/velmo");
    std::ofstream(base / "docs/velmo/nalet.fdb") << "y";
    EXPECT_EQ(matchLetterCase((base / "docs/velmo/nalet.fdb").string()), (base / "docs/velmo/nalet.fdb").string());
    // Two match without regard to case: refused, both named.
    try {
        matchLetterCase(upper);
        ADD_FAILURE() << "no refusal";
    } catch (const Error& error) {
        EXPECT_TRUE(has(error.what(), (base / "Docs/Velmo/NALET.FDB").string())) << error.what();
        EXPECT_TRUE(has(error.what(), (base / "docs/velmo/nalet.fdb").string())) << error.what();
    }
    EXPECT_EQ(matchLetterCase("db.example.org:/DATA/X.FDB"), "db.example.org:/DATA/X.FDB");
}

// The documents folder is the host's, taken exactly: a sibling that differs
// only in case is never opened for it.
class OpeningTest : public testing::EnvironmentTest {};

TEST_F(OpeningTest, TheDocumentsFolderIsTakenExactly) {
    const fs::path sibling = folder() / upperCase(documents().filename().string());
    fs::create_directories(userRoot());
    fs::create_directories(sibling / "VELMO");
    std::ofstream(sibling / "VELMO" / "NALET.FDB") << "another user's";
    const std::string composed = (userRoot() / "NALET.FDB").string();
    EXPECT_EQ(GetUserBase(), composed);  // settles it
    EXPECT_EQ(GetUserBase(), upperCase(composed));
    EXPECT_EQ(databasePath(schema::Database::main), composed);  // not there yet, still the exact path
    std::ofstream(composed) << "mine";
    EXPECT_EQ(databasePath(schema::Database::main), composed);
    // A location edited by hand is matched below the documents folder only.
    std::ofstream(sibling / "VELMO" / "OTHER.FDB") << "another user's";
    std::ofstream(userRoot() / "other.fdb") << "mine";
    std::ofstream(userRoot() / "VelmoValues.ini")
        << "[BASE]\nCONNECTED=1\nCONNECTION_STRING=" << upperCase(documents().string()) << "/VELMO/OTHER.FDB\n";
    EXPECT_EQ(databasePath(schema::Database::main), (userRoot() / "other.fdb").string());
}

TEST_F(OpeningTest, ALocationSetForTheRunIsOpenedAndTheValuesFileLeftAlone) {
    fs::create_directories(userRoot());
    const std::string other = (folder() / "other.fdb").string();
    {
        db::Connection created;
        schema::createDatabase(created, schema::Database::main, other);
    }
    host().locations["BASE"] = other;
    EXPECT_EQ(GetUserBase(), other);
    db::Connection connection;
    FunConnection(connection);
    EXPECT_TRUE(connection.isOpen());
    EXPECT_TRUE(host().shown.empty());
    EXPECT_FALSE(fs::exists(userRoot() / "VelmoValues.ini"));
    host().locations.clear();
    EXPECT_EQ(GetUserBase(), (userRoot() / "NALET.FDB").string());
}

TEST(OpenFailures, ComeFromTheFileAndFirebirdsCodes) {
    testing::TempFolder folder;
    const std::string file = (folder.path() / "x.fdb").string();
    std::ofstream(file) << "some bytes";
    const auto kindOf = [](const std::string& location, std::vector<long> codes) {
        return explainOpenFailure(location, db::Error("refused", 0, {}, std::move(codes)));
    };
    EXPECT_EQ(kindOf(file, {isc_io_error, isc_already_opened}).kind, OpenFailure::Kind::inUse);
    EXPECT_EQ(kindOf(file, {isc_bad_db_format}).kind, OpenFailure::Kind::notDatabase);
    EXPECT_EQ(kindOf(file, {isc_wrong_ods}).kind, OpenFailure::Kind::otherVersion);
    EXPECT_EQ(kindOf(file, {isc_bad_dpb_content, isc_charset_not_found}).kind, OpenFailure::Kind::incomplete);
    EXPECT_EQ(kindOf(file, {isc_sys_request}).reason, "refused");
    std::ofstream(file, std::ios::trunc).close();
    EXPECT_EQ(kindOf(file, {isc_io_error}).kind, OpenFailure::Kind::incomplete);  // an empty file
    const OpenFailure server = kindOf("db.example.org/3051:/data/x.fdb", {isc_network_error, isc_net_connect_err});
    EXPECT_EQ(server.kind, OpenFailure::Kind::serverUnreachable);
    EXPECT_EQ(server.reason, "the database server at db.example.org:3051 is unreachable");
    EXPECT_TRUE(has(kindOf("db.example.org:/x.fdb", {isc_network_error}).reason, "db.example.org:3050"));
    EXPECT_EQ(kindOf("db.example.org:/x.fdb", {isc_login}).kind, OpenFailure::Kind::login);
}

}  // namespace
}  // namespace mxbook
