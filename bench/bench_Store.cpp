// bench/bench_Store.cpp
// Storing 100,000 records from their text, thread links included, against a floor that inserts the same rows with one
// prepared SQLite statement in transactions of the same size at the same sync level: at most 2 times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "app/Application.h"
#include "board/CBlockStore.h"
#include "board/CRunState.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int PerBlock = 30; // as many as a board sends in a page

/// A new, empty database in a folder of its own for every round.
struct CRound
{
    QTemporaryDir Folder;
    QString FileName = Folder.path() + u"/log.mdb"_s;
    CRound() { mdlStore::CreateNewDatabase(FileName)->Close(); }
};

void BM_Store(benchmark::State& State)
{
    const std::vector<QString> blocks = mdlSamples::MakeBlocks(Board, MessageCount, PerBlock);
    for (auto _ : State) {
        State.PauseTiming();
        CRound round;
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

void BindText(sqlite3_stmt* Statement, int Index, const QByteArray& Text)
{
    sqlite3_bind_text(Statement, Index, Text.constData(), int(Text.size()), SQLITE_STATIC);
}

struct CFloorRow
{
    CMessage Msg;
    QByteArray Texts[5];
};

void InsertRow(sqlite3_stmt* Insert, const CFloorRow& Row)
{
    sqlite3_bind_int(Insert, 1, Row.Msg.BBS_ID);
    sqlite3_bind_int(Insert, 2, Row.Msg.ID);
    sqlite3_bind_int(Insert, 3, 0);
    for (int text = 0; text < 4; ++text)
        BindText(Insert, 4 + text, Row.Texts[text]);
    sqlite3_bind_double(Insert, 8, Row.Msg.PostDate);
    sqlite3_bind_int(Insert, 9, Row.Msg.InReplyTo);
    BindText(Insert, 10, Row.Texts[4]);
    sqlite3_bind_int(Insert, 11, Row.Msg.InReplyTo > 0 ? Row.Msg.InReplyTo : Row.Msg.ID);
    sqlite3_bind_int(Insert, 12, 0);
    sqlite3_step(Insert);
    sqlite3_reset(Insert);
}

void BM_Floor(benchmark::State& State)
{
    std::vector<CFloorRow> rows;
    for (int id = 1; id <= MessageCount; ++id) {
        const CMessage msg = mdlSamples::MakeMessage(Board, id);
        rows.push_back({msg, {msg.Subject.toUtf8(), msg.HomePage.toUtf8(), msg.Mail.toUtf8(), msg.PostName.toUtf8(),
                              msg.Body.toUtf8()}});
    }
    for (auto _ : State) {
        State.PauseTiming();
        CRound round;
        sqlite3* db = nullptr;
        sqlite3_open(QFile::encodeName(round.FileName).constData(), &db);
        sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(db, "INSERT INTO Message VALUES(?,?,?,?,?,?,?,?,?,?,?,?)", -1, &insert, nullptr);
        State.ResumeTiming();
        for (size_t at = 0; at < rows.size(); ++at) {
            if (at % PerBlock == 0)
                sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
            InsertRow(insert, rows[at]);
            if (at % PerBlock == PerBlock - 1 || at + 1 == rows.size())
                sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
        }
        sqlite3_finalize(insert);
        sqlite3_close(db);
    }
}
BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_Store", {{"BM_Floor"}}, 2.0}});
}
