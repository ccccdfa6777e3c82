// viewer/CRegExp.cpp
// Plain texts by their fold, expressions by a scan whose memory serves all texts.

#include "viewer/CRegExp.h"

void CRegExp::SetIgnoreCase(bool IsOn)
{
    m_ignoresCase = IsOn;
    m_scan.reset();
    m_expression.reset();
}

void CRegExp::SetPattern(const QString& Pattern)
{
    m_pattern = Pattern;
    m_scan.reset();
    m_expression.reset();
    m_plain.reset();
}

const regexp::CExpression& CRegExp::RegExp()
{
    if (!m_expression)
        m_expression.emplace(m_pattern, regexp::COptions{m_ignoresCase, false});
    return *m_expression;
}

const text::CFoldedPattern& CRegExp::Plain()
{
    if (!m_plain)
        m_plain.emplace(m_pattern);
    return *m_plain;
}

bool CRegExp::Search(const QString& Text, qsizetype From)
{
    m_hasGivenUp = false;
    if (m_isRegExpMode)
        return Take(Text, FindFirst(Text, From));
    const text::CFoldedSpan found = Plain().First(Text, From);
    return Take(Text, {found.Index, found.Length});
}

bool CRegExp::SearchRev(const QString& Text, qsizetype Until)
{
    m_hasGivenUp = false;
    const qsizetype until = Until == ToEnd ? Text.size() : Until;
    if (m_isRegExpMode)
        return Take(Text, FindLast(Text, until));
    const text::CFoldedSpan found = Plain().Last(Text, until);
    return Take(Text, {found.Index, found.Length});
}

bool CRegExp::Take(const QString& Text, regexp::CSpan Found)
{
    m_firstIndex = static_cast<qint32>(Found.Index);
    m_length = static_cast<qint32>(Found.Length);
    m_value.clear();
    if (Found.Index >= 0)
        m_value = m_isRegExpMode ? Text.mid(Found.Index, Found.Length) : m_pattern;
    return Found.Index >= 0;
}

bool CRegExp::StartScan(const QString& Text, qsizetype From)
{
    if (!RegExp().IsValid())
        return false;
    if (m_scan)
        m_scan->Restart(Text, From);
    else
        m_scan.emplace(RegExp(), Text, From);
    return true;
}

regexp::CSpan CRegExp::FindFirst(const QString& Text, qsizetype From)
{
    if (!StartScan(Text, From))
        return {};
    regexp::Outcome outcome = m_scan->Next();
    while (outcome == regexp::Outcome::Found && m_scan->Match().Length == 0)
        outcome = m_scan->Next();
    m_hasGivenUp = outcome == regexp::Outcome::GaveUp;
    return outcome == regexp::Outcome::Found ? m_scan->Match() : regexp::CSpan();
}

regexp::CSpan CRegExp::FindLast(const QString& Text, qsizetype Until)
{
    if (!StartScan(Text, 0))
        return {};
    regexp::CSpan last;
    for (;;) {
        const regexp::Outcome outcome = m_scan->Next();
        m_hasGivenUp = outcome == regexp::Outcome::GaveUp;
        if (m_hasGivenUp)
            return {};
        const regexp::CSpan match = m_scan->Match();
        if (outcome == regexp::Outcome::NotFound || match.Index + match.Length > Until)
            return last;
        if (match.Length > 0)
            last = match;
    }
}
