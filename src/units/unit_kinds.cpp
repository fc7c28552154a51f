#include "unit_kinds.h"

#include <algorithm>
#include <string>

#include "mxbook/error.h"

namespace mxbook::units {

namespace {

constexpr int fromManufacture = -1;

constexpr Limit life(int limitColumn, int usedColumn) {
    return {Measure::hours, limitColumn, usedColumn, Role::life, "ресурс"};
}
constexpr Limit overhaul(int limitColumn, int usedColumn) {
    return {Measure::hours, limitColumn, usedColumn, Role::overhaul, "ППР"};
}
constexpr Limit calendar(int limitColumn) {
    return {Measure::calendar, limitColumn, fromManufacture, Role::other, "срок"};
}
constexpr Limit other(Measure measure, int limitColumn, int usedColumn, std::string_view name) {
    return {measure, limitColumn, usedColumn, Role::other, name};
}

constexpr Column gdeStoit(int position) { return {position, "GDE_STOIT"}; }
constexpr Column drawingNumber(int position) { return {position, "CHERT_NOMER"}; }
constexpr Column installReading(int position) { return {position, "NARABOTKA_VS_PRI_USTANOVKE"}; }

constexpr Limit engineLimits[] = {life(18, 11), overhaul(16, 12), other(Measure::count, 38, 31, "циклы"),
                                  calendar(19)};
constexpr Limit gearboxLimits[] = {life(18, 11), overhaul(16, 12)};
constexpr Limit apuLimits[] = {life(24, 16), other(Measure::hours, 46, 48, "сумма"),
                               other(Measure::hours, 22, 14, "генератор")};
constexpr Limit componentLimits[] = {life(12, 17), overhaul(14, 18), calendar(13)};
constexpr Limit bladeLimits[] = {life(10, 9), overhaul(30, 26), calendar(11)};
constexpr Limit tailRotorLimits[] = {life(19, 29), overhaul(21, 30), calendar(20)};
constexpr Limit winchAndSlingLimits[] = {life(19, 27), overhaul(21, 28)};
constexpr Limit hoseLimits[] = {life(5, 12)};
constexpr Limit zcuLimits[] = {life(4, 11), overhaul(20, 22)};
constexpr Limit propellerLimits[] = {life(21, 29), overhaul(23, 30)};

constexpr Column componentFlag{39, "NEPRIAMOI_UCHET_NAR_AGREGATA"};

constexpr UnitKind kinds[] = {
    {.table = "DVIGATEL",
     .label = "двигатель",
     .name = {2, "NAZVANIE_DVIGATELYA"},
     .serial = {3, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(13),
     .manufactured = {5, "DATA_VYPUSKA"},
     .limits = engineLimits},
    {.table = "REDUCTOR",
     .label = "редуктор",
     .name = {2, "NAZVANIE_REDUCTORA"},
     .serial = {3, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(13),
     .manufactured = {5, "DATA_VYPUSKA"},
     .limits = gearboxLimits},
    {.table = "VSU",
     .label = "ВСУ",
     .name = {1, "NAZVANIE"},
     .serial = {2, "ZAVODSKOY_NOMER"},
     .location = {27, "MESTO_USTANOVKI"},
     .manufactured = {4, "DATA_VYPUSKA"},
     .limits = apuLimits,
     .removalPlanned = false},
    {.table = "AGREGAT",
     .label = "агрегат",
     .name = {2, "NAZVANIE"},
     .serial = {4, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(27),
     .manufactured = {6, "DATA_VYPUSKA"},
     .limits = componentLimits,
     .flag = componentFlag,
     .installReading = installReading(16),
     .derivation = Derivation{.generalComponent = true},
     .keepsComponentColumns = true,
     .countsByCounterKind = true},
    // A hub keeps a general component's columns, and derives as one.
    {.table = "VTULKA_NV",
     .label = "втулка НВ",
     .name = {2, "NAZVANIE"},
     .serial = {4, "ZAVODSKOY_NOMER"},
     .location = gdeStoit(27),
     .manufactured = {6, "DATA_VYPUSKA"},
     .limits = componentLimits,
     .flag = componentFlag,
     .installReading = installReading(16),
     .keepsComponentColumns = true},
    {.table = "LOPAST",
     .label = "лопасть",
     .name = drawingNumber(3),
     .serial = {4, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(2),
     .manufactured = {6, "DATA_VYPUSKA"},
     .limits = bladeLimits,
     .flag = Column{18, "NEPRIAMOI_UCHET_NAR_LOPAST"},
     .installReading = installReading(17),
     .derivation = Derivation{.blankReadingIsZero = true}},
    {.table = "HVOSTOVOY_VINT",
     .label = "хвостовой винт",
     .name = drawingNumber(2),
     .serial = {3, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(14),
     .manufactured = {4, "DATA_VYPUSKA"},
     .limits = tailRotorLimits,
     .flag = Column{27, "NEPRIAMOI_UCHET_NAR_VINTA"},
     .installReading = installReading(28),
     .derivation = Derivation{}},
    {.table = "LEBEDKA",
     .label = "лебёдка",
     .name = drawingNumber(2),
     .serial = {3, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(14),
     .manufactured = {8, "DATA_VYPUSKA"},
     .limits = winchAndSlingLimits,
     .flag = Column{25, "NEPRIAMOI_UCHET_NAR_LEBEDKI"},
     .installReading = installReading(26),
     .derivation = Derivation{}},
    {.table = "PODVESKA",
     .label = "подвеска",
     .name = drawingNumber(2),
     .serial = {3, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(14),
     .manufactured = {4, "DATA_VYPUSKA"},
     .limits = winchAndSlingLimits,
     .removalPlanned = false},
    {.table = "SHLANG",
     .label = "шланг",
     .name = drawingNumber(3),
     .serial = {6, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(2),
     .manufactured = {7, "DATA_VYPUSKA_RUKAVA"},
     .limits = hoseLimits,
     .flag = Column{18, "NEPRIAMOI_UCHET_NAR_SHLANG"},
     .installReading = installReading(17),
     .derivation = Derivation{.fixedOwnColumn = 12}},
    {.table = "ZCU",
     .label = "ЗЦУ",
     .name = {24, "NAZVANIE"},
     .serial = {6, "ZAVODSKOI_NOMER"},
     .location = gdeStoit(2),
     .manufactured = {8, "DATA_VYPUSKA"},
     .limits = zcuLimits,
     .flag = Column{16, "NEPRIAMOI_UCHET_NAR_ZCU"},
     .installReading = installReading(15),
     .derivation = Derivation{}},
    {.table = "VOZDUSHNY_VINT",
     .label = "воздушный винт",
     .name = drawingNumber(2),
     .serial = {3, "ZAVODSKOY_NOMER"},
     .location = gdeStoit(17),
     .manufactured = {9, "DATA_VYPUSKA"},
     .limits = propellerLimits},
};

}  // namespace

std::span<const UnitKind> unitKinds() { return kinds; }

const UnitKind& unitKind(std::string_view table) {
    const auto found =
        std::find_if(std::begin(kinds), std::end(kinds), [&](const UnitKind& k) { return k.table == table; });
    if (found == std::end(kinds)) throw ArgumentError(std::string(table) + " keeps no kind of unit");
    return *found;
}

int usedColumn(const UnitKind& kind, const Limit& limit) {
    return limit.usedColumn == fromManufacture ? kind.manufactured.position : limit.usedColumn;
}

}  // namespace mxbook::units
