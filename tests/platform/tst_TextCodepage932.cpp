// tests/platform/tst_TextCodepage932.cpp
// Code page 932: the places where tables differ, both ways, and bytes that are no text.

#include "platform/text/Codepage932.h"

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
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* Hex, const QString& Text) {
        QTest::newRow(Hex) << QByteArray::fromHex(Hex) << Text;
    };
    row("", QString());
    row("5C", u"\\"_s);
    row("7E", u"~"_s);
    row("1A", u"\x1A"_s);
    row("1C", u"\x1C"_s);
    row("7F", u"\x7F"_s);
    row("80", u"\x80"_s);
    row("A0", u"\uF8F0"_s);
    row("FD", u"\uF8F1"_s);
    row("FE", u"\uF8F2"_s);
    row("FF", u"\uF8F3"_s);
    row("A1", u"｡"_s);
    row("DF", u"ﾟ"_s);
    row("8140", u"\u3000"_s);
    row("815C", u"\u2015"_s);
    row("815F", u"\uFF3C"_s);
    row("8160", u"\uFF5E"_s);
    row("8161", u"\u2225"_s);
    row("817C", u"\uFF0D"_s);
    row("8191", u"\uFFE0"_s);
    row("8192", u"\uFFE1"_s);
    row("81CA", u"\uFFE2"_s);
    row("FA55", u"\uFFE4"_s);
    row("82A0", u"あ"_s);
    row("835C", u"ソ"_s);
    row("955C", u"表"_s);
    row("945C", u"能"_s);
    row("8740", u"①"_s);
    row("8754", u"Ⅰ"_s);
    row("878A", u"㈱"_s);
    row("81E0", u"≒"_s);
    row("81BE", u"∪"_s);
    row("81E6", u"∵"_s);
    row("FA40", u"ⅰ"_s);
    row("FA5C", u"纊"_s);
    row("FC4B", u"黑"_s);
    row("F040", u"\uE000"_s);
    row("F9FC", u"\uE757"_s);
    row("41835C0D0A955C5C", u"Aソ\r\n表\\"_s);
    QTest::newRow("NUL inside") << QByteArray("a\0b", 3) << QString(u"a\0b"_s);
}

void tst_TextCodepage932::Known()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(text::From932(bytes), text);
    QCOMPARE(text::To932(text), bytes);
}

void tst_TextCodepage932::DecodeOnly_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* Name, const char* Hex, const QString& Text) {
        QTest::newRow(Name) << QByteArray::fromHex(Hex) << Text;
    };
    row("NEC selected", "ED40", u"纊"_s);
    row("NEC selected, broken bar", "EEFA", u"\uFFE4"_s);
    row("NEC row 13 twin of a JIS sign", "8790", u"≒"_s);
    row("IBM twin of NEC row 13", "FA4A", u"Ⅰ"_s);
    row("pair without a character", "81AD41", u"\u30FBA"_s);
    row("pair of a row that is empty", "854042", u"\u30FBB"_s);
    row("second byte too low", "823041", u"\u30FBA"_s);
    row("second byte 7F", "817F41", u"\u30FBA"_s);
    row("second byte FD", "81FD41", u"\u30FBA"_s);
    row("lead byte at the end", "4182", u"A\u30FB"_s);
    row("lead byte before a line end", "82A0820D0A41", u"あ\u30FB\r\nA"_s);
    QTest::newRow("lead byte before NUL") << QByteArray("\x82\0A", 3) << QString(u"\u30FB\0A"_s);
}

void tst_TextCodepage932::DecodeOnly()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(text::From932(bytes), text);
}

