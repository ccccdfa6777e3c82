// tests/gui/tst_Lists.cpp
// The lists of the real window: keys and mouse at a hundred thousand rows, the scroll place, type-ahead, columns.

#include "mainwin/CListView.h"
#include "tests/gui/CWindowFixture.h"
#include "tests/viewer/Messages.h"
#include "viewer/mdlColumns.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_Lists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ManyRowsAreAsQuickAsFew();
    void ShiftExtendsFromTheFocus();
    void ManyRowsTakeArrivals();
    void ScrollPlaceIsKept_data();
    void ScrollPlaceIsKept();
    void TypeAhead_data();
    void TypeAhead();
    void RightButton();
    void SidewaysKeysScroll();
    void ResultListTakesOverTheColumns();
};

namespace
{

CListView* View(const CWindowFixture& Fixture, int List = 0)
{
    return Fixture.Find<CListView>(u"lsvMsgList%1"_s.arg(List));
}

/// Shows messages Count to 1 of board 3 without storing them.
void Fill(const CWindowFixture& Fixture, int Count)
{
    std::vector<CMessageItem> items;
    for (int id = Count; id >= 1; --id)
        items.push_back(MakeItem(MakeMessage(3, id, u"題名%1"_s.arg(id))));
    Fixture.List().Fill(std::move(items), {});
    QCoreApplication::processEvents();
}

qint32 TopNumber(const CWindowFixture& Fixture)
{
    QCoreApplication::processEvents();
    const QModelIndex top = View(Fixture)->indexAt({5, 5});
    return top.isValid() ? Fixture.List().Item(top.row()).Message.ID : -1;
}

void Click(CListView* List, int Row, Qt::KeyboardModifiers Modifiers, Qt::MouseButton Button = Qt::LeftButton)
{
    List->scrollTo(List->model()->index(Row, 0));
    QTest::mouseClick(List->viewport(), Button, Modifiers, List->visualRect(List->model()->index(Row, 2)).center());
}

} // namespace

void tst_Lists::ManyRowsAreAsQuickAsFew()
{
    constexpr int count = 100'000;
    CWindowFixture f;
    QVERIFY(f.Start());
    Fill(f, count);
    CListView* list = View(f);
    Click(list, 0, Qt::NoModifier);
    QElapsedTimer clock;
    clock.start();
    for (int key = 0; key < 50; ++key)
        QTest::keyClick(list, Qt::Key_Down, key % 2 ? Qt::ShiftModifier : Qt::NoModifier);
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed()))); // a pass over all costs 18 ms each
    QCOMPARE(f.List().Focus(), 50);
    QTest::keyClick(list, Qt::Key_Home);
    QTest::keyClick(list, Qt::Key_End, Qt::ShiftModifier);
    QCOMPARE(f.List().SelectedCount(), count);
    for (int row = 0; row < count; row += 2)
        f.List().Select(row, row, false); // every other one: the most runs there can be
    f.Action(u"mnuMsgReverseSelect"_s)->trigger();
    QCOMPARE(f.List().SelectedCount(), count / 2);
    clock.restart();
    for (int i = 0; i < 20; ++i)
        Click(list, 50'000 + i, Qt::ControlModifier);
    QCOMPARE(f.List().SelectedCount(), count / 2);
    QVERIFY(f.List().IsSelected(50'001) && !f.List().IsSelected(50'000));
    QTest::keyClick(list, Qt::Key_Up, Qt::ControlModifier); // moves the focus alone
    QCOMPARE(f.List().Focus(), 50'018);
    QCOMPARE(f.List().SelectedCount(), count / 2);
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(f.List().SelectedCount(), count);
}

void tst_Lists::ShiftExtendsFromTheFocus()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    Fill(f, 20);
    CListView* list = View(f);
    Click(list, 0, Qt::NoModifier);
    f.List().SetSelection({{2, 2}}, 2); // as J, Space and the find do
    list->TakeSelection();
    QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(f.List().SelectedRows(), (std::vector{2, 3, 4}));
    QTest::keyClicks(list, u"a"_s); // no subject begins so
    Click(list, 1, Qt::ShiftModifier);
    QCOMPARE(f.List().SelectedRows(), (std::vector{1, 2}));
    const QPointF shaken = list->visualRect(list->model()->index(1, 0)).center() + QPoint(3, 1);
    QMouseEvent move(QEvent::MouseMove, shaken, list->viewport()->mapToGlobal(shaken), Qt::NoButton, Qt::LeftButton,
                     Qt::ShiftModifier);
    QCoreApplication::sendEvent(list->viewport(), &move);
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, Qt::ShiftModifier, shaken.toPoint());
    QCOMPARE(f.List().SelectedRows(), (std::vector{1, 2}));
    Click(list, 8, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(f.List().IsSelected(7) && f.List().IsSelected(8) && !f.List().IsSelected(5));
}

