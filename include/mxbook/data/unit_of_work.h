#pragma once

#include <memory>

namespace mxbook::db {

class Connection;
class DataSet;

namespace detail {
class ConnectionImpl;
struct Work;
}  // namespace detail

// Writes on one connection that are stored together or not at all.
//
// While a unit of work is open on a connection, everything written through
// that connection joins it: a Batch's statements, a data set's
// updateBatch(), execute() of the connection or of a data set. Data sets
// opened meanwhile read in it and see what it wrote. commit() stores it all
// at once; rollback(), or destruction without commit(), drops all of it.
//
// Any statement that fails in the unit makes it failed: later writes raise,
// and commit() raises and stores nothing, even when the caller caught the
// failure and went on.
//
// A unit opened while another is open on the same connection joins the
// outer one: its commit() leaves the storing to the outer unit, and its
// rollback (or its destruction uncommitted) makes the outer unit fail.
class UnitOfWork {
public:
    explicit UnitOfWork(Connection& connection);
    // On the connection the data set reads from: a row handed over brings
    // its connection with it.
    explicit UnitOfWork(const DataSet& dataSet);
    ~UnitOfWork();
    UnitOfWork(const UnitOfWork&) = delete;
    UnitOfWork& operator=(const UnitOfWork&) = delete;

    // Throws db::Error when the unit failed or the connection closed under
    // it; nothing is stored then.
    void commit();
    void rollback() noexcept;
    // Neither committed nor rolled back yet.
    bool isOpen() const;
    // Joined an outer unit rather than opening one.
    bool isJoined() const { return !outermost_; }

private:
    explicit UnitOfWork(std::shared_ptr<detail::ConnectionImpl> connection);

    std::shared_ptr<detail::ConnectionImpl> connection_;
    std::shared_ptr<detail::Work> work_;
    bool outermost_ = false;
    bool ended_ = false;
};

}  // namespace mxbook::db
