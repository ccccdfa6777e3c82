// bench/bench_Find.cpp
// A find through the bodies of 100,000 messages that finds nothing, against grep -P over the same text: at most 1 time.

#include "bench/support/CNoWindow.h"
#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "tests/support/CScriptedDesktop.h"
#include "viewer/CFinder.h"
#include "viewer/CViewer.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MessageCount = 100'000;

/// Nothing matches any of them; the second one comes near it in every body, the third one at a third of them and then
/// goes back over the rest of the line.
const QString Words = u"解決しませんでした"_s;
const QString Class = u"[0-9]{7,}x"_s;
const QString GoesBack = u"(?:設定|起動|表示).*ソフトですか"_s;

const QTemporaryDir& Folder()
{
    static const QTemporaryDir folder;
    return folder;
}

std::vector<CMessageItem> MakeItems()
{
    std::vector<CMessageItem> items;
    for (int id = MessageCount; id > 0; --id) {
        CMessageItem item;
        item.Message = mdlSamples::MakeMessage(3, id);
        item.Message.Body += u"受付番号 %1\r\n"_s.arg(1'000'000 + id);
        items.push_back(item);
    }
    return items;
}

QString TextFile()
{
    static const QString name = [] {
        QFile file(Folder().filePath(u"bodies.txt"_s));
        if (file.open(QIODevice::WriteOnly)) {
            for (const CMessageItem& item : MakeItems())
                file.write(item.Message.Body.toUtf8());
        }
        return file.fileName();
    }();
    return name;
}

/// The board list with the messages, none of them on view, so that the find goes through all bodies.
struct CFilledViewer
{
    CScriptedDesktop Desk;
    Application App{Desk, Folder().path(), u"tavora"_s};
    CBBS Board{App};
    CNoWindow Host;
    CViewer Viewer{App, Board, Host};
    CFinder Finder{App, Board, Viewer, Host};

    CFilledViewer() { Viewer.List(0).Fill(MakeItems(), {}); }
};

CFilledViewer& Filled()
{
    static CFilledViewer viewer;
    return viewer;
}

void Find(benchmark::State& State, const QString& Text, bool IsExpression)
{
    CFilledViewer& viewer = Filled();
    viewer.App.Option().UseRegExp = IsExpression;
    for (auto _ : State) {
        if (viewer.Finder.Find(Text, true) != CFinder::Outcome::NotFound || !viewer.Finder.Trouble().isEmpty())
            State.SkipWithError("something was found");
    }
}

void Grep(benchmark::State& State, const QString& Pattern)
{
    const QString file = TextFile();
    for (auto _ : State) {
        QProcess grep;
        grep.start(u"grep"_s, {u"-c"_s, u"-P"_s, Pattern, file});
        if (!grep.waitForFinished(-1) || grep.readAllStandardOutput() != "0\n")
            State.SkipWithError("grep found something, or is not there");
    }
}

void BM_FindClass(benchmark::State& State) { Find(State, Class, true); }
void BM_GrepClass(benchmark::State& State) { Grep(State, Class); }
void BM_FindGoesBack(benchmark::State& State) { Find(State, GoesBack, true); }
void BM_GrepGoesBack(benchmark::State& State) { Grep(State, GoesBack); }
void BM_FindWords(benchmark::State& State) { Find(State, Words, true); }
void BM_GrepWords(benchmark::State& State) { Grep(State, Words); }
/// For comparison only: grep has no such search.
void BM_FindPlain(benchmark::State& State) { Find(State, Words, false); }
BENCHMARK(BM_FindClass)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_GrepClass)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_FindGoesBack)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_GrepGoesBack)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_FindWords)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_GrepWords)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
BENCHMARK(BM_FindPlain)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(7);
} // namespace

int main(int argc, char** argv)
{
    qputenv("LC_ALL", "C.UTF-8"); // grep is to read characters, as we do
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv,
                         {{"BM_FindClass", {{"BM_GrepClass"}}, 1.0},
                          {"BM_FindGoesBack", {{"BM_GrepGoesBack"}}, 1.0},
                          {"BM_FindWords", {{"BM_GrepWords"}}, 1.0}});
}
