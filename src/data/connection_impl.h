// One attachment to a database and what lives with it: its cached
// statements, the primary keys of its tables, and the data sets reading from it.
#pragma once

#include <map>
#include <optional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "firebird.h"
#include "mxbook/data/connection_string.h"
#include "statement.h"

namespace mxbook::db::detail {

// A data set with an open cursor; told to let go of it before the attachment goes.
class CursorUser {
public:
    virtual void releaseCursor() noexcept = 0;

protected:
    ~CursorUser() = default;
};

class ConnectionImpl {
public:
    ConnectionImpl() = default;
    ~ConnectionImpl() { detach(); }
    ConnectionImpl(const ConnectionImpl&) = delete;
    ConnectionImpl& operator=(const ConnectionImpl&) = delete;

    void attach(const ConnectionString& settings, bool create);
    void detach() noexcept;
    bool isOpen() const { return attachment_ != nullptr; }
    // Throws db::Error when the connection is closed.
    fb::IAttachment* attachment() const;

    std::shared_ptr<Prepared> prepare(fb::ITransaction* transaction, const std::string& sql);

    // Runs a statement without a cursor in `transaction`; returns what its
    // RETURNING clause gives (empty without one). `affected` receives the
    // number of rows it changed.
    std::vector<Value> run(fb::Transaction& transaction, const std::string& sql, const std::vector<Value>& params,
                           std::int64_t* affected = nullptr);

    // Runs a statement without a cursor in a write transaction of its own and
    // commits it; returns the rows it changed.
    std::int64_t execute(const std::string& sql, const std::vector<Value>& params);

    // The table alias of each column a query returns (see Prepared).
    std::vector<std::string> relationAliases(const std::string& sql);

    // The primary key's columns of a table, in key order; empty without one.
    const std::vector<std::string>& primaryKey(const std::string& table);

    // The transaction every cursor of this connection reads in: read-only
    // and read-committed, so it sees each commit at once and holds nothing
    // back; started once rather than per query.
    fb::ITransaction* readTransaction();
    // Cursors say when they open and close: a metadata change ends the read
    // transaction first when none is open, so that it holds no table in use.
    void cursorOpened() { ++openCursors_; }
    void cursorClosed() { --openCursors_; }

    void track(CursorUser* user) { cursorUsers_.insert(user); }
    void untrack(CursorUser* user) { cursorUsers_.erase(user); }

private:
    fb::IAttachment* attachment_ = nullptr;
    std::optional<fb::Transaction> reading_;
    int openCursors_ = 0;
    StatementCache statements_{128};
    std::map<std::string, std::vector<std::string>> primaryKeys_;
    std::set<CursorUser*> cursorUsers_;
};

// An open cursor over a query's rows, in the connection's read transaction.
// (So a selectable procedure that writes cannot be read through it.)
class Cursor {
public:
    Cursor(ConnectionImpl& connection, const std::string& sql, const std::vector<Value>& params);
    ~Cursor() { close(); }
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    const std::shared_ptr<const std::vector<Column>>& columns() const { return columns_; }
    bool returnsRows() const { return returnsRows_; }
    // The next row; false at the end, where the cursor closes itself.
    bool fetch(std::vector<Value>& row);
    void close() noexcept;

private:
    ConnectionImpl* connection_;
    fb::IAttachment* attachment_;
    fb::ITransaction* transaction_;
    std::shared_ptr<Prepared> prepared_;
    std::shared_ptr<const std::vector<Column>> columns_;
    bool returnsRows_;
    std::string sql_;
    fb::IResultSet* resultSet_ = nullptr;
    std::vector<unsigned char> buffer_;
};

// Reads every row of a query at once.
std::vector<std::vector<Value>> queryRows(ConnectionImpl& connection, const std::string& sql,
                                          const std::vector<Value>& params = {});

}  // namespace mxbook::db::detail
