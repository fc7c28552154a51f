// What the host application provides: message boxes and questions, its
// windows, its executable, the user's folders, the clock and the user's
// regional settings. The application installs one Host at start-up; until it
// does, a ConsoleHost serves.
//
// Threads: the library keeps no state but the installed host, so several
// threads may call it at once, each on a connection of its own (a
// connection, and every data set opened on it, belongs to one thread at a
// time). Install the host before starting threads. Installing one later is
// safe, but host() hands out a reference, not ownership: a replaced host
// must outlive the calls already using it, so keep what installHost returns
// until they are done (ScopedHost keeps it for its scope). A host reached
// from several threads must answer them all at once.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "mxbook/date.h"
#include "mxbook/format.h"

namespace mxbook {

// Flags of a message box, as the host's dialogs know them.
namespace box {
constexpr unsigned ok = 0x00;
constexpr unsigned yesNo = 0x04;
constexpr unsigned iconError = 0x10;
constexpr unsigned iconQuestion = 0x20;
constexpr unsigned iconWarning = 0x30;
constexpr unsigned buttonsMask = 0x0F;
constexpr unsigned iconMask = 0xF0;
}  // namespace box

// The button that closed a message box.
enum class Answer { ok = 1, cancel = 2, yes = 6, no = 7 };

// A window of the host application; 0 is no window.
struct Window {
    std::uint64_t id = 0;

    explicit operator bool() const { return id != 0; }
    friend bool operator==(Window, Window) = default;
};

class Host {
public:
    virtual ~Host() = default;

    // A modal box owned by `owner`, with the buttons and icon of `flags`.
    virtual Answer messageBox(Window owner, const std::string& text, const std::string& caption, unsigned flags) = 0;
    virtual Window foregroundWindow() = 0;
    virtual std::string windowTitle(Window window) = 0;

    // Full path of the running executable.
    virtual std::string executablePath() = 0;
    // The user's documents and desktop folders and the documents folder that
    // all users share, without a trailing '/'; empty when unknown.
    virtual std::string documentsFolder() = 0;
    virtual std::string desktopFolder() = 0;
    virtual std::string sharedDocumentsFolder() = 0;

    virtual Date today() = 0;
    virtual Timestamp now() = 0;
    virtual FormatSettings formatSettings() = 0;

    // A database location the host chose for this run, by the database's
    // section of the values file ("BASE", "PTD", "REPORT", "PICTURE"): the
    // location functions return it and the connect functions open it, and
    // the values file is neither read nor written for that database. None by
    // default.
    virtual std::optional<std::string> databaseLocation(std::string_view section) {
        (void)section;
        return std::nullopt;
    }
};

// The installed host, valid while it stays installed or its installer
// keeps it.
Host& host();
// Installs `next` (nullptr: the console default) and returns the one it
// replaces; callable while other threads call host().
std::shared_ptr<Host> installHost(std::shared_ptr<Host> next);

// Installs a host for the lifetime of the guard, then puts the previous one back.
class ScopedHost {
public:
    explicit ScopedHost(std::shared_ptr<Host> next) : previous_(installHost(std::move(next))) {}
    ~ScopedHost() { installHost(std::move(previous_)); }
    ScopedHost(const ScopedHost&) = delete;
    ScopedHost& operator=(const ScopedHost&) = delete;

private:
    std::shared_ptr<Host> previous_;
};

// A console program's host: messages go to standard error as one line,
// "caption: text"; questions are answered by a policy; the program's one
// "window" is the terminal. Its setters are not synchronised: set it up
// before other threads reach it; its answers are safe from any thread.
class ConsoleHost : public Host {
public:
    enum class QuestionPolicy {
        ask,         // read y/n from the terminal; "no" when there is none
        alwaysYes,
        alwaysNo,
    };

    Answer messageBox(Window owner, const std::string& text, const std::string& caption, unsigned flags) override;
    Window foregroundWindow() override;
    std::string windowTitle(Window window) override;
    std::string executablePath() override;
    std::string documentsFolder() override;
    std::string desktopFolder() override;
    std::string sharedDocumentsFolder() override;
    Date today() override;
    Timestamp now() override;
    FormatSettings formatSettings() override;

    void setQuestionPolicy(QuestionPolicy policy) { policy_ = policy; }
    // Pins the date the library sees as today (and the day of now()).
    void setToday(std::optional<Date> today) { today_ = today; }
    void setFormatSettings(FormatSettings settings) { settings_ = std::move(settings); }
    // Title of the console window; the executable's name when not set.
    void setWindowTitle(std::string title) { title_ = std::move(title); }

private:
    QuestionPolicy policy_ = QuestionPolicy::ask;
    std::optional<Date> today_;
    FormatSettings settings_;
    std::optional<std::string> title_;
};

// The documents ("DOCUMENTS") or desktop ("DESKTOP") folder named in an XDG
// user-dirs file (text of ~/.config/user-dirs.dirs), with $HOME expanded;
// empty when the file does not name it.
std::string xdgUserDir(const std::string& userDirsText, const std::string& name, const std::string& home);

}  // namespace mxbook
