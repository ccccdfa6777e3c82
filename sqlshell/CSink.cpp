// sqlshell/CSink.cpp
// Blocks of bytes on their way out.

#include "sqlshell/CSink.h"

#include <QStringEncoder>

#include <cerrno>
#include <unistd.h>

namespace sqlshell
{

namespace
{

constexpr qsizetype BlockSize = 64 * 1024;

void WriteAll(int Descriptor, QByteArrayView Bytes)
{
    while (!Bytes.isEmpty()) {
        const ssize_t written = ::write(Descriptor, Bytes.data(), size_t(Bytes.size()));
        if (written >= 0)
            Bytes = Bytes.sliced(written);
        else if (errno != EINTR)
            throw COutputLost{errno};
    }
}

} // namespace

CSink CSink::ToFile(int Descriptor)
{
    return CSink([Descriptor](QByteArrayView bytes) { WriteAll(Descriptor, bytes); });
}

void CSink::Put(QByteArrayView Bytes)
{
    m_block.append(Bytes);
    if (m_block.size() >= BlockSize)
        Flush();
}

void CSink::Put(QStringView Text) { Put(ToUtf8(Text)); }

void CSink::Flush()
{
    const QByteArray block = std::exchange(m_block, QByteArray());
    if (!block.isEmpty())
        m_write(block);
}

QByteArray ToUtf8(QStringView Text)
{
    QStringEncoder encode(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    return encode(Text);
}

} // namespace sqlshell
