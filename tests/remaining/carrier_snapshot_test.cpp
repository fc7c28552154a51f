// The carrier snapshot gives every derivation what its queries give: every
// unit of the demo fleet, through every function that reads a carrier, with
// and without a snapshot.
#include <gtest/gtest.h>

#include <functional>

#include "fake_host.h"
#include "mxbook/error.h"
#include "mxbook/fleet.h"
#include "mxbook/remaining_life.h"
#include "mxbook/schema.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using Outputs = std::vector<std::string>;
using Call = std::function<std::string(db::Connection&, db::DataSet&)>;

// What a call gives, an error by its kind.
std::string outcome(const std::function<std::string()>& call) {
    try {
        return call();
    } catch (const ConversionError&) {
        return "ConversionError";
    } catch (const Error&) {
        return "Error";
    }
}

Call planned(const char* table) {
    return [table](db::Connection& c, db::DataSet& r) {
        return plannedRemovalReading(c, r, table, r.field("TIP_VS").asText(), r.field("GDE_STOIT").asText());
    };
}

const std::vector<std::pair<std::string, std::vector<Call>>>& calls() {
    static const std::vector<std::pair<std::string, std::vector<Call>>> all{
        {"AGREGAT",
         {[](auto& c, auto& r) { return FunNepNarAgr(c, r, 17); },
          [](auto& c, auto& r) { return FunNepNarAgr(c, r, 18); },
          [](auto&, auto& r) { return FunOstatChas(r, 14, 18); },
          [](auto&, auto& r) { return FunOstatIntegerMin(r, 12, 17, 14, 18); },
          [](auto& c, auto& r) { return FunPerNarAgrDvig(c, r, r.field(29).asText(), 17, r.field(24).asInt()); },
          planned("AGREGAT")}},
        {"LOPAST", {[](auto& c, auto& r) { return FunNepNarLopast(c, r, 26); }, planned("LOPAST")}},
        {"ZCU", {[](auto& c, auto& r) { return FunNepNarZCU(c, r, 11); }, planned("ZCU")}},
        {"SHLANG", {[](auto& c, auto& r) { return FunNepNarShlang(c, r); }, planned("SHLANG")}},
        {"HVOSTOVOY_VINT", {[](auto& c, auto& r) { return FunNepNarHvostVint(c, r, 29); }, planned("HVOSTOVOY_VINT")}},
        {"LEBEDKA", {[](auto& c, auto& r) { return FunNepNarLebedka(c, r, 27); }, planned("LEBEDKA")}},
        {"VTULKA_NV", {[](auto&, auto& r) { return FunOstatChas(r, 14, 18); }, planned("VTULKA_NV")}},
        {"AGR_VSU",
         {[](auto& c, auto& r) { return FunPerNarAgrVSU(c, r, r.field(42).asText(), 30, 0); },
          [](auto&, auto& r) { return FunOstatChasAgrVSU(r, r.field(42).asText(), 19, 30, 1); },
          [](auto&, auto& r) { return FunOstatIntegerAgrVSU(r, r.field(42).asText(), 20, 31, 1, 1); }}},
        {"DVIGATEL", {planned("DVIGATEL")}},
        {"VOZDUSHNY_VINT", {planned("VOZDUSHNY_VINT")}},
    };
    return all;
}

class CarrierSnapshotTest : public ::testing::Test {
protected:
    void SetUp() override {
        schema::createDatabase(connection_, schema::Database::main, (folder_.path() / "NALET.FDB").string());
        fleet::FleetOptions options = fleet::demoFleet();
        options.today = Date::fromYmd(2024, 3, 15);
        fleet::generateFleet(connection_, options);
        // Locations a query matches as "=" does: trailing blanks aside, case
        // minded; and a second register entry of a tail, which the first hides.
        connection_.execute("update AGREGAT set GDE_STOIT = GDE_STOIT || '  ' where mod(ID, 7) = 1");
        connection_.execute("update AGREGAT set GDE_STOIT = lower(GDE_STOIT) where mod(ID, 7) = 2");
        connection_.execute("update AGREGAT set GDE_STOIT = 'O''Hara' where mod(ID, 7) = 3");
        connection_.execute("update AGREGAT set NUMER_DVIG_VSU = NUMER_DVIG_VSU || ' ' where mod(ID, 5) = 4");
        connection_.execute(
            "insert into REESTR (TIP_VS, BORTOVOI_NOMER, NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI) "
            "select first 1 TIP_VS, BORTOVOI_NOMER, '1:00', 1 from REESTR order by ID");
    }

    Outputs evaluateAll() {
        Outputs outputs;
        for (const auto& [table, tableCalls] : calls()) {
            db::DataSet units(connection_, "select * from " + table + " order by ID",
                              db::DataSet::Traversal::forwardOnly);
            for (units.open(); !units.eof(); units.next())
                for (const Call& call : tableCalls)
                    outputs.push_back(table + ": " + outcome([&] { return call(connection_, units); }));
        }
        return outputs;
    }

    db::Connection connection_;

private:
    ScopedHost installed_{std::make_shared<testing::FakeHost>()};
    testing::TempFolder folder_;
};

TEST_F(CarrierSnapshotTest, EveryUnitGetsWhatItsQueriesGive) {
    const Outputs queried = evaluateAll();
    Outputs snapshot;
    {
        CarrierSnapshot carriers(connection_);
        snapshot = evaluateAll();
    }
    ASSERT_EQ(snapshot.size(), queried.size());
    for (std::size_t i = 0; i < queried.size(); ++i) EXPECT_EQ(snapshot[i], queried[i]) << i;
    // Not a comparison of nothing: most calls give a value, some fail.
    const auto valued = std::count_if(queried.begin(), queried.end(), [](const std::string& output) {
        return !output.ends_with(": ") && !output.ends_with("Error");
    });
    EXPECT_GT(valued, static_cast<long>(queried.size() / 2));
    EXPECT_TRUE(std::any_of(queried.begin(), queried.end(),
                            [](const std::string& output) { return output.ends_with("ConversionError"); }));
}

TEST_F(CarrierSnapshotTest, TheCarriersAreReadOnceForTheSnapshotsLife) {
    db::DataSet unit(connection_, "select * from LOPAST where GDE_STOIT = (select first 1 BORTOVOI_NOMER "
                                  "from REESTR order by ID) and NEPRIAMOI_UCHET_NAR_LOPAST = 1 order by ID");
    unit.open();
    ASSERT_FALSE(unit.eof());
    CarrierSnapshot carriers(connection_);
    const std::string before = FunNepNarLopast(connection_, unit, 26);
    connection_.execute("update REESTR set NARABOTKA_PPR_CHASOV = '99999:00'");
    EXPECT_EQ(FunNepNarLopast(connection_, unit, 26), before);
}

}  // namespace
}  // namespace mxbook
