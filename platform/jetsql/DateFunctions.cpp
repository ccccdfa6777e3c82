// platform/jetsql/DateFunctions.cpp
// The functions of the dialect that work on dates and times.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/DateLiteral.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/DateTime.h"

#include <QDateTime>

#include <cmath>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr qint64 JulianDayOfZero = 2415019;   // 1899-12-30
constexpr int SecondsOfDay = 86400;

/// A date as day number and second of the day.
struct Moment
{
    qint64 Day = 0;
    int Second = 0;

    static Moment Of(double Serial);
    QDate Date() const { return QDate::fromJulianDay(Day + JulianDayOfZero); }
    qint64 Seconds() const { return Day * SecondsOfDay + Second; }
    double Serial() const;
};

// Before day 0 the fraction counts forward from the day that stands before the point.
Moment Moment::Of(double Serial)
{
    const double day = std::trunc(Serial);
    const int second = int(std::lround(std::fabs(Serial - day) * SecondsOfDay));
    if (second == SecondsOfDay && qint64(day) == text::MaxDay)
        return {text::MaxDay, SecondsOfDay - 1};   // there is no next day
    return second == SecondsOfDay ? Moment{qint64(day) + 1, 0} : Moment{qint64(day), second};
}

double Moment::Serial() const
{
    if (Day < text::MinDay || Day > text::MaxDay)
        throw MakeError(5);
    return SerialOf(Day, Second);
}

Moment FromSeconds(qint64 Seconds)
{
    qint64 day = Seconds / SecondsOfDay, second = Seconds % SecondsOfDay;
    if (second < 0) {
        second += SecondsOfDay;
        --day;
    }
    return {day, int(second)};
}

qint64 FloorDiv(qint64 Number, qint64 By) { return Number / By - (Number % By < 0 ? 1 : 0); }

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval IntervalOf(const QString& Text)
{
    static constexpr QStringView words[] = {u"yyyy", u"q", u"m", u"y", u"d", u"w", u"ww", u"h", u"n", u"s"};
    for (size_t i = 0; i < std::size(words); ++i) {
        if (QStringView(Text).compare(words[i], Qt::CaseInsensitive) == 0)
            return Interval(i);
    }
    throw MakeError(5);
}

// 1 Sunday to 7 Saturday; 0 is the system's, and that is Sunday.
int FirstWeekday(const CCall& Call, int Index)
{
    const qint32 first = Call.LongOr(Index, 1);
    if (first < 0 || first > 7)
        throw MakeError(5);
    return first == 0 ? 1 : first;
}

// 1 to 3 as FirstWeek has it; 0 is the system's, and that is the week of January 1.
int FirstWeekRule(const CCall& Call, int Index)
{
    const qint32 rule = Call.LongOr(Index, 1);
    if (rule < 0 || rule > 3)
        throw MakeError(5);
    return rule == 0 ? 1 : rule;
}

// Number of the week that begins with weekday First; day 1 was a Sunday.
qint64 WeekIndex(qint64 Day, int First) { return FloorDiv(Day - First, 7); }

int Weekday(qint64 Day, int First) { return int(Day - First - WeekIndex(Day, First) * 7) + 1; }

qint64 DayNumber(int Year, int Month, int Day) { return QDate(Year, Month, Day).toJulianDay() - JulianDayOfZero; }

// The first day of week 1: Rule 1 it holds January 1, 2 it has four days of the year, 3 all seven.
qint64 FirstWeek(int Year, int First, int Rule)
{
    const qint64 newYear = DayNumber(Year, 1, 1);
    const qint64 begin = newYear - (Weekday(newYear, First) - 1);
    const qint64 days = begin + 7 - newYear;
    const bool counts = Rule == 1 || days >= (Rule == 2 ? 4 : 7);
    return counts ? begin : begin + 7;
}

