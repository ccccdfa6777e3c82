// tests/viewer/tst_CRegExp.cpp
// First and last matches of expressions and of plain texts, and what is said when there can be none.

#include "viewer/CRegExp.h"
#include "tests/support/Table.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// The outcome in one line: "start,length,value", or "none" when every member says so.
QString Found(const CRegExp& What, bool Result)
{
    if (Result)
        return u"%1,%2,%3"_s.arg(What.FirstIndex()).arg(What.Length()).arg(What.Value());
    const bool isNone = What.FirstIndex() == -1 && What.Length() == -1 && What.Value().isEmpty();
    return isNone ? u"none"_s : u"left over"_s;
}

} // namespace

class tst_CRegExp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Search_data();
    void Search();
    void StartsAsAnExpression();
    void SaysWhatIsWrong();
    void LongTexts();
};

void tst_CRegExp::Search_data()
{
    // mode: "plain", "exact" or "ignoring case"
    mdlTable::AddRows<QString, QString, QString, QString, QString>("search.json", "Search",
                                                                   {"mode", "pattern", "text", "first", "last"});
}

void tst_CRegExp::Search()
{
    QFETCH(QString, mode);
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    CRegExp sought;
    sought.SetRegExpMode(mode != u"plain");
    sought.SetIgnoreCase(mode == u"ignoring case");
    sought.SetPattern(pattern);
    QTEST(Found(sought, sought.Search(text)), "first");
    QTEST(Found(sought, sought.SearchRev(text)), "last");
    QVERIFY(!sought.HasGivenUp());
    QVERIFY(!sought.Search(u"\u0001"_s));
    QCOMPARE(Found(sought, false), u"none"_s);
}

void tst_CRegExp::StartsAsAnExpression()
{
    CRegExp sought;
    QVERIFY(sought.RegExpMode());
    QVERIFY(!sought.IgnoreCase());
    QCOMPARE(Found(sought, false), u"none"_s);
    sought.SetPattern(u"A"_s);
    QVERIFY(!sought.Search(u"a"_s));
    sought.SetIgnoreCase(true); // after a search, too
    QVERIFY(sought.Search(u"a"_s));
    sought.SetPattern(u"b"_s);
    QVERIFY(!sought.Search(u"a"_s));
}

void tst_CRegExp::SaysWhatIsWrong()
{
    CRegExp sought;
    sought.SetPattern(u"ab(c"_s);
    QVERIFY(!sought.Search(u"ab(c"_s));
    QCOMPARE(sought.RegExp().ErrorText(), u"正規表現の 3 文字目: 「(」が閉じられていません。"_s);
    QVERIFY(!sought.HasGivenUp());
    sought.SetRegExpMode(false);
    QVERIFY(sought.Search(u"ab(c"_s));

    sought.SetRegExpMode(true);
    sought.SetPattern(u"x|^(a+)+$"_s);
    const QString hopeless = QString(50, u'a') + u"bx"_s;
    QVERIFY(!sought.SearchRev(hopeless));
    QVERIFY(sought.HasGivenUp());
    QCOMPARE(Found(sought, false), u"none"_s);
    QVERIFY(sought.SearchRev(u"ax"_s));
    QVERIFY(!sought.HasGivenUp());
}

void tst_CRegExp::LongTexts()
{
    const QString text = u"ｶﾞabc 表1\r\n"_s.repeated(100'000);
    CRegExp sought;
    QElapsedTimer timer;
    timer.start();
    sought.SetPattern(u"\\d+"_s);
    QVERIFY(sought.SearchRev(text));
    QCOMPARE(sought.FirstIndex(), text.size() - 3);
    sought.SetRegExpMode(false);
    sought.SetPattern(u"ガABC"_s);
    QVERIFY(sought.SearchRev(text));
    QCOMPARE(sought.FirstIndex(), text.size() - 10);
    QCOMPARE(sought.Length(), 5);
    QVERIFY2(timer.elapsed() < 5'000, "the time grows faster than the text");
}

QTEST_GUILESS_MAIN(tst_CRegExp)
#include "tst_CRegExp.moc"
