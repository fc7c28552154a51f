#include "connection_impl.h"

#include <locale.h>

#include <algorithm>

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

// A numeric item of an info answer: item, 2-byte length, little-endian value.
std::int64_t numberOf(const unsigned char* answer) {
    if (answer[0] == isc_info_end || answer[0] == isc_info_truncated || answer[0] == isc_info_error) return -1;
    const unsigned length = answer[1] | answer[2] << 8;
    std::int64_t value = 0;
    for (unsigned i = std::min(length, 8u); i-- > 0;) value = value << 8 | answer[3 + i];
    return value;
}

std::int64_t transactionInfo(fb::ITransaction* transaction, unsigned char item) {
    unsigned char answer[32] = {};
    fb::Status status;
    fb::guarded({}, [&] { transaction->getInfo(&status, 1, &item, sizeof answer, answer); });
    return numberOf(answer);
}

std::int64_t infoNumber(fb::IAttachment* attachment, const unsigned char (&items)[1]) {
    unsigned char answer[32] = {};
    fb::Status status;
    fb::guarded({}, [&] { attachment->getInfo(&status, 1, items, sizeof answer, answer); });
    return numberOf(answer);
}

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
    // A server is named as "host:path" (or a protocol "xnet://...", "inet://..."); a plain path is embedded.
    embedded_ = settings.location.find(':') == std::string::npos;
}

void ConnectionImpl::detach() noexcept {
    // Copy first: a user untracks itself while releasing.
    const auto users = cursorUsers_;
    for (CursorUser* user : users) user->releaseCursor();
    cursorUsers_.clear();
    snapshot_ = {};
    if (work_) {
        work_->dropped = true;
        work_->transaction.rollback();
        for (WorkParticipant* participant : work_->participants) participant->workDropped();
        work_->participants.clear();
        work_.reset();
    }
    statements_.clear();
    primaryKeys_.clear();
    if (!attachment_) return;
    fb::endQuietly(attachment_, &fb::IAttachment::detach<fb::CheckStatusWrapper>);
    attachment_ = nullptr;
}

void ConnectionImpl::dropDatabase() {
    fb::IAttachment* attachment = this->attachment();
    const auto users = cursorUsers_;
    for (CursorUser* user : users) user->releaseCursor();
    cursorUsers_.clear();
    snapshot_ = {};
    if (work_) endWork(false);
    statements_.clear();
    primaryKeys_.clear();
    fb::Status status;
    fb::guarded({}, [&] { attachment->dropDatabase(&status); });
    attachment_ = nullptr;  // dropping released it
}

fb::IAttachment* ConnectionImpl::attachment() const {
    if (!attachment_) throw Error("the connection is closed");
    return attachment_;
}

std::shared_ptr<Prepared> ConnectionImpl::prepare(fb::ITransaction* transaction, const std::string& sql) {
    return statements_.acquire(attachment(), transaction, sql);
}

void ConnectionImpl::forgetStatements() {
    statements_.clear();
    primaryKeys_.clear();
}

bool outgrownBySchema(const Error& failure) {
    // A widened column overflows the buffer a cached statement was prepared
    // with; a table changed under it fails the statement's own checks.
    return failure.hasCode(isc_string_truncation) || failure.hasCode(isc_arith_except) ||
           failure.hasCode(isc_req_sync);
}

std::vector<Value> ConnectionImpl::run(fb::ITransaction* transaction, const std::string& sql,
                                       const std::vector<Value>& params, std::int64_t* affected) {
    const auto prepared = prepare(transaction, sql);
    if (prepared->controlsTransactions())
        throw Error("COMMIT, ROLLBACK and SET TRANSACTION cannot run as statements: each statement and each "
                    "batch of changes is committed by itself", 0, sql);
    if (prepared->isDdl()) {
        // Prepared statements hold the metadata they read: they would keep a
        // changed table's old columns and keep a dropped table "in use";
        // so would an idle snapshot.
        forgetStatements();
        snapshot_ = {};
    }
    try {
        return runOnce(prepared, transaction, params, affected);
    } catch (const Error& failure) {
        if (prepared->isDdl() || !outgrownBySchema(failure)) throw;
        statements_.forget(sql);
        return runOnce(prepare(transaction, sql), transaction, params, affected);
    }
}

