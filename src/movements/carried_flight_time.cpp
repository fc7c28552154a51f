#include "carried_flight_time.h"

#include "mxbook/data/data_set.h"
#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook::movements {

namespace {

constexpr const char* flightsSql =
    "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, Kol_vo_posadok FROM Spravka WHERE "
    "(((Spravka.Data_poleta) BETWEEN :pSTART AND :pTODAY) AND ((Spravka.Bortovoi_nomer)=:pTAIL)) "
    "ORDER BY Data_poleta, ID;";
constexpr const char* groundSql =
    "Select ZEMLIA_AGREGATY, KOL_VO_ZEMLIA_AGREGATY From TIPOVYE_DANNYE_VS Where TIP_VS=:pTIP_VS Order By ID;";

namespace flight {
constexpr int date = 0, type = 2, ground = 4, air = 5, landings = 6;
}

// Ground running time counts for units of the type when its switch is "1",
// weighted by its factor (none: 0).
struct GroundSetting {
    bool counts = false;
    double weight = 0;
};

GroundSetting groundSettingOf(db::Connection& connection, const std::string& type) {
    db::DataSet setting(connection, groundSql);
    setting.setParam("pTIP_VS", type);
    setting.open();
    if (setting.eof()) return {};
    return {trim(setting.field(0).asText()) == "1", setting.field(1).asDouble()};
}

db::DataSet flightsFrom(db::Connection& connection, const std::string& tail, Date start) {
    db::DataSet flights(connection, flightsSql);
    flights.setParam("pSTART", start);
    flights.setParam("pTODAY", host().today());
    flights.setParam("pTAIL", tail);
    flights.open();
    return flights;
}

// The same query again from a later day: reopened in place, so that its
// prepared statement serves it instead of a second one being prepared.
void restartFrom(db::DataSet& flights, Date start) {
    flights.close();
    flights.setParam("pSTART", start);
    flights.open();
}

int wholeMinutes(const db::Field& time) { return time.isNull() ? 0 : time.asTime().wholeMinutes(); }

}  // namespace

std::optional<CarriedTime> carriedFlightTime(db::Connection& connection, const FlightSpan& span) {
    db::DataSet flights = flightsFrom(connection, span.tailNumber, span.start);
    if (flights.eof()) return std::nullopt;
    const std::string firstType = flights.field(flight::type).asText();
    const GroundSetting ground = groundSettingOf(connection, span.groundType.value_or(firstType));

    const Date firstDay = flights.field(flight::date).asDate();
    if (firstDay == span.moveDate) {
        const std::string type = span.groundType.value_or(firstType);
        const Answer answer = host().messageBox(host().foregroundWindow(), span.question(firstDay, type),
                                                "Внимание!", box::yesNo | box::iconQuestion);
        const Answer leavesOut = span.leaveOutOn == LeaveDayOutOn::no ? Answer::no : Answer::yes;
        if (answer == leavesOut) restartFrom(flights, span.start.addDays(1));
    }

    CarriedTime carried;
    long long minutes = 0;
    for (; !flights.eof(); flights.next()) {
        minutes += wholeMinutes(flights.field(flight::air));
        if (ground.counts)
            minutes += static_cast<long long>(
                roundHalfAwayFromZero(wholeMinutes(flights.field(flight::ground)) * ground.weight));
        carried.landings += flights.field(flight::landings).asInt();
    }
    carried.minutes = Minutes(minutes);
    return carried;
}

}  // namespace mxbook::movements
