// platform/text/FormatPattern.cpp
// What the kinds of patterns have in common, and the patterns that place the characters of a text.

#include "platform/text/FormatParts.h"

#include <algorithm>
#include <utility>

namespace text
{

namespace
{

/// The kind that the character at the front of Rest asks for.
PatternKind KindOfFirst(QStringView Rest)
{
    const char16_t unit = Rest.front().toCaseFolded().unicode();
    if (QStringView(u"0#.%").contains(unit))
        return PatternKind::Number;
    if (QStringView(u"@&<>!").contains(unit))
        return PatternKind::Text;
    if (QStringView(u"ymdwqgehnsc/:").contains(unit))
        return PatternKind::Date;
    for (const QStringView word : {QStringView(u"aaa"), QStringView(u"am/pm"), QStringView(u"ampm"),
                                   QStringView(u"a/p"), QStringView(u"ttttt"), QStringView(u"oooo")}) {
        if (Rest.startsWith(word, Qt::CaseInsensitive))
            return PatternKind::Date;
    }
    return PatternKind::None;
}

/// The part of Pattern for a text, or the one behind ";" for an empty text where there is one.
QStringView SectionFor(QStringView Pattern, bool IsEmpty)
{
    const std::optional<QStringView> second = IsEmpty ? SectionOf(Pattern, 1) : std::nullopt;
    return second && !second->isEmpty() ? *second : *SectionOf(Pattern, 0);
}

/// What "< > !" anywhere in a text pattern ask for, and how many places it has.
struct TextShape
{
    qsizetype Places = 0;
    bool IsLower = false;
    bool IsUpper = false;
    bool IsFromLeft = false;
};

TextShape ShapeOf(QStringView Pattern)
{
    TextShape shape;
    QString literal;
    for (qsizetype place = 0; place < Pattern.size();) {
        if (const qsizetype length = TakeLiteral(Pattern, place, literal); length > 0) {
            place += length;
            continue;
        }
        const QChar unit = Pattern[place++];
        shape.Places += unit == u'@' || unit == u'&' ? 1 : 0;
        shape.IsFromLeft |= unit == u'!';
        shape.IsLower = unit == u'<' || (shape.IsLower && unit != u'>');
        shape.IsUpper = unit == u'>' || (shape.IsUpper && unit != u'<');
    }
    return shape;
}

} // namespace

std::optional<QStringView> SectionOf(QStringView Pattern, int Index)
{
    QString literal;
    qsizetype begin = 0;
    for (qsizetype place = 0; place < Pattern.size();) {
        if (Pattern[place] == u';') {
            if (Index-- == 0)
                return Pattern.sliced(begin, place - begin);
            begin = ++place;
        } else {
            place += std::max(TakeLiteral(Pattern, place, literal), qsizetype(1));
        }
    }
    return Index == 0 ? std::optional(Pattern.sliced(begin)) : std::nullopt;
}

PatternKind KindOf(QStringView Pattern)
{
    QString literal;
    for (qsizetype place = 0; place < Pattern.size();) {
        if (const qsizetype length = TakeLiteral(Pattern, place, literal); length > 0) {
            place += length;
            continue;
        }
        const PatternKind kind = KindOfFirst(Pattern.sliced(place++));
        if (kind != PatternKind::None)
            return kind;
    }
    return PatternKind::None;
}

qsizetype TakeLiteral(QStringView Pattern, qsizetype Place, QString& Literal)
{
    const QStringView rest = Pattern.sliced(Place);
    if (rest.front() == u'\\') {
        Literal = rest.sliced(1, std::min<qsizetype>(1, rest.size() - 1)).toString();
        return 1 + Literal.size();
    }
    if (rest.front() != u'"')
        return 0;
    const qsizetype end = rest.indexOf(u'"', 1);
    Literal = (end < 0 ? rest.sliced(1) : rest.sliced(1, end - 1)).toString();
    return end < 0 ? rest.size() : end + 1;
}

QString WriteText(QStringView Value, QStringView Pattern)
{
    const QStringView section = SectionFor(Pattern, Value.isEmpty());
    const TextShape shape = ShapeOf(section);
    QString value = Value.toString();
    if (shape.IsLower || shape.IsUpper)
        value = shape.IsLower ? value.toLower() : value.toUpper();

    QString text;
    qsizetype used = 0;
    const qsizetype spare = shape.IsFromLeft ? 0 : shape.Places - value.size();
    qsizetype missing = std::max<qsizetype>(0, spare);
    qsizetype excess = std::max<qsizetype>(0, -spare); // goes to the first place
    QString literal;
    for (qsizetype place = 0; place < section.size();) {
        if (const qsizetype length = TakeLiteral(section, place, literal); length > 0) {
            text += literal;
            place += length;
            continue;
        }
        const QChar unit = section[place++];
        if (unit == u'@' || unit == u'&') {
            if (missing == 0 && used < value.size()) {
                const qsizetype taken = 1 + std::exchange(excess, 0);
                text += QStringView(value).sliced(used, taken);
                used += taken;
            } else if (unit == u'@') {
                text += u' ';
            }
            missing = std::max<qsizetype>(0, missing - 1);
        } else if (!QStringView(u"<>!").contains(unit)) {
            text += unit;
        }
    }
    const bool takesRest = shape.Places > 0 || shape.IsLower || shape.IsUpper || shape.IsFromLeft;
    return takesRest ? text.append(QStringView(value).sliced(used)) : text;
}

} // namespace text
