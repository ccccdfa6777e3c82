// platform/text/DisplayWidth.h
// How wide a text stands in columns of characters of one width.

#ifndef TEXT_DISPLAYWIDTH_H
#define TEXT_DISPLAYWIDTH_H

#include <QStringView>

namespace text
{

/// Columns of one code point: 2 for kanji, kana and other full-width signs, 0 for what is drawn onto the sign before
/// it or not at all, 1 for the rest. Signs of which East Asian fonts differ ("①", "…") count 1, as terminals do it.
int DisplayWidth(char32_t CodePoint);

/// Columns of a whole text.
int DisplayWidth(QStringView Text);

} // namespace text

#endif // TEXT_DISPLAYWIDTH_H
