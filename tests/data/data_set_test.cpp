// Reading rows: navigation, fields of every type, parameters, blobs, locate.
#include <gtest/gtest.h>

#include <iterator>

#include "database_test.h"
#include "mxbook/data.h"
#include "sample_schema.h"

namespace mxbook::db {
namespace {

class DataSetTest : public testing::DatabaseTest {
protected:
    DataSetTest() : DatabaseTest(testing::sampleSchema) {}

    DataSet openQuery(const std::string& sql) {
        DataSet rows(connection(), sql);
        rows.open();
        return rows;
    }
};

TEST_F(DataSetTest, WalksRowsInOrder) {
    DataSet rows = openQuery("Select * From SAMPLE Order By ID");
    EXPECT_EQ(rows.recordCount(), 4);
    std::vector<int> counters;
    for (rows.first(); !rows.eof(); rows.next()) counters.push_back(rows.field("COUNTER").asInt());
    EXPECT_EQ(counters, (std::vector<int>{10, 20, 30, 40}));
    rows.next();  // past the end stays at the end
    EXPECT_TRUE(rows.eof());
    EXPECT_THROW(rows.field(0).asInt(), Error);
    rows.first();
    EXPECT_EQ(rows.field("ID").asInt(), 1);
}

TEST_F(DataSetTest, ForwardOnlyWalksOnceAndRefusesWhatNeedsTheRowsBehind) {
    DataSet rows(connection(), "Select * From SAMPLE Order By ID", DataSet::Traversal::forwardOnly);
    rows.open();
    rows.first();  // still on it
    std::vector<int> counters;
    for (; !rows.eof(); rows.next()) counters.push_back(rows.field("COUNTER").asInt());
    EXPECT_EQ(counters, (std::vector<int>{10, 20, 30, 40}));
    EXPECT_THROW(rows.first(), Error);
    EXPECT_THROW(rows.recordCount(), Error);
    EXPECT_THROW(rows.locate("ID", 1), Error);
    rows.open();  // again from the first row
    EXPECT_EQ(rows.field("COUNTER").asInt(), 10);
    EXPECT_THROW(rows.edit(), Error);
    EXPECT_THROW(rows.append(), Error);
}

TEST_F(DataSetTest, EmptyResultIsAtItsEnd) {
    DataSet rows = openQuery("select * from SAMPLE where ID < 0");
    EXPECT_TRUE(rows.eof());
    EXPECT_EQ(rows.recordCount(), 0);
    EXPECT_THROW(rows.field("NAME").asText(), Error);
}

TEST_F(DataSetTest, CountingFetchesTheRestWithoutMoving) {
    DataSet rows = openQuery("select ID from SAMPLE order by ID");
    rows.next();
    EXPECT_EQ(rows.recordCount(), 4);
    EXPECT_EQ(rows.field(0).asInt(), 2);
}

TEST_F(DataSetTest, CyrillicTextComparesAndRoundTripsExactly) {
    const char* names[] = {"Склад", "Ремфонд", "Ремонт", "Рекламация"};
    DataSet rows = openQuery("Select NAME From SAMPLE Order By ID");
    for (const char* name : names) {
        EXPECT_EQ(rows.field(0).asText(), name);
        rows.next();
    }
    EXPECT_EQ(scalar("select ID from SAMPLE where NAME = 'Ремонт'").asInt(), 3);
    EXPECT_EQ(scalar("select upper(NAME) from SAMPLE where ID = 1").asText(), "СКЛАД");
    // Stored as WIN1251: one byte a letter.
    EXPECT_EQ(scalar("select octet_length(NAME) from SAMPLE where ID = 4").asInt(), 10);
}

TEST_F(DataSetTest, FieldsByNameIgnoreCase) {
    DataSet rows = openQuery("select ID, NAME as LOCATION_NAME from SAMPLE where ID = 2");
    EXPECT_TRUE(rows.hasField("location_name"));
    EXPECT_TRUE(rows.hasField("Id"));
    EXPECT_FALSE(rows.hasField("NAME"));
    EXPECT_EQ(rows.field("Location_Name").asText(), "Ремфонд");
    EXPECT_EQ(rows.fieldInfo(1).column, "NAME");
    EXPECT_EQ(rows.fieldInfo(1).table, "SAMPLE");
    EXPECT_THROW(rows.field("MISSING"), ArgumentError);
    EXPECT_THROW(rows.field(2), ArgumentError);
    EXPECT_EQ(rows.fieldCount(), 2);
}

TEST_F(DataSetTest, ReadsEveryFieldType) {
    connection().execute(
        "insert into SAMPLE values (10, 'Лопасть', 'AB', 2147483647, -32768, 9000000000, 12345.67, 0.3, 1.5, "
        "'2024-02-29', '23:59:58', '2024-03-01 07:05:00', true, 'Текст документа', x'00FF7F')");
    DataSet rows = openQuery("select * from SAMPLE where ID = 10");
    const FieldType expected[] = {FieldType::integer,  FieldType::text,      FieldType::text,    FieldType::integer,
                                  FieldType::integer,  FieldType::integer,   FieldType::numeric, FieldType::floating,
                                  FieldType::floating, FieldType::date,      FieldType::time,    FieldType::timestamp,
                                  FieldType::boolean,  FieldType::textBlob,  FieldType::blob};
    ASSERT_EQ(rows.fieldCount(), static_cast<int>(std::size(expected)));
    for (int i = 0; i < rows.fieldCount(); ++i) {
        SCOPED_TRACE(rows.fieldInfo(i).name);
        EXPECT_EQ(rows.fieldInfo(i).type, expected[i]);
    }
    EXPECT_EQ(rows.field("NAME").asText(), "Лопасть");
    EXPECT_EQ(rows.field("CODE").asText(), "AB");  // CHAR comes without its padding
    EXPECT_EQ(rows.field("COUNTER").asInt(), 2147483647);
    EXPECT_EQ(rows.field("SMALL").asInt(), -32768);
    EXPECT_EQ(rows.field("BIG").asInt64(), 9000000000);
    EXPECT_THROW(rows.field("BIG").asInt(), ConversionError);
    EXPECT_DOUBLE_EQ(rows.field("PRICE").asDouble(), 12345.67);
    EXPECT_DOUBLE_EQ(rows.field("RATIO").asDouble(), 0.3);
    EXPECT_DOUBLE_EQ(rows.field("APPROX").asDouble(), 1.5);
    EXPECT_EQ(rows.field("MADE").asDate(), Date::fromYmd(2024, 2, 29));
    EXPECT_EQ(rows.field("MADE").asText(), "29.02.2024");
    EXPECT_EQ(rows.field("AT_TIME").asTime(), Time::fromHms(23, 59, 58));
    EXPECT_EQ(rows.field("STAMP").asTimestamp(), (Timestamp{Date::fromYmd(2024, 3, 1), Time::fromHms(7, 5)}));
    EXPECT_TRUE(rows.field("FLAG").asBool());
    EXPECT_EQ(rows.field("NOTE").asText(), "Текст документа");
    EXPECT_EQ(rows.field("DATA").asText(), std::string("\x00\xFF\x7F", 3));
}

TEST_F(DataSetTest, NullFieldsTestNullAndReadNeutral) {
    connection().execute("insert into SAMPLE (ID) values (11)");
    DataSet rows = openQuery("select * from SAMPLE where ID = 11");
    for (int i = 1; i < rows.fieldCount(); ++i) {
        SCOPED_TRACE(rows.fieldInfo(i).name);
        EXPECT_TRUE(rows.field(i).isNull());
        EXPECT_EQ(rows.field(i).asText(), "");
    }
    EXPECT_EQ(rows.field("COUNTER").asInt(), 0);
    EXPECT_EQ(rows.field("MADE").asDate(), Date());
    EXPECT_FALSE(rows.field("FLAG").asBool());
    EXPECT_FALSE(rows.field("ID").isNull());
}

TEST_F(DataSetTest, NamedParametersBindByNameAndType) {
    DataSet rows(connection(),
                 "Select ID From SAMPLE Where (NAME = :pNAME Or COUNTER > :pMIN) And NAME <> ':pNAME' "
                 "And ID <> :pskip Order By ID");
    rows.setParam("pName", "Склад");
    rows.setParam("PMIN", "25");  // text for an integer parameter converts
    rows.setParam("pSkip", 4);
    rows.open();
    std::vector<int> ids;
    for (; !rows.eof(); rows.next()) ids.push_back(rows.field(0).asInt());
    EXPECT_EQ(ids, (std::vector<int>{1, 3}));

    rows.setParam("pMIN", "двадцать");
    EXPECT_THROW(rows.open(), ConversionError);
}

TEST_F(DataSetTest, ParameterMistakesAreNamed) {
    const struct {
        const char* sql;
        const char* param;  // set to NULL when given
        const char* named;  // in the message
    } cases[] = {
        {"select count(*) from SAMPLE where ID = :pID", nullptr, "pID"},             // left unset
        {"select count(*) from SAMPLE where ID = :pID", "pIDX", "PIDX"},             // not in the text
        {"select count(*) from SAMPLE where ID = ?", nullptr, "?"},                  // unnamed marker
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql);
        DataSet rows(connection(), c.sql);
        if (c.param) rows.setParam(c.param, Value());
        try {
            rows.open();
            FAIL() << "opened";
        } catch (const ArgumentError& error) {
            EXPECT_NE(std::string(error.what()).find(c.named), std::string::npos) << error.what();
        }
        EXPECT_THROW(rows.execute(), ArgumentError);
    }
    DataSet rows(connection(), "select count(*) from SAMPLE where :pNOTHING is null");
    rows.setParam("pNothing", Value());
    rows.open();
    EXPECT_EQ(rows.field(0).asInt(), 4);
}

TEST_F(DataSetTest, AFailedFetchLeavesTheDataSetFailedNotAtItsEnd) {
    DataSet rows(connection(), "select 12 / (ID - 3) from SAMPLE order by ID");
    rows.open();
    rows.next();
    EXPECT_THROW(rows.next(), Error);  // row 3 divides by zero
    EXPECT_THROW(rows.eof(), Error);
    EXPECT_THROW(rows.field(0).asInt(), Error);
    rows.close();
    rows.setSql("select count(*) from SAMPLE");
    rows.open();
    EXPECT_EQ(rows.field(0).asInt(), 4);
}

TEST_F(DataSetTest, EachQuerySeesWhatOthersCommittedBeforeIt) {
    const auto counter = [&] {
        DataSet rows(connection(), "select COUNTER from SAMPLE where ID = 1");
        rows.open();
        return rows.field(0).asInt();
    };
    Connection other = openAnother();
    EXPECT_EQ(counter(), 10);
    other.execute("update SAMPLE set COUNTER = 11 where ID = 1");
    EXPECT_EQ(counter(), 11);
    // Begun before this connection's last query and committed after it.
    UnitOfWork work(other);
    other.execute("update SAMPLE set COUNTER = 12 where ID = 1");
    EXPECT_EQ(counter(), 11);
    EXPECT_EQ(counter(), 11);
    work.commit();
    EXPECT_EQ(counter(), 12);
}

TEST_F(DataSetTest, RowsOfOneQueryComeFromOneMoment) {
    // 2,000 rows of 10; another user moves 50 from the last row to the first
    // while the first half has been read: the total must stay what it was.
    connection().execute("execute block as declare i integer = 10; begin while (i < 2010) do begin "
                         "insert into SAMPLE (ID, COUNTER) values (:i, 10); i = i + 1; end end");
    DataSet rows(connection(), "select ID, COUNTER from SAMPLE where ID >= 10 order by ID");
    rows.open();
    long total = 0;
    for (int i = 0; i < 1000; ++i, rows.next()) total += rows.field("COUNTER").asInt();
    openAnother().execute("update SAMPLE set COUNTER = COUNTER + iif(ID = 10, 50, -50) where ID in (10, 2009)");
    for (; !rows.eof(); rows.next()) total += rows.field("COUNTER").asInt();
    EXPECT_EQ(total, 20000);
}

TEST_F(DataSetTest, TextParametersTakeTheirColumnsLength) {
    connection().execute("update SAMPLE set CODE = 'Ф-1' where ID = 2");
    DataSet rows(connection(), "select ID from SAMPLE where CODE = :pCODE");
    rows.setParam("pCODE", "Ф-1");  // a CHAR column compares without its padding
    rows.open();
    ASSERT_FALSE(rows.eof());
    EXPECT_EQ(rows.field(0).asInt(), 2);

    // Firebird gives a parameter its column's type: a longer text is refused, not cut.
    rows.setParam("pCODE", "Очень длинный код");
    EXPECT_THROW(rows.open(), Error);
    rows.setSql("select count(*) from SAMPLE where NAME = :pNAME");
    rows.setParam("pNAME", std::string(300, 'x'));
    EXPECT_THROW(rows.open(), Error);
}

TEST_F(DataSetTest, ParametersOfDateAndTimeTypes) {
    connection().execute("update SAMPLE set MADE = '2024-03-03', AT_TIME = '10:30' where ID = 2");
    DataSet rows(connection(), "select ID from SAMPLE where MADE = :pDATE and AT_TIME < :pTIME");
    rows.setParam("pDATE", "03.03.2024");  // in the user's short date format
    rows.setParam("pTIME", Time::fromHms(11, 0));
    rows.open();
    ASSERT_FALSE(rows.eof());
    EXPECT_EQ(rows.field(0).asInt(), 2);
}

TEST_F(DataSetTest, BlobStreamGivesTheWholeContent) {
    std::string binary;
    for (int i = 0; i < 100000; ++i) binary += static_cast<char>(i * 7 % 256);
    std::string text;
    for (int i = 0; i < 5000; ++i) text += "Шаблон отчёта ";

    DataSet writer(connection(), "select * from SAMPLE where ID = 1");
    writer.open();
    writer.edit();
    writer.setValue("DATA", binary);
    writer.setValue("NOTE", text);
    writer.updateBatch();

    DataSet reader(connection(), "select NOTE, DATA from SAMPLE where ID = :pID");
    reader.setParam("pID", 1);
    reader.open();
    BlobStream data = reader.field("DATA").blobStream();
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(data), {}), binary);
    EXPECT_EQ(reader.field("NOTE").asText(), text);
    EXPECT_EQ(scalar("select char_length(NOTE) from SAMPLE where ID = 1").asInt(), 5000 * 14);
}

