// bench/support/CRatioReporter.cpp
// The ratio reporter.

#include "bench/support/CRatioReporter.h"

#include <algorithm>
#include <cstdio>

void CRatioReporter::ReportRuns(const std::vector<Run>& Runs)
{
    for (const Run& run : Runs) {
        if (run.error_occurred || run.run_type != Run::RT_Iteration)
            continue;
        const double seconds = run.real_accumulated_time / double(run.iterations);
        const auto [entry, isNew] = m_bestSeconds.try_emplace(run.run_name.function_name, seconds);
        if (!isNew)
            entry->second = std::min(entry->second, seconds);
    }
    ConsoleReporter::ReportRuns(Runs);
}

bool CRatioReporter::PrintRatios(const std::vector<Promise>& Promises) const
{
    bool kept = true;
    for (const Promise& promise : Promises) {
        double reference = 0;
        for (const Share& share : promise.Reference)
            reference += m_bestSeconds.contains(share.Name) ? share.Times * m_bestSeconds.at(share.Name) : 0;
        if (!m_bestSeconds.contains(promise.Ours) || reference <= 0)
            continue;
        const double ratio = m_bestSeconds.at(promise.Ours) / reference;
        std::printf("ratio %s to %s: %.2f (aim: at most %.2f)\n", promise.Ours.c_str(),
                    promise.Reference.front().Name.c_str(), ratio, promise.Aim);
        kept = kept && ratio <= promise.Aim;
    }
    return kept;
}

int RunWithRatios(int Argc, char** Argv, const std::vector<CRatioReporter::Promise>& Promises)
{
    benchmark::Initialize(&Argc, Argv);
    CRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios(Promises);
    return 0;
}
