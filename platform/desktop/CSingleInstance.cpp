// platform/desktop/CSingleInstance.cpp
// One running program per program file and user; a second start wakes the first.

#include "platform/desktop/CSingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Request[] = "activate\n";
constexpr char Answer[] = "ok\n";
constexpr int MaxRequestBytes = 64;
/// Connecting to a socket of this machine takes no time: there is a listener or there is none.
constexpr int ConnectMs = 1000;

/// A socket name that fits the system's limit (107 bytes) whatever the program's path is.
QString SocketPath(const QString& ProgramPath)
{
    const QFileInfo file(ProgramPath);
    const QString real = file.canonicalFilePath();
    const QString user = QDir::homePath();
    const QByteArray key = (user + u'\n' + (real.isEmpty() ? file.absoluteFilePath() : real)).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(24);
    const QString name = u"tavora-"_s + QString::fromLatin1(hash);
#ifdef Q_OS_WIN
    return name;
#else
    // The runtime folder is the user's alone; in the common temporary folder anybody could take the name first.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return (folder.isEmpty() ? QDir::tempPath() : folder) + u'/' + name;
#endif
}
} // namespace

CSingleInstance::CSingleInstance(const QString& ProgramPath)
    : m_socketPath(SocketPath(ProgramPath))
{}

CSingleInstance::~CSingleInstance() = default;

bool CSingleInstance::ActivatePrevInstance()
{
    // Two starts at the same moment must not both find nobody and remove each other's socket.
#ifdef Q_OS_WIN
    QLockFile lock(QDir::tempPath() + u'/' + m_socketPath + u".lock"_s);
#else
    QLockFile lock(m_socketPath + u".lock"_s);
#endif
    lock.tryLock(HandOverMs);
    if (TellRunningOne())
        return true;
    Listen();
    return false;
}

bool CSingleInstance::TellRunningOne() const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(ConnectMs))
        return false;
    socket.write(Request);
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < HandOverMs && !socket.canReadLine()) {
        const bool alive = socket.state() == QLocalSocket::ConnectedState;
        if (!alive || !socket.waitForReadyRead(static_cast<int>(HandOverMs - since.elapsed())))
            break;
    }
    // One that closed without a word was about to end; one that is merely slow is running.
    return socket.canReadLine() || socket.state() == QLocalSocket::ConnectedState;
}

void CSingleInstance::Listen()
{
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &CSingleInstance::OnConnection);
    QLocalServer::removeServer(m_socketPath); // nobody answered there: a crash left it behind
    m_server->listen(m_socketPath);           // where that fails the program runs all the same
}

void CSingleInstance::OnConnection()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (!socket->canReadLine()) {
                if (socket->bytesAvailable() > MaxRequestBytes)
                    socket->abort();
                return;
            }
            const bool understood = socket->readLine(MaxRequestBytes) == Request;
            if (understood)
                socket->write(Answer);
            socket->disconnectFromServer();
            if (understood)
                Q_EMIT ActivateRequested();
        });
    }
}
