// tests/gui/tst_Find.cpp
// Find by keys in the real window: box, dialog, and where the match is shown.

#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/frmFind.h"
#include "tests/gui/CWindowFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

const QString NotFound = u"検索文字は見つかりませんでした。"_s;

struct CFindWindow : CWindowFixture
{
    QComboBox* Box = nullptr;
    CMessagePane* Pane = nullptr;

    /// Messages 4 to 1 of board 3, from the top of the list.
    CFindWindow()
    {
        Add(1, 4);
        const auto db = dao::Database::Open(Folder.filePath(u"log.mdb"_s));
        db->Execute(u"UPDATE Message SET Body = '\U0001F600' & Chr(13) & Chr(10) & 'ABC と abc' WHERE ID = 2"_s);
        db->Close();
    }

    bool StartFinding()
    {
        const bool isOpen = Start();
        Box = Window->findChild<QComboBox*>(u"cmbFindText"_s);
        Pane = Find<CMessagePane>(u"rtbView"_s);
        App->Option().UseRegExp = false;
        return isOpen;
    }

    void Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::activeWindow(), Key, Modifiers);
    }
    void PressInBox(Qt::Key Key) { QTest::keyClick(Box, Key); }
    /// "2: abc at 9": the message on view, and what is selected of it.
    QString Selected() const
    {
        return u"%1: %2 at %3"_s.arg(List().Item(List().Focus()).Message.ID)
            .arg(Pane->SelectedText())
            .arg(Pane->SelectedRange().Start);
    }
    QDialog* Dialog() const { return Find<QDialog>(u"frmFind"_s); }
    template<typename Widget> Widget* InDialog(const QString& Name) const { return Dialog()->findChild<Widget*>(Name); }
    QString Status() const { return Find<QLabel>(u"StatusBarStatus"_s)->text(); }
};

} // namespace

class tst_Find : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void BoxFindsThroughTheList();
    void EmptyBoxTakesTheFocus();
    void ComposingInTheBox();
    void DialogFinds();
    void DialogOpensAnew();
    void DialogFollowsTheWindow();
    void FaultIsToldInTheStatusBar();
    void RawTableRows();
};

void tst_Find::BoxFindsThroughTheList()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Box->setFocus();
    QTest::keyClicks(f.Box, u"abc"_s);
    f.PressInBox(Qt::Key_Return);
    QCOMPARE(f.Selected(), u"2: ABC at 4"_s);
    QVERIFY(f.Pane->hasFocus());
    QCOMPARE(f.List().SelectedCount(), 1);
    f.Press(Qt::Key_F3);
    QCOMPARE(f.Selected(), u"2: abc at 10"_s);
    f.Desk.Expect(NotFound);
    f.Press(Qt::Key_F3);
    QCOMPARE(f.Selected(), u"2: abc at 10"_s);
    QCOMPARE(f.Desk.Boxes.back().Icon, Desktop::Icon::None);
    QCOMPARE(f.Desk.Boxes.back().Caption, f.App->AppTitle());

    f.Press(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(f.Selected(), u"2: ABC at 4"_s);
    f.Box->setFocus(); // after a find previous Enter goes back once
    f.Desk.Expect(NotFound);
    f.PressInBox(Qt::Key_Return);
    QCOMPARE(f.Selected(), u"2: ABC at 4"_s);
    f.PressInBox(Qt::Key_Enter);
    QCOMPARE(f.Selected(), u"2: abc at 10"_s);
    QCOMPARE(f.Box->currentText(), u"abc"_s);
    QCOMPARE(f.Box->itemText(0), u"abc"_s);
    QVERIFY(f.Desk.Verify());
}

void tst_Find::EmptyBoxTakesTheFocus()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Press(Qt::Key_F3, Qt::ShiftModifier);
    QVERIFY(f.Box->hasFocus());
    f.PressInBox(Qt::Key_Return); // nothing to find
    f.Pane->setFocus();
    f.Action(u"ToolbarFindNext"_s)->trigger();
    QVERIFY(f.Box->hasFocus());
    QTest::keyClicks(f.Box, u"1"_s);
    f.PressInBox(Qt::Key_Return);
    QCOMPARE(f.Selected(), u"1: 1 at 2"_s);
}

void tst_Find::ComposingInTheBox()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Window->FindMessage(u"本文1"_s, true);
    f.Box->setFocus();
    f.Box->clearEditText();
    QInputMethodEvent composing(u"ほん"_s, {});
    QApplication::sendEvent(f.Box, &composing);
    const QString before = f.Selected();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F3})
        QTest::keyClick(f.Box, key);
    QCOMPARE(f.Selected(), before);
    QInputMethodEvent commit;
    commit.setCommitString(u"本"_s);
    QApplication::sendEvent(f.Box, &commit);
    QCOMPARE(f.Box->currentText(), u"本文1"_s); // completed from the history
    QCOMPARE(f.Box->lineEdit()->selectedText(), u"文1"_s);
}

