// platform/dao/MakeTable.cpp
// Storing the rows of a query as a new table.

#include "platform/dao/MakeTable.h"

#include <sqlite3.h>

namespace dao::mdlMakeTable
{

namespace
{

constexpr int TooLong = 3163;
constexpr int TextSize = 255;

bool IsWorkedOut(const ResultColumn& Column)
{
    return Column.SourceField.isEmpty() && (Column.Type == FieldType::Null || Column.Type == FieldType::Text);
}

TableDef NewTable(const jetsql::Statement& Statement, FieldType WorkedOutText)
{
    TableDef table;
    table.Name = Statement.TargetTable;
    for (const ResultColumn& column : Statement.Columns) {
        FieldDef field;
        field.Name = column.Name;
        field.Type = IsWorkedOut(column) ? WorkedOutText : column.Type;
        field.Size = field.Type != FieldType::Text ? 0 : IsWorkedOut(column) ? TextSize : column.Size;
        field.AllowZeroLength = jetsql::IsText(field.Type);
        table.Fields.push_back(std::move(field));
    }
    return table;
}

int MakeAndFill(CSession& Session, const CSession::Filled& Action, const TableDef& Table)
{
    const std::vector<Value> values = CSession::BoundValues(Action, true);
    CConnection& connection = Session.Connection();
    int count = 0;
    try {
        connection.Atomically([&] {
            Session.SchemaToChange().AppendTable(Table);
            CRun run(connection, Action.Statement.Sql);
            CSession::Bind(run, values);
            run.Finish();
            count = sqlite3_changes(connection.Handle());
        });
    } catch (const Error&) {
        Session.SchemaToChange().Load();
        throw;
    }
    return count;
}

} // namespace

int Run(CSession& Session, const CSession::Filled& Action)
{
    Session.Schema().RequireFreeName(Action.Statement.TargetTable);
    try {
        return MakeAndFill(Session, Action, NewTable(Action.Statement, FieldType::Text));
    } catch (const Error& error) {
        // Only a text that was worked out can be longer than its field.
        if (error.Number != TooLong)
            throw;
    }
    return MakeAndFill(Session, Action, NewTable(Action.Statement, FieldType::Memo));
}

} // namespace dao::mdlMakeTable
