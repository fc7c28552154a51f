#pragma once

#include <string>
#include <vector>

#include "mxbook/error.h"

namespace mxbook::db {

// The database refused: Firebird's message, its SQL code, and the statement
// that failed (empty when no statement was involved, as in an attach).
class Error : public mxbook::Error {
public:
    explicit Error(const std::string& message, int sqlCode = 0, std::string statement = {},
                   std::vector<long> codes = {});

    const std::string& message() const noexcept { return message_; }
    int sqlCode() const noexcept { return sqlCode_; }
    const std::string& statement() const noexcept { return statement_; }
    // Whether Firebird gave this error code (an isc_... number) among the
    // reasons of the failure.
    bool hasCode(long code) const noexcept;

private:
    std::string message_;
    int sqlCode_;
    std::string statement_;
    std::vector<long> codes_;
};

// A row could not be changed because it is no longer as it was read: another
// user (or another data set) changed or deleted it in the meantime. Nothing
// of the batch that met it is stored.
class ConflictError : public Error {
public:
    ConflictError(const std::string& table, const std::string& key, std::string statement = {});

    const std::string& table() const noexcept { return table_; }
    // The row's key as "COLUMN=value[, COLUMN=value]".
    const std::string& key() const noexcept { return key_; }

private:
    std::string table_;
    std::string key_;
};

}  // namespace mxbook::db
