// viewer/mdlTextRanks.cpp
// Texts sorted four characters at a time by cheap keys; what these leave open is asked of the collation.

#include "viewer/mdlTextRanks.h"

#include "platform/text/Fold.h"
#include "platform/text/RoughOrder.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <span>

namespace
{

using CGoesOn = std::function<bool()>;

constexpr std::size_t Step = 1024; // steps between two looks at GoesOn
constexpr int RanksPerWord = 4;
constexpr int RankBits = 16;
constexpr int MaxWords = int(text::CRoughKey::MaxUnits) / RanksPerWord;

/// The keys of all texts as words that compare like four ranks at once.
class CKeys
{
public:
    void Reserve(std::size_t Count) { m_places.reserve(Count); }

    void Add(const QString& Text)
    {
        const text::CRoughKey key = text::RoughKey(Text);
        const auto words = (key.Count + RanksPerWord - 1) / RanksPerWord;
        m_places.push_back({quint32(m_words.size()), quint8(words), quint8(key.Count), key.IsUnclear});
        for (qsizetype word = 0; word < words; ++word) {
            quint64 packed = 0;
            for (qsizetype i = word * RanksPerWord; i < (word + 1) * RanksPerWord; ++i)
                packed = packed << RankBits | key.Ranks[std::size_t(i)];
            m_words.push_back(packed);
        }
    }

    std::size_t Count() const { return m_places.size(); }
    bool IsUnclear(int Text) const { return m_places[std::size_t(Text)].IsUnclear; }

    /// 0 behind the end.
    quint64 Word(int Text, int Number) const
    {
        const CPlace& place = m_places[std::size_t(Text)];
        return Number < place.Words ? m_words[place.First + std::size_t(Number)] : 0;
    }

    /// -1 or 1; 0 where the keys leave it open.
    int Compare(int Left, int Right) const
    {
        for (int word = 0; word < MaxWords; ++word) {
            const quint64 left = Word(Left, word);
            const quint64 right = Word(Right, word);
            if (left == right)
                continue;
            const int place = word * RanksPerWord + std::countl_zero(left ^ right) / RankBits;
            return place >= Known(Left) || place >= Known(Right) ? 0 : left < right ? -1 : 1;
        }
        return 0;
    }

private:
    struct CPlace
    {
        quint32 First;
        quint8 Words;
        quint8 Ranks;
        bool IsUnclear;
    };

    /// Ranks that are certain, the end of the text among them.
    int Known(int Text) const
    {
        const CPlace& place = m_places[std::size_t(Text)];
        return place.Ranks + (place.IsUnclear ? 0 : 1);
    }

    std::vector<CPlace> m_places;
    std::vector<quint64> m_words;
};

/// Merges two sorted pieces into To. False when broken off.
template<class Less>
bool Merge(std::span<const int> Left, std::span<const int> Right, int* To, Less IsBefore, const CGoesOn& GoesOn)
{
    auto left = Left.begin();
    auto right = Right.begin();
    for (std::size_t step = 1; left != Left.end() && right != Right.end(); ++step) {
        *To++ = IsBefore(*right, *left) ? *right++ : *left++;
        if (step % Step == 0 && !GoesOn())
            return false;
    }
    std::copy(right, Right.end(), std::copy(left, Left.end(), To));
    return true;
}

template<class Less> bool SortPieces(std::span<int> Items, Less IsBefore, const CGoesOn& GoesOn)
{
    for (std::size_t begin = 0; begin < Items.size(); begin += Step) {
        const std::span piece = Items.subspan(begin, std::min(Step, Items.size() - begin));
        std::sort(piece.begin(), piece.end(), IsBefore);
        if (piece.size() == Step && !GoesOn())
            return false;
    }
    return true;
}

/// A sort that asks GoesOn all along; std::sort could only be left by an exception.
template<class Less> bool SortWatched(std::span<int> Items, Less IsBefore, const CGoesOn& GoesOn)
{
    if (!SortPieces(Items, IsBefore, GoesOn))
        return false;
    std::vector<int> merged(Items.size() > Step ? Items.size() : 0);
    for (std::size_t width = Step; width < Items.size(); width *= 2) {
        for (std::size_t begin = 0; begin < Items.size(); begin += 2 * width) {
            const std::span both = Items.subspan(begin, std::min(2 * width, Items.size() - begin));
            const std::size_t half = std::min(width, both.size());
            if (!Merge(both.first(half), both.subspan(half), merged.data() + begin, IsBefore, GoesOn))
                return false;
        }
        std::copy(merged.begin(), merged.end(), Items.begin());
    }
    return true;
}

/// Sorts the indexes of texts.
class CTextSort
{
public:
    CTextSort(const std::vector<QString>& Texts, const CGoesOn& GoesOn)
        : m_texts(Texts)
        , m_goesOn(GoesOn)
    {}

    /// False when broken off.
    bool Run();
    /// After Run: what Ranks gives.
    std::vector<int> Ranks() const;

private:
    struct CEntry
    {
        quint64 Word;
        int Text;
    };

    const QString& Text(int Index) const { return m_texts[std::size_t(Index)]; }
    int Compare(int Left, int Right) const;
    bool MakeKeys();
    bool SortByWords(std::span<CEntry> Group, int Number);
    bool SortAlike(std::span<CEntry> Group);
    bool Spend(std::size_t Steps);

