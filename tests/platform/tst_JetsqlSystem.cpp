// tests/platform/tst_JetsqlSystem.cpp
// Every statement that the program itself sends, joined from its pieces as the program joins them.

#include "tests/support/CSqlBench.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Each statement runs on a database that was itself filled by the program's statements, and its whole outcome counts.
class tst_JetsqlSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Queries_data();
    void Queries();
    void Changes_data();
    void Changes();
    void EditableRows_data();
    void EditableRows();
    void MessageTwice();
    void KnownShapesAreFew();
};

namespace {

QString Board(int Number, const QString& Name, const QString& Identifier, int Hitokoto, int Order, const QString& Pattern)
{
    return u"INSERT INTO BBS VALUES("_s + u"  %1"_s.arg(Number) + u", '%1', '%2'"_s.arg(Name, Name.chopped(3))
        + u", '"_s + u"http://localhost:8932/cgi-bin/%1.cgi"_s.arg(Identifier) + u"'"_s + u", '"_s + u"http://localhost:8932/howto/%1.html"_s.arg(Identifier)
        + u"'"_s + u", 400, %1, True, %2"_s.arg(Hitokoto).arg(Order) + u", '%1', '%2'"_s.arg(Pattern, Identifier) + u")"_s;
}

struct Text
{
    QString Subject;
    QString Body;
    int Root = 0;
    QString Read = u"False"_s;
};

QString Message(int Board, int Id, int InReplyTo, const Text& Texts)
{
    const auto quoted = [](QString text) {
        return text.replace(u'\'', u"''"_s).replace(u'|', u"' & Chr(124) & '"_s);
    };
    return u"INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, RootThread, Mark)"_s
        + u" VALUES("_s + QString::number(Board) + u","_s + QString::number(Id) + u","_s + Texts.Read + u",'"_s + quoted(Texts.Subject) + u"'"_s + u",'"_s
        + quoted(u"http://x/?a=1|2"_s) + u"'"_s + u",'"_s + quoted(u"a@b"_s) + u"'"_s + u",'"_s + quoted(u"太郎"_s) + u"',#"_s + u"2002/01/15 12:34"_s
        + u"#"_s + u","_s + QString::number(InReplyTo) + u",'"_s + quoted(Texts.Body) + u"'"_s + u","_s + QString::number(Texts.Root) + u","_s
        + QString::number(0) + u")"_s;
}

QStringList Seed()
{
    return {Board(3, u"けやき掲示板"_s, u"keyaki"_s, -1, 0, u"keyaki*"_s), Board(16, u"けやき２掲示板"_s, u"keyaki2"_s, -1, 1, QString()),
            Board(13, u"やなぎ左掲示板"_s, u"lyanagi"_s, 0, 9, QString()), Board(15, u"えのき掲示板"_s, u"enoki"_s, -1, -1, QString()),
            u"INSERT INTO Mark VALUES("_s + u"  1"_s + u", '"_s + u"マーク&1"_s + u"', "_s + u"128"_s + u", "_s + u"-2147483643"_s + u")"_s,
            u"INSERT INTO Version VALUES('BBS', 'Ver.0.42')"_s, u"INSERT INTO Version VALUES('Message', 'Ver.0.13')"_s,
            Message(3, 1, 0, {u"it's"_s, u"a|b\r\nソ表"_s, 1, u"True"_s}), Message(3, 2, 1, {u"Re: it's"_s, u"本文 がぎぐ"_s, 1, u"False"_s}),
            Message(3, 7, 2, {u"Re: Re"_s, u"50% [1]*"_s}), Message(16, 999999, 5, {u"よその"_s, u"||"_s, 999999, u"False"_s})};
}

}

