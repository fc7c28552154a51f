// Operating time left until the next periodic form, "Ф-1" or engine form,
// and the periodic intervals completed. One computation reads the programme
// and the worked time and writes the result; what differs per form is the
// programme, where its tolerance comes from and the rule for the due point.
#include <optional>
#include <string_view>

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/forms.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"
#include "programme.h"

namespace mxbook {

namespace {

using forms::hours;
using forms::Programme;
namespace reestr = forms::reestr;

// The form FORMA_TO names for the light form.
constexpr std::string_view lightFormName = "Ф-1";

struct Columns {
    int hours;
    int type;
    int count;
};

// What a due rule works from.
struct DueInputs {
    db::Connection& connection;
    db::DataSet& row;
    const Programme& programme;
    int formsDone;  // the count column's value
};

// Minutes at which the form falls due; none when the overhaul comes first
// and the result is the time left to it.
using DueRule = std::optional<Minutes> (*)(const DueInputs&);
// Hours of tolerance, from the programme and the caller's count column.
using ToleranceRule = int (*)(const Programme&, int countColumn);

struct FormDue {
    const forms::ProgrammeKind& programme;
    ToleranceRule tolerance;
    DueRule due;
};

// The last form performed on the aircraft since the register's overhaul
// date, one-off work aside: the latest, the larger ID on the same day.
struct PerformedForm {
    Minutes airframe;  // PLANER_PPR
    bool light;
};

// Whether the aircraft's type plans each form from the last one performed,
// and that form when there is one.
struct Planning {
    bool fromLastForm = false;
    std::optional<PerformedForm> last;
};

constexpr const char* planningTypeSql =
    "Select First 1 ID From TIPOVYE_DANNYE_VS Where TIP_VS=:pTIP And PTO_PLAN_OT_PRED_NAR=1";
constexpr const char* lastFormSinceSql =
    "Select First 1 FORMA_TO, PLANER_PPR From VYPOLNENNYE_FORMY Where TIP_VS=:pTIP And BORTOVOY_NOMER=:pTAIL "
    "And DATA_ISPRAVNOSTI>=:pSINCE And FORMA_TO<>'Раз.работы' And FORMA_TO<>'Разовые работы' "
    "Order By DATA_ISPRAVNOSTI Desc, ID Desc";
// Without an overhaul date every dated form counts.
constexpr const char* lastFormEverSql =
    "Select First 1 FORMA_TO, PLANER_PPR From VYPOLNENNYE_FORMY Where TIP_VS=:pTIP And BORTOVOY_NOMER=:pTAIL "
    "And DATA_ISPRAVNOSTI Is Not Null And FORMA_TO<>'Раз.работы' And FORMA_TO<>'Разовые работы' "
    "Order By DATA_ISPRAVNOSTI Desc, ID Desc";

Planning planning(db::Connection& connection, db::DataSet& row) {
    const std::string type = row.field(reestr::aircraftType).asText();
    db::DataSet plans(connection, planningTypeSql, db::DataSet::Traversal::forwardOnly);
    plans.setParam("pTIP", type);
    plans.open();
    if (plans.eof()) return {};

    const db::Field since = row.field(reestr::overhaulDate);
    db::DataSet forms(connection, since.isNull() ? lastFormEverSql : lastFormSinceSql,
                      db::DataSet::Traversal::forwardOnly);
    forms.setParam("pTIP", type);
    forms.setParam("pTAIL", row.field(reestr::tailNumber).asText());
    if (!since.isNull()) forms.setParam("pSINCE", since.asDate());
    forms.open();
    if (forms.eof()) return {true, std::nullopt};
    const db::Field airframe = forms.field(1);
    return {true,
            PerformedForm{airframe.isNull() ? Minutes() : operating_time::parseHoursColonTwoDigits(airframe.asText()),
                          forms.field(0).asText() == lightFormName}};
}

Minutes workedMinutes(db::DataSet& row, int column) {
    const db::Field worked = row.field(column);
    return worked.isNull() ? Minutes() : operating_time::parseStoredTime(worked.asText());
}

// The periodic form: half an interval after a "Ф-1", a whole one after a
// periodic form, or at the next multiple of the interval.
std::optional<Minutes> periodicFormDue(const DueInputs& in) {
    const int interval = in.programme.interval;
    const Planning plan = planning(in.connection, in.row);
    if (!plan.fromLastForm) return hours(static_cast<long long>(interval) * (in.formsDone + 1LL));
    if (!plan.last) return Minutes();
    return plan.last->airframe + hours(plan.last->light ? interval / 2 : interval);
}

// The "Ф-1" between two periodic forms: late in the cycle the overhaul may
// come first, and the forms completed are counted from the hours.
std::optional<Minutes> lightFormDue(const DueInputs& in) {
    const Programme& p = in.programme;
    const auto dueAfter = [&](int periodicDone) {
        return hours(static_cast<long long>(p.interval) * periodicDone + p.lightInterval);
    };
    const int lastSteps = p.cycleSteps / 2 - 2;
    int periodicDone = in.formsDone;
    Minutes due;
    if (lastSteps <= in.formsDone) {
        const auto dateOf = [&](std::string_view column) {
            const db::Field field = in.row.field(column);
            return field.isNull() ? std::nullopt : std::optional<Date>(field.asDate());
        };
        // A date that is not set comes before every date.
        if (dateOf("DATA_TO") < dateOf("DATA_F1")) return std::nullopt;
        periodicDone = GetSledTO(in.connection, in.row, reestr::hoursSinceOverhaul, reestr::aircraftType);
        due = dueAfter(periodicDone);
        if (hours(in.row.field("MEGREMONTNY_CHAS").asInt()) < due) return std::nullopt;
    }
    const Planning plan = planning(in.connection, in.row);
    if (!plan.fromLastForm) return dueAfter(periodicDone);
    if (!plan.last) return due;
    return plan.last->airframe + hours(plan.last->light ? p.interval : p.lightInterval);
}

std::optional<Minutes> engineFormDue(const DueInputs& in) {
    return hours(static_cast<long long>(in.programme.interval) * (in.formsDone + 1LL));
}

// Where the interval of the "Ф-1" equals the periodic one, the parity of the
// caller's count column (its number, not its value) chooses the tolerance.
int periodicTolerance(const Programme& p, int countColumn) {
    if (p.lightInterval == p.interval && (countColumn + 1) % 2 != 0) return p.toleranceBefore;
    return p.toleranceAfter;
}
int lightTolerance(const Programme& p, int) { return p.toleranceBefore; }
int engineTolerance(const Programme& p, int) { return p.toleranceAfter; }

const FormDue periodicForm{forms::aircraftProgramme, periodicTolerance, periodicFormDue};
const FormDue lightForm{forms::aircraftProgramme, lightTolerance, lightFormDue};
const FormDue engineForm{forms::engineProgramme, engineTolerance, engineFormDue};

std::string timeToForm(db::Connection& connection, db::DataSet& row, Columns columns, const FormDue& form) {
    const Programme programme = forms::readProgramme(connection, form.programme, row.field(columns.type).asText());
    const Minutes worked = workedMinutes(row, columns.hours);
    const std::optional<Minutes> due = form.due({connection, row, programme, row.field(columns.count).asInt()});
    if (!due) return FunOstatChas(row, reestr::overhaulInterval, reestr::hoursSinceOverhaul);
    return forms::timeLeftText(*due, worked, form.tolerance(programme, columns.count));
}

// Whole hours: the text without its last three characters; none below zero.
long long wholeHours(db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    if (field.isNull()) return 0;
    const std::string text = field.asText();
    const std::size_t length = characterCount(text);
    if (length < 3) throw ConversionError(text, "operating time");
    const long long whole = parseInt(characters(text, 0, length - 3));
    return whole < 0 ? 0 : whole;
}

int intervalsCompleted(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn,
                       const forms::ProgrammeKind& kind) {
    const int interval = forms::divisibleInterval(connection, kind, row.field(typeColumn).asText());
    return static_cast<int>(wholeHours(row, hoursColumn) / interval);
}

}  // namespace

std::string GetOstatTO(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn, int countColumn) {
    return timeToForm(connection, row, {hoursColumn, typeColumn, countColumn}, periodicForm);
}

std::string GetOstatF1(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn, int countColumn) {
    return timeToForm(connection, row, {hoursColumn, typeColumn, countColumn}, lightForm);
}

std::string GetOstatTODv(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn,
                         int countColumn) {
    return timeToForm(connection, row, {hoursColumn, typeColumn, countColumn}, engineForm);
}

int GetSledTO(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn) {
    return intervalsCompleted(connection, row, hoursColumn, typeColumn, forms::aircraftProgramme);
}

int GetSledTODv(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn) {
    return intervalsCompleted(connection, row, hoursColumn, typeColumn, forms::engineProgramme);
}

}  // namespace mxbook
