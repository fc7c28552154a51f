// Engines moved on and off aircraft, units moved on and off engines and
// following them, on flight records made for each case. Today is 15.03.2024.
#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"

namespace mxbook {
namespace {

constexpr const char* type = "Ми-8МТВ-1";
Date march(int day) { return Date::fromYmd(2024, 3, day); }
const Date leapDay = Date::fromYmd(2024, 2, 29);

class EngineMovesTest : public testing::RemainingLifeTest {
protected:
    // A flight of the tail, 9:00 in the airframe's columns, with the engine places' columns given.
    void flight(const char* tail, Date day, testing::Columns places) {
        places.insert(places.end(), {{"DATA_POLETA", day}, {"TIP_VS", type}, {"BORTOVOI_NOMER", tail}});
        places.emplace_back("V_VOZDUHE", "9:00");
        insert("SPRAVKA", places);
    }
    void flight(const char* tail, Date day, const char* air, int cycles = 0) {
        flight(tail, day, {{"V_VOZDUHE_1", air}, {"KOL_VO_CICLOV_1", cycles}});
    }
    // The ground minutes that count, weighted, for engines and for the units on them.
    void groundWeights(double engines, double units) {
        insert("TIPOVYE_DANNYE_VS", {{"TIP_VS", type},
                                     {"ZEMLIA_DVIGATEL", "1"},
                                     {"KOL_VO_ZEMLIA_DVIGATEL", engines},
                                     {"ZEMLIA_AGR_DVIG", "1"},
                                     {"KOL_VO_ZEMLIA_AGR_DVIG", units}});
    }
    int engine(const char* tail, testing::Columns more) {
        more.insert(more.end(), {{"TIP_VS", type}, {"NAZVANIE_DVIGATELYA", "ТВ3-117"}, {"GDE_STOIT", tail}});
        return insert("DVIGATEL", more);
    }
    // A unit on engine Д-1 at RA-1 counted in hours, its own counters 10:00, its flag 39 null; given values
    // replace these.
    int unit(const testing::Columns& more) {
        testing::Columns columns{{"TIP_VS", type},           {"NAZVANIE", "Насос"},    {"CHERT_NOMER", "НП-1"},
                                 {"ZAVODSKOI_NOMER", "123"}, {"EDINICA_NARABOTKI", 0}, {"PLAN_DVIG_VSU", 1},
                                 {"NUMER_DVIG_VSU", "Д-1"},  {"GDE_STOIT", "RA-1"},    {"NARABOTKA_SNE", "10:00"},
                                 {"NARABOTKA_PPR", "10:00"}};
        for (const auto& [name, value] : more) {
            std::erase_if(columns, [&](const auto& column) { return column.first == name; });
            columns.emplace_back(name, value);
        }
        return insert("AGREGAT", columns);
    }
    // The row's columns by position, each followed by '|'.
    static std::string text(db::DataSet& row, std::initializer_list<int> columns) {
        std::string joined;
        for (int column : columns) joined += row.field(column).asText() + "|";
        return joined;
    }
};

TEST_F(EngineMovesTest, AnEngineCarriesTheColumnsOfItsPlace) {
    aircraft("RA-1", "500:00");
    groundWeights(0.5, 2.0);  // the weight of the units on engines must not apply
    // Place k: k:00 in the air and 0:21 on the ground (10.5 -> 11), take-off 0:1k, nominal 0:2k,
    // maximum 0:3k, k cycles, 2k starts. The flight of the 9th is before the move.
    for (int day : {9, 12}) {
        testing::Columns flown;
        for (int k = 1; k <= 3; ++k) {
            const std::string n = std::to_string(k);
            flown.insert(flown.end(), {{"V_VOZDUHE_" + n, n + ":00"},
                                       {"NA_ZEMLE_" + n, "0:21"},
                                       {"NA_VZLETNOM_" + n, "0:1" + n},
                                       {"NOMINAL_" + n, "0:2" + n},
                                       {"MAXIMAL_" + n, "0:3" + n},
                                       {"KOL_VO_CICLOV_" + n, k},
                                       {"KOL_VO_ZAPUSKOV_" + n, 2 * k}});
        }
        flight("RA-1", march(day), flown);
    }
    const testing::Columns booked{{"NARABOTKA_SNE", "100:00"}, {"NARABOTKA_PPR", "50:00"}, {"VZLETNY_PPR", "10:00"},
                                  {"NOMINAL_PPR", "20:00"},    {"MAXIMAL_PPR", "5:00"},    {"NARABOTKA_MASLA", "30:00"},
                                  {"CICLI_PPR", 10},           {"CICLI_SNE", 20},          {"ZAPUSKI_SNE", 50},
                                  {"ZAPUSKI_PPR", 60}};
    const struct {
        db::Value place;
        bool on, empty;
        const char* expected;  // 11|12|26 take-off|25 nominal|39 maximum|28|27|31|42|43|
    } cases[] = {
        {0, true, false, "101:11|51:11|10:11|20:21|5:31|31:11|11|21|52|62|"},
        {1, true, false, "102:11|52:11|10:12|20:22|5:32|32:11|12|22|54|64|"},
        {7, true, false, "101:11|51:11|10:11|20:21|5:31|31:11|11|21|52|62|"},
        {2, false, false, "96:49|46:49|9:47|19:37|4:27|26:49|7|17|44|54|"},
        {{}, false, false, "98:49|48:49|9:49|19:39|4:29|28:49|9|19|48|58|"},
        {1, true, true, "00:00|00:00|||||0|0|0|0|"},
        {1, false, true, "00:00|00:00|||||0|0|0|0|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        testing::Columns columns = c.empty ? testing::Columns{} : booked;
        columns.emplace_back("ODIN_DVA", c.place);
        db::DataSet& moved = row("DVIGATEL", engine("RA-1", columns));
        if (c.on)
            FunDvigatelMoveToVS(connection(), moved, type, "RA-9", march(10));  // flights by the engine's 13
        else
            FunDvigatelMoveFromVS(connection(), moved, type, march(10));
        EXPECT_EQ(text(moved, {11, 12, 26, 25, 39, 28, 27, 31, 42, 43}), c.expected);
    }
    EXPECT_TRUE(host().shown.empty());
}

TEST_F(EngineMovesTest, TheMoveDaysFlightIsAskedAboutAndOverhaulsBoundWhatIsCarried) {
    aircraft("RA-2", "500:00", 0, march(12));
    insert("ETAAGREGAT", {{"ID", 1}, {"ID_NAME", 7}, {"NAZVANIE", "Насос ЭЦН"}, {"CHERT_NOMER", "8А-1"}});
    // From the 10th 1:55 are flown, from the 11th 0:55, from the 12th 0:25, from the 13th 0:05.
    for (const auto& [day, air] : {std::pair(10, "1:00"), {11, "0:30"}, {12, "0:20"}, {13, "0:05"}})
        flight("RA-2", march(day), air);
    const int engineId =
        engine("RA-2", {{"ZAVODSKOI_NOMER", "Д-1"}, {"REMONT_DATA", march(11)}, {"NARABOTKA_PPR", "10:00"}});
    const int unitId = unit({{"GDE_STOIT", "RA-2"}, {"ID_NAME", 7}});
    enum Move { engineOn, engineOff, unitOn, unitOff, unitWithEngine };
    const struct {
        Move move;
        int day;
        std::optional<Answer> answer;
        const char* expected;  // the engine's 12 or the unit's 17
        const char* unitLine;  // the question's last line, or the engine's
    } cases[] = {
        {engineOff, 10, Answer::no, "8:05", nullptr},   // from the date, before the overhaul too
        {engineOff, 10, Answer::yes, "9:55", nullptr},  // from the day after the aircraft's overhaul
        {engineOn, 10, {}, "10:25", nullptr},           // from the aircraft's overhaul
        {engineOn, 12, Answer::no, "10:05", nullptr},
        {unitOn, 10, {}, "10:55", nullptr},  // from the engine's overhaul
        {unitOn, 12, Answer::no, "10:05", "«Насос Насос ЭЦН №8А-1»?"},
        {unitOff, 10, Answer::no, "8:05", "«Насос ЭЦН 8А-1 № 123»?"},
        {unitOff, 10, Answer::yes, "9:35", "«Насос ЭЦН 8А-1 № 123»?"},    // from the day after the engine's
        {unitWithEngine, 10, Answer::yes, "9:55", "«Насос НП-1 №123»?"},  // after the aircraft's
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.move) + " " + c.expected);
        host().shown.clear();
        if (c.answer) host().answers = {*c.answer};
        db::DataSet& engineRow = row("DVIGATEL", engineId);
        db::DataSet& unitRow = row("AGREGAT", unitId);
        switch (c.move) {
        case engineOn: FunDvigatelMoveToVS(connection(), engineRow, type, "RA-2", march(c.day)); break;
        case engineOff: FunDvigatelMoveFromVS(connection(), engineRow, type, march(c.day)); break;
        case unitOn: FunMoveAgregatToDvig(connection(), unitRow, "RA-2", "Д-1", march(c.day)); break;
        case unitOff: FunMoveAgregatFromDvig(connection(), unitRow, "Ми-8", "RA-2", march(c.day)); break;
        case unitWithEngine: FunCorrectAgrDvigFromVS(connection(), engineRow, unitRow, type, march(c.day));
        }
        EXPECT_EQ((c.move == engineOn || c.move == engineOff ? engineRow.field(12) : unitRow.field(17)).asText(),
                  c.expected);
        ASSERT_EQ(host().shown.size(), c.answer ? 1u : 0u);
        if (!c.answer) continue;
        const char* asked = c.move == unitOff ? "Ми-8" : type;  // the argument, or the register's
        EXPECT_EQ(host().shown.front().text,
                  std::to_string(c.day) + ".03.2024 " + asked + " №RA-2 выполнял полёт.\r\n" +
                      "Учесть налет этого дня в наработке" +
                      (c.unitLine ? std::string("\r\n") + c.unitLine : std::string(" ТВ3-117 №Д-1?")));
    }
}

TEST_F(EngineMovesTest, AUnitOnAnEngineReadsTheEnginesCountersAndItsPlacesCycles) {
    aircraft("RA-1", "500:00");
    groundWeights(0.5, 1.0);
    flight("RA-1", march(12),
           {{"V_VOZDUHE_1", "5:00"},
            {"KOL_VO_CICLOV_1", 9},
            {"V_VOZDUHE_2", "1:00"},
            {"NA_ZEMLE_2", "0:21"},
            {"KOL_VO_CICLOV_2", 3}});
    engine("RA-1", {{"ZAVODSKOI_NOMER", "Д-1"}, {"ODIN_DVA", 1}, {"NARABOTKA_PPR", "50:00"}, {"CICLI_PPR", 40}});
    engine("Склад", {{"ZAVODSKOI_NOMER", "Д-9"}});
    const testing::Columns landings{{"EDINICA_NARABOTKI", 1}, {"NARABOTKA_SNE", "20"}, {"NARABOTKA_PPR", "10"}};
    const struct {
        testing::Columns unit;
        Date date;
        const char* expected;  // 16|17|18|
    } cases[] = {
        {{}, march(10), "48:39|11:21|11:21|"},  // 1:00 and 0:21 on the ground, weighted 1
        {landings, march(10), "37|23|13|"},     // 3 cycles
        {{{"NEPRIAMOI_UCHET_NAR_AGREGATA", 1}}, march(10), "48:39|10:00|10:00|"},
        {{}, march(15), "50:00|10:00|10:00|"},  // nothing flown since: the engine's counter as it stands
        {landings, march(15), "40|20|10|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        db::DataSet& installed = row("AGREGAT", unit(c.unit));
        FunMoveAgregatToDvig(connection(), installed, "RA-1", "Д-1", c.date);
        EXPECT_EQ(text(installed, {16, 17, 18}), c.expected);
    }
    // An engine that is not at the tail: no reading to install from, nothing to remove from.
    db::DataSet& elsewhere = row("AGREGAT", unit({{"NUMER_DVIG_VSU", "Д-9"}}));
    EXPECT_THROW(FunMoveAgregatToDvig(connection(), elsewhere, "RA-1", "Д-9", march(10)), ConversionError);
    FunMoveAgregatFromDvig(connection(), elsewhere, type, "RA-1", march(10));
    EXPECT_EQ(elsewhere.state(), db::DataSet::State::browse);
    EXPECT_EQ(text(elsewhere, {16, 17, 18}), "|10:00|10:00|");
}

TEST_F(EngineMovesTest, UnitsFollowTheirEngine) {
    aircraft("RA-1", "500:00");
    flight("RA-1", Date::fromYmd(2024, 2, 20), "2:00");
    flight("RA-1", Date::fromYmd(2024, 2, 28), "1:00");
    flight("RA-1", leapDay, "0:10", 2);
    flight("RA-1", march(12), "0:30", 1);
    db::DataSet& removed = row("DVIGATEL", engine("RA-1", {{"ZAVODSKOI_NOMER", "Д-1"}}));
    db::DataSet& installed = row("DVIGATEL", engine("RA-1", {{"ZAVODSKOI_NOMER", "Д-2"}}));
    // Oil changed 01.01, the unit counted on the engine from 28.02.
    const testing::Columns oil{{"NARAB_MASLA", "10:00"},
                               {"DATA_ZAMENY_MASLA", Date::fromYmd(2024, 1, 1)},
                               {"DATA_USTANOVKI", Date::fromYmd(2024, 2, 28)}};
    const struct {
        testing::Columns unit;
        const char* expected;  // 17|18|21|
    } cases[] = {
        {{{"NAZVANIE", "А"}, oil[0], oil[1], oil[2]}, "9:30|9:30|9:30|"},  // Yes: from 01.03, 0:30
        {{{"NAZVANIE", "Б"}, {"EDINICA_NARABOTKI", 1}, {"NARABOTKA_SNE", "20"}, {"NARABOTKA_PPR", "10"}},
         "17|7||"},  // No: 2 + 1 cycles
        {{{"NAZVANIE", "В"}, {"UCHET_MASLA", 1}, {"NEPRIAMOI_UCHET_NAR_AGREGATA", 1}, oil[0], oil[1], oil[2]},
         "10:00|10:00|11:10|"},  // oil from 28.02 to the move: 1:00 + 0:10
        {{{"NAZVANIE", "Г"}, {"UCHET_MASLA", 1}, {"NEPRIAMOI_UCHET_NAR_AGREGATA", 2}, oil[0], oil[1], oil[2]},
         "10:00|10:00|10:00|"},                          // neither derived nor counted directly
        {{{"NUMER_DVIG_VSU", "Д-2"}}, "10:00|10:00||"},  // its engine moves without the removal flag
    };
    std::vector<int> ids;
    for (const auto& c : cases) ids.push_back(unit(c.unit));
    const int onTheAirframe = unit({{"PLAN_DVIG_VSU", 0}});

    host().answers = {Answer::yes, Answer::no};
    FunAgregatMoveDvigatel(connection(), removed, type, leapDay, "Склад", 2);
    FunAgregatMoveDvigatel(connection(), installed, type, leapDay, "Склад", 0);
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(text(row("AGREGAT", ids[i]), {17, 18, 21, 27, 26, 31, 36}),
                  cases[i].expected + std::string("Склад|29.02.2024|28.02.2025|Установлен на двигатель|"))
            << "case " << i;
    EXPECT_EQ(text(row("AGREGAT", onTheAirframe), {27, 26, 31}), "RA-1|||");
    ASSERT_EQ(host().shown.size(), 2u);  // one question for each unit counted directly
    EXPECT_TRUE(host().shown[0].text.ends_with("«А НП-1 №123»?")) << host().shown[0].text;
    EXPECT_TRUE(host().shown[1].text.ends_with("«Б НП-1 №123»?")) << host().shown[1].text;
}

TEST_F(EngineMovesTest, AWalkFailingAtItsThirdUnitChangesNone) {
    aircraft("RA-1", "500:00");
    flight("RA-1", march(12), "0:30");
    db::DataSet& moving = row("DVIGATEL", engine("RA-1", {{"ZAVODSKOI_NOMER", "Д-1"}}));
    std::vector<int> ids{unit({{"NAZVANIE", "А"}}), unit({{"NAZVANIE", "Б"}}),
                         unit({{"NAZVANIE", "В"}, {"NARABOTKA_PPR", "abc"}})};
    EXPECT_THROW(FunAgregatMoveDvigatel(connection(), moving, type, march(10), "Склад", 1), ConversionError);
    for (int id : ids) EXPECT_EQ(text(row("AGREGAT", id), {17, 27, 26}), "10:00|RA-1||") << "unit " << id;
}

}  // namespace
}  // namespace mxbook
