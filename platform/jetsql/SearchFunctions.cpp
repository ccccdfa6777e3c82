// platform/jetsql/SearchFunctions.cpp
// The functions of the dialect that look for one text in another.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/CSearch.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/Fold.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

// 0 tells every unit apart; 1 and 2 are the order of the database.
bool IsBinary(const CCall& Call, int Index)
{
    const qint32 mode = Call.LongOr(Index, 2);
    Require(mode >= 0 && mode <= 2);
    return mode == 0;
}

/// A text to search in, folded where case, width and kana do not count. All places are places of the text itself.
class CSearched
{
public:
    CSearched(const QString& Text, bool IsBinary) : m_text(Text), m_isBinary(IsBinary)
    {
        if (!IsBinary)
            m_folded = text::FoldWithOffsets(Text);
    }

    const QString& Units() const { return m_isBinary ? m_text : m_folded.Text; }
    QString Wanted(const QString& Part) const { return m_isBinary ? Part : text::Fold(Part); }
    /// Where unit Folded of Units() begins in the text.
    qsizetype PlaceOf(qsizetype Folded) const { return m_isBinary ? Folded : m_folded.Offsets[size_t(Folded)]; }
    /// The first unit of Units() at or after Place of the text.
    qsizetype UnitAt(qsizetype Place) const;

private:
    QString m_text;
    text::CFoldedText m_folded;
    bool m_isBinary;
};

qsizetype CSearched::UnitAt(qsizetype Place) const
{
    if (m_isBinary)
        return Place;
    return std::lower_bound(m_folded.Offsets.begin(), m_folded.Offsets.end(), Place) - m_folded.Offsets.begin();
}

// The first place at or after From where Part is found, or -1.
qsizetype Find(const QString& Text, const QString& Part, qsizetype From, bool Binary)
{
    const CSearched searched(Text, Binary);
    const qsizetype found = CSearch(searched.Wanted(Part)).First(searched.Units(), searched.UnitAt(From));
    return found < 0 ? -1 : searched.PlaceOf(found);
}

// The last place where Part is found wholly before End, or -1.
qsizetype FindLast(const QString& Text, const QString& Part, qsizetype End, bool Binary)
{
    const CSearched searched(Text.left(End), Binary);
    const qsizetype found = CSearch(searched.Wanted(Part)).Last(searched.Units());
    return found < 0 ? -1 : searched.PlaceOf(found);
}

// The place from 1 on, 0 for none.
qsizetype PlaceIn(const QString& Text, const QString& Part, qsizetype Start, bool Binary)
{
    if (Text.isEmpty() || Start > Text.size())
        return 0;
    return Part.isEmpty() ? Start : Find(Text, Part, Start - 1, Binary) + 1;
}

// With three arguments the first one is the place to begin at.
void InStr(CCall& Call)
{
    const int shift = Call.Count() > 2 ? 1 : 0;
    const qint32 start = shift ? Call.Long(0) : 1;
    Require(start >= 1);
    Call.SetWhole(PlaceIn(Call.Text(shift), Call.Text(shift + 1), start, IsBinary(Call, 3)));
}

// As InStr with places counted in bytes, two to a unit.
void InStrB(CCall& Call)
{
    const int shift = Call.Count() > 2 ? 1 : 0;
    const qint32 start = shift ? Call.Long(0) : 1;
    Require(start >= 1);
    const qsizetype place = PlaceIn(Call.Text(shift), Call.Text(shift + 1), start / 2 + 1, IsBinary(Call, 3));
    Call.SetWhole(place == 0 ? 0 : place * 2 - 1);
}

void InStrRev(CCall& Call)
{
    const QString text = Call.Text(0), part = Call.Text(1);
    const qint32 start = Call.LongOr(2, -1);
    const bool isBinary = IsBinary(Call, 3);
    Require(start >= 1 || start == -1);
    const qsizetype end = start == -1 ? text.size() : start;
    if (text.isEmpty() || end > text.size())
        return Call.SetWhole(0);
    Call.SetWhole(part.isEmpty() ? end : FindLast(text, part, end, isBinary) + 1);
}

QString Replaced(const QString& Text, const QString& Part, const QString& By, qint32 Count, bool Binary)
{
    const CSearched searched(Text, Binary);
    const CSearch search(searched.Wanted(Part));
    QString result;
    qsizetype copied = 0, at = 0;
    for (qint32 done = 0; Count < 0 || done < Count; ++done) {
        const qsizetype found = search.First(searched.Units(), at);
        if (found < 0)
            break;
        result += QStringView(Text).mid(copied, searched.PlaceOf(found) - copied);
        result += By;
        if (result.size() > CCall::MaxText)
            throw MakeError(6);
        at = found + search.Size();
        copied = searched.PlaceOf(at);
    }
    return result + QStringView(Text).mid(copied).toString();
}

// Replace(s, find, by, start, count, compare): the result begins at start.
void Replace(CCall& Call)
{
    const qint32 start = Call.LongOr(3, 1), count = Call.LongOr(4, -1);
    Require(start >= 1 && count >= -1);
    const bool isBinary = IsBinary(Call, 5);
    const QString text = Call.Text(0).mid(start - 1), part = Call.Text(1);
    Call.SetText(part.isEmpty() || count == 0 ? text : Replaced(text, part, Call.Text(2), count, isBinary));
}

void StrComp(CCall& Call)
{
    const QString left = Call.Text(0), right = Call.Text(1);
    const int order = IsBinary(Call, 2) ? left.compare(right) : text::CompareText(left, right);
    Call.SetWhole(order < 0 ? -1 : order > 0 ? 1 : 0);
}

using Gives = FunctionInfo::Gives;

constexpr FunctionInfo Functions[] = {
    {.Name = "InStr"_L1, .Least = 2, .Most = 4, .Kinds = "t", .Type = FieldType::Long, .Body = InStr},
    {.Name = "InStrB"_L1, .Least = 2, .Most = 4, .Kinds = "t", .Type = FieldType::Long, .Body = InStrB},
    {.Name = "InStrRev"_L1, .Least = 2, .Most = 4, .Kinds = "ttnn", .Type = FieldType::Long, .Body = InStrRev},
    {.Name = "Replace"_L1, .Least = 3, .Most = 6, .Kinds = "tttn", .Body = Replace, .What = Gives::Text},
    {.Name = "StrComp"_L1, .Least = 2, .Most = 3, .Kinds = "ttn", .Type = FieldType::Integer, .Body = StrComp},
};

}

std::span<const FunctionInfo> SearchFunctions() { return Functions; }

}
