// The Firebird client's OO API as the rest of the data layer uses it: one
// entry point, one way to turn a failed call into db::Error, and owning
// handles for the reference-counted interfaces.
#pragma once

#include <firebird/Interface.h>

#include <memory>
#include <string_view>

#include "mxbook/data/error.h"

namespace mxbook::db::fb {

using namespace Firebird;

IMaster* master();
IUtil* util();
IProvider* provider();

// A status vector for a few calls; each failing call throws FbException.
class Status : public ThrowStatusWrapper {
public:
    Status() : ThrowStatusWrapper(master()->getStatus()) {}
    ~Status() { dispose(); }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;
};

// Firebird's text for a failure, as db::Error.
[[noreturn]] void raise(const FbException& failure, std::string_view statement = {});

// Runs `call`, turning a Firebird failure into db::Error naming `statement`.
template <typename Call>
decltype(auto) guarded(std::string_view statement, Call&& call) {
    try {
        return call();
    } catch (const FbException& failure) {
        raise(failure, statement);
    }
}

// Ends a handle with `end` (detach, close, free, rollback), which releases it;
// when ending fails, releases it anyway. Never throws: for destructors and
// clean-up paths, where there is nobody left to tell.
template <typename Handle, typename End>
void endQuietly(Handle* handle, End end) noexcept {
    CheckStatusWrapper status(master()->getStatus());
    (handle->*end)(&status);
    if (status.getState() & IStatus::STATE_ERRORS) handle->release();
    status.dispose();
}

struct Releaser {
    void operator()(IReferenceCounted* object) const { object->release(); }
};
template <typename T>
using Ref = std::unique_ptr<T, Releaser>;

// A transaction that rolls back unless committed.
class Transaction {
public:
    enum class Kind { read, write };

    Transaction(IAttachment* attachment, Kind kind);
    ~Transaction();
    Transaction(Transaction&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
    Transaction& operator=(Transaction&&) = delete;

    ITransaction* get() const { return handle_; }
    void commit();
    void rollback() noexcept;

private:
    ITransaction* handle_ = nullptr;
};

}  // namespace mxbook::db::fb
