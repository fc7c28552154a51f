// The rule every carried unit follows, whatever carries it (an aircraft, an
// engine, an APU): its own counter plus what the carrier ran since the unit
// was installed, never below zero, so that a carrier's counter corrected
// below the unit's reading gives nothing rather than a negative time.
#pragma once

#include <algorithm>

#include "mxbook/operating_time.h"

namespace mxbook::remaining {

constexpr Minutes carriedHours(Minutes own, Minutes carrierNow, Minutes atInstallation) {
    return (own + (carrierNow - atInstallation)).atLeastZero();
}

constexpr long long carriedCount(long long own, long long carrierNow, long long atInstallation) {
    return std::max(own + carrierNow - atInstallation, 0LL);
}

}  // namespace mxbook::remaining
