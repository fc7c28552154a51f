// What is wrong with a database that does not open, and whether one that
// opens has every object of its schema.
#include <ibase.h>
#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "data/sql_text.h"
#include "mxbook/data/data_set.h"
#include "mxbook/environment.h"
#include "mxbook/text.h"
#include "settings.h"

namespace mxbook {

namespace {

namespace fs = std::filesystem;

// "HOST:PORT" of a server location "host:path", "host/port:path" or "[v6]/port:path".
std::string serverOf(const std::string& location) {
    std::size_t colon = location.find(':');
    if (location.starts_with('[')) {
        const auto close = location.find(']');
        if (close != std::string::npos) colon = location.find(':', close);
    }
    const std::string head = location.substr(0, colon);
    const auto slash = head.rfind('/');
    if (slash == std::string::npos || (head.starts_with('[') && slash < head.find(']'))) return head + ":3050";
    return head.substr(0, slash) + ":" + head.substr(slash + 1);
}

OpenFailure explainServer(const std::string& location, const db::Error& error) {
    using Kind = OpenFailure::Kind;
    const std::string server = serverOf(location);
    if (error.hasCode(isc_net_lookup_err))
        return {Kind::serverUnreachable, "the database server at " + server + " is unreachable: no such host"};
    if (error.hasCode(isc_network_error) || error.hasCode(isc_net_connect_err))
        return {Kind::serverUnreachable, "the database server at " + server + " is unreachable"};
    if (error.hasCode(isc_login) || error.hasCode(isc_login_error))
        return {Kind::login, "the database server at " + server + " refused the user name or password"};
    if (error.hasCode(isc_io_open_err)) return {Kind::missing, "the server at " + server + " finds no such file"};
    return {Kind::other, error.message()};
}

}  // namespace

OpenFailure explainOpenFailure(const std::string& location, const db::Error& error) {
    using Kind = OpenFailure::Kind;
    if (environment::isServerLocation(location)) return explainServer(location, error);
    std::error_code ignored;
    const fs::path path(location);
    const fs::file_status status = fs::status(path, ignored);
    if (!fs::exists(status)) {
        const fs::path folder = path.parent_path();
        if (!folder.empty() && !fs::exists(folder, ignored))
            return {Kind::missing, "no such file (its folder " + folder.string() + " does not exist either)"};
        return {Kind::missing, "no such file"};
    }
    if (fs::is_directory(status)) return {Kind::folder, "it is a folder, not a database file"};
    if (error.hasCode(isc_already_opened))
        return {Kind::inUse, "another program has it open; an embedded database is open to one program at a time"};
    if (access(location.c_str(), R_OK) != 0) return {Kind::noPermission, "no permission to read it"};
    if (access(location.c_str(), W_OK) != 0)
        return {Kind::readOnly, "the file is read-only, and the database must be written"};
    // A creation cut short leaves an empty file, or one whose system tables
    // lack even the character sets that every attachment needs.
    if (fs::is_regular_file(status) && fs::file_size(path, ignored) == 0) return {Kind::incomplete, "an empty file"};
    if (error.hasCode(isc_charset_not_found)) return {Kind::incomplete, "its system tables are incomplete"};
    if (error.hasCode(isc_wrong_ods))
        return {Kind::otherVersion, "a database of another Firebird version (" + error.message() + ")"};
    // Firebird says a file too short for a database's first page is an I/O error, and names nothing else.
    if (error.hasCode(isc_bad_db_format) || (error.hasCode(isc_io_error) && !error.hasCode(isc_io_open_err) &&
                                             !error.hasCode(isc_io_read_err) && !error.hasCode(isc_io_access_err)))
        return {Kind::notDatabase, "not a Firebird database"};
    if (error.hasCode(isc_io_open_err) || error.hasCode(isc_io_access_err))
        return {Kind::noPermission, "it cannot be opened (" + error.message() + ")"};
    return {Kind::other, error.message()};
}

namespace {

// The object a DDL statement creates, as "kind:NAME" with the kind as the
// system tables file it (R relation, I index, G generator, P procedure,
// T trigger), and the words to name it to a person; nothing for any other
// statement.
struct SchemaObject {
    std::string key;
    std::string shown;
};

std::vector<std::string> words(const std::string& statement, std::size_t count) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < statement.size() && found.size() < count;) {
        const char c = statement[at];
        if (std::isspace(static_cast<unsigned char>(c)) || c == '(' || c == ',' || c == ';') {
            ++at;
        } else if (c == '"') {
            std::string name;
            for (++at; at < statement.size(); ++at) {
                if (statement[at] == '"' && at + 1 < statement.size() && statement[at + 1] == '"') {
                    name += '"';
                    ++at;
                } else if (statement[at] == '"') {
                    ++at;
                    break;
                } else {
                    name += statement[at];
                }
            }
            found.push_back("\"" + name);  // a quoted name keeps its case; the mark tells it apart
        } else {
            const auto end = statement.find_first_of(" \t\r\n(,;\"", at);
            found.push_back(statement.substr(at, end == std::string::npos ? std::string::npos : end - at));
            at = end == std::string::npos ? statement.size() : end;
        }
    }
    return found;
}

