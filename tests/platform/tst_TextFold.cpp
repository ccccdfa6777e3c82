// tests/platform/tst_TextFold.cpp
// What counts as the same text, in which order texts come, and the way back from a fold to its source.

#include "platform/text/CFoldedPattern.h"
#include "platform/text/Fold.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextFold : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Fold_data();
    void Fold();
    void Different_data();
    void Different();
    void EveryUnitIsFoldedOnce();
    void SharesWhatIsFolded();
    void Offsets();
    void Order();
    void OrderAgreesWithEquality();
    void ControlCharactersCount();
    void LongTexts();
    void PatternAgreesWithTheFold();
};

namespace
{

/// Every match of a folded text, taken back to its source.
std::vector<text::CFoldedSpan> AllMatches(const QString& Text, const QString& Sought)
{
    const text::CFoldedText folded = text::FoldWithOffsets(Text);
    const QString wanted = text::Fold(Sought);
    std::vector<text::CFoldedSpan> found;
    for (qsizetype at = folded.Text.indexOf(wanted); at >= 0; at = folded.Text.indexOf(wanted, at + 1)) {
        const qsizetype start = folded.Offsets[std::size_t(at)];
        found.push_back({start, folded.Offsets[std::size_t(at + wanted.size())] - start});
    }
    return found;
}

} // namespace

void tst_TextFold::Fold_data() { mdlTable::AddRows<QString, QString>("text-fold.json", "Fold", {"source", "folded"}); }

void tst_TextFold::Fold()
{
    QFETCH(QString, source);
    QFETCH(QString, folded);
    QCOMPARE(text::Fold(source), folded);
    QCOMPARE(text::Fold(QStringView(source)), folded);
    QCOMPARE(text::IsFolded(source), source == folded);
    QVERIFY(text::EqualText(source, folded));
    QCOMPARE(text::CompareText(source, folded), 0);
    QCOMPARE(text::SortKey(source), text::SortKey(folded));
}

void tst_TextFold::Different_data()
{
    mdlTable::AddRows<QString, QString>("text-fold.json", "Different", {"left", "right"});
}

void tst_TextFold::Different()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QVERIFY(!text::EqualText(left, right));
    const int order = text::CompareText(left, right);
    QVERIFY(order == 1 || order == -1);
    QCOMPARE(text::CompareText(right, left), -order);
    QVERIFY(text::SortKey(left) != text::SortKey(right));
}

void tst_TextFold::EveryUnitIsFoldedOnce()
{
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QString folded = text::Fold(QString(QChar(unit)));
        QCOMPARE(folded.size(), 1);
        QVERIFY2(text::IsFolded(folded), qPrintable(QString::number(unit, 16)));
    }
}

void tst_TextFold::SharesWhatIsFolded()
{
    const QString text = u"already folded カナ"_s + QString::number(1);
    QCOMPARE(text::Fold(text).constData(), text.constData());
}

void tst_TextFold::Offsets()
{
    const text::CFoldedText folded = text::FoldWithOffsets(u"Aｶﾞ表ﾊﾟﾊ"_s);
    QCOMPARE(folded.Text, u"aガ表パハ"_s);
    QCOMPARE(folded.Offsets, (std::vector<qsizetype>{0, 1, 3, 4, 6, 7}));

    const text::CFoldedText empty = text::FoldWithOffsets(QString());
    QVERIFY(empty.Text.isEmpty());
    QCOMPARE(empty.Offsets, std::vector<qsizetype>{0});
}

void tst_TextFold::Order()
{
    const QStringList sorted = {u""_s,  u"!"_s,  u"1"_s,  u"２"_s, u"a"_s,  u"Ｂ"_s, u"c"_s, u"あ"_s,
                                u"ｲ"_s, u"か"_s, u"が"_s, u"ｷ"_s,  u"ん"_s, u"亜"_s, u"表"_s};
    for (qsizetype i = 0; i + 1 < sorted.size(); ++i) {
        QVERIFY2(text::CompareText(sorted[i], sorted[i + 1]) == -1, qPrintable(sorted[i]));
        QVERIFY2(text::SortKey(sorted[i]) < text::SortKey(sorted[i + 1]), qPrintable(sorted[i]));
    }
}

void tst_TextFold::OrderAgreesWithEquality()
{
    const QString units = u"aＡあアｱｶﾞカガーｰ-－1①１ \u3000\u0001漢表っツ"_s;
    QRandomGenerator random(41);
    const auto word = [&] {
        QString text;
        for (int i = random.bounded(6); i > 0; --i)
            text += units[random.bounded(static_cast<int>(units.size()))];
        return text;
    };
    for (int round = 0; round < 5000; ++round) {
        const QString left = word();
        const QString right = word();
        const int order = text::CompareText(left, right);
        QCOMPARE(order == 0, text::Fold(left) == text::Fold(right));
        const int units = text::CompareFolds(left, right);
        QCOMPARE(units, text::Fold(left).compare(text::Fold(right)) < 0 ? -1 : int(order != 0));
        const QByteArray leftKey = text::SortKey(left);
        const QByteArray rightKey = text::SortKey(right);
        QCOMPARE((rightKey < leftKey) - (leftKey < rightKey), order);
    }
}

void tst_TextFold::ControlCharactersCount()
{
    QVERIFY(!text::EqualText(u"a\u0001"_s, u"a"_s));
    QCOMPARE(text::CompareText(u"a\u0001"_s, u"a"_s), 1);
    QVERIFY(text::CompareText(u"a\u0001"_s, u"a\u0002"_s) == -1);
}

void tst_TextFold::LongTexts()
{
    const QString wide = QString(100'000, u'Ａ');
    const QString narrow = QString(100'000, u'a');
    QVERIFY(text::EqualText(wide, narrow));
    QCOMPARE(text::CompareText(wide, narrow), 0);
    QCOMPARE(text::CompareText(wide + u'b', narrow + u'Ａ'), 1);
    QCOMPARE(text::SortKey(wide), text::SortKey(narrow));
    QVERIFY(text::SortKey(wide + u'b') > text::SortKey(narrow + u'Ａ'));
}

void tst_TextFold::PatternAgreesWithTheFold()
{
    const QString units = u"aＡかｶﾞｶﾞがﾟはﾊﾊﾟぱ゛"_s;
    QRandomGenerator random(7);
    const auto make = [&](int Length) {
        QString made;
        while (made.size() < Length)
            made += units[random.bounded(int(units.size()))];
        return made;
    };
    QString sought;
    text::CFoldedPattern pattern;
    for (int round = 0; round < 12'000; ++round) {
        if (round % 60 == 0)
            pattern = text::CFoldedPattern(sought = make(1 + random.bounded(3)));
        const QString text = make(random.bounded(12));
        const qsizetype place = random.bounded(13);
        text::CFoldedSpan first;
        text::CFoldedSpan last;
        for (const text::CFoldedSpan& match : AllMatches(text, sought)) {
            if (match.Index >= place && first.Index < 0)
                first = match;
            if (match.Index + match.Length <= place)
                last = match;
        }
        QVERIFY2(pattern.First(text, place) == first, qPrintable(sought + u" in "_s + text));
        QVERIFY2(pattern.Last(text, place) == last, qPrintable(sought + u" in "_s + text));
    }
    QCOMPARE(text::CFoldedPattern().First(u"a", 0), text::CFoldedSpan());
    QCOMPARE(text::CFoldedPattern().Last(u"a", 1), text::CFoldedSpan());
}

QTEST_GUILESS_MAIN(tst_TextFold)
#include "tst_TextFold.moc"
