// The parts the cards are made of: the unit row's facts and the fills.
#include "card.h"

#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::report {

Card::Card(db::Connection& connectionOfRow, db::DataSet& unitRow, const CardKind& kind,
           const std::vector<std::string>& builderArguments)
    : connection(connectionOfRow), row(unitRow), arguments(builderArguments), kind_(kind) {
    if (kind.locationColumn && isSet(*kind.locationColumn)) inStorage_ = isOffAircraft(text(*kind.locationColumn));
}

bool Card::equals(int column, int value) const {
    const db::Field field = row.field(column);
    return !field.isNull() && field.asInt() == value;
}

int Card::overhauls() const {
    if (!kind_.overhaulCountColumn) return 0;
    const db::Field count = row.field(*kind_.overhaulCountColumn);
    return count.isNull() ? 0 : count.asInt();
}

int Card::choose(Choice choice) const {
    return overhauls() == 0 && isSet(choice.first) ? choice.first : choice.regular;
}

const std::optional<std::vector<Cell>>& Card::lookUp(const std::string& sql, int keyColumn) {
    for (const auto& [text, found] : lookups_)
        if (text == sql) return found;
    std::optional<std::vector<Cell>> found;
    if (isSet(keyColumn)) {
        db::DataSet rows(connection, sql, db::DataSet::Traversal::forwardOnly);
        rows.setParam("key", row.field(keyColumn).value());
        rows.open();
        if (!rows.eof()) {
            found.emplace();
            for (int column = 0; column < rows.fieldCount(); ++column) {
                const db::Field field = rows.field(column);
                found->push_back(field.isNull() ? std::nullopt : std::optional(field.asText()));
            }
        }
    }
    return lookups_.emplace_back(sql, std::move(found)).second;
}

std::string calendarLimitText(std::string_view limit) {
    std::string shown;
    for (const char c : limit) {
        if (c == '.')
            shown += "г. ";
        else
            shown += c;
    }
    return shown + "м.";
}

namespace {

const std::string oilTypeByNumber = "select NAZVANIE from TIP_MASLA where NOMER = :key order by NOMER";

std::string dateText(Date date, std::string_view pattern) {
    return pattern == shortForm ? shortDate(date, host().formatSettings()) : formatDate(date, pattern);
}

// The first column of the first row a keyed query finds; none when it finds no row.
std::optional<Cell> firstOf(Card& card, const std::string& sql, const db::Value& key) {
    db::DataSet found(card.connection, sql, db::DataSet::Traversal::forwardOnly);
    found.setParam("key", key);
    found.open();
    if (found.eof()) return std::nullopt;
    return found.field(0).isNull() ? Cell() : Cell(found.field(0).asText());
}

}  // namespace

