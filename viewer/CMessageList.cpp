// viewer/CMessageList.cpp
// Contents of a message list.

#include "viewer/CMessageList.h"

#include "app/Settings.h"
#include "viewer/mdlColumns.h"
#include "viewer/mdlMessageSort.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

CMessageList::CMessageList(const Settings& Option, QStringList Headers, QObject* Parent)
    : QObject(Parent)
    , m_option(Option)
    , m_headers(std::move(Headers))
{}

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

int CMessageList::Find(CMessageId Id) const { return RowOfPlace(m_places.value(Id.Packed(), -1)); }

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

/// Gives the memory back as well: what follows may be short.
void CMessageList::Empty()
{
    m_cells = {};
    m_items = {};
    m_selection.Clear();
    m_free = {};
    m_order = {};
    m_rows = {};
    m_places = {};
    m_unreadCount = 0;
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
    m_order.reserve(m_items.size());
    m_places.reserve(static_cast<qsizetype>(m_items.size()));
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const int place = static_cast<int>(i);
        const CMessageItem& item = m_items[i];
        if (item.IsMessage()) {
            const qsizetype known = m_places.size();
            int& placeOfKey = m_places[item.Id().Packed()];
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
    Reorder(*mdlMessageSort::SortedRows(*this, m_sortColumn, m_sortOrder, m_option.DateFormat, [] { return true; }));
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
    } else {
        place = m_free.back();
        m_free.pop_back();
        m_items[static_cast<std::size_t>(place)] = std::move(Item);
    }
    m_places.insert(id.Packed(), place);
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
    m_selection.InsertRow(row);
    Q_EMIT Inserted();
    return row;
}

// Removing

CRowRanges CMessageList::RowsOf(const std::vector<CMessageId>& Ids) const
{
    std::vector<int> rows;
    rows.reserve(Ids.size());
    for (const CMessageId id : Ids)
        rows.push_back(Find(id));
    std::sort(rows.begin(), rows.end());
    CRowRanges result;
    for (const int row : rows) {
        if (row >= 0)
            result.Set(row, row, true);
    }
    return result;
}

/// The row that has the focus when Rows are gone, counted as they stand now; -1 when none stays or none had it.
int CMessageList::FocusWithout(const CRowRanges& Rows) const
{
    const int focus = Focus();
    if (focus < 0 || !Rows.Contains(focus))
        return focus;
    const auto run = std::find_if(Rows.Runs().begin(), Rows.Runs().end(),
                                  [focus](const RowRange& Run) { return Run.Last >= focus; });
    return run->Last + 1 < Count() ? run->Last + 1 : run->First - 1;
}

/// Gives up the message of a place that is in no row any more.
void CMessageList::Release(int Place)
{
    CMessageItem& item = m_items[static_cast<std::size_t>(Place)];
    CountItem(item, -1);
    m_places.remove(item.Id().Packed());
    item = CMessageItem();
    m_free.push_back(Place);
}

void CMessageList::RemoveRun(RowRange Run)
{
    Q_EMIT AboutToRemove(Run.First, Run.Last);
    for (int row = Run.First; row <= Run.Last; ++row)
        Release(m_order[static_cast<std::size_t>(row)]);
    m_order.erase(m_order.begin() + Run.First, m_order.begin() + Run.Last + 1);
    m_rows.clear();
    m_selection.RemoveRows(Run.First, Run.Last);
    Q_EMIT Removed();
}

void CMessageList::RemoveAtOnce(const CRowRanges& Rows)
{
    Q_EMIT AboutToReset();
    const std::vector<char> selected = SelectedPlaces();
    auto to = m_order.begin() + Rows.Runs().front().First;
    int next = 0;
    for (const RowRange& run : Rows.Runs()) {
        to = next == 0 ? to : std::copy(m_order.begin() + next, m_order.begin() + run.First, to);
        for (int row = run.First; row <= run.Last; ++row)
            Release(m_order[static_cast<std::size_t>(row)]);
        next = run.Last + 1;
    }
    m_order.erase(std::copy(m_order.begin() + next, m_order.end(), to), m_order.end());
    m_rows.clear();
    SelectPlaces(selected);
    Q_EMIT WasReset();
}

int CMessageList::Remove(const std::vector<CMessageId>& Ids)
{
    if (m_isRaw)
        return 0;
    const CRowRanges rows = RowsOf(Ids);
    if (rows.IsEmpty())
        return 0;
    SetFocus(FocusWithout(rows));
    const std::vector<RowRange>& runs = rows.Runs();
    if (runs.size() > MaxRemovedRuns)
        RemoveAtOnce(rows);
    else
        std::for_each(runs.rbegin(), runs.rend(), [this](const RowRange& Run) { RemoveRun(Run); });
    return rows.Count();
}

// State of rows

/// Changes the messages that are there and tells the rows from the first to the last of them.
template<class Change> void CMessageList::ChangeRows(const std::vector<CMessageId>& Ids, Change ChangeItem)
{
    int first = Count();
    int last = -1;
    for (const CMessageId id : Ids) {
        const int row = Find(id);
        if (row < 0 || !ChangeItem(m_items[PlaceOf(row)]))
            continue;
        first = std::min(first, row);
        last = std::max(last, row);
    }
    if (last >= 0)
        Q_EMIT RowsChanged(first, last);
}

void CMessageList::SetRead(const std::vector<CMessageId>& Ids, bool Read)
{
    ChangeRows(Ids, [&](CMessageItem& Item) {
        const bool isOther = Item.Message.Read != Read;
        CountItem(Item, -1);
        Item.Message.Read = Read;
        CountItem(Item, 1);
        return isOther;
    });
}

void CMessageList::SetMark(const std::vector<CMessageId>& Ids, qint32 Mark, std::optional<quint32> ForeColor)
{
    ChangeRows(Ids, [&](CMessageItem& Item) {
        Item.Message.Mark = Mark;
        Item.ForeColor = ForeColor.value_or(Item.ForeColor);
        return true;
    });
}

void CMessageList::SetRoots(qint32 BBS_ID, const QHash<qint32, qint32>& Roots)
{
    bool hasChanged = false;
    for (const int place : m_order) {
        CMessage& message = m_items[static_cast<std::size_t>(place)].Message;
        const qint32 root = message.BBS_ID == BBS_ID ? Roots.value(message.ID, message.RootThread) : message.RootThread;
        hasChanged = std::exchange(message.RootThread, root) != root || hasChanged;
    }
    if (hasChanged && m_sortColumn == mdlColumns::ParentThread)
        Sort(m_sortColumn, m_sortOrder);
    if (hasChanged)
        Q_EMIT RowsChanged(0, Count() - 1);
}
