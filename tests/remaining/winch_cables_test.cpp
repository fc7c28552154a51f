#include <gtest/gtest.h>

#include "mxbook/remaining_life.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

// A winch on RA-1 whose cable count starts on 10 January (the later of its
// cable date and its installation date); flights before, within and after
// the month, up to the end date of 31 January.
class WinchCablesTest : public testing::RemainingLifeTest {
protected:
    void SetUp() override {
        RemainingLifeTest::SetUp();
        aircraft("RA-1", "100:00", 0, Date::fromYmd(2023, 1, 1));
        flight(Date::fromYmd(2024, 1, 8), 5, 7);
        flight(Date::fromYmd(2024, 1, 10), 2, 3);
        flight(Date::fromYmd(2024, 1, 20), 1, db::Value());
        flight(Date::fromYmd(2024, 2, 1), 4, 4);
    }
    void flight(Date day, db::Value people, db::Value cargo) {
        insert("SPRAVKA", {{"DATA_POLETA", day},
                           {"TIP_VS", "Ми-8МТВ-1"},
                           {"BORTOVOI_NOMER", "RA-1"},
                           {"LEBEDKA_CICL_LUDI", people},
                           {"LEBEDKA_CICL_GRUZY", cargo}});
    }
    db::DataSet& winch(const char* location, db::Value flag, db::Value people = 10, db::Value cargo = 20) {
        return row("LEBEDKA", insert("LEBEDKA", {{"TIP_VS", "Ми-8МТВ-1"},
                                                 {"GDE_STOIT", location},
                                                 {"DATA_ZAMENY_TROSA", Date::fromYmd(2024, 1, 10)},
                                                 {"DATA_USTANOVKI", Date::fromYmd(2024, 1, 5)},
                                                 {"RESURS_TROS_LUDI", 100},
                                                 {"RESURS_TROS_GRUZY", 25},
                                                 {"TROS_CICLI_LUDI", people},
                                                 {"TROS_CICLI_GRUZY", cargo},
                                                 {"NEPRIAMOI_UCHET_NAR_LEBEDKI", flag}}));
    }
    const Date end = Date::fromYmd(2024, 1, 31);
};

TEST_F(WinchCablesTest, HoistsSinceTheLaterDateAddToTheCablesOwn) {
    auto& onAircraft = winch("RA-1", 1);
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-1", 29, end), "13");  // people: 10 + 2 + 1
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-1", 30, end), "23");  // cargo: 20 + 3 + 0
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-1", 31, end), "3");   // any other column sums cargo
    auto& negative = winch("RA-1", 1, -5, db::Value());
    EXPECT_EQ(FunNepNarTros(connection(), negative, "RA-1", 29, end), "3");
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-2", 29, end), "0");  // no such aircraft, no flights
    // A tail matches as "=" matches it: trailing blanks aside, letter case minded; an apostrophe is text.
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-1  ", 29, end), "13");
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "ra-1", 29, end), "0");
    EXPECT_EQ(FunNepNarTros(connection(), onAircraft, "RA-1' or ''='", 29, end), "0");
}

TEST_F(WinchCablesTest, NothingCountsWithoutAFlightSinceTheOverhaul) {
    aircraft("RA-3", "1:00", 0, Date::fromYmd(2024, 6, 1));
    auto& cable = winch("RA-3", 1);
    EXPECT_EQ(FunNepNarTros(connection(), cable, "RA-3", 29, end), "0");
}

TEST_F(WinchCablesTest, HoistsLeftOfTheCablesLimit) {
    EXPECT_EQ(FunOstatTros(connection(), winch("RA-1", 1), 29, 23, end), "87");         // derived: 100 - 13
    EXPECT_EQ(FunOstatTros(connection(), winch("RA-1", 0), 29, 23, end), "90");         // booked
    EXPECT_EQ(FunOstatTros(connection(), winch("Склад", 1), 29, 23, end), "90");        // in the warehouse
    EXPECT_EQ(FunOstatTros(connection(), winch("RA-1", 1), 30, 24, end), "2");          // 25 - 23
    EXPECT_EQ(FunOstatTros(connection(), winch("RA-1", 1, 10, 30), 30, 24, end), "0");  // overrun
}

}  // namespace
}  // namespace mxbook
