// Changing rows: edit, insert, delete, post, and storing them in one batch.
#include <gtest/gtest.h>

#include "database_test.h"
#include "mxbook/data.h"
#include "sample_schema.h"

namespace mxbook::db {
namespace {

class DataSetEditTest : public testing::DatabaseTest {
protected:
    DataSetEditTest() : DatabaseTest(testing::sampleSchema) {}

    std::string namesInDatabase() {
        Connection other = openAnother();
        DataSet rows(other, "select NAME from SAMPLE order by ID");
        rows.open();
        std::string names;
        for (; !rows.eof(); rows.next()) names += rows.field(0).asText() + ";";
        return names;
    }
};

TEST_F(DataSetEditTest, EditedRowIsStoredByItsKeyOnUpdateBatch) {
    DataSet rows(connection(), "Select * From SAMPLE Order By ID");
    rows.open();
    rows.next();
    rows.edit();
    rows.setValue(1, "Ремфонд №2");
    rows.setValue("COUNTER", 21);
    rows.post();
    EXPECT_EQ(rows.field("NAME").asText(), "Ремфонд №2");
    EXPECT_TRUE(rows.hasPendingChanges());
    EXPECT_EQ(namesInDatabase(), "Склад;Ремфонд;Ремонт;Рекламация;");

    rows.updateBatch();
    EXPECT_FALSE(rows.hasPendingChanges());
    EXPECT_EQ(namesInDatabase(), "Склад;Ремфонд №2;Ремонт;Рекламация;");
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 2").asInt(), 21);
    EXPECT_EQ(scalar("select sum(COUNTER) from SAMPLE").asInt(), 101);
}

TEST_F(DataSetEditTest, ValuesOfEveryTypeAreStoredAsTheirColumnsHoldThem) {
    DataSet rows(connection(), "select * from SAMPLE where ID = 1");
    rows.open();
    rows.edit();
    rows.setValue("CODE", "Ф-1");
    rows.setValue("SMALL", "-5");
    rows.setValue("BIG", 9000000000);
    rows.setValue("PRICE", "12,5");
    rows.setValue("RATIO", 0.25);
    rows.setValue("APPROX", 2);
    rows.setValue("MADE", "29.02.2024");
    rows.setValue("AT_TIME", "1:05");
    rows.setValue("STAMP", Timestamp{Date::fromYmd(2024, 3, 1), Time::fromHms(7, 5)});
    rows.setValue("FLAG", "True");
    rows.setValue("NOTE", Date::fromYmd(2024, 3, 1));  // a date into text takes the short date form
    rows.updateBatch();
    // Checked by SQL against literals, not by reading back through the same code.
    EXPECT_EQ(scalar("select count(*) from SAMPLE where ID = 1 and CODE = 'Ф-1' and SMALL = -5 and "
                     "BIG = 9000000000 and PRICE = 12.50 and RATIO = 0.25 and APPROX = 2 and "
                     "MADE = '2024-02-29' and AT_TIME = '01:05:00' and STAMP = '2024-03-01 07:05:00' and "
                     "FLAG and NOTE = '01.03.2024'")
                  .asInt(),
              1);
}

TEST_F(DataSetEditTest, SettingNullAndEmptyText) {
    DataSet rows(connection(), "select * from SAMPLE where ID = 1");
    rows.open();
    rows.edit();
    rows.setValue("COUNTER", Value());
    rows.setValue("SMALL", "");  // empty input leaves a number empty
    rows.setValue("NAME", "");   // but text may be empty
    rows.updateBatch();
    EXPECT_EQ(scalar("select count(*) from SAMPLE where ID = 1 and COUNTER is null and SMALL is null and NAME = ''")
                  .asInt(),
              1);
}

TEST_F(DataSetEditTest, InsertedRowGetsTheValuesTheDatabaseAssigns) {
    DataSet rows(connection(), "Select * From AUTO_ID Order By ID");
    rows.open();
    rows.append();
    rows.setValue("NAME", "Хвостовой винт");
    rows.post();
    rows.append();
    rows.post();  // a row of nothing but defaults
    EXPECT_TRUE(rows.field("ID").isNull());
    rows.updateBatch();

    rows.first();
    EXPECT_EQ(rows.field("NAME").asText(), "Хвостовой винт");
    EXPECT_EQ(rows.field("ID").asInt(), 1);
    EXPECT_EQ(rows.field("KIND").asInt(), 7);
    rows.next();
    EXPECT_EQ(rows.field("ID").asInt(), 2);
    EXPECT_EQ(scalar("select count(*) from AUTO_ID where KIND = 7").asInt(), 2);
}

TEST_F(DataSetEditTest, InsertPutsTheRowBeforeTheCurrentOne) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    rows.next();
    rows.insert();
    rows.setValue("ID", 100);
    rows.setValue("NAME", "Новый");
    rows.post();
    std::vector<int> ids;
    for (rows.first(); !rows.eof(); rows.next()) ids.push_back(rows.field("ID").asInt());
    EXPECT_EQ(ids, (std::vector<int>{1, 100, 2, 3, 4}));
    rows.updateBatch();
    EXPECT_EQ(scalar("select NAME from SAMPLE where ID = 100").asText(), "Новый");
}

TEST_F(DataSetEditTest, DeletingWhileNotAtTheEndEmptiesTheTable) {
    DataSet rows(connection(), "Select * From SAMPLE");
    rows.open();
    while (!rows.eof()) rows.remove();
    EXPECT_EQ(rows.recordCount(), 0);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
    rows.updateBatch();
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 0);
}

