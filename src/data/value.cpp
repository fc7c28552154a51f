#include "mxbook/data/value.h"

#include <cmath>
#include <limits>
#include <optional>

#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook::db {

namespace {

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

std::string lowerAscii(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

[[noreturn]] void cannotConvert(const Value& value, std::string_view what) {
    throw ConversionError(value.asText(), what);
}

// Serial day numbers of the years 1 to 9999.
int firstSerial() {
    static const int serial = Date::fromYmd(1, 1, 1).serial();
    return serial;
}
int lastSerial() {
    static const int serial = Date::fromYmd(9999, 12, 31).serial();
    return serial;
}

Date dateOfSerial(std::int64_t serial, const Value& value) {
    if (serial < firstSerial() || serial > lastSerial()) throw ConversionError(value.asText(), "date");
    return Date::fromSerial(static_cast<int>(serial));
}

// A serial date-time: whole days, and the fraction of a day as the time.
Timestamp timestampOfSerial(double serial, const Value& value) {
    if (!(serial >= firstSerial() && serial < lastSerial() + 1.0)) throw ConversionError(value.asText(), "date");
    // Round once, to ticks, so that a time a hair before midnight carries into the next day.
    const std::int64_t ticks = std::llround(serial * static_cast<double>(Time::ticksPerDay));
    std::int64_t days = ticks / Time::ticksPerDay;
    if (ticks % Time::ticksPerDay < 0) --days;
    return Timestamp{dateOfSerial(days, value), Time::fromTicks(ticks - days * Time::ticksPerDay)};
}

// "dd.mm.yyyy" or "dd.mm.yyyy h:nn[:ss]".
Timestamp parseTimestamp(const std::string& text, const FormatSettings& settings) {
    const std::string trimmed = trim(text);
    const auto space = trimmed.find(' ');
    if (space == std::string::npos) return Timestamp{parseShortDate(trimmed, settings), Time()};
    return Timestamp{parseShortDate(trimmed.substr(0, space), settings), parseTime(trimmed.substr(space + 1))};
}

}  // namespace

std::string Value::asText() const { return asText(host().formatSettings()); }
Date Value::asDate() const { return asDate(host().formatSettings()); }
Timestamp Value::asTimestamp() const { return asTimestamp(host().formatSettings()); }

std::string Value::asText(const FormatSettings& settings) const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return std::string(); },
            [](std::int64_t v) { return std::to_string(v); },
            [&](const Decimal& v) { return v.text(settings.decimalSeparator); },
            [&](double v) { return formatFloat(v, settings); },
            [](const std::string& v) { return v; },
            [&](Date v) { return shortDate(v, settings); },
            [&](Time v) { return formatTime(v, settings.longTimeFormat); },
            [&](const Timestamp& v) {
                std::string text = shortDate(v.date, settings);
                if (v.time != Time()) text += " " + formatTime(v.time, settings.longTimeFormat);
                return text;
            },
            [](bool v) { return std::string(v ? "True" : "False"); },
        },
        value_);
}

std::int64_t Value::asInt64() const {
    return std::visit(
        Overloaded{
            [](std::monostate) -> std::int64_t { return 0; },
            [](std::int64_t v) { return v; },
            [](const Decimal& v) { return v.rounded(); },
            [this](double v) {
                const double rounded = roundHalfAwayFromZero(v);
                if (!(std::fabs(rounded) < 9.2e18)) cannotConvert(*this, "integer");
                return static_cast<std::int64_t>(rounded);
            },
            [](const std::string& v) { return parseInt64(v); },
            [](Date v) -> std::int64_t { return v.serial(); },
            [this](Time) -> std::int64_t { cannotConvert(*this, "integer"); },
            [this](const Timestamp&) -> std::int64_t { cannotConvert(*this, "integer"); },
            [](bool v) -> std::int64_t { return v ? 1 : 0; },
        },
        value_);
}

int Value::asInt() const {
    const std::int64_t value = asInt64();
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        cannotConvert(*this, "integer");
    return static_cast<int>(value);
}

double Value::asDouble() const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return 0.0; },
            [](std::int64_t v) { return static_cast<double>(v); },
            [](const Decimal& v) { return v.toDouble(); },
            [](double v) { return v; },
            [](const std::string& v) { return parseFloat(v, host().formatSettings()); },
            [](Date v) { return static_cast<double>(v.serial()); },
            [](Time v) { return static_cast<double>(v.ticks()) / static_cast<double>(Time::ticksPerDay); },
            [](const Timestamp& v) {
                return v.date.serial() + static_cast<double>(v.time.ticks()) / static_cast<double>(Time::ticksPerDay);
            },
            [](bool v) { return v ? 1.0 : 0.0; },
        },
        value_);
}

