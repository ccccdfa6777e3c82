// platform/net/CTransferRun.h
// The inside of a transfer: name, connection, request, reply, redirects, end.

#ifndef NET_CTRANSFERRUN_H
#define NET_CTRANSFERRUN_H

#include "platform/net/CTransfer.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

class QHostInfo;

/// One transfer's run, reused for each request so that the connection is kept.
///
/// Each signal of the owner may cancel this run, start the next one or destroy the transfer; Enter tells whether the
/// run that raised it still stands, and nothing may be touched when it does not.
class CTransfer::CRun : public QObject
{
public:
    CRun(CTransfer& Owner, CCookieStore& Cookies);
    ~CRun() override;

    bool IsRunning() const { return m_running; }
    bool Start(const QUrl& Url, const QByteArray& Method);
    /// Ends the run; an empty Text is replaced by the code's own.
    void Fail(int FailureCode, const QString& Text = {});
    QByteArray TakeChunk(int Size);
    QByteArray HeaderValue(const QByteArray& Name) const;

    int TimeoutMs = 60 * 1000;
    QUrl Asked;
    QUrl Current;
    int Code = 0;
    QString Info;
    QByteArray HeaderBlock;

private:
    bool Enter(State Stage);
    void End(State Stage);
    void Progress();
    void DropReply();

    void Begin();
    void Resolve();
    void OnResolved(const QHostInfo& Found);
    void Send();
    QNetworkRequest MakeRequest() const;
    void Watch();
    void OnConnecting();
    void OnRequestSent();
    void OnHeader();
    void OnData();
    void OnFinished();
    void KeepCookies();
    void Follow();
    void Complete();
    bool IsCutShort() const;

    CTransfer& m_owner;
    CCookieStore& m_cookies;
    QNetworkAccessManager m_manager;
    QTimer m_timer;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_method;
    bool m_running = false;
    int m_number = 0;  // of the run, to tell a later one from this one
    int m_lookup = -1; // of the name look-up under way
    QString m_keptFor; // scheme, host and port whose connection is probably still open
    bool m_connecting = false;
    bool m_headerSeen = false;
    QUrl m_redirect; // where the reply under way sends us; empty: nowhere
    int m_redirects = 0;
    QByteArray m_body;
    qsizetype m_taken = 0; // bytes of m_body that were handed out
    qint64 m_received = 0; // bytes of the reply under way
};

#endif
