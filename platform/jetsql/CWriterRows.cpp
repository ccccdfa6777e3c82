// platform/jetsql/CWriterRows.cpp
// The rows that an action statement changes, as a select of their own.

#include "platform/jetsql/CWriter.h"

#include <algorithm>

namespace jetsql {

namespace {

ResultColumn Unnamed(FieldType Type)
{
    ResultColumn column;
    column.Type = Type;
    return column;
}

}

std::shared_ptr<const Statement> CWriter::WriteActionRows(const Tree& Bound, std::vector<QString>& Fields)
{
    Statement rows;
    if (Bound.Type == QueryType::Append)
        WriteAppendRows(Bound, rows, Fields);
    else if (Bound.Type == QueryType::Update || Bound.Type == QueryType::Delete)
        WriteChangedRows(Bound, rows, Fields);
    if (rows.Sql.isEmpty())
        return nullptr;
    rows.Bindings = std::move(m_bindings);
    rows.Constants = std::move(m_constants);
    rows.Parameters = m_names.Parameters();
    return std::make_shared<const Statement>(std::move(rows));
}

void CWriter::WriteAppendRows(const Tree& Bound, Statement& To, std::vector<QString>& Fields)
{
    for (const int field : m_names.TargetFields())
        Fields.push_back(m_names.Target()->Fields[size_t(field)].Name);
    if (Bound.Source) {
        To.Columns = Bound.Source->Columns;
        To.Sql = Derived(*Bound.Source, true);
        return;
    }
    QByteArrayList values;
    for (const ExprPtr& value : Bound.Values) {
        values.append(Value(*value).Sql);
        To.Columns.push_back(Unnamed(value->Type));
    }
    To.Sql = "SELECT " + values.join(',');
}

const TableRef& CWriter::ChangedTable(const Tree& Bound, const std::vector<TableRef*>& Tables)
{
    const auto target = std::find_if(Tables.begin(), Tables.end(), [&](const TableRef* table) {
        if (Bound.Type == QueryType::Update)
            return Owns(*table, *Bound.Assignments.front().Target->Field);
        return Tables.size() == 1 || SameName(table->VisibleName(), Bound.Target);
    });
    return **target;
}

// The row's number comes first, then what its fields get.
void CWriter::WriteChangedRows(const Tree& Bound, Statement& To, std::vector<QString>& Fields)
{
    std::vector<TableRef*> tables;
    for (const auto& root : Bound.From)
        CollectTables(*root, tables);
    const TableRef& target = ChangedTable(Bound, tables);
    QByteArrayList values{RowIdOf(target)};
    To.Columns.push_back(Unnamed(FieldType::Double));
    for (const Assignment& assignment : Bound.Assignments) {
        if (!Owns(target, *assignment.Target->Field))
            return;   // fields of several tables
        const size_t column = size_t(assignment.Target->Field - target.Columns.data());
        Fields.push_back(target.Base->Fields[size_t(target.BaseFields[column])].Name);
        values.append(Value(*assignment.Value).Sql);
        To.Columns.push_back(Unnamed(assignment.Value->Type));
    }
    // A join can find a row several times.
    const bool isOnce = Bound.Assignments.empty() && tables.size() > 1;
    To.Sql = (isOnce ? "SELECT DISTINCT " : "SELECT ") + values.join(',') + FromList(Bound.From) + Condition(Bound.Where);
}

}