namespace fill {

Fill copy(int column, int source) {
    return {column, [source](Card& card) -> Cell {
                if (!card.isSet(source)) return std::nullopt;
                return card.text(source);
            }};
}

Fill copyWhen(int column, int source, Condition condition) {
    return {column, [source, condition = std::move(condition)](Card& card) -> Cell {
                if (!condition(card) || !card.isSet(source)) return std::nullopt;
                return card.text(source);
            }};
}

std::vector<Fill> copies(std::initializer_list<std::pair<int, int>> pairs) {
    std::vector<Fill> fills;
    for (const auto& [column, source] : pairs) fills.push_back(copy(column, source));
    return fills;
}

Fill date(int column, int source, std::string_view pattern) {
    return {column, [source, pattern](Card& card) -> Cell {
                if (!card.isSet(source)) return std::nullopt;
                return dateText(card.row.field(source).asDate(), pattern);
            }};
}

Fill dateOrDash(int column, int source, std::string_view pattern) {
    return {column, [source, pattern](Card& card) -> Cell {
                if (!card.isSet(source)) return "-";
                return dateText(card.row.field(source).asDate(), pattern);
            }};
}

Fill limitText(int column, int source) {
    return {column, [source](Card& card) -> Cell {
                if (!card.isSet(source)) return std::nullopt;
                return calendarLimitText(card.text(source));
            }};
}

Fill fixedText(int column, std::string text) {
    return {column, [text = std::move(text)](Card&) -> Cell { return text; }};
}

Fill computed(int column, std::vector<int> needs, std::function<Cell(Card&)> value) {
    return {column, [needs = std::move(needs), value = std::move(value)](Card& card) -> Cell {
                for (const int needed : needs)
                    if (!card.isSet(needed)) return std::nullopt;
                return value(card);
            }};
}

Fill computedWhen(int column, Condition condition, std::function<Cell(Card&)> value) {
    return {column, [condition = std::move(condition), value = std::move(value)](Card& card) -> Cell {
                if (!condition(card)) return std::nullopt;
                return value(card);
            }};
}

namespace {

Fill leftOf(int column, Choice limit, int used, std::string (*left)(db::DataSet&, int, int)) {
    return {column, [limit, used, left](Card& card) -> Cell {
                const int chosen = card.choose(limit);
                if (!card.isSet(chosen) || !card.isSet(used)) return std::nullopt;
                return left(card.row, chosen, used);
            }};
}

}  // namespace

Fill hoursLeft(int column, Choice limit, int used) { return leftOf(column, limit, used, &FunOstatChas); }
Fill countLeft(int column, Choice limit, int used) { return leftOf(column, limit, used, &FunOstatInteger); }
Fill calendarLeft(int column, Choice limit, int start) { return leftOf(column, limit, start, &FunOstatLet); }

Fill calendarRun(int column, int start) {
    return computed(column, {start}, [start](Card& card) -> Cell { return FunNarabLet(card.row, start); });
}

Fill derived(int column, int source, Condition derives, std::function<Cell(Card&)> derive) {
    return {column, [source, derives = std::move(derives), derive = std::move(derive)](Card& card) -> Cell {
                if (derives(card)) return derive(card);
                if (!card.isSet(source)) return std::nullopt;
                return card.text(source);
            }};
}

Fill removalDate(int column, std::string_view pattern,
                 std::function<std::optional<RemovalArguments>(const Card&)> select) {
    return {column, [pattern, select = std::move(select)](Card& card) -> Cell {
                const std::optional<RemovalArguments> a = select(card);
                if (!a) return std::nullopt;
                const std::optional<Date> date = mxbook::removalDate(
                    card.row, a->lastOverhaulDate, a->overhaulCount, a->manufactured, a->intervalLimit, a->totalLimit);
                if (!date) return std::nullopt;
                return dateText(*date, pattern);
            }};
}

Fill removalByLimits(int column, std::string_view pattern, LimitsSet limits, RemovalArguments totalOnly,
                     int lastOverhaulDate, int overhaulCount, int manufactured) {
    return removalDate(column, pattern, [=](const Card& card) -> std::optional<RemovalArguments> {
        const int interval = card.choose(limits.intervalLimit);
        const bool hasTotal = card.isSet(limits.totalTested), hasInterval = card.isSet(interval);
        if (hasTotal && !hasInterval) return totalOnly;
        if (!hasTotal && hasInterval)
            return RemovalArguments{lastOverhaulDate, overhaulCount, manufactured, interval, interval};
        if (hasTotal && hasInterval)
            return RemovalArguments{lastOverhaulDate, overhaulCount, manufactured, interval, limits.totalLimit};
        return std::nullopt;
    });
}

std::vector<Fill> onlyWhen(const Condition& condition, std::vector<Fill> fills) {
    for (Fill& gated : fills)
        gated.value = [condition, value = std::move(gated.value)](Card& card) -> Cell {
            if (!condition(card)) return std::nullopt;
            return value(card);
        };
    return fills;
}

Fill oilType(int column, int source) {
    return {column, [source](Card& card) -> Cell {
                if (!card.isSet(source)) return std::nullopt;
                return firstOf(card, oilTypeByNumber, card.row.field(source).asInt64() + 1).value_or(std::nullopt);
            }};
}

Fill oilTypeWalked(int column, int source) {
    return {column, [source](Card& card) -> Cell {
                const std::int64_t number = card.row.field(source).asInt64();
                if (number < 0) return "";
                if (std::optional<Cell> found = firstOf(card, oilTypeByNumber, number + 1)) return *found;
                // The walk ran to its end: it stops on the last row.
                db::DataSet last(card.connection, "select first 1 NAZVANIE from TIP_MASLA order by NOMER desc",
                                 db::DataSet::Traversal::forwardOnly);
                last.open();
                if (last.eof()) return std::nullopt;
                return last.field(0).asText();
            }};
}

Fill position(int column, int source) {
    return {column, [source](Card& card) -> Cell {
                if (!card.isSet(source)) return std::nullopt;
                switch (const int place = card.row.field(source).asInt()) {
                    case 0: return "Первый";
                    case 1: return "Второй";
                    case 2: return "Третий";
                    default:
                        if (place < 0) return "нет";
                        return std::nullopt;
                }
            }};
}

Fill lookedUp(int column, int keyColumn, std::string sql, int resultColumn) {
    return {column, [keyColumn, sql = std::move(sql), resultColumn](Card& card) -> Cell {
                const std::optional<std::vector<Cell>>& found = card.lookUp(sql, keyColumn);
                if (!found) return std::nullopt;
                return found->at(static_cast<std::size_t>(resultColumn));
            }};
}

Fill locationText(int column, int typeColumn, int locationColumn, int detailColumn) {
    return {column, [=](Card& card) -> Cell {
                if (!card.isSet(typeColumn) || !card.isSet(locationColumn)) return std::nullopt;
                if (!card.inStorage()) return card.text(typeColumn) + " " + card.text(locationColumn);
                if (!card.isSet(detailColumn)) return std::nullopt;
                return card.text(locationColumn) + " " + card.text(detailColumn);
            }};
}

}  // namespace fill

namespace when {

Condition set(int column) {
    return [column](const Card& card) { return card.isSet(column); };
}
Condition notInStorage() {
    return [](const Card& card) { return !card.inStorage(); };
}
Condition equals(int column, int value) {
    return [column, value](const Card& card) { return card.equals(column, value); };
}
Condition overhauled() {
    return [](const Card& card) { return card.overhauls() > 0; };
}
Condition contains(int column, std::string text) {
    return [column, text = std::move(text)](const Card& card) {
        return card.isSet(column) && card.text(column).find(text) != std::string::npos;
    };
}
Condition all(std::vector<Condition> conditions) {
    return [conditions = std::move(conditions)](const Card& card) {
        for (const Condition& condition : conditions)
            if (!condition(card)) return false;
        return true;
    };
}

}  // namespace when

}  // namespace mxbook::report
