// boardd/CBoardServer.h
// The sample board server as an object: sixteen boards over HTTP, on threads of its own.

#ifndef BOARDD_CBOARDSERVER_H
#define BOARDD_CBOARDSERVER_H

#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <memory>

/// What the server does wrong on purpose when a log page is asked for, so that a reader's answers can be tried.
enum class FaultKind {
    None,
    Status404,     ///< "404 Not Found" with a small HTML page
    ErrorPage,     ///< status 200 with the boards' "Error!!" page
    Cut,           ///< the right length is announced, half of the body comes, then the connection ends
    Silent,        ///< the request is read and nothing is ever answered
    BadRecord,     ///< the first record of the page has lost its date and its number
    WrongEncoding, ///< the page is sent as UTF-8 although the header says Shift_JIS
    Close,         ///< the connection ends without a single byte of answer
    Empty,         ///< status 200 with an empty body
};

/// How one server runs. The defaults suit a test: any free port, loopback, nothing written.
struct CBoardServerOptions
{
    /// The port that a new database's board addresses name.
    static constexpr quint16 DefaultPort = 8932;

    quint16 Port = 0;                          ///< 0: any free port, told by Port() after Start()
    QString BindAddress = QStringLiteral("127.0.0.1"); ///< "0.0.0.0" serves the whole network
    QString DataFolder;                        ///< holds the posts; made when missing; empty: posts live in memory only
    int Messages = 0;                          ///< above 0: the first board holds this many made-up messages instead
    int DelayMs = 0;                           ///< waited before each log page
    FaultKind Fault = FaultKind::None;
    int FaultFrom = 1;                         ///< from which log request on the fault happens, counted from 1
};

/// One running server. Start() and Stop() belong to one thread; the rest may be called from any.
class CBoardServer
{
public:
    explicit CBoardServer(CBoardServerOptions Options);
    CBoardServer(const CBoardServer&) = delete;
    CBoardServer& operator=(const CBoardServer&) = delete;
    /// Stops the server.
    ~CBoardServer();

    /// Loads the boards, binds the port and serves on threads of its own. False with ErrorText() set when the port is
    /// taken or the data folder cannot be used; nothing is left running then.
    [[nodiscard]] bool Start();
    /// Ends every connection, those that are being delayed too, and waits for the threads. Does nothing when not running.
    void Stop();

    /// The port in use; 0 when not running.
    quint16 Port() const;
    /// "http://127.0.0.1:<port>" + PathAndQuery, for instance "/cgi-bin/keyaki.cgi".
    QUrl Url(const QString& PathAndQuery) const;
    /// Why Start() failed, in Japanese.
    QString ErrorText() const;
    /// What was noticed while loading (a torn end of the file of posts), in Japanese; empty when all is well.
    QStringList Warnings() const;

    /// Every request so far in order of arrival: "GET /cgi-bin/keyaki.cgi?dousa=log&logmidoku=1&logno=0".
    QByteArrayList Requests() const;
    void ClearRequests();
    /// Changes the fault of a running server; the log requests are counted anew from here.
    void SetFault(FaultKind Kind, int From = 1);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

#endif
