#include "statement.h"

#include <algorithm>

#include "sql_text.h"

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
        type_ = statement_->getType(&status);
    });
    columns_ = std::make_shared<const std::vector<Column>>(describe(output_.get()));
    if (input_) inputColumns_ = describe(input_.get());
    auto names = std::make_shared<NameIndex>();
    for (std::size_t i = columns_->size(); i-- > 0;) (*names)[upperAscii((*columns_)[i].info.name)] = static_cast<int>(i);
    names_ = std::move(names);
}

void Prepared::Freer::operator()(fb::IStatement* statement) const noexcept {
    fb::endQuietly(statement, &fb::IStatement::free<fb::CheckStatusWrapper>);
}

bool Prepared::controlsTransactions() const {
    return type_ == isc_info_sql_stmt_commit || type_ == isc_info_sql_stmt_rollback ||
           type_ == isc_info_sql_stmt_start_trans;
}

const std::vector<std::string>& Prepared::relationAliases() const {
    if (aliases_) return *aliases_;
    // The answer: select, describe_vars, count; then per column its sqlda_seq
    // and relation_alias, closed by describe_end.
    static constexpr unsigned char items[] = {isc_info_sql_select, isc_info_sql_describe_vars,
                                              isc_info_sql_sqlda_seq, isc_info_sql_relation_alias,
                                              isc_info_sql_describe_end};
    std::vector<unsigned char> answer(65536);
    fb::Status status;
    fb::guarded(sql_, [&] {
        statement_->getInfo(&status, sizeof items, items, static_cast<unsigned>(answer.size()), answer.data());
    });
    std::vector<std::string> aliases(columns_->size());
    const auto number = [&](std::size_t at, std::size_t length) {  // little-endian, as info answers are
        std::size_t value = 0;
        for (std::size_t i = std::min<std::size_t>(length, 4); i-- > 0;) value = value << 8 | answer[at + i];
        return value;
    };
    std::size_t column = 0;
    for (std::size_t at = 0; at + 3 <= answer.size();) {
        const unsigned char item = answer[at];
        if (item == isc_info_end) break;
        if (item == isc_info_truncated) throw Error("the query's description is too long to read", 0, sql_);
        if (item == isc_info_sql_select || item == isc_info_sql_describe_end) {
            ++at;
            continue;
        }
        const std::size_t length = answer[at + 1] | (answer[at + 2] << 8);
        at += 3;
        if (at + length > answer.size()) break;
        if (item == isc_info_sql_sqlda_seq) column = number(at, length);
        if (item == isc_info_sql_relation_alias && column >= 1 && column <= aliases.size())
            aliases[column - 1].assign(reinterpret_cast<const char*>(answer.data() + at), length);
        at += length;
    }
    return aliases_.emplace(std::move(aliases));
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

void StatementCache::forget(const std::string& sql) {
    const auto found = bySql_.find(sql);
    if (found == bySql_.end()) return;
    entries_.erase(found->second);
    bySql_.erase(found);
}

void StatementCache::clear() {
    bySql_.clear();
    entries_.clear();
}

}  // namespace mxbook::db::detail
