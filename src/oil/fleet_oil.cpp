// The oil state of the fleet: each oil-filled unit on each aircraft, with
// its oil time since the change and what is left of its limit.
#include <algorithm>
#include <functional>

#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/oil.h"
#include "mxbook/text.h"
#include "register/known_tails.h"

namespace mxbook {

namespace {

// One oil block of a unit row: its stored oil time and the date of its change.
struct OilBlock {
    int stored;
    int changed;
    std::string_view label;
};

using OilTimeOf = std::function<std::string(db::Connection&, db::DataSet&, const std::string& tail, const OilBlock&)>;

// A kind of unit whose oil the fleet state shows; a unit appears when its
// row has a block with a stored time or a change date.
struct OilKind {
    std::string_view table;
    std::string_view filter;  // more conditions on the units at the aircraft
    int nameColumn;
    int serialColumn;
    int limitColumn;
    std::vector<OilBlock> blocks;
    OilTimeOf oilTime;
};

const std::vector<OilKind>& oilKinds() {
    static const std::vector<OilKind> kinds{
        {"AGREGAT", " and UCHET_MASLA = 1", 2, 4, 23, {{21, 22, "агрегат"}},
         [](db::Connection& c, db::DataSet& row, const std::string& tail, const OilBlock&) {
             return FunNarMasloAgregat(c, row, tail, host().today());
         }},
        {"VTULKA_NV", "", 2, 4, 23, {{21, 22, "втулка НВ"}, {43, 44, "втулка НВ, блок 2"}},
         [](db::Connection& c, db::DataSet& row, const std::string& tail, const OilBlock& block) {
             return FunNarMasloVtNV(c, row, tail, block.stored, block.changed, host().today());
         }},
        {"HVOSTOVOY_VINT", "", 2, 3, 24, {{39, 40, "хвостовой винт"}},
         [](db::Connection& c, db::DataSet& row, const std::string& tail, const OilBlock&) {
             return FunNarMasloHvostVint(c, row, tail, host().today());
         }},
    };
    return kinds;
}

std::optional<Date> dateOf(const db::DataSet& row, int column) {
    const db::Field field = row.field(column);
    return field.isNull() ? std::nullopt : std::optional(field.asDate());
}

void addUnits(db::Connection& connection, const OilKind& kind, const std::string& tail,
              std::vector<OilState>& states) {
    db::DataSet units(connection,
                      "select * from " + std::string(kind.table) + " where GDE_STOIT = :tail" +
                          std::string(kind.filter) + " order by ID",
                      db::DataSet::Traversal::forwardOnly);
    units.setParam("tail", tail);
    for (units.open(); !units.eof(); units.next())
        for (const OilBlock& block : kind.blocks) {
            if (units.field(block.stored).isNull() && units.field(block.changed).isNull()) continue;
            OilState state{.tailNumber = tail,
                           .kind = std::string(block.label),
                           .unit = units.field(kind.nameColumn).asText(),
                           .serial = units.field(kind.serialColumn).asText(),
                           .changed = dateOf(units, block.changed),
                           .oilTime = kind.oilTime(connection, units, tail, block)};
            if (const db::Field limit = units.field(kind.limitColumn); !limit.isNull() && limit.asInt() > 0) {
                state.limitHours = limit.asInt();
                state.left = Minutes(static_cast<long long>(*state.limitHours) * 60) -
                             operating_time::parseHoursColonTwoDigits(state.oilTime);
            }
            states.push_back(std::move(state));
        }
}

// The APU counts its oil in hours and in starts since the change; no limit is booked for it.
void addApu(db::Connection& connection, const std::string& tail, std::vector<OilState>& states) {
    db::DataSet apus(connection,
                     "select NAZVANIE, ZAVODSKOY_NOMER, DATA_ZAMENY_MASLO from VSU where MESTO_USTANOVKI = :tail "
                     "and DATA_ZAMENY_MASLO is not null order by ID",
                     db::DataSet::Traversal::forwardOnly);
    apus.setParam("tail", tail);
    for (apus.open(); !apus.eof(); apus.next()) {
        const Date changed = apus.field(2).asDate();
        states.push_back({.tailNumber = tail,
                          .kind = "ВСУ",
                          .unit = apus.field(0).asText(),
                          .serial = apus.field(1).asText(),
                          .changed = changed,
                          .oilTime = FunNarMasloVSUChas(connection, tail, changed),
                          .starts = FunNarMasloVSUZapusk(connection, tail, changed)});
    }
}

// The tails of the register, each once.
std::vector<std::string> registeredTails(db::Connection& connection) {
    std::vector<std::string> tails;
    db::DataSet aircraft(connection, "select distinct BORTOVOI_NOMER from REESTR order by BORTOVOI_NOMER",
                         db::DataSet::Traversal::forwardOnly);
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) tails.push_back(aircraft.field(0).asText());
    return tails;
}

}  // namespace

std::vector<OilState> fleetOilState(db::Connection& connection, const std::optional<std::string>& tailNumber) {
    std::vector<std::string> tails = registeredTails(connection);
    if (tailNumber) {
        requireRegistered(tails, *tailNumber);
        tails = {*tailNumber};
    }
    std::vector<OilState> states;
    for (const std::string& tail : tails) {
        for (const OilKind& kind : oilKinds()) addUnits(connection, kind, tail, states);
        addApu(connection, tail, states);
    }
    std::stable_sort(states.begin(), states.end(), [](const OilState& a, const OilState& b) {
        if (a.left.has_value() != b.left.has_value()) return a.left.has_value();
        return a.left && *a.left < *b.left;
    });
    return states;
}

}  // namespace mxbook
