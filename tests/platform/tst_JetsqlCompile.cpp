// tests/platform/tst_JetsqlCompile.cpp
// Statements of the dialect with what they give, from the text files in tests/data/sql.

#include "tests/support/CSqlBench.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Each case is a block of lines: "> " the statement (several such lines are joined by a line break), then what is
/// wanted: ": Name Type" each column, "= a|b" each row, "+ n" rows changed, "! number offset" an error,
/// "? name" each parameter that is left unfilled. "@ name" gives the statement a name and keeps it as a saved query.
/// "~ statement" is run before and wants nothing. Cases of one file share nothing: each has a new database.
class tst_JetsqlCompile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Statements_data();
    void Statements();
    void Indexes_data();
    void Indexes();
    void Parameters();
    void HostileText_data();
    void HostileText();
};

namespace {

struct Case
{
    QStringList Before;
    QMap<QString, QString> Queries;
    QString Statement;
    QStringList Wanted;
};

const char* const Rows =
    "BEGIN;"
    "INSERT INTO "
    "BBS(BBS_ID,BBS_Name,ShortName,URL,HowtouseURL,MaxCount,Hitokoto,VisitLoad,ListOrder,DefaultLogFile,Identifier) "
    "VALUES"
    "(3,'けやき掲示板','けやき','http://x/keyaki.cgi','http://x/h',400,-1,-1,0,'keyaki*','keyaki'),"
    "(4,'かえで掲示板','かえで','http://x/kaede.cgi','http://x/h',400,-1,0,2,'kaede*','kaede'),"
    "(6,'すぎ掲示板','すぎ','http://x/sugi.cgi','http://x/h',200,-1,-1,-1,'','sugi');"
    // 37271 is 2002-01-15; 0.53125 is 12:45.
    "INSERT INTO Message VALUES"
    "(3,1,-1,'はじめまして','','a@x','太郎',37271.53125,0,'本文です ABC',1,0),"
    "(3,2,0,'Re: はじめまして','','','花子',37272.25,1,'ａｂｃ がぎぐ',1,2),"
    "(3,3,0,'質問 50%','http://x/','b@x','太郎',37273.0,0,NULL,3,0),"
    "(4,1,0,'HELLO','','','Taro',37274.75,0,'x[1]*y',1,1),"
    "(4,2,-1,'hello','','','ＴＡＲＯ',37274.75,1,'50#',1,0);"
    "INSERT INTO Mark VALUES(1,'マーク&1',128,-2147483643),(2,'マーク&2',32768,-2147483643);"
    "INSERT INTO Version VALUES('BBS','Ver.0.42'),('Message','Ver.0.13'),('Mark','Ver.0.40');COMMIT";

Case ParseBlock(const QStringList& Lines)
{
    Case made;
    QStringList statement;
    QString query;
    for (const QString& line : Lines) {
        const QString rest = line.mid(2);
        if (line.startsWith(u'@')) {
            query = rest;
        } else if (line.startsWith(u'~')) {
            if (query.isEmpty())
                made.Before.append(rest);
            else
                made.Queries[std::exchange(query, {})] = rest;
        } else if (line.startsWith(u'>')) {
            statement.append(rest);
        } else {
            made.Wanted.append(line);
        }
    }
    made.Statement = statement.join(u'\n');
    return made;
}

}

Q_DECLARE_METATYPE(Case)

void tst_JetsqlCompile::Statements_data()
{
    QTest::addColumn<Case>("wanted");
    for (const mdlTable::CBlock& block : mdlTable::Blocks("sql"))
        QTest::newRow(qPrintable(block.Place)) << ParseBlock(block.Lines);
}

void tst_JetsqlCompile::Statements()
{
    QFETCH(Case, wanted);
    CSqlBench bench;
    QCOMPARE(bench.Raw(QString::fromUtf8(Rows)), QString());
    for (auto query = wanted.Queries.cbegin(); query != wanted.Queries.cend(); ++query)
        bench.AddQuery(query.key(), query.value());
    for (const QString& before : wanted.Before) {
        const CSqlBench::Outcome done = bench.Run(before);
        QVERIFY2(done.ErrorNumber == 0, qPrintable(before + u": "_s + done.ErrorText));
    }
    const CSqlBench::Outcome outcome = bench.Run(wanted.Statement);
    QStringList got;
    if (outcome.ErrorNumber == 3061) {
        for (const QString& parameter : outcome.Parameters)
            got.append(u"? "_s + parameter.section(u' ', 0, -2));
    } else if (outcome.ErrorNumber != 0) {
        got.append(u"! %1 %2"_s.arg(outcome.ErrorNumber).arg(outcome.ErrorOffset));
    } else {
        const bool wantsColumns = wanted.Wanted.value(0).startsWith(u':');
        for (const QString& column : outcome.Columns)
            if (wantsColumns)
                got.append(u": "_s + column);
        for (const QString& row : outcome.Rows)
            got.append(u"= "_s + row);
        if (outcome.Columns.isEmpty())
            got.append(u"+ %1"_s.arg(outcome.Affected));
    }
    if (got != wanted.Wanted)
        qInfo().noquote() << outcome.ErrorText;
    QCOMPARE(got.join(u'\n'), wanted.Wanted.join(u'\n'));
}

