// platform/archive/CLzhReader.h
// LZH archives: the members' names and unpacked bytes, in the order of the archive.

#ifndef ARCHIVE_CLZHREADER_H
#define ARCHIVE_CLZHREADER_H

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

struct CLzhHeader;

/// One file of an archive.
struct CLzhMember
{
    enum class Fault {
        None,
        BadChecksum,   ///< unpacked to other bytes than were packed, or to fewer
        CutShort,      ///< the archive ends within it
        UnknownMethod, ///< packed in a way that cannot be read
        TooLarge,      ///< would exceed MaxMemberSize, or the archive MaxTotalSize; nothing is unpacked
        Stopped,       ///< GoesOn said no
    };

    QString Name;      ///< for show only: never a path to write to; may be empty
    QByteArray Method; ///< "-lh5-" and so on
    QByteArray Bytes;  ///< what could be unpacked; whole only without a Fault
    Fault Problem = Fault::None;
};

/// Reads an archive of any header level and method, also behind a self-extracting program, one member at a time.
///
/// Nothing is believed that the archive says of itself: sizes are counted, checksums are made anew, and nothing is ever
/// written to a file. Behind a damaged header the next sound one is looked for, so that one bad sector does not cost
/// the members after it.
class CLzhReader
{
public:
    static constexpr qint64 MaxMemberSize = 256LL * 1024 * 1024; ///< bytes; a log of a million messages has half of it
    static constexpr qint64 MaxTotalSize = 2 * MaxMemberSize;    ///< bytes, of all members: seconds of work
    static constexpr int MaxMembers = 10000;

    /// Asked about every 64 KiB while something is searched or unpacked; false ends that. May be empty.
    using CGoesOn = std::function<bool()>;

    /// Whether Bytes hold a sound header anywhere, that is one that Next would give.
    static bool IsArchive(QByteArrayView Bytes);

    explicit CLzhReader(QByteArray Archive);

    /// The next member that is a file; empty at the end, and when GoesOn said no between members.
    std::optional<CLzhMember> Next(const CGoesOn& GoesOn = {});

    /// After Next came to the end: whether the archive ended as an archive does, without a damaged header on the way,
    /// not in the middle of a member and not at MaxMembers.
    bool IsWhole() const { return m_isWhole; }

private:
    std::optional<CLzhHeader> NextHeader(const CGoesOn& GoesOn);
    CLzhMember Unpack(const CLzhHeader& Header, const CGoesOn& GoesOn);

    QByteArray m_archive;
    qsizetype m_place = 0;
    qint64 m_unpacked = 0; ///< bytes, of all members
    int m_headers = 0;
    int m_damaged = 0;
    bool m_isWhole = true;
};

#endif
