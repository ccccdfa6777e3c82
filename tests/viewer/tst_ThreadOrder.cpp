// tests/viewer/tst_ThreadOrder.cpp
// Thread order, by hand and against a slow walk over the list as a list control would do it.

#include "viewer/mdlThreadOrder.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;
using mdlThreadOrder::Node;

namespace
{

/// "1 .2 ..4": the numbers in order, a dot for each level; with the board in front where it is not 3.
QString Written(const std::vector<Node>& Nodes)
{
    QStringList words;
    for (const auto& place : mdlThreadOrder::Arrange(Nodes)) {
        const CMessageId id = Nodes[std::size_t(place.Index)].Id;
        const QString board = id.BBS_ID == 3 ? QString() : QString::number(id.BBS_ID) + u':';
        words.append(QString(place.Indent, u'.') + board + QString::number(id.ID));
    }
    return words.join(u' ');
}

/// "2>1 5": message 2 answers 1, message 5 nothing; "4:2>1" is on board 4.
std::vector<Node> Parse(const QString& Text)
{
    std::vector<Node> nodes;
    for (const QString& word : Text.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList board = word.split(u':');
        const QStringList numbers = board.last().split(u'>');
        nodes.push_back({{board.size() > 1 ? board.first().toInt() : 3, numbers.first().toInt()},
                         numbers.size() > 1 ? numbers.last().toInt() : 0});
    }
    return nodes;
}

/// Moves one item after the other right behind its parent, by texts and positions.
QString WalkedSlowly(std::vector<Node> Nodes)
{
    struct Item
    {
        QString Key;
        QString ReplyKey;
        QString Indent;
        QString Word;
    };
    struct Entry
    {
        QString Key;
        QString Indent;
    };
    std::sort(Nodes.begin(), Nodes.end(), [](const Node& L, const Node& R) {
        return std::tie(L.Id.ID, L.Id.BBS_ID) < std::tie(R.Id.ID, R.Id.BBS_ID);
    });
    const auto key = [](qint32 Board, qint32 ID) {
        return u'#' + QString::number(Board).rightJustified(3, u'0') + QString::number(ID).rightJustified(6, u'0');
    };
    std::vector<Item> items;
    for (const Node& node : Nodes) {
        const QString board = node.Id.BBS_ID == 3 ? QString() : QString::number(node.Id.BBS_ID) + u':';
        items.push_back({key(node.Id.BBS_ID, node.Id.ID),
                         key(node.Id.BBS_ID, node.InReplyTo),
                         {},
                         board + QString::number(node.Id.ID)});
    }
    std::vector<Entry> table;
    std::size_t p = 0;
    while (p < items.size()) {
        const auto parent =
            std::find_if(table.begin(), table.end(), [&](const Entry& E) { return E.Key == items[p].ReplyKey; });
        if (parent == table.end()) {
            table.push_back({items[p].Key, u"."_s});
            ++p;
            continue;
        }
        Item copy = items[p];
        copy.Indent = parent->Indent;
        const QString parentKey = parent->Key;
        table.push_back({copy.Key, copy.Indent + u'.'});
        const auto at = std::find_if(items.begin(), items.end(), [&](const Item& I) { return I.Key == parentKey; });
        copy.Key = u"仮キー"_s;
        const auto inserted = items.insert(at + 1, copy);
        inserted->Key = table.back().Key;
        ++p;
        items.erase(items.begin() + std::ptrdiff_t(p));
    }
    QStringList words;
    for (const Item& item : items)
        words.append(item.Indent + item.Word);
    return words.join(u' ');
}

} // namespace

class tst_ThreadOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ByHand_data();
    void ByHand();
    void RandomGraphs_data();
    void RandomGraphs();
    void DeepAndWide();
};

void tst_ThreadOrder::ByHand_data()
{
    mdlTable::AddRows<QString, QString>("thread-order.json", "ByHand", {"messages", "wanted"});
}

void tst_ThreadOrder::ByHand()
{
    QFETCH(QString, messages);
    QTEST(Written(Parse(messages)), "wanted");
    QTEST(WalkedSlowly(Parse(messages)), "wanted"); // so that the walk of the random graphs can be trusted
}

void tst_ThreadOrder::RandomGraphs_data()
{
    QTest::addColumn<int>("numbers"); // how close together the answered numbers lie
    QTest::newRow("dense") << 12;
    QTest::newRow("middling") << 60;
    QTest::newRow("mostly missing parents") << 900;
}

void tst_ThreadOrder::RandomGraphs()
{
    QFETCH(int, numbers);
    for (quint32 seed = 1; seed <= 150; ++seed) {
        QRandomGenerator random(seed);
        std::vector<Node> nodes;
        for (int board = 3; board <= 4; ++board) {
            for (int id = 1; id <= numbers; ++id) {
                if (random.bounded(numbers) < 60)
                    nodes.push_back({{board, id}, random.bounded(4) == 0 ? 0 : random.bounded(numbers + 1)});
            }
        }
        std::shuffle(nodes.begin(), nodes.end(), random);
        QVERIFY2(Written(nodes) == WalkedSlowly(nodes), qPrintable(u"seed %1"_s.arg(seed)));
    }
}

/// Neither a chain nor one message with very many answers may cost more than its length.
void tst_ThreadOrder::DeepAndWide()
{
    constexpr int count = 100000;
    std::vector<Node> chain;
    std::vector<Node> star;
    for (int id = 1; id <= count; ++id) {
        chain.push_back({{3, id}, id - 1});
        star.push_back({{3, id}, id == 1 ? 0 : 1});
    }
    const auto deep = mdlThreadOrder::Arrange(chain);
    QCOMPARE(deep.size(), std::size_t(count));
    QCOMPARE(deep.back().Indent, count - 1);
    const auto wide = mdlThreadOrder::Arrange(star);
    QCOMPARE(wide[1].Index, count - 1);
    QCOMPARE(wide.back().Index, 1);
    QCOMPARE(wide.back().Indent, 1);
}

QTEST_GUILESS_MAIN(tst_ThreadOrder)
#include "tst_ThreadOrder.moc"
