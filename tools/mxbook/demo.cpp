#include <unistd.h>

#include <iostream>

#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/error.h"
#include "mxbook/fleet.h"
#include "mxbook/format.h"

namespace mxbook::cli {

namespace {

constexpr const char* overviewSql =
    "select r.TIP_VS, r.BORTOVOI_NOMER, r.NARABOTKA_PPR_CHASOV, r.NARABOTKA_PPR_POSADKI, r.DATA_POLETA, "
    "(select count(*) from DVIGATEL d where d.GDE_STOIT = r.BORTOVOI_NOMER), "
    "(select count(*) from AGREGAT a where a.GDE_STOIT = r.BORTOVOI_NOMER), "
    "(select count(*) from SPRAVKA s where s.BORTOVOI_NOMER = r.BORTOVOI_NOMER) "
    "from REESTR r order by r.ID";

}  // namespace

int runDemo(std::ostream& out, const Options& options, const std::string& root) {
    runInit(out, options);
    db::Connection main;
    openMainDatabase(main, options);
    db::DataSet register_(main, "select count(*) from REESTR");
    register_.open();
    if (register_.field(0).asInt() > 0)
        throw Error("the main database in " + root + " holds aircraft already; the demo fills an empty one");
    // Progress is for a person watching; a script reading the output gets none.
    fleet::Progress progress;
    if (isatty(STDERR_FILENO))
        progress = [](std::string_view stage, double done) {
            std::cerr << "\r" << stage << ": " << static_cast<int>(done * 100) << "%   " << std::flush;
        };
    const fleet::FleetSummary summary = fleet::generateFleet(main, fleet::demoFleet(), progress);
    if (progress) std::cerr << "\r" << std::string(30, ' ') << "\r";
    if (options.format == Format::table)
        out << "\nThe main database holds " << summary.aircraft << " aircraft of " << summary.aircraftTypes
            << " types, " << summary.engines << " engines, " << summary.gearboxes << " gearboxes, " << summary.apus
            << " APUs, " << summary.units << " units and " << summary.flights << " flight records.\n\n";

    Listing listing({{"Type"},
                     {"Tail"},
                     {"Hours PPR", true},
                     {"Landings", true},
                     {"Engines", true},
                     {"Components", true},
                     {"Flights", true},
                     {"Last flight"}});
    db::DataSet aircraft(main, overviewSql);
    for (aircraft.open(); !aircraft.eof(); aircraft.next())
        listing.add({aircraft.field(0).asText(), aircraft.field(1).asText(), aircraft.field(2).asText(),
                     aircraft.field(3).asText(), aircraft.field(5).asText(), aircraft.field(6).asText(),
                     aircraft.field(7).asText(), formatDate(aircraft.field(4).asDate(), "dd.mm.yyyy")});
    listing.print(out, options.format);
    if (options.format == Format::table)
        out << "\nThe databases are in " << root << "; try:\n  mxbook status --root " << root << " RA-21001\n";
    return 0;
}

}  // namespace mxbook::cli
