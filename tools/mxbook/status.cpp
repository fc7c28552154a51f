// What is left of each unit's limits, computed by the library's
// remaining-life functions; the units nearest a limit first.
#include <algorithm>
#include <cmath>
#include <optional>

#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::cli {

namespace {

enum class Measure { hours, count, calendar };

struct Limit {
    Measure measure;
    int limitColumn;
    int usedColumn;  // for calendar limits, the date the life counts from
};

// A kind of unit as the status shows it: where its name, serial number and
// location stand, and its limits. A general component's limits count hours
// or landings as its column 24 says.
struct StatusKind {
    const char* table;
    const char* label;
    int nameColumn;
    int serialColumn;
    const char* locationColumn;
    std::vector<Limit> limits;
    bool countsAsColumn24Says = false;
};

const StatusKind statusKinds[] = {
    {"DVIGATEL",
     "двигатель",
     2,
     3,
     "GDE_STOIT",
     {{Measure::hours, 18, 11}, {Measure::hours, 16, 12}, {Measure::count, 38, 31}, {Measure::calendar, 19, 5}}},
    {"REDUCTOR", "редуктор", 2, 3, "GDE_STOIT", {{Measure::hours, 18, 11}, {Measure::hours, 16, 12}}},
    {"VSU",
     "ВСУ",
     1,
     2,
     "MESTO_USTANOVKI",
     {{Measure::hours, 24, 16}, {Measure::hours, 46, 48}, {Measure::hours, 22, 14}}},
    {"AGREGAT",
     "агрегат",
     2,
     4,
     "GDE_STOIT",
     {{Measure::hours, 12, 17}, {Measure::hours, 14, 18}, {Measure::calendar, 13, 6}},
     true},
    {"VTULKA_NV",
     "втулка НВ",
     2,
     4,
     "GDE_STOIT",
     {{Measure::hours, 12, 17}, {Measure::hours, 14, 18}, {Measure::calendar, 13, 6}}},
    {"LOPAST",
     "лопасть",
     3,
     4,
     "GDE_STOIT",
     {{Measure::hours, 10, 9}, {Measure::hours, 30, 26}, {Measure::calendar, 11, 6}}},
    {"HVOSTOVOY_VINT",
     "хвостовой винт",
     2,
     3,
     "GDE_STOIT",
     {{Measure::hours, 19, 29}, {Measure::hours, 21, 30}, {Measure::calendar, 20, 4}}},
    {"LEBEDKA", "лебёдка", 2, 3, "GDE_STOIT", {{Measure::hours, 19, 27}, {Measure::hours, 21, 28}}},
    {"PODVESKA", "подвеска", 2, 3, "GDE_STOIT", {{Measure::hours, 19, 27}, {Measure::hours, 21, 28}}},
    {"SHLANG", "шланг", 3, 6, "GDE_STOIT", {{Measure::hours, 5, 12}}},
    {"ZCU", "ЗЦУ", 24, 6, "GDE_STOIT", {{Measure::hours, 4, 11}, {Measure::hours, 20, 22}}},
    {"VOZDUSHNY_VINT", "воздушный винт", 2, 3, "GDE_STOIT", {{Measure::hours, 21, 29}, {Measure::hours, 23, 30}}},
};

// What is left as a share of the limit, and the text to show.
struct Left {
    std::string text;
    double share;
};

// The digits at `at`, as a number.
int leadingNumber(const std::string& text, std::size_t at) {
    const auto end = text.find_first_not_of("0123456789", at);
    return parseInt(text.substr(at, end == std::string::npos ? std::string::npos : end - at));
}

// Months of a calendar duration "1г. 8м." (or "0").
int months(const std::string& text) {
    if (text == "0") return 0;
    return leadingNumber(text, 0) * 12 + leadingNumber(text, text.find(' ') + 1);
}

std::optional<Left> leftOf(db::DataSet& row, const Limit& limit, bool countsLandings) {
    const db::Field limitField = row.field(limit.limitColumn);
    if (limitField.isNull() || row.field(limit.usedColumn).isNull()) return std::nullopt;
    if (limit.measure == Measure::calendar) {
        const std::string text = FunOstatLet(row, limit.limitColumn, limit.usedColumn);
        const std::string stored = limitField.asText();
        const auto point = stored.find('.');
        const int total = parseInt(stored.substr(0, point)) * 12 +
                          parseInt(characters(std::string_view(stored).substr(point + 1), 0, 2));
        return Left{text, total > 0 ? static_cast<double>(months(text)) / total : 0.0};
    }
    const double total = limitField.asInt();
    if (total <= 0) return std::nullopt;
    if (limit.measure == Measure::count || countsLandings) {
        const std::string text = FunOstatInteger(row, limit.limitColumn, limit.usedColumn);
        return Left{text, parseInt(text) / total};
    }
    const std::string text = FunOstatChas(row, limit.limitColumn, limit.usedColumn);
    const double minutes = static_cast<double>(operating_time::parseHoursUpToColon(text).count());
    return Left{text, minutes / (total * 60)};
}

std::string marker(double share) {
    if (share <= 0) return "!!";
    return share < 0.1 ? "!" : "";
}

struct UnitLine {
    std::vector<std::string> cells;
    double tightest;
};

void addUnits(db::Connection& connection, const StatusKind& kind, const std::string& tail,
              std::vector<UnitLine>& lines) {
    db::DataSet units(connection, std::string("select * from ") + kind.table + " where " + kind.locationColumn + " = " +
                                      db::quoted(tail) + " order by ID");
    for (units.open(); !units.eof(); units.next()) {
        const bool landings = kind.countsAsColumn24Says && !units.field(24).isNull() && units.field(24).asInt() == 1;
        std::vector<std::string> lefts;
        double tightest = 1.0;
        for (const Limit& limit : kind.limits) {
            const auto left = leftOf(units, limit, landings);
            lefts.push_back(left ? left->text : "");
            if (left) tightest = std::min(tightest, left->share);
        }
        lefts.resize(3);
        const bool onEngine = kind.countsAsColumn24Says && !units.field(28).isNull() && units.field(28).asInt() == 1;
        const std::string where = onEngine ? "двигатель " + units.field(29).asText() : tail;
        lines.push_back(
            {{tail, kind.label, units.field(kind.nameColumn).asText(), units.field(kind.serialColumn).asText(), where,
              landings ? "посадки" : "часы", units.field(kind.limits[0].usedColumn).asText(), lefts[0], lefts[1],
              lefts[2], std::to_string(static_cast<int>(std::lround(tightest * 100))) + "%", marker(tightest)},
             tightest});
    }
}

}  // namespace

