// bench/bench_Import.cpp
// Importing a text file of 100,000 records, reading, thread links and progress included, against a floor that inserts
// the same rows with one prepared SQLite statement in transactions of the same size at the same sync level: at most 3
// times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "bench/support/SqliteFloor.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "board/CBlockStore.h"
#include "platform/text/Codepage932.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;

/// One file with all the samples; empty when it cannot be written.
QString MakeLog(const QTemporaryDir& Folder)
{
    QFile file(Folder.path() + u"/log.txt"_s);
    const QByteArray log = text::To932(mdlSamples::MakeBlocks(Board, MessageCount, MessageCount).front());
    return file.open(QIODevice::WriteOnly) && file.write(log) == log.size() ? file.fileName() : QString();
}

void BM_Import(benchmark::State& State)
{
    const QTemporaryDir folder;
    const QString log = MakeLog(folder);
    for (auto _ : State) {
        State.PauseTiming();
        const CEmptyDatabase round;
        CScriptedDesktop desktop;
        Application app(desktop, round.Folder.path(), u"tavora"_s);
        app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
        CBBS bbs(app);
        bbs.Initialize(app.LogDB());
        State.ResumeTiming();
        bbs.ImportLog(Board, log, false);
        State.PauseTiming();
        if (bbs.SaveCount() != MessageCount)
            State.SkipWithError("not all records were stored");
        bbs.Initialize(nullptr);
        app.LogDB()->Close();
        State.ResumeTiming();
    }
}
BENCHMARK(BM_Import)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

void BM_Floor(benchmark::State& State) { RunSqliteFloor(State, Board, MessageCount, CBlockStore::MaxBatchRecords); }
BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_Import", {{"BM_Floor"}}, 3.0}});
}
