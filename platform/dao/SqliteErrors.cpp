// platform/dao/SqliteErrors.cpp
// Which engine error each SQLite code, and each broken rule of a table, stands for.

#include "platform/dao/SqliteErrors.h"

#include <sqlite3.h>

#include <cerrno>

namespace dao::mdlSqliteErrors
{

using namespace Qt::StringLiterals;

namespace
{

QString LastMessage(sqlite3* Connection) { return QString::fromUtf8(sqlite3_errmsg(Connection)); }

bool IsPrimaryField(sqlite3* Connection, const QString& Table, const QString& Field)
{
    int isPrimary = 0;
    const int code =
        sqlite3_table_column_metadata(Connection, "main", Table.toUtf8().constData(), Field.toUtf8().constData(),
                                      nullptr, nullptr, nullptr, &isPrimary, nullptr);
    return code == SQLITE_OK && isPrimary != 0;
}

/// "NOT NULL constraint failed: Table.Field"
Error NullRefused(sqlite3* Connection)
{
    const QString place = LastMessage(Connection).section(u": "_s, 1);
    const QString table = place.section(u'.', 0, 0);
    const QString field = place.section(u'.', 1);
    if (IsPrimaryField(Connection, table, field))
        return jetsql::MakeError(3058);
    return jetsql::MakeError(3314, {field});
}

/// "CHECK constraint failed: 3163 Field": our rules carry their error number in their name.
Error RuleBroken(sqlite3* Connection)
{
    const QString rule = LastMessage(Connection).section(u": "_s, 1);
    const int number = rule.section(u' ', 0, 0).toInt();
    const QString field = rule.section(u' ', 1);
    if (number == 3163 || number == 3315 || number == 3058 || number == 3349)
        return jetsql::MakeError(number, {field});
    return jetsql::MakeError(3317, {field, rule});
}

/// "3201 Table": so our triggers say which other table stands against it.
Error TriggerRefused(sqlite3* Connection)
{
    const QString reason = LastMessage(Connection);
    const int number = reason.section(u' ', 0, 0).toInt();
    if (number == 3200 || number == 3201)
        return jetsql::MakeError(number, {reason.section(u' ', 1)});
    return jetsql::MakeError(3317, {QString(), reason});
}

Error FromConstraint(sqlite3* Connection, int ExtendedCode)
{
    switch (ExtendedCode) {
    case SQLITE_CONSTRAINT_NOTNULL:
        return NullRefused(Connection);
    case SQLITE_CONSTRAINT_CHECK:
        return RuleBroken(Connection);
    case SQLITE_CONSTRAINT_TRIGGER:
        return TriggerRefused(Connection);
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        return jetsql::MakeError(3201);
    case SQLITE_CONSTRAINT_DATATYPE:
        return jetsql::MakeError(3421);
    default:
        return jetsql::MakeError(3022);
    }
}

/// "no such table: main.Name", where a recordset or another program's change outlived a table or a field.
Error GoneMeanwhile(const QString& Message)
{
    if (Message.startsWith(u"no such table: "_s))
        return jetsql::MakeError(3078, {Message.section(u": "_s, 1).remove(u"main."_s)});
    return Message.contains(u"no such column: "_s) ? jetsql::MakeError(3018) : Error();
}

/// A function of a statement that fails says so in words that only the compiler of statements can read.
Error FromFunction(sqlite3* Connection)
{
    const QString message = LastMessage(Connection);
    Error error = jetsql::FunctionError(message);
    if (error.Number == 0)
        error = GoneMeanwhile(message);
    if (error.Number == 0) {
        error = jetsql::MakeError(3000);
        error.Source = message;
    }
    return error;
}

bool IsOutOfSpace(int SystemError) { return SystemError == ENOSPC || SystemError == EDQUOT || SystemError == EFBIG; }

/// A quota and the largest allowed file are a full disk to the user. A commit and a copy of pages leave the system's
/// error where it is and do not hand it on, so that it is asked for as well.
bool IsOutOfSpace(sqlite3* Connection)
{
    const int lastError = errno;
    return IsOutOfSpace(sqlite3_system_errno(Connection)) || IsOutOfSpace(lastError);
}

bool IsReadFailure(int ExtendedCode)
{
    return ExtendedCode == SQLITE_IOERR_READ || ExtendedCode == SQLITE_IOERR_SHORT_READ;
}

} // namespace

Error FromCode(int ExtendedCode, const QString& FileName)
{
    switch (ExtendedCode & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return jetsql::MakeError(3260);
    case SQLITE_FULL:
        return jetsql::MakeError(3026);
    case SQLITE_READONLY:
        return jetsql::MakeError(3027);
    case SQLITE_CORRUPT:
        return jetsql::MakeError(3049, {FileName});
    case SQLITE_NOTADB:
        return jetsql::MakeError(3343, {FileName});
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return jetsql::MakeError(3051, {FileName});
    case SQLITE_IOERR:
        return jetsql::MakeError(IsReadFailure(ExtendedCode) ? 3040 : 3043);
    case SQLITE_TOOBIG:
        return jetsql::MakeError(3047);
    case SQLITE_INTERRUPT:
        return jetsql::MakeError(3059);
    case SQLITE_MISMATCH:
        return jetsql::MakeError(3421);
    default:
        return jetsql::MakeError(3000);
    }
}

Error FailedWrite(sqlite3* Written, int ExtendedCode, const QString& FileName)
{
    const bool isWriting = (ExtendedCode & 0xff) == SQLITE_IOERR && !IsReadFailure(ExtendedCode);
    return isWriting && IsOutOfSpace(Written) ? jetsql::MakeError(3026) : FromCode(ExtendedCode, FileName);
}

Error LastError(sqlite3* Connection, const QString& FileName)
{
    const int code = sqlite3_extended_errcode(Connection);
    switch (code & 0xff) {
    case SQLITE_CONSTRAINT:
        return FromConstraint(Connection, code);
    case SQLITE_ERROR:
        return FromFunction(Connection);
    case SQLITE_IOERR:
        return IsOutOfSpace(Connection) ? jetsql::MakeError(3026) : FromCode(code, FileName);
    default:
        return FromCode(code, FileName);
    }
}

} // namespace dao::mdlSqliteErrors
