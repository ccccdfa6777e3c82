// platform/dao/OpenFile.h
// Opening and making database files, and telling what is wrong with one that does not open.

#ifndef DAO_OPENFILE_H
#define DAO_OPENFILE_H

#include "platform/dao/CConnection.h"

#include <QString>

#include <memory>

namespace dao::mdlOpenFile
{

/// Marks our files in SQLite's own header field for it: "Tavr".
constexpr int ApplicationId = 0x54617672;

/// Opens an existing file without changing it; see Database::Open for the errors.
std::unique_ptr<CConnection> Open(const QString& FileName);

/// Makes a new file; see Database::Create for the errors. Leaves nothing behind when it fails.
std::unique_ptr<CConnection> Create(const QString& FileName);

/// Opens a file of 0 bytes that is to receive the pages of another. Throws as Open does for what SQLite refuses.
std::unique_ptr<CConnection> OpenEmpty(const QString& FileName);

/// Whether the file that the connection reads is no longer the one of that name: somebody has put another in its place.
bool HasMoved(sqlite3* Handle);

} // namespace dao::mdlOpenFile

#endif
