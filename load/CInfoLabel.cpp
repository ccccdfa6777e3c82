// load/CInfoLabel.cpp
// The information lines of the receive dialog.

#include "load/CInfoLabel.h"

#include "load/CPaintPause.h"

#include <QPainter>

namespace
{
/// Width asked for, in characters; the dialog may make it less.
constexpr int HintColumns = 60;
constexpr int MinColumns = 20;

/// Japanese glyphs often come from a taller font than the one that the metrics are of.
int LineHeight(const QFontMetrics& Metrics) { return Metrics.lineSpacing() + qMax(2, Metrics.lineSpacing() / 6); }
} // namespace

CInfoLabel::CInfoLabel(QWidget* Parent)
    : QLabel(Parent)
    , m_paint(new CPaintPause(*this))
{
    setTextFormat(Qt::PlainText); // server texts are shown here
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void CInfoLabel::SetLines(const QString& Lines)
{
    m_paint->Hold();
    setText(Lines);
}

QString CInfoLabel::ShownLine(int Line) const
{
    return fontMetrics().elidedText(text().section(QLatin1Char('\n'), Line - 1, Line - 1), Qt::ElideMiddle, width());
}

QSize CInfoLabel::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * HintColumns, LineHeight(fontMetrics()) * LineCount};
}

QSize CInfoLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * MinColumns, LineHeight(fontMetrics()) * LineCount};
}

void CInfoLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    for (int line = 1; line <= LineCount; ++line)
        painter.drawText(0, (line - 1) * LineHeight(fontMetrics()) + fontMetrics().ascent() + 1, ShownLine(line));
}
