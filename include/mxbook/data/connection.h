#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mxbook::db {

namespace detail {
class ConnectionImpl;
}

// A connection to one Firebird database, opened with a connection string
// (see ConnectionString). Every statement it runs by itself is committed at
// once, unless a UnitOfWork is open on it. Closing it closes the data sets
// reading from it and drops an open unit of work.
//
// Threads: a connection, and the data sets, batches and units of work on
// it, belong to one thread at a time; give each thread a connection of its
// own. Different connections may be used on different threads at once.
class Connection {
public:
    Connection();
    explicit Connection(std::string connectionString);
    ~Connection();
    // Moving keeps the data sets with the attachment they read from; there is
    // no move assignment, which would leave them on a closed one.
    Connection(Connection&&) noexcept;
    Connection& operator=(Connection&&) = delete;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void setConnectionString(std::string connectionString);
    const std::string& connectionString() const { return connectionString_; }

    // Throws db::Error when the string is malformed, names a provider this
    // machine does not offer, asks for auto_commit=False (each statement
    // here commits by itself; a UnitOfWork groups them), or the database
    // cannot be reached.
    void open();
    void open(std::string connectionString);
    void close() noexcept;
    bool isOpen() const;

    // Creates the database at the string's Location, its text kept in the
    // string's ctype (WIN1251 when not given), and leaves it open.
    void create(std::string connectionString);

    // Drops the open database, its file and all, and leaves the connection
    // closed.
    void dropDatabase();

    // Runs one statement that returns no rows; returns the rows it changed.
    std::int64_t execute(std::string_view sql);
    // Runs a script of statements as isql would ("SET TERM" included).
    void executeScript(std::string_view script);
    // The next value of a generator (sequence): it advances by one.
    std::int64_t nextGeneratorValue(std::string_view generator);

    // Statements are prepared once per connection and kept; a statement
    // that another connection's schema change made stale is prepared anew
    // when Firebird says so. After changing a schema from elsewhere (a
    // dropped column is not reported), call this to prepare everything anew.
    void forgetStatements();

    // The providers this machine offers, by name; a connection string must
    // name one of them (compared without regard to case).
    static std::vector<std::string> providerNames();
    // Replaces that list, as a host or a test may; defaultProviderNames() restores it.
    static void setProviderNames(std::vector<std::string> names);
    static std::vector<std::string> defaultProviderNames();

    // For the data sets of this connection.
    const std::shared_ptr<detail::ConnectionImpl>& impl() const { return impl_; }

private:
    std::string connectionString_;
    std::shared_ptr<detail::ConnectionImpl> impl_;
};

}  // namespace mxbook::db
