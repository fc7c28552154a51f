#include "reference_data.h"

#include "catalogue.h"

namespace mxbook::fleet {

namespace {

std::string groundSwitch(const GroundRule& rule) { return rule.counts ? "1" : "0"; }

void writeTypeData(Generation& g, const AircraftProfile& p) {
    auto& types = g.table("TIPOVYE_DANNYE_VS");
    auto row = types.row();
    row.set("TIP_VS", p.type).set("KOD_VS", p.typeCode);
    const struct {
        const char* switchColumn;
        const char* factorColumn;
        const GroundRule& rule;
    } rules[] = {
        {"UCHITYVAT_ZEMLU", "KOL_VO_ZEMLIA_PLANER", p.airframe},
        {"ZEMLIA_AGREGATY", "KOL_VO_ZEMLIA_AGREGATY", p.airframe},
        {"ZEMLIA_AGR_DVIG", "KOL_VO_ZEMLIA_AGR_DVIG", p.engine},
        {"ZEMLIA_DVIGATEL", "KOL_VO_ZEMLIA_DVIGATEL", p.engine},
        {"ZEMLIA_REDUCTOR", "KOL_VO_ZEMLIA_REDUCTOR", p.gearbox},
        {"ZEMLIA_LOPASTY", "KOL_VO_ZEMLIA_LOPASTY", p.blades},
        {"ZEMLIA_VOZDUSHNY_VINT", "KOL_VO_ZEMLIA_VOZDUSHNY_VINT", p.propellerRule},
        {"ZEMLIA_SHLANG", "KOL_VO_ZEMLIA_SHLANG", p.hosesRule},
        {"ZEMLIA_ZCU", "KOL_VO_ZEMLIA_ZCU", p.zcu},
    };
    for (const auto& r : rules) {
        row.set(r.switchColumn, groundSwitch(r.rule));
        // A switched-off kind keeps no factor, as a type entered by hand would.
        if (r.rule.counts) row.set(r.factorColumn, r.rule.factor);
    }
    row.set("PTO_PLAN_OT_PRED_NAR", p.helicopter ? 1 : 0);
    types.insert(g.batch, row);
}

// A form cycle of light forms between periodic ones: the periodic form's
// number grows with each step of the cycle, the light form "Ф-1" in between.
void writeProgrammes(Generation& g, const AircraftProfile& p) {
    auto& forms = g.table("PTO_FORMY");
    auto row = forms.row();
    row.set("TIP_VS", p.type)
        .set("VREMIA_F1", p.lightFormHours)
        .set("VREMIA_FORMA", p.periodicFormHours)
        .set("DOPUSKI", std::to_string(p.lightFormHours / 5) + "%" + std::to_string(p.periodicFormHours / 10))
        .set("COL_VO_FORMA", p.formSteps);
    const int steps = p.formSteps * p.periodicFormHours / p.lightFormHours;
    for (int i = 0; i <= std::min(steps, 24); ++i)
        row.set("CASE" + std::to_string(i), i % 2 == 0 ? std::string("Ф-1") : "Ф-" + std::to_string(2 + (i / 2) % 3));
    forms.insert(g.batch, row);

    auto& engineForms = g.table("PTO_FORMY_DVIG");
    engineForms.insert(g.batch, engineForms.row()
                                    .set("TIP_VS", p.type)
                                    .set("VREMIA_FORMA", p.periodicFormHours)
                                    .set("DOPUSK", p.periodicFormHours / 10));
}

void writeOwnersAndOils(Generation& g) {
    auto& owners = g.table("SOBSTVENNIKI");
    for (const Owner& o : fleet::owners())
        owners.insert(g.batch, owners.row()
                                   .set("NAIMENOVANIE", o.name)
                                   .set("ID_NAME", o.key)
                                   .set("GRUPPA", o.group)
                                   .set("PRINADLEGNOST", o.lessor ? 1 : 0)
                                   .set("HIDE", 0));
    auto& oils = g.table("TIP_MASLA");
    int number = 0;
    for (std::string_view oil : oilTypes())
        oils.insert(g.batch, oils.row().set("NOMER", ++number).set("NAZVANIE", oil));
}

// A reference entry's row with its keys: ID from the table's generator, as
// the application keys them, and the next type key (ID_NAME), filed for the
// units that will name it.
TableWriter::Row referenceRow(Generation& g, const std::string& table, const char* generator, const AircraftProfile& p,
                              const ComponentModel& m) {
    auto& keys = g.typeKeys[table];
    const int key = static_cast<int>(keys.size()) + 1;
    keys[typeKeyOf(p.type, m.name, m.drawingNumber)] = key;
    auto row = g.table(table).row();
    row.set("ID", g.connection.nextGeneratorValue(generator))
        .set("TIP_VS", p.type)
        .set("NAZVANIE", m.name)
        .set("CHERT_NOMER", m.drawingNumber)
        .set("ID_NAME", key)
        .set("UCHET_MASLA", m.tracksOil ? 1 : 0)
        .set("KOL_VO_MEST", 1);
    return row;
}

// One reference entry per component model and aircraft type.
void writeComponentTypes(Generation& g, const AircraftProfile& p, std::span<const ComponentModel> models,
                         int carrierKind) {
    for (const ComponentModel& m : models) {
        auto row = referenceRow(g, "ETAAGREGAT", "GEN_ETAAGREGAT_ID", p, m);
        g.table("ETAAGREGAT")
            .insert(g.batch, row.set("PLAN_DVIG_VSU", carrierKind)
                                 .set("EDINICA_NARABOTKI", m.countsLandings ? 1 : 0)
                                 .set("RESURS_MR", m.overhaulLimit)
                                 .set("SROK_MR", calendarLimit(5))
                                 .set("RESURS_OBSH", m.totalLimit)
                                 .set("SROK_OBSH", calendarLimit(20)));
    }
}

void writeApuUnitTypes(Generation& g, const AircraftProfile& p) {
    for (const ComponentModel& m : apuComponents()) {
        auto row = referenceRow(g, "ETA_AGR_VSU", "GEN_ETA_AGR_VSU_ID", p, m);
        g.table("ETA_AGR_VSU")
            .insert(g.batch,
                    row.set("PLAN_DVIG_VSU", 2).set("NAZN_RESURS", m.totalLimit).set("MEGREM_RESURS", m.overhaulLimit));
    }
}

}  // namespace

std::string typeKeyOf(std::string_view aircraftType, std::string_view name, std::string_view drawingNumber) {
    return std::string(aircraftType) + '|' + std::string(name) + '|' + std::string(drawingNumber);
}

void writeReferenceData(Generation& g) {
    writeOwnersAndOils(g);
    for (const AircraftProfile& p : aircraftProfiles()) {
        writeTypeData(g, p);
        writeProgrammes(g, p);
        writeComponentTypes(g, p, airframeComponents(), 0);
        writeComponentTypes(g, p, engineComponents(), 1);
        if (!p.apuModel.empty()) writeApuUnitTypes(g, p);
        ++g.summary.aircraftTypes;
    }
}

}  // namespace mxbook::fleet
