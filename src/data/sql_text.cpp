#include "sql_text.h"

#include <cctype>

#include "mxbook/text.h"

namespace mxbook::db::detail {

namespace {

bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$'; }

// Length of the literal, quoted name or comment starting at `at`; 0 when
// none starts there.
std::size_t skippable(std::string_view sql, std::size_t at) {
    const char c = sql[at];
    // q'{...}': a literal whose own delimiters let it hold apostrophes.
    if ((c == 'q' || c == 'Q') && at + 2 < sql.size() && sql[at + 1] == '\'' &&
        (at == 0 || !isNameChar(sql[at - 1]))) {
        const char open = sql[at + 2];
        const char close = open == '(' ? ')' : open == '[' ? ']' : open == '{' ? '}' : open == '<' ? '>' : open;
        const std::size_t end = sql.find(std::string{close, '\''}, at + 3);
        return (end == std::string_view::npos ? sql.size() : end + 2) - at;
    }
    if (c == '\'' || c == '"') {
        std::size_t end = at + 1;
        for (;;) {
            end = sql.find(c, end);
            if (end == std::string_view::npos) return sql.size() - at;
            if (end + 1 < sql.size() && sql[end + 1] == c) {
                end += 2;
                continue;
            }
            return end + 1 - at;
        }
    }
    if (sql.substr(at, 2) == "--") {
        const std::size_t end = sql.find('\n', at);
        return (end == std::string_view::npos ? sql.size() : end + 1) - at;
    }
    if (sql.substr(at, 2) == "/*") {
        const std::size_t end = sql.find("*/", at + 2);
        return (end == std::string_view::npos ? sql.size() : end + 2) - at;
    }
    return 0;
}

std::string upperWords(std::string_view text, std::size_t count) {
    std::string words;
    std::size_t at = 0;
    for (std::size_t n = 0; n < count; ++n) {
        while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) ++at;
        std::size_t end = at;
        while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end]))) ++end;
        if (at == end) break;
        if (!words.empty()) words += ' ';
        for (std::size_t i = at; i < end; ++i) words += static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
        at = end;
    }
    return words;
}

// The statement without its comments, for deciding what kind it is.
std::string withoutComments(std::string_view sql) {
    std::string out;
    for (std::size_t at = 0; at < sql.size();) {
        const std::size_t length = skippable(sql, at);
        if (length > 0 && sql[at] != '\'' && sql[at] != '"') {
            out += ' ';
        } else {
            out.append(sql.substr(at, length > 0 ? length : 1));
        }
        at += length > 0 ? length : 1;
    }
    return trim(out);
}

bool isIsqlCommand(const std::string& statement) {
    const std::string head = upperWords(statement, 2);
    if (head.rfind("SET ", 0) == 0)
        return head != "SET GENERATOR" && head != "SET STATISTICS";
    const std::string first = upperWords(statement, 1);
    return first == "COMMIT" || first == "ROLLBACK";
}

}  // namespace

PositionalSql toPositional(std::string_view sql) {
    PositionalSql result;
    // In EXECUTE BLOCK only the header takes parameters; after its AS, ":name"
    // is one of the block's own variables.
    const bool block = upperWords(withoutComments(sql), 2) == "EXECUTE BLOCK";
    for (std::size_t at = 0; at < sql.size();) {
        if (const std::size_t length = skippable(sql, at)) {
            result.sql.append(sql.substr(at, length));
            at += length;
        } else if (block && isNameStart(sql[at]) && (at == 0 || !isNameChar(sql[at - 1]))) {
            std::size_t end = at;
            while (end < sql.size() && isNameChar(sql[end])) ++end;
            if (upperWords(sql.substr(at, end - at), 1) == "AS") {
                result.sql.append(sql.substr(at));
                break;
            }
            result.sql.append(sql.substr(at, end - at));
            at = end;
        } else if (sql[at] == ':' && at + 1 < sql.size() && isNameStart(sql[at + 1])) {
            std::size_t end = at + 1;
            while (end < sql.size() && isNameChar(sql[end])) ++end;
            result.names.emplace_back(sql.substr(at + 1, end - at - 1));
            result.upperNames.push_back(upperAscii(result.names.back()));
            result.sql += '?';
            at = end;
        } else if (sql[at] == '?') {
            ++result.unnamedMarkers;
            result.sql += sql[at++];
        } else {
            result.sql += sql[at++];
        }
    }
    return result;
}

std::vector<std::string> splitScript(std::string_view script) {
    std::vector<std::string> statements;
    std::string terminator = ";";
    std::size_t start = 0;
    for (std::size_t at = 0; at <= script.size();) {
        const bool atEnd = at == script.size();
        if (!atEnd) {
            if (const std::size_t length = skippable(script, at)) {
                at += length;
                continue;
            }
        }
        if (!atEnd && script.substr(at, terminator.size()) != terminator) {
            ++at;
            continue;
        }
        const std::string statement = withoutComments(script.substr(start, at - start));
        at += atEnd ? 1 : terminator.size();
        start = at;
        if (statement.empty()) continue;
        if (upperWords(statement, 2) == "SET TERM") {
            std::size_t afterTerm = 3;  // past "SET"
            while (std::isspace(static_cast<unsigned char>(statement[afterTerm]))) ++afterTerm;
            terminator = trim(statement.substr(afterTerm + 4));
            if (terminator.empty()) terminator = ";";
            continue;
        }
        if (!isIsqlCommand(statement)) statements.push_back(statement);
    }
    return statements;
}

bool hasKeyword(std::string_view sql, std::string_view keyword) {
    const std::string wanted = upperWords(keyword, 1);
    for (std::size_t at = 0; at < sql.size();) {
        if (const std::size_t length = skippable(sql, at)) {
            at += length;
        } else if (isNameStart(sql[at]) && (at == 0 || !isNameChar(sql[at - 1]))) {
            std::size_t end = at;
            while (end < sql.size() && isNameChar(sql[end])) ++end;
            if (upperWords(sql.substr(at, end - at), 1) == wanted) return true;
            at = end;
        } else {
            ++at;
        }
    }
    return false;
}

std::string upperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

bool isIdentifier(std::string_view name) {
    if (name.empty() || !isNameStart(name.front())) return false;
    for (char c : name)
        if (!isNameChar(c)) return false;
    return true;
}

std::string sqlName(std::string_view name) {
    return "\"" + replaceAll(name, "\"", "\"\"") + "\"";
}

}  // namespace mxbook::db::detail
