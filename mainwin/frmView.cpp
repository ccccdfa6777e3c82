// mainwin/frmView.cpp
// The main window: how it is built, opened and closed.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "app/Shutdown.h"
#include "board/CBBS.h"
#include "controls/uSeparator.h"
#include "load/frmLoadDlg.h"
#include "load/mdlLoad.h"
#include "mainwin/CBoardMenus.h"
#include "mainwin/CFileDrop.h"
#include "mainwin/CFindCommands.h"
#include "mainwin/CIconSet.h"
#include "mainwin/CKeyFilter.h"
#include "mainwin/CListView.h"
#include "mainwin/CMenuSet.h"
#include "mainwin/CMessageCommands.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CWorkProgress.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/CTextZoom.h"
#include "mainwin/CToolbar.h"
#include "mainwin/CTrayPresence.h"
#include "platform/desktop/CFocusRim.h"
#include "platform/desktop/WindowServices.h"
#include "platform/desktop/desktop.h"
#include "query/frmSQL.h"
#include "viewer/CViewer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int BlinkMs = 1000;
constexpr int CloseBoxesMs = 100;

// Whether writing Board back would change its row.
bool IsSameRow(const CBBSProperty& Stored, const CBBSProperty& Board)
{
    return Stored.Name == Board.Name && Stored.ShortName == Board.ShortName && Stored.URL == Board.URL &&
           Stored.HowtouseURL == Board.HowtouseURL && Stored.MaxCount == Board.MaxCount &&
           Stored.Hitokoto == Board.Hitokoto && Stored.VisitLoad == Board.VisitLoad &&
           Stored.ListOrder == Board.ListOrder && Stored.DefaultLogFile == Board.DefaultLogFile &&
           Stored.Identifier == Board.Identifier;
}

} // namespace

frmView::frmView(Application& App)
    : m_app(App)
    , m_bbs(std::make_unique<CBBS>(App))
    , m_viewer(std::make_unique<CViewer>(App, *m_bbs, static_cast<ViewerHost&>(*this)))
    , m_messageCommands(
          std::make_unique<CMessageCommands>(App, *m_bbs, *m_viewer, [this] { return m_pane->SelectedText(); }))
{
    setObjectName(u"frmView"_s);
    BuildTimers();
    BuildBars();
    BuildPanes();
    BuildTray();
    m_dialog = std::make_unique<frmLoadDlg>(App, *m_bbs, this);
    m_drivers = std::make_unique<CLoadDrivers>(App, *m_bbs, *m_dialog, static_cast<ReceiveHost&>(*this));
    ConnectBoard();
    ConnectQueries();
    ConnectFind();
    ConnectMenus();
    ConnectDrop();
}

frmView::~frmView()
{
    disconnect(m_panels, nullptr, this, nullptr); // what the bar tells while it goes has no viewer left
    delete takeCentralWidget();                   // the views look at the viewer's lists
}

void frmView::BuildBars()
{
    m_menus = new CMenuSet(*this);
    m_toolbar = new CToolbar(this);
    addToolBar(m_toolbar);
    m_panels = new CStatusPanels(m_app.Shell, this);
    setStatusBar(m_panels);
    m_boardMenus = new CBoardMenus(m_app, *m_menus, m_toolbar->BoardMenu(), this);
    setContextMenuPolicy(Qt::PreventContextMenu);
}

void frmView::BuildTray()
{
    QMenu* menu = m_menus->Menu(u"mnuTray"_s);
    m_tray = new CTrayPresence(m_app, *this, *menu, *m_menus->Action(u"mnuTrayShow"_s));
    connect(m_tray, &CTrayPresence::ShowAsked, this, &frmView::ShowMainWindow);
    connect(menu, &QMenu::aboutToShow, this, &frmView::UpdateEnabled);
}

void frmView::BuildPanes()
{
    m_client = new QWidget(this);
    m_separator = new uSeparator(m_client);
    m_separator->setObjectName(u"sep"_s);
    m_separator->SetAspect(uSeparator::Horizontal);
    for (const int list : {CViewer::BoardList, CViewer::ResultList}) {
        auto* view = new CListView(
            m_viewer->List(list), m_viewer->Model(list), [this](qint32 BBS_ID) { return m_boardMenus->Icon(BBS_ID); },
            m_client);
        view->setObjectName(u"lsvMsgList"_s + QString::number(list));
        view->setAccessibleName(list == CViewer::BoardList ? u"メッセージ一覧"_s : u"検索結果"_s);
        new CFocusRim(*view);
        m_lists[std::size_t(list)] = view;
        ConnectList(list);
    }
    View(CViewer::ResultList).hide();
    m_pane = new CMessagePane(m_client);
    m_pane->setObjectName(u"rtbView"_s);
    m_pane->setAccessibleName(u"メッセージ本文"_s);
    auto* layout = new QVBoxLayout(m_client); // the bar fills the area; the panes follow the bar
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_separator);
    m_separator->Initialize(&View(CViewer::BoardList), m_pane);
    new CFocusRim(*m_pane);
    m_textZoom = new CTextZoom(*m_pane);
    setCentralWidget(m_client);
    BuildTabOrder();
}

