// UTF-8 text: code points and letter case.
#include <langinfo.h>
#include <locale.h>

#include <cwctype>

#include <string>
#include <utility>

#include "mxbook/text.h"

namespace mxbook {

namespace {

// The user's character classes when they are UTF-8, else the C library's
// own UTF-8 ones: both know the case of every script.
locale_t caseLocale() {
    static const locale_t locale = [] {
        locale_t user = newlocale(LC_CTYPE_MASK, "", static_cast<locale_t>(nullptr));
        if (user) {
            const char* codeset = nl_langinfo_l(CODESET, user);
            if (codeset && std::string_view(codeset) == "UTF-8") return user;
            freelocale(user);
        }
        return newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    }();
    return locale;
}

// The code point starting at text[pos] and its length; length 0 for a byte
// that does not start a well-formed sequence.
std::pair<char32_t, std::size_t> decode(std::string_view text, std::size_t pos) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(pos);
    std::size_t length = first < 0x80           ? 1
                         : (first >> 5) == 0x6  ? 2
                         : (first >> 4) == 0xE  ? 3
                         : (first >> 3) == 0x1E ? 4
                                                : 0;
    if (length == 0 || pos + length > text.size()) return {0, 0};
    char32_t code = length == 1 ? first : first & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(pos + i) & 0xC0) != 0x80) return {0, 0};
        code = (code << 6) | (byte(pos + i) & 0x3F);
    }
    return {code, length};
}

// Bytes of the code point at text[pos]; a byte that starts no well-formed
// sequence is a character of its own, as a WIN1251 byte would be.
std::size_t characterLength(std::string_view text, std::size_t pos) {
    const std::size_t length = decode(text, pos).second;
    return length == 0 ? 1 : length;
}

}  // namespace

std::size_t characterCount(std::string_view utf8) {
    std::size_t count = 0;
    for (std::size_t pos = 0; pos < utf8.size(); pos += characterLength(utf8, pos)) ++count;
    return count;
}

std::string_view characters(std::string_view utf8, std::size_t first, std::size_t count) {
    std::size_t begin = 0;
    for (; first > 0 && begin < utf8.size(); --first) begin += characterLength(utf8, begin);
    std::size_t end = begin;
    for (; count > 0 && end < utf8.size(); --count) end += characterLength(utf8, end);
    return utf8.substr(begin, end - begin);
}

void appendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

std::string upperCase(std::string_view utf8) {
    const locale_t locale = caseLocale();
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t pos = 0; pos < utf8.size();) {
        const auto [code, length] = decode(utf8, pos);
        if (length == 0) {
            out += utf8[pos++];
            continue;
        }
        const auto upper = locale ? towupper_l(static_cast<wint_t>(code), locale) : static_cast<wint_t>(code);
        appendUtf8(out, static_cast<char32_t>(upper));
        pos += length;
    }
    return out;
}

}  // namespace mxbook
