// tests/platform/tst_TextLike.cpp
// Wildcard patterns in both compares, patterns that cannot be read, and patterns made to be slow.

#include "platform/text/Like.h"

#include <QTest>

using namespace Qt::StringLiterals;
using text::CLikePattern;
using text::Compare;

class tst_TextLike : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Binary_data();
    void Binary();
    void Text_data();
    void Text();
    void Refused_data();
    void Refused();
    void NoGoingBack();
    void Escape_data();
    void Escape();
    void EscapedMatchesItself();
};

void tst_TextLike::Binary_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("isLike");
    const auto row = [](const char* Name, const QString& Text, const QString& Pattern, bool IsLike) {
        QTest::newRow(Name) << Text << Pattern << IsLike;
    };
    row("star inside", u"aBBBa"_s, u"a*a"_s, true);
    row("star inside, one letter", u"a"_s, u"a*a"_s, false);
    row("list, digit, negated list", u"aM5b"_s, u"a[L-P]#[!c-e]"_s, true);
    row("date", u"2002/01/15"_s, u"####/##/##"_s, true);
    row("empty and empty", u""_s, u""_s, true);
    row("empty and star", u""_s, u"*"_s, true);
    row("empty and empty list", u""_s, u"[]"_s, true);
    row("empty and one unit", u""_s, u"?"_s, false);
    row("empty and negated list", u""_s, u"[!a]"_s, false);
    row("bracket in brackets", u"a[b"_s, u"a[[]b"_s, true);
    row("wildcards in brackets", u"[*?#"_s, u"[[][*][?][#]"_s, true);
    row("star over line ends", u"a\r\nb"_s, u"a*b"_s, true);
    row("one unit is a line end", u"\n"_s, u"?"_s, true);
    row("case counts", u"abc"_s, u"ABC"_s, false);
    row("whole text", u"abcd"_s, u"abc"_s, false);
    row("closing bracket outside", u"a]"_s, u"a]"_s, true);
    row("exclamation mark outside", u"a!"_s, u"a!"_s, true);
    row("signs of other languages", u"a.b%_^$\\"_s, u"a.b%_^$\\"_s, true);
    row("percent is no wildcard", u"abc"_s, u"a%"_s, false);
    row("only an exclamation mark", u"!"_s, u"[!]"_s, true);
    row("only an exclamation mark, other", u"a"_s, u"[!]"_s, false);
    row("exclamation mark not first", u"!"_s, u"[a!]"_s, true);
    row("hyphen first", u"-"_s, u"[-a]"_s, true);
    row("hyphen last", u"-"_s, u"[a-]"_s, true);
    row("hyphen first in negated", u"-"_s, u"[!-a]"_s, false);
    row("several ranges", u"7"_s, u"[a-c0-9]"_s, true);
    row("between ranges", u"d"_s, u"[a-ce-g]"_s, false);
    row("empty list between", u"ab"_s, u"a[]b"_s, true);
    row("digit is not a letter", u"a"_s, u"#"_s, false);
    row("wide digit is no digit here", u"１"_s, u"#"_s, false);
    row("stars in a row", u"abc"_s, u"**b**"_s, true);
    row("pieces in order", u"xbxaxc"_s, u"*a*b*"_s, false);
    row("pieces between stars do not overlap", u"aba"_s, u"*ab*ba*"_s, false);
    row("pieces do not overlap", u"aba"_s, u"*ab*ba"_s, false);
    row("first and last do not overlap", u"ab"_s, u"ab*b"_s, false);
    row("list behind a star", u"ab5"_s, u"*[0-9]"_s, true);
    row("digits somewhere", u"No.123です"_s, u"*###*"_s, true);
    row("too few digits", u"No.12です"_s, u"*###*"_s, false);
    row("half-width kana is another letter", u"ｱ"_s, u"ア"_s, false);
}

void tst_TextLike::Binary()
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QFETCH(bool, isLike);
    QCOMPARE(text::Like(text, pattern), isLike);
}

