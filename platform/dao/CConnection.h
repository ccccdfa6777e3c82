// platform/dao/CConnection.h
// The SQLite connection under a database: prepared statements, transactions, closing.

#ifndef DAO_CCONNECTION_H
#define DAO_CCONNECTION_H

#include "platform/dao/CSqliteStatement.h"
#include "platform/dao/Error.h"

#include <QByteArray>
#include <QCache>
#include <QDeadlineTimer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

struct sqlite3;

namespace dao
{

/// Owns the handle. All members throw Error, 3420 once it is closed.
class CConnection
{
public:
    /// All the messages of a few decades fit; a cross join that somebody forgot the condition of is stopped before the
    /// machine is out of memory.
    static constexpr qint64 DefaultMaxResultSize = qint64(2) << 30;

    /// Takes the handle over. Opening it and its settings are OpenFile's.
    CConnection(sqlite3* Handle, QString FileName, bool IsReadOnly);
    ~CConnection();
    CConnection(const CConnection&) = delete;
    CConnection& operator=(const CConnection&) = delete;

    const QString& FileName() const { return m_fileName; }
    bool IsReadOnly() const { return m_isReadOnly; }
    bool IsOpen() const { return m_handle != nullptr; }
    /// The file keeps texts in this machine's UTF-16, so they can be taken as they are.
    bool HasUtf16() const { return m_hasUtf16; }
    void RequireOpen() const;
    sqlite3* Handle() const;
    void Close();

    /// A statement of that text that nobody is using, from the store of prepared ones where possible.
    std::shared_ptr<CSqliteStatement> Prepare(const QByteArray& Sql);
    /// Forgets all prepared statements that are not in use.
    void ForgetStatements() { m_statements.clear(); }

    /// Runs a statement without results or parameters.
    void Run(const QByteArray& Sql);
    /// The first value of the first row as a number; 0 without a row.
    qint64 RunForNumber(const QByteArray& Sql);

    /// To be called before anything is written: 3027 when read-only, or the error that took the running transaction.
    /// The first call takes the file into WAL mode, as opening must not change it.
    void RequireWritable();
    /// Throws the error of the last call. Notices when SQLite gave the transaction up because of it.
    [[noreturn]] void Fail();

    void Begin();
    void Commit();
    void Rollback();
    int Depth() const { return m_depth; }
    /// Runs Work so that it is done whole or not at all, in a transaction of its own or within the running one.
    void Atomically(const std::function<void()>& Work);

    void Checkpoint();
    void LeaveLog();

    /// KeepGoing is asked every few milliseconds while statements work; false ends the one at work with 3059.
    /// Empty: nobody is asked.
    void SetProgress(std::function<bool()> KeepGoing);
    /// Asks KeepGoing where it is due and throws 3059 at a no. For loops of our own that run no statement.
    void CheckProgress();
    /// 3211 while KeepGoing is being asked: the statement that asks is not over.
    void RequireIdle() const;

    /// Bytes that the rows of one result may take in memory.
    qint64 MaxResultSize() const { return m_maxResultSize; }
    void SetMaxResultSize(qint64 Bytes) { m_maxResultSize = Bytes; }

private:
    void Execute(const char* Sql);
    void RequireInPlace();
    void RollbackQuietly(const char* Sql);
    bool KeepsGoing();

    sqlite3* m_handle;
    QString m_fileName;
    bool m_isReadOnly;
    bool m_hasUtf16 = false;
    bool m_isInLog = false;
    int m_depth = 0;
    std::optional<Error> m_broken; ///< why the running transaction is gone
    std::function<bool()> m_keepGoing;
    QDeadlineTimer m_nextQuestion;
    bool m_isAsking = false;
    qint64 m_maxResultSize = DefaultMaxResultSize;
    QCache<QByteArray, std::shared_ptr<CSqliteStatement>> m_statements;
};

} // namespace dao

#endif
