// Every engine of the ten-year fleet that stands on an aircraft taken off it
// with its units and put back, all back-dated 30 days, in a unit of work
// rolled back at the end; and the floor: per engine the statements the three
// moves run, each prepared once and executed bare with the same values, the
// same rows fetched.
//
// Which statements an engine needs is decided before anything is timed, by
// reading the engine, its units and its aircraft through the library; the
// values written are those the library's own moves wrote, read back before
// they were rolled back.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/host.h"
#include "mxbook/movements.h"
#include "row_update.h"

namespace mxbook::bench {

namespace {

const Date moveDate = benchmarkToday.addDays(-30);
constexpr const char* store = "Склад";

constexpr const char* enginesSql =
    "select ID, GDE_STOIT, ZAVODSKOI_NOMER from DVIGATEL where GDE_STOIT in (select BORTOVOI_NOMER from REESTR) "
    "order by ID";
constexpr const char* engineSql = "select * from DVIGATEL where ID = :pID";
constexpr const char* unitsSql =
    "SELECT * FROM Agregat WHERE (((Gde_stoit)=:pLOCATION) AND ((PLAN_DVIG_VSU)=1) AND ((Tip_VS)=:pTYPE) AND "
    "((NUMER_DVIG_VSU)=:pSERIAL)) ORDER BY NAZVANIE, ID;";

// Positions in an engine's row (DVIGATEL) and a unit's (AGREGAT).
namespace engine {
constexpr int place = 23;
// The counters a move writes, in column order; the booked ones only when set.
constexpr int counters[] = {11, 12, 25, 26, 27, 28, 31, 39, 42, 43};
constexpr bool onlyWhenBooked(int column) { return column == 25 || column == 26 || column == 28 || column == 39; }
}  // namespace engine
namespace unit {
constexpr int sinceNew = 17, sinceOverhaul = 18, oilTracked = 19, oilTime = 21, oilChanged = 22, installed = 26,
              location = 27, serial = 29, nextCheck = 31, place = 36, indirect = 39;
}  // namespace unit

struct Engine {
    int id;
    std::string tail;
    std::string serial;
    std::string type;
};

void moveAndBack(db::Connection& connection, const Engine& e) {
    db::DataSet row(connection, engineSql);
    row.setParam("pID", e.id);
    row.open();
    row.edit();
    FunDvigatelMoveFromVS(connection, row, e.type, moveDate);
    FunAgregatMoveDvigatel(connection, row, e.type, moveDate, store, 1);
    FunDvigatelMoveToVS(connection, row, e.type, e.tail, moveDate);
    row.post();
    row.updateBatch();
}

std::vector<Engine> enginesOf(db::Connection& connection) {
    std::vector<Engine> found;
    db::DataSet rows(connection, enginesSql, db::DataSet::Traversal::forwardOnly);
    for (rows.open(); !rows.eof(); rows.next()) {
        db::DataSet aircraft(connection, "select first 1 TIP_VS from REESTR where BORTOVOI_NOMER = :pTAIL order by ID");
        aircraft.setParam("pTAIL", rows.field(1).asText());
        aircraft.open();
        found.push_back(
            {rows.field(0).asInt(), rows.field(1).asText(), rows.field(2).asText(), aircraft.field(0).asText()});
    }
    return found;
}

std::optional<Date> dateOf(const db::Field& field) {
    return field.isNull() ? std::nullopt : std::optional(field.asDate());
}

bool isSet(const db::Field& field) { return !field.isNull() && !field.asText().empty(); }
bool flagIs(const db::Field& field, int value) { return !field.isNull() && field.asInt() == value; }

// One statement run for an engine: which text, with which values.
struct Step {
    int statement;
    std::vector<Param> params;
    int rows = -1;  // reads: all rows, or the first only where the library reads one
    bool write = false;
};

// The floor's work: the statement texts, each prepared once, and the steps
// of every engine in the library's order.
class Plan {
public:
    explicit Plan(db::Connection& connection) : connection_(connection) {}

    void read(const std::string& sql, std::vector<Param> params, int rows = -1) {
        steps_.push_back({statement(sql), std::move(params), rows, false});
    }
    // A write, placed among the steps at `at`.
    void write(const std::string& sql, std::vector<Param> params, std::size_t at) {
        const int index = statement(sql);
        steps_.insert(steps_.begin() + static_cast<std::ptrdiff_t>(at), Step{index, std::move(params), -1, true});
    }

