// Winch cables count hoists, summed from the flight records rather than
// taken from a carrier's counter.
#include <algorithm>

#include "indirect_kinds.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

namespace winch {
constexpr int cableDate = 6;  // the cable's own start
constexpr int installedDate = 17;
constexpr int indirectFlag = 25;
constexpr int hoistsWithPeople = 29;
}  // namespace winch

Date dateOrZero(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return field.isNull() ? Date() : field.asDate();
}

}  // namespace

std::string FunNepNarTros(db::Connection& connection, db::DataSet& row, const std::string& tailNumber, int cyclesColumn,
                          Date endDate) {
    const remaining::Queries queries(connection);
    const int base = std::max(remaining::intOrZero(row, cyclesColumn), 0);
    const Date cable = dateOrZero(row, winch::cableDate);
    const Date installed = dateOrZero(row, winch::installedDate);
    const Date start = cable > installed ? cable : installed;

    auto aircraft = queries.open("Select TIP_VS, BORTOVOI_NOMER, DATA_REMONTA From REESTR WHERE ((BORTOVOI_NOMER)=:tail);",
                                 {{"tail", tailNumber}});
    const Date overhauled = aircraft.eof() ? Date() : dateOrZero(aircraft, 2);
    auto flownSinceOverhaul = queries.open(
        "SELECT Data_poleta, ID, Bortovoi_nomer, Tip_VS From Spravka Where (((Bortovoi_nomer) = :tail) AND "
        "((DATA_POLETA)>=:since))ORDER BY Data_poleta, ID;",
        {{"tail", tailNumber}, {"since", overhauled}});
    // No flight since the overhaul: nothing is counted, the base included.
    if (flownSinceOverhaul.eof()) return "0";

    auto flights = queries.open(
        "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, LEBEDKA_CICL_LUDI, LEBEDKA_CICL_GRUZY FROM Spravka WHERE "
        "(((Bortovoi_nomer)=:tail)) AND ((Data_poleta) Between :start And :end) ORDER BY Data_poleta, ID;",
        {{"tail", tailNumber}, {"start", start}, {"end", endDate}});
    const int hoists = cyclesColumn == winch::hoistsWithPeople ? 4 : 5;
    long long sum = base;
    for (; !flights.eof(); flights.next()) sum += remaining::intOrZero(flights, hoists);
    return std::to_string(sum);
}

std::string FunOstatTros(db::Connection& connection, db::DataSet& row, int usedColumn, int limitColumn, Date endDate) {
    const std::string location = row.field("GDE_STOIT").asText();
    const db::Field flag = row.field(winch::indirectFlag);
    const bool derived = !isOffAircraft(location) && !flag.isNull() && flag.asInt() == 1;
    const long long used = derived ? parseInt64(FunNepNarTros(connection, row, location, usedColumn, endDate))
                                   : remaining::intOrZero(row, usedColumn);
    const long long left = remaining::intOrZero(row, limitColumn) - used;
    return std::to_string(std::max(left, 0LL));
}

}  // namespace mxbook
