// bench/bench_SqlQueries.cpp
// Queries that look at the text of 100,000 messages, where case, width and kana do not count, against the sqlite3 shell
// on the same file with its plain comparison: Like at most 1.5 times instr, GROUP BY at most 3 times GROUP BY.

#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr int PosterCount = 400;
constexpr int Repetitions = 15;

/// Gives the messages to some hundred posters, a few of whom write their names in two ways.
bool SpreadPosters(const QString& FileName)
{
    sqlite3* handle = nullptr;
    sqlite3_open(QFile::encodeName(FileName).constData(), &handle);
    const QString sql = u"UPDATE Message SET PostName = CASE WHEN ID % 11 = 0 THEN 'ﾄｳｺｳｼｬ' ELSE 'とうこうしゃ' END"
                        " || ((ID * 7919) % %1)"_s.arg(PosterCount);
    const bool isDone = sqlite3_exec(handle, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(handle);
    return isDone;
}

const QString& FileName()
{
    static const QTemporaryDir folder;
    static const QString name = folder.path() + u"/log.mdb"_s;
    static const bool made = mdlSamples::MakeDatabase(name, Board, MessageCount) && SpreadPosters(name);
    Q_ASSERT(made);
    return name;
}

/// Opens the file for every round as the shell does, so that neither side has a page in memory that the other has not.
void Query(benchmark::State& State, const QString& Sql, int ExpectedRows)
{
    FileName();
    for (auto _ : State) {
        const auto db = dao::Database::Open(FileName());
        const auto rows = db->OpenRecordset(Sql, dao::RecordsetType::Snapshot);
        rows->MoveLast();
        if (rows->RecordCount() != ExpectedRows)
            State.SkipWithError("not the rows that were expected");
    }
}

void Shell(benchmark::State& State, const QString& Sql)
{
    FileName();
    for (auto _ : State) {
        QProcess shell;
        shell.setStandardOutputFile(QProcess::nullDevice());
        shell.start(u"sqlite3"_s, {FileName(), Sql});
        if (!shell.waitForFinished(-1) || shell.exitCode() != 0)
            State.SkipWithError("the sqlite3 shell failed");
    }
}

struct CPair
{
    const char* Name;
    QString Sql;
    QString ShellSql;
    int Rows;
    double Aim;
};

const std::vector<CPair>& Pairs()
{
    static const std::vector<CPair> pairs = {
        // Every body of the samples has this word somewhere ...
        {"Like", u"SELECT Count(*) FROM Message WHERE Body Like '*文字*'"_s,
         u"SELECT count(*) FROM Message WHERE instr(Body,'文字')"_s, 1, 1.5},
        // ... and none has this one, so that all is looked through.
        {"LikeNowhere", u"SELECT Count(*) FROM Message WHERE Body Like '*圧縮*'"_s,
         u"SELECT count(*) FROM Message WHERE instr(Body,'圧縮')"_s, 1, 1.5},
        {"LikeKana", u"SELECT Count(*) FROM Message WHERE Body Like '*いんすとーる*'"_s,
         u"SELECT count(*) FROM Message WHERE instr(Body,'いんすとーる')"_s, 1, 1.5},
        {"GroupBy", u"SELECT PostName, Count(*) FROM Message GROUP BY PostName"_s,
         u"SELECT PostName, count(*) FROM Message GROUP BY PostName"_s, PosterCount, 3},
        {"Distinct", u"SELECT DISTINCT PostName FROM Message"_s,
         u"SELECT DISTINCT PostName FROM Message ORDER BY PostName"_s, PosterCount, 3},
        {"OrderBy", u"SELECT ID FROM Message ORDER BY PostName"_s, u"SELECT ID FROM Message ORDER BY PostName"_s,
         MessageCount, 3},
        {"Equal", u"SELECT Count(*) FROM Message WHERE PostName = 'トウコウシャ7'"_s,
         u"SELECT count(*) FROM Message WHERE PostName = 'とうこうしゃ7'"_s, 1, 3},
    };
    return pairs;
}

std::vector<CRatioReporter::Promise> RegisterPairs()
{
    std::vector<CRatioReporter::Promise> promises;
    for (const CPair& pair : Pairs()) {
        const std::string ours = std::string("BM_") + pair.Name;
        const std::string shell = ours + "InShell";
        for (benchmark::internal::Benchmark* registered :
             {benchmark::RegisterBenchmark(ours.c_str(), Query, pair.Sql, pair.Rows),
              benchmark::RegisterBenchmark(shell.c_str(), Shell, pair.ShellSql)})
            registered->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(Repetitions);
        promises.push_back({ours, {{shell}}, pair.Aim});
    }
    return promises;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv, RegisterPairs());
}
