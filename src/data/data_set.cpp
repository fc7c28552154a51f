#include "mxbook/data/data_set.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <unordered_map>

#include "connection_impl.h"
#include "mxbook/error.h"
#include "row_writer.h"
#include "sql_text.h"

namespace mxbook::db {

namespace {

struct Row {
    enum class Status : unsigned char { stored, modified, inserted };

    std::vector<Value> values;
    std::vector<detail::BlobId> blobs;  // per column, when the query has blobs: those not read yet
    Status status = Status::stored;
    std::vector<Value> stored;  // the row as stored, kept from its first change
    std::vector<bool> changed;  // fields that differ from the stored row (or were given on insert)

    bool unread(std::size_t column) const { return !blobs.empty() && blobs[column].present; }
};

std::string upper(std::string_view text) { return detail::upperAscii(text); }

// A column by name, letter case aside; a name written upper-case, as most
// are, is looked up as it stands.
detail::NameIndex::const_iterator findName(const detail::NameIndex& names, std::string_view name) {
    const bool upperAlready = std::none_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return upperAlready ? names.find(name) : names.find(upper(name));
}

// The segments of one blob, as a stream reads them.
class BlobBuffer final : public std::streambuf {
public:
    BlobBuffer(fb::IAttachment* attachment, detail::ReadScope scope, detail::BlobId blob) : scope_(std::move(scope)) {
        fb::Status status;
        blob_.reset(fb::guarded({}, [&] { return attachment->openBlob(&status, scope_.get(), &blob.id, 0, nullptr); }));
    }
    ~BlobBuffer() override {
        if (blob_) fb::endQuietly(blob_.release(), &fb::IBlob::close<fb::CheckStatusWrapper>);
    }

protected:
    int_type underflow() override {
        if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
        if (!blob_) return traits_type::eof();
        fb::Status status;
        unsigned length = 0;
        const int result = fb::guarded({}, [&] {
            return blob_->getSegment(&status, static_cast<unsigned>(chunk_.size()), chunk_.data(), &length);
        });
        if (result != fb::IStatus::RESULT_OK && result != fb::IStatus::RESULT_SEGMENT) return traits_type::eof();
        setg(chunk_.data(), chunk_.data(), chunk_.data() + length);
        return length == 0 ? underflow() : traits_type::to_int_type(*gptr());
    }

private:
    detail::ReadScope scope_;  // keeps the transaction the blob is read in
    fb::Ref<fb::IBlob> blob_;
    std::vector<char> chunk_ = std::vector<char>(32768);
};

}  // namespace

BlobStream::BlobStream(std::unique_ptr<std::streambuf> buffer) : std::istream(buffer.get()), buffer_(std::move(buffer)) {}

BlobStream::BlobStream(BlobStream&& other) noexcept
    : std::istream(std::move(other)), buffer_(std::move(other.buffer_)) {
    set_rdbuf(buffer_.get());
}

class DataSet::Impl final : public detail::CursorUser, public detail::WorkParticipant {
public:
    explicit Impl(std::shared_ptr<detail::ConnectionImpl> owner) : connection(std::move(owner)) {}
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    virtual ~Impl() { close(); }

    void releaseCursor() noexcept override { close(); }

    void transactionEnding(fb::ITransaction* transaction) noexcept override {
        if (state == State::inactive || reading.get() != transaction) return;
        // What is still to be read must be read before the transaction goes.
        try {
            fetchAll();
            for (Row& row : rows)
                for (std::size_t i = 0; i < row.blobs.size(); ++i)
                    if (row.unread(i)) {
                        row.values[i] = readBlobAt(row.blobs[i]);
                        row.blobs[i].present = false;
                    }
        } catch (const std::exception& error) {
            if (failure.empty()) failure = error.what();
        }
        reading = {};
    }

    void workStored() noexcept override {
        savedRows.clear();
        savedDeleted.clear();
        joinedWork.reset();
    }

    void workDropped() noexcept override {
        joinedWork.reset();
        if (rows.size() != rowsAfterWrite) {
            if (failure.empty())
                failure = "the unit of work its changes went into was dropped after rows were added or deleted; "
                          "open it again";
        } else {
            for (auto& [index, row] : savedRows) rows[index] = std::move(row);
            deleted.insert(deleted.end(), savedDeleted.begin(), savedDeleted.end());
        }
        savedRows.clear();
        savedDeleted.clear();
    }

