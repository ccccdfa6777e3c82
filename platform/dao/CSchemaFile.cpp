// platform/dao/CSchemaFile.cpp
// Making, dropping and renaming tables, indexes and constraints.

#include "platform/dao/CSchemaFile.h"

#include "platform/dao/CRun.h"
#include "platform/dao/ForeignKeys.h"
#include "platform/dao/OwnTables.h"
#include "platform/dao/SchemaText.h"
#include "platform/text/Fold.h"

namespace dao
{

using namespace Qt::StringLiterals;
using mdlSchemaText::Quoted;

namespace
{

Value Text(QStringView Data) { return Value::FromText(Data.toString()); }

} // namespace

void CSchemaFile::RequireOwnTables() { mdlOwnTables::Require(m_connection); }

void CSchemaFile::Create(const TableDef& Table)
{
    m_connection.Run(mdlSchemaText::CreateTable(Table));
    WriteAttributes(Table);
    WriteFields(Table);
    for (const IndexDef& index : Table.Indexes)
        AddIndex(Table, index);
    for (const ConstraintDef& constraint : Table.Constraints)
        AddConstraint(Table, constraint);
}

void CSchemaFile::WriteAttributes(const TableDef& Table)
{
    if (Table.Attributes != 0)
        mdlOwnTables::Run(m_connection, "INSERT INTO \"~Tables\" VALUES (?1, ?2)",
                          {Text(Table.Name), Value::FromLong(Table.Attributes)});
}

void CSchemaFile::WriteFields(const TableDef& Table)
{
    mdlOwnTables::Run(m_connection, "DELETE FROM \"~Fields\" WHERE TableName = ?1", {Text(Table.Name)});
    for (const FieldDef& field : Table.Fields)
        mdlOwnTables::Run(m_connection, "INSERT INTO \"~Fields\" VALUES (?1, ?2, ?3, ?4, ?5)",
                          {Text(Table.Name), Text(field.Name), Value::FromBoolean(field.AllowZeroLength),
                           Value::FromBoolean(field.Required),
                           field.Description.isEmpty() ? Value() : Text(field.Description)});
}

void CSchemaFile::Drop(const TableDef& Table)
{
    for (const Relation& relation : RelationsOf(Table.Name))
        DropTriggers(relation);
    m_connection.Run("DROP TABLE " + Quoted(Table.Name));
    mdlOwnTables::Forget(m_connection, Table.Name);
}

void CSchemaFile::RenameInFile(const QString& OldName, const QString& NewName)
{
    m_connection.Run("ALTER TABLE " + Quoted(OldName) + " RENAME TO " + Quoted(NewName));
}

void CSchemaFile::Rename(const TableDef& Table, const QString& NewName)
{
    for (const Relation& relation : RelationsOf(Table.Name))
        DropTriggers(relation);
    // SQLite takes a name in other letter case for one that is in use.
    const bool isSameName = text::EqualText(Table.Name, NewName);
    const QString passingName = isSameName ? u"~Renamed"_s : Table.Name;
    if (isSameName)
        RenameInFile(Table.Name, passingName);
    RenameInFile(passingName, NewName);
    mdlOwnTables::Rename(m_connection, Table.Name, NewName);
    for (const Relation& relation : RelationsOf(NewName))
        MakeTriggers(relation);
}

void CSchemaFile::AddIndex(const TableDef& Table, const IndexDef& Index)
{
    // The primary index is part of the table where that can be, and has no name of its own in the file.
    const bool isInner = Index.Primary && mdlSchemaText::HasInnerPrimary(Table);
    const QString fileName = isInner ? u""_s : FreeIndexName(Table.Name, Index.Name);
    if (!isInner)
        m_connection.Run(mdlSchemaText::CreateIndex(Table.Name, Index, fileName));
    mdlOwnTables::Run(m_connection, "INSERT INTO \"~Indexes\" VALUES (?1, ?2, ?3, ?4)",
                      {Text(Table.Name), Text(Index.Name), Text(fileName), Value::FromBoolean(Index.Hidden)});
    if (Index.Primary && !isInner)
        WriteFlag(Table.Name, Index.Name, mdlOwnTables::PrimaryKind);
    if (Index.Required)
        WriteFlag(Table.Name, Index.Name, mdlOwnTables::RequiredKind);
    if (Index.IgnoreNull)
        WriteFlag(Table.Name, Index.Name, mdlOwnTables::IgnoreNullKind);
}

void CSchemaFile::WriteFlag(const QString& Table, const QString& Name, QStringView Kind)
{
    mdlOwnTables::Run(m_connection, "INSERT INTO \"~Constraints\" (TableName, Name, Kind) VALUES (?1, ?2, ?3)",
                      {Text(Table), Text(Name), Text(Kind)});
}

QString CSchemaFile::FreeIndexName(const QString& Table, const QString& Index)
{
    const QString first = Table + u'.' + Index;
    QString name = first;
    for (int number = 2;; ++number) {
        CRun run(m_connection, "SELECT 1 FROM sqlite_master WHERE name = ?1 COLLATE NOCASE");
        const Value wanted = Text(name);
        run.Bind(1, wanted);
        if (!run.Step())
            return name;
        // The index of a table that was renamed keeps its name in the file.
        name = first + u'.' + QString::number(number);
    }
}

QString CSchemaFile::FileNameOf(const QString& Table, const QString& Index)
{
    CRun run(m_connection, "SELECT FileName FROM \"~Indexes\" WHERE TableName = ?1 AND IndexName = ?2");
    const Value table = Text(Table);
    const Value index = Text(Index);
    run.Bind(1, table);
    run.Bind(2, index);
    // What another program made goes by its name in the file.
    return run.Step() ? run.Text(0) : Index;
}

void CSchemaFile::RemoveIndex(const TableDef& Table, const IndexDef& Index)
{
    const QString fileName = FileNameOf(Table.Name, Index.Name);
    // An index that another program made with its table is part of that table.
    if (fileName.startsWith(u"sqlite_"_s))
        throw jetsql::MakeError(3281);
    if (!fileName.isEmpty())
        m_connection.Run("DROP INDEX " + Quoted(fileName));
    const std::vector<Value> names = {Text(Table.Name), Text(Index.Name)};
    mdlOwnTables::Run(m_connection, "DELETE FROM \"~Indexes\" WHERE TableName = ?1 AND IndexName = ?2", names);
    mdlOwnTables::Run(m_connection,
                      "DELETE FROM \"~Constraints\" WHERE TableName = ?1 AND Name = ?2 AND FieldNames IS NULL", names);
}

bool CSchemaFile::HasIndex(const QString& Table, const QString& Index) const
{
    CRun run(m_connection, "SELECT 1 FROM \"~Indexes\" WHERE TableName = ?1 AND IndexName = ?2 COLLATE NOCASE");
    const Value table = Text(Table);
    const Value index = Text(Index);
    run.Bind(1, table);
    run.Bind(2, index);
    return run.Step();
}

void CSchemaFile::RemoveRulesOver(const TableDef& Table, const QString& FieldName)
{
    std::vector<IndexDef> hidden;
    {
        CRun run(m_connection, "SELECT IndexName FROM \"~Indexes\" WHERE TableName = ?1 AND IsHidden AND EXISTS "
                               "(SELECT 1 FROM pragma_index_info(FileName) WHERE name = ?2)");
        const Value table = Text(Table.Name);
        const Value field = Text(FieldName);
        run.Bind(1, table);
        run.Bind(2, field);
        while (run.Step())
            hidden.push_back({run.Text(0), {}, false, false, true});
    }
    for (const IndexDef& index : hidden)
        RemoveIndex(Table, index);
    for (const ConstraintDef& constraint : Table.Constraints) {
        if (constraint.What == ConstraintDef::Kind::NotNull && constraint.Fields.contains(FieldName))
            RemoveConstraint(Table, constraint);
    }
}

void CSchemaFile::AddConstraint(const TableDef& Table, const ConstraintDef& Constraint)
{
    const bool isForeign = Constraint.What == ConstraintDef::Kind::Foreign;
    mdlOwnTables::Run(m_connection, "INSERT INTO \"~Constraints\" VALUES (?1, ?2, ?3, ?4, ?5, ?6)",
                      {Text(Table.Name), Text(Constraint.Name),
                       Text(isForeign ? mdlOwnTables::ForeignKind : mdlOwnTables::NotNullKind),
                       Text(mdlOwnTables::Joined(Constraint.Fields)), Text(Constraint.ForeignTable),
                       Text(mdlOwnTables::Joined(Constraint.ForeignFields))});
    if (isForeign)
        MakeTriggers({Table.Name, Constraint});
}

void CSchemaFile::RemoveConstraint(const TableDef& Table, const ConstraintDef& Constraint)
{
    if (Constraint.What == ConstraintDef::Kind::Foreign)
        DropTriggers({Table.Name, Constraint});
    mdlOwnTables::Run(m_connection,
                      "DELETE FROM \"~Constraints\" WHERE TableName = ?1 AND Name = ?2 AND FieldNames IS NOT NULL",
                      {Text(Table.Name), Text(Constraint.Name)});
}

qint64 CSchemaFile::CountStrays(const QString& Table, const ConstraintDef& Constraint)
{
    return m_connection.RunForNumber(mdlForeignKeys::CountStrays(Table, Constraint));
}

std::vector<CSchemaFile::Relation> CSchemaFile::RelationsOf(const QString& Table)
{
    std::vector<Relation> relations;
    CRun run(m_connection, "SELECT TableName, Name, FieldNames, ForeignTable, ForeignFields FROM \"~Constraints\" "
                           "WHERE Kind = 'FOREIGN KEY' AND (TableName = ?1 OR ForeignTable = ?1)");
    const Value name = Text(Table);
    run.Bind(1, name);
    while (run.Step()) {
        ConstraintDef constraint{run.Text(1), ConstraintDef::Kind::Foreign, mdlOwnTables::Split(run.Text(2)),
                                 run.Text(3), mdlOwnTables::Split(run.Text(4))};
        relations.push_back({run.Text(0), std::move(constraint)});
    }
    return relations;
}

void CSchemaFile::MakeTriggers(const Relation& Of)
{
    for (const QByteArray& trigger : mdlForeignKeys::Triggers(Of.Table, Of.Constraint))
        m_connection.Run(trigger);
}

void CSchemaFile::DropTriggers(const Relation& Of)
{
    for (const QByteArray& drop : mdlForeignKeys::DropTriggers(Of.Table, Of.Constraint))
        m_connection.Run(drop);
}

} // namespace dao
