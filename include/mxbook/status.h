// The fleet status: every unit on every aircraft in the register (or on
// one of them) with what is left of each of its limits, as the
// remaining-life functions compute it, and the aircraft's reading at which
// it comes off. Texts are shown as they stand; where a value is a count the
// number comes with its text. "Today" is the host's.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"

namespace mxbook {

// A value's text, and the number it stands for where it is a count.
struct StatusValue {
    std::string text;
    std::optional<long long> number = {};
};

struct UnitStatus {
    std::string tailNumber;
    std::string kind;    // "двигатель", "агрегат", "втулка НВ", ...
    std::string unit;    // its name, or its drawing number
    std::string serial;
    std::string place;   // the tail number, or "двигатель 1234567" for a component on an engine
    bool countsLandings;  // else hours
    StatusValue booked;   // what the unit has booked against its life: hours as text, landings as a count
    // What is left of the life and of the life between overhauls: "900:00",
    // a count, "1г. 5м."; below zero after "−" ("−12:30", "−7", "−3 мес.");
    // empty text without the limit.
    StatusValue lifeLeft;
    StatusValue overhaulLeft;
    std::string otherLeft;   // the other limits, each named: "циклы 120; срок 1г. 5м."; hours end in " ч"
    StatusValue comesOffAt;  // the aircraft's hours (or landings) then; empty where not planned
    double tightestShare;       // the smallest share of a limit left, below zero when overrun; 1 without limits
    std::string tightestLimit;  // that limit's name ("ресурс", "ППР", ...); empty without limits
};

enum class StatusOrder {
    urgency,  // the tightest share first, aircraft and kind keeping their order among equals
    aircraft  // by tail number, then by kind of unit, each kind's units as booked
};

// The units of each aircraft in the register, or of `tailNumber` only,
// whose absence from the register raises DataError naming the nearest
// tails. A tail entered twice in the register counts once, with its first
// entry's type.
std::vector<UnitStatus> fleetStatus(db::Connection& connection, const std::optional<std::string>& tailNumber,
                                    StatusOrder order);

}  // namespace mxbook
