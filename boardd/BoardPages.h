// boardd/BoardPages.h
// The pages that a board's script shows: messages, a thread, the forms.

#ifndef BOARDD_BOARDPAGES_H
#define BOARDD_BOARDPAGES_H

#include "boardd/CCommunity.h"
#include "boardd/CVisitor.h"

namespace mdlBoardPages
{

/// The newest messages of one board, or of both sides next to each other. Page counts from 0 towards older ones; past the
/// end the page says that there is nothing.
QByteArray BoardPage(const CCommunity& Community, const std::vector<std::size_t>& Boards, const CVisitor& Visitor, qint32 Page);

/// All of one thread, oldest first; empty when the number is not served.
QByteArray ThreadPage(const CCommunity& Community, std::size_t Board, qint32 Number);

/// The form for a new message (ReplyTo 0) or for an answer, with the answered body quoted. Empty when ReplyTo is not served.
QByteArray PostForm(const CCommunity& Community, std::size_t Board, const CVisitor& Visitor, qint32 ReplyTo);

/// The form that sets what the visitor's cookie holds. Saved: it has just been set.
QByteArray SettingsForm(const CBoardInfo& Board, const CVisitor& Visitor, bool Saved);

/// A page with one sentence and a link back to the board.
QByteArray Notice(const CBoardInfo& Board, const QString& Title, const QString& Sentence);

} // namespace mdlBoardPages

#endif
