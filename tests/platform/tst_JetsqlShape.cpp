// tests/platform/tst_JetsqlShape.cpp
// What of a statement is its form and what its constants.

#include "platform/jetsql/Compile.h"
#include "platform/jetsql/DateLiteral.h"
#include "platform/text/DateTime.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_JetsqlShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Shapes_data();
    void Shapes();
    void Refusals_data();
    void Refusals();
    void StoredMessagesShareAShape();
    void LongBodies();
    void Offsets();
    void EqualLiterals();
    void DateLiteralsAreSerials();
    void Types_data();
    void Types();
};

namespace {

// The key with its placeholders made visible.
QString Visible(QString Key)
{
    Key.truncate(Key.indexOf(QChar(5)) < 0 ? Key.size() : Key.indexOf(QChar(5)));
    return Key.replace(QChar(1), u"<text>"_s).replace(QChar(2), u"<long>"_s).replace(QChar(3), u"<double>"_s).replace(QChar(4), u"<date>"_s);
}

QString Visible(const std::vector<jetsql::Value>& Literals)
{
    QStringList shown;
    for (const jetsql::Value& literal : Literals)
        shown.append(literal.ToText());
    return shown.join(u';');
}

QString MessageStatement(int Id, const QString& Body)
{
    return u"INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, RootThread, Mark)"
           u" VALUES(3,%1,False,'it''s','','','太郎',#2002/01/15 12:34#,0,'%2',0,0)"_s.arg(Id).arg(Body);
}

}

void tst_JetsqlShape::Shapes_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("literals");
    const auto row = [](const char* name, const QString& statement, const QString& key, const QString& literals) {
        QTest::newRow(name) << statement << key << literals;
    };
    row("numbers", u"a=1 b=2.5 c=.5 d=1E3"_s, u"a=<long> b=<double> c=<double> d=<double>"_s, u"1;2.5;0.5;1000"_s);
    row("leading zeros", u"a = 003"_s, u"a = <long>"_s, u"3"_s);
    row("digits in a name", u"a1=b2c"_s, u"a1=b2c"_s, QString());
    row("too large for Long", u"2147483647 2147483648"_s, u"<long> <double>"_s, u"2147483647;2147483648"_s);
    row("radix", u"x And &HFF, (&o17)"_s, u"x And <long>, (<long>)"_s, u"255;15"_s);
    row("and before a name", u"x&Hallo & x&H1"_s, u"x&Hallo & x&H1"_s, QString());
    row("quotes", u"'a''b' \"c\"\"d\" 'e\"f'"_s, u"<text> <text> <text>"_s, u"a'b;c\"d;e\"f"_s);
    row("empty text", u"('','')"_s, u"(<text>,<text>)"_s, u";"_s);
    row("line breaks in a text", u"'a\r\nb'"_s, u"<text>"_s, u"a\r\nb"_s);
    row("brackets", u"[a 'b 1] = `c 2`"_s, u"[a 'b 1] = `c 2`"_s, QString());
    row("date", u"#2002/01/15 12:34#"_s, u"<date>"_s, u"2002/01/15 12:34:00"_s);
    row("date between words", u"Between#1/15/2002#And#1/16/2002#"_s, u"Between<date>And<date>"_s, u"2002/01/15;2002/01/16"_s);
    row("chain", u"'a' & Chr(124) & 'b'"_s, u"<text>"_s, u"a|b"_s);
    row("chain without blanks", u"'a'&chr$( 13 )&Chr(10)&\"b\""_s, u"<text>"_s, u"a\r\nb"_s);
    row("chain begun by Chr", u"Chr(65) & 'b'"_s, u"<text>"_s, u"Ab"_s);
    row("chain broken by a name", u"'a' & 'b' & c & 'd' & 'e'"_s, u"<text> & c & <text>"_s, u"ab;de"_s);
    row("sum before a chain", u"1 + 'a' & 'b'"_s, u"<long> + <text> & <text>"_s, u"1;a;b"_s);
    row("sum after a chain", u"'a' & '1' + 2"_s, u"<text> & <text> + <long>"_s, u"a;1;2"_s);
    row("Mod after a chain", u"'a' & '7' & '8' mod 2"_s, u"<text> & <text> mod <long>"_s, u"a7;8;2"_s);
    row("Chr of a field", u"Chr(n) & Chr(300) & t.Chr(65)"_s, u"Chr(n) & Chr(<long>) & t.Chr(<long>)"_s, u"300;65"_s);
    row("TOP", u"SELECT TOP 10 x"_s, u"SELECT TOP 10 x"_s, QString());
    row("TOP of a subquery", u"(SELECT top 5 PERCENT x WHERE y = 5)"_s, u"(SELECT top 5 PERCENT x WHERE y = <long>)"_s, u"5"_s);
    row("positions", u"ORDER BY 2, x, 1 DESC"_s, u"ORDER BY 2, x, 1 DESC"_s, QString());
    row("order by a call", u"ORDER BY Left(x, 3), 2"_s, u"ORDER BY Left(x, <long>), 2"_s, u"3"_s);
    row("after an ordered subquery", u"(SELECT x ORDER BY 1), 7"_s, u"(SELECT x ORDER BY 1), <long>"_s, u"7"_s);
    row("sizes of a definition", u"CREATE TABLE t (a TEXT(50))"_s, u"CREATE TABLE t (a TEXT(50))"_s, QString());
    row("full-width blank and kanji", u"SELECT\u3000件数 '表ソ'"_s, u"SELECT\u3000件数 <text>"_s, u"表ソ"_s);
}

