// tests/gui/tst_Queries.cpp
// Queries in the main window: long ones, and the dialog that they are written in.

#include "mainwin/CListView.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QRegularExpression>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

/// Works for years.
QString EndlessQuery() { return u"SELECT Count(*) FROM Message AS a, Message AS b, Message AS c, Message AS d, Message AS e"_s; }

void Press(QWidget* Target, Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    QTest::keyClick(Target, Key, Modifiers);
}

} // namespace

class tst_Queries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void LongQueryIsStopped_data();
    void LongQueryIsStopped();
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
    Press(list, Qt::Key_J);
    QCOMPARE(f.List().Focus(), 3);
}

QTEST_MAIN(tst_Queries)
#include "tst_Queries.moc"
