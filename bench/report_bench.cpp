// The detailed report cards, each builder run for up to 1,000 units of the
// ten-year fleet, and their floor: per unit the statements the builder must
// run, each prepared once and executed bare with the same values: the
// report table's delete (committed), the unit's select, the catalogue, oil
// and carrier lookups, the queries of the calculations it calls, the report
// table's select, and the row inserted and committed.
//
// Which statements a unit needs is decided before anything is timed, by
// reading the unit's row and its aircraft through the library; the inserted
// values are those of the library's own card for the unit, read back.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "aircraft_facts.h"
#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/format.h"
#include "mxbook/remaining_life.h"
#include "mxbook/report.h"
#include "mxbook/text.h"

namespace mxbook::bench {

namespace {

constexpr int unitsPerCase = 1000;

std::string dateParam(Date date) { return formatDate(date, "yyyy-mm-dd"); }

bool isSet(const db::DataSet& row, int column) { return !row.field(column).isNull(); }
bool equals(const db::DataSet& row, int column, int value) {
    return isSet(row, column) && row.field(column).asInt() == value;
}
std::string textOf(const db::DataSet& row, int column) {
    return isSet(row, column) ? row.field(column).asText() : std::string();
}

// One statement run for a unit: which text, with which values.
struct Step {
    int statement;
    std::vector<std::string> params;
    int rows = -1;  // how many rows are fetched: all, or the first only for a test
};

// A unit's card as the floor runs it: the reads, then the rows inserted.
struct UnitSteps {
    std::vector<Step> reads;
    std::vector<Step> inserts;
};

// The floor's work: the statement texts, each prepared once, and per unit
// the statements it runs, decided before anything is timed.
class Plan {
public:
    explicit Plan(db::Connection& connection) : connection_(connection) {}

    int statement(const std::string& sql) {
        const auto [found, added] = indexes_.try_emplace(sql, static_cast<int>(texts_.size()));
        if (added) texts_.push_back(sql);
        return found->second;
    }
    void read(const std::string& sql, std::vector<std::string> params, int rows = -1) {
        current_.reads.push_back({statement(sql), std::move(params), rows});
    }
    void insert(const std::string& sql, std::vector<std::string> params) {
        current_.inserts.push_back({statement(sql), std::move(params)});
    }
    void endUnit() { units_.push_back(std::move(current_)), current_ = {}; }

    // Read through the library, untimed, to decide the floor's statements.
    db::DataSet query(const std::string& sql, const std::vector<std::pair<std::string, db::Value>>& params) {
        db::DataSet rows(connection_, sql, db::DataSet::Traversal::forwardOnly);
        for (const auto& [name, value] : params) rows.setParam(name, value);
        rows.open();
        return rows;
    }

    // The statements the oil time of a unit runs, in its order: the register
    // row, the one-row flight test, then the flights and the ground setting.
    void oil(const std::string& tail, std::optional<Date> start, const std::string& columns,
             const std::string& groundColumns, const std::string& aircraftType) {
        read("Select TIP_VS, DATA_REMONTA From REESTR Where BORTOVOI_NOMER=? Order By ID", {tail});
        const AircraftFacts& aircraft = aircraftOf(tail);
        if (!aircraft.registered) return;
        if (aircraft.repaired)
            read("Select First 1 ID From Spravka Where Bortovoi_nomer=? And Data_poleta>=?",
                 {tail, dateParam(*aircraft.repaired)});
        else
            read("Select First 1 ID From Spravka Where Bortovoi_nomer=?", {tail});
        if (!aircraft.flewSinceRepair) return;
        std::vector<std::string> params{tail};
        if (start) params.push_back(dateParam(*start));
        params.push_back(dateParam(benchmarkToday));
        read("SELECT " + columns + " FROM Spravka WHERE Bortovoi_nomer=? AND " +
                 (start ? "Data_poleta Between ? And ?" : "Data_poleta <= ?") + " ORDER BY Data_poleta, ID",
             std::move(params));
        if (!groundColumns.empty())
            read("Select " + groundColumns + " From TIPOVYE_DANNYE_VS Where TIP_VS=? Order By ID;",
                 {aircraftType.empty() ? aircraft.type : aircraftType});
    }

    std::optional<Date> overhaulOf(const std::string& tail) { return aircraftOf(tail).repaired; }
    bool flewSince(const std::string& tail, Date since) {
        return !query("select first 1 ID from Spravka where Bortovoi_nomer = :pTAIL and Data_poleta >= :pSINCE",
                      {{"pTAIL", tail}, {"pSINCE", since}})
                    .eof();
    }

    // The aircraft's register row has its hours: what a removal plan needs to go on.
    bool hasRegisteredHours(const std::string& type, const std::string& tail) {
        db::DataSet reg = query(
            "select NARABOTKA_PPR_CHASOV from REESTR where TIP_VS = :pTYPE and BORTOVOI_NOMER = :pTAIL order by ID",
            {{"pTYPE", type}, {"pTAIL", tail}});
        return !reg.eof() && !reg.field(0).isNull();
    }

