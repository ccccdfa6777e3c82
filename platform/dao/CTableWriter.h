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
    /// The word for the table's row number that is none of its fields.
    const QByteArray& RowId() const { return m_rowId; }

    /// Reads a row into Row, which has a place for each field; false when it is gone.
    bool Read(qint64 RowId, std::vector<Value>& Row) const;
    /// Stores the fields that have a value; false when the row is gone.
    bool Change(qint64 RowId, const std::vector<std::optional<Value>>& Changes);
    /// The place of the field that counts by itself, -1 where there is none.
    int Counter() const { return m_counter; }
    /// The number that the next row gets. Nobody is kept from taking it first: Add then gives the one after.
    Value NextNumber();
    /// Adds a row and returns its rowid.
    qint64 Add(const std::vector<std::optional<Value>>& Row);
    /// False when the row is gone already.
    bool Remove(qint64 RowId);

private:
    bool IsTaken(const Value& Number) const;
    void FindCounter(const QString& Table, const std::vector<ResultColumn>& Fields);

    std::shared_ptr<CSession> m_session;
    QByteArray m_table;
    QByteArray m_rowId;
    std::vector<FieldType> m_types;
    std::vector<QByteArray> m_names; ///< quoted; empty for a field that is none of the table's
    QByteArray m_read;
    QString m_counterTable;
    int m_counter = -1;
    Value m_nextNumber; ///< the one that was told last
};

} // namespace dao

#endif
