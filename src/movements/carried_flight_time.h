// The flight time an aircraft flew from a date up to today, which a move
// carries into (or out of) a unit's counters: the aircraft's own columns of
// the flight records, or those of one engine place.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "flights/ground_share.h"
#include "mxbook/data/connection.h"
#include "mxbook/date.h"
#include "mxbook/operating_time.h"

namespace mxbook::movements {

struct CarriedTime {
    Minutes minutes;  // in the air, plus the weighted ground time
    int landings = 0; // the aircraft's landings, or the engine place's cycles
    // An engine place's time at take-off, nominal and maximum rating, and its starts.
    Minutes takeOff, nominal, maximal;
    int starts = 0;
};

// Which answer to the question about a flight on the day of the move leaves
// that day out: an installation's No, a removal's Yes.
enum class LeaveDayOutOn { no, yes };

// Whose flights are read, and with what.
enum class FlightsOf {
    aircraft,          // the tail's, in the aircraft's own columns
    enginePlace,       // the tail's, in the columns of the engine's place
    registeredEngine,  // the type's and tail's, with the register row's overhaul date
    mountingEngine,    // the tail's, with the overhaul date of the engine of that serial at the tail
};

struct FlightSpan {
    FlightsOf source = FlightsOf::aircraft;
    std::string tailNumber = {};
    std::string aircraftType = {};  // registeredEngine: the flights' and the register row's type
    std::string engineSerial = {};  // mountingEngine
    int enginePlace = 0;            // 1 and 2 the second and third engine; any other the first
    Date start = {};                // the first day carried
    Date moveDate = {};             // a first flight on this day asks whether to count it
    // The aircraft type whose ground setting applies; the first flight's when none.
    std::optional<std::string> groundType = {};
    flights::GroundColumns ground = flights::airframeUnits;
    LeaveDayOutOn leaveOutOn = LeaveDayOutOn::no;
    // A day left out starts the time from the day after the later of `start`
    // and the first flight's overhaul date, not after `start` alone.
    bool leavingOutStartsAfterOverhaul = false;
    // The question's text for a flight on `date` of an aircraft of `type`.
    std::function<std::string(Date date, const std::string& type)> question = {};
};

// The flights of a span, read once and summed per flight as they count.
class Flights {
public:
    // None when the aircraft did not fly from the span's start to today.
    static std::optional<Flights> read(db::Connection& connection, const FlightSpan& span);

    // What the flights carry: all of them, or, when the first one is on the
    // move date and the answer to the span's question leaves that day out,
    // those from the day after. Each call asks anew, so each unit a walk
    // moves may answer for itself.
    CarriedTime carried(const FlightSpan& span) const;

private:
    struct Flight {
        Date day;
        CarriedTime time;
    };
    CarriedTime since(Date day) const;

    std::vector<Flight> flights_;
    std::string firstType_;
    std::optional<Date> firstOverhaul_;
};

// Nothing when the aircraft did not fly from the span's start to today; what
// the flights carry otherwise, the day of the move counted or left out as the
// user answers.
std::optional<CarriedTime> carriedFlightTime(db::Connection& connection, const FlightSpan& span);

}  // namespace mxbook::movements