    const std::vector<std::string>& texts() const { return texts_; }
    const std::vector<UnitSteps>& units() const { return units_; }
    std::size_t statementCount() const {
        std::size_t count = 0;
        for (const UnitSteps& unit : units_) count += unit.reads.size() + unit.inserts.size();
        return count;
    }

private:
    const AircraftFacts& aircraftOf(const std::string& tail) { return aircraft_.of(tail); }

    db::Connection& connection_;
    std::vector<std::string> texts_;
    std::map<std::string, int> indexes_;
    std::vector<UnitSteps> units_;
    UnitSteps current_;
    AircraftFactsCache aircraft_{connection_};
};

// The carrier queries of the remaining-life functions.
constexpr const char* registerCounters =
    "Select NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR Where TIP_VS=? And BORTOVOI_NOMER=? Order By ID";
constexpr const char* engineRow =
    "Select NARABOTKA_PPR, CICLI_PPR From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ID";

// AGREGAT and VTULKA_NV share these columns.
enum : int {
    aircraftType = 1, overhauled = 9, overhaulCount = 10, totalLimit = 12, intervalLimit = 14, sinceNew = 17,
    sinceOverhaul = 18, oilTypeNumber = 20, oilChanged = 22, measure = 24, installed = 26, location = 27,
    carrierKind = 28, carrierSerial = 29, catalogueKey = 34, derivedFlag = 39,
};

bool inStorage(const db::DataSet& row) { return isSet(row, location) && isOffAircraft(textOf(row, location)); }
bool derivedOnAircraft(const db::DataSet& row) { return !inStorage(row) && equals(row, derivedFlag, 1); }
int overhauls(const db::DataSet& row) { return isSet(row, overhaulCount) ? row.field(overhaulCount).asInt() : 0; }
int choose(const db::DataSet& row, int first, int regular) {
    return overhauls(row) == 0 && isSet(row, first) ? first : regular;
}

// What a general component's derivation queries: the register or its engine.
void carrierQuery(Plan& plan, const db::DataSet& row) {
    if (!isSet(row, measure) || !isSet(row, carrierKind)) return;
    if (equals(row, carrierKind, 1))
        plan.read(engineRow, {textOf(row, location), textOf(row, carrierSerial)});
    else if (equals(row, carrierKind, 0))
        plan.read(registerCounters, {textOf(row, aircraftType), textOf(row, location)});
}

// The hours left of a limit: the carrier's query where the used hours are derived.
void hoursLeft(Plan& plan, const db::DataSet& row, int limit, int used) {
    const bool on = !inStorage(row) || (equals(row, carrierKind, 1) && isSet(row, carrierSerial));
    if (equals(row, derivedFlag, 1) && on && isSet(row, limit) && isSet(row, used)) carrierQuery(plan, row);
}

// Hours or a count left by the unit's measure: a count is derived only
// while the booked one leaves something.
void left(Plan& plan, const db::DataSet& row, int limit, int used) {
    if (equals(row, measure, 0)) return hoursLeft(plan, row, limit, used);
    if (!equals(row, measure, 1) || !isSet(row, limit) || !isSet(row, used)) return;
    if (row.field(limit).asInt() - std::strtoll(textOf(row, used).c_str(), nullptr, 10) > 0)
        hoursLeft(plan, row, limit, used);
}

// A component's removal plan: the register row of its aircraft, then, where
// its governing limit and used hours are booked and its flag is 1, the
// derivation's carrier query.
void removalPlan(Plan& plan, const db::DataSet& row, int firstLimit, bool byMeasure = true) {
    plan.read(registerCounters, {textOf(row, aircraftType), textOf(row, location)});
    if (!plan.hasRegisteredHours(textOf(row, aircraftType), textOf(row, location))) return;
    int limit = choose(row, firstLimit, intervalLimit);
    if (!isSet(row, limit)) limit = totalLimit;
    const bool counted = !byMeasure || equals(row, measure, 0) || equals(row, measure, 1);
    if (isSet(row, limit) && isSet(row, sinceOverhaul) && counted && equals(row, derivedFlag, 1)) carrierQuery(plan, row);
}

std::string engineColumns(int position) {
    const std::string n = std::to_string(position >= 0 && position <= 2 ? position + 1 : 1);
    return "V_VOZDUHE_" + n + ", NA_ZEMLE_" + n;
}

constexpr const char* airframeGround = "ZEMLIA_AGREGATY, KOL_VO_ZEMLIA_AGREGATY";

// A component's oil time: airframe time, or its engine's, from the later of
// its oil change and its installation.
void componentOil(Plan& plan, db::DataSet& row) {
    const std::string tail = textOf(row, location);
    const std::optional<Date> start = later(dateOf(row, oilChanged), dateOf(row, installed));
    const int carrier = isSet(row, carrierKind) ? row.field(carrierKind).asInt() : 0;
    if (carrier != 0 && carrier != 1) return;
    if (carrier == 0) return plan.oil(tail, start, "V_VOZDUHE, NA_ZEMLE", airframeGround, textOf(row, aircraftType));
    plan.read("Select ODIN_DVA From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ODIN_DVA, ID",
              {tail, textOf(row, carrierSerial)});
    db::DataSet engine = plan.query(
        "select ODIN_DVA from DVIGATEL where GDE_STOIT = :pTAIL and ZAVODSKOI_NOMER = :pSERIAL order by ODIN_DVA, ID",
        {{"pTAIL", tail}, {"pSERIAL", row.field(carrierSerial).value()}});
    plan.oil(tail, start, engineColumns(engine.eof() || engine.field(0).isNull() ? 0 : engine.field(0).asInt()),
             "ZEMLIA_AGR_DVIG, KOL_VO_ZEMLIA_AGR_DVIG", textOf(row, aircraftType));
}

constexpr const char* oilTypeByNumber = "select NAZVANIE from TIP_MASLA where NOMER = ? order by NOMER";

// The component card's lookups and calculations, in the order of its fills.
void componentReads(Plan& plan, db::DataSet& row) {
    const bool onAircraft = derivedOnAircraft(row);
    if (isSet(row, sinceNew) && onAircraft) carrierQuery(plan, row);                             // r23
    if (isSet(row, sinceOverhaul) && overhauls(row) > 0 && onAircraft) carrierQuery(plan, row);  // r24
    if (isSet(row, oilTypeNumber))
        plan.read(oilTypeByNumber, {std::to_string(row.field(oilTypeNumber).asInt64() + 1)});
    if (isSet(row, catalogueKey))
        plan.read("select * from ETAAGREGAT where ID_NAME = ? order by ID_NAME", {textOf(row, catalogueKey)});
    if (isSet(row, totalLimit) && isSet(row, sinceNew)) left(plan, row, totalLimit, sinceNew);  // r14
    if (isSet(row, sinceOverhaul)) left(plan, row, choose(row, 43, intervalLimit), sinceOverhaul);  // r18
    if (isSet(row, sinceOverhaul)) removalPlan(plan, row, 43);  // r25
    if (isSet(row, oilChanged) && onAircraft) componentOil(plan, row);  // r29
    // r31: the engine or APU that carries it.
    const std::string serial = trim(textOf(row, carrierSerial));
    if (isSet(row, aircraftType) && isSet(row, location) && !serial.empty() && serial != "0") {
        if (equals(row, carrierKind, 1))
            plan.read("select NAZVANIE_DVIGATELYA, ZAVODSKOI_NOMER from DVIGATEL where ZAVODSKOI_NOMER = ? order by ID",
                      {textOf(row, carrierSerial)});
        else if (equals(row, carrierKind, 2))
            plan.read("select NAZVANIE, ZAVODSKOY_NOMER from VSU where ZAVODSKOY_NOMER = ? order by ID",
                      {textOf(row, carrierSerial)});
    }
}

// The hub card's: the component's, with the hub's own limits, no count
// branch, two oil blocks and no carrier text.
void hubReads(Plan& plan, db::DataSet& row) {
    const bool onAircraft = derivedOnAircraft(row);
    if (isSet(row, sinceNew) && onAircraft) carrierQuery(plan, row);                             // r23
    if (isSet(row, sinceOverhaul) && overhauls(row) > 0 && onAircraft) carrierQuery(plan, row);  // r24
    if (isSet(row, oilTypeNumber))
        plan.read(oilTypeByNumber, {std::to_string(row.field(oilTypeNumber).asInt64() + 1)});
    if (isSet(row, catalogueKey))
        plan.read("select * from ETA_VTULKA_NV where ID_NAME = ? order by ID_NAME", {textOf(row, catalogueKey)});
    if (isSet(row, sinceNew) && equals(row, measure, 0)) hoursLeft(plan, row, totalLimit, sinceNew);  // r14
    if (isSet(row, sinceOverhaul)) hoursLeft(plan, row, choose(row, 48, intervalLimit), sinceOverhaul);  // r18
    if (isSet(row, sinceOverhaul)) removalPlan(plan, row, 48, false);                                   // r25
    const auto oilBlock = [&](int changed) {
        if (isSet(row, changed) && onAircraft)
            plan.oil(textOf(row, location), later(dateOf(row, changed), dateOf(row, installed)), "V_VOZDUHE, NA_ZEMLE",
                     airframeGround, textOf(row, aircraftType));
    };
    oilBlock(oilChanged);  // r29
    if (isSet(row, 42)) plan.read(oilTypeByNumber, {std::to_string(row.field(42).asInt64() + 1)});  // r34
    oilBlock(44);          // r35
}

// The winch card's: the hours derived from the register, and the cables'
// hoists summed from the flights since the later of the cable's date and the
// installation.
void winchReads(Plan& plan, db::DataSet& row) {
    enum : int { cableDate = 6, overhaulCount = 13, winchLocation = 14, installedDate = 17, flag = 25 };
    const std::string tail = textOf(row, winchLocation);
    const bool derives = !(isSet(row, winchLocation) && isOffAircraft(tail)) && equals(row, flag, 1);
    const auto registerRow = [&] { plan.read(registerCounters, {textOf(row, aircraftType), tail}); };
    const auto hours = [&](int limit, int used) {
        if (derives && isSet(row, limit) && isSet(row, used)) registerRow();
    };
    const auto cables = [&] {
        plan.read("Select TIP_VS, BORTOVOI_NOMER, DATA_REMONTA From REESTR WHERE ((BORTOVOI_NOMER)=?);", {tail});
        const Date overhauled = plan.overhaulOf(tail).value_or(Date());
        plan.read("SELECT Data_poleta, ID, Bortovoi_nomer, Tip_VS From Spravka Where (((Bortovoi_nomer) = ?) AND "
                  "((DATA_POLETA)>=?))ORDER BY Data_poleta, ID;",
                  {tail, dateParam(overhauled)}, 1);  // a test: only its first row is read
        if (!plan.flewSince(tail, overhauled)) return;
        const Date start = std::max(dateOf(row, cableDate).value_or(Date()), dateOf(row, installedDate).value_or(Date()));
        plan.read("SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, LEBEDKA_CICL_LUDI, LEBEDKA_CICL_GRUZY FROM Spravka "
                  "WHERE (((Bortovoi_nomer)=?)) AND ((Data_poleta) Between ? And ?) ORDER BY Data_poleta, ID;",
                  {tail, dateParam(start), dateParam(benchmarkToday)});
    };
    const int firstOverhaul = (!isSet(row, overhaulCount) || row.field(overhaulCount).asInt() == 0) && isSet(row, 36);
    hours(19, 27);                           // r22
    hours(firstOverhaul ? 36 : 21, 28);      // r24
    if (isSet(row, 23) && derives) cables();  // r26
    if (isSet(row, 24) && derives) cables();  // r27
    if (derives) registerRow(), registerRow();  // r28, r30
    if (derives) cables(), cables();            // r32, r33
}

// The register row a unit's hours are derived from, on an aircraft with the flag 1.
struct Derivation {
    int location, flag;
    bool applies(const db::DataSet& row) const {
        return !(isSet(row, location) && isOffAircraft(textOf(row, location))) && equals(row, flag, 1);
    }
    void query(Plan& plan, const db::DataSet& row) const {
        plan.read(registerCounters, {textOf(row, aircraftType), textOf(row, location)});
    }
    // What is left of a limit: derived only where both columns are set.
    void left(Plan& plan, const db::DataSet& row, int limit, int used) const {
        if (applies(row) && isSet(row, limit) && isSet(row, used)) query(plan, row);
    }
};

int chosen(const db::DataSet& row, int overhaulCountColumn, int first, int regular) {
    const bool never = !isSet(row, overhaulCountColumn) || row.field(overhaulCountColumn).asInt() == 0;
    return never && isSet(row, first) ? first : regular;
}

// The ZCU card's: the hours derived from the register, and the removal plan.
void zcuReads(Plan& plan, db::DataSet& row) {
    const Derivation derivation{2, 16};
    if (derivation.applies(row)) derivation.query(plan, row), derivation.query(plan, row);  // r17, r19
    derivation.left(plan, row, 4, 11);                                                     // r21
    derivation.left(plan, row, chosen(row, 19, 27, 20), 22);                               // r23
    if (!isSet(row, 10)) return;                                                           // r25
    plan.read(registerCounters, {textOf(row, aircraftType), textOf(row, 2)});
    if (!plan.hasRegisteredHours(textOf(row, aircraftType), textOf(row, 2))) return;
    int limit = chosen(row, 19, 27, 20), used = 22;
    if (!isSet(row, limit)) limit = 4, used = 11;
    if (isSet(row, limit) && isSet(row, used) && equals(row, 16, 1)) derivation.query(plan, row);
}

// The tail rotor card's: the hours derived from the register.
void tailRotorReads(Plan& plan, db::DataSet& row) {
    const Derivation derivation{14, 27};
    if (derivation.applies(row)) derivation.query(plan, row), derivation.query(plan, row);  // r20, r21
    derivation.left(plan, row, 19, 29);                                                    // r23
    derivation.left(plan, row, chosen(row, 13, 25, 21), 30);                               // r25
}

// The APU unit card's: its catalogue and owner, its oil, and the carrying
// APU's counters for each remainder and each counter.
void apuUnitReads(Plan& plan, db::DataSet& row) {
    if (isSet(row, 5))
        plan.read("select ID_NAME, NAZVANIE, CHERT_NOMER from ETA_AGR_VSU where ID_NAME = ? order by ID", {textOf(row, 5)});
    if (isSet(row, 11))
        plan.read("select NAIMENOVANIE from SOBSTVENNIKI where ID_NAME = ? order by ID_NAME", {textOf(row, 11)});
    if (isSet(row, 37)) plan.read(oilTypeByNumber, {std::to_string(row.field(37).asInt64() + 1)});
    const std::string serial = textOf(row, 42);
    if (serial.empty()) return;
    const auto apu = [&] {
        plan.read("Select OBSHAIA_PPR, ZAPUSKI_PPR, OTBORY_PPR, NAZVANIE, SUMMA_PPR From VSU Where ZAVODSKOY_NOMER=? "
                  "Order By ID",
                  {serial});
    };
    const std::pair<int, int> limits[] = {{19, 19}, {20, 20}, {21, 21}, {51, 23}, {52, 24}, {53, 25}};
    for (int n = 0; n < 6; ++n) {
        const int limit = chosen(row, 15, limits[n].first, limits[n].second), used = 30 + n;
        if (!isSet(row, limit) || !isSet(row, used)) continue;
        // A count is derived only while the booked one leaves something.
        const bool count = n % 3 != 0;
        if (!count || row.field(limit).asInt() - std::strtoll(textOf(row, used).c_str(), nullptr, 10) > 0) apu();
    }
    for (int counter = 0; counter < 7; ++counter) apu();
}

// The APU, gearbox and engine cards: the oil type's walk, stopped on the
// last row when none matches.
std::function<void(Plan&, db::DataSet&)> oilWalk(int column) {
    return [column](Plan& plan, db::DataSet& row) {
        const std::int64_t number = isSet(row, column) ? row.field(column).asInt64() : 0;
        if (number < 0) return;
        plan.read(oilTypeByNumber, {std::to_string(number + 1)});
        if (plan.query("select NAZVANIE from TIP_MASLA where NOMER = :pN order by NOMER", {{"pN", number + 1}}).eof())
            plan.read("select first 1 NAZVANIE from TIP_MASLA order by NOMER desc", {});
    };
}

// The register card's: with the forms asked for and shown, the aircraft's
// programme, its latest form performed, and the queries of the forms-due
// functions for the next periodic form (r31) and the next "Ф-1" (r32).
void registerReads(Plan& plan, db::DataSet& row) {
    enum : int { id = 0, type = 1, tail = 3, overhauled = 8, hoursSinceOverhaul = 22, periodicDone = 33, lightDone = 34,
                 showsForms = 64 };
    // PTO_FORMY
    enum : int { lightInterval = 2, periodicInterval = 3, steps = 5, stepNames = 7 };
    constexpr const char* cardProgramme = "select * from PTO_FORMY where TIP_VS = ? order by ID";
    constexpr const char* formsProgramme = "Select * From PTO_FORMY Where TIP_VS=? Order By ID";
    const std::string performed =
        "select first 1 f.* from VYPOLNENNYE_FORMY f "
        "join REESTR r on f.TIP_VS = r.TIP_VS and f.BORTOVOY_NOMER = r.BORTOVOI_NOMER "
        "where r.ID = ? and not upper(f.FORMA_TO) like upper('%Раз.работы%') "
        "order by f.DATA_ISPRAVNOSTI desc, f.ID desc";
    const auto number = [](const db::DataSet& rows, int column) { return isSet(rows, column) ? rows.field(column).asInt() : 0; };
    const auto closesCycle = [](const std::string& name) {
        return name == "АРЗ" || name == "Продление" || name == "Списание";
    };

    if (!equals(row, showsForms, 1) || !isSet(row, type)) return;
    const std::string aircraft = textOf(row, type);
    plan.read(cardProgramme, {aircraft});  // r26
    db::DataSet programme =
        plan.query("select * from PTO_FORMY where TIP_VS = :pTIP order by ID", {{"pTIP", aircraft}});
    if (programme.eof() || textOf(programme, stepNames) == "АРЗ") return;

    plan.read(performed, {textOf(row, id)});  // r28: a "Ф-1" is named by its step
    {
        std::string named = performed;
        named.replace(named.find('?'), 1, ":pID");
        db::DataSet form = plan.query(named, {{"pID", row.field(id).value()}});
        if (!form.eof() && textOf(form, 3) == "Ф-1") plan.read(formsProgramme, {aircraft});
    }

    // The planning from the last form performed, when the type has it.
    const auto planning = [&] {
        const char* typePlans = "Select First 1 ID From TIPOVYE_DANNYE_VS Where TIP_VS=? And PTO_PLAN_OT_PRED_NAR=1";
        plan.read(typePlans, {aircraft});
        if (plan.query("Select First 1 ID From TIPOVYE_DANNYE_VS Where TIP_VS=:pTIP And PTO_PLAN_OT_PRED_NAR=1",
                       {{"pTIP", aircraft}})
                .eof())
            return;
        const std::string tailNumber = textOf(row, tail);
        const std::string lastForm =
            "Select First 1 FORMA_TO, PLANER_PPR From VYPOLNENNYE_FORMY Where TIP_VS=? And BORTOVOY_NOMER=? ";
        const std::string rest = "And FORMA_TO<>'Раз.работы' And FORMA_TO<>'Разовые работы' "
                                 "Order By DATA_ISPRAVNOSTI Desc, ID Desc";
        if (isSet(row, overhauled))
            plan.read(lastForm + "And DATA_ISPRAVNOSTI>=? " + rest, {aircraft, tailNumber, dateParam(*dateOf(row, overhauled))});
        else
            plan.read(lastForm + "And DATA_ISPRAVNOSTI Is Not Null " + rest, {aircraft, tailNumber});
    };

    const int light = number(programme, lightInterval), periodic = number(programme, periodicInterval);
    const bool halves = light * 2 == periodic;
    if (!halves && light != periodic) return;
    // r30: the step the aircraft stands at, among the steps that count.
    std::string step;
    for (int i = 0, counted = 0, done = number(row, periodicDone); i < number(programme, steps); ++i) {
        if (textOf(programme, i).empty()) continue;
        const std::string name = textOf(programme, stepNames + i);
        if (halves && periodic != 0 && light * (i + 7) % periodic != 0 && !closesCycle(name)) continue;
        if (counted++ == done) {
            step = name;
            break;
        }
    }
    if (!closesCycle(step)) plan.read(formsProgramme, {aircraft}), planning();  // r31
    if (!halves) return;
    plan.read(formsProgramme, {aircraft});  // r32
    if (number(programme, steps) / 2 - 2 <= number(row, lightDone)) {
        const auto date = [&](const char* column) -> std::optional<Date> {
            const db::Field field = row.field(std::string_view(column));
            return field.isNull() ? std::nullopt : std::optional<Date>(field.asDate());
        };
        if (date("DATA_TO") < date("DATA_F1")) return;
        plan.read("Select VREMIA_FORMA From PTO_FORMY Where TIP_VS=? Order By ID", {aircraft});
        const std::string worked = textOf(row, hoursSinceOverhaul);
        const long long whole =
            worked.size() < 3 ? 0 : std::max(0LL, std::strtoll(worked.substr(0, worked.size() - 3).c_str(), nullptr, 10));
        const long long due = periodic == 0 ? 0 : (whole / periodic * periodic + light) * 60LL;
        const db::Field overhaulHours = row.field(std::string_view("MEGREMONTNY_CHAS"));
        if ((overhaulHours.isNull() ? 0 : overhaulHours.asInt()) * 60LL < due) return;
    }
    planning();
}

struct Case {
    std::string name;
    std::string table;   // the report table
    std::string units;   // the unit rows, `select *`, in the order they are run
    std::string source;  // the builder's select, with ? for its values
    // The builder's arguments for a unit row, and which of them the select
    // takes, in its order (none: all, in theirs).
    std::function<std::vector<std::string>(db::DataSet&)> arguments;
    std::vector<int> bound;
    std::function<void(db::Connection&, const std::vector<std::string>&)> call;
    // The lookups and calculations' queries of one row the select finds.
    std::function<void(Plan&, db::DataSet&)> reads;
    bool everyRow = false;  // the card writes every row the select finds, not the first
    bool writesKey = false;  // the card writes the table's key (column 0) itself
};

std::vector<Case> cases() {
    const auto byId = [](db::DataSet& row) { return std::vector<std::string>{row.field(0).asText()}; };
    const auto columns = [](std::vector<int> picked) {
        return [picked](db::DataSet& row) {
            std::vector<std::string> params;
            for (int column : picked) params.push_back(textOf(row, column));
            return params;
        };
    };
    const auto none = [](Plan&, db::DataSet&) {};
    const auto all = [](const char* table) { return std::string("select * from ") + table + " order by ID"; };
    return {
        // Every 21st component: on aircraft and in storage as the fleet has them.
        {"FunMainReportAgregatPodrobno/AGREGAT", "REPORT_AGREGAT_PODROBNO",
         "select first " + std::to_string(unitsPerCase) + " * from AGREGAT where mod(ID, 21) = 0 order by ID",
         "select * from AGREGAT where ID = ?", byId, {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportAgregatPodrobno(c, std::stoi(p[0])); },
         componentReads},
        {"FunMainReportVtulkaNVPodrobno/VTULKA_NV", "REPORT_AGREGAT_PODROBNO", all("VTULKA_NV"),
         "select * from VTULKA_NV where ID = ?", byId, {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportVtulkaNVPodrobno(c, std::stoi(p[0])); },
         hubReads},
        {"FunMainReportPodveskaPodrobno/PODVESKA", "REPORT_PODVESKA_PODROBNO", all("PODVESKA"),
         "select * from PODVESKA where ID = ?", byId, {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportPodveskaPodrobno(c, std::stoi(p[0])); },
         none},
        {"FunMainReportLebedkaPodrobno/LEBEDKA", "REPORT_LEBEDKA_PODROBNO", all("LEBEDKA"),
         "select * from LEBEDKA where ID = ?", byId, {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportLebedkaPodrobno(c, std::stoi(p[0])); },
         winchReads},
        {"FunMainReportAgrVSUPodrobno/AGR_VSU", "REPORT_AGR_VSU_PODROBNO", all("AGR_VSU"),
         "select * from AGR_VSU where ID = ? order by ID", byId, {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportAgrVSUPodrobno(c, p[0]); },
         apuUnitReads},
        {"FunMainReportAgrZCUPodrobno/ZCU", "REPORT_ZCU_PODROBNO", all("ZCU"), "select * from ZCU where ID = ? order by ID",
         byId, {}, [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportAgrZCUPodrobno(c, p[0]); },
         zcuReads},
        {"FunMainReportVSUPodrobno/VSU", "REPORT_VSU_PODROBNO", all("VSU"),
         "select * from VSU where TIP_VS = ? and MESTO_USTANOVKI = ? and ZAVODSKOY_NOMER = ? order by ZAVODSKOY_NOMER",
         columns({28, 27, 2}), {},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportVSUPodrobno(c, p[0], p[1], p[2]); },
         oilWalk(30), true},
        {"FunMainReportReductorPodrobno/REDUCTOR", "REPORT_REDUCTOR_PODROBNO", all("REDUCTOR"),
         "select * from REDUCTOR where GDE_STOIT = ? and ZAVODSKOI_NOMER = ? order by TIP_VS, ZAVODSKOI_NOMER",
         columns({1, 3, 13}), {2, 1},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportReductorPodrobno(c, p[0], p[1], p[2]); },
         oilWalk(22), true},
        {"FunMainReportDvigatelPodrobno/DVIGATEL", "REPORT_DVIGATEL_PODROBNO", all("DVIGATEL"),
         "select * from DVIGATEL where TIP_VS = ? and GDE_STOIT = ? and ZAVODSKOI_NOMER = ? order by TIP_VS, "
         "ZAVODSKOI_NOMER",
         columns({1, 3, 13}), {0, 2, 1},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportDvigatelPodrobno(c, p[0], p[1], p[2]); },
         oilWalk(22)},
        {"FunMainReportVozdVintPodrobno/VOZDUSHNY_VINT", "REPORT_VTULKA_VV_PODR", all("VOZDUSHNY_VINT"),
         "select * from VOZDUSHNY_VINT where TIP_VS = ? and GDE_STOIT = ? and ZAVODSKOY_NOMER = ? order by TIP_VS, "
         "ZAVODSKOY_NOMER",
         columns({1, 3, 17}), {0, 2, 1},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportVozdVintPodrobno(c, p[0], p[1], p[2]); },
         none},
        {"FunMainReportHvostVintPodrobno/HVOSTOVOY_VINT", "REPORT_HVOST_VINT_PODR", all("HVOSTOVOY_VINT"),
         "select * from HVOSTOVOY_VINT where TIP_VS = ? and GDE_STOIT = ? and ZAVODSKOY_NOMER_VTULKA = ? order by ID",
         columns({1, 6, 14}), {0, 2, 1},
         [](db::Connection& c, const std::vector<std::string>& p) { FunMainReportHvostVintPodrobno(c, p[0], p[1], p[2]); },
         tailRotorReads},
        // Every aircraft, its forms asked for.
        {"FunReportReestrPodrobno/REESTR", "REPORT_REESTR_PODROBNO", all("REESTR"),
         "select * from REESTR where TIP_VS = ? and BORTOVOI_NOMER = ? order by BORTOVOI_NOMER",
         [](db::DataSet& row) { return std::vector<std::string>{textOf(row, 1), textOf(row, 3), "1"}; }, {0, 1},
         [](db::Connection& c, const std::vector<std::string>& p) { FunReportReestrPodrobno(c, p[0], p[1], std::stoi(p[2])); },
         registerReads, false, true},
    };
}

