#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <string>

#include "fake_host.h"
#include "fleet/table_writer.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/fleet.h"
#include "mxbook/operating_time.h"
#include "mxbook/schema.h"
#include "temp_folder.h"

namespace mxbook::fleet {
namespace {

// A main database filled by the generator, and questions to ask of it.
class FleetDatabase {
public:
    FleetDatabase(const testing::TempFolder& folder, const std::string& name, const FleetOptions& options) {
        schema::createDatabase(connection, schema::Database::main, (folder.path() / name).string());
        summary = generateFleet(connection, options);
    }

    std::vector<std::vector<db::Value>> rows(const std::string& sql) {
        db::DataSet query(connection, sql);
        std::vector<std::vector<db::Value>> result;
        for (query.open(); !query.eof(); query.next()) {
            auto& row = result.emplace_back();
            for (int i = 0; i < query.fieldCount(); ++i) row.push_back(query.field(i).value());
        }
        return result;
    }
    int count(const std::string& sql) { return rows(sql).at(0).at(0).asInt(); }
    std::set<std::string> distinct(const std::string& sql) {
        std::set<std::string> values;
        for (const auto& row : rows(sql)) values.insert(row.at(0).asText());
        return values;
    }
    // Every row of a table as text, in key order: two equal digests are two equal tables.
    std::string digest(const std::string& table) {
        std::string text;
        for (const auto& row : rows("select * from " + table + " order by ID"))
            for (const auto& value : row) text += value.asText() + '|';
        return text;
    }

    db::Connection connection;
    FleetSummary summary;
};

FleetOptions smallFleet(std::uint64_t seed = 7) {
    FleetOptions options = demoFleet();
    options.seed = seed;
    options.years = 1;
    options.componentsPerAircraft = 12;
    options.today = Date::fromYmd(2024, 3, 15);
    return options;
}

class FleetTest : public ::testing::Test {
protected:
    void SetUp() override { fleet_ = std::make_unique<FleetDatabase>(folder_, "NALET.FDB", smallFleet()); }
    FleetDatabase& fleet() { return *fleet_; }

