// platform/dao/CPageLog.h
// The log of a database file: which pages have been committed to it.

#ifndef DAO_CPAGELOG_H
#define DAO_CPAGELOG_H

#include <QByteArray>
#include <QHash>
#include <QIODevice>

namespace dao
{

/// Reads a write-ahead log up to the first frame that is not sound. What comes after the last commit does not count.
class CPageLog
{
public:
    /// A log of pages of another size, or no log at all, counts as empty.
    CPageLog(QIODevice& Log, int PageSize);

    /// Place in the log, in bytes, of the newest committed version of each page.
    const QHash<quint32, qint64>& Pages() const { return m_pages; }
    /// Pages of the database after the last commit; 0 when the log holds none.
    quint32 PageCount() const { return m_pageCount; }

private:
    bool ReadHeader(const QByteArray& Header, int PageSize);
    void AddSum(QByteArrayView Bytes);
    bool TakeFrame(QIODevice& Log, int PageSize);

    QHash<quint32, qint64> m_pages;
    QHash<quint32, qint64> m_uncommitted;
    quint32 m_pageCount = 0;
    QByteArray m_salt;
    bool m_isBigEndian = false; ///< how the sums read the bytes
    quint32 m_sum[2] = {0, 0};
};

} // namespace dao

#endif