    void close() noexcept {
        if (joinedWork) {
            std::erase(joinedWork->participants, static_cast<detail::WorkParticipant*>(this));
            joinedWork.reset();
            savedRows.clear();
            savedDeleted.clear();
        }
        if (state == State::inactive) return;
        cursor.reset();
        reading = {};
        connection->untrack(this);
        rows.clear();
        deleted.clear();
        buffer.clear();
        failure.clear();
        position = 0;
        leftFirstRow = false;
        state = State::inactive;
    }

    std::shared_ptr<const detail::PositionalSql> checkedSql() const {
        std::shared_ptr<const detail::PositionalSql> positional = connection->positional(sql);
        if (positional->unnamedMarkers > 0)
            throw ArgumentError("the SQL text has a '?' marker; name its parameters as :NAME instead");
        const auto& names = positional->upperNames;
        for (const auto& [name, value] : params)
            if (std::find(names.begin(), names.end(), name) == names.end())
                throw ArgumentError("the SQL text has no parameter :" + name);
        for (std::size_t i = 0; i < names.size(); ++i)
            if (!params.count(names[i])) throw ArgumentError("parameter :" + positional->names[i] + " is not set");
        return positional;
    }

    void open() {
        close();
        const auto positional = checkedSql();
        reading = connection->beginRead();
        try {
            cursor = std::make_unique<detail::Cursor>(*connection, reading.get(), positional->sql,
                                                      paramValues(*positional));
        } catch (...) {
            reading = {};
            throw;
        }
        openedSql = positional->sql;
        if (!cursor->returnsRows()) {
            cursor.reset();
            reading = {};
            throw Error("the statement returns no rows; run it with execute()", 0, sql);
        }
        columns = cursor->columns();
        hasBlobs = std::any_of(columns->begin(), columns->end(),
                               [](const detail::Column& c) { return c.sqlType == SQL_BLOB; });
        byName = cursor->names();
        writable.reset();
        connection->track(this);
        state = State::browse;
        fetchUpTo(0);
    }

    std::vector<Value> paramValues(const detail::PositionalSql& positional) const {
        std::vector<Value> values;
        // checkedSql() made sure that every name has a value.
        for (const std::string& name : positional.upperNames) values.push_back(params.find(name)->second);
        return values;
    }

    // Fetches until row `index` is there or the rows are exhausted.
    void fetchUpTo(std::size_t index) {
        std::vector<Value> values;
        std::vector<detail::BlobId> blobs;
        while (cursor && rows.size() <= index) {
            bool fetched = false;
            try {
                fetched = cursor->fetch(values, blobs);
            } catch (const std::exception& error) {
                cursor.reset();
                failure = error.what();
                throw;
            }
            if (!fetched) {
                cursor.reset();
                // Rows without blobs need the snapshot no more; let it go
                // rather than hold back the database's clean-up.
                if (!hasBlobs) reading = {};
                break;
            }
            rows.push_back(Row{std::move(values), std::move(blobs), Row::Status::stored, {}, {}});
        }
    }

    void fetchAll() { fetchUpTo(std::numeric_limits<std::size_t>::max()); }

    void checkOpen() const {
        if (state == State::inactive) throw Error("the data set is closed");
        if (!failure.empty()) throw Error("the data set failed while reading its rows: " + failure, 0, sql);
    }

    Value readBlobAt(const detail::BlobId& blob) const {
        if (!reading.get()) throw Error("the data set's rows were read in a transaction that has ended");
        return detail::readBlob(blob, connection->attachment(), reading.get());
    }

    Value valueAt(const Row& row, std::size_t column) const {
        return row.unread(column) ? readBlobAt(row.blobs[column]) : row.values[column];
    }

    // Leaves edit or insert mode as moving off the row does: by posting.
    void toBrowse() {
        checkOpen();
        if (state == State::edit || state == State::insert) post();
    }

    bool eof() const { return position >= rows.size(); }

    void checkKeepsRows(const char* what) const {
        if (traversal == Traversal::forwardOnly) throw Error(std::string("a forward-only data set cannot ") + what);
    }

    const detail::WritableTable& target() {
        if (!writable) {
            // The open cursor's own statement, rather than a second one prepared beside it.
            std::vector<std::string> aliases = cursor ? cursor->relationAliases() : std::vector<std::string>{};
            if (aliases.empty()) aliases = connection->relationAliases(openedSql);
            writable = detail::findWritableTable(*connection, openedSql, *columns, aliases);
        }
        return *writable;
    }

