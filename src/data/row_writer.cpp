#include "row_writer.h"

#include <algorithm>
#include <set>

#include "sql_text.h"

namespace mxbook::db::detail {

WritableTable findWritableTable(ConnectionImpl& connection, const std::string& sql,
                                const std::vector<Column>& columns, const std::vector<std::string>& relationAliases) {
    if (columns.empty()) throw Error("the query has no columns to write back");
    if (hasKeyword(sql, "union"))
        throw Error("rows cannot be changed: the query is a UNION, whose rows cannot be told apart by table");
    WritableTable target{columns.front().info.table, {}};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Column& column = columns[i];
        if (column.info.table.empty() || column.info.column.empty())
            throw Error("rows cannot be changed: column '" + column.info.name + "' is an expression");
        if (column.info.table != target.table ||
            (i < relationAliases.size() && relationAliases[i] != relationAliases.front()))
            throw Error("rows cannot be changed: the query reads more than one table");
    }
    const auto& key = connection.primaryKey(target.table);
    if (key.empty()) throw Error("rows cannot be changed: table " + target.table + " has no primary key");
    for (const std::string& keyColumn : key) {
        const auto found = std::find_if(columns.begin(), columns.end(),
                                        [&](const Column& c) { return c.info.column == keyColumn; });
        if (found == columns.end())
            throw Error("rows cannot be changed: the query does not read key column " + keyColumn + " of " +
                        target.table);
        target.keyColumns.push_back(static_cast<std::size_t>(found - columns.begin()));
    }
    return target;
}

std::string RowWriter::quotedName(const Column& column) { return sqlName(column.info.column); }

std::string RowWriter::rowCondition(const std::vector<Value>& stored, const std::vector<bool>& compared,
                                    std::vector<Value>& params) const {
    std::string condition;
    std::set<std::string> named;
    for (std::size_t index : target_.keyColumns) {
        condition += (condition.empty() ? "" : " and ") + columnName(index) + " = ?";
        params.push_back(stored[index]);
        named.insert(columnName(index));
    }
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const bool blob = columns_[i].sqlType == SQL_BLOB;
        if (!compared[i] || blob || !named.insert(columnName(i)).second) continue;
        condition += " and " + columnName(i) + " is not distinct from ?";
        params.push_back(stored[i]);
    }
    return condition;
}

void RowWriter::runExpectingOneRow(const std::string& sql, const std::vector<Value>& params,
                                   const std::vector<Value>& stored) {
    std::string key;
    for (std::size_t index : target_.keyColumns)
        key += (key.empty() ? "" : ", ") + columns_[index].info.column + "=" + stored[index].asText();
    std::int64_t affected = 0;
    try {
        connection_.run(transaction_, sql, params, &affected);
    } catch (const Error& failure) {
        // Another user stored a newer version of the row after this unit's moment.
        if (failure.hasCode(isc_update_conflict)) throw ConflictError(target_.table, key, sql);
        throw;
    }
    if (affected == 0) throw ConflictError(target_.table, key, sql);
}

void RowWriter::remove(const std::vector<Value>& stored) {
    std::vector<Value> params;
    const std::string sql = "delete from " + sqlName(target_.table) + " where " +
                            rowCondition(stored, std::vector<bool>(stored.size(), true), params);
    runExpectingOneRow(sql, params, stored);
}

void RowWriter::update(const std::vector<Value>& stored, const std::vector<Value>& values,
                       const std::vector<bool>& changed) {
    std::string assignments;
    std::vector<Value> params;
    std::set<std::string> written;  // a column the query selects twice is written once
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!changed[i] || !written.insert(columnName(i)).second) continue;
        assignments += (assignments.empty() ? "" : ", ") + columnName(i) + " = ?";
        params.push_back(values[i]);
    }
    if (assignments.empty()) return;
    const std::string sql = "update " + sqlName(target_.table) + " set " + assignments + " where " +
                            rowCondition(stored, changed, params);
    runExpectingOneRow(sql, params, stored);
}

std::vector<Value> RowWriter::insert(const std::vector<Value>& values, const std::vector<bool>& assigned) {
    std::string names, markers, returning;
    std::vector<Value> params;
    std::set<std::string> written;
    for (std::size_t i = 0; i < values.size(); ++i) {
        returning += (returning.empty() ? "" : ", ") + columnName(i);
        if (!assigned[i] || !written.insert(columnName(i)).second) continue;
        names += (names.empty() ? "" : ", ") + columnName(i);
        markers += markers.empty() ? "?" : ", ?";
        params.push_back(values[i]);
    }
    const std::string table = sqlName(target_.table);
    const std::string sql = names.empty() ? "insert into " + table + " default values returning " + returning
                                          : "insert into " + table + " (" + names + ") values (" + markers +
                                                ") returning " + returning;
    return connection_.run(transaction_, sql, params);
}

}  // namespace mxbook::db::detail
