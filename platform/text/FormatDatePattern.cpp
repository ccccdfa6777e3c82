// platform/text/FormatDatePattern.cpp
// Writes one moment by a pattern of date fields.

#include "platform/text/FormatParts.h"

#include "platform/text/DateTime.h"
#include "platform/text/Era.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace text
{

namespace
{

// Weekdays and months are English also on a Japanese system; the Japanese weekdays have fields of their own.
constexpr QStringView WeekdayNames[] = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                        u"Thursday", u"Friday", u"Saturday"};
constexpr QStringView MonthNames[] = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                                      u"July",    u"August",   u"September", u"October", u"November", u"December"};
constexpr QStringView KanjiWeekdays = u"日月火水木金土";

/// The run lengths of a letter that are fields, as bits: bit 4 of y says that yyyy is one. 0 for other letters.
constexpr unsigned FieldLengths(char16_t Letter)
{
    switch (Letter) {
    case u'y':
        return 0b10110;
    case u'm':
        return 0b11110;
    case u'd':
        return 0b1111110;
    case u'a':
        return 0b11000;
    case u'g':
        return 0b1110;
    case u'w':
    case u'e':
    case u'h':
    case u'n':
    case u's':
        return 0b110;
    case u'q':
    case u'c':
        return 0b10;
    case u't':
        return 0b100000;
    case u'o':
        return 0b10000;
    default:
        return 0;
    }
}

/// The small letter of an ASCII letter.
constexpr char16_t Lower(QChar Unit)
{
    return Unit >= u'A' && Unit <= u'Z' ? static_cast<char16_t>(Unit.unicode() + 0x20) : Unit.unicode();
}

/// Length of the AM or PM field at the front of Rest; 0 when there is none.
qsizetype HalfDayLength(QStringView Rest)
{
    if (Lower(Rest.front()) != u'a')
        return 0;
    for (const QStringView word : {QStringView(u"AM/PM"), QStringView(u"AMPM"), QStringView(u"A/P")}) {
        if (Rest.startsWith(word, Qt::CaseInsensitive))
            return word.size();
    }
    return 0;
}

/// Length of the letter field at the front of Rest; 0 when there is none.
qsizetype FieldLength(QStringView Rest)
{
    const char16_t letter = Lower(Rest.front());
    const unsigned lengths = FieldLengths(letter);
    if (lengths == 0)
        return 0;
    const auto run = std::find_if(Rest.begin(), Rest.end(), [letter](QChar One) { return Lower(One) != letter; });
    qsizetype length = std::min<qsizetype>(run - Rest.begin(), 6);
    while (length > 0 && (lengths >> length & 1) == 0)
        --length;
    return length;
}

class CDateWriter
{
public:
    CDateWriter(const QDateTime& Moment, QStringView Pattern)
        : m_date(Moment.date())
        , m_time(Moment.time())
        , m_pattern(Pattern)
    {}

    QString Write();

private:
    bool HasHalfDay() const;
    qsizetype WriteNext(qsizetype Place);
    void WriteHalfDay(QStringView Field);
    void WriteField(char16_t Letter, qsizetype Length);
    void WriteDay(qsizetype Length);
    void WriteMonth(qsizetype Length);
    void WriteYear(qsizetype Length);
    void WriteEra(char16_t Letter, qsizetype Length);
    void WriteGeneral();
    void WriteLongTime();
    void Number(int Value, qsizetype Width);               // Value of at least 0, Width at least 1 and at most 4
    int Weekday() const { return m_date.dayOfWeek() % 7; } // Sunday is 0
    int WeekOfYear() const;

    QDate m_date;
    QTime m_time;
    QStringView m_pattern;
    QString m_text;
    bool m_isHalfDay = false;
    bool m_isAfterHour = false; // the next m is minutes
};

QString CDateWriter::Write()
{
    m_isHalfDay = HasHalfDay();
    m_text.reserve(m_pattern.size() + 8);
    for (qsizetype place = 0; place < m_pattern.size();)
        place += WriteNext(place);
    return m_text;
}

void CDateWriter::Number(int Value, qsizetype Width)
{
    char16_t digits[10];
    qsizetype size = 0;
    for (; Value > 0 || size < Width; Value /= 10)
        digits[size++] = static_cast<char16_t>(u'0' + Value % 10);
    std::reverse(digits, digits + size);
    m_text.append(QStringView(digits, size));
}

bool CDateWriter::HasHalfDay() const
{
    QString literal;
    for (qsizetype place = 0; place < m_pattern.size();) {
        const QStringView rest = m_pattern.sliced(place);
        if (HalfDayLength(rest) > 0)
            return true;
        place += std::max({TakeLiteral(m_pattern, place, literal), FieldLength(rest), qsizetype(1)});
    }
    return false;
}

