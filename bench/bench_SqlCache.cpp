// bench/bench_SqlCache.cpp
// Marking 100,000 messages read by the statements that the reader sends, each with its own numbers in the text, against
// one prepared SQLite statement bound and stepped as often: at most 2 times, both inside one transaction.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "platform/dao/Database.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int Repetitions = 9;

const QString& FileName()
{
    static const QTemporaryDir folder;
    static const QString name = folder.path() + u"/log.mdb"_s;
    static const bool made = mdlSamples::MakeDatabase(name, Board, MessageCount);
    Q_ASSERT(made);
    return name;
}

/// Both sides begin with every message unread and end with a rollback, so that all rounds do the same.
template<bool Changes> void BM_Execute(benchmark::State& State)
{
    const auto db = dao::Database::Open(FileName());
    for (auto _ : State) {
        State.PauseTiming();
        db->BeginTrans();
        db->Execute(Changes ? u"UPDATE Message SET Read = False"_s : u"UPDATE Message SET Read = True"_s);
        State.ResumeTiming();
        int affected = 0;
        for (int id = 1; id <= MessageCount; ++id) {
            db->Execute(u"UPDATE Message SET Read = True WHERE BBS_ID = "_s + QString::number(Board) +
                        u"   AND ID = "_s + QString::number(id) + u"   AND Read = False"_s);
            affected += db->RecordsAffected();
        }
        State.PauseTiming();
        if (affected != (Changes ? MessageCount : 0))
            State.SkipWithError("not every message changed");
        db->Rollback();
        State.ResumeTiming();
    }
}
BENCHMARK_TEMPLATE(BM_Execute, true)
    ->Name("BM_Execute")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(Repetitions);
BENCHMARK_TEMPLATE(BM_Execute, false)
    ->Name("BM_ExecuteNoChange")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(Repetitions);

struct CClose
{
    void operator()(sqlite3* Handle) const { sqlite3_close(Handle); }
    void operator()(sqlite3_stmt* Handle) const { sqlite3_finalize(Handle); }
};

void Run(sqlite3* Db, const char* Sql) { sqlite3_exec(Db, Sql, nullptr, nullptr, nullptr); }

template<bool Changes> void BM_Prepared(benchmark::State& State)
{
    sqlite3* handle = nullptr;
    sqlite3_open(QFile::encodeName(FileName()).constData(), &handle);
    const std::unique_ptr<sqlite3, CClose> db(handle);
    Run(handle, "PRAGMA synchronous=FULL; PRAGMA cache_size=-32768");
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(handle, "UPDATE Message SET Read=-1 WHERE BBS_ID=? AND ID=? AND Read=0", -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, CClose> update(prepared);
    for (auto _ : State) {
        State.PauseTiming();
        Run(handle, "BEGIN IMMEDIATE");
        Run(handle, Changes ? "UPDATE Message SET Read=0" : "UPDATE Message SET Read=-1");
        State.ResumeTiming();
        for (int id = 1; id <= MessageCount; ++id) {
            sqlite3_bind_int(prepared, 1, Board);
            sqlite3_bind_int(prepared, 2, id);
            sqlite3_step(prepared);
            sqlite3_reset(prepared);
        }
        State.PauseTiming();
        Run(handle, "ROLLBACK");
        State.ResumeTiming();
    }
}
BENCHMARK_TEMPLATE(BM_Prepared, true)
    ->Name("BM_Prepared")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(Repetitions);
BENCHMARK_TEMPLATE(BM_Prepared, false)
    ->Name("BM_PreparedNoChange")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(Repetitions);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(
        argc, argv, {{"BM_Execute", {{"BM_Prepared"}}, 2.0}, {"BM_ExecuteNoChange", {{"BM_PreparedNoChange"}}, 2.0}});
}
