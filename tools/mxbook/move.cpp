// mxbook move component: a unit taken off the aircraft it is on, put where
// it goes, and installed there when that is an aircraft, all stored together.
#include <map>

#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/movements.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"
#include "registry.h"

namespace mxbook::cli {

namespace {

constexpr const char* unitSql = "select * from AGREGAT where ID = :pID";
constexpr const char* bySerialSql = "select ID from AGREGAT where ZAVODSKOI_NOMER = :pSERIAL order by ID";
constexpr const char* aircraftSql = "select TIP_VS from REESTR where BORTOVOI_NOMER = :pTAIL order by ID";

// The unit's own columns the move sets, as the unit form would.
namespace unit {
constexpr int aircraftType = 1, installed = 26, location = 27, mountedOn = 28;
}

// The ID of `@AGREGAT:ID`, or of the one unit with that factory number.
int unitId(db::Connection& connection, const std::string& unit) {
    constexpr std::string_view prefix = "@AGREGAT:";
    if (unit.starts_with(prefix)) {
        const std::optional<int> id = [&]() -> std::optional<int> {
            try {
                return static_cast<int>(parseInt(unit.substr(prefix.size())));
            } catch (const ConversionError&) {
                return std::nullopt;
            }
        }();
        if (!id) throw UsageError("UNIT: '" + unit + "' is not @AGREGAT:ID or a factory number");
        return *id;
    }
    db::DataSet units(connection, bySerialSql);
    units.setParam("pSERIAL", unit);
    std::vector<int> ids;
    for (units.open(); !units.eof(); units.next()) ids.push_back(units.field(0).asInt());
    if (ids.empty()) throw ArgumentError("no component with factory number " + unit);
    if (ids.size() > 1) {
        std::string list;
        for (int id : ids) list += (list.empty() ? "@AGREGAT:" : ", @AGREGAT:") + std::to_string(id);
        throw ArgumentError("factory number " + unit + " names " + std::to_string(ids.size()) +
                            " components: " + list + "; name one of them");
    }
    return ids.front();
}

// The aircraft type of a registered tail number.
std::optional<std::string> aircraftTypeOf(db::Connection& connection, const std::string& tail) {
    db::DataSet aircraft(connection, aircraftSql);
    aircraft.setParam("pTAIL", tail);
    aircraft.open();
    if (aircraft.eof()) return std::nullopt;
    return aircraft.field(0).asText();
}

std::vector<std::string> rowValues(db::DataSet& row) {
    std::vector<std::string> values;
    for (int i = 0; i < row.fieldCount(); ++i) values.push_back(row.field(i).asText());
    return values;
}

}  // namespace

int runMoveComponent(std::ostream& out, const Options& options, const MoveRequest& request) {
    const std::optional<Date> date = isoDate(request.date);
    if (!date) throw UsageError("DATE: '" + request.date + "' is not a date written YYYY-MM-DD");
    db::Connection connection;
    openMainDatabase(connection, options);

    db::DataSet row(connection, unitSql);
    row.setParam("pID", unitId(connection, request.unit));
    row.open();
    if (row.eof()) throw ArgumentError("no component " + request.unit);
    if (row.field(unit::mountedOn).asInt() != 0)
        throw ArgumentError("component " + request.unit + " is mounted on an engine or an APU: it moves with it");
    const std::optional<std::string> toType = aircraftTypeOf(connection, request.to);
    if (!toType && !isOffAircraft(request.to))
        throw ArgumentError("'" + request.to + "' is neither a tail number in the register nor one of Склад, "
                            "Ремфонд, Ремонт, Рекламация");
    const std::string from = row.field(unit::location).asText();
    const std::optional<std::string> fromType = aircraftTypeOf(connection, from);

    const std::vector<std::string> before = rowValues(row);
    db::UnitOfWork work(connection);
    if (fromType) FunMoveAgregatFromVS(connection, row, *fromType, from, *date);
    if (row.state() != db::DataSet::State::edit) row.edit();
    row.setValue(unit::location, request.to);
    row.setValue(unit::installed, *date);
    if (toType) {
        row.setValue(unit::aircraftType, *toType);
        FunMoveAgregatToVS(connection, row, request.to, *date);
    }
    row.post();
    const std::vector<std::string> after = rowValues(row);
    row.updateBatch();
    if (request.dryRun)
        work.rollback();
    else
        work.commit();

    Listing changes({{"column"}, {"before"}, {"after"}});
    for (int i = 0; i < row.fieldCount(); ++i)
        if (before[i] != after[i]) changes.add({row.fieldInfo(i).name, before[i], after[i]});
    changes.print(out, options.format);
    if (request.dryRun && options.format == Format::table) out << "(a dry run: nothing was stored)\n";
    return 0;
}

}  // namespace mxbook::cli
