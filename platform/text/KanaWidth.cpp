// platform/text/KanaWidth.cpp
// Widths come from the character data of Qt; only what code page 932 sees otherwise is written out.

#include "platform/text/KanaWidth.h"

#include <algorithm>
#include <array>

namespace text
{

namespace
{

constexpr char16_t FirstHalfKana = 0xFF61; // ｡
constexpr char16_t HalfVoiced = 0xFF9E;    // ﾞ
constexpr char16_t HalfSemiVoiced = 0xFF9F;
constexpr char16_t Voiced = 0x3099; // the marks that Unicode composes with
constexpr char16_t SemiVoiced = 0x309A;
constexpr char16_t LastComposed = 0x30F4; // ヴ; the code page has none of the later ones
constexpr int WidthShift = 0xFEE0;        // from ! to ！
constexpr int KanaShift = 0x60;           // from あ to ア

constexpr bool IsHalfKana(char16_t Unit) { return Unit >= FirstHalfKana && Unit <= HalfSemiVoiced; }
constexpr bool IsHalfLetter(char16_t Unit) { return Unit > 0xFF65 && Unit < HalfVoiced; }

char16_t FullOf(char16_t Half)
{
    if (Half == HalfVoiced)
        return 0x309B;
    if (Half == HalfSemiVoiced)
        return 0x309C;
    return QChar(Half).decomposition().front().unicode();
}

/// Writes the full form of the half-width kana at the front of Rest and returns how many units it took.
qsizetype WidenKana(QStringView Rest, QString& To)
{
    const char16_t full = FullOf(Rest.front().unicode());
    const char16_t next = Rest.size() > 1 ? Rest[1].unicode() : u'\0';
    if (next == HalfVoiced || next == HalfSemiVoiced) {
        const char16_t pair[] = {full, next == HalfVoiced ? Voiced : SemiVoiced};
        const QString composed = QString::fromUtf16(pair, 2).normalized(QString::NormalizationForm_C);
        if (composed.size() == 1 && composed.front() <= QChar(LastComposed)) {
            To += composed;
            return 2;
        }
    }
    To += QChar(full);
    return 1;
}

/// The half-width kana of each katakana and its punctuation, by code from U+3000; 0 where there is none.
const std::array<char16_t, 0x100>& HalfForms()
{
    static const std::array<char16_t, 0x100> forms = [] {
        std::array<char16_t, 0x100> made{};
        for (char16_t half = FirstHalfKana; half <= HalfSemiVoiced; ++half)
            made[FullOf(half) & 0xFF] = half;
        return made;
    }();
    return forms;
}

char16_t HalfOf(char16_t Unit)
{
    if (Unit >= 0xFF01 && Unit <= 0xFF5E)
        return static_cast<char16_t>(Unit - WidthShift);
    switch (Unit) {
    case 0x3000:
        return u' ';
    case 0xFFE5:
        return u'\\';
    case 0x301C: // what other systems type for ～ and －
        return u'~';
    case 0x2212:
        return u'-';
    default:
        break;
    }
    return Unit > 0x3000 && Unit < 0x3100 ? HalfForms()[Unit & 0xFF] : u'\0';
}

void NarrowUnit(QChar Unit, QString& To)
{
    if (const char16_t half = HalfOf(Unit.unicode())) {
        To += QChar(half);
        return;
    }
    const bool isKatakana = Unit.unicode() >= 0x30A1 && Unit.unicode() <= 0x30FA;
    const QString parts = isKatakana ? Unit.decomposition() : QString();
    if (parts.size() != 2) {
        To += Unit;
        return;
    }
    To += QChar(HalfOf(parts.front().unicode()));
    To += QChar(parts.back() == QChar(Voiced) ? HalfVoiced : HalfSemiVoiced);
}

constexpr bool HasKanaTwin(char16_t Hiragana)
{
    return (Hiragana >= 0x3041 && Hiragana <= 0x3093) || Hiragana == 0x309D || Hiragana == 0x309E;
}

template<typename Change> QString Each(QStringView Text, Change Of)
{
    QString changed = Text.toString();
    std::transform(changed.cbegin(), changed.cend(), changed.begin(), Of);
    return changed;
}

} // namespace

QString ToFullWidth(QStringView Text)
{
    QString wide;
    wide.reserve(Text.size());
    for (qsizetype place = 0; place < Text.size();) {
        const char16_t unit = Text[place].unicode();
        if (IsHalfKana(unit)) {
            place += WidenKana(Text.sliced(place), wide);
            continue;
        }
        const bool isAscii = unit > u' ' && unit <= u'~';
        wide += unit == u' ' ? QChar(0x3000) : QChar(isAscii ? static_cast<char16_t>(unit + WidthShift) : unit);
        ++place;
    }
    return wide;
}

QString ToHalfWidth(QStringView Text)
{
    QString narrow;
    narrow.reserve(Text.size());
    for (const QChar unit : Text)
        NarrowUnit(unit, narrow);
    return narrow;
}

QString ToKatakana(QStringView Text)
{
    return Each(Text, [](QChar Unit) {
        return HasKanaTwin(Unit.unicode()) ? QChar(static_cast<char16_t>(Unit.unicode() + KanaShift)) : Unit;
    });
}

QString ToHiragana(QStringView Text)
{
    QString full;
    full.reserve(Text.size());
    for (qsizetype place = 0; place < Text.size();) {
        if (IsHalfLetter(Text[place].unicode()))
            place += WidenKana(Text.sliced(place), full);
        else
            full += Text[place++];
    }
    return Each(full, [](QChar Unit) {
        const auto twin = static_cast<char16_t>(Unit.unicode() - KanaShift);
        return Unit.unicode() >= KanaShift && HasKanaTwin(twin) ? QChar(twin) : Unit;
    });
}

QString ToProperCase(QStringView Text)
{
    bool isFirst = true;
    return Each(Text, [&isFirst](QChar Unit) {
        const QChar changed = isFirst ? Unit.toUpper() : Unit.toLower();
        isFirst = QStringView(u" \t\n\r\v\f\u3000").contains(Unit) || Unit.isNull();
        return changed;
    });
}

QString ToUpperUnits(QStringView Text)
{
    return Each(Text, [](QChar Unit) { return Unit.toUpper(); });
}

QString ToLowerUnits(QStringView Text)
{
    return Each(Text, [](QChar Unit) { return Unit.toLower(); });
}

} // namespace text
