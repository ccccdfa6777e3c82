// controls/uSeparatorBar.cpp
// The part of a splitter that is seen and gripped.

#include "controls/uSeparatorBar.h"

#include "controls/uSeparator.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace
{
/// How far one press of an arrow key moves the bar, in pixels.
constexpr int KeyStep = 8;
constexpr int Everything = 1'000'000;
} // namespace

uSeparatorBar::uSeparatorBar(uSeparator* Owner)
    : QWidget(Owner)
    , m_owner(*Owner)
{
    setObjectName(u"picBar"_s);
    setAccessibleName(u"区切りバー"_s);
    setFocusPolicy(Qt::TabFocus); // a drag must not take the focus from the list
}

int uSeparatorBar::Along(const QPointF& Position) const
{
    const QPoint point = Position.toPoint();
    return m_owner.IsHorizontal() ? point.y() : point.x();
}

void uSeparatorBar::SetDragging(bool Dragging)
{
    m_dragging = Dragging;
    update();
}

void uSeparatorBar::mousePressEvent(QMouseEvent* Event)
{
    if (Event->button() == Qt::LeftButton)
        SetDragging(true);
}

void uSeparatorBar::mouseMoveEvent(QMouseEvent* Event)
{
    if (m_dragging && (Event->buttons() & Qt::LeftButton))
        m_owner.DragTo(Along(pos()) + Along(Event->position()));
}

void uSeparatorBar::mouseReleaseEvent(QMouseEvent* Event)
{
    if (Event->button() != Qt::LeftButton || !m_dragging)
        return;
    SetDragging(false);
    m_owner.EndDrag();
}

void uSeparatorBar::mouseDoubleClickEvent(QMouseEvent* Event)
{
    if (Event->button() == Qt::LeftButton)
        m_owner.ToggleCollapsed();
}

void uSeparatorBar::keyPressEvent(QKeyEvent* Event)
{
    const int back = m_owner.IsHorizontal() ? Qt::Key_Up : Qt::Key_Left;
    const int forth = m_owner.IsHorizontal() ? Qt::Key_Down : Qt::Key_Right;
    const int key = Event->key();
    if (key == back)
        m_owner.Step(-KeyStep);
    else if (key == forth)
        m_owner.Step(KeyStep);
    else if (key == Qt::Key_Home)
        m_owner.Step(-Everything);
    else if (key == Qt::Key_End)
        m_owner.Step(Everything);
    else if (key == Qt::Key_Return || key == Qt::Key_Enter)
        m_owner.ToggleCollapsed();
    else
        QWidget::keyPressEvent(Event);
}

void uSeparatorBar::focusInEvent(QFocusEvent* Event)
{
    QWidget::focusInEvent(Event);
    update();
}

void uSeparatorBar::focusOutEvent(QFocusEvent* Event)
{
    QWidget::focusOutEvent(Event);
    update();
}

void uSeparatorBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // A focus frame does not fit into four pixels: the whole bar shows the colour of what is selected.
    const QPalette::ColorRole role = m_dragging ? QPalette::Dark : QPalette::Highlight;
    painter.fillRect(rect(), m_dragging || hasFocus() ? palette().color(role) : m_owner.BackColor());
    if (m_dragging || hasFocus())
        return;
    QStyleOption option;
    option.initFrom(this);
    option.state.setFlag(QStyle::State_Horizontal, !m_owner.IsHorizontal());
    style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
}
