#include "ratios.h"

#include <algorithm>
#include <cstdio>

namespace mxbook::bench {

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
        const std::string name = run.run_name.function_name;
        const double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        // Repeated, each keeps its fastest run: the machine's noise only ever adds time.
        const auto [kept, first] = seconds_.try_emplace(name, seconds);
        if (first) order_.push_back(name);
        else kept->second = std::min(kept->second, seconds);
    }
}

void RatioReporter::compare(std::string title, std::string numerator, std::string denominator) {
    comparisons_.emplace_back(std::move(title), std::move(numerator), std::move(denominator));
}

void RatioReporter::printRatios() const {
    std::printf("\n%-58s %12s %12s %7s\n", "operation", "time (ms)", "floor (ms)", "ratio");
    for (const std::string& name : order_) {
        if (name.find("/floor") != std::string::npos) continue;
        const auto floor = seconds_.find(name + "/floor");
        const double time = seconds_.at(name) * 1000;
        if (floor == seconds_.end()) {
            std::printf("%-58s %12.2f %12s %7s\n", name.c_str(), time, "-", "-");
            continue;
        }
        std::printf("%-58s %12.2f %12.2f %7.2f\n", name.c_str(), time, floor->second * 1000,
                    seconds_.at(name) / floor->second);
    }
    for (const auto& [title, numerator, denominator] : comparisons_) {
        const auto a = seconds_.find(numerator), b = seconds_.find(denominator);
        if (a == seconds_.end() || b == seconds_.end()) continue;
        std::printf("%-58s %12.2f %12.2f %7.2f\n", title.c_str(), a->second * 1000, b->second * 1000,
                    a->second / b->second);
    }
}

}  // namespace mxbook::bench
