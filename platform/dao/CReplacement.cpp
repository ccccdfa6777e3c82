// platform/dao/CReplacement.cpp
// Copying, compacting and checking through SQLite; then a rename.

#include "platform/dao/CReplacement.h"

#include "platform/dao/CFileCheck.h"
#include "platform/dao/CRun.h"
#include "platform/dao/FileSync.h"
#include "platform/dao/OpenFile.h"
#include "platform/dao/SqliteErrors.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

/// Copying is most of a compaction, checking the rest.
constexpr int CopyShare = 75;

/// Pages between two reports of a plain copy; about a megabyte.
constexpr int PagesAtOnce = 256;

/// Makes a file that only those can read who can read the original.
void MakeEmpty(const QString& FileName, QFile::Permissions Rights)
{
    QFile file(FileName);
    if (QFileInfo(FileName).isSymLink() || QFileInfo::exists(FileName))
        throw jetsql::MakeError(3204);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw jetsql::MakeError(3051, {FileName});
    file.setPermissions(Rights | QFile::ReadOwner | QFile::WriteOwner);
}

void RemoveAll(const QString& FileName)
{
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
        QFile::remove(FileName + suffix);
}

/// No other connection, reading or writing, until this one is closed.
void TakeAlone(CConnection& Connection)
{
    Connection.LeaveLog();
    Connection.Run("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
}

void Tell(const Progress& Report, int Percent)
{
    if (Report && !Report(Percent))
        throw jetsql::MakeError(3059);
}

void WriteCompacted(CConnection& Source, const QString& Destination, const Progress& Report)
{
    Tell(Report, 0);
    const qint64 size = Source.RunForNumber("PRAGMA page_size") *
                        (Source.RunForNumber("PRAGMA page_count") - Source.RunForNumber("PRAGMA freelist_count"));
    Source.SetProgress([&] {
        const qint64 written = QFileInfo(Destination).size();
        return !Report || Report(int(std::min<qint64>(CopyShare, CopyShare * written / std::max<qint64>(1, size))));
    });
    CRun run(Source, "VACUUM main INTO ?1");
    const Value name = Value::FromText(Destination);
    run.Bind(1, name);
    run.Finish();
    Source.SetProgress({});
}

void Check(CConnection& Source, const QString& Destination, const Progress& Report)
{
    Tell(Report, CopyShare);
    const std::unique_ptr<CConnection> copy = mdlOpenFile::Open(Destination);
    CFileCheck check(*copy);
    if (!check.IsSound([&](int Percent) { return !Report || Report(CopyShare + Percent * (100 - CopyShare) / 100); }) ||
        !check.HasRowsOf(Source))
        throw jetsql::MakeError(3049, {Source.FileName()});
    Tell(Report, 100);
}

} // namespace

CReplacement::CReplacement(const QString& FileName, const QString& NewName)
    : m_fileName(FileName)
    , m_newName(NewName)
    , m_old(mdlOpenFile::Open(FileName))
{
    if (m_old->IsReadOnly())
        throw jetsql::MakeError(3027);
    TakeAlone(*m_old);
    MakeEmpty(NewName, QFile::permissions(FileName));
}

CReplacement::~CReplacement()
{
    if (!m_isDone)
        RemoveAll(m_newName);
}

void CReplacement::Copy(const Progress& Report) { CopyTo(m_newName, Report); }

void CReplacement::CopyTo(const QString& Destination, const Progress& Report)
{
    const std::unique_ptr<CConnection> copy = mdlOpenFile::OpenEmpty(Destination);
    struct Finish
    {
        void operator()(sqlite3_backup* Job) const { sqlite3_backup_finish(Job); }
    };
    const std::unique_ptr<sqlite3_backup, Finish> job(
        sqlite3_backup_init(copy->Handle(), "main", m_old->Handle(), "main"));
    int code = job ? SQLITE_OK : SQLITE_ERROR;
    while (code == SQLITE_OK) {
        code = sqlite3_backup_step(job.get(), PagesAtOnce);
        const int total = std::max(1, sqlite3_backup_pagecount(job.get()));
        Tell(Report, int(100 - 100LL * sqlite3_backup_remaining(job.get()) / total));
    }
    if (code != SQLITE_DONE)
        throw mdlSqliteErrors::FailedWrite(copy->Handle(), code, m_fileName);
}

void CReplacement::Compact(const Progress& Report)
{
    WriteCompacted(*m_old, m_newName, Report);
    Check(*m_old, m_newName, Report);
}

void CReplacement::KeepAs(const QString& BackupName)
{
    if (mdlFileSync::AddName(m_fileName, BackupName))
        return;
    MakeEmpty(BackupName, QFile::permissions(m_fileName));
    try {
        CopyTo(BackupName, {});
        mdlFileSync::SyncFile(BackupName);
    } catch (const Error&) {
        RemoveAll(BackupName);
        throw;
    }
}

void CReplacement::PutInPlace()
{
    mdlFileSync::SyncFile(m_newName);
    mdlFileSync::Rename(m_newName, m_fileName);
    m_isDone = true;
    mdlFileSync::SyncFolderOf(m_fileName);
    m_old->Close();
}

void CompactDatabase(const QString& Source, const QString& Destination, const Progress& Report)
{
    const std::unique_ptr<CConnection> source = mdlOpenFile::Open(Source);
    MakeEmpty(Destination, QFile::permissions(Source));
    try {
        WriteCompacted(*source, Destination, Report);
        Check(*source, Destination, Report);
        mdlFileSync::SyncFile(Destination);
    } catch (const Error&) {
        RemoveAll(Destination);
        throw;
    }
}

} // namespace dao
