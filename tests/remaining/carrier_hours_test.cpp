#include <gtest/gtest.h>

#include <functional>

#include "mxbook/error.h"
#include "mxbook/remaining_life.h"
#include "remaining/indirect_kinds.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

using CarrierHoursTest = testing::RemainingLifeTest;

// One derivation for every kind: the columns of each kind's table that hold
// its location, its reading at installation and its own hours.
struct Kind {
    const char* table;
    const char* location;
    const char* reading;
    const char* own;
    int ownColumn;
    std::function<std::string(db::Connection&, db::DataSet&, int)> derive;
    // What else the kind's row needs to be derived from the airframe.
    testing::Columns extra = {};
};

const Kind kinds[] = {
    {"LOPAST", "GDE_STOIT", "NARABOTKA_VS_PRI_USTANOVKE", "NARABOTKA_PPR", 26, FunNepNarLopast},
    {"ZCU", "GDE_STOIT", "NARABOTKA_VS_PRI_USTANOVKE", "NARABOTKA_SNE", 11, FunNepNarZCU},
    {"SHLANG", "GDE_STOIT", "NARABOTKA_VS_PRI_USTANOVKE", "NARABOTKA_SNE", 12,
     [](db::Connection& c, db::DataSet& r, int) { return FunNepNarShlang(c, r); }},
    {"HVOSTOVOY_VINT", "GDE_STOIT", "NARABOTKA_VS_PRI_USTANOVKE", "NARABOTKA_SNE", 29, FunNepNarHvostVint},
    {"LEBEDKA", "GDE_STOIT", "NARABOTKA_VS_PRI_USTANOVKE", "NARABOTKA_SNE", 27, FunNepNarLebedka},
    {"AGREGAT",
     "GDE_STOIT",
     "NARABOTKA_VS_PRI_USTANOVKE",
     "NARABOTKA_SNE",
     17,
     FunNepNarAgr,
     {{"EDINICA_NARABOTKI", 0}, {"PLAN_DVIG_VSU", 0}}},
};

TEST_F(CarrierHoursTest, OwnHoursPlusWhatTheAircraftFlewSinceInstallation) {
    aircraft("RA-22451", "1500:30");
    const struct {
        const char* own;
        const char* reading;  // null: none booked
        const char* expected;
    } cases[] = {
        {"100:00", "1490:45", "109:45"}, {"0:05", "1500:30", "0:05"}, {"0:00", "1499:25", "1:05"},
        {"0:00", "1490:30", "10:00"},    {"0:30", "1600:00", "0:00"},  // the register was corrected below the reading
        {"2:00", nullptr, "1502:30"},
    };
    for (const Kind& kind : kinds) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(kind.table) + " own " + c.own);
            testing::Columns columns = {{"TIP_VS", "Ми-8МТВ-1"},
                                        {kind.location, "RA-22451"},
                                        {kind.reading, c.reading ? db::Value(c.reading) : db::Value()},
                                        {kind.own, c.own}};
            columns.insert(columns.end(), kind.extra.begin(), kind.extra.end());
            const int id = insert(kind.table, columns);
            EXPECT_EQ(kind.derive(connection(), row(kind.table, id), kind.ownColumn), c.expected);
        }
    }
}

TEST_F(CarrierHoursTest, AMissingRegisterRowRaises) {
    aircraft("RA-22451", "1500:30");
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.table);
        testing::Columns columns = {{"TIP_VS", "Ми-8МТВ-1"}, {kind.location, "RA-99999"}, {kind.own, "1:00"}};
        columns.insert(columns.end(), kind.extra.begin(), kind.extra.end());
        const int id = insert(kind.table, columns);
        EXPECT_THROW(kind.derive(connection(), row(kind.table, id), kind.ownColumn), ConversionError);
    }
}

