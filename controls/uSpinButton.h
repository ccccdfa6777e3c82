// controls/uSpinButton.h
// Entry of a whole number between two bounds, with arrows.

#ifndef CONTROLS_USPINBUTTON_H
#define CONTROLS_USPINBUTTON_H

#include <QSpinBox>

/// A spin box that never holds a number outside its bounds, not even while it is typed.
///
/// A key that would make the number leave Min..Max does nothing and the caret stays. Emptying the box puts Min there,
/// selected, so that the next digit replaces it. Full-width digits count: the box is often reached with the input
/// method on. A "-" alone is refused; "-3" can be pasted, or its "-" typed before the 3.
class uSpinButton : public QSpinBox
{
    Q_OBJECT
    Q_PROPERTY(qint32 Value READ Value WRITE SetValue NOTIFY Change)
    Q_PROPERTY(qint32 Max READ Max WRITE SetMax)
    Q_PROPERTY(qint32 Min READ Min WRITE SetMin)
    Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
    Q_PROPERTY(bool Locked READ Locked WRITE SetLocked)

public:
    explicit uSpinButton(QWidget* Parent = nullptr);

    qint32 Value() const { return value(); }
    /// A value outside Min..Max is ignored.
    void SetValue(qint32 NewValue);
    /// 50 at the start. A bound that passes the value takes the value along.
    qint32 Max() const { return maximum(); }
    void SetMax(qint32 NewMax) { setMaximum(NewMax); }
    /// 0 at the start. Above 1 not every number could be typed: its first digit alone would be too small.
    qint32 Min() const { return minimum(); }
    void SetMin(qint32 NewMin) { setMinimum(NewMin); }
    /// The number can be read and copied, not changed.
    bool Locked() const { return isReadOnly(); }
    void SetLocked(bool NewLocked) { setReadOnly(NewLocked); }

    QValidator::State validate(QString& Input, int& Position) const override;

Q_SIGNALS:
    /// The value is another one, by typing, arrows, wheel or program.
    void Change();
    /// A key that makes a character was pressed, before it takes effect; Backspace (8), Enter (13) and Esc (27) too.
    void KeyPress(int Character);

protected:
    bool event(QEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void keyReleaseEvent(QKeyEvent* Event) override;
    void wheelEvent(QWheelEvent* Event) override;

private:
    void OnTextChanged(const QString& Text);

    bool m_composing = false;
};

#endif
