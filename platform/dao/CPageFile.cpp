// platform/dao/CPageFile.cpp
// Header, pages and log by the published file format of SQLite.

#include "platform/dao/CPageFile.h"

#include "platform/dao/CPageLog.h"
#include "platform/dao/Error.h"

#include <QFileInfo>
#include <QtEndian>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

constexpr int HeaderSize = 100;

/// Every header has these three bytes; a first page that was overwritten has them by chance only, and what else it says
/// would lead astray.
bool IsHeader(const QByteArray& Bytes)
{
    return Bytes.size() == HeaderSize && (Bytes.startsWith("SQLite format 3") || Bytes.mid(21, 3) == "\x40\x20\x20");
}

bool IsPageSize(int Size) { return Size >= 512 && Size <= 65536 && (Size & (Size - 1)) == 0; }

} // namespace

quint32 CPageFile::Number32(QByteArrayView Bytes, qsizetype Offset)
{
    return qFromBigEndian<quint32>(Bytes.data() + Offset);
}

quint16 CPageFile::Number16(QByteArrayView Bytes, qsizetype Offset)
{
    return qFromBigEndian<quint16>(Bytes.data() + Offset);
}

CPageFile::CPageFile(const QString& FileName)
    : m_file(FileName)
    , m_log(FileName + u"-wal"_s)
{
    if (!QFileInfo::exists(FileName))
        throw jetsql::MakeError(3024, {FileName});
    if (!QFileInfo(FileName).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw jetsql::MakeError(3051, {FileName});
    const QByteArray header = m_file.read(HeaderSize);
    if (IsHeader(header))
        ReadHeader(header);
    m_pageCount = quint32(std::min<qint64>(m_file.size() / m_pageSize, 0xfffffffe));
    if (!m_log.open(QIODevice::ReadOnly))
        return;
    const CPageLog log(m_log, m_pageSize);
    m_inLog = log.Pages();
    if (log.PageCount() > 0)
        m_pageCount = log.PageCount();
}

/// What makes no sense keeps the value that files of our own have.
void CPageFile::ReadHeader(const QByteArray& Header)
{
    const int size = Number16(Header, 16) == 1 ? 65536 : Number16(Header, 16);
    if (IsPageSize(size))
        m_pageSize = size;
    const int reserved = quint8(Header[20]);
    if (m_pageSize - reserved >= 480)
        m_reserved = reserved;
    const quint32 encoding = Number32(Header, 56);
    if (encoding >= 1 && encoding <= 3)
        m_encoding = Encoding(encoding);
    m_firstFree = Number32(Header, 32);
    m_userVersion = qint32(Number32(Header, 60));
    m_applicationId = qint32(Number32(Header, 68));
}

QByteArray CPageFile::Page(quint32 Number)
{
    if (Number == 0 || Number > m_pageCount)
        return {};
    const auto inLog = m_inLog.constFind(Number);
    QFile& file = inLog == m_inLog.constEnd() ? m_file : m_log;
    const qint64 place = inLog == m_inLog.constEnd() ? qint64(Number - 1) * m_pageSize : *inLog;
    if (!file.seek(place))
        return {};
    QByteArray page = file.read(m_pageSize);
    return page.size() == m_pageSize ? page : QByteArray();
}

} // namespace dao
