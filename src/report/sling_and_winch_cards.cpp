// The cards of the external cargo sling and the winch: dates with two-digit
// years, the location as the aircraft or the place off it.
#include "card.h"
#include "mxbook/host.h"
#include "mxbook/remaining_life.h"

namespace mxbook::report {

namespace {

// Both tables keep the type in 1, the location in 14 and its detail in 15.
enum : int { aircraftType = 1, location = 14, locationDetail = 15 };

std::vector<Fill> slingFills() {
    using namespace fill;
    std::vector<Fill> fills = copies({{1, 0},   {2, aircraftType}, {3, location}, {4, 2},   {5, 3},   {7, 5},
                                      {8, 6},   {10, 8},   {14, 13},  {17, 19},  {19, 21}, {21, 23}, {22, 24},
                                      {23, 25}, {33, 27},  {35, 28},  {37, 29},  {38, 30}, {39, 31}});
    for (const auto& [column, source] : {std::pair{6, 4}, {9, 7}, {11, 9}, {15, 17}})
        fills.push_back(date(column, source, twoDigitYear));
    fills.push_back({12, [](Card& card) -> Cell { return card.isSet(11) ? card.text(11) : "-"; }});
    fills.push_back(dateOrDash(13, 12, twoDigitYear));
    fills.push_back(locationText(16, aircraftType, location, locationDetail));
    for (const auto& [column, source] : {std::pair{18, 20}, {20, 22}, {24, 26}})
        fills.push_back(limitText(column, source));
    fills.push_back(hoursLeft(25, 19, 27));
    fills.push_back(calendarLeft(26, 20, 4));
    fills.push_back(hoursLeft(27, 21, 28));
    fills.push_back(calendarLeft(28, 22, 12));
    fills.push_back(countLeft(29, 23, 29));
    fills.push_back(countLeft(30, 24, 30));
    fills.push_back(countLeft(31, 25, 31));
    fills.push_back(calendarLeft(32, 26, 7));
    fills.push_back(calendarRun(34, 4));
    fills.push_back(calendarRun(36, 12));
    fills.push_back(calendarRun(40, 7));
    return fills;
}

std::vector<Fill> winchFills() {
    using namespace fill;
    enum : int { derivedSwitch = 25, sinceNew = 27, sinceOverhaul = 28, peopleHoists = 29, cargoHoists = 30 };
    std::vector<Fill> fills = copies({{1, 0}, {2, aircraftType}, {3, location}, {4, 2}, {5, 3}, {6, 5}, {8, 7},
                                      {11, 11}, {13, 13}, {16, 19}, {18, 21}, {20, 23}, {21, 24}, {34, 35}});
    for (const auto& [column, source] : {std::pair{7, 6}, {9, 8}, {10, 9}, {12, 12}, {14, 17}})
        fills.push_back(date(column, source, twoDigitYear));
    fills.push_back(locationText(15, aircraftType, location, locationDetail));
    for (const auto& [column, source] : {std::pair{17, 20}, {19, 22}, {35, 36}})
        fills.push_back(limitText(column, source));
    fills.push_back(hoursLeft(22, 19, sinceNew));
    fills.push_back(calendarLeft(23, 20, 8));
    fills.push_back(hoursLeft(24, {36, 21}, sinceOverhaul));
    fills.push_back(calendarLeft(25, {37, 22}, 12));
    // The cables: hoists left of each limit (23 people, 24 cargo).
    for (const auto& [column, used, limit] : {std::tuple{26, peopleHoists, 23}, {27, cargoHoists, 24}})
        fills.push_back(computed(column, {limit}, [used, limit](Card& card) -> Cell {
            return FunOstatTros(card.connection, card.row, used, limit, host().today());
        }));
    const Condition derives = when::all({when::notInStorage(), when::equals(derivedSwitch, 1)});
    for (const auto& [column, source] : {std::pair{28, sinceNew}, {30, sinceOverhaul}})
        fills.push_back(derived(column, source, derives, [source](Card& card) -> Cell {
            return FunNepNarLebedka(card.connection, card.row, source);
        }));
    for (const auto& [column, source] : {std::pair{32, peopleHoists}, {33, cargoHoists}})
        fills.push_back(derived(column, source, derives, [source](Card& card) -> Cell {
            return FunNepNarTros(card.connection, card.row, card.text(location), source, host().today());
        }));
    fills.push_back(calendarRun(29, 8));
    fills.push_back(calendarRun(31, 12));
    return fills;
}

}  // namespace

const CardKind& slingCard() {
    static const CardKind card{.source = "select * from PODVESKA where ID = :id",
                               .table = "REPORT_PODVESKA_PODROBNO",
                               .locationColumn = location,
                               .fills = slingFills()};
    return card;
}

const CardKind& winchCard() {
    static const CardKind card{.source = "select * from LEBEDKA where ID = :id",
                               .table = "REPORT_LEBEDKA_PODROBNO",
                               .locationColumn = location,
                               .overhaulCountColumn = 13,
                               .fills = winchFills()};
    return card;
}

}  // namespace mxbook::report
