#include "table_writer.h"

#include <strings.h>

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"

namespace mxbook::fleet {

TableWriter::TableWriter(db::Connection& connection, std::string table) : table_(std::move(table)) {
    db::DataSet columns(connection, "select * from " + table_ + " where 1 = 0");
    columns.open();
    for (int i = 0; i < columns.fieldCount(); ++i) columns_.push_back(columns.fieldInfo(i).name);
}

int TableWriter::position(std::string_view column) const {
    for (std::size_t i = 0; i < columns_.size(); ++i)
        if (columns_[i].size() == column.size() && strncasecmp(columns_[i].c_str(), column.data(), column.size()) == 0)
            return static_cast<int>(i);
    throw ArgumentError(table_ + " has no column " + std::string(column));
}

TableWriter::Row::Row(const TableWriter& writer) : writer_(&writer), values_(writer.columns_.size()) {}

TableWriter::Row& TableWriter::Row::set(int position, db::Value value) {
    if (position < 0 || position >= static_cast<int>(values_.size()))
        throw ArgumentError(writer_->table_ + " has no column at position " + std::to_string(position));
    values_[static_cast<std::size_t>(position)] = std::move(value);
    return *this;
}

TableWriter::Row& TableWriter::Row::set(std::string_view column, db::Value value) {
    return set(writer_->position(column), std::move(value));
}

void TableWriter::insert(db::Batch& batch, const Row& row) {
    // Every column is named, so all rows of a table share one prepared
    // statement; an unset key is left out for the database to assign.
    std::string names;
    std::string marks;
    std::vector<db::Value> params;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (row.values_[i].isNull() && strcasecmp(columns_[i].c_str(), "ID") == 0) continue;
        if (!names.empty()) {
            names += ", ";
            marks += ", ";
        }
        names += columns_[i];
        marks += '?';
        params.push_back(row.values_[i]);
    }
    batch.execute("insert into " + table_ + " (" + names + ") values (" + marks + ")", params);
}

}  // namespace mxbook::fleet
