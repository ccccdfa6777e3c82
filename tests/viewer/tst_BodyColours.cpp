// tests/viewer/tst_BodyColours.cpp
// Which lines of a message are quotations and comments.

#include "viewer/mdlBodyLines.h"

#include <QTest>

using namespace Qt::StringLiterals;
using LineKind = ViewerHost::LineKind;

class tst_BodyColours : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Kinds_data();
    void Kinds();
    void Lines_data();
    void Lines();
};

void tst_BodyColours::Kinds_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("wanted");
    const int plain = int(LineKind::Plain);
    const int quote = int(LineKind::Quote);
    const int comment = int(LineKind::Comment);
    QTest::newRow("text") << u"本文"_s << plain;
    QTest::newRow("empty") << QString() << plain;
    QTest::newRow("only blanks") << u" 　 "_s << plain;
    QTest::newRow("greater") << u"> 引用"_s << quote;
    QTest::newRow("greater alone") << u">"_s << quote;
    QTest::newRow("full-width greater") << u"＞引用"_s << quote;
    QTest::newRow("bar") << u"|引用"_s << quote;
    QTest::newRow("full-width bar") << u"｜本文"_s << plain;
    QTest::newRow("half-width greater twin") << u"〉本文"_s << plain;
    QTest::newRow("two full-width blanks") << u"　　>引用"_s << quote;
    QTest::newRow("mixed blanks") << u" 　 ＃注"_s << comment;
    QTest::newRow("tab is no blank") << u"\t>引用"_s << plain;
    QTest::newRow("number sign") << u"#注"_s << comment;
    QTest::newRow("full-width number sign") << u"＃"_s << comment;
    QTest::newRow("quoted comment") << u">#"_s << quote;
    QTest::newRow("in the middle") << u"a > b # c"_s << plain;
    QTest::newRow("closing bracket") << u"]"_s << plain;
    QTest::newRow("star") << u"*"_s << plain;
}

void tst_BodyColours::Kinds()
{
    QFETCH(QString, line);
    QTEST(int(mdlBodyLines::KindOf(line)), "wanted");
}

void tst_BodyColours::Lines_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("wanted"); // "P:text/Q:text"
    QTest::newRow("empty is one line") << QString() << u"P:"_s;
    QTest::newRow("last line without its end") << u"> a\r\nb"_s << u"Q:> a/P:b"_s;
    QTest::newRow("last line with its end") << u"a\r\n"_s << u"P:a/P:"_s;
    QTest::newRow("empty lines") << u"\r\n\r\n#"_s << u"P:/P:/C:#"_s;
    QTest::newRow("a lone CR or LF does not end a line") << u"a\n>b\rc"_s << u"P:a\n>b\rc"_s;
}

void tst_BodyColours::Lines()
{
    QFETCH(QString, body);
    QStringList words;
    for (const auto& line : mdlBodyLines::Split(body)) {
        const QChar kind = line.Kind == LineKind::Quote ? u'Q' : line.Kind == LineKind::Comment ? u'C' : u'P';
        words.append(kind + u":"_s + line.Text);
    }
    QTEST(words.join(u'/'), "wanted");
}

QTEST_GUILESS_MAIN(tst_BodyColours)
#include "tst_BodyColours.moc"
