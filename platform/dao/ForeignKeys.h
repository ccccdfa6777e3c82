// platform/dao/ForeignKeys.h
// Foreign keys as triggers, so that they hold for every program that writes to the file.

#ifndef DAO_FOREIGNKEYS_H
#define DAO_FOREIGNKEYS_H

#include "platform/dao/TableDef.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace dao::mdlForeignKeys
{

/// The triggers of one foreign key of Table, and the statements that drop them. What they refuse with is the number of
/// the engine's error and the other table's name: "3201 Parent", "3200 Child".
///
/// SQLite's own foreign keys are off in most programs, do not say which one was broken, and stand in the way of
/// rebuilding a table inside a transaction.
QByteArrayList Triggers(const QString& Table, const ConstraintDef& Constraint);
QByteArrayList DropTriggers(const QString& Table, const ConstraintDef& Constraint);

/// Counts the rows of Table that have no row to refer to.
QByteArray CountStrays(const QString& Table, const ConstraintDef& Constraint);

} // namespace dao::mdlForeignKeys

#endif
