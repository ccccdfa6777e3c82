// tests/platform/tst_TextDateTime.cpp
// Dates out of text, day numbers and back.

#include "platform/text/DateTime.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QString>("text-date.json", "Read", {"text", "wanted"});
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
    mdlTable::AddRows<QString>("text-date.json", "Refused", {"text"});
    QTest::newRow("very long") << u"2002/01/15"_s + QString(100'000, u' ');
}

void tst_TextDateTime::Refused()
{
    QFETCH(QString, text);
    const std::optional<double> serial = text::TextToDate(text, QDate(2010, 6, 20));
    QVERIFY2(!serial, qPrintable(text::FromSerial(serial.value_or(0)).toString()));
}

void tst_TextDateTime::TimeAlone_data()
{
    mdlTable::AddRows<QString, int>("text-date.json", "TimeAlone", {"text", "seconds"});
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
