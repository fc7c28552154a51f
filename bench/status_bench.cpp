// `mxbook status` over the whole fleet, run in process as the program runs
// it, and its floor: per aircraft the select of each kind's units, and per
// derived limit of a unit the carrier query the calculation runs.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

#include "benchmarks.h"
#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/remaining_life.h"

namespace mxbook::bench {

namespace {

struct StatusTable {
    const char* table;
    const char* location;
    const char* flag;  // null: never derived
    int derivedLimits;
};

constexpr StatusTable tables[] = {
    {"DVIGATEL", "GDE_STOIT", nullptr, 0},
    {"REDUCTOR", "GDE_STOIT", nullptr, 0},
    {"VSU", "MESTO_USTANOVKI", nullptr, 0},
    {"AGREGAT", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_AGREGATA", 2},
    {"VTULKA_NV", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_AGREGATA", 2},
    {"LOPAST", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_LOPAST", 2},
    {"HVOSTOVOY_VINT", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_VINTA", 2},
    {"LEBEDKA", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_LEBEDKI", 2},
    {"PODVESKA", "GDE_STOIT", nullptr, 0},
    {"SHLANG", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_SHLANG", 1},
    {"ZCU", "GDE_STOIT", "NEPRIAMOI_UCHET_NAR_ZCU", 2},
    {"VOZDUSHNY_VINT", "GDE_STOIT", nullptr, 0},
};

struct Step {
    int statement;  // 0..tables-1: a kind's units; then register, engine
    std::vector<std::string> params;
};

// A private Firebird server on loopback serving a copy of the fleet, started
// by the first benchmark that needs it and stopped at the end of the run.
class PrivateServer {
public:
    static constexpr const char* password = "mxbook-bench";
    static constexpr int port = 3055;

    ~PrivateServer() {
        if (started_) std::system(("'" + script() + "' stop '" + folder_ + "'").c_str());
    }

    // The location of the fleet's copy on the server; empty when the server cannot start.
    std::string serve(const std::string& fleetPath) {
        if (!started_) {
            const std::string start =
                "'" + script() + "' start '" + folder_ + "' " + std::to_string(port) + " " + password + " >/dev/null";
            if (std::system(start.c_str()) != 0) return {};
            started_ = true;
            std::filesystem::copy_file(fleetPath, folder_ + "/fleet.fdb",
                                       std::filesystem::copy_options::overwrite_existing);
            setenv("MXBOOK_DB_PASSWORD", password, 1);
        }
        return "localhost/" + std::to_string(port) + ":" + folder_ + "/fleet.fdb";
    }

private:
    static std::string script() { return MXBOOK_BENCH_DIR "/private_server.sh"; }
    std::string folder_ = (std::filesystem::temp_directory_path() / "mxbook-bench-server").string();
    bool started_ = false;
};

PrivateServer& privateServer() {
    static PrivateServer server;
    return server;
}

}  // namespace

void registerServerStatus(Fleet& fleet, RatioReporter& reporter) {
    benchmark::RegisterBenchmark(
        "FleetStatus/server",
        [&fleet](benchmark::State& state) {
            const std::string location = privateServer().serve(fleet.path);
            if (location.empty()) {
                state.SkipWithError("no private Firebird server (make bench installs firebird3.0-server)");
                return;
            }
            cli::Options options;
            options.format = cli::Format::csv;
            options.database = location;
            for (auto _ : state) {
                std::ostringstream out;
                cli::runStatus(out, options, std::nullopt, cli::StatusOrder::urgency);
                benchmark::DoNotOptimize(out.str().size());
            }
        })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(2);
    reporter.compare("fleet status: server on loopback / embedded", "FleetStatus/server", "FleetStatus");
}

void registerStatus(Fleet& fleet) {
    benchmark::RegisterBenchmark("FleetStatus", [&fleet](benchmark::State& state) {
        cli::Options options;
        options.format = cli::Format::csv;
        options.database = fleet.path;
        for (auto _ : state) {
            std::ostringstream out;
            cli::runStatus(out, options, std::nullopt, cli::StatusOrder::urgency);
            benchmark::DoNotOptimize(out.str().size());
        }
    })->Unit(benchmark::kMillisecond);

    auto steps = std::make_shared<std::vector<Step>>();
    const int registerQuery = static_cast<int>(std::size(tables)), engineQuery = registerQuery + 1;
    db::DataSet aircraft(fleet.connection, "select BORTOVOI_NOMER from REESTR order by BORTOVOI_NOMER");
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) {
        const std::string tail = aircraft.field(0).asText();
        for (int t = 0; t < static_cast<int>(std::size(tables)); ++t) {
            const StatusTable& kind = tables[t];
            steps->push_back({t, {tail}});
            if (!kind.flag) continue;
            db::DataSet units(fleet.connection, std::string("select * from ") + kind.table + " where " + kind.location +
                                                    " = " + db::quoted(tail) + " and " + kind.flag + " = 1");
            for (units.open(); !units.eof(); units.next()) {
                const bool engine =
                    std::string(kind.table) == "AGREGAT" && !units.field(28).isNull() && units.field(28).asInt() == 1;
                for (int n = 0; n < kind.derivedLimits; ++n)
                    steps->push_back(engine ? Step{engineQuery, {tail, units.field(29).asText()}}
                                            : Step{registerQuery, {units.field(1).asText(), tail}});
            }
        }
    }
    benchmark::RegisterBenchmark("FleetStatus/floor", [&fleet, steps](benchmark::State& state) {
        std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
        for (const StatusTable& kind : tables)
            statements.push_back(std::make_unique<RawDatabase::Statement>(
                fleet.raw,
                std::string("select * from ") + kind.table + " where " + kind.location + " = ? order by ID"));
        statements.push_back(std::make_unique<RawDatabase::Statement>(
            fleet.raw,
            "Select NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR Where TIP_VS=? And "
            "BORTOVOI_NOMER=? Order By ID"));
        statements.push_back(std::make_unique<RawDatabase::Statement>(
            fleet.raw, "Select * From DVIGATEL Where GDE_STOIT=? And ZAVODSKOI_NOMER=? Order By ID"));
        for (auto _ : state) {
            int rows = 0;
            for (const Step& step : *steps)
                rows += statements[static_cast<std::size_t>(step.statement)]->run(step.params);
            benchmark::DoNotOptimize(rows);
        }
    })->Unit(benchmark::kMillisecond);
}

}  // namespace mxbook::bench
