#include "mxbook/host.h"

#include <mutex>

namespace mxbook {

namespace {

// The pointer is read and replaced under the mutex, so installing a host
// while other threads reach it is no data race; keeping a replaced host
// alive is the installer's part (see host.h). A mutex rather than
// std::atomic<std::shared_ptr>: libstdc++ 12 releases that one's internal
// lock without ordering the read before a later swap.
struct Installed {
    std::mutex mutex;
    std::shared_ptr<Host> host = std::make_shared<ConsoleHost>();
};

Installed& installed() {
    static Installed current;
    return current;
}

}  // namespace

Host& host() {
    Installed& current = installed();
    const std::lock_guard lock(current.mutex);
    return *current.host;
}

std::shared_ptr<Host> installHost(std::shared_ptr<Host> next) {
    if (!next) next = std::make_shared<ConsoleHost>();
    Installed& current = installed();
    const std::lock_guard lock(current.mutex);
    current.host.swap(next);
    return next;  // released, if at all, by the caller, outside the lock
}

}  // namespace mxbook
