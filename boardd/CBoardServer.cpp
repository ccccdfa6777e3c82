// boardd/CBoardServer.cpp
// Putting the boards and the HTTP server together and giving them a thread.

#include "boardd/CBoardServer.h"

#include "boardd/CHttpServer.h"

#include <thread>

using namespace Qt::StringLiterals;

class CBoardServer::Impl
{
public:
    explicit Impl(CBoardServerOptions options)
        : Options(std::move(options))
    {
        Faults.Set(Options.Fault, Options.FaultFrom);
    }

    CBoardServerOptions Options;
    CFaultPlan Faults;
    std::unique_ptr<CCommunity> Community;
    std::unique_ptr<CRouter> Router;
    std::unique_ptr<CHttpServer> Http;
    std::thread Thread;
    QString Error;
    QStringList Warnings;
    QByteArrayList EarlierRequests; // of servers that were stopped
};

CBoardServer::CBoardServer(CBoardServerOptions Options)
    : m_impl(std::make_unique<Impl>(std::move(Options)))
{
}

CBoardServer::~CBoardServer()
{
    Stop();
}

bool CBoardServer::Start()
{
    Stop();
    Impl& impl = *m_impl;
    impl.Community = std::make_unique<CCommunity>();
    const bool loaded = impl.Community->Load(impl.Options.DataFolder, impl.Options.Messages);
    impl.Error = impl.Community->Error();
    impl.Warnings = impl.Community->Warnings();
    impl.Router = std::make_unique<CRouter>(*impl.Community);
    auto http = std::make_unique<CHttpServer>(*impl.Router, impl.Faults, impl.Options.DelayMs);
    if (!loaded || !http->Bind(impl.Options.BindAddress, impl.Options.Port)) {
        impl.Error = loaded ? http->Error() : impl.Error;
        impl.Router.reset();
        impl.Community.reset();
        return false;
    }
    impl.Http = std::move(http);
    impl.Thread = std::thread([server = impl.Http.get()] { server->Run(); });
    // The port takes connections since it was bound; this only makes sure that Stop() finds a server to stop.
    while (!impl.Http->is_running())
        std::this_thread::yield();
    return true;
}

void CBoardServer::Stop()
{
    Impl& impl = *m_impl;
    if (!impl.Http)
        return;
    impl.Http->Shut();
    impl.Thread.join();
    impl.EarlierRequests += impl.Http->Requests();
    impl.Http.reset();
    impl.Router.reset();
    impl.Community.reset();
}

quint16 CBoardServer::Port() const
{
    return m_impl->Http ? m_impl->Http->Port() : quint16(0);
}

QUrl CBoardServer::Url(const QString& PathAndQuery) const
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(Port()) + PathAndQuery);
}

QString CBoardServer::ErrorText() const
{
    return m_impl->Error;
}

QStringList CBoardServer::Warnings() const
{
    return m_impl->Warnings;
}

QByteArrayList CBoardServer::Requests() const
{
    QByteArrayList requests = m_impl->EarlierRequests;
    return m_impl->Http ? requests + m_impl->Http->Requests() : requests;
}

void CBoardServer::ClearRequests()
{
    m_impl->EarlierRequests.clear();
    if (m_impl->Http)
        m_impl->Http->ClearRequests();
}

void CBoardServer::SetFault(FaultKind Kind, int From)
{
    m_impl->Faults.Set(Kind, From);
}
