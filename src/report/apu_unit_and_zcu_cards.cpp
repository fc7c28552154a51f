// The cards of a unit mounted on an APU and of a ZCU unit.
#include "card.h"
#include "mxbook/remaining_life.h"

namespace mxbook::report {

namespace {

// AGR_VSU: the carrying APU's serial number, and the "no carrier" key the
// remaining-life calls take without one.
enum : int { apuSerial = 42 };
const std::string noCarrier = "NumDvig";

bool hasCarrier(const Card& card) { return card.isSet(apuSerial) && !card.text(apuSerial).empty(); }
std::string carrierKey(const Card& card) { return hasCarrier(card) ? card.text(apuSerial) : noCarrier; }
int deriveFlag(const Card& card) { return hasCarrier(card) ? -1 : 0; }

std::vector<Fill> apuUnitFills() {
    using namespace fill;
    std::vector<Fill> fills;
    const std::string catalogue =
        "select ID_NAME, NAZVANIE, CHERT_NOMER from ETA_AGR_VSU where ID_NAME = :key order by ID";
    fills.push_back(lookedUp(2, 5, catalogue, 1));
    fills.push_back(lookedUp(3, 5, catalogue, 2));
    // After the catalogue: the unit's modification, where it has one, is its designation.
    for (Fill& copied : copies({{3, 6},   {4, 7},   {5, 8},   {6, 9},   {7, 10},  {10, 13}, {11, 14},
                                {12, 15}, {13, 16}, {16, 19}, {17, 20}, {18, 21}, {20, 23}, {21, 24},
                                {22, 25}, {44, 1},  {45, 2},  {46, 51}, {47, 52}, {48, 53}}))
        fills.push_back(std::move(copied));
    fills.push_back(lookedUp(8, 11, "select NAIMENOVANIE from SOBSTVENNIKI where ID_NAME = :key order by ID_NAME", 0));
    fills.push_back({9, [](Card& card) -> Cell {
                         if (!card.isSet(2) && !card.isSet(48)) return std::nullopt;
                         return card.text(2) + " " + card.text(48);
                     }});
    fills.push_back({14, [](Card& card) -> Cell {
                         if (!card.isSet(18) || card.text(18) == "Нет") return std::nullopt;
                         return card.text(18);
                     }});
    fills.push_back({15, [](Card& card) -> Cell {
                         if (card.equals(17, 0)) return "Нет";
                         if (card.equals(17, 1)) return "Да";
                         return std::nullopt;
                     }});
    fills.push_back(oilType(41, 37));
    fills.push_back(date(43, 39, twoDigitYear));
    for (const auto& [column, source] : {std::pair{19, 22}, {23, 26}, {49, 54}})
        fills.push_back(limitText(column, source));

    // What is left, with the used counts derived from the carrying APU where there is one.
    const Choice choices[] = {19, 20, 21, {51, 23}, {52, 24}, {53, 25}};
    for (int n = 0; n < 6; ++n) {
        const int column = n < 3 ? 24 + n : 25 + n;  // 24-26, 28-30
        const int used = 30 + n;
        const int kind = n % 3;
        const Choice limit = choices[n];
        fills.push_back({column, [limit, used, kind](Card& card) -> Cell {
                             const int chosen = card.choose(limit);
                             if (kind == 0)
                                 return FunOstatChasAgrVSU(card.row, carrierKey(card), chosen, used, deriveFlag(card));
                             return FunOstatIntegerAgrVSU(card.row, carrierKey(card), chosen, used, kind,
                                                          deriveFlag(card));
                         }});
    }
    // The counters: the APU's since installation added, or as stored.
    for (const auto& [column, source, kind] : {std::tuple{32, 30, 0}, {33, 31, 1}, {34, 32, 2}, {36, 33, 0},
                                               {37, 34, 1}, {38, 35, 2}, {42, 38, 0}})
        fills.push_back(derived(column, source, hasCarrier, [source, kind](Card& card) -> Cell {
            return FunPerNarAgrVSU(card.connection, card.row, card.text(apuSerial), source, kind);
        }));
    fills.push_back(calendarLeft(27, 22, 9));
    fills.push_back(calendarLeft(31, {54, 26}, 14));
    fills.push_back(calendarRun(35, 9));
    fills.push_back(calendarRun(39, 14));
    fills.push_back(removalByLimits(40, fullYear, {22, 22, {54, 26}}, {14, 15, 14, 22, 22}, 14, 15, 9));
    return fills;
}

std::vector<Fill> zcuFills() {
    using namespace fill;
    enum : int { location = 2, derivedSwitch = 16, sinceNew = 11, sinceOverhaul = 22 };
    std::vector<Fill> fills = copies({{5, 6}, {6, 7}, {9, 17}, {11, 19}, {13, 4}, {15, 20}, {27, 27}});
    const std::string catalogue = "select ID_NAME, NAME, CHERT_NOMER from ETA_ZCU where ID_NAME = :key order by ID";
    fills.push_back(lookedUp(3, 3, catalogue, 1));
    fills.push_back(lookedUp(4, 3, catalogue, 2));
    for (const auto& [column, source] : {std::pair{7, 8}, {8, 9}, {10, 18}, {12, 10}})
        fills.push_back(date(column, source, shortForm));
    fills.push_back({2, [](Card& card) -> Cell {
                         if (!card.inStorage()) return card.isSet(location) ? Cell(card.text(location)) : std::nullopt;
                         if (!card.isSet(23)) return std::nullopt;
                         std::string text = card.text(location) + " " + card.text(23);
                         if (card.isSet(12)) text += " (" + card.text(12) + ")";
                         return text;
                     }});
    for (const auto& [column, source] : {std::pair{14, 5}, {16, 21}, {28, 28}})
        fills.push_back(limitText(column, source));
    const Condition derives = when::all({when::notInStorage(), when::equals(derivedSwitch, 1)});
    for (const auto& [column, source] : {std::pair{17, sinceNew}, {19, sinceOverhaul}})
        fills.push_back(derived(column, source, derives, [source](Card& card) -> Cell {
            return FunNepNarZCU(card.connection, card.row, source);
        }));
    fills.push_back(calendarRun(18, 8));
    fills.push_back(calendarRun(20, 18));
    fills.push_back(hoursLeft(21, 4, sinceNew));
    fills.push_back(hoursLeft(23, {27, 20}, sinceOverhaul));
    fills.push_back(calendarLeft(22, 5, 8));
    fills.push_back(calendarLeft(24, {28, 21}, 18));
    fills.push_back(computed(25, {10}, [](Card& card) -> Cell {
        return FunPPRPlanDliaSniatZCU(card.connection, card.row, card.text(1), card.text(location));
    }));
    // Counted from manufacture, then from the last overhaul where the unit has a limit between overhauls.
    fills.push_back(computed(26, {7}, [](Card& card) -> Cell { return FunDataSniatia(card.row, 8, 0, 8, 5, 5); }));
    fills.push_back({26, [](Card& card) -> Cell {
                         const int limit = card.choose({28, 21});
                         if (!card.isSet(limit)) return std::nullopt;
                         return FunDataSniatia(card.row, 18, 19, 8, limit, 5);
                     }});
    return fills;
}

}  // namespace

const CardKind& apuUnitCard() {
    static const CardKind card{.source = "select * from AGR_VSU where ID = :id order by ID",
                               .table = "REPORT_AGR_VSU_PODROBNO",
                               .overhaulCountColumn = 15,
                               .fills = apuUnitFills()};
    return card;
}

const CardKind& zcuCard() {
    static const CardKind card{.source = "select * from ZCU where ID = :id order by ID",
                               .table = "REPORT_ZCU_PODROBNO",
                               .locationColumn = 2,
                               .overhaulCountColumn = 19,
                               .fills = zcuFills()};
    return card;
}

}  // namespace mxbook::report
