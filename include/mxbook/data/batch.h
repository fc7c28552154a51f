#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "mxbook/data/value.h"

namespace mxbook::db {

class Connection;

// Statements that are stored together or not at all: they run in one
// transaction that commit() ends; a batch destroyed uncommitted (or whose
// connection closes first) leaves the database as it was. Statements
// repeated with other values are prepared once.
class Batch {
public:
    explicit Batch(Connection& connection);
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    // Runs one statement without a result set; '?' marks its parameters, in
    // the order of `params`. Returns the rows it changed.
    std::int64_t execute(std::string_view sql, const std::vector<Value>& params = {});
    // Stores everything run so far; the batch may go on with new statements.
    void commit();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace mxbook::db
