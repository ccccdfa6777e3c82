// bench/bench_Load.cpp
// "全て表示" of a board with 100,000 messages in a database of 1,000,000 against the sqlite3 shell selecting the same
// rows into a file: at most 2 times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/CViewerOnDatabase.h"
#include "bench/support/Samples.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int OtherBoards = 9; // each with as many

const QString& Folder()
{
    static const QTemporaryDir folder;
    static const QString path = folder.path() + u'/';
    static const bool made = mdlSamples::MakeDatabase(path + u"log.mdb"_s, Board, MessageCount) &&
                             mdlSamples::CopyBoard(path + u"log.mdb"_s, Board, OtherBoards);
    Q_ASSERT(made);
    return path;
}

void BM_ShowAll(benchmark::State& State)
{
    CViewerOnDatabase program(Folder(), Board);
    for (auto _ : State)
        program.ShowAll();
    if (program.Viewer.List(0).Count() != MessageCount)
        State.SkipWithError("not all messages were shown");
}
BENCHMARK(BM_ShowAll)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);

void BM_ShellSelect(benchmark::State& State)
{
    for (auto _ : State) {
        QProcess shell;
        shell.setStandardOutputFile(Folder() + u"rows.txt"_s);
        shell.start(u"sqlite3"_s, {Folder() + u"log.mdb"_s,
                                   u"SELECT * FROM Message WHERE BBS_ID = %1 ORDER BY ID DESC"_s.arg(Board)});
        if (!shell.waitForFinished(-1) || shell.exitCode() != 0)
            State.SkipWithError("the sqlite3 shell failed");
    }
}
BENCHMARK(BM_ShellSelect)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_ShowAll", {{"BM_ShellSelect"}}, 2.0}});
}
