// tests/viewer/tst_ReadState.cpp
// Read state, marks and moves of the viewer, over a real database.

#include "tests/viewer/CViewerFixture.h"
#include "viewer/mdlColumns.h"

#include <QTest>

using namespace Qt::StringLiterals;
using MoveMode = CViewer::MoveMode;

class tst_ReadState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void LoadingWritesNothing();
    void LoadingMarksNothing();
    void TimerStartsForUnreadOnly();
    void TimerCarriesTheShownMessage();
    void AtOnce();
    void BothListsFollow();
    void MessageInNeitherList();
    void NumbersAboveSixDigits();
    void SelectedMessages();
    void RefusedUpdate();
    void RefusedTimerIsToldOnce();
    void RefusedSelectionChangesNothing();
    void BoardCounts();
    void MarksAreRead();
    void MarkColours();
    void LoadedMarks();
    void SelectedMark();
    void UnreadMoves();
    void PagesFirst();
    void HistoryMoves();
    void MoveToParent();

private:
    CViewerFixture& F() { return *m_fixture; }
    /// Another program writes: from now on every change here is refused.
    void Lock();
    void Unlock() { m_other.reset(); }
    std::unique_ptr<CViewerFixture> m_fixture;
    std::unique_ptr<dao::Database> m_other;
};

void tst_ReadState::init()
{
    m_fixture = std::make_unique<CViewerFixture>();
    F().App.Option().AddMax = 100;
}

void tst_ReadState::cleanup()
{
    Unlock();
    QVERIFY(F().Desk.Verify());
    m_fixture.reset();
}

void tst_ReadState::Lock()
{
    F().App.LogDB()->SetBusyTimeout(0);
    m_other = dao::Database::Open(F().App.DatabaseFileName());
    m_other->BeginTrans();
    m_other->Execute(u"UPDATE Mark SET Name = 'x' WHERE ID = 1"_s);
}

void tst_ReadState::LoadingWritesNothing()
{
    F().Add(3, 1, 3);
    F().Run(u"UPDATE Message SET Read = True, Mark = 2 WHERE ID = 2"_s);
    F().Viewer.BuildMarkMenu();
    Lock(); // a write would be refused with a box
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Host.Count, u"2/3"_s);
    QCOMPARE(F().List(0).Item(1).ForeColor, 32768U);
}

void tst_ReadState::LoadingMarksNothing()
{
    F().Add(3, 1, 2);
    F().App.Option().ReadTiming = 0;
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message"_s, 1);
    QCOMPARE(F().ReadIds(), QString());
    F().App.Option().ReadTiming = 1500;
    F().Viewer.ShowViewMode(0);
    QCOMPARE(F().Host.TimerMs, 0);
}

void tst_ReadState::TimerStartsForUnreadOnly()
{
    F().Add(3, 1, 3);
    F().Run(u"UPDATE Message SET Read = True WHERE ID = 2"_s);
    F().Viewer.SelectBoard(3);
    F().Click(0, 2);
    QCOMPARE(F().Host.TimerMs, 1500);
    F().Viewer.MoveNext(0, MoveMode::Message, false); // the last row: nothing to go to, but left is left
    QCOMPARE(F().Host.TimerMs, 0);
    F().Click(0, 0);
    F().Click(0, 1); // a read one: the timer of the one before goes
    QCOMPARE(F().Host.TimerMs, 0);
}

void tst_ReadState::TimerCarriesTheShownMessage()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Click(0, 1);
    F().List(0).SetSelection({{0, 0}, {2, 2}}, 2); // Ctrl+click: two selected, the text stays
    F().Viewer.ItemClicked(0, 2);
    F().Viewer.ReadTimerFired();
    QCOMPARE(F().ReadIds(), u"2"_s);
    QCOMPARE(F().Host.TimerMs, 0);
    F().Viewer.ReadTimerFired(); // a late event of a stopped timer
    QCOMPARE(F().ReadIds(), u"2"_s);
}

void tst_ReadState::AtOnce()
{
    F().Add(3, 1, 2);
    F().App.Option().ReadTiming = 0;
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 2);
    F().Click(0, 1);
    QCOMPARE(F().ReadIds(), u"1"_s);
    QCOMPARE(F().Host.Count, u"1/2"_s);
    QCOMPARE(F().Host.Boards[3], 1);
    F().Click(0, 0);
    QCOMPARE(F().Host.Boards[3], 0);
}

