// bench/bench_Receive.cpp
// A receive of 100 full pages from tavora-boardd: at most what storing the same pages takes plus 1.5 times what curl
// takes to fetch the same addresses over one connection.

#include "bench/support/CRatioReporter.h"
#include "bench/support/CServerProcess.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "board/CBlockStore.h"
#include "board/CRunState.h"
#include "platform/dao/Database.h"
#include "platform/text/Codepage932.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int PageCount = 100;
constexpr int PerPage = 30;

const CServerProcess& Server()
{
    static const CServerProcess server(QStringLiteral(TAVORA_BINARY_DIR "/boardd/tavora-boardd"), PageCount * PerPage);
    return server;
}

QString PageUrl(int Page) { return Server().BoardUrl() + u"?dousa=log&logmidoku=0&logno="_s + QString::number(Page); }

/// A new database whose first board is the server's.
struct CReader
{
    QTemporaryDir Folder;
    CScriptedDesktop Desktop;
    Application App{Desktop, Folder.path(), u"tavora"_s};

    CReader()
    {
        App.SetLogDB(mdlStore::CreateNewDatabase(App.DatabaseFileName()));
        App.LogDB()->Execute(u"UPDATE BBS SET MaxCount = %1, URL = '%2' WHERE BBS_ID = %3"_s.arg(
            QString::number(PageCount * PerPage), Server().BoardUrl(), QString::number(Board)));
    }
};

void BM_Receive(benchmark::State& State)
{
    for (auto _ : State) {
        State.PauseTiming();
        CReader reader;
        CBBS board(reader.App);
        board.Initialize(reader.App.LogDB());
        State.ResumeTiming();
        board.LoadBBS(Board, false, false);
        State.PauseTiming();
        if (board.SaveCount() != PageCount * PerPage)
            State.SkipWithError("not all messages were received");
        State.ResumeTiming();
    }
}
BENCHMARK(BM_Receive)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

/// All pages over one connection, into Folder under their numbers; an empty Folder throws them away.
QStringList CurlArguments(const QString& Folder)
{
    QStringList arguments{u"-s"_s};
    for (int page = 0; page < PageCount; ++page)
        arguments << u"-o"_s << (Folder.isEmpty() ? u"/dev/null"_s : Folder + u'/' + QString::number(page))
                  << PageUrl(page);
    return arguments;
}

void BM_Curl(benchmark::State& State)
{
    for (auto _ : State) {
        if (QProcess::execute(u"curl"_s, CurlArguments({})) != 0)
            State.SkipWithError("curl failed");
    }
}
BENCHMARK(BM_Curl)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

void BM_StoreOnly(benchmark::State& State)
{
    QTemporaryDir folder;
    QProcess::execute(u"curl"_s, CurlArguments(folder.path()));
    std::vector<QString> pages;
    for (int page = 0; page < PageCount; ++page) {
        QFile file(folder.path() + u'/' + QString::number(page));
        if (file.open(QIODevice::ReadOnly))
            pages.push_back(text::From932(file.readAll()));
    }
    for (auto _ : State) {
        State.PauseTiming();
        CReader reader;
        CRunState run;
        CBlockStore store(reader.App, run);
        store.SetDatabase(reader.App.LogDB());
        State.ResumeTiming();
        for (const QString& page : pages)
            store.Store(Board, page, false);
    }
}
BENCHMARK(BM_StoreOnly)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_Receive", {{"BM_Curl", 1.5}, {"BM_StoreOnly"}}, 1.0}});
}
