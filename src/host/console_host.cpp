#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

constexpr Window consoleWindow{1};

std::string oneLine(const std::string& text) {
    std::string line = replaceAll(replaceAll(text, "\r\n", " "), "\n", " ");
    return replaceAll(line, "\r", " ");
}

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    if (const passwd* entry = getpwuid(getuid()); entry && entry->pw_dir) return entry->pw_dir;
    return {};
}

std::string userDir(const std::string& name, const std::string& fallback) {
    const std::string home = homeFolder();
    std::filesystem::path config;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg) config = xdg;
    else if (!home.empty()) config = std::filesystem::path(home) / ".config";
    if (!config.empty()) {
        std::ifstream file(config / "user-dirs.dirs");
        std::stringstream text;
        text << file.rdbuf();
        if (std::string dir = xdgUserDir(text.str(), name, home); !dir.empty()) return dir;
    }
    return home.empty() ? std::string() : home + "/" + fallback;
}

bool readsYes(const std::string& reply) {
    const std::string answer = trim(reply);
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "да" || answer == "Да" || answer == "д";
}

std::tm localNow() {
    const std::time_t seconds = std::time(nullptr);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return parts;
}

}  // namespace

Answer ConsoleHost::messageBox(Window, const std::string& text, const std::string& caption, unsigned flags) {
    const std::string line = caption + ": " + oneLine(text);
    if ((flags & box::buttonsMask) != box::yesNo) {
        std::cerr << line << std::endl;
        return Answer::ok;
    }
    bool yes = policy_ == QuestionPolicy::alwaysYes;
    if (policy_ == QuestionPolicy::ask && isatty(STDIN_FILENO)) {
        std::cerr << line << " [y/n] " << std::flush;
        std::string reply;
        yes = std::getline(std::cin, reply) && readsYes(reply);
    } else {
        std::cerr << line << (yes ? " [yes]" : " [no]") << std::endl;
    }
    return yes ? Answer::yes : Answer::no;
}

Window ConsoleHost::foregroundWindow() { return consoleWindow; }

std::string ConsoleHost::windowTitle(Window window) {
    if (window != consoleWindow) return {};
    if (title_) return *title_;
    return std::filesystem::path(executablePath()).filename().string();
}

std::string ConsoleHost::executablePath() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

std::string ConsoleHost::documentsFolder() { return userDir("DOCUMENTS", "Documents"); }

std::string ConsoleHost::desktopFolder() { return userDir("DESKTOP", "Desktop"); }

// Linux has no documents folder shared by all users; the application's shared
// folder lives with other programs' state.
std::string ConsoleHost::sharedDocumentsFolder() { return "/var/lib"; }

Date ConsoleHost::today() {
    if (today_) return *today_;
    const std::tm parts = localNow();
    return Date::fromYmd(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

Timestamp ConsoleHost::now() {
    const std::tm parts = localNow();
    const Time time = Time::fromHms(parts.tm_hour, parts.tm_min, parts.tm_sec < 60 ? parts.tm_sec : 59);
    return Timestamp{today(), time};
}

FormatSettings ConsoleHost::formatSettings() { return settings_; }

}  // namespace mxbook
