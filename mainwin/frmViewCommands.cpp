// mainwin/frmViewCommands.cpp
// The commands of the main window: from a menu item, a button or a key to the operation behind it.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "controls/uSeparator.h"
#include "load/frmLoadDlg.h"
#include "load/mdlLoad.h"
#include "mainwin/CListView.h"
#include "mainwin/CMenuSet.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/frmAbout.h"
#include "mainwin/CToolbar.h"
#include "mainwin/mdlProduct.h"
#include "platform/desktop/desktop.h"
#include "store/Recovery.h"
#include "query/frmSQL.h"
#include "viewer/mdlStatements.h"
#include "viewer/CViewer.h"

#include <QAction>
#include <QComboBox>
#include <QCursor>
#include <QMenu>
#include <QTimer>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using MoveMode = CViewer::MoveMode;

struct frmView::CommandLine
{
    Command Handler;
    void (frmView::*Do)(int);
};

const frmView::CommandLine* frmView::FindCommand(Command Handler)
{
    static constexpr CommandLine lines[] = {
        {Command::Execute, &frmView::DoExecute},
        {Command::TrayExecute, &frmView::DoTrayExecute},
        {Command::SelectBoard, &frmView::DoSelectBoard},
        {Command::TraySelectBoard, &frmView::DoTraySelectBoard},
        {Command::NewPost, &frmView::DoNewPost},
        {Command::BoardListButton, &frmView::DoBoardListButton},
        {Command::ViewMode, &frmView::DoViewMode},
        {Command::Thread, &frmView::DoThread},
        {Command::SetNoRead, &frmView::DoSetNoRead},
        {Command::Browse, &frmView::DoBrowse},
        {Command::PrevMessage, &frmView::DoPrevMessage},
        {Command::NextMessage, &frmView::DoNextMessage},
        {Command::PrevUnread, &frmView::DoPrevUnread},
        {Command::NextUnread, &frmView::DoNextUnread},
        {Command::PrevUnreadByKey, &frmView::DoPrevUnreadByKey},
        {Command::HistoryBack, &frmView::DoHistoryBack},
        {Command::HistoryForward, &frmView::DoHistoryForward},
        {Command::InReplyTo, &frmView::DoInReplyTo},
        {Command::Mark, &frmView::DoMark},
        {Command::MarkRead, &frmView::DoMarkRead},
        {Command::MarkNoRead, &frmView::DoMarkNoRead},
        {Command::SelectAll, &frmView::DoSelectAll},
        {Command::ReverseSelection, &frmView::DoReverseSelection},
        {Command::CopyText, &frmView::DoCopyText},
        {Command::CompactDatabase, &frmView::DoCompactDatabase},
        {Command::Query, &frmView::DoQuery},
        {Command::TextFind, &frmView::DoTextFind},
        {Command::Timer, &frmView::DoTimer},
        {Command::Community, &frmView::DoCommunity},
        {Command::About, &frmView::DoAbout},
        {Command::ShowWindow, &frmView::DoShowWindow},
        {Command::Escape, &frmView::DoEscape},
        {Command::PopupBoards, &frmView::DoPopupBoards},
        {Command::PopupMarks, &frmView::DoPopupMarks},
    };
    const auto found = std::find_if(std::begin(lines), std::end(lines),
                                    [Handler](const CommandLine& Line) { return Line.Handler == Handler; });
    return found == std::end(lines) ? nullptr : found;
}

void frmView::RunCommand(Command Handler, int Argument)
{
    if (const CommandLine* line = FindCommand(Handler))
        Perform([=, this] { (this->*line->Do)(Argument); });
}

bool frmView::OnKey(const mdlCommands::Key& Key)
{
    if (m_isClosing)
        return false;
    UpdateEnabled();
    const QAction* item = m_menus->Action(Key.Item.toString());
    if (!Key.Item.isEmpty() && !(item && item->isEnabled()))
        return false;
    RunCommand(Key.Handler, 0);
    return true;
}

void frmView::Leave()
{
    --m_commandDepth;
    if (!m_isClosing)
        ScheduleEnabled();
    else if (m_commandDepth == 0)
        QTimer::singleShot(0, this, &frmView::FinishClosing); // the caller's own code still runs in this window
}

void frmView::ReportError(const dao::Error& Error)
{
    QString text = u"実行時エラー '"_s + QString::number(Error.Number) + u"':\r\n\r\n"_s + Error.Description +
                   u"\r\n\r\n処理が実行できませんでした。"_s;
    if (mdlStore::IsDamage(Error.Number))
        text += u"\r\n「ツール」メニューの「最適化」で、読み出せるデータを別のファイルに取り出せます。"_s;
    m_app.Shell.MessageBox(text, m_app.AppTitle(), Desktop::Icon::Information);
}

// Drivers and boards

void frmView::DoExecute(int Number)
{
    const bool startsRun = Number >= int(LoadCommand::Receive) && Number <= int(LoadCommand::ReceiveAllBoards);
    if (!startsRun || m_busy == BusyState::None)
        m_drivers->ExecuteCommand(Number);
}

void frmView::DoTrayExecute(int Number)
{
    ShowMainWindow();
    DoExecute(Number);
}

void frmView::DoSelectBoard(int BBS_ID) { m_viewer->SelectBoard(BBS_ID); }

void frmView::DoTraySelectBoard(int BBS_ID)
{
    if (isMinimized())
        showNormal();
    ShowMainWindow();
    m_viewer->SelectBoard(BBS_ID);
}

void frmView::DoNewPost(int BBS_ID)
{
    CMessage message;
    message.BBS_ID = BBS_ID;
    m_bbs->Send(message, false);
}

