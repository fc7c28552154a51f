// What the benchmarks share: a cached fleet opened through the library and
// bare through the client.
#pragma once

#include <filesystem>
#include <string>

#include "mxbook/data/connection.h"
#include "ratios.h"
#include "raw_firebird.h"

namespace mxbook::bench {

struct Fleet {
    explicit Fleet(const std::string& path);
    std::string path;
    db::Connection connection;
    RawDatabase raw;
};

void registerRemainingLife(Fleet& fleet);
void registerFlights(Fleet& oneYear, Fleet& tenYears, RatioReporter& reporter);
void registerStatus(Fleet& fleet);
void registerServerStatus(Fleet& fleet, RatioReporter& reporter);
void registerBlobs();
void registerMoves(Fleet& fleet);
void registerEngineMoves(Fleet& fleet);
void registerOil(Fleet& fleet);
void registerReports(Fleet& fleet);

// Where generated databases are kept between runs.
std::filesystem::path benchCacheFolder();

}  // namespace mxbook::bench
