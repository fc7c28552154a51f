// The library's exported functions by name, each with the kinds of its
// arguments, so that `mxbook call` can reach any of them from the shell.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "mxbook/data/data_set.h"

namespace mxbook::cli {

// What a call needs besides its text arguments: the main database, opened
// when a function first asks for it, and the rows of its data-set arguments.
class CallContext {
public:
    explicit CallContext(const Options& options) : options_(options) {}

    db::Connection& connection();
    // "@TABLE:ID" (that row, all columns) or "@sql:SELECT ..." (its first row).
    db::DataSet& dataSet(const std::string& argument);
    // A key argument: its one character, given back after the call.
    char32_t& key(const std::string& argument);

    // After the call: the rows it changed are posted and stored, and their
    // changed columns given as "cN=value".
    std::vector<std::string> storeChangedRows();
    std::vector<std::string> keys() const;

private:
    struct Row {
        std::unique_ptr<db::DataSet> dataSet;
        std::vector<std::string> before;
    };
    const Options& options_;
    std::unique_ptr<db::Connection> connection_;
    std::vector<Row> rows_;
    std::vector<std::unique_ptr<char32_t>> keys_;
};

struct Callable {
    std::string name;
    std::vector<std::string> parameters;  // the kinds of its text arguments, for the usage line
    std::function<std::string(CallContext&, const std::vector<std::string>&)> invoke;
    bool returnsNothing = false;
};

const std::vector<Callable>& callables();

}  // namespace mxbook::cli
