// platform/desktop/CFocusRim.h
// A rim in the colour of selections around the scrolled control that has the keyboard focus.

#ifndef DESKTOP_CFOCUSRIM_H
#define DESKTOP_CFOCUSRIM_H

#include <QWidget>

class QAbstractScrollArea;

/// A list shows its selection, and a text its place, in much the same way with the focus and without: which of the two
/// panes of a window the keys go to could not be seen. The rim lies over the edge of Area, takes no room and no clicks.
class CFocusRim : public QWidget
{
    Q_OBJECT

public:
    /// Thickness in pixels at 100 %.
    static constexpr int Thickness = 2;

    /// Area becomes the parent.
    explicit CFocusRim(QAbstractScrollArea& Area);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    void Follow();

    QWidget& m_area;
};

#endif
