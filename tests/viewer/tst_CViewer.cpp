// tests/viewer/tst_CViewer.cpp
// View modes, loads and the shown message, over a real database.

#include "tests/viewer/CBreakingWatch.h"
#include "tests/viewer/CViewerFixture.h"
#include "viewer/mdlColumns.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString MenuState(const CViewer& Viewer)
{
    QStringList entries;
    for (int i = 0; i <= 2; ++i)
        entries.append(Viewer.Entry(i).Caption + (Viewer.Entry(i).Enabled ? u"+"_s : u"-"_s));
    return entries.join(u' ');
}

} // namespace

class tst_CViewer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<CViewerFixture>(); }
    void cleanup();

    void EmptyBoard();
    void ExactlyOnePage();
    void Paging();
    void UnreadAndAll();
    void SizeQuestion_data();
    void SizeQuestion();
    void MessagesInTheResultList();
    void RawTable();
    void RawTableNeverReachesMessages();
    void BoardListRefusesOtherRows();
    void Actions_data();
    void Actions();
    void RefusedStatement();
    void LongLoadsTellTheirProgress();
    void VainLoadsLeaveBoardAndList();
    void ShownMessage();
    void SeveralSelected();
    void ShowListGoesBack();
    void Threads();
    void ColumnClicks();
    void ReceivedMessages();
    void WithdrawnMessages();
    void AfterAReceive();
    void AfterAnImport();
    void AfterARunBehindTheResultList();

private:
    CViewerFixture& F() { return *m_fixture; }
    std::unique_ptr<CViewerFixture> m_fixture;
};

void tst_CViewer::cleanup()
{
    QCOMPARE(F().Host.Held, 0);
    QVERIFY(F().Desk.Verify());
    m_fixture.reset();
}

void tst_CViewer::EmptyBoard()
{
    F().App.Option().AddMax = 100;
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().List(0).Count(), 0);
    QCOMPARE(MenuState(F().Viewer), u"最新の100件(&T)- 前の100件(&P)- 次の100件(&N)-"_s);
    QCOMPARE(F().Viewer.Entry(3).Caption, u"未読のみ(&R)"_s);
    QCOMPARE(F().Viewer.Entry(4).Caption, u"全て表示(&A)"_s);
    QVERIFY(F().Viewer.Entry(4).Enabled);
    QCOMPARE(F().Host.Count, u"0/0"_s);
    QCOMPARE(F().Host.NoReadPoint, u"未読位置:0"_s);
    QCOMPARE(F().Host.Shown, 0);
    QCOMPARE(F().App.Option().BBS_ID, 3);
    QCOMPARE(F().Viewer.BoardProperty().Name, u"けやき掲示板"_s);
}

void tst_CViewer::ExactlyOnePage()
{
    F().Add(3, 5, 7);
    F().Add(4, 1, 9); // another board's messages are no pages of this one
    F().Viewer.SelectBoard(3);
    QCOMPARE(Ids(F().List(0)), u"3/7 3/6 3/5"_s);
    QCOMPARE(MenuState(F().Viewer), u"最新の3件(&T)+ 前の3件(&P)- 次の3件(&N)-"_s);
}

void tst_CViewer::Paging()
{
    F().Add(3, 1, 8);
    F().Viewer.SelectBoard(3);
    QCOMPARE(Ids(F().List(0)), u"3/8 3/7 3/6"_s);
    F().Viewer.ShowViewMode(2);
    QCOMPARE(Ids(F().List(0)), u"3/5 3/4 3/3"_s);
    QCOMPARE(MenuState(F().Viewer), u"最新の3件(&T)+ 前の3件(&P)+ 次の2件(&N)+"_s);
    QCOMPARE(F().Viewer.Entry(2).ToolTip, u"次の2件(F8)"_s);
    F().Viewer.ShowViewMode(2);
    QCOMPARE(Ids(F().List(0)), u"3/2 3/1"_s);
    QCOMPARE(MenuState(F().Viewer), u"最新の3件(&T)+ 前の3件(&P)+ 次の3件(&N)-"_s);
    F().Viewer.ShowViewMode(1);
    QCOMPARE(Ids(F().List(0)), u"3/5 3/4 3/3"_s);
    QCOMPARE(F().Viewer.Entry(1).ToolTip, u"前の3件(F7)"_s);
    F().Viewer.ShowViewMode(0);
    QCOMPARE(Ids(F().List(0)), u"3/8 3/7 3/6"_s);
}