void tst_TextCodepage932::EncodeOnly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("wave dash") << u"a\u301Cb"_s << QByteArray("a?b");
    QTest::newRow("minus sign") << u"\u2212"_s << QByteArray("?");
    QTest::newRow("em dash, double bar, overline") << u"\u2014\u2016\u203E"_s << QByteArray("???");
    QTest::newRow("no best fit") << u"¥©é·¢£¬¦"_s << QByteArray("????????");
    QTest::newRow("hangul") << u"한"_s << QByteArray("?");
    QTest::newRow("emoji is two units") << u"a\U0001F600b"_s << QByteArray("a??b");
    QTest::newRow("half a pair") << QString(QChar(0xD83D)) << QByteArray("?");
    QTest::newRow("invisible ones") << u"\u00AD\u200B\u200F\uFE0F\uFEFF"_s << QByteArray("?????");
    QTest::newRow("substitute of the converter") << u"\uF86F"_s << QByteArray("?");
    QTest::newRow("replacement character") << u"\uFFFD\uFFFF\uFFFE"_s << QByteArray("???");
    QTest::newRow("accent behind a letter") << u"e\u0301"_s << QByteArray("e?");
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
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("text") << QByteArray::fromHex("4182A0835C0D0A") << true;
    QTest::newRow("half-width kana") << QByteArray::fromHex("B1B2") << true;
    QTest::newRow("user range") << QByteArray::fromHex("F040") << true;
    QTest::newRow("lead byte at the end") << QByteArray::fromHex("4182") << false;
    QTest::newRow("pair without a character") << QByteArray::fromHex("81AD") << false;
    QTest::newRow("lead byte before a line end") << QByteArray::fromHex("820A") << false;
    for (const char* byte : {"80", "A0", "FD", "FE", "FF"})
        QTest::newRow(byte) << QByteArray::fromHex(byte) << false;
    QTest::newRow("a blank between words in UTF-8") << QByteArray("\xE3\x81\x82\xE3\x80\x80\xE3\x81\x84") << false;
}

void tst_TextCodepage932::Validity()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isValid);
    QCOMPARE(text::IsValid932(bytes), isValid);
}

void tst_TextCodepage932::Utf8Validity_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("ASCII with NUL") << QByteArray("a\0b", 3) << true;
    QTest::newRow("kana") << QByteArray("\xE3\x81\x82") << true;
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF") << true;
    QTest::newRow("emoji") << QByteArray("\xF0\x9F\x98\x80") << true;
    QTest::newRow("noncharacter") << QByteArray("\xEF\xBF\xBF") << true;
    QTest::newRow("cut off") << QByteArray("a\xE3\x81") << false;
    QTest::newRow("cut off after the first byte") << QByteArray("\xF0") << false;
    QTest::newRow("stray second byte") << QByteArray("\x81") << false;
    QTest::newRow("overlong slash") << QByteArray("\xC0\xAF") << false;
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << false;
    QTest::newRow("beyond the last") << QByteArray("\xF4\x90\x80\x80") << false;
    QTest::newRow("the boards' code page") << QByteArray::fromHex("82A082A2") << false;
}

void tst_TextCodepage932::Utf8Validity()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isValid);
    QCOMPARE(text::IsValidUtf8(bytes), isValid);
}

void tst_TextCodepage932::WindowsForms()
{
    const QString typed = u"10\u301C20 \u2212 \u2016\u2014\u00A2\u00A3\u00AC 表"_s;
    QCOMPARE(text::WithWindowsForms(typed), u"10～20 － ∥―￠￡￢ 表"_s);
    QVERIFY(!text::To932(text::WithWindowsForms(typed)).contains('?'));
}

void tst_TextCodepage932::UrlEncode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("letters and digits") << u"azAZ09"_s << u"azAZ09"_s;
    QTest::newRow("blank") << u"a b"_s << u"a%20b"_s;
    QTest::newRow("sharp") << u"C#"_s << u"C%23"_s;
    QTest::newRow("what other encoders leave") << u"-._~%&+/"_s << u"%2D%2E%5F%7E%25%26%2B%2F"_s;
    QTest::newRow("two escapes each") << u"ソ表"_s << u"%83%5C%95%5C"_s;
    QTest::newRow("half-width kana") << u"ｱ"_s << u"%B1"_s;
    QTest::newRow("wave dash") << u"\u301C"_s << u"%81%60"_s;
    QTest::newRow("no code") << u"한"_s << u"%3F"_s;
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
