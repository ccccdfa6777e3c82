// controls/uClickableLabel.cpp
// A label that opens its text as a web or mail address.

#include "controls/uClickableLabel.h"

#include "controls/AccessibleControls.h"
#include "controls/CElidedLabel.h"
#include "platform/desktop/Contrast.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/desktop.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QToolTip>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
/// A tip is read at a glance; what a hostile record has as its address need not fill the screen.
constexpr qsizetype MaxTipCaption = 1000;
constexpr qsizetype TipColumns = 80;

float Twips(double Pixels) { return static_cast<float>(Pixels * mdlGeometry::TwipsPerPixel); }
} // namespace

uClickableLabel::uClickableLabel(Desktop& Shell, QWidget* Parent)
    : QWidget(Parent)
    , m_shell(Shell)
    , m_label(new CElidedLabel(this))
{
    mdlAccessibleControls::Install();
    m_label->setObjectName(u"lblCaption"_s);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents); // clicks and hovering are this control's
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // a long address is cut, it does not widen the window
    layout->addWidget(m_label);
    UpdateReach();
}

QLabel* uClickableLabel::Label() const { return m_label; }
QString uClickableLabel::Caption() const { return m_label->text(); }

void uClickableLabel::SetCaption(const QString& NewCaption)
{
    m_label->setText(NewCaption);
    UpdateReach();
    updateGeometry();
}

int uClickableLabel::ClickableMode() const { return m_mode; }

void uClickableLabel::SetClickableMode(int NewClickableMode)
{
    m_mode = NewClickableMode == WebAddress || NewClickableMode == MailAddress ? NewClickableMode : Plain;
    UpdateReach();
}

void uClickableLabel::UpdateReach()
{
    const bool reachable = IsLink() && !Caption().isEmpty();
    setFocusPolicy(reachable ? Qt::TabFocus : Qt::NoFocus);
    if (reachable)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
    ShowState();
}

void uClickableLabel::Activate()
{
    const QString caption = Caption();
    if (!IsLink())
        Q_EMIT Click();
    else if (m_mode == MailAddress && !caption.contains(u"mailto:"))
        m_shell.ShellOpen(u"mailto:"_s + caption);
    else if (!caption.isEmpty())
        m_shell.ShellOpen(caption);
}

QColor uClickableLabel::HoverColor(const QColor& Background)
{
    return mdlContrast::Legible(QColor(0, 0, 255), Background);
}

/// The tip that the caller gave; where the caption is cut off, the whole of it before that. The caption is foreign:
/// taken as markup it could load pictures.
QString uClickableLabel::TipText() const
{
    const bool isCut = m_label->fontMetrics().horizontalAdvance(Caption()) > m_label->contentsRect().width();
    if (!isCut)
        return m_label->toolTip();
    QStringList lines; // an address has no blanks to break it at
    for (qsizetype at = 0; at < qMin(Caption().size(), MaxTipCaption); at += TipColumns)
        lines.append(Caption().mid(at, TipColumns).toHtmlEscaped());
    lines.append(m_label->toolTip().toHtmlEscaped());
    return u"<div style='white-space:pre'>"_s + lines.join(u"<br>"_s) + u"</div>"_s;
}

QSize uClickableLabel::sizeHint() const { return m_label->sizeHint(); }
QSize uClickableLabel::minimumSizeHint() const { return {0, m_label->minimumSizeHint().height()}; }

/// Underline and colour as the state wants them; the font itself is the caller's.
void uClickableLabel::ShowState()
{
    const bool marked = IsLink() && (m_hovered || hasFocus());
    QFont font = m_label->font();
    if (font.underline() != marked) {
        font.setUnderline(marked);
        m_label->setFont(font);
    }
    QPalette colours; // nothing set: the inherited ones
    if (marked)
        colours.setColor(QPalette::WindowText, HoverColor(palette().color(QPalette::Window)));
    m_label->setPalette(colours);
    update();
}

void uClickableLabel::SetHovered(bool Hovered, const QPointF& Position)
{
    if (m_hovered == Hovered)
        return;
    m_hovered = Hovered;
    ShowState();
    if (IsLink())
        return;
    if (Hovered)
        Q_EMIT MouseEnter(Twips(Position.x()), Twips(Position.y()));
    else
        Q_EMIT MouseLeave(Twips(Position.x()), Twips(Position.y()));
}

QPointF uClickableLabel::Pointer() const { return mapFromGlobal(QPointF(QCursor::pos())); }

bool uClickableLabel::event(QEvent* Event)
{
    switch (Event->type()) {
    case QEvent::ToolTip:
        // Callers give the tip to the inner label, which does not see the mouse.
        QToolTip::showText(static_cast<QHelpEvent*>(Event)->globalPos(), TipText(), this);
        return true;
    case QEvent::WindowActivate:
        SetHovered(underMouse(), Pointer());
        break;
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        SetHovered(false, Pointer());
        break;
    case QEvent::PaletteChange:
        ShowState();
        break;
    default:
        break;
    }
    return QWidget::event(Event);
}

void uClickableLabel::enterEvent(QEnterEvent* Event)
{
    if (isActiveWindow())
        SetHovered(true, Event->position());
}

void uClickableLabel::leaveEvent(QEvent*) { SetHovered(false, Pointer()); }

void uClickableLabel::mousePressEvent(QMouseEvent* Event) { m_pressed = Event->button() == Qt::LeftButton; }

void uClickableLabel::mouseReleaseEvent(QMouseEvent* Event)
{
    const bool clicked = m_pressed && Event->button() == Qt::LeftButton && rect().contains(Event->position().toPoint());
    m_pressed = false;
    if (clicked)
        Activate();
}

/// Comes in place of the second press, so the second release opens nothing again.
void uClickableLabel::mouseDoubleClickEvent(QMouseEvent* Event)
{
    if (Event->button() == Qt::LeftButton)
        Q_EMIT DblClick();
}

void uClickableLabel::keyPressEvent(QKeyEvent* Event)
{
    const int key = Event->key();
    const bool activates = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (activates && !Event->isAutoRepeat())
        Activate();
    else
        QWidget::keyPressEvent(Event);
}

void uClickableLabel::focusInEvent(QFocusEvent* Event)
{
    QWidget::focusInEvent(Event);
    ShowState();
}

void uClickableLabel::focusOutEvent(QFocusEvent* Event)
{
    QWidget::focusOutEvent(Event);
    ShowState();
}

void uClickableLabel::paintEvent(QPaintEvent*)
{
    if (!hasFocus())
        return;
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Window);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
