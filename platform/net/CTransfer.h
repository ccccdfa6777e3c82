// platform/net/CTransfer.h
// One HTTP request at a time, told in stages, over a connection that is kept for the next one.

#ifndef NET_CTRANSFER_H
#define NET_CTRANSFER_H

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

class CCookieStore;

/// Fetches pages for the receive run and for the page view.
///
/// Execute starts a request and returns; StateChanged then tells each stage from the event loop. No event loop is run
/// inside: who wants to wait spins his own until StillExecuting is false. Cookies of the store are sent and those of
/// replies are kept there. Requests of one object follow one another on one connection. A reply of any status counts
/// as completed: the caller looks at the first line of Header. Redirects are followed silently, at most MaxRedirects.
class CTransfer : public QObject
{
    Q_OBJECT

public:
    enum class State {
        None,
        ResolvingHost,
        HostResolved,
        Connecting,
        Connected,
        Requesting,
        RequestSent,
        ReceivingResponse, ///< the header is there, data begins to come
        ResponseReceived,  ///< some more of the body can be read by GetChunk
        Disconnecting,
        Disconnected,
        Error,            ///< the end: see ResponseCode and ResponseInfo
        ResponseCompleted ///< the end: the whole body can be read
    };
    Q_ENUM(State)

    static constexpr int TimedOut = 12002;
    static constexpr int BadUrl = 12005;
    static constexpr int NameNotResolved = 12007;
    static constexpr int Cancelled = 12017;
    static constexpr int CannotConnect = 12029;
    static constexpr int ConnectionAborted = 12030;
    static constexpr int BadResponse = 12152;

    /// Largest body taken, in bytes: a hundred times the longest log page, and no strain on memory.
    static constexpr qint64 MaxBodyBytes = 32 * 1024 * 1024;
    static constexpr int MaxRedirects = 10;

    /// Cookies is borrowed and must outlive the transfer.
    explicit CTransfer(CCookieStore& Cookies, QObject* Parent = nullptr);
    /// Ends a running request without a further signal.
    ~CTransfer() override;

    /// Seconds without any progress after which a request ends as TimedOut; 0: never. 60 at the start.
    void SetTimeout(int Seconds);
    /// The same in milliseconds, for who cannot wait a second.
    void SetTimeoutMs(int Milliseconds);

    /// Starts a request; Url goes out as it is written. False, with no signal to come: one is under way already, which
    /// goes on untouched, or Url is no http or https address with a host (BadUrl).
    bool Execute(const QUrl& Url, const QByteArray& Method = "GET");

    /// Ends a running request: State::Error with Cancelled follows before this returns. Nothing when none runs.
    void Cancel();

    bool StillExecuting() const;

    /// The address as asked for, before any redirect.
    QUrl Url() const;
    /// The address that answered.
    QUrl FinalUrl() const;
    /// 0, or one of the codes above once the request has ended in State::Error.
    int ResponseCode() const;
    /// The reason in Japanese that goes with ResponseCode.
    QString ResponseInfo() const;
    /// Status line and header lines, each closed by CR LF, then an empty one. Empty before ReceivingResponse.
    QByteArray Header() const;
    /// Value of a header field, names without case; empty when the reply has none.
    QByteArray HeaderValue(const QByteArray& Name) const;
    /// The next Size bytes of the body, or what there is of them; empty when no more is there at this time.
    QByteArray GetChunk(int Size);

Q_SIGNALS:
    void StateChanged(CTransfer::State NewState);

private:
    class CRun;
    std::unique_ptr<CRun> m_run;
};

#endif