void tst_CViewer::UnreadAndAll()
{
    F().Add(3, 1, 3);
    F().Run(u"UPDATE Message SET Read = True WHERE ID = 2"_s);
    F().Viewer.SelectBoard(3);
    QCOMPARE(ColumnTexts(F().List(0), mdlColumns::Read), QStringList({u"*"_s, u" "_s, u"*"_s}));
    QCOMPARE(F().Host.Count, u"2/3"_s);
    F().Viewer.ShowViewMode(3);
    QCOMPARE(Ids(F().List(0)), u"3/3 3/1"_s);
    QCOMPARE(F().Host.Count, u"2/2"_s);
    F().Viewer.ShowViewMode(4);
    QCOMPARE(Ids(F().List(0)), u"3/3 3/2 3/1"_s);
}

void tst_CViewer::SizeQuestion_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("wanted");
    // The first three of the statement's own order, which the list then shows newest first.
    QTest::newRow("no") << int(Desktop::Answer::No) << u"3/3 3/2 3/1"_s;
    QTest::newRow("yes") << int(Desktop::Answer::Yes) << u"3/4 3/3 3/2 3/1"_s;
}

void tst_CViewer::SizeQuestion()
{
    QFETCH(int, answer);
    F().Add(3, 1, 4);
    F().Desk.Expect(
        u"検索結果が3件を超えました (4件)\r\n全件表示しますか？\r\n(いいえを選択すると最初の3件のみ表示します。)"_s,
        Desktop::Answer(answer));
    QVERIFY(F().Viewer.LoadList(u"SELECT * FROM Message ORDER BY ID"_s, 1));
    QTEST(Ids(F().List(1)), "wanted");
    QCOMPARE(F().Desk.Boxes.size(), std::size_t(1));
    QCOMPARE(F().Desk.Boxes[0].Caption, u"Tavora"_s);
    QVERIFY(F().Desk.Boxes[0].Default == Desktop::Answer::No);
}

void tst_CViewer::MessagesInTheResultList()
{
    F().Add(3, 1, 1);
    F().Add(4, 1, 2);
    F().Viewer.SelectBoard(3);
    QVERIFY(F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID < 3"_s, 1));
    QCOMPARE(Ids(F().List(1)), u"4/2 3/1 4/1"_s);
    QCOMPARE(F().Viewer.CurrentList(), 1);
    QVERIFY(!F().Viewer.IsRawTable());
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().List(1).SelectedRows(), std::vector<int>({0}));
    QCOMPARE(Ids(F().List(0)), u"3/1"_s); // keeps what it had
    F().Viewer.ShowViewMode(0);
    QCOMPARE(F().Viewer.CurrentList(), 0);
}

