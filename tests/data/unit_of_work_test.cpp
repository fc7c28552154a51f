#include <gtest/gtest.h>

#include "database_test.h"
#include "mxbook/data.h"
#include "sample_schema.h"

namespace mxbook::db {
namespace {

class UnitOfWorkTest : public testing::DatabaseTest {
protected:
    UnitOfWorkTest() : DatabaseTest(testing::sampleSchema) {}

    // SAMPLE, AUTO_ID and MEASURE as one text, to see that none changed.
    std::string tables() const {
        return scalar("select (select list(ID || NAME || COUNTER) from SAMPLE) || '/' || "
                      "(select count(*) from AUTO_ID) || '/' || (select list(ID || TENTHS) from MEASURE) "
                      "from rdb$database")
            .asText();
    }

    // Writes the three tables in the connection's open unit: a data set
    // edit, a batch insert and a plain statement.
    void writeThreeTables() {
        DataSet rows(connection(), "select * from SAMPLE where ID = 1");
        rows.open();
        rows.edit();
        rows.setValue("COUNTER", 11);
        rows.updateBatch();
        Batch batch(connection());
        batch.execute("insert into AUTO_ID (NAME) values (?)", {Value("новый")});
        batch.commit();  // the unit stores it, not the batch
        connection().execute("update MEASURE set TENTHS = 0.4 where ID = 1");
    }
};

TEST_F(UnitOfWorkTest, AFailureOnTheLastTableStoresNothing) {
    const std::string before = tables();
    {
        UnitOfWork work(connection());
        writeThreeTables();
        EXPECT_THROW(connection().execute("insert into MEASURE (ID) values (1)"), Error);  // duplicate key
        EXPECT_THROW(work.commit(), Error);
    }
    EXPECT_EQ(tables(), before);

    UnitOfWork work(connection());
    writeThreeTables();
    EXPECT_EQ(tables(), before);  // others see nothing yet
    work.commit();
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 1").asInt(), 11);
    EXPECT_EQ(scalar("select count(*) from AUTO_ID").asInt(), 1);
}

TEST_F(UnitOfWorkTest, DestroyedUncommittedItRollsBackAndTheDataSetIsPendingAgain) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    {
        UnitOfWork work(connection());
        rows.edit();
        rows.setValue("COUNTER", 12);
        rows.updateBatch();
        EXPECT_FALSE(rows.hasPendingChanges());
    }
    EXPECT_TRUE(rows.hasPendingChanges());
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 1").asInt(), 10);
    rows.updateBatch();  // the retry outside any unit
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 1").asInt(), 12);
}

TEST_F(UnitOfWorkTest, AnInnerUnitJoinsAndItsRollbackFailsTheOuter) {
    UnitOfWork outer(connection());
    {
        UnitOfWork inner(connection());
        EXPECT_TRUE(inner.isJoined());
        connection().execute("delete from SAMPLE where ID = 4");
        inner.commit();
    }
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
    { UnitOfWork abandoned(connection()); }
    EXPECT_THROW(outer.commit(), Error);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
}

TEST_F(UnitOfWorkTest, DataSetsOpenedInsideReadWhatItWroteAndKeepItAfter) {
    connection().execute("update SAMPLE set NOTE = 'старый' where ID = 1");
    UnitOfWork work(connection());
    connection().execute("update SAMPLE set NOTE = 'новый' where ID = 1");
    DataSet rows(connection(), "select ID, NOTE from SAMPLE order by ID");
    rows.open();
    work.commit();
    // The unit's transaction has ended: its rows and blobs were read before it did.
    EXPECT_EQ(rows.field("NOTE").asText(), "новый");
    EXPECT_EQ(rows.recordCount(), 4);
}

}  // namespace
}  // namespace mxbook::db
