// platform/text/DateReader.cpp
// Dates out of text: collects the numbers with what ties them together, then looks for an order that gives a day.

#include "platform/text/DateTime.h"

#include "platform/text/Era.h"
#include "platform/text/Fold.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string_view>

namespace text
{

namespace
{

constexpr qsizetype MaxNumbers = 6;    // year, month, day, hour, minute, second
constexpr qsizetype MaxDateText = 100; // no date is that long, blanks included
constexpr int PivotYear = 30;          // 0-29 are of this century, 30-99 of the last one

/// What a number has been said to be by the sign behind it or the era before it.
enum class Role { Open, Year, Month, Day, Hour, Minute, Second };

struct Number
{
    int Value = 0;
    Role As = Role::Open;
    bool IsTime = false;
    bool IsDate = false; // has a "/" or "-" at one of its sides
    int EraStart = 0;    // year 1 of the era named before the number; 0 without one
};

using CNumbers = QVarLengthArray<Number, 6>;

enum class HalfDay { None, Before, After };

/// Reads a folded text once from left to right.
class CDateReader
{
public:
    explicit CDateReader(const QString& Folded)
        : m_text(Folded)
    {}

    bool Read();
    std::optional<double> Serial(QDate Today) const;

private:
    bool AtEnd() const { return m_place == m_text.size(); }
    char16_t Here() const { return AtEnd() ? u'\0' : m_text[m_place].unicode(); }
    bool IsDigitHere() const { return Here() >= u'0' && Here() <= u'9'; }
    bool Take(QStringView Word);
    void SkipBlanks();
    bool ReadItem();
    bool ReadNumber();
    bool ReadMonthName();
    bool ReadEra();
    bool ReadHalfDay();
    bool ReadSign();
    bool ReadTie(char16_t Sign);
    bool ReadMark(char16_t Sign);
    bool SettleHalfDay();

    std::optional<QDate> Date(QDate Today) const;
    std::optional<QTime> Time() const;

    QString m_text;
    qsizetype m_place = 0;
    CNumbers m_numbers;
    int m_eraStart = 0;
    bool m_wantsNumber = false; // a separator stands before
    bool m_tiesToTime = false;  // that separator was one of the time
    bool m_hasMonthName = false;
    bool m_hasDateDots = false; // "H14.1.15"; elsewhere a point is a sign of the time
    int m_dateSigns = 0;
    HalfDay m_half = HalfDay::None;
    qsizetype m_halfBehind = 0; // how many numbers stand before AM or PM
};

bool CDateReader::Take(QStringView Word)
{
    if (!QStringView(m_text).sliced(m_place).startsWith(Word))
        return false;
    m_place += Word.size();
    return true;
}

void CDateReader::SkipBlanks()
{
    while (Here() == u' ' || Here() == u'\t' || (Here() == u',' && !m_wantsNumber))
        ++m_place;
}

bool CDateReader::Read()
{
    for (SkipBlanks(); !AtEnd(); SkipBlanks()) {
        if (!ReadItem())
            return false;
    }
    return !m_numbers.empty() && !m_wantsNumber && m_eraStart == 0 && SettleHalfDay();
}

bool CDateReader::ReadItem()
{
    if (IsDigitHere() || (m_eraStart != 0 && Here() == u'元'))
        return ReadNumber();
    return ReadMonthName() || ReadEra() || ReadHalfDay();
}

/// English, whole or its first three letters; log files of servers elsewhere have "15-Jan-2002".
bool CDateReader::ReadMonthName()
{
    static constexpr std::array<QStringView, 12> names = {u"january",   u"february", u"march",    u"april",
                                                          u"may",       u"june",     u"july",     u"august",
                                                          u"september", u"october",  u"november", u"december"};
    if (m_tiesToTime || m_eraStart != 0 || m_hasMonthName || m_numbers.size() == MaxNumbers)
        return false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!Take(names[i]) && !Take(names[i].first(3)))
            continue;
        m_numbers.push_back({static_cast<int>(i) + 1, Role::Month, false, true, 0});
        m_hasMonthName = true;
        m_wantsNumber = false;
        Take(u".");
        return !QChar(Here()).isLetter() && ReadSign();
    }
    return false;
}

