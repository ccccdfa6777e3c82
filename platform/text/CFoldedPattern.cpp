// platform/text/CFoldedPattern.cpp
// Passes over the units that begin no match, and folds only from where one might begin.

#include "platform/text/CFoldedPattern.h"

#include "platform/text/CFoldReader.h"
#include "platform/text/Fold.h"

#include <algorithm>

namespace text
{

namespace
{

/// A voicing mark that makes one letter with the half-width kana before it.
bool IsWithin(QStringView Text, qsizetype Place)
{
    if (Place == 0 || !IsHalfMark(Text[Place].unicode()) || !IsHalfKana(Text[Place - 1].unicode()))
        return false;
    return ComposedKana(FoldTable()[Text[Place - 1].unicode()], Text[Place].unicode()) != 0;
}

} // namespace

CFoldedPattern::CFoldedPattern(const QString& Sought)
    : m_folded(Fold(Sought))
{
    if (m_folded.isEmpty())
        return;
    const char16_t first = m_folded.front().unicode();
    for (std::size_t unit = 0; unit < m_isFirst.size(); ++unit) {
        const char16_t folded = FoldTable()[unit];
        const bool isKana = IsHalfKana(static_cast<char16_t>(unit));
        m_isFirst[unit] = folded == first || (isKana && ComposedKana(folded, HalfVoiced) == first) ||
                          (isKana && ComposedKana(folded, HalfSemiVoiced) == first);
    }
}

CFoldedSpan CFoldedPattern::First(QStringView Text, qsizetype From) const
{
    const char16_t* const start = Text.utf16();
    const char16_t* const end = start + Text.size();
    const auto mayBegin = [this](char16_t Unit) { return m_isFirst[Unit]; };
    for (const char16_t* at = start + std::clamp<qsizetype>(From, 0, Text.size()); at != end; ++at) {
        at = std::find_if(at, end, mayBegin);
        if (at == end)
            break;
        if (const qsizetype length = LengthAt(Text, at - start); length > 0)
            return {at - start, length};
    }
    return {};
}

CFoldedSpan CFoldedPattern::Last(QStringView Text, qsizetype Until) const
{
    for (qsizetype at = std::min(Until, Text.size()) - 1; at >= 0; --at) {
        if (!m_isFirst[Text[at].unicode()])
            continue;
        if (const qsizetype length = LengthAt(Text, at); length > 0 && at + length <= Until)
            return {at, length};
    }
    return {};
}

qsizetype CFoldedPattern::LengthAt(QStringView Text, qsizetype Place) const
{
    if (IsWithin(Text, Place))
        return 0;
    CFoldReader reader(Text.mid(Place));
    for (const QChar unit : m_folded) {
        if (reader.AtEnd() || reader.Next() != unit.unicode())
            return 0;
    }
    return reader.Place() - Text.utf16() - Place;
}

} // namespace text
