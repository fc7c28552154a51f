// The tables of the four databases: main (register, flight records, units,
// limits, programmes, movements, report tables), report (templates),
// documentation (stored documents) and picture.
#pragma once

#include <string>
#include <string_view>

#include "mxbook/data/connection.h"

namespace mxbook::schema {

enum class Database { main, report, documentation, picture };

inline constexpr Database allDatabases[] = {Database::main, Database::report, Database::documentation,
                                            Database::picture};

// "main", "report", "documentation" or "picture".
std::string_view name(Database database);

// The DDL script that builds the database's tables, generators and indexes;
// the same text as db/<name>.sql.
std::string_view ddl(Database database);

// Builds the database's tables in the open, empty database of `connection`.
void createTables(db::Connection& connection, Database database);

// Whose name a new database is created under. Embedded databases need none;
// a server wants a user it knows.
struct Login {
    std::string user = "SYSDBA";
    std::string password;
};

// Creates a new database at `location` (a file path for an embedded
// database, "host:path" on a server) with its tables, and leaves
// `connection` open on it. Throws db::Error when the file exists already or
// cannot be created; nothing is left behind then.
void createDatabase(db::Connection& connection, Database database, const std::string& location,
                    const Login& login = {});

}  // namespace mxbook::schema
