// The kinds of unit whose operating time may be derived from their carrier,
// told apart by the name of their indirect-accounting column, and the one
// derivation they share.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "mxbook/data/data_set.h"
#include "mxbook/operating_time.h"

namespace mxbook::remaining {

// Where a calculation opens its own short-lived queries: on the connection
// the caller names, or on the unit row's own.
class Queries {
public:
    explicit Queries(db::Connection& connection) : connection_(&connection) {}
    explicit Queries(const db::DataSet& row) : row_(&row) {}

    // The query, opened.
    db::DataSet open(std::string sql) const;
    // The query with its parameters set, opened. Values go as parameters, not
    // into the text, so that one prepared statement serves every unit.
    using Parameters = std::initializer_list<std::pair<std::string_view, db::Value>>;
    db::DataSet open(std::string sql, Parameters parameters) const;
    // The connection's attachment, which tells the carrier snapshot open on it.
    const void* attachment() const;

    // The query, its parameters still to set.
    db::DataSet prepare(std::string sql) const;

private:

    db::Connection* connection_ = nullptr;
    const db::DataSet* row_ = nullptr;
};

// A kind of unit's facts (src/units/unit_kinds.h) as the derivation reads them.
struct IndirectKind {
    std::string_view table;
    std::string_view flagName;          // the column whose presence tells the kind
    int locationColumn;                 // a tail number or an off-aircraft location
    int flagColumn;                     // 1: derived from the carrier
    int installReadingColumn;           // the carrier's hours when the unit was installed
    bool blankReadingIsZero = false;    // blades alone take an empty reading as 0:00
    int fixedOwnColumn = -1;            // hoses always count their own column 12
    bool generalComponent = false;      // counted in hours or landings, on the airframe or an engine
};

inline constexpr int typeColumn = 1;

// In the order of the kinds of unit; a row carries one kind's flag column at most.
std::span<const IndirectKind> indirectKinds();
// The kind kept in `table`; ArgumentError for a table whose rows carry no
// indirect-accounting column (the register, engines).
const IndirectKind& indirectKind(std::string_view table);

// The unit's operating time now: its own counter plus what its carrier ran
// since installation, as text; empty when a general component's counter or
// carrier kind is unknown.
std::string derivedOperatingTime(const Queries& queries, db::DataSet& row, const IndirectKind& kind, int ownColumn);

// The value of an integer column; 0 for a null.
int intOrZero(const db::DataSet& row, int column);
int intOrZero(const db::Value& value);
// A counter held as an integer or as its decimal text; 0 for a null.
int countOf(const db::DataSet& row, int column);
int countOf(const db::Value& value);
// Operating time "H:MM", split at the first ":"; zero for a null.
Minutes hoursOf(const db::Value& value);
inline Minutes hoursOf(const db::Field& field) { return hoursOf(field.value()); }

}  // namespace mxbook::remaining
