// tests/sqlshell/tst_SqlShellParts.cpp
// The shell's parts without a process: what parts input, what shows values, what reads options.

#include "platform/text/DisplayWidth.h"
#include "sqlshell/Arguments.h"
#include "sqlshell/CCsvOutput.h"
#include "sqlshell/CJsonOutput.h"
#include "sqlshell/CSplitter.h"
#include "sqlshell/Parameters.h"
#include "sqlshell/Place.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QStringList>("sql-shell.json", "PartsInput", {"input", "wanted"});
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
    mdlTable::AddRows<QString, int, QString, int>("sql-shell.json", "ShowsOnOneLine",
                                                  {"text", "maxWidth", "wanted", "width"});
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
    // wanted: line,column,columns before the caret,excerpt
    mdlTable::AddRows<QString, int, QString>("sql-shell.json", "FindsThePlace", {"sql", "offset", "wanted"});
    QTest::newRow("far to the right") << QString(100, u'x') + u'!' + QString(100, u'y') << 100
                                      << u"5,101,31,…"_s + QString(30, u'x') + u'!' + QString(37, u'y') + u'…';
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
    // wanted: file|statements|parameters|format|width|flags, or the error
    mdlTable::AddRows<QByteArrayList, QString>("sql-shell.json", "ReadsOptions", {"words", "wanted"});
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
