// Installing a unit on an aircraft and taking it off: its counters brought
// to the date of the move with what the aircraft flew since. Every value is
// computed first and written into the row at the end, so that an error
// leaves the row as it was.
#include <climits>
#include <utility>
#include <vector>

#include "carried_flight_time.h"
#include "mxbook/conventions.h"
#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/movements.h"
#include "mxbook/operating_time.h"
#include "mxbook/text.h"
#include "unit_move.h"

namespace mxbook::movements {

namespace {

constexpr const char* registerSql =
    "Select Tip_VS, Bortovoi_nomer, DATA_REMONTA, NARABOTKA_PPR_CHASOV, NARABOTKA_PPR_POSADKI From REESTR "
    "Where ((Bortovoi_nomer)=:pTAIL) Order By ID;";
constexpr const char* overhaulSql = "SELECT DATA_REMONTA FROM Reestr WHERE Bortovoi_nomer=:pTAIL ORDER BY ID;";

namespace aircraft {
constexpr int type = 0, overhaul = 2, hours = 3, landings = 4;
}

constexpr int countsHours = 0, countsLandings = 1;

// The aircraft's register row, as an installation reads it.
struct RegisterEntry {
    std::string type;
    std::optional<Date> overhaul;
    db::Value hours;
    db::Value landings;
};

std::optional<RegisterEntry> registerEntry(db::Connection& connection, const std::string& tail) {
    db::DataSet entry(connection, registerSql);
    entry.setParam("pTAIL", tail);
    entry.open();
    if (entry.eof()) return std::nullopt;
    const db::Field overhaul = entry.field(aircraft::overhaul);
    return RegisterEntry{entry.field(aircraft::type).asText(),
                         overhaul.isNull() ? std::nullopt : std::optional(overhaul.asDate()),
                         entry.field(aircraft::hours).value(), entry.field(aircraft::landings).value()};
}

// Nothing is carried from before the aircraft's overhaul.
Date startOf(Date moveDate, const std::optional<Date>& overhaul) {
    return overhaul && *overhaul > moveDate ? *overhaul : moveDate;
}

// "«name drawing №serial»": the reference entry's name and drawing number,
// "!!!" for both without one.
std::string unitInQuestion(db::Connection& connection, db::DataSet& row, const UnitMove& kind,
                           const char* numberSign) {
    std::string name = "!!!", drawing = "!!!";
    if (!row.field(kind.referenceKey).isNull()) {
        db::DataSet reference(connection, kind.referenceSql);
        reference.setParam("pID_NAME", row.field(kind.referenceKey).asInt());
        reference.open();
        if (!reference.eof()) {
            name = reference.field(kind.referenceName).asText();
            drawing = reference.field(kind.referenceDrawingNumber).asText();
        }
    }
    return "«" + name + " " + drawing + numberSign + row.field(kind.serial).asText() + "»?";
}

// The question about a flight on the day of the move. It names `namedType`
// when given (a removal names the caller's), else the type the flights go by.
std::function<std::string(Date, const std::string&)> question(db::Connection& connection, db::DataSet& row,
                                                               const UnitMove& kind, const std::string& tail,
                                                               const char* numberSign,
                                                               std::optional<std::string> namedType = {}) {
    return [&connection, &row, &kind, tail, numberSign, namedType](Date day, const std::string& type) {
        return shortDate(day, host().formatSettings()) + " " + namedType.value_or(type) + " №" + tail +
               " выполнял полёт.\r\nУчесть налет этого дня в наработке\r\n" +
               unitInQuestion(connection, row, kind, numberSign);
    };
}

int countsIn(db::DataSet& row, const UnitMove& kind) { return row.field(kind.countsIn).asInt(); }

bool isSet(db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return !field.isNull() && !field.asText().empty();
}

// A counter of the row: hours text or a whole number; null counts zero.
// Malformed text names the column.
long long counterOf(db::DataSet& row, int column, bool hours) {
    const db::Field field = row.field(column);
    if (field.isNull()) return 0;
    const std::string text = field.asText();
    try {
        return hours ? operating_time::parseHoursBeforeLastThree(text).count() : parseInt64(trim(text));
    } catch (const ConversionError&) {
        throw ConversionError(text, std::string(hours ? "operating time" : "count") + " in column " +
                                        std::to_string(column) + " (" + field.name() + ")");
    }
}

std::string counterText(long long value, bool hours) {
    value = std::max(0LL, value);
    return hours ? operating_time::format(Minutes(value)) : std::to_string(std::min<long long>(value, INT_MAX));
}

using Changes = std::vector<std::pair<int, db::Value>>;

void write(db::DataSet& row, const Changes& changes) {
    if (changes.empty()) return;
    if (row.state() != db::DataSet::State::edit && row.state() != db::DataSet::State::insert) row.edit();
    for (const auto& [column, value] : changes) row.setValue(column, value);
}

void install(db::Connection& connection, db::DataSet& row, const UnitMove& kind, const std::string& tail, Date date) {
    const std::optional<RegisterEntry> entry = registerEntry(connection, tail);
    const FlightSpan span{.tailNumber = tail,
                          .start = startOf(date, entry ? entry->overhaul : std::nullopt),
                          .moveDate = date,
                          .groundType = entry ? entry->type : std::string(),
                          .leaveOutOn = LeaveDayOutOn::no,
                          .question = question(connection, row, kind, tail, " №")};
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    const int unit = countsIn(row, kind);
    const bool hours = unit == countsHours;
    Changes changes;
    if (!carried) {
        // Nothing flown since: the reading at installation is the aircraft's counter as it stands.
        if (hours || unit == countsLandings)
            changes.emplace_back(kind.readingAtInstallation,
                                 entry ? (hours ? entry->hours : db::Value(entry->landings.asText())) : db::Value());
        write(row, changes);
        return;
    }
    const bool derived = !row.field(kind.indirectFlag).isNull() && row.field(kind.indirectFlag).asInt() == 1;
    if (hours || unit == countsLandings) {
        if (!entry) throw ConversionError(tail, "aircraft in the register, whose counter a move needs");
        const long long aircraftCounter =
            hours ? (entry->hours.isNull() ? 0 : operating_time::parseHoursBeforeLastThree(entry->hours.asText()).count())
                  : entry->landings.asInt64();
        const long long flown = hours ? carried->minutes.count() : carried->landings;
        changes.emplace_back(kind.readingAtInstallation, counterText(aircraftCounter - flown, hours));
        if (!derived)
            for (int column : {kind.sinceNew, kind.sinceOverhaul})
                changes.emplace_back(column, counterText(counterOf(row, column, hours) + flown, hours));
    }
    if (!derived && isSet(row, kind.oilTime) && isSet(row, kind.oilChangeDate))
        changes.emplace_back(kind.oilTime,
                             FunHourCorrectToVS(row, kind.oilTime, static_cast<int>(carried->minutes.count())));
    write(row, changes);
}

void remove(db::Connection& connection, db::DataSet& row, const UnitMove& kind, const std::string& aircraftType,
            const std::string& tail, Date date) {
    db::DataSet overhaul(connection, overhaulSql);
    overhaul.setParam("pTAIL", tail);
    overhaul.open();
    // Flights count only against an aircraft in the register.
    if (overhaul.eof()) return;
    const std::optional<Date> overhaulDate =
        overhaul.field(0).isNull() ? std::nullopt : std::optional(overhaul.field(0).asDate());
    overhaul.close();
    const FlightSpan span{.tailNumber = tail,
                          .start = startOf(date, overhaulDate),
                          .moveDate = date,
                          .leaveOutOn = LeaveDayOutOn::yes,
                          .question = question(connection, row, kind, tail, " № ", aircraftType)};
    const std::optional<CarriedTime> carried = carriedFlightTime(connection, span);
    if (!carried) return;
    const int minutes = static_cast<int>(carried->minutes.count());
    Changes changes;
    if (countsIn(row, kind) == countsHours) {
        for (int column : {kind.sinceNew, kind.sinceOverhaul})
            changes.emplace_back(column, FunHourCorrectFromVS(row, column, minutes));
    } else if (row.field(kind.mountedOn).asInt() == 0) {
        for (int column : {kind.sinceNew, kind.sinceOverhaul})
            changes.emplace_back(column, std::to_string(FunIntegerCorrectFromVS(row, column, carried->landings)));
    }
    if (isSet(row, kind.oilTime) && isSet(row, kind.oilChangeDate))
        changes.emplace_back(kind.oilTime, FunHourCorrectFromVS(row, kind.oilTime, minutes));
    write(row, changes);
}

void checkKind(db::DataSet& row, const UnitMove& kind) {
    if (!row.isOpen() || row.fieldCount() <= kind.indirectFlag || row.fieldInfo(kind.sinceNew).table != kind.table)
        throw ArgumentError(std::string("the row is not a row of all columns of ") + kind.table);
}

}  // namespace

}  // namespace mxbook::movements

namespace mxbook {

void FunMoveAgregatToVS(db::Connection& connection, db::DataSet& row, const std::string& tailNumber, Date date) {
    movements::checkKind(row, movements::generalComponent);
    movements::install(connection, row, movements::generalComponent, tailNumber, date);
}

void FunMoveAgregatFromVS(db::Connection& connection, db::DataSet& row, const std::string& aircraftType,
                          const std::string& tailNumber, Date date) {
    movements::checkKind(row, movements::generalComponent);
    movements::remove(connection, row, movements::generalComponent, aircraftType, tailNumber, date);
}

}  // namespace mxbook
