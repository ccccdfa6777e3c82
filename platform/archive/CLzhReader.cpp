// platform/archive/CLzhReader.cpp
// LZH archives: the members' names and unpacked bytes, in the order of the archive.

#include "platform/archive/CLzhReader.h"

#include "platform/archive/LzhHeader.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include <lhasa.h>

namespace
{

constexpr qsizetype Portion = 64 * 1024; ///< bytes between two questions whether to go on

/// So many places that only look like a header are tried; a file made of nothing else would take a minute.
constexpr int MaxDamaged = 1000;

bool MayGoOn(const CLzhReader::CGoesOn& GoesOn) { return !GoesOn || GoesOn(); }

/// The packed bytes of a member as the decoder asks for them, a few at a time.
struct CPacked
{
    QByteArrayView Rest;
    const CLzhReader::CGoesOn& GoesOn;
    qsizetype Counted = 0;
    bool IsStopped = false;
};

extern "C" std::size_t ReadPacked(void* Buffer, std::size_t Size, void* Handle)
{
    auto& packed = *static_cast<CPacked*>(Handle);
    const qsizetype count = std::min(packed.Rest.size(), static_cast<qsizetype>(Size));
    packed.Counted += count;
    if (packed.Counted >= Portion) {
        packed.Counted = 0;
        packed.IsStopped = packed.IsStopped || !MayGoOn(packed.GoesOn);
    }
    std::memset(Buffer, 0, Size); // of what is missing the library looks at some all the same
    if (packed.IsStopped || count == 0)
        return 0;
    std::memcpy(Buffer, packed.Rest.data(), static_cast<std::size_t>(count));
    packed.Rest = packed.Rest.sliced(count);
    return static_cast<std::size_t>(count);
}

struct CFree
{
    void operator()(LHADecoder* Decoder) const { lha_decoder_free(Decoder); }
};

/// Appends what Decoder gives to Bytes until it ends or GoesOn says no, and tells which.
bool Drain(LHADecoder* Decoder, QByteArray& Bytes, const CLzhReader::CGoesOn& GoesOn)
{
    for (;;) {
        const qsizetype before = Bytes.size();
        Bytes.resize(before + Portion);
        const std::size_t count =
            lha_decoder_read(Decoder, reinterpret_cast<std::uint8_t*>(Bytes.data() + before), Portion);
        Bytes.resize(before + static_cast<qsizetype>(count));
        if (count == 0)
            return true;
        if (!MayGoOn(GoesOn))
            return false;
    }
}

/// Whether Bytes begin as a program does that unpacks itself: with the mark of one or with a jump.
bool IsProgram(const QByteArray& Bytes)
{
    return Bytes.startsWith("MZ") || Bytes.startsWith('\xE9') || Bytes.startsWith('\xEB');
}

/// Macintosh tools pack a file with 128 bytes of its properties in front and its resources behind it.
QByteArray WithoutMacParts(const QByteArray& Bytes)
{
    constexpr qsizetype FrontSize = 128;
    constexpr char LongestName = 63;
    if (Bytes.size() < FrontSize || Bytes[1] < 1 || Bytes[1] > LongestName)
        return Bytes;
    for (const qsizetype place : {0, 74, 82}) { // always zero
        if (Bytes[place] != '\0')
            return Bytes;
    }
    const auto size = qFromBigEndian<quint32>(Bytes.constData() + 83);
    return size <= Bytes.size() - FrontSize ? Bytes.mid(FrontSize, size) : Bytes;
}

} // namespace

CLzhReader::CLzhReader(QByteArray Archive)
    : m_archive(std::move(Archive))
{}

bool CLzhReader::IsArchive(QByteArrayView Bytes)
{
    CLzhReader reader(QByteArray::fromRawData(Bytes.data(), Bytes.size()));
    return reader.NextHeader({}).has_value();
}

/// The header at m_place or, where something else or a damaged header stands there, the first sound one behind it.
std::optional<CLzhHeader> CLzhReader::NextHeader(const CGoesOn& GoesOn)
{
    qsizetype place = m_place;
    for (; place >= 0; place = lzh::FindHeader(m_archive, place + 1)) {
        if (m_damaged > MaxDamaged || !MayGoOn(GoesOn)) {
            m_isWhole = false;
            return {};
        }
        if (auto header = lzh::ReadHeader(m_archive, place)) {
            m_isWhole = m_isWhole && (place == m_place || (m_headers == 0 && IsProgram(m_archive)));
            return header;
        }
        ++m_damaged;
    }
    // An archive ends with a zero byte or with the file.
    m_isWhole = m_isWhole && (m_place >= m_archive.size() || m_archive[m_place] == '\0');
    m_place = m_archive.size();
    return {};
}

std::optional<CLzhMember> CLzhReader::Next(const CGoesOn& GoesOn)
{
    while (m_headers < MaxMembers) {
        const auto header = NextHeader(GoesOn);
        if (!header)
            return {};
        ++m_headers;
        const auto size = static_cast<quint64>(m_archive.size());
        const bool isCut = header->PackedSize > size - header->DataPlace;
        m_isWhole = m_isWhole && !isCut;
        // Where the size is a lie rather than the archive cut, other members may stand within it.
        m_place = static_cast<qsizetype>(header->DataPlace + (isCut ? 0 : header->PackedSize));
        if (!header->IsFolder())
            return Unpack(*header, GoesOn);
    }
    m_isWhole = m_isWhole && m_place == m_archive.size();
    return {};
}

CLzhMember CLzhReader::Unpack(const CLzhHeader& Header, const CGoesOn& GoesOn)
{
    CLzhMember member{Header.Name, Header.Method, {}, CLzhMember::Fault::None};
    if (Header.Size > static_cast<quint64>(std::min(MaxMemberSize, MaxTotalSize - m_unpacked))) {
        member.Problem = CLzhMember::Fault::TooLarge;
        return member;
    }
    const QByteArrayView rest = QByteArrayView(m_archive).sliced(static_cast<qsizetype>(Header.DataPlace));
    const bool isCut = Header.PackedSize > static_cast<quint64>(rest.size());
    CPacked packed{isCut ? rest : rest.first(static_cast<qsizetype>(Header.PackedSize)), GoesOn};
    LHADecoderType* const type = lha_decoder_for_name(member.Method.data());
    const std::unique_ptr<LHADecoder, CFree> decoder(type ? lha_decoder_new(type, ReadPacked, &packed, Header.Size)
                                                          : nullptr);
    if (!decoder) {
        member.Problem = CLzhMember::Fault::UnknownMethod;
        return member;
    }
    const bool isStopped = !Drain(decoder.get(), member.Bytes, GoesOn) || packed.IsStopped;
    m_unpacked += member.Bytes.size();
    if (isStopped)
        member.Problem = CLzhMember::Fault::Stopped;
    else if (static_cast<quint64>(member.Bytes.size()) != Header.Size ||
             lha_decoder_get_crc(decoder.get()) != Header.Checksum)
        member.Problem = isCut ? CLzhMember::Fault::CutShort : CLzhMember::Fault::BadChecksum;
    else if (Header.System == LHA_OS_TYPE_MACOS)
        member.Bytes = WithoutMacParts(member.Bytes);
    return member;
}
