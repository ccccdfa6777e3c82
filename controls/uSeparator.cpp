// controls/uSeparator.cpp
// The bar that divides a window's area between two panes and that the user drags.

#include "controls/uSeparator.h"

#include "controls/AccessibleControls.h"
#include "controls/uSeparatorBar.h"
#include "platform/desktop/Geometry.h"

#include <QAccessible>
#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <cmath>

using mdlGeometry::ToPixels;
using mdlGeometry::ToTwips;

uSeparator::uSeparator(QWidget* Parent)
    : QWidget(Parent)
    , m_bar(new uSeparatorBar(this))
{
    mdlAccessibleControls::Install();
    setFocusPolicy(Qt::TabFocus); // or the place that a window gives this control in its Tab order is not heeded
    setFocusProxy(m_bar);
    SetAspect(Vertical);
}

uSeparator::~uSeparator() = default;

void uSeparator::Initialize(QWidget* Panel1, QWidget* Panel2)
{
    m_panel1 = Panel1;
    m_panel2 = Panel2;
    Arrange();
}

void uSeparator::SetAspect(int NewAspect)
{
    m_aspect = NewAspect == Horizontal ? Horizontal : Vertical;
    m_bar->setCursor(IsHorizontal() ? Qt::SplitVCursor : Qt::SplitHCursor);
    Arrange();
}

void uSeparator::SetSideMin(int NewSideMin) { m_sideMin = std::max(0, NewSideMin); }

QColor uSeparator::BackColor() const { return m_backColor.isValid() ? m_backColor : palette().color(QPalette::Button); }

void uSeparator::SetBackColor(const QColor& NewBackColor)
{
    m_backColor = NewBackColor;
    update();
    m_bar->update();
}

int uSeparator::InnerLength() const { return IsHorizontal() ? height() : width(); }
int uSeparator::BarPixels() const { return ToPixels(BarTwips); }
int uSeparator::Room() const { return InnerLength() - BarPixels(); }

int uSeparator::BarPosition() const
{
    int wanted = InnerLength() / 2;
    if (m_offset)
        wanted = ToPixels(*m_offset);
    else if (m_percent)
        wanted = static_cast<int>(std::lround(*m_percent * Room() / 100));
    return wanted > Room() ? std::max(0, Room()) : wanted;
}

int uSeparator::Offset() const
{
    const int position = BarPosition();
    return m_offset && ToPixels(*m_offset) == position ? *m_offset : ToTwips(position);
}

void uSeparator::SetOffset(int NewOffset)
{
    m_offset = NewOffset;
    m_percent.reset();
    Arrange();
}

double uSeparator::Parsent() const
{
    if (Room() <= 0)
        return 50;
    const double percent = 100.0 * BarPosition() / Room();
    return percent < 0 || percent > 100 ? 50 : percent;
}

void uSeparator::MoveBar(double Percent)
{
    if (!std::isfinite(Percent) || std::abs(Percent) > 10'000)
        return;
    m_offset.reset();
    m_percent = Percent;
    if (isVisible())
        SetOffset(ToTwips(BarPosition()));
    else
        Arrange();
}

QRect uSeparator::Part(int From, int Length) const
{
    return IsHorizontal() ? QRect(0, From, width(), Length) : QRect(From, 0, Length, height());
}

void uSeparator::PlaceBar(int Pixels)
{
    m_bar->setGeometry(Part(Pixels, BarPixels()));
    // The control lies above its panes, so that the bar is seen over them while it is dragged; all but the bar is
    // cut out of it.
    if (m_panel1 || m_panel2)
        setMask(m_bar->geometry());
    else
        clearMask();
}

void uSeparator::Arrange()
{
    const int bar = BarPosition();
    const int behind = bar + BarPixels();
    PlaceBar(bar);
    if (m_panel1)
        m_panel1->setGeometry(Part(0, std::max(0, bar)).translated(pos()));
    if (m_panel2) // without room it is empty: where it was before, or was made, it would lie upon others
        m_panel2->setGeometry(Part(behind, std::max(0, InnerLength() - behind)).translated(pos()));
    raise();
    TellPlace();
}

/// A screen reader says the new value while the keys move the bar; other moves are nobody's news.
void uSeparator::TellPlace()
{
    if (!m_bar->hasFocus())
        return;
    QAccessibleValueChangeEvent moved(m_bar, Parsent());
    QAccessible::updateAccessibility(&moved);
}

int uSeparator::ClampToSides(int Pixels) const
{
    const int side = ToPixels(m_sideMin);
    return std::max(0, std::min(std::max(Pixels, side), Room() - side));
}

void uSeparator::DragTo(int Pixels) { PlaceBar(ClampToSides(Pixels)); }

void uSeparator::EndDrag()
{
    const int position = IsHorizontal() ? m_bar->y() : m_bar->x();
    if (position == BarPosition())
        return; // pressed and let go
    SetOffset(ToTwips(position));
    Q_EMIT Moved();
}

void uSeparator::Step(int Pixels)
{
    DragTo(BarPosition() + Pixels);
    EndDrag();
}

void uSeparator::ToggleCollapsed()
{
    if (BarPosition() > ToPixels(m_sideMin)) {
        m_remembered = Offset();
        SetOffset(m_sideMin);
    } else if (m_remembered) {
        SetOffset(*m_remembered);
    } else {
        SetOffset(ToTwips(InnerLength() / 2)); // it was collapsed in an earlier run
    }
    Q_EMIT Moved();
}

void uSeparator::resizeEvent(QResizeEvent*) { Arrange(); }
void uSeparator::moveEvent(QMoveEvent*) { Arrange(); }

void uSeparator::showEvent(QShowEvent* Event)
{
    QWidget::showEvent(Event);
    if (m_percent)
        SetOffset(ToTwips(BarPosition()));
    else
        Arrange();
}

void uSeparator::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), BackColor()); }
