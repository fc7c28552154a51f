// The card of an APU: one row per APU found. The ТА-14-130 family counts
// its hours as a sum in columns of its own and has no other counters.
#include "card.h"

namespace mxbook::report {

namespace {

enum : int { type = 1, overhaulCount = 7 };

std::vector<Fill> apuFills() {
    using namespace fill;
    std::vector<Fill> fills = copies({{1, type}, {2, 2}, {3, 3}, {4, 4}, {5, 34}, {6, 8}, {9, overhaulCount},
                                      {10, 9}, {13, 18}, {23, 19}, {55, 51}, {33, 10}, {40, 31}, {41, 32}, {42, 33}});
    fills.push_back(countLeft(14, 18, 10));
    fills.push_back(countLeft(24, {51, 19}, 11));
    for (const auto& [column, source] : {std::pair{45, 39}, {21, 25}, {58, 54}})
        fills.push_back(limitText(column, source));
    fills.push_back(calendarLeft(46, 39, 4));
    fills.push_back(calendarLeft(22, {54, 25}, 6));
    fills.push_back(calendarRun(47, 4));
    fills.push_back(calendarRun(32, 6));
    fills.push_back(removalDate(29, fullYear, [](const Card& card) -> std::optional<RemovalArguments> {
        return RemovalArguments{6, 7, 4, card.choose({54, 25}), 39};
    }));
    fills.push_back(oilTypeWalked(39, 30));
    fills.push_back({43, [](Card& card) -> Cell { return card.arguments.at(0); }});
    fills.push_back({44, [](Card& card) -> Cell { return card.arguments.at(1); }});
    for (const auto& [column, source] : {std::pair{7, 5}, {8, 6}})
        fills.push_back({column, [source](Card& card) -> Cell {
                             if (card.overhauls() <= 0) return "-";
                             return card.isSet(source) ? Cell(card.text(source)) : std::nullopt;
                         }});

    const Condition summed = when::contains(type, "ТА-14-130");
    std::vector<Fill> sum = copies({{11, 46}, {19, 47}, {30, 48}, {31, 49}, {60, 56}});
    sum.push_back(hoursLeft(12, 46, 48));
    sum.push_back(hoursLeft(20, {56, 47}, 49));
    std::vector<Fill> counters =
        copies({{11, 24}, {19, 29}, {30, 16}, {31, 17}, {15, 20}, {17, 22}, {25, 21}, {27, 23}, {48, 42}, {49, 43},
                {50, 40}, {51, 41}, {54, 50}, {56, 52}, {57, 53}, {59, 55}, {34, 11}, {35, 12}, {36, 13}, {37, 14},
                {38, 15}});
    counters.push_back(hoursLeft(12, 24, 16));
    counters.push_back(hoursLeft(20, {50, 29}, 17));
    counters.push_back(countLeft(16, 20, 12));
    counters.push_back(hoursLeft(18, 22, 14));
    counters.push_back(countLeft(26, {52, 21}, 13));
    counters.push_back(hoursLeft(28, {53, 23}, 15));
    counters.push_back(countLeft(52, 42, 40));
    counters.push_back(countLeft(53, {55, 43}, 41));
    for (Fill& each : onlyWhen(summed, std::move(sum))) fills.push_back(std::move(each));
    for (Fill& each : onlyWhen([summed](const Card& card) { return !summed(card); }, std::move(counters)))
        fills.push_back(std::move(each));
    return fills;
}

}  // namespace

const CardKind& apuCard() {
    static const CardKind card{.source =
                                   "select * from VSU where TIP_VS = :type and MESTO_USTANOVKI = :place "
                                   "and ZAVODSKOY_NOMER = :serial order by ZAVODSKOY_NOMER",
                               .table = "REPORT_VSU_PODROBNO",
                               .overhaulCountColumn = overhaulCount,
                               .rows = Rows::every,
                               .fills = apuFills()};
    return card;
}

}  // namespace mxbook::report
