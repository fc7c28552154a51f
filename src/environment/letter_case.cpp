#include <filesystem>
#include <system_error>

#include "mxbook/environment.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

namespace fs = std::filesystem;

// "host:path" and "host/port:path" name a server; a local path has no colon.
bool isServerLocation(const std::string& location) { return location.find(':') != std::string::npos; }

// The entry of `folder` whose name matches `name` without regard to case.
bool findEntry(const fs::path& folder, const std::string& name, fs::path& found) {
    std::error_code error;
    const std::string wanted = upperCase(name);
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        if (upperCase(it->path().filename().string()) == wanted) {
            found = it->path();
            return true;
        }
    }
    return false;
}

}  // namespace

std::string matchLetterCase(const std::string& location) {
    if (location.empty() || isServerLocation(location)) return location;
    const fs::path given(location);
    std::error_code error;
    if (fs::exists(given, error)) return location;
    fs::path matched = given.root_path();
    bool matching = true;
    for (const fs::path& part : given.relative_path()) {
        fs::path next = matched / part;
        if (matching && !fs::exists(next, error))
            matching = findEntry(matched.empty() ? "." : matched, part.string(), next);
        if (!matching) next = matched / part;
        matched = next;
    }
    return matched.string();
}

}  // namespace mxbook
