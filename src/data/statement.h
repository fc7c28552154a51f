// Prepared statements and the per-connection cache that lets a statement run
// again and again without being prepared again.
#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "firebird.h"
#include "message.h"

namespace mxbook::db::detail {

// Found by a name's view, without a string made for it.
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
};
// Column positions by upper-cased name: the first column of each name.
using NameIndex = std::unordered_map<std::string, int, NameHash, std::equal_to<>>;

class Prepared {
public:
    Prepared(fb::IAttachment* attachment, fb::ITransaction* transaction, std::string sql);

    const std::string& sql() const { return sql_; }
    fb::IStatement* statement() const { return statement_.get(); }
    fb::IMessageMetadata* input() const { return input_.get(); }
    // The parameters, described once rather than at each execution.
    const std::vector<Column>& inputColumns() const { return inputColumns_; }
    fb::IMessageMetadata* output() const { return output_.get(); }
    const std::vector<Column>& columns() const { return *columns_; }
    std::shared_ptr<const std::vector<Column>> sharedColumns() const { return columns_; }
    // Built once per statement, not per data set that runs it.
    std::shared_ptr<const NameIndex> names() const { return names_; }
    bool hasCursor() const { return hasCursor_; }
    // Creates, alters or drops metadata.
    bool isDdl() const { return type_ == isc_info_sql_stmt_ddl; }
    // COMMIT, ROLLBACK or SET TRANSACTION.
    bool controlsTransactions() const;
    // The alias (or name) of the table each output column comes from, as the
    // query writes it: a table read twice under two aliases shows both. Asked
    // of the server once per statement.
    const std::vector<std::string>& relationAliases() const;

private:
    struct Freer {
        void operator()(fb::IStatement* statement) const noexcept;
    };

    std::string sql_;
    std::unique_ptr<fb::IStatement, Freer> statement_;
    fb::Ref<fb::IMessageMetadata> input_;
    fb::Ref<fb::IMessageMetadata> output_;
    std::shared_ptr<const std::vector<Column>> columns_;
    std::vector<Column> inputColumns_;
    std::shared_ptr<const NameIndex> names_;
    mutable std::optional<std::vector<std::string>> aliases_;
    bool hasCursor_ = false;
    unsigned type_ = 0;
};

// The most recently used statements of one attachment, by SQL text. A
// statement in use (its cursor open) is not handed out twice: the second
// user gets one prepared for it alone.
//
// A prepared statement holds the metadata of the tables it reads, as
// Firebird's statements do: while this connection is open, another one
// cannot drop those tables, and does not see its own changes to them here.
// This connection's own metadata changes empty the cache (see
// ConnectionImpl::run).
class StatementCache {
public:
    explicit StatementCache(std::size_t capacity) : capacity_(capacity) {}

    std::shared_ptr<Prepared> acquire(fb::IAttachment* attachment, fb::ITransaction* transaction,
                                      const std::string& sql);
    // Drops the statement of that text, so that it is prepared anew.
    void forget(const std::string& sql);
    void clear();

private:
    using Entries = std::list<std::shared_ptr<Prepared>>;
    std::size_t capacity_;
    Entries entries_;  // most recent first
    std::unordered_map<std::string, Entries::iterator> bySql_;
};

}  // namespace mxbook::db::detail
