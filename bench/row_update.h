// The floors' view of a row the library changed: its values as the raw
// client binds them, and the update the library's row writer makes of it.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

namespace mxbook::bench {

// A parameter as text, or null.
using Param = std::optional<std::string>;

std::string dateParam(Date date);
// A field as the floor binds it: text, dates as ISO dates, null as null.
Param paramOf(const db::Field& field);

// A row as it stood: its columns' names and values.
struct Snapshot {
    std::vector<std::string> names;
    std::vector<Param> values;
};
Snapshot snapshot(const db::DataSet& row);

// The statement and values of the library's update of the row: the columns
// set (in column order), the row found by its key (the first column) and by
// the old values of those columns.
std::pair<std::string, std::vector<Param>> rowUpdate(const std::string& table, const std::vector<int>& columns,
                                                     const Snapshot& before, const Snapshot& after);

}  // namespace mxbook::bench
