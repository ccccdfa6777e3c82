// board/CPageFetcher.cpp
// Fetches one log page and turns it into text, telling the stages meanwhile.

#include "board/CPageFetcher.h"

#include "board/CRunState.h"
#include "board/ErrorLine.h"
#include "platform/text/Codepage932.h"
#include "platform/text/Like.h"

#include <QEventLoop>
#include <QLocale>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
/// Whether every line end is CR LF already, as boards send it.
bool HasPlainLineEnds(QStringView Text)
{
    for (qsizetype place = 0; place < Text.size(); ++place) {
        const QChar unit = Text[place];
        if (unit == u'\n')
            return false;
        if (unit == u'\r' && (++place == Text.size() || Text[place] != u'\n'))
            return false;
    }
    return true;
}
} // namespace

CPageFetcher::CPageFetcher(CCookieStore& Cookies, CRunState& State, QObject* Parent)
    : QObject(Parent)
    , m_state(State)
    , m_transfer(Cookies)
{
    connect(&m_transfer, &CTransfer::StateChanged, this, &CPageFetcher::OnStateChanged);
}

void CPageFetcher::SetTimeout(qint32 NewTimeout)
{
    m_timeout = qMax(0, NewTimeout);
    m_transfer.SetTimeout(m_timeout);
}

void CPageFetcher::Fetch(const QString& Address)
{
    m_address = Address;
    m_text.clear();
    if (m_transfer.Execute(QUrl(Address)))
        return Wait();
    const QString reason = mdlErrorLine::Numbered(m_transfer.ResponseCode(), m_transfer.ResponseInfo());
    m_transfer.Cancel();
    Fail(reason);
}

void CPageFetcher::Cancel() { m_transfer.Cancel(); }

void CPageFetcher::Wait()
{
    QEventLoop loop;
    QTimer watch;
    watch.setInterval(WaitMs);
    connect(&watch, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(&m_transfer, &CTransfer::StateChanged, &loop, &QEventLoop::quit);
    watch.start();
    while (m_transfer.StillExecuting() && !m_state.IsError) {
        if (loop.exec() == 0)
            continue;
        // The whole program is being left: no loop waits any more, so waiting on would be spinning.
        m_state.IsCancel = true;
        break;
    }
    m_transfer.Cancel(); // does nothing once it is over
}

void CPageFetcher::OnStateChanged(CTransfer::State NewState)
{
    switch (NewState) {
    case CTransfer::State::ResolvingHost:
        Q_EMIT ChangeState(m_address + u" を探しています。"_s, false, false);
        break;
    case CTransfer::State::Connecting:
        Q_EMIT ChangeState(m_address + u" に接続中です。"_s, false, false);
        break;
    case CTransfer::State::Requesting:
        Q_EMIT ChangeState(QString::number(m_state.PageIndex + 1) + u"番目のログを要求しています。"_s, false, false);
        break;
    case CTransfer::State::Error:
        if (m_transfer.ResponseCode() != CTransfer::Cancelled)
            Fail(u"受信エラー("_s + QString::number(m_transfer.ResponseCode()) + u"):"_s + m_transfer.ResponseInfo());
        break;
    case CTransfer::State::ResponseCompleted:
        ReadReply();
        break;
    default:
        break;
    }
}

void CPageFetcher::ReadReply()
{
    const QByteArray header = m_transfer.Header();
    const qsizetype end = header.indexOf("\r\n");
    const QString statusLine = QString::fromLatin1(end < 0 ? header : header.first(end));
    if (text::Like(statusLine, u"HTTP/?.? 200*"))
        m_text = Decode(ReadBody());
    else
        Fail(u"Error:"_s + statusLine);
}

QByteArray CPageFetcher::ReadBody()
{
    const QLocale locale(QLocale::Japanese, QLocale::Japan);
    QByteArray body;
    for (QByteArray chunk = m_transfer.GetChunk(ChunkSize); !chunk.isEmpty(); chunk = m_transfer.GetChunk(ChunkSize)) {
        body += chunk;
        Q_EMIT ChangeState(locale.toString(body.size()) + u"バイト受信しました。"_s, false, false);
    }
    return body;
}

QString CPageFetcher::Decode(QByteArrayView Bytes)
{
    QString text = text::From932(Bytes);
    if (HasPlainLineEnds(text))
        return text;
    text.replace(u"\r\n"_s, u"\n"_s);
    text.replace(u'\r', u'\n');
    return text.replace(u"\n"_s, u"\r\n"_s);
}

void CPageFetcher::Fail(const QString& Message)
{
    m_state.IsError = true;
    Q_EMIT ChangeState(Message, true, true);
}
