// tests/gui/tst_Deleting.cpp
// Deletion, related search and the menu of marks, by keys in the real window.

#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QLabel>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

class tst_Deleting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void ByTheKey();
    void RelatedSearch();
    void MarksOpenUnderTheRow();
};

void tst_Deleting::ByTheKey()
{
    CWindowFixture f;
    f.Add(1, 6);
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    QTest::keyClick(list, Qt::Key_Down);                    // 5
    QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier); // and 4
    f.Desk.Expect(u"削除してもよろしいですか？"_s, Desktop::Answer::Yes);
    QTest::keyClick(f.Find<QWidget>(u"rtbView"_s), Qt::Key_Delete);
    QCOMPARE(f.Rows(u"SELECT ID FROM Message ORDER BY ID"_s), u"1 2 3 6"_s);
    QCOMPARE(f.Find<QLabel>(u"StatusBarCount"_s)->text(), u"4/4"_s);
    QCOMPARE(f.Find<CMessagePane>(u"rtbView"_s)->toPlainText(), QString());
    QCOMPARE(list->currentIndex().row(), 1);
    QVERIFY(f.Action(u"#003"_s)->text().endsWith(u"(4)"_s));
    f.Desk.Expect(u"削除してもよろしいですか？"_s, Desktop::Answer::Yes);
    f.Action(u"mnuPopupDelete"_s)->trigger(); // what has the focus now is selected
    QTest::keyClick(list, Qt::Key_J);
    QCOMPARE(f.Find<CMessagePane>(u"rtbView"_s)->toPlainText().trimmed(), u"本文2"_s);
    QCOMPARE(f.Rows(u"SELECT ID FROM Message ORDER BY ID"_s), u"1 2 6"_s);
    f.List().ClearSelection();
    QTest::keyClick(list, Qt::Key_Delete);
    QTest::keyClick(f.Find<QWidget>(u"cmbFindText"_s), Qt::Key_Delete); // deletes a letter there, if anything
}

void tst_Deleting::RelatedSearch()
{
    CWindowFixture f;
    f.Add(1, 3);
    f.Add(11, 12);
    QVERIFY(f.Start());
    auto* pane = f.Find<CMessagePane>(u"rtbView"_s);
    QTest::keyClick(f.Find<QWidget>(u"lsvMsgList0"_s), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(f.Viewer().CurrentList(), 1);
    QCOMPARE(f.List(1).Count(), 2);
    QCOMPARE(pane->toPlainText().trimmed(), u"本文12"_s);
    QVERIFY(f.Window->windowTitle().startsWith(u"検索結果 - "_s));
    pane->setPlainText(u"けやき ３"_s);
    pane->selectAll();
    f.Action(u"mnuTextRelate"_s)->trigger();
    QCOMPARE(f.List(1).Count(), 3);
    QCOMPARE(pane->toPlainText().trimmed(), u"本文3"_s);
    QTRY_VERIFY(f.Action(u"mnuMsgRelate"_s)->isEnabled());
    f.Action(u"mnuMsgAllSelect"_s)->trigger();
    QTRY_VERIFY(!f.Action(u"mnuMsgRelate"_s)->isEnabled()); // whose thread?
}

void tst_Deleting::MarksOpenUnderTheRow()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    QTest::keyClick(list, Qt::Key_End);
    QTest::keyClick(list, Qt::Key_M);
    QWidget* menu = QApplication::activePopupWidget();
    QVERIFY(menu);
    const int below = list->viewport()->mapToGlobal(list->visualRect(list->currentIndex()).bottomLeft()).y();
    QVERIFY(std::abs(menu->y() - below) <= 2);
    menu->close();
}

QTEST_MAIN(tst_Deleting)
#include "tst_Deleting.moc"
