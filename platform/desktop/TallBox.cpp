// platform/desktop/TallBox.cpp
// Message boxes whose text is longer than the screen is high.

#include "platform/desktop/TallBox.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{
/// Pixels at 100 %: about the width at which the toolkit itself begins to wrap the text of a box.
constexpr int TextWidth = 500;
/// Part of the screen's height that the text may take; the rest is for frame, buttons and panels of the desktop.
constexpr int MaxPart = 2;
constexpr int OfParts = 3;

QScrollArea* ScrolledText(QLabel& Text, int Width, int Height)
{
    Text.setWordWrap(true);
    Text.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* scrolled = new QScrollArea;
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolled->setWidgetResizable(true);
    scrolled->setWidget(&Text);
    scrolled->setFixedSize(Width + scrolled->verticalScrollBar()->sizeHint().width(), Height);
    return scrolled;
}
} // namespace

void mdlTallBox::KeepOnScreen(QMessageBox& Box)
{
    auto* label = Box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* grid = qobject_cast<QGridLayout*>(Box.layout());
    if (!label || !grid)
        return;
    const QSize screen = Box.screen()->availableSize();
    const int width = qMin(TextWidth, screen.width() / 2);
    const int room = screen.height() * MaxPart / OfParts;
    const QRect text = label->fontMetrics().boundingRect(QRect(0, 0, width, 1), Qt::TextWordWrap, Box.text());
    if (text.height() <= room)
        return;
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    grid->removeWidget(label);
    grid->addWidget(ScrolledText(*label, width, room), row, column, rows, columns);
}
