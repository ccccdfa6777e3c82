// tests/sqlshell/tst_SqlShellParts.cpp
// The shell's parts without a process: what parts input, what shows values, what reads options.

#include "platform/text/DisplayWidth.h"
#include "sqlshell/Arguments.h"
#include "sqlshell/CCsvOutput.h"
#include "sqlshell/CJsonOutput.h"
#include "sqlshell/CSplitter.h"
#include "sqlshell/Parameters.h"
#include "sqlshell/Place.h"

#include <QJsonDocument>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace sqlshell;

class tst_SqlShellParts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void PartsInput_data();
    void PartsInput();
    void CutsAnEndlessStatement();
    void ShowsOnOneLine_data();
    void ShowsOnOneLine();
    void QuotesForCsv_data();
    void QuotesForCsv();
    void WritesJson_data();
    void WritesJson();
    void FindsThePlace_data();
    void FindsThePlace();
    void ReadsParameters_data();
    void ReadsParameters();
    void ReadsOptions_data();
    void ReadsOptions();
};

namespace
{

/// All pieces of an input that comes in blocks of Size bytes: "line:text", a command marked by its point.
QStringList Pieces(const QByteArray& Input, qsizetype Size, CSplitter::CommandEnd End)
{
    CSplitter splitter(End);
    QStringList pieces;
    const auto take = [&](bool atEnd) {
        while (const auto piece = splitter.Next(atEnd))
            pieces.append(QString::number(piece->Line) + (piece->IsCommand ? u"c:"_s : u":"_s) +
                          QString::fromUtf8(piece->Text));
    };
    for (qsizetype at = 0; at < Input.size(); at += Size) {
        splitter.Add(QByteArrayView(Input).sliced(at, std::min(Size, Input.size() - at)));
        take(false);
    }
    take(true);
    return pieces;
}

} // namespace

void tst_SqlShellParts::PartsInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("wanted");
    QTest::newRow("nothing") << u" \r\n\t ;; ; \n"_s << QStringList();
    QTest::newRow("two, the last one open")
        << u"SELECT 1;SELECT\n 2"_s << QStringList{u"1:SELECT 1"_s, u"1:SELECT\n 2"_s};
    QTest::newRow("lines are counted") << u"\n\nA\nB;\n\nC;"_s << QStringList{u"3:A\nB"_s, u"6:C"_s};
    QTest::newRow("in texts") << u"a ';' b \";\" c 'it''s;' ;d"_s
                              << QStringList{u"1:a ';' b \";\" c 'it''s;'"_s, u"1:d"_s};
    QTest::newRow("one quote in the other")
        << u"a \"it's\"; b '\"';c"_s << QStringList{u"1:a \"it's\""_s, u"1:b '\"'"_s, u"1:c"_s};
    QTest::newRow("in names") << u"a [x;'y]; b `;\"`; c"_s << QStringList{u"1:a [x;'y]"_s, u"1:b `;\"`"_s, u"1:c"_s};
    QTest::newRow("in a date") << u"a #1;2#; b"_s << QStringList{u"1:a #1;2#"_s, u"1:b"_s};
    QTest::newRow("a forgotten #") << u"a #1;2\n; b; c"_s << QStringList{u"1:a #1;2"_s, u"2:b"_s, u"2:c"_s};
    QTest::newRow("a text over lines") << u"a '\n.b\n;' c;\n.d"_s << QStringList{u"1:a '\n.b\n;' c"_s, u"4c:.d"_s};
    QTest::newRow("parameters") << u"PARAMETERS a Long; SELECT a;parameters[b]Text;X"_s
                                << QStringList{u"1:PARAMETERS a Long; SELECT a"_s, u"1:parameters[b]Text;X"_s};
    QTest::newRow("a name that begins so") << u"PARAMETERSX;b"_s << QStringList{u"1:PARAMETERSX"_s, u"1:b"_s};
    QTest::newRow("commands") << u".a;b\r\n  .c 'x\nSELECT\n.5;.d"_s
                              << QStringList{u"1c:.a;b"_s, u"2c:.c 'x"_s, u"3:SELECT\n.5"_s, u"4c:.d"_s};
    QTest::newRow("order mark and wide blanks") << u"\uFEFF\u3000a;\u3000b"_s << QStringList{u"1:a"_s, u"1:b"_s};
}

void tst_SqlShellParts::PartsInput()
{
    QFETCH(QString, input);
    QFETCH(QStringList, wanted);
    const QByteArray bytes = input.toUtf8();
    for (const qsizetype size : {1, 2, 3, 7, 1000})
        QCOMPARE(Pieces(bytes, size, CSplitter::CommandEnd::Line), wanted);
    QCOMPARE(Pieces(".a x\ny; z", 1, CSplitter::CommandEnd::Input), QStringList{u"1c:.a x\ny; z"_s});
}

