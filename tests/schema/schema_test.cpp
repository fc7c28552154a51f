#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "fake_host.h"
#include "mxbook/data.h"
#include "mxbook/schema.h"
#include "temp_folder.h"

namespace mxbook::schema {
namespace {

using db::FieldType;

struct ReliedColumn {
    std::string table;
    int position;  // -1: used by name only
    std::string name;
    std::string type;
    int line;
};

std::vector<ReliedColumn> reliedColumns() {
    std::ifstream in(MXBOOK_TEST_DATA_DIR "/schema/relied_columns.txt");
    if (!in) throw std::runtime_error("relied_columns.txt not found");
    std::vector<ReliedColumn> columns;
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        if (text.empty() || text[0] == '#') continue;
        std::vector<std::string> parts;
        std::stringstream fields(text);
        for (std::string part; std::getline(fields, part, '|');) parts.push_back(part);
        if (parts.size() == 3) parts.emplace_back();
        if (parts.size() != 4) throw std::runtime_error("malformed line " + std::to_string(line));
        columns.push_back({parts[0], std::stoi(parts[1]), parts[2], parts[3], line});
    }
    return columns;
}

FieldType fieldTypeOf(const std::string& type) {
    static const std::map<std::string, FieldType> types = {
        {"text", FieldType::text}, {"integer", FieldType::integer}, {"date", FieldType::date},
        {"time", FieldType::time}, {"boolean", FieldType::boolean}, {"double", FieldType::floating},
        {"blob", FieldType::blob},
    };
    return types.at(type);
}

Database databaseOf(const std::string& table) {
    if (table == "OTCHET") return Database::report;
    if (table == "BASE" || table == "VLS") return Database::documentation;
    if (table == "KARTINKI") return Database::picture;
    return Database::main;
}

// The four databases, built once from the library's own DDL for all tests here.
class SchemaTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<testing::TempFolder>();
        for (Database database : allDatabases) {
            auto& connection = connections_[database];
            connection = std::make_unique<db::Connection>();
            createDatabase(*connection, database, (folder_->path() / (std::string(name(database)) + ".fdb")).string());
        }
    }
    static void TearDownTestSuite() {
        connections_.clear();
        folder_.reset();
    }

    static db::Connection& connection(Database database) { return *connections_.at(database); }

    // The columns of `select *` on a table, as the library sees them.
    static const std::vector<db::FieldInfo>& columnsOf(const std::string& table) {
        static std::map<std::string, std::vector<db::FieldInfo>> cache;
        auto [entry, added] = cache.try_emplace(table);
        if (added) {
            db::DataSet rows(connection(databaseOf(table)), "select * from " + table);
            rows.open();
            for (int i = 0; i < rows.fieldCount(); ++i) entry->second.push_back(rows.fieldInfo(i));
        }
        return entry->second;
    }

    static std::vector<std::string> tablesOf(Database database) {
        db::DataSet tables(connection(database),
                           "select trim(rdb$relation_name) from rdb$relations where rdb$system_flag = 0 "
                           "and rdb$view_blr is null order by 1");
        std::vector<std::string> names;
        for (tables.open(); !tables.eof(); tables.next()) names.push_back(tables.field(0).asText());
        return names;
    }

private:
    static inline std::unique_ptr<testing::TempFolder> folder_;
    static inline std::map<Database, std::unique_ptr<db::Connection>> connections_;
};

TEST_F(SchemaTest, EveryReliedColumnStandsAtItsPositionWithItsNameAndType) {
    const auto relied = reliedColumns();
    ASSERT_GT(relied.size(), 1000u);
    for (const ReliedColumn& expected : relied) {
        SCOPED_TRACE("relied_columns.txt line " + std::to_string(expected.line) + ": " + expected.table + " " +
                     std::to_string(expected.position) + " " + expected.name);
        const auto& columns = columnsOf(expected.table);
        ASSERT_FALSE(columns.empty()) << "no such table";
        const db::FieldInfo* found = nullptr;
        if (expected.position >= 0) {
            ASSERT_LT(expected.position, static_cast<int>(columns.size()));
            found = &columns[static_cast<std::size_t>(expected.position)];
            if (!expected.name.empty()) {
                EXPECT_EQ(found->name, expected.name);
            }
        } else {
            for (const auto& column : columns)
                if (column.name == expected.name) found = &column;
            ASSERT_NE(found, nullptr) << "no column of that name";
        }
        EXPECT_EQ(found->type, fieldTypeOf(expected.type));
    }
}

