#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "fake_host.h"
#include "mxbook/data/decimal.h"
#include "mxbook/data/value.h"
#include "mxbook/error.h"

namespace mxbook::db {

// Found by GoogleTest beside the type, for readable failures.
void PrintTo(const Decimal& decimal, std::ostream* out) { *out << decimal.text(".") << " at scale " << decimal.scale; }

namespace {

class ValueTest : public ::testing::Test {
protected:
    std::shared_ptr<testing::FakeHost> fake = std::make_shared<testing::FakeHost>();
    ScopedHost scope{fake};
};

TEST_F(ValueTest, NullReadsAsTheNeutralValueOfEachType) {
    const Value null;
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.asText(), "");
    EXPECT_EQ(null.asInt(), 0);
    EXPECT_EQ(null.asDouble(), 0.0);
    EXPECT_EQ(null.asDate(), Date());
    EXPECT_EQ(null.asTime(), Time());
    EXPECT_FALSE(null.asBool());
}

TEST_F(ValueTest, TextOfEachKindFollowsTheUserSettings) {
    const struct {
        Value value;
        const char* expected;
    } cases[] = {
        {Value(42), "42"},
        {Value(-1.5), "-1,5"},
        {Value("Склад"), "Склад"},
        {Value(Date::fromYmd(2024, 3, 5)), "05.03.2024"},
        {Value(Time::fromHms(7, 5, 0)), "7:05:00"},
        {Value(Timestamp{Date::fromYmd(2024, 3, 5), Time()}), "05.03.2024"},
        {Value(Timestamp{Date::fromYmd(2024, 3, 5), Time::fromHms(13, 0, 1)}), "05.03.2024 13:00:01"},
        {Value(true), "True"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        EXPECT_EQ(c.value.asText(), c.expected);
    }
    fake->settings.shortDateFormat = "yyyy-mm-dd";
    fake->settings.decimalSeparator = ".";
    EXPECT_EQ(Value(Date::fromYmd(2024, 3, 5)).asText(), "2024-03-05");
    EXPECT_EQ(Value(-1.5).asText(), "-1.5");
}

TEST_F(ValueTest, TextConvertsToNumbersDatesAndFlags) {
    EXPECT_EQ(Value(" 125 ").asInt(), 125);
    EXPECT_DOUBLE_EQ(Value("0,3").asDouble(), 0.3);
    EXPECT_EQ(Value("29.02.2024").asDate(), Date::fromYmd(2024, 2, 29));
    EXPECT_EQ(Value("29.02.2024 10:15").asTimestamp(), (Timestamp{Date::fromYmd(2024, 2, 29), Time::fromHms(10, 15)}));
    EXPECT_EQ(Value("1:05").asTime(), Time::fromHms(1, 5));
    EXPECT_TRUE(Value("True").asBool());
    EXPECT_TRUE(Value("1").asBool());
    EXPECT_FALSE(Value("false").asBool());
}

TEST_F(ValueTest, MalformedTextRaisesConversionError) {
    EXPECT_THROW(Value("12:30").asInt(), ConversionError);
    EXPECT_THROW(Value("99999999999").asInt(), ConversionError);
    EXPECT_THROW(Value("31.02.2024").asDate(), ConversionError);
    EXPECT_THROW(Value("abc").asDouble(), ConversionError);
    EXPECT_THROW(Value("maybe").asBool(), ConversionError);
    EXPECT_THROW(Value(Time::fromHms(1, 0)).asInt(), ConversionError);
}

TEST_F(ValueTest, NumbersAndSerialDates) {
    EXPECT_EQ(Value(2.5).asInt(), 3);
    EXPECT_EQ(Value(-2.5).asInt(), -3);
    EXPECT_EQ(Value(45352).asDate(), Date::fromYmd(2024, 3, 1));
    EXPECT_EQ(Value(45352.75).asTimestamp(), (Timestamp{Date::fromYmd(2024, 3, 1), Time::fromHms(18, 0)}));
    EXPECT_EQ(Value(Date::fromYmd(2024, 3, 1)).asInt(), 45352);
    EXPECT_THROW(Value(1e30).asInt64(), ConversionError);
    // A time a hair before midnight carries into the next day.
    EXPECT_EQ(Value(45000.99999999995).asTimestamp(), (Timestamp{Date::fromSerial(45001), Time()}));
    EXPECT_THROW(Value(1e10).asDate(), ConversionError);
    EXPECT_THROW(Value(std::int64_t{3000000000}).asDate(), ConversionError);
    EXPECT_THROW(Value(std::uint64_t{18446744073709551615u}), ConversionError);
    EXPECT_EQ(Value(std::size_t{7}).asInt(), 7);
}

constexpr std::int64_t int64Max = std::numeric_limits<std::int64_t>::max();

TEST(Decimal, TextRoundsHalfAwayFromZeroToTheScale) {
    // The digit after the last kept one decides; the digits past it never do.
    const struct {
        const char* text;
        int scale;
        std::optional<std::int64_t> scaled;
    } cases[] = {
        {"1,005", 2, 101},
        {"0,285", 2, 29},
        {"-0,285", 2, -29},
        {"0,2849999999999999999999", 2, 28},  // no second rounding through 0,285
        {"-0,004", 2, 0},
        {"999,995", 2, 100000},
        {" +0.125 ", 2, 13},  // '.' is read as well as the user's separator
        {"1,5e2", 0, 150},
        {"25e-3", 2, 3},
        {"7", 4, 70000},
        {"92233720368547758,07", 2, int64Max},
        {"92233720368547758,08", 2, std::nullopt},
        {"1e19", 0, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::optional<Decimal> expected = c.scaled ? std::optional(Decimal{*c.scaled, c.scale}) : std::nullopt;
        EXPECT_EQ(Decimal::parse(c.text, ",", c.scale), expected);
    }
    for (const char* malformed : {"", "-", "abc", "1,2,3", "1e", "+-1", "1 000", ",e1"}) {
        SCOPED_TRACE(malformed);
        EXPECT_THROW(Decimal::parse(malformed, ",", 2), ConversionError);
    }
}

TEST(Decimal, DoublesRoundAsTheirShortestText) {
    // 1.005 is 1.00499999999999989... in binary, 2.675 is 2.67499999999999982...
    EXPECT_EQ(Decimal::fromDouble(1.005, 2), (Decimal{101, 2}));
    EXPECT_EQ(Decimal::fromDouble(2.675, 2), (Decimal{268, 2}));
    EXPECT_EQ(Decimal::fromDouble(-0.285, 2), (Decimal{-29, 2}));
    EXPECT_EQ(Decimal::fromDouble(1e17, 2), std::nullopt);
    EXPECT_THROW(Decimal::fromDouble(std::nan(""), 2), ConversionError);
    EXPECT_THROW(Decimal::fromDouble(-HUGE_VAL, 2), ConversionError);
}

TEST_F(ValueTest, DecimalsReadAsAUserExpects) {
    const struct {
        Decimal decimal;
        const char* text;
        std::int64_t whole;
        double number;
    } cases[] = {
        {{-29, 2}, "-0,29", 0, -0.29},
        {{1250, 2}, "12,5", 13, 12.5},
        {{-250, 2}, "-2,5", -3, -2.5},
        {{1200, 2}, "12", 12, 12.0},
        {{5, 3}, "0,005", 0, 0.005},
        {{123456789012345678, 6}, "123456789012,345678", 123456789012, 123456789012.345678},
        {{std::numeric_limits<std::int64_t>::min(), 18}, "-9,223372036854775808", -9, -9.223372036854775808},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const Value value(c.decimal);
        EXPECT_EQ(value.kind(), ValueKind::decimal);
        EXPECT_EQ(value.asText(), c.text);
        EXPECT_EQ(value.asInt64(), c.whole);
        EXPECT_EQ(value.asDouble(), c.number);
        EXPECT_EQ(value.asBool(), c.decimal.scaled != 0);
    }
    EXPECT_EQ(Value(Decimal{1250, 2}), Value(Decimal{125, 1}));
    EXPECT_NE(Value(Decimal{int64Max, 0}), Value(Decimal{int64Max, 1}));
    EXPECT_NE(Value(Decimal{125, 1}), Value(12.5));
    EXPECT_EQ(Value("12,50").asDecimal(), (Decimal{125, 1}));
    EXPECT_EQ(Value(0.1).asDecimal(), (Decimal{1, 1}));
    EXPECT_THROW(Value("0,1234567890123456789").asDecimal(), ConversionError);  // 19 digits after the point
    EXPECT_THROW(Value(Decimal{1, 19}), ArgumentError);
}

TEST(Quoted, DoublesApostrophes) {
    EXPECT_EQ(quoted("RA-22451"), "'RA-22451'");
    EXPECT_EQ(quoted("O'Neil"), "'O''Neil'");
    EXPECT_EQ(quoted("'; delete from REESTR; --"), "'''; delete from REESTR; --'");
    EXPECT_EQ(quoted(""), "''");
}

}  // namespace
}  // namespace mxbook::db
