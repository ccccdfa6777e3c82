// tests/platform/tst_TextCodepage932.cpp
// Code page 932: the places where tables differ, both ways, and bytes that are no text.

#include "platform/text/Codepage932.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextCodepage932 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Known_data();
    void Known();
    void DecodeOnly_data();
    void DecodeOnly();
    void EncodeOnly_data();
    void EncodeOnly();
    void EveryPair();
    void EveryByte();
    void RoundTripFaults();
    void Validity_data();
    void Validity();
    void Utf8Validity_data();
    void Utf8Validity();
    void WindowsForms();
    void UrlEncode_data();
    void UrlEncode();
    void RandomBytes();
};

/// Codes that go both ways.
void tst_TextCodepage932::Known_data()
{
    mdlTable::AddRows<QString, QString>("text-codepage.json", "Known", {"hex", "text"});
}

void tst_TextCodepage932::Known()
{
    QFETCH(QString, hex);
    QFETCH(QString, text);
    QCOMPARE(text::From932(QByteArray::fromHex(hex.toLatin1())), text);
    QCOMPARE(text::To932(text).toHex().toUpper(), hex.toLatin1());
}

void tst_TextCodepage932::DecodeOnly_data()
{
    mdlTable::AddRows<QString, QString>("text-codepage.json", "DecodeOnly", {"hex", "text"});
}

void tst_TextCodepage932::DecodeOnly()
{
    QFETCH(QString, hex);
    QFETCH(QString, text);
    QCOMPARE(text::From932(QByteArray::fromHex(hex.toLatin1())), text);
}

void tst_TextCodepage932::EncodeOnly_data()
{
    mdlTable::AddRows<QString, QByteArray>("text-codepage.json", "EncodeOnly", {"text", "bytes"});
    QTest::newRow("half a pair") << QString(QChar(0xD83D)) << QByteArray("?");
}

void tst_TextCodepage932::EncodeOnly()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(text::To932(text), bytes);
}

/// Facts about the table as a whole that are known from its published description.
void tst_TextCodepage932::EveryPair()
{
    int defined = 0;
    int userDefined = 0;
    int notBack = 0;
    for (int code = 0x8140; code <= 0xFCFC; ++code) {
        const auto lead = static_cast<uchar>(code >> 8);
        const bool isLead = (lead >= 0x81 && lead <= 0x9F) || lead >= 0xE0;
        if (!isLead || (code & 0xFF) < 0x40)
            continue;
        const QByteArray bytes = QByteArray(1, static_cast<char>(lead)) + static_cast<char>(code & 0xFF);
        const QString text = text::From932(bytes);
        QCOMPARE(text.size(), 1);
        if (text == u"・" && code != 0x8145)
            continue;
        ++defined;
        userDefined += text[0] >= QChar(0xE000) && text[0] <= QChar(0xE757) ? 1 : 0;
        notBack += text::To932(text) != bytes ? 1 : 0;
    }
    QCOMPARE(userDefined, 1880);
    QCOMPARE(defined - userDefined, 7724); // 6879 of JIS, 83 of NEC's row 13, 374 NEC selected, 388 IBM
    QCOMPARE(notBack, 398);
}

void tst_TextCodepage932::EveryByte()
{
    for (int byte = 0; byte < 0x80; ++byte) {
        const char one = static_cast<char>(byte);
        QCOMPARE(text::From932(QByteArrayView(&one, 1)), QString(QChar(byte)));
        QCOMPARE(text::To932(QString(QChar(byte))), QByteArray(1, one));
    }
    for (int byte = 0xA1; byte < 0xE0; ++byte) { // half-width kana in the order of their block
        const char one = static_cast<char>(byte);
        QCOMPARE(text::From932(QByteArrayView(&one, 1)), QString(QChar(byte - 0xA1 + 0xFF61)));
    }
}

void tst_TextCodepage932::RoundTripFaults()
{
    // Every unit either comes back as it went or had no code.
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
        const QString text{QChar(unit)};
        const QByteArray bytes = text::To932(text);
        if (bytes != "?" || unit == u'?')
            QCOMPARE(text::From932(bytes), text);
    }
}

void tst_TextCodepage932::Validity_data()
{
    mdlTable::AddRows<QString, bool>("text-codepage.json", "Validity", {"hex", "isValid"});
}

void tst_TextCodepage932::Validity()
{
    QFETCH(QString, hex);
    QFETCH(bool, isValid);
    QCOMPARE(text::IsValid932(QByteArray::fromHex(hex.toLatin1())), isValid);
}

void tst_TextCodepage932::Utf8Validity_data()
{
    mdlTable::AddRows<QString, bool>("text-codepage.json", "Utf8Validity", {"hex", "isValid"});
}

void tst_TextCodepage932::Utf8Validity()
{
    QFETCH(QString, hex);
    QFETCH(bool, isValid);
    QCOMPARE(text::IsValidUtf8(QByteArray::fromHex(hex.toLatin1())), isValid);
}

void tst_TextCodepage932::WindowsForms()
{
    const QString typed = u"10\u301C20 \u2212 \u2016\u2014\u00A2\u00A3\u00AC 表"_s;
    QCOMPARE(text::WithWindowsForms(typed), u"10～20 － ∥―￠￡￢ 表"_s);
    QVERIFY(!text::To932(text::WithWindowsForms(typed)).contains('?'));
}

void tst_TextCodepage932::UrlEncode_data()
{
    mdlTable::AddRows<QString, QString>("text-codepage.json", "UrlEncode", {"text", "encoded"});
}

void tst_TextCodepage932::UrlEncode()
{
    QFETCH(QString, text);
    QFETCH(QString, encoded);
    QCOMPARE(text::UrlEncode932(text), encoded);
}

void tst_TextCodepage932::RandomBytes()
{
    QRandomGenerator random(932);
    for (int round = 0; round < 2000; ++round) {
        QByteArray bytes(random.bounded(200), Qt::Uninitialized);
        for (char& byte : bytes)
            byte = static_cast<char>(random.bounded(256));
        const QString text = text::From932(bytes);
        QVERIFY(text.size() <= bytes.size() && text.size() * 2 >= bytes.size());
        if (text::IsValid932(bytes))
            QCOMPARE(text::From932(text::To932(text)), text);
    }
}

QTEST_GUILESS_MAIN(tst_TextCodepage932)
#include "tst_TextCodepage932.moc"
