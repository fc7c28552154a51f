// One attachment to a database and what lives with it: its cached
// statements, the primary keys of its tables, the unit of work open on it,
// and the data sets reading from it.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "firebird.h"
#include "mxbook/data/connection_string.h"
#include "sql_text.h"
#include "statement.h"

namespace mxbook::db::detail {

// A data set that holds a cursor or a transaction of this connection; told
// before either goes away.
class CursorUser {
public:
    // The attachment is going: let go of everything read through it.
    virtual void releaseCursor() noexcept = 0;
    // `transaction` is about to end: read what is still to be read in it.
    virtual void transactionEnding(fb::ITransaction*) noexcept {}

protected:
    ~CursorUser() = default;
};

// Told how the unit of work it wrote in ended.
class WorkParticipant {
public:
    virtual void workStored() noexcept = 0;
    virtual void workDropped() noexcept = 0;

protected:
    ~WorkParticipant() = default;
};

// The transaction of an open unit of work, shared by everything that writes
// (and reads) through the connection while it is open.
struct Work {
    explicit Work(fb::IAttachment* attachment) : transaction(attachment, fb::Transaction::Kind::write) {}

    fb::Transaction transaction;
    std::string failure;   // why it failed; empty while it has not
    bool dropped = false;  // the connection closed under it
    std::vector<WorkParticipant*> participants;

    bool ended() const { return transaction.get() == nullptr; }
};

// The transaction a query reads in: a snapshot of its own, or the open unit
// of work's (so that it sees what the unit wrote).
struct ReadScope {
    std::shared_ptr<fb::Transaction> own;
    std::shared_ptr<Work> work;

    fb::ITransaction* get() const { return own ? own->get() : work ? work->transaction.get() : nullptr; }
};

class ConnectionImpl {
public:
    ConnectionImpl() = default;
    ~ConnectionImpl() { detach(); }
    ConnectionImpl(const ConnectionImpl&) = delete;
    ConnectionImpl& operator=(const ConnectionImpl&) = delete;

    void attach(const ConnectionString& settings, bool create);
    void detach() noexcept;
    // Drops the attached database, file and all, and detaches.
    void dropDatabase();
    bool isOpen() const { return attachment_ != nullptr; }
    // Throws db::Error when the connection is closed.
    fb::IAttachment* attachment() const;

    std::shared_ptr<Prepared> prepare(fb::ITransaction* transaction, const std::string& sql);
    // Prepares every statement anew from now on, and reads primary keys anew:
    // for after another connection changed the schema.
    void forgetStatements();
    void forgetStatement(const std::string& sql) { statements_.forget(sql); }
    // The text with its ":name" parameters as markers, read once per text:
    // a lookup opened per unit would otherwise read its text every time.
    std::shared_ptr<const PositionalSql> positional(const std::string& sql);

    // Runs a statement without a cursor in `transaction`; returns what its
    // RETURNING clause gives (empty without one). `affected` receives the
    // number of rows it changed. A cached statement that the schema has
    // outgrown is prepared anew and run once more.
    std::vector<Value> run(fb::ITransaction* transaction, const std::string& sql, const std::vector<Value>& params,
                           std::int64_t* affected = nullptr);

    // Runs a statement without a cursor: in the open unit of work, or else in
    // a transaction of its own that it commits. Returns the rows it changed.
    std::int64_t execute(const std::string& sql, const std::vector<Value>& params);

    // The table alias of each column a query returns (see Prepared).
    std::vector<std::string> relationAliases(const std::string& sql);

    // The primary key's columns of a table, in key order; empty without one.
    const std::vector<std::string>& primaryKey(const std::string& table);

    // Where a query opened now reads: in the open unit of work, or in a
    // read-only snapshot taken now. (The last snapshot serves again when it
    // is provably the same moment: see beginRead.)
    ReadScope beginRead();

