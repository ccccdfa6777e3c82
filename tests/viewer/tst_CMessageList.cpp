// tests/viewer/tst_CMessageList.cpp
// Keys, order, selection and focus of a message list.

#include "app/Settings.h"
#include "platform/text/DateTime.h"
#include "platform/text/Fold.h"
#include "tests/viewer/Messages.h"
#include "viewer/CMessageList.h"
#include "viewer/mdlColumns.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using Order = CMessageList::Order;

class tst_CMessageList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void Keys_data();
    void Keys();
    void CellTexts_data();
    void CellTexts();
    void FillSortsNewestFirst();
    void FillKeepsTheFirstOfEqualKeys();
    void FillKeepsASortOrder();
    void Sort_data();
    void Sort();
    void BrokenOffSortChangesNothing();
    void DatesSortAsTheyRead();
    void SortMarks();
    void AddGoesWhereItBelongs_data();
    void AddGoesWhereItBelongs();
    void AddIntoThreadsGoesToTheEnd();
    void ThreadsIndentSubjects();
    void FocusAndSelectionFollowTheirRows();
    void RemoveMovesTheFocus();
    void RemoveMany_data();
    void RemoveMany();
    void ManyChangesAreOneSignal();
    void SelectionRanges();
    void RawTable();
    void RawTableGivesWayToMessages();
    void RandomSteps();

private:
    Settings m_option;
};

void tst_CMessageList::init()
{
    m_option = Settings();
    m_option.DateFormat = u"yyyy/mm/dd hh:nn"_s;
}

void tst_CMessageList::Keys_data()
{
    // board: -1: not a key
    mdlTable::AddRows<QString, int, int>("message-list.json", "Keys", {"key", "board", "number"});
}

void tst_CMessageList::Keys()
{
    QFETCH(QString, key);
    QFETCH(int, board);
    QFETCH(int, number);
    const auto id = CMessageId::FromKey(key);
    QCOMPARE(id.has_value(), board >= 0);
    if (id)
        QCOMPARE(*id, (CMessageId{board, number}));
}

void tst_CMessageList::CellTexts_data()
{
    mdlTable::AddRows<int, QString>("message-list.json", "CellTexts", {"column", "wanted"});
}

void tst_CMessageList::CellTexts()
{
    QFETCH(int, column);
    CMessageItem item;
    item.Indent = 2;
    item.Message = {3,
                    1234,
                    u"表題<ソ>"_s,
                    u"http://localhost/"_s,
                    u"a@example.jp"_s,
                    u"ﾀﾛｳ"_s,
                    37271.3784722222,
                    77,
                    u"一\r\n二"_s,
                    7,
                    12,
                    false};
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill({item}, {});
    QTEST(list.Text(0, column), "wanted");
}

void tst_CMessageList::FillSortsNewestFirst()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 9), MakeMessage(3, 1000001), MakeMessage(4, 9), MakeMessage(3, 10)}), {});
    QCOMPARE(Ids(list), u"3/1000001 3/10 3/9 4/9"_s);
    QCOMPARE(list.SortColumn(), int(mdlColumns::ID));
    QCOMPARE(list.Header(mdlColumns::ID), u"番号"_s); // no mark: the user did not ask for it
}

void tst_CMessageList::FillKeepsTheFirstOfEqualKeys()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 5, u"first"_s), MakeMessage(3, 5, u"second"_s), MakeMessage(4, 5, u"other"_s)}),
              {});
    QCOMPARE(ColumnTexts(list, mdlColumns::Subject), QStringList({u"first"_s, u"other"_s}));
    QCOMPARE(list.UnreadCount(), 2);
    QCOMPARE(list.Add(MakeItem(MakeMessage(3, 5, u"third"_s))), -1);
    QCOMPARE(list.Count(), 2);
}