void tst_Find::DialogFinds()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.App->Option().IgnoreCase = true;
    f.Press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(QTest::qWaitForWindowActive(f.Dialog()));
    auto* text = f.InDialog<QComboBox>(u"cmbFindText"_s);
    auto* next = f.InDialog<QPushButton>(u"cmdFindNext"_s);
    auto* expression = f.InDialog<QCheckBox>(u"chkUseRegExp"_s);
    auto* caseCounts = f.InDialog<QCheckBox>(u"chkIgnoreCase"_s);
    QTRY_VERIFY(text->hasFocus());
    QVERIFY(!next->isEnabled() && !f.InDialog<QPushButton>(u"cmdFindPrev"_s)->isEnabled());
    QVERIFY(expression->isEnabled() && !expression->isChecked());
    QVERIFY(!caseCounts->isEnabled() && !caseCounts->isChecked());
    expression->click();
    QVERIFY(caseCounts->isEnabled());
    caseCounts->click();

    QTest::keyClicks(text, u"[a-z]+"_s);
    QVERIFY(next->isEnabled());
    f.Press(Qt::Key_Return);
    QCOMPARE(f.Selected(), u"2: abc at 10"_s);
    QVERIFY(f.App->Option().UseRegExp && !f.App->Option().IgnoreCase);
    QCOMPARE(QApplication::activeWindow(), f.Dialog());
    QCOMPARE(f.Box->currentText(), u"[a-z]+"_s);
    QCOMPARE(text->itemText(0), u"[a-z]+"_s);
    caseCounts->click();
    next->setFocus();
    for (const bool allowed : {false, true}) // a find that takes long
        static_cast<frmFind*>(f.Dialog())->SetFindAllowed(allowed);
    QVERIFY(text->hasFocus());
    f.Press(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(f.Selected(), u"2: ABC at 4"_s);
    f.Press(Qt::Key_F3);
    QCOMPARE(f.Selected(), u"2: abc at 10"_s);
    f.Desk.Expect(NotFound);
    f.Press(Qt::Key_F3);
    QCOMPARE(f.Desk.Boxes.size(), 1U);
    QVERIFY(f.Dialog()->isVisible());

    QInputMethodEvent composing(u"か"_s, {});
    QApplication::sendEvent(text, &composing);
    QTest::keyClick(text, Qt::Key_Escape); // belongs to the input method
    QVERIFY(f.Dialog()->isVisible());
    QInputMethodEvent end;
    QApplication::sendEvent(text, &end);
    f.Press(Qt::Key_Escape);
    QVERIFY(!f.Dialog()->isVisible());
    QVERIFY(f.Pane->isVisible());
}

void tst_Find::DialogOpensAnew()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Window->FindMessage(u"本文3"_s, true);
    f.Press(Qt::Key_F, Qt::ControlModifier);
    auto* text = f.InDialog<QComboBox>(u"cmbFindText"_s);
    QCOMPARE(text->currentText(), u"本文3"_s);
    QCOMPARE(text->itemText(0), u"本文3"_s);
    f.List().ClearSelection();
    f.Viewer().ShowMessage(0, 2, false);
    f.Pane->SelectBodyRange({2, 100}); // the line break and the line behind it
    f.Action(u"mnuMsgFind"_s)->trigger();
    QCOMPARE(text->currentText(), u"ABC と abc"_s);
    QCOMPARE(text->lineEdit()->selectedText(), u"ABC と abc"_s);
    f.Dialog()->close();
    f.App->Option().UseRegExp = true;
    f.Pane->SelectBodyRange({});
    f.Action(u"mnuMsgFind"_s)->trigger();
    QCOMPARE(text->currentText(), u"本文3"_s);
    QVERIFY(f.InDialog<QCheckBox>(u"chkUseRegExp"_s)->isChecked());
    QCOMPARE(text->count(), 1);
}

void tst_Find::DialogFollowsTheWindow()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Press(Qt::Key_F, Qt::ControlModifier);
    const QPointer<QDialog> dialog = f.Dialog();
    f.Window->close();
    QVERIFY(!dialog->isVisible());
    QTRY_COMPARE(f.ClosedCount, 1);
}

void tst_Find::FaultIsToldInTheStatusBar()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.App->Option().UseRegExp = true;
    f.Desk.Expect(NotFound);
    f.Window->FindMessage(u"a(b"_s, true);
    QCOMPARE(f.Status(), u"正規表現の 2 文字目: 「(」が閉じられていません。"_s);
    QVERIFY(f.Find<QLabel>(u"StatusBarStatus"_s)->isVisible());
}

void tst_Find::RawTableRows()
{
    CFindWindow f;
    QVERIFY(f.StartFinding());
    f.Viewer().LoadList(u"SELECT BBS_ID, BBS_Name FROM BBS"_s, CViewer::ResultList);
    QVERIFY(f.Viewer().IsRawTable());
    const QString last = f.List(1).Text(f.List(1).Count() - 1, 1);
    f.Box->setEditText(last);
    f.Press(Qt::Key_F3);
    QCOMPARE(f.List(1).Focus(), f.List(1).Count() - 1);
    QVERIFY(f.Find<CListView>(u"lsvMsgList1"_s)->hasFocus());
}

QTEST_MAIN(tst_Find)
#include "tst_Find.moc"
