#include "movements/reference_split.h"

#include <array>
#include <string>

#include "mxbook/data/unit_of_work.h"
#include "mxbook/error.h"
#include "agregat_columns.h"
#include "mxbook/movements.h"

namespace mxbook::movements {

namespace {

// ETAAGREGAT, the reference entries of the general components' types.
namespace etaagregat {
constexpr int aircraftType = 1;        // TIP_VS
constexpr int drawingNumber = 2;       // CHERT_NOMER
constexpr int mounting = 3;            // PLAN_DVIG_VSU
constexpr int counterUnit = 4;         // EDINICA_NARABOTKI
constexpr int oilTracked = 5;          // UCHET_MASLA
constexpr int placeCount = 6;          // KOL_VO_MEST
constexpr int firstOverhaulLimit = 7;  // RESURS_DO_PR
constexpr int firstOverhaulTerm = 8;   // SROK_DO_PR
constexpr int overhaulLimit = 9;       // RESURS_MR
constexpr int overhaulTerm = 10;       // SROK_MR
constexpr int intervalLimit = 11;      // RESURS_OBSH
constexpr int intervalTerm = 12;       // SROK_OBSH
constexpr int aircraftSystem = 13;     // SISTEMA_VS
constexpr int name = 14;               // NAZVANIE
constexpr int placeList = 15;          // SPISOK_MEST
constexpr int oilControl = 16;         // KONTROL_MASLA
constexpr int unitCode = 17;           // KOD_AGREGATA
constexpr int limitControl = 18;       // KONTROL_RESURSA
constexpr int termControl = 19;        // KONTROL_SROKA
constexpr int key = 20;                // ID_NAME
constexpr int hidden = 31;             // SKRYT
constexpr int remark = 32;             // PRIMECHANIE
}  // namespace etaagregat

constexpr std::array<GroupColumn, 4> componentGroup = {{
    {agregat::name, "NAZVANIE"},
    {agregat::drawingNumber, "CHERT_NOMER"},
    {agregat::referenceKey, "ID_NAME", true},
    {agregat::aircraftType, "TIP_VS"},
}};

// A new type starts both its first-overhaul and its between-overhaul limits
// from the unit's between-overhaul limits.
constexpr std::array<CopiedColumn, 14> componentCopies = {{
    {agregat::aircraftType, etaagregat::aircraftType},
    {agregat::name, etaagregat::name},
    {agregat::drawingNumber, etaagregat::drawingNumber},
    {agregat::mounting, etaagregat::mounting},
    {agregat::unitCode, etaagregat::unitCode},
    {agregat::aircraftSystem, etaagregat::aircraftSystem},
    {agregat::counterUnit, etaagregat::counterUnit},
    {agregat::oilTracked, etaagregat::oilTracked},
    {agregat::overhaulLimit, etaagregat::firstOverhaulLimit},
    {agregat::overhaulLimit, etaagregat::overhaulLimit},
    {agregat::overhaulTerm, etaagregat::firstOverhaulTerm},
    {agregat::overhaulTerm, etaagregat::overhaulTerm},
    {agregat::intervalLimit, etaagregat::intervalLimit},
    {agregat::intervalTerm, etaagregat::intervalTerm},
}};

constexpr std::array<FixedValue, 5> componentFixed = {{
    {etaagregat::oilControl, 0},
    {etaagregat::limitControl, 0},
    {etaagregat::termControl, 0},
    {etaagregat::hidden, 0},
    {etaagregat::remark, std::nullopt},
}};

constexpr ReferenceSplit componentSplit = {
    .unitTable = "AGREGAT",
    .referenceTable = "ETAAGREGAT",
    .group = componentGroup,
    .unitKeyColumn = agregat::referenceKey,
    .referenceKeyColumn = etaagregat::key,
    .referenceKeyName = "ID_NAME",
    .generator = "GEN_ETAAGREGAT_ID",
    .copies = componentCopies,
    .fixed = componentFixed,
    .placeName = "MESTO_USTANOVKI",
    .placeCountColumn = etaagregat::placeCount,
    .placeListColumn = etaagregat::placeList,
};

constexpr int referenceIdColumn = 0;
constexpr std::string_view twoPlaces = "Первый;Второй;";

void requireUnitRow(const ReferenceSplit& split, const db::DataSet& row) {
    const auto fromUnitTable = [&](int position) {
        return position < row.fieldCount() && row.fieldInfo(position).table == split.unitTable;
    };
    bool ok = fromUnitTable(split.unitKeyColumn);
    for (const GroupColumn& column : split.group) ok = ok && fromUnitTable(column.position);
    for (const CopiedColumn& copy : split.copies) ok = ok && fromUnitTable(copy.unit);
    if (!ok)
        throw ArgumentError("a reference entry is split off for rows of " + std::string(split.unitTable) +
                            " (all columns), not for those of \"" + row.sql() + "\"");
}

// "NAZVANIE=:pNAZVANIE And ..." over the group columns, after the table.
std::string groupSelect(const ReferenceSplit& split) {
    std::string sql = "Select * From " + std::string(split.unitTable) + " Where ";
    for (std::size_t i = 0; i < split.group.size(); ++i) {
        const std::string name(split.group[i].name);
        sql += (i ? " And " : "") + name + "=:p" + name;
    }
    return sql;
}

void setGroupParams(const ReferenceSplit& split, const db::DataSet& row, db::DataSet& query) {
    for (const GroupColumn& column : split.group) {
        const db::Field field = row.field(column.position);
        query.setParam("p" + std::string(column.name),
                       column.asInteger ? db::Value(field.asInt()) : db::Value(field.asText()));
    }
}

bool holdsSomething(const db::Field& field) { return !field.isNull() && !field.asText().empty(); }

}  // namespace

const ReferenceSplit& componentReferenceSplit() { return componentSplit; }

void splitReference(const ReferenceSplit& split, db::DataSet& row) {
    requireUnitRow(split, row);
    const std::string table(split.referenceTable), keyName(split.referenceKeyName), place(split.placeName);

    // The members' keys are checked against what this unit read when they
    // are written: another user's change in between fails the whole split.
    db::UnitOfWork work(row);

    db::DataSet group = row.onSameConnection(groupSelect(split) + " Order By ID;");
    setGroupParams(split, row, group);
    group.open();
    db::DataSet placed = row.onSameConnection(groupSelect(split) + " And Not " + place + " Is Null And Not Upper(" +
                                              place + ") Like Upper('нет') Order By ID;");
    setGroupParams(split, row, placed);
    placed.open();
    const bool hasPlace = !placed.eof();
    placed.close();
    if (group.eof()) return;

    db::DataSet highest = row.onSameConnection("SELECT Max(" + keyName + ") FROM " + table + ";");
    highest.open();
    const int key = (highest.field(0).isNull() ? 0 : highest.field(0).asInt()) + 1;
    highest.close();

    db::DataSet reference =
        row.onSameConnection("Select * From " + table + " Where " + keyName + "=:p" + keyName + " Order By ID;");
    reference.setParam("p" + keyName, key);
    reference.open();
    reference.insert();
    db::DataSet id = row.onSameConnection("select gen_id(" + std::string(split.generator) + ", 1) from rdb$database");
    id.open();
    reference.setValue(referenceIdColumn, id.field(0).value());

    for (const CopiedColumn& copy : split.copies) {
        const db::Field source = group.field(copy.unit);
        if (holdsSomething(source)) reference.setValue(copy.reference, source.value());
    }
    reference.setValue(split.referenceKeyColumn, key);
    for (const FixedValue& fixed : split.fixed)
        reference.setValue(fixed.reference, fixed.value ? db::Value(*fixed.value) : db::Value());
    reference.setValue(split.placeCountColumn, hasPlace ? 2 : 1);
    reference.setValue(split.placeListColumn, hasPlace ? db::Value(twoPlaces) : db::Value());
    reference.post();
    reference.updateBatch();

    for (group.first(); !group.eof(); group.next()) {
        group.edit();
        group.setValue(split.unitKeyColumn, key);
        group.post();
    }
    group.updateBatch();
    work.commit();
}

}  // namespace mxbook::movements

namespace mxbook {

void FunAddIDNameAgregat(db::DataSet& row) { movements::splitReference(movements::componentReferenceSplit(), row); }

}  // namespace mxbook
