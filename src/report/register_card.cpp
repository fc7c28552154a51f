// The register card of one aircraft: its register row with its lives and
// what is left of them and, when the caller asks for it and the aircraft
// shows its maintenance forms, its state, its last form and where it stands
// in its cycle of forms with the time left to the next ones.
#include <array>

#include "card.h"
#include "mxbook/error.h"
#include "mxbook/forms.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::report {

namespace {

// REESTR
enum : int {
    id = 0, aircraftType = 1, manufactured = 6, overhauled = 8, overhaulCount = 9, serviceLifeEnd = 12,
    totalHours = 16, totalCalendar = 17, intervalHours = 18, intervalCalendar = 19, hoursSinceNew = 20,
    landingsSinceNew = 21, hoursSinceOverhaul = 22, landingsSinceOverhaul = 23, stateNote = 26, state = 27,
    lastPeriodicForm = 28, lastLightForm = 29, periodicForms = 33, lightForms = 34, totalLandings = 60,
    intervalLandings = 61, showsForms = 64, unlimited = 79,
};
// The builder's arguments, in its order.
enum : std::size_t { typeArgument = 0, tailArgument = 1, formsArgument = 2 };

// PTO_FORMY: the intervals in hours, the number of steps of the cycle, and
// the name of step i at 7 + i.
namespace programme {
enum : int { lightInterval = 2, periodicInterval = 3, steps = 5, stepNames = 7 };
const std::string sql = "select * from PTO_FORMY where TIP_VS = :key order by ID";
}  // namespace programme

// VYPOLNENNYE_FORMY: the aircraft's latest form, one-off work left out; of
// two on one day the later entered.
namespace performed {
enum : int { form = 3, hoursSinceOverhaul = 5, date = 6 };
const std::string sql =
    "select first 1 f.* from VYPOLNENNYE_FORMY f "
    "join REESTR r on f.TIP_VS = r.TIP_VS and f.BORTOVOY_NOMER = r.BORTOVOI_NOMER "
    "where r.ID = :key and not upper(f.FORMA_TO) like upper('%Раз.работы%') "
    "order by f.DATA_ISPRAVNOSTI desc, f.ID desc";
}  // namespace performed

const std::array<const char*, 11> stateTexts = {
    "Воздушное судно исправно",     "Воздушное судно на ТО",   "Отсутствуют двигатели",
    "Отсутствуют запчасти",         "Воздушное судно в АРЗ",   "В ожидании ремонта",
    "В ожидении продления ресурса", "Доработки по бюллетеням", "Рекламация промышленности",
    "Рекламация ремпредприятий",    "Ожидание списания",
};
// A type whose card shows no landings since new and since overhaul.
const char* const withoutLandings = "Robinson R44";

using Row = std::vector<Cell>;

int integerOf(const Card& card, int column) { return card.isSet(column) ? card.row.field(column).asInt() : 0; }

// A programme column; a programme with fewer columns than its steps ask for
// cannot be walked.
const Cell& cellAt(const Card& card, const Row& row, int position) {
    if (position < 0 || static_cast<std::size_t>(position) >= row.size())
        throw DataError("the maintenance programme of " + card.arguments.at(typeArgument) + " has no column " +
                        std::to_string(position) + " for its steps");
    return row[static_cast<std::size_t>(position)];
}
std::string textAt(const Card& card, const Row& row, int position) {
    return cellAt(card, row, position).value_or("");
}
int integerAt(const Card& card, const Row& row, int position) {
    const std::string text = textAt(card, row, position);
    return text.empty() ? 0 : parseInt(text);
}

// A step that closes the ordinary run of forms: the aircraft goes to
// overhaul, has its life extended or is written off.
bool closesCycle(const Cell& name) { return name && (*name == "АРЗ" || *name == "Продление" || *name == "Списание"); }

bool formsAsked(const Card& card) { return card.arguments.at(formsArgument) != "0" && card.equals(showsForms, 1); }

// The aircraft's programme, when its forms are shown and its cycle does not
// start with an overhaul; none otherwise.
const Row* formsProgramme(Card& card) {
    if (!formsAsked(card)) return nullptr;
    const std::optional<Row>& found = card.lookUp(programme::sql, aircraftType);
    if (!found || textAt(card, *found, programme::stepNames) == "АРЗ") return nullptr;
    return &*found;
}

// How the cycle counts its steps: a periodic form every second "Ф-1"
// (only some steps count), one form a step (each step counts), or neither.
enum class Cycle { halves, whole, none };

Cycle cycleOf(const Card& card, const Row& row) {
    const int light = integerAt(card, row, programme::lightInterval);
    const int periodic = integerAt(card, row, programme::periodicInterval);
    if (light * 2 == periodic) return Cycle::halves;
    if (light == periodic) return Cycle::whole;
    return Cycle::none;
}

// The name of the step the aircraft stands at: the step that counts whose
// number among those that count is the periodic forms performed (c33).
// A step is passed over when the programme column at its own number is empty.
Cell currentStep(const Card& card, const Row& row, Cycle cycle) {
    const long long light = integerAt(card, row, programme::lightInterval);
    const long long periodic = integerAt(card, row, programme::periodicInterval);
    const int steps = integerAt(card, row, programme::steps), done = integerOf(card, periodicForms);
    for (int i = 0, counted = 0; i < steps; ++i) {
        if (textAt(card, row, i).empty()) continue;
        const Cell& name = cellAt(card, row, programme::stepNames + i);
        if (cycle == Cycle::halves) {
            if (periodic == 0)
                throw DataError("the maintenance programme of " + card.arguments.at(typeArgument) +
                                " has no periodic interval");
            if (light * (i + 7) % periodic != 0 && !closesCycle(name)) continue;
        }
        if (counted == done) return name;
        ++counted;
    }
    return std::nullopt;
}

bool earlier(const Card& card, int column, int than) {
    if (!card.isSet(than)) return false;
    return !card.isSet(column) || card.row.field(column).asDate() < card.row.field(than).asDate();
}

// "12.05.2023г. / Ф-2. ВС ППР: 1234:30ч.": a "Ф-1" by the name of the step
// its hours fall in.
std::string lastFormText(Card& card, const Row& form) {
    const std::string hours = form[performed::hoursSinceOverhaul].value_or("");
    std::string name = form[performed::form].value_or("");
    if (name == "Ф-1") {
        const std::string wholeHours = hours.empty() ? "0" : hours.substr(0, hours.find(':'));
        name = GetNameF1(card.connection, card.arguments.at(typeArgument), parseInt(wholeHours));
    }
    return form[performed::date].value_or("") + "г. / " + name + ". ВС ППР: " + hours + "ч.";
}

std::vector<Fill> formFills() {
    std::vector<Fill> fills;
    fills.push_back({27, [](Card& card) -> Cell {
                         if (!formsAsked(card)) return std::nullopt;
                         const int code = integerOf(card, state);
                         return code >= 0 && code < static_cast<int>(stateTexts.size()) ? stateTexts[code]
                                                                                        : stateTexts[0];
                     }});
    fills.push_back({26, [](Card& card) -> Cell {
                         if (!formsProgramme(card) || !card.isSet(stateNote)) return std::nullopt;
                         return card.text(stateNote);
                     }});
    // The latest form performed; without one the later of the last periodic
    // form's date (28) and the last "Ф-1"'s (29), each in its own column.
    fills.push_back({28, [](Card& card) -> Cell {
                         if (!formsProgramme(card)) return std::nullopt;
                         if (const std::optional<Row>& form = card.lookUp(performed::sql, id))
                             return lastFormText(card, *form);
                         if (earlier(card, lastPeriodicForm, lastLightForm) || !card.isSet(lastPeriodicForm))
                             return std::nullopt;
                         return card.text(lastPeriodicForm);
                     }});
    fills.push_back({29, [](Card& card) -> Cell {
                         if (!formsProgramme(card) || card.lookUp(performed::sql, id) ||
                             !earlier(card, lastPeriodicForm, lastLightForm))
                             return std::nullopt;
                         return card.text(lastLightForm);
                     }});
    fills.push_back({30, [](Card& card) -> Cell {
                         const Row* row = formsProgramme(card);
                         if (!row) return std::nullopt;
                         const Cycle cycle = cycleOf(card, *row);
                         return cycle == Cycle::none ? std::nullopt : currentStep(card, *row, cycle);
                     }});
    // Time to the next periodic form; to overhaul when the cycle stands at its end.
    fills.push_back({31, [](Card& card) -> Cell {
                         const Row* row = formsProgramme(card);
                         if (!row) return std::nullopt;
                         const Cycle cycle = cycleOf(card, *row);
                         if (cycle == Cycle::none) return std::nullopt;
                         if (closesCycle(currentStep(card, *row, cycle)))
                             return FunOstatChas(card.row, intervalHours, hoursSinceOverhaul);
                         return GetOstatTO(card.connection, card.row, hoursSinceOverhaul, aircraftType, periodicForms);
                     }});
    fills.push_back({32, [](Card& card) -> Cell {
                         const Row* row = formsProgramme(card);
                         if (!row || cycleOf(card, *row) != Cycle::halves) return std::nullopt;
                         return GetOstatF1(card.connection, card.row, hoursSinceOverhaul, aircraftType, lightForms);
                     }});
    return fills;
}

std::vector<Fill> registerFills() {
    using namespace fill;
    std::vector<Fill> fills = copies({{0, id}, {1, aircraftType}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, manufactured},
                                      {7, 7}, {8, overhauled}, {9, overhaulCount}, {10, 10}, {11, 11}, {13, 13},
                                      {15, 15}, {16, totalHours}, {18, intervalHours}, {20, hoursSinceNew}, {24, 24},
                                      {25, 25}, {38, 14}, {39, 44}, {40, 45}, {41, 46}, {42, 47}, {43, 49}, {44, 50},
                                      {45, 53}, {46, 54}, {47, 39}, {48, 40}, {49, 41}, {50, totalLandings},
                                      {51, intervalLandings}, {56, 62}});
    fills.push_back({12, [](Card& card) -> Cell {
                         if (card.isSet(unlimited) && card.row.field(unlimited).asBool()) return "бессрочно";
                         return card.isSet(serviceLifeEnd) ? Cell(card.text(serviceLifeEnd)) : std::nullopt;
                     }});
    fills.push_back(limitText(17, totalCalendar));
    fills.push_back(limitText(19, intervalCalendar));
    const Condition noLandings = when::contains(aircraftType, withoutLandings);
    const Condition landingsShown = [noLandings](const Card& card) { return !noLandings(card); };
    fills.push_back(copyWhen(21, landingsSinceNew, landingsShown));
    fills.push_back(copyWhen(22, hoursSinceOverhaul, when::overhauled()));
    fills.push_back(copyWhen(23, landingsSinceOverhaul, when::all({when::overhauled(), landingsShown})));
    fills.push_back(calendarRun(52, manufactured));
    fills.push_back(computedWhen(53, when::all({when::overhauled(), when::set(overhauled)}),
                                 [](Card& card) -> Cell { return FunNarabLet(card.row, overhauled); }));
    fills.push_back(hoursLeft(33, totalHours, hoursSinceNew));
    fills.push_back(countLeft(54, totalLandings, landingsSinceNew));
    fills.push_back(calendarLeft(34, totalCalendar, manufactured));
    fills.push_back(hoursLeft(35, intervalHours, hoursSinceOverhaul));
    fills.push_back(countLeft(55, intervalLandings, landingsSinceOverhaul));
    fills.push_back(calendarLeft(36, intervalCalendar, overhauled));
    fills.push_back(removalDate(37, fullYear, [](const Card&) -> std::optional<RemovalArguments> {
        return RemovalArguments{overhauled, overhaulCount, manufactured, intervalCalendar, totalCalendar};
    }));
    for (Fill& each : formFills()) fills.push_back(std::move(each));
    return fills;
}

}  // namespace

const CardKind& registerCard() {
    static const CardKind card{.source = "select * from REESTR where TIP_VS = :type and BORTOVOI_NOMER = :tail "
                                         "order by BORTOVOI_NOMER",
                               .table = "REPORT_REESTR_PODROBNO",
                               .overhaulCountColumn = overhaulCount,
                               .fills = registerFills()};
    return card;
}

}  // namespace mxbook::report
