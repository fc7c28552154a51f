// The fleet status over the whole fleet, computed by the library on a
// connection opened as the program opens it, and its floor: per aircraft,
// each kind's units selected, and each carrier table (the register, the
// engines, the APUs) read once for that aircraft.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "benchmarks.h"
#include "commands.h"
#include "mxbook/data.h"
#include "mxbook/status.h"
#include "units/unit_kinds.h"

namespace mxbook::bench {

namespace {

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

// A line of /proc/self/status in MB: VmRSS now, VmHWM the peak since the last reset.
double residentMb(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(key + ":", 0) == 0) return std::stod(line.substr(key.size() + 1)) / 1024.0;
    return 0.0;
}

// Starts VmHWM again from the resident set now.
void resetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

// The status of the whole fleet, the tightest first, on the program's kind of
// connection to `location`; the peak resident memory it takes over what the
// process held before, the connection's own included.
void measureStatus(benchmark::State& state, const std::string& location) {
    resetPeak();
    const double before = residentMb("VmRSS");
    db::Connection connection;
    cli::Options options;
    options.database = location;
    cli::openMainDatabase(connection, options);
    for (auto _ : state) benchmark::DoNotOptimize(fleetStatus(connection, std::nullopt, StatusOrder::urgency).size());
    state.counters["peak_MB"] = residentMb("VmHWM") - before;
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
            measureStatus(state, location);
        })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(2);
    reporter.compare("fleet status: server on loopback / embedded", "FleetStatus/server", "FleetStatus");
}

void registerStatus(Fleet& fleet) {
    benchmark::RegisterBenchmark("FleetStatus", [&fleet](benchmark::State& state) { measureStatus(state, fleet.path); })
        ->Unit(benchmark::kMillisecond);

    benchmark::RegisterBenchmark("FleetStatus/floor", [&fleet](benchmark::State& state) {
        std::vector<std::string> tails;
        db::DataSet aircraft(fleet.connection, "select distinct BORTOVOI_NOMER from REESTR order by BORTOVOI_NOMER");
        for (aircraft.open(); !aircraft.eof(); aircraft.next()) tails.push_back(aircraft.field(0).asText());

        std::vector<std::unique_ptr<RawDatabase::Statement>> statements;
        const auto selectAt = [&](std::string_view table, std::string_view location, std::string_view order) {
            statements.push_back(std::make_unique<RawDatabase::Statement>(
                fleet.raw, "select * from " + std::string(table) + " where " + std::string(location) + " = ?" +
                               std::string(order)));
        };
        // The units as the status selects them, then the carriers.
        for (const units::UnitKind& kind : units::unitKinds()) selectAt(kind.table, kind.location.name, " order by ID");
        selectAt("REESTR", "BORTOVOI_NOMER", "");
        for (const char* carrier : {"DVIGATEL", "VSU"}) selectAt(carrier, units::unitKind(carrier).location.name, "");
        for (auto _ : state) {
            int rows = 0;
            for (const std::string& tail : tails)
                for (const auto& statement : statements) rows += statement->run({tail});
            benchmark::DoNotOptimize(rows);
        }
    })->Unit(benchmark::kMillisecond);
}

}  // namespace mxbook::bench
