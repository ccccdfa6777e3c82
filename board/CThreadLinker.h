// board/CThreadLinker.h
// Gives every new message the number of its thread's first message.

#ifndef BOARD_CTHREADLINKER_H
#define BOARD_CTHREADLINKER_H

#include <QString>

#include <optional>
#include <unordered_map>
#include <vector>

namespace dao
{
class Database;
}

/// Links the messages of one board that are not linked yet, those with the root 0.
///
/// A message that answers no stored one is its own root, an answer takes the root of the message it answers. Afterwards
/// the threads are mended: an older message that had waited for one of the new ones joins its thread with all below it,
/// and messages that answer each other in a ring, or themselves, root at the lowest number of the ring. No 0 stays.
/// The work is linear in the new messages and those whose root changes. Since only the root 0 tells what is new, a pass
/// that a crash prevented is made up for by the next one.
class CThreadLinker
{
public:
    CThreadLinker(dao::Database& Database, qint32 BBS_ID);

    /// Links once, in the caller's transaction if there is one. Throws dao::Error; what was done until then stays.
    void Link();

private:
    /// A new message; Root is 0 while it is not known.
    struct Node
    {
        qint32 InReplyTo = 0;
        qint32 Root = 0;
    };

    void LinkInOrder();
    qint32 RootFor(qint32 ID, qint32 InReplyTo) const;
    std::optional<qint32> FieldOf(const QString& FieldName, qint32 ID) const;

    void ResolveRest();
    void Resolve(qint32 ID);
    qint32 RootAbove(const std::vector<qint32>& Path, qint32 End) const;

    void MendOlder();
    void FindOrphans(qint32 First, qint32 Last);
    qint32 FinalRoot(qint32 Orphan);
    qint32 LowestInRing(qint32 Member) const;
    qint32 ParentOf(qint32 ID) const;

    dao::Database& m_database;
    qint32 m_board;
    std::vector<qint32> m_order;                // new messages in ascending numbers
    std::unordered_map<qint32, Node> m_new;     // the same by number
    std::vector<qint32> m_orphans;              // older roots whose parent has come
    std::unordered_map<qint32, qint32> m_moves; // orphan → root of the thread that it belongs to
    std::unordered_map<qint32, qint32> m_final; // orphan → where it ends up after all moves
};

#endif // BOARD_CTHREADLINKER_H
