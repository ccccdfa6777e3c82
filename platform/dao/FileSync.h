// platform/dao/FileSync.h
// Whole files on the disk: written through, and put in the place of others.

#ifndef DAO_FILESYNC_H
#define DAO_FILESYNC_H

#include <QString>

namespace dao::mdlFileSync
{

/// Returns when the file's contents are on the disk. Nobody in this process may have the file open through SQLite,
/// whose locks would be gone. Throws 3026 full disk, 3043.
void SyncFile(const QString& FileName);

/// The same for the names in the folder that FileName is in. A file system without such a thing is no error.
void SyncFolderOf(const QString& FileName);

/// Gives From the name To, in one step also where To exists. Throws 3026, 3043 or 3051; both are then as they were.
void Rename(const QString& From, const QString& To);

/// Gives the file a second name, which must be free; costs neither room nor time. False where the file system has no
/// such thing, or the name is taken.
bool AddName(const QString& FileName, const QString& SecondName);

} // namespace dao::mdlFileSync

#endif
