// platform/text/CodePoints.h
// Walking over a text by code points.

#ifndef TEXT_CODEPOINTS_H
#define TEXT_CODEPOINTS_H

#include <QStringView>

namespace text
{

/// The code point that begins at unit At, which moves behind it; half of a surrogate pair comes as itself.
inline char32_t NextCodePoint(QStringView Text, qsizetype& At)
{
    const QChar unit = Text[At++];
    if (unit.isHighSurrogate() && At < Text.size() && Text[At].isLowSurrogate())
        return QChar::surrogateToUcs4(unit, Text[At++]);
    return unit.unicode();
}

} // namespace text

#endif // TEXT_CODEPOINTS_H
