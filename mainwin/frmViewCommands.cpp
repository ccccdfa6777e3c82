// mainwin/frmViewCommands.cpp
// The commands of the main window: from a menu item, a button or a key to the operation behind it.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "controls/uSeparator.h"
#include "load/frmLoadDlg.h"
#include "load/mdlLoad.h"
#include "mainwin/CFindCommands.h"
#include "mainwin/CListView.h"
#include "mainwin/CMenuSet.h"
#include "mainwin/CMessageCommands.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/CTextZoom.h"
#include "mainwin/CTrayPresence.h"
#include "mainwin/frmAbout.h"
#include "mainwin/CToolbar.h"
#include "mainwin/mdlProduct.h"
#include "platform/desktop/desktop.h"
#include "store/Recovery.h"
#include "query/frmSQL.h"
#include "viewer/mdlStatements.h"
#include "viewer/CViewer.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using MoveMode = CViewer::MoveMode;

namespace
{

/// The tray can be reached while a modal box is open.
bool IsFromTray(mdlCommands::Command Handler)
{
    using mdlCommands::Command;
    return Handler == Command::TraySelectBoard || Handler == Command::TrayExecute || Handler == Command::NewPost;
}

} // namespace

struct frmView::CommandLine
{
    Command Handler;
    void (*Do)(frmView& View, int Argument);
};

const frmView::CommandLine* frmView::FindCommand(Command Handler)
{
    using V = frmView;
    using Page = CMessageCommands::Page;
    static constexpr CommandLine lines[] = {
        {Command::Execute, [](V& View, int Number) { View.DoExecute(Number); }},
        {Command::TrayExecute, [](V& View, int Number) { View.DoTrayExecute(Number); }},
        {Command::SelectBoard, [](V& View, int BBS_ID) { View.m_viewer->SelectBoard(BBS_ID); }},
        {Command::TraySelectBoard, [](V& View, int BBS_ID) { View.DoTraySelectBoard(BBS_ID); }},
        {Command::NewPost, [](V& View, int BBS_ID) { View.m_messageCommands->NewPost(BBS_ID); }},
        {Command::BoardListButton, [](V& View, int) { View.DoBoardListButton(); }},
        {Command::ViewMode, [](V& View, int Mode) { View.m_viewer->ShowViewMode(Mode); }},
        {Command::Thread, [](V& View, int) { View.DoThread(); }},
        {Command::SetNoRead, [](V& View, int) { View.DoSetNoRead(); }},
        {Command::Browse, [](V& View, int Which) { View.m_messageCommands->ShowPage(Page(Which)); }},
        {Command::PrevMessage, [](V& View, int) { View.MovePrev(MoveMode::Message, false); }},
        {Command::NextMessage, [](V& View, int) { View.MoveNext(MoveMode::Message, false); }},
        {Command::PrevUnread, [](V& View, int) { View.MovePrev(MoveMode::Unread, true); }},
        {Command::NextUnread, [](V& View, int) { View.MoveNext(MoveMode::Unread, true); }},
        {Command::PrevUnreadByKey, [](V& View, int) { View.DoPrevUnreadByKey(); }},
        {Command::HistoryBack, [](V& View, int) { View.MovePrev(MoveMode::History, false); }},
        {Command::HistoryForward, [](V& View, int) { View.MoveNext(MoveMode::History, false); }},
        {Command::InReplyTo, [](V& View, int) { View.m_viewer->MoveInReplyTo(View.m_viewer->CurrentList()); }},
        {Command::Mark, [](V& View, int Mark) { View.m_viewer->MarkSelected(Mark); }},
        {Command::MarkRead, [](V& View, int) { View.m_viewer->SetReadSelected(View.m_viewer->CurrentList(), true); }},
        {Command::MarkNoRead,
         [](V& View, int) { View.m_viewer->SetReadSelected(View.m_viewer->CurrentList(), false); }},
        {Command::SelectAll, [](V& View, int) { View.DoSelectAll(); }},
        {Command::ReverseSelection, [](V& View, int) { View.DoReverseSelection(); }},
        {Command::Mail, [](V& View, int) { View.m_messageCommands->Mail(); }},
        {Command::HomePage, [](V& View, int) { View.m_messageCommands->HomePage(); }},
        {Command::TwoSidedReply, [](V& View, int Side) { View.m_messageCommands->TwoSidedReply(Side); }},
        {Command::OpenUrl, [](V& View, int) { View.m_messageCommands->OpenSelection(); }},
        {Command::WebSearch, [](V& View, int Number) { View.m_messageCommands->Search(Number); }},
        {Command::CopyRows, [](V& View, int) { View.m_messageCommands->CopyRows(); }},
        {Command::CopyText, [](V& View, int) { View.m_messageCommands->Copy(); }},
        {Command::CopyWithHeader, [](V& View, int) { View.m_messageCommands->CopyWithHeader(); }},
        {Command::Delete, [](V& View, int) { View.m_viewer->DeleteSelected(); }},
        {Command::Relate, [](V& View, int) { View.DoRelate(); }},
        {Command::RelateText,
         [](V& View, int) {
             View.m_viewer->RelatedSearch(View.m_viewer->CurrentBoard(), View.m_pane->SelectedText());
         }},
        {Command::CompactDatabase, [](V& View, int) { View.DoCompactDatabase(); }},
        {Command::Query, [](V& View, int) { View.DoQuery(); }},
        {Command::Find, [](V& View, int) { View.m_find->OpenDialog(); }},
        {Command::FindNext, [](V& View, int) { View.m_find->FindNext(); }},
        {Command::FindPrev, [](V& View, int) { View.m_find->FindPrev(); }},
        {Command::TextFind, [](V& View, int) { View.DoTextFind(); }},
        {Command::Timer, [](V& View, int) { View.DoTimer(); }},
        {Command::Options, [](V& View, int) { View.DoOptions(); }},
        {Command::BoardProperties, [](V& View, int) { View.DoBoardProperties(); }},
        {Command::Help, [](V& View, int) { View.m_messageCommands->ShowHelp(); }},
        {Command::Community, [](V& View, int) { View.m_app.Shell.ShellOpenOwn(mdlProduct::SupportPage()); }},
        {Command::About, [](V& View, int) { frmAbout::ShowVersionInfo(View.m_app.Shell, &View); }},
        {Command::Escape, [](V& View, int) { View.DoEscape(); }},
        {Command::PopupBoards, [](V& View, int) { View.DoPopupBoards(); }},
        {Command::PopupMarks, [](V& View, int) { View.DoPopupMarks(); }},
        {Command::TextLarger, [](V& View, int) { View.m_textZoom->Step(1); }},
        {Command::TextSmaller, [](V& View, int) { View.m_textZoom->Step(-1); }},
        {Command::TextUsual, [](V& View, int) { View.m_textZoom->Reset(); }},
        {Command::MenuBar, [](V& View, int) { View.DoMenuBar(); }},
        {Command::ContextMenu, [](V&, int) { DoContextMenu(); }},
    };
    const auto found = std::find_if(std::begin(lines), std::end(lines),
                                    [Handler](const CommandLine& Line) { return Line.Handler == Handler; });
    return found == std::end(lines) ? nullptr : found;
}

