// The card builders as the library exports them: each finds its unit rows
// and runs its card; and the cards as a shell or host names them.
#include <algorithm>
#include <cctype>

#include "card.h"
#include "mxbook/error.h"
#include "mxbook/report.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

using report::build;

// An ID given as text goes into the query as a number, so only digits are
// taken (a sign allowed).
std::int64_t decimalId(const std::string& id) {
    std::size_t digits = id.size();
    const bool signedText = !id.empty() && (id[0] == '-' || id[0] == '+');
    if (signedText) --digits;
    const bool allDigits = std::all_of(id.begin() + (signedText ? 1 : 0), id.end(),
                                       [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
    if (digits == 0 || digits > 18 || !allDigits) throw ConversionError(id, "unit ID");
    return std::stoll(id);
}

}  // namespace

void FunMainReportAgregatPodrobno(db::Connection& connection, int id) {
    build(connection, report::componentCard(), {{"id", id}});
}

void FunMainReportVtulkaNVPodrobno(db::Connection& connection, int id) {
    build(connection, report::hubCard(), {{"id", id}});
}

void FunMainReportPodveskaPodrobno(db::Connection& connection, int id) {
    build(connection, report::slingCard(), {{"id", id}});
}

void FunMainReportLebedkaPodrobno(db::Connection& connection, int id) {
    build(connection, report::winchCard(), {{"id", id}});
}

void FunMainReportAgrVSUPodrobno(db::Connection& connection, const std::string& id) {
    build(connection, report::apuUnitCard(), {{"id", decimalId(id)}});
}

void FunMainReportAgrZCUPodrobno(db::Connection& connection, const std::string& id) {
    build(connection, report::zcuCard(), {{"id", decimalId(id)}});
}

void FunMainReportVSUPodrobno(db::Connection& connection, const std::string& aircraftType, const std::string& place,
                              const std::string& serial) {
    build(connection, report::apuCard(), {{"type", aircraftType}, {"place", place}, {"serial", serial}},
          {aircraftType, place});
}

void FunMainReportVozdVintPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location) {
    build(connection, report::propellerCard(), {{"type", aircraftType}, {"location", location}, {"serial", serial}});
}

void FunMainReportReductorPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location) {
    build(connection, report::gearboxCard(), {{"location", location}, {"serial", serial}}, {aircraftType, location});
}

void FunMainReportDvigatelPodrobno(db::Connection& connection, const std::string& aircraftType,
                                   const std::string& serial, const std::string& location) {
    build(connection, report::engineCard(), {{"type", aircraftType}, {"location", location}, {"serial", serial}});
}

void FunMainReportHvostVintPodrobno(db::Connection& connection, const std::string& aircraftType,
                                    const std::string& hubSerial, const std::string& location) {
    build(connection, report::tailRotorCard(), {{"type", aircraftType}, {"location", location}, {"serial", hubSerial}});
}

void FunReportReestrPodrobno(db::Connection& connection, const std::string& aircraftType,
                             const std::string& tailNumber, int withForms) {
    build(connection, report::registerCard(), {{"type", aircraftType}, {"tail", tailNumber}},
          {aircraftType, tailNumber, std::to_string(withForms)});
}

const std::vector<ReportCard>& reportCards() {
    static const std::vector<ReportCard> cards{
        {"component", "FunMainReportAgregatPodrobno", "REPORT_AGREGAT_PODROBNO", "ID", "a general component"},
        {"hub", "FunMainReportVtulkaNVPodrobno", "REPORT_AGREGAT_PODROBNO", "ID", "a main-rotor hub"},
        {"sling", "FunMainReportPodveskaPodrobno", "REPORT_PODVESKA_PODROBNO", "ID", "an external cargo sling"},
        {"winch", "FunMainReportLebedkaPodrobno", "REPORT_LEBEDKA_PODROBNO", "ID", "a winch"},
        {"apu-unit", "FunMainReportAgrVSUPodrobno", "REPORT_AGR_VSU_PODROBNO", "ID", "a unit mounted on an APU"},
        {"zcu", "FunMainReportAgrZCUPodrobno", "REPORT_ZCU_PODROBNO", "ID", "a ZCU unit"},
        {"apu", "FunMainReportVSUPodrobno", "REPORT_VSU_PODROBNO", "TYPE PLACE SERIAL",
         "every APU with the serial number at the place"},
        {"propeller", "FunMainReportVozdVintPodrobno", "REPORT_VTULKA_VV_PODR", "TYPE SERIAL LOCATION", "a propeller"},
        {"gearbox", "FunMainReportReductorPodrobno", "REPORT_REDUCTOR_PODROBNO", "TYPE SERIAL LOCATION",
         "every gearbox with the serial number at the location"},
        {"tail-rotor", "FunMainReportHvostVintPodrobno", "REPORT_HVOST_VINT_PODR", "TYPE HUB_SERIAL LOCATION",
         "a tail rotor, by its hub's serial number"},
        {"engine", "FunMainReportDvigatelPodrobno", "REPORT_DVIGATEL_PODROBNO", "TYPE SERIAL LOCATION", "an engine"},
        {"register", "FunReportReestrPodrobno", "REPORT_REESTR_PODROBNO", "TYPE TAIL [--forms]",
         "an aircraft in the register"},
    };
    return cards;
}

const ReportCard* findReportCard(std::string_view name) {
    for (const ReportCard& card : reportCards())
        if (card.command == name || card.function == name) return &card;
    return nullptr;
}

FilledReport readReport(db::Connection& connection, std::string_view table) {
    const auto& cards = reportCards();
    if (std::none_of(cards.begin(), cards.end(), [&](const ReportCard& card) { return card.table == table; }))
        throw ArgumentError("no report table " + std::string(table));
    db::DataSet rows(connection, "select * from " + std::string(table) + " order by ID",
                     db::DataSet::Traversal::forwardOnly);
    rows.open();
    FilledReport filled;
    for (int column = 0; column < rows.fieldCount(); ++column) filled.columns.push_back(rows.fieldInfo(column).name);
    for (; !rows.eof(); rows.next()) {
        auto& cells = filled.rows.emplace_back();
        for (int column = 0; column < rows.fieldCount(); ++column) {
            const db::Field field = rows.field(column);
            cells.push_back(field.isNull() ? std::nullopt : std::optional(field.asText()));
        }
    }
    return filled;
}

}  // namespace mxbook
