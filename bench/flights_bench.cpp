// The flight time carried to a unit installed 30 days ago: the flights of one
// aircraft over the last 30 days, summed as a move sums them. In a fleet of
// ten years it must cost what it costs in a fleet of one: the query reads
// only the range.
#include <benchmark/benchmark.h>

#include <cmath>

#include "benchmarks.h"
#include "fleet_cache.h"
#include "mxbook/data.h"
#include "mxbook/format.h"

namespace mxbook::bench {

namespace {

const std::string tail = "RA-21001";

std::string flightsSql() {
    return "SELECT Data_poleta, ID, Tip_VS, Bortovoi_nomer, Na_zemle, V_vozduhe, Kol_vo_posadok FROM Spravka WHERE "
           "(((Spravka.Data_poleta) BETWEEN '" +
           sqlDate(benchmarkToday.addDays(-30)) + "' AND '" + sqlDate(benchmarkToday) +
           "') AND ((Spravka.Bortovoi_nomer)=" + db::quoted(tail) + ")) ORDER BY Data_poleta, ID;";
}

void carried(benchmark::State& state, Fleet& fleet) {
    for (auto _ : state) {
        db::DataSet flights(fleet.connection, flightsSql());
        long long minutes = 0, landings = 0;
        for (flights.open(); !flights.eof(); flights.next()) {
            minutes +=
                flights.field(5).asTime().wholeMinutes() + std::llround(flights.field(4).asTime().wholeMinutes() * 0.5);
            landings += flights.field(6).isNull() ? 0 : flights.field(6).asInt();
        }
        benchmark::DoNotOptimize(minutes + landings);
    }
}

void carriedFloor(benchmark::State& state, Fleet& fleet) {
    RawDatabase::Statement flights(fleet.raw, flightsSql());
    for (auto _ : state) benchmark::DoNotOptimize(flights.run());
}

}  // namespace

void registerFlights(Fleet& oneYear, Fleet& tenYears, RatioReporter& reporter) {
    benchmark::RegisterBenchmark("CarriedFlightTime30Days/1year", [&](benchmark::State& s) { carried(s, oneYear); });
    benchmark::RegisterBenchmark("CarriedFlightTime30Days/1year/floor",
                                 [&](benchmark::State& s) { carriedFloor(s, oneYear); });
    benchmark::RegisterBenchmark("CarriedFlightTime30Days/10years", [&](benchmark::State& s) { carried(s, tenYears); });
    benchmark::RegisterBenchmark("CarriedFlightTime30Days/10years/floor",
                                 [&](benchmark::State& s) { carriedFloor(s, tenYears); });
    reporter.compare("30-day sum: 10-year fleet / 1-year fleet", "CarriedFlightTime30Days/10years",
                     "CarriedFlightTime30Days/1year");
}

}  // namespace mxbook::bench
