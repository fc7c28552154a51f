// What the parts of the fleet generator share while they write one fleet.
#pragma once

#include <map>
#include <string>

#include "mxbook/data/batch.h"
#include "mxbook/data/connection.h"
#include "mxbook/fleet.h"
#include "random.h"
#include "table_writer.h"

namespace mxbook::fleet {

struct Generation {
    Generation(db::Connection& connection, const FleetOptions& options, Date today);

    TableWriter& table(const std::string& name);
    // A serial number not given to any other unit of this fleet.
    std::string nextSerial();

    db::Connection& connection;
    db::Batch batch;
    FleetOptions options;
    Date today;
    Date historyStart;
    Random random;
    FleetSummary summary;
    // Type-reference keys (ID_NAME) by reference table and unit name.
    std::map<std::string, std::map<std::string, int>> typeKeys;

private:
    std::map<std::string, TableWriter> tables_;
    int serials_ = 0;
};

// How worn a unit is when it comes to the aircraft: its time since new and
// since its last overhaul (minutes, or a count), and its overhauls. Most are
// part-worn, a few close to their interval; `unit` is 60 for hours, 1 for counts.
struct Wear {
    int sinceNew = 0;
    int sinceOverhaul = 0;
    int overhauls = 0;
};
Wear randomWear(Random& random, int totalLimit, int overhaulLimit, int unit);

// Operating time as the tables keep it: hours, ":", two digits of minutes
// (never below zero).
std::string hoursText(int minutes);
// A calendar limit as the tables keep it: "YY.MM".
std::string calendarLimit(int years, int months = 0);
// A duration kept in a flight-record time column.
Time durationTime(int minutes);

}  // namespace mxbook::fleet
