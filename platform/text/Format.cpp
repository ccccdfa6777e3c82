// platform/text/Format.cpp
// Named formats, the choice between the kinds of patterns, and the plain forms of dates and numbers.

#include "platform/text/Format.h"

#include "platform/text/DateTime.h"
#include "platform/text/FormatParts.h"
#include "platform/text/Number.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace text
{

namespace
{

constexpr qsizetype MaxPattern = 257;

/// A named format and the pattern it stands for.
struct NamedFormat
{
    QStringView Name;
    QStringView Pattern;
    PatternKind Kind;
};

constexpr NamedFormat NamedFormats[] = {
    {u"General Date", u"c", PatternKind::Date},
    {u"Long Date", u"dddddd", PatternKind::Date},
    {u"Medium Date", u"yy-mm-dd", PatternKind::Date},
    {u"Short Date", u"ddddd", PatternKind::Date},
    {u"Long Time", u"ttttt", PatternKind::Date},
    {u"Medium Time", u"hh:nn AMPM", PatternKind::Date},
    {u"Short Time", u"hh:nn", PatternKind::Date},
    {u"Currency", u"\\\\#,##0", PatternKind::Number},
    {u"Fixed", u"0.00", PatternKind::Number},
    {u"Standard", u"#,##0.00", PatternKind::Number},
    {u"Percent", u"0.00%", PatternKind::Number},
    {u"Scientific", u"0.00E+00", PatternKind::Number},
    {u"True/False", u"\"True\";\"True\";\"False\"", PatternKind::Number},
    {u"Yes/No", u"\"Yes\";\"Yes\";\"No\"", PatternKind::Number},
    {u"On/Off", u"\"On\";\"On\";\"Off\"", PatternKind::Number},
};

/// A pattern after named formats have been looked up. General asks for the plain form of a number.
struct Choice
{
    QStringView Pattern;
    PatternKind Kind;
    bool IsGeneral = false;
};

Choice Choose(QStringView Pattern)
{
    if (Pattern.compare(u"General Number", Qt::CaseInsensitive) == 0)
        return {Pattern, PatternKind::Number, true};
    for (const NamedFormat& named : NamedFormats) {
        if (Pattern.size() == named.Name.size() && Pattern.compare(named.Name, Qt::CaseInsensitive) == 0)
            return {named.Pattern, named.Kind};
    }
    const QStringView read = Pattern.first(std::min(Pattern.size(), MaxPattern));
    return {read, KindOf(read)};
}

QString WriteNumberBy(double Value, const Choice& How)
{
    return How.IsGeneral || !std::isfinite(Value) ? NumberToText(Value) : WriteNumber(Value, How.Pattern);
}

QString WriteDateBy(double Serial, const Choice& How)
{
    const QDateTime moment = FromSerial(Serial);
    return moment.isValid() ? WriteDate(moment, How.Pattern) : NumberToText(Serial);
}

/// Digits (without a point) and the place of the point among them: 0.05 is "5", -1.
struct Decimal
{
    QString Digits;
    int Point = 0;
};

Decimal ToDecimal(double Value, int Precision)
{
    QString text = QString::number(Value, 'e', Precision - 1);
    const qsizetype e = text.indexOf(u'e');
    Decimal decimal{text.left(e).remove(u'.'), text.mid(e + 1).toInt() + 1};
    while (decimal.Digits.size() > 1 && decimal.Digits.endsWith(u'0'))
        decimal.Digits.chop(1);
    return decimal;
}

/// Plain while Precision places are enough, otherwise with an exponent of at least two digits.
QString PlainNumber(double Value, int Precision)
{
    if (!std::isfinite(Value) || Value == 0)
        return Value == 0 ? u"0"_s : QString::number(Value);
    Decimal decimal = ToDecimal(std::abs(Value), Precision);
    const QString sign = Value < 0 ? u"-"_s : QString();
    QString& digits = decimal.Digits;
    const auto size = static_cast<int>(digits.size());
    const int point = decimal.Point;
    if (point > Precision || size - point > Precision) {
        const int exponent = point - 1;
        if (size > 1)
            digits.insert(1, u'.');
        return sign + digits + (exponent < 0 ? u"E-"_s : u"E+"_s) + u"%1"_s.arg(std::abs(exponent), 2, 10, QChar(u'0'));
    }
    if (point >= size)
        return sign + digits.leftJustified(point, u'0');
    if (point > 0)
        return sign + digits.insert(point, u'.');
    return sign + u"0."_s + QString(-point, u'0') + digits;
}

} // namespace

QString FormatDate(double Serial, QStringView Pattern)
{
    if (Pattern.isEmpty())
        return GeneralDate(Serial);
    const Choice how = Choose(Pattern);
    switch (how.Kind) {
    case PatternKind::Number:
        return WriteNumberBy(Serial, how);
    case PatternKind::Text:
        return WriteText(GeneralDate(Serial), how.Pattern);
    default:
        return WriteDateBy(Serial, how);
    }
}

QString FormatNumber(double Value, QStringView Pattern)
{
    if (Pattern.isEmpty())
        return NumberToText(Value);
    const Choice how = Choose(Pattern);
    switch (how.Kind) {
    case PatternKind::Date:
        return WriteDateBy(Value, how);
    case PatternKind::Text:
        return WriteText(NumberToText(Value), how.Pattern);
    default:
        return WriteNumberBy(Value, how);
    }
}

QString FormatText(QStringView Value, QStringView Pattern)
{
    const Choice how = Choose(Pattern);
    if (Pattern.isEmpty() || how.Kind == PatternKind::None)
        return Pattern.isEmpty() ? Value.toString() : WriteText(Value, how.Pattern);
    if (how.Kind == PatternKind::Text)
        return WriteText(Value, how.Pattern);
    std::optional<double> number = TextToDouble(Value);
    if (!number)
        number = TextToDate(Value);
    if (!number)
        return Value.toString();
    return how.Kind == PatternKind::Date ? WriteDateBy(*number, how) : WriteNumberBy(*number, how);
}

QString FormatNull(QStringView Pattern)
{
    const Choice how = Choose(Pattern);
    if (how.Kind == PatternKind::Text) {
        const std::optional<QStringView> section = SectionOf(how.Pattern, 1);
        return section ? WriteText({}, how.Pattern) : QString();
    }
    const std::optional<QStringView> section = SectionOf(how.Pattern, 3);
    return section ? WriteNumber(0, *section) : QString();
}

QString GeneralDate(double Serial)
{
    const QDateTime moment = FromSerial(Serial);
    return moment.isValid() ? WriteDate(moment, u"c") : NumberToText(Serial);
}

QString NumberToText(double Value) { return PlainNumber(Value, 15); }

QString SingleToText(float Value) { return PlainNumber(static_cast<double>(Value), 7); }

} // namespace text
