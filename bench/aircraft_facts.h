// What an aircraft's register row and flights decide about the statements an
// oil-time computation runs: its type, its overhaul date and whether it flew
// since; read through the library once per tail, untimed.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

namespace mxbook::bench {

// A row's date, none when the column is empty; the later of two dates, either absent.
std::optional<Date> dateOf(const db::DataSet& row, int column);
std::optional<Date> later(std::optional<Date> a, std::optional<Date> b);

struct AircraftFacts {
    bool registered = false;
    std::string type;
    std::optional<Date> repaired;
    bool flewSinceRepair = false;
};

class AircraftFactsCache {
public:
    explicit AircraftFactsCache(db::Connection& connection) : connection_(connection) {}
    const AircraftFacts& of(const std::string& tail);

private:
    db::Connection& connection_;
    std::map<std::string, AircraftFacts> facts_;
};

}  // namespace mxbook::bench
