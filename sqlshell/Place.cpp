// sqlshell/Place.cpp
// Lines, columns and carets.

#include "sqlshell/Place.h"

#include "platform/text/CodePoints.h"
#include "platform/text/DisplayWidth.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace sqlshell
{

namespace
{

constexpr qsizetype UnitsBefore = 30;
constexpr int ExcerptWidth = 70;
constexpr char32_t ZeroWidthJoiner = 0x200D; // what holds a family of pictures together

/// What stands for a code point on a line; 0 where nothing does.
char32_t Shown(char32_t CodePoint)
{
    if (CodePoint == '\n')
        return U'⏎';
    if (CodePoint == '\t' || CodePoint == 0x2028 || CodePoint == 0x2029)
        return ' ';
    if (CodePoint < 0x20)
        return 0x2400 + CodePoint;
    if (CodePoint == 0x7F)
        return U'␡';
    const QChar::Category category = QChar::category(CodePoint);
    if (category == QChar::Other_Format && CodePoint != ZeroWidthJoiner)
        return 0;
    const bool isBroken = category == QChar::Other_Control || category == QChar::Other_Surrogate;
    return isBroken ? U'\uFFFD' : CodePoint;
}

/// Code points: what a reader counts as characters.
int CharacterCount(QStringView Text)
{
    const auto isSecondHalf = [](QChar unit) { return unit.isLowSurrogate(); };
    return int(Text.size() - std::count_if(Text.begin(), Text.end(), isSecondHalf));
}

} // namespace

QString OneLine(QStringView Text, int MaxWidth)
{
    QString line;
    int width = 0;
    qsizetype fitting = 0; // units of the line that leave room for "…"
    for (qsizetype at = 0; at < Text.size();) {
        char32_t point = text::NextCodePoint(Text, at);
        if (point == '\r' && at < Text.size() && Text[at] == u'\n') // one line break
            continue;
        if (point == '\r')
            point = '\n';
        const char32_t shown = Shown(point);
        if (shown == 0)
            continue;
        width += text::DisplayWidth(shown);
        if (MaxWidth > 0 && width > MaxWidth)
            return line.first(fitting) + u'…';
        line += QChar::fromUcs4(shown);
        if (width < MaxWidth)
            fitting = line.size();
    }
    return line;
}

CPlace FindPlace(QStringView Statement, qsizetype Offset, int FirstLine)
{
    const qsizetype at = std::clamp<qsizetype>(Offset, 0, Statement.size());
    const QStringView before = Statement.first(at);
    const qsizetype lineBegin = before.lastIndexOf(u'\n') + 1;
    const qsizetype lineEnd = Statement.indexOf(u'\n', at);
    QStringView line = Statement.sliced(lineBegin, (lineEnd < 0 ? Statement.size() : lineEnd) - lineBegin);
    if (line.endsWith(u'\r'))
        line.chop(1);

    CPlace place;
    place.Line = FirstLine + int(before.count(u'\n'));
    place.Column = CharacterCount(before.sliced(lineBegin)) + 1;
    const qsizetype column = std::min(at - lineBegin, line.size());
    const qsizetype left = column > 2 * UnitsBefore ? column - UnitsBefore : 0;
    const QString lead = (left > 0 ? u"…"_s : QString()) + OneLine(line.sliced(left, column - left), 0);
    const int leadWidth = text::DisplayWidth(lead);
    place.Excerpt = lead + OneLine(line.sliced(column), ExcerptWidth - std::min(leadWidth, ExcerptWidth / 2));
    place.Caret = QString(leadWidth, u' ') + u'^';
    return place;
}

} // namespace sqlshell
