#include <filesystem>

#include "commands.h"
#include "mxbook/data/error.h"
#include "mxbook/environment.h"
#include "mxbook/schema.h"

namespace mxbook::cli {

namespace {

namespace fs = std::filesystem;

std::string settledLocation(schema::Database database) {
    switch (database) {
    case schema::Database::main: return GetUserBase();
    case schema::Database::report: return GetBaseReport();
    case schema::Database::documentation: return GetBaseDocTO();
    case schema::Database::picture: return GetUserPhoto();
    }
    return {};
}

bool isServer(const std::string& location) { return location.find(':') != std::string::npos; }

}  // namespace

void openMainDatabase(db::Connection& connection, const Options& options) {
    const std::string location = options.database ? *options.database : GetUserBase();
    try {
        if (options.database) {
            openDatabase(connection, schema::Database::main, location);
        } else {
            openDatabase(connection, schema::Database::main);
        }
    } catch (const db::Error& error) {
        throw Error("cannot open the main database " + location + " (" + error.what() +
                    "); an embedded database is open to one program at a time");
    }
}

int runInit(std::ostream& out, const Options& options) {
    // The per-user folder holds the values file the locations are settled in.
    fs::create_directories(GetUserRoot());
    Listing listing({{"Database"}, {"Location"}, {"State"}});
    for (schema::Database database : schema::allDatabases) {
        const std::string location = settledLocation(database);
        std::string state;
        if (isServer(location)) {
            state = "on a server";
        } else {
            const std::string path = matchLetterCase(location);
            if (fs::exists(path)) {
                state = "exists";
            } else {
                fs::create_directories(fs::path(path).parent_path());
                db::Connection created;
                schema::createDatabase(created, database, path);
                state = "created";
            }
        }
        listing.add({std::string(schema::name(database)), location, state});
    }
    listing.print(out, options.format);
    return 0;
}

}  // namespace mxbook::cli
