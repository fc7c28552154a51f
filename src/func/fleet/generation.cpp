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

std::string hoursText(int minutes) { return operating_time::format(Minutes(minutes)); }

std::string calendarLimit(int years, int months) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d.%02d", years, months);
    return text;
}

Time durationTime(int minutes) { return Time::fromHms(minutes / 60, minutes % 60); }

}  // namespace mxbook::fleet
