// The forms counted in landings and in calendar months rather than hours.
#include "mxbook/data/data_set.h"
#include "mxbook/forms.h"
#include "mxbook/host.h"
#include "programme.h"

namespace mxbook {

namespace {

// The landing-counted form falls every 50 landings, 5 of tolerance.
constexpr long long landingsBetweenForms = 50;
constexpr long long landingsTolerance = 5;
// The calendar form falls four months after its period starts.
constexpr int calendarFormMonths = 4;

constexpr const char* landingsSinceSql =
    "Select Sum(KOL_VO_POSADOK) From SPRAVKA Where BORTOVOI_NOMER=:pTAIL And TIP_VS=:pTIP "
    "And DATA_POLETA>:pSINCE And DATA_POLETA<=:pTODAY";

}  // namespace

std::string GetOstatTOPos(db::Connection& connection, const std::string& aircraftType, const std::string& tailNumber,
                          Date since) {
    db::DataSet landings(connection, landingsSinceSql, db::DataSet::Traversal::forwardOnly);
    landings.setParam("pTAIL", tailNumber);
    landings.setParam("pTIP", aircraftType);
    landings.setParam("pSINCE", since);
    landings.setParam("pTODAY", host().today());
    landings.open();
    const long long landed = landings.eof() ? 0 : landings.field(0).asInt64();
    return forms::landingsLeftText(landingsBetweenForms, landed, landingsTolerance);
}

std::string GetOstatTOCalendar(db::DataSet& row) {
    const db::Field start = row.field(forms::reestr::calendarFormStart);
    if (start.isNull()) return "0 дн.";
    const Date due = start.asDate().addMonths(calendarFormMonths);
    const Date today = host().today();
    return (today < due ? std::to_string(daysBetween(today, due)) : "0") + " дн.";
}

}  // namespace mxbook
