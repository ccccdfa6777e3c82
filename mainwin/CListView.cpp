// mainwin/CListView.cpp
// The view of one message list: rows of equal height, selection kept by the list itself, board icons, marks.

#include "mainwin/CListView.h"

#include "mainwin/CListSelection.h"
#include "mainwin/CMessageDelegate.h"
#include "platform/desktop/Geometry.h"
#include "platform/text/Fold.h"
#include "viewer/CMessageModel.h"

#include <QContextMenuEvent>
#include <QDateTime>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QTimer>

#include <iterator>
#include <utility>

namespace
{

// Widths of the eleven columns at first, in pixels at 100 %.
constexpr int ColumnWidths[] = {44, 64, 300, 90, 90, 120, 130, 100, 320, 90, 60};

// Between two layouts while messages arrive: a view full of them takes 30 ms to paint.
constexpr int LayOutEveryMs = 200;

} // namespace

CListView::CListView(CMessageList& List, CMessageModel& Model, std::function<QIcon(qint32)> BoardIcon, QWidget* Parent)
    : QTreeView(Parent)
    , m_list(List)
{
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new CMessageDelegate(std::move(BoardIcon), this));
    setModel(&Model);
    m_selection = new CListSelection(
        Model, List,
        [this] {
            const int first = verticalScrollBar()->value();
            return CListSelection::Range{first, first + verticalScrollBar()->pageStep() + 1};
        },
        this);
    setSelectionModel(m_selection);
    m_layOutSoon = new QTimer(this);
    m_layOutSoon->setSingleShot(true);
    connect(m_layOutSoon, &QTimer::timeout, this, [this] {
        scheduleDelayedItemsLayout();
        m_sinceLayOut.start();
    });
    ConnectModel();
    BuildColumns();
}

CListView::~CListView() = default;

void CListView::ConnectModel()
{
    const QAbstractItemModel* const items = model();
    connect(items, &QAbstractItemModel::modelAboutToBeReset, this, &CListView::RememberTop);
    connect(items, &QAbstractItemModel::modelReset, this, &CListView::FindTop);
    connect(items, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int First) { MoveTop(First, 1); });
    connect(items, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex&, int First, int Last) { MoveTop(First, First - Last - 1); });
    connect(m_selection, &CListSelection::Edited, this, &CListView::SelectionEdited);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, m_selection, &CListSelection::Mirror);
    connect(items, &QAbstractItemModel::modelReset, m_selection, &CListSelection::Mirror);
    connect(items, &QAbstractItemModel::layoutChanged, m_selection, &CListSelection::Mirror);
    connect(items, &QAbstractItemModel::rowsRemoved, m_selection, &CListSelection::Mirror);
    connect(items, &QAbstractItemModel::rowsInserted, m_selection, &CListSelection::Mirror);
}

