// The settings file "res.dat" beside the running executable, and the places
// the application's files take from it.
#pragma once

#include <string>

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

// The database's location as the values file settles and keeps it.
std::string databaseLocation(DatabaseKind kind);

// The connection string for a provider code (GetProviderExits) and a database.
std::string composeConnectionString(int providerCode, DatabaseKind kind, const std::string& location,
                                    const std::string& password);

}  // namespace mxbook::environment
