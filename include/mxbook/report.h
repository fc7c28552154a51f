// The detailed report cards of single units. Each builder empties its report
// table, then writes one row per unit it finds: the stored values copied,
// dates and calendar limits made display text, and what is left of each
// limit, the removal date, the operating time and the oil time computed. The
// host prints the table with its own template; `readReport` gives it back.
//
// A builder that fails (a database error, a malformed stored text) leaves
// its report table empty, never half-filled, and raises; one that finds no
// unit leaves it empty too.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mxbook/data/connection.h"

namespace mxbook {

// A general component (AGREGAT) and a main-rotor hub (VTULKA_NV), by ID:
// REPORT_AGREGAT_PODROBNO.
void FunMainReportAgregatPodrobno(db::Connection& connection, int id);
void FunMainReportVtulkaNVPodrobno(db::Connection& connection, int id);
// An external sling (PODVESKA) and a winch (LEBEDKA), by ID.
void FunMainReportPodveskaPodrobno(db::Connection& connection, int id);
void FunMainReportLebedkaPodrobno(db::Connection& connection, int id);
// A unit on an APU (AGR_VSU) and a ZCU unit, by ID written in decimal
// (ConversionError for any other text).
void FunMainReportAgrVSUPodrobno(db::Connection& connection, const std::string& id);
void FunMainReportAgrZCUPodrobno(db::Connection& connection, const std::string& id);
// Every APU of the type at the place with the serial number: mind the order.
void FunMainReportVSUPodrobno(db::Connection& connection, const std::string& aircraftType,
                              const std::string& place, const std::string& serial);
// The first propeller, and every gearbox, with the serial number at the
// location; the gearbox is found whatever its type, which is only written.
void FunMainReportVozdVintPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location);
void FunMainReportReductorPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location);
// The first engine of the type with the serial number at the location.
void FunMainReportDvigatelPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location);
// The first tail rotor of the type whose hub has the serial number, at the location.
void FunMainReportHvostVintPodrobno(db::Connection& connection, const std::string& aircraftType,
                                    const std::string& hubSerial, const std::string& location);

// The register card of one aircraft (REPORT_REESTR_PODROBNO): its register
// row with its lives and what is left of them; with `withForms` not 0, also
// its state and where it stands in its cycle of maintenance forms.
void FunReportReestrPodrobno(db::Connection& connection, const std::string& aircraftType,
                             const std::string& tailNumber, int withForms);

// A card as a shell or a host names it.
struct ReportCard {
    std::string_view command;    // "component"
    std::string_view function;   // "FunMainReportAgregatPodrobno"
    std::string_view table;      // the report table it fills
    std::string_view arguments;  // "ID", "TYPE PLACE SERIAL", ...
    std::string_view about;      // one line: the unit it writes up
};
const std::vector<ReportCard>& reportCards();
// By command or exported name; none when there is no such card.
const ReportCard* findReportCard(std::string_view name);

// A report table as filled: its column names in position order, its rows in
// ID order, NULL as none.
struct FilledReport {
    std::vector<std::string> columns;
    std::vector<std::vector<std::optional<std::string>>> rows;
};
// ArgumentError for a table that is not one of the cards'.
FilledReport readReport(db::Connection& connection, std::string_view table);

}  // namespace mxbook
