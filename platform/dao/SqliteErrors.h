// platform/dao/SqliteErrors.h
// SQLite's result codes as the engine's own errors.

#ifndef DAO_SQLITEERRORS_H
#define DAO_SQLITEERRORS_H

#include "platform/dao/Error.h"

#include <QString>

struct sqlite3;

namespace dao::mdlSqliteErrors
{

/// The error that a connection's last call came back with. FileName is what messages call the database.
Error LastError(sqlite3* Connection, const QString& FileName);

/// The same for a bare code, where there is no connection to ask.
Error FromCode(int ExtendedCode, const QString& FileName);

/// For an extended code from a job on two connections, of which Written is the one that is written.
Error FailedWrite(sqlite3* Written, int ExtendedCode, const QString& FileName);

} // namespace dao::mdlSqliteErrors

#endif
