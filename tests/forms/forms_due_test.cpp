#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/forms.h"

namespace mxbook {
namespace {

using testing::Columns;

// Today is 15.03.2024. Programmes: "Ф-1" and periodic intervals, tolerance
// before and after "%", steps of the cycle; step names are "N" + n.
class FormsDueTest : public testing::RemainingLifeTest {
protected:
    void SetUp() override {
        RemainingLifeTest::SetUp();
        programme("Ми-8", 75, 150, "10%20", 8);
        programme("Ан-2", 100, 100, "10%20", 8);
        programme("Ми-26", 75, 150, "10%20", 8);
        insert("TIPOVYE_DANNYE_VS", {{"TIP_VS", "Ми-26"}, {"PTO_PLAN_OT_PRED_NAR", 1}});
        insert("PTO_FORMY_DVIG", {{"TIP_VS", "Ми-8"}, {"VREMIA_FORMA", 100}, {"DOPUSK", 5}});
    }
    void programme(const char* type, int light, int periodic, const char* tolerance, int steps) {
        Columns c{{"TIP_VS", type},
                  {"VREMIA_F1", light},
                  {"VREMIA_FORMA", periodic},
                  {"DOPUSKI", tolerance},
                  {"COL_VO_FORMA", steps}};
        for (int n = 0; n <= 24; ++n) c.push_back({"CASE" + std::to_string(n), "N" + std::to_string(n)});
        insert("PTO_FORMY", c);
    }
    // A register row: hours since overhaul (22), periodic (33) and light (34) forms done;
    // the forms performed belong to the last one.
    db::DataSet& aircraft(const char* type, db::Value hours, int periodic = 0, int light = 0, Columns more = {}) {
        more.insert(more.end(), {{"TIP_VS", type},
                                 {"BORTOVOI_NOMER", tail(++aircraft_)},
                                 {"NARABOTKA_PPR_CHASOV", hours},
                                 {"KOL_VO_TO", periodic},
                                 {"KOL_VO_F1", light}});
        return row("REESTR", insert("REESTR", more));
    }
    static std::string tail(int n) { return "RA-" + std::to_string(n); }
    void form(const char* name, const char* airframe, Date serviceable) {
        insert("VYPOLNENNYE_FORMY", {{"TIP_VS", "Ми-26"},
                                     {"BORTOVOY_NOMER", tail(aircraft_)},
                                     {"FORMA_TO", name},
                                     {"PLANER_PPR", airframe},
                                     {"DATA_ISPRAVNOSTI", serviceable}});
    }
    std::string to(db::DataSet& r, int countColumn = 33) { return GetOstatTO(connection(), r, 22, 1, countColumn); }
    std::string f1(db::DataSet& r) { return GetOstatF1(connection(), r, 22, 1, 34); }
    int aircraft_ = 0;
};

TEST_F(FormsDueTest, PeriodicFormTimeLeftAndTolerance) {
    // Type, hours since overhaul, periodic forms done, count column, result.
    const std::tuple<const char*, db::Value, int, int, const char*> cases[] =
        {
            {"Ми-8", "140:00", 0, 33, "10:00"},  {"Ми-8", "155:00", 0, 33, "+15:00"},  // 20 after "%"
            {"Ми-8", "170:00", 0, 33, "00:00"},  {"Ми-8", "171:00", 0, 33, "00:00"},
            {"Ми-8", "290:30", 1, 33, "9:30"},   {"Ми-8", db::Value(), 0, 33, "150:00"},
            {"Ан-2", "105:00", 0, 33, "+15:00"},  // equal intervals, column 33: 34 is even, after "%"
            {"Ан-2", "105:00", 0, 34, "+5:00"},   // column 34: 35 is odd, before "%"
            {"Х", "155:00", 0, 33, "+15:00"},     // no programme: 150 hours, 20 of tolerance
        };
    for (const auto& [type, hours, done, column, expected] : cases)
        EXPECT_EQ(to(aircraft(type, hours, done), column), expected) << type << " " << hours.asText();
    EXPECT_THROW(to(aircraft("Ми-8", "12.30")), ConversionError);
}

TEST_F(FormsDueTest, PlansFromTheLastPerformedForm) {
    const Columns overhauled{{"DATA_REMONTA", Date::fromYmd(2023, 1, 1)}};
    auto& afterLight = aircraft("Ми-26", "100:00", 0, 0, overhauled);
    form("Ф-2", "60:00", Date::fromYmd(2024, 2, 10));
    form("Ф-1", "80:00", Date::fromYmd(2024, 2, 10));  // same day, larger ID
    form("Разовые работы", "95:00", Date::fromYmd(2024, 3, 1));
    form("Раз.работы", "96:00", Date::fromYmd(2024, 3, 2));
    EXPECT_EQ(to(afterLight), "55:00");   // 80:00 + 150 / 2
    EXPECT_EQ(f1(afterLight), "130:00");  // 80:00 + 150

    auto& afterPeriodic = aircraft("Ми-26", "200:00", 0, 0, overhauled);
    form("Ф-2", "150:00", Date::fromYmd(2024, 1, 5));
    EXPECT_EQ(to(afterPeriodic), "100:00");  // 150:00 + 150
    EXPECT_EQ(f1(afterPeriodic), "25:00");   // 150:00 + 75

    auto& none = aircraft("Ми-26", "0:00", 0, 0, overhauled);
    form("Ф-1", "10:00", Date::fromYmd(2022, 12, 31));  // before the overhaul
    EXPECT_EQ(to(none), "+20:00");                      // due at 0:00: all of the tolerance left
}

TEST_F(FormsDueTest, LightFormAtTheEndOfTheCycle) {
    const db::Value early = Date::fromYmd(2024, 1, 1), late = Date::fromYmd(2024, 2, 1), none;
    // Hours, "Ф-1" forms done, DATA_TO, DATA_F1, MEGREMONTNY_CHAS, result; 8 steps: the end from 2 forms.
    const std::tuple<const char*, int, db::Value, db::Value, int, const char*> cases[] = {
        {"200:00", 1, late, early, 2000, "25:00"},    // after 1 periodic form: 150 + 75
        {"1900:00", 2, early, late, 2000, "100:00"},  // periodic form before the "Ф-1": time to overhaul
        {"1900:00", 2, none, late, 2000, "100:00"},   // a date not set comes first
        {"1880:00", 2, late, early, 2000, "+5:00"},   // 12 intervals done: 1800 + 75, 10 of tolerance
        {"1880:00", 2, none, none, 2000, "+5:00"},
        {"1800:30", 2, late, early, 1850, "49:30"},  // 1875 beyond the overhaul at 1850
    };
    for (const auto& [hours, done, periodicDate, lightDate, limit, expected] : cases) {
        auto& r = aircraft("Ми-8", hours, 0, done,
                           {{"DATA_TO", periodicDate}, {"DATA_F1", lightDate}, {"MEGREMONTNY_CHAS", limit}});
        EXPECT_EQ(f1(r), expected) << hours << " " << limit;
    }
}

TEST_F(FormsDueTest, EngineFormsAndCompletedIntervals) {
    EXPECT_EQ(GetOstatTODv(connection(), aircraft("Ми-8", "150:00", 1), 22, 1, 33), "50:00");
    EXPECT_EQ(GetOstatTODv(connection(), aircraft("Ми-8", "203:00", 1), 22, 1, 33), "+2:00");
    EXPECT_EQ(GetOstatTODv(connection(), aircraft("Ми-8", "205:00", 1), 22, 1, 33), "00:00");
    // Hours, periodic intervals (150), engine intervals (100).
    const std::tuple<db::Value, int, int> cases[] = {
        {"449:59", 2, 4}, {"450:00", 3, 4}, {db::Value(), 0, 0}, {"-5:00", 0, 0}};
    for (const auto& [hours, periodic, engine] : cases) {
        auto& r = aircraft("Ми-8", hours);
        EXPECT_EQ(GetSledTO(connection(), r, 22, 1), periodic) << hours.asText();
        EXPECT_EQ(GetSledTODv(connection(), r, 22, 1), engine) << hours.asText();
    }
}

TEST_F(FormsDueTest, FormNamesByStepOfTheCycle) {
    // 8 steps of 150 hours; step [Low, High) is named CASE(High div 75 - 1).
    const std::pair<int, const char*> byHours[] = {{0, "N1"},   {149, "N1"},   {150, "N3"},  {299, "N3"},
                                                   {300, "N5"}, {1199, "N15"}, {1200, "N0"}, {-1, "N0"}};
    for (const auto& [hours, expected] : byHours) EXPECT_EQ(GetNameF1(connection(), "Ми-8", hours), expected) << hours;
    // After T periodic forms: T * 150, plus 75 when T is odd.
    const std::pair<int, const char*> next[] = {{0, "N1"}, {1, "N3"}, {2, "N5"}, {3, "N7"}};
    for (const auto& [done, expected] : next) {
        aircraft("Ми-8", "0:00", done);
        EXPECT_EQ(GetNameSledF1(connection(), "Ми-8", tail(aircraft_)), expected) << done;
    }
}

TEST_F(FormsDueTest, LandingsAndCalendarForms) {
    const std::pair<int, const char*> landings[] = {{47, "3"}, {50, "+5"}, {52, "+3"}, {55, "0"}};
    for (const auto& [landed, expected] : landings) {
        aircraft("Ми-8", "0:00");
        // On the day counted from, and after today: not counted.
        for (const auto& [day, count] : {std::pair{1, 100}, {2, landed - 10}, {15, 10}, {16, 100}})
            insert("SPRAVKA", {{"TIP_VS", "Ми-8"},
                               {"BORTOVOI_NOMER", tail(aircraft_)},
                               {"DATA_POLETA", Date::fromYmd(2024, 3, day)},
                               {"KOL_VO_POSADOK", count}});
        EXPECT_EQ(GetOstatTOPos(connection(), "Ми-8", tail(aircraft_), Date::fromYmd(2024, 3, 1)), expected) << landed;
    }
    const std::pair<db::Value, const char*> calendar[] = {
        {Date::fromYmd(2023, 11, 15), "0 дн."},
        {Date::fromYmd(2023, 11, 16), "1 дн."},
        {Date::fromYmd(2023, 12, 31), "46 дн."},  // to 30.04, the end of the shorter month
        {Date::fromYmd(2023, 10, 31), "0 дн."},
        {db::Value(), "0 дн."}};
    for (const auto& [start, expected] : calendar)
        EXPECT_EQ(GetOstatTOCalendar(aircraft("Ми-8", "0:00", 0, 0, {{"DATA_NACHALA_PTO_KALENDAR", start}})), expected)
            << start.asText();
}

TEST_F(FormsDueTest, UncountableProgrammeRaisesDataErrorNamingIt) {
    programme("Ка-32", 0, 150, "10%20", 8);  // no "Ф-1" interval
    programme("Ми-2", 5, 150, "10%20", 8);   // step 1 would be CASE29
    programme("Ми-34", 75, 0, "10%20", 8);
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { GetSledTO(connection(), aircraft("Ми-34", "10:00"), 22, 1); }, "Ми-34"},
        {[&] { GetSledTO(connection(), aircraft("Х", "10:00"), 22, 1); }, "Х"},
        {[&] { GetSledTODv(connection(), aircraft("Ан-2", "10:00"), 22, 1); }, "Ан-2"},
        {[&] {
             f1(aircraft("Х", "10:00", 0, 0, {{"DATA_TO", Date::fromYmd(2024, 1, 1)}}));
         },
         "Х"},
        {[&] { GetNameF1(connection(), "Ка-32", 10); }, "Ка-32"},
        {[&] { GetNameF1(connection(), "Ми-2", 10); }, "Ми-2"},
        {[&] { GetNameF1(connection(), "Х", 10); }, "Х"},
        {[&] { GetNameSledF1(connection(), "Ми-8", "RA-404"); }, "RA-404"},
    };
    for (const auto& [call, name] : cases) {
        try {
            call();
            ADD_FAILURE() << "no DataError for " << name;
        } catch (const DataError& e) {
            EXPECT_NE(std::string(e.what()).find(name), std::string::npos) << e.what();
        }
    }
}

}  // namespace
}  // namespace mxbook
