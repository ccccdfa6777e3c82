// tests/viewer/tst_Deletion.cpp
// Deleting messages and changing many at once: what the lists, the counts and the database hold afterwards.

#include "tests/viewer/CBreakingWatch.h"
#include "tests/viewer/CViewerFixture.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using MoveMode = CViewer::MoveMode;

class tst_Deletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void Deletes_data();
    void Deletes();
    void AnswerNo();
    void FromTheResultList();
    void FromTheBoardList();
    void GoingOnAfterwards();
    void NothingToDelete();
    void Refused_data();
    void Refused();
    void BrokenOff_data();
    void BrokenOff();
    void BoardStaysWhenItsLoadIsBrokenOff();
    void CountsNeverDrift();

private:
    CViewerFixture& F() { return *m_fixture; }
    void Delete(Desktop::Answer Answer = Desktop::Answer::Yes)
    {
        F().Desk.Expect(u"このメッセージを削除してもよろしいですか？"_s, Answer);
        F().Viewer.DeleteSelected();
    }
    QString StoredIds() { return F().Rows(u"SELECT ID FROM Message WHERE BBS_ID = 3 ORDER BY ID"_s); }
    void RandomStep(QRandomGenerator& Random);

    std::unique_ptr<CViewerFixture> m_fixture;
    std::unique_ptr<CBreakingWatch> m_watch;
    qint32 m_nextId = 0;
};

void tst_Deletion::init()
{
    m_fixture = std::make_unique<CViewerFixture>();
    m_watch = std::make_unique<CBreakingWatch>();
    F().App.Option().AddMax = 1000;
    F().Board.SetWatch(m_watch.get());
}

void tst_Deletion::cleanup()
{
    QCOMPARE(F().Host.Held, 0);
    QCOMPARE(m_watch->Open, 0);
    QVERIFY(F().Desk.Verify());
    m_fixture.reset();
}

void tst_Deletion::Deletes_data()
{
    QTest::addColumn<int>("first"); // rows of a list 6 5 4 3 2 1, of which 2 and 5 are read
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("count");
    QTest::addColumn<int>("unread");
    QTest::addColumn<int>("focus");
    QTest::newRow("one") << 1 << 1 << u"1 2 3 4 6"_s << u"4/5"_s << 4 << 1;
    QTest::newRow("three side by side") << 1 << 3 << u"1 2 6"_s << u"2/3"_s << 2 << 1;
    QTest::newRow("the last ones") << 4 << 5 << u"3 4 5 6"_s << u"3/4"_s << 3 << 3;
    QTest::newRow("all") << 0 << 5 << QString() << u"0/0"_s << 0 << -1;
}

void tst_Deletion::Deletes()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(int, unread);
    QFETCH(int, focus);
    F().Add(3, 1, 6);
    F().Run(u"UPDATE Message SET Read = True WHERE ID IN (2, 5)"_s);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 4);
    F().Click(0, first);
    F().List(0).SetSelection({{first, last}}, first);
    Delete();
    QTEST(StoredIds(), "left");
    QTEST(F().Host.Count, "count");
    QCOMPARE(F().Viewer.BoardUnreadCount(3), unread);
    QCOMPARE(F().Host.Body, QStringList());
    QCOMPARE(F().Host.TimerMs, 0);
    QCOMPARE(F().List(0).Focus(), focus);
    QCOMPARE(F().List(0).SelectedRows(), focus < 0 ? std::vector<int>() : std::vector<int>{focus});
    QCOMPARE(F().Desk.Boxes[0].Caption, u"削除の確認 - "_s + F().App.AppTitle());
    QVERIFY(F().Desk.Boxes[0].Default == Desktop::Answer::No && F().Desk.Boxes[0].Icon == Desktop::Icon::Question);
}

void tst_Deletion::AnswerNo()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Click(0, 1);
    Delete(Desktop::Answer::No);
    QCOMPARE(StoredIds(), u"1 2 3"_s);
    QCOMPARE(F().Host.Count, u"3/3"_s);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().Host.TimerMs, 1500); // and it is still going to be read
}

void tst_Deletion::FromTheResultList()
{
    F().Add(3, 1, 4);
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID < 4"_s, 1);
    F().List(1).SetSelection({{0, 1}}, 0);
    Delete();
    QCOMPARE(Ids(F().List(1)), u"3/1"_s);
    QCOMPARE(Ids(F().List(0)), u"3/4 3/1"_s);
    QCOMPARE(F().Viewer.CurrentList(), 1);
    QCOMPARE(F().Host.Boards[3], 2);
    F().Viewer.ShowList(0);
    QCOMPARE(F().Host.Count, u"2/2"_s);
    QCOMPARE(F().Host.Body, QStringList({u"b4"_s}));
}

