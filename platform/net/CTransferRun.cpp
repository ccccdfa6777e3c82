// platform/net/CTransferRun.cpp
// The inside of a transfer: name, connection, request, reply, redirects, end.

#include "platform/net/CTransferRun.h"

#include "platform/net/CCookieStore.h"
#include "platform/net/HttpReply.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxyFactory>

using namespace Qt::StringLiterals;

namespace
{
/// A redirect's own page is nobody's to read; this much of it is let through so that the connection can be kept.
constexpr qint64 MaxRedirectBody = 64 * 1024;

bool IsWebAddress(const QUrl& Url)
{
    return Url.isValid() && !Url.host().isEmpty() && (Url.scheme() == u"http" || Url.scheme() == u"https");
}

QString OriginOf(const QUrl& Url)
{
    return Url.scheme() + u"://"_s + Url.host() + u':' + QString::number(Url.port(-1));
}

/// The system's proxies, but never for this machine's own server: a proxy elsewhere cannot reach it.
class CProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& Query) override
    {
        const QString host = Query.peerHostName();
        if (host.compare(u"localhost", Qt::CaseInsensitive) == 0 || QHostAddress(host).isLoopback())
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(Query);
    }

    static bool IsDirect(const QUrl& Url)
    {
        const QList<QNetworkProxy> proxies = CProxies().queryProxy(QNetworkProxyQuery(Url));
        return proxies.isEmpty() || proxies.first().type() == QNetworkProxy::NoProxy;
    }
};
} // namespace

CTransfer::CRun::CRun(CTransfer& Owner, CCookieStore& Cookies)
    : m_owner(Owner)
    , m_cookies(Cookies)
{
    m_manager.setProxyFactory(new CProxies); // the manager owns it
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { Fail(TimedOut); });
}

CTransfer::CRun::~CRun()
{
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(m_lookup);
    DropReply();
}

bool CTransfer::CRun::Start(const QUrl& Url, const QByteArray& Method)
{
    ++m_number;
    Asked = Url;
    Current = Url;
    Code = 0;
    Info.clear();
    HeaderBlock.clear();
    m_method = Method;
    m_redirects = 0;
    m_body.clear();
    m_taken = 0;
    if (!IsWebAddress(Url)) {
        Code = BadUrl;
        Info = mdlHttpReply::TextOf(BadUrl);
        return false;
    }
    m_running = true;
    // Stages are told from the event loop only: who called must first get the answer that the request has started.
    QMetaObject::invokeMethod(
        this,
        [this, number = m_number] {
            if (m_running && number == m_number)
                Begin();
        },
        Qt::QueuedConnection);
    return true;
}

/// Tells the owner's listeners of a stage; false when this run is over after that.
bool CTransfer::CRun::Enter(State Stage)
{
    const QPointer<CRun> self(this);
    const int number = m_number;
    Q_EMIT m_owner.StateChanged(Stage);
    return self && m_running && m_number == number;
}

void CTransfer::CRun::End(State Stage)
{
    m_timer.stop();
    m_running = false;
    Q_EMIT m_owner.StateChanged(Stage);
}

void CTransfer::CRun::Progress()
{
    if (TimeoutMs > 0)
        m_timer.start(TimeoutMs);
    else
        m_timer.stop();
}

void CTransfer::CRun::DropReply()
{
    if (!m_reply)
        return;
    QNetworkReply* reply = m_reply;
    m_reply = nullptr;
    reply->disconnect(this);
    if (!reply->isFinished())
        reply->abort();
    reply->deleteLater();
}

void CTransfer::CRun::Fail(int FailureCode, const QString& Text)
{
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(m_lookup);
    m_lookup = -1;
    m_keptFor.clear();
    DropReply();
    Code = FailureCode;
    Info = Text.isEmpty() ? mdlHttpReply::TextOf(FailureCode) : Text;
    End(State::Error);
}

void CTransfer::CRun::Begin()
{
    Progress();
    if (m_keptFor == OriginOf(Current)) {
        if (Enter(State::Requesting))
            Send();
    } else if (Enter(State::ResolvingHost)) {
        Resolve();
    }
}

/// Looks the name up before the library does (which then finds it in its cache), so that an unknown name is told
/// from a dead server. Behind a proxy the name is the proxy's business.
void CTransfer::CRun::Resolve()
{
    if (!QHostAddress(Current.host()).isNull() || !CProxies::IsDirect(Current)) {
        if (Enter(State::HostResolved))
            Send();
        return;
    }
    m_lookup = QHostInfo::lookupHost(Current.host(), this, [this](const QHostInfo& found) { OnResolved(found); });
}

void CTransfer::CRun::OnResolved(const QHostInfo& Found)
{
    if (Found.lookupId() != m_lookup) // of a run that was cancelled
        return;
    m_lookup = -1;
    if (Found.error() != QHostInfo::NoError || Found.addresses().isEmpty()) {
        Fail(NameNotResolved);
        return;
    }
    Progress();
    if (Enter(State::HostResolved))
        Send();
}

void CTransfer::CRun::Send()
{
    m_connecting = false;
    m_headerSeen = false;
    m_redirect.clear();
    m_received = 0;
    m_reply = m_manager.sendCustomRequest(MakeRequest(), m_method);
    Watch();
}

