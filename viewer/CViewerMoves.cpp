// viewer/CViewerMoves.cpp
// How the viewer goes from one message to another: moves, the message replied to, related search.

#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"
#include "viewer/CViewer.h"
#include "viewer/mdlMoves.h"
#include "viewer/mdlRelated.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

/// Going to the next unread message means that the shown one has been read.
void CViewer::Leave(int List, MoveMode Mode)
{
    const int row = m_shown ? m_lists[List]->Find(*m_shown) : -1;
    if (Mode == MoveMode::Unread && row >= 0 && !IsRead(List, row))
        ChangeRead({*m_shown}, true, true, Report::FirstOnly);
    else
        StopReadTimer();
}

/// The row that a move forward goes on from. After a deletion the focused message has not been seen yet.
int CViewer::RowBehind(int List) const
{
    const CMessageList& list = *m_lists[List];
    return list.IsRaw() || m_shown ? list.Focus() : list.Focus() - 1;
}

void CViewer::MoveTo(int List, int Row)
{
    if (Row < 0 || Row >= m_lists[List]->Count())
        return;
    m_lists[List]->ClearSelection();
    ShowMessage(List, Row, false);
}

void CViewer::MoveNext(int List, MoveMode Mode, bool PageFirst)
{
    const CMessageList& list = *m_lists[List];
    if (list.Count() == 0)
        return;
    Leave(List, Mode);
    if (PageFirst && m_host.PagePane(true))
        return;
    if (Mode == MoveMode::History)
        MoveTo(List, m_history.Forward(list.Count()) - 1);
    else
        MoveTo(List, Mode == MoveMode::Unread ? mdlMoves::UnreadAfter(list, RowBehind(List)) : RowBehind(List) + 1);
}

void CViewer::MovePrev(int List, MoveMode Mode, bool PageFirst)
{
    const CMessageList& list = *m_lists[List];
    if (list.Count() == 0)
        return;
    Leave(List, Mode);
    if (PageFirst && m_host.PagePane(false))
        return;
    if (Mode == MoveMode::History)
        MoveTo(List, m_history.Back(list.Count()) - 1);
    else
        MoveTo(List, Mode == MoveMode::Unread ? mdlMoves::UnreadBefore(list, list.Focus()) : list.Focus() - 1);
}

void CViewer::MoveInReplyTo(int List)
{
    const std::optional<CMessageId> id = FocusedId(List);
    if (!id)
        return;
    const qint32 parent = m_lists[List]->Item(m_lists[List]->Focus()).Message.InReplyTo;
    if (parent == 0 || !m_lists[List]->Contains({id->BBS_ID, parent}))
        return;
    Leave(List, MoveMode::Unread);
    MoveTo(List, m_lists[List]->Find({id->BBS_ID, parent}));
}

// Related search

/// Nothing when no board is called so, or when the database does not say.
std::optional<qint32> CViewer::BoardNamed(const QString& Name) const
{
    if (Name.isEmpty() || !m_app.LogDB())
        return std::nullopt;
    try {
        const auto boards = m_app.LogDB()->OpenRecordset(mdlRelated::BoardsNamed(Name));
        if (!boards->Eof())
            return boards->Get(u"BBS_ID").ToLong();
    } catch (const dao::Error&) { // the search that follows will say what is wrong with the database
    }
    return std::nullopt;
}

void CViewer::RelatedSearch(qint32 BBS_ID, const QString& Text)
{
    const auto wanted = mdlRelated::Parse(Text);
    if (!wanted) {
        m_app.Shell.MessageBox(u"関連検索のできる文字列ではありませんでした。"_s, m_app.AppTitle(),
                               Desktop::Icon::Information);
        return;
    }
    const CMessageId id{BoardNamed(wanted->BoardName).value_or(BBS_ID), wanted->Number};
    if (!LoadList(mdlRelated::ThreadOf(id.BBS_ID, id.ID), ResultList))
        return;
    ResetListView(ResultList, false);
    {
        const QScopedValueRollback loading(m_isLoading, true); // the message that is first for a moment is not read
        ShowThread(ResultList);
    }
    m_lists[ResultList]->ClearSelection();
    ShowFound(ResultList, m_lists[ResultList]->Find(id));
}

/// A row that is not there leaves an empty pane and nothing selected.
void CViewer::ShowFound(int List, int Row)
{
    if (Row >= 0) {
        ShowMessage(List, Row, false);
        return;
    }
    StopReadTimer();
    ClearPane();
    m_host.SelectionChanged(List);
}
