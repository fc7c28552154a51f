// Installing a unit on an aircraft and taking it off: its counters brought
// to the date of the move with what the aircraft flew since. Every value is
// computed first and written into the row at the end, so that an error
// leaves the row as it was.
#include "carried_flight_time.h"
#include "mxbook/movements.h"
#include "unit_counters.h"

namespace mxbook::movements {

namespace {

constexpr const char* registerSql =
    "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA, NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR "
    "Where ((Bortovoi_nomer)=:pTAIL) Order By ID;";
constexpr const char* overhaulSql = "SELECT DATA_REMONTA FROM Reestr WHERE Bortovoi_nomer=:pTAIL ORDER BY ID;";

namespace aircraft {
constexpr int type = 0, overhaul = 2, hours = 3, landings = 4;
}

// The aircraft's register row, as an installation reads it.
struct RegisterEntry {
    std::string type;
    std::optional<Date> overhaul;
    db::Value hours;
    db::Value landings;
};

std::optional<RegisterEntry> registerEntry(db::Connection& connection, const std::string& tail) {
    db::DataSet entry(connection, registerSql);
    entry.setParam("pTAIL", tail);
    entry.open();
    if (entry.eof()) return std::nullopt;
    const db::Field overhaul = entry.field(aircraft::overhaul);
    return RegisterEntry{entry.field(aircraft::type).asText(),
                         overhaul.isNull() ? std::nullopt : std::optional(overhaul.asDate()),
                         entry.field(aircraft::hours).value(), entry.field(aircraft::landings).value()};
}

// Nothing is carried from before the aircraft's overhaul.
Date startOf(Date moveDate, const std::optional<Date>& overhaul) {
    return overhaul && *overhaul > moveDate ? *overhaul : moveDate;
}

// The question about a flight on the day of the move. It names `namedType`
// when given (a removal names the caller's), else the type the flights go by.
std::function<std::string(Date, const std::string&)> question(db::Connection& connection, db::DataSet& row,
                                                               const UnitMove& kind, const std::string& tail,
                                                               const char* numberSign,
                                                               std::optional<std::string> namedType = {}) {
    return [&connection, &row, &kind, tail, numberSign, namedType](Date day, const std::string& type) {
        return flightOnTheDay(day, namedType.value_or(type), tail) + "Учесть налет этого дня в наработке\r\n" +
               unitInQuestion(connection, row, kind, numberSign);
    };
}

void install(db::Connection& connection, db::DataSet& row, const UnitMove& kind, const std::string& tail, Date date) {
    const std::optional<RegisterEntry> entry = registerEntry(connection, tail);
    const FlightSpan span{.tailNumber = tail,
                          .start = startOf(date, entry ? entry->overhaul : std::nullopt),
                          .moveDate = date,
                          .groundType = entry ? entry->type : std::string(),
                          .leaveOutOn = LeaveDayOutOn::no,
                          .question = question(connection, row, kind, tail, " №")};
    const std::optional<CarrierCounters> counters =
        entry ? std::optional(CarrierCounters{entry->hours, entry->landings}) : std::nullopt;
    write(row, installation(row, kind, counters, carriedFlightTime(connection, span),
                            {tail, "aircraft in the register, whose counter a move needs"}));
}

void remove(db::Connection& connection, db::DataSet& row, const UnitMove& kind, const std::string& aircraftType,
            const std::string& tail, Date date) {
    db::DataSet overhaul(connection, overhaulSql);
    overhaul.setParam("pTAIL", tail);
    overhaul.open();
    // Flights count only against an aircraft in the register.
    if (overhaul.eof()) return;
    const std::optional<Date> overhaulDate =
        overhaul.field(0).isNull() ? std::nullopt : std::optional(overhaul.field(0).asDate());
    overhaul.close();
    const FlightSpan span{.tailNumber = tail,
                          .start = startOf(date, overhaulDate),
                          .moveDate = date,
                          .leaveOutOn = LeaveDayOutOn::yes,
                          .question = question(connection, row, kind, tail, " № ", aircraftType)};
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    if (carried) write(row, removal(row, kind, *carried, {}));
}

}  // namespace

}  // namespace mxbook::movements

namespace mxbook {

void FunMoveAgregatToVS(db::Connection& connection, db::DataSet& row, const std::string& tailNumber, Date date) {
    movements::checkKind(row, movements::generalComponent);
    movements::install(connection, row, movements::generalComponent, tailNumber, date);
}

void FunMoveAgregatFromVS(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                          const std::string& tailNumber, Date date) {
    movements::checkKind(row, movements::generalComponent);
    movements::remove(connection, row, movements::generalComponent, aircraftType, tailNumber, date);
}

}  // namespace mxbook
