#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>
#include <type_traits>

#include "mxbook/data/connection.h"
#include "mxbook/data/field_info.h"
#include "mxbook/data/value.h"

namespace mxbook::db {

class DataSet;

// A blob field's content as a stream of bytes, read from the database in
// segments as it is consumed. It reads in the data set's snapshot, so it
// shows the blob as the row was read even after the data set moves on.
class BlobStream : public std::istream {
public:
    explicit BlobStream(std::unique_ptr<std::streambuf> buffer);
    BlobStream(BlobStream&& other) noexcept;
    BlobStream& operator=(BlobStream&&) = delete;

private:
    std::unique_ptr<std::streambuf> buffer_;
};

// A field of the data set's current row. It reads the row at the moment it
// is asked, so one Field follows the data set as it moves.
class Field {
public:
    const FieldInfo& info() const;
    const std::string& name() const { return info().name; }
    FieldType type() const { return info().type; }

    bool isNull() const;
    Value value() const;
    std::string asText() const { return read([](const Value& v) { return v.asText(); }); }
    int asInt() const { return read([](const Value& v) { return v.asInt(); }); }
    std::int64_t asInt64() const { return read([](const Value& v) { return v.asInt64(); }); }
    double asDouble() const { return read([](const Value& v) { return v.asDouble(); }); }
    Decimal asDecimal() const { return read([](const Value& v) { return v.asDecimal(); }); }
    Date asDate() const { return read([](const Value& v) { return v.asDate(); }); }
    Time asTime() const { return read([](const Value& v) { return v.asTime(); }); }
    Timestamp asTimestamp() const { return read([](const Value& v) { return v.asTimestamp(); }); }
    bool asBool() const { return read([](const Value& v) { return v.asBool(); }); }
    // The field's content as a stream of bytes (a blob's, or the text's); a
    // blob is read as the stream is consumed, not held whole.
    BlobStream blobStream() const;

private:
    friend class DataSet;
    Field(const DataSet& dataSet, int index) : dataSet_(&dataSet), index_(index) {}
    // The value as the row holds it, read in place rather than copied; none
    // for a blob not read yet.
    const Value* held() const;
    template <typename Read>
    std::invoke_result_t<Read, const Value&> read(Read get) const {
        if (const Value* value = held()) return get(*value);
        return get(value());
    }
    const DataSet* dataSet_;
    int index_;
};

// The rows of one query on a connection, with a current row.
//
// Rows are fetched as the data set moves (recordCount() fetches them all),
// all from one snapshot of the database taken when it opens, so that they
// agree with each other whatever other users commit meanwhile (in an open
// UnitOfWork they are read in the unit's own transaction instead). A blob
// field is read only when it is asked for.
//
// The rows of a query on one table that carries a primary key (as
// "Select * From T") can be changed: edit() or insert(), setValue(), post().
// Posted changes and deletions are pending until updateBatch() stores them
// all in one transaction (or in the open unit of work); close() and
// destruction drop what is still pending. A row is changed or deleted only
// while it is still as it was read; otherwise updateBatch() raises
// ConflictError and stores nothing.
//
// After a failure to fetch rows the data set is failed: every call but
// close() raises, until it is opened again.
class DataSet {
public:
    enum class State { inactive, browse, edit, insert };
    // How the rows may be walked: any way, every fetched row kept; or forward
    // only, keeping the current row alone, for a caller that reads each row
    // once (a report, an export, the fleet status). A forward-only data set
    // cannot go back to its first row once it has left it, count or search
    // its rows, or change them: those raise Error.
    enum class Traversal { any, forwardOnly };

    explicit DataSet(Connection& connection);
    DataSet(Connection& connection, std::string sql, Traversal traversal = Traversal::any);
    ~DataSet();
    DataSet(DataSet&&) noexcept;
    DataSet& operator=(DataSet&&) noexcept;
    DataSet(const DataSet&) = delete;
    DataSet& operator=(const DataSet&) = delete;

    // A new data set on the same connection as this one: the row a caller
    // hands over brings its connection with it.
    DataSet onSameConnection(std::string sql) const;
    // The attachment it runs on, as Connection::impl() gives it: what tells
    // apart state kept per connection.
    const std::shared_ptr<detail::ConnectionImpl>& connectionImpl() const;

    void setSql(std::string sql);
    const std::string& sql() const;
    // The value of parameter ":name" in the SQL text (name given without ':',
    // matched without regard to case); Value() for NULL. open() and
    // execute() raise ArgumentError for a parameter the text does not have,
    // for one of the text's parameters left unset, and for a '?' in the
    // text. setSql() forgets the values.
    void setParam(std::string_view name, Value value);

    void open();
    void close() noexcept;
    bool isOpen() const { return state() != State::inactive; }
    State state() const;
    // Runs a statement that returns no rows, with the parameters, and commits;
    // returns the rows it changed.
    std::int64_t execute();

    void first();
    void next();
    bool eof();
    int recordCount();

    int fieldCount() const;
    const FieldInfo& fieldInfo(int index) const;
    bool hasField(std::string_view name) const;
    // Throws ArgumentError when there is no such field.
    Field field(int index) const;
    Field field(std::string_view name) const;

    // Moves to the first row whose column equals the value (after conversion
    // to the column's type; text compares exactly). Stays put and returns
    // false when no row matches.
    bool locate(std::string_view column, const Value& value);

    void edit();
    // A new row before the current one / after the last one.
    void insert();
    void append();
    // Sets a field of the row being edited or inserted, converted to the
    // field's type (ConversionError when it does not convert).
    void setValue(int index, const Value& value);
    void setValue(std::string_view name, const Value& value);
    void post();
    void cancel();
    // Deletes the current row; the next one becomes current.
    void remove();
    // Stores every pending change in one transaction, or in the open unit
    // of work. On failure nothing is stored and the changes stay pending;
    // they are pending again too when the unit of work they went into is
    // dropped.
    void updateBatch();
    bool hasPendingChanges() const;

private:
    DataSet() = default;
    friend class Field;
    friend class UnitOfWork;
    class Impl;
    Impl& impl() const;
    Value currentValue(int index) const;
    int checkedIndex(int index) const;
    int indexOf(std::string_view name) const;

    std::unique_ptr<Impl> impl_;
};

}  // namespace mxbook::db
