// platform/dao/CStoredRow.cpp
// SQLite's record format: a header with the types of the values, then the values.

#include "platform/dao/CStoredRow.h"

#include <QtEndian>

#include <bit>
#include <cmath>

namespace dao
{

namespace
{

/// Types 0 to 9 are numbers of a fixed size, from 12 on texts (odd) and blobs (even) with their size in the type.
constexpr quint64 FirstText = 12;

/// A row with more values is none of any program's.
constexpr size_t MaxValues = 32767;

std::optional<qint64> SizeOf(quint64 Type)
{
    constexpr qint64 Sizes[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
    if (Type >= FirstText)
        return qint64((Type - FirstText) / 2);
    return Type < std::size(Sizes) ? std::optional(Sizes[Type]) : std::nullopt;
}

qint64 Signed(QByteArrayView Bytes)
{
    quint64 value = Bytes[0] < 0 ? ~quint64(0) : 0;
    for (const char byte : Bytes)
        value = value << 8 | quint8(byte);
    return qint64(value);
}

} // namespace

std::optional<quint64> CStoredRow::ReadVarint(QByteArrayView Bytes, qsizetype& Offset)
{
    quint64 value = 0;
    for (int count = 1; count <= 9 && Offset < Bytes.size(); ++count) {
        const quint8 byte = quint8(Bytes[Offset++]);
        if (count == 9)
            return value << 8 | byte;
        value = value << 7 | (byte & 0x7f);
        if (byte < 0x80)
            return value;
    }
    return std::nullopt;
}

std::optional<CStoredRow> CStoredRow::Read(qint64 RowId, const QByteArray& Payload, qint64 Size)
{
    CStoredRow row;
    row.m_rowId = RowId;
    row.m_payload = Payload;
    qsizetype offset = 0;
    const auto headerSize = ReadVarint(row.m_payload, offset);
    if (!headerSize || *headerSize > quint64(Payload.size()) || *headerSize < quint64(offset))
        return std::nullopt;
    row.m_isCut = Payload.size() < Size;
    if (!row.ReadTypes(qint64(*headerSize), Size))
        return std::nullopt;
    return row;
}

bool CStoredRow::ReadTypes(qint64 HeaderEnd, qint64 Size)
{
    qsizetype offset = 0;
    ReadVarint(m_payload, offset);
    qint64 place = HeaderEnd;
    while (offset < HeaderEnd) {
        const auto type = ReadVarint(m_payload, offset);
        const auto size = type ? SizeOf(*type) : std::nullopt;
        if (!size || *size > Size - place || m_values.size() == MaxValues)
            return false;
        m_values.push_back(ReadValue(*type, place));
        place += *size;
    }
    return offset == HeaderEnd && place == Size;
}

CStoredRow::StoredValue CStoredRow::ReadValue(quint64 Type, qint64 Offset) const
{
    StoredValue value;
    const qint64 left = std::max<qint64>(0, m_payload.size() - Offset);
    const qint64 size = *SizeOf(Type);
    const bool isText = Type >= FirstText;
    if (size > left && (!isText || left == 0))
        return value;
    if (isText) {
        value.Type = Type % 2 == 1 ? Kind::Text : Kind::Blob;
        value.Bytes = size == 0 ? QByteArrayView("") : QByteArrayView(m_payload).sliced(Offset, std::min(size, left));
        return value;
    }
    if (Type == 7) {
        value.Real = std::bit_cast<double>(qFromBigEndian<quint64>(m_payload.constData() + Offset));
        value.Type = std::isnan(value.Real) ? Kind::Null : Kind::Real;
    } else if (Type != 0) {
        value.Type = Kind::Integer;
        value.Integer = size == 0 ? qint64(Type) - 8 : Signed(QByteArrayView(m_payload).sliced(Offset, size));
    }
    return value;
}

} // namespace dao
