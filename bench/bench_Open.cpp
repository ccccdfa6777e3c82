// bench/bench_Open.cpp
// Opening the window on a database of 100,000 messages against an empty one: at most 1.2 times. A database of one page of
// messages stands between them: it costs the same painting of the list's visible rows, so it tells what is owed to the size.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "app/Application.h"
#include "app/Settings.h"
#include "mainwin/frmView.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int PageSize = 100; // what the list shows of a board at first

/// From the database file to the painted window, and the program's way out.
void OpenAndClose(benchmark::State& State, const QString& Folder)
{
    for (auto _ : State) {
        CScriptedDesktop desktop;
        Application app(desktop, Folder, u"tavora"_s);
        app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
        app.SettingsIni().Load(app.IniFileName());
        mdlSettings::ReadSettings(app);
        app.Option().CacheFilePath = app.Option().IconFilePath = app.Option().ErrorLogFilePath = Folder;
        frmView window(app);
        if (!window.Open())
            State.SkipWithError("the window did not open");
        QCoreApplication::processEvents();
        State.PauseTiming();
        window.Quit();
        QCoreApplication::processEvents();
        State.ResumeTiming();
    }
}

void OpenWith(benchmark::State& State, int Count)
{
    const QTemporaryDir folder;
    if (!mdlSamples::MakeDatabase(folder.path() + u"/log.mdb"_s, Board, Count))
        State.SkipWithError("no database");
    OpenAndClose(State, folder.path());
}

void BM_OpenFull(benchmark::State& State) { OpenWith(State, MessageCount); }
BENCHMARK(BM_OpenFull)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);

void BM_OpenOnePage(benchmark::State& State) { OpenWith(State, PageSize); }
BENCHMARK(BM_OpenOnePage)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);

void BM_OpenEmpty(benchmark::State& State) { OpenWith(State, 0); }
BENCHMARK(BM_OpenEmpty)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_OpenFull", {{"BM_OpenEmpty"}}, 1.2}, {"BM_OpenFull", {{"BM_OpenOnePage"}}, 1.2}});
}
