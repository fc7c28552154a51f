// The fleet status: each unit's limits, through the remaining-life
// functions, for each kind of unit on each aircraft.
#include <algorithm>
#include <iterator>
#include <numeric>
#include <unordered_map>

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/status.h"
#include "mxbook/text.h"
#include "form_lines.h"
#include "register/known_tails.h"
#include "units/unit_kinds.h"

namespace mxbook {

namespace {

using units::Limit;
using units::Measure;
using units::UnitKind;

// Before an overdue amount: a minus sign, not a hyphen.
const std::string minusSign = "\u2212";

struct Aircraft {
    std::string tail;
    std::string type;
};

// What is left of one limit, and the share of the limit that is, below zero
// when it is overdue.
struct Left {
    StatusValue value;
    double share;
};

int monthNumber(Date date) { return date.year() * 12 + date.month(); }

// The library's signed remainders, so that a unit past its limit shows by
// how much, its derived operating time included; the texts of what is left
// are the remaining-life functions' own.
std::optional<Left> leftOf(db::DataSet& row, const UnitKind& kind, const Limit& limit, bool countsLandings) {
    const int usedColumn = units::usedColumn(kind, limit);
    if (limit.measure == Measure::calendar) {
        const std::optional<int> left = remainingMonths(row, limit.limitColumn, usedColumn);
        if (!left) return std::nullopt;
        // Months count as the library counts them: by month, the days aside.
        const int total = *left + monthNumber(host().today()) - monthNumber(row.field(usedColumn).asDate());
        return Left{{*left < 0 ? minusSign + std::to_string(-*left) + " мес."
                               : FunOstatLet(row, limit.limitColumn, usedColumn)},
                    total > 0 ? static_cast<double>(*left) / total : 0.0};
    }
    const db::Field limitField = row.field(limit.limitColumn);
    if (limitField.isNull() || limitField.asInt() <= 0) return std::nullopt;
    const long long total = limitField.asInt();
    if (limit.measure == Measure::count || countsLandings) {
        const std::optional<long long> left = remainingCount(row, limit.limitColumn, usedColumn);
        if (!left) return std::nullopt;
        std::string text = *left < 0 ? minusSign + std::to_string(-*left) : std::to_string(*left);
        return Left{{std::move(text), *left}, static_cast<double>(*left) / static_cast<double>(total)};
    }
    const std::optional<Minutes> left = remainingMinutes(row, limit.limitColumn, usedColumn);
    if (!left) return std::nullopt;
    return Left{{*left < Minutes() ? minusSign + operating_time::format(Minutes() - *left)
                                   : operating_time::formatOrDoubleZero(*left)},
                static_cast<double>(left->count()) / static_cast<double>(total * 60)};
}

// An other limit's remainder names the limit and says its unit: "циклы 120",
// "срок 1г. 5м.", "сумма 35:00 ч".
std::string otherText(const Limit& limit, const std::string& left, bool countsLandings) {
    const bool hours = limit.measure == Measure::hours && !countsLandings;
    return std::string(limit.name) + " " + left + (hours ? " ч" : "");
}

// A booked count is a number; booked hours stay text.
StatusValue countValue(std::string text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return {std::move(text)};
    const long long count = parseInt64(text);
    return {std::move(text), count};
}

// The aircraft's hours (or landings) at which the unit comes off; empty for
// a unit on an engine, whose removal follows the engine's, and for one whose
// governing limit or used value is not booked.
StatusValue removalReading(db::Connection& connection, db::DataSet& unit, const UnitKind& kind,
                           const Aircraft& aircraft, bool onEngine, bool landings) {
    if (!kind.removalPlanned || onEngine) return {};
    std::string reading;
    try {
        reading = plannedRemovalReading(connection, unit, kind.table, aircraft.type, aircraft.tail);
    } catch (const ConversionError&) {
        return {};  // a null the plan cannot use; a malformed value failed the remainders before
    }
    return landings ? countValue(std::move(reading)) : StatusValue{std::move(reading)};
}

bool isOne(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return !field.isNull() && field.asInt() == 1;
}

UnitStatus unitStatus(db::Connection& connection, db::DataSet& unit, const UnitKind& kind, const Aircraft& aircraft) {
    const auto& component = units::componentColumns;
    const bool landings = kind.countsByCounterKind && isOne(unit, component.counterKind.position);
    const bool onEngine = kind.countsByCounterKind && isOne(unit, component.carrierKind.position);
    UnitStatus status{.tailNumber = aircraft.tail,
                      .kind = std::string(kind.label),
                      .unit = unit.field(kind.name.position).asText(),
                      .serial = unit.field(kind.serial.position).asText(),
                      .place = onEngine ? "двигатель " + unit.field(component.carrierSerial.position).asText()
                                        : aircraft.tail,
                      .countsLandings = landings,
                      .booked = {},
                      .lifeLeft = {},
                      .overhaulLeft = {},
                      .otherLeft = {},
                      .comesOffAt = {},
                      .tightestShare = 1.0,
                      .tightestLimit = {}};
    std::string booked = unit.field(units::usedColumn(kind, kind.limits.front())).asText();
    status.booked = landings ? countValue(std::move(booked)) : StatusValue{std::move(booked)};
    bool limited = false;
    for (const Limit& limit : kind.limits) {
        auto left = leftOf(unit, kind, limit, landings);
        if (!left) continue;
        if (!limited || left->share < status.tightestShare) {
            status.tightestShare = left->share;
            status.tightestLimit = std::string(limit.name);
            limited = true;
        }
        switch (limit.role) {
        case units::Role::life: status.lifeLeft = std::move(left->value); break;
        case units::Role::overhaul: status.overhaulLeft = std::move(left->value); break;
        case units::Role::other:
            status.otherLeft +=
                (status.otherLeft.empty() ? "" : "; ") + otherText(limit, left->value.text, landings);
            break;
        }
    }
    status.comesOffAt = removalReading(connection, unit, kind, aircraft, onEngine, landings);
    return status;
}

// A location as "=" compares it with a tail number: trailing blanks aside.
std::string_view tailKey(std::string_view location) {
    const auto end = location.find_last_not_of(' ');
    return location.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

// The units of a kind on the aircraft of the status, in one statement for the
// whole fleet rather than one per aircraft, each added to its aircraft's
// lines in the order of its ID. The fleet's statement joins the register
// (an index lookup per aircraft) and leaves the order to the lines: sorting
// whole rows costs the engine more than the lookups.
// A unit's line: its ID, and where its status stands among all computed.
struct Line {
    int id;
    std::size_t at;
};

void addUnits(db::Connection& connection, const UnitKind& kind, const std::vector<Aircraft>& fleet, bool oneAircraft,
              std::vector<UnitStatus>& states, std::vector<std::vector<Line>>& byAircraft) {
    const std::string table(kind.table), location(kind.location.name);
    db::DataSet units(connection,
                      oneAircraft ? "select * from " + table + " where " + location + " = :tail order by ID"
                                  : "select u.* from (select distinct BORTOVOI_NOMER from REESTR) r join " + table +
                                        " u on u." + location + " = r.BORTOVOI_NOMER",
                      db::DataSet::Traversal::forwardOnly);
    if (oneAircraft) units.setParam("tail", fleet.front().tail);
    std::unordered_map<std::string_view, std::size_t> aircraftOf;
    for (std::size_t i = 0; i < fleet.size(); ++i) aircraftOf.try_emplace(tailKey(fleet[i].tail), i);
    std::vector<std::vector<Line>> found(fleet.size());
    for (units.open(); !units.eof(); units.next()) {
        const std::string at = units.field(kind.location.position).asText();
        const auto aircraft = aircraftOf.find(tailKey(at));
        if (aircraft == aircraftOf.end()) continue;
        found[aircraft->second].push_back({units.field(0).asInt(), states.size()});
        states.push_back(unitStatus(connection, units, kind, fleet[aircraft->second]));
    }
    for (std::size_t i = 0; i < fleet.size(); ++i) {
        auto& lines = found[i];
        std::sort(lines.begin(), lines.end(), [](const Line& x, const Line& y) { return x.id < y.id; });
        // A tail the register holds twice, blanks apart, joins a unit twice: it is shown once.
        const auto sameUnit = [](const Line& x, const Line& y) { return x.id == y.id; };
        lines.erase(std::unique(lines.begin(), lines.end(), sameUnit), lines.end());
        byAircraft[i].insert(byAircraft[i].end(), lines.begin(), lines.end());
    }
}

// The register's aircraft by tail number, each tail once with its first entry's type.
std::vector<Aircraft> registeredAircraft(db::Connection& connection) {
    std::vector<Aircraft> fleet;
    db::DataSet aircraft(connection, "select BORTOVOI_NOMER, TIP_VS from REESTR order by BORTOVOI_NOMER, ID",
                         db::DataSet::Traversal::forwardOnly);
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) {
        if (!fleet.empty() && fleet.back().tail == aircraft.field(0).asText()) continue;
        fleet.push_back({aircraft.field(0).asText(), aircraft.field(1).asText()});
    }
    return fleet;
}

}  // namespace

std::vector<UnitStatus> fleetStatus(db::Connection& connection, const std::optional<std::string>& tailNumber,
                                    StatusOrder order) {
    std::vector<Aircraft> fleet = registeredAircraft(connection);
    if (tailNumber) {
        std::vector<std::string> tails;
        for (const Aircraft& each : fleet) tails.push_back(each.tail);
        requireRegistered(tails, *tailNumber);
        std::erase_if(fleet, [&](const Aircraft& each) { return each.tail != *tailNumber; });
    }
    // Every unit's carrier from one read of each carrier table, not a query per unit.
    const CarrierSnapshot carriers(connection);
    std::vector<UnitStatus> states;
    std::vector<std::vector<Line>> byAircraft(fleet.size());
    for (const UnitKind& kind : units::unitKinds())
        addUnits(connection, kind, fleet, tailNumber.has_value(), states, byAircraft);
    // Each aircraft's next forms before its units.
    for (std::size_t i = 0; i < fleet.size(); ++i) {
        std::vector<Line> forms;
        for (UnitStatus& form : status::formLines(connection, fleet[i].tail, fleet[i].type)) {
            forms.push_back({0, states.size()});
            states.push_back(std::move(form));
        }
        byAircraft[i].insert(byAircraft[i].begin(), forms.begin(), forms.end());
    }
    // By aircraft and kind; urgency puts the tightest of them all first.
    std::vector<std::size_t> shown;
    shown.reserve(states.size());
    for (const auto& lines : byAircraft)
        for (const Line& line : lines) shown.push_back(line.at);
    if (order == StatusOrder::urgency)
        std::stable_sort(shown.begin(), shown.end(),
                         [&](std::size_t a, std::size_t b) { return states[a].tightestShare < states[b].tightestShare; });
    std::vector<UnitStatus> lines;
    lines.reserve(shown.size());
    for (std::size_t at : shown) lines.push_back(std::move(states[at]));
    return lines;
}

}  // namespace mxbook
