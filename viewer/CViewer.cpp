// viewer/CViewer.cpp
// Lists, loads and the shown message.

#include "viewer/CViewer.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "board/work_watch.h"
#include "platform/dao/Database.h"
#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "viewer/mdlBodyLines.h"
#include "viewer/mdlColumns.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace
{

constexpr int CountRefreshStep = 5; // rows added singly between two updates of the count

} // namespace

CViewer::CViewer(Application& App, CBBS& Board, ViewerHost& Host, QObject* Parent)
    : QObject(Parent)
    , m_app(App)
    , m_bbs(Board)
    , m_host(Host)
    , m_property(App)
    , m_counts(App)
    , m_loader(App, Board, Host, m_marks)
    , m_updates(App, Board)
{
    m_lists[BoardList] = std::make_unique<CMessageList>(App.Option(), mdlColumns::BoardHeaders());
    m_lists[ResultList] = std::make_unique<CMessageList>(App.Option(), mdlColumns::ResultHeaders());
    for (const int list : {BoardList, ResultList}) {
        m_models[list] = std::make_unique<CMessageModel>(*m_lists[list], App.Option());
        connect(m_lists[list].get(), &CMessageList::HeadersChanged, this,
                [this, list] { m_host.HeadersChanged(list); });
    }
}

CViewer::~CViewer() = default;

// Boards and view modes

void CViewer::SelectBoard(qint32 BBS_ID)
{
    CListLoader::Result newest = Load(m_modes.Statement(CViewModes::Newest, BBS_ID, m_app.Option().AddMax), BoardList);
    const bool isLoaded = newest.What == CListLoader::Outcome::Messages;
    if (!isLoaded && m_currentBoard != 0)
        return;
    m_currentBoard = BBS_ID;
    m_app.Option().BBS_ID = BBS_ID;
    ReadBoardProperty();
    newest.What = CListLoader::Outcome::Messages; // a window that has just been opened shows an empty board
    Take(std::move(newest), BoardList);
}

/// The board's row may have been changed by a dialog or by a statement. One that cannot be read stays as it was.
void CViewer::ReadBoardProperty()
{
    try {
        m_property.GetProperty(m_currentBoard);
    } catch (const dao::Error&) {
    }
}

void CViewer::ShowViewMode(int Index)
{
    LoadList(m_modes.Statement(Index, m_currentBoard, m_app.Option().AddMax), BoardList);
}

void CViewer::ChangeBBSViewMenu()
{
    m_modes.Recount(m_app.LogDB(), m_currentBoard, m_app.Option().AddMax);
    m_host.ViewMenuChanged();
}

// Loading

/// Runs a statement; nothing of the viewer has changed when it fails.
CListLoader::Result CViewer::Load(const QString& Sql, int List)
{
    StopReadTimer();
    CListLoader::Result result = m_loader.Run(Sql, List == BoardList);
    m_errorOffset = result.ErrorOffset;
    if (result.What == CListLoader::Outcome::Refused)
        ShowCounts(m_currentList); // where the reading of rows has counted
    return result;
}

bool CViewer::LoadList(const QString& Sql, int List)
{
    CListLoader::Result result = Load(Sql, List);
    const bool isDone = result.What != CListLoader::Outcome::Refused;
    Take(std::move(result), List);
    return isDone;
}

void CViewer::Take(CListLoader::Result Result, int List)
{
    switch (Result.What) {
    case CListLoader::Outcome::Refused:
    case CListLoader::Outcome::NotShown:
        break;
    case CListLoader::Outcome::Done:
        AfterAction();
        break;
    default:
        ShowLoaded(std::move(Result), List);
    }
}

void CViewer::ShowLoaded(CListLoader::Result Result, int List)
{
    const QScopedValueRollback loading(m_isLoading, true);
    m_host.BeginListUpdate(List);
    if (Result.What == CListLoader::Outcome::Messages) {
        ClearList(List);
        FillList(List, std::move(Result.Items));
    } else if (Result.What == CListLoader::Outcome::RawTable) {
        ClearList(List);
        m_lists[List]->FillRaw(Result.Headers, std::move(Result.Cells));
    }
    m_host.EndListUpdate(List);
    ShowList(List);
    ShowNoReadPoint();
    m_host.ClearStatus();
    ShowFirst(List);
    StopReadTimer();
}

void CViewer::FillList(int List, std::vector<CMessageItem> Items)
{
    if (List == BoardList)
        NoteLoaded(Items);
    // The result list shows messages under the board list's headers.
    m_lists[List]->Fill(std::move(Items), List == ResultList ? m_lists[BoardList]->Headers() : QStringList());
}

