// tests/platform/tst_TextFormat.cpp
// Dates, numbers and texts by pattern.

#include "platform/text/DateTime.h"
#include "platform/text/Format.h"

#include <QTest>

#include <cfloat>

using namespace Qt::StringLiterals;

class tst_TextFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void DateFields_data();
    void DateFields();
    void Dates_data();
    void Dates();
    void Numbers_data();
    void Numbers();
    void Texts_data();
    void Texts();
    void Plain_data();
    void Plain();
    void SinglePlain();
    void General();
    void BadInput();
};

/// All of Saturday 2002-01-05 09:03:07.
void tst_TextFormat::DateFields_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("wanted");
    const auto row = [](const QString& Pattern, const QString& Wanted) {
        QTest::newRow(qPrintable(Pattern)) << Pattern << Wanted;
    };
    row(u"d dd"_s, u"5 05"_s);
    row(u"ddd dddd"_s, u"Sat Saturday"_s);
    row(u"aaa aaaa"_s, u"土 土曜日"_s);
    row(u"ddddd|dddddd"_s, u"2002/01/05|2002年1月5日"_s);
    row(u"w ww"_s, u"7 1"_s);
    row(u"m mm mmm mmmm oooo"_s, u"1 01 Jan January 1月"_s);
    row(u"q y"_s, u"1 5"_s);
    row(u"yy yyyy"_s, u"02 2002"_s);
    row(u"yyy"_s, u"025"_s);
    row(u"g gg ggg"_s, u"H 平 平成"_s);
    row(u"e ee"_s, u"14 14"_s);
    row(u"ggge年m月d日"_s, u"平成14年1月5日"_s);
    row(u"h hh n nn s ss"_s, u"9 09 3 03 7 07"_s);
    row(u"ttttt"_s, u"9:03:07"_s);
    row(u"c"_s, u"2002/01/05 9:03:07"_s);
    row(u"h AM/PM"_s, u"9 AM"_s);
    row(u"h am/pm"_s, u"9 am"_s);
    row(u"h A/P a/p"_s, u"9 A a"_s);
    row(u"AMPM h:nn"_s, u"午前 9:03"_s);
    row(u"yyyy/mm/dd hh:nn"_s, u"2002/01/05 09:03"_s);
    row(u"YYYY/MM/DD HH:MM"_s, u"2002/01/05 09:03"_s);
    row(u"\\d\"dd\"d"_s, u"ddd5"_s);
    row(u"d\"日"_s, u"5日"_s);
    row(u"d\\"_s, u"5"_s);
    row(u"yyyy年mm月dd日(aaa)"_s, u"2002年01月05日(土)"_s);
    row(u"hh時mm分"_s, u"09時03分"_s);
    row(u"Short Date"_s, u"2002/01/05"_s);
    row(u"long date"_s, u"2002年1月5日"_s);
    row(u"Medium Time"_s, u"09:03 午前"_s);
    row(u"General Date"_s, u"2002/01/05 9:03:07"_s);
    row(u"Short Time"_s, u"09:03"_s);
    row(u"日付"_s, u"日付"_s);
    row(u"0"_s, u"37261"_s); // a number pattern takes the day number
    row(u""_s, u"2002/01/05 9:03:07"_s);
}

void tst_TextFormat::DateFields()
{
    QFETCH(QString, pattern);
    QFETCH(QString, wanted);
    const double serial = text::ToSerial(QDateTime(QDate(2002, 1, 5), QTime(9, 3, 7), Qt::UTC));
    QCOMPARE(text::FormatDate(serial, pattern), wanted);
}

