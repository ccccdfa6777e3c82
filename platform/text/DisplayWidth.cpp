// platform/text/DisplayWidth.cpp
// Widths by the Unicode properties.

#include "platform/text/DisplayWidth.h"

#include "platform/text/CodePoints.h"

#include <unicode/uchar.h>

namespace text
{

int DisplayWidth(char32_t CodePoint)
{
    if (CodePoint < 0x300)
        return 1;
    const auto point = static_cast<UChar32>(CodePoint);
    if (U_GET_GC_MASK(point) & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK))
        return 0;
    const int width = u_getIntPropertyValue(point, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

int DisplayWidth(QStringView Text)
{
    int width = 0;
    for (qsizetype at = 0; at < Text.size();)
        width += DisplayWidth(NextCodePoint(Text, at));
    return width;
}

} // namespace text