    // Read through the library, untimed, to decide the floor's statements.
    db::DataSet query(const std::string& sql, const std::vector<std::pair<std::string, db::Value>>& params) {
        db::DataSet rows(connection_, sql);
        for (const auto& [name, value] : params) rows.setParam(name, value);
        rows.open();
        return rows;
    }

    const std::vector<std::string>& texts() const { return texts_; }
    const std::vector<Step>& steps() const { return steps_; }

private:
    int statement(const std::string& sql) {
        const auto [found, added] = indexes_.try_emplace(sql, static_cast<int>(texts_.size()));
        if (added) texts_.push_back(sql);
        return found->second;
    }

    db::Connection& connection_;
    std::vector<std::string> texts_;
    std::map<std::string, int> indexes_;
    std::vector<Step> steps_;
};

// The flight query of an engine's place, joined to the register by type and tail.
std::string engineFlightsSql(int place) {
    const std::string k = "_" + std::to_string(place == 1 || place == 2 ? place + 1 : 1);
    return "SELECT Spravka.Data_poleta, Spravka.ID, Spravka.Tip_VS, Reestr.DATA_REMONTA, Spravka.V_vozduhe" + k +
           ", Spravka.Na_zemle" + k + ", Spravka.KOL_VO_CICLOV" + k + ", Spravka.NA_VZLETNOM" + k +
           ", Spravka.NOMINAL" + k + ", Spravka.MAXIMAL" + k + ", Spravka.KOL_VO_ZAPUSKOV" + k +
           " FROM Spravka, Reestr WHERE (Spravka.Data_poleta BETWEEN ? AND ?) AND (Spravka.Tip_VS = ?) AND "
           "(Spravka.Bortovoi_nomer = ?) AND (Reestr.Tip_VS = ?) AND (Reestr.Bortovoi_nomer = ?) ORDER BY "
           "Spravka.Data_poleta, Spravka.ID";
}

std::string groundSql(const std::string& columns) {
    return "Select " + columns + " From TIPOVYE_DANNYE_VS Where TIP_VS=? Order By ID;";
}

// The engine's flights from `start` and, when there are any, the ground
// setting of `groundColumns`; whether there were.
bool planFlights(Plan& plan, const Engine& e, int place, Date start, const std::string& groundColumns) {
    plan.read(engineFlightsSql(place), {dateParam(start), dateParam(benchmarkToday), e.type, e.tail, e.type, e.tail});
    db::DataSet flights = plan.query(
        "select first 1 S.ID from Spravka S, Reestr R where S.Data_poleta between :pSTART and :pTODAY and "
        "S.Tip_VS = :pTYPE and S.Bortovoi_nomer = :pTAIL and R.Tip_VS = :pTYPE and R.Bortovoi_nomer = :pTAIL",
        {{"pSTART", start}, {"pTODAY", benchmarkToday}, {"pTYPE", e.type}, {"pTAIL", e.tail}});
    if (flights.eof()) return false;
    plan.read(groundSql(groundColumns), {e.type}, 1);
    return true;
}

// The oil time of a unit that takes it from the engine, up to the move date.
void planOil(Plan& plan, db::DataSet& unitRow, const Engine& e, int place) {
    plan.read("Select ODIN_DVA From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ODIN_DVA, ID",
              {e.tail, unitRow.field(unit::serial).asText()}, 1);
    plan.read("Select TIP_VS, DATA_REMONTA From REESTR Where BORTOVOI_NOMER=? Order By ID", {e.tail}, 1);
    db::DataSet reg = plan.query("select TIP_VS, DATA_REMONTA from REESTR where BORTOVOI_NOMER = :pTAIL order by ID",
                                 {{"pTAIL", e.tail}});
    if (reg.eof()) return;
    const std::optional<Date> repaired = dateOf(reg.field(1));
    if (repaired)
        plan.read("Select First 1 ID From Spravka Where Bortovoi_nomer=? And Data_poleta>=?",
                  {e.tail, dateParam(*repaired)}, 1);
    else
        plan.read("Select First 1 ID From Spravka Where Bortovoi_nomer=?", {e.tail}, 1);
    db::DataSet flew =
        repaired ? plan.query("select first 1 ID from Spravka where Bortovoi_nomer = :pTAIL and Data_poleta >= :pSINCE",
                              {{"pTAIL", e.tail}, {"pSINCE", *repaired}})
                 : plan.query("select first 1 ID from Spravka where Bortovoi_nomer = :pTAIL", {{"pTAIL", e.tail}});
    if (flew.eof()) return;
    const std::string n = std::to_string(place == 1 || place == 2 ? place + 1 : 1);
    const std::optional<Date> start =
        std::max(dateOf(unitRow.field(unit::oilChanged)), dateOf(unitRow.field(unit::installed)));
    std::vector<Param> params{e.tail};
    if (start) params.push_back(dateParam(*start));
    params.push_back(dateParam(moveDate));
    plan.read("SELECT V_VOZDUHE_" + n + ", NA_ZEMLE_" + n + " FROM Spravka WHERE Bortovoi_nomer=? AND " +
                  (start ? "Data_poleta Between ? And ?" : "Data_poleta <= ?") + " ORDER BY Data_poleta, ID",
              std::move(params));
    plan.read(groundSql("ZEMLIA_AGR_DVIG, KOL_VO_ZEMLIA_AGR_DVIG"), {unitRow.field(1).asText()}, 1);
}

struct UnitWrite {
    int id;
    Snapshot before;
    std::vector<int> columns;
};

// The statements of one engine's moves, in the library's order, with the
// values its moves wrote: the library runs them here, in the caller's unit
// of work, between the reads of the rows before and after.
void planEngine(Plan& plan, db::Connection& connection, const Engine& e) {
    plan.read("select * from DVIGATEL where ID = ?", {std::to_string(e.id)}, 1);
    const Snapshot engineBefore = snapshot(plan.query(engineSql, {{"pID", e.id}}));
    const Param& placeValue = engineBefore.values[engine::place];
    const int place = placeValue ? std::stoi(*placeValue) : 0;

    // Off the aircraft: from the move date.
    const bool flew = planFlights(plan, e, place, moveDate, "ZEMLIA_DVIGATEL, KOL_VO_ZEMLIA_DVIGATEL");

    // The walk: the units, each one's oil, the engine's flights once for the
    // first unit counted directly; then the units stored.
    plan.read(
        "SELECT * FROM Agregat WHERE (((Gde_stoit)=?) AND ((PLAN_DVIG_VSU)=1) AND ((Tip_VS)=?) AND "
        "((NUMER_DVIG_VSU)=?)) ORDER BY NAZVANIE, ID;",
        {e.tail, e.type, e.serial});
    db::DataSet units = plan.query(unitsSql, {{"pLOCATION", e.tail}, {"pTYPE", e.type}, {"pSERIAL", e.serial}});
    std::vector<UnitWrite> unitWrites;
    std::optional<bool> walkFlew;
    for (; !units.eof(); units.next()) {
        UnitWrite write{units.field(0).asInt(), snapshot(units), {}};
        const bool derived = flagIs(units.field(unit::indirect), 1);
        const bool oil = derived && flagIs(units.field(unit::oilTracked), 1) && isSet(units.field(unit::oilChanged));
        if (oil) planOil(plan, units, e, place);
        const bool direct = units.field(unit::indirect).isNull() || units.field(unit::indirect).asInt() == 0;
        if (direct && !walkFlew)
            walkFlew = planFlights(plan, e, place, moveDate, "ZEMLIA_AGR_DVIG, KOL_VO_ZEMLIA_AGR_DVIG");
        const bool carried = direct && walkFlew.value_or(false);
        if (carried) write.columns = {unit::sinceNew, unit::sinceOverhaul};
        if (oil || (carried && isSet(units.field(unit::oilTime)) && isSet(units.field(unit::oilChanged))))
            write.columns.push_back(unit::oilTime);
        for (int column : {unit::installed, unit::location, unit::nextCheck, unit::place})
            write.columns.push_back(column);
        unitWrites.push_back(std::move(write));
    }
    const std::size_t walkStored = plan.steps().size();

    // Onto the aircraft: from its overhaul where that is later.
    plan.read(
        "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA From REESTR Where ((TIP_VS)=?) And ((Bortovoi_nomer)=?) "
        "Order By ID;",
        {e.type, e.tail}, 1);
    db::DataSet reg = plan.query(
        "select DATA_REMONTA from REESTR where TIP_VS = :pTYPE and BORTOVOI_NOMER = :pTAIL "
        "order by ID",
        {{"pTYPE", e.type}, {"pTAIL", e.tail}});
    const std::optional<Date> overhaul = reg.eof() ? std::nullopt : dateOf(reg.field(0));
    planFlights(plan, e, place, overhaul && *overhaul > moveDate ? *overhaul : moveDate,
                "ZEMLIA_DVIGATEL, KOL_VO_ZEMLIA_DVIGATEL");

    // What the library wrote, read back; the units stored at the end of the walk.
    moveAndBack(connection, e);
    std::size_t at = walkStored;
    for (const UnitWrite& write : unitWrites) {
        const auto [sql, params] =
            rowUpdate("AGREGAT", write.columns, write.before,
                      snapshot(plan.query("select * from AGREGAT where ID = :pID", {{"pID", write.id}})));
        plan.write(sql, params, at++);
    }
    // The engine's row, where either move carried flights.
    std::vector<int> counters;
    if (flew)
        for (int column : engine::counters)
            if (!engine::onlyWhenBooked(column) || (engineBefore.values[static_cast<std::size_t>(column)] &&
                                                    !engineBefore.values[static_cast<std::size_t>(column)]->empty()))
                counters.push_back(column);
    if (!counters.empty()) {
        const auto [sql, params] =
            rowUpdate("DVIGATEL", counters, engineBefore, snapshot(plan.query(engineSql, {{"pID", e.id}})));
        plan.write(sql, params, plan.steps().size());
    }
}

std::shared_ptr<const Plan> planFor(db::Connection& connection, const std::vector<Engine>& engines) {
    ScopedHost answering(std::make_shared<QuietHost>());
    auto plan = std::make_shared<Plan>(connection);
    db::UnitOfWork work(connection);
    for (const Engine& e : engines) planEngine(*plan, connection, e);
    work.rollback();
    return plan;
}

void moves(benchmark::State& state, Fleet& fleet, const std::vector<Engine>& engines) {
    auto host = std::make_shared<QuietHost>();
    ScopedHost answering(host);
    for (auto _ : state) {
        db::UnitOfWork work(fleet.connection);
        for (const Engine& e : engines) moveAndBack(fleet.connection, e);
        work.rollback();
    }
    state.counters["engines"] = static_cast<double>(engines.size());
    state.counters["questions"] = static_cast<double>(host->asked) / static_cast<double>(state.iterations());
}

void movesFloor(benchmark::State& state, Fleet& fleet, const Plan& plan) {
    std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
    for (const std::string& sql : plan.texts())
        statements.push_back(std::make_unique<RawDatabase::Statement>(fleet.raw, sql));
    for (auto _ : state) {
        fleet.raw.beginWrite();
        int rows = 0;
        for (const Step& step : plan.steps()) {
            RawDatabase::Statement& statement = *statements[static_cast<std::size_t>(step.statement)];
            if (step.write)
                statement.executeNullable(step.params);
            else
                rows += statement.runNullable(step.params, step.rows);
        }
        fleet.raw.rollbackWrite();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["statements"] = static_cast<double>(plan.steps().size());
}

}  // namespace

void registerEngineMoves(Fleet& fleet) {
    // The engines and the floor's plan, decided on the first run of either case.
    struct Decided {
        std::vector<Engine> engines;
        std::shared_ptr<const Plan> plan;
    };
    auto decided = std::make_shared<std::optional<Decided>>();
    const auto decide = [&fleet, decided]() -> const Decided& {
        if (!*decided) {
            std::vector<Engine> engines = enginesOf(fleet.connection);
            std::shared_ptr<const Plan> plan = planFor(fleet.connection, engines);
            decided->emplace(Decided{std::move(engines), std::move(plan)});
        }
        return **decided;
    };
    benchmark::RegisterBenchmark("MovesEveryEngine", [&fleet, decide](benchmark::State& s) {
        moves(s, fleet, decide().engines);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MovesEveryEngine/floor", [&fleet, decide](benchmark::State& s) {
        movesFloor(s, fleet, *decide().plan);
    })->Unit(benchmark::kMillisecond);
}

}  // namespace mxbook::bench
