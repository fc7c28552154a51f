#include "mxbook/data/unit_of_work.h"

#include "connection_impl.h"
#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"

namespace mxbook::db {

UnitOfWork::UnitOfWork(Connection& connection) : UnitOfWork(connection.impl()) {}

UnitOfWork::UnitOfWork(const DataSet& dataSet) : UnitOfWork(dataSet.connectionImpl()) {}

UnitOfWork::UnitOfWork(std::shared_ptr<detail::ConnectionImpl> connection) : connection_(std::move(connection)) {
    if (!connection_) throw Error("the connection was moved away");
    std::tie(work_, outermost_) = connection_->beginWork();
}

UnitOfWork::~UnitOfWork() { rollback(); }

bool UnitOfWork::isOpen() const { return !ended_ && !work_->dropped && !work_->ended(); }

void UnitOfWork::commit() {
    if (ended_) throw Error("the unit of work has ended already");
    if (work_->dropped) {
        ended_ = true;
        throw Error("the connection closed before the unit of work was committed; its changes were dropped");
    }
    if (!outermost_) {
        // The outer unit stores it; a failure here is the outer unit's too.
        ended_ = true;
        if (!work_->failure.empty())
            throw Error("the unit of work failed earlier and stores nothing (" + work_->failure + ")");
        return;
    }
    ended_ = true;
    connection_->endWork(true);
}

void UnitOfWork::rollback() noexcept {
    if (ended_) return;
    ended_ = true;
    if (work_->dropped || work_->ended()) return;
    if (!outermost_) {
        if (work_->failure.empty()) work_->failure = "a unit of work inside it was rolled back";
        return;
    }
    try {
        connection_->endWork(false);
    } catch (...) {
        // Dropping raises only to say that nothing was stored, which is what was asked.
    }
}

}  // namespace mxbook::db
