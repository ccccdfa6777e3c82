// mainwin/CMenuBar.cpp
// The menu bar, which shows that it has the keyboard and gives it back.

#include "mainwin/CMenuBar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStyleOptionMenuItem>
#include <QStylePainter>

CMenuBar::CMenuBar(QWidget* Parent)
    : QMenuBar(Parent)
{
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* Old, const QWidget* Now) {
        if (Now == this && Old && Old->window() == window())
            m_before = Old;
    });
}

void CMenuBar::Leave()
{
    if (!hasFocus())
        return;
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    keyPressEvent(&escape); // the only way out of its keyboard mode
}

void CMenuBar::keyPressEvent(QKeyEvent* Event)
{
    QMenuBar::keyPressEvent(Event);
    if (!hasFocus() || activeAction())
        return;
    if (m_before && m_before->isVisible())
        m_before->setFocus(Qt::MenuBarFocusReason);
    else
        clearFocus();
}

void CMenuBar::paintEvent(QPaintEvent* Event)
{
    QMenuBar::paintEvent(Event);
    QAction* active = activeAction();
    if (!active || !hasFocus())
        return;
    QStyleOptionMenuItem option;
    initStyleOption(&option, active);
    option.rect = actionGeometry(active);
    option.state |= QStyle::State_Selected | QStyle::State_Sunken | QStyle::State_HasFocus;
    QStylePainter painter(this);
    painter.setClipRect(option.rect); // an outline beyond it would stay when the next item is marked
    painter.drawControl(QStyle::CE_MenuBarItem, option);
}
