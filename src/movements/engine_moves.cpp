// Engines on and off aircraft: the engine's counters brought to the date of
// the move with what its place on the aircraft flew since.
#include "engine_moves.h"

#include "mxbook/conventions.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"
#include "unit_counters.h"

namespace mxbook::movements {

namespace {

enum class Measure { minutes, takeOff, nominal, maximal, cycles, starts };

struct EngineCounter {
    int column;
    Measure measure;
    bool onlyWhenBooked;  // an empty counter stays empty; the others read empty as zero
};

// The engine's counters and what each counts of a flight.
constexpr EngineCounter engineCounters[] = {
    {11, Measure::minutes, false}, {12, Measure::minutes, false}, {26, Measure::takeOff, true},
    {25, Measure::nominal, true},  {39, Measure::maximal, true},  {28, Measure::minutes, true},
    {27, Measure::cycles, false},  {31, Measure::cycles, false},  {42, Measure::starts, false},
    {43, Measure::starts, false},
};

long long amountOf(const CarriedTime& carried, Measure measure) {
    switch (measure) {
        case Measure::minutes: return carried.minutes.count();
        case Measure::takeOff: return carried.takeOff.count();
        case Measure::nominal: return carried.nominal.count();
        case Measure::maximal: return carried.maximal.count();
        case Measure::cycles: return carried.landings;
        case Measure::starts: return carried.starts;
    }
    return 0;
}

Changes engineChanges(db::DataSet& engine, const CarriedTime& carried, Direction direction) {
    Changes changes;
    for (const EngineCounter& counter : engineCounters) {
        if (counter.onlyWhenBooked && !isSet(engine, counter.column)) continue;
        const int amount = static_cast<int>(amountOf(carried, counter.measure));
        const bool hours = counter.measure != Measure::cycles && counter.measure != Measure::starts;
        if (hours)
            changes.emplace_back(counter.column, direction == Direction::on
                                                     ? FunHourCorrectToVS(engine, counter.column, amount)
                                                     : FunHourCorrectFromVS(engine, counter.column, amount));
        else
            changes.emplace_back(counter.column, direction == Direction::on
                                                     ? FunIntegerCorrectToVS(engine, counter.column, amount)
                                                     : FunIntegerCorrectFromVS(engine, counter.column, amount));
    }
    return changes;
}

std::optional<Date> registerOverhaul(db::Connection& connection, const std::string& type, const std::string& tail) {
    db::DataSet entry(connection,
                      "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA From REESTR Where ((TIP_VS)=:pTYPE) And "
                      "((Bortovoi_nomer)=:pTAIL) Order By ID;");
    entry.setParam("pTYPE", type);
    entry.setParam("pTAIL", tail);
    entry.open();
    if (entry.eof() || entry.field(2).isNull()) return std::nullopt;
    return entry.field(2).asDate();
}

}  // namespace

int enginePlace(db::DataSet& engine) {
    const db::Field place = engine.field(engine::place);
    return place.isNull() ? 0 : place.asInt();
}

FlightSpan engineFlights(db::DataSet& engine, const std::string& aircraftType, Date date, Direction direction,
                         std::function<std::string(Date, const std::string&)> question) {
    return FlightSpan{.source = FlightsOf::registeredEngine,
                      .tailNumber = engine.field(engine::location).asText(),
                      .aircraftType = aircraftType,
                      .enginePlace = enginePlace(engine),
                      .start = date,
                      .moveDate = date,
                      .groundType = aircraftType,
                      .leaveOutOn = direction == Direction::on ? LeaveDayOutOn::no : LeaveDayOutOn::yes,
                      .leavingOutStartsAfterOverhaul = direction == Direction::off,
                      .question = std::move(question)};
}

void moveEngine(db::Connection& connection, db::DataSet& engine, const std::string& aircraftType,
                const std::optional<std::string>& registeredTail, Date date, Direction direction) {
    checkTable(engine, "DVIGATEL", engine::columns);
    const std::string tail = engine.field(engine::location).asText();
    const std::string name = engine.field(engine::name).asText();
    const std::string serial = engine.field(engine::serial).asText();
    FlightSpan span = engineFlights(engine, aircraftType, date, direction,
                                    [aircraftType, tail, name, serial](Date day, const std::string&) {
                                        return flightOnTheDay(day, aircraftType, tail) +
                                               "Учесть налет этого дня в наработке " + name + " №" + serial + "?";
                                    });
    span.ground = flights::engines;
    // Installed, nothing counts from before the aircraft's overhaul.
    if (registeredTail) {
        const std::optional<Date> overhaul = registerOverhaul(connection, aircraftType, *registeredTail);
        if (overhaul && *overhaul > date) span.start = *overhaul;
    }
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    if (carried) write(engine, engineChanges(engine, *carried, direction));
}

}  // namespace mxbook::movements

namespace mxbook {

void FunDvigatelMoveToVS(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                         const std::string& tailNumber, Date date) {
    movements::moveEngine(connection, engineRow, aircraftType, tailNumber, date, movements::Direction::on);
}

void FunDvigatelMoveFromVS(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                           Date date) {
    movements::moveEngine(connection, engineRow, aircraftType, std::nullopt, date, movements::Direction::off);
}

}  // namespace mxbook