/// The copy that a search has brought can be read on, but no longer counts.
void tst_Deletion::FromTheBoardList()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID = 2"_s, 1);
    F().Viewer.ShowList(0);
    F().Click(0, 1);
    Delete();
    QCOMPARE(Ids(F().List(0)), u"3/3 3/1"_s);
    QCOMPARE(Ids(F().List(1)), u"3/2"_s);
    QCOMPARE(F().List(1).UnreadCount(), 0);
    QCOMPARE(F().Host.Boards[3], 2);
}

void tst_Deletion::GoingOnAfterwards()
{
    F().Add(3, 1, 6);
    F().Viewer.SelectBoard(3);
    for (const int row : {1, 4, 2})
        F().Click(0, row);
    Delete(); // 4: the pane is empty, 3 has the focus
    F().Viewer.MoveNext(0, MoveMode::Unread, false);
    QCOMPARE(F().ReadIds(), QString()); // nobody has seen it so far
    QCOMPARE(F().Host.Body, QStringList({u"b3"_s}));
    Delete();
    F().Viewer.MoveNext(0, MoveMode::Message, false);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    F().List(0).SetSelection({{1, 3}}, 1);
    Delete();
    F().Viewer.ReadTimerFired(); // of a message that is gone
    for (int i = 0; i < 4; ++i)
        F().Viewer.MovePrev(0, MoveMode::History, false); // places beyond the end of the list by now
    QCOMPARE(F().List(0).Focus(), 0);
    QCOMPARE(F().ReadIds(), QString());
}

void tst_Deletion::NothingToDelete()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    F().List(0).ClearSelection();
    F().Viewer.DeleteSelected();
    F().Viewer.LoadList(u"SELECT ID FROM Message"_s, 1);
    F().List(1).Select(0, 1, true);
    F().Viewer.DeleteSelected(); // rows of a table are no messages
    QCOMPARE(StoredIds(), u"1 2"_s);
}

void tst_Deletion::Refused_data()
{
    QTest::addColumn<QString>("trigger"); // what keeps the database from it; empty: another program writes
    QTest::newRow("locked") << QString();
    QTest::newRow("the second message is refused") << u"1"_s;
}

void tst_Deletion::Refused()
{
    QFETCH(QString, trigger);
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    F().List(0).SetSelection({{0, 2}}, 0);
    F().App.LogDB()->SetBusyTimeout(0);
    std::unique_ptr<dao::Database> other;
    if (trigger.isEmpty()) {
        other = dao::Database::Open(F().App.DatabaseFileName());
        other->BeginTrans();
        other->Execute(u"UPDATE Mark SET Name = 'x' WHERE ID = 1"_s);
    } else {
        F().Run(u"CREATE TABLE Kept(BBS_ID LONG, ID LONG, CONSTRAINT M FOREIGN KEY (ID, BBS_ID) REFERENCES Message)"_s);
        F().Run(u"INSERT INTO Kept VALUES(3, 2)"_s);
    }
    F().Desk.Expect(u"このメッセージを削除"_s, Desktop::Answer::Yes);
    F().Desk.Expect(u"メッセージを削除できませんでした。"_s);
    F().Viewer.DeleteSelected();
    other.reset();
    QCOMPARE(StoredIds(), u"1 2 3"_s);
    QCOMPARE(Ids(F().List(0)), u"3/3 3/2 3/1"_s);
    QCOMPARE(F().Host.Count, u"3/3"_s);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    QCOMPARE(F().Host.Body, QStringList({u"b3"_s}));
    QVERIFY(!F().App.LogDB()->InTransaction());
}

