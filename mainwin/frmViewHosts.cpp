// mainwin/frmViewHosts.cpp
// What the main window does for the viewer, for the drivers and at the events of the board access.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "controls/uSeparator.h"
#include "load/frmLoadDlg.h"
#include "mainwin/CBoardMenus.h"
#include "mainwin/CFindCommands.h"
#include "mainwin/CIconSet.h"
#include "mainwin/CListView.h"
#include "mainwin/CMenuSet.h"
#include "mainwin/CMessageCommands.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CWorkProgress.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/CToolbar.h"
#include "mainwin/CTrayPresence.h"
#include "mainwin/mdlErrorLog.h"
#include "platform/desktop/desktop.h"
#include "viewer/CViewer.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;
using mdlCommands::Rule;

namespace
{

constexpr int NormalFrame = 4; // SMALLICON4
constexpr int CountEveryMs = 200;

bool IsSearch(Work What) { return What == Work::Query || What == Work::Find; }

// The caption, which is read out and shown where the bar is too short, is the tip without its key.
void TakeToolTip(QAction& Button, const QString& ToolTip)
{
    Button.setText(ToolTip.section(u'(', 0, 0));
    Button.setToolTip(ToolTip);
}

} // namespace

// State

mdlEnabling::WindowFacts frmView::Facts() const
{
    mdlEnabling::WindowFacts facts;
    facts.Busy = m_busy;
    facts.List = m_viewer->CurrentList();
    facts.IsRaw = m_viewer->IsRawTable();
    for (std::size_t mode = 0; mode < facts.ModeHasMessages.size(); ++mode)
        facts.ModeHasMessages[mode] = m_viewer->Entry(int(mode)).Enabled;
    const CMessageList& list = m_viewer->List(facts.List);
    facts.SelectedCount = qMin(list.SelectedCount(), 2);
    if (facts.SelectedCount == 1) {
        const CMessage& selected = list.Item(list.SelectedRanges().front().First).Message;
        facts.IsRead = selected.Read;
        facts.IsReply = selected.InReplyTo != 0;
    }
    if (const std::optional<CMessage> selected = SelectedMessage()) {
        facts.HasMail = !selected->Mail.isEmpty();
        facts.HasHomePage = !selected->HomePage.isEmpty();
    }
    return facts;
}

void frmView::UpdateEnabled()
{
    const mdlEnabling::WindowFacts facts = Facts();
    m_menus->UpdateEnabled(facts);
    m_toolbar->UpdateEnabled(facts);
    m_find->SetFindAllowed(mdlEnabling::Holds(Rule::Open, facts));
}

void frmView::ScheduleEnabled() { m_tmrEnabled->start(); }

/// The menu bar, left after a second mnemonic, gives the focus back to nobody, and the keys of the lists would be dead.
void frmView::KeepFocus()
{
    if (!m_isClosing && isActiveWindow() && !QApplication::focusWidget() && !QApplication::activePopupWidget())
        View(m_viewer->CurrentList()).setFocus();
}

void frmView::UpdateCaption()
{
    setWindowTitle(mdlEnabling::Caption(Facts(), m_viewer->BoardProperty().Name, m_app.AppTitle()));
}

void frmView::ChangeToolbarImage()
{
    const bool isResult = m_viewer->CurrentList() == CViewer::ResultList;
    m_toolbar->Button(u"BBSList")
        ->setIcon(isResult ? CIconSet::Picture(u"Close"_s) : m_boardMenus->Icon(m_viewer->CurrentBoard()));
    View(m_viewer->CurrentList()).viewport()->update();
}

/// What is selected may have changed since the menu was open last, and table Mark as well.
void frmView::RefreshMessageMenu()
{
    m_viewer->BuildMarkMenu();
    CheckMark(m_viewer->GetSelectedMark());
    UpdateEnabled();
}

void frmView::CheckMark(qint32 Mark)
{
    for (const auto& [number, mark] : m_viewer->Marks()) {
        for (const QString& array : {u"mnuMsgMarkSub"_s, u"mnuPopupMarkSub"_s})
            m_menus->Action(array + QString::number(number))->setChecked(number == Mark);
    }
}

void frmView::PopupListMenu(const QPoint& Place)
{
    if (m_viewer->IsRawTable())
        return;
    Perform([this] { RefreshMessageMenu(); });
    m_menus->TakeText(u"mnuPopupMail"_s, u"mnuMsgMail"_s);
    m_menus->TakeText(u"mnuPopupHomepage"_s, u"mnuMsgHomePage"_s);
    m_menus->Menu(u"mnuPopup"_s)->popup(Place);
}

