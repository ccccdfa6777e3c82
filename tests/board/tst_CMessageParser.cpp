// tests/board/tst_CMessageParser.cpp
// Records of the log format, whole and broken, and the text that they are cut from.

#include "board/CLogParser.h"
#include "platform/text/Format.h"
#include "tests/board/Records.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A message as one line, the date to the minute; "broken" where there is none.
QString Show(const std::optional<CMessage>& Message)
{
    if (!Message)
        return u"broken"_s;
    return QStringList{QString::number(Message->BBS_ID),
                       QString::number(Message->ID),
                       Message->Subject,
                       Message->HomePage,
                       Message->Mail,
                       Message->PostName,
                       text::FormatDate(Message->PostDate, u"yyyy/mm/dd hh:nn"),
                       QString::number(Message->InReplyTo),
                       Message->Body,
                       QString::number(Message->RootThread),
                       QString::number(Message->Mark),
                       Message->Read ? u"read"_s : u"unread"_s}
        .join(u'|');
}

QStringList Cut(const QString& Text)
{
    CRecordCutter records(Text);
    QStringList pieces;
    while (const auto record = records.Next())
        pieces << record->toString();
    return pieces;
}
} // namespace

class tst_CMessageParser : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Fields_data();
    void Fields();
    void Lines_data();
    void Lines();
    void TwoSided_data();
    void TwoSided();
    void Cutting_data();
    void Cutting();
    void Keys();
    void AnOddBodyStaysWhole();
};

void tst_CMessageParser::Fields_data()
{
    mdlTable::AddRows<QString, QString, QString>("message-parser.json", "Fields", {"field", "value", "wanted"});
}

void tst_CMessageParser::Fields()
{
    static const QHash<QString, QString CRecordText::*> fields = {{u"ID"_s, &CRecordText::ID},
                                                                  {u"Subject"_s, &CRecordText::Subject},
                                                                  {u"PostDate"_s, &CRecordText::PostDate},
                                                                  {u"InReplyTo"_s, &CRecordText::InReplyTo},
                                                                  {u"Body"_s, &CRecordText::Body}};
    QFETCH(QString, field);
    QFETCH(QString, value);
    CRecordText record;
    record.*fields[field] = value;
    QTEST(Show(CLogParser(3, false, false).Parse(record.Text())), "wanted");
}

void tst_CMessageParser::Lines_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("all fields")
        << CRecordText{u"123456"_s, u"ソ連の表①"_s, u"http://a/"_s, u"a@b"_s, u"ﾅﾏｴ"_s, u"2002/01/05（土） 9:05"_s, u"7"_s, u"b"_s}.Text()
        << u"3|123456|ソ連の表①|http://a/|a@b|ﾅﾏｴ|2002/01/05 09:05|7|b|0|0|unread"_s;
    QTest::newRow("labels are not read") << u"1234567001\r\n??????題\r\n0123456789\r\n*******\r\n日本語日本語日n\r\n"
                                            "-------2002/01/15（火） 1:02\r\n--------\r\nwhatever\r\n"_s
                                         << u"3|1|題|||n|2002/01/15 01:02|0||0|0|unread"_s;
    QTest::newRow("line shorter than its label") << u"Number:1\r\nT\r\nHome Page:\r\nE-mail:\r\nAuthor:そら\r\n"
                                                    "Posted:2002/01/15（火） 12:34\r\nRe\r\nMessage:\r\n本文"_s
                                                 << u"3|1||||そら|2002/01/15 12:34|0|本文|0|0|unread"_s;
    QTest::newRow("empty record") << QString() << u"broken"_s;
    for (int lines = 1; lines <= 8; ++lines)
        QTest::addRow("%d lines only", lines) << CRecordText().Text().section(u"\r\n"_s, 0, lines - 1) << u"broken"_s;
}

void tst_CMessageParser::Lines()
{
    QFETCH(QString, record);
    QTEST(Show(CLogParser(3, false, false).Parse(record)), "wanted");
}

void tst_CMessageParser::TwoSided_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("subject");
    const QString fifty(50, u'あ');
    QTest::newRow("short") << u"やあ"_s << u"やあ"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("50 characters") << fifty << fifty;
    QTest::newRow("51 characters") << fifty + u"い"_s << QString(47, u'あ') + u"..."_s;
    QTest::newRow("line end counts") << u"a\r\nb"_s << u"a\r\nb"_s;
}

void tst_CMessageParser::TwoSided()
{
    QFETCH(QString, body);
    const auto message = CLogParser(14, true, true).Parse(CRecordText{.InReplyTo = u"9"_s, .Body = body}.TwoSidedText());
    QVERIFY(message);
    QTEST(message->Subject, "subject");
    QCOMPARE(message->Body, body);
    QCOMPARE(message->InReplyTo, 9);
    QVERIFY(message->Read);
}

void tst_CMessageParser::Cutting_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("wanted");
    const QString cut = mdlRecords::Separator();
    const QString line = cut.trimmed();
    QTest::newRow("nothing") << QString() << QStringList();
    QTest::newRow("no separator") << CRecordText().Text() << QStringList();
    QTest::newRow("two and a trailer") << u"a"_s + cut + u"b"_s + cut + u"</html>"_s << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("empty piece") << cut + u"a"_s + cut << QStringList{QString(), u"a"_s};
    QTest::newRow("one line end between two") << u"a"_s + cut + line + u"\r\n"_s << QStringList{u"a"_s};
    QTest::newRow("at the very start without a line end") << line + u"\r\nb"_s + cut << QStringList{line + u"\r\nb"_s};
    QTest::newRow("one sign short") << u"a"_s + QString(cut).remove(10, 1) + u"b"_s + cut
                                    << QStringList{u"a"_s + QString(cut).remove(10, 1) + u"b"_s};
    QTest::newRow("last one without its line end") << u"a"_s + cut + u"b\r\n"_s + line << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("cut off in the separator") << u"a"_s + cut + u"b"_s + cut.chopped(3) << QStringList{u"a"_s};
}

void tst_CMessageParser::Cutting()
{
    QFETCH(QString, text);
    QTEST(Cut(text), "wanted");
}

void tst_CMessageParser::Keys()
{
    QCOMPARE((CMessage{.BBS_ID = 1, .ID = 123}).Key(), u"#001000123"_s);
    QCOMPARE((CMessage{.BBS_ID = 999, .ID = 999999}).Key(), u"#999999999"_s);
    QCOMPARE((CMessage{.BBS_ID = 3, .ID = 1234567}).Key(), u"#0031234567"_s); // wider than its place
    QCOMPARE((CMessage{.BBS_ID = 3, .ID = 8, .InReplyTo = 7}).ReplyKey(), u"#003000007"_s);
}

/// Ten megabytes in one record are only slow when the body is cut into lines or copied over and over.
void tst_CMessageParser::AnOddBodyStaysWhole()
{
    const QString body = u"あ\r\n'|'\r\n"_s.repeated(1'000'000);
    const QStringList records = Cut(mdlRecords::Block({CRecordText{.Body = body}.Text()}));
    QCOMPARE(records.size(), 1);
    QCOMPARE(CLogParser(3, false, false).Parse(records.first())->Body, body);
}

QTEST_GUILESS_MAIN(tst_CMessageParser)
#include "tst_CMessageParser.moc"
