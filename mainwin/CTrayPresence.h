// mainwin/CTrayPresence.h
// How the main window lives in the tray: its icon there by the settings, and hiding while it is minimised.

#ifndef MAINWIN_CTRAYPRESENCE_H
#define MAINWIN_CTRAYPRESENCE_H

#include <QObject>

class Application;
class CTray;
class CTrayHiding;
class QAction;
class QIcon;
class QMenu;
class QWidget;

/// Made once for the window, which becomes the parent. Nothing is in the tray before Adopt.
class CTrayPresence : public QObject
{
    Q_OBJECT

public:
    /// Menu is what the icon brings, Default its entry in bold.
    CTrayPresence(Application& App, QWidget& Window, QMenu& Menu, QAction& Default);

    /// Brings the icon in line with the setting AddTaskTray.
    void Adopt();
    void SetIcon(const QIcon& NewIcon);
    /// Hides the window. False where the settings or the desktop are against it.
    bool Hide();
    /// Shows the window where it was hidden.
    void BringBack();
    /// For the end of the program: the icon goes, and nothing is hidden any more.
    void Leave();

Q_SIGNALS:
    /// The window is wanted in front: a double click, or a single one while it is out of sight, or the tray is gone.
    void ShowAsked();

private:
    bool MayHide() const;

    Application& m_app;
    QWidget& m_window;
    CTray* m_tray;         // children
    CTrayHiding* m_hiding; // of the window
};

#endif