bool createdObject(const std::string& statement, SchemaObject& object) {
    const std::vector<std::string> w = words(statement, 8);
    std::size_t at = 0;
    const auto word = [&](std::size_t i) -> std::string {
        if (i >= w.size()) return {};
        return w[i].starts_with('"') ? w[i] : upperCase(w[i]);
    };
    if (word(at) == "RECREATE") {
        ++at;
    } else if (word(at) == "CREATE") {
        ++at;
        if (word(at) == "OR" && word(at + 1) == "ALTER") at += 2;
    } else {
        return false;
    }
    while (word(at) == "UNIQUE" || word(at) == "ASC" || word(at) == "ASCENDING" || word(at) == "DESC" ||
           word(at) == "DESCENDING" || word(at) == "GLOBAL" || word(at) == "TEMPORARY")
        ++at;
    static const std::map<std::string, std::pair<char, const char*>> kinds = {
        {"TABLE", {'R', "table"}},         {"VIEW", {'R', "view"}},         {"INDEX", {'I', "index"}},
        {"GENERATOR", {'G', "generator"}}, {"SEQUENCE", {'G', "sequence"}}, {"PROCEDURE", {'P', "procedure"}},
        {"TRIGGER", {'T', "trigger"}},
    };
    const auto kind = kinds.find(word(at));
    if (kind == kinds.end() || at + 1 >= w.size()) return false;
    const std::string& written = w[at + 1];
    const std::string name = written.starts_with('"') ? written.substr(1) : upperCase(written);
    object.key = std::string(1, kind->second.first) + ":" + name;
    object.shown = std::string(kind->second.second) + " " + name;
    return true;
}

std::set<std::string> presentObjects(db::Connection& connection) {
    db::DataSet rows(connection,
                     "select 'R:' || trim(rdb$relation_name) from rdb$relations where rdb$system_flag is distinct "
                     "from 1 union all select 'I:' || trim(rdb$index_name) from rdb$indices where rdb$system_flag is "
                     "distinct from 1 union all select 'G:' || trim(rdb$generator_name) from rdb$generators where "
                     "rdb$system_flag is distinct from 1 union all select 'P:' || trim(rdb$procedure_name) from "
                     "rdb$procedures where rdb$system_flag is distinct from 1 union all select 'T:' || "
                     "trim(rdb$trigger_name) from rdb$triggers where rdb$system_flag is distinct from 1");
    std::set<std::string> present;
    for (rows.open(); !rows.eof(); rows.next()) present.insert(rows.field(0).asText());
    return present;
}

}  // namespace

std::vector<std::string> missingSchemaObjects(db::Connection& connection, schema::Database database) {
    const std::set<std::string> present = presentObjects(connection);
    std::vector<std::string> missing;
    for (const std::string& statement : db::detail::splitScript(schema::ddl(database))) {
        SchemaObject object;
        if (createdObject(statement, object) && !present.contains(object.key)) missing.push_back(object.shown);
    }
    return missing;
}

std::vector<std::string> completeSchema(db::Connection& connection, schema::Database database) {
    const std::set<std::string> present = presentObjects(connection);
    std::vector<std::string> created;
    for (const std::string& statement : db::detail::splitScript(schema::ddl(database))) {
        SchemaObject object;
        if (!createdObject(statement, object) || present.contains(object.key)) continue;
        connection.execute(statement);
        created.push_back(object.shown);
    }
    return created;
}

}  // namespace mxbook
