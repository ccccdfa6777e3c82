// mainwin/CTextZoom.cpp
// Makes the letters of a pane of text larger and smaller.

#include "mainwin/CTextZoom.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

// The sizes that steps lead through. From the usual size, which may lie between two, to the next one.
constexpr double Sizes[] = {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 28, 32, 36, 42, 48, 56, 64, 72};
constexpr int TipMs = 1500;

double NextSize(double Size, bool Larger)
{
    if (Larger) {
        const auto found = std::upper_bound(std::begin(Sizes), std::end(Sizes), Size);
        return found == std::end(Sizes) ? Size : *found;
    }
    const auto found = std::lower_bound(std::begin(Sizes), std::end(Sizes), Size);
    return found == std::begin(Sizes) ? Size : *std::prev(found);
}

} // namespace

CTextZoom::CTextZoom(QPlainTextEdit& Pane)
    : QObject(&Pane)
    , m_pane(Pane)
    , m_usual(Size())
{
    Pane.viewport()->installEventFilter(this);
    connect(&Pane, &QPlainTextEdit::textChanged, this, [this] { m_anchorScroll = -1; }); // another message
}

double CTextZoom::Size() const
{
    const double points = m_pane.font().pointSizeF();
    return points > 0 ? points : QFontInfo(m_pane.font()).pointSizeF(); // the theme counted in pixels
}

void CTextZoom::SetChosen(std::optional<double> Points)
{
    m_chosen = Points ? std::optional(std::clamp(*Points, Least, Most)) : std::nullopt;
    Apply(m_chosen.value_or(m_usual));
}

void CTextZoom::Step(int Steps)
{
    double size = Size();
    for (int step = std::min(std::abs(Steps), int(std::size(Sizes))); step > 0; --step)
        size = NextSize(size, Steps > 0);
    SetChosen(size == m_usual ? std::nullopt : std::optional(size));
    Tell();
}

void CTextZoom::Reset()
{
    SetChosen(std::nullopt);
    Tell();
}

void CTextZoom::Apply(double Points)
{
    if (Points == Size())
        return;
    const int top = TopPosition();
    const bool isSelectionSeen =
        m_pane.textCursor().hasSelection() && m_pane.viewport()->rect().intersects(m_pane.cursorRect());
    QFont font = m_pane.font();
    font.setPointSizeF(Points);
    m_pane.setFont(font);
    ShowAtTop(top);
    if (isSelectionSeen)
        m_pane.ensureCursorVisible();
    m_anchor = top;
    m_anchorScroll = m_pane.verticalScrollBar()->value();
}

/// Where the text in view begins. A line may begin a little before what was in the first line at another size: going
/// to and fro would creep up the text if the place were taken anew each time.
int CTextZoom::TopPosition()
{
    const bool isAnchored = m_pane.verticalScrollBar()->value() == m_anchorScroll;
    return isAnchored ? m_anchor : m_pane.cursorForPosition(QPoint(0, 0)).position();
}

void CTextZoom::ShowAtTop(int Position)
{
    QTextCursor cursor(m_pane.document());
    cursor.setPosition(std::min(Position, m_pane.document()->characterCount() - 1));
    m_pane.cursorRect(cursor); // lays its block out
    const QTextBlock block = cursor.block();
    const QTextLine line = block.layout()->lineForTextPosition(cursor.positionInBlock());
    m_pane.verticalScrollBar()->setValue(block.firstLineNumber() + (line.isValid() ? line.lineNumber() : 0));
}

void CTextZoom::Tell() const
{
    const QPoint place = m_pane.viewport()->mapToGlobal(QPoint(m_pane.viewport()->width() / 3, 0));
    const QString usual = m_chosen ? QString() : u" (標準)"_s;
    QToolTip::showText(place, u"文字の大きさ: %1 ポイント"_s.arg(Size()) + usual, m_pane.viewport(), {}, TipMs);
}

bool CTextZoom::eventFilter(QObject* Watched, QEvent* Event)
{
    if (Event->type() != QEvent::Wheel)
        return QObject::eventFilter(Watched, Event);
    const auto& wheel = static_cast<QWheelEvent&>(*Event);
    if (!wheel.modifiers().testFlag(Qt::ControlModifier)) { // with Shift as well the pane would zoom by itself
        m_wheel = 0;
        return false;
    }
    const int delta = wheel.angleDelta().y();
    if ((delta < 0) != (m_wheel < 0))
        m_wheel = 0;
    m_wheel += delta; // a fine wheel, or a touchpad, sends parts of a notch
    const int steps = m_wheel / QWheelEvent::DefaultDeltasPerStep;
    m_wheel %= QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0)
        Step(steps);
    return true;
}
