// platform/archive/LzhHeader.cpp
// The headers of an LZH archive: where they stand and what they say of a member.

#include "platform/archive/LzhHeader.h"

#include "platform/archive/LzhName.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <lhasa.h>

namespace
{

constexpr qsizetype MaxHeaderSize = 128 * 1024;
constexpr qsizetype FixedSize = 21; ///< what headers of all levels have in common
constexpr qsizetype MethodPlace = 2;
constexpr qsizetype MethodSize = 5;

/// The same that the library takes for the beginning of a header: -lh?-, -lz?-, -pm?-.
bool IsMethod(QByteArrayView Method)
{
    return Method.front() == '-' && Method.back() == '-' &&
           (Method.sliced(1, 2) == "lh" || Method.sliced(1, 2) == "lz" || Method.sliced(1, 2) == "pm");
}

extern "C" int ReadBytes(void* Handle, void* Buffer, std::size_t Size)
{
    auto& rest = *static_cast<QByteArrayView*>(Handle);
    const qsizetype count = std::min(rest.size(), static_cast<qsizetype>(std::min<std::size_t>(Size, MaxHeaderSize)));
    if (count > 0)
        std::memcpy(Buffer, rest.data(), static_cast<std::size_t>(count));
    rest = rest.sliced(count);
    return static_cast<int>(count);
}

constexpr LHAInputStreamType FromBytes{ReadBytes, nullptr, nullptr};

struct CFree
{
    void operator()(LHAInputStream* Stream) const { lha_input_stream_free(Stream); }
    void operator()(LHAReader* Reader) const { lha_reader_free(Reader); }
};

CLzhHeader HeaderOf(const LHAFileHeader& Header, QByteArrayView Raw, qsizetype Place)
{
    const auto system = static_cast<char>(Header.os_type);
    return {lzh::ReadName(Raw, system),
            QByteArray(Raw.sliced(MethodPlace, MethodSize).data(), MethodSize),
            static_cast<quint64>(Place) + Header.raw_data_len,
            Header.compressed_length,
            Header.length,
            Header.crc,
            system};
}

} // namespace

std::optional<CLzhHeader> lzh::ReadHeader(QByteArrayView Archive, qsizetype Place)
{
    if (Archive.size() - Place < FixedSize || !IsMethod(Archive.sliced(Place + MethodPlace, MethodSize)))
        return {};
    const QByteArrayView bytes = Archive.sliced(Place, std::min(Archive.size() - Place, MaxHeaderSize));
    QByteArrayView rest = bytes;
    const std::unique_ptr<LHAInputStream, CFree> stream(lha_input_stream_new(&FromBytes, &rest));
    const std::unique_ptr<LHAReader, CFree> reader(stream ? lha_reader_new(stream.get()) : nullptr);
    const LHAFileHeader* const header = reader ? lha_reader_next_file(reader.get()) : nullptr;
    if (!header || header->raw_data_len < static_cast<std::size_t>(FixedSize) ||
        header->raw_data_len > static_cast<std::size_t>(bytes.size()))
        return {};
    // Left to itself the library looks for a header further on; the walk through the archive must know where it is.
    if (std::memcmp(header->raw_data, bytes.data(), FixedSize) != 0)
        return {};
    return HeaderOf(*header, bytes.first(static_cast<qsizetype>(header->raw_data_len)), Place);
}

qsizetype lzh::FindHeader(QByteArrayView Archive, qsizetype From)
{
    for (qsizetype hyphen = From + MethodPlace; hyphen <= Archive.size() - MethodSize; ++hyphen) {
        hyphen = Archive.indexOf('-', hyphen);
        if (hyphen < 0 || hyphen > Archive.size() - MethodSize)
            return -1;
        if (IsMethod(Archive.sliced(hyphen, MethodSize)))
            return hyphen - MethodPlace;
    }
    return -1;
}