void tst_JetsqlShape::Shapes()
{
    QFETCH(QString, statement);
    QFETCH(QString, key);
    QFETCH(QString, literals);
    const jetsql::Shape shape = jetsql::TakeShape(statement);
    QCOMPARE(Visible(shape.Key), key);
    QCOMPARE(Visible(shape.Literals), literals);
}

void tst_JetsqlShape::Refusals_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("offset");
    QTest::newRow("open text") << u"a = 'b"_s << 3075 << 4;
    QTest::newRow("text that ends in a doubled quote") << u"a = 'b''"_s << 3075 << 4;
    QTest::newRow("second link open") << u"'a' & 'b"_s << 3075 << 6;
    QTest::newRow("open bracket") << u"a [b"_s << 3126 << 2;
    QTest::newRow("open date") << u"a #2002/1/1"_s << 3075 << 2;
    QTest::newRow("no date") << u"a #x#"_s << 3075 << 2;
    QTest::newRow("placeholder in the text") << u"a = "_s + QChar(2) << 3075 << 4;
    QTest::newRow("bar outside of a text") << u"a | b"_s << 3075 << 2;
    QTest::newRow("beyond Double") << u"a 1E999"_s << 6 << 2;
    QTest::newRow("beyond 32 bits") << u"&H123456789"_s << 6 << 0;
}

void tst_JetsqlShape::Refusals()
{
    QFETCH(QString, statement);
    QFETCH(int, number);
    QFETCH(int, offset);
    try {
        jetsql::TakeShape(statement);
        QFAIL("not refused");
    } catch (const jetsql::Error& refused) {
        QCOMPARE(refused.Number, number);
        QCOMPARE(refused.Offset, offset);
        QVERIFY(!refused.Description.isEmpty());
        QCOMPARE(refused.Source, u"Tavora.Engine"_s);
    }
}

void tst_JetsqlShape::StoredMessagesShareAShape()
{
    const jetsql::Shape first = jetsql::TakeShape(MessageStatement(1, u"本文"_s));
    const jetsql::Shape second = jetsql::TakeShape(MessageStatement(2147483647, u"a' & Chr(124) & 'b' & Chr(124) & '"_s));
    QCOMPARE(first.Key, second.Key);
    QCOMPARE(first.Literals.size(), size_t(11));
    QCOMPARE(Visible(first.Literals), u"3;1;it's;;;太郎;2002/01/15 12:34:00;0;本文;0;0"_s);
    QCOMPARE(second.Literals[8].ToText(), u"a|b|"_s);
}

