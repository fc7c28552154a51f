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

// Engines (DVIGATEL rows, all columns) on and off aircraft. The engine's
// counters (hours 11, 12; take-off 26, nominal 25, maximum 39 and further
// hours 28 where booked; cycles 27, 31; starts 42, 43) gain (installing) or
// lose (removing) what the aircraft flew since `date` in the columns of the
// engine's place (23: 0, 1, 2; any other counts as 0). Both read the tail
// from the engine's location (13): the caller sets it to the new aircraft
// before installing and keeps the old one until the removal has run. The
// row is put in edit mode; the caller posts it. `tailNumber` of the
// installation finds the aircraft's register row (its overhaul date).
void FunDvigatelMoveToVS(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                         const std::string& tailNumber, Date date);
void FunDvigatelMoveFromVS(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                           Date date);

// A general component (AGREGAT row) onto the engine `engineSerial` at
// `tailNumber`, and off the engine carrying it (its 29) at `tailNumber`:
// as FunMoveAgregatToVS and FunMoveAgregatFromVS with the engine's counters
// and place in place of the aircraft's.
void FunMoveAgregatToDvig(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                          const std::string& engineSerial, Date date);
void FunMoveAgregatFromDvig(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                            const std::string& tailNumber, Date date);
// Takes off a unit on the engine what the engine flew since `date` on its
// aircraft (the engine's 13), as the engine leaves it.
void FunCorrectAgrDvigFromVS(db::Connection& connection, db::DataSet& engineRow, db::DataSet& row,
                             const std::string& aircraftType, Date date);

// The units on an engine follow it. Each walk stores all its units together
// or none (in the caller's unit of work when one is open).
//
// The units at the engine's location (13) mounted on it (its serial, 3): their
// oil time brought to `date` where they take it from the engine, their
// location, installation date and the date a year on set, and, where
// `removalFlag` is not 0, what the engine flew since `date` taken off those
// counted directly.
void FunAgregatMoveDvigatel(db::Connection& connection, db::DataSet& engineRow, const std::string& aircraftType,
                            Date date, const std::string& newLocation, int removalFlag);
// Every unit of the engine re-pointed to the aircraft `tailNumber` of
// `aircraftType` (mind the order): its reference entry for that type where
// there is one, the aircraft's owner where the owner groups differ, its type,
// location and date. DataError for a tail not in the register.
void FunAgregatCorrectTipNumVSDvigatel(db::Connection& connection, const std::string& aircraftType,
                                       const std::string& engineSerial, Date date, const std::string& tailNumber);
// The engine's units at `oldLocation` moved to `newLocation` as of `date`.
void FunAgregatCorrectScladDvigatel(db::Connection& connection, const std::string& engineSerial, Date date,
                                    const std::string& oldLocation, const std::string& newLocation);
// Deletes the engine's units held in the repair pool ("Ремфонд").
void FunAgregatDeleteDvigatel(db::Connection& connection, const std::string& engineSerial);

// A new ETAAGREGAT entry for the group of units like the row's (same name,
// drawing number, reference key and aircraft type), and the group's rows
// pointed at it; stored together, on the row's connection.
void FunAddIDNameAgregat(db::DataSet& row);

}  // namespace mxbook
