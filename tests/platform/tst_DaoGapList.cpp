// tests/platform/tst_DaoGapList.cpp
// The list of rows that recordsets delete from, against a plain vector.

#include "platform/dao/CGapList.h"

#include <QRandomGenerator>
#include <QTest>

class tst_DaoGapList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void RandomSteps();
};

void tst_DaoGapList::RandomSteps()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    dao::CGapList<qint64> list;
    std::vector<qint64> plain;
    for (int step = 0; step < 20000; ++step) {
        if (plain.empty() || random.bounded(100) < 45) {
            plain.push_back(step);
            list.Append(step);
        } else {
            const int at = int(random.bounded(quint32(plain.size())));
            plain.erase(plain.begin() + at);
            list.Remove(at);
        }
        const size_t probe = plain.empty() ? 0 : random.bounded(quint32(plain.size()));
        const bool isSame = list.Count() == qsizetype(plain.size()) &&
                            (plain.empty() || (list.At(qsizetype(probe)) == plain[probe] &&
                                               list.IndexOf(plain[probe]) == qsizetype(probe)));
        QVERIFY2(isSame, qPrintable(QStringLiteral("seed %1, step %2").arg(seed).arg(step)));
    }
    QCOMPARE(list.IndexOf(-1), qsizetype(-1));
    list.Clear();
    QCOMPARE(list.Count(), qsizetype(0));
}

QTEST_GUILESS_MAIN(tst_DaoGapList)
#include "tst_DaoGapList.moc"
