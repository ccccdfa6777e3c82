// board/CLogFile.h
// A file with old messages that the user chose: a text, or an LZH archive of texts, read as blocks of log text.

#ifndef BOARD_CLOGFILE_H
#define BOARD_CLOGFILE_H

#include "platform/archive/CLzhReader.h"

#include <QString>

#include <functional>
#include <optional>

class QFile;

/// One block of log text: a whole text file, or one member of an archive.
struct CLogBlock
{
    QString Name;    ///< of the member, with its folders; empty for a text file
    QString Text;    ///< the boards' log text, line ends CR LF; may be empty where there is a Problem
    QString Problem; ///< a sentence for the user when some of the block was damaged, else empty
};

/// Reads a file that may be anything. What is no log (a picture in an archive, a readme) is passed over; what is
/// damaged is handed on as far as it is sound, with a sentence that says so.
class CLogFile
{
public:
    /// Largest file that is read, in bytes: as much as CLzhReader unpacks of one member.
    static constexpr qint64 MaxSize = CLzhReader::MaxMemberSize;

    /// Nothing is opened yet. Whether it is an archive is told by the text behind the last "." alone: LZH in any case.
    explicit CLogFile(const QString& FileName);

    /// The next block; empty at the end, after an error, and when GoesOn said no. GoesOn is asked many times a second
    /// while the file is read, unpacked and decoded; it may process events but must not touch this object.
    std::optional<CLogBlock> Next(const std::function<bool()>& GoesOn = {});

    /// After Next gave nothing: a sentence for the user when the file could not be read, is empty or holds no log at
    /// all; else empty.
    QString Error() const { return m_error; }

private:
    using CGoesOn = std::function<bool()>;

    bool Open(const CGoesOn& GoesOn);
    bool Check(QFile& File);
    QByteArray ReadAll(QFile& File, const CGoesOn& GoesOn);
    std::optional<CLogBlock> NextText(const CGoesOn& GoesOn);
    std::optional<CLogBlock> NextMember(const CGoesOn& GoesOn);
    std::optional<CLogBlock> BlockOf(CLzhMember&& Member, const CGoesOn& GoesOn);
    std::optional<CLogBlock> LastWord();

    QString m_fileName;
    QString m_shownName; ///< without the folder, in brackets
    QByteArray m_bytes;  ///< of a text file, until they are decoded
    std::optional<CLzhReader> m_archive;
    QString m_error;
    bool m_isOpen = false;
    bool m_isDone = false;
    bool m_isStopped = false;
    bool m_hasBlocks = false;
    bool m_isCutTold = false; ///< of a member at whose end the archive ends too
};

#endif
