// bench/bench_Store.cpp
// Storing 100,000 records from their text, thread links included, against a floor that inserts the same rows with one
// prepared SQLite statement in transactions of the same size at the same sync level: at most 2 times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "bench/support/SqliteFloor.h"
#include "app/Application.h"
#include "board/CBlockStore.h"
#include "board/CRunState.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int PerBlock = 30; // as many as a board sends in a page

void BM_Store(benchmark::State& State)
{
    const std::vector<QString> blocks = mdlSamples::MakeBlocks(Board, MessageCount, PerBlock);
    for (auto _ : State) {
        State.PauseTiming();
        const CEmptyDatabase round;
        CScriptedDesktop desktop;
        Application app(desktop, round.Folder.path(), u"tavora"_s);
        app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
        CRunState run;
        CBlockStore store(app, run);
        store.SetDatabase(app.LogDB());
        State.ResumeTiming();
        for (const QString& block : blocks)
            store.Store(Board, block, false);
        app.LogDB()->Close();
        State.PauseTiming();
        if (run.SaveCount != MessageCount)
            State.SkipWithError("not all records were stored");
        State.ResumeTiming();
    }
}
BENCHMARK(BM_Store)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

void BM_Floor(benchmark::State& State) { RunSqliteFloor(State, Board, MessageCount, PerBlock); }
BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_Store", {{"BM_Floor"}}, 2.0}});
}
