// sqlshell/CSink.h
// Where results and messages go, as UTF-8.

#ifndef SQLSHELL_CSINK_H
#define SQLSHELL_CSINK_H

#include <QByteArray>
#include <QString>

#include <functional>

namespace sqlshell
{

/// Thrown by a writer whose other end is gone or full; there is no more to be done than to end.
struct COutputLost
{
    int Code = 0; ///< errno; EPIPE where the reader of a pipe has had enough
};

/// Gathers bytes and passes them on in blocks of 64 KB, so that a large result is written as it is read.
class CSink
{
public:
    /// Takes a block whole or throws COutputLost.
    using Writer = std::function<void(QByteArrayView)>;

    explicit CSink(Writer Write)
        : m_write(std::move(Write))
    {}
    /// Writes to an open file or pipe. Interrupted writes go on.
    static CSink ToFile(int Descriptor);

    void Put(QByteArrayView Bytes);
    void Put(QStringView Text);
    void Flush();

private:
    Writer m_write;
    QByteArray m_block;
};

/// Strictly valid UTF-8: half of a surrogate pair, which the database may hold, becomes U+FFFD.
QByteArray ToUtf8(QStringView Text);

} // namespace sqlshell

#endif