void tst_CViewer::RawTable()
{
    F().Add(3, 1, 5); // more than a page: there is no question for a table
    F().Run(u"UPDATE Message SET Mail = Null, Read = True WHERE ID = 2"_s);
    QVERIFY(F().Viewer.LoadList(u"SELECT ID, Mail, Read, PostDate FROM Message ORDER BY ID DESC"_s, 1));
    QVERIFY(F().Viewer.IsRawTable());
    QCOMPARE(F().List(1).Headers(), QStringList({u"ID"_s, u"Mail"_s, u"Read"_s, u"PostDate"_s}));
    QCOMPARE(ColumnTexts(F().List(1), 0), QStringList({u"5"_s, u"4"_s, u"3"_s, u"2"_s, u"1"_s}));
    QCOMPARE(F().List(1).Text(3, 1), QString());
    QCOMPARE(F().List(1).Text(3, 2), u"True"_s);
    QCOMPARE(F().List(1).Text(3, 3), u"2002/01/15 9:05:00"_s);
    QCOMPARE(F().Host.Count, u"0/5"_s);
    QCOMPARE(F().Host.Body, QStringList());
    QVERIFY(F().Viewer.LoadList(u"TRANSFORM Count(*) SELECT BBS_ID FROM Message GROUP BY BBS_ID PIVOT Read"_s, 1));
    QCOMPARE(F().List(1).Headers(), QStringList({u"BBS_ID"_s, u"-1"_s, u"0"_s}));
    QCOMPARE(F().List(1).Text(0, 2), u"4"_s);
    F().Viewer.ShowList(0);
    QVERIFY(!F().Viewer.IsRawTable());
}

void tst_CViewer::RawTableNeverReachesMessages()
{
    F().Add(3, 1, 2);
    F().Viewer.BuildMarkMenu();
    F().Viewer.LoadList(u"SELECT ID, 0 AS Zero FROM Message"_s, 1);
    F().App.Option().ReadTiming = 0;
    F().Click(1, 1);
    F().Viewer.SetRead({}, true, true);
    F().Viewer.SetReadSelected(1, true);
    F().Viewer.MarkSelected(1);
    F().Viewer.SetMark({}, 1);
    F().Viewer.StartReadTimer();
    F().Viewer.ReadTimerFired();
    F().Viewer.MoveNext(1, CViewer::MoveMode::Unread, false);
    F().Viewer.MoveInReplyTo(1);
    F().Viewer.ShowThread(1);
    F().Viewer.ColumnClicked(1, 0); // sorts; the first column of a table is no read mark
    QCOMPARE(F().List(1).Header(0), u"ID △"_s);
    QCOMPARE(F().ReadIds(), QString());
    QCOMPARE(F().Rows(u"SELECT ID FROM Message WHERE Mark <> 0"_s), QString());
    QCOMPARE(F().Viewer.GetSelectedMark(), 0);
}

void tst_CViewer::BoardListRefusesOtherRows()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    F().Desk.Expect(u"そんなの表示できない。"_s);
    QVERIFY(F().Viewer.LoadList(u"SELECT ID FROM Message"_s, 0));
    QCOMPARE(Ids(F().List(0)), u"3/2 3/1"_s);
    QVERIFY(F().Desk.Boxes[0].Icon == Desktop::Icon::Critical);
    QCOMPARE(F().List(0).Focus(), 0);
}

void tst_CViewer::Actions_data()
{
    mdlTable::AddRows<QString, QString, int>("viewer-actions.json", "Actions", {"sql", "wanted", "unread"});
}

void tst_CViewer::Actions()
{
    QFETCH(QString, sql);
    QFETCH(QString, wanted);
    QFETCH(int, unread);
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    F().Desk.Expect(wanted);
    QVERIFY(F().Viewer.LoadList(sql, 1));
    QCOMPARE(F().Desk.Boxes[0].Text, wanted);
    QCOMPARE(F().Desk.Boxes[0].Caption, u"Tavora Ver.0.50"_s);
    QCOMPARE(Ids(F().List(0)), u"3/3 3/2 3/1"_s);
    QCOMPARE(F().List(1).Count(), 0);
    QCOMPARE(F().Viewer.CurrentList(), 0);
    QCOMPARE(F().Host.DataChanges, 1);
    QCOMPARE(F().Host.Boards[3], unread);
}

