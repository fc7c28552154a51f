// Moving units on and off aircraft: their counters brought to the date of
// the move with the flight time carried since, and reference entries split
// off for groups of like units.
#pragma once

#include <string>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"

namespace mxbook {

// Installs the unit of `row` (a row of AGREGAT, all columns) on the
// aircraft `tailNumber` as of `date`: writes the aircraft's reading at
// installation (16) and adds the flight time flown since `date` to the
// unit's counters (17, 18) and oil time (21). The row is put in edit mode;
// the caller posts it, and sets where the unit stands. Every value is
// computed before one is written: on an error the row is as it was.
void FunMoveAgregatToVS(db::Connection& connection, db::DataSet& row, const std::string& tailNumber, Date date);

// Takes the unit of `row` off the aircraft `tailNumber` as of `date`: takes
// the flight time flown since `date` off its counters (17, 18) and oil time
// (21). `aircraftType` serves only the question about a flight on that day.
void FunMoveAgregatFromVS(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                          const std::string& tailNumber, Date date);

// A new ETAAGREGAT entry for the group of units like the row's (same name,
// drawing number, reference key and aircraft type), and the group's rows
// pointed at it; stored together, on the row's connection.
void FunAddIDNameAgregat(db::DataSet& row);

}  // namespace mxbook
