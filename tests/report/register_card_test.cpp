// The register card of an aircraft, compared whole with values worked out by hand. Today is 15.03.2024;
// RA-2 was made on 15.03.2000 (30-year life: 6 years left) and overhauled on 01.09.2020 (8 years: 4.5 left).
#include <gtest/gtest.h>

#include <map>

#include "../remaining/remaining_fixture.h"
#include "mxbook/report.h"

namespace mxbook {
namespace {

using Cells = std::map<std::string, db::Value>;
// Report column → text; a column not named must be NULL (nullptr in a change: NULL there).
using Expected = std::map<int, const char*>;
const char* const aircraftId = "the aircraft's ID";
const char* const type = "Ми-8МТВ-1";

Date on(int day, int month, int year) { return Date::fromYmd(year, month, day); }
template <typename Map>
Map with(Map base, const Map& changes) {
    for (const auto& change : changes) base.insert_or_assign(change.first, change.second);
    return base;
}

// clang-format off
const Cells ra2 = {{"TIP_VS", type}, {"SERIINY_NOMER", "С-1"}, {"BORTOVOI_NOMER", "RA-2"}, {"ZAVODSKOI_NOMER", "Z-100"},
    {"ZAVOD_IZGOTOVITEL", "КВЗ"}, {"DATA_VYPUSKA", on(15, 3, 2000)}, {"SVIDETELSTVO_O_REGISTRACII", "СР-7"},
    {"DATA_REMONTA", on(1, 9, 2020)}, {"KOL_VO_REMONTOV", 2}, {"REMONTNOE_PREDPRIIATIE", "АРЗ-3"},
    {"SERTIFIKAT_LG", "ЛГ-5"}, {"SROK_SLUZHBY_DO", on(1, 6, 2030)}, {"SERTIFIKAT_LG_DO", on(1, 1, 2025)},
    {"NOMER_FORMULIARA", "Ф-77"}, {"MESTO_BAZIROVANIA", "Тюмень"}, {"NAZNACHENNY_RESURS", 20000},
    {"NAZNACHENNY_SROK", "30.00"}, {"MEGREMONTNY_CHAS", 2000}, {"MEGREMONTNY_SROK", "08.00"},
    {"NARABOTKA_SNE_CHASOV", "15000:30"}, {"NARABOTKA_SNE_POSADKI", 12000}, {"NARABOTKA_PPR_CHASOV", "140:00"},
    {"NARABOTKA_PPR_POSADKI", 110}, {"NARABOTKA_S_NACHALA_GODA", "20:00"}, {"POSADKI_S_NACHALA_GODA", 15},
    {"PRIMECHANIE_SOSTOIANIA", "на стоянке"}, {"SOSTOIANIE", 4}, {"DATA_TO", on(1, 3, 2024)},
    {"DATA_F1", on(10, 3, 2024)}, {"KOL_VO_TO", 0}, {"KOL_VO_F1", 1}, {"TIP_DVIGATELEI", "ТВ3-117ВМ"},
    {"KOL_VO_DVIGATELEI", 2}, {"TIP_VSU", "АИ-9В"}, {"STRAHOVOI_POLIS", "П-1"}, {"STRAHOVKA_DO", on(1, 1, 2025)},
    {"RADIO_RAZRESHENIE", "Р-1"}, {"RADIO_RAZRESHENIE_DO", on(1, 2, 2025)}, {"ARENDATOR", "Авиа"},
    {"DOGOVOR_ARENDY_DO", on(1, 12, 2024)}, {"RESURS_DO_PERVOGO_REMONTA", 3000}, {"SROK_DO_PERVOGO_REMONTA", "10.00"},
    {"NAZNACHENNY_RESURS_POSADKI", 15000}, {"MEGREMONTNY_RESURS_POSADKI", 1500}, {"SERTIFIKAT_TIPA", "СТ-1"},
    {"PTO_POKAZYVAT", 1}, {"BESSROCHNO", false}};
// Removal: 01.09.2020 + 8 years comes before 15.03.2000 + 30 years. Latest form: the Ф-2 entered after a Ф-1
// of the same day; the one-off work after them does not count.
const Expected ra2Card = {{0, aircraftId}, {1, type}, {2, "С-1"}, {3, "RA-2"}, {4, "Z-100"}, {5, "КВЗ"},
    {6, "15.03.2000"}, {7, "СР-7"}, {8, "01.09.2020"}, {9, "2"}, {10, "АРЗ-3"}, {11, "ЛГ-5"}, {12, "01.06.2030"},
    {13, "01.01.2025"}, {15, "Тюмень"}, {16, "20000"}, {17, "30г. 00м."}, {18, "2000"}, {19, "08г. 00м."},
    {20, "15000:30"}, {21, "12000"}, {22, "140:00"}, {23, "110"}, {24, "20:00"}, {25, "15"}, {26, "на стоянке"},
    {27, "Воздушное судно в АРЗ"}, {28, "12.05.2023г. / Ф-2. ВС ППР: 1234:30ч."}, {33, "4999:30"}, {34, "6л. 0м."},
    {35, "1860:00"}, {36, "4г. 6м."}, {37, "01.09.2028"}, {38, "Ф-77"}, {39, "П-1"}, {40, "01.01.2025"}, {41, "Р-1"},
    {42, "01.02.2025"}, {43, "Авиа"}, {44, "01.12.2024"}, {45, "3000"}, {46, "10.00"}, {47, "ТВ3-117ВМ"}, {48, "2"},
    {49, "АИ-9В"}, {50, "15000"}, {51, "1500"}, {52, "24г. 0м."}, {53, "3г. 6м."}, {54, "3000"}, {55, "1390"},
    {56, "СТ-1"}};
const Expected noForms = with(ra2Card, {{26, nullptr}, {27, nullptr}, {28, nullptr}});
const Expected stateOnly = with(noForms, {{27, "Воздушное судно в АРЗ"}});

// A programme of "Ф-1" every 50 hours and a form every 150: no step of the cycle is shown.
enum class Programme { usual, none, overhaulFirst };
struct Case { const char* what; Cells changes; int withForms; Programme programme; bool performed; Expected expected; };
const Case cases[] = {
    {"with its forms", {}, 1, Programme::usual, true, ra2Card},
    {"state 15", {{"SOSTOIANIE", 15}}, 1, Programme::usual, true, with(ra2Card, {{27, "Воздушное судно исправно"}})},
    {"forms not shown", {{"PTO_POKAZYVAT", 0}}, 1, Programme::usual, true, noForms},
    {"unlimited Robinson R44, no forms asked", {{"TIP_VS", "Robinson R44 Raven"}, {"BESSROCHNO", true}}, 0,
        Programme::usual, true, with(noForms, {{1, "Robinson R44 Raven"}, {12, "бессрочно"}, {21, nullptr}, {23, nullptr}})},
    // Never overhauled: the removal date from manufacture (+ 8 years), no landings or time since overhaul.
    {"never overhauled", {{"KOL_VO_REMONTOV", 0}}, 0, Programme::usual, true,
        with(noForms, {{9, "0"}, {22, nullptr}, {23, nullptr}, {37, "15.03.2008"}, {53, nullptr}})},
    {"no programme", {}, 1, Programme::none, true, stateOnly},
    {"first step an overhaul", {}, 1, Programme::overhaulFirst, true, stateOnly},
    {"no form performed, F-1 the later", {}, 1, Programme::usual, false, with(ra2Card, {{28, nullptr}, {29, "10.03.2024"}})},
    {"no form performed, periodic the later", {{"DATA_F1", on(1, 2, 2024)}}, 1, Programme::usual, false,
        with(ra2Card, {{28, "01.03.2024"}})},
};
// clang-format on

class RegisterCardTest : public testing::RemainingLifeTest {
protected:
    int aircraft(const Cells& cells) {
        connection().execute("delete from REESTR");
        return insert("REESTR", testing::Columns(cells.begin(), cells.end()));
    }
    void programme(Programme kind, int light, int periodic, std::vector<const char*> steps) {
        connection().execute("delete from PTO_FORMY");
        if (kind == Programme::none) return;
        if (kind == Programme::overhaulFirst) steps.front() = "АРЗ";
        testing::Columns columns = {{"TIP_VS", type}, {"VREMIA_F1", light}, {"VREMIA_FORMA", periodic},
                                    {"DOPUSKI", "20%10"}, {"COL_VO_FORMA", static_cast<int>(steps.size())}};
        for (std::size_t step = 0; step < steps.size(); ++step)
            columns.emplace_back("CASE" + std::to_string(step + 1), steps[step]);
        insert("PTO_FORMY", columns);
    }
    void performed(const char* form, const char* hours, Date date) {
        insert("VYPOLNENNYE_FORMY", {{"TIP_VS", type}, {"BORTOVOY_NOMER", "RA-2"}, {"FORMA_TO", form},
                                     {"PLANER_PPR", hours}, {"DATA_FORMY", formatDate(date, "dd.mm.yyyy")},
                                     {"DATA_ISPRAVNOSTI", date}});
    }
    FilledReport card(const Cells& cells, int withForms) {
        FunReportReestrPodrobno(connection(), cells.at("TIP_VS").asText(), "RA-2", withForms);
        return readReport(connection(), "REPORT_REESTR_PODROBNO");
    }
    void expect(const FilledReport& report, const Expected& expected, int id, const std::string& what) {
        ASSERT_EQ(report.rows.size(), 1u) << what;
        for (std::size_t column = 0; column < report.columns.size(); ++column) {
            const auto found = expected.find(static_cast<int>(column));
            const char* text = found == expected.end() ? nullptr : found->second;
            const auto want = text ? std::optional(text == aircraftId ? std::to_string(id) : text) : std::nullopt;
            EXPECT_EQ(report.rows[0][column], want) << what << ": r" << column;
        }
    }
};

TEST_F(RegisterCardTest, WritesUpTheAircraftAndItsFormsWhenAsked) {
    for (const Case& c : cases) {
        connection().execute("delete from VYPOLNENNYE_FORMY");
        if (c.performed) {
            performed("Ф-1", "1200:00", on(12, 5, 2023));
            performed("Ф-2", "1234:30", on(12, 5, 2023));
            performed("Доп. раз.работы", "1240:00", on(1, 6, 2023));
        }
        programme(c.programme, 50, 150, {"Ф-1", "Ф-2", "Ф-1", "Ф-3"});
        const Cells row = with(ra2, c.changes);
        const int id = aircraft(row);
        expect(card(row, c.withForms), c.expected, id, c.what);
    }
}

// A "Ф-1" every 75 hours and a form every 150: the odd steps count, and those that close the cycle; step 6
// is passed over, the programme's column 6 (CASE0) being empty. Forms not planned from the last one, 140:00 run:
// the next form at 150:00 × (c33 + 1), the next "Ф-1" at 150:00 × c34 + 75:00 = 225:00 (85:00 left); at a
// closing step the time to overhaul. The last "Ф-1" at 160 hours is named for the step [150, 300): CASE3.
TEST_F(RegisterCardTest, FindsTheStepOfTheCycleAndTheTimeToTheNextForms) {
    programme(Programme::usual, 75, 150, {"Ф-1 (1)", "Ф-2", "Ф-1 (3)", "Ф-3", "Продление", "Ф-4", "Списание", "Ф-5"});
    performed("Ф-1", "160:15", on(1, 2, 2024));
    const struct { int done; const char* step; const char* left; } steps[] = {
        {0, "Ф-2", "10:00"}, {2, "Продление", "1860:00"}, {4, "Ф-5", "610:00"}};
    for (const auto& s : steps) {
        const Cells row = with(ra2, {{"KOL_VO_TO", s.done}});
        const int id = aircraft(row);
        expect(card(row, 1),
               with(ra2Card, {{28, "01.02.2024г. / Ф-1 (3). ВС ППР: 160:15ч."}, {30, s.step}, {31, s.left}, {32, "85:00"}}),
               id, s.step);
    }
}

TEST_F(RegisterCardTest, AnUnknownAircraftLeavesTheCardEmpty) {
    aircraft(ra2);
    FunReportReestrPodrobno(connection(), type, "RA-2", 0);
    FunReportReestrPodrobno(connection(), type, "RA-404", 0);
    EXPECT_TRUE(readReport(connection(), "REPORT_REESTR_PODROBNO").rows.empty());
}

}  // namespace
}  // namespace mxbook
