// sqlshell/Schema.h
// Tables as the statements that would make them.

#ifndef SQLSHELL_SCHEMA_H
#define SQLSHELL_SCHEMA_H

#include "platform/dao/TableDef.h"

#include <QJsonObject>

namespace sqlshell::mdlSchema
{

/// CREATE TABLE and CREATE INDEX statements, each ended with ";" and a line end.
QString Sql(const dao::TableDef& Table);
/// The statements that add its foreign keys, to be run when all tables are there.
QString ForeignKeys(const dao::TableDef& Table);

/// The same for programs, with what no statement can say (zero-length texts, descriptions).
QJsonObject Json(const dao::TableDef& Table);

/// A name as a statement wants it: in brackets where it is not plain or means something else.
QString Quoted(const QString& Name);

} // namespace sqlshell::mdlSchema

#endif