void frmView::RunCommand(Command Handler, int Argument)
{
    if (Handler == Command::ShowWindow || (IsFromTray(Handler) && QApplication::activeModalWidget()))
        ShowMainWindow(); // with the box, which wants its answer first
    else if (const CommandLine* line = FindCommand(Handler))
        Perform([=, this] { line->Do(*this, Argument); });
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
    m_app.Shell.MessageBox(mdlStore::RefusalText(Error), m_app.AppTitle(), Desktop::Icon::Information);
}

// Drivers and boards

void frmView::DoExecute(int Number)
{
    const bool receives = Number >= int(LoadCommand::Receive) && Number <= int(LoadCommand::ReceiveAllBoards);
    const bool startsRun = receives || Number == int(LoadCommand::ImportFiles);
    if (!startsRun || m_busy == BusyState::None)
        m_drivers->ExecuteCommand(Number);
}

void frmView::DoTrayExecute(int Number)
{
    ShowMainWindow();
    DoExecute(Number);
}

void frmView::DoImport(const QStringList& Paths)
{
    if (m_busy != BusyState::None || QApplication::activeModalWidget()) // a box that came after the drop
        return;
    activateWindow(); // the files came from another window
    Perform([&] { m_drivers->ImportChosen(Paths); });
}

void frmView::DoTraySelectBoard(int BBS_ID)
{
    ShowMainWindow();
    m_viewer->SelectBoard(BBS_ID);
}

// Lists

void frmView::DoBoardListButton()
{
    if (m_viewer->CurrentList() == CViewer::ResultList)
        LeaveResults();
    else
        m_viewer->ShowViewMode(CViewModes::Newest);
}

