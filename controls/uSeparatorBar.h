// controls/uSeparatorBar.h
// The part of a splitter that is seen and gripped.

#ifndef CONTROLS_USEPARATORBAR_H
#define CONTROLS_USEPARATORBAR_H

#include <QWidget>

class uSeparator;

/// Turns the mouse and the keys into calls to its splitter, and shows dragging and focus.
class uSeparatorBar : public QWidget
{
    Q_OBJECT

public:
    explicit uSeparatorBar(uSeparator* Owner);

    uSeparator& Separator() const { return m_owner; }

protected:
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void focusInEvent(QFocusEvent* Event) override;
    void focusOutEvent(QFocusEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;

private:
    int Along(const QPointF& Position) const;
    void SetDragging(bool Dragging);

    uSeparator& m_owner;
    bool m_dragging = false;
};

#endif
