// General components mounted on an engine: onto and off it, and following it
// when the engine itself moves.
#include "agregat_columns.h"
#include "engine_moves.h"
#include "mxbook/data/unit_of_work.h"
#include "mxbook/movements.h"
#include "mxbook/oil.h"
#include "unit_counters.h"

namespace mxbook::movements {

namespace {

constexpr const char* questionBody = "Учесть налет этого дня в наработке\r\n";

bool flagIs(db::DataSet& row, int column, int value) {
    const db::Field field = row.field(column);
    return !field.isNull() && field.asInt() == value;
}

// Taken off a unit as its engine leaves the aircraft: hours, or cycles for a
// unit counted otherwise; oil time unless the unit takes its time from the engine.
constexpr RemovalRules engineLeaving{.countsOffWhenMounted = true, .oilOffWhenDerived = false};

// The question naming the unit by its own name, drawing and factory numbers.
std::function<std::string(Date, const std::string&)> leavingQuestion(db::DataSet& engine, db::DataSet& row,
                                                                      const std::string& aircraftType) {
    const std::string tail = engine.field(engine::location).asText();
    const std::string named = "«" + row.field(generalComponent.name).asText() + " " +
                              row.field(generalComponent.drawingNumber).asText() + " №" +
                              row.field(generalComponent.serial).asText() + "»?";
    return [aircraftType, tail, named](Date day, const std::string&) {
        return flightOnTheDay(day, aircraftType, tail) + questionBody + named;
    };
}

FlightSpan leavingFlights(db::DataSet& engine, db::DataSet& row, const std::string& aircraftType, Date date) {
    FlightSpan span = engineFlights(engine, aircraftType, date, Direction::off, leavingQuestion(engine, row, aircraftType));
    span.ground = flights::engineUnits;
    return span;
}

struct MountingEngine {
    db::Value hours;
    db::Value cycles;
    std::optional<Date> overhaul;
    int place = 0;
};

std::optional<MountingEngine> engineAt(db::Connection& connection, const std::string& tail, const std::string& serial) {
    db::DataSet engine(connection, "Select * From DVIGATEL Where GDE_STOIT=:pTAIL And ZAVODSKOI_NOMER=:pSERIAL Order By ID;");
    engine.setParam("pTAIL", tail);
    engine.setParam("pSERIAL", serial);
    engine.open();
    if (engine.eof()) return std::nullopt;
    const db::Field overhaul = engine.field(engine::overhaul);
    return MountingEngine{engine.field(engine::hours).value(), engine.field(engine::cycles).value(),
                          overhaul.isNull() ? std::nullopt : std::optional(overhaul.asDate()), enginePlace(engine)};
}

std::optional<std::string> registeredType(db::Connection& connection, const std::string& tail) {
    db::DataSet entry(connection, "Select Tip_VS, Bortovoi_nomer From REESTR Where ((Bortovoi_nomer)=:pTAIL) Order By ID;");
    entry.setParam("pTAIL", tail);
    entry.open();
    if (entry.eof()) return std::nullopt;
    return entry.field(0).asText();
}

// The place of the engine with the serial number among those at the tail; none when it is not there.
std::optional<int> placeAt(db::Connection& connection, const std::string& tail, const std::string& serial) {
    db::DataSet engines(connection,
                        "Select ZAVODSKOI_NOMER, ODIN_DVA From DVIGATEL Where GDE_STOIT=:pTAIL Order By ODIN_DVA, ID;");
    engines.setParam("pTAIL", tail);
    for (engines.open(); !engines.eof(); engines.next())
        if (engines.field(0).asText() == serial) return engines.field(1).isNull() ? 0 : engines.field(1).asInt();
    return std::nullopt;
}

void installOnEngine(db::Connection& connection, db::DataSet& row, const std::string& tail, const std::string& serial,
                     Date date) {
    const std::optional<MountingEngine> engine = engineAt(connection, tail, serial);
    const std::optional<std::string> type = registeredType(connection, tail);
    FlightSpan span{.source = FlightsOf::enginePlace,
                    .tailNumber = tail,
                    .enginePlace = engine ? engine->place : 0,
                    .start = engine && engine->overhaul && *engine->overhaul > date ? *engine->overhaul : date,
                    .moveDate = date,
                    .groundType = type,
                    .ground = flights::engineUnits,
                    .leaveOutOn = LeaveDayOutOn::no,
                    .question = [&connection, &row, tail](Date day, const std::string& flightType) {
                        return flightOnTheDay(day, flightType, tail) + questionBody +
                               unitByReference(connection, row, generalComponent);
                    }};
    const std::optional<CarrierCounters> counters =
        engine ? std::optional(CarrierCounters{engine->hours, engine->cycles}) : std::nullopt;
    write(row, installation(row, generalComponent, counters, carriedFlightTime(connection, span),
                            {serial, "engine at " + tail + ", whose counter a move needs"}));
}

void removeFromEngine(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                      const std::string& tail, Date date) {
    const std::string serial = row.field(agregat::engineSerial).asText();
    const std::optional<int> place = placeAt(connection, tail, serial);
    if (!place) return;
    const FlightSpan span{.source = FlightsOf::mountingEngine,
                          .tailNumber = tail,
                          .engineSerial = serial,
                          .enginePlace = *place,
                          .start = date,
                          .moveDate = date,
                          .ground = flights::engineUnits,
                          .leaveOutOn = LeaveDayOutOn::yes,
                          .leavingOutStartsAfterOverhaul = true,
                          .question = [&connection, &row, aircraftType, tail](Date day, const std::string&) {
                              return flightOnTheDay(day, aircraftType, tail) + questionBody +
                                     unitInQuestion(connection, row, generalComponent, " № ");
                          }};
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    if (carried) write(row, removal(row, generalComponent, *carried, {.countsOffWhenMounted = true}));
}

// The engine's units, moved with it: changed in the walk's rows, stored by the caller.
void followEngine(db::Connection& connection, db::DataSet& engine, const std::string& aircraftType, Date date,
                  const std::string& newLocation, int removalFlag, db::DataSet& units) {
    const std::string location = engine.field(engine::location).asText();
    // The engine's flights, read once for the walk; each unit answers its own question.
    std::optional<std::optional<Flights>> flights;
    for (; !units.eof(); units.next()) {
        Changes changes;
        const bool derived = flagIs(units, generalComponent.indirectFlag, 1);
        // The oil time to the date, before the installation date it counts from is overwritten.
        if (derived && flagIs(units, agregat::oilTracked, 1) && isSet(units, generalComponent.oilChangeDate))
            changes.emplace_back(generalComponent.oilTime, FunNarMasloAgregat(connection, units, location, date));
        changes.emplace_back(agregat::installed, date);
        changes.emplace_back(agregat::nextCheck, date.addYears(1));
        changes.emplace_back(agregat::location, newLocation);
        changes.emplace_back(agregat::place, "Установлен на двигатель");
        const db::Field flag = units.field(generalComponent.indirectFlag);
        if ((flag.isNull() || flag.asInt() == 0) && removalFlag != 0) {
            const FlightSpan span = leavingFlights(engine, units, aircraftType, date);
            if (!flights) flights = Flights::read(connection, span);
            if (*flights)
                for (auto& change : removal(units, generalComponent, (*flights)->carried(span), engineLeaving))
                    changes.push_back(std::move(change));
        }
        write(units, changes);
        units.post();
    }
}

}  // namespace

}  // namespace mxbook::movements

