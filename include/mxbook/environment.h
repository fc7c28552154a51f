// Where the application's folders, settings and four databases are, how to
// connect to the databases, and new key values from them.
//
// The settings file "res.dat" beside the running executable names the
// application folder (section "APPLICATION", key "PROGRAM_ROOT", default
// "VELMO") and the per-user values file ("INIFILE", default
// "VelmoValues.ini"). The values file, in the per-user application folder,
// remembers each database's location: the first call settles it there, later
// calls return what the file holds, edits by hand included.
#pragma once

#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/data/error.h"
#include "mxbook/schema.h"

namespace mxbook {

// The per-user application folder: the documents folder, "/", PROGRAM_ROOT, "/".
std::string GetUserRoot();
// The shared application folder: the shared documents folder, "/", PROGRAM_ROOT, "/".
std::string GetCommonRoot();
// The user's desktop folder.
std::string GetUserDesktop();

// The location of the main, documentation, report and picture database: a
// file path (an embedded database) or "host:path" (a Firebird server).
// Throws mxbook::Error when the location must be settled and the values
// file cannot be written (its folder does not exist, say).
std::string GetUserBase();
std::string GetBaseDocTO();
std::string GetBaseReport();
std::string GetUserPhoto();

// The "FileVersion" string of a Windows executable's or DLL's version
// resource; empty text for any other file, a missing one or an empty name.
std::string GetFileVersion(const std::string& fileName);

// Which provider family the machine offers: 1 for version 5 of the LCPI
// provider, 2 for version 3, 3 for none of them.
int GetProviderExits();

// Open `connection` on the main, documentation, report or picture database.
// A failure is shown in a message box (caption "Ошибка!") and leaves the
// connection closed; nothing is raised. The administrator's password comes
// from the environment variable MXBOOK_DB_PASSWORD, or else from key
// "PASSWORD" of section "DATABASE" in "res.dat".
void FunConnection(db::Connection& connection);
void FunConnectDocTO(db::Connection& connection);
void FunConnectReport(db::Connection& connection);
void FunConPhoto(db::Connection& connection);

// Opens `connection` on a database as the connect functions do (its
// location from the values file, or `location` when given), but raises
// db::Error with the reason instead of showing a message: for programs that
// report failures themselves. A local location that does not exist as
// written and matches more than one path without regard to case raises
// mxbook::Error naming them (see matchLetterCase).
void openDatabase(db::Connection& connection, schema::Database database);
void openDatabase(db::Connection& connection, schema::Database database, const std::string& location);

// A local path turned into the path on disk. The path as written is used
// whenever it exists; only when it does not is it matched folder by folder
// without regard to letter case, and when more than one path matches so,
// mxbook::Error is raised naming them. The part that exists nowhere, and a
// server's "host:path", stay as given.
std::string matchLetterCase(const std::string& location);

// The path (or a server's "host:path") the connect functions open for a
// database: its settled location, the values file's upper-cased text turned
// into the path on disk. The application folder composed from the host's
// documents folder is the exact path and wins when the settled location is
// that path upper-cased; otherwise the documents folder is taken exactly as
// the host names it and only the rest is matched without regard to case (as
// matchLetterCase does). Settles the location as GetUserBase does; raises
// mxbook::Error as matchLetterCase does.
std::string databasePath(schema::Database database);

// Why a database could not be opened, in words for a person.
struct OpenFailure {
    enum class Kind {
        missing,            // no such file
        folder,             // a folder stands at the location
        noPermission,       // the file may not be read (or opened)
        readOnly,           // the file may be read but not written
        notDatabase,        // a file that is not a Firebird database
        otherVersion,       // a database of another on-disk structure
        incomplete,         // a database whose creation was cut short
        inUse,              // another program has the embedded database open
        serverUnreachable,  // no server answers at the location's host and port
        login,              // the server refused the user name or password
        other,              // Firebird's message says it
    };
    Kind kind;
    // "no such file", "not a Firebird database", "the database server at
    // HOST:PORT is unreachable", ...; Firebird's message for `other`.
    std::string reason;
};
// `location` as it was opened (the path on disk, or "host:path") and the
// error the opening raised. A local file is looked at on disk: missing, a
// folder, its permissions; the rest comes from Firebird's error codes.
OpenFailure explainOpenFailure(const std::string& location, const db::Error& error);

// The objects the DDL of schema::ddl creates (tables, views, indexes,
// generators, procedures, triggers) that the open database of `connection`
// lacks, as "table REESTR", "index IX_..." in the order the DDL creates
// them; none for a complete database. One query of the system tables.
std::vector<std::string> missingSchemaObjects(db::Connection& connection, schema::Database database);
// Runs the DDL statements that create the missing objects, in order, each
// committed on its own; returns what they created. The objects already
// there, and the rows in them, are left as they are.
std::vector<std::string> completeSchema(db::Connection& connection, schema::Database database);

// The next value of a generator; every call advances it by one.
int GetID(db::Connection& connection, const std::string& generatorName);
// The next free movement number: the highest in DVIGENIE_V_EKSPLUATACII plus
// one, or 1 when there is none. Two users inserting at once may get the same.
int FunMaxDvigExp(db::Connection& connection);

}  // namespace mxbook
