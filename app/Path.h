// app/Path.h
// Small rules about paths as users write them: with "\" or "/", with a drive or without.

#ifndef APP_PATH_H
#define APP_PATH_H

#include <QString>

namespace mdlPath
{

/// Whether Unit separates folders.
constexpr bool IsSeparator(QChar Unit) { return Unit == u'\\' || Unit == u'/'; }

/// Path with a separator at its end: "\" for a path that has a drive letter or a "\" already, else "/".
/// A path that ends in one and an empty path stay as they are.
QString AddBackslash(const QString& Path);

/// Whether Path begins with a drive ("D:").
bool HasDrive(const QString& Path);

/// Place of the last separator; -1 when there is none.
qsizetype LastSeparator(const QString& Path);

/// Path as the file system of this machine takes it. Empty when it has a drive and drives do not exist here: opening
/// such a name would make an oddly named file in the working folder.
QString DiskPath(const QString& Path);

} // namespace mdlPath

#endif // APP_PATH_H
