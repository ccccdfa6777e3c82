// fuzz/FuzzArchive.cpp
// Bytes as an archive, as a file with old logs by either name, and as what is left of a damaged member.

#include "board/CLogFile.h"
#include "board/LogText.h"
#include "fuzz/Demand.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{

/// Asked so often the work is long enough for one input; what is stopped must come to its end at once.
class CPatience
{
public:
    bool GoesOn() { return ++m_asked < MostAsked; }
    bool IsOver() const { return m_asked >= MostAsked; }

private:
    static constexpr int MostAsked = 400; // some 25 MB unpacked
    int m_asked = 0;
};

void CheckArchive(const QByteArray& Bytes)
{
    CPatience patience;
    CLzhReader reader(Bytes);
    int members = 0;
    qint64 total = 0;
    while (const auto member = reader.Next([&] { return patience.GoesOn(); })) {
        ++members;
        total += member->Bytes.size();
        Demand(!member->Name.contains(u'\n'), "a name is one line");
        Demand((member->Problem == CLzhMember::Fault::Stopped) <= patience.IsOver(), "only the user stops");
        Demand(member->Problem != CLzhMember::Fault::UnknownMethod || member->Bytes.isEmpty(),
               "unknown is not unpacked");
    }
    Demand(members <= CLzhReader::MaxMembers && total <= CLzhReader::MaxTotalSize, "the limits hold");
    Demand(members == 0 || CLzhReader::IsArchive(Bytes), "what has members is an archive");
}

void CheckFile(const QString& FileName, const QByteArray& Bytes)
{
    QFile file(FileName);
    file.remove(); // to write over it would wait for the disk
    Demand(file.open(QIODevice::WriteOnly) && file.write(Bytes) == Bytes.size(), "the file can be written");
    file.close();
    CPatience patience;
    CLogFile log(FileName);
    bool hasBlocks = false;
    while (const auto block = log.Next([&] { return patience.GoesOn(); })) {
        hasBlocks = true;
        Demand(block->Text.isEmpty() ? !block->Problem.isEmpty() : mdlLogText::HasRecord(block->Text),
               "a block is worth telling");
    }
    Demand(!hasBlocks || log.Error().isEmpty(), "a file with a log is no error");
    Demand(hasBlocks || patience.IsOver() || !log.Error().isEmpty(), "a file without one is told");
    Demand(!log.Next(), "the end stays the end");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    static const QTemporaryDir folder;
    const QByteArray bytes = BytesOf(Data, Size);
    CheckArchive(bytes);
    CheckFile(folder.filePath(u"log.lzh"_s), bytes);
    CheckFile(folder.filePath(u"log.txt"_s), bytes);
    for (const bool isOnlyCut : {false, true})
        Demand(bytes.startsWith(mdlLogText::SoundPart(bytes, isOnlyCut)), "what is sound is the beginning");
    return 0;
}
