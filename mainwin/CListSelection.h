// mainwin/CListSelection.h
// A selection model that leaves the selection to the message list and shows what is in view of it.

#ifndef MAINWIN_CLISTSELECTION_H
#define MAINWIN_CLISTSELECTION_H

#include "viewer/CMessageList.h"

#include <QItemSelectionModel>

#include <functional>

/// What the user does in the view comes in as selection commands. They are carried out on the list's runs of rows, and
/// the rows in view are mirrored back: inverting the selection of 100,000 rows would otherwise make 50,000 ranges here,
/// which are searched for every row painted.
class CListSelection : public QItemSelectionModel
{
    Q_OBJECT

public:
    using Range = RowRange;

    /// VisibleRows tells the rows in view. List must outlive the model.
    CListSelection(QAbstractItemModel& Model, CMessageList& List, std::function<Range()> VisibleRows, QObject* Parent);

    /// Shows the list's focus and the selected rows that are in view.
    void Mirror();

    void select(const QItemSelection& Selection, SelectionFlags Command) override;
    void setCurrentIndex(const QModelIndex& Index, SelectionFlags Command) override;
    void clear() override;

Q_SIGNALS:
    /// A command of the user's has been carried out on the list.
    void Edited();

private:
    void Apply(const QItemSelection& Selection, SelectionFlags Command);

    CMessageList& m_list;
    std::function<Range()> m_visibleRows;
    CRowRanges m_base; // selection before the command that a drag or Shift keeps replacing
    bool m_mirroring = false;
};

#endif
