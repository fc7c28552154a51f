// 1,000 components of the ten-year fleet taken off their aircraft and put
// back, both back-dated 30 days, in a unit of work that is rolled back; and
// the floor: the statements the two moves run for each, prepared once,
// executed bare, with the values the library's own moves wrote.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/format.h"
#include "mxbook/movements.h"
#include "row_update.h"

namespace mxbook::bench {

namespace {

constexpr int components = 1000;
constexpr const char* componentsSql =
    "select first 1000 ID, GDE_STOIT, ID_NAME from AGREGAT where PLAN_DVIG_VSU = 0 and EDINICA_NARABOTKI = 0 and "
    "GDE_STOIT in (select BORTOVOI_NOMER from REESTR) order by ID";

struct Component {
    int id = 0;
    std::string tail;
    std::string type;
    // Where the aircraft flew since the move date, both moves read the
    // ground setting; where its first flight is on the move day, each asks
    // about that day and, for the question, looks up the unit's reference
    // entry, if it has one. The flights are read once per move either way.
    bool flew = false;
    bool flewOnMoveDay = false;
    std::optional<std::string> referenceKey;
    // The library's update of the row, and its values.
    std::string update;
    std::vector<Param> values;
};

const Date moveDate = benchmarkToday.addDays(-30);

void moveAndBack(db::Connection& connection, int id, const std::string& type, const std::string& tail) {
    db::DataSet row(connection, "select * from AGREGAT where ID = :pID");
    row.setParam("pID", id);
    row.open();
    FunMoveAgregatFromVS(connection, row, type, tail, moveDate);
    FunMoveAgregatToVS(connection, row, tail, moveDate);
    row.post();
    row.updateBatch();
}

// The components, with what the floor runs for each: decided through the
// library, the moves run once in a unit of work rolled back.
std::vector<Component> componentsOf(Fleet& fleet) {
    std::vector<Component> found;
    db::UnitOfWork work(fleet.connection);
    db::DataSet rows(fleet.connection, componentsSql);
    for (rows.open(); !rows.eof(); rows.next()) {
        Component component;
        component.id = rows.field(0).asInt();
        component.tail = rows.field(1).asText();
        db::DataSet aircraft(
            fleet.connection,
            "select first 1 TIP_VS, DATA_REMONTA from REESTR where BORTOVOI_NOMER = :pTAIL order by ID");
        aircraft.setParam("pTAIL", component.tail);
        aircraft.open();
        component.type = aircraft.field(0).asText();
        const Date overhauled = aircraft.field(1).isNull() ? Date() : aircraft.field(1).asDate();
        db::DataSet firstFlight(fleet.connection,
                                "select first 1 Data_poleta from Spravka where Data_poleta between :pSTART and "
                                ":pTODAY and Bortovoi_nomer = :pTAIL order by Data_poleta, ID");
        firstFlight.setParam("pSTART", std::max(moveDate, overhauled));
        firstFlight.setParam("pTODAY", benchmarkToday);
        firstFlight.setParam("pTAIL", component.tail);
        firstFlight.open();
        component.flew = !firstFlight.eof();
        component.flewOnMoveDay = component.flew && firstFlight.field(0).asDate() == moveDate;
        if (!rows.field(2).isNull()) component.referenceKey = rows.field(2).asText();

        db::DataSet before(fleet.connection, "select * from AGREGAT where ID = :pID");
        before.setParam("pID", component.id);
        before.open();
        // The reading at installation; the counters and oil time (where
        // booked) when flights were carried.
        std::vector<int> columns{16};
        if (component.flew) {
            columns.insert(columns.end(), {17, 18});
            if (!before.field(21).isNull() && !before.field(21).asText().empty() && !before.field(22).isNull())
                columns.push_back(21);
        }
        moveAndBack(fleet.connection, component.id, component.type, component.tail);
        db::DataSet after(fleet.connection, "select * from AGREGAT where ID = :pID");
        after.setParam("pID", component.id);
        after.open();
        std::tie(component.update, component.values) = rowUpdate("AGREGAT", columns, snapshot(before), snapshot(after));
        found.push_back(std::move(component));
    }
    work.rollback();
    return found;
}

void moves(benchmark::State& state, Fleet& fleet) {
    const std::vector<Component> all = componentsOf(fleet);
    for (auto _ : state) {
        db::UnitOfWork work(fleet.connection);
        for (const Component& component : all)
            moveAndBack(fleet.connection, component.id, component.type, component.tail);
        work.rollback();
    }
    state.counters["components"] = static_cast<double>(all.size());
}

void movesFloor(benchmark::State& state, Fleet& fleet) {
    const std::vector<Component> all = componentsOf(fleet);
    RawDatabase::Statement unit(fleet.raw, "select * from AGREGAT where ID = ?");
    RawDatabase::Statement overhaul(fleet.raw, "SELECT DATA_REMONTA FROM Reestr WHERE Bortovoi_nomer=? ORDER BY ID;");
    RawDatabase::Statement aircraft(fleet.raw,
                                    "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA, NARABOTKA_PPR_CHASOV, "
                                    "NARABOTKA_PPR_POSADKI From REESTR Where ((Bortovoi_nomer)=?) Order By ID;");
    RawDatabase::Statement flights(fleet.raw,
                                   "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, "
                                   "Kol_vo_posadok FROM Spravka WHERE (((Spravka.Data_poleta) BETWEEN ? AND ?) AND "
                                   "((Spravka.Bortovoi_nomer)=?)) ORDER BY Data_poleta, ID;");
    RawDatabase::Statement ground(fleet.raw,
                                  "Select ZEMLIA_AGREGATY, KOL_VO_ZEMLIA_AGREGATY From TIPOVYE_DANNYE_VS "
                                  "Where TIP_VS=? Order By ID;");
    RawDatabase::Statement reference(fleet.raw, "Select * From ETAAGREGAT Where ID_NAME=? Order By ID;");
    // The library's updates of the rows: one or two texts.
    std::map<std::string, std::unique_ptr<RawDatabase::Statement>> updates;
    for (const Component& component : all)
        if (!updates.contains(component.update))
            updates.emplace(component.update, std::make_unique<RawDatabase::Statement>(fleet.raw, component.update));
    const std::string from = formatDate(moveDate, "yyyy-mm-dd"), to = formatDate(benchmarkToday, "yyyy-mm-dd");
    // Each move: the register, the flights, the ground setting where there
    // were flights, the reference entry where the question is asked.
    const auto move = [&](RawDatabase::Statement& registerRow, const Component& component) {
        registerRow.run({component.tail}, 1);
        flights.run({from, to, component.tail});
        if (component.flew) ground.run({component.type}, 1);
        if (component.flewOnMoveDay && component.referenceKey) reference.run({*component.referenceKey}, 1);
    };
    for (auto _ : state) {
        fleet.raw.beginWrite();
        for (const Component& component : all) {
            unit.run({std::to_string(component.id)});
            move(overhaul, component);
            move(aircraft, component);
            updates.at(component.update)->executeNullable(component.values);
        }
        fleet.raw.rollbackWrite();
    }
}

}  // namespace

void registerMoves(Fleet& fleet) {
    benchmark::RegisterBenchmark("Moves1000Components", [&fleet](benchmark::State& s) {
        moves(s, fleet);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Moves1000Components/floor", [&fleet](benchmark::State& s) {
        movesFloor(s, fleet);
    })->Unit(benchmark::kMillisecond);
}

}  // namespace mxbook::bench
