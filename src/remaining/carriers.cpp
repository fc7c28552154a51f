#include "carriers.h"

#include "carrier_snapshot.h"

namespace mxbook::remaining {

namespace {

constexpr std::string_view typeAndTail[] = {"TIP_VS", "BORTOVOI_NOMER"};
constexpr std::string_view aircraftColumns[] = {"NARABOTKA_PPR_CHASOV", "NARABOTKA_PPR_POSADKI"};
constexpr std::string_view locationAndSerial[] = {"GDE_STOIT", "ZAVODSKOI_NOMER"};
constexpr std::string_view engineSerial[] = {"ZAVODSKOI_NOMER"};
constexpr std::string_view engineAtLocationColumns[] = {"NARABOTKA_PPR", "CICLI_PPR"};
constexpr std::string_view engineCounterColumns[] = {"NARABOTKA_PPR", "ZAPUSKI_PPR"};
constexpr std::string_view apuSerial[] = {"ZAVODSKOY_NOMER"};
constexpr std::string_view apuColumns[] = {"OBSHAIA_PPR", "ZAPUSKI_PPR", "OTBORY_PPR", "NAZVANIE", "SUMMA_PPR"};

// "Select A, B From T Where K1=:k0 And K2=:k1 Order By ID": one text per
// lookup, so that one prepared statement serves every unit.
std::string statementOf(const CarrierLookup& lookup) {
    std::string sql = "Select ";
    for (std::size_t i = 0; i < lookup.columns.size(); ++i) sql += (i ? ", " : "") + std::string(lookup.columns[i]);
    sql += " From " + std::string(lookup.table) + " Where ";
    for (std::size_t i = 0; i < lookup.keys.size(); ++i)
        sql += (i ? " And " : "") + std::string(lookup.keys[i]) + "=:k" + std::to_string(i);
    return sql + " Order By ID";
}

std::optional<CarrierRow> query(const Queries& queries, const CarrierLookup& lookup, std::span<const db::Value> keys) {
    db::DataSet found = queries.prepare(statementOf(lookup));
    for (std::size_t i = 0; i < keys.size(); ++i) found.setParam("k" + std::to_string(i), keys[i]);
    found.open();
    if (found.eof()) return std::nullopt;
    CarrierRow row;
    for (int i = 0; i < found.fieldCount(); ++i) row.push_back(found.field(i).value());
    return row;
}

}  // namespace

const CarrierLookup aircraftCounters{"REESTR", typeAndTail, aircraftColumns};
const CarrierLookup engineAtLocation{"DVIGATEL", locationAndSerial, engineAtLocationColumns};
const CarrierLookup engineCounters{"DVIGATEL", engineSerial, engineCounterColumns};
const CarrierLookup apuCounters{"VSU", apuSerial, apuColumns};

std::optional<CarrierRow> findCarrier(const Queries& queries, const CarrierLookup& lookup,
                                      std::span<const db::Value> keys) {
    if (CarrierSnapshot::Tables* snapshot = snapshotOn(queries.attachment())) return snapshot->find(lookup, keys);
    return query(queries, lookup, keys);
}

}  // namespace mxbook::remaining
