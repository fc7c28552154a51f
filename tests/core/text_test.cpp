#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook {
namespace {

TEST(Text, ParsesDecimalIntegers) {
    const std::pair<const char*, int> cases[] = {
        {"0", 0}, {"42", 42}, {"-17", -17}, {"+5", 5}, {" 12 ", 12}, {"007", 7},
        {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(parseInt(text), expected);
    }
}

TEST(Text, RejectsWhatIsNotAnInteger) {
    for (const char* text : {"", " ", "12:30", "1.5", "abc", "12a", "--1", "+-1", "2147483648", "99999999999",
                             "1 2", "0x10"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(parseInt(text), ConversionError);
    }
    EXPECT_EQ(parseInt64("99999999999"), 99999999999);
}

TEST(Text, RoundsHalvesAwayFromZero) {
    const struct {
        double value;
        int digits;
        double expected;
    } cases[] = {
        {12.5, 0, 13},     {-12.5, 0, -13},  {12.4999, 0, 12}, {0.5, 0, 1},     {-0.5, 0, -1},
        {0.3 * 25, 0, 8},  // 7.5 as the product of a weight and ground minutes
        {0.5 * 25, 0, 13}, {1.005, 2, 1.01}, {2.675, 2, 2.68}, {1234.5678, 2, 1234.57}, {15, -1, 20},
        // Large values are not pulled over a half they do not reach.
        {100000000000.45, 0, 100000000000}, {1234567890.444, 2, 1234567890.44},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        EXPECT_DOUBLE_EQ(roundHalfAwayFromZero(c.value, c.digits), c.expected);
    }
}

TEST(Text, TrimsAndReplaces) {
    EXPECT_EQ(trim("  Склад \t\r\n"), "Склад");
    EXPECT_EQ(trimRight("  a  "), "  a");
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(replaceAll("2.6", ".", "г. "), "2г. 6");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("O'Brien's", "'", "''"), "O''Brien''s");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
}

}  // namespace
}  // namespace mxbook

namespace mxbook {
namespace {

TEST(UpperCase, EveryScriptWithBrokenBytesPassedThrough) {
    const struct {
        std::string text, expected;
    } cases[] = {
        {"/home/tester/Документы/VELMO/nalet.fdb", "/HOME/TESTER/ДОКУМЕНТЫ/VELMO/NALET.FDB"},
        {"ёжик в тумане", "ЁЖИК В ТУМАНЕ"},
        {"Ґанок, її", "ҐАНОК, ЇЇ"},
        {"ωμέγα", "ΩΜΈΓΑ"},
        {"straße", "STRAßE"},  // no single upper-case letter: left as it is
        {"abc\xFF\xC3xyz", "ABC\xFF\xC3XYZ"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(upperCase(c.text), c.expected) << c.text;
}

// Characters are code points; a byte that starts no well-formed sequence is one.
TEST(Characters, CountedAndCutByCodePoints) {
    const struct {
        std::string text;
        std::size_t count;
        std::size_t first, length;
        std::string cut;
    } cases[] = {
        {"10ч30", 5, 0, 2, "10"},
        {"10ч30", 5, 2, 1, "ч"},
        {"10ч30", 5, 3, 9, "30"},  // fewer where the text ends
        {"10ч30", 5, 7, 2, ""},
        {"\U0001D7CE:ж", 3, 1, 2, ":ж"},         // four bytes, then one, then two
        {"1\xD1\x33\x30", 4, 1, 2, "\xD1\x33"},  // "1", a lead byte without its continuation, "30"
        {"", 0, 0, 1, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(characterCount(c.text), c.count);
        EXPECT_EQ(characters(c.text, c.first, c.length), c.cut);
    }
}

}  // namespace
}  // namespace mxbook
