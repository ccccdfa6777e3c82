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

namespace {

const FieldInfo& TargetField(const TableRef& Target, const Assignment& Which)
{
    return Target.Base->Fields[size_t(Target.BaseFields[size_t(Which.Target->Field - Target.Columns.data())])];
}

}

Statement CWriter::Write(const Tree& Bound)
{
    Statement statement;
    statement.Type = Bound.Type;
    switch (Bound.Type) {
    case QueryType::Append: WriteInsert(Bound, statement); break;
    case QueryType::Update: WriteUpdate(Bound, statement); break;
    case QueryType::Delete: WriteDelete(Bound, statement); break;
    case QueryType::Crosstab: WriteCrosstab(*Bound.Source, statement); break;
    case QueryType::MakeTable: WriteMakeTable(Bound, statement); break;
    default: WriteRows(*Bound.Source, statement); break;
    }
    if (m_names.Target())
        statement.TargetTable = m_names.Target()->Name;
    statement.Constants = std::move(m_constants);
    statement.Bindings = std::move(m_bindings);
    statement.Parameters = m_names.Parameters();
    statement.Sources = m_names.Sources();
    statement.UsesQueries = m_names.UsesQueries();
    const bool isFixed = statement.Pivot && Bound.Source->Members.front()->Crossed->IsFixed;
    return isFixed ? Spread(statement, Bound.Source->Members.front()->Crossed->Values) : statement;
}

// The rows' own columns; the others come with Spread.
void CWriter::WriteCrosstab(const Query& Source, Statement& To)
{
    const Select& select = *Source.Members.front();
    for (const OutputColumn& output : select.Output)
        To.Columns.push_back(output.Info);
    To.Pivot = std::make_shared<const Crosstab>(CrosstabParts(select));
}

// The new table has the names of the columns, but that a name holds no point.
void CWriter::WriteMakeTable(const Tree& Bound, Statement& To)
{
    QByteArrayList names, values;
    To.Columns = Bound.Source->Columns;
    for (ResultColumn& column : To.Columns) {
        column.Name.replace(u'.', u'_');
        const QByteArray value = "c" + QByteArray::number(names.size());
        values.append(column.Type == FieldType::Boolean ? "ifnull(" + value + ",0)" : value);
        names.append(Quoted(column.Name));
    }
    To.TargetTable = Bound.Target;
    To.Sql = "INSERT INTO " + Quoted(Bound.Target) + '(' + names.join(',') + ") SELECT " + values.join(',') + " FROM ("
        + Derived(*Bound.Source, true) + ')';
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
    if (isOneTable && !Source.Distinct && !Source.IsGrouped && !Source.Crossed) {
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
    for (const auto& root : Bound.From)
        CollectTables(*root, tables);
    std::vector<const TableRef*> targets;
    for (const TableRef* table : tables) {
        const bool isTarget = std::any_of(Bound.Assignments.begin(), Bound.Assignments.end(), [&](const Assignment& assignment) {
            return Owns(*table, *assignment.Target->Field);
        });
        if (isTarget)
            targets.push_back(table);
    }
    if (targets.size() > 1)
        return WriteManyUpdates(Bound, targets, To);
    const TableRef& target = *targets.front();
    if (tables.size() > 1 || !target.Table)
        return WriteJoinedUpdate(Bound, target, To);
    QByteArrayList sets;
    for (const Assignment& assignment : Bound.Assignments) {
        const FieldInfo& field = TargetField(target, assignment);
        sets.append(Quoted(field.Name) + '=' + Stored(*assignment.Value, field));
    }
    To.Sql = "UPDATE " + Reference(target) + " SET " + sets.join(',') + Condition(Bound.Where);
}

// SQLite changes one table at a time: the join gives the rows and their new values.
void CWriter::WriteJoinedUpdate(const Tree& Bound, const TableRef& Target, Statement& To)
{
    QByteArrayList sets, values{RowIdOf(Target) + " AS r"};
    for (const Assignment& assignment : Bound.Assignments) {
        const FieldInfo& field = TargetField(Target, assignment);
        const QByteArray name = "v" + QByteArray::number(sets.size());
        values.append(Stored(*assignment.Value, field) + " AS " + name);
        sets.append(Quoted(field.Name) + "=s." + name);
    }
    To.Sql = "UPDATE " + Quoted(Target.Base->Name) + " AS u SET " + sets.join(',') + " FROM (SELECT " + values.join(',')
        + FromList(Bound.From) + Condition(Bound.Where) + ") AS s WHERE u." + RowIdOf(*Target.Base) + "=s.r";
}

// Fields of several tables: what they get is worked out before the first of them changes.
void CWriter::WriteManyUpdates(const Tree& Bound, const std::vector<const TableRef*>& Targets, Statement& To)
{
    static const QByteArray rows = "temp.\"u.rows\"";
    QByteArrayList values;
    std::vector<QByteArrayList> sets(Targets.size());
    for (size_t i = 0; i < Targets.size(); ++i)
        values.append(RowIdOf(*Targets[i]) + " AS r" + QByteArray::number(i));
    for (const Assignment& assignment : Bound.Assignments) {
        const auto target = std::find_if(Targets.begin(), Targets.end(), [&](const TableRef* table) { return Owns(*table, *assignment.Target->Field); });
        const FieldInfo& field = TargetField(**target, assignment);
        const QByteArray name = "v" + QByteArray::number(values.size());
        values.append(Stored(*assignment.Value, field) + " AS " + name);
        sets[size_t(target - Targets.begin())].append(Quoted(field.Name) + "=s." + name);
    }
    To.Sql = "CREATE TABLE " + rows + " AS SELECT " + values.join(',') + FromList(Bound.From) + Condition(Bound.Where);
    for (size_t i = 0; i < Targets.size(); ++i)
        To.Steps.push_back("UPDATE " + Quoted(Targets[i]->Base->Name) + " AS u SET " + sets[i].join(',') + " FROM " + rows
                           + " AS s WHERE u." + RowIdOf(*Targets[i]->Base) + "=s.r" + QByteArray::number(i));
    To.Counter = "SELECT count(*) FROM " + rows;
    To.Steps.push_back("DROP TABLE " + rows);
}

void CWriter::WriteDelete(const Tree& Bound, Statement& To)
{
    std::vector<TableRef*> tables;
    for (const auto& root : Bound.From)
        CollectTables(*root, tables);
    if (tables.size() == 1 && tables.front()->Table) {
        To.Sql = "DELETE FROM " + Reference(*tables.front()) + Condition(Bound.Where);
        return;
    }
    const auto target = std::find_if(tables.begin(), tables.end(), [&](const TableRef* table) {
        return tables.size() == 1 || SameName(table->VisibleName(), Bound.Target);
    });
    const TableInfo& base = *(*target)->Base;
    To.Sql = "DELETE FROM " + Quoted(base.Name) + " WHERE " + RowIdOf(base) + " IN (SELECT " + RowIdOf(**target) + FromList(Bound.From) + Condition(Bound.Where) + ')';
}

}
