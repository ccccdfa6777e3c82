// platform/dao/Database.h
// One open database file.

#ifndef DAO_DATABASE_H
#define DAO_DATABASE_H

#include "platform/dao/CTransaction.h"
#include "platform/dao/Error.h"
#include "platform/dao/QueryDef.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/TableDef.h"
#include "platform/dao/Types.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace dao
{

class CSession;

/// One connection to a database file. Everything but the destructor throws Error; nobody above sees SQLite.
///
/// Statements are the engine's own dialect. A statement whose shape (the text without its constants) was seen before
/// costs one pass over its text, a bind and a step. A writing statement is atomic: it is done whole or not at all.
/// The file is in WAL mode and synchronised at every commit. Another program's lock is waited for two seconds,
/// then 3260. Belongs to one thread.
class Database
{
public:
    /// Opens an existing file and changes no byte of it. A file or folder that cannot be written opens read-only.
    /// 3024 missing, 3044 no such folder, 3343 no database (also 0 bytes), 3049 damaged, 3051 not allowed, 3260 locked.
    static std::unique_ptr<Database> Open(const QString& FileName);
    /// Makes a new, empty file. 3204 when there is something of that name, 3044 no such folder, 3051 or 3180 when it
    /// cannot be written.
    static std::unique_ptr<Database> Create(const QString& FileName);

    /// Closes, ignoring errors.
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The path that it was opened with.
    QString Name() const;
    bool IsReadOnly() const;
    bool IsOpen() const;
    /// Rolls back an open transaction, moves what is in the log into the file and lets go of it. Twice does no harm.
    void Close();
    /// Moves all of the log into the file and empties it. 3260 when others still read from the log.
    void Checkpoint();
    /// Leaves WAL mode so that the file is complete by itself and may be moved once it is closed.
    void LeaveLog();

    /// Runs an action statement or a saved action query, also one that defines tables, indexes or constraints. 3065 for
    /// one that gives rows, 3061 with parameters.
    void Execute(const QString& Sql, ExecuteOption Option = ExecuteOption::FailOnError);
    /// Rows stored, changed or removed by the last Execute; skipped rows do not count.
    int RecordsAffected() const { return m_recordsAffected; }
    /// Opens a query's text, or a table's or saved query's name. 3078 unknown table, 3061 parameters, 3219 an action
    /// statement. Type Table wants a table's name (3011).
    std::unique_ptr<Recordset> OpenRecordset(const QString& Source, RecordsetType Type = RecordsetType::Snapshot);

    /// Transactions nest to five levels (3003). 3034 for an end without a beginning.
    /// When the disk is full or failing the whole transaction may be gone: until it is rolled back every further
    /// change and its commit then repeat that error, so a half transaction is never stored.
    void BeginTrans();
    void CommitTrans();
    void Rollback();
    bool InTransaction() const;

    /// All tables, hidden ones (Attributes not 0) too, in the order in which they were made.
    /// With what other programs have made meanwhile. Valid until the structure changes or is asked for again.
    const std::vector<TableDef>& TableDefs();
    /// 3010 table exists, 3012 query exists, 3264 no fields, 3125 bad name, 3191 field twice, 3090 two counters, 3409
    /// index of an unknown field, 3283, 3284.
    void AppendTable(const TableDef& Table);
    /// 3265 when there is none, 3281 while another table refers to it.
    void DeleteTable(const QString& TableName);
    /// 3265 when there is none, 3010 / 3012 when the new name is taken.
    void RenameTable(const QString& OldName, const QString& NewName);

    /// Checks the statement and saves it; an empty name makes a query that is not kept. The name "__TEMP__" is kept in
    /// memory only and works on a read-only file. 3012 when a table or query has that name, 3125 bad name.
    std::unique_ptr<QueryDef> CreateQueryDef(const QString& QueryName, const QString& Sql);
    /// Names of the saved queries in alphabetical order.
    QStringList QueryDefs();
    /// Nullptr when there is none.
    std::unique_ptr<QueryDef> FindQueryDef(const QString& QueryName);
    /// 3265 when there is none.
    void DeleteQueryDef(const QString& QueryName);

    /// How long another program's lock is waited for; 2000 unless set.
    void SetBusyTimeout(int Milliseconds);
    /// Refuses to let the file grow beyond so many bytes, rounded down to whole pages: error 3026 as with a full disk.
    /// 0: no limit.
    void SetMaxFileSize(qint64 Bytes);

    /// KeepGoing is asked every few milliseconds while a statement works or its rows are read into memory; false ends
    /// the statement with 3059 and leaves the file as it was. A writing statement that is ended so within a
    /// transaction takes the transaction with it, as a full disk does. KeepGoing runs inside of the statement: it may
    /// read snapshots, but every other use of this database is refused with 3211, and it must not throw. An empty one
    /// ends the asking, which costs nothing then.
    void SetProgress(std::function<bool()> KeepGoing);
    /// Most bytes that the rows of one result may take in memory, 2 GiB unless set; beyond it 3183.
    void SetMaxResultSize(qint64 Bytes);

private:
    friend class QueryDef;
    explicit Database(std::shared_ptr<CSession> Session);
    CSession& Session() const;
    QString StatementText(const QString& Source) const;

    std::shared_ptr<CSession> m_session;
    int m_recordsAffected = 0;
};

} // namespace dao

#endif
