// Each measured operation beside its floor: the reporter keeps the times of
// benchmarks named "X" and "X/floor" and prints X / floor after the run;
// with --benchmark_repetitions, of each one's fastest repetition.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace mxbook::bench {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    // A ratio of two measured operations, besides the operation/floor ones.
    void compare(std::string title, std::string numerator, std::string denominator);
    void printRatios() const;

private:
    std::map<std::string, double> seconds_;
    std::vector<std::string> order_;
    std::vector<std::tuple<std::string, std::string, std::string>> comparisons_;
};

}  // namespace mxbook::bench