// What the list and the thread links ask thousands of times must be found by an index.
void tst_JetsqlCompile::Indexes_data()
{
    mdlTable::AddRows<QString, QString>("sql-indexes.json", "Indexes", {"statement", "plan"});
}

void tst_JetsqlCompile::Indexes()
{
    QFETCH(QString, statement);
    QFETCH(QString, plan);
    CSqlBench bench;
    const QString found = bench.Plan(statement);
    QVERIFY2(found.contains(plan) && !found.contains(u"TEMP B-TREE"_s), qPrintable(found));
}

void tst_JetsqlCompile::Parameters()
{
    CSqlBench bench;
    QCOMPARE(bench.Raw(QString::fromUtf8(Rows)), QString());
    const QString sql = u"PARAMETERS [名前] Text, n Long; SELECT ID FROM Message WHERE PostName = [名前] AND PostDate > [いつ] AND ID >= n AND BBS_ID = b ORDER BY ID"_s;
    const auto text = [](const QString& data) { return jetsql::Value::FromText(data); };
    const CSqlBench::Outcome outcome = bench.Run(sql, {{u"名前"_s, text(u"太郎"_s)}, {u"n"_s, text(u"1"_s)}, {u"いつ"_s, text(u"2002/1/16"_s)}, {u"b"_s, text(u" 3 "_s)}});
    QCOMPARE(outcome.ErrorText, QString());
    QCOMPARE(outcome.Rows, QStringList{u"3"_s});
    QCOMPARE(outcome.Parameters, QStringList({u"名前 10"_s, u"n 4"_s, u"いつ 8"_s, u"b 4"_s}));
    QCOMPARE(bench.Run(u"SELECT ID FROM Message WHERE ID = n"_s, {{u"n"_s, text(u"x"_s)}}).ErrorNumber, 3421);
}

void tst_JetsqlCompile::HostileText_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("number");
    const QString select = u"SELECT "_s, parts = QString(10000, u'(');
    QTest::newRow("parentheses") << select + parts + u'1' + QString(10000, u')') << 3360;
    QTest::newRow("open parentheses") << select + parts << 3360;
    QTest::newRow("signs") << select + u"- "_s.repeated(10000) + u'1' << 3360;
    QTest::newRow("not") << select + u"Not "_s.repeated(10000) + u'1' << 3360;
    QTest::newRow("subqueries") << u"SELECT ("_s.repeated(10000) << 3360;
    QTest::newRow("derived") << u"SELECT * FROM ("_s.repeated(10000) << 3360;
    QTest::newRow("calls") << select + u"Abs("_s.repeated(10000) << 3360;
    QTest::newRow("sums") << select + u"1+"_s.repeated(10000) + u'1' << 3071;
    QTest::newRow("many or") << u"SELECT Count(*) FROM Message WHERE ID = 1"_s + u" Or ID = 2"_s.repeated(10000) << 0;
    QTest::newRow("long in") << u"SELECT Count(*) FROM Message WHERE ID In (1"_s + u",2"_s.repeated(10000) + u')' << 0;
    QTest::newRow("joined fields") << select + u"Mark & "_s.repeated(1000) + u"'x' FROM Message"_s << 0;
    QTest::newRow("aliases") << [] {
        QString sql = u"SELECT ID AS a0"_s;
        for (int i = 1; i < 60; ++i)
            sql += u", a%1 & a%1 AS a%2"_s.arg(i - 1).arg(i);
        return sql + u" FROM Message"_s;
    }() << 3360;
    QTest::newRow("name with control character") << select + QChar(2) << 3075;
    QTest::newRow("null character") << select + QChar(0) << 3075;
    QTest::newRow("lone surrogate") << select + QChar(0xD800) << 3061;
    QTest::newRow("empty") << QString() << 3129;
    QTest::newRow("blanks") << u" \r\n\t\u3000"_s << 3129;
    QTest::newRow("large number") << select + QString(100000, u'9') << 6;
}

void tst_JetsqlCompile::HostileText()
{
    QFETCH(QString, statement);
    QFETCH(int, number);
    CSqlBench bench;
    const CSqlBench::Outcome outcome = bench.Run(statement);
    QVERIFY2(outcome.ErrorNumber == number, qPrintable(u"%1 %2"_s.arg(outcome.ErrorNumber).arg(outcome.ErrorText)));
}

QTEST_GUILESS_MAIN(tst_JetsqlCompile)
#include "tst_JetsqlCompile.moc"
