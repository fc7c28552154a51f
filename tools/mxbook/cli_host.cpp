#include "cli_host.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "mxbook/error.h"

namespace mxbook::cli {

namespace fs = std::filesystem;

std::string CliHost::executablePath() { return root_ ? *root_ + "/mxbook" : ConsoleHost::executablePath(); }
std::string CliHost::documentsFolder() { return root_ ? *root_ : ConsoleHost::documentsFolder(); }
std::string CliHost::desktopFolder() { return root_ ? *root_ : ConsoleHost::desktopFolder(); }
std::string CliHost::sharedDocumentsFolder() { return root_ ? *root_ : ConsoleHost::sharedDocumentsFolder(); }

namespace {

std::string freshFolder() {
    std::error_code error;
    const fs::path temporary = fs::temp_directory_path(error);
    std::string pattern = ((error ? fs::path("/tmp") : temporary) / "mxbook-demo-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw Error("cannot create a temporary folder for the demo in " + fs::path(pattern).parent_path().string() +
                    ": " + std::strerror(errno));
    return pattern;
}

// The folder as an absolute path spelt as the user wrote it: no link is
// followed and no letter's case changed, so that the databases are those
// under exactly this folder.
std::string absoluteFolder(const std::string& root) {
    std::string path = fs::absolute(fs::path(root)).lexically_normal().string();
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

}  // namespace

RunFolder::RunFolder(CliHost& host, const std::string& root, bool demo, bool temporary) {
    if (!root.empty()) {
        if (temporary)
            throw Error("--temp asks for a fresh demo folder removed at the end; it does not go with --root");
        const std::string trouble = "cannot use " + root + " as the root folder (--root): ";
        std::error_code error;
        fs::create_directories(root, error);
        if (error) throw Error(trouble + error.message());
        if (!fs::is_directory(root, error)) throw Error(trouble + "it is not a folder");
        if (access(root.c_str(), W_OK | X_OK) != 0) throw Error(trouble + std::strerror(errno));
        shown_ = root;
        path_ = absoluteFolder(root);
    } else if (demo) {
        path_ = shown_ = freshFolder();
        fresh_ = true;
        temporary_ = temporary;
    } else {
        if (temporary) throw Error("--temp is for a demo in a fresh folder");
        return;
    }
    host.setRoot(path_);
}

RunFolder::~RunFolder() {
    if (!fresh_ || (succeeded_ && !temporary_)) return;
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::optional<std::string> CliHost::databaseLocation(std::string_view section) {
    return section == "BASE" ? mainDatabase_ : std::nullopt;
}

}  // namespace mxbook::cli
