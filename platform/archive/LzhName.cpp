// platform/archive/LzhName.cpp
// The name of an archive's member, read from its header.

#include "platform/archive/LzhName.h"

#include "platform/text/Codepage932.h"

namespace
{

constexpr qsizetype LevelPlace = 20;
constexpr qsizetype NamePlace = 22;     ///< levels 0 and 1, behind the byte that counts it
constexpr qsizetype LongestShown = 200; ///< UTF-16 units
constexpr char Unix = 'U';
constexpr char NamePart = '\x01'; ///< kinds of extended headers
constexpr char FolderPart = '\x02';
constexpr char FolderSeparator = '\xFF'; ///< in folder parts, where it is no byte of any character

/// A little-endian number of Width bytes; -1 where Bytes ends before it.
qint64 NumberAt(QByteArrayView Bytes, qsizetype Place, qsizetype Width)
{
    if (Place < 0 || Place > Bytes.size() - Width)
        return -1;
    qint64 number = 0;
    for (qsizetype i = Width; i > 0; --i)
        number = number << 8 | static_cast<quint8>(Bytes[Place + i - 1]);
    return number;
}

bool IsLead(char Byte)
{
    const auto code = static_cast<quint8>(Byte);
    return (code >= 0x81 && code <= 0x9F) || (code >= 0xE0 && code <= 0xFC);
}

/// Makes the separators of Name "/", but not a 5C that is the second byte of a character.
QByteArray WithSlashes(QByteArrayView Name)
{
    QByteArray result(Name.data(), Name.size());
    for (qsizetype i = 0; i < result.size(); ++i) {
        if (IsLead(result[i]))
            ++i;
        else if (result[i] == '\\')
            result[i] = '/';
    }
    return result.replace(FolderSeparator, '/');
}

/// The name that levels 0 and 1 hold in the header itself; a comment may follow it behind a NUL.
QByteArray BaseName(QByteArrayView Header)
{
    const QByteArrayView name = Header.sliced(NamePlace);
    const auto size = static_cast<qsizetype>(static_cast<quint8>(Header[NamePlace - 1]));
    return WithSlashes(name.first(qMin(size, name.size())));
}

/// Walks the extended headers. Each begins with its kind and ends with the size of the next, the first size stands at
/// Place; a size counts the whole part and is Width bytes.
QByteArray ExtendedName(QByteArrayView Header, qsizetype Place, qsizetype Width, QByteArray Name)
{
    QByteArray folder;
    for (qint64 size = NumberAt(Header, Place, Width); size > Width && size <= Header.size() - Place - Width;
         size = NumberAt(Header, Place, Width)) {
        const QByteArrayView part = Header.sliced(Place + Width, size - Width);
        if (part.front() == NamePart)
            Name = WithSlashes(part.sliced(1));
        else if (part.front() == FolderPart)
            folder = WithSlashes(part.sliced(1));
        Place += size;
    }
    if (!folder.isEmpty() && !folder.endsWith('/'))
        folder += '/';
    return folder + Name;
}

QByteArray NameBytes(QByteArrayView Header)
{
    constexpr qsizetype ChainLevel2 = 24;
    constexpr qsizetype ChainLevel3 = 28;
    switch (Header[LevelPlace]) {
    case 1: // the size of the first part are the last two bytes of the header itself
        return ExtendedName(Header, static_cast<quint8>(Header[0]), 2, BaseName(Header));
    case 2:
        return ExtendedName(Header, ChainLevel2, 2, {});
    case 3:
        return ExtendedName(Header, ChainLevel3, 4, {});
    default:
        return BaseName(Header);
    }
}

} // namespace

QString lzh::ReadName(QByteArrayView Header, char System)
{
    if (Header.size() < NamePlace)
        return {};
    QByteArray bytes = NameBytes(Header);
    if (const qsizetype end = bytes.indexOf('\0'); end >= 0)
        bytes.truncate(end);
    const bool isUtf8 = text::IsValidUtf8(bytes) && (System == Unix || !text::IsValid932(bytes));
    QString name = isUtf8 ? QString::fromUtf8(bytes) : text::From932(bytes);
    name.removeIf(
        [](QChar Unit) { return Unit.category() == QChar::Other_Control || Unit.category() == QChar::Other_Format; });
    return name.left(LongestShown);
}
