#include "carried_flight_time.h"

#include "mxbook/data/data_set.h"
#include "mxbook/host.h"

namespace mxbook::movements {

namespace {

// Where a flight query's columns stand; -1 where it has none.
struct Layout {
    int date, type, air, ground, count;
    int takeOff = -1, nominal = -1, maximal = -1, starts = -1;
    int overhaul = -1;
};

constexpr const char* aircraftSql =
    "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, Kol_vo_posadok FROM Spravka WHERE "
    "(((Spravka.Data_poleta) BETWEEN :pSTART AND :pTODAY) AND ((Spravka.Bortovoi_nomer)=:pTAIL)) "
    "ORDER BY Data_poleta, ID;";
constexpr Layout aircraftLayout{0, 2, 5, 4, 6};
// The engine queries: date, ID, type, the overhaul date (or the tail), then the place's columns.
constexpr Layout engineLayout{0, 2, 4, 5, 6, 7, 8, 9, 10};

// The columns of an engine place: "_1" for the first engine, and for any
// place that is not the second or third.
std::string engineSql(const FlightSpan& span) {
    const std::string k = "_" + std::to_string(span.enginePlace == 1 || span.enginePlace == 2 ? span.enginePlace + 1 : 1);
    const std::string place = "Spravka.V_vozduhe" + k + ", Spravka.Na_zemle" + k + ", Spravka.KOL_VO_CICLOV" + k +
                              ", Spravka.NA_VZLETNOM" + k + ", Spravka.NOMINAL" + k + ", Spravka.MAXIMAL" + k +
                              ", Spravka.KOL_VO_ZAPUSKOV" + k;
    const std::string span_ = "(Spravka.Data_poleta BETWEEN :pSTART AND :pTODAY) AND ";
    const std::string order = " ORDER BY Spravka.Data_poleta, Spravka.ID";
    switch (span.source) {
        case FlightsOf::registeredEngine:
            return "SELECT Spravka.Data_poleta, Spravka.ID, Spravka.Tip_VS, Reestr.DATA_REMONTA, " + place +
                   " FROM Spravka, Reestr WHERE " + span_ +
                   "(Spravka.Tip_VS = :pTYPE) AND (Spravka.Bortovoi_nomer = :pTAIL) AND (Reestr.Tip_VS = :pTYPE) AND "
                   "(Reestr.Bortovoi_nomer = :pTAIL)" +
                   order;
        case FlightsOf::mountingEngine:
            return "SELECT Spravka.Data_poleta, Spravka.ID, Spravka.Tip_VS, DVIGATEL.REMONT_DATA, " + place +
                   " FROM Spravka, DVIGATEL WHERE " + span_ +
                   "(Spravka.Bortovoi_nomer = :pTAIL) AND (DVIGATEL.GDE_STOIT = :pTAIL) AND "
                   "(DVIGATEL.ZAVODSKOI_NOMER = :pSERIAL)" +
                   order;
        default:
            return "SELECT Spravka.Data_poleta, Spravka.ID, Spravka.Tip_VS, Spravka.Bortovoi_nomer, " + place +
                   " FROM Spravka WHERE " + span_ + "(Spravka.Bortovoi_nomer = :pTAIL)" + order;
    }
}

int countOf(const db::Field& field) { return field.isNull() ? 0 : field.asInt(); }

}  // namespace

std::optional<Flights> Flights::read(db::Connection& connection, const FlightSpan& span) {
    const bool ownColumns = span.source == FlightsOf::aircraft;
    Layout layout = ownColumns ? aircraftLayout : engineLayout;
    if (span.source == FlightsOf::registeredEngine || span.source == FlightsOf::mountingEngine) layout.overhaul = 3;
    db::DataSet records(connection, ownColumns ? std::string(aircraftSql) : engineSql(span),
                        db::DataSet::Traversal::forwardOnly);
    records.setParam("pSTART", span.start);
    records.setParam("pTODAY", host().today());
    records.setParam("pTAIL", span.tailNumber);
    if (span.source == FlightsOf::registeredEngine) records.setParam("pTYPE", span.aircraftType);
    if (span.source == FlightsOf::mountingEngine) records.setParam("pSERIAL", span.engineSerial);
    records.open();
    if (records.eof()) return std::nullopt;

    Flights read;
    read.firstType_ = records.field(layout.type).asText();
    if (layout.overhaul >= 0 && !records.field(layout.overhaul).isNull())
        read.firstOverhaul_ = records.field(layout.overhaul).asDate();
    const flights::GroundShare ground =
        flights::groundShare(connection, span.groundType.value_or(read.firstType_), span.ground);
    const auto minutes = [&](int column) { return Minutes(column < 0 ? 0 : flights::minutesOf(records.field(column))); };
    for (; !records.eof(); records.next()) {
        CarriedTime time;
        time.minutes = Minutes(flights::minutesOf(records.field(layout.air)) +
                               ground.of(flights::minutesOf(records.field(layout.ground))));
        time.landings = countOf(records.field(layout.count));
        time.takeOff = minutes(layout.takeOff);
        time.nominal = minutes(layout.nominal);
        time.maximal = minutes(layout.maximal);
        time.starts = layout.starts < 0 ? 0 : countOf(records.field(layout.starts));
        read.flights_.push_back({records.field(layout.date).asDate(), time});
    }
    return read;
}

CarriedTime Flights::since(Date day) const {
    CarriedTime sum;
    for (const Flight& flight : flights_) {
        if (flight.day < day) continue;
        sum.minutes += flight.time.minutes;
        sum.landings += flight.time.landings;
        sum.takeOff += flight.time.takeOff;
        sum.nominal += flight.time.nominal;
        sum.maximal += flight.time.maximal;
        sum.starts += flight.time.starts;
    }
    return sum;
}

CarriedTime Flights::carried(const FlightSpan& span) const {
    const Date firstDay = flights_.front().day;
    if (firstDay == span.moveDate) {
        const std::string type = span.groundType.value_or(firstType_);
        const Answer answer = host().messageBox(host().foregroundWindow(), span.question(firstDay, type),
                                                "Внимание!", box::yesNo | box::iconQuestion);
        const Answer leavesOut = span.leaveOutOn == LeaveDayOutOn::no ? Answer::no : Answer::yes;
        if (answer == leavesOut) {
            Date from = span.start;
            if (span.leavingOutStartsAfterOverhaul && firstOverhaul_ && *firstOverhaul_ > from) from = *firstOverhaul_;
            return since(from.addDays(1));
        }
    }
    return since(span.start);
}

std::optional<CarriedTime> carriedFlightTime(db::Connection& connection, const FlightSpan& span) {
    const std::optional<Flights> flights = Flights::read(connection, span);
    if (!flights) return std::nullopt;
    return flights->carried(span);
}

}  // namespace mxbook::movements