// The row the library's card wrote for the unit, as the floor inserts it.
void insertsOf(Plan& plan, db::Connection& connection, const std::string& table, bool writesKey) {
    const FilledReport filled = readReport(connection, table);
    for (const auto& cells : filled.rows) {
        std::string names, markers, returning;
        std::vector<std::string> values;
        for (std::size_t column = 0; column < filled.columns.size(); ++column) {
            const std::string name = "\"" + filled.columns[column] + "\"";
            returning += (returning.empty() ? "" : ", ") + name;
            if ((column == 0 && !writesKey) || !cells[column]) continue;
            names += (names.empty() ? "" : ", ") + name;
            markers += markers.empty() ? "?" : ", ?";
            values.push_back(*cells[column]);
        }
        plan.insert("insert into \"" + table + "\" (" + names + ") values (" + markers + ") returning " + returning,
                    std::move(values));
    }
}

struct Prepared {
    std::vector<std::vector<std::string>> params;  // each unit's builder arguments
    std::shared_ptr<const Plan> plan;
};

std::shared_ptr<const Prepared> prepare(db::Connection& connection, const Case& c) {
    auto prepared = std::make_shared<Prepared>();
    auto plan = std::make_shared<Plan>(connection);
    std::vector<std::vector<std::string>> arguments;
    db::DataSet units(connection, c.units, db::DataSet::Traversal::forwardOnly);
    for (units.open(); !units.eof(); units.next()) arguments.push_back(c.arguments(units));
    for (const std::vector<std::string>& unit : arguments) {
        std::vector<std::string> params;
        if (c.bound.empty()) params = unit;
        for (int argument : c.bound) params.push_back(unit[static_cast<std::size_t>(argument)]);
        plan->read(c.source, params);
        // The same select through the library, its values named.
        std::string named;
        int marker = 0;
        for (const char ch : c.source) named += ch == '?' ? ":p" + std::to_string(marker++) : std::string(1, ch);
        db::DataSet source(connection, named, db::DataSet::Traversal::forwardOnly);
        for (std::size_t i = 0; i < params.size(); ++i) source.setParam("p" + std::to_string(i), params[i]);
        bool found = false;
        for (source.open(); !source.eof(); source.next()) {
            found = true;
            c.reads(*plan, source);
            if (!c.everyRow) break;
        }
        source.close();
        if (found) plan->read("select * from " + c.table + " order by ID", {});
        c.call(connection, unit);
        insertsOf(*plan, connection, c.table, c.writesKey);
        plan->endUnit();
        prepared->params.push_back(unit);
    }
    prepared->plan = std::move(plan);
    return prepared;
}