void tst_CMessageList::FillKeepsASortOrder()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1, u"b"_s)}), {});
    list.Sort(mdlColumns::Subject, Order::Ascending);
    list.SetSortMark(mdlColumns::Subject, Order::Ascending);
    list.Fill(MakeItems({MakeMessage(3, 4, u"c"_s), MakeMessage(3, 5, u"a"_s)}), {});
    QCOMPARE(ColumnTexts(list, mdlColumns::Subject), QStringList({u"a"_s, u"c"_s}));
    QCOMPARE(list.Header(mdlColumns::Subject), u"題名Ｆｉｎｄ △"_s);
}

void tst_CMessageList::Sort_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("descending");
    QTest::addColumn<QString>("wanted");
    // See Sort for the messages. Equal texts keep board and number order both ways.
    QTest::newRow("number") << int(mdlColumns::ID) << false << u"3/2 4/2 3/10 3/999 3/1000000"_s;
    QTest::newRow("number down") << int(mdlColumns::ID) << true << u"3/1000000 3/999 3/10 3/2 4/2"_s;
    QTest::newRow("subject") << int(mdlColumns::Subject) << false << u"3/1000000 3/2 3/10 4/2 3/999"_s;
    QTest::newRow("subject down") << int(mdlColumns::Subject) << true << u"3/999 3/2 3/10 4/2 3/1000000"_s;
    QTest::newRow("answers") << int(mdlColumns::InReplyTo) << false << u"3/2 3/10 3/1000000 3/999 4/2"_s;
    QTest::newRow("marks are texts") << int(mdlColumns::Mark) << false << u"3/999 3/1000000 3/10 3/2 4/2"_s;
    QTest::newRow("empty texts") << int(mdlColumns::Mail) << false << u"3/2 3/10 3/999 3/1000000 4/2"_s;
}

void tst_CMessageList::Sort()
{
    QFETCH(int, column);
    QFETCH(bool, descending);
    std::vector<CMessageItem> items = MakeItems({MakeMessage(4, 2, u"ｶﾞ"_s, 0), MakeMessage(3, 999, u"漢"_s, 500),
                                                 MakeMessage(3, 1000000, u"ABC"_s, 20), MakeMessage(3, 10, u"ガ"_s, 3),
                                                 MakeMessage(3, 2, u"が"_s, 0)});
    for (CMessageItem& item : items)
        item.Message.Mark = item.Message.ID == 2 ? 3 : item.Message.ID == 10 ? 2 : item.Message.ID == 999 ? 0 : 10;
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(std::move(items), {});
    list.Sort(column, descending ? Order::Descending : Order::Ascending);
    QTEST(Ids(list), "wanted");
}

/// Thousands of texts, some of which read the same: whenever it is broken off, nothing has moved; in the end the order
/// is that of the collation, then of the numbers.
void tst_CMessageList::BrokenOffSortChangesNothing()
{
    QRandomGenerator random(5);
    std::vector<CMessageItem> items;
    const QString letters = u"あアｱかガｶがーAaＡ漢1①　"_s;
    for (int id = 1; id <= 5000; ++id) {
        QString subject(random.bounded(1, 6), Qt::Uninitialized);
        for (QChar& c : subject)
            c = letters[random.bounded(letters.size())];
        items.push_back(MakeItem(MakeMessage(3, id, subject)));
    }
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(std::move(items), {});
    const QString before = Ids(list);
    const QSignalSpy moved(&list, &CMessageList::AboutToReorder);
    int asked = 0;
    for (int allowed = 0;; ++allowed) {
        asked = 0;
        if (list.Sort(mdlColumns::Subject, Order::Ascending, [&] { return asked++ < allowed; }))
            break;
        QCOMPARE(Ids(list), before);
        QCOMPARE(list.SortColumn(), int(mdlColumns::ID));
    }
    QVERIFY2(asked > 4, "asked so seldom that breaking it off takes long");
    QCOMPARE(moved.count(), 1);
    for (int row = 1; row < list.Count(); ++row) {
        const CMessage& upper = list.Item(row - 1).Message;
        const CMessage& lower = list.Item(row).Message;
        const int order = text::CompareText(upper.Subject, lower.Subject);
        QVERIFY2(order < 0 || (order == 0 && upper.ID < lower.ID), qPrintable(upper.Subject + u'|' + lower.Subject));
    }
}

