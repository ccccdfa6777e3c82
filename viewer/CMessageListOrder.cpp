// viewer/CMessageListOrder.cpp
// Order, focus and selection of a message list.

#include "app/Settings.h"
#include "viewer/CMessageList.h"
#include "viewer/mdlMessageSort.h"
#include "viewer/mdlThreadOrder.h"

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

// Order

void CMessageList::SetSortState(int Column, Order Direction)
{
    m_sortColumn = Column;
    m_sortOrder = Direction;
    if (Column < 0)
        m_markColumn = -1;
}

/// Row r becomes what was in row OldRows[r].
void CMessageList::Reorder(const std::vector<int>& OldRows)
{
    const std::vector<char> selected = SelectedPlaces();
    std::vector<int> order(OldRows.size());
    std::transform(OldRows.begin(), OldRows.end(), order.begin(),
                   [this](int Row) { return m_order[static_cast<std::size_t>(Row)]; });
    m_order = std::move(order);
    m_rows.clear();
    SelectPlaces(selected);
}

void CMessageList::TellReordered(const std::vector<int>& OldRows)
{
    std::vector<int> newRows(OldRows.size());
    for (std::size_t row = 0; row < OldRows.size(); ++row)
        newRows[static_cast<std::size_t>(OldRows[row])] = static_cast<int>(row);
    Q_EMIT Reordered(newRows);
}

bool CMessageList::Sort(int Column, Order Direction, const std::function<bool()>& GoesOn)
{
    const auto oldRows = mdlMessageSort::SortedRows(*this, Column, Direction, m_option.DateFormat, GoesOn);
    if (!oldRows)
        return false;
    Q_EMIT AboutToReorder();
    SetSortState(Column, Direction);
    Reorder(*oldRows);
    TellReordered(*oldRows);
    return true;
}

QString CMessageList::SortMark(int Column) const
{
    if (Column != m_markColumn)
        return {};
    return m_markOrder == Order::Ascending ? u"↑"_s : u"↓"_s;
}

void CMessageList::SetSortMark(int Column, Order Direction)
{
    m_markColumn = Column;
    m_markOrder = Direction;
    Q_EMIT HeadersChanged();
}

void CMessageList::ClearSortMark()
{
    if (m_markColumn < 0)
        return;
    m_markColumn = -1;
    Q_EMIT HeadersChanged();
}

void CMessageList::ArrangeThreads()
{
    if (m_isRaw)
        return;
    std::vector<mdlThreadOrder::Node> nodes;
    nodes.reserve(m_order.size());
    for (int row = 0; row < Count(); ++row)
        nodes.push_back({Item(row).Id(), Item(row).Message.InReplyTo});
    const std::vector<mdlThreadOrder::Place> places = mdlThreadOrder::Arrange(nodes);

    Q_EMIT AboutToReorder();
    std::vector<int> oldRows;
    oldRows.reserve(places.size());
    for (const mdlThreadOrder::Place& place : places) {
        m_items[PlaceOf(place.Index)].Indent = place.Indent;
        oldRows.push_back(place.Index);
    }
    m_sortColumn = -1;
    Reorder(oldRows);
    TellReordered(oldRows);
}

void CMessageList::ClearIndent()
{
    bool hasChanged = false;
    for (CMessageItem& item : m_items)
        hasChanged = std::exchange(item.Indent, 0) != 0 || hasChanged;
    if (hasChanged)
        Q_EMIT RowsChanged(0, Count() - 1);
}

// Focus and selection

int CMessageList::Focus() const { return RowOfPlace(m_focusPlace); }

void CMessageList::SetFocus(int Row) { m_focusPlace = Row < 0 || Row >= Count() ? -1 : static_cast<int>(PlaceOf(Row)); }

/// 1 at each place whose row is selected; empty without a selection.
std::vector<char> CMessageList::SelectedPlaces() const
{
    std::vector<char> places(m_selection.IsEmpty() ? 0 : m_items.size());
    for (const RowRange& run : m_selection.Runs()) {
        for (int row = run.First; row <= run.Last; ++row)
            places[PlaceOf(row)] = 1;
    }
    return places;
}

/// Selects what SelectedPlaces has told of, in the rows where it stands now.
void CMessageList::SelectPlaces(const std::vector<char>& Places)
{
    m_selection.Clear();
    for (int row = 0; row < Count() && !Places.empty(); ++row) {
        if (Places[PlaceOf(row)] != 0)
            m_selection.Set(row, row, true);
    }
}

void CMessageList::Select(int First, int Last, bool On)
{
    m_selection.Set(std::max(First, 0), std::min(Last, Count() - 1), On);
}

void CMessageList::ToggleSelection(int First, int Last)
{
    m_selection.Toggle(std::max(First, 0), std::min(Last, Count() - 1));
}

void CMessageList::ClearSelection() { m_selection.Clear(); }

void CMessageList::InvertSelection() { ToggleSelection(0, Count() - 1); }

void CMessageList::SetSelection(CRowRanges Rows)
{
    m_selection = std::move(Rows);
    m_selection.Set(Count(), std::numeric_limits<int>::max() - 1, false);
}

void CMessageList::SetSelection(const std::vector<RowRange>& Ranges, int FocusRow)
{
    ClearSelection();
    for (const RowRange& range : Ranges)
        Select(range.First, range.Last, true);
    SetFocus(FocusRow);
}