void frmView::PopupTextMenu(const QPoint& Place)
{
    std::vector<CMenuSet::Entry> entries;
    for (const auto& search : m_messageCommands->ReadWebSearches()) {
        const int number = int(entries.size()) + 1;
        entries.push_back({number, search.Caption, Command::WebSearch, number});
    }
    m_menus->SetArray(u"mnuTextWebSearch"_s, entries);
    m_menus->Action(u"mnuTextBar2"_s)->setVisible(!entries.empty());
    UpdateEnabled();
    m_menus->Menu(u"mnuText"_s)->popup(Place);
}

void frmView::ChangeIconFrame(bool Reset)
{
    m_iconFrame = Reset ? NormalFrame : qMax(m_iconFrame, 1);
    QIcon icon = CIconSet::Picture(u"SMALLICON"_s + QString::number(m_iconFrame));
    if (icon.isNull()) {
        m_iconFrame = 1;
        icon = CIconSet::Picture(u"SMALLICON1"_s);
    }
    setWindowIcon(icon);
    m_tray->SetIcon(icon);
    if (m_dialog->IsLoad())
        m_dialog->setWindowIcon(icon);
    ++m_iconFrame;
}

void frmView::StartBlinkIcon()
{
    m_tmrBlinkIcon->start();
    ChangeIconFrame(false);
}

void frmView::EndBlinkIcon()
{
    m_tmrBlinkIcon->stop();
    ChangeIconFrame(true);
}

// ViewerHost

void frmView::ShowBody(const std::vector<BodyLine>& Lines) { m_pane->ShowLines(Lines); }

void frmView::ShowMail(const QString& Caption) { m_panels->ShowMail(Caption); }

void frmView::ShowHomePage(const QString& Caption) { m_panels->ShowHomePage(Caption); }

void frmView::ChangeStatusBarStyle(int Style) { m_panels->SetStyle(Style); }

void frmView::SetCountText(const QString& Text) { m_panels->SetText(u"Count", Text); }

void frmView::SetNoReadPointText(const QString& Text) { m_panels->SetText(u"NoReadPoint", Text); }

void frmView::ClearStatus() { m_panels->SetText(u"Status", {}); }

void frmView::BeginListUpdate(int List) { View(List).BeginUpdate(); }

void frmView::EndListUpdate(int List) { View(List).EndUpdate(); }

void frmView::ListShown(int List)
{
    CListView& shown = View(List);
    CListView& other = View(1 - List);
    const bool hadFocus = focusWidget() == &other; // also while a dialog over the window closes
    m_separator->Initialize(&shown, m_pane);
    shown.show();
    if (hadFocus)
        shown.setFocus();
    other.hide();
    shown.TakeSelection();
    UpdateCaption();
    ChangeToolbarImage();
    UpdateEnabled();
}

void frmView::EnsureVisible(int List, int Row) { View(List).ShowRow(Row); }

void frmView::SelectionChanged(int List)
{
    View(List).TakeSelection();
    ScheduleEnabled();
}

void frmView::HeadersChanged(int List)
{
    if (List != CViewer::ResultList || !m_isResultRefilled)
        return;
    m_isResultRefilled = false;
    if (m_viewer->List(List).IsRaw())
        View(List).ResetColumns();
    else
        View(List).TakeColumns(View(CViewer::BoardList));
}

void frmView::StartReadTimer(int Ms) { m_tmrRead->start(Ms); }

void frmView::StopReadTimer() { m_tmrRead->stop(); }

void frmView::ViewMenuChanged()
{
    for (int mode = 0; mode < CViewModes::ModeCount; ++mode) {
        QAction* entry = m_menus->Action(u"mnuBBSViewSub"_s + QString::number(mode));
        entry->setText(m_viewer->Entry(mode).Caption);
    }
    TakeToolTip(*m_toolbar->Button(u"Back"), m_viewer->Entry(CViewModes::NewerPage).ToolTip);
    TakeToolTip(*m_toolbar->Button(u"Forword"), m_viewer->Entry(CViewModes::OlderPage).ToolTip);
    m_toolbar->Button(u"BBSList")->setToolTip(u"掲示板一覧"_s);
    UpdateEnabled();
}

/// An import tells of every message, and a desktop that draws menus or the tray's menu itself would be sent each
/// number. The end of the run shows what is left out here.
void frmView::BoardCountChanged(qint32 BBS_ID, int UnreadCount)
{
    if (m_bbs->IsImport() && m_sinceCount.isValid() && !m_sinceCount.hasExpired(CountEveryMs))
        return;
    m_sinceCount.start();
    m_boardMenus->SetCount(BBS_ID, UnreadCount);
}

