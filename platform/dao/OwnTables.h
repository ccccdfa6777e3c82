// platform/dao/OwnTables.h
// The tables in which the layer keeps what SQLite has no place for.

#ifndef DAO_OWNTABLES_H
#define DAO_OWNTABLES_H

#include "platform/dao/CConnection.h"
#include "platform/dao/Types.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace dao::mdlOwnTables
{

/// Kinds of entries in "~Constraints". The first three say more of an index of that name.
inline constexpr QStringView PrimaryKind = u"PRIMARY";
inline constexpr QStringView RequiredKind = u"DISALLOW NULL";
inline constexpr QStringView IgnoreNullKind = u"IGNORE NULL";
inline constexpr QStringView NotNullKind = u"NOT NULL";
inline constexpr QStringView ForeignKind = u"FOREIGN KEY";

/// True for the name of one of them, as it stands in the file.
bool IsOne(const QString& TableName);

/// Makes those that are missing.
void Require(CConnection& Connection);

/// Runs a statement with its parameters in order.
void Run(CConnection& Connection, const QByteArray& Sql, const std::vector<Value>& Parameters);

/// Forgets, or renames, a table in those that name tables.
void Forget(CConnection& Connection, const QString& TableName);
void Rename(CConnection& Connection, const QString& OldName, const QString& NewName);

/// Names of fields as one text and back; no name holds a point.
QString Joined(const QStringList& Names);
QStringList Split(const QString& Names);

} // namespace dao::mdlOwnTables

#endif