// Values go to the statements as parameters and select what the quoted text
// did: an apostrophe in a tail number finds its own aircraft, text made to
// widen the query finds none, letter case counts and trailing blanks do not.
TEST_F(CarrierHoursTest, TailNumbersWithApostrophesSelectTheirOwnAircraftOnly) {
    aircraft("RA-0'1", "10:00");
    aircraft("RA-22451", "1500:30");
    const int quoted = insert("LOPAST", {{"TIP_VS", "Ми-8МТВ-1"}, {"GDE_STOIT", "RA-0'1"}, {"NARABOTKA_PPR", "1:00"}});
    EXPECT_EQ(FunNepNarLopast(connection(), row("LOPAST", quoted), 26), "11:00");
    const int injected =
        insert("LOPAST",
               {{"TIP_VS", "Ми-8МТВ-1"}, {"GDE_STOIT", "x' or BORTOVOI_NOMER='RA-22451"}, {"NARABOTKA_PPR", "1:00"}});
    EXPECT_THROW(FunNepNarLopast(connection(), row("LOPAST", injected), 26), ConversionError);
    const int lower = insert("LOPAST", {{"TIP_VS", "Ми-8МТВ-1"}, {"GDE_STOIT", "ra-22451"}, {"NARABOTKA_PPR", "1:00"}});
    EXPECT_THROW(FunNepNarLopast(connection(), row("LOPAST", lower), 26), ConversionError);
    const int blanks = insert("LOPAST", {{"TIP_VS", "Ми-8МТВ-1 "}, {"GDE_STOIT", "RA-22451  "}, {"NARABOTKA_PPR", "1:00"}});
    EXPECT_EQ(FunNepNarLopast(connection(), row("LOPAST", blanks), 26), "1501:30");
}

TEST_F(CarrierHoursTest, OnlyBladesTakeAnEmptyReadingAsZero) {
    aircraft("RA-22451", "10:00");
    const int blade = insert("LOPAST", {{"TIP_VS", "Ми-8МТВ-1"},
                                        {"GDE_STOIT", "RA-22451"},
                                        {"NARABOTKA_VS_PRI_USTANOVKE", ""},
                                        {"NARABOTKA_PPR", "1:00"}});
    EXPECT_EQ(FunNepNarLopast(connection(), row("LOPAST", blade), 26), "11:00");
    const int zcu = insert("ZCU", {{"TIP_VS", "Ми-8МТВ-1"},
                                   {"GDE_STOIT", "RA-22451"},
                                   {"NARABOTKA_VS_PRI_USTANOVKE", ""},
                                   {"NARABOTKA_SNE", "1:00"}});
    EXPECT_THROW(FunNepNarZCU(connection(), row("ZCU", zcu), 11), ConversionError);
}

TEST_F(CarrierHoursTest, GeneralComponentsFollowTheirCounterAndCarrier) {
    aircraft("RA-22451", "1500:30", 1000);
    insert("DVIGATEL",
           {{"GDE_STOIT", "Ремонт"}, {"ZAVODSKOI_NOMER", "E-1"}, {"NARABOTKA_PPR", "800:00"}, {"CICLI_PPR", 500}});
    const struct {
        const char* what;
        db::Value counts, carrier;
        const char* location;
        const char* engine;
        const char* reading;
        const char* own;
        const char* expected;
    } cases[] = {
        {"hours on the airframe", 0, 0, "RA-22451", nullptr, "1400:30", "5:00", "105:00"},
        {"landings on the airframe", 1, 0, "RA-22451", nullptr, "900", "10", "110"},
        {"landings below zero", 1, 0, "RA-22451", nullptr, "1200", "10", "0"},
        {"hours on an engine in repair", 0, 1, "Ремонт", "E-1", "700:00", "50:00", "150:00"},
        {"cycles on an engine in repair", 1, 1, "Ремонт", "E-1", "450", "20", "70"},
        {"an engine that is not found", 0, 1, "Ремонт", "E-2", "700:00", "50:00", "50:00"},
        {"counted in something else", 2, 0, "RA-22451", nullptr, "0:00", "5:00", ""},
        {"carried by an APU", 0, 2, "RA-22451", nullptr, "0:00", "5:00", ""},
        {"no counter kind", db::Value(), 0, "RA-22451", nullptr, "0:00", "5:00", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const int id = insert("AGREGAT", {{"TIP_VS", "Ми-8МТВ-1"},
                                          {"GDE_STOIT", c.location},
                                          {"EDINICA_NARABOTKI", c.counts},
                                          {"PLAN_DVIG_VSU", c.carrier},
                                          {"NUMER_DVIG_VSU", c.engine ? db::Value(c.engine) : db::Value()},
                                          {"NARABOTKA_VS_PRI_USTANOVKE", c.reading},
                                          {"NARABOTKA_SNE", c.own}});
        EXPECT_EQ(FunNepNarAgr(connection(), row("AGREGAT", id), 17), c.expected);
    }
}

}  // namespace
}  // namespace mxbook
