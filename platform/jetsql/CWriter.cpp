// platform/jetsql/CWriter.cpp
// From a bound syntax tree to the text of a SQLite statement: statements.

#include "platform/jetsql/CWriter.h"

#include "platform/jetsql/TypeRules.h"

#include <algorithm>

namespace jetsql {

QByteArray RowIdOf(const TableInfo& Table)
{
    for (const char* name : {"rowid", "_rowid_", "oid"}) {
        const bool isTaken = std::any_of(Table.Fields.begin(), Table.Fields.end(), [name](const FieldInfo& field) {
            return field.Name.compare(QLatin1StringView(name), Qt::CaseInsensitive) == 0;
        });
        if (!isTaken)
            return name;
    }
    return "rowid";
}

Statement CWriter::Write(const Tree& Bound)
{
    Statement statement;
    statement.Type = Bound.Type;
    switch (Bound.Type) {
    case QueryType::Append: WriteInsert(Bound, statement); break;
    case QueryType::Update: WriteUpdate(Bound, statement); break;
    case QueryType::Delete: WriteDelete(Bound, statement); break;
    default: WriteRows(*Bound.Source, statement); break;
    }
    if (m_names.Target())
        statement.TargetTable = m_names.Target()->Name;
    statement.Bindings = std::move(m_bindings);
    statement.Parameters = m_names.Parameters();
    statement.Sources = m_names.Sources();
    statement.UsesQueries = m_names.UsesQueries();
    return statement;
}

void CWriter::WriteRows(const Query& Source, Statement& To)
{
    To.Columns = Source.Columns;
    if (!Source.IsUnion())
        return WriteTopSelect(*Source.Members.front(), To);
    To.Sql = DerivedUnion(Source, true);
}

// The rows that the cursor reads: columns, the keys that tell which rows tie with the last one, the row number.
void CWriter::WriteTopSelect(const Select& Source, Statement& To)
{
    QByteArrayList columns;
    for (const OutputColumn& output : Source.Output)
        columns.append(Output(output, output.Info.Type, Source.Distinct));
    const std::vector<SortKey> keys = OrderKeys(Source);
    To.Top = Source.Top;
    To.TopPercent = Source.TopPercent;
    if (Source.Top >= 0) {
        for (const SortKey& key : keys)
            columns.append(key.Sql);
        To.HiddenKeys = int(keys.size());
    }
    const bool isOneTable = Source.From.size() == 1 && Source.From.front()->Table;
    if (isOneTable && !Source.Distinct && !Source.IsGrouped) {
        const TableRef& table = *Source.From.front();
        To.EditableTable = table.Table->Name;
        columns.append(table.SqlAlias + '.' + RowIdOf(*table.Table));
    }
    To.Sql = (Source.Distinct ? "SELECT DISTINCT " : "SELECT ") + columns.join(',') + Tail(Source)
        + OrderBy(keys.empty() ? DefaultKeys(Source) : keys);
    if (Source.Top >= 0 && keys.empty() && !Source.TopPercent)
        To.Sql += " LIMIT " + QByteArray::number(Source.Top);
}

QByteArray CWriter::Stored(const Expr& Value, const FieldInfo& Field)
{
    const bool isBound = Value.Literal >= 0 && NeedsConversion(Value.Type, Field.Type);
    const Piece piece = isBound ? Piece{Bound(Binding::Literal, Value.Literal, Field.Type)} : As(Value, Field.Type);
    // A Boolean field knows no Null; a constant cannot be one.
    if (Field.Type == FieldType::Boolean && !IsLiteral(Value))
        return "ifnull(" + piece.Sql + ",0)";
    return piece.Sql;
}

// The fields of an INSERT in parentheses. A Boolean field that is left out is False.
QByteArray CWriter::InsertColumns(QByteArrayList& Defaults) const
{
    const auto& fields = m_names.Target()->Fields;
    QByteArrayList names;
    for (const int field : m_names.TargetFields())
        names.append(Quoted(fields[size_t(field)].Name));
    for (size_t i = 0; i < fields.size(); ++i) {
        const auto& given = m_names.TargetFields();
        if (fields[i].Type == FieldType::Boolean && std::find(given.begin(), given.end(), int(i)) == given.end()) {
            names.append(Quoted(fields[i].Name));
            Defaults.append("0");
        }
    }
    return '(' + names.join(',') + ')';
}

void CWriter::WriteInsert(const Tree& Bound, Statement& To)
{
    QByteArrayList defaults, values;
    const TableInfo& table = *m_names.Target();
    const auto& targets = m_names.TargetFields();
    To.Sql = "INSERT INTO " + Quoted(table.Name) + InsertColumns(defaults);
    const auto fieldAt = [&](size_t i) -> const FieldInfo& { return table.Fields[size_t(targets[i])]; };
    for (size_t i = 0; i < Bound.Values.size(); ++i)
        values.append(Stored(*Bound.Values[i], fieldAt(i)));
    if (!Bound.Source) {
        To.Sql += " VALUES(" + (values + defaults).join(',') + ')';
        return;
    }
    for (size_t i = 0; i < Bound.Source->Columns.size(); ++i) {
        const FieldType from = Bound.Source->Columns[i].Type;
        const FieldType wanted = fieldAt(i).Type;
        QByteArray value = "c" + QByteArray::number(i);
        if (NeedsConversion(from, wanted))
            value = Converted(value, from, wanted, "store").Sql;
        values.append(wanted == FieldType::Boolean ? "ifnull(" + value + ",0)" : value);
    }
    To.Sql += " SELECT " + (values + defaults).join(',') + " FROM (" + Derived(*Bound.Source, true) + ')';
}

QByteArray CWriter::Condition(const ExprPtr& Where)
{
    return Where ? " WHERE " + Truth(*Where).Sql : QByteArray();
}

void CWriter::WriteUpdate(const Tree& Bound, Statement& To)
{
    std::vector<TableRef*> tables;
    CollectTables(*Bound.From.front(), tables);
    const auto target = std::find_if(tables.begin(), tables.end(), [&](const TableRef* table) {
        return table->Columns.data() <= Bound.Assignments.front().Target->Field
            && Bound.Assignments.front().Target->Field < table->Columns.data() + table->Columns.size();
    });
    if (tables.size() > 1)
        return WriteJoinedUpdate(Bound, **target, To);
    QByteArrayList sets;
    for (const Assignment& assignment : Bound.Assignments) {
        const Column& column = *assignment.Target->Field;
        const FieldInfo& field = (*target)->Table->Fields[size_t(&column - (*target)->Columns.data())];
        sets.append(Quoted(field.Name) + '=' + Stored(*assignment.Value, field));
    }
    To.Sql = "UPDATE " + Reference(**target) + " SET " + sets.join(',') + Condition(Bound.Where);
}

// SQLite changes one table at a time: the join gives the rows and their new values.
void CWriter::WriteJoinedUpdate(const Tree& Bound, const TableRef& Target, Statement& To)
{
    const QByteArray rowId = RowIdOf(*Target.Table);
    QByteArrayList sets, values{Target.SqlAlias + '.' + rowId + " AS r"};
    for (const Assignment& assignment : Bound.Assignments) {
        const Column& column = *assignment.Target->Field;
        const FieldInfo& field = Target.Table->Fields[size_t(&column - Target.Columns.data())];
        const QByteArray name = "v" + QByteArray::number(sets.size());
        values.append(Stored(*assignment.Value, field) + " AS " + name);
        sets.append(Quoted(field.Name) + "=s." + name);
    }
    To.Sql = "UPDATE " + Quoted(Target.Table->Name) + " AS u SET " + sets.join(',') + " FROM (SELECT " + values.join(',')
        + FromList(Bound.From) + Condition(Bound.Where) + ") AS s WHERE u." + rowId + "=s.r";
}

void CWriter::WriteDelete(const Tree& Bound, Statement& To)
{
    std::vector<TableRef*> tables;
    for (const auto& root : Bound.From)
        CollectTables(*root, tables);
    if (tables.size() == 1) {
        To.Sql = "DELETE FROM " + Reference(*tables.front()) + Condition(Bound.Where);
        return;
    }
    const auto target = std::find_if(tables.begin(), tables.end(), [&](const TableRef* table) {
        return table->VisibleName().compare(Bound.Target, Qt::CaseInsensitive) == 0;
    });
    const QByteArray rowId = RowIdOf(*(*target)->Table);
    To.Sql = "DELETE FROM " + Quoted((*target)->Table->Name) + " WHERE " + rowId + " IN (SELECT " + (*target)->SqlAlias + '.'
        + rowId + FromList(Bound.From) + Condition(Bound.Where) + ')';
}

}