void tst_CMessageList::DatesSortAsTheyRead()
{
    std::vector<CMessageItem> items =
        MakeItems({MakeMessage(3, 3), MakeMessage(3, 2), MakeMessage(3, 1), MakeMessage(3, 4)});
    items[0].Message.PostDate = text::ToSerial(QDateTime({2002, 1, 15}, {9, 5, 50}, Qt::UTC));
    items[1].Message.PostDate = text::ToSerial(QDateTime({2002, 1, 15}, {9, 5, 10}, Qt::UTC));
    items[2].Message.PostDate = text::ToSerial(QDateTime({2001, 12, 31}, {23, 59, 0}, Qt::UTC));
    items[3].Message.PostDate = text::ToSerial(QDateTime({2002, 1, 15}, {9, 4, 59}, Qt::UTC));
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(std::move(items), {});
    list.Sort(mdlColumns::Date, Order::Ascending);
    QCOMPARE(Ids(list), u"3/1 3/4 3/2 3/3"_s); // 2 and 3 show the same minute
    m_option.DateFormat = u"dd"_s;
    list.Sort(mdlColumns::Date, Order::Descending);
    QCOMPARE(Ids(list), u"3/1 3/2 3/3 3/4"_s); // 31 before 15
    m_option.DateFormat = u"yyyy/mm/dd hh:nn"_s;
    CMessage old = MakeMessage(3, 5);
    old.PostDate = -400000; // the year 804
    list.Add(MakeItem(old));
    list.Sort(mdlColumns::Date, Order::Ascending);
    QCOMPARE(Ids(list), u"3/5 3/1 3/4 3/2 3/3"_s);
}

void tst_CMessageList::SortMarks()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    const QSignalSpy headers(&list, &CMessageList::HeadersChanged);
    list.SetSortMark(mdlColumns::ID, Order::Ascending);
    QCOMPARE(list.Header(mdlColumns::ID), u"番号 △"_s);
    QCOMPARE(list.SortMark(mdlColumns::ID), u"↑"_s);
    list.SetSortMark(mdlColumns::ID, Order::Descending);
    QCOMPARE(list.Header(mdlColumns::ID), u"番号 ▽"_s);
    QCOMPARE(list.SortMark(mdlColumns::Subject), QString());
    list.ClearSortMark();
    QCOMPARE(list.Header(mdlColumns::ID), u"番号"_s);
    list.ClearSortMark();
    QCOMPARE(headers.count(), 3);
}

void tst_CMessageList::AddGoesWhereItBelongs_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("descending");
    QTest::newRow("newest first") << int(mdlColumns::ID) << true;
    QTest::newRow("oldest first") << int(mdlColumns::ID) << false;
    QTest::newRow("subject") << int(mdlColumns::Subject) << false;
    QTest::newRow("subject down") << int(mdlColumns::Subject) << true;
    QTest::newRow("date") << int(mdlColumns::Date) << true;
}

/// Adding one by one must end in the order that sorting everything at once gives.
void tst_CMessageList::AddGoesWhereItBelongs()
{
    QFETCH(int, column);
    QFETCH(bool, descending);
    const Order order = descending ? Order::Descending : Order::Ascending;
    QRandomGenerator random(7);
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill({}, {});
    list.Sort(column, order);
    for (int i = 0; i < 300; ++i) {
        CMessage message =
            MakeMessage(random.bounded(3, 5), random.bounded(1, 500), QString(QChar(u'あ' + random.bounded(20))));
        message.PostDate = 37000 + random.bounded(50);
        const int row = list.Add(MakeItem(message));
        if (row >= 0)
            QCOMPARE(list.Find({message.BBS_ID, message.ID}), row);
    }
    const QString oneByOne = Ids(list);
    list.Sort(mdlColumns::Mail, Order::Ascending);
    list.Sort(column, order);
    QCOMPARE(oneByOne, Ids(list));
}