void tst_TextFormat::Dates_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("wanted");
    const auto row = [](QDate Date, QTime Time, const QString& Pattern, const QString& Wanted) {
        QTest::newRow(qPrintable(Date.toString(Qt::ISODate) + u' ' + Pattern))
            << QDateTime(Date, Time, Qt::UTC) << Pattern << Wanted;
    };
    const QDate first(1900, 1, 1);
    const QTime time(12, 36);
    row(first, time, u"hh:mm"_s, u"12:36"_s);
    row(first, time, u"hh :mm:mm"_s, u"12 :36:01"_s);
    row(first, time, u"hh:dd :mm:mm"_s, u"12:01 :01:01"_s);
    row(first, time, u"mm:ss"_s, u"01:00"_s);
    row(first, time, u"mm :mm:ss"_s, u"01 :01:00"_s);
    row(first, time, u"hhmm"_s, u"1236"_s);
    row(first, time, u"h時m分"_s, u"12時36分"_s);
    row(first, time, u"mm/dd hh:mm"_s, u"01/01 12:36"_s);
    row(first, time, u"h mmm"_s, u"12 Jan"_s);

    const QDate day(2002, 1, 5);
    row(day, QTime(0, 5), u"h:nn AM/PM"_s, u"12:05 AM"_s);
    row(day, QTime(12, 5), u"h:nn AM/PM"_s, u"12:05 PM"_s);
    row(day, QTime(14, 11), u"Medium Time"_s, u"02:11 午後"_s);
    row(day, QTime(14, 11), u"am/pm hh"_s, u"pm 02"_s);
    row(day, QTime(0, 0), u"c"_s, u"2002/01/05"_s);
    row(QDate(1899, 12, 30), QTime(12, 34), u"c"_s, u"12:34:00"_s);
    row(QDate(1899, 12, 30), QTime(0, 0), u"c"_s, u"0:00:00"_s);

    row(QDate(1989, 1, 7), QTime(0, 0), u"ggge"_s, u"昭和64"_s);
    row(QDate(1989, 1, 8), QTime(0, 0), u"ggge"_s, u"平成1"_s);
    row(QDate(1926, 12, 24), QTime(0, 0), u"gee"_s, u"T15"_s);
    row(QDate(1926, 12, 25), QTime(0, 0), u"gee"_s, u"S01"_s);
    row(QDate(1912, 7, 29), QTime(0, 0), u"gge"_s, u"明45"_s);
    row(QDate(1912, 7, 30), QTime(0, 0), u"gge"_s, u"大1"_s);
    row(QDate(1868, 1, 1), QTime(0, 0), u"ggge"_s, u"明治1"_s);
    row(QDate(1867, 12, 31), QTime(0, 0), u"ggge"_s, u"1867"_s);
    row(QDate(2019, 5, 1), QTime(0, 0), u"ggge"_s, u"令和1"_s);

    row(QDate(2002, 1, 6), QTime(0, 0), u"w ww"_s, u"1 2"_s);
    row(QDate(2000, 12, 31), QTime(0, 0), u"ww y q"_s, u"54 366 4"_s);
}

void tst_TextFormat::Dates()
{
    QFETCH(QDateTime, moment);
    QFETCH(QString, pattern);
    QFETCH(QString, wanted);
    QCOMPARE(text::FormatDate(text::ToSerial(moment), pattern), wanted);
}

