// mxbook move engine: an engine taken off the aircraft it is on, put where it
// goes, and installed there when that is an aircraft; the units mounted on it
// follow it. The engine and all its units are stored together.
#include <map>

#include "commands.h"
#include "move_rows.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"
#include "mxbook/remaining_life.h"
#include "registry.h"

namespace mxbook::cli {

namespace {

// The engine's own columns the move sets, as the engine form would.
namespace engine {
constexpr int id = 0, aircraftType = 1, serial = 3, moved = 10, location = 13, place = 23;
}
constexpr int places = 3;  // an aircraft's engine places: 0, 1, 2

// An engine's place; one outside 0 to 2 reads as the first.
int placeOf(const db::Field& field) {
    return field.isNull() || field.asInt() < 0 || field.asInt() >= places ? 0 : field.asInt();
}

// The engines standing at the tail other than `id`, by the place each occupies.
std::map<int, std::string> occupiedPlaces(db::Connection& connection, const std::string& tail, int id) {
    db::DataSet others(connection,
                       "select ID, ODIN_DVA from DVIGATEL where GDE_STOIT = :pTAIL and ID <> :pID "
                       "order by ID");
    others.setParam("pTAIL", tail);
    others.setParam("pID", id);
    std::map<int, std::string> occupied;
    for (others.open(); !others.eof(); others.next()) {
        std::string& names = occupied[placeOf(others.field(1))];
        names += (names.empty() ? "" : ", ") + std::string("@DVIGATEL:") + std::to_string(others.field(0).asInt());
    }
    return occupied;
}

// The place asked for (the first when none is) when no other engine stands
// in it. Another place is never taken unasked: an engine counted from the
// columns of a place its aircraft does not fly would gain nothing.
int placeAt(db::Connection& connection, const std::string& tail, int id, std::optional<int> asked) {
    const int place = asked.value_or(0);
    const std::map<int, std::string> occupied = occupiedPlaces(connection, tail, id);
    if (!occupied.contains(place)) return place;
    std::string taken, free;
    for (int other = 0; other < places; ++other) {
        const auto engines = occupied.find(other);
        if (engines == occupied.end())
            free += (free.empty() ? "" : ", ") + std::to_string(other);
        else
            taken += (taken.empty() ? "" : "; ") + std::to_string(other) + " (" + engines->second + ")";
    }
    throw ArgumentError("place " + std::to_string(place) + " of " + tail + " is taken: engines stand in places " +
                        taken + (free.empty() ? "; move one off first" : "; name a free place with --place: " + free));
}

// The units mounted on the engine (or once mounted on it), as text by ID.
struct UnitTexts {
    std::vector<std::string> columns;
    std::map<int, std::vector<std::string>> rows;
};

UnitTexts unitsOf(db::Connection& connection, const std::string& serial) {
    db::DataSet units(connection, "select * from AGREGAT where NUMER_DVIG_VSU = :pSERIAL order by ID");
    units.setParam("pSERIAL", serial);
    units.open();
    UnitTexts texts{columnNames(units), {}};
    for (; !units.eof(); units.next()) texts.rows[units.field(0).asInt()] = rowValues(units);
    return texts;
}

}  // namespace

int runMoveEngine(std::ostream& out, const Options& options, const MoveEngineRequest& request) {
    const std::optional<Date> date = isoDate(request.date);
    if (!date) throw UsageError("DATE: '" + request.date + "' is not a date written YYYY-MM-DD");
    if (request.place && (*request.place < 0 || *request.place >= places))
        throw ArgumentError("--place: " + std::to_string(*request.place) + " is not an engine place: 0, 1 or 2");
    db::Connection connection;
    openMainDatabase(connection, options);

    db::DataSet row(connection, "select * from DVIGATEL where ID = :pID");
    row.setParam("pID", rowId(connection, engines, request.engine));
    row.open();
    if (row.eof()) throw ArgumentError("no engine " + request.engine);
    const std::optional<std::string> toType = aircraftTypeOf(connection, request.to);
    if (!toType && !isOffAircraft(request.to))
        throw ArgumentError("'" + request.to +
                            "' is neither a tail number in the register nor one of Склад, "
                            "Ремфонд, Ремонт, Рекламация");
    const std::string from = row.field(engine::location).asText();
    if (!toType && request.place) throw ArgumentError("--place: '" + request.to + "' is not an aircraft");
    // The same aircraft again only to change the engine's place.
    if (from == request.to && (!toType || !request.place || *request.place == placeOf(row.field(engine::place))))
        throw ArgumentError("engine " + request.engine + " already stands at " + request.to);
    const bool fromAircraft = !from.empty() && !isOffAircraft(from);
    const int id = row.field(engine::id).asInt();
    // Onto an aircraft only.
    const int place = toType ? placeAt(connection, request.to, id, request.place) : 0;
    const std::string serial = row.field(engine::serial).asText();
    const std::string type = row.field(engine::aircraftType).asText();

    const std::vector<std::string> before = rowValues(row);
    db::UnitOfWork work(connection);
    const UnitTexts unitsBefore = unitsOf(connection, serial);
    // Off the aircraft: the engine and its units lose what it flew since the
    // date, while the engine still stands there.
    if (fromAircraft) {
        FunDvigatelMoveFromVS(connection, row, type, *date);
        FunAgregatMoveDvigatel(connection, row, type, *date, request.to, 1);
    } else if (!toType) {
        FunAgregatCorrectScladDvigatel(connection, serial, *date, from, request.to);
    }
    if (row.state() != db::DataSet::State::edit) row.edit();
    row.setValue(engine::location, request.to);
    row.setValue(engine::moved, *date);
    if (toType) {
        row.setValue(engine::aircraftType, *toType);
        row.setValue(engine::place, place);
        FunDvigatelMoveToVS(connection, row, *toType, request.to, *date);
        FunAgregatCorrectTipNumVSDvigatel(connection, *toType, serial, *date, request.to);
    }
    row.post();
    const std::vector<std::string> after = rowValues(row);
    row.updateBatch();
    const UnitTexts unitsAfter = unitsOf(connection, serial);
    if (request.dryRun)
        work.rollback();
    else
        work.commit();

    MoveChanges changes(true);
    changes.add("@DVIGATEL:" + std::to_string(id), columnNames(row), before, after);
    for (const auto& [unitId, values] : unitsAfter.rows)
        if (const auto was = unitsBefore.rows.find(unitId); was != unitsBefore.rows.end())
            changes.add("@AGREGAT:" + std::to_string(unitId), unitsAfter.columns, was->second, values);
    changes.print(out, options.format, request.dryRun);
    return 0;
}

}  // namespace mxbook::cli
