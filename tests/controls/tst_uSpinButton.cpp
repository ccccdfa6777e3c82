// tests/controls/tst_uSpinButton.cpp
// Numbers typed, pasted and stepped, key by key.

#include "controls/uSpinButton.h"
#include "tests/support/Table.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{
/// Lets a test reach the inner box.
class CSpin : public uSpinButton
{
public:
    QLineEdit& Edit() { return *lineEdit(); }
    /// Text with "|" at the caret, the selected part in brackets.
    QString State()
    {
        QString text = Edit().text();
        if (Edit().hasSelectedText())
            return text.insert(Edit().selectionEnd(), u']').insert(Edit().selectionStart(), u'[');
        return text.insert(Edit().cursorPosition(), u'|');
    }
};
} // namespace

class tst_uSpinButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Typing_data();
    void Typing();
    void Pasting_data();
    void Pasting();
    void InputMethod();
    void Steps();
    void Properties();
    void StepKeysWithModifiersAreNotOurs();
    void Locked();
    void KeyPressComesFirst();
    void WheelNeedsTheFocus();
};

void tst_uSpinButton::Typing_data()
{
    // keys: "<" Backspace, "^" Home
    mdlTable::AddRows<int, int, int, QString, QString, int>("spin-button.json", "Typing",
                                                            {"min", "max", "value", "keys", "wanted", "wantedValue"});
}

void tst_uSpinButton::Typing()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, value);
    QFETCH(QString, keys);
    QFETCH(QString, wanted);
    QFETCH(int, wantedValue);
    CSpin spin;
    spin.SetMin(min);
    spin.SetMax(max);
    spin.SetValue(value);
    spin.Edit().end(false);
    for (const QChar key : keys) {
        if (key == u'<')
            QTest::keyClick(&spin, Qt::Key_Backspace);
        else if (key == u'^')
            QTest::keyClick(&spin, Qt::Key_Home);
        else
            QTest::sendKeyEvent(QTest::Click, &spin, Qt::Key_unknown, QString(key), Qt::NoModifier);
    }
    QCOMPARE(spin.State(), wanted);
    QCOMPARE(spin.Value(), wantedValue);
}

void tst_uSpinButton::Pasting_data()
{
    mdlTable::AddRows<QString, int>("spin-button.json", "Pasting", {"text", "wanted"});
}

void tst_uSpinButton::Pasting()
{
    QFETCH(QString, text);
    QFETCH(int, wanted);
    CSpin spin;
    spin.SetMin(-3);
    spin.SetValue(7);
    spin.selectAll();
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(&spin, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(spin.Value(), wanted);
    QCOMPARE(spin.Edit().text(), QString::number(wanted));
}

void tst_uSpinButton::InputMethod()
{
    CSpin spin;
    spin.SetMax(999999);
    spin.SetValue(7);
    spin.selectAll();
    QInputMethodEvent composing(u"２５０"_s, {});
    QCoreApplication::sendEvent(&spin, &composing);
    QCOMPARE(spin.Edit().text(), QString()); // putting a number there would break the composing off
    QInputMethodEvent event;
    event.setCommitString(u"２５０"_s);
    QCoreApplication::sendEvent(&spin, &event);
    QCOMPARE(spin.Value(), 250);
    QCOMPARE(spin.Edit().text(), u"250"_s);

    spin.selectAll();
    QCoreApplication::sendEvent(&spin, &composing);
    QInputMethodEvent givenUp;
    QCoreApplication::sendEvent(&spin, &givenUp);
    QCOMPARE(spin.State(), u"[0]"_s);
    QCOMPARE(spin.Value(), 0);
}

void tst_uSpinButton::Steps()
{
    CSpin spin;
    spin.SetMax(2);
    QSignalSpy changed(&spin, &uSpinButton::Change);
    QTest::keyClick(&spin, Qt::Key_Up);
    QCOMPARE(spin.State(), u"[1]"_s);
    QTest::keyClick(&spin, Qt::Key_Up);
    QTest::keyClick(&spin, Qt::Key_Up); // stays at the bound
    QCOMPARE(spin.State(), u"[2]"_s);
    QTest::keyClick(&spin, Qt::Key_Down);
    QCOMPARE(spin.State(), u"[1]"_s);
    QCOMPARE(changed.size(), 3);

    spin.SetValue(2);
    spin.Edit().end(false);
    QTest::keyClick(&spin, Qt::Key_Up); // nothing to do, and yet ready to be typed over
    QCOMPARE(spin.State(), u"[2]"_s);
}

// What forms and screen readers know of it.
void tst_uSpinButton::Properties()
{
    CSpin spin;
    const std::tuple<const char*, QVariant, QVariant> values[] = {
        {"Value", 0, 20}, {"Max", 50, 60}, {"Min", 0, -5}, {"Enabled", true, false}, {"Locked", false, true}};
    for (const auto& [name, first, other] : values) {
        QCOMPARE(spin.property(name), first);
        QVERIFY(spin.setProperty(name, other));
        QCOMPARE(spin.property(name), other);
    }
    QVERIFY(spin.setProperty("Value", 61)); // ignored
    QAccessibleValueInterface* value = QAccessible::queryAccessibleInterface(&spin)->valueInterface();
    QVERIFY(value);
    QCOMPARE(QVariantList({value->currentValue(), value->minimumValue(), value->maximumValue()}),
             QVariantList({20, -5, 60}));
}

void tst_uSpinButton::StepKeysWithModifiersAreNotOurs()
{
    CSpin spin;
    spin.SetValue(20);
    for (const Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
        QTest::keyClick(&spin, Qt::Key_Up, modifier);
        QTest::keyClick(&spin, Qt::Key_Down, modifier);
        QCOMPARE(spin.Value(), 20);
    }
}

void tst_uSpinButton::Locked()
{
    CSpin spin;
    spin.SetValue(5);
    spin.SetLocked(true);
    QSignalSpy pressed(&spin, &uSpinButton::KeyPress);
    QTest::keyClick(&spin, Qt::Key_Up);
    QTest::keyClicks(&spin, u"1"_s);
    QTest::keyClick(&spin, Qt::Key_Backspace);
    QCOMPARE(spin.Value(), 5);
    QCOMPARE(spin.Edit().text(), u"5"_s);
    QCOMPARE(pressed.size(), 0);
}

void tst_uSpinButton::KeyPressComesFirst()
{
    CSpin spin;
    QStringList log;
    connect(&spin, &uSpinButton::KeyPress, &spin,
            [&](int character) { log << u"%1 at %2"_s.arg(character).arg(spin.Edit().text()); });
    spin.Edit().end(false);
    QTest::keyClicks(&spin, u"7x"_s);
    QTest::keyClick(&spin, Qt::Key_Return);
    QTest::keyClick(&spin, Qt::Key_Escape);
    QCOMPARE(log, QStringList({u"55 at 0"_s, u"120 at 7"_s, u"13 at 7"_s, u"27 at 7"_s}));
}

void tst_uSpinButton::WheelNeedsTheFocus()
{
    uSpinButton spin;
    spin.SetValue(5);
    const QPointF at(5, 5);
    QWheelEvent wheel(at, spin.mapToGlobal(at), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&spin, &wheel);
    QCOMPARE(spin.Value(), 5);
    spin.show();
    spin.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&spin));
    spin.setFocus();
    QCoreApplication::sendEvent(&spin, &wheel);
    QCOMPARE(spin.Value(), 6);
}

QTEST_MAIN(tst_uSpinButton)
#include "tst_uSpinButton.moc"
