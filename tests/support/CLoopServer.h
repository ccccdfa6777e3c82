// tests/support/CLoopServer.h
// A web server on 127.0.0.1 that answers byte for byte as a script says, and breaks where it says.

#ifndef SUPPORT_CLOOPSERVER_H
#define SUPPORT_CLOOPSERVER_H

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QThread>
#include <QUrl>

#include <memory>
#include <vector>

/// One scripted answer.
struct CLoopReply
{
    QByteArray Bytes;     ///< sent as they are, header included
    qint64 CutAfter = -1; ///< bytes after which the connection is closed; -1: it stays open
    int DelayMs = 0;      ///< before the first byte
    bool Silent = false;  ///< nothing is sent and the connection stays open
    int PauseAfter = -1;  ///< bytes after which nothing more comes, the connection staying open; -1: all are sent
    int PieceBytes = 0;    ///< above 0: sent in pieces of this size, one every PieceMs milliseconds
    int PieceMs = 0;

    /// The same answer, broken off after Count bytes (counted from the start of the header).
    CLoopReply Cut(qint64 Count) const;
    /// The same answer, whole, with the connection closed after it.
    CLoopReply Closing() const;
    CLoopReply Delayed(int Milliseconds) const;
    CLoopReply PausedAfter(int Count) const;
    CLoopReply InPieces(int Count, int EveryMs) const;
};

/// Serves the script's replies in order, one a request, over kept-alive connections. Requests beyond the script get
/// "500 Script over". Runs on a thread of its own; all members may be called from the test's thread.
class CLoopServer
{
public:
    explicit CLoopServer(std::vector<CLoopReply> Script = {});
    ~CLoopServer();

    /// A whole reply with a right Content-Length. Headers are lines closed by CR LF.
    static CLoopReply Page(const QByteArray& Body, const QByteArray& Status = "200 OK", const QByteArray& Headers = {});
    /// Sends these bytes, whatever they are.
    static CLoopReply Raw(const QByteArray& Bytes);
    static CLoopReply Redirect(const QByteArray& Location, const QByteArray& Status = "302 Found");
    static CLoopReply Silence();

    /// Adds to the script, also while requests come.
    void Add(const CLoopReply& Reply);
    /// What is served when the script is over, in place of the 500.
    void SetDefault(const CLoopReply& Reply);

    quint16 Port() const;
    /// PathAndQuery begins with "/".
    QUrl Url(const QString& PathAndQuery) const;

    /// First lines without " HTTP/1.1", in the order in which they came: "GET /list".
    QByteArrayList Requests() const;
    /// Whole requests: line, header, body.
    QByteArrayList RawRequests() const;
    /// The value of a header line of a request, empty when it is not there.
    QByteArray RequestHeader(int Index, const QByteArray& Name) const;
    /// Connections accepted so far.
    int Connections() const;

    /// A port of 127.0.0.1 on which nobody listens.
    static quint16 RefusedPort();

private:
    struct CState;
    class CWorker;

    std::shared_ptr<CState> m_state;
    QThread m_thread;
    CWorker* m_worker = nullptr; // lives on m_thread and ends with it
};

#endif
