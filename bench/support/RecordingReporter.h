#pragma once
// A console reporter that also keeps each run's time, so a benchmark program
// can print its figures beside their budgets after the runs.

#include <benchmark/benchmark.h>

#include <functional>

#include <map>
#include <string>
#include <vector>

namespace zephbench
{

// Keeps every run's time per iteration, in nanoseconds, by name.
class RecordingReporter : public benchmark::ConsoleReporter
{
public:
    // Plain text: the output goes to logs more often than to a terminal.
    RecordingReporter() : ConsoleReporter(OO_None) {}

    std::map<std::string, double> nanoseconds;

    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs)
            if (run.iterations > 0)
                // Processor time: the machine is shared, and wall time
                // carries the other processes' load.
                nanoseconds[run.benchmark_name()] =
                    run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
        ConsoleReporter::ReportRuns(runs);
    }

    // By name and argument, whatever options follow them in the run's name.
    double Get(std::string const& name) const
    {
        for (auto const& entry : nanoseconds)
            if (entry.first.compare(0, name.size(), name) == 0 &&
                (entry.first.size() == name.size() || entry.first[name.size()] == '/'))
                return entry.second;
        return -1.0;
    }
};

// The main of a benchmark program: runs the benchmarks the command line
// names, then prints their figures beside their budgets. 1 for a bad argument.
inline int RunAndPrintBudgets(int argc, char** argv,
                              std::function<void(RecordingReporter const&)> const& printBudgets)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    {
        RecordingReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        printBudgets(reporter);
    }
    benchmark::Shutdown();
    return 0;
}

} // namespace zephbench
