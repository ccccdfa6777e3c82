// controls/uSpinButton.cpp
// Entry of a whole number between two bounds, with arrows.

#include "controls/uSpinButton.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

namespace
{
/// The ASCII form of a full-width digit or minus sign; anything else as it is.
QChar Narrow(QChar C)
{
    constexpr char16_t FullWidthZero = u'０';
    if (C >= FullWidthZero && C <= u'９')
        return QChar(static_cast<char16_t>(u'0' + (C.unicode() - FullWidthZero)));
    return C == u'－' || C == u'−' ? QChar(u'-') : C;
}

bool IsStep(const QKeyEvent& Event) { return Event.key() == Qt::Key_Up || Event.key() == Qt::Key_Down; }

bool IsModified(const QKeyEvent& Event)
{
    return Event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
}
} // namespace

uSpinButton::uSpinButton(QWidget* Parent)
    : QSpinBox(Parent)
{
    setRange(0, 50);
    lineEdit()->setText(textFromValue(value())); // the base waits with it until it is shown
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QSpinBox::valueChanged, this, &uSpinButton::Change);
    connect(lineEdit(), &QLineEdit::textChanged, this, &uSpinButton::OnTextChanged); // after the base has the value
}

void uSpinButton::SetValue(qint32 NewValue)
{
    if (NewValue >= minimum() && NewValue <= maximum())
        setValue(NewValue);
}

QValidator::State uSpinButton::validate(QString& Input, [[maybe_unused]] int& Position) const
{
    if (Input.isEmpty())
        return QValidator::Intermediate; // OnTextChanged puts Min there
    for (QChar& c : Input) {
        c = Narrow(c);
        if ((c < u'0' || c > u'9') && c != u'-')
            return QValidator::Invalid;
    }
    bool isNumber = false;
    const int number = Input.toInt(&isNumber);
    return isNumber && number >= minimum() && number <= maximum() ? QValidator::Acceptable : QValidator::Invalid;
}

void uSpinButton::OnTextChanged(const QString& Text)
{
    const QString plain = textFromValue(Text.isEmpty() ? minimum() : value());
    if (Text == plain || m_composing) // what is composed replaces the selection first, and then is text
        return;
    if (Text.isEmpty()) {
        setValue(minimum());
        lineEdit()->setText(plain);
        selectAll();
        return;
    }
    // "05": the digit was typed behind the 0 that stood there.
    const qsizetype fromEnd = Text.size() - lineEdit()->cursorPosition();
    lineEdit()->setText(plain);
    lineEdit()->setCursorPosition(static_cast<int>(qMax(qsizetype(0), plain.size() - fromEnd)));
}

bool uSpinButton::event(QEvent* Event)
{
    if (Event->type() != QEvent::InputMethod)
        return QSpinBox::event(Event);
    m_composing = !static_cast<QInputMethodEvent*>(Event)->preeditString().isEmpty();
    const bool handled = QSpinBox::event(Event);
    OnTextChanged(lineEdit()->text()); // composing given up: nothing may be left empty
    return handled;
}

void uSpinButton::keyPressEvent(QKeyEvent* Event)
{
    if (!Locked() && !Event->text().isEmpty())
        Q_EMIT KeyPress(Event->text().front().unicode());
    if (IsStep(*Event) && IsModified(*Event))
        Event->ignore();
    else
        QSpinBox::keyPressEvent(Event);
}

/// At a bound the base does nothing; the number is selected there all the same, ready to be typed over.
void uSpinButton::keyReleaseEvent(QKeyEvent* Event)
{
    QSpinBox::keyReleaseEvent(Event);
    if (IsStep(*Event) && !IsModified(*Event) && !Locked())
        selectAll();
}

void uSpinButton::wheelEvent(QWheelEvent* Event)
{
    if (hasFocus())
        QSpinBox::wheelEvent(Event);
    else
        Event->ignore(); // scrolling past the box must not change it
}
