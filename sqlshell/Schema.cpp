// sqlshell/Schema.cpp
// Writing definitions.

#include "sqlshell/Schema.h"

#include "platform/jetsql/Characters.h"
#include "platform/jetsql/Keyword.h"

#include <QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace sqlshell::mdlSchema
{

namespace
{

QString TypeWord(dao::FieldType Type)
{
    switch (Type) {
    case dao::FieldType::Boolean:
        return u"BOOLEAN"_s;
    case dao::FieldType::Byte:
        return u"BYTE"_s;
    case dao::FieldType::Integer:
        return u"SHORT"_s;
    case dao::FieldType::Currency:
        return u"CURRENCY"_s;
    case dao::FieldType::Single:
        return u"SINGLE"_s;
    case dao::FieldType::Double:
        return u"DOUBLE"_s;
    case dao::FieldType::Date:
        return u"DATETIME"_s;
    case dao::FieldType::Binary:
        return u"BINARY"_s;
    case dao::FieldType::Text:
        return u"TEXT"_s;
    case dao::FieldType::LongBinary:
        return u"LONGBINARY"_s;
    case dao::FieldType::Memo:
        return u"MEMO"_s;
    case dao::FieldType::Guid:
        return u"GUID"_s;
    default:
        return u"LONG"_s;
    }
}

QString FieldSql(const dao::FieldDef& Field)
{
    const QString size = Field.Size > 0 ? u"(%1)"_s.arg(Field.Size) : QString();
    const QString type = Field.AutoIncrement ? u"COUNTER"_s : TypeWord(Field.Type) + size;
    return Quoted(Field.Name) + u' ' + type + (Field.Required ? u" NOT NULL"_s : QString());
}

QString NameList(const QStringList& Names, const QStringList& Descending = {})
{
    QStringList names;
    for (const QString& name : Names)
        names.append(Quoted(name) + (Descending.contains(name) ? u" DESC"_s : QString()));
    return u'(' + names.join(u", "_s) + u')';
}

/// The primary key belongs into the table's statement unless only an index can say its order.
bool IsConstraint(const dao::IndexDef& Index) { return Index.Primary && Index.Descending.isEmpty(); }

QString IndexSql(const dao::IndexDef& Index, const QString& TableName)
{
    const QString with = Index.Primary      ? u" WITH PRIMARY"_s
                         : Index.Required   ? u" WITH DISALLOW NULL"_s
                         : Index.IgnoreNull ? u" WITH IGNORE NULL"_s
                                            : QString();
    const QString kind = Index.Unique && !Index.Primary ? u"UNIQUE INDEX"_s : u"INDEX"_s;
    return u"CREATE %1 %2 ON %3 %4%5;\n"_s.arg(kind, Quoted(Index.Name), Quoted(TableName),
                                               NameList(Index.Fields, Index.Descending), with);
}

/// Foreign keys come last and on their own: the other table may stand further down.
QString ForeignKeySql(const dao::ConstraintDef& Key, const QString& TableName)
{
    return u"ALTER TABLE %1 ADD CONSTRAINT %2 FOREIGN KEY %3 REFERENCES %4 %5;\n"_s.arg(
        Quoted(TableName), Quoted(Key.Name), NameList(Key.Fields), Quoted(Key.ForeignTable),
        NameList(Key.ForeignFields));
}

} // namespace

QString Quoted(const QString& Name)
{
    const bool isPlain =
        !Name.isEmpty() && jetsql::ClassOf(Name[0].unicode()) == jetsql::CharClass::Letter &&
        std::all_of(Name.begin(), Name.end(), [](QChar unit) { return jetsql::IsNameUnit(unit.unicode()); });
    return isPlain && jetsql::KeywordOf(Name) == jetsql::Keyword::None ? Name : u'[' + Name + u']';
}

QString Sql(const dao::TableDef& Table)
{
    QStringList lines;
    std::transform(Table.Fields.begin(), Table.Fields.end(), std::back_inserter(lines), FieldSql);
    QString indexes;
    for (const dao::IndexDef& index : Table.Indexes) {
        if (IsConstraint(index))
            lines.append(u"CONSTRAINT %1 PRIMARY KEY %2"_s.arg(Quoted(index.Name), NameList(index.Fields)));
        else
            indexes += IndexSql(index, Table.Name);
    }
    return u"CREATE TABLE %1 (\n  "_s.arg(Quoted(Table.Name)) + lines.join(u",\n  "_s) + u"\n);\n"_s + indexes;
}

QString ForeignKeys(const dao::TableDef& Table)
{
    QString sql;
    for (const dao::ConstraintDef& constraint : Table.Constraints) {
        if (constraint.What == dao::ConstraintDef::Kind::Foreign)
            sql += ForeignKeySql(constraint, Table.Name);
    }
    return sql;
}

QJsonObject Json(const dao::TableDef& Table)
{
    QJsonArray fields;
    for (const dao::FieldDef& field : Table.Fields) {
        fields.append(QJsonObject{{u"name"_s, field.Name},
                                  {u"type"_s, TypeWord(field.Type)},
                                  {u"size"_s, field.Size},
                                  {u"required"_s, field.Required},
                                  {u"counter"_s, field.AutoIncrement},
                                  {u"zeroLength"_s, field.AllowZeroLength},
                                  {u"description"_s, field.Description}});
    }
    QJsonArray indexes;
    for (const dao::IndexDef& index : Table.Indexes) {
        indexes.append(QJsonObject{{u"name"_s, index.Name},
                                   {u"fields"_s, QJsonArray::fromStringList(index.Fields)},
                                   {u"primary"_s, index.Primary},
                                   {u"unique"_s, index.Primary || index.Unique}});
    }
    return {{u"table"_s, Table.Name}, {u"fields"_s, fields}, {u"indexes"_s, indexes}};
}

} // namespace sqlshell::mdlSchema
