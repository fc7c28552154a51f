#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>
#include <string>
#include <string_view>
#include <variant>

#include "mxbook/data/decimal.h"
#include "mxbook/date.h"
#include "mxbook/format.h"

namespace mxbook::db {

enum class ValueKind { null, integer, decimal, floating, text, date, time, timestamp, boolean };

// A field's value of any type, or NULL. Reading it as another type converts
// the way a data-entry form would: NULL reads as 0, "", false or the zero
// date; texts are parsed (ConversionError when they do not parse); dates and
// numbers become text in the user's format settings. NUMERIC and DECIMAL
// columns read as decimals, exact to their last digit.
class Value {
public:
    Value() = default;
    Value(std::nullptr_t) {}
    // Throws ConversionError for an unsigned value beyond the signed 64-bit range.
    template <std::integral T>
        requires(!std::same_as<T, bool> && !std::same_as<T, char>)
    Value(T value) : value_(checkedInt64(value)) {}
    // Throws ArgumentError for a scale outside 0 to Decimal::maxScale.
    Value(Decimal value);
    Value(double value) : value_(value) {}
    Value(bool value) : value_(value) {}
    Value(std::string value) : value_(std::move(value)) {}
    Value(std::string_view value) : value_(std::string(value)) {}
    Value(const char* value) : value_(std::string(value)) {}
    Value(Date value) : value_(value) {}
    Value(Time value) : value_(value) {}
    Value(Timestamp value) : value_(value) {}

    ValueKind kind() const { return static_cast<ValueKind>(value_.index()); }
    bool isNull() const { return kind() == ValueKind::null; }

    std::string asText(const FormatSettings& settings) const;
    std::string asText() const;
    int asInt() const;
    std::int64_t asInt64() const;
    double asDouble() const;
    // Exact: ConversionError when no Decimal holds the value to its last digit.
    Decimal asDecimal() const;
    Date asDate(const FormatSettings& settings) const;
    Date asDate() const;
    Time asTime() const;
    Timestamp asTimestamp(const FormatSettings& settings) const;
    Timestamp asTimestamp() const;
    bool asBool() const;

    // Same kind and same value (decimals of any scale: 12.50 == 12.5); NULL equals NULL.
    friend bool operator==(const Value&, const Value&) = default;

private:
    template <std::integral T>
    static std::int64_t checkedInt64(T value) {
        if constexpr (std::is_unsigned_v<T> && sizeof(T) >= sizeof(std::int64_t))
            if (value > static_cast<T>(INT64_MAX)) throwOutOfRange(std::to_string(value));
        return static_cast<std::int64_t>(value);
    }
    [[noreturn]] static void throwOutOfRange(const std::string& text);

    // The alternatives follow ValueKind.
    std::variant<std::monostate, std::int64_t, Decimal, double, std::string, Date, Time, Timestamp, bool> value_;
};

// Text for a literal inside SQL text: in apostrophes, each apostrophe doubled.
std::string quoted(std::string_view text);

}  // namespace mxbook::db
