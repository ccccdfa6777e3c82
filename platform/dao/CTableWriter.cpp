// platform/dao/CTableWriter.cpp
// One SELECT, UPDATE, INSERT or DELETE of a single row; each text is prepared once.

#include "platform/dao/CTableWriter.h"

#include "platform/dao/SchemaText.h"

#include <sqlite3.h>

namespace dao
{

CTableWriter::CTableWriter(std::shared_ptr<CSession> Session, const QString& Table, std::vector<ResultColumn> Fields)
    : m_session(std::move(Session))
    , m_table(mdlSchemaText::Quoted(Table))
    , m_rowId(m_session->Schema().RowIdOf(Table))
{
    for (const ResultColumn& field : Fields) {
        m_types.push_back(field.Type);
        m_names.push_back(field.SourceField.isEmpty() ? QByteArray() : mdlSchemaText::Quoted(field.SourceField));
        m_read +=
            (m_read.isEmpty() ? "SELECT " : ", ") + (m_names.back().isEmpty() ? QByteArray("NULL") : m_names.back());
    }
    m_read += " FROM " + m_table + " WHERE " + m_rowId + " = ?1";
    FindCounter(Table, Fields);
}

void CTableWriter::FindCounter(const QString& Table, const std::vector<ResultColumn>& Fields)
{
    const TableDef* table = m_session->Schema().FindTableDef(Table);
    const FieldDef* counter = table ? table->Counter() : nullptr;
    if (!counter)
        return;
    m_counterTable = table->Name;
    for (size_t field = 0; field < Fields.size(); ++field) {
        if (Fields[field].SourceField == counter->Name)
            m_counter = int(field);
    }
}

Value CTableWriter::NextNumber()
{
    CRun run(Connection(), "SELECT max(ifnull((SELECT seq FROM sqlite_sequence WHERE name = ?1), 0), "
                           "ifnull((SELECT max(" +
                               m_rowId + ") FROM " + m_table + "), 0)) + 1");
    const Value name = Value::FromText(m_counterTable);
    run.Bind(1, name);
    run.Step();
    m_nextNumber = run.Column(0, FieldType::Long);
    return m_nextNumber;
}

bool CTableWriter::IsTaken(const Value& Number) const
{
    CRun run(Connection(), "SELECT 1 FROM " + m_table + " WHERE " + m_rowId + " = ?1");
    run.Bind(1, Number);
    return run.Step();
}

bool CTableWriter::Read(qint64 RowId, std::vector<Value>& Row) const
{
    CRun run(Connection(), m_read);
    run.BindNumber(1, RowId);
    if (!run.Step())
        return false;
    for (size_t field = 0; field < m_names.size(); ++field) {
        if (!m_names[field].isEmpty())
            Row[field] = run.Column(int(field), m_types[field]);
    }
    return true;
}

bool CTableWriter::Change(qint64 RowId, const std::vector<std::optional<Value>>& Changes)
{
    Connection().RequireWritable();
    QByteArray sql;
    for (size_t field = 0; field < Changes.size(); ++field) {
        if (Changes[field])
            sql += (sql.isEmpty() ? " SET " : ", ") + m_names[field] + " = ?" + QByteArray::number(int(field) + 2);
    }
    // An edit that assigned nothing is a change of nothing, but of a row that must still be there.
    if (sql.isEmpty())
        sql = " SET " + m_rowId + " = " + m_rowId;
    CRun run(Connection(), "UPDATE " + m_table + sql + " WHERE " + m_rowId + " = ?1");
    run.BindNumber(1, RowId);
    for (size_t field = 0; field < Changes.size(); ++field) {
        if (Changes[field])
            run.Bind(int(field) + 2, *Changes[field]);
    }
    run.Finish();
    return sqlite3_changes(Connection().Handle()) > 0;
}

qint64 CTableWriter::Add(const std::vector<std::optional<Value>>& Given)
{
    Connection().RequireWritable();
    std::vector<std::optional<Value>> row = Given;
    if (m_counter >= 0 && row[size_t(m_counter)] == m_nextNumber && IsTaken(m_nextNumber))
        row[size_t(m_counter)].reset();
    QByteArray names;
    QByteArray places;
    for (size_t field = 0; field < row.size(); ++field) {
        if (!row[field])
            continue;
        names += (names.isEmpty() ? "" : ", ") + m_names[field];
        places += (places.isEmpty() ? "?" : ", ?") + QByteArray::number(int(field) + 1);
    }
    CRun run(Connection(), "INSERT INTO " + m_table +
                               (names.isEmpty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + places + ")"));
    for (size_t field = 0; field < row.size(); ++field) {
        if (row[field])
            run.Bind(int(field) + 1, *row[field]);
    }
    run.Finish();
    return sqlite3_last_insert_rowid(Connection().Handle());
}

bool CTableWriter::Remove(qint64 RowId)
{
    Connection().RequireWritable();
    CRun run(Connection(), "DELETE FROM " + m_table + " WHERE " + m_rowId + " = ?1");
    run.BindNumber(1, RowId);
    run.Finish();
    return sqlite3_changes(Connection().Handle()) > 0;
}

} // namespace dao