void tst_TextFormat::Numbers_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("wanted");
    const auto row = [](double Value, const QString& Pattern, const QString& Wanted) {
        QTest::newRow(qPrintable(QString::number(Value) + u' ' + Pattern)) << Value << Pattern << Wanted;
    };
    row(5, u"000"_s, u"005"_s);
    row(1234, u"000"_s, u"1234"_s);
    row(-5, u"000"_s, u"-005"_s);
    row(0, u"000000"_s, u"000000"_s);
    row(1234567, u"000000"_s, u"1234567"_s);
    row(2.5, u"0"_s, u"3"_s);
    row(-2.5, u"0"_s, u"-3"_s);
    row(0.5, u"0"_s, u"1"_s);
    row(0.4, u"0"_s, u"0"_s);
    row(-0.4, u"0"_s, u"0"_s);
    row(1.005, u"0.00"_s, u"1.01"_s);
    row(9.999, u"0.00"_s, u"10.00"_s);
    row(0, u"#"_s, u""_s);
    row(1, u"#.#"_s, u"1."_s);
    row(1.25, u"#.###"_s, u"1.25"_s);
    row(1.05, u"0.0#"_s, u"1.05"_s);
    row(0, u"#,##0"_s, u"0"_s);
    row(1234567, u"#,##0"_s, u"1,234,567"_s);
    row(123, u"#,##0"_s, u"123"_s);
    row(-1234.5, u"#,##0.00"_s, u"-1,234.50"_s);
    row(5, u"0,000"_s, u"0,005"_s);
    row(0.17, u"#.00"_s, u".17"_s);
    row(12.345, u".00"_s, u"12.35"_s);
    row(0.17, u"0%"_s, u"17%"_s);
    row(1.5, u"0.0%"_s, u"150.0%"_s);
    row(1234567, u"000-0000"_s, u"123-4567"_s);
    row(12345678, u"000-0000"_s, u"1234-5678"_s);
    row(5, u"\"No.\"000\\d"_s, u"No.005d"_s);
    row(5, u"第0号"_s, u"第5号"_s);
    row(5, u"0;(0);零"_s, u"5"_s);
    row(-5, u"0;(0);零"_s, u"(5)"_s);
    row(0, u"0;(0);零"_s, u"零"_s);
    row(-5, u"0;;零"_s, u"-5"_s);
    row(0, u"0;(0)"_s, u"0"_s);
    row(-5, u"0\";\"0"_s, u"-0;5"_s);
    row(12345, u"0.00E+00"_s, u"1.23E+04"_s);
    row(0.00012345, u"0.00E+00"_s, u"1.23E-04"_s);
    row(12345, u"0.0e-0"_s, u"1.2e4"_s);
    row(9.99, u"0.0E+0"_s, u"1.0E+1"_s);
    row(0, u"0.00E+00"_s, u"0.00E+00"_s);
    row(12345, u"00.0E+00"_s, u"12.3E+03"_s);
    row(1e20, u"0"_s, u"100000000000000000000"_s);
    row(1e-20, u"0.00"_s, u"0.00"_s);
    row(12345678, u"#,##0,"_s, u"12,346"_s);
    row(12345678, u"0,,"_s, u"12"_s);
    row(12345678, u"#,##0,.00"_s, u"12,345.68"_s);
    row(1499, u"0,\"K\";(0)"_s, u"1K"_s);
    row(499, u"#,"_s, u""_s);
    row(1234.5, u"Standard"_s, u"1,234.50"_s);
    row(1234.5, u"FIXED"_s, u"1234.50"_s);
    row(0.125, u"Percent"_s, u"12.50%"_s);
    row(12345, u"Scientific"_s, u"1.23E+04"_s);
    row(1234.5, u"Currency"_s, u"\\1,235"_s);
    row(0.1, u"General Number"_s, u"0.1"_s);
    row(-1, u"Yes/No"_s, u"Yes"_s);
    row(0, u"True/False"_s, u"False"_s);
    row(3, u"On/Off"_s, u"On"_s);
    row(37261.5, u"yyyy/mm/dd hh:nn"_s, u"2002/01/05 12:00"_s);
    row(5, u"\"\""_s, u""_s);
    row(5, u""_s, u"5"_s);
}

void tst_TextFormat::Numbers()
{
    QFETCH(double, value);
    QFETCH(QString, pattern);
    QFETCH(QString, wanted);
    QCOMPARE(text::FormatNumber(value, pattern), wanted);
}

void tst_TextFormat::Texts_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("wanted");
    const auto row = [](const QString& Value, const QString& Pattern, const QString& Wanted) {
        QTest::newRow(qPrintable(Value + u' ' + Pattern)) << Value << Pattern << Wanted;
    };
    row(u"5"_s, u"000"_s, u"005"_s);
    row(u"1E1"_s, u"000"_s, u"010"_s);
    row(u"2002/1/5"_s, u"yyyy/mm/dd"_s, u"2002/01/05"_s);
    row(u"abc"_s, u"000"_s, u"abc"_s);
    row(u"abc"_s, u"yyyy"_s, u"abc"_s);
    row(u""_s, u"000"_s, u""_s);
    row(u""_s, u"yyyy"_s, u""_s);
    row(u"abc"_s, u""_s, u"abc"_s);
    row(u"ab"_s, u"@@@@"_s, u"  ab"_s);
    row(u"ab"_s, u"!@@@@"_s, u"ab  "_s);
    row(u"ab"_s, u"&&&&"_s, u"ab"_s);
    row(u"abcd"_s, u"@@-@@"_s, u"ab-cd"_s);
    row(u"abcdef"_s, u"@@-@@"_s, u"abcd-ef"_s);
    row(u"abcdef"_s, u"!@@-@@"_s, u"ab-cdef"_s);
    row(u"5551234"_s, u"(@@) @@@-@@@@"_s, u"(  ) 555-1234"_s);
    row(u"5551234"_s, u"(&&) @@@-@@@@"_s, u"() 555-1234"_s);
    row(u"Ab"_s, u">"_s, u"AB"_s);
    row(u"Ab"_s, u"<@@@"_s, u" ab"_s);
    row(u"abc"_s, u"@"_s, u"abc"_s);
    row(u""_s, u"@@;なし"_s, u"なし"_s);
    row(u"x"_s, u"@@;なし"_s, u" x"_s);
}

