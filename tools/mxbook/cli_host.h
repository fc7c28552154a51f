// The host of the mxbook program: a console host whose folders may all be
// one self-contained folder (--root), with a pinned date and fixed answers.
#pragma once

#include <optional>
#include <string>

#include "mxbook/host.h"

namespace mxbook::cli {

class CliHost : public ConsoleHost {
public:
    // The settings file, the values file and the databases all below `root`:
    // the program's folder and the documents folders are `root` itself.
    void setRoot(std::string root) { root_ = std::move(root); }
    const std::optional<std::string>& root() const { return root_; }

    // --db: the main database is there for this run, whatever the values file says.
    void setMainDatabase(std::string location) { mainDatabase_ = std::move(location); }

    std::string executablePath() override;
    std::string documentsFolder() override;
    std::string desktopFolder() override;
    std::string sharedDocumentsFolder() override;
    std::optional<std::string> databaseLocation(std::string_view section) override;

private:
    std::optional<std::string> root_;
    std::optional<std::string> mainDatabase_;
};

// The folder a run keeps its files in: the one --root names, or for a demo
// without it a fresh temporary folder; none otherwise.
class RunFolder {
public:
    // Makes the folder (--root's, with its parents, when missing) and points
    // `host` at it. A folder that cannot be made or written raises
    // mxbook::Error in one line naming it and the reason. `temporary`
    // (--temp) asks for a fresh folder removed when the run ends; it does not
    // go with --root.
    RunFolder(CliHost& host, const std::string& root, bool demo, bool temporary);
    // A fresh folder is removed when the run did not succeed, or when asked.
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;

    // The folder as the user wrote it (a fresh folder's full path); empty for none.
    const std::string& shown() const { return shown_; }
    bool fresh() const { return fresh_; }
    bool removedAtEnd() const { return fresh_ && temporary_; }
    // The command finished: a fresh folder stays unless asked to go.
    void succeeded() { succeeded_ = true; }

private:
    std::string shown_, path_;
    bool fresh_ = false, temporary_ = false, succeeded_ = false;
};

}  // namespace mxbook::cli
