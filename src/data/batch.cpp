#include "mxbook/data/batch.h"

#include <optional>
#include <string>

#include "connection_impl.h"
#include "mxbook/data/connection.h"
#include "mxbook/data/error.h"

namespace mxbook::db {

class Batch::Impl final : public detail::CursorUser {
public:
    explicit Impl(const std::shared_ptr<detail::ConnectionImpl>& connection) : connection_(connection) {
        connection_->track(this);
    }
    ~Impl() {
        connection_->untrack(this);
        transaction_.reset();
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // The connection is closing: what was not committed is dropped.
    void releaseCursor() noexcept override {
        if (transaction_) dropped_ = true;
        transaction_.reset();
    }

    fb::Transaction& transaction() {
        checkNotDropped();
        if (!transaction_) transaction_.emplace(connection_->attachment(), fb::Transaction::Kind::write);
        return *transaction_;
    }

    std::int64_t execute(const std::string& sql, const std::vector<Value>& params) {
        std::int64_t affected = 0;
        connection_->run(transaction(), sql, params, &affected);
        return affected;
    }

    void commit() {
        checkNotDropped();
        if (!transaction_) return;
        transaction_->commit();
        transaction_.reset();
    }

private:
    // A batch whose work was lost must not look committed afterwards.
    void checkNotDropped() const {
        if (dropped_) throw Error("the connection closed before the batch was committed; its changes were dropped");
    }

    std::shared_ptr<detail::ConnectionImpl> connection_;
    std::optional<fb::Transaction> transaction_;
    bool dropped_ = false;
};

Batch::Batch(Connection& connection) : impl_(std::make_unique<Impl>(connection.impl())) {}

Batch::~Batch() = default;

std::int64_t Batch::execute(std::string_view sql, const std::vector<Value>& params) {
    return impl_->execute(std::string(sql), params);
}

void Batch::commit() { impl_->commit(); }

}  // namespace mxbook::db
