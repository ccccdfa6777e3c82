// tests/platform/tst_TextNumber.cpp
// Numbers and booleans out of text.

#include "platform/text/Number.h"
#include "tests/support/Table.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

class tst_TextNumber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Double_data();
    void Double();
    void NoNumber_data();
    void NoNumber();
    void TooLarge_data();
    void TooLarge();
    void Long_data();
    void Long();
    void Integer();
    void Single();
    void Boolean_data();
    void Boolean();
    void Val_data();
    void Val();
};

void tst_TextNumber::Double_data()
{
    mdlTable::AddRows<QString, double>("text-number.json", "Double", {"text", "value"});
    QTest::newRow("many digits, small exponent") << u"1"_s + QString(400, u'0') + u"e-400"_s << 1.0;
    QTest::newRow("many zeros behind the point") << u"0."_s + QString(400, u'0') + u"1"_s << 0.0;
}

void tst_TextNumber::Double()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    const std::optional<double> read = text::TextToDouble(text);
    QVERIFY(read);
    QCOMPARE(*read, value);
    QVERIFY(text::IsNumeric(text));
    QVERIFY(text::HasNumberForm(text));
}

void tst_TextNumber::NoNumber_data() { mdlTable::AddRows<QString>("text-number.json", "NoNumber", {"text"}); }

void tst_TextNumber::NoNumber()
{
    QFETCH(QString, text);
    QVERIFY(!text::TextToDouble(text));
    QVERIFY(!text::TextToLong(text));
    QVERIFY(!text::IsNumeric(text));
    QVERIFY(!text::HasNumberForm(text));
}

void tst_TextNumber::TooLarge_data()
{
    mdlTable::AddRows<QString>("text-number.json", "TooLarge", {"text"});
    QTest::newRow("digits") << u"1"_s + QString(400, u'0');
    QTest::newRow("digits behind zeros") << u"000"_s + QString(400, u'9') + u"e-1"_s;
    QTest::newRow("long hexadecimal") << u"&H"_s + QString(100, u'F');
}

void tst_TextNumber::TooLarge()
{
    QFETCH(QString, text);
    QVERIFY(!text::TextToDouble(text));
    QVERIFY(text::HasNumberForm(text));
}

void tst_TextNumber::Long_data()
{
    mdlTable::AddRows<QString, bool, qint32>("text-number.json", "Long", {"text", "isLong", "value"});
    QTest::newRow("least") << u"-2147483648"_s << true << std::numeric_limits<qint32>::min();
}

void tst_TextNumber::Long()
{
    QFETCH(QString, text);
    QFETCH(bool, isLong);
    QFETCH(qint32, value);
    const std::optional<qint32> read = text::TextToLong(text);
    QCOMPARE(read.has_value(), isLong);
    QCOMPARE(read.value_or(0), value);
}

void tst_TextNumber::Integer()
{
    QCOMPARE(text::TextToInteger(u"32767.4"), std::optional<qint16>(qint16(32767)));
    QCOMPARE(text::TextToInteger(u"-32768.5"), std::optional<qint16>(qint16(-32768)));
    QVERIFY(!text::TextToInteger(u"32767.5"));
    QVERIFY(!text::TextToInteger(u"40000"));
}

void tst_TextNumber::Single()
{
    QCOMPARE(text::TextToSingle(u"0.1"), std::optional<float>(0.1f));
    QCOMPARE(text::TextToSingle(u"-3e38"), std::optional<float>(-3e38f));
    QVERIFY(!text::TextToSingle(u"3.5e38"));
}

void tst_TextNumber::Boolean_data()
{
    // wanted: -1: none
    mdlTable::AddRows<QString, int>("text-number.json", "Boolean", {"text", "wanted"});
}

void tst_TextNumber::Boolean()
{
    QFETCH(QString, text);
    QFETCH(int, wanted);
    const std::optional<bool> read = text::TextToBoolean(text);
    QCOMPARE(read ? int(*read) : -1, wanted);
}

void tst_TextNumber::Val_data()
{
    mdlTable::AddRows<QString, double>("text-number.json", "Val", {"text", "value"});
    QTest::newRow("too large") << u"1e999"_s << HUGE_VAL;
}

void tst_TextNumber::Val()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(text::Val(text), value);
}

QTEST_GUILESS_MAIN(tst_TextNumber)
#include "tst_TextNumber.moc"
