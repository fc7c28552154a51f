#include "firebird.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace mxbook::db {

Error::Error(const std::string& message, int sqlCode, std::string statement)
    : mxbook::Error(statement.empty() ? message : message + "\nStatement: " + statement),
      message_(message),
      sqlCode_(sqlCode),
      statement_(std::move(statement)) {}

}  // namespace mxbook::db

namespace mxbook::db::fb {

namespace {

// The embedded engine keeps its lock files in a shared folder that an
// ordinary user may not write; give such a user a private folder of its own
// unless the environment names one. A folder of that name that is not the
// user's own (or is a link) is not used: the engine's own error follows. One
// of the user's own that others may read is closed to them first.
void prepareLockFolder() {
    if (geteuid() == 0 || std::getenv("FIREBIRD_LOCK")) return;
    const std::string folder =
        (std::filesystem::temp_directory_path() / ("mxbook-firebird-" + std::to_string(geteuid()))).string();
    mkdir(folder.c_str(), 0700);
    struct stat info {};
    if (lstat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode) || info.st_uid != geteuid()) return;
    if ((info.st_mode & 077) != 0 && chmod(folder.c_str(), 0700) != 0) return;
    setenv("FIREBIRD_LOCK", folder.c_str(), 0);
}

}  // namespace

IMaster* master() {
    static IMaster* const instance = [] {
        prepareLockFolder();
        return fb_get_master_interface();
    }();
    return instance;
}

IUtil* util() { return master()->getUtilInterface(); }

IProvider* provider() {
    static IProvider* const instance = master()->getDispatcher();
    return instance;
}

void raise(const FbException& failure, std::string_view statement) {
    IStatus* status = failure.getStatus();
    char text[2048];
    util()->formatStatus(text, sizeof text, status);
    std::string message = text;
    while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
    const int sqlCode = static_cast<int>(isc_sqlcode(status->getErrors()));
    throw Error(message, sqlCode, std::string(statement));
}

namespace {

// Read committed, seeing the latest committed versions; writers wait up to
// half a minute for a row another user holds instead of failing at once.
constexpr unsigned char readTpb[] = {isc_tpb_version3, isc_tpb_read, isc_tpb_read_committed, isc_tpb_rec_version};
constexpr unsigned char writeTpb[] = {isc_tpb_version3,      isc_tpb_write, isc_tpb_read_committed,
                                      isc_tpb_rec_version,   isc_tpb_wait,  isc_tpb_lock_timeout,
                                      1,                     30};

}  // namespace

Transaction::Transaction(IAttachment* attachment, Kind kind) {
    Status status;
    const bool read = kind == Kind::read;
    handle_ = guarded({}, [&] {
        return attachment->startTransaction(&status, read ? sizeof readTpb : sizeof writeTpb,
                                            read ? readTpb : writeTpb);
    });
}

Transaction::~Transaction() { rollback(); }

void Transaction::commit() {
    if (!handle_) return;
    Status status;
    guarded({}, [&] { handle_->commit(&status); });
    handle_ = nullptr;  // commit released it
}

void Transaction::rollback() noexcept {
    if (!handle_) return;
    endQuietly(handle_, &ITransaction::rollback<CheckStatusWrapper>);
    handle_ = nullptr;
}

}  // namespace mxbook::db::fb