void tst_CViewer::RefusedStatement()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    const int menuChanges = F().Host.MenuChanges;
    F().Desk.Expect(u"実行時エラー '3078':\r\n\r\n"_s);
    QVERIFY(!F().Viewer.LoadList(u"SELECT * FROM Nowhere"_s, 1));
    QVERIFY(F().Desk.Boxes[0].Text.endsWith(u"\r\n\r\n処理が実行できませんでした。"_s));
    QVERIFY(F().Desk.Boxes[0].Icon == Desktop::Icon::Information);
    QCOMPARE(F().Viewer.CurrentList(), 0);
    QCOMPARE(F().Host.MenuChanges, menuChanges);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
}

void tst_CViewer::LongLoadsTellTheirProgress()
{
    F().Add(3, 1, 4100);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Host.Steps, QStringList());
    F().Desk.Expect(u"(4100件)"_s, Desktop::Answer::Yes);
    F().Viewer.ShowViewMode(4);
    QCOMPARE(F().Host.Steps, QStringList({u"2000/4100"_s, u"4000/4100"_s, u"4100/4100"_s}));
    QCOMPARE(F().List(0).Count(), 4100);
    QCOMPARE(F().Host.Count, u"4100/4100"_s);
}

void tst_CViewer::VainLoadsLeaveBoardAndList()
{
    F().Add(3, 1, 2100); // more than are read before the watch is asked
    F().Add(4, 1, 2100);
    F().Viewer.SelectBoard(3);
    F().Click(0, 1);
    F().App.Option().AddMax = 5000;
    CBreakingWatch watch;
    watch.Patience = 0;
    F().Board.SetWatch(&watch);
    const auto isUntouched = [this] {
        return Ids(F().List(0)) == u"3/2100 3/2099 3/2098"_s && F().List(0).Focus() == 1 &&
               F().Host.Count == u"3/3"_s && F().Host.Body == QStringList(u"b2099"_s) &&
               F().Viewer.CurrentBoard() == 3 && F().App.Option().BBS_ID == 3 &&
               F().Viewer.BoardProperty().Name == u"けやき掲示板"_s;
    };
    F().Viewer.ShowViewMode(4);
    QVERIFY(isUntouched());
    watch.Patience = 0;
    F().Viewer.SelectBoard(4);
    QVERIFY(isUntouched());
    QCOMPARE(watch.Open, 0);
    F().Board.SetWatch(nullptr);
    F().App.LogDB()->DeleteTable(u"Message"_s);
    F().Desk.Expect(u"実行時エラー '3078'"_s);
    F().Viewer.SelectBoard(4);
    QVERIFY(isUntouched());
}

void tst_CViewer::ShownMessage()
{
    F().Add(3, 1, 2);
    F().Run(u"UPDATE Message SET Mail = 'a@example.jp', HomePage = 'http://localhost/' WHERE ID = 2"_s);
    F().Run(u"UPDATE Message SET Body = Null WHERE ID = 1"_s);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().Host.Mail, u"mailto:a@example.jp"_s);
    QCOMPARE(F().Host.HomePage, u"http://localhost/"_s);
    QCOMPARE(F().Host.Style, 0);
    F().Click(0, 1);
    QCOMPARE(F().Host.Body, QStringList({QString()})); // an empty body is one empty line
    QCOMPARE(F().Host.Mail, QString());
    QCOMPARE(F().Host.HomePage, QString());
    F().Viewer.ClearList(0);
    QCOMPARE(F().Host.Body, QStringList());
    QCOMPARE(F().List(0).Count(), 0);
}

void tst_CViewer::SeveralSelected()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Viewer.StopReadTimer();
    F().List(0).SetSelection({{0, 1}}, 1);
    F().Viewer.ItemClicked(0, 1);
    QCOMPARE(F().Host.Body, QStringList({u"b3"_s}));
    QCOMPARE(F().Host.TimerMs, 0);
    F().Viewer.ShowMessage(0, 99, false);
    F().Viewer.ShowMessage(0, -1, false);
    QCOMPARE(F().List(0).Focus(), 1);
}

