// A new reference entry split off for a group of like units: one algorithm,
// with what differs per kind of unit (tables, columns, generator) as data.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "mxbook/data/data_set.h"

namespace mxbook::movements {

// A unit column that, with the others, tells which units are alike.
struct GroupColumn {
    int position;
    std::string_view name;
    bool asInteger = false;  // compared as a whole number (a null reads as 0)
};

// A unit column copied to a reference column when it holds something.
struct CopiedColumn {
    int unit;
    int reference;
};

// A reference column every new entry starts with: a number, or null.
struct FixedValue {
    int reference;
    std::optional<int> value;
};

struct ReferenceSplit {
    std::string_view unitTable;
    std::string_view referenceTable;
    std::span<const GroupColumn> group;  // the unit's reference key among them
    int unitKeyColumn;                   // the unit's reference key, pointed at the new entry
    int referenceKeyColumn;              // the entry's key: the highest so far plus one
    std::string_view referenceKeyName;
    std::string_view generator;  // gives the entry's ID (position 0)
    std::span<const CopiedColumn> copies;
    std::span<const FixedValue> fixed;
    // A member has an installation place when this column is not null and
    // not "нет" in any case; the entry then offers two places.
    std::string_view placeName;
    int placeCountColumn;
    int placeListColumn;
};

// The description for units of table AGREGAT and their ETAAGREGAT entries.
const ReferenceSplit& componentReferenceSplit();

// Gives the units like `row` (same values in every group column) a new
// reference entry, filled from the first of them, and points them all at it;
// the entry and the units' keys are stored together or not at all. Nothing
// happens when no unit is alike. ArgumentError when `row` is not a row of
// the split's unit table.
void splitReference(const ReferenceSplit& split, db::DataSet& row);

}  // namespace mxbook::movements
