// NUMERIC columns hold exactly what Firebird would make of the text, and
// DOUBLE PRECISION columns hold only finite numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "database_test.h"
#include "mxbook/data.h"

namespace mxbook::db {
namespace {

class NumericColumnsTest : public testing::DatabaseTest {
protected:
    NumericColumnsTest()
        : DatabaseTest(R"(
create table READING (
    ID integer not null primary key,
    PRICE numeric(18, 2),
    SMALL numeric(4, 2),
    WIDE numeric(18, 6),
    RATIO double precision
);
insert into READING (ID) values (1);
)") {}

    // Whether row 1 passes the condition, asked on a connection of its own
    // against SQL literals, not read back through the code under test.
    bool storedAs(const std::string& condition) const {
        return scalar("select count(*) from READING where ID = 1 and " + condition).asInt() == 1;
    }
};

TEST_F(NumericColumnsTest, ValuesRoundHalfAwayFromZeroToTheColumnScale) {
    // The third digit after the point decides, whatever the double nearest to the text is.
    const struct {
        const char* column;
        Value value;
        const char* stored;
    } cases[] = {
        {"PRICE", "1,005", "1.01"},
        {"PRICE", "0,285", "0.29"},
        {"PRICE", "-0,285", "-0.29"},
        {"PRICE", 1.005, "1.01"},
        {"PRICE", "92233720368547758,07", "92233720368547758.07"},  // the most 64 bits hold
        {"SMALL", "327,674", "327.67"},  // SMALLINT underneath
        {"WIDE", "-0,0000005", "-0.000001"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.column) + " " + c.value.asText());
        DataSet update(connection(), std::string("update READING set ") + c.column + " = :pVALUE where ID = 1");
        update.setParam("pVALUE", c.value);
        update.execute();
        EXPECT_TRUE(storedAs(std::string(c.column) + " = " + c.stored));
    }
}

TEST_F(NumericColumnsTest, EighteenDigitsGoInAndComeOutWhole) {
    DataSet rows(connection(), "select * from READING where ID = 1");
    rows.open();
    rows.edit();
    rows.setValue("PRICE", "9999999999999999,99");
    rows.setValue("WIDE", "-123456789012,345678");
    rows.updateBatch();
    EXPECT_TRUE(storedAs("PRICE = 9999999999999999.99 and WIDE = -123456789012.345678"));

    rows.open();
    EXPECT_EQ(rows.field("PRICE").asText(), "9999999999999999,99");
    EXPECT_EQ(rows.field("WIDE").asDecimal(), (Decimal{-123456789012345678, 6}));
    EXPECT_TRUE(rows.locate("WIDE", "-123456789012,345678"));
}

TEST_F(NumericColumnsTest, ValueBeyondTheColumnIsRefusedAndNothingStored) {
    const struct {
        const char* column;
        Value value;
    } cases[] = {
        {"PRICE", "92233720368547758,08"},  // one cent past the 64-bit integer
        {"PRICE", 1e17},
        {"SMALL", "327,675"},  // rounds to 327.68, past the 16-bit integer
        {"WIDE", "1e13"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.column) + " " + c.value.asText());
        DataSet rows(connection(), "select * from READING where ID = 1");
        rows.open();
        rows.edit();
        rows.setValue(c.column, c.value);
        EXPECT_THROW(rows.updateBatch(), ConversionError);
        EXPECT_TRUE(storedAs(std::string(c.column) + " is null"));
    }
}

TEST_F(NumericColumnsTest, NotANumberAndInfinityAreRefusedForDoubleColumns) {
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        SCOPED_TRACE(number);
        DataSet rows(connection(), "select * from READING where ID = 1");
        rows.open();
        rows.edit();
        rows.setValue("RATIO", number);
        EXPECT_THROW(rows.updateBatch(), ConversionError);

        DataSet update(connection(), "update READING set RATIO = :pRATIO where ID = 1");
        update.setParam("pRATIO", number);
        EXPECT_THROW(update.execute(), ConversionError);
        EXPECT_TRUE(storedAs("RATIO is null"));
    }
}

}  // namespace
}  // namespace mxbook::db