void tst_SqlShellParts::CutsAnEndlessStatement()
{
    CSplitter splitter;
    const QByteArray block(CSplitter::MaxSize / 4, 'x');
    for (int i = 0; i < 9; ++i) {
        splitter.Add(block);
        QVERIFY(!splitter.Next());
    }
    splitter.Add("y; SELECT 1;");
    const auto cut = splitter.Next();
    QVERIFY(cut && cut->IsTooLong && cut->Text.size() <= CSplitter::MaxSize + 1);
    const auto next = splitter.Next();
    QVERIFY(next && !next->IsTooLong);
    QCOMPARE(next->Text, QByteArray("SELECT 1"));
}

void tst_SqlShellParts::ShowsOnOneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxWidth");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("width");
    QTest::newRow("mixed") << u"a漢ｶﾞ"_s << 0 << u"a漢ｶﾞ"_s << 5;
    QTest::newRow("fits exactly") << u"漢字ab"_s << 6 << u"漢字ab"_s << 6;
    QTest::newRow("cut") << u"漢字abc"_s << 6 << u"漢字a…"_s << 6;
    QTest::newRow("cut before a wide one") << u"ab漢字"_s << 5 << u"ab漢…"_s << 5;
    QTest::newRow("no half of a wide one") << u"a漢字漢"_s << 5 << u"a漢…"_s << 4;
    QTest::newRow("picture and marks") << u"😀か\u3099e\u0301"_s << 0 << u"😀か\u3099e\u0301"_s << 5;
    QTest::newRow("line breaks") << u"a\r\nb\nc\rd\te"_s << 0 << u"a⏎b⏎c⏎d e"_s << 9;
    QTest::newRow("escapes of a terminal") << u"\x1b[31m\x7f\u009b0"_s << 0 << u"␛[31m␡\uFFFD0"_s << 8;
    QTest::newRow("turned writing") << u"a\u202Eb\u2066c"_s << 0 << u"abc"_s << 3;
    QTest::newRow("half a pair") << u"x"_s + QChar(0xD83D) << 0 << u"x\uFFFD"_s << 2;
}

void tst_SqlShellParts::ShowsOnOneLine()
{
    QFETCH(QString, text);
    QFETCH(int, maxWidth);
    QFETCH(QString, wanted);
    const QString shown = OneLine(text, maxWidth);
    QCOMPARE(shown, wanted);
    QTEST(text::DisplayWidth(shown), "width");
}

void tst_SqlShellParts::QuotesForCsv_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("plain") << u"春 の本"_s << u"春 の本"_s;
    QTest::newRow("empty is not Null") << u""_s << u"\"\""_s;
    QTest::newRow("comma, quote") << u"a,\"b\""_s << u"\"a,\"\"b\"\"\""_s;
    QTest::newRow("line break") << u"a\r\nb"_s << u"\"a\r\nb\""_s;
    QTest::newRow("blank at the end") << u"a "_s << u"\"a \""_s;
}

void tst_SqlShellParts::QuotesForCsv()
{
    QFETCH(QString, text);
    QTEST(CsvField(text), "wanted");
}

void tst_SqlShellParts::WritesJson_data()
{
    using dao::Value;
    QTest::addColumn<dao::Value>("value");
    QTest::addColumn<QByteArray>("wanted");
    QTest::newRow("null") << Value() << QByteArray("null");
    QTest::newRow("true") << Value::FromBoolean(true) << QByteArray("true");
    QTest::newRow("long") << Value::FromLong(-2147483647 - 1) << QByteArray("-2147483648");
    QTest::newRow("double") << Value::FromDouble(1.0 / 3) << QByteArray("0.3333333333333333");
    QTest::newRow("single") << Value::FromSingle(0.1F) << QByteArray("0.1");
    QTest::newRow("infinite") << Value::FromDouble(-HUGE_VAL) << QByteArray("null");
    QTest::newRow("no number") << Value::FromDouble(std::nan("")) << QByteArray("null");
    QTest::newRow("date") << Value::FromDate(37271.5) << QByteArray("\"2002/01/15 12:00:00\"");
    QTest::newRow("text") << Value::FromText(u"\"表\\\n\x01"_s + QChar(0) + u"😀"_s)
                          << QByteArray("\"\\\"表\\\\\\n\\u0001\\u0000😀\"");
    QTest::newRow("half pairs") << Value::FromText(QString(QChar(0xDE00)) + u"a"_s + QChar(0xD83D))
                                << QByteArray("\"\uFFFDa\uFFFD\"");
}

void tst_SqlShellParts::WritesJson()
{
    QFETCH(dao::Value, value);
    const QByteArray json = JsonValue(value);
    QTEST(json, "wanted");
    QVERIFY(json.isValidUtf8() && QJsonDocument::fromJson('[' + json + ']').isArray());
}

