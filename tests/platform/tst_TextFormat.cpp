// tests/platform/tst_TextFormat.cpp
// Dates, numbers and texts by pattern.

#include "platform/text/DateTime.h"
#include "platform/text/Format.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QString>("text-format.json", "DateFields", {"pattern", "wanted"});
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
    mdlTable::AddRows<QString, QString, QString>("text-format.json", "Dates", {"moment", "pattern", "wanted"});
}

void tst_TextFormat::Dates()
{
    QFETCH(QString, moment);
    QFETCH(QString, pattern);
    QFETCH(QString, wanted);
    QCOMPARE(text::FormatDate(text::ToSerial(QDateTime::fromString(moment, Qt::ISODate)), pattern), wanted);
}

void tst_TextFormat::Numbers_data()
{
    mdlTable::AddRows<double, QString, QString>("text-format.json", "Numbers", {"value", "pattern", "wanted"});
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
    mdlTable::AddRows<QString, QString, QString>("text-format.json", "Texts", {"value", "pattern", "wanted"});
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
    mdlTable::AddRows<double, QString>("text-format.json", "Plain", {"value", "wanted"});
    QTest::newRow("0.3") << 0.1 + 0.2 << u"0.3"_s;
    QTest::newRow("0.333333333333333") << 1.0 / 3 << u"0.333333333333333"_s;
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
