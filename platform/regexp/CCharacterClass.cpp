// platform/regexp/CCharacterClass.cpp
// Sets of units by sorted ranges.

#include "platform/regexp/CCharacterClass.h"

#include "platform/regexp/CaseVariants.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace regexp
{

void AppendUnit(QString& Pattern, char16_t Unit)
{
    Pattern += "\\x{"_L1;
    Pattern += QString::number(Unit, 16);
    Pattern += u'}';
}

CCharacterClass CCharacterClass::Named(QChar Letter)
{
    if (Letter.isUpper())
        return Named(Letter.toLower()).Complement();
    CCharacterClass set;
    if (Letter == u'd' || Letter == u'w')
        set.Add(u'0', u'9');
    if (Letter == u'w') {
        set.Add(u'A', u'Z');
        set.Add(u'_', u'_');
        set.Add(u'a', u'z');
    }
    if (Letter == u's') {
        set.Add(u'\t', u'\r');
        set.Add(u' ', u' ');
    }
    return set;
}

void CCharacterClass::Add(char16_t First, char16_t Last) { m_ranges.push_back({First, Last}); }

void CCharacterClass::Add(const CCharacterClass& Other)
{
    m_ranges.insert(m_ranges.end(), Other.m_ranges.begin(), Other.m_ranges.end());
}

std::vector<CCharacterClass::Range> CCharacterClass::Merged() const
{
    std::vector<Range> sorted = m_ranges;
    std::sort(sorted.begin(), sorted.end(), [](const Range& A, const Range& B) { return A.First < B.First; });
    std::vector<Range> merged;
    for (const Range& each : sorted) {
        if (!merged.empty() && int(each.First) <= int(merged.back().Last) + 1)
            merged.back().Last = std::max(merged.back().Last, each.Last);
        else
            merged.push_back(each);
    }
    return merged;
}

CCharacterClass CCharacterClass::Complement() const
{
    CCharacterClass others;
    int next = 0;
    for (const Range& each : Merged()) {
        if (next < each.First)
            others.Add(static_cast<char16_t>(next), static_cast<char16_t>(each.First - 1));
        next = each.Last + 1;
    }
    if (next <= LastUnit)
        others.Add(static_cast<char16_t>(next), LastUnit);
    return others;
}

void CCharacterClass::AddCaseVariants()
{
    for (const Range& each : Merged()) {
        for (const char16_t cased : CasedUnits(each.First, each.Last)) {
            for (const char16_t variant : CaseVariants(cased))
                Add(variant, variant);
        }
    }
}

std::optional<char16_t> CCharacterClass::OnlyUnit() const
{
    const bool isOne = m_ranges.size() == 1 && m_ranges.front().First == m_ranges.front().Last;
    return isOne ? std::optional(m_ranges.front().First) : std::nullopt;
}

QString CCharacterClass::Pattern(bool IsNegated) const
{
    const std::vector<Range> ranges = Merged();
    const bool isFull = ranges.size() == 1 && ranges.front().First == 0 && ranges.front().Last == LastUnit;
    if (IsNegated ? ranges.empty() : isFull)
        return u"."_s;
    if (ranges.empty())
        return u"[^\\x{0}-\\x{ffff}]"_s; // an empty class has no spelling of its own
    QString pattern = IsNegated ? u"[^"_s : u"["_s;
    for (const Range& each : ranges) {
        AppendUnit(pattern, each.First);
        if (each.Last != each.First) {
            pattern += u'-';
            AppendUnit(pattern, each.Last);
        }
    }
    return pattern + u']';
}

} // namespace regexp
