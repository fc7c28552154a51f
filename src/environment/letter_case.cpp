// A local location as the values file keeps it (upper-cased) turned into a
// path on a file system that minds the letter case. The path as written wins
// whenever it exists; a match without regard to case is the fallback, and
// more than one such match is refused rather than guessed.
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/text.h"
#include "settings.h"

namespace mxbook {

namespace environment {

namespace {

namespace fs = std::filesystem;

// More candidates than this at one level are not followed: the location is ambiguous anyway.
constexpr std::size_t mostCandidates = 64;

bool existsOnDisk(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool sameName(const std::string& a, const std::string& b) { return a == b || upperCase(a) == upperCase(b); }

// The parts of a path below its root, without the empty part a trailing "/" leaves.
std::vector<std::string> partsOf(const fs::path& path) {
    std::vector<std::string> parts;
    for (const fs::path& part : path.relative_path())
        if (!part.empty()) parts.push_back(part.string());
    return parts;
}

// The entries of `folder` named `name` without regard to case: the exact name first when it exists.
void addMatches(const fs::path& folder, const std::string& name, std::vector<fs::path>& found) {
    const fs::path exact = folder / name;
    if (existsOnDisk(exact) && std::find(found.begin(), found.end(), exact) == found.end()) found.push_back(exact);
    if (name == "." || name == "..") return;
    std::error_code error;
    for (fs::directory_iterator it(folder.empty() ? fs::path(".") : folder, error), end; !error && it != end;
         it.increment(error)) {
        const std::string entry = it->path().filename().string();
        const fs::path path = folder / entry;
        if (entry != name && sameName(entry, name) && std::find(found.begin(), found.end(), path) == found.end())
            found.push_back(path);
    }
}

[[noreturn]] void refuse(const std::string& location, const std::vector<fs::path>& candidates) {
    std::string names;
    for (const fs::path& each : candidates) names += (names.empty() ? "" : ", ") + each.string();
    throw Error("the location " + location + " does not exist as written, and more than one path matches it " +
                "without regard to letter case (" + names + "); write the one meant exactly");
}

}  // namespace

bool isServerLocation(const std::string& location) { return location.find(':') != std::string::npos; }

std::string resolveLocalPath(const std::string& location, const std::string& exactFolder) {
    if (location.empty() || isServerLocation(location)) return location;
    const fs::path given(location);
    fs::path base = given.root_path();
    std::vector<std::string> rest = partsOf(given);

    // Below the folder the host names, that folder is taken as it is: only
    // what lies beneath it is matched without regard to case.
    bool anchored = false;
    if (!exactFolder.empty()) {
        const fs::path folder(exactFolder);
        const std::vector<std::string> folderParts = partsOf(folder);
        anchored = folder.root_path() == given.root_path() && folderParts.size() <= rest.size() &&
                   std::equal(folderParts.begin(), folderParts.end(), rest.begin(), sameName);
        if (anchored) {
            base = folder.root_path();
            for (const std::string& part : folderParts) base /= part;
            rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(folderParts.size()));
        }
    }
    if (!anchored && existsOnDisk(given)) return location;

    fs::path exact = base;
    for (const std::string& part : rest) exact /= part;
    if (existsOnDisk(exact)) return exact.string();

    std::vector<fs::path> candidates{base};
    std::size_t matched = 0;
    for (; matched < rest.size(); ++matched) {
        std::vector<fs::path> next;
        for (const fs::path& candidate : candidates) addMatches(candidate, rest[matched], next);
        if (next.empty()) break;
        if (next.size() > mostCandidates) refuse(location, next);
        candidates = std::move(next);
    }
    if (candidates.size() > 1) refuse(location, candidates);
    // What does not exist yet stays as given.
    fs::path found = candidates.front();
    for (std::size_t i = matched; i < rest.size(); ++i) found /= rest[i];
    return found.string();
}

}  // namespace environment

std::string matchLetterCase(const std::string& location) { return environment::resolveLocalPath(location, {}); }

}  // namespace mxbook
