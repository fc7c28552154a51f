// The user's folders as the XDG user-dirs convention names them.
#include <sstream>

#include "mxbook/host.h"

namespace mxbook {

std::string xdgUserDir(const std::string& userDirsText, const std::string& name, const std::string& home) {
    const std::string key = "XDG_" + name + "_DIR=";
    std::istringstream lines(userDirsText);
    for (std::string line; std::getline(lines, line);) {
        const auto start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line.compare(start, key.size(), key) != 0) continue;
        std::string value = line.substr(start + key.size());
        if (!value.empty() && value.back() == '\r') value.pop_back();
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
        std::string unescaped;
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i] == '\\' && i + 1 < value.size()) ++i;
            unescaped += value[i];
        }
        if (unescaped.rfind("$HOME", 0) == 0) unescaped = home + unescaped.substr(5);
        while (unescaped.size() > 1 && unescaped.back() == '/') unescaped.pop_back();
        return unescaped;
    }
    return {};
}

}  // namespace mxbook
