// tests/platform/tst_TextNumber.cpp
// Numbers and booleans out of text.

#include "platform/text/Number.h"

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
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const auto row = [](const QString& Text, double Value) { QTest::newRow(qPrintable(Text)) << Text << Value; };
    row(u"5"_s, 5);
    row(u"-5"_s, -5);
    row(u"- 5"_s, -5);
    row(u"5-"_s, -5);
    row(u"+5"_s, 5);
    row(u"(5)"_s, -5);
    row(u"( 1,000.5 )"_s, -1000.5);
    row(u" \t\r\n\v\f\u00A05\u3000"_s, 5);
    row(u"\\1,200"_s, 1200);
    row(u"￥1,200"_s, 1200);
    row(u"-\\5"_s, -5);
    row(u"\\-5"_s, -5);
    row(u"1,2,3"_s, 123);
    row(u"1,"_s, 1);
    row(u"5."_s, 5);
    row(u".5"_s, 0.5);
    row(u"1e3"_s, 1000);
    row(u"1E+3"_s, 1000);
    row(u"1d3"_s, 1000);
    row(u"1.5D-1"_s, 0.15);
    row(u"&H10"_s, 16);
    row(u"&hff"_s, 255);
    row(u"&O17"_s, 15);
    row(u"&HFFFF"_s, 65535);
    row(u"&HFFFFFFFF"_s, -1);
    row(u"１２３"_s, 123);
    row(u"－１．５"_s, -1.5);
    row(u"1e-400"_s, 0);
    row(u"0e999999999999999999999"_s, 0);
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

void tst_TextNumber::NoNumber_data()
{
    QTest::addColumn<QString>("text");
    for (const QString& text :
         {u""_s,     u"   "_s,   u"abc"_s,        u"."_s,     u"-"_s,     u",1"_s,    u"1.2.3"_s, u"1.5,0"_s, u"1 2"_s,
          u"0x10"_s, u"10%"_s,   u"1e"_s,         u"1e+"_s,   u"1 e3"_s,  u"--5"_s,   u"-5-"_s,   u"(5"_s,    u"5)"_s,
          u"(-5)"_s, u"\\\\5"_s, u"5\\"_s,        u"&H"_s,    u"&HG"_s,   u"-&H10"_s, u"&H1.5"_s, u"&O8"_s,   u"十二"_s,
          u"①"_s,    u"True"_s,  u"2002/01/15"_s, u"12:34"_s, u"1e3.5"_s, u"()"_s,    u"nan"_s,   u"inf"_s,   u"5円"_s})
        QTest::newRow(qPrintable(text)) << text;
    QTest::newRow("NUL") << QString(u"1\0"_s);
}

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
    QTest::addColumn<QString>("text");
    QTest::newRow("exponent") << u"1e400"_s;
    QTest::newRow("negative") << u"-1e400"_s;
    QTest::newRow("exponent beyond all") << u"1e99999999999999999999"_s;
    QTest::newRow("digits") << u"1"_s + QString(400, u'0');
    QTest::newRow("digits behind zeros") << u"000"_s + QString(400, u'9') + u"e-1"_s;
    QTest::newRow("hexadecimal") << u"&H1FFFFFFFF"_s;
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
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isLong");
    QTest::addColumn<qint32>("value");
    const auto row = [](const QString& Text, bool IsLong, qint32 Value) {
        QTest::newRow(qPrintable(Text)) << Text << IsLong << Value;
    };
    row(u"0.5"_s, true, 0);
    row(u"1.5"_s, true, 2);
    row(u"2.5"_s, true, 2);
    row(u"3.5"_s, true, 4);
    row(u"-1.5"_s, true, -2);
    row(u"-2.5"_s, true, -2);
    row(u"2147483647.4"_s, true, 2147483647);
    row(u"2147483647.5"_s, false, 0);
    row(u"2147483648"_s, false, 0);
    row(u"-2147483648"_s, true, -2147483647 - 1);
    row(u"-2147483649"_s, false, 0);
    row(u"1e400"_s, false, 0);
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
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("wanted"); // -1: none
    const auto row = [](const QString& Text, int Wanted) { QTest::newRow(qPrintable(Text)) << Text << Wanted; };
    row(u"True"_s, 1);
    row(u"true"_s, 1);
    row(u"FALSE"_s, 0);
    row(u"#TRUE#"_s, 1);
    row(u"#FALSE#"_s, 0);
    row(u"#true#"_s, -1);
    row(u"0"_s, 0);
    row(u"0.1"_s, 1);
    row(u"-1"_s, 1);
    row(u"yes"_s, -1);
    row(u""_s, -1);
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
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const auto row = [](const QString& Text, double Value) { QTest::newRow(qPrintable(Text)) << Text << Value; };
    row(u" 1 2x"_s, 12);
    row(u"1,234"_s, 1);
    row(u"-2,3"_s, -2);
    row(u"abc"_s, 0);
    row(u""_s, 0);
    row(u"24 and 57"_s, 24);
    row(u"12 34th"_s, 1234);
    row(u"1\t2\n3"_s, 123);
    row(u"1.5.7"_s, 1.5);
    row(u".5"_s, 0.5);
    row(u"."_s, 0);
    row(u"-"_s, 0);
    row(u"-7"_s, -7);
    row(u"1e3"_s, 1000);
    row(u"1e"_s, 1);
    row(u"1e+"_s, 1);
    row(u"1d-1"_s, 0.1);
    row(u"&HFFFF"_s, -1);
    row(u"&HFFFF&"_s, 65535);
    row(u"&H10000"_s, 65536);
    row(u"&HFFFFFFFF"_s, -1);
    row(u"&O17"_s, 15);
    row(u"&Hxyz"_s, 0);
    row(u"１２"_s, 0);
    row(u"1e999"_s, HUGE_VAL);
}

void tst_TextNumber::Val()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(text::Val(text), value);
}

QTEST_GUILESS_MAIN(tst_TextNumber)
#include "tst_TextNumber.moc"