void CViewer::NoteLoaded(const std::vector<CMessageItem>& Items)
{
    for (const CMessageItem& item : Items)
        m_modes.Note(item.Message.ID);
}

void CViewer::ShowFirst(int List)
{
    if (m_lists[List]->Count() == 0)
        return;
    m_lists[List]->ClearSelection();
    ShowMessage(List, 0, false);
}

/// The statement may have touched boards, marks and any message.
void CViewer::AfterAction()
{
    ReadBoardProperty();
    BuildMarkMenu();
    RecountBoards();
    m_host.DataDefinitionChanged();
}

bool CViewer::AddMessageItem(int List, const CMessage& Msg)
{
    const int row = m_lists[List]->Add(m_loader.MakeItem(Msg));
    if (row < 0)
        return false;
    if (List == BoardList)
        m_modes.Note(Msg.ID);
    if (List == m_currentList && m_lists[List]->Count() % CountRefreshStep == 0)
        ShowCounts(List);
    return true;
}

void CViewer::WithdrawMessages(const std::vector<CMessage>& Messages)
{
    std::vector<CMessageId> ids;
    for (const CMessage& message : Messages)
        ids.push_back({message.BBS_ID, message.ID});
    for (const auto& list : m_lists)
        list->Remove(ids);
    m_modes.Reset();
    const CMessageList& board = *m_lists[BoardList];
    for (int row = 0; row < board.Count(); ++row)
        m_modes.Note(board.Item(row).Message.ID);
    RecountBoards();
    m_host.SelectionChanged(BoardList);
    m_host.SelectionChanged(ResultList);
}

// After a run

void CViewer::RefreshAfterRun()
{
    ReadBoardProperty();
    AddNewer();
    AddOlder();
    RereadRoots();
    RecountBoards();
    ChangeBBSViewMenu();
    ShowNoReadPoint();
    const QScopedValueRollback loading(m_isLoading, true);
    if (m_currentList == BoardList && m_lists[BoardList]->Focus() < 0)
        ShowFirst(BoardList);
}

/// A receive has added its messages one by one, an import only those between others: what it brought above the list is
/// added now.
void CViewer::AddNewer()
{
    const int pageSize = m_app.Option().AddMax;
    const std::vector<CMessageItem> newer =
        m_loader.ReadQuietly(m_modes.Statement(CViewModes::NewerPage, m_currentBoard, pageSize));
    const bool isGap = static_cast<int>(newer.size()) >= pageSize; // there may be more between these and the newest
    if (isGap || m_lists[BoardList]->Count() == 0) {
        ReloadNewest();
        return;
    }
    for (const CMessageItem& item : newer)
        AddMessageItem(BoardList, item.Message);
}

/// A list that went down to the oldest message before the run does so after it as far as one view reaches: what an
/// import brings is mostly older than what was there.
void CViewer::AddOlder()
{
    const int room = m_app.Option().AddMax - m_lists[BoardList]->Count();
    if (room <= 0 || m_modes.Entry(CViewModes::OlderPage).Enabled)
        return;
    const std::vector<CMessageItem> older =
        m_loader.ReadQuietly(m_modes.Statement(CViewModes::OlderPage, m_currentBoard, room));
    for (const CMessageItem& item : older)
        AddMessageItem(BoardList, item.Message);
}

/// Selection and focus stay with their messages where these are still in the list.
void CViewer::ReloadNewest()
{
    std::vector<CMessageItem> items =
        m_loader.ReadQuietly(m_modes.Statement(CViewModes::Newest, m_currentBoard, m_app.Option().AddMax));
    if (items.empty())
        return;
    CMessageList& list = *m_lists[BoardList];
    const std::vector<CMessageId> selected = SelectedIds(BoardList);
    const std::optional<CMessageId> focused = FocusedId(BoardList);
    m_host.BeginListUpdate(BoardList);
    m_modes.Reset();
    FillList(BoardList, std::move(items));
    for (const CMessageId id : selected) {
        const int row = list.Find(id);
        list.Select(row, row, true);
    }
    list.SetFocus(focused ? list.Find(*focused) : -1);
    m_host.EndListUpdate(BoardList);
    m_host.SelectionChanged(BoardList);
}

/// A message is told before its thread is known, and a run may have mended older threads.
void CViewer::RereadRoots()
{
    QHash<qint32, qint32> roots;
    try {
        const auto rows = m_app.LogDB()->OpenRecordset(
            u"SELECT ID, RootThread  FROM Message WHERE BBS_ID = %1   AND ID >= %2"_s.arg(m_currentBoard)
                .arg(m_modes.LowestID()));
        for (; !rows->Eof(); rows->MoveNext())
            roots.insert(rows->Get(u"ID").ToLong(), rows->Get(u"RootThread").ToLong());
    } catch (const dao::Error&) {
        return; // the list goes on showing what it knows
    }
    m_lists[BoardList]->SetRoots(m_currentBoard, roots);
}

