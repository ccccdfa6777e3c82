// tests/gui/tst_Queries.cpp
// Queries in the main window: long ones, and the dialog that they are written in.

#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "query/CStatementBox.h"
#include "query/frmSQL.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

/// Works for years.
QString EndlessQuery()
{
    return u"SELECT Count(*) FROM Message AS a, Message AS b, Message AS c, Message AS d, Message AS e"_s;
}

void Press(QWidget* Target, Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    QTest::keyClick(Target, Key, Modifiers);
}

/// What the user does each time the query dialog comes, in turn; each must close it.
class CDialogUser : public QObject
{
public:
    using Step = std::function<void(frmSQL&, CStatementBox&)>;
    CDialogUser(frmView& Window, std::vector<Step> Steps)
        : m_window(Window)
        , m_steps(std::move(Steps))
    {
        startTimer(20);
    }
    ~CDialogUser() override
    {
        if (m_next != m_steps.size())
            QTest::qFail("the dialog did not come often enough", __FILE__, __LINE__);
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        auto* dialog = m_window.findChild<frmSQL*>();
        if (!dialog || !dialog->isActiveWindow() || m_isBusy || QApplication::activeModalWidget() != dialog)
            return;
        m_isBusy = true;
        if (m_next < m_steps.size())
            m_steps[m_next++](*dialog, *dialog->findChild<CStatementBox*>());
        else
            QTest::qFail("the dialog came once more", __FILE__, __LINE__);
        dialog->close();
        m_isBusy = false;
    }

private:
    frmView& m_window;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    bool m_isBusy = false;
};

void Write(CStatementBox& Box, const QString& Sql)
{
    Box.setPlainText(Sql);
    Press(&Box, Qt::Key_F5);
}

} // namespace

class tst_Queries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void LongQueryIsStopped_data();
    void LongQueryIsStopped();
    void Story();
    void ClosingStopsTheQuery();
    void ActionsBringTheWindowUpToDate();
    void TextSearch();
};

void tst_Queries::LongQueryIsStopped_data()
{
    QTest::addColumn<QString>("sql");
    QTest::newRow("counting") << EndlessQuery();
    QTest::newRow("deleting") << u"DELETE FROM Message WHERE ("_s + EndlessQuery() + u") > 0"_s;
}

void tst_Queries::LongQueryIsStopped()
{
    QFETCH(QString, sql);
    CWindowFixture f;
    f.Add(1, 200);
    QVERIFY(f.Start());
    f.Viewer().ItemClicked(0, 2);
    f.Viewer().StopReadTimer();
    const QString caption = f.Window->windowTitle();
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    QString during;
    QTimer::singleShot(1200, f.Window.get(), [&] {
        during = f.Window->windowTitle().left(6) + f.Find<QLabel>(u"StatusBarStatus"_s)->text();
        during += f.Action(u"mnuBBSLoad"_s)->isEnabled() ? u"!"_s : u""_s;
        // Whatever is done now must not reach the database, which is at work.
        Press(list, Qt::Key_J);
        Press(list, Qt::Key_F6);
        Press(list, Qt::Key_B, Qt::ControlModifier);
        f.Action(u"mnuBBSMoveSub2"_s)->trigger();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(60, 60));
        Press(list, Qt::Key_Escape);
    });
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!f.Viewer().LoadList(sql, 1));
    QVERIFY(clock.elapsed() < 5000);
    QCOMPARE(during, u"検索中 - 検索しています… Esc で中止 (1 秒)"_s);
    QCOMPARE(f.Window->windowTitle(), caption);
    QCOMPARE(f.Find<QLabel>(u"StatusBarStatus"_s)->text(), u"検索を中止しました。"_s);
    QVERIFY(f.Action(u"mnuBBSLoad"_s)->isEnabled());
    QVERIFY(!QApplication::overrideCursor());
    QCOMPARE(f.Viewer().CurrentList(), 0);
    QCOMPARE(f.Viewer().CurrentBoard(), 3);
    QCOMPARE(f.List().Focus(), 2);
    QCOMPARE(f.List().Count(), 100);
    QCOMPARE(f.Rows(u"SELECT Count(*) FROM Message WHERE Read = False"_s), u"200"_s);
    Press(list, Qt::Key_Escape); // pressed twice for the query, not for the window
    QVERIFY(!f.Window->isMinimized());
    Press(list, Qt::Key_J);
    QCOMPARE(f.List().Focus(), 3);
}

