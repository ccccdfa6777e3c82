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

public:
    explicit uSpinButton(QWidget* Parent = nullptr);

    qint32 Value() const;
    /// A value outside Min..Max is ignored.
    void SetValue(qint32 NewValue);
    /// 50 at the start. A bound that passes the value takes the value along.
    qint32 Max() const;
    void SetMax(qint32 NewMax);
    /// 0 at the start.
    qint32 Min() const;
    void SetMin(qint32 NewMin);
    /// The number can be read and copied, not changed.
    bool Locked() const;
    void SetLocked(bool NewLocked);

    QValidator::State validate(QString& Input, int& Position) const override;
    int valueFromText(const QString& Text) const override;

Q_SIGNALS:
    /// The value is another one, by typing, arrows, wheel or SetValue.
    void Change();
    /// A key that makes a character was pressed, before it takes effect; Enter (13), Esc (27) and Backspace (8) too.
    void KeyPress(int Character);

protected:
    bool event(QEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void keyReleaseEvent(QKeyEvent* Event) override;

private:
    void OnTextEdited(const QString& Text);
};

#endif
