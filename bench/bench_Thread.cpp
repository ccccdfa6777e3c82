// bench/bench_Thread.cpp
// Arranging 100,000 messages as threads against loading them: at most 0.5 times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/CViewerOnDatabase.h"
#include "bench/support/Samples.h"
#include "viewer/mdlColumns.h"

#include <QCoreApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;

CViewerOnDatabase& Program()
{
    static const QTemporaryDir folder;
    static const bool made = mdlSamples::MakeDatabase(folder.path() + u"/log.mdb"_s, Board, MessageCount);
    Q_ASSERT(made);
    static CViewerOnDatabase program(folder.path() + u'/', Board);
    return program;
}

void BM_Load(benchmark::State& State)
{
    CViewerOnDatabase& program = Program();
    for (auto _ : State)
        program.ShowAll();
    if (program.Viewer.List(0).Count() != MessageCount)
        State.SkipWithError("not all messages were shown");
}
BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

/// From the newest first, as a load leaves the list.
void BM_Thread(benchmark::State& State)
{
    CMessageList& list = Program().Viewer.List(0);
    for (auto _ : State) {
        State.PauseTiming();
        list.ClearIndent();
        list.Sort(mdlColumns::ID, CMessageList::Order::Descending);
        State.ResumeTiming();
        Program().Viewer.ShowThread(0);
    }
    if (list.SortColumn() >= 0 || list.Text(MessageCount - 1, mdlColumns::Subject).isEmpty())
        State.SkipWithError("no threads were made");
}
BENCHMARK(BM_Thread)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_Thread", {{"BM_Load"}}, 0.5}});
}
