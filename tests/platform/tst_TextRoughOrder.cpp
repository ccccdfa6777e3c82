// tests/platform/tst_TextRoughOrder.cpp
// The cheap keys never say anything else than the order of texts, and they do say something.

#include "platform/text/Fold.h"
#include "platform/text/RoughOrder.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextRoughOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Decides_data();
    void Decides();
    void NeverContradicts_data();
    void NeverContradicts();
};

namespace
{

constexpr qsizetype MaxUnits = text::CRoughKey::MaxUnits;

/// What the keys decide, as their contract says; 0 where they do not.
int Rough(const QString& Left, const QString& Right)
{
    const text::CRoughKey left = text::RoughKey(Left);
    const text::CRoughKey right = text::RoughKey(Right);
    const auto known = [](const text::CRoughKey& Key) {
        return Key.Count + (Key.IsUnclear || Key.Count == MaxUnits ? 0 : 1); // its End counts too
    };
    for (qsizetype i = 0; i < qMin(known(left), known(right)); ++i) {
        const quint16 leftRank = i < left.Count ? left.Ranks[std::size_t(i)] : text::CRoughKey::End;
        const quint16 rightRank = i < right.Count ? right.Ranks[std::size_t(i)] : text::CRoughKey::End;
        if (leftRank != rightRank)
            return leftRank < rightRank ? -1 : 1;
    }
    return 0;
}

} // namespace

void tst_TextRoughOrder::Decides_data()
{
    mdlTable::AddRows<QString, QString, int>("text-order.json", "Decides", {"left", "right", "wanted"});
    const QString most(MaxUnits, u'ｶ');
    QTest::newRow("beyond the units looked at") << most + u"a"_s << most + u"b"_s << 0;
    QTest::newRow("the last unit looked at") << most << most.chopped(1) + u'ｷ' << -1;
    QTest::newRow("half-width letters with their marks") << u"ｶﾞ"_s.repeated(40) << u"ｶﾞ"_s.repeated(39) + u'ｷ' << 0;
}

void tst_TextRoughOrder::Decides()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QFETCH(int, wanted);
    QCOMPARE(Rough(left, right), wanted);
    QCOMPARE(Rough(right, left), -wanted);
}

void tst_TextRoughOrder::NeverContradicts_data()
{
    QTest::addColumn<QString>("alphabet"); // empty: the whole BMP
    QTest::addColumn<int>("atLeast");      // of a hundred texts that differ, so many are decided
    QTest::newRow("kana with long vowels and repetition marks")
        << u"あいうえおかがきくこさしすたつっとナノハバパまやゆよンーゝゞヽヾ゛゜ーーーｶﾞﾊﾟｰ"_s << 30;
    QTest::newRow("as people write") << u"Ree: 12印刷がうまくできません設定プリンター漢字の①②、。！？ａＢｱｲﾟ～－"_s
                                     << 80;
    QTest::newRow("accents, marks, ligatures")
        << u"aàéee\u0301i\u0308lL·æßǆfiﬁ㌔㈱㍻①ⅳ\u0E40\u0E01\u0E32가각\u1100\u1161"_s << 2;
    QTest::newRow("controls and signs") << u"a\r\n\t\u0001\u00AD\u200B\uFEFF \u3000-ー―～〜\uFFFF\U0001F600\U00020BB7"_s
                                        << 2;
    QTest::newRow("everything") << QString() << 15;
}

void tst_TextRoughOrder::NeverContradicts()
{
    QFETCH(QString, alphabet);
    QFETCH(int, atLeast);
    QRandomGenerator random(932);
    const auto make = [&] {
        QString text(random.bounded(random.bounded(10) == 0 ? 90 : 9), Qt::Uninitialized);
        for (QChar& c : text)
            c = alphabet.isEmpty() ? QChar(char16_t(random.bounded(0x10000)))
                                   : alphabet[random.bounded(alphabet.size())];
        return text;
    };
    int differing = 0;
    int decided = 0;
    for (int i = 0; i < 60'000; ++i) {
        const QString start = make().left(random.bounded(70));
        const QString left = start + make();
        const QString right = start + make();
        const int order = text::CompareText(left, right);
        const int rough = Rough(left, right);
        if (rough != 0)
            QVERIFY2(rough == order, qPrintable(left + u" | "_s + right));
        differing += order != 0 ? 1 : 0;
        decided += rough != 0 ? 1 : 0;
    }
    QVERIFY2(decided * 100 >= differing * atLeast, qPrintable(u"%1 of %2"_s.arg(decided).arg(differing)));
}

QTEST_GUILESS_MAIN(tst_TextRoughOrder)
#include "tst_TextRoughOrder.moc"
