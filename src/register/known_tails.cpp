#include "known_tails.h"

#include <algorithm>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

// Edits (insertions, deletions, substitutions of a byte) that turn one text
// into the other.
std::size_t editDistance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (from[i - 1] == to[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[to.size()];
}

std::string noSuchAircraft(const std::string& tail, const std::vector<std::string>& tails) {
    constexpr std::size_t closeEnough = 2;
    constexpr std::size_t offered = 5;
    const std::string wanted = upperCase(tail);
    std::size_t nearest = closeEnough + 1;
    std::vector<std::string> near;
    for (const std::string& each : tails) {
        const std::size_t distance = editDistance(wanted, upperCase(each));
        if (distance < nearest) {
            nearest = distance;
            near.clear();
        }
        if (distance == nearest && near.size() < offered) near.push_back(each);
    }
    const std::string refusal = "no aircraft '" + tail + "'";
    if (near.empty()) return refusal + " in the register";
    std::string names;
    for (const std::string& each : near) names += (names.empty() ? "" : ", ") + each;
    return refusal + "; did you mean " + names + "?";
}

}  // namespace

void requireRegistered(const std::vector<std::string>& tails, const std::string& tail) {
    if (std::find(tails.begin(), tails.end(), tail) == tails.end()) throw DataError(noSuchAircraft(tail, tails));
}

}  // namespace mxbook
