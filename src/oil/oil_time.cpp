#include "oil_time.h"

#include "mxbook/data/data_set.h"

namespace mxbook::oil {

namespace {

constexpr FlightColumns enginePlaces[] = {
    {"V_VOZDUHE_1", "NA_ZEMLE_1"}, {"V_VOZDUHE_2", "NA_ZEMLE_2"}, {"V_VOZDUHE_3", "NA_ZEMLE_3"}};

struct Registration {
    std::string aircraftType;
    bool flewSinceRepair = false;
};

// The first register row of the tail, and whether the aircraft has a flight
// on or after its repair date (any flight when the date is not set): one row
// is fetched, never counted.
std::optional<Registration> registration(db::Connection& connection, const std::string& tail) {
    db::DataSet reg(connection, "Select TIP_VS, DATA_REMONTA From REESTR Where BORTOVOI_NOMER=:pTAIL Order By ID",
                    db::DataSet::Traversal::forwardOnly);
    reg.setParam("pTAIL", tail);
    reg.open();
    if (reg.eof()) return std::nullopt;
    Registration found{reg.field(0).asText()};
    const db::Field repaired = reg.field(1);
    db::DataSet flight(connection,
                       repaired.isNull()
                           ? "Select First 1 ID From Spravka Where Bortovoi_nomer=:pTAIL"
                           : "Select First 1 ID From Spravka Where Bortovoi_nomer=:pTAIL And Data_poleta>=:pSINCE",
                       db::DataSet::Traversal::forwardOnly);
    flight.setParam("pTAIL", tail);
    if (!repaired.isNull()) flight.setParam("pSINCE", repaired.asDate());
    flight.open();
    found.flewSinceRepair = !flight.eof();
    return found;
}

// The flights of the span, oldest first. Column names come from the
// descriptions above, never from input.
db::DataSet flightsOf(db::Connection& connection, const OilSource& source) {
    std::string columns(source.columns.air);
    for (std::string_view more : {source.columns.ground, source.columns.alsoInFull})
        if (!more.empty()) columns += ", " + std::string(more);
    const std::string span = source.start ? "Data_poleta Between :pSTART And :pEND" : "Data_poleta <= :pEND";
    db::DataSet records(connection,
                        "SELECT " + columns + " FROM Spravka WHERE Bortovoi_nomer=:pTAIL AND " + span +
                            " ORDER BY Data_poleta, ID",
                        db::DataSet::Traversal::forwardOnly);
    records.setParam("pTAIL", source.tailNumber);
    if (source.start) records.setParam("pSTART", *source.start);
    records.setParam("pEND", source.end);
    records.open();
    return records;
}

long long startsSinceLastBlank(db::DataSet& records) {
    long long total = 0;
    for (; !records.eof(); records.next()) {
        const db::Field starts = records.field(0);
        total = starts.isNull() ? 0 : total + starts.asInt();
    }
    return total;
}

Minutes flightTime(db::DataSet& records, const OilSource& source, const flights::GroundShare& ground) {
    const bool hasGround = !source.columns.ground.empty();
    const int alsoInFull = source.columns.alsoInFull.empty() ? -1 : (hasGround ? 2 : 1);
    long long minutes = 0;
    for (; !records.eof(); records.next()) {
        minutes += flights::minutesOf(records.field(0));
        if (hasGround) minutes += ground.of(flights::minutesOf(records.field(1)));
        if (alsoInFull >= 0) minutes += flights::minutesOf(records.field(alsoInFull));
    }
    return Minutes(minutes);
}

}  // namespace

const FlightColumns& engineTime(int position) {
    return enginePlaces[position >= 0 && position <= 2 ? position : 0];
}

std::string oilTime(db::Connection& connection, const OilSource& source) {
    const auto registered = registration(connection, source.tailNumber);
    if (!registered || !registered->flewSinceRepair) return source.early;

    db::DataSet records = flightsOf(connection, source);
    if (source.measure == Measure::startsSinceLastBlank) return std::to_string(startsSinceLastBlank(records));
    const flights::GroundShare ground =
        source.columns.ground.empty()
            ? flights::GroundShare{}
            : flights::groundShare(connection, source.aircraftType.value_or(registered->aircraftType),
                                   source.groundKind);
    return operating_time::format(source.base + flightTime(records, source, ground));
}

}  // namespace mxbook::oil
