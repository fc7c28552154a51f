// The units an aircraft carries, and the spare ones off the aircraft.
#pragma once

#include "aircraft.h"

namespace mxbook::fleet {

// Hours between oil changes of every oil-filled unit the fleet tracks.
inline constexpr int oilLimitHours = 500;

// General components on the airframe and on the engines, APU-mounted units,
// and the rotor system and other units that the aircraft type carries.
void writeUnits(Generation& generation, const AircraftPlan& plan);

// Units in the warehouse, the repair pool, in repair and under claim, and an
// engine in repair that still carries its units.
void writeOffAircraftUnits(Generation& generation, const AircraftProfile& profile);

// The rotor system and other units, one routine over a table of kinds
// (rotor_units.cpp); parts of the two above.
void writeRotorUnits(Generation& generation, const AircraftPlan& plan);
void writeOffAircraftRotorUnits(Generation& generation, const AircraftProfile& profile);

}  // namespace mxbook::fleet
