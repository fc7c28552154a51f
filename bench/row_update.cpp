#include "row_update.h"

#include "mxbook/format.h"

namespace mxbook::bench {

std::string dateParam(Date date) { return formatDate(date, "yyyy-mm-dd"); }

Param paramOf(const db::Field& field) {
    if (field.isNull()) return std::nullopt;
    if (field.type() == db::FieldType::date) return dateParam(field.asDate());
    return field.asText();
}

Snapshot snapshot(const db::DataSet& row) {
    Snapshot taken;
    for (int i = 0; i < row.fieldCount(); ++i) {
        taken.names.push_back(row.fieldInfo(i).column);
        taken.values.push_back(paramOf(row.field(i)));
    }
    return taken;
}

std::pair<std::string, std::vector<Param>> rowUpdate(const std::string& table, const std::vector<int>& columns,
                                                     const Snapshot& before, const Snapshot& after) {
    const auto quoted = [](const std::string& name) { return "\"" + name + "\""; };
    std::string set, where = quoted(before.names.front()) + " = ?";
    std::vector<Param> values, old{before.values.front()};
    for (int column : columns) {
        const auto at = static_cast<std::size_t>(column);
        set += (set.empty() ? "" : ", ") + quoted(before.names[at]) + " = ?";
        where += " and " + quoted(before.names[at]) + " is not distinct from ?";
        values.push_back(after.values[at]);
        old.push_back(before.values[at]);
    }
    values.insert(values.end(), old.begin(), old.end());
    return {"update " + quoted(table) + " set " + set + " where " + where, std::move(values)};
}

}  // namespace mxbook::bench
