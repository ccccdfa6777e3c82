// platform/dao/SchemaText.cpp
// Writing CREATE TABLE and CREATE INDEX.

#include "platform/dao/SchemaText.h"

#include "platform/dao/FieldTypes.h"
#include "platform/text/Fold.h"

#include <QByteArrayList>
#include <QSet>

#include <algorithm>

namespace dao::mdlSchemaText
{

using namespace Qt::StringLiterals;

namespace
{

constexpr int MaxNameSize = 64;
constexpr size_t MaxFields = 255;
constexpr size_t MaxIndexes = 32;

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
    const auto counters = std::count_if(Table.Fields.begin(), Table.Fields.end(),
                                        [](const FieldDef& field) { return field.AutoIncrement; });
    if (counters > 1)
        throw jetsql::MakeError(3090);
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

bool Holds(const IndexDef* Index, const FieldDef& Field) { return Index && Index->Fields.contains(Field.Name); }

QByteArray NullRule(const TableDef& Table, const FieldDef& Field)
{
    // A Boolean has no Null: what is not given, or given as Null, is False.
    if (Field.Type == FieldType::Boolean)
        return " NOT NULL ON CONFLICT REPLACE DEFAULT 0";
    const bool isInnerKey = HasInnerPrimary(Table) && Holds(Table.Primary(), Field);
    return Field.Required || isInnerKey ? " NOT NULL" : "";
}

QByteArray Column(const TableDef& Table, const FieldDef& Field)
{
    // Only under this name of its type does SQLite take a field for its row number.
    if (Field.AutoIncrement)
        return Quoted(Field.Name) + " INTEGER PRIMARY KEY AUTOINCREMENT";
    return Quoted(Field.Name) + ' ' + mdlFieldTypes::Declared(Field).toLatin1() + NullRule(Table, Field);
}

QByteArray Rule(int Number, const FieldDef& Field, const QByteArray& Condition)
{
    const QString name = QString::number(Number) + u' ' + Field.Name;
    return "CONSTRAINT " + Quoted(name) + " CHECK (" + Condition + ")";
}

QByteArrayList FieldRules(const FieldDef& Field)
{
    QByteArrayList rules;
    const QByteArray name = Quoted(Field.Name);
    const int size = Field.Size > 0 ? Field.Size : mdlFieldTypes::MaxTextSize;
    if (Field.AutoIncrement)
        rules += Rule(3349, Field, name + " BETWEEN -2147483648 AND 2147483647");
    if (Field.Type == FieldType::Text)
        rules += Rule(3163, Field, "length(CAST(" + name + " AS BLOB)) <= " + QByteArray::number(size * 2));
    if (Field.Type == FieldType::Binary)
        rules += Rule(3163, Field, "length(" + name + ") <= " + QByteArray::number(size));
    if (jetsql::IsText(Field.Type) && !Field.AllowZeroLength)
        rules += Rule(3315, Field, name + " <> ''");
    return rules;
}

bool IsRefusedByIndex(const TableDef& Table, const FieldDef& Field)
{
    const bool isOuterKey = !HasInnerPrimary(Table) && Holds(Table.Primary(), Field);
    const bool isInRequired = std::any_of(Table.Indexes.begin(), Table.Indexes.end(), [&](const IndexDef& index) {
        return index.Required && Holds(&index, Field);
    });
    return !Field.AutoIncrement && (isOuterKey || isInRequired);
}

QByteArrayList TableRules(const TableDef& Table)
{
    QByteArrayList rules;
    for (const FieldDef& field : Table.Fields) {
        rules += FieldRules(field);
        if (IsRefusedByIndex(Table, field))
            rules += Rule(3058, field, Quoted(field.Name) + " IS NOT NULL");
    }
    return rules;
}

QByteArray KeyFields(const IndexDef& Index)
{
    QByteArrayList fields;
    for (const QString& field : Index.Fields)
        fields += Quoted(field) + (Index.Descending.contains(field) ? " DESC" : "");
    return '(' + fields.join(", ") + ')';
}

} // namespace

QByteArray Quoted(QStringView Name) { return '"' + Name.toUtf8().replace('"', "\"\"") + '"'; }

void RequireName(const QString& Name)
{
    // SQLite keeps names that begin like its own for itself.
    bool isSound = !Name.isEmpty() && Name.size() <= MaxNameSize && !Name.startsWith(u' ') && Name.isValidUtf16() &&
                   !Name.startsWith(u"sqlite_"_s, Qt::CaseInsensitive);
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
        for (QString& field : index.Descending)
            field = Table.FindField(field)->Name;
    }
    return Table;
}

bool HasInnerPrimary(const TableDef& Table)
{
    const FieldDef* counter = Table.Counter();
    const IndexDef* primary = Table.Primary();
    return primary && (!counter || (primary->Fields.size() == 1 && Holds(primary, *counter)));
}

QByteArray CreateTable(const TableDef& Table)
{
    QByteArrayList parts;
    for (const FieldDef& field : Table.Fields)
        parts += Column(Table, field);
    parts += TableRules(Table);
    if (HasInnerPrimary(Table) && !Table.Counter())
        parts += "CONSTRAINT " + Quoted(Table.Primary()->Name) + " PRIMARY KEY " + KeyFields(*Table.Primary());
    return "CREATE TABLE " + Quoted(Table.Name) + " (\n  " + parts.join(",\n  ") + "\n)";
}

QByteArray AddField(const QString& Table, const FieldDef& Field)
{
    return "ALTER TABLE " + Quoted(Table) + " ADD COLUMN " + Column({}, Field) + ' ' + FieldRules(Field).join(' ');
}

QByteArray CreateIndex(const QString& Table, const IndexDef& Index, const QString& FileName)
{
    QByteArrayList conditions;
    for (const QString& field : Index.Fields)
        conditions += Quoted(field) + " IS NOT NULL";
    const QByteArray kind = Index.Unique || Index.Primary ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    const QByteArray where = Index.IgnoreNull ? " WHERE " + conditions.join(" AND ") : QByteArray();
    return kind + Quoted(FileName) + " ON " + Quoted(Table) + ' ' + KeyFields(Index) + where;
}

} // namespace dao::mdlSchemaText
