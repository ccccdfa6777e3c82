// tests/viewer/tst_RelatedSearch.cpp
// Which message a text names, and what the result list shows of its thread.

#include "tests/viewer/CBreakingWatch.h"
#include "tests/viewer/CViewerFixture.h"
#include "viewer/mdlColumns.h"
#include "viewer/mdlRelated.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_RelatedSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<CViewerFixture>(); }
    void cleanup();

    void References_data();
    void References();
    void Boards_data();
    void Boards();
    void ShowsTheThread();
    void OtherBoardsWithTheRoot();
    void NoSuchMessage();
    void ChangesNothing_data();
    void ChangesNothing();

private:
    CViewerFixture& F() { return *m_fixture; }
    std::unique_ptr<CViewerFixture> m_fixture;
};

void tst_RelatedSearch::cleanup()
{
    QVERIFY(F().Desk.Verify());
    m_fixture.reset();
}

void tst_RelatedSearch::References_data()
{
    // wanted: name:number, empty when the text names no message
    mdlTable::AddRows<QString, QString>("related-search.json", "References", {"text", "wanted"});
    QTest::newRow("far too large") << u"#"_s + QString(500, u'9') << QString();
}

void tst_RelatedSearch::References()
{
    QFETCH(QString, text);
    const auto found = mdlRelated::Parse(text);
    QTEST(found ? found->BoardName + u':' + QString::number(found->Number) : QString(), "wanted");
}

void tst_RelatedSearch::Boards_data()
{
    // wanted: boards with a message 5 are 3, 4 and 5
    mdlTable::AddRows<QString, QString>("related-search.json", "Boards", {"name", "wanted"});
}

void tst_RelatedSearch::Boards()
{
    QFETCH(QString, name);
    for (const qint32 board : {3, 4, 5}) {
        F().Add(board, 5, 5);
        F().Run(u"UPDATE Message SET RootThread = %1 WHERE BBS_ID = %1"_s.arg(board));
    }
    F().Run(u"UPDATE BBS SET ShortName = '短[*]''x' WHERE BBS_ID = 5"_s);
    F().Viewer.RelatedSearch(4, name + u"#5"_s);
    QTEST(Ids(F().List(1)), "wanted");
}

void tst_RelatedSearch::ShowsTheThread()
{
    F().App.Option().AddMax = 100;
    F().Add(3, 1, 6);
    F().Run(u"UPDATE Message SET InReplyTo = 1, RootThread = 1 WHERE ID IN (2, 5)"_s);
    F().Run(u"UPDATE Message SET InReplyTo = 2, RootThread = 1 WHERE ID = 4"_s);
    F().Viewer.SelectBoard(3);
    F().Viewer.ColumnClicked(0, mdlColumns::Subject);
    F().Viewer.RelatedSearch(3, u"#4"_s);
    QCOMPARE(F().Viewer.CurrentList(), 1);
    QCOMPARE(ColumnTexts(F().List(1), mdlColumns::Subject), QStringList({u"s1"_s, u"　s5"_s, u"　s2"_s, u"　　s4"_s}));
    QCOMPARE(F().Host.Body, QStringList({u"b4"_s}));
    QCOMPARE(F().List(1).SelectedRows(), std::vector<int>({3}));
    QCOMPARE(F().Host.VisibleRow, 3);
    QCOMPARE(F().Host.TimerMs, 1500);
    QCOMPARE(F().List(1).SortColumn(), -1);
    F().Viewer.RelatedSearch(3, u"6"_s);
    QCOMPARE(Ids(F().List(1)), u"3/6"_s);
    F().App.Option().ReadTiming = 0;
    F().Viewer.RelatedSearch(3, u"#4"_s);
    QCOMPARE(F().ReadIds(), u"4"_s); // not those that were first for a moment
}

/// An answer that was written on the other side of a two-sided board.
void tst_RelatedSearch::OtherBoardsWithTheRoot()
{
    F().Add(3, 1, 2);
    F().Add(4, 7, 7);
    F().Run(u"UPDATE Message SET RootThread = 1"_s);
    F().Viewer.RelatedSearch(3, u"#2"_s);
    QCOMPARE(F().List(1).Count(), 3);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
}

void tst_RelatedSearch::NoSuchMessage()
{
    F().Add(3, 1, 5);
    F().Run(u"UPDATE Message SET RootThread = 1"_s);
    F().Viewer.SelectBoard(3);
    F().Viewer.RelatedSearch(3, u"#99"_s);
    QCOMPARE(F().List(1).Count(), 0);
    QCOMPARE(F().Viewer.CurrentList(), 1);
    QCOMPARE(F().Host.Body, QStringList());
    F().Desk.Expect(u"検索結果が3件を超えました (5件)"_s, Desktop::Answer::No); // and the one is not among the first
    F().Viewer.RelatedSearch(3, u"#5"_s);
    QCOMPARE(F().List(1).Count(), 3);
    QCOMPARE(F().Host.Body, QStringList());
    QCOMPARE(F().Host.TimerMs, 0);
    QVERIFY(F().List(1).SelectedRows().empty());
}

void tst_RelatedSearch::ChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("box");
    QTest::newRow("no number") << u"abc"_s << u"関連検索のできる文字列ではありませんでした。"_s;
    QTest::newRow("broken off") << u"#1"_s << QString();
}

void tst_RelatedSearch::ChangesNothing()
{
    QFETCH(QString, text);
    QFETCH(QString, box);
    F().App.Option().AddMax = 5000;
    F().Add(3, 1, 2);
    F().Add(4, 1, 2100);
    F().Run(u"UPDATE Message SET RootThread = 1 WHERE BBS_ID = 4"_s);
    F().Viewer.SelectBoard(3);
    CBreakingWatch watch;
    watch.Patience = 0;
    F().Board.SetWatch(&watch);
    if (!box.isEmpty())
        F().Desk.Expect(box);
    F().Viewer.RelatedSearch(4, text);
    QCOMPARE(F().Viewer.CurrentList(), 0);
    QCOMPARE(F().List(1).Count(), 0);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    F().Board.SetWatch(nullptr);
}

QTEST_GUILESS_MAIN(tst_RelatedSearch)
#include "tst_RelatedSearch.moc"
