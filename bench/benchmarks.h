// What the benchmarks share: a cached fleet opened through the library and
// bare through the client.
#pragma once

#include <filesystem>
#include <string>

#include "fleet_cache.h"
#include "mxbook/data/connection.h"
#include "mxbook/host.h"
#include "ratios.h"
#include "raw_firebird.h"

namespace mxbook::bench {

// Answers every Yes/No question No, as the console would by policy, without
// writing it out, so that no case's time holds terminal output; counts them.
class QuietHost : public ConsoleHost {
public:
    QuietHost() { setToday(benchmarkToday); }
    Answer messageBox(Window, const std::string&, const std::string&, unsigned flags) override {
        if ((flags & box::buttonsMask) != box::yesNo) return Answer::ok;
        ++asked;
        return Answer::no;
    }
    int asked = 0;
};

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
