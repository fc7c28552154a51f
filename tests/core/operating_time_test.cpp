#include "mxbook/operating_time.h"

#include <gtest/gtest.h>

#include "mxbook/error.h"

namespace mxbook::operating_time {
namespace {

TEST(OperatingTime, FormatsHoursUnpaddedAndTwoDigitsOfMinutes) {
    const struct {
        long long minutes;
        const char* text;
        const char* orDoubleZero;
    } cases[] = {
        {0, "0:00", "00:00"},  {5, "0:05", "0:05"},           {65, "1:05", "1:05"},   {600, "10:00", "10:00"},
        {425, "7:05", "7:05"}, {74070, "1234:30", "1234:30"}, {-30, "0:00", "00:00"},  // never shown below zero
        {59, "0:59", "0:59"},  {61, "1:01", "1:01"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(format(Minutes(c.minutes)), c.text) << c.minutes;
        EXPECT_EQ(formatOrDoubleZero(Minutes(c.minutes)), c.orDoubleZero) << c.minutes;
    }
}

// The three rules agree on every text the library writes and part where the
// separator or the widths differ.
TEST(OperatingTime, ParsesByEachRule) {
    const struct {
        const char* text;
        long long upToColon;  // -1: ConversionError
        long long lastThree;  // -1: ConversionError
        long long strict;     // -1: ConversionError
    } cases[] = {
        {"0:00", 0, 0, 0},        {"00:00", 0, 0, 0},      {"7:05", 425, 425, 425}, {"1234:30", 74070, 74070, 74070},
        {"12.30", -1, 750, -1},  // the corrections ignore the separator
        {"1:5", 65, -1, -1},      {"1:75", 135, 135, 135}, {"10:3x", -1, -1, -1},   {"abc", -1, -1, -1},
        {"", -1, -1, -1},         {":30", -1, -1, -1},     {"5:", -1, -1, -1},      {"99999999999:00", -1, -1, -1}, {"9223372036854775807:00", -1, -1, -1}, {"35791394:08", -1, -1, -1},
        {"35791394:07", 2147483647, 2147483647, 2147483647},
        {" 8:15", 495, 495, 495},
        // Characters, not bytes: "ч" is two bytes of UTF-8 but one separator.
        {"10ч30", -1, 630, -1},   {"10:3ч", -1, -1, -1},   {"1ч:30", -1, -1, -1},   {"ч:30", -1, -1, -1},
        {"10\xF7\x33\x30", -1, 630, -1},  // "10", a stray WIN1251 byte, "30": one character too
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        if (c.upToColon < 0) {
            EXPECT_THROW(parseHoursUpToColon(c.text), ConversionError);
        } else {
            EXPECT_EQ(parseHoursUpToColon(c.text).count(), c.upToColon);
        }
        if (c.lastThree < 0) {
            EXPECT_THROW(parseHoursBeforeLastThree(c.text), ConversionError);
        } else {
            EXPECT_EQ(parseHoursBeforeLastThree(c.text).count(), c.lastThree);
        }
        if (c.strict < 0) {
            EXPECT_THROW(parseHoursColonTwoDigits(c.text), ConversionError);
        } else {
            EXPECT_EQ(parseHoursColonTwoDigits(c.text).count(), c.strict);
        }
    }
}

// A time stored on a unit row: what follows the two minute characters is
// left, and a negative total is none.
TEST(OperatingTime, ParsesAStoredTime) {
    const struct {
        const char* text;
        long long minutes;  // -1: ConversionError
    } cases[] = {{"012:07", 727}, {"12:07x", 727}, {"1:5", 65}, {"-1:30", 0}, {"abc", -1}, {":07", -1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        if (c.minutes < 0) {
            EXPECT_THROW(parseStoredTime(c.text), ConversionError);
        } else {
            EXPECT_EQ(parseStoredTime(c.text).count(), c.minutes);
        }
    }
}

TEST(OperatingTime, ConversionErrorCarriesTheText) {
    try {
        parseHoursUpToColon("12:3x");
        FAIL() << "no error";
    } catch (const ConversionError& error) {
        EXPECT_EQ(error.text(), "12:3x");
    }
}

}  // namespace
}  // namespace mxbook::operating_time
