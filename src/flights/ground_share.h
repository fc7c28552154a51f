// The time a flight record gives a unit: its airborne time in full, and its
// ground running time weighted as the aircraft type says for that kind of
// unit. Movements, oil time and the flight-hours cards count it alike.
#pragma once

#include <string>
#include <string_view>

#include "mxbook/data/connection.h"
#include "mxbook/data/data_set.h"

namespace mxbook::flights {

// A pair of TIPOVYE_DANNYE_VS columns: the switch that counts ground time for
// a kind of unit, and its weight.
struct GroundColumns {
    std::string_view switchColumn;
    std::string_view factorColumn;
};

inline constexpr GroundColumns airframeUnits{"ZEMLIA_AGREGATY", "KOL_VO_ZEMLIA_AGREGATY"};
inline constexpr GroundColumns engineUnits{"ZEMLIA_AGR_DVIG", "KOL_VO_ZEMLIA_AGR_DVIG"};
inline constexpr GroundColumns engines{"ZEMLIA_DVIGATEL", "KOL_VO_ZEMLIA_DVIGATEL"};
inline constexpr GroundColumns gearboxes{"ZEMLIA_REDUCTOR", "KOL_VO_ZEMLIA_REDUCTOR"};

// Ground time counts when the switch is exactly "1", weighted by the factor
// (null: 0).
class GroundShare {
public:
    GroundShare() = default;
    GroundShare(bool counts, double factor) : counts_(counts), factor_(factor) {}

    // The whole minutes one flight's ground time adds: rounded half away
    // from zero, per flight.
    long long of(int groundMinutes) const;

private:
    bool counts_ = false;
    double factor_ = 0;
};

// The share of the first row of the type (by ID); none when the type has no row.
GroundShare groundShare(db::Connection& connection, const std::string& aircraftType, GroundColumns columns);

// A flight record's time column in whole minutes: hours and minutes of the
// time of day it holds, seconds dropped, null 0.
int minutesOf(const db::Field& time);

}  // namespace mxbook::flights
