#include <cstdlib>
#include <filesystem>

#include "ini_file.h"
#include "mxbook/environment.h"
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

}  // namespace

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
    const Settings settings = readSettings();
    const DatabaseFile database = fileOf(kind);
    // A plain path: the database is embedded unless the values file names a server.
    const std::string composed = applicationFolder(host().documentsFolder(), settings) + database.fileName;
    IniFile values(GetUserRoot() + settings.valuesFile);
    if (!values.readBool(database.section, "CONNECTED", false)) {
        values.writeBool(database.section, "CONNECTED", true);
        values.writeString(database.section, "CONNECTION_STRING", upperCase(composed));
        return composed;
    }
    return values.readString(database.section, "CONNECTION_STRING", "ERROR!!!");
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

}  // namespace mxbook
