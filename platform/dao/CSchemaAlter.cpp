// platform/dao/CSchemaAlter.cpp
// Changing tables that are there: fields, indexes and constraints.

#include "platform/dao/CSchema.h"
#include "platform/dao/SchemaText.h"
#include "platform/text/Fold.h"

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

bool SameFields(const QStringList& Left, const QStringList& Right)
{
    return Left.size() == Right.size() && std::all_of(Left.begin(), Left.end(), [&](const QString& name) {
               return Right.contains(name, Qt::CaseInsensitive);
           });
}

/// Text with text, numbers with numbers; anything else with its like.
bool CanBeCompared(FieldType Left, FieldType Right)
{
    return Left == Right || (jetsql::IsText(Left) && jetsql::IsText(Right)) ||
           (jetsql::IsNumber(Left) && jetsql::IsNumber(Right));
}

/// Names as the table's fields are called; 3409 for one that is none.
QStringList OwnNames(const TableDef& Table, const QStringList& Names)
{
    QStringList names;
    for (const QString& name : Names) {
        const FieldDef* field = Table.FindField(name);
        if (!field)
            throw jetsql::MakeError(3409, {name});
        names.append(field->Name);
    }
    return names;
}

void Remove(TableDef& From, const IndexDef& Index)
{
    std::erase_if(From.Indexes, [&Index](const IndexDef& other) { return other.Name == Index.Name; });
}

} // namespace

void CSchema::ChangeTable(const TableDef& New)
{
    m_file.Change(RequireTable(New.Name), New);
    Load();
}

void CSchema::AppendField(const QString& Table, const FieldDef& Field)
{
    TableDef table = RequireTable(Table);
    if (table.FindField(Field.Name))
        throw jetsql::MakeError(3380, {Field.Name, table.Name});
    table.Fields.push_back(Field);
    mdlSchemaText::RequireSound(table);
    Atomically([&] { ChangeTable(table); });
}

void CSchema::DeleteField(const QString& Table, const QString& FieldName)
{
    TableDef table = RequireTable(Table);
    const FieldDef* field = table.FindField(FieldName);
    if (!field)
        throw jetsql::MakeError(3381, {FieldName, table.Name});
    const QString name = field->Name;
    const auto uses = [&name](const auto& rule) { return rule.Fields.contains(name); };
    const bool isUsed = std::any_of(table.Indexes.begin(), table.Indexes.end(), uses) ||
                        std::any_of(table.Constraints.begin(), table.Constraints.end(), [&](const ConstraintDef& rule) {
                            return rule.What == ConstraintDef::Kind::Foreign && uses(rule);
                        });
    if (isUsed)
        throw jetsql::MakeError(3280);
    std::erase_if(table.Fields, [&name](const FieldDef& other) { return other.Name == name; });
    if (table.Fields.empty())
        throw jetsql::MakeError(3264);
    Atomically([&] {
        m_file.RemoveRulesOver(table, name);
        ChangeTable(table);
    });
}

// A name within a table is that of an index or of a constraint.
void CSchema::RequireFreeRule(const TableDef& Table, const QString& Name) const
{
    mdlSchemaText::RequireName(Name);
    const bool isHidden = m_hasExtras && m_file.HasIndex(Table.Name, Name);
    if (Table.FindIndex(Name) || Table.FindConstraint(Name) || isHidden)
        throw jetsql::MakeError(3375, {Table.Name, Name});
}

void CSchema::AppendIndex(const QString& Table, const IndexDef& Index)
{
    TableDef table = RequireTable(Table);
    RequireFreeRule(table, Index.Name);
    table.Indexes.push_back(Index);
    mdlSchemaText::RequireSound(table);
    table = mdlSchemaText::WithFieldNames(table);
    Atomically([&] {
        m_file.Change(RequireTable(Table), table);
        m_file.AddIndex(table, table.Indexes.back());
    });
}

// The table that a foreign key refers to keeps its unique index.
void CSchema::RequireUnreferenced(const TableDef& Table, const QStringList& Key) const
{
    const auto unique = std::count_if(Table.Indexes.begin(), Table.Indexes.end(), [&](const IndexDef& index) {
        return (index.Unique || index.Primary) && SameFields(index.Fields, Key);
    });
    for (const TableDef& other : m_tables) {
        for (const ConstraintDef& rule : other.Constraints) {
            if (rule.ForeignTable == Table.Name && SameFields(rule.ForeignFields, Key) && unique < 2)
                throw jetsql::MakeError(3281);
        }
    }
}