/// Writes what stands at Place and returns its length in the pattern.
qsizetype CDateWriter::WriteNext(qsizetype Place)
{
    const QStringView rest = m_pattern.sliced(Place);
    QString literal;
    if (const qsizetype length = TakeLiteral(m_pattern, Place, literal); length > 0) {
        m_text += literal;
        return length;
    }
    if (const qsizetype length = HalfDayLength(rest); length > 0) {
        WriteHalfDay(rest.first(length));
        return length;
    }
    if (const qsizetype length = FieldLength(rest); length > 0) {
        WriteField(Lower(rest.front()), length);
        return length;
    }
    m_text += rest.front();
    return 1;
}

void CDateWriter::WriteHalfDay(QStringView Field)
{
    const bool isAfter = m_time.hour() >= 12;
    if (!Field.contains(u'/')) {
        m_text += isAfter ? u"午後"_s : u"午前"_s;
        return;
    }
    const qsizetype slash = Field.indexOf(u'/');
    m_text += isAfter ? Field.sliced(slash + 1) : Field.first(slash);
}

void CDateWriter::WriteField(char16_t Letter, qsizetype Length)
{
    const bool isMinutes = m_isAfterHour && Letter == u'm' && Length <= 2;
    m_isAfterHour = Letter == u'h';
    switch (Letter) {
    case u'y':
        WriteYear(Length);
        break;
    case u'm':
        isMinutes ? Number(m_time.minute(), Length) : WriteMonth(Length);
        break;
    case u'd':
        WriteDay(Length);
        break;
    case u'a':
        m_text.append(KanjiWeekdays[Weekday()]).append(Length == 4 ? u"曜日"_s : QString());
        break;
    case u'w':
        Number(Length == 2 ? WeekOfYear() : Weekday() + 1, 1);
        break;
    case u'q':
        Number((m_date.month() + 2) / 3, 1);
        break;
    case u'g':
    case u'e':
        WriteEra(Letter, Length);
        break;
    case u'h':
        Number(m_isHalfDay ? (m_time.hour() + 11) % 12 + 1 : m_time.hour(), Length);
        break;
    case u'n':
        Number(m_time.minute(), Length);
        break;
    case u's':
        Number(m_time.second(), Length);
        break;
    case u't':
        WriteLongTime();
        break;
    case u'o':
        m_text += QString::number(m_date.month()) + u'月';
        break;
    default:
        WriteGeneral();
    }
}

void CDateWriter::WriteDay(qsizetype Length)
{
    const QStringView name = WeekdayNames[Weekday()];
    switch (Length) {
    case 3:
        m_text += name.first(3);
        break;
    case 4:
        m_text += name;
        break;
    case 5:
        m_text += WriteDate(QDateTime(m_date, m_time, Qt::UTC), u"yyyy/mm/dd");
        break;
    case 6:
        m_text += WriteDate(QDateTime(m_date, m_time, Qt::UTC), u"yyyy年m月d日");
        break;
    default:
        Number(m_date.day(), Length);
    }
}

void CDateWriter::WriteMonth(qsizetype Length)
{
    const QStringView name = MonthNames[m_date.month() - 1];
    if (Length <= 2)
        Number(m_date.month(), Length);
    else
        m_text += Length == 3 ? name.first(3) : name;
}

void CDateWriter::WriteYear(qsizetype Length)
{
    switch (Length) {
    case 1:
        Number(m_date.dayOfYear(), 1);
        break;
    case 2:
        Number(m_date.year() % 100, 2);
        break;
    default:
        Number(m_date.year(), 4);
    }
}

/// Before the first era there is no name, and the year is the common one.
void CDateWriter::WriteEra(char16_t Letter, qsizetype Length)
{
    const Era* const era = EraOf(m_date);
    if (Letter == u'e')
        Number(era != nullptr ? m_date.year() - era->FirstYear + 1 : m_date.year(), Length);
    else if (era != nullptr && Length == 1)
        m_text += QChar(era->Letter);
    else if (era != nullptr)
        m_text += era->Name.first(Length - 1);
}

void CDateWriter::WriteLongTime() { m_text += WriteDate(QDateTime(m_date, m_time, Qt::UTC), u"h:nn:ss"); }

void CDateWriter::WriteGeneral()
{
    const bool isDayZero = m_date == DayZero;
    const bool hasTime = m_time != QTime(0, 0);
    if (!isDayZero)
        WriteDay(5);
    if (!isDayZero && hasTime)
        m_text += u' ';
    if (hasTime || isDayZero)
        WriteLongTime();
}

/// Week 1 holds January 1, weeks begin on Sunday.
int CDateWriter::WeekOfYear() const
{
    const int firstWeekday = QDate(m_date.year(), 1, 1).dayOfWeek() % 7;
    return (m_date.dayOfYear() - 1 + firstWeekday) / 7 + 1;
}

} // namespace

QString WriteDate(const QDateTime& Moment, QStringView Pattern) { return CDateWriter(Moment, Pattern).Write(); }

} // namespace text