QNetworkRequest CTransfer::CRun::MakeRequest() const
{
    QNetworkRequest request(Current);
    // Redirects are followed here, not in the library: it would carry our Cookie line to another host.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // The library's own cookies are text with rules for names; a board's cookie is named with an address.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    const QByteArray cookies = m_cookies.Get(Current);
    if (!cookies.isEmpty())
        request.setRawHeader("Cookie", cookies);
    request.setRawHeader("Accept-Encoding", "identity"); // a packed body could unpack to anything
    request.setRawHeader("User-Agent", "Tavora");
    return request;
}

void CTransfer::CRun::Watch()
{
    QNetworkReply* reply = m_reply;
    connect(reply, &QNetworkReply::socketStartedConnecting, this, &CRun::OnConnecting);
    connect(reply, &QNetworkReply::requestSent, this, &CRun::OnRequestSent);
    connect(reply, &QNetworkReply::metaDataChanged, this, &CRun::OnHeader);
    connect(reply, &QNetworkReply::readyRead, this, &CRun::OnData);
    connect(reply, &QNetworkReply::finished, this, &CRun::OnFinished);
}

void CTransfer::CRun::OnConnecting()
{
    if (m_connecting)
        return;
    m_connecting = true;
    Progress();
    Enter(State::Connecting);
}

void CTransfer::CRun::OnRequestSent()
{
    Progress();
    if (m_connecting) {
        m_connecting = false;
        if (!Enter(State::Connected) || !Enter(State::Requesting))
            return;
    }
    Enter(State::RequestSent);
}

void CTransfer::CRun::OnHeader()
{
    if (m_headerSeen || mdlHttpReply::StatusOf(*m_reply) == 0)
        return;
    m_headerSeen = true;
    Progress();
    KeepCookies();
    if (const auto target = mdlHttpReply::RedirectTarget(*m_reply)) {
        m_redirect = *target;
        return;
    }
    HeaderBlock = mdlHttpReply::HeaderBlock(*m_reply);
    const auto promised = mdlHttpReply::PromisedLength(*m_reply);
    if (mdlHttpReply::IsEncoded(*m_reply) || promised == -1)
        Fail(BadResponse);
    else if (promised > MaxBodyBytes)
        Fail(BadResponse, u"サーバーの応答が大きすぎます。"_s);
    else
        Enter(State::ReceivingResponse);
}

void CTransfer::CRun::OnData()
{
    const QByteArray data = m_reply->readAll();
    if (data.isEmpty())
        return;
    Progress();
    m_received += data.size();
    if (!m_redirect.isEmpty()) {
        if (m_received > MaxRedirectBody)
            Follow();
        return;
    }
    if (m_received > MaxBodyBytes) {
        Fail(BadResponse, u"サーバーの応答が大きすぎます。"_s);
        return;
    }
    m_body += data;
    Enter(State::ResponseReceived);
}

void CTransfer::CRun::OnFinished()
{
    const int number = m_number;
    const QPointer<CRun> self(this);
    const auto stands = [&] { return self && m_running && m_number == number && m_reply; };
    if (!m_headerSeen)
        OnHeader();
    if (stands())
        OnData();
    if (!stands())
        return;
    const QNetworkReply::NetworkError error = m_reply->error();
    if (!m_headerSeen || mdlHttpReply::IsConnectionFault(error))
        Fail(error == QNetworkReply::NoError ? BadResponse : mdlHttpReply::CodeOf(error));
    else if (!m_redirect.isEmpty())
        Follow();
    else if (IsCutShort())
        Fail(ConnectionAborted);
    else
        Complete();
}

/// The library takes a body that ends early for whole when the server closes in an orderly way. Of a body in chunks it
/// does not tell at all whether the last one came; the reader of the page has to do without.
bool CTransfer::CRun::IsCutShort() const
{
    const auto promised = mdlHttpReply::PromisedLength(*m_reply);
    return promised && m_received < *promised && !mdlHttpReply::HasNoBody(m_method, mdlHttpReply::StatusOf(*m_reply));
}

void CTransfer::CRun::KeepCookies()
{
    const QByteArrayList lines = m_reply->rawHeader("Set-Cookie").split('\n');
    for (const QByteArray& line : lines) {
        if (!line.isEmpty())
            m_cookies.SetFromHeader(Current, line);
    }
}

void CTransfer::CRun::Follow()
{
    const QUrl target = m_redirect;
    const bool fallsBack = Current.scheme() == u"https" && target.scheme() != u"https";
    const int status = mdlHttpReply::StatusOf(*m_reply);
    DropReply();
    if (++m_redirects > MaxRedirects) {
        Fail(BadResponse, u"サーバーの転送が多すぎます。"_s);
    } else if (!IsWebAddress(target) || fallsBack) {
        Fail(BadResponse, u"サーバーの転送先が正しくありません。"_s);
    } else {
        if (status == 303 && m_method != "HEAD")
            m_method = "GET";
        m_keptFor = OriginOf(Current);
        Current = target;
        Begin();
    }
}

void CTransfer::CRun::Complete()
{
    const bool closes = m_reply->rawHeader("Connection").toLower().contains("close");
    m_keptFor = closes ? QString() : OriginOf(Current);
    DropReply();
    End(State::ResponseCompleted);
}

QByteArray CTransfer::CRun::TakeChunk(int Size)
{
    const QByteArray chunk = m_body.mid(m_taken, qMax(0, Size));
    m_taken += chunk.size();
    if (m_taken == m_body.size()) {
        m_body.clear();
        m_taken = 0;
    }
    return chunk;
}

QByteArray CTransfer::CRun::HeaderValue(const QByteArray& Name) const
{
    const QByteArrayList lines = HeaderBlock.split('\n');
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon >= 0 && line.left(colon).compare(Name, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}
