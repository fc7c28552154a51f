// What a move writes into a unit's row: the carrier's reading at
// installation and the counters brought forward or back by the flight time
// carried, computed first and written together.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "carried_flight_time.h"
#include "mxbook/data/data_set.h"
#include "unit_move.h"

namespace mxbook::movements {

inline constexpr int countsHours = 0, countsLandings = 1;

using Changes = std::vector<std::pair<int, db::Value>>;
// Puts the row in edit mode (unless it is being edited or inserted) and sets the values.
void write(db::DataSet& row, const Changes& changes);

// Non-null and not empty text.
bool isSet(db::DataSet& row, int column);

// The carrier's counters as they stand, from which the reading at
// installation is counted back: hours text, and landings (or cycles).
struct CarrierCounters {
    db::Value hours;
    db::Value count;
};

// An installation: the reading at installation (the carrier's counter less
// what it carried since, or as it stands when nothing was carried), and
// unless the unit takes its time from the carrier, its counters and oil time
// brought forward. `missingCarrier` is the ConversionError's value and what
// it should have been, raised when something was carried but there are no
// counters to count back from.
Changes installation(db::DataSet& row, const UnitMove& kind, const std::optional<CarrierCounters>& carrier,
                     const std::optional<CarriedTime>& carried,
                     const std::pair<std::string, std::string>& missingCarrier);

// A removal: the carried time off the unit's hours, or its count off a unit
// counted in landings (where `countsOff` allows), and off its oil time where
// one is booked (and `oilOff` allows).
struct RemovalRules {
    bool countsOffWhenMounted = false;  // a unit on an engine loses its cycles too
    bool oilOffWhenDerived = true;      // a unit that takes its time from the carrier loses oil time too
};
Changes removal(db::DataSet& row, const UnitMove& kind, const CarriedTime& carried, const RemovalRules& rules);

// The question's first line: "dd.mm.yyyy TYPE №TAIL выполнял полёт.", then a line break.
std::string flightOnTheDay(Date day, const std::string& type, const std::string& tail);
// "«name drawing№serial»?" from the unit's reference entry ("!!!" without
// one); `numberSign` separates the drawing and the serial.
std::string unitInQuestion(db::Connection& connection, db::DataSet& row, const UnitMove& kind,
                           const char* numberSign);
// "«unit's name reference name №drawing»?": a unit going onto an engine.
std::string unitByReference(db::Connection& connection, db::DataSet& row, const UnitMove& kind);

// Raise ArgumentError unless the row is open with the columns of the table
// (at least `columns` of them), or of the kind's table.
void checkTable(db::DataSet& row, const char* table, int columns);
void checkKind(db::DataSet& row, const UnitMove& kind);

}  // namespace mxbook::movements