void tst_JetsqlShape::LongBodies()
{
    const QString body = QString(5'000'000, u'あ') + u'|' + QString(5'000'000, u'\\');
    QString quoted = body;
    quoted.replace(u'|', u"' & Chr(124) & '"_s);
    const jetsql::Shape shape = jetsql::TakeShape(MessageStatement(1, quoted));
    QVERIFY(shape.Literals[8].TextRef() == body);
    const QString bars = u"' & Chr(124) & '"_s.repeated(100'000);
    QCOMPARE(jetsql::TakeShape(MessageStatement(1, bars)).Literals[8].TextRef(), QString(100'000, u'|'));
}

// Places in the key lead back to places in the statement.
void tst_JetsqlShape::Offsets()
{
    const jetsql::Shape shape = jetsql::TakeShape(u"x = 'abc' & 'd' + y = 12 z"_s);
    QCOMPARE(shape.Offsets, std::vector<int>({4, 9, 12, 15, 22, 24}));
}

void tst_JetsqlShape::EqualLiterals()
{
    const auto key = [](int first, int second) {
        return jetsql::TakeShape(u"SELECT Left(a, %1) FROM t GROUP BY Left(a, %2)"_s.arg(first).arg(second)).Key;
    };
    QCOMPARE(key(2, 2), key(3, 3));
    QVERIFY(key(2, 2) != key(2, 3));
}

// The engine's own way to count days must be bit for bit that of the rest, or equal dates would differ.
void tst_JetsqlShape::DateLiteralsAreSerials()
{
    const QDateTime begin(QDate(100, 1, 1), QTime(0, 0), Qt::UTC);
    for (qint64 step = 0; step < 20'000; ++step) {
        const QDateTime moment = begin.addSecs(step * 15'616'391);
        if (moment.date().year() > 9999)
            break;
        const auto read = jetsql::ReadDateLiteral(moment.toString(u"yyyy/MM/dd h:mm:ss"_s));
        const bool isYearOfTwoDigits = moment.date().year() < 100;
        QVERIFY2(isYearOfTwoDigits || (read && *read == text::ToSerial(moment)), qPrintable(moment.toString()));
    }
}

void tst_JetsqlShape::Types_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("type");
    QTest::newRow("select") << u" select * from t"_s << 0;
    QTest::newRow("select with union inside") << u"SELECT (SELECT 1 UNION SELECT 2)"_s << 0;
    QTest::newRow("union") << u"SELECT 1 UNION ALL SELECT 2"_s << 128;
    QTest::newRow("enclosed union") << u"(SELECT 1) UNION (SELECT 2)"_s << 128;
    QTest::newRow("make table") << u"SELECT * INTO b FROM a"_s << 80;
    QTest::newRow("append") << u"INSERT INTO a SELECT * FROM b UNION SELECT * FROM c"_s << 64;
    QTest::newRow("update") << u"UPDATE a SET b = 1"_s << 48;
    QTest::newRow("delete") << u"DELETE FROM a"_s << 32;
    QTest::newRow("create") << u"CREATE TABLE a (b LONG)"_s << 96;
    QTest::newRow("alter") << u"ALTER TABLE a ADD COLUMN b TEXT(5)"_s << 96;
    QTest::newRow("drop") << u"DROP INDEX i ON t"_s << 96;
    QTest::newRow("crosstab") << u"TRANSFORM Sum(a) SELECT b FROM c GROUP BY b PIVOT d IN ('x')"_s << 16;
    QTest::newRow("parameters do not count") << u"PARAMETERS a Long; DELETE FROM b WHERE c = a"_s << 32;
    QTest::newRow("procedure") << u"EXECUTE x"_s << 224;
    QTest::newRow("nothing") << QString() << -1;
    QTest::newRow("anything") << u"hello"_s << -1;
}

void tst_JetsqlShape::Types()
{
    QFETCH(QString, statement);
    QFETCH(int, type);
    int got = -1;
    try {
        got = int(jetsql::TypeOf(statement));
    } catch (const jetsql::Error& refused) {
        QCOMPARE(refused.Number, 3129);
    }
    QCOMPARE(got, type);
}

QTEST_GUILESS_MAIN(tst_JetsqlShape)
#include "tst_JetsqlShape.moc"
