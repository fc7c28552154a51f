// The cards of an engine and of a gearbox: full dates, the oil type found by
// walking the list, limits until the first overhaul where there was none.
#include "card.h"

namespace mxbook::report {

namespace {

// Both tables keep the overhaul date in 8 and the count in 9.
enum : int { overhauled = 8, overhaulCount = 9 };

std::vector<Fill> gearboxFills() {
    using namespace fill;
    std::vector<Fill> fills =
        copies({{1, 2},   {2, 3},   {3, 4},   {5, 21},  {6, 6},   {7, 7},   {9, overhaulCount}, {11, 18}, {13, 16},
                {18, 23}, {19, 11}, {20, 12}, {21, 24}, {22, 25}, {23, 26}, {25, 27}, {31, 38}, {34, 14}});
    for (const auto& [column, source] : {std::pair{4, 5}, {8, overhauled}, {10, 10}, {26, 28}, {27, 29}})
        fills.push_back(date(column, source, fullYear));
    for (const auto& [column, source] : {std::pair{15, 17}, {32, 37}, {35, 15}})
        fills.push_back(limitText(column, source));
    fills.push_back(hoursLeft(12, 18, 11));
    fills.push_back(hoursLeft(14, {14, 16}, 12));
    fills.push_back(calendarLeft(33, 37, 5));
    fills.push_back(calendarLeft(16, {15, 17}, overhauled));
    fills.push_back(removalDate(17, fullYear, [](const Card& card) -> std::optional<RemovalArguments> {
        return RemovalArguments{overhauled, overhaulCount, 5, card.choose({15, 17}), 37};
    }));
    fills.push_back(oilTypeWalked(24, 22));
    // The type and location it was asked for.
    fills.push_back({28, [](Card& card) -> Cell { return card.arguments.at(0); }});
    fills.push_back({29, [](Card& card) -> Cell { return card.arguments.at(1); }});
    fills.push_back(fixedText(30, "Главный"));
    return fills;
}

std::vector<Fill> engineFills() {
    using namespace fill;
    std::vector<Fill> fills;
    // Any overhaul count but 0 (the choices X/Y test for 0 alike).
    const Condition overhauledSome = [](const Card& card) { return card.overhauls() != 0; };
    // Columns 2 to 30 mostly show as stored, at the same position.
    for (int column = 2; column <= 30; ++column) {
        if (column == 8 || column == 12)
            fills.push_back(copyWhen(column, column, overhauledSome));
        else if (column != 22 && column != 23 && column != 27)
            fills.push_back(copy(column, column));
    }
    for (const int column : {15, 17, 19}) fills.push_back(limitText(column, column));
    fills.push_back(position(23, 23));
    fills.push_back(oilTypeWalked(22, 22));
    // Cycles since overhaul; the starts since overhaul instead where there are some.
    fills.push_back(copyWhen(27, 27, overhauledSome));
    fills.push_back(copy(27, 43));
    for (Fill& copied :
         copies({{36, 42}, {37, 37}, {38, 38}, {50, 57}, {51, 58}, {52, 44}, {53, 45}, {56, 31}, {57, 27}}))
        fills.push_back(std::move(copied));
    fills.push_back(hoursLeft(31, 18, 11));
    fills.push_back(countLeft(40, 38, 31));
    fills.push_back(countLeft(54, 44, 42));
    fills.push_back(calendarLeft(32, 19, 5));
    fills.push_back(hoursLeft(33, {14, 16}, 12));
    fills.push_back(countLeft(39, {57, 37}, 27));
    fills.push_back(countLeft(55, {58, 45}, 43));
    fills.push_back(calendarLeft(34, {15, 17}, overhauled));
    fills.push_back(removalDate(35, fullYear, [](const Card& card) -> std::optional<RemovalArguments> {
        return RemovalArguments{overhauled, overhaulCount, 5, card.choose({15, 17}), 19};
    }));
    // The cycle counts of the engine's parts, kept for one model.
    std::vector<Fill> parts = copies({{41, 54}, {42, 55}, {43, 56}, {44, 51}, {45, 52}, {46, 53}});
    parts.push_back(countLeft(47, 54, 51));
    parts.push_back(countLeft(48, 55, 52));
    parts.push_back(countLeft(49, 56, 53));
    for (Fill& each : onlyWhen(when::contains(2, "PW207K"), std::move(parts))) fills.push_back(std::move(each));
    return fills;
}

}  // namespace

const CardKind& gearboxCard() {
    static const CardKind card{.source =
                                   "select * from REDUCTOR where GDE_STOIT = :location and ZAVODSKOI_NOMER = :serial "
                                   "order by TIP_VS, ZAVODSKOI_NOMER",
                               .table = "REPORT_REDUCTOR_PODROBNO",
                               .overhaulCountColumn = overhaulCount,
                               .rows = Rows::every,
                               .fills = gearboxFills()};
    return card;
}

const CardKind& engineCard() {
    static const CardKind card{.source =
                                   "select * from DVIGATEL where TIP_VS = :type and GDE_STOIT = :location "
                                   "and ZAVODSKOI_NOMER = :serial order by TIP_VS, ZAVODSKOI_NOMER",
                               .table = "REPORT_DVIGATEL_PODROBNO",
                               .overhaulCountColumn = overhaulCount,
                               .fills = engineFills()};
    return card;
}

}  // namespace mxbook::report
