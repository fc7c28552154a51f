// The oil time of each kind of unit, as a description for the one algorithm.
#include <algorithm>
#include <array>

#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/oil.h"
#include "mxbook/text.h"
#include "oil_time.h"

namespace mxbook {

namespace {

using operating_time::doubleZero;

// Where a unit row keeps its stored oil time and its dates.
struct OilColumns {
    int stored;
    int changed;
    int installed;
};

namespace component {
constexpr OilColumns oil{21, 22, 26};
constexpr int carrierKind = 28, engineSerial = 29;
constexpr int onAirframe = 0, onEngine = 1;
}  // namespace component
constexpr OilColumns tailRotorOil{39, 40, 17};
constexpr int hubInstalled = 26;

std::optional<Date> dateOf(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    if (field.isNull()) return std::nullopt;
    return field.asDate();
}

// The later of two dates; one that is not set counts as earlier than any.
std::optional<Date> later(std::optional<Date> a, std::optional<Date> b) {
    if (!a) return b;
    if (!b) return a;
    return std::max(*a, *b);
}

// The source of a unit row's oil: its stored time is the base (and, as it
// stands, the early result) when set; it counts from the later of its oil
// change and its installation.
oil::OilSource rowSource(const db::DataSet& row, const std::string& tail, OilColumns columns, Date endDate) {
    oil::OilSource source{.tailNumber = tail,
                          .start = later(dateOf(row, columns.changed), dateOf(row, columns.installed)),
                          .end = endDate,
                          .columns = oil::airframeTime,
                          .aircraftType = row.field("TIP_VS").asText(),
                          .early = std::string(doubleZero)};
    const db::Field stored = row.field(columns.stored);
    if (!stored.isNull() && !trim(stored.asText()).empty()) {
        source.early = stored.asText();
        source.base = operating_time::parseStoredTime(source.early);
    }
    return source;
}

// The position (ODIN_DVA) of the first engine with the serial at the tail; 0 when there is none.
int enginePosition(db::Connection& connection, const std::string& tail, const db::Field& serial) {
    db::DataSet engine(connection,
                       "Select ODIN_DVA From DVIGATEL Where GDE_STOIT=:pTAIL And ZAVODSKOI_NOMER=:pSERIAL "
                       "Order By ODIN_DVA, ID",
                       db::DataSet::Traversal::forwardOnly);
    engine.setParam("pTAIL", tail);
    engine.setParam("pSERIAL", serial.value());
    engine.open();
    if (engine.eof() || engine.field(0).isNull()) return 0;
    return engine.field(0).asInt();
}

struct UnitKind {
    std::string_view name;
    flights::GroundColumns ground;
    std::optional<oil::FlightColumns> columns;  // none: the engine at the given position
};

constexpr std::array<UnitKind, 4> unitKinds{{
    {"ZEMLIA_AGREGATY", flights::airframeUnits, oil::airframeTime},
    {"ZEMLIA_AGR_DVIG", flights::engineUnits, std::nullopt},
    {"ZEMLIA_DVIGATEL", flights::engines, std::nullopt},
    {"ZEMLIA_REDUCTOR", flights::gearboxes, oil::gearboxTime},
}};

const UnitKind& unitKind(const std::string& name) {
    const auto found = std::find_if(unitKinds.begin(), unitKinds.end(), [&](const UnitKind& k) { return k.name == name; });
    if (found == unitKinds.end())
        throw ArgumentError("'" + name +
                            "' is not a kind of oil-filled unit: ZEMLIA_AGREGATY, ZEMLIA_AGR_DVIG, ZEMLIA_DVIGATEL or "
                            "ZEMLIA_REDUCTOR");
    return *found;
}

oil::OilSource sinceChange(const std::string& tail, Date changeDate, oil::FlightColumns columns,
                           std::string_view early = doubleZero) {
    return {.tailNumber = tail,
            .start = changeDate,
            .end = host().today(),
            .columns = columns,
            .early = std::string(early)};
}

}  // namespace

std::string FunNarMaslo(db::Connection& connection, const std::string& tailNumber, const std::string& kind,
                        Date changeDate, int enginePosition) {
    const UnitKind& unit = unitKind(kind);
    oil::OilSource source = sinceChange(tailNumber, changeDate, unit.columns.value_or(oil::engineTime(enginePosition)));
    source.groundKind = unit.ground;
    return oil::oilTime(connection, source);
}

std::string FunNarMasloVSUChas(db::Connection& connection, const std::string& tailNumber, Date changeDate) {
    db::DataSet apu(connection, "Select NAZVANIE From VSU Where MESTO_USTANOVKI=:pTAIL Order By ID",
                    db::DataSet::Traversal::forwardOnly);
    apu.setParam("pTAIL", tailNumber);
    apu.open();
    // One family of APUs runs its oil in generator mode too.
    const bool withGenerator = !apu.eof() && apu.field(0).asText().find("ТА-14-130") != std::string::npos;
    return oil::oilTime(connection,
                        sinceChange(tailNumber, changeDate,
                                    {"VSU_POLNOE_VREMYA", {}, withGenerator ? "VSU_V_GENERATORNOM" : ""}));
}

std::string FunNarMasloVSUZapusk(db::Connection& connection, const std::string& tailNumber, Date changeDate) {
    oil::OilSource source = sinceChange(tailNumber, changeDate, {"VSU_KOL_VO_ZAPUSKOV"}, "0");
    source.measure = oil::Measure::startsSinceLastBlank;
    return oil::oilTime(connection, source);
}

std::string FunNarMasloAgregat(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                               Date endDate) {
    oil::OilSource source = rowSource(row, tailNumber, component::oil, endDate);
    const db::Field carrier = row.field(component::carrierKind);
    const int kind = carrier.isNull() ? component::onAirframe : carrier.asInt();
    // Only the airframe and an engine carry components; another kind has no flights of its own.
    if (kind != component::onAirframe && kind != component::onEngine) return source.early;
    if (kind == component::onEngine) {
        source.groundKind = flights::engineUnits;
        source.columns = oil::engineTime(enginePosition(connection, tailNumber, row.field(component::engineSerial)));
    }
    return oil::oilTime(connection, source);
}

std::string FunNarMasloHvostVint(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                                 Date endDate) {
    return oil::oilTime(connection, rowSource(row, tailNumber, tailRotorOil, endDate));
}

std::string FunNarMasloVtNV(db::Connection& connection, db::DataSet& row, const std::string& tailNumber,
                            int baseColumn, int dateColumn, Date endDate) {
    return oil::oilTime(connection, rowSource(row, tailNumber, {baseColumn, dateColumn, hubInstalled}, endDate));
}

}  // namespace mxbook
