#include <gtest/gtest.h>

#include <fstream>

#include "database_test.h"
#include "mxbook/data.h"
#include "sample_schema.h"

namespace mxbook::db {
namespace {

using testing::connectionStringFor;

class ConnectionTest : public testing::DatabaseTest {
protected:
    ConnectionTest() : DatabaseTest(testing::sampleSchema) {}
};

TEST_F(ConnectionTest, ClosesAndReopensWithItsString) {
    ASSERT_TRUE(connection().isOpen());
    connection().close();
    EXPECT_FALSE(connection().isOpen());
    EXPECT_THROW(connection().execute("delete from SAMPLE"), Error);
    connection().open();
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
}

TEST_F(ConnectionTest, UnreachableLocationRaisesWithoutShowingThePassword) {
    const struct {
        const char* why;
        std::string location;
    } cases[] = {
        {"no such folder", "/nonexistent/folder/NALET.FDB"},
        {"not a database", "NOT_A_DATABASE"},
        {"no server listening", "127.0.0.1/1:/tmp/NALET.FDB"},
        {"the unsettled location", "ERROR!!!"},
    };
    std::ofstream(folder() / "NOT_A_DATABASE") << "a text file, not a database\n";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const std::string location = c.location == "NOT_A_DATABASE" ? (folder() / c.location).string() : c.location;
        Connection other;
        try {
            other.open(connectionStringFor(location, "masterkey-secret"));
            ADD_FAILURE() << "opened";
        } catch (const Error& error) {
            EXPECT_FALSE(std::string(error.what()).empty());
            EXPECT_EQ(std::string(error.what()).find("masterkey-secret"), std::string::npos);
        }
        EXPECT_FALSE(other.isOpen());
    }
}

TEST_F(ConnectionTest, ProviderMustBeOneThisMachineOffers) {
    const auto offered = Connection::providerNames();
    EXPECT_EQ(offered.size(), 5u);
    Connection::setProviderNames({"LCPI.IBProvider.2"});
    Connection other;
    EXPECT_THROW(other.open(connectionStringFor(databasePath())), Error);
    EXPECT_FALSE(other.isOpen());
    other.open("PROVIDER=lcpi.ibprovider.2;Location=" + databasePath().string());
    EXPECT_TRUE(other.isOpen());
    Connection::setProviderNames(Connection::defaultProviderNames());
    EXPECT_EQ(Connection::providerNames(), offered);
}

TEST_F(ConnectionTest, ConnectionStringWithoutLocationIsRefused) {
    Connection other;
    EXPECT_THROW(other.open("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA"), Error);
}

TEST_F(ConnectionTest, FailingStatementCarriesFirebirdsMessageCodeAndStatement) {
    try {
        connection().execute("delete from NO_SUCH_TABLE");
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.sqlCode(), -204);
        EXPECT_NE(error.message().find("NO_SUCH_TABLE"), std::string::npos) << error.message();
        EXPECT_EQ(error.statement(), "delete from NO_SUCH_TABLE");
    }
    // The connection stays usable.
    EXPECT_EQ(connection().execute("update SAMPLE set COUNTER = COUNTER + 1 where ID < 3"), 2);
}

TEST_F(ConnectionTest, TransactionControlStatementsAreRefused) {
    for (const char* sql : {"commit", "rollback", "set transaction read committed"}) {
        SCOPED_TRACE(sql);
        EXPECT_THROW(connection().execute(sql), Error);
    }
    EXPECT_EQ(connection().execute("update SAMPLE set COUNTER = 0 where ID = 1"), 1);
}

TEST_F(ConnectionTest, GeneratorGivesConsecutiveValues) {
    const auto first = connection().nextGeneratorValue("GEN_SAMPLE_ID");
    EXPECT_EQ(connection().nextGeneratorValue("gen_sample_id"), first + 1);
    Connection other = openAnother();
    EXPECT_EQ(other.nextGeneratorValue("GEN_SAMPLE_ID"), first + 2);
    EXPECT_THROW(connection().nextGeneratorValue("GEN_MISSING"), Error);
    EXPECT_THROW(connection().nextGeneratorValue("GEN_SAMPLE_ID, 1) from rdb$database; --"), Error);
}

