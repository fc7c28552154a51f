#include "aircraft_facts.h"

#include <algorithm>

#include "mxbook/data/data_set.h"

namespace mxbook::bench {

std::optional<Date> dateOf(const db::DataSet& row, int column) {
    if (row.field(column).isNull()) return std::nullopt;
    return row.field(column).asDate();
}

std::optional<Date> later(std::optional<Date> a, std::optional<Date> b) {
    if (!a || !b) return a ? a : b;
    return std::max(*a, *b);
}

const AircraftFacts& AircraftFactsCache::of(const std::string& tail) {
    const auto known = facts_.find(tail);
    if (known != facts_.end()) return known->second;
    AircraftFacts found;
    db::DataSet reg(connection_, "select TIP_VS, DATA_REMONTA from REESTR where BORTOVOI_NOMER = :pTAIL order by ID");
    reg.setParam("pTAIL", tail);
    reg.open();
    if (!reg.eof()) {
        found.registered = true;
        found.type = reg.field(0).asText();
        if (!reg.field(1).isNull()) found.repaired = reg.field(1).asDate();
        db::DataSet flight(connection_, found.repaired ? "select first 1 ID from Spravka where Bortovoi_nomer = :pTAIL "
                                                         "and Data_poleta >= :pSINCE"
                                                       : "select first 1 ID from Spravka where Bortovoi_nomer = :pTAIL");
        flight.setParam("pTAIL", tail);
        if (found.repaired) flight.setParam("pSINCE", *found.repaired);
        flight.open();
        found.flewSinceRepair = !flight.eof();
    }
    return facts_.emplace(tail, found).first->second;
}

}  // namespace mxbook::bench
