#include "raw_firebird.h"

#include <cstring>
#include <stdexcept>

namespace mxbook::bench {

using namespace Firebird;

namespace {

class Status : public ThrowStatusWrapper {
public:
    explicit Status(IMaster* master) : ThrowStatusWrapper(master->getStatus()) {}
    ~Status() { dispose(); }
};

constexpr unsigned textLength = 200;
constexpr unsigned utf8 = 4;

}  // namespace

RawDatabase::RawDatabase(const std::string& location) : master_(fb_get_master_interface()) {
    Status status(master_);
    IXpbBuilder* dpb = master_->getUtilInterface()->getXpbBuilder(&status, IXpbBuilder::DPB, nullptr, 0);
    dpb->insertString(&status, isc_dpb_lc_ctype, "UTF8");
    dpb->insertString(&status, isc_dpb_user_name, "SYSDBA");
    if (const char* password = std::getenv("MXBOOK_DB_PASSWORD"))
        dpb->insertString(&status, isc_dpb_password, password);
    IProvider* provider = master_->getDispatcher();
    attachment_ =
        provider->attachDatabase(&status, location.c_str(), dpb->getBufferLength(&status), dpb->getBuffer(&status));
    dpb->dispose();
    provider->release();
    // A reader, as the library's queries are: read-only, so that it holds
    // nothing back from the other connections.
    static constexpr unsigned char readOnly[] = {isc_tpb_version3, isc_tpb_read, isc_tpb_read_committed,
                                                 isc_tpb_rec_version};
    transaction_ = attachment_->startTransaction(&status, sizeof readOnly, readOnly);
}

RawDatabase::~RawDatabase() {
    Status status(master_);
    try {
        transaction_->commit(&status);
        attachment_->detach(&status);
    } catch (const FbException&) {
    }
}

RawDatabase::Statement::Statement(RawDatabase& database, const std::string& sql) : database_(database) {
    Status status(database.master_);
    statement_ = database.attachment_->prepare(&status, database.transaction_, 0, sql.c_str(), 3,
                                               IStatement::PREPARE_PREFETCH_METADATA);
    // Every parameter is given as text; the engine converts.
    IMessageMetadata* declared = statement_->getInputMetadata(&status);
    const unsigned count = declared->getCount(&status);
    IMetadataBuilder* builder = declared->getBuilder(&status);
    for (unsigned i = 0; i < count; ++i) {
        builder->setType(&status, i, SQL_VARYING);
        builder->setLength(&status, i, textLength * 4);
        builder->setCharSet(&status, i, utf8);
        builder->setScale(&status, i, 0);
    }
    input_ = builder->getMetadata(&status);
    builder->release();
    declared->release();
    inputBuffer_.resize(input_->getMessageLength(&status));
    output_ = statement_->getOutputMetadata(&status);
    outputBuffer_.resize(output_->getMessageLength(&status));
}

RawDatabase::Statement::~Statement() {
    Status status(database_.master_);
    if (input_) input_->release();
    if (output_) output_->release();
    try {
        if (statement_) statement_->free(&status);
    } catch (const FbException&) {
    }
}

void RawDatabase::beginWrite() {
    Status status(master_);
    static constexpr unsigned char write[] = {isc_tpb_version3, isc_tpb_write, isc_tpb_concurrency, isc_tpb_wait};
    writing_ = attachment_->startTransaction(&status, sizeof write, write);
}

void RawDatabase::rollbackWrite() {
    Status status(master_);
    writing_->rollback(&status);
    writing_ = nullptr;
}

void RawDatabase::commitWrite() {
    Status status(master_);
    writing_->commit(&status);
    writing_ = nullptr;
}

void RawDatabase::Statement::execute(const std::vector<std::string>& params) {
    bind(params);
    executeBound();
}

void RawDatabase::Statement::executeNullable(const std::vector<std::optional<std::string>>& params) {
    bind(params);
    executeBound();
}

void RawDatabase::Statement::executeBound() {
    Status status(database_.master_);
    const bool returns = !outputBuffer_.empty();
    statement_->execute(&status, database_.writing_, input_, inputBuffer_.data(), returns ? output_ : nullptr,
                        returns ? outputBuffer_.data() : nullptr);
}

void RawDatabase::Statement::bind(const std::vector<std::string>& params) {
    Status status(database_.master_);
    for (unsigned i = 0; i < params.size(); ++i) {
        unsigned char* field = inputBuffer_.data() + input_->getOffset(&status, i);
        const auto length = static_cast<unsigned short>(std::min<std::size_t>(params[i].size(), textLength * 4));
        std::memcpy(field, &length, sizeof length);
        std::memcpy(field + sizeof length, params[i].data(), length);
        std::memset(inputBuffer_.data() + input_->getNullOffset(&status, i), 0, sizeof(short));
    }
}

void RawDatabase::Statement::bind(const std::vector<std::optional<std::string>>& params) {
    Status status(database_.master_);
    for (unsigned i = 0; i < params.size(); ++i) {
        const short null = params[i] ? 0 : -1;
        if (params[i]) {
            unsigned char* field = inputBuffer_.data() + input_->getOffset(&status, i);
            const auto length = static_cast<unsigned short>(std::min<std::size_t>(params[i]->size(), textLength * 4));
            std::memcpy(field, &length, sizeof length);
            std::memcpy(field + sizeof length, params[i]->data(), length);
        }
        std::memcpy(inputBuffer_.data() + input_->getNullOffset(&status, i), &null, sizeof null);
    }
}

int RawDatabase::Statement::run(const std::vector<std::string>& params, int limit) {
    bind(params);
    return fetch(limit);
}

int RawDatabase::Statement::runNullable(const std::vector<std::optional<std::string>>& params, int limit) {
    bind(params);
    return fetch(limit);
}

int RawDatabase::Statement::fetch(int limit) {
    Status status(database_.master_);
    IResultSet* rows = statement_->openCursor(&status, database_.transaction_, input_, inputBuffer_.data(), output_, 0);
    int count = 0;
    while (count != limit && rows->fetchNext(&status, outputBuffer_.data()) == IStatus::RESULT_OK) ++count;
    rows->close(&status);
    return count;
}

}  // namespace mxbook::bench
