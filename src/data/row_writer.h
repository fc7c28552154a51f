// Writing a data set's changed rows back to their table, row by row, each
// found by the table's primary key and only while it is still as it was read.
#pragma once

#include <string>
#include <vector>

#include "connection_impl.h"

namespace mxbook::db::detail {

// The table that a query's rows come from, with where its key sits in them.
struct WritableTable {
    std::string table;
    std::vector<std::size_t> keyColumns;  // positions in the row, in key order
};

// Throws db::Error saying why when the rows cannot be written back: columns
// from more than one table (or from one table under two aliases) or from
// expressions, a UNION (Firebird names the first table for every row of
// it), or a table without a primary key whose columns are all selected.
WritableTable findWritableTable(ConnectionImpl& connection, const std::string& sql,
                                const std::vector<Column>& columns, const std::vector<std::string>& relationAliases);

class RowWriter {
public:
    RowWriter(ConnectionImpl& connection, fb::ITransaction* transaction, const std::vector<Column>& columns,
              const WritableTable& target)
        : connection_(connection), transaction_(transaction), columns_(columns), target_(target) {
        for (const Column& column : columns_) names_.push_back(quotedName(column));
    }

    // Both raise ConflictError when the row is gone or another user changed
    // it since it was read: for a removal any of its columns, for an update
    // any of the columns it changes (blobs are not compared).
    void remove(const std::vector<Value>& stored);
    void update(const std::vector<Value>& stored, const std::vector<Value>& values, const std::vector<bool>& changed);
    // Returns the row as stored, with the values the database gave it.
    std::vector<Value> insert(const std::vector<Value>& values, const std::vector<bool>& assigned);

private:
    // The row by its key, and as it was read in the columns `compared`.
    std::string rowCondition(const std::vector<Value>& stored, const std::vector<bool>& compared,
                             std::vector<Value>& params) const;
    const std::string& columnName(std::size_t index) const { return names_[index]; }
    static std::string quotedName(const Column& column);
    void runExpectingOneRow(const std::string& sql, const std::vector<Value>& params,
                            const std::vector<Value>& stored);

    ConnectionImpl& connection_;
    fb::ITransaction* transaction_;
    const std::vector<Column>& columns_;
    const WritableTable& target_;
    std::vector<std::string> names_;  // each column's name for SQL text, quoted once
};

}  // namespace mxbook::db::detail
