// A report card as the library fills it: the builder run on the main
// database, then its report table read back and printed.
#include <algorithm>

#include "commands.h"
#include "mxbook/report.h"
#include "registry.h"

namespace mxbook::cli {

namespace {

std::string usageOf(const ReportCard& card) {
    return "usage: mxbook report " + std::string(card.command) + " " + std::string(card.arguments) + "\n" +
           "the card of " + std::string(card.about) + " (" + std::string(card.function) + ", " +
           std::string(card.table) + ")\n";
}

// A card has many columns and few rows: each row a block of column and value.
void printBlocks(std::ostream& out, const FilledReport& filled) {
    for (std::size_t row = 0; row < filled.rows.size(); ++row) {
        if (row) out << "\n";
        Listing listing({{"#", true}, {"Column"}, {"Value"}});
        for (std::size_t column = 0; column < filled.columns.size(); ++column) {
            const auto& cell = filled.rows[row][column];
            listing.add({Cell(std::to_string(column), static_cast<long long>(column)), filled.columns[column],
                         cell.value_or("")});
        }
        listing.print(out, Format::table);
    }
}

void printJson(std::ostream& out, const FilledReport& filled) {
    out << "[";
    for (std::size_t row = 0; row < filled.rows.size(); ++row) {
        out << (row ? ",\n " : "") << "{";
        for (std::size_t column = 0; column < filled.columns.size(); ++column) {
            const auto& cell = filled.rows[row][column];
            out << (column ? ", " : "") << jsonString(filled.columns[column]) << ": "
                << (cell ? jsonString(*cell) : "null");
        }
        out << "}";
    }
    out << "]\n";
}

// The option a card takes in place of its builder's last argument, as its
// arguments name it ("[--forms]"); none for most cards.
std::optional<std::string> switchOf(const ReportCard& card) {
    const std::size_t open = card.arguments.find("[--");
    if (open == std::string_view::npos) return std::nullopt;
    return std::string(card.arguments.substr(open + 1, card.arguments.find(']', open) - open - 1));
}

}  // namespace

int runReport(std::ostream& out, const Options& options, const std::string& name,
              const std::vector<std::string>& arguments) {
    const ReportCard* card = findReportCard(name);
    if (!card) throw UsageError("no report card " + name + " (mxbook report --list names them)");
    const Callable* builder = findCallable(card->function);
    // A card's option comes among the arguments as given; the builder takes
    // it as its last argument, 1 when given, else 0.
    std::vector<std::string> given = arguments;
    const auto option =
        std::find_if(given.begin(), given.end(), [](const std::string& argument) { return argument.starts_with("--"); });
    const std::optional<std::string> cardSwitch = switchOf(*card);
    if (option != given.end() && *option != cardSwitch)
        throw UsageError("the " + std::string(card->command) + " card takes no " + *option, usageOf(*card));
    const bool switched = option != given.end();
    if (switched) given.erase(option);
    const std::size_t count = given.size();
    if (cardSwitch) given.push_back(switched ? "1" : "0");
    if (given.size() != builder->parameters.size())
        throw UsageError("the " + std::string(card->command) + " card takes " + std::string(card->arguments) + ", " +
                             std::to_string(count) + " given",
                         usageOf(*card));
    CallContext context(options);
    invokeChecked(*builder, context, given, usageOf(*card));
    const FilledReport filled = readReport(context.connection(), card->table);
    if (filled.rows.empty()) {
        std::string asked;
        for (const std::string& argument : arguments) asked += " " + argument;
        throw Error("nothing found for the card of " + std::string(card->about) + ":" + asked);
    }
    if (options.format == Format::json) {
        printJson(out, filled);
    } else if (options.format == Format::csv) {
        std::vector<Column> columns;
        for (const std::string& column : filled.columns) columns.push_back({column});
        Listing listing(std::move(columns));
        for (const auto& row : filled.rows) {
            std::vector<Cell> cells;
            for (const auto& cell : row) cells.emplace_back(cell.value_or(""));
            listing.add(std::move(cells));
        }
        listing.print(out, Format::csv);
    } else {
        printBlocks(out, filled);
    }
    return 0;
}

int runReportList(std::ostream& out, Format format) {
    Listing listing({{"card"}, {"arguments"}, {"function"}, {"table"}, {"unit"}});
    for (const ReportCard& card : reportCards())
        listing.add({std::string(card.command), std::string(card.arguments), std::string(card.function),
                     std::string(card.table), std::string(card.about)});
    listing.print(out, format);
    return 0;
}

}  // namespace mxbook::cli
