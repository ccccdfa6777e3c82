// tests/platform/tst_RegexpExpression.cpp
// The dialect of expressions, what it refuses, all matches of a text, and that no expression hangs.

#include "platform/regexp/CScan.h"
#include "tests/support/Table.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using regexp::CExpression;
using regexp::COptions;
using regexp::CScan;
using regexp::Fault;
using regexp::Outcome;

namespace
{

/// Every match as its place and text, "0:ab 2:"; the groups of a match in brackets, "-" for one that took no part.
QString Matches(const CExpression& Expression, const QString& Text)
{
    QStringList all;
    CScan scan(Expression, Text);
    while (scan.Next() == Outcome::Found) {
        QString match = u"%1:%2"_s.arg(scan.Match().Index).arg(Text.mid(scan.Match().Index, scan.Match().Length));
        for (int i = 1; i <= Expression.GroupCount(); ++i) {
            const auto span = scan.Group(i);
            match += span.Index < 0 ? u"[-]"_s : u"[%1]"_s.arg(Text.mid(span.Index, span.Length));
        }
        all << match;
    }
    return all.join(u' ');
}

/// "i" and "m" in Letters.
COptions Options(const QString& Letters) { return {Letters.contains(u'i'), Letters.contains(u'm')}; }

} // namespace

class tst_RegexpExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Match_data();
    void Match();
    void Refused_data();
    void Refused();
    void EveryClassUnit_data();
    void EveryClassUnit();
    void StartAndGroups();
    void Hopeless_data();
    void Hopeless();
    void Effort_data();
    void Effort();
    void Limits();
};

void tst_RegexpExpression::Match_data()
{
    mdlTable::AddRows<QString, QString, QString, QString>("regexp.json", "Match",
                                                          {"pattern", "text", "matches", "options"});
}

void tst_RegexpExpression::Match()
{
    QFETCH(QString, pattern);
    QFETCH(QString, options);
    QFETCH(QString, text);
    QFETCH(QString, matches);
    const CExpression expression(pattern, Options(options));
    QVERIFY2(expression.IsValid(), qPrintable(expression.ErrorText()));
    QCOMPARE(Matches(expression, text), matches);
}

