// viewer/mdlMoves.cpp
// Searches for unread messages.

#include "viewer/mdlMoves.h"

#include "viewer/CMessageList.h"

namespace
{

int FindUnread(const CMessageList& List, int From, int Step)
{
    for (int row = From; row >= 0 && row < List.Count(); row += Step) {
        if (List.Item(row).IsMessage() && !List.Item(row).Message.Read)
            return row;
    }
    return -1;
}

} // namespace

namespace mdlMoves
{

int UnreadAfter(const CMessageList& List, int Row) { return FindUnread(List, Row + 1, 1); }

int UnreadBefore(const CMessageList& List, int Row) { return FindUnread(List, Row - 1, -1); }

} // namespace mdlMoves
