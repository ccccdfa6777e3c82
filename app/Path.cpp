// app/Path.cpp
// Separators, drives and the way from a written path to the file system.

#include "app/Path.h"

#include <QFileInfo>

namespace mdlPath
{

QString AddBackslash(const QString& Path)
{
    if (Path.isEmpty() || IsSeparator(Path.back()))
        return Path;
    return Path + (HasDrive(Path) || Path.contains(u'\\') ? u'\\' : u'/');
}

bool HasDrive(const QString& Path)
{
    return Path.size() >= 2 && Path[1] == u':' && Path[0].unicode() < 0x80 && Path[0].isLetter();
}

qsizetype LastSeparator(const QString& Path) { return std::max(Path.lastIndexOf(u'\\'), Path.lastIndexOf(u'/')); }

QString DiskPath(const QString& Path)
{
#ifdef Q_OS_WIN
    return Path;
#else
    if (HasDrive(Path) || Path.startsWith(QStringView(u"\\\\")))
        return {};
    // Here a "\" may really be part of a folder's name; what exists as it is written is taken as it is written.
    if (!Path.contains(u'\\') || QFileInfo::exists(Path) || QFileInfo::exists(Path.left(LastSeparator(Path))))
        return Path;
    return QString(Path).replace(u'\\', u'/');
#endif
}

} // namespace mdlPath
