// platform/dao/ForeignKeys.cpp
// Writing CREATE TRIGGER.

#include "platform/dao/ForeignKeys.h"

#include "platform/dao/SchemaText.h"

namespace dao::mdlForeignKeys
{

using namespace Qt::StringLiterals;
using mdlSchemaText::Quoted;

namespace
{

constexpr int TriggerCount = 4;

QByteArray TriggerName(const QString& Table, const ConstraintDef& Constraint, int Number)
{
    return Quoted(u"~%1.%2.%3"_s.arg(Table, Constraint.Name, QString::number(Number)));
}

QByteArray Refusal(int Number, const QString& OtherTable)
{
    const QString reason = QString::number(Number) + u' ' + OtherTable;
    return " BEGIN SELECT RAISE(ABORT, '" + reason.toUtf8().replace('\'', "''") + "'); END";
}

/// "a" = NEW."x" AND "b" = NEW."y"
QByteArray Matches(const QStringList& Fields, const QByteArray& Row, const QStringList& RowFields)
{
    QByteArrayList parts;
    for (qsizetype i = 0; i < Fields.size(); ++i)
        parts += Quoted(Fields[i]) + " = " + Row + Quoted(RowFields[i]);
    return parts.join(" AND ");
}

QByteArray Joined(const QStringList& Fields, const QByteArray& Before, const QByteArray& After, const char* Between)
{
    QByteArrayList parts;
    for (const QString& field : Fields)
        parts += Before + Quoted(field) + After;
    return parts.join(Between);
}

/// Null in any of the fields refers to nothing.
QByteArray IsStray(const ConstraintDef& Constraint, const QByteArray& Row)
{
    return Joined(Constraint.Fields, Row, " IS NOT NULL", " AND ") + " AND NOT EXISTS (SELECT 1 FROM " +
           Quoted(Constraint.ForeignTable) + " WHERE " + Matches(Constraint.ForeignFields, Row, Constraint.Fields) +
           ")";
}

QByteArray HasRelated(const QString& Table, const ConstraintDef& Constraint)
{
    return "EXISTS (SELECT 1 FROM " + Quoted(Table) + " WHERE " +
           Matches(Constraint.Fields, "OLD.", Constraint.ForeignFields) + ")";
}

QByteArray IsMoved(const QStringList& Fields)
{
    QByteArrayList parts;
    for (const QString& field : Fields)
        parts += "OLD." + Quoted(field) + " IS NOT NEW." + Quoted(field);
    return '(' + parts.join(" OR ") + ") AND ";
}

} // namespace

QByteArrayList Triggers(const QString& Table, const ConstraintDef& Constraint)
{
    const QByteArray child = Quoted(Table);
    const QByteArray parent = Quoted(Constraint.ForeignTable);
    const QByteArray stray = " WHEN " + IsStray(Constraint, "NEW.") + Refusal(3201, Constraint.ForeignTable);
    const QByteArray related = HasRelated(Table, Constraint) + Refusal(3200, Table);
    const QByteArrayList events = {
        " AFTER INSERT ON " + child + stray,
        " AFTER UPDATE OF " + Joined(Constraint.Fields, "", "", ", ") + " ON " + child + stray,
        " AFTER DELETE ON " + parent + " WHEN " + related,
        " AFTER UPDATE OF " + Joined(Constraint.ForeignFields, "", "", ", ") + " ON " + parent + " WHEN " +
            IsMoved(Constraint.ForeignFields) + related,
    };
    QByteArrayList triggers;
    for (int number = 0; number < TriggerCount; ++number)
        triggers += "CREATE TRIGGER " + TriggerName(Table, Constraint, number) + events[number];
    return triggers;
}

QByteArrayList DropTriggers(const QString& Table, const ConstraintDef& Constraint)
{
    QByteArrayList drops;
    for (int number = 0; number < TriggerCount; ++number)
        drops += "DROP TRIGGER IF EXISTS " + TriggerName(Table, Constraint, number);
    return drops;
}

QByteArray CountStrays(const QString& Table, const ConstraintDef& Constraint)
{
    return "SELECT count(*) FROM " + Quoted(Table) + " AS \"~\" WHERE " + IsStray(Constraint, "\"~\".");
}

} // namespace dao::mdlForeignKeys
