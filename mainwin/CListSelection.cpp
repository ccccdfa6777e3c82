// mainwin/CListSelection.cpp
// A selection model that leaves the selection to the message list and shows what is in view of it.

#include "mainwin/CListSelection.h"

#include <QAbstractItemModel>
#include <QScopedValueRollback>

#include <algorithm>

namespace
{

using Range = CMessageList::RowRange;

std::vector<Range> ToRanges(const std::vector<bool>& Rows)
{
    std::vector<Range> ranges;
    for (std::size_t row = 0; row < Rows.size(); ++row) {
        if (!Rows[row])
            continue;
        const bool continues = !ranges.empty() && ranges.back().Last + 1 == int(row);
        if (continues)
            ranges.back().Last = int(row);
        else
            ranges.push_back({int(row), int(row)});
    }
    return ranges;
}

} // namespace

CListSelection::CListSelection(QAbstractItemModel& Model, CMessageList& List, std::function<Range()> VisibleRows,
                               QObject* Parent)
    : QItemSelectionModel(&Model, Parent)
    , m_list(List)
    , m_visibleRows(std::move(VisibleRows))
{}

void CListSelection::Mirror()
{
    const QScopedValueRollback<bool> mirroring(m_mirroring, true);
    const int rows = model()->rowCount();
    const Range visible = m_visibleRows();
    QItemSelection selection;
    for (int row = std::max(visible.First, 0); row <= std::min(visible.Last, rows - 1); ++row) {
        if (m_list.IsSelected(row))
            selection.select(model()->index(row, 0), model()->index(row, 0));
    }
    QItemSelectionModel::select(selection, ClearAndSelect | Rows);
    const int focus = m_list.Focus();
    const int column = std::max(currentIndex().column(), 0);
    QItemSelectionModel::setCurrentIndex(focus < rows ? model()->index(focus, column) : QModelIndex(), NoUpdate);
}

void CListSelection::select(const QItemSelection& Selection, SelectionFlags Command)
{
    if (m_mirroring) {
        QItemSelectionModel::select(Selection, Command);
        return;
    }
    if (Command == NoUpdate)
        return;
    if (Command & Clear)
        m_base.clear();
    else if (!(Command & Current))
        m_base = m_list.SelectedRanges();
    m_list.SetSelection(Apply(Selection, Command), m_list.Focus());
    Mirror();
    Q_EMIT Edited();
}

std::vector<Range> CListSelection::Apply(const QItemSelection& Selection, SelectionFlags Command) const
{
    std::vector<bool> rows(std::size_t(m_list.Count()));
    const auto each = [&rows](int First, int Last, auto Change) {
        for (int row = std::max(First, 0); row <= Last && row < int(rows.size()); ++row)
            rows[std::size_t(row)] = Change(rows[std::size_t(row)]);
    };
    for (const Range& range : m_base)
        each(range.First, range.Last, [](bool) { return true; });
    for (const QItemSelectionRange& range : Selection) {
        each(range.top(), range.bottom(), [Command](bool IsSelected) {
            if (Command & Toggle)
                return !IsSelected;
            return (Command & Select) ? true : (Command & Deselect) ? false : IsSelected;
        });
    }
    return ToRanges(rows);
}

void CListSelection::setCurrentIndex(const QModelIndex& Index, SelectionFlags Command)
{
    if (!m_mirroring && Index.isValid())
        m_list.SetFocus(Index.row());
    QItemSelectionModel::setCurrentIndex(Index, Command);
}

void CListSelection::clear()
{
    if (!m_mirroring)
        m_list.SetSelection({}, m_list.Focus());
    QItemSelectionModel::clear();
}
