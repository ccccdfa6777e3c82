// store/Schema.h
// The tables of the message database, their versions and their first rows.

#ifndef STORE_SCHEMA_H
#define STORE_SCHEMA_H

#include "platform/dao/Database.h"

#include <QString>

#include <vector>

/// The layout of the database file: four tables, each with a version of its own.
namespace mdlSchema
{

/// Current versions; compared as plain text. The file as a whole has the highest, that of BBS.
QString BBSTableVersion();
QString MessageTableVersion();
QString MarkTableVersion();
QString FileVersion();

/// How the four tables are built.
std::vector<dao::TableDef> Tables();

/// Builds table BBS with the sixteen boards of a new database. False at the first refusal of the engine; what was done
/// until then stays.
bool CreateBBSTable(dao::Database& Db);
/// Builds the empty table Message; same result.
bool CreateMessageTable(dao::Database& Db);
/// Builds table Mark with its four marks; same result.
bool CreateMarkTable(dao::Database& Db);
/// Builds table Version anew, with a row for each of the other three. An empty Version gives each its current one,
/// otherwise all get Version. False at the first refusal of the engine but the missing old table.
bool WriteVersionTable(dao::Database& Db, const QString& Version);

} // namespace mdlSchema

#endif
