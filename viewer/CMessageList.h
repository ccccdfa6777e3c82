// viewer/CMessageList.h
// An ordered list of messages (or of the rows of a raw table): unique keys, selection, focus, sort state.

#ifndef VIEWER_CMESSAGELIST_H
#define VIEWER_CMESSAGELIST_H

#include "viewer/CMessageItem.h"
#include "viewer/CRowRanges.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

struct Settings;

/// What a list control shows, without the control. Rows count from 0.
///
/// The items stay where they are in memory; order is a list of their places, so sorting, threading and inserting move
/// four bytes a row. Finding a message is a hash look-up; finding its row costs a pass over the order after a change.
/// Focus and selection are two things and stay with their items when rows move.
class CMessageList : public QObject
{
    Q_OBJECT

public:
    enum class Order { Ascending, Descending };

    using RowRange = ::RowRange;

    /// So many runs of removed rows are told one by one; more of them cost less as a reset.
    static constexpr int MaxRemovedRuns = 16;

    /// Headers: the texts of the eleven columns. Option gives the date pattern and must outlive the list.
    CMessageList(const Settings& Option, QStringList Headers, QObject* Parent = nullptr);

    int Count() const { return static_cast<int>(m_order.size()); }
    bool IsRaw() const { return m_isRaw; }
    /// Row is 0 to Count() - 1.
    const CMessageItem& Item(int Row) const { return m_items[PlaceOf(Row)]; }
    /// Row of the message, -1 when the list does not hold it.
    int Find(CMessageId Id) const;
    bool Contains(CMessageId Id) const { return m_places.contains(Id.Packed()); }
    /// Number of messages shown as unread.
    int UnreadCount() const { return m_unreadCount; }
    /// The whole text of a cell, as it sorts and as the find looks at it; the subject comes with its indentation.
    QString Text(int Row, int Column) const;

    int ColumnCount() const { return static_cast<int>(m_headers.size()); }
    /// Header text without the sort mark.
    const QStringList& Headers() const { return m_headers; }
    /// Header text with " △" or " ▽" at the column that the user sorted by.
    QString Header(int Column) const;

    /// Removes all rows; columns and sort state stay.
    void Clear();
    /// Replaces all rows. Of two messages with one key the first stays. Where sorting is off, it is switched on by
    /// number, newest first. Headers become the columns when they are given (a raw table gives way to messages).
    void Fill(std::vector<CMessageItem> Items, const QStringList& Headers);
    /// Replaces all rows and columns by a table that holds no messages. Cells: row after row. Sorting goes off.
    void FillRaw(const QStringList& Headers, std::vector<QString> Cells);
    /// Adds one message: where the sort order puts it, at the end without one. Its row, or -1 when it is there already
    /// or the list shows a raw table.
    int Add(CMessageItem Item);
    /// Takes all of them out in one go, those that are there; the focus goes to the next row that stays (at the end to
    /// the last one). How many went.
    int Remove(const std::vector<CMessageId>& Ids);

    /// With one signal for all; messages that the list does not hold are passed over.
    void SetRead(const std::vector<CMessageId>& Ids, bool Read);
    /// The same. Without a ForeColor the rows keep those that they have.
    void SetMark(const std::vector<CMessageId>& Ids, qint32 Mark, std::optional<quint32> ForeColor);

    /// Gives the messages of a board, by number, other first messages of their threads; those that Roots does not name
    /// keep theirs. A list that is sorted by them is sorted anew.
    void SetRoots(qint32 BBS_ID, const QHash<qint32, qint32>& Roots);

    /// Column that the rows are kept sorted by, -1 when sorting is off.
    int SortColumn() const { return m_sortColumn; }
    /// Sorts by the texts of Column and keeps the list sorted. Messages with equal texts keep board and number order.
    /// False when GoesOn, asked every few milliseconds, has said so; the list is then as it was.
    bool Sort(
        int Column, Order Direction, const std::function<bool()>& GoesOn = [] { return true; });
    /// "↑", "↓" or empty, as the tag of the column's header.
    QString SortMark(int Column) const;
    void SetSortMark(int Column, Order Direction);
    void ClearSortMark();

    /// Puts the messages into thread order and indents the subjects; sorting goes off.
    void ArrangeThreads();
    void ClearIndent();

    /// The focused row, the one that commands without a selection mean; -1 without one.
    int Focus() const;
    /// -1 takes the focus away.
    void SetFocus(int Row);
    bool IsSelected(int Row) const { return m_selection.Contains(Row); }
    int SelectedCount() const { return m_selection.Count(); }
    std::vector<int> SelectedRows() const { return m_selection.Rows(); }
    /// The selected rows as runs, in order.
    const std::vector<RowRange>& SelectedRanges() const { return m_selection.Runs(); }
    const CRowRanges& Selection() const { return m_selection; }
    void Select(int First, int Last, bool On);
    /// Rows First to Last change from selected to not selected and back.
    void ToggleSelection(int First, int Last);
    void ClearSelection();
    void InvertSelection();
    /// Exactly these rows, of those that there are.
    void SetSelection(CRowRanges Rows);
    /// Exactly these rows and this focus.
    void SetSelection(const std::vector<RowRange>& Ranges, int FocusRow);

Q_SIGNALS:
    void AboutToReset();
    void WasReset();
    void AboutToInsert(int Row);
    void Inserted();
    void AboutToRemove(int First, int Last);
    void Removed();
    void AboutToReorder();
    /// NewRows[r] is where the row that was at r stands now.
    void Reordered(const std::vector<int>& NewRows);
    void RowsChanged(int First, int Last);
    void HeadersChanged();

private:
    std::size_t PlaceOf(int Row) const { return static_cast<std::size_t>(m_order[static_cast<std::size_t>(Row)]); }
    int RowOfPlace(int Place) const;
    void Empty();
    void TakeItems(std::vector<CMessageItem> Items);
    int Store(CMessageItem Item);
    void CountItem(const CMessageItem& Item, int Sign);
    void SetSortState(int Column, Order Direction);
    void Reorder(const std::vector<int>& OldRows);
    void TellReordered(const std::vector<int>& OldRows);
    CRowRanges RowsOf(const std::vector<CMessageId>& Ids) const;
    int FocusWithout(const CRowRanges& Rows) const;
    void RemoveRun(RowRange Run);
    void RemoveAtOnce(const CRowRanges& Rows);
    void Release(int Place);
    std::vector<char> SelectedPlaces() const;
    void SelectPlaces(const std::vector<char>& Places);
    template<class Change> void ChangeRows(const std::vector<CMessageId>& Ids, Change ChangeItem);

    const Settings& m_option;
    QStringList m_headers;
    std::vector<QString> m_cells; // of a raw table, row after row
    std::vector<CMessageItem> m_items;
    std::vector<int> m_free;  // places in m_items whose message was removed
    std::vector<int> m_order; // the place of each row
    CRowRanges m_selection;
    mutable std::vector<int> m_rows; // the row of each place; empty after the order changed
    QHash<quint64, int> m_places;
    bool m_isRaw = false;
    int m_unreadCount = 0;
    int m_focusPlace = -1;
    int m_sortColumn = -1;
    Order m_sortOrder = Order::Ascending;
    int m_markColumn = -1;
    Order m_markOrder = Order::Ascending;
};

#endif // VIEWER_CMESSAGELIST_H