int WeekOfYear(qint64 Day, int Year, int First, int Rule)
{
    if (Rule != 1 && Day >= FirstWeek(Year + 1, First, Rule))
        return 1;
    qint64 begin = FirstWeek(Year, First, Rule);
    if (Day < begin)
        begin = FirstWeek(Year - 1, First, Rule);
    return int((Day - begin) / 7) + 1;
}

void DatePart(CCall& Call)
{
    const Moment moment = Moment::Of(Call.Date(1));
    const QDate date = moment.Date();
    const int first = FirstWeekday(Call, 2);
    const int rule = FirstWeekRule(Call, 3);
    switch (IntervalOf(Call.Text(0))) {
    case Interval::Year: return Call.SetWhole(date.year());
    case Interval::Quarter: return Call.SetWhole((date.month() + 2) / 3);
    case Interval::Month: return Call.SetWhole(date.month());
    case Interval::DayOfYear: return Call.SetWhole(date.dayOfYear());
    case Interval::Day: return Call.SetWhole(date.day());
    case Interval::Weekday: return Call.SetWhole(Weekday(moment.Day, first));
    case Interval::Week: return Call.SetWhole(WeekOfYear(moment.Day, date.year(), first, rule));
    case Interval::Hour: return Call.SetWhole(moment.Second / 3600);
    case Interval::Minute: return Call.SetWhole(moment.Second / 60 % 60);
    case Interval::Second: return Call.SetWhole(moment.Second % 60);
    }
}

// Months end where the month is shorter: January 31 and one month is February 28.
Moment AddMonths(const Moment& To, qint64 Count)
{
    const QDate date = To.Date().addMonths(int(Count));
    return {date.toJulianDay() - JulianDayOfZero, To.Second};
}

void DateAdd(CCall& Call)
{
    const qint64 count = Call.Long(1);
    const Moment from = Moment::Of(Call.Date(2));
    Moment to = from;
    switch (IntervalOf(Call.Text(0))) {
    case Interval::Year: to = std::abs(count) > 10000 ? Moment{text::MaxDay + 1} : AddMonths(from, count * 12); break;
    case Interval::Quarter: to = std::abs(count) > 40000 ? Moment{text::MaxDay + 1} : AddMonths(from, count * 3); break;
    case Interval::Month: to = std::abs(count) > 120000 ? Moment{text::MaxDay + 1} : AddMonths(from, count); break;
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday: to.Day += count; break;
    case Interval::Week: to.Day += count * 7; break;
    case Interval::Hour: to = FromSeconds(from.Seconds() + count * 3600); break;
    case Interval::Minute: to = FromSeconds(from.Seconds() + count * 60); break;
    case Interval::Second: to = FromSeconds(from.Seconds() + count); break;
    }
    Call.SetNumber(to.Serial());
}

// How many bounds of the interval lie between: from 8:59 to 9:01 one hour.
void DateDiff(CCall& Call)
{
    const Moment from = Moment::Of(Call.Date(1)), to = Moment::Of(Call.Date(2));
    const QDate first = from.Date(), last = to.Date();
    const int weekday = FirstWeekday(Call, 3);
    FirstWeekRule(Call, 4);
    const qint64 months = (last.year() - first.year()) * 12 + last.month() - first.month();
    switch (IntervalOf(Call.Text(0))) {
    case Interval::Year: return Call.SetWhole(last.year() - first.year());
    case Interval::Quarter:
        return Call.SetWhole((last.year() - first.year()) * 4 + (last.month() - 1) / 3 - (first.month() - 1) / 3);
    case Interval::Month: return Call.SetWhole(months);
    case Interval::DayOfYear:
    case Interval::Day: return Call.SetWhole(to.Day - from.Day);
    case Interval::Weekday: return Call.SetWhole((to.Day - from.Day) / 7);
    case Interval::Week: return Call.SetWhole(WeekIndex(to.Day, weekday) - WeekIndex(from.Day, weekday));
    case Interval::Hour: return Call.SetWhole(FloorDiv(to.Seconds(), 3600) - FloorDiv(from.Seconds(), 3600));
    case Interval::Minute: return Call.SetLong(FloorDiv(to.Seconds(), 60) - FloorDiv(from.Seconds(), 60));
    case Interval::Second: return Call.SetLong(to.Seconds() - from.Seconds());
    }
}

