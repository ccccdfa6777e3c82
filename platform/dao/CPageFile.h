// platform/dao/CPageFile.h
// The pages of a database file as they stand on the disk, for reading what SQLite will no longer read.

#ifndef DAO_CPAGEFILE_H
#define DAO_CPAGEFILE_H

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QString>

namespace dao
{

/// Opens read-only and trusts nothing in the file. Pages count from 1. What was committed to the log beside the file
/// counts; the log's frames are checked by their sums.
class CPageFile
{
public:
    enum class Encoding { Utf8 = 1, Utf16Le = 2, Utf16Be = 3 };

    /// Throws Error: 3024 missing, 3051 not readable, 3040 a failing disk.
    explicit CPageFile(const QString& FileName);

    /// Empty when the page is outside of the file, cut off, or the disk fails on it.
    QByteArray Page(quint32 Number);
    quint32 PageCount() const { return m_pageCount; }
    int PageSize() const { return m_pageSize; }
    /// Bytes of a page that hold data; some are set aside at its end.
    int UsableSize() const { return m_pageSize - m_reserved; }
    Encoding TextEncoding() const { return m_encoding; }
    qint32 ApplicationId() const { return m_applicationId; }
    qint32 UserVersion() const { return m_userVersion; }
    /// First page of the list of free pages, 0 when there is none.
    quint32 FirstFreePage() const { return m_firstFree; }

    /// Numbers in pages have their high byte first.
    static quint32 Number32(QByteArrayView Bytes, qsizetype Offset);
    static quint16 Number16(QByteArrayView Bytes, qsizetype Offset);

private:
    void ReadHeader(const QByteArray& Header);

    QFile m_file;
    QFile m_log;
    QHash<quint32, qint64> m_inLog; ///< where in the log the newest committed version of a page is
    quint32 m_pageCount = 0;
    int m_pageSize = 4096;
    int m_reserved = 0;
    Encoding m_encoding = Encoding::Utf16Le;
    qint32 m_applicationId = 0;
    qint32 m_userVersion = 0;
    quint32 m_firstFree = 0;
};

} // namespace dao

#endif
