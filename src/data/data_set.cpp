#include "mxbook/data/data_set.h"

#include <algorithm>
#include <limits>
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
    Status status = Status::stored;
    std::vector<Value> stored;  // the row as stored, kept from its first change
    std::vector<bool> changed;  // fields that differ from the stored row (or were given on insert)
};

std::string upper(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

}  // namespace

class DataSet::Impl final : public detail::CursorUser {
public:
    explicit Impl(std::shared_ptr<detail::ConnectionImpl> owner) : connection(std::move(owner)) {}
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    virtual ~Impl() { close(); }

    void releaseCursor() noexcept override { close(); }

    void close() noexcept {
        if (state == State::inactive) return;
        cursor.reset();
        connection->untrack(this);
        rows.clear();
        deleted.clear();
        buffer.clear();
        position = 0;
        state = State::inactive;
    }

    void open() {
        close();
        const detail::PositionalSql positional = detail::toPositional(sql);
        cursor = std::make_unique<detail::Cursor>(*connection, positional.sql, paramValues(positional));
        openedSql = positional.sql;
        if (!cursor->returnsRows()) {
            cursor.reset();
            throw Error("the statement returns no rows; run it with execute()", 0, sql);
        }
        columns = cursor->columns();
        byName.clear();
        for (std::size_t i = columns->size(); i-- > 0;) byName[upper((*columns)[i].info.name)] = static_cast<int>(i);
        writable.reset();
        connection->track(this);
        state = State::browse;
        fetchUpTo(0);
    }

    std::vector<Value> paramValues(const detail::PositionalSql& positional) const {
        std::vector<Value> values;
        for (const std::string& name : positional.names) {
            const auto found = params.find(upper(name));
            values.push_back(found == params.end() ? Value() : found->second);
        }
        return values;
    }

    // Fetches until row `index` is there or the rows are exhausted.
    void fetchUpTo(std::size_t index) {
        std::vector<Value> values;
        while (cursor && rows.size() <= index) {
            if (!cursor->fetch(values)) {
                cursor.reset();
                break;
            }
            rows.push_back(Row{std::move(values), Row::Status::stored, {}, {}});
        }
    }

    void fetchAll() { fetchUpTo(std::numeric_limits<std::size_t>::max()); }

    void checkOpen() const {
        if (state == State::inactive) throw Error("the data set is closed");
    }

    // Leaves edit or insert mode as moving off the row does: by posting.
    void toBrowse() {
        checkOpen();
        if (state == State::edit || state == State::insert) post();
    }

    bool eof() const { return position >= rows.size(); }

    const detail::WritableTable& target() {
        if (!writable)
            writable = detail::findWritableTable(*connection, *columns, connection->relationAliases(openedSql));
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
                }
            }
        } else if (state == State::insert) {
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(insertAt),
                        Row{std::move(buffer), Row::Status::inserted, {}, bufferChanged});
            position = insertAt;
        }
        buffer.clear();
        bufferChanged.clear();
        state = State::browse;
    }

    void startInsert(std::size_t at) {
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

    void updateBatch() {
        toBrowse();
        if (!pending()) return;
        // Rows still to be fetched would otherwise bring back the rows stored here.
        fetchAll();
        const detail::WritableTable& table = target();
        fb::Transaction transaction(connection->attachment(), fb::Transaction::Kind::write);
        detail::RowWriter writer(*connection, transaction, *columns, table);
        for (const auto& stored : deleted) writer.remove(stored);
        std::vector<std::pair<std::size_t, std::vector<Value>>> inserted;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const Row& row = rows[i];
            if (row.status == Row::Status::modified) writer.update(row.stored, row.values, row.changed);
            if (row.status == Row::Status::inserted) inserted.emplace_back(i, writer.insert(row.values, row.changed));
        }
        transaction.commit();

        deleted.clear();
        for (Row& row : rows) {
            row.status = Row::Status::stored;
            row.stored.clear();
            row.changed.clear();
        }
        for (auto& [index, values] : inserted) rows[index].values = std::move(values);
    }

    std::shared_ptr<detail::ConnectionImpl> connection;
    std::string sql;
    std::unordered_map<std::string, Value> params;  // by upper-cased name
    State state = State::inactive;

    std::string openedSql;                   // with '?' for its parameters
    std::unique_ptr<detail::Cursor> cursor;  // while rows remain to be fetched
    std::shared_ptr<const std::vector<detail::Column>> columns;
    std::unordered_map<std::string, int> byName;  // upper-cased name: first column of that name
    std::optional<detail::WritableTable> writable;

    std::vector<Row> rows;
    std::size_t position = 0;
    std::vector<std::vector<Value>> deleted;  // stored rows deleted and not yet stored

    std::vector<Value> buffer;  // the row being edited or inserted
    std::vector<bool> bufferChanged;
    std::size_t insertAt = 0;
};

