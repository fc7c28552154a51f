// The kinds of unit the books keep, a table of their own each: where each
// table keeps a unit's name, serial number, location and limits. The
// remaining-life calculations, the fleet status and the fleet generator all
// take these facts from here. A column stands here once, by position (as
// rows are read) and by name (as statements and the generator write them).
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace mxbook::units {

struct Column {
    int position;
    std::string_view name;
};

enum class Measure { hours, count, calendar };
// Where a limit's remainder is shown: the assigned life, the life between
// overhauls (PPR), or among the unit's other limits.
enum class Role { life, overhaul, other };

struct Limit {
    Measure measure;
    int limitColumn;
    int usedColumn;         // a calendar limit counts from the unit's manufacture instead
    Role role;
    std::string_view name;  // "ресурс", "ППР", "срок", ...
};

// A general component's own columns: what it counts (0 hours, 1 landings),
// what carries it (0 the airframe, 1 an engine) and the carrying engine's
// serial number.
struct ComponentColumns {
    Column counterKind;
    Column carrierKind;
    Column carrierSerial;
};
inline constexpr ComponentColumns componentColumns{
    {24, "EDINICA_NARABOTKI"}, {28, "PLAN_DVIG_VSU"}, {29, "NUMER_DVIG_VSU"}};

// How a kind whose flag column names a derivation of its own takes its
// operating time from its carrier.
struct Derivation {
    bool blankReadingIsZero = false;    // blades alone take an empty reading as 0:00
    int fixedOwnColumn = -1;            // hoses always count their own column 12
    bool generalComponent = false;      // counted in hours or landings, on the airframe or an engine
};

struct UnitKind {
    std::string_view table;
    std::string_view label;  // as the status names the kind
    Column name;             // what the status shows as the unit: its name, else its drawing number
    Column serial;
    Column location;  // a tail number or an off-aircraft location
    Column manufactured;
    // The life first: its used column is what the unit has booked.
    std::span<const Limit> limits;
    // 1 in the flag: the operating time is derived from the carrier, which
    // ran since installation from the reading booked then.
    std::optional<Column> flag = {};
    std::optional<Column> installReading = {};
    std::optional<Derivation> derivation = {};  // none: rows derive as the kind their flag's name says
    bool keepsComponentColumns = false;
    bool countsByCounterKind = false;  // its limits count hours or landings as its counter kind says
    // The aircraft's reading at which the unit comes off is planned for it.
    bool removalPlanned = true;
};

// In the order the status shows them on an aircraft.
std::span<const UnitKind> unitKinds();
// The kind kept in `table`; ArgumentError for any other table.
const UnitKind& unitKind(std::string_view table);

// The column a limit's used value (for a calendar limit, its start date) stands in.
int usedColumn(const UnitKind& kind, const Limit& limit);

}  // namespace mxbook::units