TEST_F(DataSetTest, LocateFindsTheExactValue) {
    DataSet rows = openQuery("Select * From SAMPLE Order By ID");
    EXPECT_TRUE(rows.locate("NAME", "Ремонт"));
    EXPECT_EQ(rows.field("ID").asInt(), 3);
    EXPECT_FALSE(rows.locate("NAME", "ремонт"));  // case matters
    EXPECT_FALSE(rows.locate("NAME", "Ремон"));   // whole value only
    EXPECT_EQ(rows.field("ID").asInt(), 3);       // and the row stays
    EXPECT_TRUE(rows.locate("counter", "20"));
    EXPECT_EQ(rows.field("ID").asInt(), 2);
    EXPECT_FALSE(rows.locate("COUNTER", "много"));
    EXPECT_TRUE(rows.locate("MADE", Value()));  // NULL finds NULL
    EXPECT_EQ(rows.field("ID").asInt(), 1);
    EXPECT_THROW(rows.locate("NO_SUCH", 1), ArgumentError);
}

TEST_F(DataSetTest, ScaledAndSingleNumbersReadAsTheirDecimals) {
    DataSet rows = openQuery("select * from MEASURE order by ID");
    EXPECT_EQ(rows.field("TENTHS").asDouble(), 0.3);
    EXPECT_EQ(rows.field("SINGLE").asDouble(), 0.1);
    EXPECT_EQ(rows.field("SINGLE").asText(), "0,1");
    EXPECT_TRUE(rows.locate("TENTHS", "2,5"));
    EXPECT_EQ(rows.field("ID").asInt(), 2);
    EXPECT_TRUE(rows.locate("TENTHS", 0.3));
    EXPECT_TRUE(rows.locate("SINGLE", 7.25));
    EXPECT_TRUE(rows.locate("SINGLE", 0.1));
    EXPECT_EQ(rows.field("ID").asInt(), 1);
}

