// tests/board/tst_ThreadLinks.cpp
// Threads: hand-made cases, and random logs in random order against a slow literal reading of the rule.

#include "board/CThreadLinker.h"
#include "tests/board/CBoardFixture.h"
#include "tests/support/Table.h"

#include <QTest>

#include <algorithm>
#include <map>
#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace
{
/// "5" answers nothing, "6>5" answers 5.
void Insert(CBoardFixture& Fixture, const QString& Message, qint32 BBS_ID = 3)
{
    const QString reply = Message.contains(u'>') ? Message.section(u'>', 1) : u"0"_s;
    Fixture.Run(u"INSERT INTO Message(BBS_ID, ID, InReplyTo, RootThread) VALUES(%1, %2, %3, 0)"_s.arg(
        QString::number(BBS_ID), Message.section(u'>', 0, 0), reply));
}

void Link(CBoardFixture& Fixture, qint32 BBS_ID = 3) { CThreadLinker(*Fixture.App.LogDB(), BBS_ID).Link(); }

/// Passes separated by "/": what comes before one is stored and linked before the rest.
QString Run(CBoardFixture& Fixture, const QString& Passes)
{
    for (const QString& pass : Passes.split(u'/')) {
        for (const QString& message : pass.split(u' ', Qt::SkipEmptyParts))
            Insert(Fixture, message);
        Link(Fixture);
    }
    return Fixture.Threads();
}

/// Up the answers to the first message, or to a ring and its lowest number.
qint32 RootOf(const std::map<qint32, qint32>& Replies, qint32 ID)
{
    std::vector<qint32> path;
    qint32 at = ID;
    while (std::find(path.begin(), path.end(), at) == path.end()) {
        path.push_back(at);
        const qint32 parent = Replies.at(at);
        if (parent == 0 || !Replies.contains(parent))
            return at;
        at = parent;
    }
    return *std::min_element(std::find(path.begin(), path.end(), at), path.end());
}
} // namespace

class tst_ThreadLinks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Cases_data();
    void Cases();
    void AnswersOfOtherBoardsDoNotCount();
    void WhatACrashLeftUnlinkedIsMadeUpFor();
    void ADeletedParentDoesNotHang();
    void RandomLogs_data();
    void RandomLogs();
};

void tst_ThreadLinks::Cases_data()
{
    mdlTable::AddRows<QString, QString>("thread-links.json", "Cases", {"passes", "wanted"});
}

void tst_ThreadLinks::Cases()
{
    QFETCH(QString, passes);
    CBoardFixture fixture;
    QTEST(Run(fixture, passes), "wanted");
}

void tst_ThreadLinks::AnswersOfOtherBoardsDoNotCount()
{
    CBoardFixture fixture;
    Insert(fixture, u"5"_s, 4);
    Insert(fixture, u"6>5"_s, 3);
    Insert(fixture, u"8>7"_s, 4);
    Link(fixture, 3);
    Insert(fixture, u"7"_s, 3);
    Link(fixture, 3);
    QCOMPARE(fixture.Threads(3), u"6:6 7:7"_s);
    QCOMPARE(fixture.Threads(4), u"5:0 8:0"_s);
}

/// The parent 5 was committed, but its pass never ran; its answer 7 had been a root before.
void tst_ThreadLinks::WhatACrashLeftUnlinkedIsMadeUpFor()
{
    CBoardFixture fixture;
    Insert(fixture, u"7>5"_s);
    Link(fixture);
    Insert(fixture, u"5"_s);
    Insert(fixture, u"8"_s);
    QCOMPARE(Run(fixture, u"9>7"_s), u"5:5 7:5 8:8 9:5"_s);
}

void tst_ThreadLinks::ADeletedParentDoesNotHang()
{
    CBoardFixture fixture;
    Run(fixture, u"1 2>1 3>2 4>3"_s);
    fixture.Run(u"DELETE FROM Message WHERE ID = 2"_s);
    QCOMPARE(Run(fixture, u"2>4 5>2"_s), u"1:1 2:1 3:1 4:1 5:1"_s);
}

void tst_ThreadLinks::RandomLogs_data()
{
    QTest::addColumn<int>("reach");
    QTest::newRow("answers near by, up and down") << 4;
    QTest::newRow("answers anywhere") << 60;
}

void tst_ThreadLinks::RandomLogs()
{
    QFETCH(int, reach);
    CBoardFixture fixture;
    for (unsigned seed = 1; seed <= 100; ++seed) {
        const dao::CTransaction undoneAtTheEnd(*fixture.App.LogDB());
        std::mt19937 random(seed);
        const auto upTo = [&](int Limit) { return int(random() % unsigned(Limit)); };
        std::vector<qint32> numbers(60);
        std::generate(numbers.begin(), numbers.end(), [n = 0]() mutable { return ++n; });
        std::shuffle(numbers.begin(), numbers.end(), random);
        std::map<qint32, qint32> replies;
        for (const qint32 id : numbers) {
            const qint32 reply = upTo(4) == 0 ? 0 : std::max(0, id - reach + upTo(2 * reach + 1));
            replies[id] = reply;
            Insert(fixture, u"%1>%2"_s.arg(id).arg(reply));
            if (upTo(8) == 0)
                Link(fixture);
        }
        Link(fixture);
        QStringList wanted;
        for (const auto& [id, reply] : replies)
            wanted << u"%1:%2"_s.arg(id).arg(RootOf(replies, id));
        QVERIFY2(fixture.Threads() == wanted.join(u' '),
                 qPrintable(u"seed %1\n%2\n%3"_s.arg(QString::number(seed), fixture.Threads(), wanted.join(u' '))));
    }
}

QTEST_GUILESS_MAIN(tst_ThreadLinks)
#include "tst_ThreadLinks.moc"
