// platform/dao/SchemaText.h
// Table and index definitions as SQLite statements, and the checks before.

#ifndef DAO_SCHEMATEXT_H
#define DAO_SCHEMATEXT_H

#include "platform/dao/TableDef.h"

#include <QByteArray>
#include <QString>

namespace dao::mdlSchemaText
{

/// Most fields of an index.
constexpr qsizetype MaxIndexFields = 10;

/// Name in quotation marks, as SQLite takes any name.
QByteArray Quoted(QStringView Name);

/// Throws 3125 unless Name can be the name of a table, field, index or query.
void RequireName(const QString& Name);

/// Throws what is wrong with the definition: 3264, 3125, 3191, 3259, 3017, 3090, 3190, 3283, 3284, 3285, 3277, 3626,
/// 3409.
void RequireSound(const TableDef& Table);

/// The sound definition with the names in its indexes written as the fields' own, as SQLite wants them.
TableDef WithFieldNames(TableDef Table);

/// Rules are constraints named "3163 Field" (too long), "3315 Field" (zero length), "3058 Field" (Null in an index that
/// refuses it) and "3349 Field" (a counter at its end): their number is the error's. Lengths are counted in UTF-16
/// units, which are two bytes each in the file. A counter is SQLite's own row number, so the primary index of such a
/// table is an index beside it unless it is the counter's.
QByteArray CreateTable(const TableDef& Table);

/// Adds a field that no rule of the table speaks of and that may be Null.
QByteArray AddField(const QString& Table, const FieldDef& Field);

/// Whether the primary index is part of the table and not an index of its own in the file.
bool HasInnerPrimary(const TableDef& Table);

/// FileName is the index's name in the file, where index names of all tables share one space.
QByteArray CreateIndex(const QString& Table, const IndexDef& Index, const QString& FileName);

} // namespace dao::mdlSchemaText

#endif
