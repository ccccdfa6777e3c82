// mainwin/CTray.h
// The program's icon among the status icons of the desktop, and what the user does to it.

#ifndef MAINWIN_CTRAY_H
#define MAINWIN_CTRAY_H

#include <QElapsedTimer>
#include <QIcon>
#include <QObject>

class QAction;
class QMenu;
class QSystemTrayIcon;

/// One icon. Clicks reach it as signals of the toolkit, whichever way the desktop reports them, so no window has to be
/// listened at. While it is visible it also comes into a tray that is only started later, or again.
///
/// Desktops tell of whole clicks and never of the moving pointer; a click is passed on as the pressing and the
/// releasing of its button.
class CTray : public QObject
{
    Q_OBJECT

public:
    enum Button : qint16 { Left = 1, Right = 2, Middle = 4 };

    /// What every desktop shows of a tip, in UTF-16 units.
    static constexpr qsizetype MaxTooltip = 63;

    explicit CTray(QObject* Parent = nullptr);

    QIcon Icon() const;
    /// Takes effect at once. A null icon removes what is visible.
    void SetIcon(const QIcon& NewIcon);

    QString TooltipText() const;
    /// Cut to MaxTooltip, never within a character. Takes effect at once.
    void SetTooltipText(const QString& NewText);

    /// Whether the icon is wanted in the tray. Whether there is a tray is another question (Desktop::HasTray).
    bool Visible() const { return m_isVisible; }
    void SetVisible(bool NewVisible);

    /// False, doing nothing, while there is no picture.
    bool AddIcon();
    void DeleteIcon();

    /// What a right click brings, Default in bold (both borrowed, they outlive the icon). It is handed to the desktop
    /// once and for all: some draw it themselves and ask for nothing. Where they do not, it comes up at the pointer and
    /// a click elsewhere or Esc closes it.
    void SetPopupMenu(QMenu& Menu, QAction& Default);

Q_SIGNALS:
    void Click();
    /// Comes without a Click of its own; the first click of the two has been told.
    void DblClick();
    void MouseDown(qint16 Button);
    void MouseUp(qint16 Button);

private:
    enum class Last { None, Click, DblClick };

    void OnActivated(int Reason);
    void OnLeft();
    void OnDouble();
    void Press(Button Which);

    QSystemTrayIcon* m_icon; // a child
    QElapsedTimer m_sinceLast;
    Last m_last = Last::None;
    bool m_isVisible = false;
};

#endif
