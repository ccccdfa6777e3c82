// sqlshell/Place.h
// Where in a statement an error is, and text made safe for a line of a terminal.

#ifndef SQLSHELL_PLACE_H
#define SQLSHELL_PLACE_H

#include <QString>

namespace sqlshell
{

/// A place in the input and the line around it.
struct CPlace
{
    int Line = 1;    ///< of the input, from 1
    int Column = 1;  ///< characters, from 1
    QString Excerpt; ///< at most some 70 columns of the line
    QString Caret;   ///< blanks and "^", which stands under the place
};

/// Offset is in UTF-16 units; one outside the statement means its end. FirstLine is where the statement begins.
CPlace FindPlace(QStringView Statement, qsizetype Offset, int FirstLine);

/// Text on one line: a line break becomes "⏎", other control characters their pictures, marks that turn the writing
/// direction go. Cut to MaxWidth columns, the last one then being "…"; 0 for no limit.
QString OneLine(QStringView Text, int MaxWidth);

} // namespace sqlshell

#endif