bool CDateReader::ReadNumber()
{
    constexpr int tooLong = 10000;
    Number number{0, m_eraStart != 0 ? Role::Year : Role::Open, m_tiesToTime, m_wantsNumber && !m_tiesToTime,
                  m_eraStart};
    if (Take(u"元"))
        number.Value = 1;
    for (; IsDigitHere() && number.Value < tooLong; ++m_place)
        number.Value = number.Value * 10 + (Here() - u'0');
    if (number.Value >= tooLong || m_numbers.size() == MaxNumbers || (number.EraStart != 0 && number.Value == 0))
        return false;
    m_numbers.push_back(number);
    m_eraStart = 0;
    m_wantsNumber = false;
    m_tiesToTime = false;
    return ReadSign();
}

bool CDateReader::ReadEra()
{
    if (m_eraStart != 0)
        return false;
    for (const Era& era : Eras) {
        const bool isKanji = Take(era.Name) || Take(era.Name.first(1));
        if (isKanji || Take(QString(QChar(era.Letter).toLower()))) {
            m_eraStart = era.FirstYear;
            return isKanji || IsDigitHere(); // "H14" but not "H 14"
        }
    }
    return false;
}

bool CDateReader::ReadHalfDay()
{
    static constexpr std::pair<std::u16string_view, HalfDay> words[] = {
        {u"午前", HalfDay::Before}, {u"午後", HalfDay::After}, {u"am", HalfDay::Before},
        {u"pm", HalfDay::After},    {u"a", HalfDay::Before},   {u"p", HalfDay::After}};
    for (const auto& [word, half] : words) {
        if (!Take(QStringView(word)))
            continue;
        const bool isJapanese = word.front() > 0x7F;
        if (m_half != HalfDay::None || m_wantsNumber || m_eraStart != 0 || (!isJapanese && m_numbers.empty()))
            return false;
        m_half = half;
        m_halfBehind = m_numbers.size();
        return true;
    }
    return false;
}

/// What may stand behind a number: a separator, which then asks for a number, or one of the signs 年月日時分秒.
bool CDateReader::ReadSign()
{
    const qsizetype before = m_place;
    SkipBlanks();
    const char16_t sign = Here();
    if (QStringView(u":./-").contains(sign) && !AtEnd())
        return ReadTie(sign);
    if (QStringView(u"年月日時分秒").contains(sign) && !AtEnd())
        return ReadMark(sign);
    m_place = before;
    return true;
}

bool CDateReader::ReadTie(char16_t Sign)
{
    ++m_place;
    m_wantsNumber = true;
    m_hasDateDots |= Sign == u'.' && m_numbers.back().EraStart != 0;
    m_tiesToTime = Sign == u':' || (Sign == u'.' && (!m_hasDateDots || m_dateSigns == 2));
    (m_tiesToTime ? m_numbers.back().IsTime : m_numbers.back().IsDate) = true;
    m_dateSigns += m_tiesToTime ? 0 : 1;
    return m_dateSigns <= 2;
}

bool CDateReader::ReadMark(char16_t Sign)
{
    static constexpr std::array roles = {Role::Year, Role::Month, Role::Day, Role::Hour, Role::Minute, Role::Second};
    const auto role = roles[static_cast<std::size_t>(QStringView(u"年月日時分秒").indexOf(Sign))];
    Number& number = m_numbers.back();
    ++m_place;
    const bool isTime = role >= Role::Hour;
    if ((number.As != Role::Open && number.As != role) || (number.IsTime && !isTime))
        return false;
    number.As = role;
    number.IsTime = isTime;
    m_tiesToTime = (role == Role::Hour || role == Role::Minute) && IsDigitHere();
    return true;
}

/// AM or PM belongs to the time before it, or else makes the lone number before it the hour; 午後3:25 is how a Japanese
/// system prints a time.
bool CDateReader::SettleHalfDay()
{
    if (m_half == HalfDay::None)
        return true;
    const bool hasTimeBefore = m_halfBehind > 0 && m_numbers[m_halfBehind - 1].IsTime;
    const bool hasTimeBehind = m_halfBehind < m_numbers.size() && m_numbers[m_halfBehind].IsTime;
    if (hasTimeBefore || hasTimeBehind)
        return true;
    const bool hasTime = std::any_of(m_numbers.begin(), m_numbers.end(), [](const Number& One) { return One.IsTime; });
    if (hasTime || m_halfBehind == 0)
        return false;
    Number& hour = m_numbers[m_halfBehind - 1];
    if (hour.As != Role::Open || hour.IsDate)
        return false;
    hour.IsTime = true;
    return true;
}

