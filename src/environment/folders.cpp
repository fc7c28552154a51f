#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

#include "ini_file.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/text.h"
#include "settings.h"

namespace mxbook::environment {

namespace {

constexpr const char* application = "APPLICATION";

struct DatabaseFile {
    const char* section;
    const char* fileName;
};

DatabaseFile fileOf(DatabaseKind kind) {
    switch (kind) {
    case DatabaseKind::main: return {"BASE", "NALET.FDB"};
    case DatabaseKind::documentation: return {"PTD", "PTD.FDB"};
    case DatabaseKind::report: return {"REPORT", "REPORT.FDB"};
    case DatabaseKind::picture: return {"PICTURE", "PICTURE.FDB"};
    }
    return {};
}

std::string applicationFolder(const std::string& base, const Settings& settings) {
    return base + "/" + settings.programRoot + "/";
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

}  // namespace

std::optional<std::string> runLocation(DatabaseKind kind) { return host().databaseLocation(fileOf(kind).section); }

Settings readSettings() {
    const std::filesystem::path executable = host().executablePath();
    const IniFile file(executable.parent_path() / "res.dat");
    Settings settings;
    settings.programRoot = file.readString(application, "PROGRAM_ROOT", "VELMO");
    settings.valuesFile = file.readString(application, "INIFILE", "VelmoValues.ini");
    const char* fromEnvironment = std::getenv("MXBOOK_DB_PASSWORD");
    settings.password = fromEnvironment ? fromEnvironment : file.readString("DATABASE", "PASSWORD", "");
    return settings;
}

// The first call settles the location in the values file (upper-cased, as
// the application has always kept it) and returns it as composed; later
// calls return what the file holds.
std::string databaseLocation(DatabaseKind kind) {
    if (auto forRun = runLocation(kind)) return *forRun;
    const Settings settings = readSettings();
    const DatabaseFile database = fileOf(kind);
    // A plain path: the database is embedded unless the values file names a server.
    const std::string composed = applicationFolder(host().documentsFolder(), settings) + database.fileName;
    const std::string userRoot = GetUserRoot();
    IniFile values(userRoot + settings.valuesFile);
    if (!values.readBool(database.section, "CONNECTED", false)) {
        if (!exists(userRoot))
            throw Error("cannot settle the location of " + std::string(database.fileName) + ": the folder " + userRoot +
                        " for the values file does not exist");
        values.writeBool(database.section, "CONNECTED", true);
        values.writeString(database.section, "CONNECTION_STRING", upperCase(composed));
        return composed;
    }
    return values.readString(database.section, "CONNECTION_STRING", "ERROR!!!");
}

// The settled location is the composed one upper-cased, as a rule: the
// composed path then is the exact one, and it wins when it exists. Otherwise
// the location is matched on disk below the documents folder, which the host
// names exactly; a location set for the run is matched as it is written.
std::string openingLocation(DatabaseKind kind) {
    if (auto forRun = runLocation(kind)) return resolveLocalPath(*forRun, {});
    const std::string settled = databaseLocation(kind);
    if (isServerLocation(settled)) return settled;
    const std::string documents = host().documentsFolder();
    const std::string composed = applicationFolder(documents, readSettings()) + fileOf(kind).fileName;
    const bool asComposed = upperCase(settled) == upperCase(composed);
    if (asComposed && exists(composed)) return composed;
    const std::string found = resolveLocalPath(settled, documents);
    return asComposed && !exists(found) ? composed : found;
}

}  // namespace mxbook::environment

namespace mxbook {

using environment::DatabaseKind;

std::string GetUserRoot() {
    return environment::applicationFolder(host().documentsFolder(), environment::readSettings());
}

std::string GetCommonRoot() {
    return environment::applicationFolder(host().sharedDocumentsFolder(), environment::readSettings());
}

std::string GetUserDesktop() { return host().desktopFolder(); }

std::string GetUserBase() { return environment::databaseLocation(DatabaseKind::main); }
std::string GetBaseDocTO() { return environment::databaseLocation(DatabaseKind::documentation); }
std::string GetBaseReport() { return environment::databaseLocation(DatabaseKind::report); }
std::string GetUserPhoto() { return environment::databaseLocation(DatabaseKind::picture); }

std::string databasePath(schema::Database database) {
    return environment::openingLocation(environment::kindOf(database));
}

}  // namespace mxbook
