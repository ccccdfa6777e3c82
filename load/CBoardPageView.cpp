// load/CBoardPageView.cpp
// Shows the web page of a board, with as little of a browser as that takes.

#include "load/CBoardPageView.h"

#include "platform/desktop/desktop.h"
#include "platform/text/Codepage932.h"

#include <QBuffer>
#include <QImageReader>
#include <QPalette>
#include <QRegularExpression>
#include <QTextDocument>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr int ChunkSize = 64 * 1024;

/// What stands for an image until it has come, and for good where it may not be fetched.
QImage Gap()
{
    QImage gap(1, 1, QImage::Format_ARGB32);
    gap.fill(Qt::transparent);
    return gap;
}

/// Elements that have no end tag.
bool IsVoid(const QString& Name)
{
    static const std::set<QString> names{u"area"_s, u"base"_s, u"basefont"_s, u"br"_s,   u"col"_s,  u"frame"_s,
                                         u"hr"_s,   u"img"_s,  u"input"_s,    u"link"_s, u"meta"_s, u"param"_s};
    return names.contains(Name);
}

/// A line can break within Japanese text anywhere, so only other characters make a word.
bool HasEndlessWord(const QString& Html)
{
    static const QRegularExpression word(u"[^\\s<\\x{2E80}-\\x{FFFF}]{%1}"_s.arg(CBoardPageView::MaxWord));
    return word.match(Html).hasMatch();
}

/// Counts how deep elements lie within each other.
class CNesting
{
public:
    explicit CNesting(int Limit)
        : m_limit(Limit)
    {
    }

    /// One tag on; false when it goes too deep.
    bool Step(bool IsStart)
    {
        m_depth = qMax(0, m_depth + (IsStart ? 1 : -1));
        return m_depth <= m_limit;
    }

private:
    int m_limit;
    int m_depth = 0;
};

/// Pages colour their background and take black text for granted, on a dark desktop too.
QPalette PagePalette(QPalette Palette)
{
    Palette.setColor(QPalette::Base, Qt::white);
    Palette.setColor(QPalette::Text, Qt::black);
    Palette.setColor(QPalette::Link, Qt::blue);
    Palette.setColor(QPalette::LinkVisited, Qt::blue);
    return Palette;
}

bool IsOk(const QByteArray& Header) { return Header.startsWith("HTTP/") && Header.sliced(5).indexOf(" 200") == 3; }
} // namespace

CBoardPageView::CBoardPageView(Desktop& Shell, CCookieStore& Cookies, QWidget* Parent)
    : QTextBrowser(Parent)
    , m_shell(Shell)
    , m_transfer(Cookies)
{
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    setPalette(PagePalette(palette()));
    document()->setDefaultStyleSheet(u"a { color: #0000ff }"_s); // else it asks the desktop, not this palette
    connect(this, &QTextBrowser::anchorClicked, this, &CBoardPageView::OpenLink);
    connect(&m_transfer, &CTransfer::StateChanged, this, &CBoardPageView::OnStateChanged);
}

void CBoardPageView::SetTimeout(int Seconds) { m_transfer.SetTimeout(Seconds); }

void CBoardPageView::OpenPage(const QUrl& Address)
{
    m_transfer.Cancel();
    m_page.clear();
    m_waiting.clear();
    m_address = Address;
    m_loading = Loading::Page;
    if (!m_transfer.Execute(Address))
        ShowNotice(m_transfer.ResponseInfo());
}

void CBoardPageView::ShowCached(const QByteArray& Page, const QUrl& Address)
{
    m_transfer.Cancel();
    m_page.clear();
    ShowPage(Page, Address);
}

void CBoardPageView::OnStateChanged(CTransfer::State NewState)
{
    const bool isElsewhere = m_loading == Loading::Image && m_transfer.FinalUrl().host() != m_address.host();
    if (NewState == CTransfer::State::Error) {
        if (m_loading == Loading::Page && m_transfer.ResponseCode() != CTransfer::Cancelled)
            ShowNotice(m_transfer.ResponseInfo());
        if (m_loading == Loading::Image)
            ScheduleImages();
    } else if (isElsewhere) {
        m_transfer.Cancel(); // redirected to another host, which is not asked for anything
    } else if (NewState == CTransfer::State::ResponseCompleted) {
        OnCompleted();
    }
}

