// mainwin/CMenuBar.h
// The menu bar, which shows that it has the keyboard and gives it back.

#ifndef MAINWIN_CMENUBAR_H
#define MAINWIN_CMENUBAR_H

#include <QMenuBar>
#include <QPointer>

/// Alt alone, and Esc in an open menu, leave the keyboard with the bar. Not every style draws that, and then the keys
/// of the window seem dead; so the bar marks its active item itself. A menu opened while the bar has the keyboard makes
/// the toolkit give the keyboard back to the bar itself in the end; so the bar remembers who had it.
class CMenuBar : public QMenuBar
{
    Q_OBJECT

public:
    explicit CMenuBar(QWidget* Parent);

    /// Gives the keyboard back to the control that had it before; nothing when the bar does not have it.
    void Leave();

protected:
    void paintEvent(QPaintEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;

private:
    QPointer<QWidget> m_before; ///< who had the focus before the bar
};

#endif
