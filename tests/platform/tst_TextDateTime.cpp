// tests/platform/tst_TextDateTime.cpp
// Dates out of text, day numbers and back.

#include "platform/text/DateTime.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextDateTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Read_data();
    void Read();
    void Refused_data();
    void Refused();
    void TimeAlone_data();
    void TimeAlone();
    void Serial_data();
    void Serial();
    void FromSerialRounds();
    void FromSerialLimits();
    void NoTimeZone();
};

/// Moments as "2002-01-15 12:34:00"; today is 2010-06-20.
void tst_TextDateTime::Read_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("wanted");
    const auto row = [](const QString& Text, const QString& Wanted) {
        QTest::newRow(qPrintable(Text)) << Text << Wanted;
    };
    row(u"2002/01/15 12:34"_s, u"2002-01-15 12:34:00"_s);
    row(u"2002-1-15 12:34:00"_s, u"2002-01-15 12:34:00"_s);
    row(u"02/01/15 12:34"_s, u"2002-01-15 12:34:00"_s);
    row(u"12:34 2002/01/15"_s, u"2002-01-15 12:34:00"_s);
    row(u"2002/01/15"_s, u"2002-01-15 00:00:00"_s);
    row(u" 2002 / 1 / 5\t9 : 05 "_s, u"2002-01-05 09:05:00"_s);
    row(u"2002/13/01"_s, u"2002-01-13 00:00:00"_s);
    row(u"1/15/2002"_s, u"2002-01-15 00:00:00"_s);
    row(u"15/1/2002"_s, u"2002-01-15 00:00:00"_s);
    row(u"1/15"_s, u"2010-01-15 00:00:00"_s);
    row(u"2002/1"_s, u"2002-01-01 00:00:00"_s);
    row(u"29/1/1"_s, u"2029-01-01 00:00:00"_s);
    row(u"30/1/1"_s, u"1930-01-01 00:00:00"_s);
    row(u"100/1/1"_s, u"0100-01-01 00:00:00"_s);
    row(u"9999/12/31 23:59:59"_s, u"9999-12-31 23:59:59"_s);
    row(u"2000/02/29"_s, u"2000-02-29 00:00:00"_s);
    row(u"2002,1,15"_s, u"2002-01-15 00:00:00"_s);
    row(u"2002/1/15 5 am"_s, u"2002-01-15 05:00:00"_s);
    row(u"2002/1/15 12:05 AM"_s, u"2002-01-15 00:05:00"_s);
    row(u"2002/1/15 12:05PM"_s, u"2002-01-15 12:05:00"_s);
    row(u"2002/1/15 13:00 AM"_s, u"2002-01-15 13:00:00"_s);
    row(u"2002/1/15 13:00 PM"_s, u"2002-01-15 13:00:00"_s);
    row(u"2002/1/15 3:25 p"_s, u"2002-01-15 15:25:00"_s);
    row(u"2002/1/15 午後3:25"_s, u"2002-01-15 15:25:00"_s);
    row(u"2002/1/15 3:25 午後"_s, u"2002-01-15 15:25:00"_s);
    row(u"2002年1月15日"_s, u"2002-01-15 00:00:00"_s);
    row(u"2002年1月15日 9時5分"_s, u"2002-01-15 09:05:00"_s);
    row(u"2002年1月15日9時5分7秒"_s, u"2002-01-15 09:05:07"_s);
    row(u"2002年1月15日9時"_s, u"2002-01-15 09:00:00"_s);
    row(u"1月15日"_s, u"2010-01-15 00:00:00"_s);
    row(u"2002年1月"_s, u"2002-01-01 00:00:00"_s);
    row(u"平成14年1月15日"_s, u"2002-01-15 00:00:00"_s);
    row(u"平成 14 年 1 月 15 日"_s, u"2002-01-15 00:00:00"_s);
    row(u"平成元年1月8日"_s, u"1989-01-08 00:00:00"_s);
    row(u"H14-1-15"_s, u"2002-01-15 00:00:00"_s);
    row(u"昭和64年1月7日"_s, u"1989-01-07 00:00:00"_s);
    row(u"令和1/5/1"_s, u"2019-05-01 00:00:00"_s);
    row(u"S60.8.15 9.05"_s, u"1985-08-15 09:05:00"_s);
    row(u"15-Jan-2002"_s, u"2002-01-15 00:00:00"_s);
    row(u"January 15, 2002 9:05 PM"_s, u"2002-01-15 21:05:00"_s);
    row(u"12:34 15 aug. 02"_s, u"2002-08-15 12:34:00"_s);
    row(u"2002/Mar/3"_s, u"2002-03-03 00:00:00"_s);
    row(u"May 5"_s, u"2010-05-05 00:00:00"_s);
    row(u"5 May"_s, u"2010-05-05 00:00:00"_s);
    row(u"Sep 2002"_s, u"2002-09-01 00:00:00"_s);
    row(u"２００２／０１／１５　１２：３４"_s, u"2002-01-15 12:34:00"_s);
}

