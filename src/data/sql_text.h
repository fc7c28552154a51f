// Reading SQL text the way Firebird does: literals, quoted names and
// comments are passed over whole.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mxbook::db::detail {

// A statement whose ":name" parameters have become Firebird's "?" markers.
struct PositionalSql {
    std::string sql;
    std::vector<std::string> names;  // one per marker, in order
    std::vector<std::string> upperNames;  // the same, upper-cased as parameters are matched
    std::size_t unnamedMarkers = 0;  // "?" already in the text
};
PositionalSql toPositional(std::string_view sql);

// The statements of a script as isql runs it: split at the terminator, which
// "SET TERM" changes; isql's own commands (SET TERM, SET SQL DIALECT, SET
// NAMES, ...) and COMMIT or ROLLBACK are left out, as each statement is
// committed on its own.
std::vector<std::string> splitScript(std::string_view script);

// Whether the statement has the keyword as a word of its own, outside
// literals, quoted names and comments (compared without regard to case).
bool hasKeyword(std::string_view sql, std::string_view keyword);

// A stored name (a table's, a column's) for SQL text, in double quotes: the
// exact name, whatever its case, even where it is a reserved word.
std::string sqlName(std::string_view name);
// The text with a to z upper-cased, as names are matched.
std::string upperAscii(std::string_view text);
// Letters, digits, '_' and '$', beginning with a letter or '_'.
bool isIdentifier(std::string_view name);

}  // namespace mxbook::db::detail
