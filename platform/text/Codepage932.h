// platform/text/Codepage932.h
// Where bytes become text and back: code page 932, the encoding of the boards, of old log files and of the INI file.

#ifndef TEXT_CODEPAGE932_H
#define TEXT_CODEPAGE932_H

#include <QByteArray>
#include <QString>

namespace text
{

/// Encodes Text in code page 932, always the JIS row first (≒ is 81E0), never the NEC-selected rows.
///
/// One "?" stands for every UTF-16 unit that has no code: half a surrogate pair, an invisible character such as U+200B
/// and a byte order mark included. Nothing is guessed: ¥ does not become a backslash.
QByteArray To932(QStringView Text);

/// Decodes code page 932 with the exact Windows table; never fails.
///
/// A pair without a character is taken as a whole and gives U+30FB, so does a lead byte at the very end. A control byte
/// is never taken into a pair: where a server cuts a line in the middle of a character, the line break stays.
QString From932(QByteArrayView Bytes);

/// Whether every byte of Bytes belongs to a code that has a character, the bytes 80, A0 and FD to FF excluded: no text
/// holds them, and a UTF-8 text is told by them. Empty input is valid.
bool IsValid932(QByteArrayView Bytes);

/// Whether Bytes is well-formed UTF-8: no overlong form, no surrogate, nothing cut off. Empty input is valid.
bool IsValidUtf8(QByteArrayView Bytes);

/// Text with the look-alikes that other tables use for the same codes (〜 − ‖ — ¢ £ ¬) made into the ones of this code
/// page (～ － ∥ ― ￠ ￡ ￢). Input methods outside Windows type the former; encode what this returns where a "?" would
/// hurt.
QString WithWindowsForms(const QString& Text);

/// Percent-encodes the code page 932 bytes of WithWindowsForms(Text); only ASCII letters and digits stay as they are.
QString UrlEncode932(QStringView Text);

} // namespace text

#endif // TEXT_CODEPAGE932_H
