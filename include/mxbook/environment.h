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

#include "mxbook/data/connection.h"
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
// report failures themselves.
void openDatabase(db::Connection& connection, schema::Database database);
void openDatabase(db::Connection& connection, schema::Database database, const std::string& location);

// A local path as the values file keeps it (upper-cased) turned into the
// path that exists on disk, folder by folder without regard to letter case;
// the part that does not exist yet, and a server's "host:path", stay as given.
std::string matchLetterCase(const std::string& location);

// The next value of a generator; every call advances it by one.
int GetID(db::Connection& connection, const std::string& generatorName);
// The next free movement number: the highest in DVIGENIE_V_EKSPLUATACII plus
// one, or 1 when there is none. Two users inserting at once may get the same.
int FunMaxDvigExp(db::Connection& connection);

}  // namespace mxbook