void CBoardPageView::OnCompleted()
{
    const QByteArray body = ReadBody();
    const bool isOk = IsOk(m_transfer.Header());
    if (m_loading == Loading::Image) {
        if (isOk)
            AddImage(body);
        ScheduleImages();
        return;
    }
    ShowPage(body, m_transfer.FinalUrl());
    if (!isOk)
        return;
    m_page = body;
    Q_EMIT PageCompleted();
}

QByteArray CBoardPageView::ReadBody()
{
    QByteArray body;
    for (QByteArray chunk = m_transfer.GetChunk(ChunkSize); !chunk.isEmpty(); chunk = m_transfer.GetChunk(ChunkSize))
        body += chunk;
    return body;
}

void CBoardPageView::ShowPage(const QByteArray& Page, const QUrl& Address)
{
    m_loading = Loading::Nothing;
    m_address = Address;
    m_asked.clear();
    m_waiting.clear();
    if (Page.size() > MaxPageBytes)
        return ShowNotice(u"ページが大きすぎます。"_s);
    const QString html = Decode(Page);
    if (!IsSimple(html))
        return ShowNotice(u"ページの構造が複雑すぎます。"_s);
    clear();
    document()->setBaseUrl(Address);
    setHtml(html);
}

void CBoardPageView::ShowNotice(const QString& Reason)
{
    m_loading = Loading::Nothing;
    setPlainText(u"掲示板のページを表示できません。\n"_s + Reason);
}

QString CBoardPageView::Decode(const QByteArray& Page)
{
    if (!text::IsValid932(Page) && text::IsValidUtf8(Page))
        return QString::fromUtf8(Page);
    return text::From932(Page);
}

bool CBoardPageView::IsSimple(const QString& Html)
{
    if (HasEndlessWord(Html))
        return false;
    static const QRegularExpression tag(u"<(/?)([A-Za-z][A-Za-z0-9]*)"_s);
    CNesting tables(MaxTableNesting);
    CNesting others(MaxNesting);
    for (auto found = tag.globalMatch(Html); found.hasNext();) {
        const auto match = found.next();
        const QString name = match.captured(2).toLower();
        CNesting& level = name == u"table" ? tables : others;
        if (!IsVoid(name) && !level.Step(match.capturedView(1).isEmpty()))
            return false;
    }
    return true;
}

/// An answer that is empty would make the document look for a file of that name itself.
QVariant CBoardPageView::loadResource(int Type, const QUrl& Name)
{
    if (Type != QTextDocument::ImageResource)
        return QByteArray(" ");
    const QUrl image = m_address.resolved(Name);
    if (IsOwnImage(image) && m_asked.size() < MaxImages && m_asked.insert(image).second) {
        m_waiting.insert(m_waiting.begin(), image);
        ScheduleImages();
    }
    return Gap();
}

bool CBoardPageView::IsOwnImage(const QUrl& Name) const
{
    return (Name.scheme() == u"http" || Name.scheme() == u"https") && Name.host() == m_address.host();
}

void CBoardPageView::ScheduleImages()
{
    if (!std::exchange(m_isScheduled, true))
        QMetaObject::invokeMethod(this, &CBoardPageView::FetchNextImage, Qt::QueuedConnection);
}

void CBoardPageView::FetchNextImage()
{
    m_isScheduled = false;
    if (m_transfer.StillExecuting())
        return; // its end schedules the next one
    m_loading = Loading::Nothing;
    while (!m_waiting.empty()) {
        const QUrl image = m_waiting.back();
        m_waiting.pop_back();
        m_loading = Loading::Image;
        if (m_transfer.Execute(image))
            return;
    }
    m_loading = Loading::Nothing;
}

void CBoardPageView::AddImage(const QByteArray& Data)
{
    QBuffer buffer;
    buffer.setData(Data);
    QImageReader reader(&buffer);
    const QSize size = reader.size(); // told by the file's head, before anything is unpacked
    if (!size.isValid() || qint64(size.width()) * size.height() > MaxImagePixels)
        return;
    const QImage image = reader.read();
    if (image.isNull())
        return;
    document()->addResource(QTextDocument::ImageResource, m_transfer.Url(), image);
    document()->markContentsDirty(0, document()->characterCount());
}

void CBoardPageView::OpenLink(const QUrl& Link)
{
    const QUrl target = m_address.resolved(Link);
    if (target.hasFragment() && target.matches(m_address, QUrl::RemoveFragment))
        scrollToAnchor(target.fragment());
    else
        m_shell.ShellOpen(target.toString(QUrl::FullyEncoded));
}
