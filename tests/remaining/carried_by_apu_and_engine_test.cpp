#include <gtest/gtest.h>

#include "mxbook/error.h"
#include "mxbook/remaining_life.h"
#include "remaining_fixture.h"

namespace mxbook {
namespace {

class CarriedUnitsTest : public testing::RemainingLifeTest {
protected:
    // An APU and a unit installed on it when the APU stood at 500:00 hours,
    // 50 starts and 25 bleeds; the unit's own counters are at 30, 31 and 32.
    void apu(const std::string& serial, const std::string& name, db::Value summed, db::Value general,
             db::Value starts = 40, db::Value bleeds = 30) {
        insert("VSU", {{"ZAVODSKOY_NOMER", serial},
                       {"NAZVANIE", name},
                       {"SUMMA_PPR", summed},
                       {"OBSHAIA_PPR", general},
                       {"ZAPUSKI_PPR", starts},
                       {"OTBORY_PPR", bleeds}});
    }
    db::DataSet& apuUnit(db::Value ownHours = "20:30", db::Value ownStarts = 5, db::Value ownBleeds = 2,
                         testing::Columns limits = {}) {
        testing::Columns columns = {{"NARABOTKA_VSU_PRI_USTANOVKE", "500:00"},
                                    {"ZAPUSKI_VSU_PRI_USTANOVKE", 50},
                                    {"OTBORY_VSU_PRI_USTANOVKE", 25},
                                    {"NARABOTKA_SNE", ownHours},
                                    {"ZAPUSKI_SNE", ownStarts},
                                    {"OTBORY_SNE", ownBleeds}};
        columns.insert(columns.end(), limits.begin(), limits.end());
        return row("AGR_VSU", insert("AGR_VSU", columns));
    }
};

TEST_F(CarriedUnitsTest, ApuUnitsFollowTheApu) {
    apu("A-1", "ТА-14-130", "530:45", "900:00");
    apu("A-2", "ВСУ ТА-14-130-08 левая", "530:45", "900:00");
    apu("A-3", "АИ-9В", "900:00", "530:45");
    apu("A-4", "АИ-9В", db::Value(), db::Value(), db::Value());
    apu("A'5", "АИ-9В", db::Value(), "530:45");
    const struct {
        const char* serial;
        int column;
        int kind;
        const char* expected;
    } cases[] = {
        {"A-1", 30, 0, "51:15"},  // 20:30 + 530:45 - 500:00
        {"A-2", 30, 0, "51:15"}, {"A-3", 30, 0, "51:15"}, {"A'5", 30, 0, "51:15"},
        {"A-1", 31, 1, "0"},  // the APU's starts were corrected below the reading: 5 + 40 - 50
        {"A-1", 32, 2, "7"},  // 2 + 30 - 25
        {"A-1", 30, 3, ""},      {"A-4", 30, 0, "00:00"}, {"A-4", 31, 1, "0"},
        {"A-9", 30, 0, "00:00"}, {"A-9", 31, 1, "0"},     {"A-9", 30, 3, "0"},
    };
    db::DataSet& unit = apuUnit();
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.serial) + " kind " + std::to_string(c.kind));
        EXPECT_EQ(FunPerNarAgrVSU(connection(), unit, c.serial, c.column, c.kind), c.expected);
    }
}

// Limits: 100 h at 19, 100 starts at 20, 50 bleeds at 21. The APU ran
// 30:45 h, 6 starts and 5 bleeds since the unit's installation.
TEST_F(CarriedUnitsTest, ApuUnitLimitsCountTheDerivedValueWhereAsked) {
    apu("A-1", "ТА-14-130", "530:45", db::Value(), 56, 30);
    const struct {
        const char* what;
        db::Value ownStarts;
        int derive;
        const char* hours;
        const char* starts;
        const char* bleeds;
    } cases[] = {
        {"derived", 99, -1, "48:45", "0", "35"},  // 100 - 105 starts; 50 - (10 + 5) bleeds
        {"booked", 99, 0, "79:30", "1", "40"},
        {"any flag derives", 94, 1, "48:45", "0", "35"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        db::DataSet& unit =
            apuUnit("20:30", c.ownStarts, 10, {{"NAZN_RESURS", 100}, {"NAZN_ZAPUSKI", 100}, {"NAZN_OTBORY", 50}});
        EXPECT_EQ(FunOstatChasAgrVSU(unit, "A-1", 19, 30, c.derive), c.hours);
        EXPECT_EQ(FunOstatIntegerAgrVSU(unit, "A-1", 20, 31, 1, c.derive), c.starts);
        EXPECT_EQ(FunOstatIntegerAgrVSU(unit, "A-1", 21, 32, 2, c.derive), c.bleeds);
    }
    // The booked 100 starts have reached the limit: nothing is left, though the derived 96 would leave 4.
    insert("VSU", {{"ZAVODSKOY_NOMER", "A-2"}, {"NAZVANIE", "АИ-9В"}, {"ZAPUSKI_PPR", 46}});
    EXPECT_EQ(FunOstatIntegerAgrVSU(apuUnit("20:30", 100, 10, {{"NAZN_ZAPUSKI", 100}}), "A-2", 20, 31, 1, -1), "0");
    EXPECT_EQ(FunOstatChasAgrVSU(apuUnit("20:30", 5, 2, {{"NAZN_RESURS", 50}}), "A-1", 19, 30, -1), "00:00");
}

// The engine stands at 1500:30 hours, 300 starts and 999 cycles.
TEST_F(CarriedUnitsTest, EngineUnitsFollowTheEngineStarts) {
    insert("DVIGATEL",
           {{"ZAVODSKOI_NOMER", "E-1"}, {"NARABOTKA_PPR", "1500:30"}, {"ZAPUSKI_PPR", 300}, {"CICLI_PPR", 999}});
    const struct {
        const char* serial;
        const char* reading;
        const char* own;
        int kind;
        const char* expected;
    } cases[] = {
        {"E-1", "1490:45", "100:00", 0, "109:45"},
        {"E-1", "290", "40", 1, "50"},
        {"E-1", "310", "5", 1, "0"},
        {"E-1", "290", "40", 2, "0"},
        {"E-9", "1490:45", "100:00", 0, "0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.serial) + " " + c.reading);
        db::DataSet& unit =
            row("AGREGAT", insert("AGREGAT", {{"NARABOTKA_VS_PRI_USTANOVKE", c.reading}, {"NARABOTKA_SNE", c.own}}));
        EXPECT_EQ(FunPerNarAgrDvig(connection(), unit, c.serial, 17, c.kind), c.expected);
    }
    db::DataSet& noReading = row("AGREGAT", insert("AGREGAT", {{"NARABOTKA_SNE", "1:00"}}));
    for (int kind : {0, 1}) EXPECT_THROW(FunPerNarAgrDvig(connection(), noReading, "E-1", 17, kind), ConversionError);
}

}  // namespace
}  // namespace mxbook
