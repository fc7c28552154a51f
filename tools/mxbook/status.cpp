// What is left of each unit's limits, computed by the library's
// remaining-life functions; the units nearest a limit (or furthest past it)
// first, or by aircraft and kind of unit.
#include <algorithm>
#include <cmath>
#include <optional>

#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::cli {

namespace {

enum class Measure { hours, count, calendar };
// Where a limit's remainder is shown: the assigned life, the life between
// overhauls (PPR), or among the unit's other limits.
enum class Role { life, overhaul, other };

struct Limit {
    Measure measure;
    int limitColumn;
    int usedColumn;    // for calendar limits, the date the life counts from
    Role role;
    const char* name;  // in the "Tightest limit" column and before an other limit's remainder
};

constexpr Limit life(int limitColumn, int usedColumn) {
    return {Measure::hours, limitColumn, usedColumn, Role::life, "ресурс"};
}
constexpr Limit overhaul(int limitColumn, int usedColumn) {
    return {Measure::hours, limitColumn, usedColumn, Role::overhaul, "ППР"};
}
constexpr Limit calendar(int limitColumn, int sinceColumn) {
    return {Measure::calendar, limitColumn, sinceColumn, Role::other, "срок"};
}
constexpr Limit other(Measure measure, int limitColumn, int usedColumn, const char* name) {
    return {measure, limitColumn, usedColumn, Role::other, name};
}

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
    // The aircraft's reading at which the unit comes off is planned for it.
    bool removalPlanned = true;
};

const StatusKind statusKinds[] = {
    {"DVIGATEL",
     "двигатель",
     2,
     3,
     "GDE_STOIT",
     {life(18, 11), overhaul(16, 12), other(Measure::count, 38, 31, "циклы"), calendar(19, 5)}},
    {"REDUCTOR", "редуктор", 2, 3, "GDE_STOIT", {life(18, 11), overhaul(16, 12)}},
    {"VSU",
     "ВСУ",
     1,
     2,
     "MESTO_USTANOVKI",
     {life(24, 16), other(Measure::hours, 46, 48, "сумма"), other(Measure::hours, 22, 14, "генератор")},
     false,
     false},
    {"AGREGAT", "агрегат", 2, 4, "GDE_STOIT", {life(12, 17), overhaul(14, 18), calendar(13, 6)}, true},
    {"VTULKA_NV", "втулка НВ", 2, 4, "GDE_STOIT", {life(12, 17), overhaul(14, 18), calendar(13, 6)}},
    {"LOPAST", "лопасть", 3, 4, "GDE_STOIT", {life(10, 9), overhaul(30, 26), calendar(11, 6)}},
    {"HVOSTOVOY_VINT", "хвостовой винт", 2, 3, "GDE_STOIT", {life(19, 29), overhaul(21, 30), calendar(20, 4)}},
    {"LEBEDKA", "лебёдка", 2, 3, "GDE_STOIT", {life(19, 27), overhaul(21, 28)}},
    {"PODVESKA", "подвеска", 2, 3, "GDE_STOIT", {life(19, 27), overhaul(21, 28)}, false, false},
    {"SHLANG", "шланг", 3, 6, "GDE_STOIT", {life(5, 12)}},
    {"ZCU", "ЗЦУ", 24, 6, "GDE_STOIT", {life(4, 11), overhaul(20, 22)}},
    {"VOZDUSHNY_VINT", "воздушный винт", 2, 3, "GDE_STOIT", {life(21, 29), overhaul(23, 30)}},
};

struct Aircraft {
    std::string tail;
    std::string type;
};

// What is left of one limit: the text to show (with the count for counted
// limits), and the share of the limit, below zero when it is overdue.
struct Left {
    Cell cell;
    double share;
};

int monthNumber(Date date) { return date.year() * 12 + date.month(); }

