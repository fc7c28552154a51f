// What the derivations read of the units' carriers: an aircraft's counters
// in the register, an engine's, an APU's. Each read is a lookup of the first
// row (by ID) of a carrier table whose key columns equal the values given.
// It runs as a query, or is answered from the carrier snapshot open on the
// connection (mxbook::CarrierSnapshot), with the same rows either way.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "indirect_kinds.h"
#include "mxbook/data/value.h"

namespace mxbook::remaining {

struct CarrierLookup {
    CarrierLookup(std::string_view table, std::span<const std::string_view> keys,
                  std::span<const std::string_view> columns);

    std::string_view table;
    std::span<const std::string_view> keys;  // at most two
    std::span<const std::string_view> columns;
    // "Select A, B From T Where K1=:k0 And K2=:k1 Order By ID", written once:
    // one text, so that one prepared statement serves every unit.
    std::string statement;
};

// The aircraft by type and tail: hours and landings since overhaul.
extern const CarrierLookup aircraftCounters;
// The engine by location and serial number: hours and cycles since overhaul.
extern const CarrierLookup engineAtLocation;
// The engine by serial number: hours and starts since overhaul.
extern const CarrierLookup engineCounters;
// The APU by serial number: running hours, starts and air bleeds since
// overhaul, its name, its summed hours.
extern const CarrierLookup apuCounters;

// The looked-up row's values, in the order of the lookup's columns.
using CarrierRow = std::vector<db::Value>;

// Keys compare as `=` compares them in a statement: trailing blanks aside,
// letter case minded, a null equal to nothing.
std::optional<CarrierRow> findCarrier(const Queries& queries, const CarrierLookup& lookup,
                                      std::span<const db::Value> keys);

}  // namespace mxbook::remaining
