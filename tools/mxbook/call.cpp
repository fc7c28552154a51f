#include <algorithm>

#include "commands.h"
#include "mxbook/error.h"
#include "registry.h"

namespace mxbook::cli {

std::vector<std::string> callableFunctions() {
    std::vector<std::string> names;
    for (const Callable& each : callables()) names.push_back(each.name);
    return names;
}

int runCall(std::ostream& out, const Options& options, const std::string& function,
            const std::vector<std::string>& arguments) {
    const auto& all = callables();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Callable& c) { return c.name == function; });
    if (found == all.end()) throw Error("no library function " + function + " (mxbook call --list names them)");
    if (arguments.size() != found->parameters.size()) {
        std::string usage = found->name;
        for (const std::string& parameter : found->parameters) usage += " <" + parameter + ">";
        throw Error(function + " takes " + std::to_string(found->parameters.size()) + " arguments: " + usage);
    }
    CallContext context(options);
    const std::string result = found->invoke(context, arguments);
    const std::vector<std::string> changes = context.storeChangedRows();
    const std::vector<std::string> keys = context.keys();
    if (options.format == Format::json) {
        out << "{\"function\": " << jsonString(function);
        if (!found->returnsNothing) out << ", \"result\": " << jsonString(result);
        for (const std::string& key : keys) out << ", \"key\": " << jsonString(key);
        out << ", \"changed\": [";
        for (std::size_t i = 0; i < changes.size(); ++i) out << (i ? ", " : "") << jsonString(changes[i]);
        out << "]}\n";
        return 0;
    }
    if (!found->returnsNothing) out << result << "\n";
    for (const std::string& key : keys) out << key << "\n";
    for (const std::string& change : changes) out << change << "\n";
    return 0;
}

}  // namespace mxbook::cli
