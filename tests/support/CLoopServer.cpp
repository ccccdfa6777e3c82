// tests/support/CLoopServer.cpp
// A web server on 127.0.0.1 that answers byte for byte as a script says, and breaks where it says.

#include "tests/support/CLoopServer.h"

#include <QHash>
#include <QMutex>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <deque>

using namespace Qt::StringLiterals;

CLoopReply CLoopReply::Cut(qint64 Count) const
{
    CLoopReply reply = *this;
    reply.CutAfter = Count;
    return reply;
}

CLoopReply CLoopReply::Closing() const { return Cut(Bytes.size()); }

CLoopReply CLoopReply::Delayed(int Milliseconds) const
{
    CLoopReply reply = *this;
    reply.DelayMs = Milliseconds;
    return reply;
}

CLoopReply CLoopReply::PausedAfter(int Count) const
{
    CLoopReply reply = *this;
    reply.PauseAfter = Count;
    return reply;
}

CLoopReply CLoopReply::InPieces(int Count, int EveryMs) const
{
    CLoopReply reply = *this;
    reply.PieceBytes = Count;
    reply.PieceMs = EveryMs;
    return reply;
}

/// What both threads look at.
struct CLoopServer::CState
{
    QMutex Mutex;
    std::deque<CLoopReply> Script;
    CLoopReply Default = CLoopServer::Page({}, "500 Script over");
    QByteArrayList Requests;
    int Connections = 0;
    quint16 Port = 0; // set before the thread starts to serve

    CLoopReply Next(const QByteArray& Request)
    {
        const QMutexLocker lock(&Mutex);
        Requests << Request;
        if (Script.empty())
            return Default;
        CLoopReply reply = Script.front();
        Script.pop_front();
        return reply;
    }
    template<class Member> Member Copy(Member CState::*What)
    {
        const QMutexLocker lock(&Mutex);
        return this->*What;
    }
};

/// The side that lives on the server's thread.
class CLoopServer::CWorker : public QObject
{
public:
    explicit CWorker(std::shared_ptr<CState> State)
        : m_state(std::move(State))
    {}

    bool Listen()
    {
        m_server = new QTcpServer(this);
        connect(m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = m_server->nextPendingConnection())
                Welcome(socket);
        });
        const bool listening = m_server->listen(QHostAddress::LocalHost, 0);
        m_state->Port = m_server->serverPort();
        return listening;
    }

private:
    void Welcome(QTcpSocket* Socket)
    {
        {
            const QMutexLocker lock(&m_state->Mutex);
            ++m_state->Connections;
        }
        connect(Socket, &QTcpSocket::readyRead, this, [this, Socket] {
            m_pending[Socket] += Socket->readAll();
            while (ServeOne(Socket)) {
            }
        });
        connect(Socket, &QTcpSocket::disconnected, this, [this, Socket] {
            m_pending.remove(Socket);
            Socket->deleteLater();
        });
    }

    /// Answers the first whole request that has come; false when there is none yet.
    bool ServeOne(QTcpSocket* Socket)
    {
        QByteArray& pending = m_pending[Socket];
        const qsizetype headerEnd = pending.indexOf("\r\n\r\n");
        if (headerEnd < 0)
            return false;
        const qsizetype length = headerEnd + 4 + BodyLength(pending.left(headerEnd));
        if (pending.size() < length)
            return false;
        const CLoopReply reply = m_state->Next(pending.left(length));
        pending.remove(0, length);
        if (!reply.Silent)
            QTimer::singleShot(reply.DelayMs, Socket, [Socket, reply] { Send(Socket, reply); });
        return true;
    }

    static qsizetype BodyLength(const QByteArray& Header)
    {
        const QByteArrayList lines = Header.toLower().split('\n');
        for (const QByteArray& line : lines) {
            if (line.startsWith("content-length:"))
                return line.mid(15).trimmed().toLongLong();
        }
        return 0;
    }

    static void Send(QTcpSocket* Socket, const CLoopReply& Reply)
    {
        QByteArray bytes = Reply.PauseAfter >= 0 ? Reply.Bytes.left(Reply.PauseAfter) : Reply.Bytes;
        if (Reply.CutAfter >= 0)
            bytes = bytes.left(Reply.CutAfter);
        SendPiece(Socket, Reply, bytes);
    }

    static void SendPiece(QTcpSocket* Socket, const CLoopReply& Reply, const QByteArray& Rest)
    {
        const qsizetype size = Reply.PieceBytes > 0 ? Reply.PieceBytes : Rest.size();
        Socket->write(Rest.left(size));
        if (size < Rest.size())
            QTimer::singleShot(Reply.PieceMs, Socket, [=] { SendPiece(Socket, Reply, Rest.mid(size)); });
        else if (Reply.CutAfter >= 0)
            Socket->disconnectFromHost(); // after the bytes have gone
    }

    std::shared_ptr<CState> m_state;
    QTcpServer* m_server = nullptr;
    QHash<QTcpSocket*, QByteArray> m_pending;
};

