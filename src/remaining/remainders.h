// What is left of a limit before it is written as text: the signed
// remainders that the single-limit, tightest-limit and APU-unit calculations
// share, and the rules that decide whose operating time a remainder uses.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "indirect_kinds.h"
#include "mxbook/data/data_set.h"
#include "mxbook/operating_time.h"

namespace mxbook::remaining {

// The used value of a unit row's column as text: as stored, or derived from
// the unit's carrier.
using UsedText = std::function<std::string(db::DataSet& row, int usedColumn)>;
std::string storedText(db::DataSet& row, int usedColumn);
// A general component's, on the row's own connection.
std::string derivedComponentTime(db::DataSet& row, int usedColumn);

// Which kinds' derivations give a unit's used hours, decided once per row: a
// kind applies when the row carries its flag column, the unit is on an
// aircraft (a general component on an engine wherever the engine is) and its
// flag is 1. Each applying kind in turn replaces the text when it gives a
// value, so the last one decides.
class HoursDerivation {
public:
    explicit HoursDerivation(const db::DataSet& row);
    std::string usedText(db::DataSet& row, int usedColumn) const;

private:
    std::vector<const IndirectKind*> kinds_;
};

// How a general component's used count is read: as stored, derived from its
// carrier (flag 1), or not at all (a flag neither 0 nor 1 leaves nothing).
enum class CountRule { stored, derived, nothingLeft };
CountRule countRule(const db::DataSet& row);

// The limit (whole hours, or a count) less what the used text says; negative
// when overrun; nullopt when the limit or the used column is null. The used
// column is read only through `used`.
std::optional<Minutes> minutesLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& used);
std::optional<long long> countLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& used);
// What a count rule leaves of the limit: nullopt for a null column.
std::optional<long long> countLeft(db::DataSet& row, int limitColumn, int usedColumn, CountRule rule);
// The limit less the derived count, where the booked count leaves something
// of it; 0 where it does not, whatever the derived count says.
std::optional<long long> derivedCountLeft(db::DataSet& row, int limitColumn, int usedColumn, const UsedText& derived);

// The texts of what is left: "H:MM" or "00:00"; a count or "0"; "1г. 8м."
// or "0". Nothing left, an overrun and no remainder at all read the same.
std::string hoursLeftText(std::optional<Minutes> left);
std::string countLeftText(std::optional<long long> left);
std::string calendarLeftText(std::optional<int> months);

}  // namespace mxbook::remaining
