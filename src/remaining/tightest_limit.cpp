// The tighter of two limits of one measure on the same unit: each pair's
// remainder as the single-limit calculation computes it, and the smaller.
#include <algorithm>
#include <optional>

#include "mxbook/remaining_life.h"
#include "remainders.h"

namespace mxbook {

namespace {

struct Pair {
    int limitColumn;
    int usedColumn;
    // A column number -1 names no second pair.
    bool given() const { return limitColumn != -1 && usedColumn != -1; }
};

// An overrun is smaller than any life left, so it wins. A pair with a null
// column has no remainder: a second pair without one counts as the first.
template <typename T>
std::optional<T> tighter(std::optional<T> a, std::optional<T> b) {
    if (!a || !b) return a ? a : b;
    return *b < *a ? b : a;
}

// Hours compared as they are, overruns included, derived as the unit's kind
// says, decided once for both pairs.
struct Hours {
    static constexpr bool secondPairOptional = true;
    remaining::HoursDerivation derivation;

    std::optional<Minutes> left(db::DataSet& row, Pair pair) const {
        return remaining::minutesLeft(row, pair.limitColumn, pair.usedColumn,
                                      [&](db::DataSet& unit, int column) { return derivation.usedText(unit, column); });
    }
    static std::string text(std::optional<Minutes> left) { return remaining::hoursLeftText(left); }
};

// Counts are compared once each is cleared of its overrun.
struct Counts {
    static constexpr bool secondPairOptional = false;
    remaining::CountRule rule;

    std::optional<long long> left(db::DataSet& row, Pair pair) const {
        const auto left = remaining::countLeft(row, pair.limitColumn, pair.usedColumn, rule);
        return left ? std::optional(std::max(*left, 0LL)) : left;
    }
    static std::string text(std::optional<long long> left) { return remaining::countLeftText(left); }
};

// Months compared as they are, overruns included.
struct Months {
    static constexpr bool secondPairOptional = true;

    std::optional<int> left(db::DataSet& row, Pair pair) const {
        return remainingMonths(row, pair.limitColumn, pair.usedColumn);
    }
    static std::string text(std::optional<int> left) { return remaining::calendarLeftText(left); }
};

template <typename Measure>
std::string tightest(const Measure& measure, db::DataSet& row, Pair a, Pair b) {
    const auto leftA = measure.left(row, a);
    const bool takeB = !Measure::secondPairOptional || b.given();
    return Measure::text(tighter(leftA, takeB ? measure.left(row, b) : decltype(leftA)()));
}

}  // namespace

std::string FunOstatChasMin(db::DataSet& row, int limitA, int usedA, int limitB, int usedB) {
    return tightest(Hours{remaining::HoursDerivation(row)}, row, {limitA, usedA}, {limitB, usedB});
}

std::string FunOstatIntegerMin(db::DataSet& row, int limitA, int usedA, int limitB, int usedB) {
    return tightest(Counts{remaining::countRule(row)}, row, {limitA, usedA}, {limitB, usedB});
}

std::string FunOstatLetMin(db::DataSet& row, int calendarLimitA, int startDateA, int calendarLimitB, int startDateB) {
    return tightest(Months{}, row, {calendarLimitA, startDateA}, {calendarLimitB, startDateB});
}

}  // namespace mxbook