QTimer* frmView::MakeTimer(const QString& Name, int IntervalMs, bool SingleShot)
{
    auto* timer = new QTimer(this);
    timer->setObjectName(Name);
    timer->setInterval(IntervalMs);
    timer->setSingleShot(SingleShot);
    return timer;
}

void frmView::BuildTimers()
{
    m_tmrRead = MakeTimer(u"tmrRead"_s, 0, true);
    connect(m_tmrRead, &QTimer::timeout, this, [this] {
        if (IsWorking())
            m_tmrRead->start(); // what is shown during a long search has been read as well
        else
            Perform([this] { m_viewer->ReadTimerFired(); });
    });
    m_tmrBlinkIcon = MakeTimer(u"tmrBlinkIcon"_s, BlinkMs, false);
    connect(m_tmrBlinkIcon, &QTimer::timeout, this, [this] { ChangeIconFrame(false); });
    m_tmrCloseBoxes = MakeTimer(u"tmrCloseBoxes"_s, CloseBoxesMs, false);
    connect(m_tmrCloseBoxes, &QTimer::timeout, this, &frmView::CloseBoxes);
    m_tmrEnabled = MakeTimer(u"tmrEnabled"_s, 0, true);
    connect(m_tmrEnabled, &QTimer::timeout, this, &frmView::UpdateEnabled);
}

void frmView::ConnectList(int List)
{
    CListView* view = &View(List);
    connect(view, &CListView::RowClicked, this,
            [this, List](int Row) { Perform([=, this] { m_viewer->ItemClicked(List, Row); }); });
    connect(view, &CListView::SelectionEdited, this, &frmView::ScheduleEnabled);
    connect(view, &CListView::SelectAllRequested, this, [this] { RunCommand(Command::SelectAll, 0); });
    connect(view, &CListView::CopyRequested, this, [this] { RunCommand(Command::CopyRows, 0); });
    connect(view, &CListView::ListMenuRequested, this, [this](const QPoint& Place) { PopupListMenu(Place); });
    connect(view->header(), &QHeaderView::sectionClicked, this,
            [this, List](int Column) { Perform([=, this] { m_viewer->ColumnClicked(List, Column); }); });
    connect(&m_viewer->List(List), &CMessageList::RowsChanged, this, &frmView::ScheduleEnabled);
    if (List == CViewer::ResultList)
        connect(&m_viewer->List(List), &CMessageList::WasReset, this, [this] { m_isResultRefilled = true; });
}

void frmView::ConnectBoard()
{
    connect(m_bbs.get(), &CBBS::AddMessage, this, &frmView::OnAddMessage);
    connect(m_bbs.get(), &CBBS::BatchWithdrawn, this,
            [this](const std::vector<CMessage>& Messages) { m_viewer->WithdrawMessages(Messages); });
    connect(m_bbs.get(), &CBBS::ChangeState, this, &frmView::OnChangeState);
    connect(m_bbs.get(), &CBBS::LogError, this, &frmView::OnLogError);
}

void frmView::ConnectQueries()
{
    m_work = new CWorkProgress(this);
    connect(m_work, &CWorkProgress::Began, this, &frmView::OnWorkBegan);
    connect(m_work, &CWorkProgress::Told, this, &frmView::SetStatus);
    connect(m_work, &CWorkProgress::Ended, this, &frmView::OnWorkEnded);
    m_bbs->SetWatch(m_work);
}

void frmView::ConnectFind()
{
    m_find = new CFindCommands(m_app, CFinder(m_app, *m_bbs, *m_viewer, static_cast<ViewerHost&>(*this)),
                               m_toolbar->FindBox(), *m_pane, *this);
    connect(m_find, &CFindCommands::FindAsked, this, &frmView::FindMessage);
    connect(m_find, &CFindCommands::RowFound, this, [this] { View(m_viewer->CurrentList()).setFocus(); });
    connect(m_find, &CFindCommands::Told, this, [this](const QString& Text) {
        ChangeStatusBarStyle(1);
        SetStatus(Text);
    });
}

void frmView::ConnectMenus()
{
    connect(m_menus, &CMenuSet::Triggered, this, &frmView::RunCommand);
    connect(m_toolbar, &CToolbar::Triggered, this, &frmView::RunCommand);
    connect(m_boardMenus, &CBoardMenus::Triggered, this, &frmView::RunCommand);
    connect(m_menus->Menu(u"mnuMsg"_s), &QMenu::aboutToShow, this,
            [this] { Perform([this] { RefreshMessageMenu(); }); });
    connect(m_menus->Menu(u"mnuBBS"_s), &QMenu::aboutToShow, this, &frmView::UpdateEnabled);
    connect(m_pane, &CMessagePane::TextMenuRequested, this, &frmView::PopupTextMenu);
    connect(m_panels, &CStatusPanels::NoReadPointClicked, this, [this] { RunCommand(Command::SetNoRead, 0); });
    connect(m_panels, &CStatusPanels::NoReadPointEntered, this,
            [this](qint32 Value) { Perform([=, this] { StoreNoReadPoint(Value); }); });
    for (const auto left : {&CStatusPanels::NoReadPointLeft, &CStatusPanels::LinkLeft})
        connect(m_panels, left, this, [this] { View(m_viewer->CurrentList()).setFocus(); });
    connect(qApp, &QApplication::focusChanged, this, &frmView::KeepFocus, Qt::QueuedConnection);
    auto* keys = new CKeyFilter(*this, [this](const mdlCommands::Key& Key) { return OnKey(Key); });
    keys->AddEntryField(m_toolbar->FindBox());
    keys->AddEntryField(*m_panels->findChild<QWidget*>(u"uspnNoReadPoint"_s));
}