/// A list is not laid out anew for each message; what stands where is right all the same.
void tst_Lists::ManyRowsTakeArrivals()
{
    constexpr int count = 20'000;
    CWindowFixture f;
    QVERIFY(f.Start());
    Fill(f, count);
    CListView* list = View(f);
    Click(list, 0, Qt::NoModifier);
    list->verticalScrollBar()->setValue(100);
    QCOMPARE(TopNumber(f), count - 100);
    for (int id = count + 1; id <= count + 50; ++id) {
        f.Viewer().AddMessageItem(0, MakeMessage(3, id));
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(TopNumber(f), count - 100);
    f.Viewer().AddMessageItem(0, MakeMessage(3, count + 51));
    Click(list, 120, Qt::NoModifier); // hits what is seen there, laid out or not
    QCOMPARE(f.List().Focus(), 120);
    QTest::keyClick(list, Qt::Key_End);
    QCOMPARE(f.List().Focus(), count + 50);
    QVERIFY(list->viewport()->rect().contains(list->visualRect(list->model()->index(count + 50, 1))));
    f.List().ArrangeThreads();
    f.Viewer().AddMessageItem(0, MakeMessage(3, count + 60)); // at the end, below what is in view
    QTRY_COMPARE(list->verticalScrollBar()->maximum() + list->verticalScrollBar()->pageStep(), count + 52);
    f.List().Sort(mdlColumns::ID, CMessageList::Order::Descending);
    QCoreApplication::processEvents();
    list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
    const qint32 top = TopNumber(f);
    f.Viewer().AddMessageItem(0, MakeMessage(3, count + 70)); // above the last page, which cannot scroll on yet
    QTRY_COMPARE(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
    QTRY_COMPARE(TopNumber(f), top);
}

void tst_Lists::ScrollPlaceIsKept_data()
{
    QTest::addColumn<int>("top"); // number of the message at the top of the view before
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("wantedTop");
    QTest::newRow("a newer one arrives") << 300 << u"add"_s << 300;
    QTest::newRow("at the very top the newer one shows") << 500 << u"add"_s << 501;
    QTest::newRow("one above goes") << 300 << u"remove 400"_s << 300;
    QTest::newRow("one below goes") << 300 << u"remove 200"_s << 300;
    QTest::newRow("the top one goes") << 300 << u"remove 300"_s << 299;
    QTest::newRow("many runs go") << 300 << u"remove odd"_s << 300;
    QTest::newRow("many runs and the top one go") << 301 << u"remove odd"_s << 300;
}

void tst_Lists::ScrollPlaceIsKept()
{
    QFETCH(int, top);
    QFETCH(QString, action);
    CWindowFixture f;
    QVERIFY(f.Start());
    Fill(f, 500);
    View(f)->verticalScrollBar()->setValue(500 - top);
    QCOMPARE(TopNumber(f), top);
    std::vector<CMessageId> ids;
    if (action.endsWith(u"odd")) {
        for (int id = 1; id <= 500; id += 2)
            ids.push_back({3, id});
    } else if (action != u"add") {
        ids.push_back({3, action.section(u' ', 1).toInt()});
    }
    if (ids.empty())
        f.Viewer().AddMessageItem(0, MakeMessage(3, 501, u"新着"_s));
    else
        f.List().Remove(ids);
    QTEST(TopNumber(f), "wantedTop");
}

void tst_Lists::TypeAhead_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("wanted"); // number of the message with the focus
    QTest::newRow("kana of any width") << u"カ"_s << 4;
    QTest::newRow("hiragana, half-width and voiced") << u"がｿ"_s << 3;
    QTest::newRow("capitals") << u"XY"_s << 2;
    QTest::newRow("goes round") << u"題名６"_s << 6;
    QTest::newRow("nothing like it") << u"無"_s << 6;
}

void tst_Lists::TypeAhead()
{
    QFETCH(QString, typed);
    QFETCH(int, wanted);
    CWindowFixture f;
    QVERIFY(f.Start());
    f.List().Fill(
        MakeItems({MakeMessage(3, 6, u"題名6"_s), MakeMessage(3, 5, u"題名5"_s), MakeMessage(3, 4, u" ｶﾀﾛｸﾞ"_s),
                   MakeMessage(3, 3, u"ｶﾞそ"_s), MakeMessage(3, 2, u"xyz"_s)}),
        {});
    f.Viewer().ShowMessage(0, 0, false);
    CListView* list = View(f);
    QVERIFY(!list->testAttribute(Qt::WA_InputMethodEnabled)); // one that is on would take Space, J and K
    list->keyboardSearch(typed);
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, wanted);
}

