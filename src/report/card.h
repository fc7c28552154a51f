// A detailed report card described as data: which unit rows it takes, the
// report table it fills, and for each report column where its value comes
// from. The frame (report_frame.cpp) runs any description the same way.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

namespace mxbook::report {

// A report column's value: text, or none to leave the column NULL.
using Cell = std::optional<std::string>;

// A first-overhaul column choice X/Y: X while the unit has had no overhaul
// and X is set, Y otherwise.
struct Choice {
    Choice(int column) : first(column), regular(column) {}  // no choice: always this column
    Choice(int firstColumn, int regularColumn) : first(firstColumn), regular(regularColumn) {}
    int first;
    int regular;
};

struct CardKind;

// One unit row being written up, with what the card's rules ask of it.
class Card {
public:
    Card(db::Connection& connection, db::DataSet& row, const CardKind& kind,
         const std::vector<std::string>& arguments);

    db::Connection& connection;
    db::DataSet& row;
    // The builder's text arguments (type, place, location), in its order.
    const std::vector<std::string>& arguments;

    bool isSet(int column) const { return !row.field(column).isNull(); }
    std::string text(int column) const { return row.field(column).asText(); }
    // A set integer column holding `value`; NULL never equals.
    bool equals(int column, int value) const;
    // The location is one of the off-aircraft words exactly.
    bool inStorage() const { return inStorage_; }
    int overhauls() const;
    int choose(Choice choice) const;
    // The first row that `sql` finds with ":key" the value of `keyColumn`,
    // each column as text; none when it finds nothing. Read once per card,
    // however many columns take from it.
    const std::optional<std::vector<Cell>>& lookUp(const std::string& sql, int keyColumn);

private:
    const CardKind& kind_;
    bool inStorage_ = false;
    std::vector<std::pair<std::string, std::optional<std::vector<Cell>>>> lookups_;
};

using Condition = std::function<bool(const Card&)>;

// Where one report column's value comes from. A fill that gives no value
// leaves what an earlier fill of the same column wrote.
struct Fill {
    int column;
    std::function<Cell(Card&)> value;
};

enum class Rows { first, every };

struct CardKind {
    std::string_view source;                      // the unit rows: "select * from ...", ":name" parameters
    std::string_view table;                       // the report table
    std::optional<int> locationColumn = {};       // tail number or off-aircraft word
    std::optional<int> overhaulCountColumn = {};  // for the X/Y choices
    Rows rows = Rows::first;
    std::vector<Fill> fills = {};
};

// Date patterns of the cards; `shortForm` is the host's short date format.
inline constexpr std::string_view fullYear = "dd.mm.yyyy";
inline constexpr std::string_view twoDigitYear = "dd.mm.yy";
inline constexpr std::string_view shortForm = "ddddd";

// A stored calendar limit for display: "05.06" → "05г. 06м.", "12" → "12м.".
std::string calendarLimitText(std::string_view limit);

// The fills the cards are made of.
namespace fill {

// The source column as text: a date in the short date format, an integer in decimal.
Fill copy(int column, int source);
Fill copyWhen(int column, int source, Condition condition);
// `r1←c0, r2←c1, ...`: each pair a report column and its source.
std::vector<Fill> copies(std::initializer_list<std::pair<int, int>> pairs);
Fill date(int column, int source, std::string_view pattern);
// "-" in place of an empty date.
Fill dateOrDash(int column, int source, std::string_view pattern);
Fill limitText(int column, int source);
Fill fixedText(int column, std::string text);
// A computed value, written as returned (empty text too); only when every
// column in `needs` is set.
// A computation that gives none leaves the column as it was.
Fill computed(int column, std::vector<int> needs, std::function<Cell(Card&)> value);
Fill computedWhen(int column, Condition condition, std::function<Cell(Card&)> value);
// What is left of a limit, or the calendar time run since a date, each only
// when its columns are set; a Choice's column is the one chosen.
Fill hoursLeft(int column, Choice limit, int used);
Fill countLeft(int column, Choice limit, int used);
Fill calendarLeft(int column, Choice limit, int start);
Fill calendarRun(int column, int start);
// The operating time derived from the carrier where `derives` says so, else
// the stored one.
Fill derived(int column, int source, Condition derives, std::function<Cell(Card&)> derive);
// The removal date in `pattern`, from the arguments `select` gives (none: no date).
struct RemovalArguments {
    int lastOverhaulDate, overhaulCount, manufactured, intervalLimit, totalLimit;
};
Fill removalDate(int column, std::string_view pattern,
                 std::function<std::optional<RemovalArguments>(const Card&)> select);
// The removal date by which of the total calendar limit and the chosen limit
// between overhauls are set (`totalTested` tells whether the total counts,
// `totalLimit` is the one passed): the total alone gives `totalOnly`; the
// other alone counts it from the last overhaul for both; both count each.
struct LimitsSet {
    int totalTested;
    int totalLimit;
    Choice intervalLimit;
};
Fill removalByLimits(int column, std::string_view pattern, LimitsSet limits, RemovalArguments totalOnly,
                     int lastOverhaulDate, int overhaulCount, int manufactured);
// Fills that apply only when the condition holds.
std::vector<Fill> onlyWhen(const Condition& condition, std::vector<Fill> fills);
// The oil type's name: the `TIP_MASLA` row whose NOMER is the unit's number + 1.
Fill oilType(int column, int source);
// The same as the walking cards read it: the row where a walk in NOMER order
// stops, the last one when none matches; empty text for a negative number.
Fill oilTypeWalked(int column, int source);
// "Первый", "Второй", "Третий" for 0, 1, 2; "нет" below zero.
Fill position(int column, int source);
// A column of the catalogue row that `sql` (":key" the unit's key) finds.
Fill lookedUp(int column, int keyColumn, std::string sql, int resultColumn);
// Aircraft type and tail on an aircraft; in storage the location and its detail.
Fill locationText(int column, int typeColumn, int locationColumn, int detailColumn);

}  // namespace fill

// The conditions the cards test.
namespace when {
Condition set(int column);
Condition notInStorage();
Condition equals(int column, int value);
Condition overhauled();  // the overhaul count above 0
Condition contains(int column, std::string text);
Condition all(std::vector<Condition> conditions);
}  // namespace when

// Runs the card for the rows its source finds with the parameters: empties
// the report table, computes every row, then stores them together. A
// failure leaves the table empty. `arguments` are the builder's own texts.
using Parameters = std::vector<std::pair<std::string_view, db::Value>>;
void build(db::Connection& connection, const CardKind& kind, const Parameters& parameters,
           const std::vector<std::string>& arguments = {});

// The cards, each built once on first use.
const CardKind& componentCard();
const CardKind& hubCard();
const CardKind& slingCard();
const CardKind& winchCard();
const CardKind& apuUnitCard();
const CardKind& zcuCard();
const CardKind& apuCard();
const CardKind& gearboxCard();
const CardKind& propellerCard();
const CardKind& tailRotorCard();
const CardKind& engineCard();
const CardKind& registerCard();

}  // namespace mxbook::report
