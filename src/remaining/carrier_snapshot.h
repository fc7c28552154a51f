// The carrier tables as one read of each found them, kept while a
// CarrierSnapshot lives on a connection.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "carriers.h"
#include "mxbook/data/connection.h"
#include "mxbook/remaining_life.h"

namespace mxbook {

class CarrierSnapshot::Tables {
public:
    explicit Tables(db::Connection& connection) : connection_(connection) {}
    std::optional<remaining::CarrierRow> find(const remaining::CarrierLookup& lookup,
                                              std::span<const db::Value> keys);

private:
    struct Table {
        std::vector<std::string> columns;          // upper-cased names, in select order
        std::vector<std::vector<db::Value>> rows;  // by ID
        int column(std::string_view name) const;
    };
    // A lookup made ready: its table, where its key and result columns stand,
    // and the first row of each key.
    struct Index {
        const Table* table;
        std::vector<std::size_t> columns;
        std::unordered_map<std::string, std::size_t> firstRow;
    };
    Table& table(std::string_view name);
    Index& index(const remaining::CarrierLookup& lookup);

    db::Connection& connection_;
    std::mutex mutex_;
    std::map<std::string, Table, std::less<>> tables_;
    std::unordered_map<const remaining::CarrierLookup*, Index> indexes_;
};

namespace remaining {
// The tables of the snapshot open on the attachment; none without one.
CarrierSnapshot::Tables* snapshotOn(const void* attachment);
}  // namespace remaining

}  // namespace mxbook
