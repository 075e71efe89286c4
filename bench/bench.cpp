// Runs the benchmarks in turn, one repetition of each after the other, so that
// the ratios hold when the machine's speed drifts; then compares the ratios of
// the medians with the goals.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

#include "goals.hpp"

namespace {

/// The console's table, and the times behind it.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median")
                medians_[run.run_name.str()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    /// 0 when the benchmark was not run.
    double median(const std::string& name) const {
        const auto found = medians_.find(name);
        return found == medians_.end() ? 0 : found->second;
    }

  private:
    std::map<std::string, double> medians_;
};

bool report(const RatioReporter& reporter, const std::vector<qvtc::bench::Goal>& goals) {
    bool all_met = true;
    for (const auto& goal : goals) {
        const double measured = reporter.median(goal.measured);
        const double yardstick = reporter.median(goal.yardstick);
        if (measured <= 0 || yardstick <= 0) continue;
        std::printf("%-58s %10.4f", goal.what.c_str(), measured / yardstick);
        if (goal.at_most <= 0) {
            std::puts("");
            continue;
        }
        const bool met = measured <= goal.at_most * yardstick;
        all_met = all_met && met;
        std::printf("  goal <= %-8.4f %s\n", goal.at_most, met ? "met" : "MISSED");
    }
    return all_met;
}

} // namespace

int main(int argc, char** argv) {
    if (access("/run/disposable-terminal", F_OK) != 0) {
        std::fprintf(stderr,
                     "The benchmarks rewrite the settings: run them in a disposable terminal.\n");
        return 1;
    }
    std::vector<std::string> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1,
                     {"--benchmark_repetitions=5", "--benchmark_enable_random_interleaving=true",
                      "--benchmark_min_time=0.1", "--benchmark_report_aggregates_only=true"});
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nRatios of medians\n");
    const bool settings_met = report(reporter, qvtc::bench::settings_goals());
    const bool capture_met = report(reporter, qvtc::bench::capture_goals());
    const bool network_met = report(reporter, qvtc::bench::network_goals());
    return settings_met && capture_met && network_met ? 0 : 1;
}