TEST_F(DataSetEditTest, DeletesEditsAndInsertsGoTogether) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    rows.edit();
    rows.setValue("ID", 50);  // a changed key: the row is found by its stored key
    rows.post();
    rows.next();
    rows.remove();  // deletes ID 2
    rows.append();
    rows.setValue("ID", 2);  // and a new row takes the freed key
    rows.setValue("NAME", "Снова 2");
    rows.updateBatch();
    EXPECT_EQ(namesInDatabase(), "Снова 2;Ремонт;Рекламация;Склад;");
}

TEST_F(DataSetEditTest, FailedBatchStoresNothingAndKeepsTheChanges) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    rows.edit();
    rows.setValue("NAME", "Первый");
    rows.next();  // moving off the row posts it
    rows.edit();
    rows.setValue("NAME", std::string(41, 'x'));  // one more than VARCHAR(40) holds
    rows.post();
    EXPECT_THROW(rows.updateBatch(), Error);
    EXPECT_EQ(namesInDatabase(), "Склад;Ремфонд;Ремонт;Рекламация;");
    EXPECT_TRUE(rows.hasPendingChanges());

    rows.edit();
    rows.setValue("NAME", "Второй");
    rows.updateBatch();
    EXPECT_EQ(namesInDatabase(), "Первый;Второй;Ремонт;Рекламация;");
}

TEST_F(DataSetEditTest, RowChangedOrDeletedSinceReadingIsAConflictNotOverwritten) {
    Connection other = openAnother();
    const struct {
        const char* meanwhile;  // by another user
        bool remove;            // what this data set then does to row 3
    } cases[] = {
        {"delete from SAMPLE where ID = 3", false},
        {"delete from SAMPLE where ID = 3", true},
        {"update SAMPLE set COUNTER = 35 where ID = 3", false},  // a lost update otherwise
        {"update SAMPLE set NAME = 'Склад' where ID = 3", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.meanwhile);
        connection().execute("update or insert into SAMPLE (ID, NAME, COUNTER) values (3, 'Ремонт', 30)");
        DataSet rows(connection(), "select * from SAMPLE where ID >= 3 order by ID");
        rows.open();
        other.execute(c.meanwhile);
        rows.next();
        rows.remove();  // row 4: stored only with row 3
        rows.first();
        if (c.remove) {
            rows.remove();
        } else {
            rows.edit();
            rows.setValue("COUNTER", 31);
        }
        try {
            rows.updateBatch();
            FAIL() << "stored";
        } catch (const ConflictError& error) {
            EXPECT_EQ(error.table(), "SAMPLE");
            EXPECT_EQ(error.key(), "ID=3");
        }
        EXPECT_TRUE(rows.hasPendingChanges());
        EXPECT_EQ(scalar("select count(*) from SAMPLE where ID = 4").asInt(), 1);
        connection().execute("update or insert into SAMPLE (ID, NAME, COUNTER) values (4, 'Рекламация', 40)");
    }
}

TEST_F(DataSetEditTest, TwoDataSetsOnOneConnectionDoNotOverwriteEachOther) {
    DataSet first(connection(), "select * from SAMPLE where ID = 2");
    DataSet second(connection(), "select * from SAMPLE where ID = 2");
    first.open();
    second.open();
    first.edit();
    first.setValue("COUNTER", 21);
    first.updateBatch();
    second.edit();
    second.setValue("COUNTER", 22);
    EXPECT_THROW(second.updateBatch(), ConflictError);
    EXPECT_EQ(scalar("select COUNTER from SAMPLE where ID = 2").asInt(), 21);
}

TEST_F(DataSetEditTest, CancelDropsTheEdit) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    rows.edit();
    rows.setValue("NAME", "Отменено");
    EXPECT_EQ(rows.field("NAME").asText(), "Отменено");
    rows.cancel();
    EXPECT_EQ(rows.field("NAME").asText(), "Склад");
    EXPECT_FALSE(rows.hasPendingChanges());
}

