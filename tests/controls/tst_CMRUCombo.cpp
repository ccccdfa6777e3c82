// tests/controls/tst_CMRUCombo.cpp
// The history of a combo box, and what it adds while somebody types.

#include "controls/CMRUCombo.h"
#include "tests/support/Table.h"

#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class CBox
{
public:
    explicit CBox(const QStringList& Items = {}, qint16 Max = 10)
    {
        Combo.addItems(Items);
        Mru.SetComboBox(&Combo);
        Mru.SetMax(Max);
        Combo.setEditText(QString());
    }

    QStringList Items() const
    {
        QStringList items;
        for (int i = 0; i < Combo.count(); ++i)
            items << Combo.itemText(i);
        return items;
    }
    /// The box's text with "|" at the caret, the selected part in brackets.
    QString State() const
    {
        QString text = Combo.currentText();
        const QLineEdit& edit = *Combo.lineEdit();
        if (edit.hasSelectedText())
            return text.insert(edit.selectionEnd(), u']').insert(edit.selectionStart(), u'[');
        return text.insert(edit.cursorPosition(), u'|');
    }

    QComboBox Combo;
    CMRUCombo Mru;
};
} // namespace

class tst_CMRUCombo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Adding_data();
    void Adding();
    void ItemsFollowExactly();
    void SavedOrderComesBack();
    void MaxCutsAtOnce();
    void AttachingStartsANewList();
    void TextInTheBoxIsLeftAlone();
    void Typing_data();
    void Typing();
    void InputMethod();
    void ProgramTextIsNotCompleted();
    void TabAccepts();
};

void tst_CMRUCombo::Adding_data()
{
    // texts: added at the top in this order
    mdlTable::AddRows<int, QStringList, QStringList>("combo.json", "Adding", {"max", "texts", "wanted"});
}

void tst_CMRUCombo::Adding()
{
    QFETCH(int, max);
    QFETCH(QStringList, texts);
    QFETCH(QStringList, wanted);
    CBox box({}, static_cast<qint16>(max));
    for (const QString& text : texts)
        box.Mru.AddMRU(text, true);
    QCOMPARE(box.Mru.MRUList(), wanted);
}

void tst_CMRUCombo::ItemsFollowExactly()
{
    CBox box({}, 2);
    for (const QString& text : {u"ABC"_s, u"x"_s, u"abc"_s, u"y"_s, u"x"_s})
        box.Mru.AddMRU(text, true);
    // The drop-down keeps both cases and is not cut; a text added again is there once.
    QCOMPARE(box.Items(), QStringList({u"x"_s, u"y"_s, u"abc"_s, u"ABC"_s}));
    QCOMPARE(box.Mru.MRUList(), QStringList({u"x"_s, u"y"_s}));
    box.Mru.AddMRUTemp(u"once"_s, true);
    box.Mru.AddMRUTemp(u"y"_s, false);
    QCOMPARE(box.Items(), QStringList({u"once"_s, u"x"_s, u"abc"_s, u"ABC"_s, u"y"_s}));
    QCOMPARE(box.Mru.MRUList(), QStringList({u"x"_s, u"y"_s}));
}

void tst_CMRUCombo::SavedOrderComesBack()
{
    CBox box;
    for (const QString& text : {u"newest"_s, u"older"_s, u"oldest"_s})
        box.Mru.AddMRU(text, false);
    QCOMPARE(box.Mru.MRUList(), QStringList({u"newest"_s, u"older"_s, u"oldest"_s}));
    QCOMPARE(box.Items(), QStringList({u"newest"_s, u"older"_s, u"oldest"_s}));
}

void tst_CMRUCombo::MaxCutsAtOnce()
{
    CBox box;
    for (const QString& text : {u"a"_s, u"b"_s, u"c"_s})
        box.Mru.AddMRU(text, false);
    box.Mru.SetMax(1);
    QCOMPARE(box.Mru.MRUList(), QStringList{u"a"_s});
}

void tst_CMRUCombo::AttachingStartsANewList()
{
    CMRUCombo mru;
    QCOMPARE(mru.Max(), 10);
    mru.AddMRU(u"before"_s, true);
    QComboBox first;
    mru.SetComboBox(&first);
    QCOMPARE(mru.Max(), 0);
    QCOMPARE(mru.MRUList(), QStringList());
    QVERIFY(first.isEditable());
    auto second = std::make_unique<QComboBox>();
    mru.SetComboBox(second.get());
    QTest::keyClicks(&first, u"x"_s); // no longer ours
    second.reset();
    mru.AddMRU(true);
    QCOMPARE(mru.ComboBox(), nullptr);
}

