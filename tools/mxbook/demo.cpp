#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

#include "cli_host.h"
#include "commands.h"
#include "databases.h"
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

Listing overview(db::Connection& main) {
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
    return listing;
}

// A path as a shell reads it back: quoted when it holds more than plain characters.
std::string shellWord(const std::string& text) {
    const bool plain = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               std::string_view("/._-+,=@%").find(c) != std::string_view::npos;
    });
    if (plain) return text;
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string asJson(const Listing& listing) {
    std::ostringstream text;
    listing.print(text, Format::json);
    std::string json = text.str();
    while (!json.empty() && json.back() == '\n') json.pop_back();
    return json;
}

}  // namespace

int runDemo(std::ostream& out, const Options& options, RunFolder& folder) {
    std::vector<DatabaseRow> databases = prepareDatabases(options, true);
    raiseProblems(databases);
    DatabaseRow& main = *std::find_if(databases.begin(), databases.end(),
                                      [](const DatabaseRow& row) { return row.database == schema::Database::main; });

    // A missing main database is built whole under another name and put in
    // place at the end: an interrupted demo leaves none half filled.
    std::unique_ptr<NewDatabase> fresh;
    db::Connection existing;
    db::Connection* connection = &existing;
    if (main.state == "missing") {
        fresh = std::make_unique<NewDatabase>(schema::Database::main, main.path);
        connection = &fresh->connection();
    } else {
        openMainDatabase(existing, options);
        db::DataSet register_(existing, "select count(*) from REESTR");
        register_.open();
        if (register_.field(0).asInt() > 0)
            throw Error("the main database " + main.path +
                        " holds aircraft already; the demo fills an empty one (for a new demo, delete " + main.path +
                        " or give another --root)");
    }

    // Progress is for a person watching; a script reading the output gets none.
    fleet::Progress progress;
    if (isatty(STDERR_FILENO))
        progress = [](std::string_view stage, double done) {
            std::cerr << "\r" << stage << ": " << static_cast<int>(done * 100) << "%   " << std::flush;
        };
    const fleet::FleetSummary summary = fleet::generateFleet(*connection, fleet::demoFleet(), progress);
    if (progress) std::cerr << "\r" << std::string(30, ' ') << "\r";
    const Listing aircraft = overview(*connection);
    if (fresh) {
        fresh->publish();
        main.state = "created";
    }
    folder.succeeded();

    const bool leftBehind = folder.fresh() && !folder.removedAtEnd();
    // One document per output: CSV has one table, JSON one object.
    if (options.format == Format::csv) {
        aircraft.print(out, Format::csv);
        if (leftBehind) std::cerr << "mxbook: the demo's databases are in " << folder.shown() << "\n";
        return 0;
    }
    if (options.format == Format::json) {
        out << "{";
        if (!folder.removedAtEnd()) out << "\"folder\": " << jsonString(folder.shown()) << ",\n ";
        out << "\"databases\": " << asJson(databaseListing(databases)) << ",\n \"aircraft\": " << asJson(aircraft)
            << "}\n";
        if (leftBehind) std::cerr << "mxbook: the demo's databases are in " << folder.shown() << "\n";
        return 0;
    }
    databaseListing(databases).print(out, Format::table);
    out << "\nThe main database holds " << summary.aircraft << " aircraft of " << summary.aircraftTypes << " types, "
        << summary.engines << " engines, " << summary.gearboxes << " gearboxes, " << summary.apus << " APUs, "
        << summary.units << " units and " << summary.flights << " flight records.\n\n";
    aircraft.print(out, Format::table);
    if (folder.removedAtEnd())
        out << "\nThe demo ran in " << folder.shown() << ", which is removed now (--temp).\n";
    else
        out << "\nThe databases are in " << folder.shown() << "; try:\n  mxbook status --root "
            << shellWord(folder.shown()) << " RA-21001\n  mxbook oil --root " << shellWord(folder.shown())
            << " RA-21001\n";
    return 0;
}

}  // namespace mxbook::cli
