// Console reporter that also prints the headline figures in the form that
// bench/run collects: "figure NAME VALUE UNIT".
//
// A benchmark is a headline figure when its name starts with "figure:"; the
// rest of the name (up to the first '/') is the figure's name. With
// repetitions the median is reported, otherwise the single run.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

namespace lumiscope_bench {

class FigureReporter : public benchmark::ConsoleReporter {
public:
    // No colour: the figure lines are read by scripts.
    FigureReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name;
            if (name.rfind("figure:", 0) != 0) continue;
            const bool aggregate = run.run_type == Run::RT_Aggregate;
            if (aggregate && run.aggregate_name != "median") continue;
            if (!aggregate && run.repetitions > 1) continue;
            figures_.push_back("figure " + name.substr(7) + " " +
                               std::to_string(run.GetAdjustedRealTime()) + " " +
                               benchmark::GetTimeUnitString(run.time_unit));
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const std::string& line : figures_) std::printf("%s\n", line.c_str());
        std::fflush(stdout);
    }

private:
    std::vector<std::string> figures_;
};

// main() of a benchmark group: runs every registered benchmark through the
// figure reporter (or a group's own reporter built on it, for its ratios).
template <typename Reporter = FigureReporter>
int RunGroup(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}

}  // namespace lumiscope_bench

#define LUMISCOPE_BENCH_MAIN() \
    int main(int argc, char** argv) { return lumiscope_bench::RunGroup<>(argc, argv); }