void tst_ReadState::BothListsFollow()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID < 3"_s, 1);
    F().Viewer.SetRead({}, true, true); // the focused one of the list in front: message 2
    QCOMPARE(F().List(1).UnreadCount(), 1);
    QCOMPARE(F().List(0).UnreadCount(), 2);
    QVERIFY(F().Viewer.IsRead(0, 1));
    QVERIFY(F().Viewer.IsRead(1, 0));
    F().Viewer.SetRead(u"#003000002"_s, false, true);
    QCOMPARE(F().List(0).UnreadCount(), 3);
    QCOMPARE(F().ReadIds(), QString());
    QCOMPARE(F().Host.Count, u"2/2"_s);
}

void tst_ReadState::MessageInNeitherList()
{
    F().Add(4, 7, 8);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(4), 2);
    F().Viewer.SetRead(u"#004000007"_s, true, true);
    QCOMPARE(F().ReadIds(), u"7"_s);
    QCOMPARE(F().Host.Boards[4], 1);
    F().Viewer.SetRead(u"#004000099"_s, true, true); // stored nowhere: no board has less to read
    QCOMPARE(F().Host.Boards[4], 1);
    F().Viewer.SetRead(u"仮キー"_s, true, true);
}

void tst_ReadState::NumbersAboveSixDigits()
{
    F().Add(3, 1000000, 1000000);
    F().Add(1003, 5, 5);
    F().Add(3, 0, 0);
    F().Viewer.LoadList(u"SELECT * FROM Message"_s, 1);
    F().Viewer.SetRead(u"#0031000000"_s, true, true);
    QCOMPARE(F().ReadIds(), u"1000000"_s);
    F().Viewer.SetRead(u"#1003000005"_s, true, true);
    QCOMPARE(F().ReadIds(), u"5 1000000"_s);
}

void tst_ReadState::SelectedMessages()
{
    F().Add(3, 1, 5);
    F().Run(u"UPDATE Message SET Read = True WHERE ID > 1"_s);
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 1);
    F().List(0).SetSelection({{2, 4}}, 4); // 3 and 2 are read, 1 is not
    F().Viewer.SetReadSelected(0, false);
    QCOMPARE(F().List(0).UnreadCount(), 3);
    QCOMPARE(F().Host.Boards[3], 3);
    QCOMPARE(F().ReadIds(), u"4 5"_s);
    F().Viewer.SetReadSelected(0, true);
    QCOMPARE(F().Host.Count, u"0/5"_s);
    QCOMPARE(F().Host.Boards[3], 0);
}

void tst_ReadState::RefusedUpdate()
{
    F().Add(3, 1, 2);
    F().Viewer.BuildMarkMenu();
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 2);
    Lock();
    F().Desk.Expect(u"メッセージの状態を変更できませんでした。"_s);
    F().Viewer.SetRead({}, true, true);
    F().Desk.Expect(u"メッセージの状態を変更できませんでした。"_s);
    F().Viewer.SetMark(u"#003000002"_s, 1);
    QCOMPARE(F().Host.Count, u"2/2"_s);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 2);
    QCOMPARE(F().List(0).Text(0, mdlColumns::Mark), u"0"_s);
    QCOMPARE(F().List(0).Item(0).ForeColor, CMessageItem::NormalColor);
    Unlock();
    QCOMPARE(F().ReadIds(), QString());
    F().Viewer.SetRead({}, true, true);
    QCOMPARE(F().ReadIds(), u"2"_s);
}

void tst_ReadState::RefusedTimerIsToldOnce()
{
    F().Add(3, 1, 3);
    F().App.Option().ReadTiming = 0;
    F().Viewer.SelectBoard(3);
    Lock();
    F().Desk.Expect(u"変更できませんでした。"_s);
    F().Click(0, 0);
    F().Click(0, 1); // he knows by now and reads on
    F().Viewer.MoveNext(0, MoveMode::Unread, false);
    QCOMPARE(F().Host.Body, QStringList({u"b1"_s}));
    QCOMPARE(F().Host.Count, u"3/3"_s);
    Unlock();
    F().Click(0, 0);
    QCOMPARE(F().ReadIds(), u"3"_s);
}

void tst_ReadState::RefusedSelectionChangesNothing()
{
    F().Add(3, 1, 3);
    F().Viewer.SelectBoard(3);
    F().List(0).Select(0, 2, true);
    Lock();
    F().Desk.Expect(u"変更できませんでした。"_s); // one box, not three
    F().Viewer.SetReadSelected(0, true);
    QCOMPARE(F().Host.Count, u"3/3"_s);
    Unlock();
    QCOMPARE(F().ReadIds(), QString());
    QVERIFY(!F().App.LogDB()->InTransaction());
}

