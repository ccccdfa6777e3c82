// boardd/MessageHtml.h
// HTML for the pages: escaping, the frame of a page, one message.

#ifndef BOARDD_MESSAGEHTML_H
#define BOARDD_MESSAGEHTML_H

#include "boardd/Boards.h"
#include "boardd/CBoardMessage.h"

#include <QByteArray>

namespace mdlMessageHtml
{

/// Text with the characters that mean something in HTML, quotes of attributes included, written as entities.
QString Escape(const QString& Text);

/// A body as HTML: quotes and comments coloured, web and mail addresses linked, line breaks and leading blanks kept.
QString BodyHtml(const QString& Body);

/// One message of a board page, in code page 932. ParentServed: the number answered becomes a link.
QByteArray Fragment(const CBoardInfo& Board, const CBoardMessage& Message, bool ParentServed);

/// A whole page around Content, which is HTML already; Title is plain text.
QByteArray Page(const QString& Title, const QByteArray& Content);

/// The boards' error page. A reader knows it by its first 26 characters and shows the fourth line: Reason, then Detail.
QByteArray ErrorPage(const QString& Reason, const QString& Detail);

/// "/cgi-bin/keyaki.cgi"
QString ScriptPath(const CBoardInfo& Board);

} // namespace mdlMessageHtml

#endif
