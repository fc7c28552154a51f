// The flight time an aircraft flew from a date up to today, which a move
// carries into (or out of) a unit's counters.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "mxbook/data/connection.h"
#include "mxbook/date.h"
#include "mxbook/operating_time.h"

namespace mxbook::movements {

struct CarriedTime {
    Minutes minutes;
    int landings = 0;
};

// Which answer to the question about a flight on the day of the move leaves
// that day out: an installation's No, a removal's Yes.
enum class LeaveDayOutOn { no, yes };

struct FlightSpan {
    std::string tailNumber;
    Date start;     // the first day carried
    Date moveDate;  // a first flight on this day asks whether to count it
    // The aircraft type whose ground setting applies; the first flight's when empty.
    std::optional<std::string> groundType;
    LeaveDayOutOn leaveOutOn = LeaveDayOutOn::no;
    // The question's text for a flight on `date` of an aircraft of `type`;
    // asked at most once.
    std::function<std::string(Date date, const std::string& type)> question;
};

// Nothing when the aircraft did not fly from `start` to today; otherwise
// the minutes in the air (plus the weighted ground minutes where the type
// counts them, rounded per flight) and the landings, read from the flight
// records in order of date and ID. A flight on the move date is counted or
// left out as the user answers.
std::optional<CarriedTime> carriedFlightTime(db::Connection& connection, const FlightSpan& span);

}  // namespace mxbook::movements
