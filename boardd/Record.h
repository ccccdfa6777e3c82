// boardd/Record.h
// The log record: how one message looks in a log page and in a past-log file, byte by byte.

#ifndef BOARDD_RECORD_H
#define BOARDD_RECORD_H

#include "boardd/CBoardMessage.h"

#include <QByteArray>

namespace mdlRecord
{

/// The line that closes every record, without its line ends.
inline constexpr QByteArrayView Separator = "===--+--+--+--+--+--+--+--+--+--+--+--+--===";

/// Message as a log record in code page 932 with CR LF, its closing separator line included. Readers skip the labels by
/// their length, so these must never change. TwoSided records have no title line.
QByteArray Write(const CBoardMessage& Message, bool TwoSided);

/// "2002/01/15（火） 12:34": the blank after the parenthesis keeps the time apart from the date.
QString PostedText(const QDateTime& Posted);

/// Reads "2002/01/15 12:34"; invalid when it is not that. Held as UTC so that no time zone ever shifts or refuses it.
QDateTime ReadWallClock(const QString& Text);
/// The computer's clock as such a time, to the minute.
QDateTime CurrentWallClock();

/// Text in code page 932. The wave dash and the minus sign that other systems type become the ones that code page 932 has.
QByteArray Encode(const QString& Text);

/// Makes Text fit for one line of a record: characters without a code become "?", controls a blank, ends are trimmed.
QString OneLine(const QString& Text);
/// Makes Text fit for a body: line ends become "\n", other controls but the tab vanish, blank lines at the end go, and a
/// line that would read as a separator is moved in by one blank.
QString Lines(const QString& Text);

} // namespace mdlRecord

#endif
