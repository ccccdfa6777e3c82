// board/CPageFetcher.h
// Fetches one log page and turns it into text, telling the stages meanwhile.

#ifndef BOARD_CPAGEFETCHER_H
#define BOARD_CPAGEFETCHER_H

#include "platform/net/CTransfer.h"

#include <QByteArrayView>
#include <QObject>
#include <QString>

class CCookieStore;
struct CRunState;

/// The transfer of a receive. Its error flag and page index are those of the run.
class CPageFetcher : public QObject
{
    Q_OBJECT

public:
    CPageFetcher(CCookieStore& Cookies, CRunState& State, QObject* Parent = nullptr);

    qint32 Timeout() const { return m_timeout; }
    /// Seconds without progress until a request is given up; 0 is never.
    void SetTimeout(qint32 NewTimeout);

    /// Asks for Address and waits in the event loop until the reply is there, an error ends it or Cancel is called.
    /// An error has been told when this returns, and the state's IsError is set.
    void Fetch(const QString& Address);
    void Cancel();

    /// The page with CR LF line ends; empty after an error or a cancel.
    const QString& Text() const { return m_text; }

    /// Bytes as text: code page 932, every line end, however written, as CR LF.
    static QString Decode(QByteArrayView Bytes);

Q_SIGNALS:
    void ChangeState(const QString& StateMessage, bool IsError, bool AddLog);

private:
    /// Longest time until the wait looks by itself whether the transfer is over.
    static constexpr int WaitMs = 300;
    /// Bytes of one progress text.
    static constexpr int ChunkSize = 2048;

    void Wait();
    void OnStateChanged(CTransfer::State NewState);
    void ReadReply();
    QByteArray ReadBody();
    void Fail(const QString& Message);

    CRunState& m_state;
    CTransfer m_transfer;
    qint32 m_timeout = 60;
    QString m_address;
    QString m_text;
};

#endif // BOARD_CPAGEFETCHER_H
