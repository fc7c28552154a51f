#include "connection_impl.h"

#include <locale.h>

namespace mxbook::db::detail {

namespace {

constexpr const char* primaryKeySql =
    "select trim(s.rdb$field_name) from rdb$relation_constraints c "
    "join rdb$index_segments s on s.rdb$index_name = c.rdb$index_name "
    "where c.rdb$constraint_type = 'PRIMARY KEY' and c.rdb$relation_name = ? "
    "order by s.rdb$field_position";

// Firebird keeps the text of the database in its own character set; this
// connection always speaks UTF-8 and lets Firebird transliterate.
constexpr const char* connectionCharSet = "UTF8";
constexpr const char* defaultDatabaseCharSet = "WIN1251";
constexpr int pageSize = 8192;

// Firebird turns a UTF-8 file name into the system's encoding through the
// calling thread's locale; a host that never chose one (the "C" locale)
// would make any non-ASCII path fail. For the attach only, this thread
// speaks UTF-8.
class Utf8FileNames {
public:
    Utf8FileNames() {
        utf8_ = newlocale(LC_CTYPE_MASK, "C.UTF-8", duplocale(uselocale(static_cast<locale_t>(nullptr))));
        if (utf8_) previous_ = uselocale(utf8_);
    }
    ~Utf8FileNames() {
        if (!utf8_) return;
        uselocale(previous_);
        freelocale(utf8_);
    }
    Utf8FileNames(const Utf8FileNames&) = delete;
    Utf8FileNames& operator=(const Utf8FileNames&) = delete;

private:
    locale_t utf8_ = nullptr;
    locale_t previous_ = nullptr;
};

}  // namespace

void ConnectionImpl::attach(const ConnectionString& settings, bool create) {
    detach();
    fb::Status status;
    const Utf8FileNames utf8FileNames;
    fb::guarded({}, [&] {
        fb::IXpbBuilder* dpb = fb::util()->getXpbBuilder(&status, fb::IXpbBuilder::DPB, nullptr, 0);
        struct Disposer {
            fb::IXpbBuilder* builder;
            ~Disposer() { builder->dispose(); }
        } disposer{dpb};
        dpb->insertString(&status, isc_dpb_lc_ctype, connectionCharSet);
        dpb->insertTag(&status, isc_dpb_utf8_filename);
        if (!settings.userId.empty()) dpb->insertString(&status, isc_dpb_user_name, settings.userId.c_str());
        if (!settings.password.empty()) dpb->insertString(&status, isc_dpb_password, settings.password.c_str());
        if (create) {
            const std::string charSet = settings.ctype.empty() ? defaultDatabaseCharSet : settings.ctype;
            dpb->insertString(&status, isc_dpb_set_db_charset, charSet.c_str());
            dpb->insertInt(&status, isc_dpb_page_size, pageSize);
            dpb->insertInt(&status, isc_dpb_sql_dialect, SQL_DIALECT_V6);
        }
        const auto length = dpb->getBufferLength(&status);
        const auto* buffer = dpb->getBuffer(&status);
        attachment_ = create ? fb::provider()->createDatabase(&status, settings.location.c_str(), length, buffer)
                             : fb::provider()->attachDatabase(&status, settings.location.c_str(), length, buffer);
    });
}

void ConnectionImpl::detach() noexcept {
    // Copy first: a user untracks itself while releasing.
    const auto users = cursorUsers_;
    for (CursorUser* user : users) user->releaseCursor();
    cursorUsers_.clear();
    statements_.clear();
    reading_.reset();
    primaryKeys_.clear();
    if (!attachment_) return;
    fb::endQuietly(attachment_, &fb::IAttachment::detach<fb::CheckStatusWrapper>);
    attachment_ = nullptr;
}

fb::IAttachment* ConnectionImpl::attachment() const {
    if (!attachment_) throw Error("the connection is closed");
    return attachment_;
}

std::shared_ptr<Prepared> ConnectionImpl::prepare(fb::ITransaction* transaction, const std::string& sql) {
    return statements_.acquire(attachment(), transaction, sql);
}

std::vector<Value> ConnectionImpl::run(fb::Transaction& transaction, const std::string& sql,
                                       const std::vector<Value>& params, std::int64_t* affected) {
    const auto prepared = prepare(transaction.get(), sql);
    if (prepared->controlsTransactions())
        throw Error("COMMIT, ROLLBACK and SET TRANSACTION cannot run as statements: each statement and each "
                    "batch of changes is committed by itself", 0, sql);
    if (prepared->isDdl()) {
        // Prepared statements hold the metadata they read: they would keep a
        // changed table's old columns and keep a dropped table "in use".
        statements_.clear();
        primaryKeys_.clear();
        if (openCursors_ == 0) reading_.reset();
    }
    InputMessage input(prepared->input(), params, attachment(), transaction.get());
    fb::IMessageMetadata* output = prepared->output();
    fb::Status status;
    return fb::guarded(sql, [&] {
        std::vector<unsigned char> row(output ? output->getMessageLength(&status) : 0);
        prepared->statement()->execute(&status, transaction.get(), input.metadata(), input.buffer(), output,
                                       row.empty() ? nullptr : row.data());
        if (affected) *affected = static_cast<std::int64_t>(prepared->statement()->getAffectedRecords(&status));
        std::vector<Value> returned;
        for (const Column& column : prepared->columns())
            returned.push_back(decode(column, row.data(), attachment(), transaction.get()));
        return returned;
    });
}

std::int64_t ConnectionImpl::execute(const std::string& sql, const std::vector<Value>& params) {
    fb::Transaction transaction(attachment(), fb::Transaction::Kind::write);
    std::int64_t affected = 0;
    run(transaction, sql, params, &affected);
    transaction.commit();
    return affected;
}

std::vector<std::string> ConnectionImpl::relationAliases(const std::string& sql) {
    return prepare(readTransaction(), sql)->relationAliases();
}

const std::vector<std::string>& ConnectionImpl::primaryKey(const std::string& table) {
    if (auto found = primaryKeys_.find(table); found != primaryKeys_.end()) return found->second;
    std::vector<std::string> key;
    for (const auto& row : queryRows(*this, primaryKeySql, {Value(table)})) key.push_back(row.at(0).asText());
    return primaryKeys_[table] = std::move(key);
}

fb::ITransaction* ConnectionImpl::readTransaction() {
    if (!reading_) reading_.emplace(attachment(), fb::Transaction::Kind::read);
    return reading_->get();
}

Cursor::Cursor(ConnectionImpl& connection, const std::string& sql, const std::vector<Value>& params)
    : connection_(&connection),
      attachment_(connection.attachment()),
      transaction_(connection.readTransaction()),
      prepared_(connection.prepare(transaction_, sql)),
      columns_(prepared_->sharedColumns()),
      returnsRows_(prepared_->hasCursor()),
      sql_(sql) {
    if (!returnsRows_) return;
    InputMessage input(prepared_->input(), params, attachment_, transaction_);
    fb::Status status;
    fb::guarded(sql, [&] {
        buffer_.assign(prepared_->output()->getMessageLength(&status), 0);
        resultSet_ = prepared_->statement()->openCursor(&status, transaction_, input.metadata(), input.buffer(),
                                                        prepared_->output(), 0);
    });
    connection_->cursorOpened();
}

bool Cursor::fetch(std::vector<Value>& row) {
    if (!resultSet_) return false;
    fb::Status status;
    const bool fetched = fb::guarded(sql_, [&] {
        return resultSet_->fetchNext(&status, buffer_.data()) == fb::IStatus::RESULT_OK;
    });
    if (!fetched) {
        close();
        return false;
    }
    const auto& columns = *columns_;
    row.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        row[i] = decode(columns[i], buffer_.data(), attachment_, transaction_);
    return true;
}

void Cursor::close() noexcept {
    if (resultSet_) {
        fb::endQuietly(resultSet_, &fb::IResultSet::close<fb::CheckStatusWrapper>);
        resultSet_ = nullptr;
        connection_->cursorClosed();
    }
    prepared_.reset();
}

std::vector<std::vector<Value>> queryRows(ConnectionImpl& connection, const std::string& sql,
                                          const std::vector<Value>& params) {
    Cursor cursor(connection, sql, params);
    std::vector<std::vector<Value>> rows;
    for (std::vector<Value> row; cursor.fetch(row);) rows.push_back(row);
    return rows;
}

}  // namespace mxbook::db::detail
