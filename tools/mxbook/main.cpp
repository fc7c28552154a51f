// mxbook: the command-line face of the library.
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "cli_host.h"
#include "commands.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "registry.h"

namespace {

using namespace mxbook;
using namespace mxbook::cli;

// Exit codes: the README promises them.
constexpr int wrongArgument = 1, failure = 2, interrupted = 130;

// Ctrl-C ends the program at once, whatever statement the database is
// running: one line, and the database left as an ended process leaves it.
void onInterrupt(int) {
    constexpr char message[] = "mxbook: interrupted\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message, sizeof message - 1);
    _exit(interrupted);
}

void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
}

std::size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// "no command 'stauts'; did you mean status?", the suggestion only when one
// command is a slip of two letters away.
std::string noCommand(const CLI::App& app, const std::string& word) {
    std::string text = "no command '" + word + "'";
    std::size_t best = 3;
    std::string closest;
    for (const CLI::App* command : app.get_subcommands({})) {
        const std::size_t distance = editDistance(word, command->get_name());
        if (distance < best) best = distance, closest = command->get_name();
    }
    return closest.empty() ? text : text + "; did you mean " + closest + "?";
}

int wrongUsage(const std::string& message, const std::string& usage) {
    std::cerr << "mxbook: " << message << "\n" << usage;
    return wrongArgument;
}

// A command line CLI11 refused: help and the version as asked, else the
// reason with the usage of the command it got to.
int refused(CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (app.get_subcommands().empty() && !left.empty() && !left.front().starts_with("-"))
        return wrongUsage(noCommand(app, left.front()), app.help());
    if (error.get_exit_code() == 0) return app.exit(error);
    return wrongUsage(error.what(), app.help());
}

}  // namespace

