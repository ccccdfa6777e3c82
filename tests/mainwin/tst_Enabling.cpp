// tests/mainwin/tst_Enabling.cpp
// Enabled states and caption as functions of the window's state.

#include "mainwin/mdlEnabling.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using mdlCommands::Rule;
using mdlEnabling::WindowFacts;

Q_DECLARE_METATYPE(WindowFacts)

class tst_Enabling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void Rules_data();
    void Rules();
    void Caption_data();
    void Caption();
};

// Each row: the state, and which of the rules hold, in the order Idle, ViewMode 2, Messages, Selection, SomeUnread,
// SomeRead, SingleReply, Single, Deletable, WithMail, WithHomePage.
void tst_Enabling::Rules_data()
{
    QTest::addColumn<WindowFacts>("facts");
    QTest::addColumn<QString>("wanted");
    WindowFacts idle;
    idle.ModeHasMessages = {true, false, true, true, true};
    const auto with = [&](auto Change) {
        WindowFacts facts = idle;
        Change(facts);
        return facts;
    };
    QTest::newRow("nothing selected") << idle << u"11100000000"_s;
    QTest::newRow("receiving") << with([](auto& F) { F.Busy = BusyState::Receive; }) << u"00100000000"_s;
    QTest::newRow("compacting") << with([](auto& F) { F.Busy = BusyState::Compact; }) << u"00000000000"_s;
    QTest::newRow("querying") << with([](auto& F) { F.Busy = BusyState::Query; }) << u"00000000000"_s;
    QTest::newRow("no older page") << with([](auto& F) { F.ModeHasMessages[2] = false; }) << u"10100000000"_s;
    QTest::newRow("unread one") << with([](auto& F) { F.SelectedCount = 1; }) << u"11111001100"_s;
    QTest::newRow("read reply") << with([](auto& F) {
        F.SelectedCount = 1;
        F.IsRead = F.IsReply = true;
    }) << u"11110111100"_s;
    QTest::newRow("several") << with([](auto& F) {
        F.SelectedCount = 2;
        F.IsReply = F.HasMail = true;
    }) << u"11111100110"_s;
    QTest::newRow("raw table") << with([](auto& F) {
        F.List = 1;
        F.IsRaw = true;
        F.SelectedCount = 1;
    }) << u"11000000000"_s;
    QTest::newRow("result list, receiving") << with([](auto& F) {
        F.Busy = BusyState::Receive;
        F.List = 1;
        F.SelectedCount = 1;
        F.HasHomePage = true;
    }) << u"00111001001"_s;
}

void tst_Enabling::Rules()
{
    QFETCH(WindowFacts, facts);
    QFETCH(QString, wanted);
    QString found;
    for (const Rule rule :
         {Rule::Idle, Rule::ViewMode, Rule::Messages, Rule::Selection, Rule::SomeUnread, Rule::SomeRead,
          Rule::SingleReply, Rule::Single, Rule::Deletable, Rule::WithMail, Rule::WithHomePage})
        found += mdlEnabling::Holds(rule, facts, 2) ? u'1' : u'0';
    QCOMPARE(found, wanted);
    QVERIFY(mdlEnabling::Holds(Rule::Always, facts));
    QVERIFY(!mdlEnabling::Holds(Rule::Never, facts));
    QVERIFY(!mdlEnabling::Holds(Rule::ViewMode, facts, 7));
}

void tst_Enabling::Caption_data()
{
    QTest::addColumn<int>("busy");
    QTest::addColumn<int>("list");
    QTest::addColumn<QString>("board");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("start") << int(BusyState::None) << 0 << QString() << u"T Ver.0.50"_s;
    QTest::newRow("board") << int(BusyState::None) << 0 << u"けやき掲示板"_s << u"けやき掲示板 - T Ver.0.50"_s;
    QTest::newRow("result") << int(BusyState::None) << 1 << u"けやき掲示板"_s << u"検索結果 - T Ver.0.50"_s;
    QTest::newRow("receiving") << int(BusyState::Receive) << 0 << u"杉"_s << u"受信中 - 杉 - T Ver.0.50"_s;
    QTest::newRow("receiving, result") << int(BusyState::Receive) << 1 << u"杉"_s
                                       << u"受信中 - 検索結果 - T Ver.0.50"_s;
    QTest::newRow("querying") << int(BusyState::Query) << 0 << u"杉"_s << u"検索中 - 杉 - T Ver.0.50"_s;
    QTest::newRow("importing") << int(BusyState::Import) << 0 << u"杉"_s << u"杉 - T Ver.0.50"_s;
}

void tst_Enabling::Caption()
{
    QFETCH(int, busy);
    QFETCH(int, list);
    QFETCH(QString, board);
    WindowFacts facts;
    facts.Busy = BusyState(busy);
    facts.List = list;
    QTEST(mdlEnabling::Caption(facts, board, u"T Ver.0.50"_s), "wanted");
}

QTEST_GUILESS_MAIN(tst_Enabling)
#include "tst_Enabling.moc"