namespace mxbook {

using namespace movements;

void FunMoveAgregatToDvig(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                          const std::string& engineSerial, Date date) {
    checkKind(row, generalComponent);
    installOnEngine(connection, row, tailNumber, engineSerial, date);
}

void FunMoveAgregatFromDvig(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                            const std::string& tailNumber, Date date) {
    checkKind(row, generalComponent);
    removeFromEngine(connection, row, aircraftType, tailNumber, date);
}

void FunCorrectAgrDvigFromVS(db::Connection& connection, db::DataSet& engineRow, db::DataSet& row,
                             const std::string& aircraftType, Date date) {
    checkTable(engineRow, "DVIGATEL", engine::columns);
    checkKind(row, generalComponent);
    const FlightSpan span = leavingFlights(engineRow, row, aircraftType, date);
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    if (carried) write(row, removal(row, generalComponent, *carried, engineLeaving));
}

void FunAgregatMoveDvigatel(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                            Date date, const std::string& newLocation, int removalFlag) {
    checkTable(engineRow, "DVIGATEL", engine::columns);
    db::UnitOfWork work(connection);
    db::DataSet units(connection,
                      "SELECT * FROM Agregat WHERE (((Gde_stoit)=:pLOCATION) AND ((PLAN_DVIG_VSU)=1) "
                      "AND ((Tip_VS)=:pTYPE) AND ((NUMER_DVIG_VSU)=:pSERIAL)) ORDER BY NAZVANIE, ID;");
    units.setParam("pLOCATION", engineRow.field(engine::location).value());
    units.setParam("pTYPE", aircraftType);
    units.setParam("pSERIAL", engineRow.field(engine::serial).value());
    units.open();
    followEngine(connection, engineRow, aircraftType, date, newLocation, removalFlag, units);
    units.updateBatch();
    work.commit();
}

}  // namespace mxbook