void tst_JetsqlSystem::Queries_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QStringList>("rows");
    const auto row = [](const char* name, const QString& statement, const QStringList& rows) { QTest::newRow(name) << statement << rows; };
    const QString board = u"3"_s, lineEnd = u"\r\n"_s;
    const QString boardRow = u"3|けやき掲示板|けやき|http://localhost:8932/cgi-bin/keyaki.cgi|http://localhost:8932/howto/keyaki.html|400|-1|True|0|keyaki*|keyaki"_s;

    row("board at start", u"SELECT BBS_ID  FROM BBS WHERE BBS_ID = "_s + board + u"   AND ListOrder >= 0"_s, {u"3"_s});
    row("first board",
        u"SELECT BBS_ID  FROM BBS WHERE ListOrder = (SELECT Min(ListOrder)                      FROM BBS                     WHERE ListOrder >= 0)"_s,
        {u"3"_s});
    row("version of a table", u"SELECT Version AS VER FROM Version WHERE Table = '"_s + u"Message"_s + u"'"_s, {u"Ver.0.13"_s});
    row("version of the file", u"SELECT Max(Version) AS VER FROM Version"_s, {u"Ver.0.42"_s});
    row("board's properties", u"SELECT * FROM BBS WHERE BBS_ID = "_s + board, {boardRow});
    row("unread count", u"SELECT Count(*) AS 件数"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND Read = False"_s, {u"2"_s});
    row("not linked", u"SELECT *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND RootThread = 0"_s + u" ORDER BY ID"_s,
        {u"3|7|False|Re: Re|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|2|50% [1]*|0|0"_s});
    row("root of a parent", u"SELECT RootThread FROM Message"_s + u" WHERE BBS_ID = "_s + board + u" AND   ID = "_s + u"2"_s, {u"1"_s});
    row("columns of a message", u"SELECT TOP 1 *"_s + u"  FROM Message"_s,
        {u"3|1|True|it's|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|0|a|b\r\nソ表|1|0"_s});
    row("side of the two-sided board", u"SELECT BBS_ID"_s + u"  FROM BBS"_s + u" WHERE Hitokoto = "_s + u"0"_s, {u"13"_s});
    row("side, in one piece", u"SELECT BBS_ID  FROM BBS WHERE Hitokoto = "_s + u"1"_s, {});
    row("visit list", u"SELECT BBS_ID"_s + u"  FROM BBS"_s + u" WHERE VisitLoad = True"_s + u" ORDER BY ListOrder"_s, {u"15"_s, u"3"_s, u"16"_s, u"13"_s});
    row("all boards", u"SELECT BBS_ID"_s + u"  FROM BBS"_s + u" WHERE ListOrder >= 0"_s + u" ORDER BY ListOrder"_s, {u"3"_s, u"16"_s, u"13"_s});
    row("board of a file", u"SELECT BBS_ID, BBS_Name"_s + u"  FROM BBS"_s + u" WHERE BBS_ID <> "_s + u"15"_s + u"   AND '"_s + u"Keyaki_01.TXT"_s + u"' Like DefaultLogFile"_s,
        {u"3|けやき掲示板"_s});
    row("latest", u"SELECT TOP "_s + u"2"_s + u" *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u" ORDER BY ID DESC"_s,
        {u"3|7|False|Re: Re|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|2|50% [1]*|0|0"_s,
         u"3|2|False|Re: it's|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|1|本文 がぎぐ|1|0"_s});
    row("newer", u"SELECT TOP "_s + u"1"_s + u" *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND ID > "_s + u"1"_s + u" ORDER BY ID"_s,
        {u"3|2|False|Re: it's|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|1|本文 がぎぐ|1|0"_s});
    row("older", u"SELECT TOP "_s + u"100"_s + u" *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND ID < "_s + u"1"_s + u" ORDER BY ID DESC"_s, {});
    row("unread", u"SELECT *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + u"16"_s + u"   AND Read = False"_s + u" ORDER BY ID DESC"_s,
        {u"16|999999|False|よその|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|5||||999999|0"_s});
    row("all", u"SELECT *"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + u"99"_s + u" ORDER BY ID DESC"_s, {});
    row("count of the latest", u"SELECT TOP "_s + u"2"_s + u" ID"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board, {u"1"_s, u"2"_s});
    row("count of the older", u"SELECT TOP "_s + u"100"_s + u" ID"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND ID < "_s + u"7"_s, {u"1"_s, u"2"_s});
    row("count of the newer", u"SELECT TOP "_s + u"100"_s + u" ID"_s + u"  FROM Message"_s + u" WHERE BBS_ID = "_s + board + u"   AND ID > "_s + u"0"_s,
        {u"1"_s, u"2"_s, u"7"_s});
    row("marks", u"SELECT * FROM Mark ORDER BY ID"_s, {u"1|マーク&1|128|-2147483643"_s});
    row("board by a part of its name", u"SELECT *"_s + u"  FROM BBS"_s + u" WHERE BBS_Name Like '*"_s + u"ｹﾔｷ掲"_s + u"*'"_s + u"    OR ShortName Like '*"_s + u"ｹﾔｷ掲"_s + u"*'"_s,
        {boardRow});
    row("related", u"SELECT *"_s + u"  FROM Message"_s + u" WHERE RootThread = "_s + u"  (SELECT RootThread"_s + u"     FROM Message"_s + u"    WHERE BBS_ID = "_s + u"16"_s
            + u"     AND ID     = "_s + u"999999"_s + u"  )"_s,
        {u"16|999999|False|よその|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|5||||999999|0"_s});
    row("text search", u"SELECT *"_s + lineEnd + u"  FROM Message"_s + lineEnd + u" WHERE BBS_ID = "_s + board + lineEnd + u"   AND Body Like '*"_s + u"ガギ"_s + u"*'"_s + lineEnd + u";"_s,
        {u"3|2|False|Re: it's|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|1|本文 がぎぐ|1|0"_s});
    row("text search for pattern signs", u"SELECT *"_s + lineEnd + u"  FROM Message"_s + lineEnd + u" WHERE BBS_ID = "_s + board + lineEnd + u"   AND Body Like '*[[]1][*]*'"_s + lineEnd + u";"_s,
        {u"3|7|False|Re: Re|http://x/?a=1|2|a@b|太郎|2002/01/15 12:34:00|2|50% [1]*|0|0"_s});
    row("first query of the dialog", u"SELECT *"_s + lineEnd + u"  FROM Message"_s + lineEnd + u" WHERE BBS_ID = "_s + u"15"_s + lineEnd + u";"_s, {});
    row("board menu", u"SELECT BBS_ID  FROM BBS WHERE ListOrder >= 0 ORDER BY ListOrder"_s, {u"3"_s, u"16"_s, u"13"_s});
    row("visit page", u"SELECT BBS_ID, BBS_Name, VisitLoad  FROM BBS WHERE ListOrder >= 0 ORDER BY BBS_ID"_s,
        {u"3|けやき掲示板|True"_s, u"13|やなぎ左掲示板|True"_s, u"16|けやき２掲示板|True"_s});
    row("order page, shown", u"SELECT BBS_ID, BBS_Name, ListOrder  FROM BBS WHERE ListOrder >= 0 ORDER BY ListOrder"_s,
        {u"3|けやき掲示板|0"_s, u"16|けやき２掲示板|1"_s, u"13|やなぎ左掲示板|9"_s});
    row("order page, hidden", u"SELECT BBS_ID, BBS_Name  FROM BBS WHERE ListOrder < 0 ORDER BY BBS_ID"_s, {u"15|えのき掲示板"_s});
    row("visit state of a board", u"SELECT VisitLoad  FROM BBS WHERE BBS_ID = "_s + board, {u"True"_s});
    row("every board", u"SELECT BBS_ID FROM BBS"_s, {u"3"_s, u"13"_s, u"15"_s, u"16"_s});
}

void tst_JetsqlSystem::Queries()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, rows);
    CSqlBench bench;
    for (const QString& seed : Seed())
        QCOMPARE(bench.Run(seed).ErrorText, QString());
    const CSqlBench::Outcome outcome = bench.Run(statement);
    QCOMPARE(outcome.ErrorText, QString());
    QCOMPARE(outcome.Rows, rows);
    QVERIFY(outcome.Compiled->Parameters.empty());
}

