// boardd/CHttpServer.cpp
// Serving connections, and carrying requests to the router and answers back.

#include "boardd/CHttpServer.h"

#include "boardd/Limits.h"
#include "boardd/MessageHtml.h"

#include <QThreadPool>

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

// Names of our own that carry something from the reading of the header to the answering. A visitor's are thrown away.
constexpr auto FormTypeHeader = "Tavora-Form-Type";
constexpr auto FaultHeader = "Tavora-Fault";

// The oldest requests are forgotten: a server that runs for months must not grow.
constexpr qsizetype MaxRequestsKept = 20000;

/// The library's own pool has threads with the system's stack; its pattern matching recurses once per character of a header.
class CTaskQueue final : public httplib::TaskQueue
{
public:
    CTaskQueue()
    {
        m_pool.setMaxThreadCount(Limits::Connections);
        m_pool.setStackSize(32 * 1024 * 1024);
        m_pool.setExpiryTimeout(10000);
    }
    void enqueue(std::function<void()> Task) override { m_pool.start(std::move(Task)); }
    void shutdown() override { m_pool.waitForDone(); }

private:
    QThreadPool m_pool;
};

/// SO_REUSEADDR only. The library would also share the port with another server that is already running.
void SetSocketOptions(socket_t Socket)
{
    const int yes = 1;
    ::setsockopt(Socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

/// Why Address and Port cannot be bound, asked of the system once more because the library does not tell.
QString BindFault(const QString& Address, quint16 Port)
{
    sockaddr_in wanted{};
    wanted.sin_family = AF_INET;
    wanted.sin_port = htons(Port);
    if (::inet_pton(AF_INET, Address.toLatin1().constData(), &wanted.sin_addr) != 1)
        return u"アドレス %1 で待ち受けることはできません。"_s.arg(Address);
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    SetSocketOptions(probe);
    const int failed = ::bind(probe, reinterpret_cast<const sockaddr*>(&wanted), sizeof wanted) == 0 ? EADDRINUSE : errno;
    ::close(probe);
    if (failed == EADDRINUSE)
        return u"ポート %1 は、すでに別のプログラムが使っています。--port で別の番号を指定してください。"_s.arg(Port);
    if (failed == EACCES)
        return u"ポート %1 を使う権限がありません。--port で 1024 以上の番号を指定してください。"_s.arg(Port);
    return u"アドレス %1 のポート %2 で待ち受けられません（%3）。"_s.arg(
        Address, QString::number(Port), QString::fromLocal8Bit(std::strerror(failed)));
}

/// The Host header goes into the cookie's name, so only what a host can be made of is let through.
QByteArray SafeHost(const std::string& Host, quint16 Port)
{
    const bool harmless = !Host.empty() && Host.size() <= 255 && std::all_of(Host.begin(), Host.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || std::strchr(".-:[]_", c);
    });
    // strchr finds the closing NUL too.
    if (harmless && Host.find('\0') == std::string::npos)
        return QByteArray::fromStdString(Host);
    return "localhost:" + QByteArray::number(Port);
}

QByteArray PathOf(const std::string& Target)
{
    return QByteArray::fromPercentEncoding(QByteArray::fromStdString(Target.substr(0, Target.find('?'))));
}

CFields QueryOf(const std::string& Target)
{
    const size_t mark = Target.find('?');
    return mark == std::string::npos ? CFields() : CFields::FromUrlEncoded(QByteArrayView(Target).sliced(
                                                       static_cast<qsizetype>(mark + 1)));
}

void SendHalf(httplib::Response& Response, const CReply& Reply)
{
    const std::string half = Reply.Body.first(Reply.Body.size() / 2).toStdString();
    Response.set_content_provider(static_cast<size_t>(Reply.Body.size()), Reply.ContentType.toStdString(),
                                  [half](size_t offset, size_t, httplib::DataSink& sink) {
                                      if (offset == 0 && !half.empty())
                                          sink.write(half.data(), half.size());
                                      return false;
                                  });
}

void Fill(const CReply& Reply, httplib::Response& Response)
{
    Response.status = Reply.Status;
    if (!Reply.SetCookie.isEmpty())
        Response.set_header("Set-Cookie", Reply.SetCookie.toStdString());
    Response.set_header("Cache-Control", Reply.MayKeep ? "max-age=86400" : "no-store");
    Response.set_header("X-Content-Type-Options", "nosniff");
    if (Reply.CutInHalf)
        SendHalf(Response, Reply);
    else
        Response.set_content(Reply.Body.toStdString(), Reply.ContentType.toStdString());
}

} // namespace

CHttpServer::CHttpServer(CRouter& Router, CFaultPlan& Faults, int DelayMs)
    : m_router(Router)
    , m_faults(Faults)
    , m_delayMs(DelayMs)
{
    new_task_queue = [] { return new CTaskQueue; };
    set_socket_options(SetSocketOptions);
    set_tcp_nodelay(true);
    set_keep_alive_max_count(Limits::RequestsPerConnection);
    set_keep_alive_timeout(Limits::IdleSeconds);
    set_payload_max_length(static_cast<size_t>(Limits::FormBytes));
    // Everything without a body is answered here, before the library matches the path against its patterns.
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (request.method == "POST")
            return HandlerResponse::Unhandled;
        Answer(request, response);
        return HandlerResponse::Handled;
    });
    Post("/", [this](const httplib::Request& request, httplib::Response& response) { Answer(request, response); });
}

