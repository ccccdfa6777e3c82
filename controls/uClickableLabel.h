// controls/uClickableLabel.h
// A label that opens its text as a web or mail address.

#ifndef CONTROLS_UCLICKABLELABEL_H
#define CONTROLS_UCLICKABLELABEL_H

#include <QPointF>
#include <QWidget>

class Desktop;
class QLabel;

/// Underlined and blue while the pointer is over it or it has the keyboard focus; a click, Enter or Space opens the
/// text with the desktop. The text is foreign: it is never read as markup, and what may be opened Desktop decides.
class uClickableLabel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int ClickableMode READ ClickableMode WRITE SetClickableMode)

public:
    enum Modes { Plain = 0, WebAddress = 1, MailAddress = 2 };

    /// Shell is borrowed and must outlive the label.
    explicit uClickableLabel(Desktop& Shell, QWidget* Parent = nullptr);

    /// The inner label: font, tool tip, alignment. It belongs to this control.
    QLabel* Label() const;
    QString Caption() const;
    /// An empty caption can be neither clicked nor reached by Tab.
    void SetCaption(const QString& NewCaption);

    /// 0: only tells of clicks and of the pointer; 1 (at the start): a web address; 2: a mail address.
    int ClickableMode() const;
    void SetClickableMode(int NewClickableMode);

    /// Does what a click does.
    void Activate();

    /// Blue (0,0,255) where it can be read on Background, else the same hue made lighter until it can.
    static QColor HoverColor(const QColor& Background);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Mode 0 only.
    void Click();
    void DblClick();
    /// Mode 0 only; the pointer's place in the label, in twips.
    void MouseEnter(float X, float Y);
    void MouseLeave(float X, float Y);

protected:
    bool event(QEvent* Event) override;
    void enterEvent(QEnterEvent* Event) override;
    void leaveEvent(QEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void focusInEvent(QFocusEvent* Event) override;
    void focusOutEvent(QFocusEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;

private:
    bool IsLink() const { return m_mode != Plain; }
    void SetHovered(bool Hovered, const QPointF& Position);
    QPointF Pointer() const;
    void UpdateReach();
    void ShowState();
    QString TipText() const;

    Desktop& m_shell;
    QLabel* m_label;
    int m_mode = WebAddress;
    bool m_hovered = false;
    bool m_pressed = false;
};

#endif
