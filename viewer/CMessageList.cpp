// viewer/CMessageList.cpp
// Contents and order of a message list.

#include "viewer/CMessageList.h"

#include "app/Settings.h"
#include "viewer/mdlColumns.h"
#include "viewer/mdlMessageSort.h"
#include "viewer/mdlThreadOrder.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

CMessageList::CMessageList(const Settings& Option, QStringList Headers, QObject* Parent)
    : QObject(Parent)
    , m_option(Option)
    , m_headers(std::move(Headers))
{}

quint64 CMessageList::HashKey(CMessageId Id)
{
    return (quint64{static_cast<quint32>(Id.BBS_ID)} << 32) | static_cast<quint32>(Id.ID);
}

int CMessageList::RowOfPlace(int Place) const
{
    if (Place < 0)
        return -1;
    if (m_rows.empty()) {
        m_rows.resize(m_items.size(), -1);
        for (int row = 0; row < Count(); ++row)
            m_rows[PlaceOf(row)] = row;
    }
    return m_rows[static_cast<std::size_t>(Place)];
}

int CMessageList::Find(CMessageId Id) const { return RowOfPlace(m_places.value(HashKey(Id), -1)); }

QString CMessageList::Text(int Row, int Column) const
{
    const CMessageItem& item = Item(Row);
    if (item.IsMessage())
        return mdlColumns::Text(item, Column, m_option.DateFormat);
    return m_cells[static_cast<std::size_t>(item.RawRow) * static_cast<std::size_t>(ColumnCount()) +
                   static_cast<std::size_t>(Column)];
}

QString CMessageList::Header(int Column) const
{
    const QString mark = SortMark(Column);
    if (mark.isEmpty())
        return m_headers[Column];
    return m_headers[Column] + (mark == u"↑"_s ? u" △"_s : u" ▽"_s);
}

// Filling

void CMessageList::Empty()
{
    m_cells.clear();
    m_items.clear();
    m_selected.clear();
    m_free.clear();
    m_order.clear();
    m_rows.clear();
    m_places.clear();
    m_unreadCount = 0;
    m_selectedCount = 0;
    m_focusPlace = -1;
}

void CMessageList::CountItem(const CMessageItem& Item, int Sign)
{
    if (Item.IsMessage() && !Item.Message.Read)
        m_unreadCount += Sign;
}

void CMessageList::Clear()
{
    Q_EMIT AboutToReset();
    Empty();
    Q_EMIT WasReset();
}

/// Takes the vector as it comes; its items become places 0, 1, …
void CMessageList::TakeItems(std::vector<CMessageItem> Items)
{
    m_items = std::move(Items);
    m_selected.assign(m_items.size(), 0);
    m_order.reserve(m_items.size());
    m_places.reserve(static_cast<qsizetype>(m_items.size()));
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const int place = static_cast<int>(i);
        const CMessageItem& item = m_items[i];
        if (item.IsMessage()) {
            const qsizetype known = m_places.size();
            int& placeOfKey = m_places[HashKey(item.Id())];
            if (m_places.size() == known) { // the first one with this key stays
                m_free.push_back(place);
                continue;
            }
            placeOfKey = place;
        }
        m_order.push_back(place);
        CountItem(item, 1);
    }
}

void CMessageList::Fill(std::vector<CMessageItem> Items, const QStringList& Headers)
{
    Q_EMIT AboutToReset();
    Empty();
    if (m_isRaw) {
        m_isRaw = false;
        SetSortState(-1, Order::Ascending);
    }
    if (!Headers.isEmpty())
        m_headers = Headers;
    TakeItems(std::move(Items));
    if (m_sortColumn < 0)
        SetSortState(mdlColumns::ID, Order::Descending);
    Reorder(mdlMessageSort::SortedRows(*this, m_sortColumn, m_sortOrder, m_option.DateFormat));
    Q_EMIT WasReset();
    Q_EMIT HeadersChanged();
}

void CMessageList::FillRaw(const QStringList& Headers, std::vector<QString> Cells)
{
    Q_EMIT AboutToReset();
    Empty();
    m_isRaw = true;
    SetSortState(-1, Order::Ascending);
    m_markColumn = -1;
    m_headers = Headers;
    const std::size_t columns = static_cast<std::size_t>(std::max<qsizetype>(Headers.size(), 1));
    std::vector<CMessageItem> items(Cells.size() / columns);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].RawRow = static_cast<int>(i);
    m_cells = std::move(Cells);
    TakeItems(std::move(items));
    Q_EMIT WasReset();
    Q_EMIT HeadersChanged();
}

/// Puts the item into a free place and tells which.
int CMessageList::Store(CMessageItem Item)
{
    int place = static_cast<int>(m_items.size());
    const CMessageId id = Item.Id();
    CountItem(Item, 1);
    if (m_free.empty()) {
        m_items.push_back(std::move(Item));
        m_selected.push_back(0);
    } else {
        place = m_free.back();
        m_free.pop_back();
        m_items[static_cast<std::size_t>(place)] = std::move(Item);
    }
    m_places.insert(HashKey(id), place);
    return place;
}

