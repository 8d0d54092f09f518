#pragma once

// Shows benchmark runs as usual and keeps the best CPU time of each, so that a program can print
// ratios against a baseline measured in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <unistd.h>

class SummaryReporter : public benchmark::ConsoleReporter
{
public:
    SummaryReporter() : ConsoleReporter(isatty(fileno(stdout)) ? OO_ColorTabular : OO_Tabular) { }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            const double ms = run.GetAdjustedCPUTime() * benchmark::GetTimeUnitMultiplier(benchmark::kMillisecond)
                    / benchmark::GetTimeUnitMultiplier(run.time_unit);
            std::string name = run.run_name.function_name;
            if (!run.run_name.args.empty())
                name += '/' + run.run_name.args;
            const auto [it, inserted] = m_best.emplace(name, ms);
            if (!inserted && ms < it->second)
                it->second = ms;
        }
    }

    // Milliseconds per run of "Function" or "Function/args"; negative when it was not run.
    double best(const std::string &name) const
    {
        const auto it = m_best.find(name);
        return it == m_best.end() ? -1.0 : it->second;
    }

    // What every benchmark program's main does: read Google Benchmark's own arguments, run what
    // was registered through this reporter. False for arguments it does not know.
    bool runBenchmarks(int &argc, char **argv)
    {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return false;
        benchmark::RunSpecifiedBenchmarks(this);
        benchmark::Shutdown();
        return true;
    }

    static void printRatio(const std::string &what, double numerator, double denominator, double target)
    {
        if (numerator < 0 || denominator < 0) {
            std::printf("  %-34s (not measured)\n", what.c_str());
            return;
        }
        const double ratio = numerator / denominator;
        if (target <= 0) { // a figure without a target, shown beside the others
            std::printf("  %-34s %8.2f\n", what.c_str(), ratio);
            return;
        }
        std::printf("  %-34s %8.2f   target <= %.1f  %s\n", what.c_str(), ratio, target, ratio <= target ? "ok" : "MISSED");
    }

private:
    std::map<std::string, double> m_best;
};