void tst_SqlShellParts::FindsThePlace_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("wanted"); // line,column,columns before the caret,excerpt
    QTest::newRow("begin") << u"SELEC 1"_s << 0 << u"5,1,0,SELEC 1"_s;
    QTest::newRow("behind wide signs") << u"SELECT 件数 X"_s << 10 << u"5,11,12,SELECT 件数 X"_s;
    QTest::newRow("second line") << u"SELECT *\r\nFROM\tX\r\nWHERE"_s << 15 << u"6,6,5,FROM X"_s;
    QTest::newRow("beyond the end") << u"SELECT"_s << 99 << u"5,7,6,SELECT"_s;
    QTest::newRow("far to the right") << QString(100, u'x') + u'!' + QString(100, u'y') << 100
                                      << u"5,101,31,…"_s + QString(30, u'x') + u'!' + QString(37, u'y') + u'…';
    QTest::newRow("behind a pair") << u"'😀' X"_s << 5 << u"5,5,5,'😀' X"_s;
}

void tst_SqlShellParts::FindsThePlace()
{
    QFETCH(QString, sql);
    QFETCH(int, offset);
    const CPlace place = FindPlace(sql, offset, 5);
    const QString found = u"%1,%2,%3,%4"_s.arg(QString::number(place.Line), QString::number(place.Column),
                                               QString::number(place.Caret.indexOf(u'^')), place.Excerpt);
    QTEST(found, "wanted");
}

void tst_SqlShellParts::ReadsParameters_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<dao::Value>("wanted");
    QTest::newRow("text") << u"春 "_s << dao::Value::FromText(u"春 "_s);
    QTest::newRow("null") << u" nULL "_s << dao::Value();
    QTest::newRow("quoted null") << u"'Null'"_s << dao::Value::FromText(u"Null"_s);
    QTest::newRow("date") << u"#2002/1/15#"_s << dao::Value::FromDate(37271);
    QTest::newRow("begins like a text") << u"'n' roll"_s << dao::Value::FromText(u"'n' roll"_s);
    QTest::newRow("begins like a date") << u"#1"_s << dao::Value::FromText(u"#1"_s);
}

void tst_SqlShellParts::ReadsParameters()
{
    QFETCH(QString, typed);
    QTEST(mdlParameters::ReadValue(typed), "wanted");
}

void tst_SqlShellParts::ReadsOptions_data()
{
    QTest::addColumn<QByteArrayList>("words");
    QTest::addColumn<QString>("wanted"); // file|statements|parameters|format|width|flags, or the error
    QTest::newRow("plain") << QByteArrayList{"a.mdb", "SELECT 1", "--json", ".tables"}
                           << u"a.mdb|SELECT 1,.tables||2|40|"_s;
    QTest::newRow("values") << QByteArrayList{"--param", "a=1=2", "--param=[b c]=", "x", "--width=0", "--create"}
                            << u"x||a:1=2,b c:|0|0|c"_s;
    QTest::newRow("no more options") << QByteArrayList{"--csv", "--type-only", "--no-fail-on-error",
                                                       "--",    "x",           "--json"}
                                     << u"x|--json||1|40|ts"_s;
    QTest::newRow("no file") << QByteArrayList{"--json"} << u"データベースのファイル名がありません。"_s;
    QTest::newRow("unknown") << QByteArrayList{"x", "--jsn"} << u"--jsn というオプションはありません。"_s;
    QTest::newRow("no value") << QByteArrayList{"x", "--param"} << u"--param に値がありません。"_s;
    QTest::newRow("no name") << QByteArrayList{"x", "--param", "=1"} << u"--param の値 =1 は使えません。"_s;
    QTest::newRow("value for nothing") << QByteArrayList{"x", "--json=1"} << u"--json に値は付けられません。"_s;
    QTest::newRow("two formats") << QByteArrayList{"x", "--json", "--csv"} << u"--csv と --json は一緒に使えません。"_s;
    QTest::newRow("narrow") << QByteArrayList{"x", "--width", "1"} << u"--width の値 1 は使えません。"_s;
}

void tst_SqlShellParts::ReadsOptions()
{
    QFETCH(QByteArrayList, words);
    const COptions options = mdlArguments::Parse(words);
    QStringList parameters;
    for (const auto& [name, value] : options.Parameters)
        parameters.append(name + u':' + value);
    const QString flags = (options.Create ? u"c"_s : QString()) + (options.TypeOnly ? u"t"_s : QString()) +
                          (options.SkipsRows ? u"s"_s : QString());
    const QString read = QStringList{options.File,
                                     QString::fromUtf8(options.Statements.join(',')),
                                     parameters.join(u','),
                                     QString::number(int(options.Output)),
                                     QString::number(options.MaxWidth),
                                     flags}
                             .join(u'|');
    QTEST(options.Error.isEmpty() ? read : options.Error, "wanted");
}

QTEST_GUILESS_MAIN(tst_SqlShellParts)
#include "tst_SqlShellParts.moc"
