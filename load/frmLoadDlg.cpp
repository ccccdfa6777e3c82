// load/frmLoadDlg.cpp
// The window beside a receive or an import: what is going on, the log of the run, and one tab with the page of each
// board.

#include "load/frmLoadDlg.h"

#include "load/CBoardPageView.h"
#include "load/CInfoLabel.h"
#include "load/CPaintPause.h"
#include "load/PageCache.h"
#include "board/CBBS.h"
#include "board/CBBSProperty.h"
#include "app/Application.h"
#include "app/WindowPlace.h"
#include "platform/desktop/CFocusRim.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/WindowServices.h"
#include "platform/desktop/desktop.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
/// Designed size in pixels at 100 %: the boards' pages are made for 600 columns of pixels.
constexpr QSize DesignedSize(640, 460);
/// Lines that the log of one run keeps; a hostile server can have every record complained about.
constexpr int MaxLogLines = 10000;

QString Section() { return u"LoadDialogPosition"_s; }

QString TabKey(qint32 BBS_ID) { return u'#' + QString::number(BBS_ID).rightJustified(3, u'0'); }

QString Literal(QString Caption) { return Caption.replace(u"&"_s, u"&&"_s); }
} // namespace

frmLoadDlg::frmLoadDlg(Application& App, CBBS& Board, QWidget* Parent)
    : QDialog(Parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                          Qt::WindowMinMaxButtonsHint)
    , m_app(App)
    , m_board(Board)
{
    setObjectName(u"frmLoadDlg"_s);
    setModal(false);
    BuildControls();
    resize(DesignedSize);
}

frmLoadDlg::~frmLoadDlg() = default;

void frmLoadDlg::BuildControls()
{
    m_lblInfo = new CInfoLabel(this);
    m_lblInfo->setObjectName(u"lblInfo"_s);
    m_cmdOK = new QPushButton(this);
    m_cmdOK->setObjectName(u"cmdOK"_s);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmLoadDlg::close);
    m_txtLog = new QPlainTextEdit(this);
    m_txtLog->setObjectName(u"txtLog"_s);
    m_txtLog->setAccessibleName(u"ログ"_s);
    m_txtLog->setReadOnly(true);
    m_txtLog->setFrameShape(QFrame::NoFrame);
    m_txtLog->setTabChangesFocus(true);
    new CFocusRim(*m_txtLog);
    m_txtLog->setMaximumBlockCount(MaxLogLines);
    m_logPaint = new CPaintPause(*m_txtLog);
    m_tabStrip = new QTabWidget(this);
    m_tabStrip->setObjectName(u"TabStrip"_s);
    m_tabStrip->setAccessibleName(u"ログと掲示板のページ"_s);
    m_tabStrip->setUsesScrollButtons(true);
    m_tabStrip->addTab(m_txtLog, {});
    m_tabStrip->tabBar()->setTabData(0, u"LOG"_s);

    auto* top = new QHBoxLayout;
    top->addWidget(m_lblInfo, 1);
    top->addWidget(m_cmdOK, 0, Qt::AlignTop);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_tabStrip, 1);
    SetButtonMode(OkMode);
}

void frmLoadDlg::ShowDialog(const QString& HeadCaption, QWidget* Owner)
{
    setWindowTitle(HeadCaption + u"中... - "_s + m_app.AppTitle());
    if (Owner)
        setWindowIcon(Owner->windowIcon());
    m_tabStrip->setTabText(0, HeadCaption + u"ログ"_s);
    m_lblInfo->setAccessibleName(HeadCaption + u"の状況"_s);
    RemoveBoardTabs();
    m_txtLog->clear();
    SetInfomation({});
    PlaceWindow(Owner);
    m_isLoad = true;
    m_isNextBBS = false;
    show();
    m_cmdOK->setFocus();
    SetButtonMode(CancelMode); // after show, which makes the only button the default one
}

/// A place or size that was never stored, or is no number, falls back to the middle of the owner and the designed size.
void frmLoadDlg::PlaceWindow(const QWidget* Owner)
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    if (!m_app.Option().SaveLoadDialogPosition)
        ini.Clear();
    QRect designed = mdlGeometry::Centred(DesignedSize.expandedTo(minimumSizeHint()));
    if (Owner)
        designed.moveCenter(Owner->window()->geometry().center());
    setGeometry(mdlGeometry::Restored(mdlWindowPlace::Read(ini), designed));
}

void frmLoadDlg::SavePlace()
{
    if (!m_app.Option().SaveLoadDialogPosition)
        return;
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    mdlWindowPlace::Store(ini, mdlGeometry::ToPlace(mdlWindow::GetNormalWindowRect(this)));
    ini.Save(Section());
}

void frmLoadDlg::UpdateInfo(const QString& Message, qint16 Line, bool AddLog)
{
    QStringList lines = m_infomation.split(u"\r\n"_s);
    const qsizetype target = Line == LastLine ? lines.size() : Line;
    while (lines.size() < target)
        lines << QString();
    lines[target - 1] = Message;
    SetInfomation(lines.join(u"\r\n"_s));
    if (AddLog && !Message.isEmpty())
        AppendLog(Message);
}