    ScopedHost installed_{std::make_shared<testing::FakeHost>()};
    testing::TempFolder folder_;
    std::unique_ptr<FleetDatabase> fleet_;
};

constexpr const char* unitTables[] = {"AGREGAT", "AGR_VSU",  "VTULKA_NV", "LOPAST", "HVOSTOVOY_VINT",
                                      "LEBEDKA", "PODVESKA", "SHLANG",    "ZCU",    "VOZDUSHNY_VINT"};
const std::set<std::string> offAircraft = {"Склад", "Ремфонд", "Ремонт", "Рекламация"};

TEST_F(FleetTest, SummaryCountsTheRowsWritten) {
    auto& f = fleet();
    EXPECT_EQ(f.summary.aircraft, 7);
    EXPECT_EQ(f.count("select count(*) from REESTR"), f.summary.aircraft);
    EXPECT_EQ(f.count("select count(*) from SPRAVKA"), f.summary.flights);
    EXPECT_EQ(f.count("select count(*) from DVIGATEL"), f.summary.engines);
    EXPECT_EQ(f.count("select count(*) from REDUCTOR"), f.summary.gearboxes);
    EXPECT_EQ(f.count("select count(*) from VSU"), f.summary.apus);
    EXPECT_EQ(f.count("select count(*) from TIPOVYE_DANNYE_VS"), f.summary.aircraftTypes);
    EXPECT_EQ(f.count("select count(*) from PTO_FORMY"), f.summary.aircraftTypes);
    int units = 0;
    for (const char* table : unitTables) {
        SCOPED_TRACE(table);
        const int rows = f.count(std::string("select count(*) from ") + table);
        EXPECT_GT(rows, 0);
        units += rows;
    }
    EXPECT_EQ(units, f.summary.units);
    EXPECT_GT(f.summary.flights, 7 * 100);
}

TEST_F(FleetTest, UnitsStandOnAircraftAndInEveryOffAircraftLocation) {
    auto& f = fleet();
    const auto tails = f.distinct("select BORTOVOI_NOMER from REESTR");
    EXPECT_EQ(tails.size(), 7u);
    for (const char* table : {"AGREGAT", "LOPAST", "SHLANG", "VTULKA_NV"}) {
        SCOPED_TRACE(table);
        const auto locations = f.distinct(std::string("select distinct GDE_STOIT from ") + table);
        for (const auto& location : locations)
            EXPECT_TRUE(tails.contains(location) || offAircraft.contains(location)) << location;
        for (const auto& location : offAircraft) EXPECT_TRUE(locations.contains(location)) << location;
    }
    // Counted in hours and in landings, on the airframe and on engines, derived and direct.
    EXPECT_EQ(f.distinct("select distinct EDINICA_NARABOTKI from AGREGAT"), (std::set<std::string>{"0", "1"}));
    EXPECT_EQ(f.distinct("select distinct PLAN_DVIG_VSU from AGREGAT"), (std::set<std::string>{"0", "1"}));
    EXPECT_EQ(f.distinct("select distinct NEPRIAMOI_UCHET_NAR_AGREGATA from AGREGAT"),
              (std::set<std::string>{"0", "1"}));
    // A unit on an engine names an engine that exists, in repair too.
    EXPECT_EQ(
        f.count("select count(*) from AGREGAT a where PLAN_DVIG_VSU = 1 and not exists "
                "(select 1 from DVIGATEL d where d.ZAVODSKOI_NOMER = a.NUMER_DVIG_VSU and d.GDE_STOIT = a.GDE_STOIT)"),
        0);
    EXPECT_GT(f.count("select count(*) from AGREGAT where PLAN_DVIG_VSU = 1 and GDE_STOIT = 'Ремонт'"), 0);
    EXPECT_EQ(f.count("select count(distinct ZAVODSKOI_NOMER) from AGREGAT"), f.count("select count(*) from AGREGAT"));
}

TEST_F(FleetTest, EnginesApusAndReferencesAreWhereTheRestOfTheSystemLooks) {
    auto& f = fleet();
    EXPECT_EQ(f.distinct("select distinct ODIN_DVA from DVIGATEL"), (std::set<std::string>{"0", "1", "2"}));
    const auto models = f.distinct("select NAZVANIE from VSU");
    EXPECT_TRUE(models.contains("ТА-14-130"));
    EXPECT_GT(models.size(), 1u);
    EXPECT_EQ(f.count("select count(*) from VSU v where not exists "
                      "(select 1 from REESTR r where r.BORTOVOI_NOMER = v.MESTO_USTANOVKI and r.TIP_VS = v.TIP_VS)"),
              0);
    EXPECT_EQ(f.count("select count(*) from AGR_VSU u where not exists "
                      "(select 1 from VSU v where v.ZAVODSKOY_NOMER = u.NUMER_DVIG_VSU)"),
              0);
    // Every unit's type key leads to its reference entry of the same aircraft type.
    EXPECT_EQ(f.count("select count(*) from AGREGAT a where not exists "
                      "(select 1 from ETAAGREGAT e where e.ID_NAME = a.ID_NAME and e.TIP_VS = a.TIP_VS)"),
              0);
    // Reference keys come from the generator, which stands after the last one given.
    EXPECT_EQ(f.connection.nextGeneratorValue("GEN_ETAAGREGAT_ID"), f.count("select max(ID) from ETAAGREGAT") + 1);
    EXPECT_EQ(f.count("select count(*) from SOBSTVENNIKI r where r.ID_NAME in (select SOBSTVENNOST from REESTR)"),
              static_cast<int>(f.distinct("select SOBSTVENNOST from REESTR").size()));
}

// Minutes of a flight-record time column as the carried-time rule counts them.
int minutesOf(const db::Value& value) { return value.isNull() ? 0 : value.asTime().wholeMinutes(); }

// The carrier's counter now, less its reading at installation, is what the
// flights from the installation day on carried to the unit: air time plus
// ground time weighted as the type says, rounded half away from zero per flight.
TEST_F(FleetTest, DerivedTimeOfUnitsIsTheFlightsSinceTheirInstallation) {
    auto& f = fleet();
    struct Case {
        const char* what;
        std::string units;
        const char* air;
        const char* ground;
        const char* groundSwitch;
        const char* groundFactor;
    };
    const Case cases[] = {
        {"airframe components",
         "select a.GDE_STOIT, a.TIP_VS, a.DATA_USTANOVKI, a.NARABOTKA_VS_PRI_USTANOVKE, r.NARABOTKA_PPR_CHASOV, 1 "
         "from AGREGAT a join REESTR r on r.BORTOVOI_NOMER = a.GDE_STOIT "
         "where a.PLAN_DVIG_VSU = 0 and a.EDINICA_NARABOTKI = 0",
         "V_VOZDUHE", "NA_ZEMLE", "ZEMLIA_AGREGATY", "KOL_VO_ZEMLIA_AGREGATY"},
        {"components on engines",
         "select a.GDE_STOIT, a.TIP_VS, a.DATA_USTANOVKI, a.NARABOTKA_VS_PRI_USTANOVKE, d.NARABOTKA_PPR, d.ODIN_DVA + "
         "1 "
         "from AGREGAT a join DVIGATEL d on d.ZAVODSKOI_NOMER = a.NUMER_DVIG_VSU and d.GDE_STOIT = a.GDE_STOIT "
         "join REESTR r on r.BORTOVOI_NOMER = a.GDE_STOIT where a.PLAN_DVIG_VSU = 1 and a.EDINICA_NARABOTKI = 0",
         "V_VOZDUHE_", "NA_ZEMLE_", "ZEMLIA_AGR_DVIG", "KOL_VO_ZEMLIA_AGR_DVIG"},
    };
    const auto toMinutes = [](const std::string& text) {
        return static_cast<int>(operating_time::parseHoursUpToColon(text).count());
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto units = f.rows(c.units);
        ASSERT_GT(units.size(), 10u);
        for (const auto& unit : units) {
            const std::string place = unit[5].asText();
            const bool perPlace = std::string(c.air).ends_with("_");
            const auto rule = f.rows(std::string("select ") + c.groundSwitch + ", " + c.groundFactor +
                                     " from TIPOVYE_DANNYE_VS where TIP_VS = " + db::quoted(unit[1].asText()));
            const double factor = rule.at(0)[0].asText() == "1" ? rule.at(0)[1].asDouble() : 0.0;
            int carried = 0;
            for (const auto& flight : f.rows(
                     std::string("select ") + c.air + (perPlace ? place : "") + ", " + c.ground +
                     (perPlace ? place : "") + " from SPRAVKA where BORTOVOI_NOMER = " + db::quoted(unit[0].asText()) +
                     " and DATA_POLETA >= '" + formatDate(unit[2].asDate(), "yyyy-mm-dd") + "'"))
                carried += minutesOf(flight[0]) + static_cast<int>(std::lround(minutesOf(flight[1]) * factor));
            EXPECT_EQ(toMinutes(unit[4].asText()) - toMinutes(unit[3].asText()), carried)
                << unit[0].asText() << " installed " << unit[2].asText();
        }
    }
}

TEST(Fleet, SameSeedGivesTheSameRowsAnotherSeedOthers) {
    ScopedHost installed(std::make_shared<testing::FakeHost>());
    testing::TempFolder folder;
    FleetOptions options = smallFleet(11);
    options.aircraft = 2;
    FleetDatabase first(folder, "A.FDB", options);
    FleetDatabase second(folder, "B.FDB", options);
    options.seed = 12;
    FleetDatabase other(folder, "C.FDB", options);
    for (const char* table : {"REESTR", "DVIGATEL", "AGREGAT", "LOPAST", "SPRAVKA"}) {
        SCOPED_TRACE(table);
        EXPECT_EQ(first.digest(table), second.digest(table));
        EXPECT_NE(first.digest(table), other.digest(table));
    }
}

TEST(Fleet, RefusesSizesOutOfRangeAndWritesNothing) {
    ScopedHost installed(std::make_shared<testing::FakeHost>());
    testing::TempFolder folder;
    db::Connection connection;
    schema::createDatabase(connection, schema::Database::main, (folder.path() / "NALET.FDB").string());
    const struct {
        const char* why;
        int aircraft, years, components;
    } cases[] = {{"no aircraft", 0, 1, 1},
                 {"negative years", 1, -1, 1},
                 {"no years", 1, 0, 1},
                 {"negative components", 1, 1, -5},
                 {"too many aircraft", 100000, 1, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        FleetOptions options = smallFleet();
        options.aircraft = c.aircraft;
        options.years = c.years;
        options.componentsPerAircraft = c.components;
        EXPECT_THROW(generateFleet(connection, options), ArgumentError);
    }
    db::DataSet register_(connection, "select count(*) from TIPOVYE_DANNYE_VS");
    register_.open();
    EXPECT_EQ(register_.field(0).asInt(), 0);
}

TEST(Fleet, ColumnsTheTableLacksAreArgumentErrors) {
    testing::TempFolder folder;
    db::Connection connection;
    schema::createDatabase(connection, schema::Database::main, (folder.path() / "NALET.FDB").string());
    TableWriter owners(connection, "SOBSTVENNIKI");
    EXPECT_THROW(owners.row().set("NO_SUCH_COLUMN", 1), ArgumentError);
    EXPECT_THROW(owners.row().set(owners.columnCount(), 1), ArgumentError);
    EXPECT_THROW(owners.row().set(-1, 1), ArgumentError);
}

}  // namespace
}  // namespace mxbook::fleet
