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
        std::vector<std::string> columns;  // upper-cased names, in select order
        std::vector<std::vector<db::Value>> rows;  // by ID
        // Per set of key columns: the first row of each key.
        std::map<std::vector<std::string_view>, std::unordered_map<std::string, std::size_t>> indexes;
        int column(std::string_view name) const;
    };
    Table& table(std::string_view name);
    static const std::unordered_map<std::string, std::size_t>& index(Table& table,
                                                                      const remaining::CarrierLookup& lookup);

    db::Connection& connection_;
    std::mutex mutex_;
    std::map<std::string, Table, std::less<>> tables_;
};

namespace remaining {
// The tables of the snapshot open on the attachment; none without one.
CarrierSnapshot::Tables* snapshotOn(const void* attachment);
}  // namespace remaining

}  // namespace mxbook
