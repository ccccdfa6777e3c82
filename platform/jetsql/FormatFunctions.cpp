// platform/jetsql/FormatFunctions.cpp
// The functions of the dialect that write numbers and dates for the reader's eye.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/Format.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr QStringView Weekdays = u"日月火水木金土";

QString Formatted(const Value& Data, const QString& Pattern)
{
    if (Data.Type() == FieldType::Date)
        return text::FormatDate(Data.RealPart(), Pattern);
    return IsText(Data.Type()) ? text::FormatText(Data.TextRef(), Pattern) : text::FormatNumber(Data.RealPart(), Pattern);
}

// Format(x, type of x, pattern, first weekday, first week)
void Format(CCall& Call)
{
    const QString pattern = Call.Count() < 3 ? QString() : Call.Text(2);
    for (int i = 3; i < Call.Count(); ++i)
        Require(Call.Long(i) >= 0 && Call.Long(i) <= (i == 3 ? 7 : 3));
    if (Call.IsNull(0))
        return Call.SetText(text::FormatNull(pattern));
    const Value value = Call.Any(0, Call.TypeAt(1));
    Call.SetText(pattern.isEmpty() ? value.ToType(FieldType::Text).TextRef() : Formatted(value, pattern));
}

/// What FormatNumber and its like take behind the number; -1 and -2 mean the usual.
struct NumberShape
{
    int Places;
    bool HasLeadingZero;
    bool HasParentheses;
    bool HasThousands;
};

NumberShape ShapeOf(const CCall& Call, int UsualPlaces)
{
    const auto isSet = [&](int Index, bool Usual) {
        const qint32 choice = Call.LongOr(Index, -2);
        return choice == -2 ? Usual : choice != 0;
    };
    const qint32 places = Call.LongOr(1, -1);
    Require(places >= -1 && places <= 99);
    return {places == -1 ? UsualPlaces : places, isSet(2, true), isSet(3, false), isSet(4, true)};
}

QString PatternOf(const NumberShape& How, const QString& Before, const QString& Behind)
{
    const QString last = How.HasLeadingZero ? u"0"_s : u"#"_s;
    QString pattern = Before + (How.HasThousands ? u"#,##"_s + last : last);
    if (How.Places > 0)
        pattern += u'.' + QString(How.Places, u'0');
    pattern += Behind;
    return How.HasParentheses ? pattern + u";("_s + pattern + u')' : pattern;
}

void FormatNumber(CCall& Call)
{
    Call.SetText(text::FormatNumber(Call.Number(0), PatternOf(ShapeOf(Call, 2), {}, {})));
}

void FormatPercent(CCall& Call)
{
    Call.SetText(text::FormatNumber(Call.Number(0), PatternOf(ShapeOf(Call, 2), {}, u"%"_s)));
}

// Yen have no smaller part.
void FormatCurrency(CCall& Call)
{
    Call.SetText(text::FormatNumber(Call.Number(0), PatternOf(ShapeOf(Call, 0), u"\\\\"_s, {})));
}

void FormatDateTime(CCall& Call)
{
    static constexpr QStringView patterns[] = {u"c", u"dddddd", u"ddddd", u"ttttt", u"hh:nn"};
    const qint32 kind = Call.LongOr(1, 0);
    Require(kind >= 0 && kind < qint32(std::size(patterns)));
    Call.SetText(text::FormatDate(Call.Date(0), patterns[kind]));
}

void MonthName(CCall& Call)
{
    const qint32 month = Call.Long(0);
    Require(month >= 1 && month <= 12);
    Call.SetText(QString::number(month) + u'月');
}

// WeekdayName(number, short, first weekday): number 1 is the first weekday.
void WeekdayName(CCall& Call)
{
    const qint32 number = Call.Long(0), first = Call.LongOr(2, 1);
    Require(number >= 1 && number <= 7 && first >= 0 && first <= 7);
    const QString day = Weekdays[(number - 1 + std::max(first, 1) - 1) % 7];
    Call.SetText(Call.LongOr(1, 0) != 0 ? day : day + u"曜日"_s);
}

// Partition(n, low, high, step): the range of n as " 10: 19", both ends as wide as the number behind high; what is below
// or above is open at its outer end.
void Partition(CCall& Call)
{
    const qint64 number = Call.Long(0), low = Call.Long(1), high = Call.Long(2), step = Call.Long(3);
    Require(low >= 0 && high > low && step >= 1);
    const auto width = std::max(QString::number(high + 1).size(), QString::number(low - 1).size());
    const auto padded = [width](const QString& End) { return End.rightJustified(width); };
    if (number < low)
        return Call.SetText(padded({}) + u':' + padded(QString::number(low - 1)));
    if (number > high)
        return Call.SetText(padded(QString::number(high + 1)) + u':' + padded({}));
    const qint64 begin = low + (number - low) / step * step;
    Call.SetText(padded(QString::number(begin)) + u':' + padded(QString::number(std::min(begin + step - 1, high))));
}

constexpr FunctionInfo Functions[] = {
    {.Name = "Format"_L1, .Least = 1, .Most = 4, .Kinds = "ytn", .Body = Format, .TakesNull = true},
    {.Name = "FormatNumber"_L1, .Least = 1, .Most = 5, .Kinds = "n", .Body = FormatNumber},
    {.Name = "FormatPercent"_L1, .Least = 1, .Most = 5, .Kinds = "n", .Body = FormatPercent},
    {.Name = "FormatCurrency"_L1, .Least = 1, .Most = 5, .Kinds = "n", .Body = FormatCurrency},
    {.Name = "FormatDateTime"_L1, .Least = 1, .Most = 2, .Kinds = "dn", .Body = FormatDateTime},
    {.Name = "MonthName"_L1, .Least = 1, .Most = 2, .Kinds = "n", .Body = MonthName},
    {.Name = "WeekdayName"_L1, .Least = 1, .Most = 3, .Kinds = "n", .Body = WeekdayName},
    {.Name = "Partition"_L1, .Least = 4, .Most = 4, .Kinds = "n", .Body = Partition},
};

}

std::span<const FunctionInfo> FormatFunctions() { return Functions; }

}