// Lists

void CViewer::ClearList(int List)
{
    m_lists[List]->Clear();
    if (List == BoardList)
        m_modes.Reset();
    ClearPane();
}

void CViewer::ClearPane()
{
    m_shown.reset();
    m_host.ShowBody({});
    m_host.ShowMail({});
    m_host.ShowHomePage({});
}

void CViewer::ShowList(int List)
{
    m_currentList = List;
    m_host.ListShown(List);
    const int focus = m_lists[List]->Focus();
    if (focus >= 0)
        ShowMessage(List, focus, false);
    else
        ClearPane(); // what it shows is a message of the other list
    ChangeBBSViewMenu();
    ShowCounts(List);
}

void CViewer::ResetListView(int List, bool Raw)
{
    m_lists[List]->ClearSortMark();
    if (!Raw)
        m_lists[List]->ClearIndent();
}

void CViewer::ShowThread(int List)
{
    CMessageList& list = *m_lists[List];
    if (list.Count() == 0 || list.IsRaw())
        return;
    m_host.BeginListUpdate(List);
    list.ArrangeThreads();
    m_host.EndListUpdate(List);
    m_host.SelectionChanged(List);
    if (list.Focus() >= 0)
        ShowMessage(List, list.Focus(), false);
}

void CViewer::ColumnClicked(int List, int Column)
{
    CMessageList& list = *m_lists[List];
    if (!list.IsRaw() && Column == mdlColumns::Read) {
        ResetListView(List, false);
        ShowThread(List);
    } else if (!SortBy(List, Column)) {
        return;
    }
    if (list.Focus() >= 0)
        m_host.EnsureVisible(List, list.Focus());
}

/// Sorts by the column, the other way round where its header says ascending. False when the user broke it off: the
/// list is as it was.
bool CViewer::SortBy(int List, int Column)
{
    CMessageList& list = *m_lists[List];
    const auto direction =
        list.SortMark(Column) == u"↑"_s ? CMessageList::Order::Descending : CMessageList::Order::Ascending;
    {
        const CWatchedWork watched(m_bbs.Watch(), Work::Sort);
        if (!list.Sort(Column, direction, [&watched] { return watched.GoesOn(); }))
            return false;
    }
    ResetListView(List, list.IsRaw());
    list.SetSortMark(Column, direction);
    m_host.SelectionChanged(List);
    return true;
}

void CViewer::ItemClicked(int List, int Row) { ShowMessage(List, Row, true); }

// The shown message

void CViewer::FocusRow(int List, int Row)
{
    m_lists[List]->SetFocus(Row);
    m_lists[List]->Select(Row, Row, true);
    m_host.SelectionChanged(List);
    m_host.EnsureVisible(List, Row);
}

void CViewer::ShowMessage(int List, int Row, bool KeepSelection)
{
    CMessageList& list = *m_lists[List];
    if (Row < 0 || Row >= list.Count())
        return;
    if (KeepSelection)
        list.SetFocus(Row);
    else
        FocusRow(List, Row);
    if (list.IsRaw() || list.SelectedCount() > 1)
        return;
    ShowText(list.Item(Row).Message);
    PushHistory(Row + 1); // after a move through the history this is the entry at hand
    if (!IsRead(List, Row) && !m_isLoading)
        StartReadTimer();
}

void CViewer::ShowText(const CMessage& Msg)
{
    m_shown = CMessageId{Msg.BBS_ID, Msg.ID};
    if (m_timerMessage != m_shown)
        StopReadTimer(); // of a message that is no longer looked at
    m_host.ShowBody(mdlBodyLines::Split(Msg.Body));
    m_host.ChangeStatusBarStyle(0);
    m_host.ShowMail(Msg.Mail.isEmpty() ? QString() : u"mailto:"_s + Msg.Mail);
    m_host.ShowHomePage(Msg.HomePage);
}

void CViewer::PushHistory(int Position) { m_history.Push(Position); }

void CViewer::ShowCounts(int List)
{
    m_host.SetCountText(QString::number(m_lists[List]->UnreadCount()) + u'/' + QString::number(m_lists[List]->Count()));
}

void CViewer::ShowNoReadPoint()
{
    m_host.SetNoReadPointText(u"未読位置:"_s + QString::number(m_property.NoReadPoint()));
}
