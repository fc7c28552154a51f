#include "mxbook/text.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "mxbook/error.h"

namespace mxbook {

namespace {

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

}  // namespace

std::string trim(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    return trimRight(text);
}

std::string trimRight(std::string_view text) {
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return std::string(text);
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty()) return std::string(text);
    std::string out;
    std::size_t start = 0;
    for (std::size_t at; (at = text.find(from, start)) != std::string_view::npos; start = at + from.size()) {
        out.append(text.substr(start, at - start));
        out.append(to);
    }
    out.append(text.substr(start));
    return out;
}

std::int64_t parseInt64(std::string_view text) {
    std::string_view digits = text;
    while (!digits.empty() && digits.front() == ' ') digits.remove_prefix(1);
    while (!digits.empty() && digits.back() == ' ') digits.remove_suffix(1);
    if (!digits.empty() && digits.front() == '+' && !(digits.size() > 1 && digits[1] == '-')) digits.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size())
        throw ConversionError(std::string(text), "integer");
    return value;
}

int parseInt(std::string_view text) {
    const std::int64_t value = parseInt64(text);
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        throw ConversionError(std::string(text), "integer");
    return static_cast<int>(value);
}

double roundHalfAwayFromZero(double value, int digits) {
    const double scale = std::pow(10.0, digits);
    const double scaled = std::fabs(value * scale);
    // Tolerates the few last bits lost when the half itself is not
    // representable (2.675 is stored as 2.67499999999999982236431605997495353221893310546875).
    const double tolerance = scaled * 8 * std::numeric_limits<double>::epsilon();
    const double rounded = std::floor(scaled + 0.5 + tolerance) / scale;
    return std::signbit(value) ? -rounded : rounded;
}

}  // namespace mxbook
