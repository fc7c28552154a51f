#include "mxbook/host.h"

namespace mxbook {

namespace {

std::shared_ptr<Host>& installed() {
    static std::shared_ptr<Host> current = std::make_shared<ConsoleHost>();
    return current;
}

}  // namespace

Host& host() { return *installed(); }

std::shared_ptr<Host> installHost(std::shared_ptr<Host> next) {
    if (!next) next = std::make_shared<ConsoleHost>();
    std::swap(installed(), next);
    return next;
}

}  // namespace mxbook
