// The cards of an APU, a gearbox, a propeller, a tail rotor and an engine: unit rows by column position, each
// report row compared whole (the columns listed hold the text shown, all others NULL). Today is 15.03.2024;
// the short date form is "dd/mm/yyyy", told apart from the cards' fixed patterns.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/report.h"

namespace mxbook {
namespace {

using Row = std::map<int, db::Value>;                     // source column → value
using Cells = std::map<int, std::optional<std::string>>;  // report column → text; none: NULL
using Variant = std::pair<Row, Cells>;                    // changes to the base unit and to its card
using Builders = std::vector<std::pair<std::string, std::function<void()>>>;
const db::Value null;
const std::optional<std::string> none;

Date day(int year, int month, int dayOfMonth) { return Date::fromYmd(year, month, dayOfMonth); }
template <class Map>
Map with(Map base, const Map& changes) {
    for (const auto& [column, value] : changes) base.insert_or_assign(column, value);
    return base;
}

class AssemblyCardsTest : public testing::RemainingLifeTest {
protected:
    AssemblyCardsTest() { host().settings.shortDateFormat = "dd/mm/yyyy"; }
    void SetUp() override {
        RemainingLifeTest::SetUp();
        insertRow("TIP_MASLA", {{1, 2}, {2, "Б-3В"}});  // last in NOMER order, first by ID
        insertRow("TIP_MASLA", {{1, 1}, {2, "МС-8П"}});
    }

    void insertRow(const std::string& table, const Row& row) {
        db::DataSet columns(connection(), "select * from " + table + " where ID < 0");
        columns.open();
        testing::Columns named;
        for (const auto& [column, value] : row) named.emplace_back(columns.fieldInfo(column).name, value);
        insert(table, named);
    }

    void expectRows(std::string_view table, const std::vector<Cells>& expected) {
        const FilledReport report = readReport(connection(), table);
        ASSERT_EQ(report.rows.size(), expected.size()) << table;
        for (std::size_t i = 0; i < expected.size(); ++i)
            for (std::size_t column = 1; column < report.rows[i].size(); ++column) {
                const auto it = expected[i].find(static_cast<int>(column));
                EXPECT_EQ(report.rows[i][column], it == expected[i].end() ? none : it->second)
                    << table << " row " << i << " r" << column;
            }
    }

    // Each variant of the base unit, alone in its table, written up by `build`.
    void expectVariants(const std::string& table, const Row& base, const Cells& expected,
                        const std::vector<Variant>& variants, std::string_view report,
                        const std::function<void(const Row&)>& build) {
        for (std::size_t i = 0; i < variants.size(); ++i) {
            SCOPED_TRACE("variant " + std::to_string(i));
            connection().execute("delete from " + table);
            insertRow(table, with(base, variants[i].first));
            build(with(base, variants[i].first));
            expectRows(report, {with(expected, variants[i].second)});
        }
    }