// The remaining-life code tells the kind of unit by which of these columns a
// row carries, so each must stand in its own table only, at its flag position.
TEST_F(SchemaTest, IndirectAccountingFlagsStandOnlyInTheirTables) {
    const std::map<std::string, std::map<std::string, int>> flags = {
        {"NEPRIAMOI_UCHET_NAR_AGREGATA", {{"AGREGAT", 39}, {"VTULKA_NV", 39}}},
        {"NEPRIAMOI_UCHET_NAR_ZCU", {{"ZCU", 16}}},
        {"NEPRIAMOI_UCHET_NAR_SHLANG", {{"SHLANG", 18}}},
        {"NEPRIAMOI_UCHET_NAR_LOPAST", {{"LOPAST", 18}}},
        {"NEPRIAMOI_UCHET_NAR_VINTA", {{"HVOSTOVOY_VINT", 27}}},
        {"NEPRIAMOI_UCHET_NAR_LEBEDKI", {{"LEBEDKA", 25}}},
    };
    for (const std::string& table : tablesOf(Database::main)) {
        const auto& columns = columnsOf(table);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const auto flag = flags.find(columns[i].name);
            if (flag == flags.end()) continue;
            SCOPED_TRACE(table + "." + columns[i].name);
            const auto where = flag->second.find(table);
            ASSERT_NE(where, flag->second.end()) << "a flag outside its table";
            EXPECT_EQ(static_cast<int>(i), where->second);
            EXPECT_EQ(columns[i].type, FieldType::integer);
        }
    }
    for (const auto& [flag, tables] : flags)
        for (const auto& [table, position] : tables)
            EXPECT_EQ(columnsOf(table).at(static_cast<std::size_t>(position)).name, flag) << table;
}

TEST_F(SchemaTest, EveryTableHasAnIdKeyAndTheFourDatabasesHoldTheirTables) {
    const std::map<Database, std::vector<std::string>> expected = {
        {Database::report, {"OTCHET"}},
        {Database::documentation, {"BASE", "VLS"}},
        {Database::picture, {"KARTINKI"}},
    };
    for (const auto& [database, tables] : expected) EXPECT_EQ(tablesOf(database), tables) << name(database);
    const auto mainTables = tablesOf(Database::main);
    EXPECT_EQ(mainTables.size(), 42u);
    for (Database database : allDatabases)
        for (const std::string& table : tablesOf(database)) {
            SCOPED_TRACE(table);
            const auto& columns = columnsOf(table);
            const bool flightCard = table.starts_with("REPORT_NARABOTKA_");
            // The flight-hours cards write a date or "Итого:" at 0 and keep their key after the last column.
            const auto& key = flightCard ? columns.back() : columns.front();
            EXPECT_EQ(key.name, "ID");
            EXPECT_EQ(key.type, FieldType::integer);
            EXPECT_FALSE(key.nullable);
        }
}

// The leading columns of each index of a table, joined by ",".
std::set<std::string> indexesOf(db::Connection& connection, const std::string& table) {
    db::DataSet segments(connection,
                         "select trim(i.rdb$index_name), trim(s.rdb$field_name) from rdb$indices i "
                         "join rdb$index_segments s on s.rdb$index_name = i.rdb$index_name "
                         "where i.rdb$relation_name = " +
                             db::quoted(table) + " order by 1, s.rdb$field_position");
    std::map<std::string, std::string> columns;
    for (segments.open(); !segments.eof(); segments.next()) {
        auto& joined = columns[segments.field(0).asText()];
        joined += (joined.empty() ? "" : ",") + segments.field(1).asText();
    }
    std::set<std::string> result;
    for (const auto& [index, joined] : columns) result.insert(joined);
    return result;
}