void tst_JetsqlSystem::Changes_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("changed");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("rows");
    const auto row = [](const char* name, const QString& statement, int changed, const QString& query, const QStringList& rows) {
        QTest::newRow(name) << statement << changed << query << rows;
    };
    row("read", u"UPDATE Message SET Read = "_s + u"True"_s + u" WHERE BBS_ID = "_s + u"003"_s + u"   AND ID = "_s + u"000002"_s, 1,
        u"SELECT ID FROM Message WHERE Read ORDER BY ID"_s, {u"1"_s, u"2"_s});
    row("unread", u"UPDATE Message SET Read = "_s + u"False"_s + u" WHERE BBS_ID = "_s + u"016"_s + u"   AND ID = "_s + u"999999"_s, 1,
        u"SELECT ID FROM Message WHERE Read"_s, {u"1"_s});
    row("mark", u"UPDATE Message SET Mark = "_s + u"4"_s + u" WHERE BBS_ID = "_s + u"003"_s + u"   AND ID = "_s + u"000007"_s, 1,
        u"SELECT ID, Mark FROM Message WHERE Mark <> 0"_s, {u"7|4"_s});
    row("delete", u"DELETE FROM Message"_s + u" WHERE BBS_ID = "_s + u"003"_s + u"   AND ID = "_s + u"000002"_s, 1,
        u"SELECT ID FROM Message ORDER BY ID"_s, {u"1"_s, u"7"_s, u"999999"_s});
    row("delete nothing", u"DELETE FROM Message"_s + u" WHERE BBS_ID = "_s + u"003"_s + u"   AND ID = "_s + u"999999"_s, 0,
        u"SELECT Count(*) FROM Message"_s, {u"4"_s});
    row("no visits", u"UPDATE BBS   SET VisitLoad = False"_s, 4, u"SELECT Count(*) FROM BBS WHERE VisitLoad"_s, {u"0"_s});
    row("visits", u"UPDATE BBS   SET VisitLoad = True WHERE BBS_ID IN ("_s + u"3,13"_s + u")"_s, 2, u"SELECT Count(*) FROM BBS WHERE VisitLoad"_s, {u"4"_s});
    row("hidden boards do not visit", u"UPDATE BBS   SET VisitLoad = False WHERE BBS_ID IN ("_s + u"15,16"_s + u")"_s, 2,
        u"SELECT BBS_ID FROM BBS WHERE VisitLoad ORDER BY BBS_ID"_s, {u"3"_s, u"13"_s});
    row("no order", u"UPDATE BBS   SET ListOrder = -1"_s, 4, u"SELECT DISTINCT ListOrder FROM BBS"_s, {u"-1"_s});
    row("order", u"UPDATE BBS   SET ListOrder = "_s + u"5"_s + u" WHERE BBS_ID = "_s + u"15"_s, 1, u"SELECT BBS_ID FROM BBS WHERE ListOrder = 5"_s, {u"15"_s});
    row("order of a separator", u"UPDATE BBS   SET ListOrder = "_s + u"6"_s + u" WHERE BBS_ID = "_s + u"-1"_s, 0, u"SELECT BBS_ID FROM BBS WHERE ListOrder = 6"_s, {});
    row("a mark", u"INSERT INTO Mark VALUES("_s + u" 12"_s + u", '"_s + u"マーク&2"_s + u"', "_s + u"32768"_s + u", "_s + u"-2147483643"_s + u")"_s, 1,
        u"SELECT * FROM Mark WHERE ID = 12"_s, {u"12|マーク&2|32768|-2147483643"_s});
}