    // Each card's builder asked for the unit with the serial number at RA-22001.
    Builders builders(const std::string& serial) {
        auto& c = connection();
        const std::string at = "RA-22001", mi8 = "Ми-8МТВ-1";
        return {{"REPORT_VSU_PODROBNO", [=, &c] { FunMainReportVSUPodrobno(c, mi8, at, serial); }},
                {"REPORT_REDUCTOR_PODROBNO", [=, &c] { FunMainReportReductorPodrobno(c, "Ми-8", serial, at); }},
                {"REPORT_VTULKA_VV_PODR", [=, &c] { FunMainReportVozdVintPodrobno(c, "Ан-2", serial, at); }},
                {"REPORT_HVOST_VINT_PODR", [=, &c] { FunMainReportHvostVintPodrobno(c, mi8, serial, at); }},
                {"REPORT_DVIGATEL_PODROBNO", [=, &c] { FunMainReportDvigatelPodrobno(c, mi8, serial, at); }}};
    }
};


TEST_F(AssemblyCardsTest, ApuCountersOrTheTa14SumLayout) {
    // Overhauled once: the regular limits; removal 01.03.2022 + 6 years, before 20.03.2018 + 12 years.
    insertRow("VSU", {{1, "АИ-9В"}, {2, "V1"}, {4, day(2018, 3, 20)}, {5, "АРЗ"}, {6, day(2022, 3, 1)}, {7, 1},
                      {10, 900}, {11, 100}, {12, 50}, {16, "700:00"}, {17, "60:00"}, {18, 3000}, {19, 1000},
                      {20, 500}, {24, 1000}, {25, "06.00"}, {27, "RA-22001"}, {28, "Ми-8МТВ-1"}, {29, 500}, {30, 1},
                      {39, "12.00"}, {40, 30}, {42, 100}, {50, 800}, {54, "03.00"}, {56, 900}});
    FunMainReportVSUPodrobno(connection(), "Ми-8МТВ-1", "RA-22001", "V1");
    expectRows("REPORT_VSU_PODROBNO",
               {{{1, "АИ-9В"}, {2, "V1"}, {4, "20/03/2018"}, {7, "АРЗ"}, {8, "01/03/2022"}, {9, "1"}, {11, "1000"},
                 {12, "300:00"}, {13, "3000"}, {14, "2100"}, {15, "500"}, {16, "450"}, {19, "500"}, {20, "440:00"},
                 {21, "06г. 00м."}, {22, "4г. 0м."}, {23, "1000"}, {24, "900"}, {29, "01.03.2028"}, {30, "700:00"},
                 {31, "60:00"}, {32, "2г. 0м."}, {33, "900"}, {34, "100"}, {35, "50"}, {39, "Б-3В"},
                 {43, "Ми-8МТВ-1"}, {44, "RA-22001"}, {45, "12г. 00м."}, {46, "6л. 0м."}, {47, "6л. 0м."},
                 {48, "100"}, {50, "30"}, {52, "70"}, {54, "800"}, {58, "03г. 00м."}}});

    // Never overhauled: the sum's limit until then (56); the counters stay out though set.
    insertRow("VSU", {{1, "ТА-14-130-35"}, {2, "V2"}, {7, 0}, {10, 100}, {16, "10:00"}, {18, 3000}, {20, 500},
                      {24, 1000}, {27, "RA-22001"}, {28, "Ми-8МТВ-1"}, {29, 500}, {30, -1}, {46, 2000}, {47, 1000},
                      {48, "150:00"}, {49, "150:00"}, {50, 800}, {56, 1200}});
    FunMainReportVSUPodrobno(connection(), "Ми-8МТВ-1", "RA-22001", "V2");
    expectRows("REPORT_VSU_PODROBNO",
               {{{1, "ТА-14-130-35"}, {2, "V2"}, {7, "-"}, {8, "-"}, {9, "0"}, {11, "2000"}, {12, "1850:00"},
                 {13, "3000"}, {14, "2900"}, {19, "1000"}, {20, "1050:00"}, {30, "150:00"}, {31, "150:00"},
                 {33, "100"}, {39, ""}, {43, "Ми-8МТВ-1"}, {44, "RA-22001"}, {60, "1200"}}});
}

TEST_F(AssemblyCardsTest, GearboxEveryRowAtTheLocationWhateverItsType) {
    const Row gearbox = {{2, "ВР-14"}, {3, "R1"}, {13, "RA-22001"}, {14, 1500}, {16, 1000}, {17, "05.06"}};
    // Its overhaul dated at manufacture: never overhauled; 31.01.2020 + 4 years 1 month; 49 months, 50 run.
    insertRow("REDUCTOR", with(gearbox, {{1, "Ми-8АМТ"}, {5, day(2020, 1, 31)}, {8, day(2020, 1, 31)}, {9, 0},
                                         {12, "100:00"}, {15, "04.01"}, {22, 5}}));
    // 01.03.2020 + 5 years 6 months, before 10.06.2015 + 20 years.
    insertRow("REDUCTOR", with(gearbox, {{1, "Ми-8МТВ-1"}, {5, day(2015, 6, 10)}, {8, day(2020, 3, 1)}, {9, 1},
                                         {11, "2500:00"}, {12, "300:30"}, {15, "08.00"}, {18, 3000}, {22, 0},
                                         {37, "20.00"}}));
    FunMainReportReductorPodrobno(connection(), "Ми-8", "R1", "RA-22001");
    const Cells each = {{1, "ВР-14"}, {2, "R1"}, {13, "1000"}, {15, "05г. 06м."}, {28, "Ми-8"}, {29, "RA-22001"},
                        {30, "Главный"}, {34, "1500"}};
    expectRows("REPORT_REDUCTOR_PODROBNO",
               {with(each, {{4, "31.01.2020"}, {8, "31.01.2020"}, {9, "0"}, {14, "1400:00"}, {16, "0"},
                            {17, "29.02.2024"}, {20, "100:00"}, {24, "Б-3В"}, {35, "04г. 01м."}}),
                with(each, {{4, "10.06.2015"}, {8, "01.03.2020"}, {9, "1"}, {11, "3000"}, {12, "500:00"},
                            {14, "699:30"}, {16, "1г. 6м."}, {17, "01.09.2025"}, {19, "2500:00"}, {20, "300:30"},
                            {24, "МС-8П"}, {32, "20г. 00м."}, {33, "11л. 3м."}, {35, "08г. 00м."}})});
}

TEST_F(AssemblyCardsTest, PropellerPositionAndRemovalByTheLimitsSet) {
    // Removal: 10.05.2016 + 8 years (22) before 15.03.2021 + 5 years (24); 20 only says a total is set.
    const Row propeller = {{1, "Ан-2"}, {2, "Ч-1"}, {3, "P1"}, {9, day(2016, 5, 10)}, {15, day(2021, 3, 15)},
                           {16, 1}, {17, "RA-22001"}, {19, 1}, {20, "03.00"}, {21, 4000}, {22, "08.00"},
                           {23, 1000}, {24, "05.00"}, {29, "1500:00"}, {30, "400:00"}, {47, 1200}, {48, "12"}};
    const Cells shown = {{10, "Второй"}, {13, "08г. 00м."}, {15, "12м."}, {17, "05г. 00м."}, {19, "7л. 10м."},
                         {21, "3г. 0м."}, {22, "2500:00"}, {23, "0л. 2м."}, {24, "600:00"}, {25, "2г. 0м."},
                         {26, "10.05.24"}};
    expectVariants("VOZDUSHNY_VINT", propeller, shown,
                   {{},
                    {{{19, -1}, {20, null}}, {{10, "нет"}, {26, "15.03.26"}}},
                    {{{19, 0}, {24, null}}, {{10, "Первый"}, {17, none}, {25, none}, {26, "10.05.24"}}},
                    {{{19, 2}, {20, null}, {24, null}}, {{10, "Третий"}, {17, none}, {25, none}, {26, none}}},
                    // Never overhauled: 47 and 48; the removal 10.05.2016 + 6 years.
                    {{{16, 0}, {19, 7}, {48, "06.00"}},
                     {{10, none}, {15, "06г. 00м."}, {24, "800:00"}, {25, "3г. 0м."}, {26, "10.05.22"}}}},
                   "REPORT_VTULKA_VV_PODR",
                   [&](const Row&) { FunMainReportVozdVintPodrobno(connection(), "Ан-2", "P1", "RA-22001"); });
}

TEST_F(AssemblyCardsTest, TailRotorDerivedOnTheAircraftStoredOffIt) {
    aircraft("RA-22001", "1100:00");  // 100 hours since the rotor was installed at 1000:00
    const Row rotor = {{1, "Ми-8МТВ-1"}, {2, "Ч-2"}, {4, day(2019, 3, 1)}, {6, "T1"}, {12, day(2022, 9, 10)},
                       {13, 1}, {14, "RA-22001"}, {19, 1000}, {20, "10.00"}, {21, 500}, {22, "04.00"}, {25, 600},
                       {26, "03.06"}, {27, 1}, {28, "1000:00"}, {29, "200:00"}, {30, "50:00"}};
    const Cells shown = {{13, "10г. 00м."}, {15, "03г. 06м."}, {19, "04г. 00м."}, {20, "300:00"}, {21, "150:00"},
                         {23, "700:00"}, {24, "5л. 0м."}, {25, "350:00"}, {26, "2г. 6м."}, {29, "10/09/2026"}};
    expectVariants("HVOSTOVOY_VINT", rotor, shown,
                   {{},
                    {{{14, "Ремонт"}}, {{20, "200:00"}, {21, "50:00"}, {23, "800:00"}, {25, "450:00"}}},
                    {{{13, 0}}, {{25, "450:00"}, {26, "2г. 0м."}, {29, "01/09/2022"}}},  // 01.03.2019 + 3.06
                    {{{22, null}}, {{19, none}, {26, none}, {29, "01/03/2029"}}},
                    {{{20, null}, {22, null}, {26, null}},
                     {{13, none}, {15, none}, {19, none}, {24, none}, {26, none}, {29, none}}}},
                   "REPORT_HVOST_VINT_PODR", [&](const Row& row) {
                       FunMainReportHvostVintPodrobno(connection(), "Ми-8МТВ-1", "T1", row.at(14).asText());
                   });
}

TEST_F(AssemblyCardsTest, EngineCopiesLimitsAndThePw207kCycles) {
    const Row engine = {{1, "Ми-8МТВ-1"}, {2, "ТВ3-117ВМ"}, {3, "E1"}, {5, day(2010, 4, 1)}, {8, day(2020, 3, 10)},
                        {9, 1}, {10, day(2023, 1, 15)}, {11, "5000:00"}, {12, "700:00"}, {13, "RA-22001"},
                        {14, 1500}, {15, "07.00"}, {16, 1000}, {17, "08.00"}, {18, 6000}, {19, "20.00"}, {22, 0},
                        {23, 1}, {27, 300}, {31, 2000}, {37, 1000}, {38, 5000}, {42, 800}, {43, 120}, {44, 3000},
                        {45, 1500}, {51, 100}, {52, 200}, {53, 300}, {54, 1000}, {55, 2000}, {56, 3000}, {57, 900},
                        {58, 500}};
    // Removal 10.03.2020 + 8 years, before 01.04.2010 + 20 years.
    const Cells shown = {
        {2, "ТВ3-117ВМ"}, {3, "E1"}, {5, "01/04/2010"}, {8, "10/03/2020"}, {9, "1"}, {10, "15/01/2023"},
        {11, "5000:00"}, {12, "700:00"}, {13, "RA-22001"}, {14, "1500"}, {15, "07г. 00м."}, {16, "1000"},
        {17, "08г. 00м."}, {18, "6000"}, {19, "20г. 00м."}, {22, "МС-8П"}, {23, "Второй"}, {27, "120"},
        {31, "1000:00"}, {32, "6л. 1м."}, {33, "300:00"}, {34, "4г. 0м."}, {35, "10.03.2028"}, {36, "800"},
        {37, "1000"}, {38, "5000"}, {39, "700"}, {40, "3000"}, {50, "900"}, {51, "500"}, {52, "3000"},
        {53, "1500"}, {54, "2200"}, {55, "1380"}, {56, "2000"}, {57, "300"}};
    expectVariants("DVIGATEL", engine, shown,
                   {{},
                    // Never overhauled: 14, 15, 57 and 58; removal 01.04.2010 + 7 years.
                    {{{2, "PW207K"}, {9, 0}, {22, -1}, {23, -1}, {43, null}},
                     {{2, "PW207K"}, {8, none}, {9, "0"}, {12, none}, {22, ""}, {23, "нет"}, {27, none},
                      {33, "800:00"}, {34, "3г. 0м."}, {35, "01.04.2017"}, {39, "600"}, {55, none}, {41, "1000"},
                      {42, "2000"}, {43, "3000"}, {44, "100"}, {45, "200"}, {46, "300"}, {47, "900"},
                      {48, "1800"}, {49, "2700"}}},
                    {{{9, -1}, {43, null}}, {{9, "-1"}, {27, "300"}, {55, none}}}},  // a count, just not 0
                   "REPORT_DVIGATEL_PODROBNO",
                   [&](const Row&) { FunMainReportDvigatelPodrobno(connection(), "Ми-8МТВ-1", "E1", "RA-22001"); });
}

TEST_F(AssemblyCardsTest, NoUnitOrAFailureMidwayLeavesTheTableEmpty) {
    // Hours that are not "h:mm", or a calendar limit without its point; the gearbox fails on its second row.
    insertRow("VSU", {{2, "F1"}, {16, "10ч00"}, {24, 1000}, {27, "RA-22001"}, {28, "Ми-8МТВ-1"}});
    insertRow("REDUCTOR", {{1, "Ми-8АМТ"}, {3, "F1"}, {11, "100:00"}, {13, "RA-22001"}, {18, 3000}});
    insertRow("REDUCTOR", {{1, "Ми-8МТВ-1"}, {3, "F1"}, {11, "100ч00"}, {13, "RA-22001"}, {18, 3000}});
    insertRow("VOZDUSHNY_VINT", {{1, "Ан-2"}, {3, "F1"}, {9, day(2016, 5, 10)}, {17, "RA-22001"}, {22, "08"}});
    insertRow("HVOSTOVOY_VINT", {{1, "Ми-8МТВ-1"}, {6, "F1"}, {14, "RA-22001"}, {19, 1000}, {29, "1ч00"}});
    insertRow("DVIGATEL", {{1, "Ми-8МТВ-1"}, {3, "F1"}, {5, day(2010, 4, 1)}, {13, "RA-22001"}, {19, "20 лет"}});
    for (const std::string serial : {"X1", "F1"})
        for (const auto& [table, build] : builders(serial)) {
            SCOPED_TRACE(table + " " + serial);
            connection().execute("insert into " + table + " default values");  // an earlier card
            if (serial == "F1") EXPECT_THROW(build(), ConversionError); else build();
            // Seen from another connection: the emptying is stored, nothing after it.
            EXPECT_EQ(scalar("select count(*) from " + table).asInt(), 0);
        }
}

}  // namespace
}  // namespace mxbook
