// How much life remains to a unit, and how units without a meter of their
// own take their operating time from the aircraft or engine that carries
// them. Every function works on the caller's data set opened on all columns
// of a unit table (or of REESTR) and positioned on the unit's row, addresses
// its columns by position, changes nothing and returns text.
//
// Null inputs give each function's neutral value; a text that is not the
// operating time, count, date or calendar limit it should be raises
// ConversionError; database failures raise db::Error. "Today" is the host's.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"
#include "mxbook/date.h"
#include "mxbook/operating_time.h"

namespace mxbook {

// The warehouse, the repair pool, repair and warranty claim: a unit whose
// location is one of these is on no aircraft.
inline constexpr std::string_view offAircraftLocations[] = {"Склад", "Ремфонд", "Ремонт", "Рекламация"};
bool isOffAircraft(std::string_view location);

// The unit's operating time derived from its carrier: its own counter (column
// `ownColumn`) plus what the carrier ran since the unit was installed, never
// below zero ("0:00", or "0" for counts).
//
// General components (AGREGAT) counted in hours or landings, on the airframe
// or an engine; empty text for any other counter or carrier kind, and the
// own counter as stored when the carrying engine is not found.
std::string FunNepNarAgr(db::Connection& connection, db::DataSet& row, int ownColumn);
std::string FunNepNarLopast(db::Connection& connection, db::DataSet& row, int ownColumn);
std::string FunNepNarZCU(db::Connection& connection, db::DataSet& row, int ownColumn);
// Hoses always count their own hours in column 12.
std::string FunNepNarShlang(db::Connection& connection, db::DataSet& row);
std::string FunNepNarHvostVint(db::Connection& connection, db::DataSet& row, int ownColumn);
std::string FunNepNarLebedka(db::Connection& connection, db::DataSet& row, int ownColumn);

// A winch cable's hoists: its own count (column `cyclesColumn`) plus the
// hoists of the aircraft's flights since the later of the winch's columns 6
// and 17 up to `endDate`; column 29 counts hoists with people, any other
// with cargo.
std::string FunNepNarTros(db::Connection& connection, db::DataSet& row, const std::string& tailNumber, int cyclesColumn,
                          Date endDate);
// The hoists left of the cable's limit (column `limitColumn`), derived as
// FunNepNarTros does when the winch is on an aircraft and accounted indirectly.
std::string FunOstatTros(db::Connection& connection, db::DataSet& row, int usedColumn, int limitColumn, Date endDate);

// Hours left of the limit (whole hours, column `limitColumn`) after the hours
// used (column `usedColumn`, derived from the carrier where the unit's kind
// and flag say so): "H:MM", or "00:00" when nothing is left.
std::string FunOstatChas(db::DataSet& row, int limitColumn, int usedColumn);
// The count left of the limit: decimal text, "0" when nothing is left.
std::string FunOstatInteger(db::DataSet& row, int limitColumn, int usedColumn);

// Calendar life left of a limit "YY.MM" counted from a date: "1г. 8м.", or "0".
std::string FunOstatLet(db::DataSet& row, int calendarLimitColumn, int startDateColumn);
// Calendar time run since a date: "2г. 6м.", or "0".
std::string FunNarabLet(db::DataSet& row, int startDateColumn);
// The word for the whole years in a number of months: "г. " or "л. ".
std::string FunBookYear(int months);
// The date ("dd.mm.yy") by which the unit must come off: its calendar limits
// counted from manufacture and from its last overhaul; empty when it has none.
std::string FunDataSniatia(db::DataSet& row, int lastOverhaulDateColumn, int overhaulCountColumn,
                           int manufactureDateColumn, int intervalLimitColumn, int totalLimitColumn);
// The same date itself, for a caller that writes it in another form; none
// when FunDataSniatia gives empty text.
std::optional<Date> removalDate(db::DataSet& row, int lastOverhaulDateColumn, int overhaulCountColumn,
                                int manufactureDateColumn, int intervalLimitColumn, int totalLimitColumn);

// What is left of one limit before it is written as text: negative when the
// limit is overrun (a derived unit may be overdue in its derived value
// alone), std::nullopt when the limit or the used column is null. Hours as
// FunOstatChas takes them; counts as each pair of FunOstatIntegerMin (a
// derived general component without a test on its booked count first, 0 for
// one whose flag is neither 0 nor 1); calendar months as FunOstatLet.
std::optional<Minutes> remainingMinutes(db::DataSet& row, int limitColumn, int usedColumn);
std::optional<long long> remainingCount(db::DataSet& row, int limitColumn, int usedColumn);
std::optional<int> remainingMonths(db::DataSet& row, int calendarLimitColumn, int startDateColumn);

// The tighter of two limits of one measure (total life and life between
// overhauls, say): the smaller remainder, an overrun included, written as the
// single-limit function writes it. A pair with a null column does not count;
// neither pair counting gives "00:00" or "0". The hours and calendar
// variants take no second pair when a column number of it is -1; counts
// always read both pairs and clear each one's overrun before comparing.
std::string FunOstatChasMin(db::DataSet& row, int limitA, int usedA, int limitB, int usedB);
std::string FunOstatIntegerMin(db::DataSet& row, int limitA, int usedA, int limitB, int usedB);
std::string FunOstatLetMin(db::DataSet& row, int calendarLimitA, int startDateA, int calendarLimitB, int startDateB);

// Units that follow the counters of the APU (VSU) or the engine (DVIGATEL)
// carrying them, found by its serial number: the unit's own counter (column
// `ownColumn`) plus what the carrier ran since the unit was installed, never
// below zero. Counter kinds: 0 hours ("H:MM"), 1 starts, 2 air bleeds (APUs
// only), as decimal text.
//
// APU units (AGR_VSU) keep the APU's readings at installation in 27, 28 and
// 29; APUs of the ТА-14-130 family count their hours in SUMMA_PPR. An APU not
// found, a null APU counter or a null reading give "00:00" for hours and "0"
// for counts; a kind other than 0 to 2 of an APU found gives empty text.
std::string FunPerNarAgrVSU(db::Connection& connection, db::DataSet& row, const std::string& apuSerial, int ownColumn,
                            int kind);
// Hours left of an APU unit's limit; any non-zero `deriveFlag` takes the used
// hours from the APU (on the row's own connection): "H:MM" or "00:00".
std::string FunOstatChasAgrVSU(db::DataSet& row, const std::string& apuSerial, int limitColumn, int usedColumn,
                               int deriveFlag);
// Starts (kind 1) or air bleeds (2) left: with a non-zero `deriveFlag` the
// derived count is subtracted where the booked count leaves something of the
// limit. Decimal text, "0" when nothing is left.
std::string FunOstatIntegerAgrVSU(db::DataSet& row, const std::string& apuSerial, int limitColumn, int usedColumn,
                                  int kind, int deriveFlag);
// Engine-mounted general components (AGREGAT) keep the engine's hours or
// starts at installation in 16; a null one raises ConversionError. An engine
// not found, or a kind other than 0 and 1, gives "0".
std::string FunPerNarAgrDvig(db::Connection& connection, db::DataSet& row, const std::string& engineSerial,
                             int ownColumn, int kind);

// Removal planning: the reading of the aircraft's own counter since its last
// overhaul (register NARABOTKA_PPR_CHASOV, or NARABOTKA_PPR_POSADKI for a
// general component counted in landings, column 24 = 1) at which the unit
// must come off: that reading now plus what the unit has left of its
// governing limit (first-overhaul limit while never overhauled, else between
// overhauls, else its total life). The aircraft is the register's first row
// of `aircraftType` and `tailNumber`. "H:MM" (or decimal landings), never
// below "0:00" / "0"; without a register row, or (for the general
// components, hubs and blades) with a null register reading, limit or used
// value, the member's starting value: "0:00" for engines, gearboxes and
// propellers, else empty. A member that tests no nulls raises
// ConversionError on one. The used value is derived from the carrier (as
// FunNepNar*) when the unit's flag is 1, wherever the unit is; else stored.
std::string FunPPRPlanDliaSniat(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                const std::string& tailNumber);  // AGREGAT
std::string FunPPRPlanDliaSniatVtNV(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                    const std::string& tailNumber);  // VTULKA_NV
std::string FunPPRPlanDliaSniatZCU(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                   const std::string& tailNumber);
std::string FunPPRPlanDliaSniatDvigRed(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                       const std::string& tailNumber);  // DVIGATEL, REDUCTOR
std::string FunPPRPlanDliaSniatHvostVint(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                         const std::string& tailNumber);
std::string FunPPRPlanDliaSniatLopast(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                      const std::string& tailNumber);
std::string FunPPRPlanDliaSniatLebedka(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                       const std::string& tailNumber);
std::string FunPPRPlanDliaSniatVint(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                    const std::string& tailNumber);  // VOZDUSHNY_VINT
std::string FunPPRPlanDliaSniatShlang(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                                      const std::string& tailNumber);
// The member for the unit's `table`; ArgumentError for a table without one.
std::string plannedRemovalReading(db::Connection& connection, db::DataSet& row, std::string_view table,
                                  const std::string& aircraftType, const std::string& tailNumber);
// The planned reading from a given carrier counter ("H:MM"): the limit (whole
// hours, `limitColumn`) less the used hours (`usedColumn`, stored) plus the
// counter, "0:00" below zero. No query, no null test: a null raises
// ConversionError. Note the order: used column first.
std::string FunNarPlanSniatDvig(db::DataSet& row, int usedColumn, int limitColumn, const std::string& carrierCounter);

// While one lives on a connection, the derivations and removal plans on it
// (and on data sets opened on it) read the register, the engines and the
// APUs from one read of each table, made when first needed, instead of one
// query per unit: for walks over many units, as the status and the reports
// make. They give what the queries would give on the tables as that read
// found them; what changes meanwhile is not seen. A second snapshot on the
// same connection, while one lives, changes nothing.
class CarrierSnapshot {
public:
    explicit CarrierSnapshot(db::Connection& connection);
    ~CarrierSnapshot();
    CarrierSnapshot(const CarrierSnapshot&) = delete;
    CarrierSnapshot& operator=(const CarrierSnapshot&) = delete;

    class Tables;

private:
    const void* attachment_;
    std::unique_ptr<Tables> tables_;
};

}  // namespace mxbook