int CMessageList::Add(CMessageItem Item)
{
    if (m_isRaw || Contains(Item.Id()))
        return -1;
    int row = Count();
    if (m_sortColumn >= 0)
        row = mdlMessageSort::RowFor(*this, Item, m_sortColumn, m_sortOrder, m_option.DateFormat);
    Q_EMIT AboutToInsert(row);
    const int place = Store(std::move(Item));
    m_order.insert(m_order.begin() + row, place);
    m_rows.clear();
    Q_EMIT Inserted();
    return row;
}

void CMessageList::RemoveRow(int Row)
{
    const std::size_t place = PlaceOf(Row);
    CMessageItem& item = m_items[place];
    CountItem(item, -1);
    m_places.remove(HashKey(item.Id()));
    SelectPlace(place, false);
    item = CMessageItem();
    m_free.push_back(static_cast<int>(place));
    m_order.erase(m_order.begin() + Row);
    m_rows.clear();
}

bool CMessageList::Remove(CMessageId Id)
{
    const int row = Find(Id);
    if (row < 0)
        return false;
    const bool hadFocus = Focus() == row;
    Q_EMIT AboutToRemove(row);
    RemoveRow(row);
    if (hadFocus)
        m_focusPlace = m_order.empty() ? -1 : m_order[static_cast<std::size_t>(std::min(row, Count() - 1))];
    Q_EMIT Removed();
    return true;
}

// State of single rows

void CMessageList::SetRead(int Row, bool Read)
{
    CMessageItem& item = m_items[PlaceOf(Row)];
    if (!item.IsMessage() || item.Message.Read == Read)
        return;
    CountItem(item, -1);
    item.Message.Read = Read;
    CountItem(item, 1);
    Q_EMIT RowsChanged(Row, Row);
}

void CMessageList::SetMark(int Row, qint32 Mark, std::optional<quint32> ForeColor)
{
    CMessageItem& item = m_items[PlaceOf(Row)];
    if (!item.IsMessage())
        return;
    item.Message.Mark = Mark;
    item.ForeColor = ForeColor.value_or(item.ForeColor);
    Q_EMIT RowsChanged(Row, Row);
}

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
    std::vector<int> order(OldRows.size());
    std::transform(OldRows.begin(), OldRows.end(), order.begin(),
                   [this](int Row) { return m_order[static_cast<std::size_t>(Row)]; });
    m_order = std::move(order);
    m_rows.clear();
}

void CMessageList::TellReordered(const std::vector<int>& OldRows)
{
    std::vector<int> newRows(OldRows.size());
    for (std::size_t row = 0; row < OldRows.size(); ++row)
        newRows[static_cast<std::size_t>(OldRows[row])] = static_cast<int>(row);
    Q_EMIT Reordered(newRows);
}

void CMessageList::Sort(int Column, Order Direction)
{
    const std::vector<int> oldRows = mdlMessageSort::SortedRows(*this, Column, Direction, m_option.DateFormat);
    Q_EMIT AboutToReorder();
    SetSortState(Column, Direction);
    Reorder(oldRows);
    TellReordered(oldRows);
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

void CMessageList::SelectPlace(std::size_t Place, bool On)
{
    if ((m_selected[Place] != 0) == On)
        return;
    m_selected[Place] = On ? 1 : 0;
    m_selectedCount += On ? 1 : -1;
}

std::vector<int> CMessageList::SelectedRows() const
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(m_selectedCount));
    for (int row = 0; static_cast<int>(rows.size()) < m_selectedCount; ++row) {
        if (IsSelected(row))
            rows.push_back(row);
    }
    return rows;
}

std::vector<CMessageList::RowRange> CMessageList::SelectedRanges() const
{
    std::vector<RowRange> ranges;
    for (const int row : SelectedRows()) {
        if (!ranges.empty() && ranges.back().Last == row - 1)
            ranges.back().Last = row;
        else
            ranges.push_back({row, row});
    }
    return ranges;
}

void CMessageList::Select(int First, int Last, bool On)
{
    const int last = std::min(Last, Count() - 1);
    for (int row = std::max(First, 0); row <= last; ++row)
        SelectPlace(PlaceOf(row), On);
}

void CMessageList::ClearSelection()
{
    std::fill(m_selected.begin(), m_selected.end(), char{0});
    m_selectedCount = 0;
}

void CMessageList::InvertSelection()
{
    for (int row = 0; row < Count(); ++row)
        SelectPlace(PlaceOf(row), !IsSelected(row));
}

void CMessageList::SetSelection(const std::vector<RowRange>& Ranges, int FocusRow)
{
    ClearSelection();
    for (const RowRange& range : Ranges)
        Select(range.First, range.Last, true);
    SetFocus(FocusRow);
}
