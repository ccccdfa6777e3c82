// mainwin/CTrayHiding.h
// Takes the window off the task bar while it is minimised, when its icon in the tray can bring it back.

#ifndef MAINWIN_CTRAYHIDING_H
#define MAINWIN_CTRAYHIDING_H

#include <QElapsedTimer>
#include <QObject>

#include <functional>

class QTimer;
class QWidget;

/// Watches one window. Dialogs that it owns go with it; who shows it again shows the ones that are still wanted.
///
/// A window that was never seen open is not hidden: a start never ends without a window. Nor is one with a modal box,
/// whose end somebody waits for.
class CTrayHiding : public QObject
{
    Q_OBJECT

public:
    /// While the window is hidden the tray is looked for this often; where it is missing twice in a row it is gone, and
    /// not only being restarted. Nobody tells of that on every desktop.
    static constexpr int LookEveryMs = 2000;

    /// So soon after it was brought back nobody minimises the window himself; some window managers do.
    static constexpr int ComingMs = 400;

    /// MayHide: whether the window would come back. It becomes the parent.
    CTrayHiding(QWidget& Window, std::function<bool()> MayHide);

    /// Hides the window at once, without the detour by which a window manager minimises. False, doing nothing, where
    /// that is not allowed: then it can only be minimised.
    bool Hide();

    /// Shows the window as it was before it was minimised; nothing when it is not hidden.
    void BringBack();

Q_SIGNALS:
    /// The window is hidden, and there is no tray any more to bring it back from.
    void WayBackLost();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void OnState();
    void Settle();
    void Look();

    QWidget& m_window;
    std::function<bool()> m_mayHide;
    QTimer* m_hide; // children
    QTimer* m_look;
    QElapsedTimer m_sinceBack;
    int m_missing = 0;
    bool m_wasOpen = false;
    bool m_isHidden = false;
    bool m_isMaximised = false; // the hidden window was
};

#endif