    // The open unit of work, or null.
    const std::shared_ptr<Work>& work() const { return work_; }
    // Opens a unit of work; returns false (and the open one) when one is
    // open already, which the caller then joins.
    std::pair<std::shared_ptr<Work>, bool> beginWork();
    // Ends the open unit of work: stores it, or drops it. Raises when it
    // cannot be stored, having dropped it.
    void endWork(bool store);
    // Runs `write` in the open unit of work; a failure makes the unit failed.
    template <typename Write>
    decltype(auto) inWork(Write&& write) {
        const std::shared_ptr<Work> work = checkedWork();
        try {
            return write(work->transaction.get());
        } catch (const std::exception& failure) {
            if (work->failure.empty()) work->failure = failure.what();
            throw;
        }
    }

    void track(CursorUser* user) { cursorUsers_.insert(user); }
    void untrack(CursorUser* user) { cursorUsers_.erase(user); }

private:
    std::shared_ptr<Work> checkedWork() const;
    std::vector<Value> runOnce(const std::shared_ptr<Prepared>& prepared, fb::ITransaction* transaction,
                               const std::vector<Value>& params, std::int64_t* affected);

    // The last read snapshot, with what it takes to tell whether a new one
    // would see the same database.
    struct Snapshot {
        std::shared_ptr<fb::Transaction> transaction;
        std::int64_t id = 0;
        bool alone = false;  // no other transaction was active when it started
    };
    bool sameMomentAs(const Snapshot& snapshot);

    fb::IAttachment* attachment_ = nullptr;
    bool embedded_ = false;
    Snapshot snapshot_;
    std::shared_ptr<Work> work_;
    StatementCache statements_{128};
    std::unordered_map<std::string, std::shared_ptr<const PositionalSql>> positional_;
    std::map<std::string, std::vector<std::string>> primaryKeys_;
    std::set<CursorUser*> cursorUsers_;
};

// Whether a failure of a cached statement says the schema changed under it,
// so that preparing it anew may help.
bool outgrownBySchema(const Error& failure);

// An open cursor over a query's rows, read in `transaction`. Blob columns
// are not read: a fetched row holds their ids.
class Cursor {
public:
    Cursor(ConnectionImpl& connection, fb::ITransaction* transaction, const std::string& sql,
           const std::vector<Value>& params);
    ~Cursor() { close(); }
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    const std::shared_ptr<const std::vector<Column>>& columns() const { return columns_; }
    const std::shared_ptr<const NameIndex>& names() const { return names_; }
    bool returnsRows() const { return returnsRows_; }
    // The table alias of each column, from the statement the cursor runs;
    // empty once the cursor has closed.
    std::vector<std::string> relationAliases() const {
        return prepared_ ? prepared_->relationAliases() : std::vector<std::string>{};
    }
    // The next row; false at the end, where the cursor closes itself. A blob
    // field's value stays NULL and its id goes to `blobs` (which is left
    // empty when the query has no blob column).
    bool fetch(std::vector<Value>& row, std::vector<BlobId>& blobs);
    void close() noexcept;

private:
    void openCursor();

    ConnectionImpl* connection_;
    fb::IAttachment* attachment_;
    fb::ITransaction* transaction_;
    std::shared_ptr<Prepared> prepared_;
    std::shared_ptr<const std::vector<Column>> columns_;
    std::shared_ptr<const NameIndex> names_;
    bool returnsRows_;
    bool hasBlobs_ = false;
    bool fetchedAny_ = false;
    std::string sql_;
    std::vector<Value> params_;
    fb::IResultSet* resultSet_ = nullptr;
    std::vector<unsigned char> buffer_;
};

// Reads every row of a query at once, in a snapshot of its own (or in the
// open unit of work). Blobs are read too.
std::vector<std::vector<Value>> queryRows(ConnectionImpl& connection, const std::string& sql,
                                          const std::vector<Value>& params = {});

}  // namespace mxbook::db::detail
