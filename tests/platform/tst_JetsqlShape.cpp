// tests/platform/tst_JetsqlShape.cpp
// What of a statement is its form and what its constants.

#include "platform/jetsql/Compile.h"
#include "platform/jetsql/DateLiteral.h"
#include "platform/text/DateTime.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QString, QString>("sql-shape.json", "Shapes", {"statement", "key", "literals"});
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
    mdlTable::AddRows<QString, int, int>("sql-shape.json", "Refusals", {"statement", "number", "offset"});
    QTest::newRow("placeholder in the text") << u"a = "_s + QChar(2) << 3075 << 4;
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
    mdlTable::AddRows<QString, int>("sql-shape.json", "Types", {"statement", "type"});
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
