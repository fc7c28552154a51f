#include "unit_counters.h"

#include <algorithm>
#include <climits>

#include "mxbook/conventions.h"
#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/operating_time.h"
#include "mxbook/text.h"

namespace mxbook::movements {

namespace {

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

bool derivesFromCarrier(db::DataSet& row, const UnitMove& kind) {
    const db::Field flag = row.field(kind.indirectFlag);
    return !flag.isNull() && flag.asInt() == 1;
}

// The reference entry's name and drawing number; "!!!" for both without one.
std::pair<std::string, std::string> reference(db::Connection& connection, db::DataSet& row, const UnitMove& kind) {
    if (row.field(kind.referenceKey).isNull()) return {"!!!", "!!!"};
    db::DataSet entry(connection, kind.referenceSql);
    entry.setParam("pID_NAME", row.field(kind.referenceKey).asInt());
    entry.open();
    if (entry.eof()) return {"!!!", "!!!"};
    return {entry.field(kind.referenceName).asText(), entry.field(kind.referenceDrawingNumber).asText()};
}

}  // namespace

void write(db::DataSet& row, const Changes& changes) {
    if (changes.empty()) return;
    if (row.state() != db::DataSet::State::edit && row.state() != db::DataSet::State::insert) row.edit();
    for (const auto& [column, value] : changes) row.setValue(column, value);
}

bool isSet(db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return !field.isNull() && !field.asText().empty();
}

Changes installation(db::DataSet& row, const UnitMove& kind, const std::optional<CarrierCounters>& carrier,
                     const std::optional<CarriedTime>& carried,
                     const std::pair<std::string, std::string>& missingCarrier) {
    const int unit = row.field(kind.countsIn).asInt();
    const bool hours = unit == countsHours;
    const bool counted = hours || unit == countsLandings;
    Changes changes;
    if (!carried) {
        // Nothing carried since: the reading at installation is the carrier's counter as it stands.
        if (counted)
            changes.emplace_back(kind.readingAtInstallation,
                                 carrier ? (hours ? carrier->hours : db::Value(carrier->count.asText())) : db::Value());
        return changes;
    }
    const bool derived = derivesFromCarrier(row, kind);
    if (counted) {
        if (!carrier) throw ConversionError(missingCarrier.first, missingCarrier.second);
        const long long carrierCounter =
            hours ? (carrier->hours.isNull() ? 0
                                             : operating_time::parseHoursBeforeLastThree(carrier->hours.asText()).count())
                  : carrier->count.asInt64();
        const long long flown = hours ? carried->minutes.count() : carried->landings;
        changes.emplace_back(kind.readingAtInstallation, counterText(carrierCounter - flown, hours));
        if (!derived)
            for (int column : {kind.sinceNew, kind.sinceOverhaul})
                changes.emplace_back(column, counterText(counterOf(row, column, hours) + flown, hours));
    }
    if (!derived && isSet(row, kind.oilTime) && isSet(row, kind.oilChangeDate))
        changes.emplace_back(kind.oilTime,
                             FunHourCorrectToVS(row, kind.oilTime, static_cast<int>(carried->minutes.count())));
    return changes;
}

Changes removal(db::DataSet& row, const UnitMove& kind, const CarriedTime& carried, const RemovalRules& rules) {
    const int minutes = static_cast<int>(carried.minutes.count());
    Changes changes;
    if (row.field(kind.countsIn).asInt() == countsHours) {
        for (int column : {kind.sinceNew, kind.sinceOverhaul})
            changes.emplace_back(column, FunHourCorrectFromVS(row, column, minutes));
    } else if (rules.countsOffWhenMounted || row.field(kind.mountedOn).asInt() == 0) {
        for (int column : {kind.sinceNew, kind.sinceOverhaul})
            changes.emplace_back(column, std::to_string(FunIntegerCorrectFromVS(row, column, carried.landings)));
    }
    if (isSet(row, kind.oilTime) && isSet(row, kind.oilChangeDate) &&
        (rules.oilOffWhenDerived || !derivesFromCarrier(row, kind)))
        changes.emplace_back(kind.oilTime, FunHourCorrectFromVS(row, kind.oilTime, minutes));
    return changes;
}

std::string flightOnTheDay(Date day, const std::string& type, const std::string& tail) {
    return shortDate(day, host().formatSettings()) + " " + type + " №" + tail + " выполнял полёт.\r\n";
}

std::string unitInQuestion(db::Connection& connection, db::DataSet& row, const UnitMove& kind,
                           const char* numberSign) {
    const auto [name, drawing] = reference(connection, row, kind);
    return "«" + name + " " + drawing + numberSign + row.field(kind.serial).asText() + "»?";
}

std::string unitByReference(db::Connection& connection, db::DataSet& row, const UnitMove& kind) {
    const auto [name, drawing] = reference(connection, row, kind);
    return "«" + row.field(kind.name).asText() + " " + name + " №" + drawing + "»?";
}

void checkTable(db::DataSet& row, const char* table, int columns) {
    if (!row.isOpen() || row.fieldCount() < columns || row.fieldInfo(columns - 1).table != table)
        throw ArgumentError(std::string("the row is not a row of all columns of ") + table);
}

void checkKind(db::DataSet& row, const UnitMove& kind) { checkTable(row, kind.table, kind.indirectFlag + 1); }

}  // namespace mxbook::movements
