// A seeded generator whose sequence is the same on every platform and
// library: the standard distributions are not, so the draws are our own.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace mxbook::fleet {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    // SplitMix64: small, fast and well mixed, which is all a generator of test data needs.
    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    // A whole number from `low` to `high`, both included.
    int between(int low, int high) {
        const auto span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
        return low + static_cast<int>(next() % span);
    }

    // True with the given probability.
    bool chance(double probability) { return static_cast<double>(next() >> 11) * 0x1.0p-53 < probability; }

    template <typename T>
    const T& pick(std::span<const T> items) {
        return items[static_cast<std::size_t>(between(0, static_cast<int>(items.size()) - 1))];
    }
    template <typename T>
    const T& pick(const std::vector<T>& items) {
        return pick(std::span<const T>(items));
    }

    // An independent stream for one part of the work (one aircraft, say), so
    // that a draw added in one part does not shift every row of the others.
    Random fork(std::uint64_t salt) const {
        Random mixer(state_ ^ (salt * 0xD1B54A32D192ED03ULL));
        return Random(mixer.next());
    }

private:
    std::uint64_t state_;
};

}  // namespace mxbook::fleet
