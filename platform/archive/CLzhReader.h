// platform/archive/CLzhReader.h
// LZH archives: the members' names and unpacked bytes, in the order of the archive.

#ifndef ARCHIVE_CLZHREADER_H
#define ARCHIVE_CLZHREADER_H

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

/// One file of an archive.
struct CLzhMember
{
    enum class Fault {
        None,
        BadChecksum,   ///< unpacked to other bytes than were packed
        CutShort,      ///< the archive ends within it
        UnknownMethod, ///< packed in a way that cannot be read
        TooLarge,      ///< would exceed MaxMemberSize, or the archive MaxTotalSize
        Stopped,       ///< GoesOn said no
    };

    QString Name;     ///< for show only: never a path to write to
    QByteArray Bytes; ///< what could be unpacked; whole only without a Fault
    Fault Problem = Fault::None;
};

/// Reads an archive of any header level and method, also behind a self-extracting stub, one member at a time.
///
/// Nothing is believed that the archive says of itself: sizes are counted, checksums are made anew, and nothing is ever
/// written to a file.
class CLzhReader
{
public:
    static constexpr qint64 MaxMemberSize = 256LL * 1024 * 1024; ///< bytes; a log of a million messages has half of it
    static constexpr qint64 MaxTotalSize = 1024LL * 1024 * 1024;
    static constexpr int MaxMembers = 10000;

    /// Opens FileName; IsOpen tells whether that worked.
    explicit CLzhReader(const QString& FileName);
    ~CLzhReader();
    CLzhReader(const CLzhReader&) = delete;
    CLzhReader& operator=(const CLzhReader&) = delete;

    bool IsOpen() const;

    /// The next member that is a file; empty at the end. GoesOn is asked now and then while a member is unpacked.
    std::optional<CLzhMember> Next(const std::function<bool()>& GoesOn = {});

    /// After Next came to the end: whether the archive ended as an archive does, not in a damaged header or in the
    /// middle of a member.
    bool IsWhole() const;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

#endif