void tst_Queries::Story()
{
    CWindowFixture f;
    f.Add(1, 120);
    QVERIFY(f.Start());
    QTRY_VERIFY(f.Find<CListView>(u"lsvMsgList0"_s)->hasFocus());
    QString first;
    QString caretLine;
    f.Desk.Expect(u"実行時エラー '"_s);
    f.Desk.ExpectInput(u"クエリー名を入力してください。"_s, u"偶数"_s);
    {
        CDialogUser user(*f.Window, {[&](frmSQL&, CStatementBox& Box) {
                                         first = Box.Statement();
                                         QTimer::singleShot(800, f.Window.get(),
                                                            [&] { Press(f.Window.get(), Qt::Key_Escape); });
                                         Write(Box, EndlessQuery());
                                     },
                                     [&](frmSQL&, CStatementBox& Box) { // comes back after the cancel
                                         QCOMPARE(Box.Statement(), EndlessQuery());
                                         Write(Box, u"SELECT *\nFROM Message\nWHERE ID Mod 2 = = 0"_s);
                                     },
                                     [&](frmSQL& Dialog, CStatementBox& Box) { // and after the error, at its place
                                         QVERIFY(!Box.textCursor().hasSelection());
                                         caretLine = Box.Statement().mid(Box.textCursor().position() + 2).left(3);
                                         Box.setPlainText(u"SELECT ID\nFROM Message\nWHERE ID Mod 2 = 0"_s);
                                         Dialog.findChild<QPushButton*>(u"cmdSave"_s)->click();
                                         Press(&Box, Qt::Key_F5);
                                     }});
        Press(f.Window.get(), Qt::Key_Q, Qt::ControlModifier);
    }
    QCOMPARE(first, u"SELECT *\r\n  FROM Message\r\n WHERE BBS_ID = 3\r\n;"_s);
    QCOMPARE(caretLine, u"= 0"_s);
    QVERIFY(f.Viewer().IsRawTable());
    QCOMPARE(f.List(1).Count(), 60);
    QCOMPARE(f.Window->windowTitle(), u"検索結果 - Tavora Ver.0.50"_s);
    QCOMPARE(f.Window->focusWidget(), f.Find<QWidget>(u"lsvMsgList1"_s));
    f.Desk.Expect(u"(20件)"_s, Desktop::Answer::Yes);
    f.App->Option().AddMax = 10;
    {
        CDialogUser user(*f.Window, {[&](frmSQL& Dialog, CStatementBox& Box) {
            QVERIFY(Box.Statement().endsWith(u"Mod 2 = 0"_s)); // the last query
            QCOMPARE(Dialog.findChild<QComboBox*>(u"cmbQuery"_s)->itemText(0), u"偶数"_s);
            Write(Box, u"SELECT * FROM Message WHERE ID IN (SELECT ID FROM 偶数) AND ID <= 40"_s);
        }});
        f.Action(u"ToolbarSQL"_s)->trigger();
    }
    QVERIFY(!f.Viewer().IsRawTable());
    QCOMPARE(f.List(1).Count(), 20);
    CDialogUser user(*f.Window, {[](frmSQL&, CStatementBox& Box) { Press(&Box, Qt::Key_Escape); }});
    f.Action(u"mnuMsgQuery"_s)->trigger();
    QCOMPARE(f.List(1).Count(), 20);
}

void tst_Queries::ClosingStopsTheQuery()
{
    CWindowFixture f;
    f.Add(1, 200);
    QVERIFY(f.Start());
    CDialogUser user(*f.Window, {[&](frmSQL&, CStatementBox& Box) {
        QTimer::singleShot(800, f.Window.get(), [&] { f.Window->close(); });
        Write(Box, EndlessQuery());
    }});
    Press(f.Window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!f.Window->isVisible());
    QTRY_COMPARE(f.ClosedCount, 1);
}

void tst_Queries::ActionsBringTheWindowUpToDate()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    f.Desk.Expect(u"1件更新しました。"_s);
    f.Desk.Expect(u"2件削除しました。"_s);
    for (const QString& sql :
         {u"UPDATE BBS SET BBS_Name = 'ソ表', ShortName = '新', ListOrder = 99, VisitLoad = False WHERE BBS_ID = 3"_s,
          u"DELETE FROM Message WHERE ID < 3"_s}) {
        CDialogUser user(*f.Window, {[&](frmSQL&, CStatementBox& Box) { Write(Box, sql); }});
        f.Action(u"mnuMsgQuery"_s)->trigger();
    }
    QCOMPARE(f.Viewer().BoardProperty().ListOrder, 99);
    QVERIFY(!f.Viewer().BoardProperty().VisitLoad);
    QCOMPARE(f.Window->windowTitle(), u"ソ表 - Tavora Ver.0.50"_s);
    QVERIFY(f.Action(u"#003"_s)->text().endsWith(u" (1)"_s));
    QCOMPARE(f.List().Count(), 3); // the list stays as it was
    f.End();
    QVERIFY(f.Start());
    QCOMPARE(f.Rows(u"SELECT ListOrder FROM BBS WHERE BBS_ID = 3"_s), u"99"_s); // nothing old was written back
}

void tst_Queries::TextSearch()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    f.Run(u"UPDATE Message SET Body = 'a[*]''b#' & Chr(13) & Chr(10) & '終' WHERE ID = 3"_s);
    f.Viewer().ShowViewMode(0);
    f.Find<CMessagePane>(u"rtbView"_s)->selectAll();
    QString statement;
    CDialogUser user(*f.Window, {[&](frmSQL&, CStatementBox& Box) {
        statement = Box.Statement();
        Press(&Box, Qt::Key_F5);
    }});
    f.Action(u"mnuTextFind"_s)->trigger();
    QVERIFY2(statement.contains(u"   AND Body Like '*a[[][*]]''b[#]\r\n終"_s), qPrintable(statement));
    QCOMPARE(f.List(1).Count(), 1);
    QVERIFY(f.Find<QComboBox>(u"cmbFindText"_s)->currentText().startsWith(u"a[*]'b#"_s));
}

QTEST_MAIN(tst_Queries)
#include "tst_Queries.moc"
