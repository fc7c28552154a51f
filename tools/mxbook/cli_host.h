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

    std::string executablePath() override;
    std::string documentsFolder() override;
    std::string desktopFolder() override;
    std::string sharedDocumentsFolder() override;

private:
    std::optional<std::string> root_;
};

}  // namespace mxbook::cli
