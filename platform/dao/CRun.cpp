// platform/dao/CRun.cpp
// Binding, stepping and reading.

#include "platform/dao/CRun.h"

#include "platform/dao/Values.h"

#include <sqlite3.h>

namespace dao
{

CRun::CRun(CConnection& Connection, const QByteArray& Sql)
    : m_connection(Connection)
    , m_statement(Connection.Prepare(Sql))
{
    m_statement->InUse = true;
}

CRun::~CRun()
{
    sqlite3_reset(m_statement->Handle());
    sqlite3_clear_bindings(m_statement->Handle());
    m_statement->InUse = false;
}

void CRun::Bind(int Index, const Value& Source) { mdlValues::Bind(m_statement->Handle(), Index, Source); }

void CRun::BindNumber(int Index, qint64 Data) { sqlite3_bind_int64(m_statement->Handle(), Index, Data); }

bool CRun::Step()
{
    const int code = sqlite3_step(m_statement->Handle());
    if (code == SQLITE_ROW)
        return true;
    if ((code & 0xff) == SQLITE_FULL && sqlite3_stmt_readonly(m_statement->Handle()))
        throw jetsql::MakeError(3183); // what it sorts or counts has filled the disk of the temporary files
    if (code != SQLITE_DONE)
        m_connection.Fail();
    return false;
}

Value CRun::Column(int Index, FieldType Type) const
{
    return mdlValues::Read(m_statement->Handle(), Index, Type, m_connection.HasUtf16());
}

QString CRun::Text(int Index) const
{
    return mdlValues::ReadText(m_statement->Handle(), Index, m_connection.HasUtf16());
}

qint64 CRun::Number(int Index) const { return sqlite3_column_int64(m_statement->Handle(), Index); }

} // namespace dao
