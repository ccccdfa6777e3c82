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

// A window manager that brings a hidden window back may report it as minimised for a moment.
constexpr int SettleMs = 150;
constexpr int TimesMissing = 2;

} // namespace

CTrayHiding::CTrayHiding(QWidget& Window, std::function<bool()> MayHide)
    : QObject(&Window)
    , m_window(Window)
    , m_mayHide(std::move(MayHide))
    , m_hide(new QTimer(this))
    , m_look(new QTimer(this))
{
    m_hide->setSingleShot(true);
    m_hide->setInterval(SettleMs);
    connect(m_hide, &QTimer::timeout, this, &CTrayHiding::Settle);
    m_look->setObjectName(QStringLiteral("tmrLookForTray"));
    m_look->setInterval(LookEveryMs);
    connect(m_look, &QTimer::timeout, this, &CTrayHiding::Look);
    Window.installEventFilter(this);
}

bool CTrayHiding::eventFilter(QObject*, QEvent* Event)
{
    const bool isNews = Event->type() == QEvent::Show || Event->type() == QEvent::WindowStateChange;
    if (isNews && m_window.isVisible()) // news of the window manager may be late
        OnState();
    return false;
}

void CTrayHiding::OnState()
{
    m_look->stop();
    if (!m_window.isMinimized())
        m_wasOpen = true;
    else if (m_wasOpen)
        m_hide->start();
}

/// Minimised so soon after it was brought back, it is as the window manager was told when it was minimised the last
/// time.
void CTrayHiding::Settle()
{
    if (!m_window.isMinimized())
        return;
    if (!m_sinceBack.isValid() || m_sinceBack.hasExpired(ComingMs)) {
        Hide();
        return;
    }
    m_sinceBack.invalidate(); // once: whoever insists gets his way
    m_window.setWindowState(m_isMaximised ? Qt::WindowMaximized : Qt::WindowNoState);
    m_window.activateWindow();
}

bool CTrayHiding::Hide()
{
    if (!m_window.isVisible() || QApplication::activeModalWidget() || !m_mayHide())
        return false;
    for (QDialog* dialog : m_window.findChildren<QDialog*>(Qt::FindDirectChildrenOnly))
        dialog->hide();
    m_isMaximised = m_window.isMaximized();
    m_window.hide();
    m_isHidden = true;
    m_missing = 0;
    m_look->start();
    return true;
}

/// Shown first and told its state then: a window manager forgets what it knew of a hidden window, and so does the
/// toolkit.
void CTrayHiding::BringBack()
{
    if (!std::exchange(m_isHidden, false))
        return;
    m_sinceBack.start();
    m_window.show();
    m_window.setWindowState(m_isMaximised ? Qt::WindowMaximized : Qt::WindowNoState);
}

void CTrayHiding::Look()
{
    m_missing = m_mayHide() ? 0 : m_missing + 1;
    if (m_missing >= TimesMissing)
        Q_EMIT WayBackLost();
}
