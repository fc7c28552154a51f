// 1,000 components of the ten-year fleet taken off their aircraft and put
// back, both back-dated 30 days, in a unit of work that is rolled back; and
// the floor: the statements the two moves run for each, prepared once,
// executed bare.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/format.h"
#include "mxbook/movements.h"

namespace mxbook::bench {

namespace {

constexpr int components = 1000;
constexpr const char* componentsSql =
    "select first 1000 ID, GDE_STOIT, ID_NAME from AGREGAT where PLAN_DVIG_VSU = 0 and EDINICA_NARABOTKI = 0 and "
    "GDE_STOIT in (select BORTOVOI_NOMER from REESTR) order by ID";

struct Component {
    int id;
    std::string tail;
    std::string type;
    std::string referenceKey;
    // The aircraft flew on the move day: each move asks about that day (and
    // looks up the unit's reference entry for the question), and one of the
    // two, by the answer, reads the flights again from the next day.
    bool flewOnMoveDay = false;
};

const Date moveDate = benchmarkToday.addDays(-30);

std::vector<Component> componentsOf(Fleet& fleet) {
    std::vector<Component> found;
    db::DataSet rows(fleet.connection, componentsSql);
    for (rows.open(); !rows.eof(); rows.next()) {
        db::DataSet aircraft(fleet.connection,
                             "select first 1 TIP_VS, DATA_REMONTA from REESTR where BORTOVOI_NOMER = :pTAIL order by ID");
        aircraft.setParam("pTAIL", rows.field(1).asText());
        aircraft.open();
        const Date overhauled = aircraft.field(1).isNull() ? Date() : aircraft.field(1).asDate();
        db::DataSet firstFlight(fleet.connection,
                                "select first 1 Data_poleta from Spravka where Data_poleta between :pSTART and "
                                ":pTODAY and Bortovoi_nomer = :pTAIL order by Data_poleta, ID");
        firstFlight.setParam("pSTART", std::max(moveDate, overhauled));
        firstFlight.setParam("pTODAY", benchmarkToday);
        firstFlight.setParam("pTAIL", rows.field(1).asText());
        firstFlight.open();
        found.push_back({rows.field(0).asInt(), rows.field(1).asText(), aircraft.field(0).asText(),
                         rows.field(2).isNull() ? "0" : rows.field(2).asText(),
                         !firstFlight.eof() && firstFlight.field(0).asDate() == moveDate});
    }
    return found;
}

void moves(benchmark::State& state, Fleet& fleet) {
    const std::vector<Component> all = componentsOf(fleet);
    for (auto _ : state) {
        db::UnitOfWork work(fleet.connection);
        for (const Component& component : all) {
            db::DataSet row(fleet.connection, "select * from AGREGAT where ID = :pID");
            row.setParam("pID", component.id);
            row.open();
            FunMoveAgregatFromVS(fleet.connection, row, component.type, component.tail, moveDate);
            FunMoveAgregatToVS(fleet.connection, row, component.tail, moveDate);
            row.post();
            row.updateBatch();
        }
        work.rollback();
    }
    state.counters["components"] = static_cast<double>(all.size());
}

void movesFloor(benchmark::State& state, Fleet& fleet) {
    const std::vector<Component> all = componentsOf(fleet);
    RawDatabase::Statement unit(fleet.raw, "select * from AGREGAT where ID = ?");
    RawDatabase::Statement overhaul(fleet.raw, "SELECT DATA_REMONTA FROM Reestr WHERE Bortovoi_nomer=? ORDER BY ID");
    RawDatabase::Statement aircraft(fleet.raw,
                                    "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA, NARABOTKA_PPR_CHASOV, "
                                    "NARABOTKA_PPR_POSADKI From REESTR Where ((Bortovoi_nomer)=?) Order By ID");
    RawDatabase::Statement flights(fleet.raw,
                                   "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, "
                                   "Kol_vo_posadok FROM Spravka WHERE (((Spravka.Data_poleta) BETWEEN ? AND ?) AND "
                                   "((Spravka.Bortovoi_nomer)=?)) ORDER BY Data_poleta, ID");
    RawDatabase::Statement ground(fleet.raw,
                                  "Select ZEMLIA_AGREGATY, KOL_VO_ZEMLIA_AGREGATY From TIPOVYE_DANNYE_VS "
                                  "Where TIP_VS=? Order By ID");
    RawDatabase::Statement reference(fleet.raw, "Select * From ETAAGREGAT Where ID_NAME=? Order By ID");
    // The unit's new counters.
    RawDatabase::Statement store(fleet.raw,
                                 "update AGREGAT set NARABOTKA_VS_PRI_USTANOVKE = ?, NARABOTKA_SNE = ?, "
                                 "NARABOTKA_PPR = ? where ID = ?");
    const std::string from = formatDate(moveDate, "yyyy-mm-dd"), to = formatDate(benchmarkToday, "yyyy-mm-dd");
    for (auto _ : state) {
        fleet.raw.beginWrite();
        for (const Component& component : all) {
            unit.run({std::to_string(component.id)});
            overhaul.run({component.tail});
            flights.run({from, to, component.tail});
            ground.run({component.type});
            aircraft.run({component.tail});
            ground.run({component.type});
            flights.run({from, to, component.tail});
            if (component.flewOnMoveDay) {
                reference.run({component.referenceKey});
                reference.run({component.referenceKey});
                flights.run({from, to, component.tail});
            }
            store.execute({"0:00", "0:00", "0:00", std::to_string(component.id)});
        }
        fleet.raw.rollbackWrite();
    }
}

}  // namespace

void registerMoves(Fleet& fleet) {
    benchmark::RegisterBenchmark("Moves1000Components", [&fleet](benchmark::State& s) { moves(s, fleet); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Moves1000Components/floor", [&fleet](benchmark::State& s) { movesFloor(s, fleet); })
        ->Unit(benchmark::kMillisecond);
}

}  // namespace mxbook::bench
