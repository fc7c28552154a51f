// Inserts rows into one table by column position (as the rest of the
// library addresses columns) or by name, through one prepared statement.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mxbook/data/batch.h"
#include "mxbook/data/connection.h"
#include "mxbook/data/value.h"

namespace mxbook::fleet {

class TableWriter {
public:
    // Reads the table's columns from the database. A database-assigned ID is
    // left to the database unless a row sets it.
    TableWriter(db::Connection& connection, std::string table);

    class Row {
    public:
        Row& set(int position, db::Value value);
        Row& set(std::string_view column, db::Value value);

    private:
        friend class TableWriter;
        explicit Row(const TableWriter& writer);
        const TableWriter* writer_;
        std::vector<db::Value> values_;
    };

    Row row() const { return Row(*this); }
    void insert(db::Batch& batch, const Row& row);

    const std::string& table() const { return table_; }
    int columnCount() const { return static_cast<int>(columns_.size()); }
    // Throws ArgumentError naming the table and column when there is none.
    int position(std::string_view column) const;

private:
    std::string table_;
    std::vector<std::string> columns_;
};

}  // namespace mxbook::fleet
