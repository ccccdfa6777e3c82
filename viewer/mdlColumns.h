// viewer/mdlColumns.h
// The eleven columns of a message list: keys, headers and the text of each cell.

#ifndef VIEWER_MDLCOLUMNS_H
#define VIEWER_MDLCOLUMNS_H

#include <QStringList>

struct CMessageItem;

namespace mdlColumns
{

enum Column { Read = 0, ID, Subject, HomePage, Mail, Name, Date, InReplyTo, Body, ParentThread, Mark };
inline constexpr int Count = 11;

/// "Read", "ID", "Subject", … in column order.
const QStringList& Keys();
/// Headers of the board list, and of the result list until messages are loaded into it for the first time.
const QStringList& BoardHeaders();
const QStringList& ResultHeaders();

/// The text of a message's cell: numbers padded with zeros so that they sort as text, the subject indented, the whole
/// body with its CR LF. DateFormat is a pattern of text::FormatDate.
QString Text(const CMessageItem& Item, int Column, const QString& DateFormat);

} // namespace mdlColumns

#endif // VIEWER_MDLCOLUMNS_H
