#include <gtest/gtest.h>

#include "database_test.h"
#include "mxbook/conventions.h"
#include "mxbook/error.h"

namespace mxbook {
namespace {

constexpr const char* unitRow = R"(
create table UNIT (
    ID integer not null primary key,
    NARABOTKA varchar(20),
    POSADKI integer
);
)";

class CorrectionsTest : public testing::DatabaseTest {
protected:
    CorrectionsTest() : DatabaseTest(unitRow) {}

    // The data set on one row, as a form has it: hours at field 1, count at field 2.
    db::DataSet& row(const char* hours, const char* count) {
        connection().execute("delete from UNIT");
        connection().execute(std::string("insert into UNIT values (1, ") + hours + ", " + count + ")");
        rows_.close();
        rows_.open();
        return rows_;
    }

private:
    db::DataSet rows_{connection(), "select * from UNIT"};
};

TEST_F(CorrectionsTest, HoursLoseOrGainTheMinutesNeverBelowZero) {
    const struct {
        const char* stored;
        int minutes;
        const char* from;
        const char* to;
    } cases[] = {
        {"'10:30'", 45, "9:45", "11:15"},
        {"'0:20'", 50, "0:00", "1:10"},
        {"'5:07'", 0, "5:07", "5:07"},
        {"'12:00'", 0, "12:00", "12:00"},
        {"'1234:30'", 60 * 1000 + 31, "233:59", "2235:01"},
        {"'00:00'", 1, "0:00", "0:01"},
        {"'7.05'", 5, "7:00", "7:10"},     // the hours end three characters before the end
        {"'10ч30'", 45, "9:45", "11:15"},  // a two-byte separator is still one character
        {"null", 45, "00:00", "00:00"},
        {"'3:30'", -30, "4:00", "3:00"},  // a negative correction works the other way
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.stored) + " " + std::to_string(c.minutes));
        auto& data = row(c.stored, "0");
        EXPECT_EQ(FunHourCorrectFromVS(data, 1, c.minutes), c.from);
        EXPECT_EQ(FunHourCorrectToVS(data, 1, c.minutes), c.to);
        EXPECT_FALSE(data.hasPendingChanges());
    }
}

TEST_F(CorrectionsTest, TextsThatAreNotOperatingTimeRaise) {
    for (const char* stored : {"''", "'abc'", "'10:3x'", "'7'", "'99999999999:00'", "'10:3ч'", "'1ч:30'", "'ч30'"}) {
        SCOPED_TRACE(stored);
        auto& data = row(stored, "0");
        EXPECT_THROW(FunHourCorrectFromVS(data, 1, 10), ConversionError);
        EXPECT_THROW(FunHourCorrectToVS(data, 1, 10), ConversionError);
    }
}

TEST_F(CorrectionsTest, CountersLoseOrGainTheCountNeverBelowZero) {
    const struct {
        const char* stored;
        int count;
        int from, to;
    } cases[] = {
        {"3", 5, 0, 8}, {"10", 4, 6, 14}, {"0", 0, 0, 0}, {"null", 5, 0, 0}, {"2147483647", -1, 2147483647, 2147483646},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.stored) + " " + std::to_string(c.count));
        auto& data = row("null", c.stored);
        EXPECT_EQ(FunIntegerCorrectFromVS(data, 2, c.count), c.from);
        EXPECT_EQ(FunIntegerCorrectToVS(data, 2, c.count), c.to);
    }
}

TEST(KeyFilters, DigitsOfAnyScriptAndEditingKeysPassEverythingElseBecomesTheSeparator) {
    const struct {
        char32_t key;
        char32_t colonBox, pointBox;
    } cases[] = {
        {U'7', U'7', U'7'},
        {U'0', U'0', U'0'},
        {U',', U':', U'.'},
        {U'.', U':', U'.'},
        {U':', U':', U'.'},
        {U' ', U':', U'.'},
        {U'ж', U':', U'.'},
        {U'a', U':', U'.'},
        {8, 8, 8},
        {13, 13, 13},
        {27, 27, 27},
        {9, U':', U'.'},
        {U'٣', U'٣', U'٣'},           // Arabic-Indic three
        {U'७', U'७', U'७'},           // Devanagari seven
        {U'９', U'９', U'９'},        // fullwidth nine
        {0x1D7CE, 0x1D7CE, 0x1D7CE},  // mathematical bold zero
        {U'²', U':', U'.'},           // a superscript is a digit, but not a decimal one
        {U'Ⅷ', U':', U'.'},           // nor is a Roman numeral
    };
    for (const auto& c : cases) {
        char32_t colon = c.key, point = c.key;
        FunChageToColon(colon);
        FunChageToPoint(point);
        EXPECT_EQ(colon, c.colonBox) << static_cast<unsigned>(c.key);
        EXPECT_EQ(point, c.pointBox) << static_cast<unsigned>(c.key);
    }
}

}  // namespace
}  // namespace mxbook