    void post() {
        if (state == State::edit) {
            Row& row = rows[position];
            if (std::find(bufferChanged.begin(), bufferChanged.end(), true) != bufferChanged.end()) {
                if (row.status == Row::Status::stored) {
                    row.stored = row.values;
                    row.changed.assign(row.values.size(), false);
                    row.status = Row::Status::modified;
                }
                for (std::size_t i = 0; i < buffer.size(); ++i) {
                    if (!bufferChanged[i]) continue;
                    row.values[i] = buffer[i];
                    row.changed[i] = true;
                    if (!row.blobs.empty()) row.blobs[i].present = false;
                }
            }
        } else if (state == State::insert) {
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(insertAt),
                        Row{std::move(buffer), {}, Row::Status::inserted, {}, bufferChanged});
            position = insertAt;
        }
        buffer.clear();
        bufferChanged.clear();
        state = State::browse;
    }

    void startInsert(std::size_t at) {
        checkKeepsRows("change its rows");
        toBrowse();
        target();
        insertAt = std::min(at, rows.size());
        buffer.assign(columns->size(), Value());
        bufferChanged.assign(columns->size(), false);
        state = State::insert;
    }

    bool pending() const {
        return !deleted.empty() || state != State::browse ||
               std::any_of(rows.begin(), rows.end(), [](const Row& row) { return row.status != Row::Status::stored; });
    }

    // Writes every pending change in `transaction`; returns the inserted
    // rows as stored, by their position.
    std::vector<std::pair<std::size_t, std::vector<Value>>> write(fb::ITransaction* transaction) {
        detail::RowWriter writer(*connection, transaction, *columns, target());
        for (const auto& stored : deleted) writer.remove(stored);
        std::vector<std::pair<std::size_t, std::vector<Value>>> inserted;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const Row& row = rows[i];
            if (row.status == Row::Status::modified) writer.update(row.stored, row.values, row.changed);
            if (row.status == Row::Status::inserted) inserted.emplace_back(i, writer.insert(row.values, row.changed));
        }
        return inserted;
    }

    void markStored(std::vector<std::pair<std::size_t, std::vector<Value>>> inserted) {
        deleted.clear();
        for (Row& row : rows) {
            row.status = Row::Status::stored;
            row.stored.clear();
            row.changed.clear();
        }
        for (auto& [index, values] : inserted) rows[index].values = std::move(values);
    }

    void updateBatch() {
        toBrowse();
        if (!pending()) return;
        // Rows still to be fetched would otherwise bring back the rows stored here.
        fetchAll();
        target();
        if (const auto& work = connection->work()) {
            auto inserted = connection->inWork([&](fb::ITransaction* transaction) { return write(transaction); });
            // Kept until the unit ends: dropped, the changes are pending again.
            for (std::size_t i = 0; i < rows.size(); ++i)
                if (rows[i].status != Row::Status::stored) savedRows.try_emplace(i, rows[i]);
            savedDeleted.insert(savedDeleted.end(), deleted.begin(), deleted.end());
            if (joinedWork != work) {
                joinedWork = work;
                work->participants.push_back(this);
            }
            markStored(std::move(inserted));
            rowsAfterWrite = rows.size();
            return;
        }
        fb::Transaction transaction(connection->attachment(), fb::Transaction::Kind::write);
        auto inserted = write(transaction.get());
        transaction.commit();
        markStored(std::move(inserted));
    }

    std::shared_ptr<detail::ConnectionImpl> connection;
    std::string sql;
    std::unordered_map<std::string, Value> params;  // by upper-cased name
    State state = State::inactive;
    std::string failure;  // why fetching failed; empty while it has not

    std::string openedSql;                   // with '?' for its parameters
    detail::ReadScope reading;               // while rows or blobs remain to be read
    std::unique_ptr<detail::Cursor> cursor;  // while rows remain to be fetched
    std::shared_ptr<const std::vector<detail::Column>> columns;
    bool hasBlobs = false;
    std::shared_ptr<const detail::NameIndex> byName;
    std::optional<detail::WritableTable> writable;

    Traversal traversal = Traversal::any;
    bool leftFirstRow = false;  // forward only: the rows behind are gone
    std::vector<Row> rows;
    std::size_t position = 0;
    std::vector<std::vector<Value>> deleted;  // stored rows deleted and not yet stored

    std::vector<Value> buffer;  // the row being edited or inserted
    std::vector<bool> bufferChanged;
    std::size_t insertAt = 0;

    // Written in the open unit of work: the rows as they were before.
    std::shared_ptr<detail::Work> joinedWork;
    std::map<std::size_t, Row> savedRows;
    std::vector<std::vector<Value>> savedDeleted;
    std::size_t rowsAfterWrite = 0;
};

