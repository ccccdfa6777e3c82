// platform/text/FormatParts.h
// The three kinds of patterns behind the functions of Format.h.

#ifndef TEXT_FORMATPARTS_H
#define TEXT_FORMATPARTS_H

#include <QDateTime>
#include <QString>

#include <optional>

namespace text
{

/// What a pattern asks for; None where it holds nothing but literals.
enum class PatternKind { None, Date, Number, Text };

/// The kind of the first character of Pattern that means something, quoted and escaped ones left out.
PatternKind KindOf(QStringView Pattern);

/// Section Index (from 0) of the sections that ";" parts; empty where Pattern has fewer.
std::optional<QStringView> SectionOf(QStringView Pattern, int Index);

/// How many units of Pattern from Place on are one literal: 2 for "\x", a whole quotation, otherwise 0. Literal gets
/// what it stands for. A quotation that is not closed runs to the end.
qsizetype TakeLiteral(QStringView Pattern, qsizetype Place, QString& Literal);

/// Writes Moment by a pattern of date fields. Moment is valid.
QString WriteDate(const QDateTime& Moment, QStringView Pattern);

/// Writes the finite number Value by a pattern of digit places.
QString WriteNumber(double Value, QStringView Pattern);

/// Writes Value by a pattern of "@ & ! < >".
QString WriteText(QStringView Value, QStringView Pattern);

} // namespace text

#endif // TEXT_FORMATPARTS_H