void tst_Deletion::BrokenOff_data()
{
    QTest::addColumn<QString>("what");
    for (const auto* what : {"read", "mark", "delete"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void tst_Deletion::BrokenOff()
{
    QFETCH(QString, what);
    F().Add(3, 1, 200);
    F().Viewer.BuildMarkMenu();
    F().Viewer.SelectBoard(3);
    F().List(0).Select(0, 199, true);
    m_watch->Patience = 100;
    if (what == u"read")
        F().Viewer.SetReadSelected(0, true);
    else if (what == u"mark")
        F().Viewer.MarkSelected(1);
    else
        Delete();
    QVERIFY(m_watch->Seen == (what == u"delete" ? Work::Delete : Work::Change));
    QCOMPARE(F().List(0).Count(), 200);
    QCOMPARE(F().List(0).SelectedCount(), 200);
    QCOMPARE(F().Host.Count, u"200/200"_s);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 200);
    QCOMPARE(F().Viewer.GetSelectedMark(), 0);
    QCOMPARE(F().Rows(u"SELECT COUNT(*) FROM Message WHERE Read = False AND Mark = 0"_s), u"200"_s);
}

void tst_Deletion::BoardStaysWhenItsLoadIsBrokenOff()
{
    F().Add(4, 1, 2);
    F().App.Option().AddMax = 5000;
    F().Add(3, 1, 4100);
    m_watch->Patience = 0;
    F().Viewer.SelectBoard(3); // the first one of all: the window has to show something
    QCOMPARE(F().Viewer.CurrentBoard(), 3);
    QCOMPARE(F().Host.Count, u"0/0"_s);
    QCOMPARE(F().Host.Shown, 0);
    QVERIFY(F().Viewer.Entry(CViewModes::Newest).Enabled);
    m_watch->Patience = -1;
    F().Viewer.SelectBoard(4);
    m_watch->Patience = 0;
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.CurrentBoard(), 4);
    QCOMPARE(F().App.Option().BBS_ID, 4);
    QCOMPARE(F().Viewer.BoardProperty().ID(), 4);
    QCOMPARE(Ids(F().List(0)), u"4/2 4/1"_s);
    QCOMPARE(F().Host.Count, u"2/2"_s); // not where the reading stopped
}

/// Whatever the user does and whatever arrives, in any order.
void tst_Deletion::RandomStep(QRandomGenerator& Random)
{
    const int front = F().Viewer.CurrentList();
    CMessageList& list = F().List(front);
    const int row = list.Count() > 0 ? int(Random.bounded(list.Count())) : -1;
    const bool flag = Random.bounded(2) == 1;
    if (row >= 0)
        list.SetSelection({{row, std::min(row + int(Random.bounded(4)), list.Count() - 1)}}, row);
    switch (Random.bounded(12)) {
    case 0:
        return F().Viewer.SetReadSelected(front, flag);
    case 1:
        return F().Viewer.MarkSelected(qint32(Random.bounded(5)));
    case 2:
        return row < 0 ? void() : Delete(flag ? Desktop::Answer::Yes : Desktop::Answer::No);
    case 3:
        return row < 0 ? void() : F().Click(front, row);
    case 4:
        return F().Viewer.ReadTimerFired();
    case 5:
        return F().Viewer.MoveNext(front, flag ? MoveMode::Unread : MoveMode::History, false);
    case 6:
        return F().Viewer.MoveInReplyTo(front);
    case 7:
        return F().Viewer.ShowList(1 - front);
    case 8:
        return F().Viewer.SelectBoard(flag ? 3 : 4);
    case 9:
        F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID > %1"_s.arg(Random.bounded(20)), 1);
        return;
    case 10:
        return F().Viewer.SetRead(CMessageId{flag ? 3 : 4, qint32(Random.bounded(20))}.Key(), flag, true);
    default:
        ++m_nextId;
        F().Add(3, m_nextId, m_nextId);
        F().Viewer.AddMessageItem(0, MakeMessage(3, m_nextId));
        F().Viewer.UpdateBoardUnreadCaption(3, 1);
    }
}

void tst_Deletion::CountsNeverDrift()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    F().Add(3, 1, m_nextId = 30);
    F().Add(4, 1, 10);
    F().Viewer.SelectBoard(3);
    for (const qint32 board : {3, 4})
        QVERIFY(F().Viewer.BoardUnreadCount(board) > 0);
    for (int step = 0; step < 400; ++step) {
        RandomStep(random);
        const CMessageList& list = F().List(F().Viewer.CurrentList());
        F().Viewer.ShowCounts(F().Viewer.CurrentList());
        int unread = 0;
        for (int row = 0; row < list.Count(); ++row) {
            const CMessage& message = list.Item(row).Message;
            unread += message.Read ? 0 : 1;
        }
        QString wanted = u"%1/%2"_s.arg(unread).arg(list.Count());
        QString seen = F().Host.Count;
        for (const qint32 board : {3, 4}) {
            seen += u" %1"_s.arg(F().Viewer.BoardUnreadCount(board));
            wanted += u' ' + F().Rows(u"SELECT COUNT(*) FROM Message WHERE Read = False AND BBS_ID = %1"_s.arg(board));
        }
        QVERIFY2(seen == wanted, qPrintable(u"seed %1, step %2: %3 for %4"_s.arg(seed).arg(step).arg(seen, wanted)));
    }
}

QTEST_GUILESS_MAIN(tst_Deletion)
#include "tst_Deletion.moc"
