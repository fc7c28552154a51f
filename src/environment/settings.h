// The settings file "res.dat" beside the running executable, and the places
// the application's files take from it.
#pragma once

#include <optional>
#include <string>

#include "mxbook/schema.h"

namespace mxbook::environment {

struct Settings {
    std::string programRoot;  // the application folder's name
    std::string valuesFile;   // the per-user values file's name
    std::string password;     // the database administrator's, as the deployment supplies it
};

// Read afresh at every call: an edit by hand counts at once.
Settings readSettings();

// The four databases: their section in the values file and their file name.
enum class DatabaseKind { main, documentation, report, picture };

DatabaseKind kindOf(schema::Database database);

// The database's location as the values file settles and keeps it, or the
// one the host chose for the run (Host::databaseLocation), which leaves the
// values file alone.
std::string databaseLocation(DatabaseKind kind);
// The location set for the run, if any.
std::optional<std::string> runLocation(DatabaseKind kind);

// What the connect functions open: the settled location as a path on disk
// (see databasePath in mxbook/environment.h).
std::string openingLocation(DatabaseKind kind);

// "host:path" and "host/port:path" name a server; a local path has no colon.
bool isServerLocation(const std::string& location);

// A local location turned into the path on disk: the location as written
// when it exists, else a match without regard to letter case, folder by
// folder; mxbook::Error when more than one path matches. Below
// `exactFolder` (when the location lies there, compared without regard to
// case) that folder is taken exactly as given and only the rest is matched.
// The part that exists nowhere stays as given; a server's location is returned
// as it is.
std::string resolveLocalPath(const std::string& location, const std::string& exactFolder);

// The connection string for a provider code (GetProviderExits) and a database.
std::string composeConnectionString(int providerCode, DatabaseKind kind, const std::string& location,
                                    const std::string& password);

}  // namespace mxbook::environment