int runStatus(std::ostream& out, const Options& options, const std::optional<std::string>& tail) {
    db::Connection connection;
    openMainDatabase(connection, options);
    std::vector<std::string> tails;
    db::DataSet aircraft(connection, "select BORTOVOI_NOMER from REESTR" +
                                         (tail ? " where BORTOVOI_NOMER = " + db::quoted(*tail) : std::string()) +
                                         " order by BORTOVOI_NOMER");
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) tails.push_back(aircraft.field(0).asText());
    if (tail && tails.empty()) throw Error("no aircraft " + *tail + " in the register");

    Listing listing({{"Tail"},
                     {"Kind"},
                     {"Unit"},
                     {"Serial"},
                     {"On"},
                     {"Counts"},
                     {"Booked", true},
                     {"Left", true},
                     {"Left to overhaul", true},
                     {"Left, other", true},
                     {"Tightest", true},
                     {""}});
    for (const std::string& each : tails) {
        std::vector<UnitLine> lines;
        for (const StatusKind& kind : statusKinds) addUnits(connection, kind, each, lines);
        std::stable_sort(lines.begin(), lines.end(),
                         [](const UnitLine& a, const UnitLine& b) { return a.tightest < b.tightest; });
        for (auto& line : lines) listing.add(std::move(line.cells));
    }
    listing.print(out, options.format);
    return 0;
}

}  // namespace mxbook::cli