void tst_RegexpExpression::Refused_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<qsizetype>("offset");
    const auto row = [](const QString& Pattern, Fault What, qsizetype Offset) {
        QTest::newRow(qPrintable(Pattern.left(12))) << Pattern << What << Offset;
    };
    row(u"a(b"_s, Fault::OpenGroup, 1);
    row(u"(a(b)(?:c"_s, Fault::OpenGroup, 5);
    row(u"a)b"_s, Fault::StrayParenthesis, 1);
    row(u"a[b"_s, Fault::OpenClass, 1);
    row(u"[]a"_s, Fault::None, -1);
    row(u"[a\\]"_s, Fault::OpenClass, 0);
    row(u"a\\"_s, Fault::TrailingBackslash, 1);
    row(u"[a\\"_s, Fault::TrailingBackslash, 2);
    for (const QString& pattern : {u"*a"_s, u"+"_s, u"?"_s, u"{2}"_s})
        row(pattern, Fault::NothingToRepeat, 0);
    for (const QString& pattern : {u"a|*"_s, u"a**"_s, u"a++"_s, u"a*+"_s, u"^|+"_s})
        row(pattern, Fault::NothingToRepeat, 2);
    for (const QString& pattern : {u"^*"_s, u"$?"_s, u"(*a)"_s})
        row(pattern, Fault::NothingToRepeat, 1);
    row(u"(?:+)"_s, Fault::NothingToRepeat, 3);
    row(u"\\b+"_s, Fault::NothingToRepeat, 2);
    row(u"a{2}{3}"_s, Fault::NothingToRepeat, 4);
    row(u"a???"_s, Fault::NothingToRepeat, 3);
    row(u"ab{3,2}"_s, Fault::ReversedBounds, 2);
    row(u"a{65536}"_s, Fault::TooManyRepeats, 1);
    row(u"a{0,99999999999999999999}"_s, Fault::TooManyRepeats, 1);
    row(u"[xb-a]"_s, Fault::ReversedRange, 2);
    row(u"[\\x62-\\x61]"_s, Fault::ReversedRange, 1);
    for (const QString& pattern : {u"(?i)a"_s, u"(?<n>a)"_s, u"(?<=a)b"_s, u"(?<!a)"_s, u"(?>a)"_s, u"(?#a)"_s,
                                   u"(?P<n>a)"_s, u"(?R)"_s, u"(?|a)"_s, u"(?"_s, u"(?)"_s, u"(?C1)"_s})
        row(pattern, Fault::UnknownGroup, 0);
    row(QString(201, u'('), Fault::TooDeep, 200);
    row(QString(40'000, u'あ'), Fault::TooLarge, -1);
    row(u"((a{9}b){999}){999}"_s, Fault::TooLarge, -1);
}

void tst_RegexpExpression::Refused()
{
    QFETCH(QString, pattern);
    QFETCH(Fault, fault);
    QFETCH(qsizetype, offset);
    const CExpression expression(pattern);
    QCOMPARE(expression.Reason(), fault);
    QCOMPARE(expression.FaultOffset(), offset);
    QCOMPARE(expression.ErrorText().isEmpty(), fault == Fault::None);
    if (fault != Fault::None)
        QCOMPARE(CScan(expression, pattern).Next(), Outcome::NotFound);
}

void tst_RegexpExpression::EveryClassUnit_data()
{
    mdlTable::AddRows<QString, QString>("regexp.json", "EveryClassUnit", {"pattern", "members"});
}

void tst_RegexpExpression::EveryClassUnit()
{
    QFETCH(QString, pattern);
    QFETCH(QString, members);
    QString units(0x10000, Qt::Uninitialized);
    for (int i = 0; i < units.size(); ++i)
        units[i] = QChar(i);
    const CExpression expression(pattern);
    CScan scan(expression, units);
    QString found;
    while (scan.Next() == Outcome::Found)
        found += units.mid(scan.Match().Index, scan.Match().Length);
    QCOMPARE(found, members);
}

void tst_RegexpExpression::StartAndGroups()
{
    const CExpression expression(u"^a|\\bb|(c)"_s);
    const QString text = u"aabbc"_s;
    CScan scan(expression, text, 1);
    QCOMPARE(scan.Next(), Outcome::Found); // neither ^ nor \b is at the place where the search begins
    QCOMPARE(scan.Match(), (regexp::CSpan{4, 1}));
    QCOMPARE(scan.Group(1), (regexp::CSpan{4, 1}));
    QCOMPARE(scan.Group(2), regexp::CSpan{});
    QCOMPARE(scan.Next(), Outcome::NotFound);
    QCOMPARE(scan.Match(), regexp::CSpan{});
    QCOMPARE(scan.Next(), Outcome::NotFound);
    QCOMPARE(CScan(expression, text, 99).Next(), Outcome::NotFound);
    CScan beforeTheStart(expression, text, -5);
    QCOMPARE(beforeTheStart.Next(), Outcome::Found);
    QCOMPARE(CScan(expression, QStringView()).Next(), Outcome::NotFound);
}

void tst_RegexpExpression::Hopeless_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    const QString as(50'000, u'a');
    QTest::newRow("loop in a loop") << u"^(a+)+$"_s << as + u'b';
    QTest::newRow("alternatives without a loop") << u"(?:a|a)"_s.repeated(40) + u"[yz]"_s << as;
    QTest::newRow("counted alternatives") << u"(?:a|a){40}[yz]"_s << as;
    QTest::newRow("options") << u"a?"_s.repeated(40) + u"(?:a){40}[yz]"_s << as.left(41);
    QTest::newRow("optional groups") << u"(a)?"_s.repeated(40) + u"[yz]"_s << as;
    QTest::newRow("one repetition behind the other") << u"[^]*a[^]*a[^]*a[^]*[yz]"_s << as;
    QTest::newRow("lazy ones") << u"[^]*?a[^]*?a[^]*?[yz]"_s << as;
    QTest::newRow("repetition from every place") << u"[ab]b?a*[yz]"_s << as;
    QTest::newRow("back reference at every place") << u"(a*)b?\\1[yz]"_s << as;
    QTest::newRow("back reference in a loop") << u"(a*)(?:\\1)*[yz]"_s << as;
    QTest::newRow("late back reference") << u"()"_s.repeated(300) + u"(a*)b?\\301[yz]"_s << as;
    QTest::newRow("empty matches that look far ahead") << u"(?=[^]*[yz])|(?=[^]*b)"_s << as;
    QTest::newRow("run before units of its own") << u"a*aaaaaaaaaaaaaaaaaaaa[yz]"_s << as;
    QTest::newRow("run of many ranges") << u"[\\w\u3041-\u3093\u4e00-\u9fff]*あ[yz]"_s << QString(50'000, u'あ');
    QTest::newRow("deep going back") << u"(?:a(?:a|b))*[yz]"_s << as;
}

void tst_RegexpExpression::Hopeless()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QElapsedTimer timer;
    timer.start();
    const CExpression expression(pattern);
    QVERIFY2(expression.IsValid(), qPrintable(expression.ErrorText()));
    CScan scan(expression, text);
    while (scan.Next() == Outcome::Found) {
    }
    const Outcome end = scan.Next(); // the answer stays
    QVERIFY(end == Outcome::GaveUp || end == Outcome::NotFound);
    QVERIFY2(timer.elapsed() < 4'000, qPrintable(QString::number(timer.elapsed())));
}

void tst_RegexpExpression::Effort_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("wanted"); // runs, ways, compares along one of them; "-" where nothing is known
    const auto row = [](const char* Pattern, const QString& Wanted) {
        QTest::newRow(Pattern) << QString::fromLatin1(Pattern) << Wanted;
    };
    row("abc", u"0 1 4"_s);
    row("a*b+?c{2,5}", u"3 1 8"_s);
    row("a?(?:b|c|d)??|e", u"0 24 6"_s);
    row("(a|b)(?=c|d)(?!e)", u"0 4 6"_s);
    row("a{7,}b", u"1 1 15"_s);
    row("(a*|b)", u"1 2 3"_s);
    for (const char* pattern : {"(a+)+", "(?:a|b){40}", "(?:ab)*", "(a)b\\1", "(?=a*)b", "((?!x(a*)y))"})
        row(pattern, u"-"_s);
}

void tst_RegexpExpression::Effort()
{
    QFETCH(QString, pattern);
    const regexp::CEffort effort = regexp::CEcmaPattern::Read(pattern).Effort;
    const QString told = u"%1 %2 %3"_s.arg(effort.Runs).arg(effort.Ways).arg(effort.Length);
    QTEST(effort.IsBounded ? told : u"-"_s, "wanted");
    QCOMPARE(effort.Compares(1'000'000) < 1e18, effort.IsBounded && effort.Runs < 3);
}

void tst_RegexpExpression::Limits()
{
    const CExpression nested(QString(200, u'(') + u'a' + QString(200, u')'));
    QCOMPARE(nested.GroupCount(), 200);
    QCOMPARE(CScan(nested, u"a").Next(), Outcome::Found);

    const QString chapter(20'000, u'表');
    const QString book = u'a' + chapter;
    const CExpression whole(chapter);
    QCOMPARE(CScan(whole, book).Next(), Outcome::Found);
    QVERIFY(CExpression(u"[a-c]"_s.repeated(2'000), {true, true}).IsValid());

    // The allowance is for hopeless cases; a long text with many matches, or one far away, is no such case.
    const QString text = (QString(200, u'あ') + u"foo bar 12\r\n"_s).repeated(5'000);
    const CExpression honest(u"(\\w+) +.*?\\d+(?=\\r?\\n)"_s);
    int count = 0;
    for (CScan scan(honest, text); scan.Next() == Outcome::Found;)
        ++count;
    QCOMPARE(count, 5'000);
    const QString end = text + u"あz"_s;
    const CExpression farAway(u"あ+z"_s);
    CScan scan(farAway, end);
    QCOMPARE(scan.Next(), Outcome::Found);
    QCOMPARE(scan.Match(), (regexp::CSpan{text.size(), 2}));
}

QTEST_GUILESS_MAIN(tst_RegexpExpression)
#include "tst_RegexpExpression.moc"
