// store/FileNames.h
// The names around a database file: what belongs to it, what it is kept as, what an interrupted job left.

#ifndef STORE_FILENAMES_H
#define STORE_FILENAMES_H

#include <QString>

namespace mdlFileNames
{

/// Whether there is anything of that name, a link into nowhere too.
bool Exists(const QString& FileName);

/// A name that nothing has: Wanted or, where that is taken, Wanted with a number from 2 on before its extension.
QString FreeName(const QString& Wanted);

/// FileName with "bak" for its extension.
QString BackupName(const QString& FileName);

/// Name as the user knows it: without the folder.
QString WithoutFolder(const QString& FileName);

/// The file itself where FileName is a link to it; a new version must take its place and not the link's.
QString RealName(const QString& FileName);

/// A free name in the file's folder for a version of it that is being made: "TVR", characters, ".tmp". Empty when
/// nothing can be written there.
QString PassingName(const QString& FileName);

/// What a database file has beside it belongs to that file only: left behind, it would be read into the next file of
/// the same name and spoil it. Moves all of it along with From; false when something cannot be moved.
bool MoveLog(const QString& From, const QString& To);

/// Removes a database file and what is beside it.
void Remove(const QString& FileName);

/// Removes versions that were being made when the program was killed. To be called when FileName is known to be open
/// and whole: such a version then never is the only one. Files of that name that no such job has written stay.
void RemoveLeftovers(const QString& FileName);

} // namespace mdlFileNames

#endif
