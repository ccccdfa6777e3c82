// viewer/mdlMoves.h
// Where the move commands lead to in a list.

#ifndef VIEWER_MDLMOVES_H
#define VIEWER_MDLMOVES_H

class CMessageList;

namespace mdlMoves
{

/// The nearest unread row after (before) Row; -1 when there is none. Never wraps around.
int UnreadAfter(const CMessageList& List, int Row);
int UnreadBefore(const CMessageList& List, int Row);

} // namespace mdlMoves

#endif // VIEWER_MDLMOVES_H
