// tests/platform/tst_JetsqlSystem.cpp
// Every statement that the program itself sends, joined from its pieces as the program joins them.

#include "tests/support/CSqlBench.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QStringList>("sql-system.json", "Queries", {"statement", "rows"});
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
    mdlTable::AddRows<QString, int, QString, QStringList>("sql-system.json", "Changes",
                                                          {"statement", "changed", "query", "rows"});
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
    mdlTable::AddRows<QString, QString>("sql-system.json", "EditableRows", {"statement", "table"});
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
