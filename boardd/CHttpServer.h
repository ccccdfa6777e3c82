// boardd/CHttpServer.h
// The HTTP side of the board server: the library's server with our connections, limits and faults.

#ifndef BOARDD_CHTTPSERVER_H
#define BOARDD_CHTTPSERVER_H

#include "boardd/CConnection.h"
#include "boardd/CRouter.h"
#include "boardd/Faults.h"

#include <QByteArrayList>

#include <condition_variable>
#include <mutex>
#include <set>

/// What the two threads sides share while the server runs: the log of requests, the faults, the end.
class CHttpServer final : public httplib::Server
{
public:
    /// Router and Faults stay the caller's and must outlive this object. DelayMs is waited before each log page.
    CHttpServer(CRouter& Router, CFaultPlan& Faults, int DelayMs);

    /// Binds; false with Error() set, in Japanese. Port 0 takes any free one.
    [[nodiscard]] bool Bind(const QString& Address, quint16 Port);
    QString Error() const { return m_error; }
    quint16 Port() const { return m_port; }

    /// Serves until Shut() is called. Blocks.
    void Run();
    /// Ends Run(): no new connections, the open ones are shut. To be called once Run() is on its way.
    void Shut();

    QByteArrayList Requests() const;
    void ClearRequests();

private:
    bool process_and_close_socket(socket_t Socket) override;

    void Serve(CConnection& Connection);
    void Prepare(CConnection& Connection, httplib::Request& Request);
    void PlayBeforehand(CConnection& Connection, httplib::Request& Request);
    void Answer(const httplib::Request& Request, httplib::Response& Response);
    CSiteRequest SiteRequest(const httplib::Request& Request) const;
    bool Open(socket_t Socket);
    void Forget(socket_t Socket);

    CRouter& m_router;
    CFaultPlan& m_faults;
    int m_delayMs;
    quint16 m_port = 0;
    QString m_error;

    mutable std::mutex m_mutex;
    std::condition_variable m_ending;
    bool m_isEnding = false;
    std::set<socket_t> m_sockets;
    QByteArrayList m_requests;
};

#endif
