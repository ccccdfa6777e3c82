// platform/dao/CConnection.cpp
// Statements and transactions on one SQLite handle.

#include "platform/dao/CConnection.h"

#include "platform/dao/OpenFile.h"
#include "platform/dao/SqliteErrors.h"

#include <sqlite3.h>

#include <utility>

namespace dao
{

namespace
{

/// More than the system's own statements have shapes, so that they stay prepared for the whole run.
constexpr int StatementsKept = 200;
constexpr int MaxDepth = 5;

/// SQLite's own steps between two looks at the clock: some 50 microseconds, or a few milliseconds where every step
/// goes through a long text.
constexpr int StepsBetweenLooks = 1000;
constexpr int AskEveryMs = 5;

QByteArray SavepointName(int Level) { return "\"level" + QByteArray::number(Level) + '"'; }

} // namespace

CConnection::CConnection(sqlite3* Handle, QString FileName, bool IsReadOnly)
    : m_handle(Handle)
    , m_fileName(std::move(FileName))
    , m_isReadOnly(IsReadOnly)
    , m_statements(StatementsKept)
{
    constexpr const char* native = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16le" : "UTF-16be";
    sqlite3_exec(
        m_handle, "PRAGMA encoding",
        [](void* Result, int, char** Values, char**) {
            *static_cast<bool*>(Result) = qstrcmp(Values[0], native) == 0;
            return 0;
        },
        &m_hasUtf16, nullptr);
}

CConnection::~CConnection() { Close(); }

void CConnection::RequireOpen() const
{
    if (!m_handle)
        throw jetsql::MakeError(3420);
}

sqlite3* CConnection::Handle() const
{
    RequireOpen();
    return m_handle;
}

void CConnection::Close()
{
    if (!m_handle)
        return;
    m_statements.clear();
    if (!sqlite3_get_autocommit(m_handle))
        RollbackQuietly("ROLLBACK");
    m_depth = 0;
    m_broken.reset();
    sqlite3_close_v2(std::exchange(m_handle, nullptr));
}

std::shared_ptr<CSqliteStatement> CConnection::Prepare(const QByteArray& Sql)
{
    RequireOpen();
    RequireIdle();
    const std::shared_ptr<CSqliteStatement>* known = m_statements.object(Sql);
    if (known && !(*known)->InUse)
        return *known;
    auto made = std::make_shared<CSqliteStatement>(m_handle, Sql);
    if (!made->Handle())
        Fail();
    if (!known)
        m_statements.insert(Sql, new std::shared_ptr<CSqliteStatement>(made));
    return made;
}

void CConnection::Execute(const char* Sql)
{
    RequireIdle();
    if (sqlite3_exec(Handle(), Sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        Fail();
}

void CConnection::Run(const QByteArray& Sql) { Execute(Sql.constData()); }

qint64 CConnection::RunForNumber(const QByteArray& Sql)
{
    RequireIdle();
    const CSqliteStatement statement(Handle(), Sql);
    if (!statement.Handle())
        Fail();
    const int code = sqlite3_step(statement.Handle());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        Fail();
    return code == SQLITE_ROW ? sqlite3_column_int64(statement.Handle(), 0) : 0;
}

void CConnection::RequireWritable()
{
    RequireOpen();
    if (m_isReadOnly)
        throw jetsql::MakeError(3027);
    if (m_broken)
        throw *m_broken;
    if (m_isInLog || m_depth > 0)
        return;
    RequireInPlace();
    Execute("PRAGMA journal_mode=WAL");
    m_isInLog = true;
}

/// Until the file is in WAL mode a compaction can put another in its place, and a log by its name would be taken for
/// that one's.
void CConnection::RequireInPlace()
{
    Execute("BEGIN EXCLUSIVE");
    const bool hasMoved = mdlOpenFile::HasMoved(m_handle);
    Execute("COMMIT");
    if (hasMoved)
        throw jetsql::MakeError(3260);
}

void CConnection::Fail()
{
    Error error = mdlSqliteErrors::LastError(Handle(), m_fileName);
    if (m_depth > 0 && sqlite3_get_autocommit(m_handle))
        m_broken = error;
    throw error;
}

void CConnection::Begin()
{
    RequireOpen();
    RequireIdle();
    if (m_depth == MaxDepth)
        throw jetsql::MakeError(3003);
    if (m_broken)
        throw *m_broken;
    // Taking the write lock at the start: a lock of another program is then met here and not in the middle of a batch.
    if (m_depth > 0)
        Run("SAVEPOINT " + SavepointName(m_depth));
    else if (m_isReadOnly)
        Execute("BEGIN");
    else {
        RequireWritable();
        Execute("BEGIN IMMEDIATE");
    }
    ++m_depth;
}

void CConnection::Commit()
{
    RequireOpen();
    if (m_depth == 0)
        throw jetsql::MakeError(3034);
    if (m_broken)
        throw *m_broken;
    if (m_depth > 1)
        Run("RELEASE " + SavepointName(m_depth - 1));
    else
        Execute("COMMIT");
    --m_depth;
}

void CConnection::RollbackQuietly(const char* Sql)
{
    // It only fails where SQLite has rolled back already.
    sqlite3_exec(m_handle, Sql, nullptr, nullptr, nullptr);
}

void CConnection::Rollback()
{
    RequireOpen();
    RequireIdle();
    if (m_depth == 0)
        throw jetsql::MakeError(3034);
    --m_depth;
    if (m_depth == 0) {
        RollbackQuietly("ROLLBACK");
        m_broken.reset();
    } else if (!m_broken) {
        const QByteArray name = SavepointName(m_depth);
        RollbackQuietly(("ROLLBACK TO " + name).constData());
        RollbackQuietly(("RELEASE " + name).constData());
    }
}

void CConnection::Atomically(const std::function<void()>& Work)
{
    RequireWritable();
    const bool isInner = sqlite3_get_autocommit(Handle()) == 0;
    Execute(isInner ? "SAVEPOINT work" : "BEGIN IMMEDIATE");
    try {
        Work();
        Execute(isInner ? "RELEASE work" : "COMMIT");
    } catch (const Error&) {
        RollbackQuietly(isInner ? "ROLLBACK TO work" : "ROLLBACK");
        if (isInner)
            RollbackQuietly("RELEASE work");
        throw;
    }
}

void CConnection::Checkpoint()
{
    RequireIdle();
    if (sqlite3_wal_checkpoint_v2(Handle(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr) != SQLITE_OK)
        Fail();
}

void CConnection::LeaveLog()
{
    if (m_isReadOnly)
        return;
    m_statements.clear();
    Execute("PRAGMA journal_mode=DELETE");
    m_isInLog = false;
}

void CConnection::SetProgress(std::function<bool()> KeepGoing)
{
    RequireOpen();
    RequireIdle();
    m_keepGoing = std::move(KeepGoing);
    m_nextQuestion.setRemainingTime(AskEveryMs);
    const auto look = [](void* Self) { return static_cast<CConnection*>(Self)->KeepsGoing() ? 0 : 1; };
    sqlite3_progress_handler(m_handle, m_keepGoing ? StepsBetweenLooks : 0, m_keepGoing ? +look : nullptr, this);
}

bool CConnection::KeepsGoing()
{
    if (!m_keepGoing || m_isAsking || !m_nextQuestion.hasExpired())
        return true;
    m_isAsking = true;
    bool answer = false; // nothing may be thrown through SQLite
    try {
        answer = m_keepGoing();
    } catch (...) {
    }
    m_isAsking = false;
    m_nextQuestion.setRemainingTime(AskEveryMs);
    return answer;
}

void CConnection::CheckProgress()
{
    if (!KeepsGoing())
        throw jetsql::MakeError(3059);
}

void CConnection::RequireIdle() const
{
    if (!m_isAsking)
        return;
    Error error = jetsql::MakeError(3211);
    error.Description = QStringLiteral("別のクエリを実行しています。終わるか中止してから実行してください。");
    throw error;
}

} // namespace dao
