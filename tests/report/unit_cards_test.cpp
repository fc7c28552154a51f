// The cards of units kept by ID: each unit row written up whole, compared with values worked out by hand.
// Today is 15.03.2024; RA-1 has run 100:00 since the units were installed at 1400:30 and flew once (1:30,
// hoists 5 with people, 7 with cargo) since their oil and cable changes.
#include <gtest/gtest.h>

#include <map>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/report.h"

namespace mxbook {
namespace {

// A unit row's values by column position.
using Cells = std::map<int, db::Value>;
// Report column → text; a column not named must be NULL (nullptr in a change: NULL there).
using Expected = std::map<int, const char*>;
const char* const unitId = "the unit's ID";

Date on(int day, int month, int year) { return Date::fromYmd(year, month, day); }
template <typename Map>
Map with(Map base, const Map& changes) {
    for (const auto& change : changes) base.insert_or_assign(change.first, change.second);
    return base;
}

// clang-format off
class UnitCardsTest : public testing::RemainingLifeTest {
protected:
    void SetUp() override {
        RemainingLifeTest::SetUp();
        aircraft("RA-1", "1500:30", 0, on(1, 1, 2020));
        insert("SPRAVKA", {{"DATA_POLETA", on(1, 3, 2024)}, {"TIP_VS", "Ми-8МТВ-1"}, {"BORTOVOI_NOMER", "RA-1"},
                           {"V_VOZDUHE", Time::fromHms(1, 30)}, {"LEBEDKA_CICL_LUDI", 5}, {"LEBEDKA_CICL_GRUZY", 7}});
        for (const auto& [number, name] : {std::pair{2, "Б-3В"}, {1, "МС-8П"}})
            insert("TIP_MASLA", {{"NOMER", number}, {"NAZVANIE", name}});
        insert("ETAAGREGAT", {{"ID", 2}, {"ID_NAME", 7}, {"CHERT_NOMER", "НП-25"}, {"NAZVANIE", "Насос"}});
        insert("ETA_VTULKA_NV", {{"ID", 1}, {"ID_NAME", 7}, {"CHERT_NOMER", "8-1930"}, {"NAZVANIE", "Втулка"}});
        insert("ETA_AGR_VSU", {{"ID", 1}, {"ID_NAME", 3}, {"NAZVANIE", "Стартер"}, {"CHERT_NOMER", "СТГ-3"}});
        insert("ETA_ZCU", {{"ID", 1}, {"ID_NAME", 4}, {"NAME", "Баллон"}, {"CHERT_NOMER", "Б-4"}});
        insert("SOBSTVENNIKI", {{"NAIMENOVANIE", "ЮТэйр"}, {"ID_NAME", "own1"}});
        // In repair with it, a component whose hours came from this engine would show 0:00 run.
        insert("DVIGATEL", {{"NAZVANIE_DVIGATELYA", "ТВ3-117ВМ"}, {"ZAVODSKOI_NOMER", "E-5"},
                            {"GDE_STOIT", "Ремонт"}, {"NARABOTKA_PPR", "500:00"}});
        insert("VSU", {{"NAZVANIE", "АИ-9В"}, {"ZAVODSKOY_NOMER", "V-1"}, {"OBSHAIA_PPR", "530:45"},
                       {"ZAPUSKI_PPR", 130}, {"OTBORY_PPR", 60}});
    }