void tst_JetsqlSystem::Changes()
{
    QFETCH(QString, statement);
    QFETCH(int, changed);
    QFETCH(QString, query);
    QFETCH(QStringList, rows);
    CSqlBench bench;
    for (const QString& seed : Seed())
        QCOMPARE(bench.Run(seed).ErrorText, QString());
    const CSqlBench::Outcome outcome = bench.Run(statement);
    QCOMPARE(outcome.ErrorText, QString());
    QCOMPARE(outcome.Affected, changed);
    QCOMPARE(bench.Run(query).Rows, rows);
}

// The rows that the program edits must say which table they are of.
void tst_JetsqlSystem::EditableRows_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("table");
    QTest::newRow("properties") << u"SELECT * FROM BBS WHERE BBS_ID = 3"_s << u"BBS"_s;
    QTest::newRow("thread links") << u"SELECT *  FROM Message WHERE BBS_ID = 3   AND RootThread = 0 ORDER BY ID"_s << u"Message"_s;
    QTest::newRow("count") << u"SELECT Count(*) AS 件数  FROM Message"_s << QString();
    QTest::newRow("distinct") << u"SELECT DISTINCT ID FROM Message"_s << QString();
    QTest::newRow("two tables") << u"SELECT Name FROM Message, Mark"_s << QString();
}

void tst_JetsqlSystem::EditableRows()
{
    QFETCH(QString, statement);
    QFETCH(QString, table);
    CSqlBench bench;
    const auto compiled = jetsql::Compile(jetsql::TakeShape(statement), bench);
    QCOMPARE(compiled->EditableTable, table);
    QCOMPARE(compiled->TargetTable, QString());
}

void tst_JetsqlSystem::MessageTwice()
{
    CSqlBench bench;
    const QString statement = Message(3, 5, 0, {u"x"_s, u"y"_s});
    QCOMPARE(bench.Run(statement).ErrorNumber, 0);
    QVERIFY(bench.Run(statement).ErrorNumber != 0);
    QCOMPARE(bench.Run(Message(4, 5, 0, {u"x"_s, u"y"_s})).Affected, 1);
}

// A receive of any length compiles its statement once for read and once for unread messages.
void tst_JetsqlSystem::KnownShapesAreFew()
{
    QSet<QString> keys;
    for (int i = 0; i < 100; ++i) {
        const QString body = u"|"_s.repeated(i) + u"'"_s.repeated(i % 7) + u"本文 \" & Chr(124)"_s;
        keys.insert(jetsql::TakeShape(Message(i, i * 1000, i, {u"s|"_s.repeated(i % 3), body, i, u"False"_s})).Key);
        keys.insert(jetsql::TakeShape(Message(i, i * 1000, i, {u"s"_s, body, i, u"True"_s})).Key);
    }
    QCOMPARE(keys.size(), 2);
}

QTEST_GUILESS_MAIN(tst_JetsqlSystem)
#include "tst_JetsqlSystem.moc"