TEST_F(DataSetEditTest, ClosingDropsPendingChanges) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    rows.remove();
    rows.close();
    rows.open();
    EXPECT_EQ(rows.recordCount(), 4);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
}

TEST_F(DataSetEditTest, OnlyRowsOfOneKeyedTableCanChange) {
    const struct {
        const char* sql;
        const char* reason;
    } cases[] = {
        {"select * from NO_KEY", "no primary key"},
        {"select S.ID, A.NAME from SAMPLE S, AUTO_ID A", "more than one table"},
        {"select ID, COUNTER + 1 as NEXT_COUNTER from SAMPLE", "expression"},
        {"select NAME from SAMPLE", "key column ID"},
        {"select a.ID, b.ID as NEXT_ID, b.NAME from SAMPLE a join SAMPLE b on b.ID = a.ID + 1", "more than one table"},
        // Firebird labels every column of a union as the first table's.
        {"select ID, NAME from AUTO_ID union all select ID, NAME from SAMPLE", "UNION"},
    };
    connection().execute("insert into NO_KEY values (1, 'a')");
    connection().execute("insert into AUTO_ID (NAME) values ('a')");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql);
        DataSet rows(connection(), c.sql);
        rows.open();
        try {
            rows.edit();
            ADD_FAILURE() << "editable";
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()).find(c.reason), std::string::npos) << error.what();
        }
        EXPECT_EQ(rows.state(), DataSet::State::browse);
    }
}

TEST_F(DataSetEditTest, ColumnsNamedLikeKeywordsAreWritten) {
    DataSet rows(connection(), "select * from MEASURE where ID = 1");
    rows.open();
    rows.edit();
    rows.setValue("DATE", "01.02.2024");
    rows.setValue("ORDER", 3);
    rows.updateBatch();
    rows.append();
    rows.setValue("ID", 3);
    rows.setValue("ORDER", 4);
    rows.updateBatch();
    EXPECT_EQ(scalar("select count(*) from MEASURE where (ID = 1 and \"DATE\" = '2024-02-01' and \"ORDER\" = 3) "
                     "or (ID = 3 and \"ORDER\" = 4)")
                  .asInt(),
              2);
}

TEST_F(DataSetEditTest, StoringBeforeAllRowsAreReadDoesNotReadThemTwice) {
    DataSet rows(connection(), "select * from SAMPLE");
    rows.open();  // only the first row fetched so far
    rows.insert();
    rows.setValue("ID", 100);
    rows.post();
    rows.updateBatch();
    EXPECT_EQ(rows.recordCount(), 5);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 5);
}

TEST_F(DataSetEditTest, ValuesBeyondTheColumnAreRefusedNotWrapped) {
    DataSet rows(connection(), "select * from MEASURE where ID = 2");
    rows.open();
    rows.edit();
    rows.setValue("SINGLE", 1e300);
    EXPECT_THROW(rows.updateBatch(), ConversionError);
    EXPECT_EQ(scalar("select count(*) from MEASURE where ID = 2 and SINGLE = 7.25").asInt(), 1);

    DataSet notes(connection(), "select * from SAMPLE where ID = 1");
    notes.open();
    notes.edit();
    notes.setValue("NAME", std::string(70000, 'x'));  // wider than any VARCHAR
    EXPECT_THROW(notes.updateBatch(), Error);
    notes.edit();
    notes.setValue("NAME", Value("Склад"));
    notes.setValue("NOTE", std::string(70000, 'x'));  // a blob holds it
    notes.updateBatch();
    EXPECT_EQ(scalar("select char_length(NOTE) from SAMPLE where ID = 1").asInt(), 70000);
}

TEST_F(DataSetEditTest, MovedFromDataSetFailsCleanly) {
    DataSet rows(connection(), "select * from SAMPLE");
    DataSet taken = std::move(rows);
    EXPECT_THROW(rows.open(), Error);  // NOLINT(bugprone-use-after-move): the point of the test
    taken.open();
    EXPECT_EQ(taken.recordCount(), 4);
}

TEST_F(DataSetEditTest, SettingOutsideEditModeOrWithBadTextFails) {
    DataSet rows(connection(), "select * from SAMPLE order by ID");
    rows.open();
    EXPECT_THROW(rows.setValue("NAME", "x"), Error);
    rows.edit();
    EXPECT_THROW(rows.setValue("COUNTER", "12:30"), ConversionError);
    EXPECT_THROW(rows.setValue("MADE", "31.02.2024"), ConversionError);
    EXPECT_THROW(rows.setValue(99, 1), ArgumentError);
    rows.post();
    EXPECT_FALSE(rows.hasPendingChanges());
}

}  // namespace
}  // namespace mxbook::db