// Months and days beyond their range carry on; a year of two digits is 1930 to 2029.
void DateSerial(CCall& Call)
{
    qint64 year = Call.Long(0);
    if (year >= 0 && year < 100)
        year += year < 30 ? 2000 : 1900;
    const qint64 month = year * 12 + Call.Long(1) - 1;
    if (month < 12 || month >= 10000 * 12)
        throw MakeError(5);
    const Moment moment{DayNumber(int(month / 12), int(month % 12) + 1, 1) + Call.Long(2) - 1, 0};
    Call.SetNumber(moment.Serial());
}

void TimeSerial(CCall& Call)
{
    Call.SetNumber(FromSeconds(qint64(Call.Long(0)) * 3600 + qint64(Call.Long(1)) * 60 + Call.Long(2)).Serial());
}

// Seconds since midnight with their fraction.
void Timer(CCall& Call) { Call.SetNumber(QTime::currentTime().msecsSinceStartOfDay() / 1000.0); }

// One answer for a whole statement, as long as it stands outside of IIf and its like.
Moment Now()
{
    const QDateTime now = QDateTime::currentDateTime();
    return {now.date().toJulianDay() - JulianDayOfZero, now.time().msecsSinceStartOfDay() / 1000};
}

constexpr FunctionInfo Functions[] = {
    {.Name = "Now"_L1, .Type = FieldType::Date, .Body = [](CCall& c) { c.SetNumber(Now().Serial()); }},
    {.Name = "Date"_L1, .Type = FieldType::Date, .Body = [](CCall& c) { c.SetNumber(double(Now().Day)); }},
    {.Name = "Time"_L1, .Type = FieldType::Date, .Body = [](CCall& c) { c.SetNumber(SerialOf(0, Now().Second)); }},
    {.Name = "Timer"_L1, .Type = FieldType::Single, .Body = Timer},
    {.Name = "Year"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Date().year()); }},
    {.Name = "Month"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Date().month()); }},
    {.Name = "Day"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Date().day()); }},
    {.Name = "Hour"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Second / 3600); }},
    {.Name = "Minute"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Second / 60 % 60); }},
    {.Name = "Second"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Moment::Of(c.Date(0)).Second % 60); }},
    {.Name = "Weekday"_L1, .Least = 1, .Most = 2, .Kinds = "dn", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(Weekday(Moment::Of(c.Date(0)).Day, FirstWeekday(c, 1))); }},
    {.Name = "DatePart"_L1, .Least = 2, .Most = 4, .Kinds = "tdn", .Type = FieldType::Integer, .Body = DatePart},
    {.Name = "DateAdd"_L1, .Least = 3, .Most = 3, .Kinds = "tnd", .Type = FieldType::Date, .Body = DateAdd},
    {.Name = "DateDiff"_L1, .Least = 3, .Most = 5, .Kinds = "tddn", .Type = FieldType::Long, .Body = DateDiff},
    {.Name = "DateSerial"_L1, .Least = 3, .Most = 3, .Kinds = "n", .Type = FieldType::Date, .Body = DateSerial},
    {.Name = "TimeSerial"_L1, .Least = 3, .Most = 3, .Kinds = "n", .Type = FieldType::Date, .Body = TimeSerial},
    {.Name = "DateValue"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Date, .Body = [](CCall& c) { c.SetNumber(double(Moment::Of(c.Date(0)).Day)); }},
    {.Name = "TimeValue"_L1, .Least = 1, .Most = 1, .Kinds = "d", .Type = FieldType::Date, .Body = [](CCall& c) { c.SetNumber(SerialOf(0, Moment::Of(c.Date(0)).Second)); }},
};

}

std::span<const FunctionInfo> DateFunctions() { return Functions; }

}
