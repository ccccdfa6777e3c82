// mainwin/CTrayHiding.cpp
// Takes the window off the task bar while it is minimised, when its icon in the tray can bring it back.

#include "mainwin/CTrayHiding.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTimer>

#include <utility>

namespace
{

constexpr int TimesMissing = 2;

} // namespace

CTrayHiding::CTrayHiding(QWidget& Window, std::function<bool()> MayHide)
    : QObject(&Window)
    , m_window(Window)
    , m_mayHide(std::move(MayHide))
    , m_look(new QTimer(this))
{
    m_look->setObjectName(QStringLiteral("tmrLookForTray"));
    m_look->setInterval(LookEveryMs);
    connect(m_look, &QTimer::timeout, this, &CTrayHiding::Look);
    Window.installEventFilter(this);
}

bool CTrayHiding::eventFilter(QObject*, QEvent* Event)
{
    if (Event->type() == QEvent::Show)
        OnShown();
    if (Event->type() == QEvent::Show || Event->type() == QEvent::WindowStateChange)
        OnState();
    return false;
}

void CTrayHiding::OnShown()
{
    m_isHidden = false;
    m_look->stop();
}

/// The hiding waits until the window manager's own news of the change has been dealt with.
void CTrayHiding::OnState()
{
    if (!m_window.isMinimized())
        m_wasOpen = m_wasOpen || m_window.isVisible();
    else if (m_wasOpen && m_window.isVisible())
        QTimer::singleShot(0, this, &CTrayHiding::Hide);
}

void CTrayHiding::Hide()
{
    if (!m_window.isMinimized() || !m_window.isVisible() || QApplication::activeModalWidget() || !m_mayHide())
        return;
    for (QDialog* dialog : m_window.findChildren<QDialog*>(Qt::FindDirectChildrenOnly))
        dialog->hide();
    m_window.hide();
    m_isHidden = true;
    m_missing = 0;
    m_look->start();
}

void CTrayHiding::Look()
{
    m_missing = m_mayHide() ? 0 : m_missing + 1;
    if (m_missing >= TimesMissing)
        Q_EMIT WayBackLost();
}