void tst_CViewer::ShowListGoesBack()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Click(0, 1);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID = 1"_s, 1);
    QCOMPARE(F().Host.Body, QStringList({u"b1"_s}));
    F().Viewer.ShowList(0);
    QCOMPARE(F().Host.Shown, 0);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().Host.Count, u"3/3"_s);
    F().Viewer.SelectBoard(5);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID = 1"_s, 1);
    F().Viewer.ShowList(0);
    QCOMPARE(F().Host.Body, QStringList()); // an empty list does not show a message of the other one
}

void tst_CViewer::Threads()
{
    F().App.Option().AddMax = 100;
    F().Add(3, 1, 4);
    F().Run(u"UPDATE Message SET InReplyTo = 1 WHERE ID = 2"_s);
    F().Run(u"UPDATE Message SET InReplyTo = 1 WHERE ID = 3"_s);
    F().Run(u"UPDATE Message SET InReplyTo = 2 WHERE ID = 4"_s);
    F().Viewer.SelectBoard(3);
    F().Viewer.ColumnClicked(0, mdlColumns::Read);
    QCOMPARE(ColumnTexts(F().List(0), mdlColumns::Subject), QStringList({u"s1"_s, u"　s3"_s, u"　s2"_s, u"　　s4"_s}));
    QCOMPARE(F().List(0).Focus(), 3); // still on message 4
    QCOMPARE(F().Host.VisibleRow, 3);
    F().Viewer.ColumnClicked(0, mdlColumns::Subject);
    QCOMPARE(ColumnTexts(F().List(0), mdlColumns::Subject), QStringList({u"s1"_s, u"s2"_s, u"s3"_s, u"s4"_s}));
    F().Viewer.ColumnClicked(0, mdlColumns::Read);
    F().Viewer.ShowViewMode(0); // a load leaves the thread view
    QCOMPARE(ColumnTexts(F().List(0), mdlColumns::Subject), QStringList({u"s4"_s, u"s3"_s, u"s2"_s, u"s1"_s}));
}

void tst_CViewer::ColumnClicks()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    QStringList seen;
    for (int i = 0; i < 3; ++i) {
        F().Viewer.ColumnClicked(0, mdlColumns::ID);
        seen.append(F().List(0).Header(mdlColumns::ID) + u' ' + Ids(F().List(0)));
    }
    QCOMPARE(seen, QStringList({u"番号 △ 3/1 3/2 3/3"_s, u"番号 ▽ 3/3 3/2 3/1"_s, u"番号 △ 3/1 3/2 3/3"_s}));
    F().Viewer.ColumnClicked(0, mdlColumns::Subject);
    QCOMPARE(F().List(0).Header(mdlColumns::ID), u"番号"_s);
    QCOMPARE(F().List(0).Header(mdlColumns::Subject), u"題名Ｆｉｎｄ △"_s);
    F().Viewer.ResetListView(0, false);
    QCOMPARE(F().List(0).Header(mdlColumns::Subject), u"題名Ｆｉｎｄ"_s);
}

void tst_CViewer::ReceivedMessages()
{
    F().Add(3, 4, 6);
    F().Viewer.SelectBoard(3);
    const int updates = F().Host.CountUpdates;
    QVERIFY(F().Viewer.AddMessageItem(0, MakeMessage(3, 8)));
    QVERIFY(!F().Viewer.AddMessageItem(0, MakeMessage(3, 8)));
    QCOMPARE(F().Host.CountUpdates, updates);
    QVERIFY(F().Viewer.AddMessageItem(0, MakeMessage(3, 7)));
    QCOMPARE(F().Host.Count, u"5/5"_s); // refreshed with every fifth row
    QCOMPARE(Ids(F().List(0)), u"3/8 3/7 3/6 3/5 3/4"_s);
    F().Add(3, 9, 9);
    F().Viewer.ShowViewMode(1); // above the highest added, not above the highest loaded
    QCOMPARE(Ids(F().List(0)), u"3/9"_s);
}

