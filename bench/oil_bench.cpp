// The oil time of every oil-filled unit of the ten-year fleet, and its floor:
// the select of the units, plus per unit the statements the oil time runs for
// it (the register row, the one-row flight test, the engine of an
// engine-mounted component, the flights, the ground setting, the APU's name),
// each prepared once, executed bare with the same values.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "aircraft_facts.h"
#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/format.h"
#include "mxbook/oil.h"

namespace mxbook::bench {

namespace {

const Date changedHalfYearAgo = benchmarkToday.addDays(-180);

std::string dateParam(Date date) { return formatDate(date, "yyyy-mm-dd"); }

// Where one unit's oil time comes from, as the floor needs it to pick its statements.
struct Source {
    std::string tail;
    std::optional<Date> start;
    Date end = benchmarkToday;
    std::string columns;            // of the flight records, in select order
    std::string groundColumns = {};  // the type's switch and weight; empty: no ground time
    std::optional<std::string> aircraftType = {};  // whose setting; none: the registered type
};

// The floor's work: the statement texts, each prepared once, and per unit
// which of them runs with which values, decided before anything is timed.
class Plan {
public:
    explicit Plan(db::Connection& connection) : connection_(connection) {}

    void add(const std::string& sql, std::vector<std::string> params) {
        const auto [found, added] = indexes_.try_emplace(sql, static_cast<int>(texts_.size()));
        if (added) texts_.push_back(sql);
        queries_.push_back({found->second, std::move(params)});
    }

    // The statements the oil time runs for `source`, in its order.
    void oil(const Source& source) {
        add("Select TIP_VS, DATA_REMONTA From REESTR Where BORTOVOI_NOMER=? Order By ID", {source.tail});
        const AircraftFacts& aircraft = aircraftOf(source.tail);
        if (!aircraft.registered) return;
        if (aircraft.repaired)
            add("Select First 1 ID From Spravka Where Bortovoi_nomer=? And Data_poleta>=?",
                {source.tail, dateParam(*aircraft.repaired)});
        else
            add("Select First 1 ID From Spravka Where Bortovoi_nomer=?", {source.tail});
        if (!aircraft.flewSinceRepair) return;
        std::vector<std::string> params{source.tail};
        if (source.start) params.push_back(dateParam(*source.start));
        params.push_back(dateParam(source.end));
        add("SELECT " + source.columns + " FROM Spravka WHERE Bortovoi_nomer=? AND " +
                (source.start ? "Data_poleta Between ? And ?" : "Data_poleta <= ?") + " ORDER BY Data_poleta, ID",
            std::move(params));
        if (!source.groundColumns.empty())
            add("Select " + source.groundColumns + " From TIPOVYE_DANNYE_VS Where TIP_VS=? Order By ID",
                {source.aircraftType.value_or(aircraft.type)});
    }

    // Read through the library, untimed, to decide the floor's statements.
    db::DataSet query(const std::string& sql, const std::vector<std::pair<std::string, db::Value>>& params) {
        db::DataSet rows(connection_, sql, db::DataSet::Traversal::forwardOnly);
        for (const auto& [name, value] : params) rows.setParam(name, value);
        rows.open();
        return rows;
    }

    struct Query {
        int statement;
        std::vector<std::string> params;
    };
    const std::vector<std::string>& texts() const { return texts_; }
    const std::vector<Query>& queries() const { return queries_; }

private:
    const AircraftFacts& aircraftOf(const std::string& tail) { return aircraft_.of(tail); }