void frmView::ConnectDrop()
{
    auto* drop = new CFileDrop(
        *this, [this] { return m_busy == BusyState::None && !m_isClosing && !QApplication::activeModalWidget(); });
    drop->AddTextField(*m_toolbar->FindBox().lineEdit());
    connect(drop, &CFileDrop::FilesDropped, this, &frmView::DoImport);
}

// Opening

bool frmView::Open()
{
    setWindowTitle(m_app.AppTitle());
    ChangeIconFrame(true);
    m_tray->Adopt();
    m_bbs->Initialize(m_app.LogDB());
    m_bbs->SetTimeout(m_app.Option().Timeout);
    m_find->LoadHistory();
    m_viewer->BuildMarkMenu();
    if (!MakeBBSMenu()) {
        ReportNoBoards();
        return false;
    }
    Perform([this] { m_viewer->SelectBoard(m_app.Option().BBS_ID); });
    ChangeStatusBarStyle(0);
    UpdateEnabled();
    if (m_isClosing) // while a box asked something
        return true;
    PlaceWindow();
    View(CViewer::BoardList).setFocus();
    return true;
}

bool frmView::MakeBBSMenu()
{
    try {
        return m_boardMenus->Rebuild([this](qint32 BBS_ID) { return m_viewer->BoardUnreadCount(BBS_ID); });
    } catch (const dao::Error& error) {
        ReportError(error);
        return false;
    }
}

void frmView::ReportNoBoards()
{
    m_app.Shell.MessageBox(u"表示すべき掲示板が見当たりませんので終わっちゃいます。\r\n"
                           "log.mdbのBBS.ListOrderあたりをチェックしてね♪\r\n"
                           "全部-1だと表示されないぞ。"_s,
                           m_app.AppTitle(), Desktop::Icon::Critical);
    m_tray->Leave();
    m_isClosing = m_isClosed = true; // nothing of the window was on the screen, so nothing of it is saved
    m_bbs->Initialize(nullptr);
    Shutdown(m_app);
}

void frmView::ShowMainWindow()
{
    if (m_isClosing)
        return;
    m_tray->BringBack();
    mdlWindow::ActivateWindow(this);
    if (m_dialog->IsLoad())
        mdlWindow::ActivateWindow(m_dialog.get());
    if (QWidget* box = QApplication::activeModalWidget())
        mdlWindow::ActivateWindow(box);
}

// Closing

void frmView::Quit()
{
    m_isQuitting = true;
    close();
}

void frmView::closeEvent(QCloseEvent* Event)
{
    Event->accept();
    StartClosing();
}

void frmView::StartClosing()
{
    if (m_isClosing)
        return;
    m_isClosing = true;
    m_position = CurrentPosition();
    m_tray->Leave();
    hide();
    m_tmrRead->stop();
    EndBlinkIcon();
    CancelRun();
    m_find->CloseDialog();
    CloseBoxes();
    if (m_commandDepth == 0)
        FinishClosing();
    else
        m_tmrCloseBoxes->start(); // a command on its way out may still ask something
}

/// A box that is open keeps its command from returning; closing it gives the cancelling answer.
void frmView::CloseBoxes()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    if (QWidget* box = QApplication::activeModalWidget())
        box->close();
}

void frmView::CancelRun()
{
    m_work->Cancel();
    if (m_dialog->IsLoad()) {
        m_dialog->SetIsNextBBS(false);
        m_dialog->close();
    }
    if (m_bbs->IsLoad() || m_bbs->IsImport())
        m_bbs->Cancel();
}

void frmView::FinishClosing()
{
    if (m_isClosed)
        return;
    m_isClosed = true;
    m_tmrCloseBoxes->stop();
    SaveBoard();
    m_find->SaveHistory();
    mdlPosition::Write(m_app.SettingsIni(), m_position);
    m_bbs->Initialize(nullptr);
    if (!Shutdown(m_app) && !m_isQuitting) {
        m_app.Shell.MessageBox(u"設定ファイル「"_s + m_app.IniFileName() + u"」に書き込めませんでした。"_s,
                               m_app.AppTitle(), Desktop::Icon::Exclamation);
    }
    Q_EMIT Closed();
}

void frmView::SaveBoard()
{
    CBBSProperty& board = m_viewer->BoardProperty();
    try {
        CBBSProperty stored(m_app);
        if (stored.GetProperty(board.ID()) && !IsSameRow(stored, board))
            board.SetProperty();
    } catch (const dao::Error& error) {
        if (!m_isQuitting)
            ReportError(error);
    }
}
