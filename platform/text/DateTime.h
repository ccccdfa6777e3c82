// platform/text/DateTime.h
// Dates as the database keeps them, and dates read from what people and boards write.

#ifndef TEXT_DATETIME_H
#define TEXT_DATETIME_H

#include <QDate>
#include <QDateTime>
#include <QStringView>

#include <optional>

namespace text
{

/// First and last day number that is a date: 100-01-01 and 9999-12-31.
inline constexpr qint64 MinDay = -657434;
inline constexpr qint64 MaxDay = 2958465;

/// The day with the number 0, on which a time alone lies.
inline constexpr QDate DayZero = QDate::fromJulianDay(2415019);

/// Days since 1899-12-30 of the wall clock that Moment shows; before that day the fraction still counts forward
/// (-1.25 is 1899-12-29 06:00). No time zone takes part. An invalid Moment is 0.
double ToSerial(const QDateTime& Moment);

/// The wall clock of Serial to the second (halves up), in Qt::UTC so that no clock change moves it.
/// Invalid outside 100-01-01 to 9999-12-31 and for what is no number.
QDateTime FromSerial(double Serial);

/// Reads a date, a time or both by its numbers and separators: "2002/01/15 9:05", "12:34 2002-1-15", "平成14年1月15日".
///
/// English month names count too ("15-Jan-2002", "January 15, 2002"). Two-digit years are 1930 to 2029; month/day alone
/// takes the year of Today, an invalid Today being the current day. A time alone is on day 0. Empty where the text does
/// not hold exactly that, or the day or time does not exist.
std::optional<double> TextToDate(QStringView Text, QDate Today = {});

} // namespace text

#endif // TEXT_DATETIME_H
