// The fleets the benchmarks run on, generated once and kept, named by their
// seed, size and the schema they were made with.
#pragma once

#include <string>

#include "mxbook/date.h"
#include "mxbook/fleet.h"

namespace mxbook::bench {

// The day the cached fleets end on and the library takes as today: fixed, so
// that a cached fleet and a new run agree.
inline const Date benchmarkToday = Date::fromYmd(2026, 11, 1);

fleet::FleetOptions tenYearFleet();
fleet::FleetOptions oneYearFleet();

// The path of the fleet's database, generated first when it is not cached
// (under $MXBOOK_BENCH_CACHE, else ~/.cache/mxbook-bench).
std::string cachedFleet(const fleet::FleetOptions& options);

}  // namespace mxbook::bench
