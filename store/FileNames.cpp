// store/FileNames.cpp
// Names, and moving and removing by them.

#include "store/FileNames.h"

#include "app/CFile.h"
#include "app/Shell.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace mdlFileNames
{

using namespace Qt::StringLiterals;

namespace
{

const QString PassingPrefix = u"TVR"_s;

/// Jobs write SQLite's format, first of all an empty file. What an earlier program moved to such a name has another.
bool IsWrittenByJob(const QString& FileName)
{
    QFile file(FileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(16);
    return start.startsWith("SQLite format 3") || start.count('\0') == start.size();
}

} // namespace

bool Exists(const QString& FileName)
{
    const QFileInfo info(FileName);
    return info.exists() || info.isSymLink();
}

QString FreeName(const QString& Wanted)
{
    const qsizetype point = Wanted.lastIndexOf(u'.');
    QString name = Wanted;
    for (int number = 2; Exists(name); ++number)
        name = Wanted.left(point) + u'-' + QString::number(number) + Wanted.mid(point);
    return name;
}

QString BackupName(const QString& FileName)
{
    CFile backup(FileName);
    backup.SetExt(u"bak"_s);
    return backup.FullPath();
}

QString WithoutFolder(const QString& FileName) { return CFile(FileName).Name(); }

QString RealName(const QString& FileName)
{
    const QString real = QFileInfo(FileName).canonicalFilePath();
    return real.isEmpty() ? FileName : real;
}

QString PassingName(const QString& FileName)
{
    const QString folder = QFileInfo(FileName).absolutePath();
    const QString name = mdlShellServices::TempFileName(folder, PassingPrefix);
    // A rename over the file has to stay in its folder.
    return QFileInfo(name).absolutePath() == folder ? name : QString();
}

bool MoveLog(const QString& From, const QString& To)
{
    bool isDone = QFile::remove(From + u"-shm"_s) || !Exists(From + u"-shm"_s);
    for (const QString& suffix : {u"-wal"_s, u"-journal"_s}) {
        if (Exists(From + suffix))
            isDone = QFile::rename(From + suffix, FreeName(To + suffix)) && isDone;
    }
    return isDone;
}

void Remove(const QString& FileName)
{
    // The file goes last: without it nobody would know what the rest belongs to.
    for (const QString& suffix : {u"-wal"_s, u"-shm"_s, u"-journal"_s, u""_s})
        QFile::remove(FileName + suffix);
}

void RemoveLeftovers(const QString& FileName)
{
    const QDir folder = QFileInfo(RealName(FileName)).absoluteDir();
    const QStringList names = folder.entryList({PassingPrefix + u"??????.tmp"_s}, QDir::Files | QDir::NoSymLinks);
    for (const QString& name : names) {
        if (name.startsWith(PassingPrefix) && IsWrittenByJob(folder.filePath(name)))
            Remove(folder.filePath(name));
    }
}

} // namespace mdlFileNames