void tst_TextDateTime::Read()
{
    QFETCH(QString, text);
    QFETCH(QString, wanted);
    const std::optional<double> serial = text::TextToDate(text, QDate(2010, 6, 20));
    QVERIFY(serial);
    QCOMPARE(text::FromSerial(*serial).toString(u"yyyy-MM-dd HH:mm:ss"), wanted);
}

void tst_TextDateTime::Refused_data()
{
    QTest::addColumn<QString>("text");
    for (const QString& text : {u"2002/02/29"_s,
                                u"2002/04/31"_s,
                                u"2002/01/32"_s,
                                u"2002/01/1512:34"_s,
                                u"2002/01/15 12"_s,
                                u"2002/01/15 12:34:56.789"_s,
                                u"2002-01-15T12:34:56"_s,
                                u"24:00"_s,
                                u"12:60"_s,
                                u"12:00:60"_s,
                                u"20020115"_s,
                                u"15-Foo-2002"_s,
                                u"31-Feb-2002"_s,
                                u"Jan"_s,
                                u"Jan Feb 2002"_s,
                                u"Janu 15 2002"_s,
                                u"Jan:15"_s,
                                u"5"_s,
                                u""_s,
                                u"   "_s,
                                u"abc"_s,
                                u"2002//01/01"_s,
                                u"2002/01/"_s,
                                u"2002/01/15 12:"_s,
                                u"/1/15"_s,
                                u"2002/01/15(火) 12:34"_s,
                                u"Wed, 15 Jan 2002 00:00:00 GMT"_s,
                                u"1/2/3/4"_s,
                                u"1 2 3 4"_s,
                                u"12:34 12:35"_s,
                                u"99/99/99"_s,
                                u"99999/1/1"_s,
                                u"10000/1/1"_s,
                                u"0/0"_s,
                                u"2002/0/1"_s,
                                u"am 5"_s,
                                u"pm"_s,
                                u"5 am pm"_s,
                                u"2002/01/15 am"_s,
                                u"午後"_s,
                                u"2002年13月1日"_s,
                                u"15日"_s,
                                u"2002年"_s,
                                u"平成"_s,
                                u"平成0年1月1日"_s,
                                u"平成14"_s,
                                u"H 14"_s,
                                u"1月2年"_s,
                                u"12分"_s,
                                u"-5"_s,
                                u"2002/1/15 -5:00"_s,
                                u"1,5,/"_s,
                                u"2002.01.15"_s,
                                u"元年1月1日"_s,
                                u"5:年1"_s})
        QTest::newRow(qPrintable(text)) << text;
    QTest::newRow("very long") << u"2002/01/15"_s + QString(100'000, u' ');
    QTest::newRow("NUL") << QString(u"2002/01/15\0"_s);
}

void tst_TextDateTime::Refused()
{
    QFETCH(QString, text);
    const std::optional<double> serial = text::TextToDate(text, QDate(2010, 6, 20));
    QVERIFY2(!serial, qPrintable(text::FromSerial(serial.value_or(0)).toString()));
}

void tst_TextDateTime::TimeAlone_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("seconds");
    QTest::newRow("seconds") << u"12:34:56"_s << 45296;
    QTest::newRow("short") << u"7:5"_s << 25500;
    QTest::newRow("point") << u"12.34"_s << 45240;
    QTest::newRow("designator") << u"5 am"_s << 18000;
    QTest::newRow("noon") << u"12 pm"_s << 43200;
    QTest::newRow("midnight") << u"12 am"_s << 0;
    QTest::newRow("last second") << u"23:59:59"_s << 86399;
}

