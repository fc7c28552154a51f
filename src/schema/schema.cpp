#include "mxbook/schema.h"

#include <filesystem>
#include <system_error>

#include "mxbook/data/error.h"

namespace mxbook::schema {

namespace embedded {
extern const std::string_view mainSql;
extern const std::string_view reportSql;
extern const std::string_view documentationSql;
extern const std::string_view pictureSql;
}  // namespace embedded

namespace {

bool isLocalFile(const std::string& location) {
    // "C:/x" cannot occur here; a ':' after the first character names a server.
    return location.find(':') == std::string::npos;
}

std::string quotedValue(const std::string& value) {
    std::string out = "\"";
    for (char c : value) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + '"';
}

}  // namespace

std::string_view name(Database database) {
    switch (database) {
    case Database::main: return "main";
    case Database::report: return "report";
    case Database::documentation: return "documentation";
    case Database::picture: return "picture";
    }
    return {};
}

std::string_view ddl(Database database) {
    switch (database) {
    case Database::main: return embedded::mainSql;
    case Database::report: return embedded::reportSql;
    case Database::documentation: return embedded::documentationSql;
    case Database::picture: return embedded::pictureSql;
    }
    return {};
}

void createTables(db::Connection& connection, Database database) { connection.executeScript(ddl(database)); }

void createDatabase(db::Connection& connection, Database database, const std::string& location, const Login& login) {
    const auto providers = db::Connection::providerNames();
    if (providers.empty()) throw db::Error("no database provider is available to create " + location);
    connection.create("Provider=" + providers.front() + ";User ID=" + quotedValue(login.user) + ";Password=" +
                      quotedValue(login.password) + ";Location=" + quotedValue(location) + ";ctype=WIN1251");
    try {
        createTables(connection, database);
    } catch (...) {
        // A half-built database is worse than none: the next attempt starts
        // clean. Dropping it through the attachment works on a server too.
        try {
            connection.dropDatabase();
        } catch (const Error&) {
            connection.close();
            if (isLocalFile(location)) {
                std::error_code ignored;
                std::filesystem::remove(location, ignored);
            }
        }
        throw;
    }
}

}  // namespace mxbook::schema
