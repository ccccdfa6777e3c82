// platform/text/RoughOrder.cpp
// The first level of ICU's Japanese order, one character at a time.

#include "platform/text/RoughOrder.h"

#include "platform/text/Fold.h"

#include <QString>

#include <algorithm>
#include <array>
#include <memory>

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#include <unicode/uset.h>

namespace text
{

namespace
{

constexpr std::size_t UnitCount = 0x10000;
constexpr quint16 Unclear = 0; // no character's rank: its place hangs on its neighbours

constexpr char16_t LongVowel = 0x30FC; // ー reads as the vowel before it, and sorts so
constexpr char16_t FirstKana = 0x30A1;
constexpr char16_t LastKana = 0x30FA;
using CLongVowels = std::array<quint16, LastKana - FirstKana + 1>;

template<auto Close> struct CCloser
{
    template<class Object> void operator()(Object* What) const { Close(What); }
};
using CCollator = std::unique_ptr<UCollator, CCloser<ucol_close>>;
using CElements = std::unique_ptr<UCollationElements, CCloser<ucol_closeElements>>;
using CUnitSet = std::unique_ptr<USet, CCloser<uset_close>>;

/// The ranks of the characters on the first level of the order. Without ICU's data they are all unclear.
class CRanks
{
public:
    CRanks();

    /// Of Unit behind Before.
    quint16 Of(char16_t Before, char16_t Unit) const
    {
        if (Unit != LongVowel)
            return m_ranks[Unit];
        return Before >= FirstKana && Before <= LastKana ? m_longVowels[std::size_t(Before - FirstKana)] : Unclear;
    }

private:
    std::vector<bool> TrailingUnits() const;
    bool HasOneWeight(char16_t Unit);
    quint32 MakeWeight(char16_t Unit) const;
    void MakeRanks(const std::vector<quint32>& Weights);
    quint16 MakeLongVowel(char16_t Kana) const;

