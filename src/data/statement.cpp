#include "statement.h"

namespace mxbook::db::detail {

Prepared::Prepared(fb::IAttachment* attachment, fb::ITransaction* transaction, std::string sql)
    : sql_(std::move(sql)) {
    fb::Status status;
    fb::guarded(sql_, [&] {
        statement_.reset(attachment->prepare(&status, transaction, static_cast<unsigned>(sql_.size()), sql_.c_str(),
                                             SQL_DIALECT_V6, fb::IStatement::PREPARE_PREFETCH_METADATA));
        input_.reset(statement_->getInputMetadata(&status));
        output_.reset(statement_->getOutputMetadata(&status));
        hasCursor_ = (statement_->getFlags(&status) & fb::IStatement::FLAG_HAS_CURSOR) != 0;
        isDdl_ = statement_->getType(&status) == isc_info_sql_stmt_ddl;
    });
    columns_ = std::make_shared<const std::vector<Column>>(describe(output_.get()));
}

void Prepared::Freer::operator()(fb::IStatement* statement) const noexcept {
    fb::CheckStatusWrapper status(fb::master()->getStatus());
    statement->free(&status);
    if (status.getState() & fb::IStatus::STATE_ERRORS) statement->release();
    status.dispose();
}

std::shared_ptr<Prepared> StatementCache::acquire(fb::IAttachment* attachment, fb::ITransaction* transaction,
                                                  const std::string& sql) {
    if (auto found = bySql_.find(sql); found != bySql_.end()) {
        auto entry = found->second;
        if (entry->use_count() == 1) {
            entries_.splice(entries_.begin(), entries_, entry);
            return *entry;
        }
        return std::make_shared<Prepared>(attachment, transaction, sql);
    }
    auto prepared = std::make_shared<Prepared>(attachment, transaction, sql);
    entries_.push_front(prepared);
    bySql_[sql] = entries_.begin();
    if (entries_.size() > capacity_) {
        bySql_.erase(entries_.back()->sql());
        entries_.pop_back();
    }
    return prepared;
}

void StatementCache::clear() {
    bySql_.clear();
    entries_.clear();
}

}  // namespace mxbook::db::detail
