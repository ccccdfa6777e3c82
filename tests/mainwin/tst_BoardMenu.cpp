// tests/mainwin/tst_BoardMenu.cpp
// The plan of the board menus: places, separators, access keys, captions.

#include "mainwin/mdlBoardMenu.h"
#include "tests/support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using mdlBoardMenu::Board;
using mdlBoardMenu::Entry;

namespace
{

// "3 16 | 4": the boards' numbers with a bar for each separator.
QString Shape(const std::vector<Entry>& Entries)
{
    QStringList parts;
    for (const Entry& entry : Entries)
        parts.append(entry.IsSeparator() ? u"|"_s : QString::number(entry.BBS_ID));
    return parts.join(u' ');
}

std::vector<Board> BoardsAt(const QList<int>& Places)
{
    std::vector<Board> boards;
    for (const int place : Places)
        boards.push_back({qint32(boards.size()) + 1, place, u"板"_s});
    return boards;
}

} // namespace

class tst_BoardMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void Separators_data();
    void Separators();
    void Captions();
    void Counts();
};

void tst_BoardMenu::Separators_data()
{
    mdlTable::AddRows<QList<int>, QString>("board-menu.json", "Separators", {"places", "wanted"});
}

void tst_BoardMenu::Separators()
{
    QFETCH(QList<int>, places);
    QFETCH(QString, wanted);
    QCOMPARE(Shape(mdlBoardMenu::Plan(BoardsAt(places))), wanted);
}

void tst_BoardMenu::Captions()
{
    std::vector<Board> boards = BoardsAt({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    boards[0].Name = u"Q&A板 %1"_s;
    const std::vector<Entry> entries = mdlBoardMenu::Plan(boards);
    QCOMPARE(entries[0].Caption, u"&1. Q&&A板 %1"_s);
    QCOMPARE(entries[8].Caption, u"&9. 板"_s);
    QCOMPARE(entries[9].Caption, u"&0. 板"_s);
    QCOMPARE(entries[10].Caption, u"&0. 板"_s);
}

void tst_BoardMenu::Counts()
{
    QCOMPARE(mdlBoardMenu::WithCount(u"&1. 板 %2"_s, 12), u"&1. 板 %2 (12)"_s);
    QCOMPARE(mdlBoardMenu::WithCount(u"&1. 板"_s, 0), u"&1. 板"_s);
}

QTEST_GUILESS_MAIN(tst_BoardMenu)
#include "tst_BoardMenu.moc"