/// On a selected row it keeps the selection, elsewhere it selects; without a row there is no menu.
void tst_Lists::RightButton()
{
    CWindowFixture f;
    f.Add(1, 9);
    QVERIFY(f.Start());
    CListView* list = View(f);
    QSignalSpy menus(list, &CListView::ListMenuRequested);
    const auto rightClick = [&](QPoint Place) {
        QTest::mouseClick(list->viewport(), Qt::RightButton, {}, Place);
        QContextMenuEvent menu(QContextMenuEvent::Mouse, Place, list->viewport()->mapToGlobal(Place));
        QCoreApplication::sendEvent(list->viewport(), &menu);
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    };
    const auto place = [&](int Row) { return list->visualRect(list->model()->index(Row, 2)).center(); };
    Click(list, 1, Qt::NoModifier);
    Click(list, 3, Qt::ControlModifier);
    rightClick(place(1));
    QCOMPARE(f.List().SelectedRows(), (std::vector<int>{1, 3}));
    QCOMPARE(f.List().Focus(), 1);
    rightClick(place(5));
    QCOMPARE(f.List().SelectedRows(), (std::vector<int>{5}));
    QCOMPARE(menus.count(), 2);
    rightClick({20, list->viewport()->height() - 5});
    QCOMPARE(menus.count(), 2);
}

void tst_Lists::SidewaysKeysScroll()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    CListView* list = View(f);
    list->setFocus();
    const int focus = f.List().Focus();
    QVERIFY(list->horizontalScrollBar()->maximum() > 0);
    QTest::keyClick(list, Qt::Key_Right);
    QVERIFY(list->horizontalScrollBar()->value() > 0);
    QTest::keyClick(list, Qt::Key_Left);
    QCOMPARE(list->horizontalScrollBar()->value(), 0);
    QCOMPARE(f.List().Focus(), focus);
}

QList<int> ColumnOrder(const CListView* Shown)
{
    QList<int> order;
    for (int place = 0; place < Shown->header()->count(); ++place)
        order.append(Shown->header()->logicalIndex(place));
    return order;
}

/// Texts, widths and places, also after a raw table had other columns.
void tst_Lists::ResultListTakesOverTheColumns()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    View(f)->header()->resizeSection(mdlColumns::Subject, 77);
    View(f)->header()->moveSection(5, 0);
    View(f)->header()->moveSection(9, 2);
    QVERIFY(f.Viewer().LoadList(u"SELECT Count(*) AS 件数, Null AS 空 FROM Message"_s, 1));
    CListView* result = View(f, 1);
    QCOMPARE(ColumnOrder(result), QList<int>({0, 1}));
    QCOMPARE(result->header()->sectionSize(0), 100); // 1500 twips
    QCOMPARE(f.List(1).Text(0, 1), QString());
    result->keyboardSearch(u"3"_s); // by its first field: there is no subject
    QCOMPARE(f.List(1).Focus(), 0);
    QVERIFY(f.Viewer().LoadList(u"SELECT * FROM Message WHERE ID < 3"_s, 1));
    QCOMPARE(ColumnOrder(result), QList<int>({5, 0, 9, 1, 2, 3, 4, 6, 7, 8, 10}));
    QCOMPARE(result->header()->sectionSize(mdlColumns::Subject), 77);
    QCOMPARE(f.List(1).Header(mdlColumns::Subject), u"題名Ｆｉｎｄ"_s);
}

QTEST_MAIN(tst_Lists)
#include "tst_Lists.moc"