    db::Connection& connection_;
    std::vector<std::string> texts_;
    std::map<std::string, int> indexes_;
    std::vector<Query> queries_;
    AircraftFactsCache aircraft_{connection_};
};

constexpr const char* airframeGround = "ZEMLIA_AGREGATY, KOL_VO_ZEMLIA_AGREGATY";

// A unit row's oil: airframe time from the later of its oil change and its installation.
Source rowSource(const db::DataSet& row, int tailColumn, int changed, int installed) {
    return {.tail = row.field(tailColumn).asText(),
            .start = later(dateOf(row, changed), dateOf(row, installed)),
            .columns = "V_VOZDUHE, NA_ZEMLE",
            .groundColumns = airframeGround,
            .aircraftType = row.field(1).asText()};
}

std::string engineColumns(int position) {
    const std::string n = std::to_string(position >= 0 && position <= 2 ? position + 1 : 1);
    return "V_VOZDUHE_" + n + ", NA_ZEMLE_" + n;
}

// AGREGAT: 21 stored, 22 changed, 26 installed, 27 the aircraft, 28 the
// carrier (0 airframe, 1 engine; null counts as 0), 29 the engine's serial.
void componentPlan(Plan& plan, db::DataSet& row) {
    Source source = rowSource(row, 27, 22, 26);
    const int carrier = row.field(28).isNull() ? 0 : row.field(28).asInt();
    if (carrier != 0 && carrier != 1) return;
    if (carrier == 1) {
        const db::Field serial = row.field(29);
        plan.add("Select ODIN_DVA From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ODIN_DVA, ID",
                 {source.tail, serial.isNull() ? "" : serial.asText()});
        db::DataSet engine = plan.query(
            "select ODIN_DVA from DVIGATEL where GDE_STOIT = :pTAIL and ZAVODSKOI_NOMER = :pSERIAL order by ODIN_DVA, ID",
            {{"pTAIL", source.tail}, {"pSERIAL", serial.value()}});
        source.columns = engineColumns(engine.eof() || engine.field(0).isNull() ? 0 : engine.field(0).asInt());
        source.groundColumns = "ZEMLIA_AGR_DVIG, KOL_VO_ZEMLIA_AGR_DVIG";
    }
    plan.oil(source);
}

// Units that start counting at a change date given for the aircraft.
Source sinceChange(const std::string& tail, Date changeDate, std::string columns, std::string groundColumns = {}) {
    return {.tail = tail, .start = changeDate, .columns = std::move(columns), .groundColumns = std::move(groundColumns)};
}

Date apuChangeDate(const db::DataSet& aircraft) { return dateOf(aircraft, 1).value_or(changedHalfYearAgo); }

struct Case {
    std::string name;
    std::string units;  // the select the units are walked with
    std::function<void(db::Connection&, db::DataSet&)> call;
    std::function<void(Plan&, db::DataSet&)> plan;
};

std::vector<Case> cases() {
    constexpr const char* aircraft = "select BORTOVOI_NOMER from REESTR order by ID";
    // Each aircraft with its APU's oil change, if it has one.
    constexpr const char* aircraftWithApu =
        "select R.BORTOVOI_NOMER, (select first 1 V.DATA_ZAMENY_MASLO from VSU V where V.MESTO_USTANOVKI = "
        "R.BORTOVOI_NOMER order by V.ID) from REESTR R order by R.ID";
    return {
        {"FunNarMasloAgregat/AGREGAT",
         "select * from AGREGAT where UCHET_MASLA = 1 and GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNarMasloAgregat(c, r, r.field(27).asText(), benchmarkToday); },
         componentPlan},
        // Both oil blocks of each hub.
        {"FunNarMasloVtNV/VTULKA_NV", "select * from VTULKA_NV where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) {
             FunNarMasloVtNV(c, r, r.field(27).asText(), 21, 22, benchmarkToday);
             FunNarMasloVtNV(c, r, r.field(27).asText(), 43, 44, benchmarkToday);
         },
         [](Plan& plan, db::DataSet& r) {
             plan.oil(rowSource(r, 27, 22, 26));
             plan.oil(rowSource(r, 27, 44, 26));
         }},
        {"FunNarMasloHvostVint/HVOSTOVOY_VINT",
         "select * from HVOSTOVOY_VINT where GDE_STOIT in (select BORTOVOI_NOMER from REESTR)",
         [](db::Connection& c, db::DataSet& r) { FunNarMasloHvostVint(c, r, r.field(14).asText(), benchmarkToday); },
         [](Plan& plan, db::DataSet& r) { plan.oil(rowSource(r, 14, 40, 17)); }},
        {"FunNarMaslo/ZEMLIA_REDUCTOR", aircraft,
         [](db::Connection& c, db::DataSet& r) {
             FunNarMaslo(c, r.field(0).asText(), "ZEMLIA_REDUCTOR", changedHalfYearAgo, 0);
         },
         [](Plan& plan, db::DataSet& r) {
             plan.oil(sinceChange(r.field(0).asText(), changedHalfYearAgo, "V_VOZDUHE_RED, NA_ZEMLE_RED",
                                  "ZEMLIA_REDUCTOR, KOL_VO_ZEMLIA_REDUCTOR"));
         }},
        {"FunNarMaslo/ZEMLIA_DVIGATEL", aircraft,
         [](db::Connection& c, db::DataSet& r) {
             FunNarMaslo(c, r.field(0).asText(), "ZEMLIA_DVIGATEL", changedHalfYearAgo, 0);
         },
         [](Plan& plan, db::DataSet& r) {
             plan.oil(sinceChange(r.field(0).asText(), changedHalfYearAgo, engineColumns(0),
                                  "ZEMLIA_DVIGATEL, KOL_VO_ZEMLIA_DVIGATEL"));
         }},
        {"FunNarMasloVSUChas/REESTR", aircraftWithApu,
         [](db::Connection& c, db::DataSet& r) { FunNarMasloVSUChas(c, r.field(0).asText(), apuChangeDate(r)); },
         [](Plan& plan, db::DataSet& r) {
             const std::string tail = r.field(0).asText();
             plan.add("Select NAZVANIE From VSU Where MESTO_USTANOVKI=? Order By ID", {tail});
             db::DataSet apu =
                 plan.query("select NAZVANIE from VSU where MESTO_USTANOVKI = :pTAIL order by ID", {{"pTAIL", tail}});
             const bool withGenerator = !apu.eof() && apu.field(0).asText().find("ТА-14-130") != std::string::npos;
             plan.oil(sinceChange(tail, apuChangeDate(r),
                                  withGenerator ? "VSU_POLNOE_VREMYA, VSU_V_GENERATORNOM" : "VSU_POLNOE_VREMYA"));
         }},
        {"FunNarMasloVSUZapusk/REESTR", aircraftWithApu,
         [](db::Connection& c, db::DataSet& r) { FunNarMasloVSUZapusk(c, r.field(0).asText(), apuChangeDate(r)); },
         [](Plan& plan, db::DataSet& r) {
             plan.oil(sinceChange(r.field(0).asText(), apuChangeDate(r), "VSU_KOL_VO_ZAPUSKOV"));
         }},
    };
}

std::shared_ptr<const Plan> planFor(db::Connection& connection, const Case& c) {
    auto plan = std::make_shared<Plan>(connection);
    db::DataSet units(connection, c.units, db::DataSet::Traversal::forwardOnly);
    for (units.open(); !units.eof(); units.next()) c.plan(*plan, units);
    return plan;
}

}  // namespace