void CSchema::DeleteIndex(const QString& Table, const QString& IndexName)
{
    TableDef table = RequireTable(Table);
    const IndexDef* found = table.FindIndex(IndexName);
    if (!found)
        throw jetsql::MakeError(3372, {table.Name, IndexName});
    const IndexDef index = *found;
    if (index.Unique || index.Primary)
        RequireUnreferenced(table, index.Fields);
    Atomically([&] {
        m_file.RemoveIndex(table, index);
        Remove(table, index);
        m_file.Change(RequireTable(Table), table);
    });
}

void CSchema::AppendConstraint(const QString& Table, const ConstraintDef& Wanted)
{
    TableDef table = RequireTable(Table);
    RequireFreeRule(table, Wanted.Name);
    ConstraintDef constraint = Wanted;
    constraint.Fields = OwnNames(table, Wanted.Fields);
    if (constraint.What == ConstraintDef::Kind::Foreign)
        return AppendForeign(table, constraint);
    for (FieldDef& field : table.Fields)
        field.Required = field.Required || (constraint.Fields.contains(field.Name) && field.Type != FieldType::Boolean);
    Atomically([&] {
        m_file.Change(RequireTable(Table), table);
        m_file.AddConstraint(table, constraint);
    });
}

void CSchema::AppendForeign(const TableDef& Table, const ConstraintDef& Wanted)
{
    const TableDef* parent = FindTableDef(Wanted.ForeignTable);
    if (!parent || parent->Attributes == TableDef::SystemAttributes)
        throw jetsql::MakeError(3376, {Wanted.ForeignTable});
    ConstraintDef constraint = Wanted;
    constraint.ForeignTable = parent->Name;
    if (Wanted.ForeignFields.isEmpty() && parent->Primary())
        constraint.ForeignFields = parent->Primary()->Fields;
    constraint.ForeignFields = OwnNames(*parent, constraint.ForeignFields);
    RequireMatch(Table, *parent, constraint);
    Atomically([&] {
        if (m_file.CountStrays(Table.Name, constraint) > 0)
            throw jetsql::MakeError(3201, {parent->Name});
        // Deleting a row over there asks for rows here each time.
        m_file.AddIndex(Table, {constraint.Name, constraint.Fields, false, false, true});
        m_file.AddConstraint(Table, constraint);
    });
}

void CSchema::RequireMatch(const TableDef& Table, const TableDef& Parent, const ConstraintDef& Constraint)
{
    const bool isKey = std::any_of(Parent.Indexes.begin(), Parent.Indexes.end(), [&](const IndexDef& index) {
        return (index.Unique || index.Primary) && SameFields(index.Fields, Constraint.ForeignFields);
    });
    if (!isKey)
        throw jetsql::MakeError(3609);
    bool isMatch = Constraint.Fields.size() == Constraint.ForeignFields.size();
    for (qsizetype i = 0; isMatch && i < Constraint.Fields.size(); ++i)
        isMatch = CanBeCompared(Table.FindField(Constraint.Fields[i])->Type,
                                Parent.FindField(Constraint.ForeignFields[i])->Type);
    if (!isMatch)
        throw jetsql::MakeError(3368);
}

void CSchema::DeleteConstraint(const QString& Table, const QString& Name)
{
    TableDef table = RequireTable(Table);
    if (table.FindIndex(Name))
        return DeleteIndex(Table, Name);
    const ConstraintDef* found = table.FindConstraint(Name);
    if (!found)
        throw jetsql::MakeError(3371);
    const ConstraintDef constraint = *found;
    for (FieldDef& field : table.Fields) {
        if (constraint.What == ConstraintDef::Kind::NotNull && constraint.Fields.contains(field.Name))
            field.Required = false;
    }
    Atomically([&] {
        m_file.RemoveConstraint(table, constraint);
        if (constraint.What == ConstraintDef::Kind::Foreign)
            m_file.RemoveIndex(table, {constraint.Name, constraint.Fields, false, false, true});
        m_file.Change(RequireTable(Table), table);
    });
}

} // namespace dao