// The cards write: they run on a copy of the fleet of their own, without
// forced writes, so that what is measured is the statements' work rather
// than the disk's flush of each commit (the same number on both sides, and
// on a shared virtual disk the noisiest part of the figure). Both sides
// connect only while they run: a reader's snapshot left open would keep the
// other side's deleted rows from being collected.
class ReportFleet {
public:
    explicit ReportFleet(const std::string& fleetPath) {
        std::filesystem::copy_file(fleetPath, path_, std::filesystem::copy_options::overwrite_existing);
        const std::string async = "gfix -write async -user SYSDBA '" + path_ + "' >/dev/null 2>&1";
        forcedWrites_ = std::system(async.c_str()) != 0;
    }
    ~ReportFleet() { std::filesystem::remove(path_); }
    ReportFleet(const ReportFleet&) = delete;
    ReportFleet& operator=(const ReportFleet&) = delete;

    const std::string& path() const { return path_; }
    bool forcedWrites() const { return forcedWrites_; }
    std::unique_ptr<db::Connection> connect() const {
        auto connection = std::make_unique<db::Connection>();
        connection->open("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + path_ + ";ctype=WIN1251");
        return connection;
    }

private:
    std::string path_ = (std::filesystem::temp_directory_path() / "mxbook-bench-reports.fdb").string();
    bool forcedWrites_ = true;
};

}  // namespace

