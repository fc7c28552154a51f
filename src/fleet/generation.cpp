#include "generation.h"

#include <algorithm>
#include <cstdio>

#include "mxbook/host.h"
#include "mxbook/operating_time.h"

namespace mxbook::fleet {

Generation::Generation(db::Connection& connection_, const FleetOptions& options_, Date today_)
    : connection(connection_),
      batch(connection_),
      options(options_),
      today(today_),
      historyStart(today_.addYears(-options_.years)),
      random(options_.seed) {}

TableWriter& Generation::table(const std::string& name) {
    auto found = tables_.find(name);
    if (found == tables_.end()) found = tables_.emplace(name, TableWriter(connection, name)).first;
    return found->second;
}

std::string Generation::nextSerial() {
    // 7919 is prime to 9 000 000, so the serials run through every 7-digit number once.
    const long long n = 1000000 + (static_cast<long long>(++serials_) * 7919) % 9000000;
    return std::to_string(n);
}

Wear randomWear(Random& random, int totalLimit, int overhaulLimit, int unit) {
    const int interval = overhaulLimit > 0 ? overhaulLimit : totalLimit;
    const int share = random.chance(0.08) ? random.between(85, 99) : random.between(0, 75);
    Wear wear;
    wear.sinceOverhaul = interval * share / 100 * unit + (unit > 1 ? random.between(0, unit - 1) : 0);
    const int possible = overhaulLimit > 0 ? std::min(3, totalLimit / overhaulLimit - 1) : 0;
    wear.overhauls = possible > 0 ? random.between(0, possible) : 0;
    wear.sinceNew = wear.sinceOverhaul + wear.overhauls * overhaulLimit * unit;
    return wear;
}

std::string hoursText(int minutes) { return operating_time::format(Minutes(minutes)); }

std::string calendarLimit(int years, int months) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d.%02d", years, months);
    return text;
}

Time durationTime(int minutes) { return Time::fromHms(minutes / 60, minutes % 60); }

}  // namespace mxbook::fleet
