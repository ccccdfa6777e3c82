// platform/text/Number.h
// Numbers read from text as the database and the settings file take them.

#ifndef TEXT_NUMBER_H
#define TEXT_NUMBER_H

#include <QStringView>

#include <optional>

namespace text
{

/// Reads the whole of Text as one number: blanks around it, one sign in front or behind, parentheses for minus, a yen
/// sign, thousands separators, exponent E or D, &H and &O, full-width digits. Empty for all else and beyond the range.
std::optional<double> TextToDouble(QStringView Text);

/// As TextToDouble, rounded half to even. Empty beyond the 32-bit range.
std::optional<qint32> TextToLong(QStringView Text);

/// As TextToDouble, rounded half to even. Empty beyond the 16-bit range.
std::optional<qint16> TextToInteger(QStringView Text);

/// As TextToDouble. Empty beyond the range of single precision.
std::optional<float> TextToSingle(QStringView Text);

/// "True" and "False" in any case, #TRUE# and #FALSE# in capitals, else a number, of which only 0 is false.
std::optional<bool> TextToBoolean(QStringView Text);

/// Whether TextToDouble succeeds.
bool IsNumeric(QStringView Text);

/// Whether Text is written as a number, be it beyond every range: what fails to convert then is too large, not wrong.
bool HasNumberForm(QStringView Text);

/// The longest number at the start of Text, blanks, tabs and line feeds dropped; 0 when there is none. Knows the
/// decimal point, the exponent, &H and &O (16-bit signed while it fits, then 32-bit), but no separators. Never fails;
/// what is beyond the range is infinite.
double Val(QStringView Text);

} // namespace text

#endif // TEXT_NUMBER_H
