// platform/desktop/WindowServices.cpp
// Small services for windows and boxes that several forms need.

#include "platform/desktop/WindowServices.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextEdit>

#include <algorithm>

namespace mdlWindow
{
namespace
{
constexpr int DefaultRows = 10;

int WidestItem(const QComboBox& Combo)
{
    const QFontMetrics metrics = Combo.fontMetrics();
    int widest = 0;
    for (int i = 0; i < Combo.count(); ++i)
        widest = std::max(widest, metrics.horizontalAdvance(Combo.itemText(i)));
    return widest;
}
} // namespace

void SelectAllText(QWidget* Control)
{
    if (auto* line = qobject_cast<QLineEdit*>(Control))
        line->selectAll();
    else if (auto* combo = qobject_cast<QComboBox*>(Control); combo && combo->lineEdit())
        combo->lineEdit()->selectAll();
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(Control))
        plain->selectAll();
    else if (auto* text = qobject_cast<QTextEdit*>(Control))
        text->selectAll();
}

void AdjustComboDropDown(QComboBox* Combo, int VisibleRows)
{
    Combo->setMaxVisibleItems(VisibleRows < 1 ? DefaultRows : VisibleRows);
    const int margins = 2 * Combo->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, Combo) +
                        2 * Combo->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, Combo) +
                        Combo->view()->verticalScrollBar()->sizeHint().width();
    const int widest = Combo->screen()->availableGeometry().width(); // longer items are cut
    Combo->view()->setMinimumWidth(std::min(WidestItem(*Combo) + margins, widest));
}

QRect GetNormalWindowRect(const QWidget* Window)
{
    const bool isNormal = !(Window->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen));
    const QRect normal = Window->normalGeometry();
    return isNormal || normal.isEmpty() ? Window->geometry() : normal;
}

void ActivateWindow(QWidget* Window)
{
    Window->show(); // first: what a window manager is told of a hidden window it may forget
    Window->setWindowState(Window->windowState() & ~Qt::WindowMinimized);
    Window->raise();
    Window->activateWindow();
}
} // namespace mdlWindow