    int unit(const std::string& table, const Cells& cells) {
        db::DataSet shape(connection(), "select * from " + table + " where ID = 0");
        shape.open();
        testing::Columns columns;
        for (const auto& [column, value] : cells) columns.emplace_back(shape.fieldInfo(column).name, value);
        return insert(table, columns);
    }
};

// A component on RA-1 with its times derived from the aircraft: 100:00 more than stored.
const Cells component = {{1, "Ми-8МТВ-1"}, {4, "A-17"}, {5, "Завод"}, {6, on(10, 6, 2015)}, {7, "АРЗ"}, {8, "F-1"},
    {9, on(20, 1, 2021)}, {10, 1}, {11, on(5, 3, 2024)}, {12, 3000}, {13, "10.00"}, {14, 1000}, {15, "05.00"},
    {16, "1400:30"}, {17, "1200:00"}, {18, "100:00"}, {19, 1}, {20, 0}, {21, "12:07"}, {22, on(1, 2, 2024)}, {24, 0},
    {25, "Гидросистема"}, {26, on(1, 6, 2023)}, {27, "RA-1"}, {28, 0}, {31, on(2, 3, 2024)}, {34, 7}, {39, 1},
    {43, 1500}, {44, "12"}};
const Expected componentOnRA1 = {{1, unitId}, {2, "Насос"}, {3, "НП-25"}, {4, "A-17"}, {5, "Завод"}, {6, "10.06.2015"},
    {7, "20.01.2021"}, {8, "F-1"}, {9, "20.01.2021"}, {10, "1"}, {11, "01.06.2023"}, {12, "05.03.2024"}, {13, "3000"},
    {14, "1700:00"}, {15, "10г. 00м."}, {16, "1г. 3м."}, {17, "1000"}, {18, "800:00"}, {19, "05г. 00м."},
    {20, "1г. 10м."}, {21, "0"}, {22, "1400:30"}, {23, "1300:00"}, {24, "200:00"}, {25, "2300:30"}, {26, "10.06.25"},
    {27, "1"}, {28, "МС-8П"}, {29, "13:37"}, {30, "01.02.2024"}, {31, "Ми-8МТВ-1 RA-1"}, {32, "Гидросистема"},
    {33, "RA-1"}, {37, "1500"}, {38, "12м."}};
// In repair, calendar from installation, limit kind 2: stored times, removal date from the overhaul.
const Cells inRepair = with(component, {{27, "Ремонт"}, {45, true}, {24, 2}});
const Expected repaired = with(componentOnRA1, {{12, "02.03.2024"}, {14, nullptr}, {18, nullptr}, {20, "4г. 3м."},
    {21, "2"}, {23, "1200:00"}, {24, "100:00"}, {25, ""}, {26, "20.01.31"}, {29, "12:07"}, {33, "Ремонт"}});
// The hub: never overhauled, its own first-overhaul limits (48, 49) and fixed calendar starts (45 is a date here).
const Cells hub = with(component, {{10, 0}, {42, 1}, {43, "3:00"}, {44, nullptr}, {45, on(1, 1, 2024)}, {48, 1500},
    {49, "03.06"}});
const Expected hubOnRA1 = with(componentOnRA1, {{2, "Втулка"}, {3, "8-1930"}, {9, nullptr}, {10, "0"}, {12, nullptr},
    {18, "1300:00"}, {20, "0л. 4м."}, {24, nullptr}, {25, "2800:30"}, {26, "10.12.18"}, {32, nullptr}, {34, "Б-3В"},
    {35, "3:00"}, {38, "03г. 06м."}});
const Cells sling = {{1, "Ми-8МТВ-1"}, {2, "ВП-3"}, {3, "S-9"}, {4, on(15, 3, 2021)}, {5, "Завод"}, {6, "П-1"},
    {7, on(1, 3, 2023)}, {8, "3000 кг"}, {9, on(1, 10, 2020)}, {13, 0}, {14, "RA-1"}, {15, "полка 2"},
    {17, on(1, 6, 2023)}, {19, 2000}, {20, "3.6"}, {21, 500}, {23, 1000}, {25, 100}, {26, "01.00"}, {27, "150:00"},
    {28, "50:30"}, {29, 200}, {31, 40}};
const Expected slingOnRA1 = {{1, unitId}, {2, "Ми-8МТВ-1"}, {3, "RA-1"}, {4, "ВП-3"}, {5, "S-9"}, {6, "15.03.21"},
    {7, "Завод"}, {8, "П-1"}, {9, "01.03.23"}, {10, "3000 кг"}, {11, "01.10.20"}, {12, "-"}, {13, "-"}, {14, "0"},
    {15, "01.06.23"}, {16, "Ми-8МТВ-1 RA-1"}, {17, "2000"}, {18, "3г. 6м."}, {19, "500"}, {21, "1000"}, {23, "100"},
    {24, "01г. 00м."}, {25, "1850:00"}, {26, "0л. 6м."}, {27, "449:30"}, {29, "800"}, {31, "60"}, {32, "0"},
    {33, "150:00"}, {34, "3г. 0м."}, {35, "50:30"}, {37, "200"}, {39, "40"}, {40, "1г. 0м."}};
const Cells winch = {{1, "Ми-8МТВ-1"}, {2, "ЛПГ-150"}, {3, "W-3"}, {5, "Завод"}, {6, on(1, 2, 2024)}, {7, "T-7"},
    {8, on(15, 3, 2019)}, {9, on(1, 4, 2019)}, {11, "АРЗ"}, {12, on(15, 9, 2022)}, {13, 1}, {14, "RA-1"},
    {17, on(1, 1, 2024)}, {19, 2000}, {20, "10.00"}, {21, 600}, {22, "04.00"}, {23, 300}, {24, 500}, {25, 1},
    {26, "1400:30"}, {27, "150:00"}, {28, "50:00"}, {29, 20}, {30, 30}, {35, "трос новый"}, {36, 800}, {37, "05.00"}};
const Expected winchOnRA1 = {{1, unitId}, {2, "Ми-8МТВ-1"}, {3, "RA-1"}, {4, "ЛПГ-150"}, {5, "W-3"}, {6, "Завод"},
    {7, "01.02.24"}, {8, "T-7"}, {9, "15.03.19"}, {10, "01.04.19"}, {11, "АРЗ"}, {12, "15.09.22"}, {13, "1"},
    {14, "01.01.24"}, {15, "Ми-8МТВ-1 RA-1"}, {16, "2000"}, {17, "10г. 00м."}, {18, "600"}, {19, "04г. 00м."},
    {20, "300"}, {21, "500"}, {22, "1750:00"}, {23, "5л. 0м."}, {24, "450:00"}, {25, "2г. 6м."}, {26, "275"},
    {27, "463"}, {28, "250:00"}, {29, "5л. 0м."}, {30, "150:00"}, {31, "1г. 6м."}, {32, "25"}, {33, "37"},
    {34, "трос новый"}, {35, "800м."}};
// On APU V-1, which has run 30:45, 30 starts and 10 bleeds since the unit was installed.
const Cells apuUnit = {{1, "Ми-8МТВ-1"}, {2, "RA-1"}, {5, 3}, {6, "серия 2"}, {7, "G-11"}, {8, "Завод"},
    {9, on(15, 3, 2018)}, {10, "F-3"}, {11, "own1"}, {13, "АРЗ"}, {14, on(15, 9, 2022)}, {15, 1}, {16, on(1, 6, 2023)},
    {17, 1}, {18, "Нет"}, {19, 3000}, {20, 5000}, {21, 4000}, {22, "10.00"}, {23, 1000}, {24, 2000}, {25, 1500},
    {26, "04.00"}, {27, "500:00"}, {28, 100}, {29, 50}, {30, "1200:00"}, {31, 900}, {32, 700}, {33, "100:00"},
    {34, 300}, {35, 200}, {37, 0}, {38, "12:07"}, {39, on(1, 2, 2024)}, {42, "V-1"}, {48, "левый борт"}, {51, 1200},
    {54, "03.00"}};
const Expected apuUnitOnV1 = {{2, "Стартер"}, {3, "серия 2"}, {4, "G-11"}, {5, "Завод"}, {6, "15.03.2018"}, {7, "F-3"},
    {8, "ЮТэйр"}, {9, "RA-1 левый борт"}, {10, "АРЗ"}, {11, "15.09.2022"}, {12, "1"}, {13, "01.06.2023"}, {15, "Да"},
    {16, "3000"}, {17, "5000"}, {18, "4000"}, {19, "10г. 00м."}, {20, "1000"}, {21, "2000"}, {22, "1500"},
    {23, "04г. 00м."}, {24, "1769:15"}, {25, "4070"}, {26, "3290"}, {27, "4г. 0м."}, {28, "869:15"}, {29, "1670"},
    {30, "1290"}, {31, "2г. 6м."}, {32, "1230:45"}, {33, "930"}, {34, "710"}, {35, "6л. 0м."}, {36, "130:45"},
    {37, "330"}, {38, "210"}, {39, "1г. 6м."}, {40, "15.09.2026"}, {41, "МС-8П"}, {42, "42:52"}, {43, "01.02.24"},
    {44, "Ми-8МТВ-1"}, {45, "RA-1"}, {46, "1200"}, {49, "03г. 00м."}};
// Without an APU, never overhauled: stored counters, first-overhaul limits where set (51, 54; not 52, 53).
const Cells looseApuUnit = with(apuUnit, {{42, nullptr}, {6, nullptr}, {15, 0}, {17, 0}, {18, "слева"}, {37, 5}});
const Expected looseApuUnitAlone = with(apuUnitOnV1, {{3, "СТГ-3"}, {12, "0"}, {14, "слева"}, {15, "Нет"},
    {24, "1800:00"}, {25, "4100"}, {26, "3300"}, {28, "1100:00"}, {29, "1700"}, {30, "1300"}, {31, "1г. 6м."},
    {32, "1200:00"}, {33, "900"}, {34, "700"}, {36, "100:00"}, {37, "300"}, {38, "200"}, {40, "15.03.2021"},
    {41, nullptr}, {42, "12:07"}});
const Cells zcu = {{1, "Ми-8МТВ-1"}, {2, "Склад"}, {3, 4}, {4, 2000}, {5, "10.00"}, {6, "Z-1"}, {7, "P-7"},
    {8, on(15, 3, 2016)}, {9, on(1, 4, 2016)}, {10, on(1, 6, 2023)}, {11, "300:00"}, {12, "исправен"}, {15, "1400:30"},
    {16, 1}, {17, "D-9"}, {18, on(15, 9, 2019)}, {19, 1}, {20, 1000}, {21, "04.00"}, {22, "100:00"}, {23, "стеллаж 2"},
    {27, 800}, {28, "12"}};
const Expected zcuInStore = {{2, "Склад стеллаж 2 (исправен)"}, {3, "Баллон"}, {4, "Б-4"}, {5, "Z-1"}, {6, "P-7"},
    {7, "15.03.2016"}, {8, "01.04.2016"}, {9, "D-9"}, {10, "15.09.2019"}, {11, "1"}, {12, "01.06.2023"}, {13, "2000"},
    {14, "10г. 00м."}, {15, "1000"}, {16, "04г. 00м."}, {17, "300:00"}, {18, "8л. 0м."}, {19, "100:00"},
    {20, "4г. 6м."}, {21, "1700:00"}, {22, "2г. 0м."}, {23, "900:00"}, {24, "0"}, {25, ""}, {26, "15.09.23"},
    {27, "800"}, {28, "12м."}};
// On RA-1 with its times derived, and no calendar limit between overhauls: the removal date from manufacture.
const Expected zcuOnRA1 = with(zcuInStore, {{2, "RA-1"}, {16, nullptr}, {17, "400:00"}, {19, "200:00"}, {21, "1600:00"},
    {23, "800:00"}, {24, nullptr}, {25, "2300:30"}, {26, "15.03.26"}});
// The carrier of the repaired component, and r31 with it.
struct Carrier { const char* what; Cells unit; const char* shown; };
const Carrier carriers[] = {{"engine", {{28, 1}, {29, "E-5"}}, "ТВ3-117ВМ №E-5"},
    {"APU", {{28, 2}, {29, "V-1"}}, "АИ-9В №V-1"}, {"engine not found", {{28, 1}, {29, "E-404"}}, nullptr},
    {"carrier kind 3", {{28, 3}, {29, "E-5"}}, nullptr},
    {"serial 0, detail", {{28, 1}, {29, "0"}, {40, "стеллаж 4"}}, "Ремонт стеллаж 4"},
    {"blank serial, no detail", {{28, 1}, {29, "  "}}, nullptr}};

// A card: the unit table, the builder by the unit's ID, the report table.
struct Card { const char* table; void (*build)(db::Connection&, int); const char* report; };
const Card componentCard{"AGREGAT", &FunMainReportAgregatPodrobno, "REPORT_AGREGAT_PODROBNO"};
const Card slingCard{"PODVESKA", &FunMainReportPodveskaPodrobno, "REPORT_PODVESKA_PODROBNO"};
const Card apuUnitCard{"AGR_VSU", [](db::Connection& c, int id) { FunMainReportAgrVSUPodrobno(c, std::to_string(id)); },
                       "REPORT_AGR_VSU_PODROBNO"};
const Card zcuCard{"ZCU", [](db::Connection& c, int id) { FunMainReportAgrZCUPodrobno(c, std::to_string(id)); },
                   "REPORT_ZCU_PODROBNO"};
struct Case { std::string what; Card card; Cells unit; Expected expected; };

std::vector<Case> cases() {
    std::vector<Case> all = {{"component on RA-1", componentCard, component, componentOnRA1},
        {"hub", {"VTULKA_NV", &FunMainReportVtulkaNVPodrobno, "REPORT_AGREGAT_PODROBNO"}, hub, hubOnRA1},
        {"winch", {"LEBEDKA", &FunMainReportLebedkaPodrobno, "REPORT_LEBEDKA_PODROBNO"}, winch, winchOnRA1},
        {"APU unit on V-1", apuUnitCard, apuUnit, apuUnitOnV1},
        {"APU unit alone", apuUnitCard, looseApuUnit, looseApuUnitAlone}, {"ZCU in store", zcuCard, zcu, zcuInStore},
        {"ZCU on RA-1", zcuCard, with(zcu, {{2, "RA-1"}, {21, nullptr}}), zcuOnRA1}};
    for (const Carrier& carrier : carriers)
        all.push_back({std::string("in repair, ") + carrier.what, componentCard, with(inRepair, carrier.unit),
                       with(repaired, {{31, carrier.shown}})});
    for (const auto& [location, shown] :
         {std::pair{"RA-1", "Ми-8МТВ-1 RA-1"}, {"Склад", "Склад полка 2"}, {"склад", "Ми-8МТВ-1 склад"}})
        all.push_back({std::string("sling at ") + location, slingCard, with(sling, {{14, location}}),
                       with(slingOnRA1, {{3, location}, {16, shown}})});
    return all;
}
// clang-format on

TEST_F(UnitCardsTest, EachCardWritesUpItsWholeUnit) {
    for (const Case& c : cases()) {
        const int id = unit(c.card.table, c.unit);
        c.card.build(connection(), id);
        const FilledReport report = readReport(connection(), c.card.report);
        ASSERT_EQ(report.rows.size(), 1u) << c.what;
        for (std::size_t column = 1; column < report.columns.size(); ++column) {
            const auto found = c.expected.find(static_cast<int>(column));
            const char* text = found == c.expected.end() ? nullptr : found->second;
            const auto want = text ? std::optional(text == unitId ? std::to_string(id) : text) : std::nullopt;
            EXPECT_EQ(report.rows[0][column], want) << c.what << ": r" << column;
        }
    }
}

TEST_F(UnitCardsTest, NoUnitOrAFailureLeavesTheCardEmpty) {
    const int id = unit("AGREGAT", component), broken = unit("AGREGAT", with(component, {{17, "12"}}));
    FunMainReportAgregatPodrobno(connection(), id);
    FunMainReportAgregatPodrobno(connection(), 9999);
    EXPECT_TRUE(readReport(connection(), "REPORT_AGREGAT_PODROBNO").rows.empty());
    FunMainReportAgregatPodrobno(connection(), id);
    EXPECT_THROW(FunMainReportAgregatPodrobno(connection(), broken), ConversionError);
    EXPECT_TRUE(readReport(connection(), "REPORT_AGREGAT_PODROBNO").rows.empty());
    EXPECT_THROW(FunMainReportAgrVSUPodrobno(connection(), "1 or 1=1"), ConversionError);
}

}  // namespace
}  // namespace mxbook
