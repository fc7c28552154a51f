// Each remaining-life function over every unit of its kind, and its floor:
// the select of the units and the carrier queries the function must run for
// them, prepared once, executed bare.
#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

#include "benchmarks.h"
#include "mxbook/data.h"
#include "mxbook/format.h"
#include "mxbook/remaining_life.h"

namespace mxbook::bench {

namespace {

// One carrier query the function runs for a unit: which statement, with which values.
struct Query {
    int statement;
    std::vector<std::string> params;
};

constexpr const char* floorStatements[] = {
    "Select NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR Where TIP_VS=? And BORTOVOI_NOMER=? Order By ID",
    "Select NARABOTKA_PPR, CICLI_PPR From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ID",
    "Select OBSHAIA_PPR, ZAPUSKI_PPR, OTBORY_PPR, NAZVANIE, SUMMA_PPR From VSU Where ZAVODSKOY_NOMER=? Order By ID",
    "Select NARABOTKA_PPR, ZAPUSKI_PPR From DVIGATEL Where ZAVODSKOI_NOMER=? Order By ID",
};
// The aircraft's counters serve the derivations and the removal plans alike.
enum { registerCounters, engineRow, apuCounters, engineCounters };

struct Case {
    std::string name;
    std::string table;  // with the condition that picks the units the function applies to
    std::function<void(db::Connection&, db::DataSet&)> call;
    // The carrier queries the call runs for the current row.
    std::function<void(db::DataSet&, std::vector<Query>&)> plan;
};

bool onEngine(db::DataSet& row) { return !row.field(28).isNull() && row.field(28).asInt() == 1; }

// What a general component's derivation queries: the register or its engine.
void componentQuery(db::DataSet& row, std::vector<Query>& queries) {
    if (row.field(24).isNull() || row.field(28).isNull()) return;
    if (onEngine(row))
        queries.push_back({engineRow, {row.field(27).asText(), row.field(29).asText()}});
    else if (row.field(28).asInt() == 0)
        queries.push_back({registerCounters, {row.field(1).asText(), row.field(27).asText()}});
}

std::function<void(db::DataSet&, std::vector<Query>&)> registerQuery(int statement, int location) {
    return [statement, location](db::DataSet& row, std::vector<Query>& queries) {
        queries.push_back({statement, {row.field(1).asText(), row.field(location).asText()}});
    };
}

// A general component's removal plan: the register row of its aircraft, then,
// where its governing limit and used hours are booked and its flag is 1, the
// derivation's carrier query.
void planningQueries(db::DataSet& row, std::vector<Query>& queries) {
    queries.push_back({registerCounters, {row.field(1).asText(), row.field(27).asText()}});
    const bool firstOverhaul = (row.field(10).isNull() || row.field(10).asInt() == 0) && !row.field(43).isNull();
    int limit = firstOverhaul ? 43 : 14;
    if (row.field(limit).isNull()) limit = 12;
    const bool flagged = !row.field(39).isNull() && row.field(39).asInt() == 1;
    const bool counted = !row.field(24).isNull() && (row.field(24).asInt() == 0 || row.field(24).asInt() == 1);
    if (!row.field(limit).isNull() && !row.field(18).isNull() && counted && flagged) componentQuery(row, queries);
}

std::vector<Case> cases() {
    const auto none = [](db::DataSet&, std::vector<Query>&) {};
    return {
        {"FunNepNarAgr/AGREGAT", "AGREGAT where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarAgr(c, r, 17); }, componentQuery},
        {"FunNepNarLopast/LOPAST", "LOPAST where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarLopast(c, r, 26); }, registerQuery(registerCounters, 2)},
        {"FunNepNarZCU/ZCU", "ZCU where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarZCU(c, r, 11); }, registerQuery(registerCounters, 2)},
        {"FunNepNarShlang/SHLANG", "SHLANG where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarShlang(c, r); }, registerQuery(registerCounters, 2)},
        {"FunNepNarHvostVint/HVOSTOVOY_VINT", "HVOSTOVOY_VINT where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarHvostVint(c, r, 29); }, registerQuery(registerCounters, 14)},
        {"FunNepNarLebedka/LEBEDKA", "LEBEDKA where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNepNarLebedka(c, r, 27); }, registerQuery(registerCounters, 14)},
        {"FunOstatChas/AGREGAT", "AGREGAT where EDINICA_NARABOTKI = 0",
         [](db::Connection&, db::DataSet& r) { FunOstatChas(r, 12, 17); },
         [](db::DataSet& row, std::vector<Query>& queries) {
             const bool flagged = !row.field(39).isNull() && row.field(39).asInt() == 1;
             const bool on = !isOffAircraft(row.field(27).asText()) || (onEngine(row) && !row.field(29).isNull());
             if (flagged && on && !row.field(12).isNull() && !row.field(17).isNull()) componentQuery(row, queries);
         }},
        {"FunPPRPlanDliaSniat/AGREGAT", "AGREGAT where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunPPRPlanDliaSniat(c, r, r.field(1).asText(), r.field(27).asText()); },
         planningQueries},
        // The APU-unit report's hours: derived from the APU.
        {"FunOstatChasAgrVSU/AGR_VSU", "AGR_VSU",
         [](db::Connection&, db::DataSet& r) { FunOstatChasAgrVSU(r, r.field(42).asText(), 19, 30, -1); },
         [](db::DataSet& row, std::vector<Query>& queries) {
             if (!row.field(19).isNull() && !row.field(30).isNull())
                 queries.push_back({apuCounters, {row.field(42).asText()}});
         }},
        // Hours or starts, as each unit counts.
        {"FunPerNarAgrDvig/AGREGAT",
         "AGREGAT where PLAN_DVIG_VSU = 1 and NUMER_DVIG_VSU is not null and EDINICA_NARABOTKI in (0, 1)",
         [](db::Connection& c, db::DataSet& r) { FunPerNarAgrDvig(c, r, r.field(29).asText(), 17, r.field(24).asInt()); },
         [](db::DataSet& row, std::vector<Query>& queries) {
             queries.push_back({engineCounters, {row.field(29).asText()}});
         }},
        {"FunOstatLet/AGREGAT", "AGREGAT", [](db::Connection&, db::DataSet& r) { FunOstatLet(r, 13, 6); }, none},
        {"FunNarabLet/AGREGAT", "AGREGAT", [](db::Connection&, db::DataSet& r) { FunNarabLet(r, 6); }, none},
        {"FunDataSniatia/AGREGAT", "AGREGAT",
         [](db::Connection&, db::DataSet& r) { FunDataSniatia(r, 9, 10, 6, 13, 13); }, none},
    };
}

// The queries every unit needs, gathered once before the floor is timed.
std::vector<Query> planFor(db::Connection& connection, const Case& c) {
    std::vector<Query> queries;
    db::DataSet units(connection, "select * from " + c.table);
    for (units.open(); !units.eof(); units.next()) c.plan(units, queries);
    return queries;
}

}  // namespace

void registerRemainingLife(Fleet& fleet) {
    for (const Case& c : cases()) {
        benchmark::RegisterBenchmark(c.name.c_str(), [&fleet, c](benchmark::State& state) {
            for (auto _ : state) {
                // Each unit is read once, as a report walks them.
                db::DataSet units(fleet.connection, "select * from " + c.table, db::DataSet::Traversal::forwardOnly);
                int count = 0;
                for (units.open(); !units.eof(); units.next(), ++count) c.call(fleet.connection, units);
                benchmark::DoNotOptimize(count);
            }
        })->Unit(benchmark::kMillisecond);
        auto queries = std::make_shared<std::vector<Query>>(planFor(fleet.connection, c));
        benchmark::RegisterBenchmark((c.name + "/floor").c_str(), [&fleet, c, queries](benchmark::State& state) {
            RawDatabase::Statement units(fleet.raw, "select * from " + c.table);
            std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
            for (const char* sql : floorStatements)
                statements.push_back(std::make_unique<RawDatabase::Statement>(fleet.raw, sql));
            for (auto _ : state) {
                int rows = units.run();
                for (const Query& q : *queries)
                    rows += statements[static_cast<std::size_t>(q.statement)]->run(q.params);
                benchmark::DoNotOptimize(rows);
            }
        })->Unit(benchmark::kMillisecond);
    }
}

}  // namespace mxbook::bench
