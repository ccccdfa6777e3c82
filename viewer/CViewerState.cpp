// viewer/CViewerState.cpp
// The viewer's read state, marks and moves.

#include "app/Application.h"
#include "viewer/CViewer.h"
#include "viewer/mdlMoves.h"

#include <algorithm>

namespace
{

constexpr qsizetype PlainKeyLength = 10;
constexpr qsizetype NumberDigits = 6;

} // namespace

// Messages by key

/// A key longer than ten characters can be read in two ways; the one that a list holds is meant.
std::optional<CMessageId> CViewer::IdOfKey(const QString& Key) const
{
    if (Key.isEmpty())
        return FocusedId(m_currentList);
    std::optional<CMessageId> id = CMessageId::FromKey(Key);
    if (!id || Key.size() == PlainKeyLength)
        return id;
    const CMessageId wideBoard{QStringView(Key).mid(1).chopped(NumberDigits).toInt(),
                               QStringView(Key).last(NumberDigits).toInt()};
    const auto holdsIt = [&](const auto& List) { return List->Contains(wideBoard); };
    return std::any_of(std::begin(m_lists), std::end(m_lists), holdsIt) ? wideBoard : id;
}

std::optional<CMessageId> CViewer::FocusedId(int List) const
{
    const CMessageList& list = *m_lists[List];
    const int focus = list.Focus();
    if (focus < 0 || list.IsRaw())
        return std::nullopt;
    return list.Item(focus).Id();
}

std::vector<CMessageId> CViewer::SelectedIds(int List) const
{
    std::vector<CMessageId> ids;
    const CMessageList& list = *m_lists[List];
    if (list.IsRaw())
        return ids;
    for (const int row : list.SelectedRows())
        ids.push_back(list.Item(row).Id());
    return ids;
}

// Read state

bool CViewer::IsRead(int List, int Row) const
{
    const CMessageItem& item = m_lists[List]->Item(Row);
    return !item.IsMessage() || item.Message.Read;
}

/// The database first: only what it holds is shown.
bool CViewer::ChangeRead(const std::vector<CMessageId>& Ids, bool Read, bool UpdateBoardCount, Report Reporting)
{
    StopReadTimer();
    const auto changed = m_updates.SetRead(Ids, Read, Reporting);
    if (!changed)
        return false;
    for (const CMessageId id : Ids) {
        for (const auto& list : m_lists) {
            const int row = list->Find(id);
            if (row >= 0)
                list->SetRead(row, Read);
        }
    }
    for (const auto& [board, count] : *changed) {
        if (UpdateBoardCount && count != 0)
            UpdateBoardUnreadCaption(board, Read ? -count : count);
    }
    ShowCounts(m_currentList);
    return true;
}

void CViewer::SetRead(const QString& Key, bool Read, bool UpdateBoardCount)
{
    if (const auto id = IdOfKey(Key))
        ChangeRead({*id}, Read, UpdateBoardCount, Report::Always);
}

void CViewer::SetReadSelected(int List, bool Read)
{
    std::vector<CMessageId> ids;
    const CMessageList& list = *m_lists[List];
    for (const int row : list.SelectedRows()) {
        if (list.Item(row).IsMessage() && list.Item(row).Message.Read != Read)
            ids.push_back(list.Item(row).Id());
    }
    if (!ids.empty())
        ChangeRead(ids, Read, true, Report::Always);
}

void CViewer::StartReadTimer()
{
    StopReadTimer();
    if (!m_shown)
        return;
    m_timerMessage = m_shown;
    if (m_app.Option().ReadTiming > 0)
        m_host.StartReadTimer(m_app.Option().ReadTiming);
    else
        ReadTimerFired();
}

void CViewer::StopReadTimer()
{
    m_timerMessage.reset();
    m_host.StopReadTimer();
}

void CViewer::ReadTimerFired()
{
    if (const auto id = m_timerMessage)
        ChangeRead({*id}, true, true, Report::FirstOnly);
}

// Counts of the boards

void CViewer::UpdateBoardUnreadCaption(qint32 BBS_ID, int Change)
{
    m_host.BoardCountChanged(BBS_ID, m_counts.Add(BBS_ID, Change));
}

void CViewer::RecountBoards()
{
    for (const qint32 board : m_counts.Forget())
        m_host.BoardCountChanged(board, m_counts.Count(board));
    ShowCounts(m_currentList);
}

int CViewer::BoardUnreadCount(qint32 BBS_ID) const { return m_counts.Count(BBS_ID); }

// Marks

void CViewer::BuildMarkMenu()
{
    m_marks.Read(m_app.LogDB());
    m_host.MarksChanged();
}

void CViewer::ChangeMark(const std::vector<CMessageId>& Ids, qint32 Number)
{
    if (Ids.empty() || !m_updates.SetMark(Ids, Number))
        return;
    const std::optional<quint32> color = m_marks.ForeColor(Number);
    for (const CMessageId id : Ids) {
        for (const auto& list : m_lists) {
            const int row = list->Find(id);
            if (row >= 0)
                list->SetMark(row, Number, color);
        }
    }
}

void CViewer::SetMark(const QString& Key, qint32 Number)
{
    if (const auto id = IdOfKey(Key))
        ChangeMark({*id}, Number);
}

void CViewer::MarkSelected(qint32 Number) { ChangeMark(SelectedIds(m_currentList), Number); }

qint32 CViewer::GetSelectedMark() const
{
    const CMessageList& list = *m_lists[m_currentList];
    qint32 shared = 0;
    for (const int row : list.SelectedRows()) {
        const qint32 mark = list.Item(row).Message.Mark;
        if (shared == 0)
            shared = mark;
        if (mark != shared)
            return 0;
    }
    return shared;
}

// Moves

/// Going to the next unread message means that the shown one has been read.
void CViewer::Leave(int List, MoveMode Mode)
{
    const std::optional<CMessageId> id = FocusedId(List);
    if (Mode == MoveMode::Unread && id && !IsRead(List, m_lists[List]->Focus()))
        ChangeRead({*id}, true, true, Report::FirstOnly);
    else
        StopReadTimer();
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
        MoveTo(List, Mode == MoveMode::Unread ? mdlMoves::UnreadAfter(list, list.Focus()) : list.Focus() + 1);
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