void tst_ReadState::BoardCounts()
{
    F().Add(3, 1, 3);
    F().Add(4, 1, 2);
    QCOMPARE(F().Viewer.BoardUnreadCount(3), 3);
    F().Viewer.UpdateBoardUnreadCaption(3, -1); // kept as told
    QCOMPARE(F().Host.Boards[3], 2);
    F().Viewer.UpdateBoardUnreadCaption(4, 1); // not counted before: the database knows already
    QCOMPARE(F().Host.Boards[4], 2);
    F().Viewer.UpdateBoardUnreadCaption(3, 0);
    QCOMPARE(F().Host.Boards[3], 3);
    F().Viewer.UpdateBoardUnreadCaption(4, -9);
    QCOMPARE(F().Host.Boards[4], 0);
    F().Host.Boards.clear();
    F().Viewer.RecountBoards();
    QCOMPARE(F().Host.Boards, (std::map<qint32, int>{{3, 3}, {4, 2}}));
}

void tst_ReadState::MarksAreRead()
{
    F().Run(u"DELETE FROM Mark WHERE ID = 2"_s);
    F().Run(u"INSERT INTO Mark VALUES(0, 'だみー', 1, 1)"_s);
    F().Run(u"INSERT INTO Mark VALUES(7, Null, -2147483640, -2147483643)"_s);
    F().Viewer.BuildMarkMenu();
    QCOMPARE(F().Host.MarkChanges, 1);
    const std::map<qint32, Mark> wanted{{1, {u"マーク&1"_s, 128, 0x80000005U}},
                                        {3, {u"マーク&3"_s, 8388608, 0x80000005U}},
                                        {4, {u"マーク&4"_s, 8421504, 0x80000005U}},
                                        {7, {QString(), 0x80000008U, 0x80000005U}}};
    QVERIFY(F().Viewer.Marks() == wanted);
    QCOMPARE(int(F().Viewer.Marks().size()), 4);
}

void tst_ReadState::MarkColours()
{
    F().Add(3, 1, 2);
    F().Run(u"DELETE FROM Mark WHERE ID = 2"_s);
    F().Viewer.BuildMarkMenu();
    F().Viewer.SelectBoard(3);
    F().Viewer.LoadList(u"SELECT * FROM Message WHERE ID = 2"_s, 1);
    F().Viewer.SetMark(u"#003000002"_s, 3);
    QCOMPARE(F().List(0).Item(0).ForeColor, 8388608U);
    QCOMPARE(F().List(1).Item(0).ForeColor, 8388608U);
    QCOMPARE(F().List(1).Text(0, mdlColumns::Mark), u"3"_s);
    QCOMPARE(F().Rows(u"SELECT Mark FROM Message ORDER BY ID"_s), u"0 3"_s);
    F().Viewer.SetMark({}, 99); // above all marks: the colour stays
    QCOMPARE(F().List(0).Item(0).ForeColor, 8388608U);
    QCOMPARE(F().List(0).Text(0, mdlColumns::Mark), u"99"_s);
    F().Viewer.SetMark({}, 2); // a gap between marks is black
    QCOMPARE(F().List(0).Item(0).ForeColor, 0U);
    F().Viewer.MarkSelected(0);
    QCOMPARE(F().List(0).Item(0).ForeColor, CMessageItem::NormalColor);
    QCOMPARE(F().Rows(u"SELECT Mark FROM Message ORDER BY ID"_s), u"0 0"_s);
}

void tst_ReadState::LoadedMarks()
{
    F().Add(3, 1, 4);
    for (const auto& [id, mark] : {std::pair(1, 1), std::pair(2, 2), std::pair(3, 99), std::pair(4, -5)})
        F().Run(u"UPDATE Message SET Mark = %1 WHERE ID = %2"_s.arg(mark).arg(id));
    F().Run(u"DELETE FROM Mark WHERE ID = 2"_s);
    F().Viewer.BuildMarkMenu();
    F().Viewer.SelectBoard(3);
    QCOMPARE(F().List(0).Item(3).ForeColor, 128U);
    QCOMPARE(F().List(0).Item(2).ForeColor, 0U);
    QCOMPARE(F().List(0).Item(1).ForeColor, CMessageItem::NormalColor);
    QCOMPARE(F().List(0).Item(0).ForeColor, CMessageItem::NormalColor);
}

