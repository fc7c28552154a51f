// What the move commands share: the row a command names, the aircraft type
// of a tail number, and the listing of the columns a move changed.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "output.h"

namespace mxbook::cli {

// A table whose rows a command names by ID or by factory number.
struct NamedRows {
    const char* table;     // "AGREGAT"
    const char* argument;  // "UNIT", in the usage error
    const char* noun;      // "component"
    const char* nouns;     // "components"
};
inline constexpr NamedRows components{"AGREGAT", "UNIT", "component", "components"};
inline constexpr NamedRows engines{"DVIGATEL", "SERIAL", "engine", "engines"};

// The ID `@TABLE:ID` gives, or that of the one row with the factory number
// (ZAVODSKOI_NOMER): ArgumentError when no row or several have it.
int rowId(db::Connection& connection, const NamedRows& rows, const std::string& named);

// The aircraft type of a registered tail number.
std::optional<std::string> aircraftTypeOf(db::Connection& connection, const std::string& tail);

// The text of each column of the current row.
std::vector<std::string> rowValues(db::DataSet& row);
std::vector<std::string> columnNames(db::DataSet& row);

// A move's changes, a line a column: what it was and what it is, led by the
// row's name (@TABLE:ID) when a move changes more than one row.
class MoveChanges {
public:
    explicit MoveChanges(bool rowsNamed);
    void add(const std::string& row, const std::vector<std::string>& columns, const std::vector<std::string>& before,
             const std::vector<std::string>& after);
    void print(std::ostream& out, Format format, bool dryRun) const;

private:
    bool rowsNamed_;
    Listing listing_;
};

}  // namespace mxbook::cli
