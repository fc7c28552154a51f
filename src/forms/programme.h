// The maintenance programme a form's due point is counted from, and the one
// rule that turns a due point into what is left: an aircraft's programme
// (PTO_FORMY) and an engine's (PTO_FORMY_DVIG) differ only in where they
// keep the same facts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/operating_time.h"

namespace mxbook::forms {

// Positions in the register row (REESTR) that the forms read.
namespace reestr {
constexpr int aircraftType = 1;
constexpr int tailNumber = 3;
constexpr int overhaulDate = 8;       // performed forms count from it
constexpr int overhaulInterval = 18;  // whole hours between overhauls
constexpr int hoursSinceOverhaul = 22;
constexpr int calendarFormStart = 77;
}  // namespace reestr

// Where a programme table keeps the interval, the tolerance, and for an
// aircraft the "Ф-1" interval and the cycle; -1: the table has none.
struct ProgrammeKind {
    std::string_view table;
    std::string_view selectRow;       // parameter :pTIP, the aircraft type
    std::string_view selectInterval;  // the interval alone, :pTIP
    int intervalColumn;
    int toleranceColumn;
    bool toleranceIsPair;  // "20%10" text, or whole hours
    int lightIntervalColumn;
    int cycleStepsColumn;
};

extern const ProgrammeKind aircraftProgramme;
extern const ProgrammeKind engineProgramme;

// A type's programme as values; the defaults stand when the type has none.
struct Programme {
    bool found = false;
    int interval = 150;                  // hours between periodic forms (VREMIA_FORMA)
    int lightInterval = 75;              // hours between "Ф-1" forms (VREMIA_F1)
    int cycleSteps = 0;                  // COL_VO_FORMA
    int toleranceBefore = 20;            // hours: the numbers before and after "%"
    int toleranceAfter = 20;             // (an engine's one number is both)
    std::vector<std::string> stepNames;  // CASE0, CASE1, ... as far as the table has them
};

// The first programme row of the type, by ID. Null numbers read as 0; a
// tolerance text without "%" between two integers raises ConversionError.
Programme readProgramme(db::Connection& connection, const ProgrammeKind& kind, const std::string& aircraftType);

// The type's interval in hours, for a division: DataError naming the type
// and the table when there is no programme row or its interval is not positive.
int divisibleInterval(db::Connection& connection, const ProgrammeKind& kind, const std::string& aircraftType);

// The name of form step `index` (column "CASE" + index); DataError naming
// the type when the programme has no such column.
const std::string& stepName(const Programme& programme, long long index, const std::string& aircraftType);

// What is left before a form falls due at `due` with `done` behind it, or of
// its tolerance once it is due: the one rule of hours and landings alike.
struct LeftBeforeForm {
    enum class State { ahead, withinTolerance, overrun } state;
    long long amount;  // left before the form, or of the tolerance
};
LeftBeforeForm leftBeforeForm(long long due, long long done, long long tolerance);

// "H:MM" before the form, "+H:MM" of the tolerance, or "00:00".
std::string timeLeftText(Minutes due, Minutes worked, int toleranceHours);
// "3" before the form, "+3" of the tolerance, or "0".
std::string landingsLeftText(long long due, long long done, long long tolerance);

constexpr Minutes hours(long long count) { return Minutes(count * 60); }

}  // namespace mxbook::forms
