// platform/text/Format.h
// Dates and numbers as text, by the patterns that users write into their settings ("yyyy/mm/dd hh:nn", "000").

#ifndef TEXT_FORMAT_H
#define TEXT_FORMAT_H

#include <QString>

namespace text
{

/// Writes the date and time Serial by Pattern; Serial is days since 1899-12-30, the fraction is the time of day and
/// counts forward also before that day.
///
/// Knows the date fields, the Japanese weekdays and eras and the named formats ("Short Date"); whatever is no field
/// stands for itself. A number pattern ("0.00") is applied to the number Serial. An empty pattern is the general date.
/// Outside the years 100 to 9999 there is no date: the number itself comes back. Pattern is read up to 257 characters.
QString FormatDate(double Serial, QStringView Pattern);

/// Writes Value by Pattern: digit places, thousands, percent, exponent, literals, up to three parts for positive,
/// negative and zero, or a named format ("Standard"). Commas behind the last place before the point divide by 1000. A
/// date pattern takes Value as a date. Halves round away from zero. An empty pattern is NumberToText.
QString FormatNumber(double Value, QStringView Pattern);

/// Writes Value by Pattern. A text that reads as a number or a date is taken as one where the pattern asks for it,
/// otherwise it comes back unchanged; "@ & ! < >" patterns place and change its characters.
QString FormatText(QStringView Value, QStringView Pattern);

/// What Pattern says for Null: its fourth section, the second one of a pattern for text; empty where it has none.
QString FormatNull(QStringView Pattern);

/// "2002/01/15 9:05:00"; only the date at midnight, only the time on day 0.
QString GeneralDate(double Serial);

/// At most 15 digits, plain while 15 places before or behind the point are enough: "0.1", "-5", "1E+16",
/// "1.23456789012345E-02".
QString NumberToText(double Value);

/// As NumberToText, for single precision: at most 7 digits.
QString SingleToText(float Value);

} // namespace text

#endif // TEXT_FORMAT_H
