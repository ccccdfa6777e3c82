// platform/jetsql/CSearch.cpp
// Short parts go to Qt's search, whose worst case grows with the part; long ones to Knuth, Morris and Pratt's.

#include "platform/jetsql/CSearch.h"

#include <algorithm>

namespace jetsql {

namespace {

constexpr qsizetype MaxShort = 16;

// Entry i: how many units at the start of Part are also those that end at unit i, all i + 1 of them not counted.
std::vector<qsizetype> BordersOf(QStringView Part)
{
    std::vector<qsizetype> borders(size_t(Part.size()), 0);
    qsizetype fits = 0;
    for (qsizetype i = 1; i < Part.size(); ++i) {
        while (fits > 0 && Part[i] != Part[fits])
            fits = borders[size_t(fits) - 1];
        fits += Part[i] == Part[fits] ? 1 : 0;
        borders[size_t(i)] = fits;
    }
    return borders;
}

// At yields the units of the text in the order of the search.
template <typename UnitAt>
qsizetype Walk(QStringView Part, const std::vector<qsizetype>& Borders, qsizetype From, qsizetype End, UnitAt At)
{
    qsizetype fits = 0;
    for (qsizetype i = From; i < End; ++i) {
        while (fits > 0 && At(i) != Part[fits])
            fits = Borders[size_t(fits) - 1];
        fits += At(i) == Part[fits] ? 1 : 0;
        if (fits == Part.size())
            return i + 1 - fits;
    }
    return -1;
}

}

qsizetype CSearch::First(QStringView Text, qsizetype From) const
{
    if (m_part.size() <= MaxShort)
        return Text.indexOf(m_part, From);
    if (m_borders.empty())
        m_borders = BordersOf(m_part);
    return Walk(m_part, m_borders, From, Text.size(), [Text](qsizetype i) { return Text[i]; });
}

qsizetype CSearch::Last(QStringView Text) const
{
    if (m_part.size() <= MaxShort)
        return Text.lastIndexOf(m_part);
    QString part = m_part;
    std::reverse(part.begin(), part.end());
    const qsizetype size = Text.size();
    const qsizetype found = Walk(part, BordersOf(part), 0, size, [Text, size](qsizetype i) { return Text[size - 1 - i]; });
    return found < 0 ? -1 : size - found - m_part.size();
}

}