void tst_TextDateTime::TimeAlone()
{
    QFETCH(QString, text);
    QFETCH(int, seconds);
    const std::optional<double> serial = text::TextToDate(text);
    QVERIFY(serial);
    QCOMPARE(*serial, seconds / 86400.0);
}

void tst_TextDateTime::Serial_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<double>("serial");
    const auto row = [](const char* Name, QDate Date, QTime Time, double Serial) {
        QTest::newRow(Name) << QDateTime(Date, Time, Qt::UTC) << Serial;
    };
    row("day 0", QDate(1899, 12, 30), QTime(0, 0), 0);
    row("morning of day 0", QDate(1899, 12, 30), QTime(6, 0), 0.25);
    row("day before", QDate(1899, 12, 29), QTime(6, 0), -1.25);
    row("year 2000", QDate(2000, 1, 1), QTime(12, 0), 36526.5);
    row("first day", QDate(100, 1, 1), QTime(0, 0), -657434);
    row("last day", QDate(9999, 12, 31), QTime(18, 0), 2958465.75);
}

void tst_TextDateTime::Serial()
{
    QFETCH(QDateTime, moment);
    QFETCH(double, serial);
    QCOMPARE(text::ToSerial(moment), serial);
    QCOMPARE(text::FromSerial(serial), moment);
}

void tst_TextDateTime::FromSerialRounds()
{
    QCOMPARE(text::FromSerial(36526 + 0.4 / 86400).time(), QTime(0, 0, 0));
    QCOMPARE(text::FromSerial(36526 + 0.6 / 86400).time(), QTime(0, 0, 1));
    QCOMPARE(text::FromSerial(36525 + 86399.7 / 86400), QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC));
    QCOMPARE(text::FromSerial(-1 - 86399.7 / 86400), QDateTime(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC));
    QCOMPARE(text::FromSerial(-0.25).time(), QTime(6, 0));
}

void tst_TextDateTime::FromSerialLimits()
{
    QVERIFY(text::FromSerial(-657434.99).isValid());
    QVERIFY(!text::FromSerial(-657435).isValid());
    QVERIFY(!text::FromSerial(2958466).isValid());
    QVERIFY(!text::FromSerial(2958465.9999999).isValid()); // would round into the next year
    QVERIFY(!text::FromSerial(1e300).isValid());
    QVERIFY(!text::FromSerial(qQNaN()).isValid());
    QVERIFY(!text::FromSerial(-qInf()).isValid());
    QCOMPARE(text::ToSerial(QDateTime()), 0.0);
}

void tst_TextDateTime::NoTimeZone()
{
    // 02:30 of that night does not exist in Berlin; the database keeps wall clocks, not moments.
    qputenv("TZ", "Europe/Berlin");
    const QDateTime moment = text::FromSerial(text::TextToDate(u"2002/03/31 02:30").value_or(0));
    QCOMPARE(moment.time(), QTime(2, 30));
    QCOMPARE(text::ToSerial(QDateTime(QDate(2002, 7, 1), QTime(12, 0))), 37438.5);
}

QTEST_GUILESS_MAIN(tst_TextDateTime)
#include "tst_TextDateTime.moc"