void frmLoadDlg::SetInfomation(const QString& NewInfomation)
{
    m_infomation = NewInfomation;
    m_lblInfo->SetLines(QString(NewInfomation).remove(u'\r'));
}

void frmLoadDlg::AppendLog(const QString& Text)
{
    m_logPaint->Hold();
    QTextCursor cursor(m_txtLog->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(Text + u'\n');
    m_txtLog->moveCursor(QTextCursor::End);
}

void frmLoadDlg::InitNewBBS(const CBBSProperty& Property, bool IsMore)
{
    m_isNextBBS = IsMore;
    CBoardPageView* view = AddBoardTab(Property);
    if (const auto cached = mdlPageCache::Read(Property.GetCacheFileName()))
        view->ShowCached(*cached, QUrl(Property.GetShowURL()));
    else
        view->OpenPage(QUrl(Property.GetShowURL()));
    if (m_cmdOK->isVisible())
        m_cmdOK->setFocus();
    UpdateInfo(Property.Name + u"から受信中..."_s, BoardLine, true);
    UpdateInfo({}, SummaryLine, false);
}

CBoardPageView* frmLoadDlg::AddBoardTab(const CBBSProperty& Property)
{
    const qint32 board = Property.ID();
    BoardTab& tab = m_tabs[board];
    if (!tab.View) {
        tab.View = new CBoardPageView(m_app.Shell, m_app.Cookies());
        tab.View->setObjectName(u"WebBrowser"_s + QString::number(board));
        tab.View->setAccessibleName(Property.Name);
        new CFocusRim(*tab.View);
        tab.View->SetTimeout(m_app.Option().Timeout);
        connect(tab.View, &CBoardPageView::PageCompleted, this, [this, board] { OnPageCompleted(board); });
        const int place = m_tabStrip->addTab(tab.View, Literal(Property.ShortName));
        m_tabStrip->setTabToolTip(place, Property.Name);
        m_tabStrip->tabBar()->setTabData(place, TabKey(board));
    }
    tab.Name = Property.Name;
    tab.URL = Property.URL;
    tab.CacheFile = Property.GetCacheFileName();
    m_tabStrip->setCurrentWidget(tab.View);
    return tab.View;
}

void frmLoadDlg::RemoveBoardTabs()
{
    for (const auto& [board, tab] : m_tabs)
        tab.View->deleteLater(); // leaves the tabs by itself; its transfer may be the one that is speaking
    m_tabs.clear();
    while (m_tabStrip->count() > 1)
        m_tabStrip->removeTab(1);
}

/// Only a page that came from the board's own address is kept: one side of a two-sided board is not the whole page.
void frmLoadDlg::OnPageCompleted(qint32 BBS_ID)
{
    const auto found = m_tabs.find(BBS_ID);
    if (found == m_tabs.end())
        return;
    const BoardTab& tab = found->second;
    if (tab.View->PageAddress() != QUrl(tab.URL))
        return;
    const bool isSaved = mdlPageCache::Write(tab.CacheFile, tab.View->Page());
    UpdateInfo(tab.Name + (isSaved ? u"をキャッシュに保存しました。"_s : u"をキャッシュに保存できませんでした。"_s),
               CacheLine, true);
}

bool frmLoadDlg::ButtonEnabled() const { return m_cmdOK->isEnabled(); }
void frmLoadDlg::SetButtonEnabled(bool NewButtonEnabled) { m_cmdOK->setEnabled(NewButtonEnabled); }

void frmLoadDlg::SetButtonMode(qint16 NewButtonMode)
{
    m_buttonMode = NewButtonMode;
    m_cmdOK->setText(NewButtonMode == CancelMode ? u"キャンセル"_s : u"OK"_s);
    m_cmdOK->setDefault(NewButtonMode == OkMode);
}

/// Esc.
void frmLoadDlg::reject() { close(); }

void frmLoadDlg::closeEvent(QCloseEvent* Event)
{
    if (m_isLoad && !MayClose()) {
        Event->ignore();
        return;
    }
    if (m_isLoad) {
        m_isLoad = false;
        SavePlace();
        RemoveBoardTabs();
    }
    Event->accept();
}

/// During a run: stops the board under way, then asks about those that follow.
bool frmLoadDlg::MayClose()
{
    if (m_buttonMode != CancelMode)
        return true;
    m_board.Cancel();
    if (!m_isNextBBS)
        return true;
    const auto answer = m_app.Shell.MessageBox(u"継続して次の掲示板から受信しますか？"_s, m_app.AppTitle(),
                                               Desktop::Icon::Question, Desktop::Buttons::YesNo);
    // The main window may have been closed while the question was open; then nothing goes on any more.
    if (m_isLoad && m_isNextBBS && answer == Desktop::Answer::Yes)
        return false;
    m_isNextBBS = false;
    return true;
}