void frmView::DoBrowse(int Page)
{
    const CBBSProperty& board = m_viewer->BoardProperty();
    const QString addresses[] = {board.GetShowURL(), board.GetShowCookiePageURL(), board.HowtouseURL};
    m_app.Shell.ShellOpen(addresses[Page]);
}

// Lists

void frmView::DoBoardListButton(int)
{
    if (m_viewer->CurrentList() == CViewer::ResultList)
        m_viewer->ShowList(CViewer::BoardList);
    else
        m_viewer->ShowViewMode(CViewModes::Newest);
}

void frmView::DoViewMode(int Index) { m_viewer->ShowViewMode(Index); }

void frmView::DoThread(int)
{
    const int list = m_viewer->CurrentList();
    m_viewer->ResetListView(list, m_viewer->IsRawTable());
    m_viewer->ShowThread(list);
}

void frmView::DoSelectAll(int)
{
    const int list = m_viewer->CurrentList();
    m_viewer->List(list).Select(0, m_viewer->List(list).Count() - 1, true);
    SelectionChanged(list);
}

void frmView::DoReverseSelection(int)
{
    m_viewer->List(m_viewer->CurrentList()).InvertSelection();
    SelectionChanged(m_viewer->CurrentList());
}

// Moving

void frmView::DoPrevMessage(int) { m_viewer->MovePrev(m_viewer->CurrentList(), MoveMode::Message, false); }

void frmView::DoNextMessage(int) { m_viewer->MoveNext(m_viewer->CurrentList(), MoveMode::Message, false); }

void frmView::DoPrevUnread(int) { m_viewer->MovePrev(m_viewer->CurrentList(), MoveMode::Unread, true); }

void frmView::DoNextUnread(int) { m_viewer->MoveNext(m_viewer->CurrentList(), MoveMode::Unread, true); }

void frmView::DoPrevUnreadByKey(int)
{
    DoPrevUnread(0);
    m_pane->ClearSelection();
}

void frmView::DoHistoryBack(int) { m_viewer->MovePrev(m_viewer->CurrentList(), MoveMode::History, false); }

void frmView::DoHistoryForward(int) { m_viewer->MoveNext(m_viewer->CurrentList(), MoveMode::History, false); }

void frmView::DoInReplyTo(int) { m_viewer->MoveInReplyTo(m_viewer->CurrentList()); }

// Read state, marks, unread position

void frmView::DoMark(int Mark) { m_viewer->MarkSelected(Mark); }

void frmView::DoMarkRead(int) { m_viewer->SetReadSelected(m_viewer->CurrentList(), true); }

void frmView::DoMarkNoRead(int) { m_viewer->SetReadSelected(m_viewer->CurrentList(), false); }

void frmView::DoSetNoRead(int)
{
    if (m_busy == BusyState::None)
        m_panels->OpenNoReadPoint(m_viewer->BoardProperty().NoReadPoint());
}

void frmView::StoreNoReadPoint(qint32 Value)
{
    m_viewer->BoardProperty().SetNoReadPoint(Value);
    m_viewer->ShowNoReadPoint();
}

// Queries

/// The dialog comes back with its statement as long as running it fails. False when the user has given up.
bool frmView::RunQueries(QString Statement)
{
    if (!m_queryDialog)
        m_queryDialog = std::make_unique<frmSQL>(m_app, this);
    int errorOffset = -1;
    while (!m_isClosing) {
        Statement = m_queryDialog->ShowSQL(Statement, this, errorOffset);
        if (Statement.isEmpty() || m_isClosing)
            break;
        if (m_viewer->LoadList(Statement, CViewer::ResultList)) {
            m_lastQuery = Statement;
            return true;
        }
        errorOffset = m_viewer->ErrorOffset();
    }
    return false;
}

void frmView::DoQuery(int)
{
    RunQueries(m_lastQuery.isEmpty() ? mdlStatements::AllMessages(m_viewer->CurrentBoard()) : m_lastQuery);
}

void frmView::DoTextFind(int)
{
    QString text = m_pane->SelectedText();
    if (text.endsWith(u"\r\n"_s)) // the pane ends the last line, a stored body need not
        text.chop(2);
    if (RunQueries(mdlStatements::MessagesWith(m_viewer->CurrentBoard(), text)))
        m_toolbar->FindBox().setEditText(text);
}

// The rest

void frmView::DoCopyText(int)
{
    if (const QString text = m_pane->SelectedText(); !text.isEmpty())
        m_app.Shell.SetClipboard(text);
}

void frmView::DoTimer(int) { m_app.Shell.MessageBox(u"未実装m(_ _)m"_s, m_app.AppTitle(), Desktop::Icon::Information); }

void frmView::DoCommunity(int) { m_app.Shell.ShellOpenOwn(mdlProduct::SupportPage()); }

void frmView::DoAbout(int) { frmAbout::ShowVersionInfo(m_app.Shell, this); }

void frmView::DoShowWindow(int) { ShowMainWindow(); }

void frmView::DoEscape(int)
{
    if (m_busy != BusyState::None && m_dialog->IsLoad())
        m_dialog->reject(); // a run comes first; this is its cancel button
    else if (m_viewer->CurrentList() == CViewer::ResultList)
        m_viewer->ShowList(CViewer::BoardList);
    else if (m_panels->IsNoReadPointOpen())
        m_panels->CloseNoReadPoint();
    else
        showMinimized();
}

void frmView::DoPopupBoards(int) { m_menus->Menu(u"mnuBBSMove"_s)->popup(m_separator->mapToGlobal(QPoint(0, 0))); }

void frmView::DoPopupMarks(int)
{
    if (m_viewer->IsRawTable())
        return;
    RefreshMessageMenu();
    m_menus->Menu(u"mnuMsgMark"_s)->popup(QCursor::pos());
}
