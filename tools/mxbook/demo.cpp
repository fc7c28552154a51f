#include "demo.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <string>

#include "mxbook/mxbook.h"

namespace mxbook::cli {

namespace {

std::filesystem::path freshFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "mxbook-demo-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw Error("cannot create a temporary folder");
    return pattern;
}

// The file names the application gives its four databases.
std::string fileName(schema::Database database) {
    switch (database) {
    case schema::Database::main: return "NALET.FDB";
    case schema::Database::report: return "REPORT.FDB";
    case schema::Database::documentation: return "PTD.FDB";
    case schema::Database::picture: return "PICTURE.FDB";
    }
    return {};
}

constexpr const char* overviewSql =
    "select r.TIP_VS, r.BORTOVOI_NOMER, r.NARABOTKA_PPR_CHASOV, r.NARABOTKA_PPR_POSADKI, r.DATA_POLETA, "
    "(select count(*) from DVIGATEL d where d.GDE_STOIT = r.BORTOVOI_NOMER), "
    "(select count(*) from AGREGAT a where a.GDE_STOIT = r.BORTOVOI_NOMER), "
    "(select count(*) from SPRAVKA s where s.BORTOVOI_NOMER = r.BORTOVOI_NOMER) "
    "from REESTR r order by r.ID";

}  // namespace

int runDemo(std::ostream& out) {
    const std::filesystem::path folder = freshFolder();
    db::Connection main;
    for (schema::Database database : schema::allDatabases) {
        db::Connection other;
        schema::createDatabase(database == schema::Database::main ? main : other, database,
                               (folder / fileName(database)).string());
        out << "Created the " << schema::name(database) << " database: " << (folder / fileName(database)).string()
            << "\n";
    }

    // Progress is for a person watching; a script reading the output gets none.
    const bool terminal = isatty(STDERR_FILENO) != 0;
    fleet::Progress progress;
    if (terminal)
        progress = [](std::string_view stage, double done) {
            std::cerr << "\r" << stage << ": " << static_cast<int>(done * 100) << "%   " << std::flush;
        };
    const fleet::FleetSummary summary = fleet::generateFleet(main, fleet::demoFleet(), progress);
    if (terminal) std::cerr << "\r" << std::string(30, ' ') << "\r";
    out << "\nFilled it with " << summary.aircraft << " aircraft of " << summary.aircraftTypes << " types, "
        << summary.engines << " engines, " << summary.gearboxes << " gearboxes, " << summary.apus << " APUs, "
        << summary.units << " units and " << summary.flights << " flight records.\n\n";

    out << std::left << std::setw(14) << "Type" << std::setw(10) << "Tail" << std::right << std::setw(12) << "Hours PPR"
        << std::setw(10) << "Landings" << std::setw(9) << "Engines" << std::setw(11) << "Components" << std::setw(9)
        << "Flights"
        << "  Last flight\n";
    db::DataSet aircraft(main, overviewSql);
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) {
        // setw counts bytes; Cyrillic letters take two in UTF-8.
        const std::string type = aircraft.field(0).asText();
        int letters = 0;
        for (unsigned char c : type) letters += (c & 0xC0) != 0x80;
        out << type << std::string(static_cast<std::size_t>(std::max(1, 14 - letters)), ' ') << std::left
            << std::setw(10) << aircraft.field(1).asText() << std::right << std::setw(12) << aircraft.field(2).asText()
            << std::setw(10) << aircraft.field(3).asInt() << std::setw(9) << aircraft.field(5).asInt() << std::setw(11)
            << aircraft.field(6).asInt() << std::setw(9) << aircraft.field(7).asInt() << "  "
            << formatDate(aircraft.field(4).asDate(), "dd.mm.yyyy") << "\n";
    }
    out << "\nThe databases stay in " << folder.string() << ".\n";
    return 0;
}

}  // namespace mxbook::cli