void tst_CViewer::WithdrawnMessages()
{
    F().Add(3, 4, 6);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    for (const qint32 id : {7, 8}) {
        F().Viewer.AddMessageItem(0, MakeMessage(3, id));
        F().Viewer.UpdateBoardUnreadCaption(3, 1);
    }
    QCOMPARE(F().Host.Boards[3], 5);
    F().Viewer.WithdrawMessages({MakeMessage(3, 7), MakeMessage(3, 8), MakeMessage(5, 1)});
    QCOMPARE(Ids(F().List(0)), u"3/6 3/5 3/4"_s);
    QCOMPARE(F().Host.Boards[3], 3);
    QCOMPARE(F().Host.Count, u"3/3"_s);
    F().Add(3, 7, 7);
    F().Viewer.ShowViewMode(1);
    QCOMPARE(Ids(F().List(0)), u"3/7"_s);
}

void tst_CViewer::AfterAReceive()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    F().Click(0, 1);
    F().Add(3, 4, 8); // as a receive stores and tells them
    for (qint32 id = 4; id <= 8; ++id)
        F().Viewer.AddMessageItem(0, MakeMessage(3, id));
    F().Run(u"UPDATE Message SET RootThread = 2 WHERE ID IN (1, 5)"_s); // as its end links and mends threads
    F().Viewer.RefreshAfterRun();
    QCOMPARE(F().List(0).Text(3, mdlColumns::ParentThread), u"000002"_s);
    QCOMPARE(F().List(0).Text(7, mdlColumns::ParentThread), u"000002"_s);
    QCOMPARE(Ids(F().List(0)), u"3/8 3/7 3/6 3/5 3/4 3/3 3/2 3/1"_s);
    QCOMPARE(F().List(0).Focus(), 6);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().Host.Boards[3], 8);
    QCOMPARE(MenuState(F().Viewer), u"最新の3件(&T)+ 前の3件(&P)- 次の3件(&N)-"_s);
}

void tst_CViewer::AfterAnImport()
{
    F().Viewer.SelectBoard(3);
    F().Add(3, 11, 12);
    F().App.Option().ReadTiming = 0;
    F().Viewer.RefreshAfterRun();
    QCOMPARE(Ids(F().List(0)), u"3/12 3/11"_s);
    QCOMPARE(F().Host.Body, QStringList({u"b12"_s})); // there was nothing on view
    QCOMPARE(F().ReadIds(), QString());               // and showing it by itself marks nothing
    F().Add(3, 9, 10);                                // more than the rest of a page
    F().Viewer.RefreshAfterRun();
    QCOMPARE(Ids(F().List(0)), u"3/12 3/11 3/10"_s);
    QCOMPARE(MenuState(F().Viewer), u"最新の3件(&T)+ 前の3件(&P)- 次の1件(&N)+"_s);
    F().Add(3, 13, 13);
    F().Viewer.RefreshAfterRun();
    QCOMPARE(Ids(F().List(0)), u"3/13 3/12 3/11 3/10"_s);
    QCOMPARE(F().List(0).Focus(), 1);
    F().Add(3, 14, 19); // more than a page: the newest instead of a gap
    F().Viewer.RefreshAfterRun();
    QCOMPARE(Ids(F().List(0)), u"3/19 3/18 3/17"_s);
}

void tst_CViewer::AfterARunBehindTheResultList()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID = 1"_s, 1);
    F().Add(3, 3, 3);
    F().Viewer.RefreshAfterRun();
    QCOMPARE(F().Viewer.CurrentList(), 1);
    QCOMPARE(F().Host.Shown, 1);
    QCOMPARE(F().Host.Body, QStringList({u"b1"_s}));
    QCOMPARE(F().Host.Count, u"1/1"_s);
    QCOMPARE(Ids(F().List(0)), u"3/3 3/2 3/1"_s);
}

QTEST_GUILESS_MAIN(tst_CViewer)
#include "tst_CViewer.moc"
