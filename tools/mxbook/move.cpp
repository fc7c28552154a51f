// mxbook move component: a unit taken off the aircraft (or the engine) it is
// on, put where it goes, and installed there (or on an engine there) when
// that is an aircraft, all stored together.
#include "commands.h"
#include "move_rows.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"
#include "mxbook/remaining_life.h"
#include "registry.h"

namespace mxbook::cli {

namespace {

// The unit's own columns the move sets, as the unit form would.
namespace unit {
constexpr int aircraftType = 1, installed = 26, location = 27, mountedOn = 28, engineSerial = 29;
}
constexpr int onEngine = 1;  // PLAN_DVIG_VSU of a unit mounted on an engine

// ArgumentError unless exactly one engine with the factory number stands at the tail.
void requireEngineAt(db::Connection& connection, const std::string& serial, const std::string& tail) {
    db::DataSet found(connection, "select ID from DVIGATEL where GDE_STOIT = :pTAIL and ZAVODSKOI_NOMER = :pSERIAL");
    found.setParam("pTAIL", tail);
    found.setParam("pSERIAL", serial);
    int count = 0;
    for (found.open(); !found.eof(); found.next()) ++count;
    if (count == 0) throw ArgumentError("--engine: no engine with factory number " + serial + " stands at " + tail);
    if (count > 1)
        throw ArgumentError("--engine: " + std::to_string(count) + " engines with factory number " + serial +
                            " stand at " + tail);
}

}  // namespace

int runMoveComponent(std::ostream& out, const Options& options, const MoveRequest& request) {
    const std::optional<Date> date = isoDate(request.date);
    if (!date) throw UsageError("DATE: '" + request.date + "' is not a date written YYYY-MM-DD");
    db::Connection connection;
    openMainDatabase(connection, options);

    db::DataSet row(connection, "select * from AGREGAT where ID = :pID");
    row.setParam("pID", rowId(connection, components, request.unit));
    row.open();
    if (row.eof()) throw ArgumentError("no component " + request.unit);
    const db::Field mounted = row.field(unit::mountedOn);
    const bool wasOnEngine = !mounted.isNull() && mounted.asInt() == onEngine;
    if (!mounted.isNull() && mounted.asInt() != 0 && !wasOnEngine)
        throw ArgumentError("component " + request.unit + " is mounted on an APU: it moves with it");
    const std::optional<std::string> toType = aircraftTypeOf(connection, request.to);
    if (!toType && !isOffAircraft(request.to))
        throw ArgumentError("'" + request.to +
                            "' is neither a tail number in the register nor one of Склад, "
                            "Ремфонд, Ремонт, Рекламация");
    if (request.engine && !toType)
        throw ArgumentError("--engine: '" + request.to +
                            "' is not an aircraft; a component goes onto an engine "
                            "at the aircraft the engine is on");
    if (request.engine) requireEngineAt(connection, *request.engine, request.to);
    const std::string from = row.field(unit::location).asText();
    const std::optional<std::string> fromType = aircraftTypeOf(connection, from);

    const std::vector<std::string> before = rowValues(row);
    db::UnitOfWork work(connection);
    if (fromType && wasOnEngine)
        FunMoveAgregatFromDvig(connection, row, *fromType, from, *date);
    else if (fromType)
        FunMoveAgregatFromVS(connection, row, *fromType, from, *date);
    if (row.state() != db::DataSet::State::edit) row.edit();
    row.setValue(unit::location, request.to);
    row.setValue(unit::installed, *date);
    // Off its engine, a unit no longer follows it.
    if (wasOnEngine && !request.engine) {
        row.setValue(unit::mountedOn, 0);
        row.setValue(unit::engineSerial, nullptr);
    }
    if (toType) row.setValue(unit::aircraftType, *toType);
    if (request.engine) {
        row.setValue(unit::mountedOn, onEngine);
        row.setValue(unit::engineSerial, *request.engine);
        FunMoveAgregatToDvig(connection, row, request.to, *request.engine, *date);
    } else if (toType) {
        FunMoveAgregatToVS(connection, row, request.to, *date);
    }
    row.post();
    const std::vector<std::string> after = rowValues(row);
    row.updateBatch();
    if (request.dryRun)
        work.rollback();
    else
        work.commit();

    MoveChanges changes(false);
    changes.add("", columnNames(row), before, after);
    changes.print(out, options.format, request.dryRun);
    return 0;
}

}  // namespace mxbook::cli
