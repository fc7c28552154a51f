// The name of a form by its place in the type's cycle: the cycle is a run of
// steps of one periodic interval each, and each step's form is named in the
// programme's "CASE" columns.
#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/forms.h"
#include "programme.h"

namespace mxbook {

namespace {

constexpr const char* periodicFormsDoneSql =
    "Select First 1 KOL_VO_TO From REESTR Where TIP_VS=:pTIP And BORTOVOI_NOMER=:pTAIL Order By ID";

forms::Programme namingProgramme(db::Connection& connection, const std::string& aircraftType) {
    forms::Programme programme = forms::readProgramme(connection, forms::aircraftProgramme, aircraftType);
    if (!programme.found)
        throw DataError("aircraft type '" + aircraftType + "' has no maintenance programme in PTO_FORMY");
    if (programme.lightInterval <= 0)
        throw DataError("the maintenance programme of aircraft type '" + aircraftType +
                        "' has no \"Ф-1\" interval above zero");
    return programme;
}

// The form of the step [Low, High) that holds `hours`, among the cycle's
// steps of one periodic interval each: "CASE" + (High div the "Ф-1"
// interval - 1); CASE0 when no step holds it.
const std::string& formOfStepHolding(const forms::Programme& p, long long hours, const std::string& aircraftType) {
    long long index = 0;
    if (p.interval > 0 && hours >= 0 && hours / p.interval < p.cycleSteps) {
        const long long high = (hours / p.interval + 1) * p.interval;
        index = high / p.lightInterval - 1;
    }
    return forms::stepName(p, index, aircraftType);
}

}  // namespace

std::string GetNameF1(db::Connection& connection, const std::string& aircraftType, int hours) {
    return formOfStepHolding(namingProgramme(connection, aircraftType), hours, aircraftType);
}

std::string GetNameSledF1(db::Connection& connection, const std::string& aircraftType, const std::string& tailNumber) {
    db::DataSet aircraft(connection, periodicFormsDoneSql, db::DataSet::Traversal::forwardOnly);
    aircraft.setParam("pTIP", aircraftType);
    aircraft.setParam("pTAIL", tailNumber);
    aircraft.open();
    if (aircraft.eof())
        throw DataError("no aircraft '" + tailNumber + "' of type '" + aircraftType + "' in the register");
    const long long periodicDone = aircraft.field(0).asInt();
    const forms::Programme p = namingProgramme(connection, aircraftType);
    // After an odd number of periodic forms the next one is a "Ф-1" later.
    const long long position = periodicDone * p.interval + (periodicDone % 2 != 0 ? p.lightInterval : 0);
    return formOfStepHolding(p, position, aircraftType);
}

}  // namespace mxbook
