// mainwin/CTray.cpp
// The program's icon among the status icons of the desktop, and what the user does to it.

#include "mainwin/CTray.h"

#include <QApplication>
#include <QMenu>
#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;

namespace
{

/// Where nothing reaches a screen, asking for a status icon only makes the toolkit complain.
bool IsDrawn()
{
    const QString platform = QGuiApplication::platformName();
    return platform != u"offscreen"_s && platform != u"minimal"_s;
}

} // namespace

CTray::CTray(QObject* Parent)
    : QObject(Parent)
    , m_icon(new QSystemTrayIcon(this))
{
    connect(m_icon, &QSystemTrayIcon::activated, this, &CTray::OnActivated);
}

QIcon CTray::Icon() const { return m_icon->icon(); }

void CTray::SetIcon(const QIcon& NewIcon)
{
    if (NewIcon.isNull())
        DeleteIcon();
    m_icon->setIcon(NewIcon);
}

QString CTray::TooltipText() const { return m_icon->toolTip(); }

void CTray::SetTooltipText(const QString& NewText)
{
    QString shown = NewText.left(MaxTooltip);
    if (shown.size() < NewText.size() && shown.back().isHighSurrogate())
        shown.chop(1);
    m_icon->setToolTip(shown);
}

void CTray::SetVisible(bool NewVisible)
{
    if (NewVisible)
        AddIcon();
    else
        DeleteIcon();
}

bool CTray::AddIcon()
{
    if (m_icon->icon().isNull())
        return false;
    m_isVisible = true;
    m_icon->setVisible(IsDrawn());
    return true;
}

void CTray::DeleteIcon()
{
    m_isVisible = false;
    m_icon->hide();
}

void CTray::SetPopupMenu(QMenu& Menu, QAction& Default)
{
    Menu.setDefaultAction(&Default);
    m_icon->setContextMenu(&Menu);
}

void CTray::OnActivated(int Reason)
{
    switch (Reason) {
    case QSystemTrayIcon::Trigger:
        OnLeft();
        break;
    case QSystemTrayIcon::DoubleClick:
        OnDouble();
        break;
    case QSystemTrayIcon::Context:
        Press(Right);
        break;
    case QSystemTrayIcon::MiddleClick:
        Press(Middle);
        break;
    default:
        break;
    }
}

/// Some desktops know of single clicks only, and some tell of the second release of a double click as well: so the
/// second click soon after another is a double click, and the one soon after a double click belongs to that.
void CTray::OnLeft()
{
    const bool isSoon = m_last != Last::None && m_sinceLast.elapsed() < QApplication::doubleClickInterval();
    if (isSoon && m_last == Last::Click) {
        OnDouble();
        return;
    }
    const bool belongsToDouble = isSoon && m_last == Last::DblClick;
    m_last = belongsToDouble ? Last::None : Last::Click;
    m_sinceLast.start();
    if (belongsToDouble)
        return;
    Press(Left);
    Q_EMIT Click();
}

void CTray::OnDouble()
{
    m_last = Last::DblClick;
    m_sinceLast.start();
    Q_EMIT DblClick();
    Q_EMIT MouseUp(Left);
}

void CTray::Press(Button Which)
{
    Q_EMIT MouseDown(Which);
    Q_EMIT MouseUp(Which);
}
