// mainwin/CTrayPresence.cpp
// How the main window lives in the tray: its icon there by the settings, and hiding while it is minimised.

#include "mainwin/CTrayPresence.h"

#include "app/Application.h"
#include "mainwin/CTray.h"
#include "mainwin/CTrayHiding.h"
#include "platform/desktop/desktop.h"

#include <QMenu>
#include <QWidget>

CTrayPresence::CTrayPresence(Application& App, QWidget& Window, QMenu& Menu, QAction& Default)
    : QObject(&Window)
    , m_app(App)
    , m_window(Window)
    , m_tray(new CTray(this))
    , m_hiding(new CTrayHiding(Window, [this] { return MayHide(); }))
{
    m_tray->SetTooltipText(App.AppTitle());
    m_tray->SetPopupMenu(Menu, Default);
    connect(m_tray, &CTray::DblClick, this, &CTrayPresence::ShowAsked);
    connect(m_tray, &CTray::Click, this, [this] {
        if (!m_window.isVisible() || m_window.isMinimized())
            Q_EMIT ShowAsked();
    });
    connect(m_hiding, &CTrayHiding::WayBackLost, this, &CTrayPresence::ShowAsked);
}

void CTrayPresence::Adopt() { m_tray->SetVisible(m_app.Option().AddTaskTray); }

void CTrayPresence::SetIcon(const QIcon& NewIcon) { m_tray->SetIcon(NewIcon); }

bool CTrayPresence::Hide() { return m_hiding->Hide(); }

void CTrayPresence::BringBack() { m_hiding->BringBack(); }

void CTrayPresence::Leave() { m_tray->DeleteIcon(); }

/// With a false answer the window stays on the task bar: hidden without an icon it would be lost.
bool CTrayPresence::MayHide() const
{
    return m_app.Option().AddTaskTray && m_app.Option().HideAtMinimazed && m_tray->Visible() && m_app.Shell.HasTray();
}
