// board/CQueryRunner.h
// Runs a statement that the user or the viewer wants and holds its rows.

#ifndef BOARD_CQUERYRUNNER_H
#define BOARD_CQUERYRUNNER_H

#include "board/CMessage.h"

#include <QString>

#include <memory>
#include <optional>

class Application;
class WorkWatch;

namespace dao
{
class Database;
class QueryDef;
class Recordset;
}

/// The queries of CBBS; its public members are described there.
class CQueryRunner
{
public:
    explicit CQueryRunner(Application& App);
    ~CQueryRunner();

    /// Closes a previous result and works on Database from here on; it stays the caller's. Null: none.
    void SetDatabase(dao::Database* Database);
    /// Watches the long statements from here on; stays the caller's. Null: nobody does.
    void SetWatch(WorkWatch* Watch) { m_watch = Watch; }
    WorkWatch* Watch() const { return m_watch; }

    qint16 ExecSQL(const QString& SQLString);
    qint32 SQLType() const { return m_sqlType; }
    qint32 Count() const { return m_count; }
    dao::Recordset* Recordset() const { return m_recordset.get(); }
    std::optional<CMessage> Messages(qint32 Index) const;
    std::optional<CMessage> GetMessage() const;
    void CloseLogMessages();

private:
    qint16 RunWatched(dao::QueryDef& Query);
    qint16 Run(dao::QueryDef& Query);
    void AskParameters(dao::QueryDef& Query);
    void OpenResult(dao::QueryDef& Query);
    bool HoldsMessages(const dao::Recordset& Result) const;
    void DropTemporaryQuery();

    Application& m_app;
    dao::Database* m_database = nullptr;
    WorkWatch* m_watch = nullptr;
    std::unique_ptr<dao::Recordset> m_recordset;
    qint32 m_sqlType = 1;
    qint32 m_count = 0;
};

#endif // BOARD_CQUERYRUNNER_H