void tst_CMessageList::AddIntoThreadsGoesToTheEnd()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 5), MakeMessage(3, 6)}), {});
    list.ArrangeThreads();
    QCOMPARE(list.SortColumn(), -1);
    QCOMPARE(list.Add(MakeItem(MakeMessage(3, 1))), 2);
    QCOMPARE(Ids(list), u"3/5 3/6 3/1"_s);
}

void tst_CMessageList::ThreadsIndentSubjects()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1, u"a"_s), MakeMessage(3, 2, u"b"_s, 1), MakeMessage(3, 3, u" c"_s, 1),
                         MakeMessage(3, 4, u"d"_s, 2)}),
              {});
    list.ArrangeThreads();
    QCOMPARE(ColumnTexts(list, mdlColumns::Subject), QStringList({u"a"_s, u"　 c"_s, u"　b"_s, u"　　d"_s}));
    list.ArrangeThreads();
    QCOMPARE(ColumnTexts(list, mdlColumns::Subject), QStringList({u"a"_s, u"　 c"_s, u"　b"_s, u"　　d"_s}));
    list.ClearIndent();
    QCOMPARE(ColumnTexts(list, mdlColumns::Subject), QStringList({u"a"_s, u" c"_s, u"b"_s, u"d"_s}));
}

void tst_CMessageList::FocusAndSelectionFollowTheirRows()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2), MakeMessage(3, 3), MakeMessage(3, 4)}), {});
    list.SetSelection({{0, 1}}, 1); // 4 and 3, the focus on 3
    list.Sort(mdlColumns::ID, Order::Ascending);
    QCOMPARE(list.SelectedRows(), std::vector<int>({2, 3}));
    QCOMPARE(list.Focus(), 2);
    list.Sort(mdlColumns::ID, Order::Descending);
    list.Add(MakeItem(MakeMessage(3, 5)));
    QCOMPARE(list.SelectedRows(), std::vector<int>({1, 2}));
    QCOMPARE(list.Focus(), 2);
    list.Clear();
    QCOMPARE(list.Focus(), -1);
    QCOMPARE(list.SelectedCount(), 0);
}

void tst_CMessageList::RemoveMovesTheFocus()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2), MakeMessage(3, 3)}), {});
    list.SetSelection({{1, 1}}, 1);
    QVERIFY(list.Remove({{3, 2}}));
    QCOMPARE(list.Focus(), 1); // on message 1, which moved up
    QCOMPARE(list.SelectedCount(), 0);
    QCOMPARE(list.UnreadCount(), 2);
    QVERIFY(list.Remove({{3, 1}}));
    QCOMPARE(list.Focus(), 0);
    QVERIFY(!list.Remove({{3, 1}}));
    QVERIFY(list.Remove({{3, 3}}));
    QCOMPARE(list.Focus(), -1);
    QCOMPARE(list.Add(MakeItem(MakeMessage(3, 2, u"again"_s))), 0);
    QCOMPARE(list.Text(0, mdlColumns::Subject), u"again"_s);
    QVERIFY(!list.IsSelected(0));
}

void tst_CMessageList::RemoveMany_data()
{
    QTest::addColumn<QList<int>>("removed");
    QTest::addColumn<int>("focus"); // number of the message that has it before
    QTest::addColumn<int>("wantedFocus");
    QTest::addColumn<int>("runs"); // told one by one; 0: a reset
    QTest::newRow("nothing there") << QList<int>{500, 501} << 10 << 10 << 0;
    QTest::newRow("one run, focus outside") << QList<int>{30, 29, 28} << 10 << 10 << 1;
    QTest::newRow("two runs, focus goes below its own") << QList<int>{30, 29, 10, 9} << 30 << 28 << 2;
    QTest::newRow("focus at the end goes up") << QList<int>{3, 2, 1, 1, 40} << 2 << 4 << 2;
    QList<int> odd;
    QList<int> all;
    for (int id = 1; id <= 100; ++id) {
        all.append(id);
        if (id % 2 == 1)
            odd.append(id);
    }
    QTest::newRow("many runs") << odd << 51 << 50 << 0;
    QTest::newRow("many runs with the last row") << odd << 1 << 2 << 0;
    QTest::newRow("all") << all << 51 << -1 << 1;
}

