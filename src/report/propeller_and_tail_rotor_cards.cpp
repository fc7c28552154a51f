// The cards of a propeller and of a tail rotor: what is left of their
// limits, and the removal date by the limits they have.
#include "card.h"
#include "mxbook/remaining_life.h"

namespace mxbook::report {

namespace {

std::vector<Fill> propellerFills() {
    using namespace fill;
    std::vector<Fill> fills;
    fills.push_back(position(10, 19));
    fills.push_back(calendarRun(19, 9));
    fills.push_back(calendarRun(21, 15));
    fills.push_back(hoursLeft(22, 21, 29));
    fills.push_back(calendarLeft(23, 22, 9));
    fills.push_back(hoursLeft(24, {47, 23}, 30));
    fills.push_back(calendarLeft(25, {48, 24}, 15));
    // The storage life (20) only tells whether the total limit counts; the limit passed is 22.
    fills.push_back(removalByLimits(26, twoDigitYear, {20, 22, {48, 24}}, {9, 16, 9, 22, 22}, 15, 16, 9));
    for (const auto& [column, source] : {std::pair{13, 22}, {15, 48}, {17, 24}})
        fills.push_back(limitText(column, source));
    return fills;
}

std::vector<Fill> tailRotorFills() {
    using namespace fill;
    enum : int { location = 14, derivedSwitch = 27, sinceNew = 29, sinceOverhaul = 30 };
    std::vector<Fill> fills;
    const Condition derives = when::all({when::notInStorage(), when::equals(derivedSwitch, 1)});
    for (const auto& [column, source] : {std::pair{20, sinceNew}, {21, sinceOverhaul}})
        fills.push_back(derived(column, source, derives, [source](Card& card) -> Cell {
            return FunNepNarHvostVint(card.connection, card.row, source);
        }));
    fills.push_back(hoursLeft(23, 19, sinceNew));
    fills.push_back(calendarLeft(24, 20, 4));
    fills.push_back(hoursLeft(25, {25, 21}, sinceOverhaul));
    fills.push_back(calendarLeft(26, {26, 22}, 12));
    fills.push_back(removalByLimits(29, shortForm, {20, 20, {26, 22}}, {4, 13, 4, 20, 20}, 12, 13, 4));
    for (const auto& [column, source] : {std::pair{13, 20}, {15, 26}, {19, 22}})
        fills.push_back(limitText(column, source));
    return fills;
}

}  // namespace

const CardKind& propellerCard() {
    static const CardKind card{.source =
                                   "select * from VOZDUSHNY_VINT where TIP_VS = :type and GDE_STOIT = :location "
                                   "and ZAVODSKOY_NOMER = :serial order by TIP_VS, ZAVODSKOY_NOMER",
                               .table = "REPORT_VTULKA_VV_PODR",
                               .overhaulCountColumn = 16,
                               .fills = propellerFills()};
    return card;
}

const CardKind& tailRotorCard() {
    static const CardKind card{.source =
                                   "select * from HVOSTOVOY_VINT where TIP_VS = :type and GDE_STOIT = :location "
                                   "and ZAVODSKOY_NOMER_VTULKA = :serial order by ID",
                               .table = "REPORT_HVOST_VINT_PODR",
                               .locationColumn = 14,
                               .overhaulCountColumn = 13,
                               .fills = tailRotorFills()};
    return card;
}

}  // namespace mxbook::report
