// viewer/CRegExp.cpp
// Plain searches go over the folded text and back by its map, expressions over the text itself.

#include "viewer/CRegExp.h"

#include "platform/text/Fold.h"

using namespace Qt::StringLiterals;

void CRegExp::SetIgnoreCase(bool IsOn)
{
    m_ignoresCase = IsOn;
    m_expression.reset();
}

void CRegExp::SetPattern(const QString& Pattern)
{
    m_pattern = Pattern;
    m_expression.reset();
}

const regexp::CExpression& CRegExp::RegExp()
{
    if (!m_expression)
        m_expression.emplace(m_pattern, regexp::COptions{m_ignoresCase, false});
    return *m_expression;
}

bool CRegExp::Search(const QString& Text) { return Find(Text, Which::First); }

bool CRegExp::SearchRev(const QString& Text) { return Find(Text, Which::Last); }

bool CRegExp::Find(const QString& Text, Which Wanted)
{
    m_trouble.clear();
    m_hasGivenUp = false;
    const regexp::CSpan found = m_isRegExpMode ? FindExpression(Text, Wanted) : FindPlain(Text, Wanted);
    m_firstIndex = static_cast<qint32>(found.Index);
    m_length = static_cast<qint32>(found.Length);
    m_value.clear();
    if (found.Index >= 0)
        m_value = m_isRegExpMode ? Text.mid(found.Index, found.Length) : m_pattern;
    return found.Index >= 0;
}

regexp::CSpan CRegExp::FindPlain(const QString& Text, Which Wanted) const
{
    const QString sought = text::Fold(m_pattern);
    const QString folded = text::Fold(Text);
    const qsizetype place = Wanted == Which::First ? folded.indexOf(sought) : folded.lastIndexOf(sought);
    if (sought.isEmpty() || place < 0)
        return {};
    // The way back is worth its memory only where something was found.
    const std::vector<qsizetype> offsets = text::FoldWithOffsets(Text).Offsets;
    const qsizetype start = offsets[static_cast<std::size_t>(place)];
    return {start, offsets[static_cast<std::size_t>(place + sought.size())] - start};
}

regexp::CSpan CRegExp::FindExpression(const QString& Text, Which Wanted)
{
    if (!RegExp().IsValid()) {
        m_trouble = RegExp().ErrorText();
        return {};
    }
    regexp::CScan scan(RegExp(), Text);
    regexp::CSpan found;
    regexp::Outcome outcome = scan.Next();
    for (; outcome == regexp::Outcome::Found; outcome = scan.Next()) {
        if (scan.Match().Length > 0)
            found = scan.Match();
        if (Wanted == Which::First && found.Length > 0)
            return found;
    }
    if (outcome != regexp::Outcome::GaveUp)
        return found;
    m_hasGivenUp = true;
    m_trouble = u"正規表現の検索に時間がかかりすぎるため、途中で打ち切りました。"_s;
    return {};
}