void tst_CMessageList::RemoveMany()
{
    QFETCH(QList<int>, removed);
    QFETCH(int, focus);
    QFETCH(int, wantedFocus);
    QFETCH(int, runs);
    std::vector<CMessageItem> items;
    for (int id = 1; id <= 100; ++id)
        items.push_back(MakeItem(MakeMessage(3, id)));
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(std::move(items), {});
    list.SetFocus(list.Find({3, focus}));
    list.Select(0, 79, true); // 100 to 21
    const QSignalSpy told(&list, &CMessageList::Removed);
    std::vector<CMessageId> ids;
    QStringList wanted;
    QStringList wantedSelected;
    for (const int id : std::as_const(removed))
        ids.push_back({3, id});
    for (int id = 100; id >= 1; --id) {
        if (!removed.contains(id))
            (id > 20 ? wantedSelected : wanted).append(u"3/%1"_s.arg(id));
    }
    const int before = list.Count();
    QCOMPARE(list.Remove(ids), before - int(wanted.size() + wantedSelected.size()));
    QCOMPARE(Ids(list), (wantedSelected + wanted).join(u' '));
    QCOMPARE(list.SelectedCount(), int(wantedSelected.size()));
    QVERIFY(wantedSelected.isEmpty() || list.SelectedRanges().size() == 1);
    QCOMPARE(list.Focus() < 0 ? -1 : list.Item(list.Focus()).Message.ID, wantedFocus);
    QCOMPARE(list.UnreadCount(), list.Count());
    QCOMPARE(told.count(), runs);
}

void tst_CMessageList::ManyChangesAreOneSignal()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2), MakeMessage(3, 3), MakeMessage(3, 4)}), {});
    QSignalSpy changed(&list, &CMessageList::RowsChanged);
    list.SetRead({{3, 1}, {3, 9}, {3, 3}, {4, 2}}, true);
    list.SetRead({{3, 3}}, true);
    QCOMPARE(ColumnTexts(list, mdlColumns::Read), QStringList({u"*"_s, u" "_s, u"*"_s, u" "_s}));
    QCOMPARE(list.UnreadCount(), 2);
    list.SetMark({{3, 4}, {3, 3}}, 7, 128U);
    list.SetMark({{3, 4}}, 0, std::nullopt);
    QCOMPARE(ColumnTexts(list, mdlColumns::Mark), QStringList({u"0"_s, u"7"_s, u"0"_s, u"0"_s}));
    QCOMPARE(list.Item(0).ForeColor, 128U);
    QCOMPARE(changed.count(), 3); // telling the same again changes nothing
    QCOMPARE(changed[0], QVariantList({1, 3}));
    QCOMPARE(changed[1], QVariantList({0, 1}));
}

void tst_CMessageList::SelectionRanges()
{
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2), MakeMessage(3, 3), MakeMessage(3, 4)}), {});
    list.SetSelection({{0, 1}, {3, 99}}, 3);
    QCOMPARE(list.SelectedCount(), 3);
    const auto ranges = list.SelectedRanges();
    QCOMPARE(ranges.size(), std::size_t(2));
    QCOMPARE(ranges[0].Last, 1);
    QCOMPARE(ranges[1].First, 3);
    list.InvertSelection();
    QCOMPARE(list.SelectedRows(), std::vector<int>({2}));
    list.InvertSelection();
    QCOMPARE(list.SelectedCount(), 3);
    list.ClearSelection();
    QCOMPARE(list.SelectedRows(), std::vector<int>());
    list.InvertSelection();
    QCOMPARE(list.SelectedCount(), 4);
}