int main(int argc, char** argv) {
    catchInterrupts();
    CLI::App app{"mxbook: the bookkeeping of aircraft technical maintenance", "mxbook"};
    app.set_version_flag("--version", MXBOOK_VERSION);
    app.require_subcommand(1);
    app.fallthrough();  // the global options may follow the command too
    std::string root, format = "table", today, answer, database;
    app.add_option("--root", root, "keep the settings, the values file and the databases in this folder");
    app.add_option("--format", format, "table, csv or json")->check(CLI::IsMember({"table", "csv", "json"}));
    app.add_option("--db", database, "the main database's location instead of the settled one (a path or host:path)");
    auto* todayOption = app.add_option(
        "--today", today,
        "the date the library sees as today, YYYY-MM-DD: it moves the calendar only, counters are as booked");
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
    std::string sort = "urgency";
    status->add_option("--sort", sort, "urgency (the tightest units first) or aircraft (by aircraft and kind of unit)")
        ->check(CLI::IsMember({"urgency", "aircraft"}));
    auto* oil = app.add_subcommand("oil", "each oil-filled unit's oil time since the change and what is left");
    oil->add_option("tail", tail, "one aircraft's tail number");
    auto* move =
        app.add_subcommand("move", "move a unit or an engine on or off an aircraft, its counters brought to the date");
    move->require_subcommand(1);
    auto* moveComponent =
        move->add_subcommand("component", "a component: off the aircraft it is on, to TO, on it when TO is an aircraft");
    MoveRequest moveRequest;
    moveComponent->add_option("unit", moveRequest.unit, "@AGREGAT:ID or the component's factory number")->required();
    moveComponent->add_option("to", moveRequest.to, "a tail number, or Склад, Ремфонд, Ремонт, Рекламация")->required();
    moveComponent->add_option("date", moveRequest.date, "the date of the move, YYYY-MM-DD")->required();
    moveComponent->add_option("--engine", moveRequest.engine,
                              "onto the engine of this factory number at TO (TO an aircraft); without it a "
                              "component on an engine comes off it");
    moveComponent->add_flag("--dry-run", moveRequest.dryRun, "show what would change, store nothing");
    auto* moveEngine = move->add_subcommand(
        "engine", "an engine with the units on it: off the aircraft it is on, to TO, on it when TO is an aircraft");
    MoveEngineRequest engineRequest;
    moveEngine->add_option("serial", engineRequest.engine, "@DVIGATEL:ID or the engine's factory number")->required();
    moveEngine->add_option("to", engineRequest.to, "a tail number, or Склад, Ремфонд, Ремонт, Рекламация")->required();
    moveEngine->add_option("date", engineRequest.date, "the date of the move, YYYY-MM-DD")->required();
    moveEngine->add_option("--place", engineRequest.place,
                           "the engine's place on the aircraft TO: 0, 1 or 2 (0 when not given)");
    moveEngine->add_flag("--dry-run", engineRequest.dryRun, "show what would change, store nothing");
    auto* report = app.add_subcommand("report", "fill a unit's report card and print it");
    std::string card;
    std::vector<std::string> cardArguments;
    bool cardList = false;
    bool cardForms = false;
    report->add_flag("--list", cardList, "each card, with the arguments it takes");
    report->add_flag("--forms", cardForms, "the register card: the aircraft's state and maintenance forms too");
    report->add_option("card", card, "component, hub, sling, winch, apu-unit, zcu, apu, propeller, gearbox, tail-rotor, "
                                     "engine, register, or the builder's name");
    report->add_option("arguments", cardArguments,
                       "the unit: an ID, TYPE SERIAL LOCATION, or TYPE TAIL for an aircraft (see --list)");
    auto* call = app.add_subcommand("call", "call one library function by name and print what it returns");
    std::string function;
    std::vector<std::string> arguments;
    bool list = false, functionHelp = false;
    call->add_flag("--list", list, "each function that can be called, with its arguments");
    // Help of its own, so that `call FUNCTION --help` tells of FUNCTION.
    call->set_help_flag();
    call->add_flag("-h,--help", functionHelp, "this help, or with FUNCTION what it returns and takes");
    call->add_option("function", function, "the function's name, as FunOstatChas");
    call->add_option("arguments", arguments,
                     "its arguments: @TABLE:ID or @sql:SELECT ... for a row, texts, integers, dates");
    call->allow_extras(false);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return refused(app, error);
    }

    auto host = std::make_shared<CliHost>();
    ScopedHost installed(host);
    try {
        Options options;
        options.format = format == "csv" ? Format::csv : format == "json" ? Format::json : Format::table;
        if (!database.empty()) options.database = database;
        if (*todayOption) {
            const std::optional<Date> date = isoDate(today);
            if (!date) throw UsageError("--today: '" + today + "' is not a date written YYYY-MM-DD");
            host->setToday(*date);
        }
        if (!answer.empty())
            host->setQuestionPolicy(answer == "yes" ? ConsoleHost::QuestionPolicy::alwaysYes
                                                    : ConsoleHost::QuestionPolicy::alwaysNo);
        options.repair = repair;
        RunFolder folder(*host, root, demo->parsed(), temp);
        if (options.database) host->setMainDatabase(*options.database);
        if (*init) return runInit(std::cout, options);
        if (*demo) return runDemo(std::cout, options, folder);
        if (*status)
            return runStatus(std::cout, options, tail.empty() ? std::nullopt : std::optional(tail),
                             sort == "aircraft" ? StatusOrder::aircraft : StatusOrder::urgency);
        if (*oil) return runOil(std::cout, options, tail.empty() ? std::nullopt : std::optional(tail));
        if (*moveComponent) return runMoveComponent(std::cout, options, moveRequest);
        if (*moveEngine) return runMoveEngine(std::cout, options, engineRequest);
        if (*report) {
            if (cardList) return runReportList(std::cout, options.format);
            if (card.empty()) throw UsageError("report wants a card's name (mxbook report --list names them)");
            // A card's option goes to it among its arguments, as the card names it.
            if (cardForms) cardArguments.push_back("--forms");
            return runReport(std::cout, options, card, cardArguments);
        }
        if (list) return runCallList(std::cout, options.format);
        if (functionHelp && !function.empty()) return runCallHelp(std::cout, function);
        if (functionHelp) {
            std::cout << app.help();
            return 0;
        }
        if (function.empty()) return wrongUsage("call wants a function's name", app.help());
        return runCall(std::cout, options, function, arguments);
    } catch (const UsageError& error) {
        return wrongUsage(error.what(), error.usage().empty() ? app.help() : error.usage());
    } catch (const std::exception& error) {
        // One line, whatever lines the database's message has.
        std::string text = error.what();
        for (std::size_t at; (at = text.find('\n')) != std::string::npos;) text.replace(at, 1, "; ");
        std::cerr << "mxbook: " << text << "\n";
        return failure;
    }
}