// The library's signed remainders, so that a unit past its limit shows by
// how much, its derived operating time included; the texts of what is left
// are the remaining-life functions' own.
std::optional<Left> leftOf(db::DataSet& row, const Limit& limit, bool countsLandings) {
    if (limit.measure == Measure::calendar) {
        const std::optional<int> left = remainingMonths(row, limit.limitColumn, limit.usedColumn);
        if (!left) return std::nullopt;
        // Months count as the library counts them: by month, the days aside.
        const int total = *left + monthNumber(host().today()) - monthNumber(row.field(limit.usedColumn).asDate());
        return Left{*left < 0 ? Cell(minusSign + std::to_string(-*left) + " мес.")
                              : Cell(FunOstatLet(row, limit.limitColumn, limit.usedColumn)),
                    total > 0 ? static_cast<double>(*left) / total : 0.0};
    }
    const db::Field limitField = row.field(limit.limitColumn);
    if (limitField.isNull() || limitField.asInt() <= 0) return std::nullopt;
    const long long total = limitField.asInt();
    if (limit.measure == Measure::count || countsLandings) {
        const std::optional<long long> left = remainingCount(row, limit.limitColumn, limit.usedColumn);
        if (!left) return std::nullopt;
        const std::string text = *left < 0 ? minusSign + std::to_string(-*left) : std::to_string(*left);
        return Left{Cell(text, *left), static_cast<double>(*left) / static_cast<double>(total)};
    }
    const std::optional<Minutes> left = remainingMinutes(row, limit.limitColumn, limit.usedColumn);
    if (!left) return std::nullopt;
    return Left{*left < Minutes() ? Cell(minusSign + operating_time::format(Minutes() - *left))
                                  : Cell(operating_time::formatOrDoubleZero(*left)),
                static_cast<double>(left->count()) / static_cast<double>(total * 60)};
}

// An other limit's remainder names the limit and says its unit: "циклы 120",
// "срок 1г. 5м.", "сумма 35:00 ч".
std::string otherText(const Limit& limit, const std::string& left, bool countsLandings) {
    const bool hours = limit.measure == Measure::hours && !countsLandings;
    return std::string(limit.name) + " " + left + (hours ? " ч" : "");
}

// A booked count is a number to a program; booked hours stay text.
Cell countCell(std::string text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return Cell(std::move(text));
    const long long count = parseInt64(text);
    return Cell(std::move(text), count);
}

// The aircraft's hours (or landings) at which the unit comes off; empty for
// a unit on an engine, whose removal follows the engine's, and for one whose
// governing limit or used value is not booked.
Cell removalReading(db::Connection& connection, db::DataSet& unit, const StatusKind& kind, const Aircraft& aircraft,
                    bool onEngine, bool landings) {
    if (!kind.removalPlanned || onEngine) return Cell("");
    std::string reading;
    try {
        reading = plannedRemovalReading(connection, unit, kind.table, aircraft.type, aircraft.tail);
    } catch (const ConversionError&) {
        return Cell("");  // a null the plan cannot use; a malformed value failed the remainders before
    }
    return landings ? countCell(std::move(reading)) : Cell(std::move(reading));
}

struct UnitLine {
    std::vector<Cell> cells;
    double tightest;
};

void addUnits(db::Connection& connection, const StatusKind& kind, const Aircraft& aircraft,
              std::vector<UnitLine>& lines) {
    const std::string& tail = aircraft.tail;
    db::DataSet units(connection,
                      std::string("select * from ") + kind.table + " where " + kind.locationColumn + " = :tail order by ID",
                      db::DataSet::Traversal::forwardOnly);
    units.setParam("tail", tail);
    for (units.open(); !units.eof(); units.next()) {
        const bool landings = kind.countsAsColumn24Says && !units.field(24).isNull() && units.field(24).asInt() == 1;
        Cell lifeLeft(""), overhaulLeft("");
        std::string othersLeft;
        double tightest = 1.0;
        const char* tightestLimit = nullptr;
        for (const Limit& limit : kind.limits) {
            const auto left = leftOf(units, limit, landings);
            if (!left) continue;
            if (!tightestLimit || left->share < tightest) {
                tightest = left->share;
                tightestLimit = limit.name;
            }
            switch (limit.role) {
            case Role::life: lifeLeft = left->cell; break;
            case Role::overhaul: overhaulLeft = left->cell; break;
            case Role::other:
                othersLeft += (othersLeft.empty() ? "" : "; ") + otherText(limit, left->cell.text, landings);
                break;
            }
        }
        const bool onEngine = kind.countsAsColumn24Says && !units.field(28).isNull() && units.field(28).asInt() == 1;
        const std::string where = onEngine ? "двигатель " + units.field(29).asText() : tail;
        const std::string booked = units.field(kind.limits[0].usedColumn).asText();
        const long long percent = std::lround(std::max(tightest, 0.0) * 100);
        lines.push_back({{tail, kind.label, units.field(kind.nameColumn).asText(),
                          units.field(kind.serialColumn).asText(), where, landings ? "посадки" : "часы",
                          landings ? countCell(booked) : Cell(booked), lifeLeft, overhaulLeft, othersLeft,
                          removalReading(connection, units, kind, aircraft, onEngine, landings),
                          Cell(std::to_string(percent) + "%", percent), tightestLimit ? tightestLimit : "",
                          alertMark(tightest)},
                         tightest});
    }
}

