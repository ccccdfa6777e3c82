// tests/viewer/tst_CRowRanges.cpp
// Runs of rows against a plain set.

#include "viewer/CRowRanges.h"

#include <QRandomGenerator>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

class tst_CRowRanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void RandomSteps_data();
    void RandomSteps();
    void ManyRowsAreOneRun();
};

namespace
{

std::set<int> Shifted(const std::set<int>& Rows, int From, int By)
{
    std::set<int> shifted;
    for (const int row : Rows)
        shifted.insert(row < From ? row : row + By);
    return shifted;
}

void Flip(std::set<int>& Rows, int Row)
{
    if (Rows.erase(Row) == 0)
        Rows.insert(Row);
}

/// Does the same to both; what was done.
QString Step(QRandomGenerator& Random, int RowCount, CRowRanges& Ranges, std::set<int>& Plain)
{
    const int first = Random.bounded(RowCount);
    const int last = qMin(first + Random.bounded(-1, 6), RowCount - 1);
    const int what = Random.bounded(5);
    switch (what) {
    case 0:
    case 1:
        Ranges.Set(first, last, what == 1);
        for (int row = first; row <= last; ++row)
            what == 1 ? void(Plain.insert(row)) : void(Plain.erase(row));
        break;
    case 2:
        Ranges.Toggle(first, last);
        for (int row = first; row <= last; ++row)
            Flip(Plain, row);
        break;
    case 3:
        Ranges.InsertRow(first);
        Plain = Shifted(Plain, first, 1);
        break;
    default:
        if (last < first)
            break;
        Ranges.RemoveRows(first, last);
        Plain.erase(Plain.lower_bound(first), Plain.upper_bound(last));
        Plain = Shifted(Plain, last, -(last - first + 1));
    }
    return u"step %1: rows %2 to %3"_s.arg(what).arg(first).arg(last);
}

} // namespace

void tst_CRowRanges::RandomSteps_data()
{
    QTest::addColumn<int>("rowCount");
    QTest::newRow("crowded") << 8;
    QTest::newRow("middling") << 40;
    QTest::newRow("wide") << 400;
}

void tst_CRowRanges::RandomSteps()
{
    QFETCH(int, rowCount);
    QRandomGenerator random(20020115);
    CRowRanges ranges;
    std::set<int> plain;
    for (int step = 0; step < 4000; ++step) {
        const QString done = Step(random, rowCount, ranges, plain);
        QVERIFY2(ranges.Rows() == std::vector<int>(plain.begin(), plain.end()), qPrintable(done));
        QCOMPARE(ranges.Count(), int(plain.size()));
        for (std::size_t run = 1; run < ranges.Runs().size(); ++run)
            QVERIFY2(ranges.Runs()[run].First > ranges.Runs()[run - 1].Last + 1, qPrintable(done));
        const int row = random.bounded(rowCount);
        QCOMPARE(ranges.Contains(row), plain.contains(row));
    }
}

void tst_CRowRanges::ManyRowsAreOneRun()
{
    CRowRanges ranges;
    for (int row = 0; row < 100'000; row += 2)
        ranges.Set(row, row, true);
    QCOMPARE(ranges.Runs().size(), std::size_t(50'000));
    ranges.Toggle(0, 99'999);
    QCOMPARE(ranges.Count(), 50'000);
    QVERIFY(!ranges.Contains(0) && ranges.Contains(99'999));
    ranges.Set(0, 99'999, true);
    QCOMPARE(ranges.Runs(), (std::vector<RowRange>{{0, 99'999}}));
    ranges.Clear();
    QVERIFY(ranges == CRowRanges());
}

QTEST_GUILESS_MAIN(tst_CRowRanges)
#include "tst_CRowRanges.moc"