void tst_CMessageList::RawTable()
{
    CMessageList list(m_option, mdlColumns::ResultHeaders());
    list.Fill(MakeItems({MakeMessage(3, 1)}), mdlColumns::BoardHeaders());
    list.FillRaw({u"件 数"_s, u"名前"_s}, {u"10"_s, u"い"_s, u"9"_s, QString(), u"10"_s, u"あ"_s});
    QVERIFY(list.IsRaw());
    QCOMPARE(list.Count(), 3);
    QCOMPARE(list.UnreadCount(), 0);
    QCOMPARE(ColumnTexts(list, 0), QStringList({u"10"_s, u"9"_s, u"10"_s})); // the statement's own order
    list.Sort(0, Order::Ascending);
    QCOMPARE(ColumnTexts(list, 1), QStringList({u"い"_s, u"あ"_s, QString()})); // as texts, equal ones as they came
    list.SetSortMark(0, Order::Ascending);
    list.ClearSortMark();
    QCOMPARE(list.Header(0), u"件 数"_s);
    list.ArrangeThreads();
    QCOMPARE(list.UnreadCount(), 0);
    QCOMPARE(list.Add(MakeItem(MakeMessage(3, 1))), -1);
}

void tst_CMessageList::RawTableGivesWayToMessages()
{
    CMessageList list(m_option, mdlColumns::ResultHeaders());
    QCOMPARE(list.Header(mdlColumns::Subject), u"題名"_s);
    QCOMPARE(list.Header(mdlColumns::Read), QString());
    list.FillRaw({u"a"_s}, {u"x"_s});
    list.Sort(0, Order::Descending);
    list.SetSortMark(0, Order::Descending);
    list.Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2)}), mdlColumns::BoardHeaders());
    QVERIFY(!list.IsRaw());
    QCOMPARE(list.ColumnCount(), mdlColumns::Count);
    QCOMPARE(list.Header(mdlColumns::Read), u"*"_s);
    QCOMPARE(Ids(list), u"3/2 3/1"_s);
}

/// Thousands of changes against the plainest list there is.
void tst_CMessageList::RandomSteps()
{
    constexpr quint32 seed = 20020115;
    QRandomGenerator random(seed);
    struct Row
    {
        qint32 ID;
        bool Read;
        bool Selected;
    };
    std::vector<Row> plain; // newest first
    const auto find = [&](qint32 ID) {
        return std::find_if(plain.begin(), plain.end(), [=](const Row& R) { return R.ID == ID; });
    };
    CMessageList list(m_option, mdlColumns::BoardHeaders());
    list.Fill({}, {});
    for (int step = 0; step < 5000; ++step) {
        const qint32 id = random.bounded(1, 200);
        const auto known = find(id);
        const bool isThere = known != plain.end();
        switch (random.bounded(5)) {
        case 0:
        case 1: {
            CMessage message = MakeMessage(3, id);
            message.Read = random.bounded(2) == 0;
            QCOMPARE(list.Add(MakeItem(message)) >= 0, !isThere);
            if (!isThere)
                plain.insert(std::find_if(plain.begin(), plain.end(), [=](const Row& R) { return R.ID < id; }),
                             {id, message.Read, false});
            break;
        }
        case 2:
            QCOMPARE(list.Remove({{3, id}}), isThere ? 1 : 0);
            if (isThere)
                plain.erase(known);
            break;
        case 3:
            if (isThere) {
                known->Read = !known->Read;
                list.SetRead({{3, id}}, known->Read);
            }
            break;
        default:
            if (isThere) {
                const int row = list.Find({3, id});
                known->Selected = !known->Selected;
                list.Select(row, row, known->Selected);
            }
        }
        std::vector<int> selected;
        for (std::size_t row = 0; row < plain.size(); ++row) {
            QCOMPARE(list.Item(int(row)).Message.ID, plain[row].ID);
            if (plain[row].Selected)
                selected.push_back(int(row));
        }
        QCOMPARE(list.Count(), int(plain.size()));
        QCOMPARE(list.SelectedRows(), selected);
        QCOMPARE(list.UnreadCount(),
                 int(std::count_if(plain.begin(), plain.end(), [](const Row& R) { return !R.Read; })));
    }
}

QTEST_GUILESS_MAIN(tst_CMessageList)
#include "tst_CMessageList.moc"