void tst_TextLike::Text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("isLike");
    const auto row = [](const char* Name, const QString& Text, const QString& Pattern, bool IsLike) {
        QTest::newRow(Name) << Text << Pattern << IsLike;
    };
    row("case", u"ABC"_s, u"abc"_s, true);
    row("width and kana", u"ﾃｽﾄのＴＥＳＴ"_s, u"*てすと*test*"_s, true);
    row("voiced half-width letter in the text", u"ｶﾞｲﾄﾞ"_s, u"ガイド"_s, true);
    row("voiced half-width letter in the pattern", u"がいど"_s, u"ｶﾞｲﾄﾞ"_s, true);
    row("voicing counts", u"ｶﾞ"_s, u"*カ*"_s, false);
    row("voiced pair is one unit", u"ｶﾞ"_s, u"?"_s, true);
    row("voiced pair in a list", u"が"_s, u"[ｶﾞ-ｺﾞ]"_s, true);
    row("range of capitals", u"m"_s, u"[A-Z]"_s, true);
    row("range of hiragana", u"ｶ"_s, u"[あ-ん]"_s, true);
    row("wide digit", u"１"_s, u"#"_s, true);
    row("wide star is a letter", u"abc"_s, u"a＊"_s, false);
    row("wide star meets a star", u"a*"_s, u"a＊"_s, true);
    row("wide question mark", u"何？"_s, u"*？"_s, true);
    row("wide question mark is not any unit", u"何だ"_s, u"*？"_s, false);
    row("wide bracket", u"［注］"_s, u"*［注］*"_s, true);
    row("kanji range by their order", u"話"_s, u"[亜-腕]"_s, true); // its code is beyond that of 腕
    row("kanji outside of the range", u"腕"_s, u"[亜-話]"_s, false);
    row("small kana counts", u"きっと"_s, u"きつと"_s, false);
}

void tst_TextLike::Text()
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QFETCH(bool, isLike);
    QCOMPARE(text::Like(text, pattern, Compare::Text), isLike);
}

void tst_TextLike::Refused_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("list not closed") << u"a["_s;
    QTest::newRow("list not closed behind a star") << u"*[abc"_s;
    QTest::newRow("negated list not closed") << u"[!"_s;
    QTest::newRow("descending range") << u"[z-a]"_s;
    QTest::newRow("second range descends") << u"[a-c9-0]"_s;
}

void tst_TextLike::Refused()
{
    QFETCH(QString, pattern);
    QVERIFY(!CLikePattern::Compile(pattern, Compare::Binary));
    QVERIFY(!CLikePattern::Compile(pattern, Compare::Text));
    QVERIFY(!text::Like(u"a["_s, pattern));
}

void tst_TextLike::NoGoingBack()
{
    // Trying every way to share the letters out among the stars would not end.
    const QString text(20'000, u'a');
    QVERIFY(!text::Like(text, u"a*a*a*a*a*a*a*a*a*a*a*a*b"_s));
    QVERIFY(!text::Like(text, QString(u"*a?[a-c]"_s).repeated(50) + u"b"_s));
    QVERIFY(text::Like(text, u"a*a*a*a*a*a*a*a*a*a*a*a*a"_s));
    QVERIFY(text::Like(text, QString(5'000, u'*')));
}

void tst_TextLike::Escape_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("escaped");
    QTest::newRow("nothing to do") << u"ソ表 ]!-"_s << u"ソ表 ]!-"_s;
    QTest::newRow("all four") << u"[*?#"_s << u"[[][*][?][#]"_s;
    QTest::newRow("wide ones are letters") << u"何？＊"_s << u"何？＊"_s;
}

void tst_TextLike::Escape()
{
    QFETCH(QString, text);
    QFETCH(QString, escaped);
    QCOMPARE(text::EscapeLike(text), escaped);
}

void tst_TextLike::EscapedMatchesItself()
{
    for (const QString& text : {u"a[b]c"_s, u"C# [x-a] 100%?"_s, u"*"_s, u"[!]"_s, u"ｶﾞ？[＊"_s}) {
        QVERIFY2(text::Like(text, text::EscapeLike(text)), qPrintable(text));
        QVERIFY2(text::Like(text, u'*' + text::EscapeLike(text) + u'*', Compare::Text), qPrintable(text));
    }
}

QTEST_GUILESS_MAIN(tst_TextLike)
#include "tst_TextLike.moc"
