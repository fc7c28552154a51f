#include <strings.h>
#include <algorithm>
#include <exception>
#include <string>

#include "mxbook/data/data_set.h"
#include "mxbook/data/error.h"
#include "mxbook/environment.h"
#include "mxbook/host.h"
#include "mxbook/text.h"
#include "settings.h"

namespace mxbook {

namespace environment {

namespace {

// The heads and tails the connection strings are made of; the provider
// code picks them.
constexpr const char* tailDirect = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.direct";
constexpr const char* tailFb = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb";
constexpr const char* tailClient = ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.client";
constexpr const char* tailShort = ";ctype=WIN1251;auto_commit=True";

struct DatabaseConnection {
    DatabaseKind kind;
    const char* tailOfOldestProvider;
    const char* failureMessage;
};

// Only the documentation database talks to the oldest provider as a client.
constexpr DatabaseConnection databaseConnections[] = {
    {DatabaseKind::main, tailShort, "Func - отсутствует подключение к базе!"},
    {DatabaseKind::documentation, tailClient, "Func - отсутствует подключение к ПТД!"},
    {DatabaseKind::report, tailShort, "Func - отсутствует подключение к отчетам!"},
    {DatabaseKind::picture, tailShort, "Photo - отсутствует подключение к базе PICTURE!"},
};

const DatabaseConnection& connectionOf(DatabaseKind kind) {
    return *std::find_if(std::begin(databaseConnections), std::end(databaseConnections),
                         [&](const DatabaseConnection& each) { return each.kind == kind; });
}

// A value that would end its property early is quoted, its quotes doubled.
std::string propertyValue(const std::string& value) {
    if (value.find_first_of(";\"'") == std::string::npos && value == trim(value)) return value;
    std::string quoted = "\"";
    for (char c : value) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

}  // namespace

std::string composeConnectionString(int providerCode, DatabaseKind kind, const std::string& location,
                                    const std::string& password) {
    const std::string credentials =
        ";Password=" + propertyValue(password) + ";Persist Security Info=True;User ID=SYSDBA;Location=";
    const std::string place = propertyValue(location);
    switch (providerCode) {
    case 1: return "Provider=LCPI.IBProvider.5.Free" + credentials + place + tailDirect;
    case 2: return "Provider=LCPI.IBProvider.3.Free" + credentials + place + tailFb;
    default: return "Provider=LCPI.IBProvider.2" + credentials + place + connectionOf(kind).tailOfOldestProvider;
    }
}

namespace {

// `path` as openingLocation gives it: matched on disk already.
void open(db::Connection& connection, DatabaseKind kind, const std::string& path) {
    connection.close();
    connection.setConnectionString(composeConnectionString(GetProviderExits(), kind, path, readSettings().password));
    connection.open();
}

void connect(db::Connection& connection, DatabaseKind kind) {
    const DatabaseConnection& database = connectionOf(kind);
    const Window owner = host().foregroundWindow();
    try {
        connection.close();
        open(connection, kind, openingLocation(kind));
    } catch (const std::exception&) {
        // The reason stays unsaid, as it always has: the message names the database only.
        connection.close();
        host().messageBox(owner, database.failureMessage, "Ошибка!", box::ok | box::iconError);
    }
}

}  // namespace

DatabaseKind kindOf(schema::Database database) {
    switch (database) {
    case schema::Database::main: return DatabaseKind::main;
    case schema::Database::report: return DatabaseKind::report;
    case schema::Database::documentation: return DatabaseKind::documentation;
    case schema::Database::picture: return DatabaseKind::picture;
    }
    return DatabaseKind::main;
}

}  // namespace environment

using environment::DatabaseKind;
using environment::kindOf;

void openDatabase(db::Connection& connection, schema::Database database) {
    environment::open(connection, kindOf(database), environment::openingLocation(kindOf(database)));
}

void openDatabase(db::Connection& connection, schema::Database database, const std::string& location) {
    environment::open(connection, kindOf(database), matchLetterCase(location));
}

int GetProviderExits() {
    const auto installed = db::Connection::providerNames();
    const auto offered = [&](const char* name) {
        return std::any_of(installed.begin(), installed.end(),
                           [&](const std::string& each) { return strcasecmp(each.c_str(), name) == 0; });
    };
    if (offered("LCPI.IBProvider.5.Free") || offered("LCPI.IBProvider.5")) return 1;
    if (offered("LCPI.IBProvider.3.Free") || offered("LCPI.IBProvider.3")) return 2;
    return 3;
}

void FunConnection(db::Connection& connection) { environment::connect(connection, DatabaseKind::main); }
void FunConnectDocTO(db::Connection& connection) { environment::connect(connection, DatabaseKind::documentation); }
void FunConnectReport(db::Connection& connection) { environment::connect(connection, DatabaseKind::report); }
void FunConPhoto(db::Connection& connection) { environment::connect(connection, DatabaseKind::picture); }

int GetID(db::Connection& connection, const std::string& generatorName) {
    const bool identifier =
        !generatorName.empty() && std::all_of(generatorName.begin(), generatorName.end(), [](char c) {
            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
        });
    if (!identifier) throw db::Error("'" + generatorName + "' is not the name of a generator");
    db::DataSet next(connection, "select GEN_ID(" + generatorName + ", 1) as new_val from RDB$database;");
    try {
        next.open();
    } catch (const db::Error&) {
        // Firebird tells of a missing generator in terms of its request language.
        db::DataSet known(connection, "select 1 from RDB$GENERATORS where RDB$GENERATOR_NAME = upper(" +
                                          db::quoted(generatorName) + ")");
        known.open();
        if (known.eof()) throw db::Error("no generator " + generatorName + " in the database");
        throw;
    }
    return next.field(0).asInt();
}

int FunMaxDvigExp(db::Connection& connection) {
    db::DataSet highest(connection, "Select Max(FAKE_NUMBER) From DVIGENIE_V_EKSPLUATACII;");
    highest.open();
    return highest.field(0).isNull() ? 1 : highest.field(0).asInt() + 1;
}

}  // namespace mxbook