void tst_TextFormat::Texts()
{
    QFETCH(QString, value);
    QFETCH(QString, pattern);
    QFETCH(QString, wanted);
    QCOMPARE(text::FormatText(value, pattern), wanted);
}

void tst_TextFormat::Plain_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("wanted");
    const auto row = [](double Value, const QString& Wanted) { QTest::newRow(qPrintable(Wanted)) << Value << Wanted; };
    row(0, u"0"_s);
    row(-5, u"-5"_s);
    row(0.1, u"0.1"_s);
    row(0.1 + 0.2, u"0.3"_s);
    row(1.0 / 3, u"0.333333333333333"_s);
    row(-1234.5678, u"-1234.5678"_s);
    row(100, u"100"_s);
    row(123456789012345.0, u"123456789012345"_s);
    row(1e14, u"100000000000000"_s);
    row(1e15, u"1E+15"_s);
    row(1.5e300, u"1.5E+300"_s);
    row(0.000001, u"0.000001"_s);
    row(0.0123456789012345, u"1.23456789012345E-02"_s);
    row(1e-16, u"1E-16"_s);
}

void tst_TextFormat::Plain()
{
    QFETCH(double, value);
    QFETCH(QString, wanted);
    QCOMPARE(text::NumberToText(value), wanted);
}

void tst_TextFormat::SinglePlain()
{
    QCOMPARE(text::SingleToText(0.1f), u"0.1"_s);
    QCOMPARE(text::SingleToText(1.0f / 3), u"0.3333333"_s);
    QCOMPARE(text::SingleToText(12345678.0f), u"1.234568E+07"_s);
}

void tst_TextFormat::General()
{
    const auto serial = [](QDate Date, QTime Time) { return text::ToSerial(QDateTime(Date, Time, Qt::UTC)); };
    QCOMPARE(text::GeneralDate(serial(QDate(2002, 1, 15), QTime(9, 5))), u"2002/01/15 9:05:00"_s);
    QCOMPARE(text::GeneralDate(serial(QDate(2002, 1, 11), QTime(0, 0))), u"2002/01/11"_s);
    QCOMPARE(text::GeneralDate(0.5), u"12:00:00"_s);
    QCOMPARE(text::GeneralDate(-1.25), u"1899/12/29 6:00:00"_s);
    QCOMPARE(text::FormatNull(u"0;-0;z;\";\"なし"), u";なし"_s);
    QCOMPARE(text::FormatNull(u"@@;なし"), u"なし"_s);
    QCOMPARE(text::FormatNull(u"0;-0;z"), QString());
    QCOMPARE(text::FormatNull(u"@@"), QString());
}

void tst_TextFormat::BadInput()
{
    QCOMPARE(text::FormatDate(1e9, u"yyyy"), u"1000000000"_s);
    QCOMPARE(text::FormatDate(qQNaN(), u"yyyy"), u"nan"_s);
    QCOMPARE(text::FormatNumber(qInf(), u"0.00"), u"inf"_s);
    QCOMPARE(text::FormatNumber(DBL_MAX, u"#,##0").size(), 309 + 102);
    QCOMPARE(text::FormatNumber(DBL_MIN, u"0.0E+0"), u"2.2E-308"_s);
    // What stands behind the 257th place is not read.
    QCOMPARE(text::FormatNumber(5, QString(257, u'x') + u'0'), QString(257, u'x'));
    QCOMPARE(text::FormatDate(37261, QString(300, u'-') + u"yyyy"_s), QString(257, u'-'));
}

QTEST_GUILESS_MAIN(tst_TextFormat)
#include "tst_TextFormat.moc"
