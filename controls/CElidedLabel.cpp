// controls/CElidedLabel.cpp
// A label of one line that shows where its text does not fit.

#include "controls/CElidedLabel.h"

#include <QPainter>
#include <QStyle>

void CElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), shown,
                          foregroundRole());
}