CLoopServer::CLoopServer(std::vector<CLoopReply> Script)
    : m_state(std::make_shared<CState>())
{
    m_state->Script.assign(Script.begin(), Script.end());
    m_worker = new CWorker(m_state);
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
    bool listening = false;
    QMetaObject::invokeMethod(
        m_worker, [this, &listening] { listening = m_worker->Listen(); }, Qt::BlockingQueuedConnection);
    if (!listening)
        qFatal("the test server cannot listen on 127.0.0.1");
}

CLoopServer::~CLoopServer()
{
    m_thread.quit();
    m_thread.wait();
}

CLoopReply CLoopServer::Page(const QByteArray& Body, const QByteArray& Status, const QByteArray& Headers)
{
    return Raw("HTTP/1.1 " + Status + "\r\nContent-Type: text/html\r\nContent-Length: " +
               QByteArray::number(Body.size()) + "\r\n" + Headers + "\r\n" + Body);
}

CLoopReply CLoopServer::Raw(const QByteArray& Bytes)
{
    CLoopReply reply;
    reply.Bytes = Bytes;
    return reply;
}

CLoopReply CLoopServer::Redirect(const QByteArray& Location, const QByteArray& Status)
{
    return Page("<p>moved</p>", Status, "Location: " + Location + "\r\n");
}

CLoopReply CLoopServer::Silence()
{
    CLoopReply reply;
    reply.Silent = true;
    return reply;
}

void CLoopServer::Add(const CLoopReply& Reply)
{
    const QMutexLocker lock(&m_state->Mutex);
    m_state->Script.push_back(Reply);
}

void CLoopServer::SetDefault(const CLoopReply& Reply)
{
    const QMutexLocker lock(&m_state->Mutex);
    m_state->Default = Reply;
}

quint16 CLoopServer::Port() const { return m_state->Port; }
QByteArrayList CLoopServer::RawRequests() const { return m_state->Copy(&CState::Requests); }
int CLoopServer::Connections() const { return m_state->Copy(&CState::Connections); }

QUrl CLoopServer::Url(const QString& PathAndQuery) const
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(Port()) + PathAndQuery);
}

QByteArrayList CLoopServer::Requests() const
{
    QByteArrayList result;
    for (const QByteArray& request : m_state->Copy(&CState::Requests)) {
        const QByteArray line = request.left(request.indexOf("\r\n"));
        result << line.left(line.lastIndexOf(' '));
    }
    return result;
}

QByteArray CLoopServer::RequestHeader(int Index, const QByteArray& Name) const
{
    const QByteArrayList requests = m_state->Copy(&CState::Requests);
    if (Index < 0 || Index >= requests.size())
        return {};
    const QByteArrayList lines = requests[Index].split('\n');
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).compare(Name, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

quint16 CLoopServer::RefusedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    return server.serverPort();
}
