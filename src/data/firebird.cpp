#include "firebird.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace mxbook::db {

Error::Error(const std::string& message, int sqlCode, std::string statement, std::vector<long> codes)
    : mxbook::Error(statement.empty() ? message : message + "\nStatement: " + statement),
      message_(message),
      sqlCode_(sqlCode),
      statement_(std::move(statement)),
      codes_(std::move(codes)) {}

bool Error::hasCode(long code) const noexcept {
    for (long c : codes_)
        if (c == code) return true;
    return false;
}

ConflictError::ConflictError(const std::string& table, const std::string& key, std::string statement)
    : Error("the row of " + table + " with " + key +
                " was changed or deleted by another user since it was read; nothing of this batch was stored",
            0, std::move(statement)),
      table_(table),
      key_(key) {}

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
    const ISC_STATUS* vector = status->getErrors();
    const int sqlCode = static_cast<int>(isc_sqlcode(vector));
    // The vector is a list of (kind, value) items, a counted string taking
    // one slot more; each isc_arg_gds value is an error code.
    std::vector<long> codes;
    for (const ISC_STATUS* at = vector; *at != isc_arg_end; at += at[0] == isc_arg_cstring ? 3 : 2)
        if (at[0] == isc_arg_gds) codes.push_back(static_cast<long>(at[1]));
    throw Error(message, sqlCode, std::string(statement), std::move(codes));
}

namespace {

// A reader sees the database as it was at one moment, so the rows of one
// query agree with each other. A writer works on one moment too (its reads
// see its own changes), and waits up to half a minute for a row another
// user holds instead of failing at once; a row that another user changed
// after that moment fails with an update conflict rather than being
// overwritten.
constexpr unsigned char readTpb[] = {isc_tpb_version3, isc_tpb_read, isc_tpb_concurrency};
constexpr unsigned char writeTpb[] = {isc_tpb_version3, isc_tpb_write,        isc_tpb_concurrency,
                                      isc_tpb_wait,     isc_tpb_lock_timeout, 1,
                                      30};

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

