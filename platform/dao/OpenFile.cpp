// platform/dao/OpenFile.cpp
// Checks in front of SQLite, which would make a missing file and take an empty one for a database.

#include "platform/dao/OpenFile.h"

#include "platform/dao/CTablePages.h"
#include "platform/dao/SqliteErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QtEndian>

#include <sqlite3.h>

namespace dao::mdlOpenFile
{

using namespace Qt::StringLiterals;

namespace
{

constexpr int BusyTimeoutMs = 2000;
constexpr int HeaderSize = 100;

/// Immutable reads the file alone, WithLog what waits in the log beside it as well; neither writes anything anywhere or
/// takes a lock.
enum class Access { Write, Immutable, WithLog };

void RequireFolder(const QFileInfo& File)
{
    if (!File.absoluteDir().exists())
        throw jetsql::MakeError(3044, {File.absolutePath()});
}

bool HasLog(const QString& FileName)
{
    return QFileInfo(FileName + u"-wal"_s).size() > 0 || QFileInfo(FileName + u"-journal"_s).size() > 0;
}

/// A file that lost its end is found here, before a page that is missing is asked for. With a log beside it the file
/// may rightly be short, as pages can be in the log only.
void RequireWholeFile(const QString& FileName, qint64 FileSize, const QByteArray& Header)
{
    const auto* bytes = reinterpret_cast<const uchar*>(Header.constData());
    const quint16 storedPageSize = qFromBigEndian<quint16>(bytes + 16);
    const qint64 pageSize = storedPageSize == 1 ? 65536 : storedPageSize;
    const qint64 pages = qFromBigEndian<quint32>(bytes + 28);
    const bool isCountValid = qFromBigEndian<quint32>(bytes + 24) == qFromBigEndian<quint32>(bytes + 92);
    if (isCountValid && pages * pageSize > FileSize && !HasLog(FileName))
        throw jetsql::MakeError(3049, {FileName});
}

/// A database whose first page was overwritten is a damaged one; its rows are there still.
bool HasLostHeader(const QString& FileName)
{
    CPageFile file(FileName);
    return CTablePages(file).HoldsRows();
}

void RequireDatabaseFile(const QString& FileName)
{
    const QFileInfo info(FileName);
    RequireFolder(info);
    if (!info.exists())
        throw jetsql::MakeError(3024, {FileName});
    QFile file(FileName);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        throw jetsql::MakeError(3051, {FileName});
    const QByteArray header = file.read(HeaderSize);
    if (file.error() != QFileDevice::NoError)
        throw jetsql::MakeError(3040);
    if (!header.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        throw jetsql::MakeError(HasLostHeader(FileName) ? 3049 : 3343, {FileName});
    if (header.size() < HeaderSize)
        throw jetsql::MakeError(3049, {FileName});
    RequireWholeFile(FileName, file.size(), header);
}

QByteArray SqliteName(const QString& FileName, Access Wanted)
{
    const QString path = QFileInfo(FileName).absoluteFilePath();
    if (Wanted == Access::Write)
        return path.toUtf8();
    return QUrl::fromLocalFile(path).toEncoded() + (Wanted == Access::Immutable ? "?immutable=1" : "?vfs=unix-none");
}

/// What a file from somewhere else may not do: run functions from its schema, rewrite the schema, be read loosely.
void Harden(sqlite3* Handle)
{
    sqlite3_db_config(Handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(Handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(Handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(Handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_extended_result_codes(Handle, 1);
}

struct Close
{
    void operator()(sqlite3* Handle) const { sqlite3_close_v2(Handle); }
};
using Owned = std::unique_ptr<sqlite3, Close>;

/// Null with Code set when SQLite refuses.
Owned TryOpen(const QString& FileName, Access Wanted, int Flags, int& Code)
{
    sqlite3* handle = nullptr;
    Code = sqlite3_open_v2(SqliteName(FileName, Wanted).constData(), &handle, Flags | SQLITE_OPEN_NOMUTEX, nullptr);
    Owned owned(handle);
    if (Code != SQLITE_OK)
        return nullptr;
    Harden(handle);
    sqlite3_busy_timeout(handle, BusyTimeoutMs);
    // The index of the log is then kept in memory instead of in a file beside it.
    if (Wanted == Access::WithLog)
        sqlite3_exec(handle, "PRAGMA locking_mode=EXCLUSIVE", nullptr, nullptr, nullptr);
    // The first read of the schema: wrong formats, damage, locks and missing rights show here.
    Code = sqlite3_exec(handle, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    // A compaction may have put another file in the place of this one while it was locked.
    if (Code == SQLITE_OK && HasMoved(handle))
        Code = SQLITE_READONLY_DBMOVED;
    if (Code != SQLITE_OK)
        return nullptr;
    return owned;
}

bool IsRefusedAccess(int Code)
{
    const int primary = Code & 0xff;
    return primary == SQLITE_CANTOPEN || primary == SQLITE_READONLY || primary == SQLITE_PERM;
}

Error FailedOpen(int Code, const QString& FileName)
{
    if (IsRefusedAccess(Code))
        return jetsql::MakeError(3051, {FileName});
    // It does begin like a database, so what makes no sense after that is damage.
    return mdlSqliteErrors::FromCode((Code & 0xff) == SQLITE_NOTADB ? SQLITE_CORRUPT : Code, FileName);
}

/// Pages are written at commit; 32 MiB of them spare the re-reading of index pages in a long receive. What a query
/// sorts or tells apart goes to a temporary file beyond that: somebody's cross join must not take all memory.
constexpr const char* Settings = "PRAGMA synchronous=FULL;"
                                 "PRAGMA foreign_keys=OFF;"
                                 "PRAGMA temp_store=FILE;"
                                 "PRAGMA cell_size_check=ON;"
                                 "PRAGMA cache_size=-32768";

std::unique_ptr<CConnection> Finish(Owned Handle, const QString& FileName)
{
    sqlite3_exec(Handle.get(), Settings, nullptr, nullptr, nullptr);
    jetsql::RegisterFunctions(Handle.get());
    const bool isReadOnly = sqlite3_db_readonly(Handle.get(), "main") != 0;
    return std::make_unique<CConnection>(Handle.release(), FileName, isReadOnly);
}

} // namespace

std::unique_ptr<CConnection> Open(const QString& FileName)
{
    RequireDatabaseFile(FileName);
    int code = SQLITE_OK;
    Owned handle = TryOpen(FileName, Access::Write, SQLITE_OPEN_READWRITE, code);
    if (code == SQLITE_READONLY_DBMOVED)
        handle = TryOpen(FileName, Access::Write, SQLITE_OPEN_READWRITE, code);
    // A folder without the right to write has no place for a log, and for the index of one that waits there. Where such
    // an index is, somebody else has the file open.
    const bool isInUse = QFileInfo::exists(FileName + u"-shm"_s);
    if (!handle && IsRefusedAccess(code) && !(HasLog(FileName) && isInUse))
        handle = TryOpen(FileName, HasLog(FileName) ? Access::WithLog : Access::Immutable,
                         SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, code);
    if (!handle)
        throw FailedOpen(code, FileName);
    return Finish(std::move(handle), FileName);
}

bool HasMoved(sqlite3* Handle)
{
    int hasMoved = 0;
    return sqlite3_file_control(Handle, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved) == SQLITE_OK && hasMoved != 0;
}

std::unique_ptr<CConnection> OpenEmpty(const QString& FileName)
{
    int code = SQLITE_OK;
    Owned handle = TryOpen(FileName, Access::Write, SQLITE_OPEN_READWRITE, code);
    if (!handle)
        throw FailedOpen(code, FileName);
    return Finish(std::move(handle), FileName);
}

namespace
{

/// Both have to be set before the first page is written.
void SetFormat(sqlite3* Handle, const QString& FileName)
{
    const QByteArray sql = "PRAGMA encoding='UTF-16le'; PRAGMA page_size=4096; PRAGMA application_id=" +
                           QByteArray::number(ApplicationId) + "; PRAGMA journal_mode=WAL";
    if (sqlite3_exec(Handle, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw mdlSqliteErrors::LastError(Handle, FileName);
}

} // namespace

std::unique_ptr<CConnection> Create(const QString& FileName)
{
    const QFileInfo info(FileName);
    RequireFolder(info);
    if (info.exists() || info.isSymLink())
        throw jetsql::MakeError(3204);
    QFile file(FileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw jetsql::MakeError(info.exists() ? 3204 : 3051, {FileName});
    file.close();
    try {
        int code = SQLITE_OK;
        Owned handle = TryOpen(FileName, Access::Write, SQLITE_OPEN_READWRITE, code);
        if (!handle)
            throw mdlSqliteErrors::FromCode(code, FileName);
        SetFormat(handle.get(), FileName);
        return Finish(std::move(handle), FileName);
    } catch (const Error&) {
        QFile::remove(FileName);
        throw;
    }
}

} // namespace dao::mdlOpenFile
