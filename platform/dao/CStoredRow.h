// platform/dao/CStoredRow.h
// One row as a page holds it, taken apart without SQLite.

#ifndef DAO_CSTOREDROW_H
#define DAO_CSTOREDROW_H

#include <QByteArray>

#include <optional>
#include <vector>

namespace dao
{

/// The values of one row. Its bytes may be cut off where pages that hold the rest are gone.
class CStoredRow
{
public:
    enum class Kind { Null, Integer, Real, Text, Blob };

    struct StoredValue
    {
        Kind Type = Kind::Null;
        qint64 Integer = 0;
        double Real = 0;
        QByteArrayView Bytes; ///< of a text or blob, in the file's encoding; into the row's own bytes
    };

    /// Payload is the row as far as it could be read, Size what it should have. Nothing when that is no row.
    /// Values that lie beyond the end are Null, a text that begins before it is cut.
    static std::optional<CStoredRow> Read(qint64 RowId, const QByteArray& Payload, qint64 Size);

    qint64 RowId() const { return m_rowId; }
    const std::vector<StoredValue>& Values() const { return m_values; }
    bool IsCut() const { return m_isCut; }

    /// Reads a number of one to nine bytes, seven bits each, and moves Offset behind it; nothing when it does not end.
    static std::optional<quint64> ReadVarint(QByteArrayView Bytes, qsizetype& Offset);

private:
    bool ReadTypes(qint64 HeaderEnd, qint64 Size);
    StoredValue ReadValue(quint64 Type, qint64 Offset) const;

    qint64 m_rowId = 0;
    QByteArray m_payload;
    std::vector<StoredValue> m_values;
    bool m_isCut = false;
};

} // namespace dao

#endif
