#include "form_lines.h"

#include <algorithm>

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/forms.h"
#include "mxbook/operating_time.h"

namespace mxbook::status {

namespace {

// The register row's columns the forms are counted from.
namespace aircraft {
constexpr int type = 1, hoursSinceOverhaul = 22, periodicForms = 33, lightForms = 34;
}

// The share of the interval left: none of it once the form is due, its
// tolerance running ("+H:MM") or used up ("00:00").
double shareLeft(const std::string& left, int intervalHours) {
    if (left.empty() || left.front() == '+' || intervalHours <= 0) return 0.0;
    // The end of a cycle counts to the overhaul instead, beyond one interval.
    return std::min(1.0, static_cast<double>(operating_time::parseHoursBeforeLastThree(left).count()) /
                             (intervalHours * 60.0));
}

UnitStatus formLine(const std::string& tail, const std::string& name, const std::string& booked,
                    const std::string& left, int intervalHours, const char* limit) {
    return UnitStatus{.tailNumber = tail,
                      .kind = std::string("форма ") + limit,
                      .unit = name,
                      .serial = {},
                      .place = tail,
                      .countsLandings = false,
                      .booked = {booked},
                      .lifeLeft = {left},
                      .overhaulLeft = {},
                      .otherLeft = {},
                      .comesOffAt = {},
                      .tightestShare = shareLeft(left, intervalHours),
                      .tightestLimit = limit};
}

}  // namespace

std::vector<UnitStatus> formLines(db::Connection& connection, const std::string& tail, const std::string& type) {
    db::DataSet programme(connection, "select VREMIA_F1, VREMIA_FORMA from PTO_FORMY where TIP_VS = :type order by ID",
                          db::DataSet::Traversal::forwardOnly);
    programme.setParam("type", type);
    programme.open();
    if (programme.eof()) return {};
    const int lightInterval = programme.field(0).asInt(), periodicInterval = programme.field(1).asInt();
    programme.close();

    db::DataSet row(connection, "select * from REESTR where BORTOVOI_NOMER = :tail order by ID");
    row.setParam("tail", tail);
    row.open();
    if (row.eof()) return {};
    std::string name;
    try {
        name = GetNameSledF1(connection, type, tail);
    } catch (const DataError&) {
        name = "ТО";  // a programme whose steps cannot be counted names no form
    }
    const std::string booked = row.field(aircraft::hoursSinceOverhaul).asText();
    return {formLine(tail, name, booked,
                     GetOstatTO(connection, row, aircraft::hoursSinceOverhaul, aircraft::type, aircraft::periodicForms),
                     periodicInterval, "ТО"),
            formLine(tail, "Ф-1", booked,
                     GetOstatF1(connection, row, aircraft::hoursSinceOverhaul, aircraft::type, aircraft::lightForms),
                     lightInterval, "Ф-1")};
}

}  // namespace mxbook::status
