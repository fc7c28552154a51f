// mxbook's benchmarks: every operation beside the floor of the SQL it runs,
// on cached fleets of 100 aircraft (ten years and one year of flights).
#include <benchmark/benchmark.h>

#include <iostream>
#include <memory>

#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/host.h"

namespace mxbook::bench {

Fleet::Fleet(const std::string& path_) : path(path_), raw(path_) {
    connection.open("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + path + ";ctype=WIN1251");
}

}  // namespace mxbook::bench

int main(int argc, char** argv) {
    using namespace mxbook;
    ScopedHost installed(std::make_shared<bench::QuietHost>());

    benchmark::Initialize(&argc, argv);
    bench::Fleet tenYears(bench::cachedFleet(bench::tenYearFleet()));
    bench::Fleet oneYear(bench::cachedFleet(bench::oneYearFleet()));
    bench::RatioReporter reporter;
    bench::registerRemainingLife(tenYears);
    bench::registerFlights(oneYear, tenYears, reporter);
    bench::registerStatus(tenYears);
    bench::registerServerStatus(tenYears, reporter);
    bench::registerBlobs();
    bench::registerMoves(tenYears);
    bench::registerEngineMoves(tenYears);
    bench::registerOil(tenYears);
    bench::registerReports(tenYears);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
