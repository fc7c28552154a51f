#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/format.h"

namespace mxbook {
namespace {

struct PatternCase {
    const char* pattern;
    const char* expected;
};

TEST(Format, DatePatterns) {
    const Date date = Date::fromYmd(2024, 3, 5);
    const PatternCase cases[] = {
        {"m,d,yyyy", "3,5,2024"},  {"dd.mm.yyyy", "05.03.2024"}, {"dd.mm.yy", "05.03.24"},
        {"ddddd", "05.03.2024"},   {"d/m/yy", "5/3/24"},        {"yyyy-mm-dd", "2024-03-05"},
        {"DD.MM.YYYY", "05.03.2024"}, {"dd\"г.\"", "05г."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pattern);
        EXPECT_EQ(formatDate(date, c.pattern), c.expected);
    }
    EXPECT_EQ(sqlDate(Date::fromYmd(2024, 12, 31)), "12,31,2024");
}

TEST(Format, ShortDateFollowsTheSettings) {
    FormatSettings american;
    american.shortDateFormat = "M/d/yyyy";
    EXPECT_EQ(shortDate(Date::fromYmd(2024, 3, 5), american), "3/5/2024");
    EXPECT_EQ(formatDate(Date::fromYmd(2024, 3, 5), "ddddd", american), "3/5/2024");
    EXPECT_EQ(shortDate(Date::fromYmd(2024, 3, 5), FormatSettings{}), "05.03.2024");
}

TEST(Format, TimePatterns) {
    const Time time = Time::fromHms(7, 5, 9);
    EXPECT_EQ(formatTime(time, "hh:nn"), "07:05");
    EXPECT_EQ(formatTime(time, "h:nn:ss"), "7:05:09");
    EXPECT_EQ(formatTime(Time::fromHms(23, 59), "hh:nn"), "23:59");
}

struct ParseCase {
    const char* text;
    Date expected;
};

TEST(Format, ParsesShortDates) {
    const ParseCase cases[] = {
        {"05.03.2024", Date::fromYmd(2024, 3, 5)},
        {"5.3.2024", Date::fromYmd(2024, 3, 5)},
        {" 29.02.2024 ", Date::fromYmd(2024, 2, 29)},
        {"05.03.24", Date::fromYmd(2024, 3, 5)},
        {"01.01.49", Date::fromYmd(2049, 1, 1)},
        {"01.01.50", Date::fromYmd(1950, 1, 1)},
        {"31.12.99", Date::fromYmd(1999, 12, 31)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(parseShortDate(c.text, FormatSettings{}), c.expected);
    }
}

TEST(Format, RejectsWhatIsNotAShortDate) {
    for (const char* text : {"31.02.2024", "29.02.2023", "", "05.03", "05-03-2024", "05.03.2024.1", "aa.bb.cccc",
                             "5.13.2024", "005.03.2024", "05.03.20245", "05.03.2024 12:00x", "+5.03.2024"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(parseShortDate(text, FormatSettings{}), ConversionError);
    }
}

TEST(Format, ParsesInTheOrderOfTheSettings) {
    FormatSettings iso;
    iso.shortDateFormat = "yyyy-mm-dd";
    EXPECT_EQ(parseShortDate("2024-03-05", iso), Date::fromYmd(2024, 3, 5));
    FormatSettings american;
    american.shortDateFormat = "M/d/yyyy";
    EXPECT_EQ(parseShortDate("3/5/2024", american), Date::fromYmd(2024, 3, 5));
    EXPECT_THROW(parseShortDate("05.03.2024", american), ConversionError);
}

TEST(Format, ParsesTimes) {
    EXPECT_EQ(parseTime("7:05"), Time::fromHms(7, 5));
    EXPECT_EQ(parseTime("23:59:30"), Time::fromHms(23, 59, 30));
    for (const char* text : {"24:00", "7:5", "7:60", "7", "", "ab:cd", "7:05:"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(parseTime(text), ConversionError);
    }
}

TEST(Format, FloatsUseTheDecimalSeparator) {
    const FormatSettings russian;
    EXPECT_EQ(formatFloat(1.3, russian), "1,3");
    EXPECT_EQ(formatFloat(0.1 + 0.2, russian), "0,3");
    EXPECT_EQ(formatFloat(100.0, russian), "100");
    EXPECT_EQ(formatFloat(-2.5, russian), "-2,5");
    EXPECT_DOUBLE_EQ(parseFloat("1,3", russian), 1.3);
    EXPECT_DOUBLE_EQ(parseFloat("1.3", russian), 1.3);
    EXPECT_DOUBLE_EQ(parseFloat(" -0,25 ", russian), -0.25);
    for (const char* text : {"", "1,2,3", "abc", "1e", "inf", "nan", "1,3x", "+-5"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(parseFloat(text, russian), ConversionError);
    }
}

}  // namespace
}  // namespace mxbook
