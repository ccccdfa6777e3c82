// platform/archive/LzhHeader.h
// The headers of an LZH archive: where they stand and what they say of a member.

#ifndef ARCHIVE_LZHHEADER_H
#define ARCHIVE_LZHHEADER_H

#include <QByteArray>
#include <QString>

#include <optional>

/// What the header in front of a member says. All sizes are in bytes and none has been compared with the archive.
struct CLzhHeader
{
    QString Name;       ///< with its folders, "/" between them; no control characters; may be empty
    QByteArray Method;  ///< "-lh5-" and so on
    quint64 DataPlace;  ///< where the packed bytes begin in the archive
    quint64 PackedSize; ///< of the packed bytes
    quint64 Size;       ///< unpacked
    quint16 Checksum;   ///< CRC-16 of the unpacked bytes
    char System;        ///< letter of the system that packed it

    /// A folder or a link, which has no bytes of its own.
    bool IsFolder() const { return Method == "-lhd-"; }
};

namespace lzh
{

/// The header that stands exactly at Place. Empty where none does or where it is damaged: its checksum is wrong, it is
/// cut short or longer than 128 KiB (honest ones have some hundred bytes).
std::optional<CLzhHeader> ReadHeader(QByteArrayView Archive, qsizetype Place);

/// First place at or behind From that looks like the beginning of a header; -1 for none.
qsizetype FindHeader(QByteArrayView Archive, qsizetype From);

} // namespace lzh

#endif
