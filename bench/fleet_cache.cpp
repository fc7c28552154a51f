#include "fleet_cache.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>

#include "mxbook/data/connection.h"
#include "mxbook/schema.h"
#include "benchmarks.h"

namespace mxbook::bench {

namespace fs = std::filesystem;

fleet::FleetOptions tenYearFleet() {
    fleet::FleetOptions options = fleet::benchmarkFleet();
    options.today = benchmarkToday;
    return options;
}

fleet::FleetOptions oneYearFleet() {
    fleet::FleetOptions options = tenYearFleet();
    options.years = 1;
    return options;
}

// Raised whenever the generator writes other rows or columns, so that a
// cached fleet is never one an older generator made.
constexpr int generatorEdition = 2;

fs::path benchCacheFolder() {
    const char* configured = std::getenv("MXBOOK_BENCH_CACHE");
    const char* home = std::getenv("HOME");
    const fs::path folder = configured ? fs::path(configured) : fs::path(home ? home : "/tmp") / ".cache/mxbook-bench";
    fs::create_directories(folder);
    return folder;
}

std::string cachedFleet(const fleet::FleetOptions& options) {
    const fs::path folder = benchCacheFolder();
    const auto schemaHash = std::hash<std::string_view>{}(schema::ddl(schema::Database::main));
    const std::string name = "fleet-s" + std::to_string(options.seed) + "-a" + std::to_string(options.aircraft) + "-y" +
                             std::to_string(options.years) + "-c" + std::to_string(options.componentsPerAircraft) +
                             "-d" + std::to_string(options.today.serial()) + "-h" +
                             std::to_string(schemaHash % 1000000) + "-g" + std::to_string(generatorEdition) + ".fdb";
    const fs::path path = folder / name;
    if (fs::exists(path)) return path.string();
    std::cerr << "generating " << path.string() << " (once)..." << std::endl;
    const fs::path partial = folder / (name + ".partial");
    fs::remove(partial);
    {
        db::Connection connection;
        schema::createDatabase(connection, schema::Database::main, partial.string());
        fleet::generateFleet(connection, options);
    }
    fs::rename(partial, path);
    return path.string();
}

}  // namespace mxbook::bench