void frmView::MarksChanged()
{
    std::vector<CMenuSet::Entry> entries;
    for (const auto& [number, mark] : m_viewer->Marks())
        entries.push_back({number, mark.Name, Command::Mark, number, false, true, Rule::Selection});
    m_menus->SetArray(u"mnuMsgMarkSub"_s, entries);
    m_menus->SetArray(u"mnuPopupMarkSub"_s, entries);
}

void frmView::DataDefinitionChanged()
{
    MakeBBSMenu();
    ChangeToolbarImage();
    UpdateCaption();
}

void frmView::Progress(int Done, int Of)
{
    m_panels->SetText(u"Count", QString::number(Done) + u'/' + QString::number(Of));
    m_panels->repaint();
}

bool frmView::PagePane(bool Forward) { return m_pane->Page(Forward); }

ViewerHost::BodyRange frmView::PaneSelection() const { return m_pane->SelectedRange(); }

void frmView::SelectInPane(BodyRange Range)
{
    m_pane->SelectBodyRange(Range);
    m_pane->setFocus();
}

// ReceiveHost

void frmView::RunStarted(RunKind Kind)
{
    m_busy = Kind == RunKind::Receive ? BusyState::Receive : BusyState::Import;
    m_isErrorLogReported = false;
    m_panels->CloseNoReadPoint();
    ChangeStatusBarStyle(1);
    ClearStatus();
    UpdateCaption();
    UpdateEnabled();
    if (Kind == RunKind::Receive && m_app.Option().BlinkIcon)
        StartBlinkIcon();
}

void frmView::SetStatus(const QString& Text) { m_panels->SetText(u"Status", Text); }

void frmView::RunEnded()
{
    m_busy = BusyState::None;
    const QString summary = m_panels->Text(u"Status");
    m_viewer->RefreshAfterRun();
    ChangeStatusBarStyle(1); // the first message of an empty list would put its links over the summary
    SetStatus(summary);
    EndBlinkIcon();
    UpdateCaption();
    UpdateEnabled();
}

qint32 frmView::CurrentBoard() const { return m_viewer->CurrentBoard(); }

std::optional<CMessage> frmView::SelectedMessage() const { return m_messageCommands->SelectedMessage(); }

void frmView::CloseWindow() { close(); }

// Long work

bool frmView::IsWorking() const { return m_work->IsWorking(); }

void frmView::OnWorkBegan()
{
    m_busyBefore = std::exchange(m_busy, IsSearch(m_work->What()) ? BusyState::Query : BusyState::Work);
    m_styleBefore = m_panels->Style();
    m_statusBefore = m_panels->Text(u"Status");
    m_panels->CloseNoReadPoint();
    ChangeStatusBarStyle(1);
    UpdateCaption();
    UpdateEnabled();
}

void frmView::OnWorkEnded(bool IsCancelled)
{
    m_busy = m_busyBefore;
    ChangeStatusBarStyle(IsCancelled ? 1 : m_styleBefore);
    SetStatus(IsCancelled ? m_work->CancelledText() : m_statusBefore);
    m_viewer->ShowCounts(m_viewer->CurrentList()); // the reading of rows may have counted there
    UpdateCaption();
    UpdateEnabled();
}

// Board access

void frmView::OnAddMessage(const CMessage& Msg)
{
    // Of an import, which may bring a hundred thousand, the list takes what belongs between its rows.
    if (Msg.BBS_ID == m_viewer->CurrentBoard() && (m_bbs->IsLoad() || m_viewer->IsWithinBoardList(Msg.ID)))
        m_viewer->AddMessageItem(CViewer::BoardList, Msg);
    if (!Msg.Read)
        m_viewer->UpdateBoardUnreadCaption(Msg.BBS_ID, 1);
}

void frmView::OnChangeState(const QString& StateMessage, bool IsError, bool AddLog)
{
    if (IsError) {
        ChangeStatusBarStyle(1);
        SetStatus(StateMessage);
    }
    m_dialog->UpdateInfo(StateMessage, frmLoadDlg::StateLine, AddLog);
}

void frmView::OnLogError(qint32 BBS_ID, const QString& LogText, const QString& ErrorMessage)
{
    const CResult written = mdlErrorLog::Append(m_app, BBS_ID, LogText);
    if (!written && !m_isErrorLogReported) {
        m_isErrorLogReported = true; // a full disk would bring a box for every record
        m_bbs->CommitPending();      // nobody knows when the box is answered
        m_app.Shell.MessageBox(written.Message(), m_app.AppTitle(), Desktop::Icon::Information);
    } else if (!written) {
        m_dialog->UpdateInfo(written.Message(), frmLoadDlg::StateLine, true);
    }
    m_dialog->UpdateInfo(ErrorMessage, frmLoadDlg::StateLine, true);
}
