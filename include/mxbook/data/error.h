#pragma once

#include <string>

#include "mxbook/error.h"

namespace mxbook::db {

// The database refused: Firebird's message, its SQL code, and the statement
// that failed (empty when no statement was involved, as in an attach).
class Error : public mxbook::Error {
public:
    explicit Error(const std::string& message, int sqlCode = 0, std::string statement = {});

    const std::string& message() const noexcept { return message_; }
    int sqlCode() const noexcept { return sqlCode_; }
    const std::string& statement() const noexcept { return statement_; }

private:
    std::string message_;
    int sqlCode_;
    std::string statement_;
};

}  // namespace mxbook::db