void CListView::BuildColumns()
{
    header()->setStretchLastSection(false);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(true);
    header()->setHighlightSections(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header()->setMinimumSectionSize(16);
    for (int column = 0; column < header()->count() && column < int(std::size(ColumnWidths)); ++column)
        header()->resizeSection(column, ColumnWidths[column]);
}

void CListView::BeginUpdate()
{
    if (m_updateDepth++ == 0)
        setUpdatesEnabled(false);
}

void CListView::EndUpdate()
{
    if (m_updateDepth > 0 && --m_updateDepth == 0)
        setUpdatesEnabled(true);
}

void CListView::TakeSelection() { m_selection->Mirror(); }

void CListView::ShowRow(int Row) { scrollTo(model()->index(Row, 0)); }

void CListView::scrollTo(const QModelIndex& Index, ScrollHint Hint)
{
    const int column = horizontalScrollBar()->value();
    LayOutNow();
    QTreeView::scrollTo(Index, Hint);
    horizontalScrollBar()->setValue(column);
}

void CListView::TakeColumns(const CListView& Other)
{
    for (int column = 0; column < header()->count() && column < Other.header()->count(); ++column)
        header()->resizeSection(column, Other.header()->sectionSize(column));
    for (int place = 0; place < header()->count() && place < Other.header()->count(); ++place)
        header()->moveSection(header()->visualIndex(Other.header()->logicalIndex(place)), place);
}

void CListView::ResetColumns()
{
    for (int column = 0; column < header()->count(); ++column) {
        header()->resizeSection(column, mdlGeometry::ToPixels(RawColumnTwips));
        header()->moveSection(header()->visualIndex(column), column);
    }
}

// Rows that come and go leave what is being read where it is on the screen.

/// Rows came in (or, below 0, went) at Row. At the very top the newest message is what the reader wants to see.
void CListView::MoveTop(int Row, int Rows)
{
    const int top = verticalScrollBar()->value() + m_shift;
    if (top > 0 && Row <= top)
        m_shift += qMax(Rows, Row - top);
}

void CListView::rowsInserted(const QModelIndex& Parent, int First, int Last)
{
    if (!m_sinceLayOut.isValid() || m_sinceLayOut.elapsed() >= LayOutEveryMs) {
        QTreeView::rowsInserted(Parent, First, Last);
        m_sinceLayOut.start();
        return;
    }
    QAbstractItemView::rowsInserted(Parent, First, Last);
    if (!m_layOutSoon->isActive())
        m_layOutSoon->start(LayOutEveryMs);
}

void CListView::dataChanged(const QModelIndex& TopLeft, const QModelIndex& BottomRight, const QList<int>& Roles)
{
    if (TopLeft.row() == BottomRight.row())
        QTreeView::dataChanged(TopLeft, BottomRight, Roles);
    else
        viewport()->update();
}

/// What goes to a row, or is done to the one under the pointer, looks at the layout.
void CListView::LayOutNow()
{
    if (!m_layOutSoon->isActive())
        return;
    m_layOutSoon->stop();
    scheduleDelayedItemsLayout();
}

void CListView::RememberTop()
{
    m_inView.clear();
    const int top = verticalScrollBar()->value() + m_shift;
    const int end = qMin(top + verticalScrollBar()->pageStep() + 1, m_list.Count());
    for (int row = top; top > 0 && row < end && !m_list.IsRaw(); ++row)
        m_inView.push_back(m_list.Item(row).Id());
}

/// The topmost message that is still there becomes the first in view.
void CListView::FindTop()
{
    m_shift = 0;
    for (const CMessageId id : m_inView) {
        if (const int row = m_list.IsRaw() ? -1 : m_list.Find(id); row >= 0) {
            m_shift = row - verticalScrollBar()->value();
            return;
        }
    }
}

void CListView::updateGeometries()
{
    const int top = verticalScrollBar()->value() + m_shift;
    QTreeView::updateGeometries();
    if (m_shift != 0 && !(m_layOutSoon && m_layOutSoon->isActive())) {
        m_shift = 0;
        verticalScrollBar()->setValue(top);
    }
    if (m_selection)
        m_selection->Mirror(); // a taller view shows more rows
}

void CListView::drawRow(QPainter* Painter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const
{
    QTreeView::drawRow(Painter, Option, Index);
    if (!hasFocus() || Index.row() != m_list.Focus())
        return;
    const bool isSelected = m_list.IsSelected(Index.row());
    Painter->save();
    Painter->setPen({palette().color(isSelected ? QPalette::HighlightedText : QPalette::Text), 1, Qt::DotLine});
    Painter->drawRect(QRect(0, Option.rect.top(), viewport()->width() - 1, Option.rect.height() - 1));
    Painter->restore();
}

void CListView::mousePressEvent(QMouseEvent* Event)
{
    LayOutNow();
    executeDelayedItemsLayout();
    const bool onRow = indexAt(Event->position().toPoint()).isValid();
    const bool isShift = Event->modifiers() & Qt::ShiftModifier;
    BeginExtending(isShift);
    QTreeView::mousePressEvent(Event);
    EndExtending(isShift);
    m_focusAtPress = m_list.Focus();
    if (onRow && m_focusAtPress >= 0)
        Q_EMIT RowClicked(m_focusAtPress);
}

/// A press with Shift often moves the pointer a little.
void CListView::mouseMoveEvent(QMouseEvent* Event)
{
    m_extends = (Event->buttons() & Qt::LeftButton) && (Event->modifiers() & Qt::ShiftModifier);
    QTreeView::mouseMoveEvent(Event);
    m_extends = false;
}

void CListView::mouseReleaseEvent(QMouseEvent* Event)
{
    QTreeView::mouseReleaseEvent(Event);
    TellIfFocusMoved(m_focusAtPress); // dragging over rows moves the focus along
}

void CListView::keyPressEvent(QKeyEvent* Event)
{
    if (Event->matches(QKeySequence::SelectAll)) {
        Q_EMIT SelectAllRequested();
        return;
    }
    if (Event->matches(QKeySequence::Copy)) { // the base would copy the one cell that it takes for the current one
        Q_EMIT CopyRequested();
        return;
    }
    LayOutNow();
    const int before = m_list.Focus();
    const bool isShift = Event->modifiers() & Qt::ShiftModifier;
    BeginExtending(isShift);
    QTreeView::keyPressEvent(Event);
    EndExtending(isShift || m_list.Focus() == before);
    TellIfFocusMoved(before);
}

// The base class knows only the row that was last clicked or gone to by its own keys as the one that Shift extends
// from.

void CListView::BeginExtending(bool IsShift)
{
    m_extends = IsShift;
    if (!m_anchor.isValid() || m_list.SelectedCount() <= 1)
        m_anchor = model()->index(m_list.Focus(), 0);
}

void CListView::EndExtending(bool KeepsAnchor)
{
    m_extends = false;
    if (!KeepsAnchor)
        m_anchor = model()->index(m_list.Focus(), 0);
}

void CListView::setSelection(const QRect& Rect, QItemSelectionModel::SelectionFlags Command)
{
    const bool isFromAnchor = m_extends && (Command & QItemSelectionModel::Current) && m_anchor.isValid();
    const QPoint start = isFromAnchor ? visualRect(m_anchor).center() : Rect.topLeft();
    QTreeView::setSelection(QRect(start, Rect.bottomRight()), Command);
}

void CListView::TellIfFocusMoved(int RowBefore)
{
    if (const int row = m_list.Focus(); row >= 0 && row != RowBefore)
        Q_EMIT RowClicked(row);
}

QRect CListView::RowRect(int Row) const
{
    const QRect cell = visualRect(model()->index(Row, 0));
    return {0, cell.top(), viewport()->width(), cell.height()};
}

void CListView::contextMenuEvent(QContextMenuEvent* Event)
{
    Event->accept();
    const int focus = m_list.Focus();
    const bool isByKey = Event->reason() == QContextMenuEvent::Keyboard;
    if (focus < 0 || (!isByKey && !indexAt(Event->pos()).isValid()))
        return;
    Q_EMIT ListMenuRequested(isByKey ? PlaceBelowFocus() : Event->globalPos());
}

QPoint CListView::PlaceBelowFocus() const
{
    const int below = m_list.Focus() < 0 ? 0 : RowRect(m_list.Focus()).bottom();
    return viewport()->mapToGlobal(QPoint(CMessageDelegate::IconSide, qBound(0, below, viewport()->height())));
}

bool CListView::BeginsWith(int Row, const QString& FoldedStart) const
{
    const CMessageItem& item = m_list.Item(Row);
    const QString text = item.IsMessage() ? item.Message.Subject : m_list.Text(Row, 0);
    const QStringView start = QStringView(text).trimmed();
    // A half-width letter and its voicing mark are one letter of the fold.
    return text::Fold(start.first(qMin(start.size(), FoldedStart.size() * 2))).startsWith(FoldedStart);
}

void CListView::keyboardSearch(const QString& Typed)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const bool continues = now - m_typedAt <= QGuiApplication::styleHints()->keyboardInputInterval();
    m_typed = continues ? m_typed + Typed : Typed;
    m_typedAt = now;
    const int count = m_list.Count();
    const QString wanted = text::Fold(m_typed);
    const int start = qMax(m_list.Focus(), 0) + (continues ? 0 : 1);
    for (int step = 0; step < count && !wanted.isEmpty(); ++step) {
        const int row = (start + step) % count;
        if (!BeginsWith(row, wanted))
            continue;
        m_selection->setCurrentIndex(model()->index(row, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(model()->index(row, 0));
        return;
    }
}
