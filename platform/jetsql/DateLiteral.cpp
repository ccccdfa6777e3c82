// platform/jetsql/DateLiteral.cpp
// The inside of #...#: a date in the one order that does not depend on the locale.

#include "platform/jetsql/DateLiteral.h"

#include "platform/jetsql/Characters.h"
#include "platform/text/DateTime.h"

#include <QDate>
#include <QString>

#include <array>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr qint64 JulianDayOfZero = 2415019;   // 1899-12-30

struct CDateReader
{
    explicit CDateReader(QStringView Text) : m_text(Text) {}

    std::optional<double> Read();

private:
    bool AtEnd() const { return m_at >= m_text.size(); }
    char16_t Peek() const { return AtEnd() ? u'\0' : m_text[m_at].unicode(); }
    void SkipBlanks() { while (!AtEnd() && IsBlank(Peek())) ++m_at; }
    bool Take(char16_t Unit);
    int Number();
    int MonthName();
    bool DatePart();
    bool TimePart();
    bool Designator();
    bool SetDay(int Year, int Month, int Day);
    bool NumericDate(int First, int FirstDigits);
    bool NamedDate(int First);

    QStringView m_text;
    qsizetype m_at = 0;
    qsizetype m_digits = 0;
    qint64 m_day = 0;
    int m_second = 0;
};

bool CDateReader::Take(char16_t Unit)
{
    if (Peek() != Unit)
        return false;
    ++m_at;
    return true;
}

// -1 where no number of at most four digits stands.
int CDateReader::Number()
{
    int number = 0;
    const qsizetype begin = m_at;
    while (IsDigit(Peek()) && m_at - begin < 5)
        number = number * 10 + (m_text[m_at++].unicode() - u'0');
    m_digits = m_at - begin;
    return m_digits >= 1 && m_digits <= 4 ? number : -1;
}

// 1 to 12, or 0 where no English month name, whole or of three letters, stands.
int CDateReader::MonthName()
{
    static constexpr std::array<QStringView, 12> names{
        u"January", u"February", u"March", u"April", u"May", u"June",
        u"July", u"August", u"September", u"October", u"November", u"December"};
    const qsizetype begin = m_at;
    while (QChar(Peek()).isLetter())
        ++m_at;
    const QStringView word = m_text.mid(begin, m_at - begin);
    for (size_t i = 0; i < names.size(); ++i) {
        if (word.size() >= 3 && (word.size() == 3 || word.size() == names[i].size())
            && names[i].startsWith(word, Qt::CaseInsensitive))
            return int(i) + 1;
    }
    m_at = begin;
    return 0;
}

bool CDateReader::SetDay(int Year, int Month, int Day)
{
    if (Year < 30)
        Year += 2000;
    else if (Year < 100)
        Year += 1900;
    const QDate date(Year, Month, Day);
    if (!date.isValid())
        return false;
    m_day = date.toJulianDay() - JulianDayOfZero;
    return m_day >= text::MinDay && m_day <= text::MaxDay;
}

bool CDateReader::NumericDate(int First, int FirstDigits)
{
    const char16_t separator = Peek();
    if (separator != u'/' && separator != u'-' && separator != u' ')
        return false;
    ++m_at;
    if (const int month = MonthName(); month && Take(separator)) {   // 15-Jan-2002, or with blanks
        const int year = Number();
        return year >= 0 && FirstDigits <= 2 && SetDay(year, month, First);
    }
    const int second = Number();
    if (second < 0 || separator == u' ' || !Take(separator))
        return false;
    const int third = Number();
    if (third < 0)
        return false;
    if (FirstDigits == 4)
        return SetDay(First, second, third);
    return SetDay(third, First, second) || SetDay(third, second, First);
}

// January 15, 2002 (the month has been read as First) or with blanks only.
bool CDateReader::NamedDate(int First)
{
    SkipBlanks();
    const int day = Number();
    SkipBlanks();
    Take(u',');
    SkipBlanks();
    const int year = Number();
    return day >= 0 && year >= 0 && SetDay(year, First, day);
}

bool CDateReader::DatePart()
{
    if (const int month = MonthName())
        return NamedDate(month);
    const int first = Number();
    return first >= 0 && NumericDate(first, int(m_digits));
}

bool CDateReader::Designator()
{
    SkipBlanks();
    const char16_t letter = Peek() | 0x20;
    if (letter != u'a' && letter != u'p')
        return true;
    ++m_at;
    if ((Peek() | 0x20) == u'm')
        ++m_at;
    const int hour = m_second / 3600;
    if (hour > 12)
        return true;   // 13:00 PM is 13:00
    m_second += ((hour % 12) + (letter == u'p' ? 12 : 0) - hour) * 3600;
    return true;
}

bool CDateReader::TimePart()
{
    const int hour = Number();
    if (hour < 0 || hour > 23 || !Take(u':'))
        return false;
    const int minute = Number();
    if (minute < 0 || minute > 59)
        return false;
    int second = 0;
    if (Take(u':') && ((second = Number()) < 0 || second > 59))
        return false;
    m_second = (hour * 60 + minute) * 60 + second;
    return Designator();
}

std::optional<double> CDateReader::Read()
{
    SkipBlanks();
    const qsizetype begin = m_at;
    const bool timeAlone = Number() >= 0 && Peek() == u':';
    m_at = begin;
    if (!timeAlone && !DatePart())
        return std::nullopt;
    SkipBlanks();
    if (!AtEnd() && !TimePart())
        return std::nullopt;
    SkipBlanks();
    if (!AtEnd())
        return std::nullopt;
    return SerialOf(m_day, m_second);
}

}

double SerialOf(qint64 Day, int Second)
{
    const double fraction = Second / 86400.0;
    return Day < 0 ? double(Day) - fraction : double(Day) + fraction;
}

std::optional<double> ReadDateLiteral(QStringView Text)
{
    return CDateReader(Text).Read();
}

}
