// platform/dao/CTableWriter.h
// Reading and writing single rows of one table by their rowid.

#ifndef DAO_CTABLEWRITER_H
#define DAO_CTABLEWRITER_H

#include "platform/dao/CSession.h"

#include <optional>
#include <vector>

namespace dao
{

/// The fields of one table that a recordset shows, by their place in the recordset. All members throw Error.
class CTableWriter
{
public:
    /// A field without a name is none of the table's and neither read nor written.
    CTableWriter(std::shared_ptr<CSession> Session, const QString& Table, std::vector<ResultColumn> Fields);

    CSession& Session() const { return *m_session; }
    CConnection& Connection() const { return m_session->Connection(); }

    /// Reads a row into Row, which has a place for each field; false when it is gone.
    bool Read(qint64 RowId, std::vector<Value>& Row) const;
    /// Stores the fields that have a value; false when the row is gone.
    bool Change(qint64 RowId, const std::vector<std::optional<Value>>& Changes);
    /// Adds a row and returns its rowid.
    qint64 Add(const std::vector<std::optional<Value>>& Row);
    /// False when the row is gone already.
    bool Remove(qint64 RowId);

private:
    std::shared_ptr<CSession> m_session;
    QByteArray m_table;
    std::vector<FieldType> m_types;
    std::vector<QByteArray> m_names; ///< quoted; empty for a field that is none of the table's
    QByteArray m_read;
};

} // namespace dao

#endif
