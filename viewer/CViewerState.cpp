// viewer/CViewerState.cpp
// The viewer's changes to messages: read state, marks, deletion.

#include "app/Application.h"
#include "platform/desktop/desktop.h"
#include "viewer/CViewer.h"

#include <algorithm>

using namespace Qt::StringLiterals;

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
    for (const auto& list : m_lists)
        list->SetRead(Ids, Read);
    if (UpdateBoardCount)
        CountBoards(*changed, Read ? -1 : 1);
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

void CViewer::CountBoards(const CMessageUpdates::Counts& Changed, int Sign)
{
    for (const auto& [board, count] : Changed) {
        if (count != 0)
            UpdateBoardUnreadCaption(board, Sign * count);
    }
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
    if (m_marks.Read(m_app.LogDB()))
        m_host.MarksChanged();
}

void CViewer::ChangeMark(const std::vector<CMessageId>& Ids, qint32 Number)
{
    if (Ids.empty() || !m_updates.SetMark(Ids, Number))
        return;
    const std::optional<quint32> color = m_marks.ForeColor(Number);
    for (const auto& list : m_lists)
        list->SetMark(Ids, Number, color);
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

// Deletion

bool CViewer::ConfirmsDeletion() const
{
    return m_app.Shell.MessageBox(u"このメッセージを削除してもよろしいですか？"_s,
                                  u"削除の確認 - "_s + m_app.AppTitle(), Desktop::Icon::Question,
                                  Desktop::Buttons::YesNo, Desktop::Answer::No) == Desktop::Answer::Yes;
}

void CViewer::DeleteSelected()
{
    const std::vector<CMessageId> ids = SelectedIds(m_currentList);
    if (ids.empty() || !ConfirmsDeletion())
        return;
    const auto unread = m_updates.Delete(ids);
    if (!unread)
        return;
    StopReadTimer();
    for (int list = m_currentList; list >= BoardList; --list) // the board list shows no message that is gone
        DropRows(list, ids);
    m_lists[ResultList]->SetRead(ids, true); // copies that stay there are no longer anything to read
    ClearPane();
    CountBoards(*unread, -1);
    ChangeBBSViewMenu();
    ShowCounts(m_currentList);
}

/// What was the focus is the next row; of the list in front it is selected, so that commands go on from there.
void CViewer::DropRows(int List, const std::vector<CMessageId>& Ids)
{
    CMessageList& list = *m_lists[List];
    m_host.BeginListUpdate(List);
    list.Remove(Ids);
    m_host.EndListUpdate(List);
    if (List == m_currentList && list.Focus() >= 0)
        FocusRow(List, list.Focus());
    else
        m_host.SelectionChanged(List);
}
