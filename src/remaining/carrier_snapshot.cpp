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

CarrierSnapshot::Tables::Index& CarrierSnapshot::Tables::index(const remaining::CarrierLookup& lookup) {
    if (const auto found = indexes_.find(&lookup); found != indexes_.end()) return found->second;
    const Table& read = table(lookup.table);
    const auto position = [&](std::string_view name) {
        const int at = read.column(name);
        if (at < 0) throw DataError(std::string(lookup.table) + " has no column " + std::string(name));
        return static_cast<std::size_t>(at);
    };
    Index made{&read, {}, {}};
    for (std::string_view column : lookup.columns) made.columns.push_back(position(column));
    std::vector<std::size_t> keyPositions;
    for (std::string_view key : lookup.keys) keyPositions.push_back(position(key));
    std::vector<db::Value> keys(keyPositions.size());
    for (std::size_t r = 0; r < read.rows.size(); ++r) {
        for (std::size_t k = 0; k < keyPositions.size(); ++k) keys[k] = read.rows[r][keyPositions[k]];
        if (const auto key = keyOf(keys)) made.firstRow.try_emplace(*key, r);  // rows come by ID: the first stays
    }
    return indexes_.emplace(&lookup, std::move(made)).first->second;
}

std::optional<remaining::CarrierRow> CarrierSnapshot::Tables::find(const remaining::CarrierLookup& lookup,
                                                                   std::span<const db::Value> keys) {
    const auto key = keyOf(keys);
    if (!key) return std::nullopt;
    std::lock_guard lock(mutex_);
    const Index& ready = index(lookup);
    const auto found = ready.firstRow.find(*key);
    if (found == ready.firstRow.end()) return std::nullopt;
    const std::vector<db::Value>& values = ready.table->rows[found->second];
    remaining::CarrierRow row;
    row.reserve(ready.columns.size());
    for (std::size_t column : ready.columns) row.push_back(values[column]);
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
