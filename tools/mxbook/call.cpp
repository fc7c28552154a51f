#include <algorithm>

#include "commands.h"
#include "mxbook/error.h"
#include "registry.h"

namespace mxbook::cli {

namespace {

const Callable& callableNamed(const std::string& function) {
    const Callable* found = findCallable(function);
    if (!found) throw Error("no library function " + function + " (mxbook call --list names them)");
    return *found;
}

}  // namespace

int runCallList(std::ostream& out, Format format) {
    if (format == Format::table) {
        // One signature a line, for grep.
        for (const Callable& each : callables()) out << each.signature() << "\n";
        return 0;
    }
    Listing listing({{"function"}, {"arguments"}, {"returns"}});
    for (const Callable& each : callables()) {
        std::string arguments;
        for (const Parameter& parameter : each.parameters) arguments += (arguments.empty() ? "" : " ") + parameter.name;
        listing.add({each.name, arguments, each.returns});
    }
    listing.print(out, format);
    return 0;
}

int runCallHelp(std::ostream& out, const std::string& function) {
    out << callableNamed(function).help();
    return 0;
}

std::string invokeChecked(const Callable& callable, CallContext& context, const std::vector<std::string>& arguments,
                          const std::string& usage) {
    const std::size_t wanted = callable.parameters.size();
    if (arguments.size() != wanted)
        throw UsageError(callable.name + " takes " + std::to_string(wanted) +
                             (wanted == 1 ? " argument, " : " arguments, ") + std::to_string(arguments.size()) +
                             " given",
                         usage);
    try {
        callable.check(arguments);
    } catch (const UsageError& wrong) {
        throw UsageError(wrong.what(), usage);
    }
    return callable.invoke(context, arguments);
}

int runCall(std::ostream& out, const Options& options, const std::string& function,
            const std::vector<std::string>& arguments) {
    const Callable& callable = callableNamed(function);
    CallContext context(options);
    const std::string result = invokeChecked(callable, context, arguments, callable.help());
    const std::vector<std::string> changes = context.storeChangedRows();
    const std::vector<std::string> keys = context.keys();
    if (options.format == Format::json) {
        out << "{\"function\": " << jsonString(function);
        if (!callable.returnsNothing) out << ", \"result\": " << jsonString(result);
        for (const std::string& key : keys) out << ", \"key\": " << jsonString(key);
        out << ", \"changed\": [";
        for (std::size_t i = 0; i < changes.size(); ++i) out << (i ? ", " : "") << jsonString(changes[i]);
        out << "]}\n";
        return 0;
    }
    if (!callable.returnsNothing) out << result << "\n";
    for (const std::string& key : keys) out << key << "\n";
    for (const std::string& change : changes) out << change << "\n";
    return 0;
}

}  // namespace mxbook::cli