    const std::vector<QString>& m_texts;
    const CGoesOn& m_goesOn;
    CKeys m_keys;
    std::vector<int> m_twins; // of each text the first that was found to be the same, unit by unit
    std::vector<int> m_order;
    std::size_t m_spent = 0;
};

/// Asks whether the work goes on when there has been some.
bool CTextSort::Spend(std::size_t Steps)
{
    m_spent += Steps;
    if (m_spent < Step)
        return true;
    m_spent = 0;
    return m_goesOn();
}

int CTextSort::Compare(int Left, int Right) const
{
    const int rough = m_keys.Compare(Left, Right);
    return rough != 0 ? rough : text::CompareText(Text(Left), Text(Right));
}

bool CTextSort::MakeKeys()
{
    m_keys.Reserve(m_texts.size());
    m_twins.resize(m_texts.size());
    std::iota(m_twins.begin(), m_twins.end(), 0);
    for (const QString& text : m_texts) {
        m_keys.Add(text);
        if (!Spend(1))
            return false;
    }
    return true;
}

/// Texts that are alike up to word Number.
bool CTextSort::SortByWords(std::span<CEntry> Group, int Number)
{
    if (!Spend(Group.size()))
        return false;
    for (CEntry& entry : Group)
        entry.Word = m_keys.Word(entry.Text, Number);
    const auto isBefore = [](const CEntry& Left, const CEntry& Right) { return Left.Word < Right.Word; };
    if (!std::is_sorted(Group.begin(), Group.end(), isBefore))
        std::sort(Group.begin(), Group.end(), isBefore);
    for (auto begin = Group.begin(); begin != Group.end();) {
        const quint64 word = begin->Word;
        const auto end = std::find_if(begin, Group.end(), [word](const CEntry& Entry) { return Entry.Word != word; });
        constexpr quint64 lastRank = 0xFFFF;
        const bool isLast = (word & lastRank) == text::CRoughKey::End || Number + 1 == MaxWords;
        const std::span alike(begin, end);
        if (alike.size() > 1 && !(isLast ? SortAlike(alike) : SortByWords(alike, Number + 1)))
            return false;
        begin = end;
    }
    return true;
}

/// Texts with one key: mostly the same text many times, so each different one is compared once.
bool CTextSort::SortAlike(std::span<CEntry> Group)
{
    const int first = Group.front().Text;
    const auto isOther = [&](const CEntry& Entry) { return Text(Entry.Text) != Text(first); };
    const auto other = std::find_if(Group.begin(), Group.end(), isOther);
    std::for_each(Group.begin(), other, [&](const CEntry& Entry) { m_twins[std::size_t(Entry.Text)] = first; });
    if (other == Group.end())
        return Spend(Group.size());
    QHash<QStringView, std::vector<int>> same;
    for (const CEntry& entry : Group)
        same[Text(entry.Text)].push_back(entry.Text);
    std::vector<int> different;
    for (const std::vector<int>& texts : std::as_const(same))
        different.push_back(texts.front());
    const auto isBefore = [this](int Left, int Right) { return text::CompareText(Text(Left), Text(Right)) < 0; };
    if (!SortWatched(different, isBefore, m_goesOn))
        return false;
    auto to = Group.begin();
    for (const int text : different) {
        for (const int index : std::as_const(same)[Text(text)]) {
            (to++)->Text = index;
            m_twins[std::size_t(index)] = text;
        }
    }
    return true;
}

bool CTextSort::Run()
{
    if (!MakeKeys())
        return false;
    std::vector<CEntry> clear;
    std::vector<int> unclear;
    clear.reserve(m_texts.size());
    for (int text = 0; text < int(m_texts.size()); ++text) {
        if (m_keys.IsUnclear(text))
            unclear.push_back(text);
        else
            clear.push_back({0, text});
    }
    const auto isBefore = [this](int Left, int Right) { return Compare(Left, Right) < 0; };
    if (!SortByWords(clear, 0) || !SortWatched(unclear, isBefore, m_goesOn))
        return false;
    std::vector<int> sorted(clear.size());
    std::transform(clear.begin(), clear.end(), sorted.begin(), [](const CEntry& Entry) { return Entry.Text; });
    m_order.resize(m_texts.size());
    return Merge(std::span<const int>(sorted), std::span<const int>(unclear), m_order.data(), isBefore, m_goesOn);
}

std::vector<int> CTextSort::Ranks() const
{
    std::vector<int> ranks(m_order.size());
    for (std::size_t i = 1; i < m_order.size(); ++i) {
        const int before = m_order[i - 1];
        const int text = m_order[i];
        const bool isSame = m_twins[std::size_t(before)] == m_twins[std::size_t(text)] || Compare(before, text) == 0;
        ranks[std::size_t(text)] = ranks[std::size_t(before)] + (isSame ? 0 : 1);
    }
    return ranks;
}

} // namespace

namespace mdlTextRanks
{

std::optional<std::vector<int>> Ranks(const std::vector<QString>& Texts, const CGoesOn& GoesOn)
{
    CTextSort sort(Texts, GoesOn);
    if (!sort.Run())
        return std::nullopt;
    return sort.Ranks();
}

} // namespace mdlTextRanks
