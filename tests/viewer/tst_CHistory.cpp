// tests/viewer/tst_CHistory.cpp
// Going back and forward through the places shown last.

#include "viewer/CHistory.h"

#include <QTest>

class tst_CHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void BackAndForward();
    void TheSamePlaceTwice();
    void TenAreKept();
    void NothingBeforeTheOldest();
    void PlacesBeyondTheListArePassedOver();
};

void tst_CHistory::BackAndForward()
{
    CHistory history;
    for (const int position : {1, 2, 3})
        history.Push(position);
    QCOMPARE(history.Back(9), 2);
    QCOMPARE(history.Back(9), 1);
    QCOMPARE(history.Forward(9), 2);
    history.Push(5);
    QCOMPARE(history.Forward(9), 0);
    QCOMPARE(history.Back(9), 2);
}

void tst_CHistory::TheSamePlaceTwice()
{
    CHistory history;
    for (const int position : {1, 2, 2})
        history.Push(position);
    QCOMPARE(history.Back(9), 1);
    history.Push(1); // where it stands already: what lies ahead stays
    QCOMPARE(history.Forward(9), 2);
}

void tst_CHistory::TenAreKept()
{
    CHistory history;
    for (int position = 1; position <= 11; ++position)
        history.Push(position);
    int last = 11;
    for (int i = 0; i < 9; ++i)
        last = history.Back(99);
    QCOMPARE(last, 2);
    QCOMPARE(history.Back(99), 0);
    QCOMPARE(history.Forward(99), 3);
}

void tst_CHistory::NothingBeforeTheOldest()
{
    CHistory history;
    QCOMPARE(history.Back(9), 0);
    QCOMPARE(history.Forward(9), 0);
    history.Push(4);
    QCOMPARE(history.Back(9), 0);
    history.Push(7);
    QCOMPARE(history.Back(9), 4);
}

void tst_CHistory::PlacesBeyondTheListArePassedOver()
{
    CHistory history;
    for (const int position : {3, 50, 60, 4})
        history.Push(position);
    QCOMPARE(history.Back(10), 3);
    QCOMPARE(history.Back(10), 0);
    QCOMPARE(history.Forward(10), 4);
    QCOMPARE(history.Forward(10), 0);
}

QTEST_GUILESS_MAIN(tst_CHistory)
#include "tst_CHistory.moc"