Decimal Value::asDecimal() const {
    const std::optional<Decimal> exact = std::visit(
        Overloaded{
            [](std::monostate) -> std::optional<Decimal> { return Decimal{}; },
            [](std::int64_t v) -> std::optional<Decimal> { return Decimal{v, 0}; },
            [](const Decimal& v) -> std::optional<Decimal> { return v; },
            [](double v) { return Decimal::fromDoubleExact(v); },
            [](const std::string& v) { return Decimal::parseExact(v, host().formatSettings().decimalSeparator); },
            [](Date v) -> std::optional<Decimal> { return Decimal{v.serial(), 0}; },
            [this](Time) -> std::optional<Decimal> { return Decimal::fromDoubleExact(asDouble()); },
            [this](const Timestamp&) -> std::optional<Decimal> { return Decimal::fromDoubleExact(asDouble()); },
            [](bool v) -> std::optional<Decimal> { return Decimal{v ? 1 : 0, 0}; },
        },
        value_);
    if (!exact) cannotConvert(*this, "number of at most 18 digits");
    return *exact;
}

Date Value::asDate(const FormatSettings& settings) const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return Date(); },
            [this](std::int64_t v) { return dateOfSerial(v, *this); },
            [this](const Decimal& v) { return timestampOfSerial(v.toDouble(), *this).date; },
            [this](double v) { return timestampOfSerial(v, *this).date; },
            [&](const std::string& v) { return parseTimestamp(v, settings).date; },
            [](Date v) { return v; },
            [](Time) { return Date(); },
            [](const Timestamp& v) { return v.date; },
            [this](bool) -> Date { cannotConvert(*this, "date"); },
        },
        value_);
}

Time Value::asTime() const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return Time(); },
            [](std::int64_t) { return Time(); },
            [this](const Decimal& v) { return timestampOfSerial(v.toDouble(), *this).time; },
            [this](double v) { return timestampOfSerial(v, *this).time; },
            [](const std::string& v) { return parseTime(v); },
            [](Date) { return Time(); },
            [](Time v) { return v; },
            [](const Timestamp& v) { return v.time; },
            [this](bool) -> Time { cannotConvert(*this, "time"); },
        },
        value_);
}

Timestamp Value::asTimestamp(const FormatSettings& settings) const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return Timestamp(); },
            [this](std::int64_t v) { return Timestamp{dateOfSerial(v, *this), Time()}; },
            [this](const Decimal& v) { return timestampOfSerial(v.toDouble(), *this); },
            [this](double v) { return timestampOfSerial(v, *this); },
            [&](const std::string& v) { return parseTimestamp(v, settings); },
            [](Date v) { return Timestamp{v, Time()}; },
            [](Time v) { return Timestamp{Date(), v}; },
            [](const Timestamp& v) { return v; },
            [this](bool) -> Timestamp { cannotConvert(*this, "date and time"); },
        },
        value_);
}

bool Value::asBool() const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return false; },
            [](std::int64_t v) { return v != 0; },
            [](const Decimal& v) { return v.scaled != 0; },
            [](double v) { return v != 0.0; },
            [this](const std::string& v) {
                const std::string word = lowerAscii(trim(v));
                if (word == "true") return true;
                if (word == "false") return false;
                try {
                    return parseInt64(word) != 0;
                } catch (const ConversionError&) {
                    cannotConvert(*this, "boolean");
                }
            },
            [this](Date) -> bool { cannotConvert(*this, "boolean"); },
            [this](Time) -> bool { cannotConvert(*this, "boolean"); },
            [this](const Timestamp&) -> bool { cannotConvert(*this, "boolean"); },
            [](bool v) { return v; },
        },
        value_);
}

Value::Value(Decimal value) : value_(value) {
    if (value.scale < 0 || value.scale > Decimal::maxScale)
        throw ArgumentError("a decimal has 0 to 18 digits after the point, not " + std::to_string(value.scale));
}

void Value::throwOutOfRange(const std::string& text) { throw ConversionError(text, "integer"); }

std::string quoted(std::string_view text) { return "'" + replaceAll(text, "'", "''") + "'"; }

}  // namespace mxbook::db
