// board/CLogFile.cpp
// A file with old messages that the user chose: a text, or an LZH archive of texts, read as blocks of log text.

#include "board/CLogFile.h"

#include "board/LogText.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype Portion = 1024 * 1024;         ///< bytes read between two questions whether to go on
constexpr qsizetype LongestStub = 2 * 1024 * 1024; ///< bytes in front of a self-extracting archive
constexpr int ShiftToMegabytes = 20;

bool IsArchiveName(const QString& FileName)
{
    return QStringView(FileName).sliced(FileName.lastIndexOf(u'.') + 1).compare(u"LZH", Qt::CaseInsensitive) == 0;
}

QString InBrackets(const QString& Name)
{
    return u"「"_s + (Name.isEmpty() ? u"名前のないファイル"_s : Name) + u"」"_s;
}

/// What is wrong with Member, to be put behind its name; HasText when some of it can be read all the same.
QString FaultText(const CLzhMember& Member, bool HasText)
{
    switch (Member.Problem) {
    case CLzhMember::Fault::UnknownMethod:
        return u"は知らない方式（%1）で圧縮されているので取り込めません。"_s.arg(QString::fromLatin1(Member.Method));
    case CLzhMember::Fault::TooLarge:
        return u"は展開すると大きくなりすぎるので取り込めません。"_s;
    case CLzhMember::Fault::CutShort:
        return HasText ? u"は途中で切れています。読めたところまで取り込みます。"_s
                       : u"は途中で切れていて取り込めません。"_s;
    default:
        return HasText ? u"は壊れています。読めたところまで取り込みます。"_s : u"は壊れていて取り込めません。"_s;
    }
}

} // namespace

CLogFile::CLogFile(const QString& FileName)
    : m_fileName(FileName)
    , m_shownName(InBrackets(QFileInfo(FileName).fileName()))
{}

std::optional<CLogBlock> CLogFile::Next(const CGoesOn& GoesOn)
{
    const CGoesOn goesOn = [&] {
        m_isStopped = m_isStopped || (GoesOn && !GoesOn());
        return !m_isStopped;
    };
    std::optional<CLogBlock> block;
    if (!m_isDone && (m_isOpen || Open(goesOn)))
        block = m_archive ? NextMember(goesOn) : NextText(goesOn);
    m_isDone = m_isDone || !block;
    return block;
}

/// Reads the file; false with m_error, or without when GoesOn said no.
bool CLogFile::Open(const CGoesOn& GoesOn)
{
    QFile file(m_fileName);
    if (!Check(file))
        return false;
    m_bytes = ReadAll(file, GoesOn);
    if (m_isStopped || !m_error.isEmpty())
        return false;
    if (m_bytes.isEmpty())
        m_error = m_shownName + u"は空のファイルです。"_s;
    else if (IsArchiveName(m_fileName) && !CLzhReader::IsArchive(m_bytes))
        m_error =
            m_shownName +
            u"はLZH書庫ではないか、先頭から壊れています。テキストのログなら、名前の最後を「.txt」に変えると取り込めます。"_s;
    else if (IsArchiveName(m_fileName))
        m_archive.emplace(std::exchange(m_bytes, {}));
    m_isOpen = m_error.isEmpty();
    return m_isOpen;
}

/// Opens File when it is one that can be read; else false with m_error.
bool CLogFile::Check(QFile& File)
{
    const QFileInfo info(File);
    if (!info.exists())
        m_error = m_shownName + u"が見つかりません。"_s;
    else if (!info.isFile()) // to open a pipe would be to wait for its writer
        m_error = m_shownName + u"はふつうのファイルではないので取り込めません。"_s;
    else if (!File.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        m_error = m_shownName + u"を開けません。読む権限があるか確かめてください。"_s;
    else if (File.size() > MaxSize)
        m_error = m_shownName + u"は%1MBを超えているので取り込めません。いくつかに分けてください。"_s.arg(
                                    MaxSize >> ShiftToMegabytes);
    return m_error.isEmpty();
}

QByteArray CLogFile::ReadAll(QFile& File, const CGoesOn& GoesOn)
{
    QByteArray bytes(File.size(), Qt::Uninitialized);
    qint64 size = 0;
    while (size < bytes.size() && GoesOn()) {
        const qint64 count = File.read(bytes.data() + size, std::min<qint64>(Portion, bytes.size() - size));
        if (count < 0)
            m_error = m_shownName + u"を読んでいる途中で失敗しました。"_s;
        if (count <= 0)
            break;
        size += count;
    }
    bytes.truncate(size);
    return bytes;
}

std::optional<CLogBlock> CLogFile::NextText(const CGoesOn& GoesOn)
{
    m_isDone = true;
    const bool isArchive = CLzhReader::IsArchive(QByteArrayView(m_bytes).first(std::min(m_bytes.size(), LongestStub)));
    CLogBlock block{{}, mdlLogText::Decode(std::exchange(m_bytes, {}), GoesOn), {}};
    if (m_isStopped)
        return {};
    if (mdlLogText::HasRecord(block.Text))
        return block;
    m_error = m_shownName;
    m_error += isArchive ? u"はLZH書庫のようです。名前の最後を「.lzh」に変えると取り込めます。"_s
                         : u"にはログの区切り行がありません。掲示板のログではないようです。"_s;
    return {};
}

std::optional<CLogBlock> CLogFile::NextMember(const CGoesOn& GoesOn)
{
    while (auto member = m_archive->Next(GoesOn)) {
        if (m_isStopped)
            return {};
        auto block = BlockOf(std::move(*member), GoesOn);
        if (m_isStopped)
            return {};
        m_hasBlocks = m_hasBlocks || block;
        if (block)
            return block;
    }
    return m_isStopped ? std::nullopt : LastWord();
}

/// The log in Member; empty where it holds none and is not damaged.
std::optional<CLogBlock> CLogFile::BlockOf(CLzhMember&& Member, const CGoesOn& GoesOn)
{
    const bool isCut = Member.Problem == CLzhMember::Fault::CutShort;
    const bool isDamaged = Member.Problem != CLzhMember::Fault::None;
    if (isDamaged)
        Member.Bytes = mdlLogText::SoundPart(Member.Bytes, isCut);
    CLogBlock block{Member.Name, mdlLogText::Decode(std::exchange(Member.Bytes, {}), GoesOn), {}};
    const bool hasText = mdlLogText::HasRecord(block.Text);
    if (!hasText)
        block.Text.clear();
    if (isDamaged)
        block.Problem = m_shownName + u"の"_s + InBrackets(Member.Name) + FaultText(Member, hasText);
    m_isCutTold = m_isCutTold || isCut;
    return hasText || isDamaged ? std::optional(std::move(block)) : std::nullopt;
}

/// What is to be said when the members of an archive are through: the archive itself was damaged, or nothing was in it.
std::optional<CLogBlock> CLogFile::LastWord()
{
    m_isDone = true;
    if (!m_archive->IsWhole() && !m_isCutTold)
        return CLogBlock{
            {}, {}, m_shownName + u"には壊れていて読めないところがあります。読めたログだけを取り込みます。"_s};
    if (!m_hasBlocks)
        m_error = m_shownName + u"には掲示板のログが入っていません。"_s;
    return {};
}
