// What an aircraft's register row and flights decide about the statements an
// oil-time computation runs: its type, its overhaul date and whether it flew
// since; read through the library once per tail, untimed.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "mxbook/data/connection.h"
#include "mxbook/date.h"

namespace mxbook::bench {

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
