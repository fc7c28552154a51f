// Scheduled maintenance forms: how much operating time is left until an
// aircraft's or engine's next periodic form or "Ф-1", how many periodic
// intervals it has completed, which form is next by name, the landings left
// until the landing-counted form and the days left until the calendar form.
//
// Time left is "H:MM"; "+H:MM" when the form is due and that much of its
// tolerance is left; "00:00" when the tolerance is used up. Without a
// programme row for the type, a periodic form falls every 150 hours, a
// "Ф-1" every 75, with a tolerance of 20. A programme that cannot be counted
// with (a zero or missing interval where one divides) raises DataError naming
// the type; a malformed operating time raises ConversionError.
#pragma once

#include <string>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

namespace mxbook {

// The aircraft's next periodic form (PTO_FORMY), from its register row: the
// operating time in `hoursColumn`, its type in `typeColumn`, the forms
// performed in `countColumn`.
std::string GetOstatTO(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn,
                       int countColumn);
// The aircraft's next "Ф-1" form.
std::string GetOstatF1(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn,
                       int countColumn);
// The engine's next form (PTO_FORMY_DVIG), from its row.
std::string GetOstatTODv(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn,
                         int countColumn);
// Whole periodic intervals completed by the operating time in `hoursColumn`.
int GetSledTO(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn);
int GetSledTODv(db::Connection& connection, db::DataSet& row, int hoursColumn, int typeColumn);
// The name of the form of the cycle step that holds `hours`.
std::string GetNameF1(db::Connection& connection, const std::string& aircraftType, int hours);
// The name of the aircraft's next form, from the periodic forms it has had.
std::string GetNameSledF1(db::Connection& connection, const std::string& aircraftType, const std::string& tailNumber);
// Landings left until the landing-counted form (every 50, tolerance 5),
// counting the flights after `since` up to today: "3", "+3" or "0".
std::string GetOstatTOPos(db::Connection& connection, const std::string& aircraftType, const std::string& tailNumber,
                          Date since);
// Days left until the calendar form, four months after the date in column 77
// of the register row: "N дн.", or "0 дн.".
std::string GetOstatTOCalendar(db::DataSet& row);

}  // namespace mxbook
