// viewer/mdlThreadOrder.h
// Messages in the order of their threads.

#ifndef VIEWER_MDLTHREADORDER_H
#define VIEWER_MDLTHREADORDER_H

#include "viewer/CMessageItem.h"

#include <vector>

namespace mdlThreadOrder
{

/// What threading needs of a message.
struct Node
{
    CMessageId Id;
    qint32 InReplyTo = 0; ///< number on the same board, 0 answers nothing
};

struct Place
{
    int Index = 0;  ///< into the nodes
    int Indent = 0; ///< levels below the first message of the thread
};

/// Every node once, thread by thread, threads by the number of their first message.
///
/// An answer stands below what it answers; of several answers to one message the newest comes first, each followed by
/// what answers it. A message whose parent is not among the nodes, has a higher number or is the message itself begins
/// a thread of its own; so a ring of answers begins at its lowest number. Equal numbers go by board. Ids are unique.
std::vector<Place> Arrange(const std::vector<Node>& Nodes);

} // namespace mdlThreadOrder

#endif // VIEWER_MDLTHREADORDER_H
