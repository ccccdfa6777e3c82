// platform/dao/SchemaText.cpp
// Writing CREATE TABLE and CREATE INDEX.

#include "platform/dao/SchemaText.h"

#include "platform/dao/FieldTypes.h"
#include "platform/text/Fold.h"

#include <QSet>

namespace dao::mdlSchemaText
{

using namespace Qt::StringLiterals;

namespace
{

constexpr int MaxNameSize = 64;
constexpr size_t MaxFields = 255;
constexpr size_t MaxIndexes = 32;
constexpr qsizetype MaxIndexFields = 10;

QByteArray QuotedList(const QStringList& Names)
{
    QByteArray list;
    for (const QString& name : Names)
        list += (list.isEmpty() ? "" : ", ") + Quoted(name);
    return list;
}

void RequireSoundField(const FieldDef& Field)
{
    RequireName(Field.Name);
    if (mdlFieldTypes::Declared(Field).isEmpty())
        throw jetsql::MakeError(3259);
    if (Field.Size < 0 || Field.Size > mdlFieldTypes::MaxTextSize)
        throw jetsql::MakeError(3017);
}

void RequireSoundFields(const TableDef& Table)
{
    if (Table.Fields.empty())
        throw jetsql::MakeError(3264);
    if (Table.Fields.size() > MaxFields)
        throw jetsql::MakeError(3190);
    QSet<QString> names;
    for (const FieldDef& field : Table.Fields) {
        RequireSoundField(field);
        if (names.contains(text::Fold(field.Name)))
            throw jetsql::MakeError(3191);
        names.insert(text::Fold(field.Name));
    }
}

void RequireSoundIndex(const TableDef& Table, const IndexDef& Index)
{
    RequireName(Index.Name);
    if (Index.Fields.isEmpty())
        throw jetsql::MakeError(3285);
    if (Index.Fields.size() > MaxIndexFields)
        throw jetsql::MakeError(3277);
    for (const QString& field : Index.Fields) {
        if (!Table.FindField(field))
            throw jetsql::MakeError(3409, {field});
    }
}

void RequireSoundIndexes(const TableDef& Table)
{
    if (Table.Indexes.size() > MaxIndexes)
        throw jetsql::MakeError(3626, {Table.Name});
    QSet<QString> names;
    bool hasPrimary = false;
    for (const IndexDef& index : Table.Indexes) {
        RequireSoundIndex(Table, index);
        if (names.contains(text::Fold(index.Name)))
            throw jetsql::MakeError(3284);
        names.insert(text::Fold(index.Name));
        if (index.Primary && hasPrimary)
            throw jetsql::MakeError(3283);
        hasPrimary = hasPrimary || index.Primary;
    }
}

const IndexDef* PrimaryIndex(const TableDef& Table)
{
    for (const IndexDef& index : Table.Indexes) {
        if (index.Primary)
            return &index;
    }
    return nullptr;
}

bool IsKeyField(const TableDef& Table, const FieldDef& Field)
{
    const IndexDef* primary = PrimaryIndex(Table);
    return primary && primary->Fields.contains(Field.Name);
}

QByteArray NullRule(const TableDef& Table, const FieldDef& Field)
{
    // A Boolean has no Null: what is not given, or given as Null, is False.
    if (Field.Type == FieldType::Boolean)
        return " NOT NULL ON CONFLICT REPLACE DEFAULT 0";
    return Field.Required || IsKeyField(Table, Field) ? " NOT NULL" : "";
}

QByteArray Rule(int Number, const FieldDef& Field, const QByteArray& Condition)
{
    const QString name = QString::number(Number) + u' ' + Field.Name;
    return ",\n  CONSTRAINT " + Quoted(name) + " CHECK (" + Condition + ")";
}

QByteArray FieldRules(const FieldDef& Field)
{
    QByteArray rules;
    const QByteArray name = Quoted(Field.Name);
    const int size = Field.Size > 0 ? Field.Size : mdlFieldTypes::MaxTextSize;
    if (Field.Type == FieldType::Text)
        rules += Rule(3163, Field, "length(CAST(" + name + " AS BLOB)) <= " + QByteArray::number(size * 2));
    if (jetsql::IsText(Field.Type) && !Field.AllowZeroLength)
        rules += Rule(3315, Field, name + " <> ''");
    return rules;
}

} // namespace

QByteArray Quoted(QStringView Name) { return '"' + Name.toUtf8().replace('"', "\"\"") + '"'; }

void RequireName(const QString& Name)
{
    bool isSound = !Name.isEmpty() && Name.size() <= MaxNameSize && !Name.startsWith(u' ');
    for (const QChar unit : Name)
        isSound = isSound && unit >= u' ' && !u".![]`"_s.contains(unit);
    if (!isSound)
        throw jetsql::MakeError(3125, {Name});
}

void RequireSound(const TableDef& Table)
{
    RequireName(Table.Name);
    RequireSoundFields(Table);
    RequireSoundIndexes(Table);
}

TableDef WithFieldNames(TableDef Table)
{
    for (IndexDef& index : Table.Indexes) {
        for (QString& field : index.Fields)
            field = Table.FindField(field)->Name;
    }
    return Table;
}

QByteArray CreateTable(const TableDef& Table)
{
    QByteArray fields;
    QByteArray rules;
    for (const FieldDef& field : Table.Fields) {
        fields += (fields.isEmpty() ? "\n  " : ",\n  ") + Quoted(field.Name) + ' ' +
                  mdlFieldTypes::Declared(field).toLatin1() + NullRule(Table, field);
        rules += FieldRules(field);
    }
    if (const IndexDef* primary = PrimaryIndex(Table))
        rules += ",\n  CONSTRAINT " + Quoted(primary->Name) + " PRIMARY KEY (" + QuotedList(primary->Fields) + ")";
    return "CREATE TABLE " + Quoted(Table.Name) + " (" + fields + rules + "\n)";
}

QByteArray CreateIndex(const QString& Table, const IndexDef& Index, const QString& FileName)
{
    const QByteArray kind = Index.Unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    return kind + Quoted(FileName) + " ON " + Quoted(Table) + " (" + QuotedList(Index.Fields) + ")";
}

} // namespace dao::mdlSchemaText
