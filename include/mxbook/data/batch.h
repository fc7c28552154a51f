#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "mxbook/data/unit_of_work.h"
#include "mxbook/data/value.h"

namespace mxbook::db {

class Connection;

// Statements that are stored together or not at all, in a unit of work on
// the connection (the open one, which it joins, or one of its own). A batch
// destroyed uncommitted, or whose connection closes first, leaves the
// database as it was; after any failed statement the batch is failed and
// commit() raises. Statements repeated with other values are prepared once.
class Batch {
public:
    explicit Batch(Connection& connection);
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    // Runs one statement without a result set; '?' marks its parameters, in
    // the order of `params`, which must give exactly one value each
    // (ArgumentError otherwise). Returns the rows it changed.
    std::int64_t execute(std::string_view sql, const std::vector<Value>& params = {});
    // Stores everything run so far; the batch may go on with new statements.
    void commit();
    // Drops everything run since the last commit; the batch may go on.
    void rollback() noexcept;

private:
    UnitOfWork& work();

    Connection* connection_;
    std::optional<UnitOfWork> work_;
    bool dropped_ = false;
};

}  // namespace mxbook::db
