#include "mxbook/data/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook::db {

namespace {

constexpr std::int64_t int64Max = std::numeric_limits<std::int64_t>::max();

// A number as read from text: digits * 10^exponent.
struct Digits {
    bool negative = false;
    std::string digits;  // without leading or trailing zeros; empty for zero
    long exponent = 0;
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

Digits readDigits(std::string_view text, std::string_view separator) {
    const auto fail = [&] { throw ConversionError(std::string(text), "number"); };
    const std::string trimmed = trim(text);
    std::string_view rest = trimmed;
    Digits number;
    if (!rest.empty() && (rest.front() == '+' || rest.front() == '-')) {
        number.negative = rest.front() == '-';
        rest.remove_prefix(1);
    }
    bool anyDigit = false;
    bool afterPoint = false;
    while (!rest.empty()) {
        if (isDigit(rest.front())) {
            anyDigit = true;
            if (!number.digits.empty() || rest.front() != '0') number.digits += rest.front();
            if (afterPoint) --number.exponent;
            rest.remove_prefix(1);
        } else if (!afterPoint && rest.front() == '.') {
            afterPoint = true;
            rest.remove_prefix(1);
        } else if (!afterPoint && !separator.empty() && rest.starts_with(separator)) {
            afterPoint = true;
            rest.remove_prefix(separator.size());
        } else {
            break;
        }
    }
    if (!anyDigit) fail();
    if (!rest.empty()) {
        if (rest.front() != 'e' && rest.front() != 'E') fail();
        rest.remove_prefix(1);
        const bool negativeExponent = !rest.empty() && rest.front() == '-';
        if (!rest.empty() && (rest.front() == '+' || rest.front() == '-')) rest.remove_prefix(1);
        if (rest.empty()) fail();
        long exponent = 0;
        for (const char c : rest) {
            if (!isDigit(c)) fail();
            if (exponent < 100000) exponent = exponent * 10 + (c - '0');  // far past any scale: the same result
        }
        number.exponent += negativeExponent ? -exponent : exponent;
    }
    while (!number.digits.empty() && number.digits.back() == '0') {
        number.digits.pop_back();
        ++number.exponent;
    }
    return number;
}

bool appendDigit(std::int64_t& magnitude, int digit) {
    if (magnitude > (int64Max - digit) / 10) return false;
    magnitude = magnitude * 10 + digit;
    return true;
}

// The number * 10^scale as an integer, halves rounded away from zero.
std::optional<Decimal> atScale(const Digits& number, int scale) {
    if (scale < 0 || scale > Decimal::maxScale) return std::nullopt;
    if (number.digits.empty()) return Decimal{0, scale};
    const long shift = number.exponent + scale;
    const long kept = static_cast<long>(number.digits.size()) + std::min(shift, 0L);
    std::int64_t magnitude = 0;
    for (long i = 0; i < kept; ++i)
        if (!appendDigit(magnitude, number.digits[static_cast<std::size_t>(i)] - '0')) return std::nullopt;
    for (long i = 0; i < shift; ++i)
        if (!appendDigit(magnitude, 0)) return std::nullopt;
    // The first digit dropped decides: 5 or more there is at least half of the last place kept.
    if (kept >= 0 && kept < static_cast<long>(number.digits.size()) &&
        number.digits[static_cast<std::size_t>(kept)] >= '5') {
        if (magnitude == int64Max) return std::nullopt;
        ++magnitude;
    }
    return Decimal{number.negative ? -magnitude : magnitude, scale};
}

// At the scale that keeps every digit; none past Decimal::maxScale.
std::optional<Decimal> exactly(const Digits& number) {
    return atScale(number, number.exponent < 0 ? static_cast<int>(std::min(-number.exponent, 100L)) : 0);
}

// The shortest text that reads back as the same double.
std::string shortestText(double value) {
    if (!std::isfinite(value)) throw ConversionError(std::isnan(value) ? "NaN" : value > 0 ? "INF" : "-INF", "number");
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, value);
    return std::string(text, written.ptr);
}

std::int64_t powerOfTen(int exponent) {
    std::int64_t power = 1;
    for (int i = 0; i < exponent; ++i) power *= 10;
    return power;
}

void checkScale(int scale) {
    if (scale < 0 || scale > Decimal::maxScale)
        throw ArgumentError("a decimal has 0 to 18 digits after the point, not " + std::to_string(scale));
}

}  // namespace

std::optional<Decimal> Decimal::parse(std::string_view text, std::string_view separator, int scale) {
    return atScale(readDigits(text, separator), scale);
}

std::optional<Decimal> Decimal::parseExact(std::string_view text, std::string_view separator) {
    return exactly(readDigits(text, separator));
}

std::optional<Decimal> Decimal::fromDouble(double value, int scale) {
    return atScale(readDigits(shortestText(value), "."), scale);
}

std::optional<Decimal> Decimal::fromDoubleExact(double value) { return exactly(readDigits(shortestText(value), ".")); }

std::optional<Decimal> Decimal::rescaled(int newScale) const {
    checkScale(scale);
    if (newScale < 0 || newScale > maxScale) return std::nullopt;
    if (newScale == scale) return *this;
    if (newScale > scale) {
        const std::int64_t factor = powerOfTen(newScale - scale);
        if (scaled > int64Max / factor || scaled < -int64Max / factor) return std::nullopt;
        return Decimal{scaled * factor, newScale};
    }
    const std::int64_t divisor = powerOfTen(scale - newScale);
    std::int64_t quotient = scaled / divisor;
    const std::int64_t remainder = scaled % divisor;
    // |remainder| < divisor <= 10^18, so twice it still fits.
    if (2 * (remainder < 0 ? -remainder : remainder) >= divisor) quotient += scaled < 0 ? -1 : 1;
    return Decimal{quotient, newScale};
}

std::int64_t Decimal::rounded() const { return rescaled(0)->scaled; }

double Decimal::toDouble() const {
    const std::string digits = text(".");
    double value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

std::string Decimal::text(std::string_view separator) const {
    checkScale(scale);
    const bool negative = scaled < 0;
    // Unsigned, so that the most negative value has a magnitude too.
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
    std::string digits = std::to_string(magnitude);
    const auto fractionDigits = static_cast<std::size_t>(scale);
    if (fractionDigits > 0) {
        if (digits.size() <= fractionDigits) digits.insert(0, fractionDigits + 1 - digits.size(), '0');
        std::string fraction = digits.substr(digits.size() - fractionDigits);
        fraction.erase(fraction.find_last_not_of('0') + 1);
        digits.resize(digits.size() - fractionDigits);
        if (!fraction.empty()) digits += std::string(separator) + fraction;
    }
    return negative ? "-" + digits : digits;
}

bool operator==(const Decimal& a, const Decimal& b) {
    if (a.scale == b.scale) return a.scaled == b.scaled;
    const Decimal& finer = a.scale > b.scale ? a : b;
    const Decimal& coarser = a.scale > b.scale ? b : a;
    const std::optional<Decimal> widened = coarser.rescaled(finer.scale);
    return widened && widened->scaled == finer.scaled;
}

}  // namespace mxbook::db
