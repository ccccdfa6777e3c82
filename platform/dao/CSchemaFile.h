// platform/dao/CSchemaFile.h
// Writing tables, indexes and what belongs to them into the file.

#ifndef DAO_CSCHEMAFILE_H
#define DAO_CSCHEMAFILE_H

#include "platform/dao/CConnection.h"
#include "platform/dao/TableDef.h"

#include <QByteArrayList>
#include <QString>

#include <vector>

namespace dao
{

/// The steps of which changes of the structure are made. None is atomic by itself: whoever takes several puts a
/// transaction around them. Definitions are sound and use the fields' own names. All members throw Error.
class CSchemaFile
{
public:
    explicit CSchemaFile(CConnection& Connection)
        : m_connection(Connection)
    {}

    /// Makes the layer's own tables where they are missing.
    void RequireOwnTables();

    /// The table with its indexes, rules and constraints.
    void Create(const TableDef& Table);
    void Drop(const TableDef& Table);
    void Rename(const TableDef& Table, const QString& NewName);

    /// Turns table Old into New, row by row into a new table where SQLite cannot change it as it stands. Indexes stay,
    /// also those that the definitions do not know, and so do other programs' triggers. Indexes and foreign keys that
    /// only New has are not made. A field that is not in Old becomes Null, a counter counts from 1.
    /// 3314, 3058, 3022 when a row does not fit New.
    void Change(const TableDef& Old, const TableDef& New);

    void AddIndex(const TableDef& Table, const IndexDef& Index);
    /// The index and all that is known of it; one inside the table only goes with Change.
    void RemoveIndex(const TableDef& Table, const IndexDef& Index);

    /// Whether the table has an index of that name, hidden or not.
    bool HasIndex(const QString& Table, const QString& Index) const;
    /// Hidden indexes over a field of Table that is to go, and its part in the names of NOT NULL rules.
    void RemoveRulesOver(const TableDef& Table, const QString& FieldName);

    /// A foreign key needs its index on Table besides.
    void AddConstraint(const TableDef& Table, const ConstraintDef& Constraint);
    void RemoveConstraint(const TableDef& Table, const ConstraintDef& Constraint);

    /// How often Table holds a value that the foreign key's other table does not.
    qint64 CountStrays(const QString& Table, const ConstraintDef& Constraint);

private:
    struct Relation
    {
        QString Table;
        ConstraintDef Constraint;
    };

    void WriteAttributes(const TableDef& Table);
    void WriteFields(const TableDef& Table);
    void WriteFlag(const QString& Table, const QString& Name, QStringView Kind);
    QString FreeIndexName(const QString& Table, const QString& Index);
    QString FileNameOf(const QString& Table, const QString& Index);

    void Rebuild(const TableDef& Old, const TableDef& New);
    void ChangeForeign(const TableDef& Old, const TableDef& New);
    void CopyRows(const TableDef& Old, const TableDef& New);
    QByteArrayList DependentSql(const QString& Table);
    void KeepCounter(const QString& Table, qint64 Last);
    qint64 LastNumber(const QString& Table);
    void RenameInFile(const QString& OldName, const QString& NewName);

    std::vector<Relation> RelationsOf(const QString& Table);
    void MakeTriggers(const Relation& Of);
    void DropTriggers(const Relation& Of);

    CConnection& m_connection;
};

} // namespace dao

#endif
