// platform/dao/RunDefinition.cpp
// From a statement's definition to the changes of the catalogue.

#include "platform/dao/RunDefinition.h"

#include "platform/dao/FieldTypes.h"
#include "platform/dao/SchemaText.h"

#include <algorithm>

namespace dao::mdlDefinition
{

using namespace Qt::StringLiterals;
using jetsql::Definition;
using jetsql::FieldDefinition;
using jetsql::KeyDefinition;
using jetsql::PlacedName;

namespace
{

constexpr int MaxNameSize = 64;

/// Runs Work; an error that does not say where it belongs belongs to Offset.
template<class Function> void At(int Offset, Function&& Work)
{
    try {
        Work();
    } catch (Error& error) {
        if (error.Offset < 0)
            error.Offset = Offset;
        throw;
    }
}

[[noreturn]] void Refuse(int Number, const QStringList& Args, int Offset)
{
    throw jetsql::MakeError(Number, Args, Offset);
}

FieldDef NewField(const FieldDefinition& Wanted)
{
    At(Wanted.Offset, [&] { mdlSchemaText::RequireName(Wanted.Name); });
    if (Wanted.Size > mdlFieldTypes::MaxTextSize)
        Refuse(3382, {Wanted.Name}, Wanted.Offset);
    FieldDef field;
    field.Name = Wanted.Name;
    field.Type = Wanted.Type;
    const bool hasSize = Wanted.Type == FieldType::Text || Wanted.Type == FieldType::Binary;
    field.Size = hasSize && Wanted.Size == 0 ? mdlFieldTypes::MaxTextSize : Wanted.Size;
    // A Boolean is never Null anyway.
    field.Required = Wanted.Required && Wanted.Type != FieldType::Boolean;
    field.AutoIncrement = Wanted.AutoIncrement;
    return field;
}

QStringList FieldNames(const TableDef& Table, const std::vector<jetsql::KeyPart>& Parts)
{
    QStringList names;
    for (const jetsql::KeyPart& part : Parts) {
        const FieldDef* field = Table.FindField(part.Field.Text);
        if (!field)
            Refuse(3409, {part.Field.Text}, part.Field.Offset);
        names.append(field->Name);
    }
    return names;
}

QString FirstName(const TableDef& Table, const KeyDefinition& Key)
{
    switch (Key.What) {
    case KeyDefinition::Kind::Primary:
        return u"PrimaryKey"_s;
    case KeyDefinition::Kind::Foreign:
        return Table.Name + Key.ForeignTable.Text;
    default:
        return FieldNames(Table, Key.Fields).join(u'_');
    }
}

QString NameOf(const TableDef& Table, const KeyDefinition& Key)
{
    if (Key.Name.Offset >= 0)
        return Key.Name.Text;
    const QString first = FirstName(Table, Key).left(MaxNameSize - 3);
    QString name = first;
    for (int number = 2; Table.FindIndex(name) || Table.FindConstraint(name); ++number)
        name = first + QString::number(number);
    return name;
}

int OffsetOf(const KeyDefinition& Key)
{
    return Key.Name.Offset >= 0 ? Key.Name.Offset : Key.Fields.front().Field.Offset;
}

bool IsConstraint(const KeyDefinition& Key)
{
    return Key.What == KeyDefinition::Kind::NotNull || Key.What == KeyDefinition::Kind::Foreign;
}

IndexDef NewIndex(const TableDef& Table, const KeyDefinition& Key)
{
    IndexDef index;
    index.Name = NameOf(Table, Key);
    index.Fields = FieldNames(Table, Key.Fields);
    index.Primary = Key.What == KeyDefinition::Kind::Primary;
    index.Unique = index.Primary || Key.What == KeyDefinition::Kind::Unique;
    index.Required = Key.RefusesNull;
    index.IgnoreNull = Key.IgnoresNull;
    for (const jetsql::KeyPart& part : Key.Fields) {
        if (part.IsDescending)
            index.Descending.append(Table.FindField(part.Field.Text)->Name);
    }
    return index;
}

ConstraintDef NewConstraint(const TableDef& Table, const KeyDefinition& Key)
{
    ConstraintDef constraint;
    constraint.Name = NameOf(Table, Key);
    constraint.Fields = FieldNames(Table, Key.Fields);
    if (Key.What != KeyDefinition::Kind::Foreign)
        return constraint;
    constraint.What = ConstraintDef::Kind::Foreign;
    constraint.ForeignTable = Key.ForeignTable.Text;
    for (const jetsql::KeyPart& part : Key.ForeignFields)
        constraint.ForeignFields.append(part.Field.Text);
    return constraint;
}

/// What the statement names, as the file has it now.
TableDef TableOf(CSchema& Schema, const PlacedName& Name, int Missing)
{
    if (!Schema.FindTableDef(Name.Text))
        Refuse(Missing, {Name.Text}, Name.Offset);
    TableDef table;
    At(Name.Offset, [&] { table = Schema.RequireTable(Name.Text); });
    return table;
}

void AddKey(CSchema& Schema, const QString& TableName, const KeyDefinition& Key)
{
    const TableDef table = Schema.RequireTable(TableName);
    At(OffsetOf(Key), [&] {
        if (!IsConstraint(Key))
            return Schema.AppendIndex(table.Name, NewIndex(table, Key));
        At(Key.ForeignTable.Offset, [&] { Schema.AppendConstraint(table.Name, NewConstraint(table, Key)); });
    });
}

void AddField(TableDef& To, const FieldDefinition& Wanted)
{
    const FieldDef field = NewField(Wanted);
    if (To.FindField(field.Name))
        Refuse(3191, {}, Wanted.Offset);
    if (field.AutoIncrement && To.Counter())
        Refuse(3090, {}, Wanted.Offset);
    To.Fields.push_back(field);
}

/// Indexes are part of the new table, so that it need not be built twice.
void AddIndex(TableDef& To, const KeyDefinition& Key)
{
    const IndexDef index = NewIndex(To, Key);
    if (To.FindIndex(index.Name))
        Refuse(3375, {To.Name, index.Name}, OffsetOf(Key));
    if (index.Primary && To.Primary())
        Refuse(3283, {}, OffsetOf(Key));
    if (index.Fields.size() > mdlSchemaText::MaxIndexFields)
        Refuse(3277, {}, OffsetOf(Key));
    At(OffsetOf(Key), [&] { mdlSchemaText::RequireName(index.Name); });
    To.Indexes.push_back(index);
}

void CreateTable(CSchema& Schema, const Definition& Wanted)
{
    TableDef table;
    table.Name = Wanted.Table.Text;
    At(Wanted.Table.Offset, [&] { Schema.RequireFreeName(table.Name); });
    for (const FieldDefinition& field : Wanted.Fields)
        AddField(table, field);
    for (const KeyDefinition& key : Wanted.Keys) {
        if (!IsConstraint(key))
            AddIndex(table, key);
    }
    Schema.Atomically([&] {
        At(Wanted.Table.Offset, [&] { Schema.AppendTable(table); });
        for (const KeyDefinition& key : Wanted.Keys) {
            if (IsConstraint(key))
                AddKey(Schema, table.Name, key);
        }
    });
}

void AlterTable(CSchema& Schema, const Definition& Wanted)
{
    TableDef table = TableOf(Schema, Wanted.Table, 3371);
    Schema.Atomically([&] {
        for (const FieldDefinition& wanted : Wanted.Fields) {
            const FieldDef field = NewField(wanted);
            At(wanted.Offset, [&] { Schema.AppendField(table.Name, field); });
        }
        for (const KeyDefinition& key : Wanted.Keys)
            AddKey(Schema, table.Name, key);
    });
}

} // namespace

void Run(CSchema& Schema, const Definition& Wanted)
{
    const QString& name = Wanted.Name.Text;
    switch (Wanted.What) {
    case Definition::Kind::CreateTable:
        return CreateTable(Schema, Wanted);
    case Definition::Kind::AddField:
    case Definition::Kind::AddConstraint:
        return AlterTable(Schema, Wanted);
    case Definition::Kind::CreateIndex: {
        const TableDef table = TableOf(Schema, Wanted.Table, 3376);
        return AddKey(Schema, table.Name, Wanted.Keys.front());
    }
    case Definition::Kind::DropField: {
        const TableDef table = TableOf(Schema, Wanted.Table, 3371);
        return At(Wanted.Name.Offset, [&] { Schema.DeleteField(table.Name, name); });
    }
    case Definition::Kind::DropConstraint: {
        const TableDef table = TableOf(Schema, Wanted.Table, 3371);
        return At(Wanted.Name.Offset, [&] { Schema.DeleteConstraint(table.Name, name); });
    }
    case Definition::Kind::DropIndex: {
        const TableDef table = TableOf(Schema, Wanted.Table, 3376);
        return At(Wanted.Name.Offset, [&] { Schema.DeleteIndex(table.Name, name); });
    }
    case Definition::Kind::DropTable: {
        const TableDef table = TableOf(Schema, Wanted.Table, 3376);
        return At(Wanted.Table.Offset, [&] { Schema.DeleteTable(table.Name); });
    }
    }
}

} // namespace dao::mdlDefinition
