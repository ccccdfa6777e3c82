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
{
    for (const ResultColumn& field : Fields) {
        m_types.push_back(field.Type);
        m_names.push_back(field.SourceField.isEmpty() ? QByteArray() : mdlSchemaText::Quoted(field.SourceField));
        m_read +=
            (m_read.isEmpty() ? "SELECT " : ", ") + (m_names.back().isEmpty() ? QByteArray("NULL") : m_names.back());
    }
    m_read += " FROM " + m_table + " WHERE _rowid_ = ?1";
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
        sql = " SET _rowid_ = _rowid_";
    CRun run(Connection(), "UPDATE " + m_table + sql + " WHERE _rowid_ = ?1");
    run.BindNumber(1, RowId);
    for (size_t field = 0; field < Changes.size(); ++field) {
        if (Changes[field])
            run.Bind(int(field) + 2, *Changes[field]);
    }
    run.Finish();
    return sqlite3_changes(Connection().Handle()) > 0;
}

qint64 CTableWriter::Add(const std::vector<std::optional<Value>>& Row)
{
    Connection().RequireWritable();
    QByteArray names;
    QByteArray places;
    for (size_t field = 0; field < Row.size(); ++field) {
        if (!Row[field])
            continue;
        names += (names.isEmpty() ? "" : ", ") + m_names[field];
        places += (places.isEmpty() ? "?" : ", ?") + QByteArray::number(int(field) + 1);
    }
    CRun run(Connection(), "INSERT INTO " + m_table +
                               (names.isEmpty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + places + ")"));
    for (size_t field = 0; field < Row.size(); ++field) {
        if (Row[field])
            run.Bind(int(field) + 1, *Row[field]);
    }
    run.Finish();
    return sqlite3_last_insert_rowid(Connection().Handle());
}

bool CTableWriter::Remove(qint64 RowId)
{
    Connection().RequireWritable();
    CRun run(Connection(), "DELETE FROM " + m_table + " WHERE _rowid_ = ?1");
    run.BindNumber(1, RowId);
    run.Finish();
    return sqlite3_changes(Connection().Handle()) > 0;
}

} // namespace dao
