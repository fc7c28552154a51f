// What the generated fleet is made of: aircraft types with their engines,
// gearboxes, APUs and rotor units, and the names of the components they carry.
#pragma once

#include <span>
#include <string_view>

#include "mxbook/remaining_life.h"

namespace mxbook::fleet {

// Ground running time counts towards a kind of unit when `counts`; its
// minutes are then weighted by `factor`.
struct GroundRule {
    bool counts = false;
    double factor = 0.0;
};

struct AircraftProfile {
    std::string_view type;
    int typeCode = 0;
    bool helicopter = true;
    std::string_view tailPrefix;
    int engines = 2;
    std::string_view engineModel;
    std::string_view gearboxModel = {};  // empty: no main gearbox
    std::string_view apuModel = {};      // empty: no APU
    int mainBlades = 0;
    int tailBlades = 0;
    bool propeller = false;
    bool winch = false;
    bool sling = false;
    int hoses = 0;
    int zcuUnits = 0;
    // Typical minutes in the air per flight, and flights per flying day.
    int shortestFlight = 20, longestFlight = 180;
    int mostFlightsPerDay = 2;
    // The airframe's counter and the units it carries follow one rule, and an
    // engine and its units another, so that a unit's derived time and the
    // time carried to it from the flights agree.
    GroundRule airframe, engine, gearbox, blades, propellerRule, hosesRule, zcu;
    // Hours of the light form, of the periodic form, and steps in the form cycle.
    int lightFormHours = 50, periodicFormHours = 100, formSteps = 4;
};

std::span<const AircraftProfile> aircraftProfiles();

// A general component as it appears in the catalogue of a type.
struct ComponentModel {
    std::string_view name;
    std::string_view drawingNumber;
    bool countsLandings = false;  // else hours
    int totalLimit = 0;           // hours or landings
    int overhaulLimit = 0;
    bool tracksOil = false;
};

std::span<const ComponentModel> airframeComponents();
std::span<const ComponentModel> engineComponents();
std::span<const ComponentModel> apuComponents();

struct Owner {
    std::string_view name;
    std::string_view key;
    int group;
    bool lessor;
};
std::span<const Owner> owners();

std::span<const std::string_view> oilTypes();
std::span<const std::string_view> routes();
std::span<const std::string_view> commanders();

// The APU model whose generator-mode time adds to its running time.
inline constexpr std::string_view generatorModeApuModel = "ТА-14-130";

}  // namespace mxbook::fleet
