// load/CBoardPageView.h
// Shows the web page of a board, with as little of a browser as that takes.

#ifndef LOAD_CBOARDPAGEVIEW_H
#define LOAD_CBOARDPAGEVIEW_H

#include "platform/net/CTransfer.h"

#include <QByteArray>
#include <QTextBrowser>
#include <QUrl>

#include <set>
#include <vector>

class CCookieStore;
class Desktop;

/// One page at a time, fetched with the visitor's cookies.
///
/// Only the page itself and its images from the same host are loaded, nothing else and no local file; there are no
/// scripts. A link that is clicked opens in the browser. Everything that comes from the net is bounded: a page over
/// MaxPageBytes or nested too deep is not shown, and images over their number or size leave a gap.
class CBoardPageView : public QTextBrowser
{
    Q_OBJECT

public:
    static constexpr qsizetype MaxPageBytes = 256 * 1024;
    /// Tables within each other; each level doubles the time that the layout takes.
    static constexpr int MaxTableNesting = 8;
    /// Other elements within each other, those left open too; the time goes with the square of it.
    static constexpr int MaxNesting = 2000;
    /// Letters without a place to break the line; likewise.
    static constexpr int MaxWord = 5000;
    static constexpr std::size_t MaxImages = 64;
    static constexpr int MaxImagePixels = 4096 * 4096;

    CBoardPageView(Desktop& Shell, CCookieStore& Cookies, QWidget* Parent = nullptr);

    void SetTimeout(int Seconds);

    /// Fetches Address and shows it. PageCompleted follows unless the server refuses; then the page says why.
    void OpenPage(const QUrl& Address);
    /// Shows a page that was fetched before; its images and links are those of Address. No signal.
    void ShowCached(const QByteArray& Page, const QUrl& Address);

    /// The page as it came; empty for a cached one and before PageCompleted.
    const QByteArray& Page() const { return m_page; }
    /// The address that it came from, after redirects.
    QUrl PageAddress() const { return m_address; }

    /// Pages are code page 932; one that cannot be that and is UTF-8 is read as such.
    static QString Decode(const QByteArray& Page);
    /// Whether Html can be laid out in reasonable time.
    static bool IsSimple(const QString& Html);

    /// Never reads a file; asks for an image where that is allowed.
    QVariant loadResource(int Type, const QUrl& Name) override;

Q_SIGNALS:
    /// A whole page with status 200 has come and is shown.
    void PageCompleted();

private:
    enum class Loading { Nothing, Page, Image };

    void OnStateChanged(CTransfer::State NewState);
    void OnCompleted();
    QByteArray ReadBody();
    void ShowPage(const QByteArray& Page, const QUrl& Address);
    void ShowNotice(const QString& Reason);
    bool IsOwnImage(const QUrl& Name) const;
    void ScheduleImages();
    void FetchNextImage();
    void AddImage(const QByteArray& Data);
    void OpenLink(const QUrl& Link);

    Desktop& m_shell;
    CTransfer m_transfer;
    Loading m_loading = Loading::Nothing;
    QByteArray m_page;
    QUrl m_address;
    std::set<QUrl> m_asked;         // images of this page, so that each is asked for once
    std::vector<QUrl> m_waiting;    // those not fetched yet, the next one last
    bool m_isScheduled = false;     // FetchNextImage is on its way
};

#endif // LOAD_CBOARDPAGEVIEW_H
