#include "carrier_snapshot.h"

#include <algorithm>

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

std::mutex registryMutex;
// The snapshot open on each attachment.
std::unordered_map<const void*, CarrierSnapshot::Tables*>& registry() {
    static std::unordered_map<const void*, CarrierSnapshot::Tables*> open;
    return open;
}

// A key as `=` compares it: trailing blanks do not count; a null matches nothing.
std::optional<std::string> keyOf(std::span<const db::Value> values) {
    std::string key;
    for (const db::Value& value : values) {
        if (value.isNull()) return std::nullopt;
        std::string text = value.asText();
        text.erase(text.find_last_not_of(' ') + 1);
        key += text;
        key += '\0';
    }
    return key;
}

}  // namespace

CarrierSnapshot::CarrierSnapshot(db::Connection& connection) : attachment_(connection.impl().get()) {
    std::lock_guard lock(registryMutex);
    // Within a snapshot already open on the connection, a second one changes nothing.
    if (registry().contains(attachment_)) return;
    tables_ = std::make_unique<Tables>(connection);
    registry().emplace(attachment_, tables_.get());
}

CarrierSnapshot::~CarrierSnapshot() {
    if (!tables_) return;
    std::lock_guard lock(registryMutex);
    registry().erase(attachment_);
}

int CarrierSnapshot::Tables::Table::column(std::string_view name) const {
    const auto found = std::find(columns.begin(), columns.end(), name);
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

CarrierSnapshot::Tables::Table& CarrierSnapshot::Tables::table(std::string_view name) {
    if (const auto found = tables_.find(name); found != tables_.end()) return found->second;
    Table read;
    // Table names come from the lookups, never from input.
    db::DataSet rows(connection_, "select * from " + std::string(name) + " order by ID",
                     db::DataSet::Traversal::forwardOnly);
    rows.open();
    for (int i = 0; i < rows.fieldCount(); ++i) read.columns.push_back(upperCase(rows.fieldInfo(i).name));
    for (; !rows.eof(); rows.next()) {
        std::vector<db::Value> row;
        row.reserve(read.columns.size());
        for (int i = 0; i < rows.fieldCount(); ++i) row.push_back(rows.field(i).value());
        read.rows.push_back(std::move(row));
    }
    return tables_.emplace(std::string(name), std::move(read)).first->second;
}

const std::unordered_map<std::string, std::size_t>& CarrierSnapshot::Tables::index(
    Table& table, const remaining::CarrierLookup& lookup) {
    const std::vector<std::string_view> keyColumns(lookup.keys.begin(), lookup.keys.end());
    if (const auto found = table.indexes.find(keyColumns); found != table.indexes.end()) return found->second;
    std::vector<int> positions;
    for (std::string_view key : lookup.keys) {
        positions.push_back(table.column(key));
        if (positions.back() < 0) throw DataError(std::string(lookup.table) + " has no column " + std::string(key));
    }
    std::unordered_map<std::string, std::size_t> firstRow;
    std::vector<db::Value> keys(positions.size());
    for (std::size_t r = 0; r < table.rows.size(); ++r) {
        for (std::size_t k = 0; k < positions.size(); ++k) keys[k] = table.rows[r][static_cast<std::size_t>(positions[k])];
        if (const auto key = keyOf(keys)) firstRow.try_emplace(*key, r);  // rows come by ID: the first stays
    }
    return table.indexes.emplace(keyColumns, std::move(firstRow)).first->second;
}

std::optional<remaining::CarrierRow> CarrierSnapshot::Tables::find(const remaining::CarrierLookup& lookup,
                                                                   std::span<const db::Value> keys) {
    std::lock_guard lock(mutex_);
    Table& read = table(lookup.table);
    const auto key = keyOf(keys);
    if (!key) return std::nullopt;
    const auto& firstRow = index(read, lookup);
    const auto found = firstRow.find(*key);
    if (found == firstRow.end()) return std::nullopt;
    remaining::CarrierRow row;
    for (std::string_view column : lookup.columns) {
        const int position = read.column(column);
        if (position < 0) throw DataError(std::string(lookup.table) + " has no column " + std::string(column));
        row.push_back(read.rows[found->second][static_cast<std::size_t>(position)]);
    }
    return row;
}

namespace remaining {

CarrierSnapshot::Tables* snapshotOn(const void* attachment) {
    std::lock_guard lock(registryMutex);
    const auto found = registry().find(attachment);
    return found == registry().end() ? nullptr : found->second;
}

}  // namespace remaining

}  // namespace mxbook
