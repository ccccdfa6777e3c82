// boardd/StoredArchive.cpp
// An LZH archive whose one member is stored as it is, for the past logs.

#include "boardd/StoredArchive.h"

#include <QtEndian>

#include <numeric>

namespace
{
/// Bits of x^16 + x^15 + x^2 + 1, lowest first.
constexpr quint16 Polynomial = 0xa001;
constexpr int FirstYear = 1980; // of DOS
constexpr char ArchiveBit = 0x20;
constexpr char Level = 0; // of the header

quint16 Checksum(const QByteArray& Bytes)
{
    quint16 sum = 0;
    for (const char byte : Bytes) {
        sum = quint16(sum ^ quint8(byte));
        for (int bit = 0; bit < 8; ++bit)
            sum = quint16((sum & 1) ? (sum >> 1) ^ Polynomial : sum >> 1);
    }
    return sum;
}

template<typename Number> QByteArray Little(Number Value)
{
    QByteArray bytes(sizeof(Value), Qt::Uninitialized);
    qToLittleEndian(Value, bytes.data());
    return bytes;
}

quint32 DosTime(const QDateTime& Time)
{
    const QDate date = Time.date();
    const QTime time = Time.time();
    const int day = (date.year() - FirstYear) << 9 | date.month() << 5 | date.day();
    return quint32(day) << 16 | quint32(time.hour() << 11 | time.minute() << 5 | time.second() / 2);
}
} // namespace

QByteArray mdlStoredArchive::Make(const QByteArray& Name, const QByteArray& Bytes, const QDateTime& Time)
{
    const QByteArray size = Little(quint32(Bytes.size()));
    QByteArray header = "-lh0-" + size + size + Little(DosTime(Time)) + ArchiveBit + Level + char(Name.size()) + Name +
                        Little(Checksum(Bytes));
    const int sum = std::accumulate(header.begin(), header.end(), 0);
    constexpr char end = 0;
    return char(header.size()) + (char(sum) + header) + Bytes + end;
}