void frmView::DoThread()
{
    const int list = m_viewer->CurrentList();
    m_viewer->ResetListView(list, m_viewer->IsRawTable());
    m_viewer->ShowThread(list);
}

void frmView::DoSelectAll()
{
    const int list = m_viewer->CurrentList();
    m_viewer->List(list).Select(0, m_viewer->List(list).Count() - 1, true);
    SelectionChanged(list);
}

void frmView::DoReverseSelection()
{
    m_viewer->List(m_viewer->CurrentList()).InvertSelection();
    SelectionChanged(m_viewer->CurrentList());
}

// Moving

void frmView::MovePrev(CViewer::MoveMode Mode, bool PageFirst)
{
    m_viewer->MovePrev(m_viewer->CurrentList(), Mode, PageFirst);
}

void frmView::MoveNext(CViewer::MoveMode Mode, bool PageFirst)
{
    m_viewer->MoveNext(m_viewer->CurrentList(), Mode, PageFirst);
}

void frmView::DoPrevUnreadByKey()
{
    MovePrev(MoveMode::Unread, true);
    m_pane->ClearSelection();
}

// Unread position

void frmView::DoSetNoRead()
{
    if (m_busy == BusyState::None)
        m_panels->OpenNoReadPoint(m_viewer->BoardProperty().NoReadPoint());
}

void frmView::StoreNoReadPoint(qint32 Value)
{
    if (!m_viewer->BoardProperty().SetNoReadPoint(Value))
        m_app.Shell.MessageBox(u"未読位置を保存できませんでした。"_s, m_app.AppTitle(), Desktop::Icon::Exclamation);
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

void frmView::DoRelate()
{
    if (const std::optional<CMessage> message = SelectedMessage())
        m_viewer->RelatedSearch(message->BBS_ID, u'#' + QString::number(message->ID));
}

void frmView::DoQuery()
{
    RunQueries(m_lastQuery.isEmpty() ? mdlStatements::AllMessages(m_viewer->CurrentBoard()) : m_lastQuery);
}

void frmView::DoTextFind()
{
    QString text = m_pane->SelectedText();
    if (text.endsWith(u"\r\n"_s)) // the pane ends the last line, a stored body need not
        text.chop(2);
    if (RunQueries(mdlStatements::MessagesWith(m_viewer->CurrentBoard(), text)))
        m_toolbar->FindBox().setEditText(text);
}

// Find

void frmView::FindMessage(const QString& Text, bool Forward)
{
    Perform([&] { m_find->FindMessage(Text, Forward); });
}

// The rest

void frmView::DoTimer() { m_app.Shell.MessageBox(u"未実装m(_ _)m"_s, m_app.AppTitle(), Desktop::Icon::Information); }

void frmView::DoEscape()
{
    if (m_busy != BusyState::None && m_dialog->IsLoad())
        m_dialog->reject(); // a run comes first; this is its cancel button
    else if (m_viewer->CurrentList() == CViewer::ResultList)
        LeaveResults();
    else if (m_panels->IsNoReadPointOpen())
        m_panels->CloseNoReadPoint();
    else if (!m_tray->Hide())
        showMinimized();
}

void frmView::LeaveResults()
{
    m_panels->CloseNoReadPoint();
    m_viewer->ShowList(CViewer::BoardList);
}

void frmView::DoPopupBoards() { m_menus->Menu(u"mnuBBSMove"_s)->popup(m_separator->mapToGlobal(QPoint(0, 0))); }

void frmView::DoPopupMarks()
{
    if (m_viewer->IsRawTable())
        return;
    RefreshMessageMenu();
    // The pointer may have been left on another window while the keyboard is used.
    const QPoint pointer = QCursor::pos();
    const bool isHere = frameGeometry().contains(pointer);
    m_menus->Menu(u"mnuMsgMark"_s)->popup(isHere ? pointer : View(m_viewer->CurrentList()).PlaceBelowFocus());
}

void frmView::DoMenuBar()
{
    if (QAction* first = menuBar()->actions().value(0))
        menuBar()->setActiveAction(first);
}

/// What the menu key does; not every platform knows Shift+F10 for it. Posted, since the menu of an entry field waits
/// for its end, and the command must not.
void frmView::DoContextMenu()
{
    QWidget* focus = QApplication::focusWidget();
    if (!focus)
        return;
    const QPoint place = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QCoreApplication::postEvent(
        focus, new QContextMenuEvent(QContextMenuEvent::Keyboard, place, focus->mapToGlobal(place), Qt::NoModifier));
}