std::optional<QTime> CDateReader::Time() const
{
    const auto isTime = [](const Number& One) { return One.IsTime; };
    const auto first = std::find_if(m_numbers.begin(), m_numbers.end(), isTime);
    const auto end = std::find_if_not(first, m_numbers.end(), isTime);
    if (std::any_of(end, m_numbers.end(), isTime) || end - first > 3)
        return std::nullopt;
    int parts[3] = {0, 0, 0};
    for (auto number = first; number != end; ++number) {
        const auto place = number - first;
        const int role = static_cast<int>(Role::Hour) + static_cast<int>(place);
        if (number->As != Role::Open && static_cast<int>(number->As) != role)
            return std::nullopt;
        parts[place] = number->Value;
    }
    if (parts[0] <= 12 && m_half != HalfDay::None)
        parts[0] = parts[0] % 12 + (m_half == HalfDay::After ? 12 : 0);
    const QTime time(parts[0], parts[1], parts[2]);
    return time.isValid() ? std::optional(time) : std::nullopt;
}

int FullYear(const Number& Year)
{
    if (Year.EraStart != 0)
        return Year.EraStart + Year.Value - 1;
    if (Year.Value >= 100)
        return Year.Value;
    return Year.Value + (Year.Value < PivotYear ? 2000 : 1900);
}

/// The day that Numbers give when they stand in the order Roles; invalid when a number says otherwise or no such day
/// is.
QDate DayOf(std::span<const Number> Numbers, std::span<const Role> Roles, QDate Default)
{
    int year = Default.year();
    int month = Default.month();
    int day = Default.day();
    for (std::size_t i = 0; i < Numbers.size(); ++i) {
        if (Numbers[i].As != Role::Open && Numbers[i].As != Roles[i])
            return {};
        if (Roles[i] == Role::Year)
            year = FullYear(Numbers[i]);
        else
            (Roles[i] == Role::Month ? month : day) = Numbers[i].Value;
    }
    return year >= 100 && year <= 9999 ? QDate(year, month, day) : QDate();
}

std::optional<QDate> CDateReader::Date(QDate Today) const
{
    using enum Role;
    static constexpr std::array<std::array<Role, 3>, 4> three = {
        {{Year, Month, Day}, {Year, Day, Month}, {Month, Day, Year}, {Day, Month, Year}}};
    static constexpr std::array<std::array<Role, 2>, 2> two = {{{Month, Day}, {Year, Month}}};
    static constexpr std::array<std::array<Role, 3>, 3> threeByName = {
        {{Day, Month, Year}, {Year, Month, Day}, {Month, Day, Year}}};
    static constexpr std::array<std::array<Role, 2>, 4> twoByName = {
        {{Month, Day}, {Day, Month}, {Month, Year}, {Year, Month}}};

    CNumbers numbers;
    std::copy_if(m_numbers.begin(), m_numbers.end(), std::back_inserter(numbers),
                 [](const Number& One) { return !One.IsTime; });
    QDate day;
    const auto read = [&](const auto& Orders, QDate Default) {
        for (auto order = Orders.begin(); order != Orders.end() && !day.isValid(); ++order)
            day = DayOf(numbers, *order, Default);
    };
    if (numbers.size() == 3) {
        m_hasMonthName ? read(threeByName, DayZero) : read(three, DayZero);
    } else if (numbers.size() == 2) {
        const QDate firstOfYear((Today.isValid() ? Today : QDate::currentDate()).year(), 1, 1);
        m_hasMonthName ? read(twoByName, firstOfYear) : read(two, firstOfYear);
    }
    return day.isValid() ? std::optional(day) : std::nullopt;
}

std::optional<double> CDateReader::Serial(QDate Today) const
{
    const auto times = std::count_if(m_numbers.begin(), m_numbers.end(), [](const Number& One) { return One.IsTime; });
    const bool hasDate = times < m_numbers.size();
    const std::optional<QTime> time = times > 0 ? Time() : QTime(0, 0);
    if (!time)
        return std::nullopt;
    const std::optional<QDate> date = hasDate ? Date(Today) : DayZero;
    if (!date)
        return std::nullopt;
    return ToSerial(QDateTime(*date, *time, Qt::UTC));
}

} // namespace

std::optional<double> TextToDate(QStringView Text, QDate Today)
{
    if (Text.size() > MaxDateText)
        return std::nullopt;
    CDateReader reader(Fold(Text));
    return reader.Read() ? reader.Serial(Today) : std::nullopt;
}

} // namespace text