DataSet::DataSet(Connection& connection) {
    if (!connection.impl()) throw Error("the connection was moved away");
    impl_ = std::make_unique<Impl>(connection.impl());
}

DataSet::DataSet(Connection& connection, std::string sql) : DataSet(connection) { setSql(std::move(sql)); }

DataSet::~DataSet() = default;

DataSet DataSet::onSameConnection(std::string sql) const {
    DataSet sibling;
    sibling.impl_ = std::make_unique<Impl>(impl().connection);
    sibling.setSql(std::move(sql));
    return sibling;
}

DataSet::Impl& DataSet::impl() const {
    if (!impl_) throw Error("the data set was moved away");
    return *impl_;
}
DataSet::DataSet(DataSet&&) noexcept = default;
DataSet& DataSet::operator=(DataSet&&) noexcept = default;

void DataSet::setSql(std::string sql) {
    close();
    impl().sql = std::move(sql);
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
    const detail::PositionalSql positional = detail::toPositional(impl().sql);
    return impl().connection->execute(positional.sql, impl().paramValues(positional));
}

void DataSet::first() {
    impl().toBrowse();
    impl().position = 0;
    impl().fetchUpTo(0);
}

void DataSet::next() {
    impl().toBrowse();
    if (impl().eof()) return;
    ++impl().position;
    impl().fetchUpTo(impl().position);
}

bool DataSet::eof() {
    impl().checkOpen();
    return impl().state != State::insert && impl().eof();
}

int DataSet::recordCount() {
    impl().checkOpen();
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
        throw Error("the data set has no field " + std::to_string(index) + " (it has " +
                    std::to_string(impl().columns->size()) + ")");
    return index;
}

int DataSet::indexOf(std::string_view name) const {
    impl().checkOpen();
    const auto found = impl().byName.find(upper(name));
    if (found == impl().byName.end()) throw Error("the data set has no field " + std::string(name));
    return found->second;
}

const FieldInfo& DataSet::fieldInfo(int index) const { return (*impl().columns)[checkedIndex(index)].info; }

bool DataSet::hasField(std::string_view name) const {
    impl().checkOpen();
    return impl().byName.count(upper(name)) > 0;
}

Field DataSet::field(int index) const { return Field(*this, checkedIndex(index)); }

Field DataSet::field(std::string_view name) const { return Field(*this, indexOf(name)); }

const Value& DataSet::currentValue(int index) const {
    const Impl& impl = this->impl();
    checkedIndex(index);
    if (impl.state == State::edit || impl.state == State::insert) return impl.buffer[index];
    if (impl.eof()) throw Error("the data set has no current row");
    return impl.rows[impl.position].values[index];
}

bool DataSet::locate(std::string_view column, const Value& value) {
    impl().toBrowse();
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
        if (impl().rows[i].values[index] == wanted) {
            impl().position = i;
            return true;
        }
    }
}

void DataSet::edit() {
    impl().checkOpen();
    if (impl().state == State::edit || impl().state == State::insert) return;
    if (impl().eof()) throw Error("the data set has no current row to edit");
    impl().target();
    impl().buffer = impl().rows[impl().position].values;
    impl().bufferChanged.assign(impl().buffer.size(), false);
    impl().state = State::edit;
}

void DataSet::insert() { impl().startInsert(impl().position); }

void DataSet::append() {
    impl().checkOpen();
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

bool Field::isNull() const { return dataSet_->currentValue(index_).isNull(); }

Value Field::value() const { return dataSet_->currentValue(index_); }

}  // namespace mxbook::db
