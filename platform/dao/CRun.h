// platform/dao/CRun.h
// One run of a prepared statement, from binding to resetting.

#ifndef DAO_CRUN_H
#define DAO_CRUN_H

#include "platform/dao/CConnection.h"

namespace dao
{

/// Borrows a prepared statement and gives it back reset, whatever happens.
class CRun
{
public:
    /// Throws Error when SQLite refuses the text.
    CRun(CConnection& Connection, const QByteArray& Sql);
    ~CRun();
    CRun(const CRun&) = delete;
    CRun& operator=(const CRun&) = delete;

    /// Parameters count from 1. The value's text is not copied and must outlive the last Step.
    void Bind(int Index, const Value& Source);
    void BindNumber(int Index, qint64 Data);
    /// True for a row, false at the end; throws Error.
    bool Step();
    /// Steps to the end.
    void Finish()
    {
        while (Step()) {
        }
    }

    CConnection& Connection() const { return m_connection; }
    sqlite3_stmt* Handle() const { return m_statement->Handle(); }
    Value Column(int Index, FieldType Type) const;
    QString Text(int Index) const;
    qint64 Number(int Index) const;

private:
    CConnection& m_connection;
    std::shared_ptr<CSqliteStatement> m_statement;
};

} // namespace dao

#endif
