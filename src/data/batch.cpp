#include "mxbook/data/batch.h"

#include <string>

#include "connection_impl.h"
#include "mxbook/data/connection.h"
#include "mxbook/data/error.h"

namespace mxbook::db {

Batch::Batch(Connection& connection) : connection_(&connection) {}

Batch::~Batch() = default;

UnitOfWork& Batch::work() {
    if (work_ && !work_->isOpen()) {
        // The connection closed under it: the work is lost and must not look stored.
        work_.reset();
        dropped_ = true;
    }
    if (dropped_) throw Error("the connection closed before the batch was committed; its changes were dropped");
    if (!work_) work_.emplace(*connection_);
    return *work_;
}

std::int64_t Batch::execute(std::string_view sql, const std::vector<Value>& params) {
    work();
    const auto& impl = connection_->impl();
    std::int64_t affected = 0;
    impl->inWork([&](fb::ITransaction* transaction) {
        return impl->run(transaction, std::string(sql), params, &affected);
    });
    return affected;
}

void Batch::commit() {
    if (!work_ && !dropped_) return;
    UnitOfWork& unit = work();
    struct Ended {
        std::optional<UnitOfWork>& work;
        ~Ended() { work.reset(); }
    } ended{work_};
    unit.commit();
}

void Batch::rollback() noexcept {
    work_.reset();
    dropped_ = false;
}

}  // namespace mxbook::db