void registerOil(Fleet& fleet) {
    for (const Case& c : cases()) {
        benchmark::RegisterBenchmark(c.name.c_str(), [&fleet, c](benchmark::State& state) {
            for (auto _ : state) {
                db::DataSet units(fleet.connection, c.units, db::DataSet::Traversal::forwardOnly);
                int count = 0;
                for (units.open(); !units.eof(); units.next(), ++count) c.call(fleet.connection, units);
                benchmark::DoNotOptimize(count);
            }
        })->Unit(benchmark::kMillisecond);
        auto plan = planFor(fleet.connection, c);
        benchmark::RegisterBenchmark((c.name + "/floor").c_str(), [&fleet, c, plan](benchmark::State& state) {
            RawDatabase::Statement units(fleet.raw, c.units);
            std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
            for (const std::string& sql : plan->texts())
                statements.push_back(std::make_unique<RawDatabase::Statement>(fleet.raw, sql));
            for (auto _ : state) {
                int rows = units.run();
                for (const Plan::Query& q : plan->queries())
                    rows += statements[static_cast<std::size_t>(q.statement)]->run(q.params);
                benchmark::DoNotOptimize(rows);
            }
            state.counters["statements"] = static_cast<double>(plan->queries().size());
        })->Unit(benchmark::kMillisecond);
    }
}

}  // namespace mxbook::bench