// The queries that run for every unit find their rows through an index: the
// flights of one aircraft over a date range, the units at a location, a
// carrier by its serial number, a type reference by its key.
TEST_F(SchemaTest, IndexesServeTheLookupsThatRunPerUnit) {
    const struct {
        const char* table;
        const char* leadingColumns;
    } cases[] = {
        {"SPRAVKA", "BORTOVOI_NOMER,DATA_POLETA"},
        {"REESTR", "BORTOVOI_NOMER"},
        {"AGREGAT", "GDE_STOIT"},
        {"AGREGAT", "ZAVODSKOI_NOMER"},
        {"VTULKA_NV", "GDE_STOIT"},
        {"LOPAST", "GDE_STOIT"},
        {"ZCU", "GDE_STOIT"},
        {"SHLANG", "GDE_STOIT"},
        {"HVOSTOVOY_VINT", "GDE_STOIT"},
        {"LEBEDKA", "GDE_STOIT"},
        {"PODVESKA", "GDE_STOIT"},
        {"VOZDUSHNY_VINT", "GDE_STOIT"},
        {"AGR_VSU", "GDE_STOIT"},
        {"DVIGATEL", "ZAVODSKOI_NOMER"},
        {"DVIGATEL", "GDE_STOIT,ZAVODSKOI_NOMER"},
        {"VSU", "ZAVODSKOY_NOMER"},
        {"VSU", "MESTO_USTANOVKI"},
        {"ETAAGREGAT", "ID_NAME"},
        {"ETA_AGR_VSU", "ID_NAME"},
        {"TIPOVYE_DANNYE_VS", "TIP_VS"},
        {"PTO_FORMY", "TIP_VS"},
        {"SOBSTVENNIKI", "ID_NAME"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.table) + " " + c.leadingColumns);
        const auto indexes = indexesOf(connection(Database::main), c.table);
        const bool served = std::any_of(indexes.begin(), indexes.end(), [&](const std::string& columns) {
            return columns.starts_with(c.leadingColumns);
        });
        EXPECT_TRUE(served);
    }
}

TEST_F(SchemaTest, TypeReferenceGeneratorsStartAtOneAndAdvance) {
    for (const char* generator :
         {"GEN_ETAAGREGAT_ID", "GEN_ETA_AGR_VSU_ID", "GEN_ETA_VTULKA_NV_ID", "GEN_ETASHLANG_ID", "GEN_ETA_ZCU_ID"}) {
        SCOPED_TRACE(generator);
        EXPECT_EQ(connection(Database::main).nextGeneratorValue(generator), 1);
        EXPECT_EQ(connection(Database::main).nextGeneratorValue(generator), 2);
    }
}

TEST_F(SchemaTest, UnitKeysAreAssignedByTheDatabaseReferenceKeysAreNot) {
    auto& main = connection(Database::main);
    main.execute("insert into AGREGAT (TIP_VS, GDE_STOIT) values ('Ми-8МТВ-1', 'Склад')");
    db::DataSet unit(main, "select ID, GDE_STOIT from AGREGAT");
    unit.open();
    EXPECT_GT(unit.field(0).asInt(), 0);
    EXPECT_EQ(unit.field(1).asText(), "Склад");
    EXPECT_THROW(main.execute("insert into ETAAGREGAT (TIP_VS) values ('Ми-8МТВ-1')"), db::Error);
}

TEST(SchemaFiles, EmbeddedDdlIsTheFileInDb) {
    for (Database database : allDatabases) {
        SCOPED_TRACE(name(database));
        std::ifstream in(std::string(MXBOOK_SOURCE_DIR "/db/") + std::string(name(database)) + ".sql");
        ASSERT_TRUE(in);
        std::stringstream text;
        text << in.rdbuf();
        EXPECT_EQ(ddl(database), text.str());
    }
}

// Each file builds its database on its own through isql, as an administrator would.
TEST(SchemaFiles, RunOnTheirOwnThroughIsql) {
    testing::TempFolder folder;
    for (Database database : allDatabases) {
        SCOPED_TRACE(name(database));
        const auto path = folder.path() / (std::string(name(database)) + ".fdb");
        const auto output = folder.path() / "isql.out";
        const std::string create = "echo \"create database '" + path.string() +
                                   "' default character set WIN1251;\" | isql-fb -q > '" + output.string() + "' 2>&1";
        ASSERT_EQ(std::system(create.c_str()), 0);
        const std::string run = "isql-fb -q '" + path.string() + "' -i '" MXBOOK_SOURCE_DIR "/db/" +
                                std::string(name(database)) + ".sql' > '" + output.string() + "' 2>&1";
        ASSERT_EQ(std::system(run.c_str()), 0);
        std::ifstream messages(output);
        std::stringstream text;
        text << messages.rdbuf();
        EXPECT_EQ(text.str(), "") << "isql reported";
    }
}

TEST(SchemaCreate, RefusesAnExistingFileAndLeavesItAlone) {
    testing::TempFolder folder;
    const auto path = (folder.path() / "NALET.FDB").string();
    std::ofstream(path) << "not a database";
    db::Connection connection;
    EXPECT_THROW(createDatabase(connection, Database::main, path), db::Error);
    EXPECT_FALSE(connection.isOpen());
    std::ifstream kept(path);
    std::string content;
    std::getline(kept, content);
    EXPECT_EQ(content, "not a database");
}

}  // namespace
}  // namespace mxbook::schema
