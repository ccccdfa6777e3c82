// store/Store.h
// Opening the message database: made when missing, set aside when it is none, converted when old, refused when new.

#ifndef STORE_STORE_H
#define STORE_STORE_H

#include "app/Application.h"
#include "platform/dao/Database.h"
#include "store/JobWindow.h"

#include <QString>

#include <memory>

/// The one way to the message database. Nothing here throws.
namespace mdlStore
{

/// Makes a new database file with its tables and first rows. Nothing, without a message, when the file cannot be
/// made or something of that name exists. The file appears under its name only when it is complete.
std::unique_ptr<dao::Database> CreateNewDatabase(const QString& FileName);

/// Opens the message database and tells the user what it does about a missing, unrecognised, outdated or too new file.
/// An outdated one is converted when the user agrees, what can be read of a damaged one is recovered; Jobs shows how
/// far that is. Nothing when there is no usable database; an existing backup is never overwritten, and a file that is
/// not used is left as it is.
std::unique_ptr<dao::Database> OpenLogDatabase(const QString& FileName, Application& App, const JobWindow& Jobs = {});

/// The version of a table, or with an empty Table the highest of the file. "Ver.0.00" when it cannot be read.
QString GetTableVersion(dao::Database& Db, const QString& Table);

} // namespace mdlStore

#endif