void registerReports(Fleet& fleet) {
    // Copied on first use, so that other benchmarks' runs do not wait for it.
    auto copy = std::make_shared<std::unique_ptr<ReportFleet>>();
    const auto reportFleet = [&fleet, copy]() -> const ReportFleet& {
        if (!*copy) *copy = std::make_unique<ReportFleet>(fleet.path);
        return **copy;
    };
    for (const Case& c : cases()) {
        auto prepared = std::make_shared<std::shared_ptr<const Prepared>>();
        const auto planned = [reportFleet, c, prepared]() -> const Prepared& {
            if (!*prepared) *prepared = prepare(*reportFleet().connect(), c);
            return **prepared;
        };
        benchmark::RegisterBenchmark(c.name.c_str(), [c, reportFleet, planned](benchmark::State& state) {
            const Prepared& units = planned();
            const auto connection = reportFleet().connect();
            for (auto _ : state)
                for (const auto& params : units.params) c.call(*connection, params);
            state.counters["units"] = static_cast<double>(units.params.size());
            if (reportFleet().forcedWrites()) state.SetLabel("forced writes");
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((c.name + "/floor").c_str(), [c, reportFleet, planned](benchmark::State& state) {
            const Plan& plan = *planned().plan;
            RawDatabase raw(reportFleet().path());
            RawDatabase::Statement empty(raw, "delete from " + c.table);
            std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
            for (const std::string& sql : plan.texts())
                statements.push_back(std::make_unique<RawDatabase::Statement>(raw, sql));
            for (auto _ : state) {
                int rows = 0;
                for (const UnitSteps& unit : plan.units()) {
                    raw.beginWrite();
                    empty.execute({});
                    raw.commitWrite();
                    for (const Step& step : unit.reads)
                        rows += statements[static_cast<std::size_t>(step.statement)]->run(step.params, step.rows);
                    if (unit.inserts.empty()) continue;
                    raw.beginWrite();
                    for (const Step& step : unit.inserts)
                        statements[static_cast<std::size_t>(step.statement)]->execute(step.params);
                    raw.commitWrite();
                }
                benchmark::DoNotOptimize(rows);
            }
            state.counters["statements"] = static_cast<double>(plan.statementCount() + plan.units().size());
        })->Unit(benchmark::kMillisecond);
    }
}

}  // namespace mxbook::bench
