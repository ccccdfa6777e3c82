// platform/dao/CSqliteStatement.cpp
// Preparing and finalising.

#include "platform/dao/CSqliteStatement.h"

#include <sqlite3.h>

namespace dao
{

CSqliteStatement::CSqliteStatement(sqlite3* Connection, const QByteArray& Sql)
{
    sqlite3_stmt* handle = nullptr;
    sqlite3_prepare_v3(Connection, Sql.constData(), int(Sql.size()), SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    m_handle.reset(handle);
}

void CSqliteStatement::Finalize::operator()(sqlite3_stmt* Handle) const { sqlite3_finalize(Handle); }

} // namespace dao
