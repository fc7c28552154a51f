#include "environment/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "environment_fixture.h"
#include "mxbook/data.h"
#include "mxbook/environment.h"
#include "mxbook/schema.h"
#include "mxbook/text.h"

namespace mxbook {
namespace {

using environment::composeConnectionString;
using environment::DatabaseKind;

TEST(ConnectionStrings, AreComposedPerProviderCodeAndDatabase) {
    const std::string head5 =
        "Provider=LCPI.IBProvider.5.Free;Password=pw;Persist Security Info=True;User ID=SYSDBA;Location=";
    const std::string head3 =
        "Provider=LCPI.IBProvider.3.Free;Password=pw;Persist Security Info=True;User ID=SYSDBA;Location=";
    const std::string head2 =
        "Provider=LCPI.IBProvider.2;Password=pw;Persist Security Info=True;User ID=SYSDBA;Location=";
    const std::string direct = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.direct";
    const std::string fb = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb";
    const std::string client = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.client";
    const std::string plain = ";ctype=WIN1251;auto_commit=True";
    const std::string at = "/DATA/X.FDB";
    const struct {
        int code;
        DatabaseKind kind;
        std::string expected;
    } cases[] = {
        {1, DatabaseKind::main, head5 + at + direct},      {2, DatabaseKind::main, head3 + at + fb},
        {3, DatabaseKind::main, head2 + at + plain},       {1, DatabaseKind::documentation, head5 + at + direct},
        {2, DatabaseKind::documentation, head3 + at + fb}, {3, DatabaseKind::documentation, head2 + at + client},
        {3, DatabaseKind::report, head2 + at + plain},     {3, DatabaseKind::picture, head2 + at + plain},
        {1, DatabaseKind::picture, head5 + at + direct},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.code) + " " + std::to_string(static_cast<int>(c.kind)));
        EXPECT_EQ(composeConnectionString(c.code, c.kind, at, "pw"), c.expected);
    }
    // A password or location that would end its property early is quoted.
    EXPECT_NE(composeConnectionString(1, DatabaseKind::main, at, "p;w\"x").find("Password=\"p;w\"\"x\";"),
              std::string::npos);
}

TEST(ProviderCode, FollowsTheInstalledProviders) {
    const struct {
        std::vector<std::string> installed;
        int expected;
    } cases[] = {
        {{"LCPI.IBProvider.5.Free"}, 1},
        {{"LCPI.IBProvider.5"}, 1},
        {{"lcpi.ibprovider.5"}, 1},  // without regard to case
        {{"LCPI.IBProvider.3", "LCPI.IBProvider.2"}, 2},
        {{"LCPI.IBProvider.3.Free"}, 2},
        {{"LCPI.IBProvider.2"}, 3},
        {{"LCPI.IBProvider.50", "LCPI.IBProvider"}, 3},  // whole names only
        {{}, 3},
    };
    for (const auto& c : cases) {
        db::Connection::setProviderNames(c.installed);
        EXPECT_EQ(GetProviderExits(), c.expected);
    }
    db::Connection::setProviderNames(db::Connection::defaultProviderNames());
    EXPECT_EQ(GetProviderExits(), 1);
}

class ConnectTest : public testing::EnvironmentTest {
protected:
    ConnectTest() { std::filesystem::create_directories(userRoot()); }
    void createMainDatabase() {
        db::Connection created;
        schema::createDatabase(created, schema::Database::main, (userRoot() / "NALET.FDB").string());
    }
};

TEST_F(ConnectTest, OpensTheSettledDatabaseAndAgainByItsUpperCasedLocation) {
    createMainDatabase();
    db::Connection connection;
    FunConnection(connection);  // settles the location
    EXPECT_TRUE(connection.isOpen());
    FunConnection(connection);  // now read upper-cased from the values file
    ASSERT_TRUE(connection.isOpen());
    EXPECT_EQ(GetUserBase(), upperCase((userRoot() / "NALET.FDB").string()));
    db::DataSet tables(connection, "select count(*) from REESTR");
    tables.open();
    EXPECT_EQ(tables.field(0).asInt(), 0);
    EXPECT_TRUE(host().shown.empty());
}

