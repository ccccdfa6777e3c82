// bench/bench_ReadState.cpp
// Marking 10,000 selected messages read against 10,000 runs of one prepared UPDATE in one transaction on the same file:
// at most 3 times.

#include "bench/support/CRatioReporter.h"
#include "bench/support/CNoWindow.h"
#include "bench/support/Samples.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/dao/Database.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"
#include "viewer/CViewer.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int Changed = 10'000;
constexpr int Repetitions = 7;

const QString& Folder()
{
    static const QTemporaryDir folder;
    static const QString path = folder.path() + u'/';
    static const bool made = mdlSamples::MakeDatabase(path + u"log.mdb"_s, Board, MessageCount);
    Q_ASSERT(made);
    return path;
}

/// The messages side by side, where the file itself costs least.
CMessageList::RowRange Picked() { return {0, Changed - 1}; }

void BM_SetReadSelected(benchmark::State& State)
{
    CScriptedDesktop desktop;
    Application app(desktop, Folder(), u"tavora"_s);
    app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
    app.Option().AddMax = MessageCount;
    CBBS board(app);
    board.Initialize(app.LogDB());
    CNoWindow window;
    CViewer viewer(app, board, window);
    viewer.SelectBoard(Board);
    viewer.List(0).SetSelection({Picked()}, 0);
    for (auto _ : State) {
        State.PauseTiming();
        viewer.SetReadSelected(0, false);
        app.LogDB()->Checkpoint();
        const int unread = viewer.BoardUnreadCount(Board);
        State.ResumeTiming();
        viewer.SetReadSelected(0, true);
        if (viewer.BoardUnreadCount(Board) != unread - Changed)
            State.SkipWithError("not all messages were marked");
    }
}
BENCHMARK(BM_SetReadSelected)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(Repetitions);

/// What the UPDATE of one message costs when nothing has to be read, compiled or shown.
class CPreparedUpdate
{
public:
    CPreparedUpdate()
    {
        sqlite3_open_v2(qUtf8Printable(Folder() + u"log.mdb"_s), &m_db, SQLITE_OPEN_READWRITE, nullptr);
        Run("PRAGMA synchronous=FULL; PRAGMA cache_size=-32768"); // as the program has it
        sqlite3_prepare_v2(m_db, "UPDATE Message SET Read = ?1 WHERE BBS_ID = ?2 AND ID = ?3", -1, &m_update, nullptr);
    }
    ~CPreparedUpdate()
    {
        sqlite3_finalize(m_update);
        sqlite3_close(m_db);
    }
    Q_DISABLE_COPY_MOVE(CPreparedUpdate)

    void Run(const char* Sql) { sqlite3_exec(m_db, Sql, nullptr, nullptr, nullptr); }

    /// How many messages there were.
    int SetRead(int Read)
    {
        int found = 0;
        Run("BEGIN IMMEDIATE");
        for (int row = Picked().First; row <= Picked().Last; ++row) {
            sqlite3_bind_int(m_update, 1, Read);
            sqlite3_bind_int(m_update, 2, Board);
            sqlite3_bind_int(m_update, 3, MessageCount - row); // the newest is the first row
            sqlite3_step(m_update);
            found += sqlite3_changes(m_db);
            sqlite3_reset(m_update);
        }
        Run("COMMIT");
        return found;
    }

private:
    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_update = nullptr;
};

void BM_PreparedUpdate(benchmark::State& State)
{
    CPreparedUpdate update;
    for (auto _ : State) {
        State.PauseTiming();
        update.SetRead(0);
        update.Run("PRAGMA wal_checkpoint(TRUNCATE)");
        State.ResumeTiming();
        if (update.SetRead(-1) != Changed)
            State.SkipWithError("the prepared UPDATE missed its messages");
    }
}
BENCHMARK(BM_PreparedUpdate)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(Repetitions);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, {{"BM_SetReadSelected", {{"BM_PreparedUpdate"}}, 3.0}});
}
