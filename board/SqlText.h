// board/SqlText.h
// Text as a constant inside a statement.

#ifndef BOARD_SQLTEXT_H
#define BOARD_SQLTEXT_H

#include <QString>

namespace mdlSqlText
{

/// Appends Text between apostrophes to Statement: apostrophes doubled, each "|" as "' & Chr(124) & '", because a bar
/// inside a constant once meant something else to the engine.
void AppendQuoted(QString& Statement, QStringView Text);

/// Text between apostrophes, as AppendQuoted writes it.
QString Quoted(QStringView Text);

/// Text as the inside of a Like pattern between apostrophes: it stands for itself only. [ * ? and # are put into
/// brackets, apostrophes are doubled, and a line end of any kind is the CR LF of a stored text.
QString InsideLike(QStringView Text);

} // namespace mdlSqlText

#endif // BOARD_SQLTEXT_H
