#include "mxbook/data/connection_string.h"

#include <strings.h>

#include "mxbook/data/error.h"
#include "mxbook/text.h"

namespace mxbook::db {

namespace {

bool sameKey(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

[[noreturn]] void malformed(int item, const char* what) {
    throw Error("malformed connection string: item " + std::to_string(item) + " " + what);
}

bool parseFlag(const std::string& value, int item) {
    if (sameKey(value, "true") || value == "1" || sameKey(value, "yes")) return true;
    if (sameKey(value, "false") || value == "0" || sameKey(value, "no")) return false;
    malformed(item, "is not True or False");
}

}  // namespace

ConnectionString ConnectionString::parse(std::string_view text) {
    ConnectionString result;
    std::size_t at = 0;
    for (int item = 1; at < text.size(); ++item) {
        const std::size_t equals = text.find('=', at);
        const std::size_t semicolon = text.find(';', at);
        if (equals == std::string_view::npos || (semicolon != std::string_view::npos && semicolon < equals)) {
            if (!trim(text.substr(at, semicolon - at)).empty()) malformed(item, "has no '='");
            at = semicolon == std::string_view::npos ? text.size() : semicolon + 1;
            continue;
        }
        const std::string key = trim(text.substr(at, equals - at));
        if (key.empty()) malformed(item, "has no name");

        std::size_t pos = equals + 1;
        while (pos < text.size() && text[pos] == ' ') ++pos;
        std::string value;
        if (pos < text.size() && (text[pos] == '"' || text[pos] == '\'')) {
            const char quote = text[pos++];
            for (;; ++pos) {
                if (pos >= text.size()) malformed(item, "has an unclosed quote");
                if (text[pos] == quote) {
                    if (pos + 1 < text.size() && text[pos + 1] == quote) {
                        value += quote;
                        ++pos;
                        continue;
                    }
                    ++pos;
                    break;
                }
                value += text[pos];
            }
            while (pos < text.size() && text[pos] == ' ') ++pos;
            if (pos < text.size() && text[pos] != ';') malformed(item, "has text after its closing quote");
        } else {
            const std::size_t end = text.find(';', pos);
            value = trim(text.substr(pos, end == std::string_view::npos ? std::string_view::npos : end - pos));
            pos = end == std::string_view::npos ? text.size() : end;
        }
        at = pos < text.size() ? pos + 1 : pos;

        if (sameKey(key, "Provider")) result.provider = value;
        else if (sameKey(key, "User ID")) result.userId = value;
        else if (sameKey(key, "Password")) result.password = value;
        else if (sameKey(key, "Location") || sameKey(key, "Data Source")) result.location = value;
        else if (sameKey(key, "ctype")) result.ctype = value;
        else if (sameKey(key, "auto_commit")) result.autoCommit = parseFlag(value, item);
        else if (sameKey(key, "dbclient_library")) result.dbclientLibrary = value;
        else if (sameKey(key, "dbclient_type")) result.dbclientType = value;
    }
    return result;
}

}  // namespace mxbook::db
