#include "mxbook/format.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

void appendNumber(std::string& out, int value, int width) {
    std::string digits = std::to_string(value);
    if (static_cast<int>(digits.size()) < width) out.append(static_cast<std::size_t>(width) - digits.size(), '0');
    out += digits;
}

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool isPatternLetter(char c) {
    switch (lower(c)) {
        case 'd': case 'm': case 'y': case 'h': case 'n': case 's': return true;
        default: return false;
    }
}

void formatInto(std::string& out, const Timestamp& value, std::string_view pattern, const FormatSettings& settings,
                bool nested) {
    const Date& date = value.date;
    const Time& time = value.time;
    for (std::size_t i = 0; i < pattern.size();) {
        const char c = pattern[i];
        if (c == '"' || c == '\'') {
            const std::size_t end = pattern.find(c, i + 1);
            const std::size_t stop = end == std::string_view::npos ? pattern.size() : end;
            out.append(pattern.substr(i + 1, stop - i - 1));
            i = stop + 1;
            continue;
        }
        if (!isPatternLetter(c)) {
            out += c;
            ++i;
            continue;
        }
        std::size_t run = 1;
        while (i + run < pattern.size() && lower(pattern[i + run]) == lower(c)) ++run;
        i += run;
        switch (lower(c)) {
            case 'd':
                if (run >= 5 && !nested) formatInto(out, value, settings.shortDateFormat, settings, true);
                else appendNumber(out, date.day(), run >= 2 ? 2 : 1);
                break;
            case 'm': appendNumber(out, date.month(), run >= 2 ? 2 : 1); break;
            case 'y':
                if (run >= 3) appendNumber(out, date.year(), 4);
                else appendNumber(out, date.year() % 100, 2);
                break;
            case 'h': appendNumber(out, time.hours(), run >= 2 ? 2 : 1); break;
            case 'n': appendNumber(out, time.minutes(), run >= 2 ? 2 : 1); break;
            case 's': appendNumber(out, time.seconds(), run >= 2 ? 2 : 1); break;
        }
    }
}

bool allDigits(std::string_view text) {
    if (text.empty()) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
        if (end == std::string_view::npos) return parts;
        start = end + 1;
    }
}

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

}  // namespace

std::string formatDateTime(const Timestamp& value, std::string_view pattern, const FormatSettings& settings) {
    std::string out;
    formatInto(out, value, pattern, settings, false);
    return out;
}

std::string formatDate(Date date, std::string_view pattern, const FormatSettings& settings) {
    return formatDateTime(Timestamp{date, Time()}, pattern, settings);
}

std::string formatTime(Time time, std::string_view pattern) { return formatDateTime(Timestamp{Date(), time}, pattern); }

std::string sqlDate(Date date) { return formatDate(date, "m,d,yyyy"); }

std::string shortDate(Date date, const FormatSettings& settings) {
    return formatDate(date, settings.shortDateFormat, settings);
}

Date parseShortDate(std::string_view text, const FormatSettings& settings) {
    // The order of day, month and year, and the separator, come from the pattern.
    std::string order;
    char separator = 0;
    for (char c : settings.shortDateFormat) {
        const char l = lower(c);
        if (l == 'd' || l == 'm' || l == 'y') {
            if (order.find(l) == std::string::npos) order += l;
        } else if (separator == 0 && c != '"' && c != '\'') {
            separator = c;
        }
    }
    if (order.size() != 3 || separator == 0) throw ConversionError(std::string(text), "date");

    const auto parts = split(trimBlanks(text), separator);
    if (parts.size() != 3) throw ConversionError(std::string(text), "date");
    int year = 0, month = 0, day = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string_view part = trimBlanks(parts[i]);
        const std::size_t maxDigits = order[i] == 'y' ? 4 : 2;
        if (!allDigits(part) || part.size() > maxDigits) throw ConversionError(std::string(text), "date");
        const int number = parseInt(part);
        if (order[i] == 'd') day = number;
        else if (order[i] == 'm') month = number;
        else if (part.size() <= 2) {
            const int low = settings.twoDigitYearMax - 99;
            year = low - low % 100 + number;
            if (year < low) year += 100;
        } else year = number;
    }
    if (!Date::isValid(year, month, day)) throw ConversionError(std::string(text), "date");
    return Date::fromYmd(year, month, day);
}

Time parseTime(std::string_view text) {
    const auto parts = split(trimBlanks(text), ':');
    if (parts.size() < 2 || parts.size() > 3) throw ConversionError(std::string(text), "time");
    int values[3] = {0, 0, 0};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!allDigits(parts[i]) || parts[i].size() > 2 || (i > 0 && parts[i].size() != 2))
            throw ConversionError(std::string(text), "time");
        values[i] = parseInt(parts[i]);
    }
    if (values[0] > 23 || values[1] > 59 || values[2] > 59) throw ConversionError(std::string(text), "time");
    return Time::fromHms(values[0], values[1], values[2]);
}

std::string formatFloat(double value, const FormatSettings& settings) {
    if (std::isfinite(value) && value == std::trunc(value) && std::fabs(value) < 1e15)
        return std::to_string(static_cast<long long>(value));
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return replaceAll(buffer, ".", settings.decimalSeparator);
}

double parseFloat(std::string_view text, const FormatSettings& settings) {
    std::string normal = trim(text);
    if (!settings.decimalSeparator.empty() && settings.decimalSeparator != ".")
        normal = replaceAll(normal, settings.decimalSeparator, ".");
    std::string_view digits = normal;
    if (!digits.empty() && digits.front() == '+' && !(digits.size() > 1 && digits[1] == '-')) digits.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value))
        throw ConversionError(std::string(text), "number");
    return value;
}

}  // namespace mxbook
