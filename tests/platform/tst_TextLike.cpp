// tests/platform/tst_TextLike.cpp
// Wildcard patterns in both compares, patterns that cannot be read, and patterns made to be slow.

#include "platform/text/Like.h"
#include "tests/support/Table.h"

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
    mdlTable::AddRows<QString, QString, bool>("text-like.json", "Binary", {"text", "pattern", "isLike"});
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
    mdlTable::AddRows<QString, QString, bool>("text-like.json", "Text", {"text", "pattern", "isLike"});
}

void tst_TextLike::Text()
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QFETCH(bool, isLike);
    QCOMPARE(text::Like(text, pattern, Compare::Text), isLike);
}

void tst_TextLike::Refused_data() { mdlTable::AddRows<QString>("text-like.json", "Refused", {"pattern"}); }

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
    mdlTable::AddRows<QString, QString>("text-like.json", "Escape", {"text", "escaped"});
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