void tst_ReadState::SelectedMark()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    QStringList found;
    for (const auto& [upper, lower] : {std::pair(0, 0), {3, 3}, {3, 1}, {0, 3}, {3, 0}}) {
        F().Viewer.SetMark(u"#003000002"_s, upper);
        F().Viewer.SetMark(u"#003000001"_s, lower);
        F().List(0).Select(0, 1, true);
        found << u"%1 and %2: %3"_s.arg(upper).arg(lower).arg(F().Viewer.GetSelectedMark());
    }
    QCOMPARE(found, QStringList({u"0 and 0: 0"_s, u"3 and 3: 3"_s, u"3 and 1: 0"_s, u"0 and 3: 3"_s, u"3 and 0: 0"_s}));
    F().List(0).ClearSelection();
    QCOMPARE(F().Viewer.GetSelectedMark(), 0);
}

void tst_ReadState::UnreadMoves()
{
    F().Add(3, 1, 5);
    F().Run(u"UPDATE Message SET Read = True WHERE ID IN (4, 2)"_s);
    F().Viewer.SelectBoard(3); // 5 and 3 and 1 are unread
    F().Viewer.MoveNext(0, MoveMode::Unread, false);
    QCOMPARE(F().Host.Body, QStringList({u"b3"_s}));
    QCOMPARE(F().ReadIds(), u"2 4 5"_s);
    F().Viewer.SetRead(u"#003000005"_s, false, true);
    F().Viewer.MovePrev(0, MoveMode::Unread, false);
    QCOMPARE(F().Host.Body, QStringList({u"b5"_s}));
    F().Viewer.MovePrev(0, MoveMode::Unread, false);
    QCOMPARE(F().Host.Body, QStringList({u"b5"_s})); // never wraps around
    F().Viewer.MoveNext(0, MoveMode::Message, false);
    QCOMPARE(F().Host.Body, QStringList({u"b4"_s}));
    F().Viewer.MovePrev(0, MoveMode::Message, false);
    QCOMPARE(F().Host.Body, QStringList({u"b5"_s}));
    QCOMPARE(F().List(0).SelectedRows(), std::vector<int>({0}));
}

void tst_ReadState::PagesFirst()
{
    F().Add(3, 1, 2);
    F().Viewer.SelectBoard(3);
    F().Host.PagesLeft = 1;
    F().Viewer.MoveNext(0, MoveMode::Unread, true);
    QCOMPARE(F().Host.Body, QStringList({u"b2"_s}));
    QCOMPARE(F().ReadIds(), u"2"_s); // read at once all the same
    F().Viewer.MoveNext(0, MoveMode::Unread, true);
    QCOMPARE(F().Host.Body, QStringList({u"b1"_s}));
}

void tst_ReadState::HistoryMoves()
{
    F().Add(3, 1, 5);
    F().Viewer.SelectBoard(3); // records row 1
    for (const int row : {1, 2})
        F().Click(0, row);
    F().Viewer.MovePrev(0, MoveMode::History, false);
    F().Viewer.MovePrev(0, MoveMode::History, false);
    QCOMPARE(F().List(0).Focus(), 0);
    F().Viewer.MovePrev(0, MoveMode::History, false);
    QCOMPARE(F().List(0).Focus(), 0);
    F().Viewer.MoveNext(0, MoveMode::History, false);
    QCOMPARE(F().List(0).Focus(), 1);
    F().Click(0, 4); // drops what lay ahead, and is recorded although a move into the void came before
    F().Viewer.MoveNext(0, MoveMode::History, false);
    QCOMPARE(F().List(0).Focus(), 4);
    F().Viewer.MovePrev(0, MoveMode::History, false);
    QCOMPARE(F().List(0).Focus(), 1);
}

void tst_ReadState::MoveToParent()
{
    F().Add(3, 1, 3);
    F().Add(4, 1, 1);
    F().Run(u"UPDATE Message SET InReplyTo = 1 WHERE BBS_ID = 3 AND ID = 3"_s);
    F().Run(u"UPDATE Message SET InReplyTo = 9 WHERE BBS_ID = 3 AND ID = 2"_s);
    F().Viewer.SelectBoard(3);
    F().Viewer.MoveInReplyTo(0);
    QCOMPARE(F().Host.Body, QStringList({u"b1"_s}));
    QCOMPARE(F().ReadIds(), u"3"_s);
    F().Click(0, 1);
    F().Viewer.MoveInReplyTo(0); // its parent is not in the list
    QCOMPARE(F().List(0).Focus(), 1);
    QCOMPARE(F().ReadIds(), u"3"_s);
    QCOMPARE(F().List(0).SelectedRows(), std::vector<int>({1}));
}

QTEST_GUILESS_MAIN(tst_ReadState)
#include "tst_ReadState.moc"