// Edits (insertions, deletions, substitutions of a byte) that turn one text
// into the other.
std::size_t editDistance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (from[i - 1] == to[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[to.size()];
}

// The refusal of a tail number the register lacks, offering the nearest
// ones, letter case aside, when any is a typo or two away.
std::string noSuchAircraft(const std::string& tail, const std::vector<std::string>& tails) {
    constexpr std::size_t closeEnough = 2;
    constexpr std::size_t offered = 5;
    const std::string wanted = upperCase(tail);
    std::size_t nearest = closeEnough + 1;
    std::vector<std::string> near;
    for (const std::string& each : tails) {
        const std::size_t distance = editDistance(wanted, upperCase(each));
        if (distance < nearest) {
            nearest = distance;
            near.clear();
        }
        if (distance == nearest && near.size() < offered) near.push_back(each);
    }
    const std::string refusal = "no aircraft '" + tail + "'";
    if (near.empty()) return refusal + " in the register";
    std::string names;
    for (const std::string& each : near) names += (names.empty() ? "" : ", ") + each;
    return refusal + "; did you mean " + names + "?";
}

}  // namespace

int runStatus(std::ostream& out, const Options& options, const std::optional<std::string>& tail,
              StatusOrder order) {
    db::Connection connection;
    openMainDatabase(connection, options);
    std::vector<std::string> tails;
    std::vector<Aircraft> fleet;
    // A tail entered twice in the register is shown once, with its first entry's type.
    db::DataSet aircraft(connection, "select BORTOVOI_NOMER, TIP_VS from REESTR order by BORTOVOI_NOMER, ID");
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) {
        if (!tails.empty() && tails.back() == aircraft.field(0).asText()) continue;
        tails.push_back(aircraft.field(0).asText());
        fleet.push_back({tails.back(), aircraft.field(1).asText()});
    }
    if (tail) {
        if (std::find(tails.begin(), tails.end(), *tail) == tails.end()) throw Error(noSuchAircraft(*tail, tails));
        std::erase_if(fleet, [&](const Aircraft& each) { return each.tail != *tail; });
    }

    Listing listing({{"Tail"},
                     {"Kind"},
                     {"Unit"},
                     {"Serial"},
                     {"On"},
                     {"Counts"},
                     {"Booked", true},
                     {"Left", true},
                     {"Left to overhaul", true},
                     {"Left, other"},
                     {"Comes off at", true},
                     {"Tightest", true},
                     {"Tightest limit"},
                     {"Alert"}});
    std::vector<UnitLine> lines;
    for (const Aircraft& each : fleet)
        for (const StatusKind& kind : statusKinds) addUnits(connection, kind, each, lines);
    // Lines come by aircraft and kind; urgency puts the tightest of them all first.
    if (order == StatusOrder::urgency)
        std::stable_sort(lines.begin(), lines.end(),
                         [](const UnitLine& a, const UnitLine& b) { return a.tightest < b.tightest; });
    for (auto& line : lines) listing.add(std::move(line.cells));
    listing.print(out, options.format);
    return 0;
}

}  // namespace mxbook::cli
