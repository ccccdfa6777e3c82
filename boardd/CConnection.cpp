// boardd/CConnection.cpp
// Buffered reading within limits; writing with a time-out.

#include "boardd/CConnection.h"

#include "boardd/Limits.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

namespace
{

constexpr int WriteTimeoutMs = 30000;

/// Whether Event happened on Socket before Deadline; an error or a closed end counts, the next call tells it.
bool Poll(socket_t Socket, short Event, QDeadlineTimer Deadline)
{
    for (;;) {
        pollfd wanted{Socket, Event, 0};
        const auto left = std::clamp<qint64>(Deadline.remainingTime(), -1, 60000);
        const int ready = ::poll(&wanted, 1, static_cast<int>(left));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
        if (Deadline.hasExpired())
            return false;
    }
}

} // namespace

CConnection::CConnection(socket_t Socket)
    : m_socket(Socket)
{
}

bool CConnection::WaitForRequest(int Seconds)
{
    return m_begin < m_end || (Poll(m_socket, POLLIN, QDeadlineTimer(Seconds * 1000LL)) && Fill());
}

void CConnection::BeginRequest()
{
    m_taken = 0;
    m_headerSize = -1;
    m_lineBreaks = 0;
    m_deadline = QDeadlineTimer(Limits::RequestSeconds * 1000LL);
}

void CConnection::HangUp()
{
    m_hungUp = true;
    m_spent = true;
}

void CConnection::WaitUntilGone()
{
    while (Poll(m_socket, POLLIN, QDeadlineTimer(QDeadlineTimer::Forever))) {
        if (::recv(m_socket, m_buffer.data(), m_buffer.size(), 0) <= 0)
            break;
    }
    m_begin = m_end = 0;
}

bool CConnection::Fill()
{
    ssize_t got = -1;
    do
        got = ::recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
    while (got < 0 && errno == EINTR);
    m_begin = 0;
    m_end = got > 0 ? static_cast<size_t>(got) : 0;
    return got > 0;
}

void CConnection::Count(const char* Bytes, size_t Size)
{
    m_taken += static_cast<qint64>(Size);
    for (size_t index = 0; m_headerSize < 0 && index < Size; ++index) {
        if (Bytes[index] == '\n')
            ++m_lineBreaks;
        else if (Bytes[index] != '\r')
            m_lineBreaks = 0;
        if (m_lineBreaks == 2)
            m_headerSize = m_taken - static_cast<qint64>(Size - index - 1);
    }
}

bool CConnection::is_readable() const
{
    return !m_spent && (m_begin < m_end || Poll(m_socket, POLLIN, m_deadline));
}

bool CConnection::is_writable() const
{
    return !m_hungUp && Poll(m_socket, POLLOUT, QDeadlineTimer(WriteTimeoutMs));
}

ssize_t CConnection::read(char* Out, size_t Size)
{
    const qint64 limit = m_headerSize < 0 ? Limits::HeaderBytes : m_headerSize + Limits::FormBytes + Limits::HeaderBytes;
    if (m_taken >= limit || !is_readable() || (m_begin == m_end && !Fill())) {
        m_spent = true;
        return -1;
    }
    const size_t count = std::min(Size, m_end - m_begin);
    std::memcpy(Out, m_buffer.data() + m_begin, count);
    m_begin += count;
    Count(Out, count);
    return static_cast<ssize_t>(count);
}

ssize_t CConnection::write(const char* Bytes, size_t Size)
{
    size_t sent = 0;
    while (sent < Size) {
        if (!is_writable())
            return -1;
        const ssize_t now = ::send(m_socket, Bytes + sent, Size - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (now < 0 && errno != EINTR && errno != EAGAIN)
            return -1;
        sent += static_cast<size_t>(std::max<ssize_t>(0, now));
    }
    return static_cast<ssize_t>(sent);
}

void CConnection::get_remote_ip_and_port(std::string& Address, int& Port) const
{
    // Nothing here asks who is calling.
    Address.clear();
    Port = 0;
}

void CConnection::get_local_ip_and_port(std::string& Address, int& Port) const
{
    Address.clear();
    Port = 0;
}
