// platform/dao/CPageLog.cpp
// Frames and their running sums.

#include "platform/dao/CPageLog.h"

#include <QtEndian>

namespace dao
{

namespace
{

constexpr int HeaderSize = 32;
constexpr int FrameHeaderSize = 24;
constexpr quint32 Magic = 0x377f0682; // the last bit tells the byte order of the sums
constexpr quint32 FormatVersion = 3007000;

quint32 Number(QByteArrayView Bytes, qsizetype Offset) { return qFromBigEndian<quint32>(Bytes.data() + Offset); }

} // namespace

CPageLog::CPageLog(QIODevice& Log, int PageSize)
{
    if (!ReadHeader(Log.read(HeaderSize), PageSize))
        return;
    while (TakeFrame(Log, PageSize)) {
    }
}

bool CPageLog::ReadHeader(const QByteArray& Header, int PageSize)
{
    if (Header.size() != HeaderSize || (Number(Header, 0) & ~1U) != Magic || Number(Header, 4) != FormatVersion ||
        Number(Header, 8) != quint32(PageSize))
        return false;
    m_isBigEndian = (Number(Header, 0) & 1) != 0;
    m_salt = Header.mid(16, 8);
    AddSum(QByteArrayView(Header).first(24));
    return Number(Header, 24) == m_sum[0] && Number(Header, 28) == m_sum[1];
}

void CPageLog::AddSum(QByteArrayView Bytes)
{
    const auto word = [&](qsizetype Offset) {
        return m_isBigEndian ? qFromBigEndian<quint32>(Bytes.data() + Offset)
                             : qFromLittleEndian<quint32>(Bytes.data() + Offset);
    };
    for (qsizetype offset = 0; offset + 8 <= Bytes.size(); offset += 8) {
        m_sum[0] += word(offset) + m_sum[1];
        m_sum[1] += word(offset + 4) + m_sum[0];
    }
}

bool CPageLog::TakeFrame(QIODevice& Log, int PageSize)
{
    const QByteArray header = Log.read(FrameHeaderSize);
    const qint64 place = Log.pos();
    const QByteArray page = Log.read(PageSize);
    if (header.size() != FrameHeaderSize || page.size() != PageSize || header.mid(8, 8) != m_salt)
        return false;
    AddSum(QByteArrayView(header).first(8));
    AddSum(page);
    const quint32 number = Number(header, 0);
    if (number == 0 || Number(header, 16) != m_sum[0] || Number(header, 20) != m_sum[1])
        return false;
    m_uncommitted.insert(number, place);
    if (const quint32 pageCount = Number(header, 4); pageCount != 0) {
        m_pages.insert(m_uncommitted);
        m_uncommitted.clear();
        m_pageCount = pageCount;
    }
    return true;
}

} // namespace dao
