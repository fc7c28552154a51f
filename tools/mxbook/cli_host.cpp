#include "cli_host.h"

namespace mxbook::cli {

std::string CliHost::executablePath() { return root_ ? *root_ + "/mxbook" : ConsoleHost::executablePath(); }
std::string CliHost::documentsFolder() { return root_ ? *root_ : ConsoleHost::documentsFolder(); }
std::string CliHost::desktopFolder() { return root_ ? *root_ : ConsoleHost::desktopFolder(); }
std::string CliHost::sharedDocumentsFolder() { return root_ ? *root_ : ConsoleHost::sharedDocumentsFolder(); }

}  // namespace mxbook::cli
