// Units that follow the counters of the APU or the engine carrying them:
// their operating time, and what is left of an APU unit's limits.
#include <span>

#include "carrier_rule.h"
#include "carriers.h"
#include "indirect_kinds.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"
#include "remainders.h"

namespace mxbook {

namespace {

constexpr int hoursKind = 0;

// A counter a carrier keeps: where its counters query selects it, and where
// the unit's row keeps the carrier's reading at the unit's installation.
struct Counter {
    bool hours;  // "H:MM"; otherwise a count
    int carrierColumn;
    int readingColumn;
};

struct Carrier {
    // The first row of the serial number, with its counters.
    const remaining::CarrierLookup* counters;
    std::span<const Counter> kinds;  // by counter kind
    // The hours of a carrier not found (and, with `nullGivesNothing`, of a
    // null counter or reading); counts give "0".
    std::string_view hoursOfNothing;
    std::string_view unknownKind;  // a counter kind the carrier does not keep
    // APU: a null counter or reading gives nothing. Engine: a null counter
    // counts as zero and a null reading is no operating time at all (it fails).
    bool nullGivesNothing;
    // One family of APUs keeps its running hours in another column: an APU
    // whose name contains `hoursFamily` reads them from `familyHoursColumn`.
    std::string_view hoursFamily = {};
    int nameColumn = -1;
    int familyHoursColumn = -1;
};

namespace apu {
// Positions in the counters query below.
constexpr int hours = 0, starts = 1, bleeds = 2, name = 3, summedHours = 4;
}  // namespace apu

// The APU's hours, starts and air bleeds when the unit was installed, in its AGR_VSU row.
namespace apu_unit {
constexpr int hoursAtInstallation = 27, startsAtInstallation = 28, bleedsAtInstallation = 29;
}  // namespace apu_unit

constexpr Counter apuCounters[] = {
    {true, apu::hours, apu_unit::hoursAtInstallation},
    {false, apu::starts, apu_unit::startsAtInstallation},
    {false, apu::bleeds, apu_unit::bleedsAtInstallation},
};

constexpr Carrier apuCarrier{
    .counters = &remaining::apuCounters,
    .kinds = apuCounters,
    .hoursOfNothing = operating_time::doubleZero,
    .unknownKind = "",
    .nullGivesNothing = true,
    .hoursFamily = "ТА-14-130",
    .nameColumn = apu::name,
    .familyHoursColumn = apu::summedHours,
};

// An engine-mounted unit (AGREGAT) keeps the engine's reading at 16, hours or
// starts, whichever it counts. Starts are taken from ZAPUSKI_PPR although the
// engine moves book cycles as the reading.
constexpr int engineReading = 16;
constexpr Counter engineCounters[] = {{true, 0, engineReading}, {false, 1, engineReading}};

constexpr Carrier engineCarrier{
    .counters = &remaining::engineCounters,
    .kinds = engineCounters,
    .hoursOfNothing = "0",
    .unknownKind = "0",
    .nullGivesNothing = false,
};

std::string nothing(const Carrier& carrier, int kind) {
    return std::string(kind == hoursKind ? carrier.hoursOfNothing : "0");
}

std::size_t carrierColumn(const Carrier& carrier, const Counter& counter, const remaining::CarrierRow& found) {
    const auto column = [](int position) { return static_cast<std::size_t>(position); };
    if (!counter.hours || carrier.hoursFamily.empty()) return column(counter.carrierColumn);
    const bool family = found[column(carrier.nameColumn)].asText().find(carrier.hoursFamily) != std::string::npos;
    return column(family ? carrier.familyHoursColumn : counter.carrierColumn);
}

std::string carriedCounter(const remaining::Queries& queries, db::DataSet& row, const Carrier& carrier,
                           const std::string& serial, int ownColumn, int kind) {
    const db::Value keys[] = {db::Value(serial)};
    const auto found = remaining::findCarrier(queries, *carrier.counters, keys);
    if (!found) return nothing(carrier, kind);
    if (kind < 0 || kind >= static_cast<int>(carrier.kinds.size())) return std::string(carrier.unknownKind);
    const Counter& counter = carrier.kinds[static_cast<std::size_t>(kind)];
    const db::Value& now = (*found)[carrierColumn(carrier, counter, *found)];
    const db::Field reading = row.field(counter.readingColumn);
    if (carrier.nullGivesNothing && (now.isNull() || reading.isNull())) return nothing(carrier, kind);
    // A null reading reads as empty text, which is no operating time or count.
    if (counter.hours)
        return operating_time::format(remaining::carriedHours(remaining::hoursOf(row.field(ownColumn)),
                                                              remaining::hoursOf(now),
                                                              operating_time::parseHoursUpToColon(reading.asText())));
    return std::to_string(remaining::carriedCount(remaining::countOf(row, ownColumn),
                                                  remaining::countOf((*found)[static_cast<std::size_t>(counter.carrierColumn)]),
                                                  parseInt(reading.asText())));
}

remaining::UsedText fromApu(const std::string& serial, int kind) {
    return [&serial, kind](db::DataSet& row, int usedColumn) {
        return carriedCounter(remaining::Queries(row), row, apuCarrier, serial, usedColumn, kind);
    };
}

}  // namespace

std::string FunPerNarAgrVSU(db::Connection& connection, db::DataSet& row, const std::string& apuSerial, int ownColumn,
                            int kind) {
    return carriedCounter(remaining::Queries(connection), row, apuCarrier, apuSerial, ownColumn, kind);
}

std::string FunPerNarAgrDvig(db::Connection& connection, db::DataSet& row, const std::string& engineSerial,
                             int ownColumn, int kind) {
    return carriedCounter(remaining::Queries(connection), row, engineCarrier, engineSerial, ownColumn, kind);
}

std::string FunOstatChasAgrVSU(db::DataSet& row, const std::string& apuSerial, int limitColumn, int usedColumn,
                               int deriveFlag) {
    const remaining::UsedText used = deriveFlag != 0 ? fromApu(apuSerial, hoursKind) : remaining::storedText;
    return remaining::hoursLeftText(remaining::minutesLeft(row, limitColumn, usedColumn, used));
}

std::string FunOstatIntegerAgrVSU(db::DataSet& row, const std::string& apuSerial, int limitColumn, int usedColumn,
                                  int kind, int deriveFlag) {
    if (deriveFlag == 0)
        return remaining::countLeftText(remaining::countLeft(row, limitColumn, usedColumn, remaining::storedText));
    return remaining::countLeftText(
        remaining::derivedCountLeft(row, limitColumn, usedColumn, fromApu(apuSerial, kind)));
}

}  // namespace mxbook
