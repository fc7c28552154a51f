// The library's exported functions by name, each with the kinds and names of
// its arguments and a line on what it returns, so that `mxbook call` can
// reach any of them from the shell.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

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

struct Parameter {
    std::string name;  // as the usage line shows it: LIMIT_COLUMN
    std::string kind;  // how it is written: "integer", "a row: @TABLE:ID or @sql:SELECT ..."
};

struct Callable {
    std::string name;
    std::vector<Parameter> parameters;  // its text arguments; the connection is implicit
    std::string returns;                // one line: what it returns, what its column arguments mean
    // Raises UsageError naming the first malformed argument, left to right,
    // before anything touches the database. Wants as many as `parameters`.
    std::function<void(const std::vector<std::string>&)> check;
    // Calls the function on checked arguments; its result as text.
    std::function<std::string(CallContext&, const std::vector<std::string>&)> invoke;
    bool returnsNothing = false;

    // "FunOstatChas ROW LIMIT_COLUMN USED_COLUMN"
    std::string signature() const;
    // The signature, what it returns, and how each argument is written.
    std::string help() const;
};

const std::vector<Callable>& callables();
// Calls it after checking the number and form of the arguments (UsageError
// with `usage` otherwise); its result as text.
std::string invokeChecked(const Callable& callable, CallContext& context, const std::vector<std::string>& arguments,
                          const std::string& usage);
const Callable* findCallable(std::string_view name);

// A date written YYYY-MM-DD, and nothing else; nullopt when it is not one.
std::optional<Date> isoDate(std::string_view text);

}  // namespace mxbook::cli
