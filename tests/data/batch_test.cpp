#include <gtest/gtest.h>

#include "database_test.h"
#include "mxbook/data.h"
#include "sample_schema.h"

namespace mxbook::db {
namespace {

class BatchTest : public testing::DatabaseTest {
protected:
    BatchTest() : DatabaseTest(testing::sampleSchema) {}

    int sampleRows() const { return scalar("select count(*) from SAMPLE").asInt(); }
};

constexpr const char* insertSample = "insert into SAMPLE (ID, NAME, COUNTER) values (?, ?, ?)";

TEST_F(BatchTest, OthersSeeNothingUntilCommit) {
    Batch batch(connection());
    for (int id = 10; id < 20; ++id) batch.execute(insertSample, {Value(id), Value("Склад"), Value(id * 2)});
    EXPECT_EQ(batch.execute("update SAMPLE set COUNTER = COUNTER + 1 where ID >= ?", {Value(15)}), 5);
    EXPECT_EQ(sampleRows(), 4);
    batch.commit();
    EXPECT_EQ(sampleRows(), 14);
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 19").asInt(), 39);
    EXPECT_EQ(scalar("select NAME from SAMPLE where ID = 10").asText(), "Склад");
}

TEST_F(BatchTest, DroppedUncommittedOnDestructionAndOnFailure) {
    {
        Batch batch(connection());
        batch.execute(insertSample, {Value(10), Value("a"), Value(1)});
    }
    EXPECT_EQ(sampleRows(), 4);

    Batch batch(connection());
    batch.execute(insertSample, {Value(11), Value("b"), Value(2)});
    // A duplicate key fails this statement; the caller decides that nothing is stored.
    EXPECT_THROW(batch.execute(insertSample, {Value(1), Value("c"), Value(3)}), Error);
    EXPECT_EQ(sampleRows(), 4);
}

TEST_F(BatchTest, AFailureCaughtByTheCallerStillFailsTheBatch) {
    Batch batch(connection());
    batch.execute(insertSample, {Value(10), Value("a"), Value(1)});
    EXPECT_THROW(batch.execute(insertSample, {Value(1), Value("dup"), Value(3)}), Error);
    EXPECT_THROW(batch.execute(insertSample, {Value(11), Value("b"), Value(2)}), Error);
    EXPECT_THROW(batch.commit(), Error);
    EXPECT_EQ(sampleRows(), 4);

    batch.rollback();  // and the batch starts afresh
    batch.execute(insertSample, {Value(12), Value("c"), Value(3)});
    batch.commit();
    EXPECT_EQ(sampleRows(), 5);
}

TEST_F(BatchTest, ValuesMustMatchTheMarkers) {
    for (const std::vector<Value>& values : {std::vector<Value>{Value(10), Value("a")},
                                             std::vector<Value>{Value(10), Value("a"), Value(1), Value(2)}}) {
        Batch batch(connection());
        EXPECT_THROW(batch.execute(insertSample, values), ArgumentError);
        EXPECT_THROW(batch.commit(), Error);
    }
    EXPECT_EQ(sampleRows(), 4);
}

TEST_F(BatchTest, DataSetsOnTheSameConnectionJoinItInsteadOfWaiting) {
    Batch batch(connection());
    batch.execute("update SAMPLE set COUNTER = 11 where ID = 1");
    DataSet rows(connection(), "select * from SAMPLE where ID = 1");
    rows.open();
    EXPECT_EQ(rows.field("COUNTER").asInt(), 11);  // it reads what the batch wrote
    rows.edit();
    rows.setValue("NAME", "Ремфонд");
    rows.updateBatch();
    EXPECT_EQ(connection().execute("update SAMPLE set COUNTER = COUNTER + 1 where ID = 1"), 1);
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 1").asInt(), 10);
    batch.commit();
    EXPECT_EQ(scalar("select NAME || COUNTER from SAMPLE where ID = 1").asText(), "Ремфонд12");
}

TEST_F(BatchTest, GoesOnAfterCommit) {
    Batch batch(connection());
    batch.execute(insertSample, {Value(10), Value("a"), Value(1)});
    batch.commit();
    batch.execute(insertSample, {Value(11), Value("b"), Value(2)});
    batch.commit();
    EXPECT_EQ(sampleRows(), 6);
}

TEST_F(BatchTest, ClosingTheConnectionDropsTheWorkAndSaysSo) {
    Batch batch(connection());
    batch.execute(insertSample, {Value(10), Value("a"), Value(1)});
    connection().close();
    connection().open();
    EXPECT_THROW(batch.commit(), Error);
    EXPECT_EQ(sampleRows(), 4);
}

}  // namespace
}  // namespace mxbook::db
