// platform/dao/CRowByRow.cpp
// Reading the rows, then adding, changing or removing each.

#include "platform/dao/CRowByRow.h"

#include <algorithm>
#include <array>

namespace dao
{

namespace
{

std::vector<ResultColumn> FieldsOf(CSession& Session, const jetsql::Statement& Action)
{
    std::vector<ResultColumn> fields;
    const TableDef* table = Session.Schema().FindTableDef(Action.TargetTable);
    for (const QString& name : Action.TargetFields) {
        if (const FieldDef* field = table ? table->FindField(name) : nullptr)
            fields.push_back({field->Name, field->Type, field->Size, table->Name, field->Name});
    }
    return fields;
}

/// The first Size units, or one less where that would halve a letter of two.
QString Cut(const QString& Text, int Size) { return Text.left(Text[Size - 1].isHighSurrogate() ? Size - 1 : Size); }

/// Duplicates, Null, sizes, ranges, relations: rules over one row.
bool IsRowsFault(int Number)
{
    constexpr std::array numbers = {6, 3022, 3058, 3163, 3200, 3201, 3314, 3315, 3317, 3349, 3421};
    return std::find(numbers.begin(), numbers.end(), Number) != numbers.end();
}

} // namespace

CRowByRow::CRowByRow(std::shared_ptr<CSession> Session, const CSession::Filled& Action)
    : m_session(std::move(Session))
    , m_action(Action)
    , m_fields(FieldsOf(*m_session, Action.Statement))
    , m_writer(m_session, Action.Statement.TargetTable, m_fields)
{}

int CRowByRow::Run()
{
    const jetsql::Statement& wanted = *m_action.Statement.Rows;
    CRowStore rows;
    {
        const std::vector<Value> values = CSession::BoundValues({wanted, m_action.Shape, m_action.Parameters}, false);
        CRun run(m_session->Connection(), wanted.Sql);
        CSession::Bind(run, values);
        rows = CRowStore(run, wanted.Columns, CTopLimit(-1, 0, 0));
    }
    int count = 0;
    m_session->Connection().Atomically([&] {
        for (qsizetype row = 0; row < rows.Count(); ++row) {
            m_session->Connection().CheckProgress();
            count += Take(row, rows) ? 1 : 0;
        }
    });
    return count;
}

bool CRowByRow::Take(qsizetype Row, const CRowStore& Rows)
{
    try {
        if (m_action.Statement.Type == QueryType::Append)
            return m_writer.Add(ValuesOf(Row, Rows)) != 0;
        const qint64 rowId = qint64(Rows.Column(0).Double(Row));
        if (m_action.Statement.Type == QueryType::Delete)
            return m_writer.Remove(rowId);
        return m_writer.Change(rowId, ValuesOf(Row, Rows));
    } catch (const Error& refused) {
        if (!IsRowsFault(refused.Number))
            throw;
        return false;
    }
}

CRowByRow::NewValues CRowByRow::ValuesOf(qsizetype Row, const CRowStore& Rows) const
{
    NewValues values;
    int column = m_action.Statement.Type == QueryType::Append ? 0 : 1;
    for (const ResultColumn& field : m_fields)
        values.push_back(Fitting(Rows.Column(column++).At(Row), field));
    return values;
}

Value CRowByRow::Fitting(const Value& Given, const ResultColumn& Field) const
{
    Value value;
    try {
        value = Given.ToType(Field.Type);
    } catch (const Error&) {
        // Null, and the row is kept.
    }
    if (value.IsNull() && Field.Type == FieldType::Boolean)
        return Value::FromBoolean(false);
    const bool isCut = m_action.Statement.Type == QueryType::Append && Field.Type == FieldType::Text && Field.Size > 0;
    return isCut && value.TextRef().size() > Field.Size ? Value::FromText(Cut(value.TextRef(), Field.Size)) : value;
}

} // namespace dao
