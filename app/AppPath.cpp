// app/AppPath.cpp
// Portable where the program's folder allows it, else the user's own folder.

#include "app/AppPath.h"

#include "app/Path.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace
{

/// Folders that belong to the system even when this user may write there: data put into them is lost with an update.
QStringList SystemFolders()
{
#if defined(Q_OS_WIN)
    return {qEnvironmentVariable("ProgramFiles"), qEnvironmentVariable("ProgramFiles(x86)"),
            qEnvironmentVariable("SystemRoot")};
#elif defined(Q_OS_MACOS)
    return {u"/Applications"_s, u"/Library"_s, u"/System"_s, u"/bin"_s, u"/sbin"_s, u"/usr"_s};
#else
    return {u"/app"_s, u"/bin"_s, u"/boot"_s, u"/dev"_s,  u"/etc"_s,  u"/lib"_s, u"/lib64"_s,
            u"/nix"_s, u"/opt"_s, u"/proc"_s, u"/sbin"_s, u"/snap"_s, u"/sys"_s, u"/usr"_s};
#endif
}

bool IsSystemFolder(const QString& Folder)
{
    const QString path = QDir::fromNativeSeparators(QDir::cleanPath(Folder)) + u'/';
    if (path == u"//")
        return true;
    for (const QString& system : SystemFolders()) {
        if (!system.isEmpty() && path.startsWith(QDir::fromNativeSeparators(system) + u'/', Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// By trying: rights alone do not tell of a medium that is mounted for reading only.
bool CanBeWritten(const QString& Folder)
{
    QTemporaryFile file(Folder + u"TVRXXXXXX.tmp"_s);
    return file.open();
}

} // namespace

QString mdlAppPath::Find(const QString& ProgramFolder, const QString& ExecutableName, const QString& UserFolder)
{
    const QString program = mdlPath::AddBackslash(ProgramFolder);
    const bool isInUse =
        QFileInfo(program + u"log.mdb"_s).isFile() || QFileInfo(program + ExecutableName + u".ini"_s).isFile();
    if (isInUse || (!IsSystemFolder(program) && CanBeWritten(program)))
        return program;
    QDir().mkpath(UserFolder); // a failure shows when the database is made there
    return mdlPath::AddBackslash(UserFolder);
}

QString mdlAppPath::UserDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Tavora/"_s;
}

QString mdlAppPath::FindProgramFile(const QString& FileName, const QString& AppPath, const QString& ProgramFolder)
{
    for (const QString& folder : {AppPath, ProgramFolder}) {
        const QString path = mdlPath::AddBackslash(folder) + FileName;
        if (!folder.isEmpty() && QFileInfo(path).isFile())
            return path;
    }
    return {};
}