std::vector<Value> ConnectionImpl::runOnce(const std::shared_ptr<Prepared>& prepared, fb::ITransaction* transaction,
                                           const std::vector<Value>& params, std::int64_t* affected) {
    InputMessage input(prepared->input(), prepared->inputColumns(), params, attachment(), transaction);
    fb::IMessageMetadata* output = prepared->output();
    fb::Status status;
    return fb::guarded(prepared->sql(), [&] {
        std::vector<unsigned char> row(output ? output->getMessageLength(&status) : 0);
        prepared->statement()->execute(&status, transaction, input.metadata(), input.buffer(), output,
                                       row.empty() ? nullptr : row.data());
        if (affected) *affected = static_cast<std::int64_t>(prepared->statement()->getAffectedRecords(&status));
        std::vector<Value> returned;
        for (const Column& column : prepared->columns()) {
            const bool blob = column.sqlType == SQL_BLOB;
            returned.push_back(blob ? readBlob(decodeBlobId(column, row.data()), attachment(), transaction)
                                    : decode(column, row.data()));
        }
        return returned;
    });
}

std::int64_t ConnectionImpl::execute(const std::string& sql, const std::vector<Value>& params) {
    std::int64_t affected = 0;
    if (work_) {
        inWork([&](fb::ITransaction* transaction) { return run(transaction, sql, params, &affected); });
        return affected;
    }
    fb::Transaction transaction(attachment(), fb::Transaction::Kind::write);
    run(transaction.get(), sql, params, &affected);
    transaction.commit();
    return affected;
}

std::shared_ptr<const PositionalSql> ConnectionImpl::positional(const std::string& sql) {
    if (const auto found = positional_.find(sql); found != positional_.end()) return found->second;
    // Texts with values pasted in would grow the map without end; starting
    // over now and then keeps it to the texts in use.
    constexpr std::size_t kept = 256;
    if (positional_.size() >= kept) positional_.clear();
    return positional_[sql] = std::make_shared<const PositionalSql>(toPositional(sql));
}

std::vector<std::string> ConnectionImpl::relationAliases(const std::string& sql) {
    const ReadScope scope = beginRead();
    return prepare(scope.get(), sql)->relationAliases();
}

const std::vector<std::string>& ConnectionImpl::primaryKey(const std::string& table) {
    if (auto found = primaryKeys_.find(table); found != primaryKeys_.end()) return found->second;
    std::vector<std::string> key;
    for (const auto& row : queryRows(*this, primaryKeySql, {Value(table)})) key.push_back(row.front().asText());
    return primaryKeys_[table] = std::move(key);
}

ReadScope ConnectionImpl::beginRead() {
    if (work_) {
        checkedWork();
        return ReadScope{nullptr, work_};
    }
    if (snapshot_.transaction && sameMomentAs(snapshot_)) return ReadScope{snapshot_.transaction, nullptr};
    snapshot_ = {};
    Snapshot next{std::make_shared<fb::Transaction>(attachment(), fb::Transaction::Kind::read)};
    if (embedded_) {
        next.id = transactionInfo(next.transaction->get(), isc_info_tra_id);
        next.alone = transactionInfo(next.transaction->get(), isc_info_tra_oldest_active) == next.id;
    }
    snapshot_ = next;
    return ReadScope{next.transaction, nullptr};
}

// A snapshot shows the same database as one taken now when no transaction
// was active as it started (so none can have committed since) and none has
// started since (the last transaction number is still its own). Starting a
// transaction per query costs more than the query itself on a small lookup,
// so one that would see the same is not started. Only embedded, where asking
// costs no round trip to a server.
bool ConnectionImpl::sameMomentAs(const Snapshot& snapshot) {
    if (!embedded_ || !snapshot.alone) return false;
    static constexpr unsigned char items[] = {isc_info_next_transaction};
    return infoNumber(attachment(), items) == snapshot.id;
}

std::shared_ptr<Work> ConnectionImpl::checkedWork() const {
    if (!work_) throw Error("no unit of work is open on the connection");
    if (!work_->failure.empty())
        throw Error("the unit of work failed earlier and stores nothing; roll it back (" + work_->failure + ")");
    return work_;
}

std::pair<std::shared_ptr<Work>, bool> ConnectionImpl::beginWork() {
    if (work_) return {work_, false};
    work_ = std::make_shared<Work>(attachment());
    return {work_, true};
}

