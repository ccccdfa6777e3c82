// platform/text/Words.h
// Where words begin and end, also in Japanese, which puts no blanks between them.

#ifndef TEXT_WORDS_H
#define TEXT_WORDS_H

#include <QStringView>

namespace text
{

/// UTF-16 units.
struct WordPlace
{
    qsizetype Start = 0;
    qsizetype Length = 0;
    bool operator==(const WordPlace&) const = default;
};

/// The word around the unit at Position: 掲示板 as one and に as one in 掲示板に書く, by a dictionary. Between words it
/// is the blank or the sign that stands there. Empty at the end of Text and outside of it.
///
/// Looks no further than 500 units to either side, so that a text of any length takes no longer.
WordPlace WordAt(QStringView Text, qsizetype Position);

} // namespace text

#endif
