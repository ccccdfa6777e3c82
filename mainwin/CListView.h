// mainwin/CListView.h
// The view of one message list: rows of equal height, selection kept by the list itself, board icons, marks.

#ifndef MAINWIN_CLISTVIEW_H
#define MAINWIN_CLISTVIEW_H

#include "viewer/CMessageItem.h"

#include <QElapsedTimer>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QTreeView>

#include <functional>
#include <vector>

class CListSelection;
class CMessageList;
class CMessageModel;
class QTimer;

/// Shows a CMessageList. The list owns selection and focus; the view's selection model holds the part that is in view.
class CListView : public QTreeView
{
    Q_OBJECT

public:
    /// Width of a column of a raw table at first, in twips.
    static constexpr int RawColumnTwips = 1500;

    /// List and Model belong together and must outlive the view. BoardIcon gives the picture of a board.
    CListView(CMessageList& List, CMessageModel& Model, std::function<QIcon(qint32)> BoardIcon, QWidget* Parent);
    ~CListView() override;

    /// Holds painting back until the matching End; the calls nest.
    void BeginUpdate();
    void EndUpdate();

    /// Shows the selection and the focus that the list has now.
    void TakeSelection();
    void ShowRow(int Row);
    /// Where a menu opens for somebody at the keyboard: under the focused row, on the view's edge when that is not in
    /// view. In screen coordinates.
    QPoint PlaceBelowFocus() const;

    /// Widths and places of the columns of Other.
    void TakeColumns(const CListView& Other);
    /// All columns in their order, each RawColumnTwips wide.
    void ResetColumns();

    /// Scrolls up and down only: a click into a cell that is cut off must not shift the columns under the pointer.
    void scrollTo(const QModelIndex& Index, ScrollHint Hint = QAbstractItemView::EnsureVisible) override;
    /// Goes to the next subject that begins so (in a raw table: the next row whose first field does).
    void keyboardSearch(const QString& Typed) override;

Q_SIGNALS:
    /// The user has made Row the focus, or pressed the button on the row that was it. The list knows already.
    void RowClicked(int Row);
    /// The user has changed which rows are selected.
    void SelectionEdited();
    void SelectAllRequested();
    void CopyRequested();
    /// The right button, or the menu key, on the focused row; Place is in screen coordinates.
    void ListMenuRequested(const QPoint& Place);

protected:
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void contextMenuEvent(QContextMenuEvent* Event) override;
    void setSelection(const QRect& Rect, QItemSelectionModel::SelectionFlags Command) override;
    void updateGeometries() override;
    /// Laying out and painting anew for each message that a receive brings would take longer than the receive. The rows
    /// lie one below the other, so for a moment the old layout does for the new rows as well.
    void rowsInserted(const QModelIndex& Parent, int First, int Last) override;
    /// Frames the focused row: styles draw their own frame so faintly that it is lost on a selected row.
    void drawRow(QPainter* Painter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
    /// A range of rows is looked for row by row otherwise, each time from the one that was found last.
    void dataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight, const QList<int>& Roles = {}) override;

private:
    void BuildColumns();
    void ConnectModel();
    void MoveTop(int Row, int Rows);
    void LayOutNow();
    void RememberTop();
    void FindTop();
    bool BeginsWith(int Row, const QString& FoldedStart) const;
    void BeginExtending(bool IsShift);
    void EndExtending(bool KeepsAnchor);
    void TellIfFocusMoved(int RowBefore);
    QRect RowRect(int Row) const;

    CMessageList& m_list;
    CListSelection* m_selection = nullptr; // none while the base class is being set up
    QTimer* m_layOutSoon = nullptr;
    QElapsedTimer m_sinceLayOut;
    int m_shift = 0;                  // rows that the next layout is to scroll on by
    std::vector<CMessageId> m_inView; // what was in view before a reset
    QString m_typed;                  // what has been typed for the search so far
    qint64 m_typedAt = 0;             // milliseconds, when its last character came
    int m_updateDepth = 0;
    int m_focusAtPress = -1;
    QPersistentModelIndex m_anchor; // where a selection by Shift begins
    bool m_extends = false;         // a press or drag with Shift is being handled
};

#endif
