// store/FileVersion.h
// The versions that a database file says its tables have.

#ifndef STORE_FILEVERSION_H
#define STORE_FILEVERSION_H

#include "platform/dao/Database.h"

#include <QString>

namespace mdlFileVersion
{

/// "Ver.0.00": the version of whatever has none.
QString Unknown();

/// The version of a table, or with an empty Table the highest of the file; Unknown when there is none or it is no
/// version ("Ver.", a digit, a point, two digits). Throws Error: where the table is missing or other than today's that
/// is no more than a sign of an old file, see IsFileTrouble.
QString Read(dao::Database& Db, const QString& Table);

/// The same with Unknown for every error.
QString ReadOrUnknown(dao::Database& Db, const QString& Table);

/// Damage, a lock, a full or failing disk and a job broken off: errors that say nothing about what is in the file.
bool IsFileTrouble(int Number);

} // namespace mdlFileVersion

#endif
