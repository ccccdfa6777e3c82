// platform/dao/CDynaset.cpp
// Rowids first, rows one by one.

#include "platform/dao/CDynaset.h"

namespace dao
{

CDynaset::CDynaset(std::shared_ptr<CSession> Session, const CSession::Filled& Query)
    : Recordset(RecordsetType::Dynaset, Query.Statement.Columns)
    , m_writer(std::move(Session), Query.Statement.EditableTable, Query.Statement.Columns)
    , m_row(Columns().size())
{
    for (int column = 0; column < FieldCount(); ++column) {
        if (Field(column).SourceField.isEmpty())
            m_computed.push_back(column);
    }
    ReadRowIds(Query);
    Position().Open(RowTotal());
}

void CDynaset::ReadRowIds(const CSession::Filled& Query)
{
    // Only what is needed is taken out of the query's rows, so that SQLite need not fetch the texts of all of them.
    const int keyCount = Query.Statement.HiddenKeys;
    const int width = FieldCount() + keyCount + 1;
    QByteArray names;
    for (int column = 0; column < width; ++column)
        names += (column == 0 ? "c" : ", c") + QByteArray::number(column);
    QByteArray wanted = "c" + QByteArray::number(width - 1);
    for (int key = 0; key < keyCount; ++key)
        wanted += ", c" + QByteArray::number(FieldCount() + key);
    for (const int column : m_computed)
        wanted += ", c" + QByteArray::number(column);

    CTopLimit limit = m_writer.Session().Limit(Query, 1);
    const std::vector<Value> values = CSession::BoundValues(Query, true);
    CRun run(m_writer.Connection(),
             "WITH q(" + names + ") AS (" + Query.Statement.Sql + ") SELECT " + wanted + " FROM q");
    CSession::Bind(run, values);
    while (run.Step() && limit.Takes(run)) {
        m_rowIds.Append(run.Number(0));
        if (m_computed.empty())
            continue;
        std::vector<Value> computed;
        for (const int column : m_computed)
            computed.push_back(run.Column(1 + keyCount + int(computed.size()), Field(column).Type));
        m_computedValues.Append(std::move(computed));
    }
}

const std::vector<Value>& CDynaset::Row() const
{
    const qsizetype row = Position().Row();
    if (m_isRead)
        return m_row;
    if (!m_writer.Read(m_rowIds.At(row), m_row))
        throw jetsql::MakeError(3167);
    for (size_t place = 0; place < m_computed.size(); ++place)
        m_row[size_t(m_computed[place])] = m_computedValues.At(row)[place];
    m_isRead = true;
    return m_row;
}

void CDynaset::RequireEditable() const
{
    if (m_writer.Connection().IsReadOnly())
        throw jetsql::MakeError(3027);
}

void CDynaset::StoreChanges(const EditBuffer& Changes)
{
    const qint64 rowId = m_rowIds.At(Position().Row());
    if (!m_writer.Change(rowId, Changes))
        throw jetsql::MakeError(3167);
    m_isRead = false;
}

void CDynaset::StoreNew(const EditBuffer& Fields)
{
    m_rowIds.Append(m_writer.Add(Fields));
    if (!m_computed.empty())
        m_computedValues.Append(std::vector<Value>(m_computed.size()));
    Position().RowAdded();
}

void CDynaset::RemoveCurrent()
{
    const qsizetype row = Position().Row();
    if (!m_writer.Remove(m_rowIds.At(row)))
        throw jetsql::MakeError(3167);
    m_rowIds.Remove(row);
    if (!m_computed.empty())
        m_computedValues.Remove(row);
    Position().RowDeleted();
}

void CDynaset::Release()
{
    m_rowIds.Clear();
    m_computedValues.Clear();
    m_row.clear();
}

} // namespace dao