TEST_F(ConnectTest, AFailureIsShownAndLeavesTheConnectionClosed) {
    setenv("MXBOOK_DB_PASSWORD", "tajna;word", 1);
    const struct {
        std::function<void(db::Connection&)> connect;
        std::string message;
    } cases[] = {
        {FunConnection, "Func - отсутствует подключение к базе!"},
        {FunConnectDocTO, "Func - отсутствует подключение к ПТД!"},
        {FunConnectReport, "Func - отсутствует подключение к отчетам!"},
        {FunConPhoto, "Photo - отсутствует подключение к базе PICTURE!"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        host().shown.clear();
        db::Connection connection;
        EXPECT_NO_THROW(c.connect(connection));  // no database file there
        EXPECT_FALSE(connection.isOpen());
        ASSERT_EQ(host().shown.size(), 1u);
        EXPECT_EQ(host().shown[0].text, c.message);
        EXPECT_EQ(host().shown[0].caption, "Ошибка!");
        EXPECT_EQ(host().shown[0].flags, 0x10u);
        EXPECT_EQ(host().shown[0].owner.id, 42u);
    }
    unsetenv("MXBOOK_DB_PASSWORD");
}

TEST_F(ConnectTest, AnOpenConnectionIsClosedBeforeAFailedAttempt) {
    createMainDatabase();
    db::Connection connection;
    FunConnection(connection);
    ASSERT_TRUE(connection.isOpen());
    std::ofstream(userRoot() / "VelmoValues.ini") << "[BASE]\nCONNECTED=1\n";  // "ERROR!!!" from now on
    FunConnection(connection);
    EXPECT_FALSE(connection.isOpen());
    ASSERT_EQ(host().shown.size(), 1u);
}

// With no LCPI provider the oldest provider's string is used, and it opens
// when that provider is there and fails with the message when it is not.
TEST_F(ConnectTest, ProviderCodeThreeUsesTheOldestProvider) {
    createMainDatabase();
    db::Connection::setProviderNames({"LCPI.IBProvider.2"});
    db::Connection connection;
    FunConnection(connection);
    EXPECT_TRUE(connection.isOpen());
    EXPECT_EQ(connection.connectionString().rfind("Provider=LCPI.IBProvider.2;", 0), 0u);
    db::Connection::setProviderNames({});
    FunConnection(connection);
    EXPECT_FALSE(connection.isOpen());
    ASSERT_EQ(host().shown.size(), 1u);
    EXPECT_EQ(host().shown[0].text, "Func - отсутствует подключение к базе!");
}

TEST_F(ConnectTest, SettlingThatCannotBeWrittenIsAFailedConnection) {
    std::filesystem::remove_all(userRoot());
    db::Connection connection;
    EXPECT_NO_THROW(FunConnectReport(connection));
    EXPECT_FALSE(connection.isOpen());
    ASSERT_EQ(host().shown.size(), 1u);
    EXPECT_EQ(host().shown[0].text, "Func - отсутствует подключение к отчетам!");
}

class IdentifiersTest : public ConnectTest {
protected:
    IdentifiersTest() {
        createMainDatabase();
        FunConnection(connection_);
    }
    db::Connection connection_;
};

TEST_F(IdentifiersTest, GeneratorValuesFollowEachOther) {
    const int first = GetID(connection_, "GEN_ETAAGREGAT_ID");
    EXPECT_EQ(GetID(connection_, "GEN_ETAAGREGAT_ID"), first + 1);
    EXPECT_EQ(GetID(connection_, "GEN_ETA_ZCU_ID"), 1);
    EXPECT_THROW(GetID(connection_, "GEN_NO_SUCH_ID"), db::Error);
    EXPECT_THROW(GetID(connection_, "GEN_ETA_ZCU_ID, 100) from rdb$database union select 1"), db::Error);
    EXPECT_EQ(GetID(connection_, "GEN_ETA_ZCU_ID"), 2);
}

TEST_F(IdentifiersTest, NextMovementNumberIsTheHighestPlusOne) {
    EXPECT_EQ(FunMaxDvigExp(connection_), 1);
    for (int number : {5, 41, 7}) {
        connection_.execute("insert into DVIGENIE_V_EKSPLUATACII (FAKE_NUMBER) values (" + std::to_string(number) +
                            ")");
    }
    EXPECT_EQ(FunMaxDvigExp(connection_), 42);
    connection_.execute("insert into DVIGENIE_V_EKSPLUATACII (FAKE_NUMBER) values (null)");
    EXPECT_EQ(FunMaxDvigExp(connection_), 42);
    db::Connection closed;
    EXPECT_THROW(FunMaxDvigExp(closed), db::Error);
}

}  // namespace
}  // namespace mxbook
