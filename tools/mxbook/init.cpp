#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "cli_host.h"
#include "commands.h"
#include "databases.h"
#include "mxbook/data/error.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/schema.h"

namespace mxbook::cli {

namespace {

namespace fs = std::filesystem;

bool isServer(const std::string& location) { return location.find(':') != std::string::npos; }

bool exists(const std::string& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// "`mxbook init ...`" with the options that reach the same databases.
std::string command(const Options& options, const std::string& words) {
    std::string text = "mxbook " + words;
    if (auto* cli = dynamic_cast<CliHost*>(&host()); cli && cli->root()) text += " --root " + *cli->root();
    if (options.database) text += " --db " + *options.database;
    return "`" + text + "`";
}

std::string lacking(const std::vector<std::string>& missing) {
    std::string text = "it lacks " + missing.front();
    if (missing.size() > 1) text += " and " + std::to_string(missing.size() - 1) + " more of the schema's objects";
    return text;
}

std::string incomplete(const Options& options, const std::string& what, const std::string& path,
                       const std::string& reason) {
    return what + " " + path + " is an incomplete database (" + reason +
           "; an interrupted init or demo leaves one): " + command(options, "init --repair") +
           " repairs it, or delete " + path + " and run " + command(options, "init");
}

std::string shortState(OpenFailure::Kind kind) {
    switch (kind) {
    case OpenFailure::Kind::missing: return "missing";
    case OpenFailure::Kind::folder: return "a folder";
    case OpenFailure::Kind::noPermission: return "no permission";
    case OpenFailure::Kind::readOnly: return "read-only";
    case OpenFailure::Kind::notDatabase: return "not a database";
    case OpenFailure::Kind::otherVersion: return "other version";
    case OpenFailure::Kind::incomplete: return "incomplete";
    case OpenFailure::Kind::inUse: return "in use";
    case OpenFailure::Kind::serverUnreachable: return "unreachable";
    case OpenFailure::Kind::login: return "login refused";
    case OpenFailure::Kind::other: return "cannot open";
    }
    return "cannot open";
}

void createFolderOf(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    if (folder.empty()) return;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw Error("cannot create the folder " + folder.string() + ": " + error.message());
}

// An existing database opened and checked; completed, or rebuilt when it
// cannot even be opened, with --repair.
void check(DatabaseRow& row, const Options& options) {
    const std::string what = "the " + std::string(schema::name(row.database)) + " database";
    db::Connection connection;
    try {
        openDatabase(connection, row.database, row.path);
    } catch (const db::Error& error) {
        const OpenFailure failure = explainOpenFailure(row.path, error);
        row.state = shortState(failure.kind);
        if (failure.kind == OpenFailure::Kind::inUse) return;  // there, and in use: nothing for init to do
        if (failure.kind != OpenFailure::Kind::incomplete) {
            row.problem = "cannot open " + what + " " + row.path + ": " + failure.reason;
            return;
        }
        if (!options.repair) {
            row.problem = incomplete(options, what, row.path, failure.reason);
            return;
        }
        // Nothing in a file that does not open can be kept: it is built anew.
        std::error_code removed;
        fs::remove(row.path, removed);
        if (removed) throw Error("cannot remove " + row.path + " to rebuild it: " + removed.message());
        NewDatabase rebuilt(row.database, row.path);
        rebuilt.publish();
        row.state = "rebuilt";
        return;
    }
    const std::vector<std::string> missing = missingSchemaObjects(connection, row.database);
    if (missing.empty()) {
        row.state = "exists";
    } else if (options.repair) {
        // The objects that are there, and their rows, stay; the others are added.
        completeSchema(connection, row.database);
        row.state = "completed";
    } else {
        row.state = "incomplete";
        row.problem = incomplete(options, what, row.path, lacking(missing));
    }
}

}  // namespace

NewDatabase::NewDatabase(schema::Database database, std::string path)
    : path_(std::move(path)), building_(isServer(path_) ? path_ : path_ + ".building") {
    if (!isServer(path_)) {
        createFolderOf(path_);
        std::error_code ignored;
        fs::remove(building_, ignored);  // left by an interrupted run
    }
    schema::createDatabase(connection_, database, building_);
}

NewDatabase::~NewDatabase() {
    if (published_ || building_ == path_) return;
    connection_.close();
    std::error_code ignored;
    fs::remove(building_, ignored);
}

void NewDatabase::publish() {
    connection_.close();
    published_ = true;
    if (building_ == path_) return;
    // A link fails where a file has appeared meanwhile, which a rename would replace.
    if (link(building_.c_str(), path_.c_str()) == 0) {
        unlink(building_.c_str());
        return;
    }
    const bool appeared = errno == EEXIST || exists(path_);
    std::error_code error;
    if (!appeared) fs::rename(building_, path_, error);  // a file system without links
    if (appeared || error) {
        const std::string reason = appeared ? "a file appeared there meanwhile" : error.message();
        std::error_code ignored;
        fs::remove(building_, ignored);
        throw Error("cannot put the new database in its place " + path_ + ": " + reason);
    }
}

std::vector<DatabaseRow> prepareDatabases(const Options& options, bool leaveMissingMain) {
    // The per-user folder holds the values file the locations are settled in.
    const std::string userRoot = GetUserRoot();
    std::error_code error;
    fs::create_directories(userRoot, error);
    if (error) throw Error("cannot create the folder " + userRoot + ": " + error.message());
    std::vector<DatabaseRow> rows;
    for (schema::Database database : schema::allDatabases) {
        DatabaseRow row{database, {}, {}, {}};
        row.path = database == schema::Database::main && options.database ? matchLetterCase(*options.database)
                                                                          : databasePath(database);
        if (isServer(row.path)) {
            row.state = "on a server";
        } else if (exists(row.path)) {
            check(row, options);
        } else if (database == schema::Database::main && leaveMissingMain) {
            row.state = "missing";
        } else {
            NewDatabase created(database, row.path);
            created.publish();
            row.state = "created";
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

Listing databaseListing(const std::vector<DatabaseRow>& rows) {
    Listing listing({{"Database"}, {"Location"}, {"State"}});
    for (const DatabaseRow& row : rows) listing.add({std::string(schema::name(row.database)), row.path, row.state});
    return listing;
}

void raiseProblems(const std::vector<DatabaseRow>& rows) {
    std::string text;
    for (const DatabaseRow& row : rows)
        if (!row.problem.empty()) text += (text.empty() ? "" : "; ") + row.problem;
    if (!text.empty()) throw Error(text);
}

void openMainDatabase(db::Connection& connection, const Options& options) {
    std::string path;
    if (options.database) {
        path = matchLetterCase(*options.database);
    } else {
        // Before the first init there is no folder to settle the locations in.
        const std::string userRoot = GetUserRoot();
        if (!exists(userRoot))
            throw Error("no databases in " + userRoot + " yet: run " + command(options, "init") + " first");
        path = databasePath(schema::Database::main);
    }
    try {
        openDatabase(connection, schema::Database::main, path);
    } catch (const db::Error& error) {
        const OpenFailure failure = explainOpenFailure(path, error);
        if (failure.kind == OpenFailure::Kind::incomplete)
            throw Error(incomplete(options, "the main database", path, failure.reason));
        std::string text = "cannot open the main database " + path + ": " + failure.reason;
        if (failure.kind == OpenFailure::Kind::missing && !options.database && !isServer(path))
            text += "; run " + command(options, "init") + " to create it";
        throw Error(text);
    }
    const std::vector<std::string> missing = missingSchemaObjects(connection, schema::Database::main);
    if (!missing.empty()) {
        connection.close();
        throw Error(incomplete(options, "the main database", path, lacking(missing)));
    }
}

int runInit(std::ostream& out, const Options& options) {
    const std::vector<DatabaseRow> rows = prepareDatabases(options, false);
    databaseListing(rows).print(out, options.format);
    raiseProblems(rows);
    return 0;
}

}  // namespace mxbook::cli
