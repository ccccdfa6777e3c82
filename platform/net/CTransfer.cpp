// platform/net/CTransfer.cpp
// One HTTP request at a time, told in stages, over a connection that is kept for the next one.

#include "platform/net/CTransfer.h"

#include "platform/net/CTransferRun.h"
#include "platform/net/HttpReply.h"

CTransfer::CTransfer(CCookieStore& Cookies, QObject* Parent)
    : QObject(Parent)
    , m_run(std::make_unique<CRun>(*this, Cookies))
{}

CTransfer::~CTransfer() = default;

void CTransfer::SetTimeout(int Seconds) { SetTimeoutMs(qBound(0, Seconds, 2'000'000) * 1000); }
void CTransfer::SetTimeoutMs(int Milliseconds) { m_run->TimeoutMs = qMax(0, Milliseconds); }

bool CTransfer::Execute(const QUrl& Url, const QByteArray& Method)
{
    if (m_run->IsRunning())
        return false;
    return m_run->Start(Url, Method);
}

void CTransfer::Cancel()
{
    if (m_run->IsRunning())
        m_run->Fail(Cancelled);
}

bool CTransfer::StillExecuting() const { return m_run->IsRunning(); }
QUrl CTransfer::Url() const { return m_run->Asked; }
QUrl CTransfer::FinalUrl() const { return m_run->Current; }
int CTransfer::ResponseCode() const { return m_run->Code; }
QString CTransfer::ResponseInfo() const { return m_run->Info; }
QByteArray CTransfer::Header() const { return m_run->HeaderBlock; }
QByteArray CTransfer::HeaderValue(const QByteArray& Name) const { return m_run->HeaderValue(Name); }
QByteArray CTransfer::GetChunk(int Size) { return m_run->TakeChunk(Size); }
