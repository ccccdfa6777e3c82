// mainwin/CListSelection.cpp
// A selection model that leaves the selection to the message list and shows what is in view of it.

#include "mainwin/CListSelection.h"

#include <QAbstractItemModel>
#include <QScopedValueRollback>

#include <algorithm>

CListSelection::CListSelection(QAbstractItemModel& Model, CMessageList& List, std::function<Range()> VisibleRows,
                               QObject* Parent)
    : QItemSelectionModel(&Model, Parent)
    , m_list(List)
    , m_visibleRows(std::move(VisibleRows))
{
    // Rows that move take the meaning of the row numbers along; the next Shift begins anew.
    const auto forget = [this] { m_base.Clear(); };
    connect(&Model, &QAbstractItemModel::modelReset, this, forget);
    connect(&Model, &QAbstractItemModel::layoutChanged, this, forget);
    connect(&Model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int Row) { m_base.InsertRow(Row); });
    connect(&Model, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex&, int First, int Last) { m_base.RemoveRows(First, Last); });
}

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
        m_base.Clear();
    else if (!(Command & Current))
        m_base = m_list.Selection();
    m_list.SetSelection(m_base);
    Apply(Selection, Command);
    Mirror();
    Q_EMIT Edited();
}

void CListSelection::Apply(const QItemSelection& Selection, SelectionFlags Command)
{
    for (const QItemSelectionRange& range : Selection) {
        if (Command & Toggle)
            m_list.ToggleSelection(range.top(), range.bottom());
        else if (Command & (Select | Deselect))
            m_list.Select(range.top(), range.bottom(), Command.testFlag(Select));
    }
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
        m_list.ClearSelection();
    QItemSelectionModel::clear();
}
