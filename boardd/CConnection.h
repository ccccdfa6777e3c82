// boardd/CConnection.h
// One visitor's connection as the HTTP library reads and writes it, with limits that the library lacks.

#ifndef BOARDD_CCONNECTION_H
#define BOARDD_CCONNECTION_H

#include <QDeadlineTimer>

#include <array>
#include <httplib.h>

/// The library bounds neither the number of header lines, nor a chunked body, nor the time a request may take. So every
/// byte goes through here: past a limit reading fails, and the connection is spent. Used by one thread, which blocks.
class CConnection final : public httplib::Stream
{
public:
    /// Socket is connected and stays the caller's.
    explicit CConnection(socket_t Socket);

    /// Waits until the next request begins; false when none did within Seconds or the visitor has left.
    bool WaitForRequest(int Seconds);
    /// Starts the limits anew.
    void BeginRequest();
    /// Whether no further request may be read, because this one was cut off or left bytes behind.
    bool IsSpent() const { return m_spent; }
    /// The current request is the last one.
    void Spend() { m_spent = true; }
    /// From now on nothing is sent any more.
    void HangUp();
    /// Blocks until the visitor leaves or the socket is shut down, throwing away what still comes.
    void WaitUntilGone();

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* Out, size_t Size) override;
    ssize_t write(const char* Bytes, size_t Size) override;
    void get_remote_ip_and_port(std::string& Address, int& Port) const override;
    void get_local_ip_and_port(std::string& Address, int& Port) const override;
    socket_t socket() const override { return m_socket; }

private:
    bool Fill();
    void Count(const char* Bytes, size_t Size);

    socket_t m_socket;
    std::array<char, 16384> m_buffer;
    size_t m_begin = 0;
    size_t m_end = 0;
    qint64 m_taken = 0;         // bytes of this request handed out so far
    qint64 m_headerSize = -1;   // of them the header; -1 while it lasts
    int m_lineBreaks = 0;       // line ends in a row: two end the header
    QDeadlineTimer m_deadline;  // for the whole request to come in
    bool m_spent = false;
    bool m_hungUp = false;
};

#endif