void ConnectionImpl::endWork(bool store) {
    const std::shared_ptr<Work> work = std::move(work_);
    work_.reset();
    if (!work || work->ended()) return;
    // Data sets still reading in the unit's transaction read the rest now.
    const auto users = cursorUsers_;
    for (CursorUser* user : users) user->transactionEnding(work->transaction.get());
    const auto participants = std::move(work->participants);
    work->participants.clear();
    if (store && work->failure.empty()) {
        try {
            work->transaction.commit();
        } catch (...) {
            work->transaction.rollback();
            for (WorkParticipant* participant : participants) participant->workDropped();
            throw;
        }
        for (WorkParticipant* participant : participants) participant->workStored();
        return;
    }
    work->transaction.rollback();
    for (WorkParticipant* participant : participants) participant->workDropped();
    if (store) throw Error("the unit of work failed earlier and stored nothing (" + work->failure + ")");
}

Cursor::Cursor(ConnectionImpl& connection, fb::ITransaction* transaction, const std::string& sql,
               const std::vector<Value>& params)
    : connection_(&connection),
      attachment_(connection.attachment()),
      transaction_(transaction),
      prepared_(connection.prepare(transaction_, sql)),
      columns_(prepared_->sharedColumns()),
      names_(prepared_->names()),
      returnsRows_(prepared_->hasCursor()),
      sql_(sql),
      params_(params) {
    if (!returnsRows_) return;
    for (const Column& column : *columns_) hasBlobs_ = hasBlobs_ || column.sqlType == SQL_BLOB;
    try {
        openCursor();
    } catch (const Error& failure) {
        if (!outgrownBySchema(failure)) throw;
        connection.forgetStatement(sql);
        prepared_ = connection.prepare(transaction_, sql);
        columns_ = prepared_->sharedColumns();
        names_ = prepared_->names();
        openCursor();
    }
}

void Cursor::openCursor() {
    InputMessage input(prepared_->input(), prepared_->inputColumns(), params_, attachment_, transaction_);
    fb::Status status;
    fb::guarded(sql_, [&] {
        buffer_.assign(prepared_->output()->getMessageLength(&status), 0);
        resultSet_ = prepared_->statement()->openCursor(&status, transaction_, input.metadata(), input.buffer(),
                                                        prepared_->output(), 0);
    });
}

bool Cursor::fetch(std::vector<Value>& row, std::vector<BlobId>& blobs) {
    if (!resultSet_) return false;
    fb::Status status;
    bool fetched = false;
    try {
        fetched = fb::guarded(sql_, [&] {
            return resultSet_->fetchNext(&status, buffer_.data()) == fb::IStatus::RESULT_OK;
        });
    } catch (const Error& failure) {
        // Before the first row nothing was handed out: a statement the schema
        // outgrew is prepared anew and opened again, once.
        if (fetchedAny_ || !outgrownBySchema(failure)) {
            close();
            throw;
        }
        close();
        connection_->forgetStatement(sql_);
        prepared_ = connection_->prepare(transaction_, sql_);
        columns_ = prepared_->sharedColumns();
        names_ = prepared_->names();
        fetchedAny_ = true;  // no second retry
        openCursor();
        return fetch(row, blobs);
    }
    if (!fetched) {
        close();
        return false;
    }
    fetchedAny_ = true;
    const auto& columns = *columns_;
    row.resize(columns.size());
    blobs.clear();
    if (hasBlobs_) blobs.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].sqlType == SQL_BLOB) {
            row[i] = Value();
            blobs[i] = decodeBlobId(columns[i], buffer_.data());
        } else {
            row[i] = decode(columns[i], buffer_.data());
        }
    }
    return true;
}

void Cursor::close() noexcept {
    if (resultSet_) {
        fb::endQuietly(resultSet_, &fb::IResultSet::close<fb::CheckStatusWrapper>);
        resultSet_ = nullptr;
    }
    prepared_.reset();
}

std::vector<std::vector<Value>> queryRows(ConnectionImpl& connection, const std::string& sql,
                                          const std::vector<Value>& params) {
    const ReadScope scope = connection.beginRead();
    Cursor cursor(connection, scope.get(), sql, params);
    std::vector<std::vector<Value>> rows;
    std::vector<BlobId> blobs;
    for (std::vector<Value> row; cursor.fetch(row, blobs);) {
        for (std::size_t i = 0; i < blobs.size(); ++i)
            if (blobs[i].present) row[i] = readBlob(blobs[i], connection.attachment(), scope.get());
        rows.push_back(row);
    }
    return rows;
}

}  // namespace mxbook::db::detail