TEST_F(DataSetTest, SameQueryCanBeOpenTwiceAtOnce) {
    DataSet outer = openQuery("select ID from SAMPLE order by ID");
    int pairs = 0;
    for (; !outer.eof(); outer.next()) {
        DataSet inner = openQuery("select ID from SAMPLE order by ID");
        for (; !inner.eof(); inner.next()) ++pairs;
    }
    EXPECT_EQ(pairs, 16);
}

TEST_F(DataSetTest, OpeningAStatementWithoutRowsRunsNothing) {
    DataSet rows(connection(), "delete from SAMPLE");
    EXPECT_THROW(rows.open(), Error);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 4);
    EXPECT_EQ(rows.execute(), 4);
    EXPECT_EQ(scalar("select count(*) from SAMPLE").asInt(), 0);
}

TEST_F(DataSetTest, BrokenSqlRaisesWithTheStatement) {
    DataSet rows(connection(), "select * from SAMPLE where NAME = 'O'Neil'");
    try {
        rows.open();
        FAIL() << "opened";
    } catch (const Error& error) {
        EXPECT_EQ(error.statement(), "select * from SAMPLE where NAME = 'O'Neil'");
        EXPECT_NE(error.sqlCode(), 0);
    }
    EXPECT_FALSE(rows.isOpen());
    rows.setSql("select * from SAMPLE where NAME = " + quoted("O'Neil"));
    rows.open();
    EXPECT_TRUE(rows.eof());
}

}  // namespace
}  // namespace mxbook::db