TEST_F(ConnectionTest, ScriptsRunTriggersWrittenForIsql) {
    connection().executeScript(R"(
create generator GEN_AUTO;
SET TERM ^ ;
create trigger NO_KEY_BI for NO_KEY before insert as
begin
  if (new.A is null) then new.A = gen_id(GEN_AUTO, 1) + 100;
end^
SET TERM ; ^
insert into NO_KEY (B) values ('триггер');
)");
    EXPECT_EQ(scalar("select A from NO_KEY where B = 'триггер'").asInt(), 101);
}

TEST_F(ConnectionTest, MetadataChangesSeeNoStaleStatements) {
    const auto columnsOf = [&](const char* sql) {
        DataSet rows(connection(), sql);
        rows.open();
        return rows.fieldCount();
    };
    EXPECT_EQ(columnsOf("select * from NO_KEY"), 2);
    connection().execute("alter table NO_KEY add C integer");
    EXPECT_EQ(columnsOf("select * from NO_KEY"), 3);
    connection().execute("drop table NO_KEY");
    EXPECT_THROW(columnsOf("select * from NO_KEY"), Error);
}

TEST_F(ConnectionTest, AnotherConnectionsSchemaChangesReachCachedStatements) {
    const auto read = [&](const char* sql) {
        DataSet rows(connection(), sql);
        rows.open();
        std::string text;
        for (int i = 0; i < rows.fieldCount(); ++i) text += rows.field(i).asText() + ";";
        return text;
    };
    connection().execute("insert into NO_KEY (A, B) values (1, 'короткий')");
    EXPECT_EQ(read("select * from NO_KEY"), "1;короткий;");
    {
        Connection other = openAnother();
        other.execute("alter table NO_KEY alter B type varchar(30)");
        other.execute("update NO_KEY set B = 'гораздо более длинный'");
    }
    EXPECT_EQ(read("select * from NO_KEY"), "1;гораздо более длинный;");  // widened: no truncation

    {
        Connection other = openAnother();
        other.execute("alter table NO_KEY drop A");
    }
    connection().forgetStatements();  // a dropped column is not reported: the upgrade says so
    EXPECT_EQ(read("select * from NO_KEY"), "гораздо более длинный;");

    DataSet rows(connection(), "select * from NO_KEY");
    rows.open();
    EXPECT_THROW(rows.edit(), Error);  // no key yet
    {
        Connection other = openAnother();
        other.execute("alter table NO_KEY add ID integer default 7 not null");
        other.execute("alter table NO_KEY add constraint PK_NO_KEY primary key (ID)");
    }
    connection().forgetStatements();
    rows.open();
    rows.edit();  // the new key is seen
    rows.setValue("B", "с ключом");
    rows.updateBatch();
    EXPECT_EQ(scalar("select B from NO_KEY where ID = 7").asText(), "с ключом");
}

TEST_F(ConnectionTest, DroppingRemovesTheDatabaseThroughItsAttachment) {
    const auto location = folder() / "dropped.fdb";
    Connection created;
    created.create(testing::connectionStringFor(location));
    created.execute("create table T (A integer)");
    DataSet rows(created, "select * from T");
    rows.open();
    created.dropDatabase();
    EXPECT_FALSE(created.isOpen());
    EXPECT_FALSE(rows.isOpen());
    EXPECT_FALSE(std::filesystem::exists(location));
}

TEST_F(ConnectionTest, AutoCommitOffIsRefusedNotIgnored) {
    Connection other(testing::connectionStringFor(databasePath()) + ";auto_commit=False");
    try {
        other.open();
        FAIL() << "opened";
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find("auto_commit"), std::string::npos) << error.what();
    }
    EXPECT_FALSE(other.isOpen());
}

TEST_F(ConnectionTest, ClosingTheConnectionClosesItsDataSets) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    connection().close();
    EXPECT_FALSE(rows.isOpen());
    EXPECT_THROW(rows.field(0), Error);
    connection().open();
    rows.open();
    EXPECT_EQ(rows.recordCount(), 4);
}

TEST_F(ConnectionTest, DataSetOutlivingItsConnectionFailsCleanly) {
    auto other = std::make_unique<Connection>(openAnother());
    DataSet rows(*other, "select * from SAMPLE");
    other.reset();
    EXPECT_THROW(rows.open(), Error);
}

}  // namespace
}  // namespace mxbook::db