DataSet::DataSet(Connection& connection) {
    if (!connection.impl()) throw Error("the connection was moved away");
    impl_ = std::make_unique<Impl>(connection.impl());
}

DataSet::DataSet(Connection& connection, std::string sql, Traversal traversal) : DataSet(connection) {
    setSql(std::move(sql));
    impl().traversal = traversal;
}

DataSet::~DataSet() = default;

DataSet DataSet::onSameConnection(std::string sql) const {
    DataSet sibling;
    sibling.impl_ = std::make_unique<Impl>(impl().connection);
    sibling.setSql(std::move(sql));
    return sibling;
}

const std::shared_ptr<detail::ConnectionImpl>& DataSet::connectionImpl() const { return impl().connection; }

DataSet::Impl& DataSet::impl() const {
    if (!impl_) throw Error("the data set was moved away");
    return *impl_;
}
DataSet::DataSet(DataSet&&) noexcept = default;
DataSet& DataSet::operator=(DataSet&&) noexcept = default;

void DataSet::setSql(std::string sql) {
    close();
    impl().sql = std::move(sql);
    impl().params.clear();
}

const std::string& DataSet::sql() const { return impl().sql; }

void DataSet::setParam(std::string_view name, Value value) { impl().params[upper(name)] = std::move(value); }

void DataSet::open() { impl().open(); }

void DataSet::close() noexcept {
    if (impl_) impl_->close();
}

DataSet::State DataSet::state() const { return impl_ ? impl_->state : State::inactive; }

std::int64_t DataSet::execute() {
    close();
    const auto positional = impl().checkedSql();
    return impl().connection->execute(positional->sql, impl().paramValues(*positional));
}

void DataSet::first() {
    impl().toBrowse();
    if (impl().leftFirstRow)
        throw Error("a forward-only data set cannot go back to its first row; open it again");
    impl().position = 0;
    impl().fetchUpTo(0);
}

void DataSet::next() {
    Impl& impl = this->impl();
    impl.toBrowse();
    if (impl.eof()) return;
    ++impl.position;
    if (impl.traversal == Traversal::forwardOnly) {
        impl.rows.erase(impl.rows.begin(), impl.rows.begin() + static_cast<std::ptrdiff_t>(impl.position));
        impl.position = 0;
        impl.leftFirstRow = true;
    }
    impl.fetchUpTo(impl.position);
}

bool DataSet::eof() {
    impl().checkOpen();
    return impl().state != State::insert && impl().eof();
}

int DataSet::recordCount() {
    impl().checkOpen();
    impl().checkKeepsRows("count its rows");
    impl().fetchAll();
    return static_cast<int>(impl().rows.size());
}

int DataSet::fieldCount() const {
    impl().checkOpen();
    return static_cast<int>(impl().columns->size());
}

int DataSet::checkedIndex(int index) const {
    impl().checkOpen();
    if (index < 0 || index >= static_cast<int>(impl().columns->size()))
        throw ArgumentError("the data set has no field " + std::to_string(index) + " (it has " +
                    std::to_string(impl().columns->size()) + ")");
    return index;
}

int DataSet::indexOf(std::string_view name) const {
    impl().checkOpen();
    const auto found = findName(*impl().byName, name);
    if (found == impl().byName->end()) throw ArgumentError("the data set has no field " + std::string(name));
    return found->second;
}

const FieldInfo& DataSet::fieldInfo(int index) const { return (*impl().columns)[checkedIndex(index)].info; }

bool DataSet::hasField(std::string_view name) const {
    impl().checkOpen();
    return findName(*impl().byName, name) != impl().byName->end();
}

Field DataSet::field(int index) const { return Field(*this, checkedIndex(index)); }

Field DataSet::field(std::string_view name) const { return Field(*this, indexOf(name)); }

Value DataSet::currentValue(int index) const {
    const Impl& impl = this->impl();
    checkedIndex(index);
    if (impl.state == State::edit || impl.state == State::insert) return impl.buffer[index];
    if (impl.eof()) throw Error("the data set has no current row");
    return impl.valueAt(impl.rows[impl.position], static_cast<std::size_t>(index));
}

