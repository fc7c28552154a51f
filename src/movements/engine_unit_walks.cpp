// The units mounted on an engine follow it: re-pointed to the aircraft the
// engine is installed on, moved with it between off-aircraft locations, and
// deleted with it from the repair pool. Each walk stores all its units in one
// unit of work (the caller's when one is open): a unit that cannot be written
// leaves the others as they were.
#include <string>
#include <string_view>
#include <vector>

#include "mxbook/data/batch.h"
#include "mxbook/data/unit_of_work.h"
#include "agregat_columns.h"
#include "mxbook/movements.h"
#include "register/known_tails.h"

namespace mxbook::movements {

namespace {

// SOBSTVENNIKI, the owners.
constexpr int ownerGroup = 3;  // GRUPPA

constexpr const char* unitsOfEngineSql = "SELECT * FROM Agregat WHERE NUMER_DVIG_VSU=:pSERIAL ORDER BY NAZVANIE, ID;";
constexpr const char* aircraftOwnerSql = "Select SOBSTVENNOST From REESTR Where BORTOVOI_NOMER=:pTAIL Order By ID;";
constexpr const char* registeredTailsSql = "select distinct BORTOVOI_NOMER from REESTR order by BORTOVOI_NOMER";
constexpr const char* ownerSql = "Select * From SOBSTVENNIKI Where ID_NAME=:pOWNER Order By ID;";
constexpr const char* drawingNumberSql = "Select CHERT_NOMER From ETAAGREGAT Where ID_NAME=:pKEY Order By ID;";
constexpr const char* entryForTypeSql =
    "Select ID_NAME From ETAAGREGAT Where CHERT_NOMER=:pDRAWING And TIP_VS=:pTYPE Order By ID;";
// The units standing at a location as mounted on the engine (PLAN_DVIG_VSU 1).
constexpr const char* relocateSql =
    "update AGREGAT set GDE_STOIT = ?, DATA_USTANOVKI = ? where GDE_STOIT = ? and PLAN_DVIG_VSU = 1 and "
    "NUMER_DVIG_VSU = ?";
constexpr const char* deleteSql =
    "delete from AGREGAT where GDE_STOIT = ? and PLAN_DVIG_VSU = 1 and NUMER_DVIG_VSU = ?";
constexpr const char* repairPool = "Ремфонд";

// Runs the query again with a new value of its one changing parameter.
void reopen(db::DataSet& query, std::string_view param, const db::Value& value) {
    query.close();
    query.setParam(param, value);
    query.open();
}

// An owner's group as a whole number: 0 for an owner not among the owners,
// or one without a group.
int groupOf(db::DataSet& owners, const db::Value& owner) {
    reopen(owners, "pOWNER", owner);
    return owners.eof() || owners.field(ownerGroup).isNull() ? 0 : owners.field(ownerGroup).asInt();
}

std::vector<std::string> registeredTails(db::Connection& connection) {
    std::vector<std::string> tails;
    db::DataSet aircraft(connection, registeredTailsSql, db::DataSet::Traversal::forwardOnly);
    for (aircraft.open(); !aircraft.eof(); aircraft.next()) tails.push_back(aircraft.field(0).asText());
    return tails;
}

// The aircraft's owner; DataError for a tail the register lacks.
db::Value aircraftOwner(db::Connection& connection, const std::string& tail) {
    db::DataSet aircraft(connection, aircraftOwnerSql);
    aircraft.setParam("pTAIL", tail);
    aircraft.open();
    if (aircraft.eof()) requireRegistered(registeredTails(connection), tail);
    return aircraft.field(0).value();
}

// Each unit of the engine takes the entry of the aircraft's type for its
// drawing number (where there is one), the aircraft's owner when its owner
// is of another group, the aircraft's type and tail, and the date.
void repointEngineUnits(db::Connection& connection, const std::string& aircraftType, const std::string& engineSerial,
                        Date date, const std::string& tail) {
    // Refused before a unit of work opens: an outer one is left as it was.
    const db::Value owner = aircraftOwner(connection, tail);
    db::UnitOfWork work(connection);
    db::DataSet owners(connection, ownerSql);
    const int aircraftGroup = groupOf(owners, owner);
    db::DataSet drawings(connection, drawingNumberSql);
    db::DataSet entries(connection, entryForTypeSql);
    entries.setParam("pTYPE", aircraftType);

    db::DataSet units(connection, unitsOfEngineSql);
    units.setParam("pSERIAL", engineSerial);
    // Edits stay pending until updateBatch(): a failure on the way stores none.
    for (units.open(); !units.eof(); units.next()) {
        units.edit();
        reopen(drawings, "pKEY", units.field(agregat::referenceKey).value());
        if (!drawings.eof()) {
            reopen(entries, "pDRAWING", drawings.field(0).value());
            if (!entries.eof()) units.setValue(agregat::referenceKey, entries.field(0).value());
        }
        if (groupOf(owners, units.field(agregat::owner).value()) != aircraftGroup)
            units.setValue(agregat::owner, owner);
        units.setValue(agregat::aircraftType, aircraftType);
        units.setValue(agregat::location, tail);
        units.setValue(agregat::installed, date);
        units.post();
    }
    units.updateBatch();
    work.commit();
}

// One statement each: it changes all its units or, failing, none.
void relocateEngineUnits(db::Connection& connection, const std::string& engineSerial, Date date,
                         const std::string& oldLocation, const std::string& newLocation) {
    db::Batch batch(connection);
    batch.execute(relocateSql, {newLocation, date, oldLocation, engineSerial});
    batch.commit();
}

void deletePooledEngineUnits(db::Connection& connection, const std::string& engineSerial) {
    db::Batch batch(connection);
    batch.execute(deleteSql, {repairPool, engineSerial});
    batch.commit();
}

}  // namespace

}  // namespace mxbook::movements

namespace mxbook {

void FunAgregatCorrectTipNumVSDvigatel(db::Connection& connection, const std::string& aircraftType,
                                       const std::string& engineSerial, Date date, const std::string& tailNumber) {
    movements::repointEngineUnits(connection, aircraftType, engineSerial, date, tailNumber);
}

void FunAgregatCorrectScladDvigatel(db::Connection& connection, const std::string& engineSerial, Date date,
                                    const std::string& oldLocation, const std::string& newLocation) {
    movements::relocateEngineUnits(connection, engineSerial, date, oldLocation, newLocation);
}

void FunAgregatDeleteDvigatel(db::Connection& connection, const std::string& engineSerial) {
    movements::deletePooledEngineUnits(connection, engineSerial);
}

}  // namespace mxbook
