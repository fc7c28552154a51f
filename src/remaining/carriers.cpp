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

constexpr const char* keyParameters[] = {"k0", "k1"};

std::optional<CarrierRow> query(const Queries& queries, const CarrierLookup& lookup, std::span<const db::Value> keys) {
    db::DataSet found = queries.prepare(lookup.statement);
    for (std::size_t i = 0; i < keys.size(); ++i) found.setParam(keyParameters[i], keys[i]);
    found.open();
    if (found.eof()) return std::nullopt;
    CarrierRow row;
    for (int i = 0; i < found.fieldCount(); ++i) row.push_back(found.field(i).value());
    return row;
}

}  // namespace

CarrierLookup::CarrierLookup(std::string_view table_, std::span<const std::string_view> keys_,
                             std::span<const std::string_view> columns_)
    : table(table_), keys(keys_), columns(columns_), statement("Select ") {
    for (std::size_t i = 0; i < columns.size(); ++i) statement += (i ? ", " : "") + std::string(columns[i]);
    statement += " From " + std::string(table) + " Where ";
    for (std::size_t i = 0; i < keys.size(); ++i)
        statement += (i ? " And " : "") + std::string(keys[i]) + "=:" + keyParameters[i];
    statement += " Order By ID";
}

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
