// platform/text/KanaWidth.h
// Text with its width, its kana or its capitals changed.

#ifndef TEXT_KANAWIDTH_H
#define TEXT_KANAWIDTH_H

#include <QString>

namespace text
{

/// ASCII, the blank and half-width kana as their full-width forms; a kana and the voicing mark behind it become the one
/// composed letter (ｶﾞ is ガ).
QString ToFullWidth(QStringView Text);

/// Full-width ASCII, blank, katakana and their punctuation as half-width forms; ガ becomes ｶﾞ, ￥ the backslash that is
/// its code. Hiragana has no half-width form and stays.
QString ToHalfWidth(QStringView Text);

/// Hiragana as full-width katakana.
QString ToKatakana(QStringView Text);

/// Katakana of both widths as hiragana. ヴ, ヵ and ヶ stay: the boards' code page has no hiragana for them.
QString ToHiragana(QStringView Text);

/// Each word with a capital first letter and small ones behind it; words end at blanks, tabs and line ends.
QString ToProperCase(QStringView Text);

/// Capital letters unit by unit, so that no length changes (ß stays).
QString ToUpperUnits(QStringView Text);

/// Small letters unit by unit.
QString ToLowerUnits(QStringView Text);

} // namespace text

#endif // TEXT_KANAWIDTH_H
