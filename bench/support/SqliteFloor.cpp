// bench/support/SqliteFloor.cpp
// The least that storing messages can cost: one prepared SQLite statement that inserts the same rows.

#include "bench/support/SqliteFloor.h"

#include "bench/support/Samples.h"
#include "platform/dao/Database.h"
#include "store/Store.h"

#include <QByteArray>
#include <QFile>

#include <array>
#include <vector>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{
/// A message with its texts ready to be bound.
struct CRow
{
    CMessage Msg;
    std::array<QByteArray, 5> Texts;
};

void BindText(sqlite3_stmt* Statement, int Index, const QByteArray& Text)
{
    sqlite3_bind_text(Statement, Index, Text.constData(), int(Text.size()), SQLITE_STATIC);
}

bool Run(sqlite3* Db, const char* Sql) { return sqlite3_exec(Db, Sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

bool InsertRow(sqlite3_stmt* Insert, const CRow& Row)
{
    sqlite3_bind_int(Insert, 1, Row.Msg.BBS_ID);
    sqlite3_bind_int(Insert, 2, Row.Msg.ID);
    sqlite3_bind_int(Insert, 3, 0);
    for (std::size_t text = 0; text < 4; ++text)
        BindText(Insert, 4 + int(text), Row.Texts[text]);
    sqlite3_bind_double(Insert, 8, Row.Msg.PostDate);
    sqlite3_bind_int(Insert, 9, Row.Msg.InReplyTo);
    BindText(Insert, 10, Row.Texts[4]);
    sqlite3_bind_int(Insert, 11, Row.Msg.InReplyTo > 0 ? Row.Msg.InReplyTo : Row.Msg.ID);
    sqlite3_bind_int(Insert, 12, 0);
    const bool isStored = sqlite3_step(Insert) == SQLITE_DONE;
    return sqlite3_reset(Insert) == SQLITE_OK && isStored;
}

std::vector<CRow> MakeRows(qint32 BBS_ID, int Count)
{
    std::vector<CRow> rows;
    for (int id = 1; id <= Count; ++id) {
        const CMessage msg = mdlSamples::MakeMessage(BBS_ID, id);
        rows.push_back({msg,
                        {msg.Subject.toUtf8(), msg.HomePage.toUtf8(), msg.Mail.toUtf8(), msg.PostName.toUtf8(),
                         msg.Body.toUtf8()}});
    }
    return rows;
}

bool Insert(const QString& FileName, const std::vector<CRow>& Rows, std::size_t PerTransaction)
{
    sqlite3* db = nullptr;
    sqlite3_open(QFile::encodeName(FileName).constData(), &db);
    sqlite3_stmt* insert = nullptr;
    bool isDone = Run(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL") &&
                  sqlite3_prepare_v2(db, "INSERT INTO Message VALUES(?,?,?,?,?,?,?,?,?,?,?,?)", -1, &insert, nullptr) ==
                      SQLITE_OK;
    for (std::size_t at = 0; at < Rows.size() && isDone; ++at) {
        if (at % PerTransaction == 0)
            isDone = Run(db, "BEGIN");
        isDone = isDone && InsertRow(insert, Rows[at]);
        if (at % PerTransaction == PerTransaction - 1 || at + 1 == Rows.size())
            isDone = isDone && Run(db, "COMMIT");
    }
    sqlite3_finalize(insert);
    sqlite3_close(db);
    return isDone;
}
} // namespace

CEmptyDatabase::CEmptyDatabase()
    : FileName(Folder.path() + u"/log.mdb"_s)
{
    mdlStore::CreateNewDatabase(FileName)->Close();
}

void RunSqliteFloor(benchmark::State& State, qint32 BBS_ID, int Count, int PerTransaction)
{
    const std::vector<CRow> rows = MakeRows(BBS_ID, Count);
    for (auto _ : State) {
        State.PauseTiming();
        const CEmptyDatabase round;
        State.ResumeTiming();
        if (!Insert(round.FileName, rows, std::size_t(PerTransaction)))
            State.SkipWithError("not all rows were inserted");
    }
}
