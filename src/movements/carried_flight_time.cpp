#include "carried_flight_time.h"

#include "flights/ground_share.h"
#include "mxbook/data/data_set.h"
#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook::movements {

namespace {

constexpr const char* flightsSql =
    "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, Kol_vo_posadok FROM Spravka WHERE "
    "(((Spravka.Data_poleta) BETWEEN :pSTART AND :pTODAY) AND ((Spravka.Bortovoi_nomer)=:pTAIL)) "
    "ORDER BY Data_poleta, ID;";
namespace flight {
constexpr int date = 0, type = 2, ground = 4, air = 5, landings = 6;
}

db::DataSet flightsFrom(db::Connection& connection, const std::string& tail, Date start) {
    db::DataSet records(connection, flightsSql);
    records.setParam("pSTART", start);
    records.setParam("pTODAY", host().today());
    records.setParam("pTAIL", tail);
    records.open();
    return records;
}

// The same query again from a later day: reopened in place, so that its
// prepared statement serves it instead of a second one being prepared.
void restartFrom(db::DataSet& records, Date start) {
    records.close();
    records.setParam("pSTART", start);
    records.open();
}

}  // namespace

std::optional<CarriedTime> carriedFlightTime(db::Connection& connection, const FlightSpan& span) {
    db::DataSet records = flightsFrom(connection, span.tailNumber, span.start);
    if (records.eof()) return std::nullopt;
    const std::string firstType = records.field(flight::type).asText();
    const flights::GroundShare ground =
        flights::groundShare(connection, span.groundType.value_or(firstType), flights::airframeUnits);

    const Date firstDay = records.field(flight::date).asDate();
    if (firstDay == span.moveDate) {
        const std::string type = span.groundType.value_or(firstType);
        const Answer answer = host().messageBox(host().foregroundWindow(), span.question(firstDay, type),
                                                "Внимание!", box::yesNo | box::iconQuestion);
        const Answer leavesOut = span.leaveOutOn == LeaveDayOutOn::no ? Answer::no : Answer::yes;
        if (answer == leavesOut) restartFrom(records, span.start.addDays(1));
    }

    CarriedTime carried;
    long long minutes = 0;
    for (; !records.eof(); records.next()) {
        minutes += flights::minutesOf(records.field(flight::air)) +
                   ground.of(flights::minutesOf(records.field(flight::ground)));
        carried.landings += records.field(flight::landings).asInt();
    }
    carried.minutes = Minutes(minutes);
    return carried;
}

}  // namespace mxbook::movements