bool CHttpServer::Bind(const QString& Address, quint16 Port)
{
    const std::string address = Address.toStdString();
    errno = 0;
    const int bound = Port == 0 ? bind_to_any_port(address) : bind_to_port(address, Port) ? Port : -1;
    if (bound <= 0)
        m_error = BindFault(Address, Port);
    m_port = static_cast<quint16>(std::max(0, bound));
    return bound > 0;
}

void CHttpServer::Run()
{
    listen_after_bind();
}

void CHttpServer::Shut()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        for (const socket_t socket : m_sockets)
            ::shutdown(socket, SHUT_RDWR);
    }
    m_ending.notify_all();
    stop();
}

QByteArrayList CHttpServer::Requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void CHttpServer::ClearRequests()
{
    const std::lock_guard lock(m_mutex);
    m_requests.clear();
}

bool CHttpServer::Open(socket_t Socket)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isEnding)
        m_sockets.insert(Socket);
    return !m_isEnding;
}

void CHttpServer::Forget(socket_t Socket)
{
    // Closed under the lock: Shut() must never reach a socket whose number has been given to someone else.
    const std::lock_guard lock(m_mutex);
    m_sockets.erase(Socket);
    ::shutdown(Socket, SHUT_RDWR);
    ::close(Socket);
}

bool CHttpServer::process_and_close_socket(socket_t Socket)
{
    if (Open(Socket)) {
        CConnection connection(Socket);
        Serve(connection);
    }
    Forget(Socket);
    return true;
}

void CHttpServer::Serve(CConnection& Connection)
{
    for (int served = 1; served <= Limits::RequestsPerConnection; ++served) {
        if (!Connection.WaitForRequest(Limits::IdleSeconds))
            return;
        Connection.BeginRequest();
        bool closed = false;
        bool understood = false;
        const bool answered = process_request(Connection, served == Limits::RequestsPerConnection, closed,
                                              [&](httplib::Request& request) {
                                                  understood = true;
                                                  Prepare(Connection, request);
                                              });
        // After a request that made no sense nobody knows where the next one begins.
        if (!answered || !understood || closed || Connection.IsSpent())
            return;
    }
}

void CHttpServer::Prepare(CConnection& Connection, httplib::Request& Request)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_requests.size() >= MaxRequestsKept)
            m_requests.removeFirst();
        m_requests.append(QByteArray::fromStdString(Request.method + ' ' + Request.target));
    }
    const std::string type = Request.get_header_value("Content-Type");
    // Compressing for a loopback connection only costs; parts of pages are of no use and many ranges of one are an attack.
    // Without its type the library hands a form over as it came: its own readers stop at 8 KiB or match patterns against it.
    for (const char* name : {"Accept-Encoding", "Range", "Content-Type", FormTypeHeader, FaultHeader})
        Request.headers.erase(name);
    Request.ranges.clear();
    const bool hasBody = Request.has_header("Content-Length") || Request.has_header("Transfer-Encoding");
    if (Request.method == "POST") {
        Request.set_header(FormTypeHeader, type);
        Request.path.assign(1, '/'); // assigning the literal makes GCC 12 see a copy of a size that cannot be
    } else if (hasBody) {
        Connection.Spend(); // nobody reads that body, so the next request could not be found
    }
    PlayBeforehand(Connection, Request);
}

void CHttpServer::PlayBeforehand(CConnection& Connection, httplib::Request& Request)
{
    if (!CRouter::IsLogRequest(PathOf(Request.target), QueryOf(Request.target)))
        return;
    if (m_delayMs > 0) {
        std::unique_lock lock(m_mutex);
        m_ending.wait_for(lock, std::chrono::milliseconds(m_delayMs), [this] { return m_isEnding; });
    }
    const FaultKind fault = m_faults.Next();
    if (fault == FaultKind::Silent)
        Connection.WaitUntilGone();
    if (fault == FaultKind::Silent || fault == FaultKind::Close)
        Connection.HangUp();
    Request.set_header(FaultHeader, std::to_string(static_cast<int>(fault)));
}

CSiteRequest CHttpServer::SiteRequest(const httplib::Request& Request) const
{
    CSiteRequest request;
    request.IsPost = Request.method == "POST";
    request.Path = PathOf(Request.target);
    request.Query = QueryOf(Request.target);
    if (request.IsPost)
        request.Form = CFields::FromForm(Request.body, QByteArray::fromStdString(Request.get_header_value(FormTypeHeader)));
    request.Host = SafeHost(Request.get_header_value("Host"), m_port);
    request.Cookie = QByteArray::fromStdString(Request.get_header_value("Cookie"));
    request.Fault = static_cast<FaultKind>(QByteArray::fromStdString(Request.get_header_value(FaultHeader)).toInt());
    return request;
}

void CHttpServer::Answer(const httplib::Request& Request, httplib::Response& Response)
{
    if (Request.method == "GET" || Request.method == "HEAD" || Request.method == "POST") {
        Fill(m_router.Answer(SiteRequest(Request)), Response);
        return;
    }
    CReply refusal;
    refusal.Status = 405;
    refusal.Body = mdlMessageHtml::ErrorPage(u"その操作はできません"_s, u"GET と POST だけを受け付けます。"_s);
    Fill(refusal, Response);
}
