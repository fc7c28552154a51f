// Text and number routines shared by every subsystem.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mxbook {

// Blanks and control characters removed from both ends / the end.
std::string trim(std::string_view text);
std::string trimRight(std::string_view text);

// Upper case in the user's locale, Cyrillic and other scripts included
// ("путь" gives "ПУТЬ"). Bytes that are not UTF-8 pass unchanged.
std::string upperCase(std::string_view utf8);

// Where a rule counts characters, it counts the code points of the UTF-8
// text ("10ч30" has five); a byte that starts no well-formed sequence counts
// as one. `characters` gives `count` of them from the `first`, fewer where
// the text ends sooner.
std::size_t characterCount(std::string_view utf8);
std::string_view characters(std::string_view utf8, std::size_t first, std::size_t count = std::string_view::npos);

// Appends a Unicode code point to UTF-8 text.
void appendUtf8(std::string& out, char32_t code);

// Every occurrence of `from` replaced by `to`, left to right.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

// A decimal integer with an optional sign and surrounding blanks. Throws
// ConversionError for anything else, or when the value does not fit.
int parseInt(std::string_view text);
std::int64_t parseInt64(std::string_view text);

// Rounds to `digits` decimal places, halves away from zero: 12.5 gives 13,
// -12.5 gives -13. A value that misses a half only by the binary
// representation (0.3 * 25) counts as the half.
double roundHalfAwayFromZero(double value, int digits = 0);

}  // namespace mxbook
