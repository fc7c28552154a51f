// An exact decimal number, the way Firebird keeps NUMERIC and DECIMAL columns.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mxbook::db {

// The number scaled / 10^scale. No digit of it passes through a double:
// texts are read and written digit by digit, so "0,285" stays 0.285 and not
// 0.28499999999999998.
struct Decimal {
    static constexpr int maxScale = 18;  // Firebird's largest

    std::int64_t scaled = 0;
    int scale = 0;  // digits after the decimal point, 0 to maxScale

    // Texts: an optional sign, digits with `separator` or '.' between the
    // whole and the fraction, an optional exponent ("1,5e3"), blanks around.
    // ConversionError when the text is no such number.

    // Rounded half away from zero to `scale` digits, as Firebird rounds;
    // nullopt when 64 bits do not hold the result.
    static std::optional<Decimal> parse(std::string_view text, std::string_view separator, int scale);
    // Every digit kept (trailing zeros after the point dropped); nullopt when
    // no Decimal holds the number exactly.
    static std::optional<Decimal> parseExact(std::string_view text, std::string_view separator);
    // A double as the shortest text that reads back as it, then as a text
    // above: 1.005 gives 1.01 at two digits, not the 1.00 of its binary
    // value. ConversionError for NaN and infinities.
    static std::optional<Decimal> fromDouble(double value, int scale);
    static std::optional<Decimal> fromDoubleExact(double value);

    // The same number with `scale` digits, halves rounded away from zero;
    // nullopt when 64 bits do not hold it.
    std::optional<Decimal> rescaled(int scale) const;
    // The nearest whole number, halves away from zero.
    std::int64_t rounded() const;
    // The nearest double.
    double toDouble() const;
    // The shortest text: no trailing zeros after the separator, so that
    // equal numbers read alike ("12,5" for 12.50).
    std::string text(std::string_view separator) const;

    // Equal numbers are equal whatever their scale: 12.50 == 12.5.
    friend bool operator==(const Decimal& a, const Decimal& b);
};

}  // namespace mxbook::db