    CCollator m_collator;
    CElements m_elements;
    std::vector<quint16> m_ranks = std::vector<quint16>(UnitCount, Unclear);
    CLongVowels m_longVowels{};
};

CRanks::CRanks()
{
    UErrorCode status = U_ZERO_ERROR;
    m_collator.reset(ucol_open("ja", &status));
    if (U_FAILURE(status))
        return;
    ucol_setStrength(m_collator.get(), UCOL_PRIMARY);
    const std::vector<bool> trailing = TrailingUnits();
    std::vector<quint32> weights(UnitCount);
    for (std::size_t unit = 0; unit < UnitCount; ++unit) {
        const auto code = static_cast<char16_t>(unit);
        if (!QChar(code).isSurrogate() && !QChar(code).isMark() && !trailing[unit] && HasOneWeight(code))
            weights[unit] = MakeWeight(code);
    }
    MakeRanks(weights);
    for (std::size_t i = 0; i < m_longVowels.size(); ++i)
        m_longVowels[i] = MakeLongVowel(static_cast<char16_t>(FirstKana + i));
    m_elements.reset();
    m_collator.reset();
}

/// Units that change the weight of what stands before them, or whose own weight what stands before them changes.
std::vector<bool> CRanks::TrailingUnits() const
{
    UErrorCode status = U_ZERO_ERROR;
    const CUnitSet strings(uset_openEmpty());
    ucol_getContractionsAndExpansions(m_collator.get(), strings.get(), nullptr, true, &status);
    std::vector<bool> trailing(UnitCount, U_FAILURE(status) != 0);
    const qint32 count = uset_getItemCount(strings.get());
    for (qint32 item = 0; item < count; ++item) {
        std::array<char16_t, 64> room{};
        UChar32 first = 0;
        UChar32 last = 0;
        UErrorCode itemStatus = U_ZERO_ERROR;
        const qint32 length =
            uset_getItem(strings.get(), item, &first, &last, room.data(), qint32(room.size()), &itemStatus);
        // The headings of an index stand behind a code that no text has, which then is the unclear one.
        const bool isHeading = QChar::isNonCharacter(room[0]);
        for (qint32 i = isHeading ? 0 : 1; i < (isHeading ? 1 : std::min(length, qint32(room.size()))); ++i)
            trailing[room[std::size_t(i)]] = true;
    }
    return trailing;
}

bool CRanks::HasOneWeight(char16_t Unit)
{
    UErrorCode status = U_ZERO_ERROR;
    if (!m_elements)
        m_elements.reset(ucol_openElements(m_collator.get(), &Unit, 1, &status));
    ucol_setText(m_elements.get(), &Unit, 1, &status);
    int weights = 0;
    for (qint32 order = 0; (order = ucol_next(m_elements.get(), &status)) != UCOL_NULLORDER;) {
        const bool isContinued = (order & 0xC0) == 0xC0; // the second half of a long weight
        weights += ucol_primaryOrder(order) != 0 && !isContinued ? 1 : 0;
    }
    return U_SUCCESS(status) && weights == 1;
}

/// The sort key of one character is its weight of one to four bytes and a zero.
quint32 CRanks::MakeWeight(char16_t Unit) const
{
    std::array<quint8, 8> key{};
    const qint32 size = ucol_getSortKey(m_collator.get(), &Unit, 1, key.data(), qint32(key.size()));
    if (size < 2 || size > 5)
        return 0;
    return quint32(key[0]) << 24 | quint32(key[1]) << 16 | quint32(key[2]) << 8 | key[3];
}

/// Weights of 0 are no weights. Some characters share theirs, so there are fewer than units.
void CRanks::MakeRanks(const std::vector<quint32>& Weights)
{
    std::vector<quint32> sorted = Weights;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    for (std::size_t unit = 0; unit < UnitCount; ++unit) {
        const auto place = std::lower_bound(sorted.begin(), sorted.end(), Weights[unit]);
        m_ranks[unit] = static_cast<quint16>(place - sorted.begin());
    }
}

quint16 CRanks::MakeLongVowel(char16_t Kana) const
{
    const std::array<char16_t, 2> text{Kana, LongVowel};
    for (const char16_t vowel : {u'ア', u'イ', u'ウ', u'エ', u'オ', u'ン'}) {
        const std::array<char16_t, 2> spelt{Kana, vowel};
        if (ucol_strcoll(m_collator.get(), text.data(), 2, spelt.data(), 2) == UCOL_EQUAL)
            return m_ranks[vowel];
    }
    return Unclear;
}

const CRanks& Ranks()
{
    static const CRanks ranks;
    return ranks;
}

} // namespace

CRoughKey RoughKey(QStringView Text)
{
    const CRanks& ranks = Ranks();
    // A half-width kana and its voicing mark are one folded unit: twice as many are enough, and one to look ahead.
    const bool isWhole = Text.size() <= CRoughKey::MaxUnits * 2;
    const QStringView start = isWhole ? Text : Text.first(CRoughKey::MaxUnits * 2);
    const QString other = IsFolded(start) ? QString() : Fold(start);
    const QStringView folded = other.isEmpty() ? start : QStringView(other);
    const char16_t* const from = folded.utf16();
    CRoughKey key;
    for (qsizetype i = 0; i < folded.size(); ++i) {
        const quint16 rank = ranks.Of(i == 0 ? u'\0' : from[i - 1], from[i]);
        if (rank == Unclear) {
            key.IsUnclear = true;
            break;
        }
        if (key.Count == CRoughKey::MaxUnits)
            break;
        key.Ranks[std::size_t(key.Count++)] = rank;
    }
    key.IsUnclear = key.IsUnclear || (!isWhole && key.Count == folded.size());
    if (key.IsUnclear && key.Count > 0)
        key.Ranks[std::size_t(--key.Count)] = CRoughKey::End; // it may belong to what follows
    return key;
}

} // namespace text
