// Oil time: how long the oil of a unit has run since it was last changed,
// how much of its limit is left, and at what operating time it is due.
//
// The oil time is not kept per unit; it is summed from the flight records of
// the aircraft given by tail number (airborne time, plus ground time where
// the aircraft type counts it for the kind of unit), on top of the oil time
// stored on the unit row where the row has one. Every function only reads
// and returns text: operating time ("7:05") or, for APU starts, a count.
//
// Errors: ConversionError for a text that is not operating time;
// ArgumentError for a column outside the row or an unknown kind of unit;
// db::Error passes. "Today" is the host's.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"
#include "mxbook/operating_time.h"

namespace mxbook {

// The oil time of a unit kind on aircraft `tailNumber` from `changeDate` up to
// today. `kind` is one of the ground switches "ZEMLIA_AGREGATY" (airframe
// units), "ZEMLIA_AGR_DVIG" (engine-mounted units), "ZEMLIA_DVIGATEL"
// (engines), "ZEMLIA_REDUCTOR" (the main gearbox); the engine kinds count the
// engine at `enginePosition` (0 to 2; any other value counts position 0).
// "00:00" when the aircraft is not registered or has not flown since its repair.
std::string FunNarMaslo(db::Connection& connection, const std::string& tailNumber, const std::string& kind,
                        Date changeDate, int enginePosition);
// The APU's running time since `changeDate` (with its generator-mode time for
// the "ТА-14-130"), and its starts since then; "00:00" and "0" as above.
std::string FunNarMasloVSUChas(db::Connection& connection, const std::string& tailNumber, Date changeDate);
std::string FunNarMasloVSUZapusk(db::Connection& connection, const std::string& tailNumber, Date changeDate);

// The oil time of a unit row on aircraft `tailNumber`: its stored oil time
// plus the flights from its oil change (or its installation, if later) up to
// `endDate`. The stored text as it stands (or "00:00") when the aircraft is
// not registered or has not flown since its repair.
// A general component (AGREGAT: 21 stored, 22 changed, 26 installed; 28 and
// 29 say whether and on which engine it is mounted).
std::string FunNarMasloAgregat(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                               Date endDate);
// A tail rotor (HVOSTOVOY_VINT: 39 stored, 40 changed, 17 installed).
std::string FunNarMasloHvostVint(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                 Date endDate);
// A main-rotor hub (VTULKA_NV: either oil block, `baseColumn` stored and
// `dateColumn` changed, 21/22 or 43/44; 26 installed).
std::string FunNarMasloVtNV(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                            int baseColumn, int dateColumn, Date endDate);

// The oil time left of `limitHours` after the oil time in `column` of the
// row: "H:MM", or "00:00" when nothing is left or the column is empty.
std::string FunOstatMaslo(db::DataSet& row, int column, int limitHours);
// The same after the oil time of the matching function above; "0:00" when
// nothing is left.
std::string FunOstatMasloAgregat(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                 int limitHours, Date endDate);
std::string FunOstatMasloHvostVint(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                   int limitHours, Date endDate);
std::string FunOstatMasloVtNV(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                              int limitHours, int baseColumn, int dateColumn, Date endDate);

// The operating time at which the oil is due: `currentTime` plus what is
// left of `limitHours` after the oil time, "0:00" below zero. The oil time is
// the text of `column` (empty text when the column is empty), or given.
std::string FunNarPlanSniatMaslo(db::DataSet& row, int column, const std::string& currentTime, int limitHours);
std::string FunNarPlanSniatMasloAgregat(const std::string& oilTime, const std::string& currentTime, int limitHours);
std::string FunNarPlanSniatMasloHvostVint(const std::string& oilTime, const std::string& currentTime,
                                          int limitHours);

}  // namespace mxbook

namespace mxbook {

// The oil of one oil-filled unit (or one oil block of it) on an aircraft.
struct OilState {
    std::string tailNumber;
    std::string kind;  // "агрегат", "втулка НВ", "втулка НВ, блок 2", "хвостовой винт", "ВСУ"
    std::string unit;  // its name (a tail rotor's drawing number)
    std::string serial;
    std::optional<Date> changed;    // the last oil change
    std::string oilTime;            // since the change, stored time included
    std::string starts = {};        // an APU's starts since the change
    std::optional<int> limitHours = {};  // none: no limit booked
    std::optional<Minutes> left = {};    // below zero when overdue; none without a limit
};

// Every oil-tracked component, hub (each oil block), tail rotor and APU of
// the aircraft in the register (or of one of them), counted up to today: the
// units nearest their oil change first, overdue ones before all, those
// without a limit last. An aircraft not in the register raises DataError.
std::vector<OilState> fleetOilState(db::Connection& connection, const std::optional<std::string>& tailNumber);

}  // namespace mxbook