void tst_CMRUCombo::TextInTheBoxIsLeftAlone()
{
    CBox box({u"a"_s, u"b"_s});
    box.Combo.setCurrentIndex(1);
    box.Mru.AddMRU(true); // the box's own text
    QCOMPARE(box.Items(), QStringList({u"b"_s, u"a"_s}));
    QCOMPARE(box.Combo.currentText(), u"b"_s);
    box.Combo.setEditText(u"half typed"_s);
    box.Combo.lineEdit()->setCursorPosition(4);
    box.Mru.AddMRU(u"a"_s, true);
    QCOMPARE(box.State(), u"half| typed"_s);
    QCOMPARE(box.Items(), QStringList({u"a"_s, u"b"_s}));
}

void tst_CMRUCombo::Typing_data()
{
    // keys: "<" Backspace, "~" Delete, "_" Left
    mdlTable::AddRows<QStringList, QString, QString>("combo.json", "Typing", {"items", "keys", "wanted"});
}

void tst_CMRUCombo::Typing()
{
    QFETCH(QStringList, items);
    QFETCH(QString, keys);
    QFETCH(QString, wanted);
    CBox box(items);
    for (const QChar key : keys) {
        if (key == u'<')
            QTest::keyClick(&box.Combo, Qt::Key_Backspace);
        else if (key == u'~')
            QTest::keyClick(&box.Combo, Qt::Key_Delete);
        else
            QTest::keyClicks(&box.Combo, QString(key));
    }
    QCOMPARE(box.State(), wanted);
}

void tst_CMRUCombo::InputMethod()
{
    CBox box({u"入門者ひろば"_s});
    QTest::keyClicks(&box.Combo, u"xy"_s); // some keys before, to leave a caret far to the right
    QTest::keyClick(&box.Combo, Qt::Key_Backspace);
    QTest::keyClick(&box.Combo, Qt::Key_Backspace);
    QInputMethodEvent composing(u"にゅうもん"_s, {});
    QCoreApplication::sendEvent(&box.Combo, &composing);
    QCOMPARE(box.Combo.currentText(), QString()); // nothing is added while it composes
    QInputMethodEvent done;
    done.setCommitString(u"入門"_s);
    QCoreApplication::sendEvent(&box.Combo, &done);
    QCOMPARE(box.State(), u"入門[者ひろば]"_s);

    // Composing over what was added: it goes, and nothing new comes until there is text.
    QCoreApplication::sendEvent(&box.Combo, &composing);
    QCOMPARE(box.State(), u"入門|"_s);
    QInputMethodEvent more(u"しゃの"_s, {});
    QCoreApplication::sendEvent(&box.Combo, &more);
    QCOMPARE(box.State(), u"入門|"_s);
    QInputMethodEvent part(u"の"_s, {}); // the first clause is settled, the second is still worked on
    part.setCommitString(u"者"_s);
    QCoreApplication::sendEvent(&box.Combo, &part);
    QCOMPARE(box.State(), u"入門者|"_s);
    QInputMethodEvent givenUp;
    QCoreApplication::sendEvent(&box.Combo, &givenUp);
    QCOMPARE(box.State(), u"入門者|"_s);
    QTest::keyClicks(&box.Combo, u"x"_s);
    QTest::keyClick(&box.Combo, Qt::Key_Backspace);
    QCOMPARE(box.State(), u"入門者|"_s);
}

void tst_CMRUCombo::ProgramTextIsNotCompleted()
{
    CBox box({u"abcd"_s});
    box.Combo.setEditText(u"ab"_s);
    QCOMPARE(box.State(), u"ab|"_s);
}

void tst_CMRUCombo::TabAccepts()
{
    for (const bool back : {false, true}) {
        QWidget window;
        CBox box({u"abcd"_s});
        box.Combo.setParent(&window);
        QLineEdit next(&window);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.Combo.setFocus();
        QTest::keyClicks(QApplication::focusWidget(), u"ab"_s);
        QCOMPARE(box.State(), u"ab[cd]"_s);
        QTest::keyClick(QApplication::focusWidget(), back ? Qt::Key_Backtab : Qt::Key_Tab,
                        back ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(box.Combo.currentText(), u"abcd"_s);
        QVERIFY(!box.Combo.lineEdit()->hasSelectedText());
        QVERIFY(next.hasFocus()); // the key does what it always does, too
        box.Combo.setParent(nullptr);
    }
}

QTEST_MAIN(tst_CMRUCombo)
#include "tst_CMRUCombo.moc"
