// mxbook: the command-line face of the library.
#include <stdlib.h>
#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <memory>

#include "cli_host.h"
#include "commands.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/format.h"

namespace {

using namespace mxbook;
using namespace mxbook::cli;

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"mxbook: the bookkeeping of aircraft technical maintenance"};
    app.require_subcommand(1);
    app.fallthrough();  // the global options may follow the command too
    std::string root, format = "table", today, answer, database;
    app.add_option("--root", root, "keep the settings, the values file and the databases in this folder");
    app.add_option("--format", format, "table, csv or json")->check(CLI::IsMember({"table", "csv", "json"}));
    app.add_option("--db", database, "the main database's location instead of the settled one (a path or host:path)");
    app.add_option("--today", today, "the date the library sees as today, YYYY-MM-DD");
    app.add_option("--answer", answer, "the answer to every Yes/No question")->check(CLI::IsMember({"yes", "no"}));

    auto* init =
        app.add_subcommand("init", "settle the four database locations and create the databases that are missing");
    bool repair = false, temp = false;
    init->add_flag("--repair", repair, "complete an incomplete database, or rebuild one that cannot be opened");
    auto* demo =
        app.add_subcommand("demo", "init in a fresh folder (or --root), fill the main database with a demo fleet");
    demo->add_flag("--temp", temp, "remove the fresh folder at the end");
    auto* status = app.add_subcommand("status", "each aircraft's units and what is left of their limits");
    std::string tail;
    status->add_option("tail", tail, "one aircraft's tail number");
    auto* call = app.add_subcommand("call", "call one library function by name and print what it returns");
    std::string function;
    std::vector<std::string> arguments;
    bool list = false;
    call->add_flag("--list", list, "name the functions that can be called");
    call->add_option("function", function, "the function's name, as FunOstatChas");
    call->add_option("arguments", arguments,
                     "its arguments: @TABLE:ID or @sql:SELECT ... for a row, texts, integers, dates");
    call->allow_extras(false);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }

    auto host = std::make_shared<CliHost>();
    ScopedHost installed(host);
    try {
        Options options;
        options.format = format == "csv" ? Format::csv : format == "json" ? Format::json : Format::table;
        if (!database.empty()) options.database = database;
        if (!today.empty()) {
            FormatSettings iso = host->formatSettings();
            iso.shortDateFormat = "yyyy-mm-dd";
            host->setToday(parseShortDate(today, iso));
        }
        if (!answer.empty())
            host->setQuestionPolicy(answer == "yes" ? ConsoleHost::QuestionPolicy::alwaysYes
                                                    : ConsoleHost::QuestionPolicy::alwaysNo);
        options.repair = repair;
        RunFolder folder(*host, root, demo->parsed(), temp);
        if (options.database) setRunLocation(schema::Database::main, *options.database);
        if (*init) return runInit(std::cout, options);
        if (*demo) return runDemo(std::cout, options, folder);
        if (*status) return runStatus(std::cout, options, tail.empty() ? std::nullopt : std::optional(tail));
        if (list) {
            for (const std::string& name : callableFunctions()) std::cout << name << "\n";
            return 0;
        }
        if (function.empty()) {
            std::cerr << call->help();
            return 1;
        }
        return runCall(std::cout, options, function, arguments);
    } catch (const std::exception& error) {
        // One line, whatever lines the database's message has.
        std::string text = error.what();
        for (std::size_t at; (at = text.find('\n')) != std::string::npos;) text.replace(at, 1, "; ");
        std::cerr << "mxbook: " << text << "\n";
        return 2;
    }
}