bool DataSet::locate(std::string_view column, const Value& value) {
    impl().toBrowse();
    impl().checkKeepsRows("search its rows");
    const int index = indexOf(column);
    Value wanted;
    try {
        wanted = detail::convertForField(value, (*impl().columns)[index].info.type);
    } catch (const ConversionError&) {
        return false;  // no value of the column's type can equal it
    }
    for (std::size_t i = 0;; ++i) {
        impl().fetchUpTo(i);
        if (i >= impl().rows.size()) return false;
        if (impl().valueAt(impl().rows[i], static_cast<std::size_t>(index)) == wanted) {
            impl().position = i;
            return true;
        }
    }
}

void DataSet::edit() {
    impl().checkOpen();
    impl().checkKeepsRows("change its rows");
    if (impl().state == State::edit || impl().state == State::insert) return;
    if (impl().eof()) throw Error("the data set has no current row to edit");
    impl().target();
    const Row& row = impl().rows[impl().position];
    impl().buffer.clear();
    for (std::size_t i = 0; i < row.values.size(); ++i) impl().buffer.push_back(impl().valueAt(row, i));
    impl().bufferChanged.assign(impl().buffer.size(), false);
    impl().state = State::edit;
}

void DataSet::insert() { impl().startInsert(impl().position); }

void DataSet::append() {
    impl().checkOpen();
    impl().checkKeepsRows("change its rows");
    impl().fetchAll();
    impl().startInsert(impl().rows.size());
}

void DataSet::setValue(int index, const Value& value) {
    checkedIndex(index);
    if (impl().state != State::edit && impl().state != State::insert)
        throw Error("the data set is not in edit or insert mode");
    impl().buffer[index] = detail::convertForField(value, (*impl().columns)[index].info.type);
    impl().bufferChanged[index] = true;
}

void DataSet::setValue(std::string_view name, const Value& value) { setValue(indexOf(name), value); }

void DataSet::post() {
    impl().checkOpen();
    impl().post();
}

void DataSet::cancel() {
    impl().checkOpen();
    impl().buffer.clear();
    impl().bufferChanged.clear();
    impl().state = State::browse;
}

void DataSet::remove() {
    impl().checkOpen();
    impl().checkKeepsRows("change its rows");
    if (impl().state == State::insert) return cancel();
    cancel();
    if (impl().eof()) throw Error("the data set has no current row to delete");
    impl().target();
    auto row = impl().rows.begin() + static_cast<std::ptrdiff_t>(impl().position);
    if (row->status == Row::Status::modified)
        impl().deleted.push_back(std::move(row->stored));
    else if (row->status == Row::Status::stored)
        impl().deleted.push_back(std::move(row->values));
    impl().rows.erase(row);
    impl().fetchUpTo(impl().position);
}

void DataSet::updateBatch() { impl().updateBatch(); }

bool DataSet::hasPendingChanges() const { return impl_ && impl_->state != State::inactive && impl_->pending(); }

const FieldInfo& Field::info() const { return dataSet_->fieldInfo(index_); }

const Value* Field::held() const {
    const DataSet::Impl& impl = dataSet_->impl();
    dataSet_->checkedIndex(index_);
    const auto column = static_cast<std::size_t>(index_);
    if (impl.state == DataSet::State::edit || impl.state == DataSet::State::insert) return &impl.buffer[column];
    if (impl.eof() || impl.rows[impl.position].unread(column)) return nullptr;
    return &impl.rows[impl.position].values[column];
}

bool Field::isNull() const {
    if (const Value* value = held()) return value->isNull();
    const DataSet::Impl& impl = dataSet_->impl();
    // An unread blob is there: no need to read it to say so.
    if (!impl.eof()) return false;
    return dataSet_->currentValue(index_).isNull();
}

BlobStream Field::blobStream() const {
    const DataSet::Impl& impl = dataSet_->impl();
    dataSet_->checkedIndex(index_);
    const auto column = static_cast<std::size_t>(index_);
    if (impl.state == DataSet::State::browse && !impl.eof() && impl.rows[impl.position].unread(column)) {
        if (!impl.reading.get()) throw Error("the data set's rows were read in a transaction that has ended");
        return BlobStream(std::make_unique<BlobBuffer>(impl.connection->attachment(), impl.reading,
                                                       impl.rows[impl.position].blobs[column]));
    }
    auto text = std::make_unique<std::stringbuf>(value().asText());
    return BlobStream(std::move(text));
}

Value Field::value() const { return dataSet_->currentValue(index_); }

}  // namespace mxbook::db
