#include "mxbook/operating_time.h"

#include <climits>
#include <cstdio>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook::operating_time {

namespace {

// Hours and minutes as the integers they are written as; the total must fit
// the counters that hold it.
Minutes total(std::string_view text, std::string_view hoursPart, std::string_view minutesPart) {
    try {
        // Each part fits an int before it is multiplied, so nothing overflows on the way.
        const long long hours = parseInt(hoursPart);
        const long long value = hours * 60 + parseInt(minutesPart);
        if (value > INT_MAX || value < INT_MIN) throw ConversionError(std::string(text), "operating time");
        return Minutes(value);
    } catch (const ConversionError&) {
        throw ConversionError(std::string(text), "operating time");
    }
}

}  // namespace

std::string format(Minutes minutes) {
    const long long value = minutes.atLeastZero().count();
    char text[32];
    std::snprintf(text, sizeof text, "%lld:%02lld", value / 60, value % 60);
    return text;
}

std::string formatOrDoubleZero(Minutes minutes) {
    return minutes.count() <= 0 ? std::string(doubleZero) : format(minutes);
}

Minutes parseHoursUpToColon(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) throw ConversionError(std::string(text), "operating time");
    return total(text, text.substr(0, colon), text.substr(colon + 1));
}

Minutes parseHoursColonTwoDigits(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || characterCount(text.substr(colon)) != 3)
        throw ConversionError(std::string(text), "operating time");
    return parseHoursBeforeLastThree(text);
}

Minutes parseStoredTime(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) throw ConversionError(std::string(text), "operating time");
    return total(text, text.substr(0, colon), characters(text.substr(colon + 1), 0, 2)).atLeastZero();
}

Minutes parseHoursBeforeLastThree(std::string_view text) {
    const std::size_t length = characterCount(text);
    if (length < 3) throw ConversionError(std::string(text), "operating time");
    return total(text, characters(text, 0, length - 3), characters(text, length - 2));
}

}  // namespace mxbook::operating_time
