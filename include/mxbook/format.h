// Dates, times and numbers as text, in the user's conventions.
#pragma once

#include <string>
#include <string_view>

#include "mxbook/date.h"

namespace mxbook {

// The user's regional settings. The defaults are the Russian conventions.
struct FormatSettings {
    // Pattern of "ddddd": d/dd day, m/mm month, yy/yyyy year; any other
    // character stands for itself and the first one separates the parts.
    std::string shortDateFormat = "dd.mm.yyyy";
    // Pattern of a time shown on its own: h/hh hours, n/nn minutes, s/ss seconds.
    std::string longTimeFormat = "h:nn:ss";
    std::string decimalSeparator = ",";
    std::string thousandSeparator = " ";
    // A two-digit year is read as the year in the hundred years ending here.
    int twoDigitYearMax = 2049;
};

// Formats with a pattern of these tokens: d, dd, ddddd (the short date),
// m, mm, yy, yyyy, h, hh, n, nn, s, ss; text between double quotes and every
// other character stand for themselves.
std::string formatDateTime(const Timestamp& value, std::string_view pattern, const FormatSettings& settings = {});
std::string formatDate(Date date, std::string_view pattern, const FormatSettings& settings = {});
std::string formatTime(Time time, std::string_view pattern);

// "m,d,yyyy", the form dates take inside SQL text: 3 March 2024 is 3,3,2024.
std::string sqlDate(Date date);
// The short date format ("ddddd").
std::string shortDate(Date date, const FormatSettings& settings);

// A date written in the short date format: day, month and year in that
// format's order, split by its separator; one or two digits for day and month,
// two or four for the year. Throws ConversionError otherwise.
Date parseShortDate(std::string_view text, const FormatSettings& settings);
// "h:nn" or "h:nn:ss". Throws ConversionError otherwise.
Time parseTime(std::string_view text);

// Shortest text that reads back as the same number (at most 15 significant
// digits), with the decimal separator of the settings.
std::string formatFloat(double value, const FormatSettings& settings);
// Accepts the settings' decimal separator or '.', and an exponent.
double parseFloat(std::string_view text, const FormatSettings& settings);

}  // namespace mxbook
