// tests/viewer/tst_CRegExp.cpp
// First and last matches of expressions and of plain texts, and what is said when there can be none.

#include "viewer/CRegExp.h"

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
    QTest::addColumn<QString>("mode"); // "plain", "exact" or "ignoring case"
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    const auto row = [](const char* What, const QString& Mode, const QString& Pattern, const QString& Text,
                        const QString& First,
                        const QString& Last) { QTest::newRow(What) << Mode << Pattern << Text << First << Last; };
    const QString plain = u"plain"_s;
    const QString exact = u"exact"_s;
    row("numbers", exact, u"[0-9]+"_s, u"a1 b22 c333"_s, u"1,1,1"_s, u"8,3,333"_s);
    row("case counts", exact, u"abc"_s, u"ABC"_s, u"none"_s, u"none"_s);
    row("case does not count", u"ignoring case"_s, u"abc"_s, u"xABC"_s, u"1,3,ABC"_s, u"1,3,ABC"_s);
    row("matches do not overlap", exact, u"aa"_s, u"aaaaa"_s, u"0,2,aa"_s, u"2,2,aa"_s);
    row("empty matches are passed over", exact, u"x*"_s, u"axxbx"_s, u"1,2,xx"_s, u"4,1,x"_s);
    row("nothing but empty matches", exact, u"^|x*|$"_s, u"ab"_s, u"none"_s, u"none"_s);
    row("empty pattern", exact, QString(), u"ab"_s, u"none"_s, u"none"_s);
    row("nothing in nothing", exact, u"a*"_s, QString(), u"none"_s, u"none"_s);
    row("positions are units", exact, u"表"_s, u"\U0001F600\r\n表"_s, u"4,1,表"_s, u"4,1,表"_s);

    row("plain text ignores case", plain, u"abc"_s, u"xABC Abc"_s, u"1,3,abc"_s, u"5,3,abc"_s);
    row("plain text has no signs", plain, u"a.*[b]"_s, u"ab a.*[B] "_s, u"3,6,a.*[b]"_s, u"3,6,a.*[b]"_s);
    row("width and kana", plain, u"カナ12"_s, u"ｶﾅ１２ かな12"_s, u"0,4,カナ12"_s, u"5,4,カナ12"_s);
    row("half-width voiced kana is longer", plain, u"ガパ"_s, u"ｱｶﾞﾊﾟｶ がぱ"_s, u"1,4,ガパ"_s, u"7,2,ガパ"_s);
    row("and sought it finds the shorter one", plain, u"ｶﾞ"_s, u"かｶガ"_s, u"2,1,ｶﾞ"_s, u"2,1,ｶﾞ"_s);
    row("voiced kana is not the plain one", plain, u"か"_s, u"がｶﾞ"_s, u"none"_s, u"none"_s);
    row("last of overlapping plain texts", plain, u"aa"_s, u"aaa"_s, u"0,2,aa"_s, u"1,2,aa"_s);
    row("empty plain pattern", plain, QString(), u"ab"_s, u"none"_s, u"none"_s);
    row("plain text in nothing", plain, u"a"_s, QString(), u"none"_s, u"none"_s);
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
    QCOMPARE(sought.Trouble(), QString());
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
    QCOMPARE(sought.Trouble(), u"正規表現の 3 文字目: 「(」が閉じられていません。"_s);
    QVERIFY(!sought.HasGivenUp());
    sought.SetRegExpMode(false);
    QVERIFY(sought.Search(u"ab(c"_s));
    QCOMPARE(sought.Trouble(), QString());

    sought.SetRegExpMode(true);
    sought.SetPattern(u"x|^(a+)+$"_s);
    const QString hopeless = QString(50, u'a') + u"bx"_s;
    QVERIFY(!sought.SearchRev(hopeless));
    QVERIFY(sought.HasGivenUp());
    QVERIFY(!sought.Trouble().isEmpty());
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
