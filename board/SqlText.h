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

} // namespace mdlSqlText

#endif // BOARD_SQLTEXT_H
