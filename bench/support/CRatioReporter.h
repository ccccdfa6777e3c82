// bench/support/CRatioReporter.h
// Prints what a benchmark costs as a ratio to its reference in the same run: this is what stays true on a noisy machine.

#ifndef BENCH_SUPPORT_CRATIOREPORTER_H
#define BENCH_SUPPORT_CRATIOREPORTER_H

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// A console reporter that remembers the best wall-clock time of every benchmark.
class CRatioReporter : public benchmark::ConsoleReporter
{
public:
    /// A benchmark that is part of a reference, so many times.
    struct Share
    {
        std::string Name;
        double Times = 1;
    };
    /// Ours is to cost at most Aim times Reference (the sum of its shares).
    struct Promise
    {
        std::string Ours;
        std::vector<Share> Reference;
        double Aim;
    };

    void ReportRuns(const std::vector<Run>& Runs) override;

    /// One line a promise. Returns whether every promise was kept.
    bool PrintRatios(const std::vector<Promise>& Promises) const;

private:
    std::map<std::string, double> m_bestSeconds;
};

/// Runs the registered benchmarks and prints the ratios; what main() returns.
int RunWithRatios(int Argc, char** Argv, const std::vector<CRatioReporter::Promise>& Promises);

#endif
