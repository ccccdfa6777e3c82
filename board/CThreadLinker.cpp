// board/CThreadLinker.cpp
// Gives every new message the number of its thread's first message.

#include "board/CThreadLinker.h"

#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"

#include <QString>

#include <algorithm>
#include <iterator>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace
{
/// Root of a message that is being looked at: whoever meets it again has gone round a ring.
constexpr qint32 OnPath = -1;

QString OnBoard(qint32 BBS_ID) { return u" WHERE BBS_ID = "_s + QString::number(BBS_ID); }

void SetRoots(dao::Database& Database, qint32 BBS_ID, const QString& Condition, qint32 Root)
{
    Database.Execute(u"UPDATE Message SET RootThread = "_s + QString::number(Root) + OnBoard(BBS_ID) + Condition);
}
} // namespace

CThreadLinker::CThreadLinker(dao::Database& Database, qint32 BBS_ID)
    : m_database(Database)
    , m_board(BBS_ID)
{
}

void CThreadLinker::Link()
{
    LinkInOrder();
    ResolveRest();
    MendOlder();
}

/// In ascending numbers, so that a new message's root is known before its answers are looked at.
void CThreadLinker::LinkInOrder()
{
    const auto rows = m_database.OpenRecordset(u"SELECT *"_s + u"  FROM Message"_s + OnBoard(m_board)
                                                   + u"   AND RootThread = 0"_s + u" ORDER BY ID"_s,
                                               dao::RecordsetType::Dynaset);
    const int idField = rows->FieldIndex(u"ID");
    const int replyField = rows->FieldIndex(u"InReplyTo");
    const int rootField = rows->FieldIndex(u"RootThread");
    for (; !rows->Eof(); rows->MoveNext()) {
        const Node node{rows->Long(replyField), RootFor(rows->Long(idField), rows->Long(replyField))};
        m_order.push_back(rows->Long(idField));
        m_new[m_order.back()] = node;
        if (node.Root == 0)
            continue; // answers a message that comes later in this pass
        rows->Edit();
        rows->Set(rootField, dao::Value::FromLong(node.Root));
        rows->Update();
    }
}

qint32 CThreadLinker::RootFor(qint32 ID, qint32 InReplyTo) const
{
    if (InReplyTo == 0)
        return ID;
    if (const auto parent = m_new.find(InReplyTo); parent != m_new.end())
        return parent->second.Root;
    return FieldOf(u"RootThread"_s, InReplyTo).value_or(ID);
}

std::optional<qint32> CThreadLinker::FieldOf(const QString& FieldName, qint32 ID) const
{
    const auto rows = m_database.OpenRecordset(u"SELECT "_s + FieldName + u" FROM Message"_s + OnBoard(m_board)
                                               + u" AND   ID = "_s + QString::number(ID));
    if (rows->Eof())
        return {};
    return rows->Long(0);
}

void CThreadLinker::ResolveRest()
{
    for (const qint32 id : m_order)
        if (m_new.at(id).Root == 0)
            Resolve(id);
}

/// Goes up from ID to a message whose root is known, or round a ring, and gives that root to all on the way.
void CThreadLinker::Resolve(qint32 ID)
{
    std::vector<qint32> path;
    qint32 at = ID;
    for (auto node = m_new.find(at); node != m_new.end() && node->second.Root == 0; node = m_new.find(at)) {
        path.push_back(at);
        node->second.Root = OnPath;
        at = node->second.InReplyTo;
    }
    const qint32 root = RootAbove(path, at);
    for (const qint32 id : path) {
        m_new[id].Root = root;
        SetRoots(m_database, m_board, u" AND ID = "_s + QString::number(id), root);
    }
}

qint32 CThreadLinker::RootAbove(const std::vector<qint32>& Path, qint32 End) const
{
    const auto end = m_new.find(End);
    if (end == m_new.end())
        return RootFor(Path.back(), End);
    if (end->second.Root != OnPath)
        return end->second.Root;
    return *std::min_element(std::find(Path.begin(), Path.end(), End), Path.end());
}

void CThreadLinker::MendOlder()
{
    for (auto first = m_order.begin(); first != m_order.end();) {
        auto last = first;
        while (std::next(last) != m_order.end() && *std::next(last) == *last + 1)
            ++last;
        FindOrphans(*first, *last);
        first = std::next(last);
    }
    for (const qint32 orphan : m_orphans) {
        const qint32 root = FinalRoot(orphan);
        if (root != orphan)
            SetRoots(m_database, m_board, u" AND RootThread = "_s + QString::number(orphan), root);
    }
}

/// Older messages that answer one of the new numbers First to Last and, missing it, had become roots.
void CThreadLinker::FindOrphans(qint32 First, qint32 Last)
{
    const auto rows = m_database.OpenRecordset(u"SELECT ID, InReplyTo"_s + u"  FROM Message"_s + OnBoard(m_board)
                                               + u" AND InReplyTo >= "_s + QString::number(First)
                                               + u" AND InReplyTo <= "_s + QString::number(Last)
                                               + u" AND RootThread = ID"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        if (m_new.contains(rows->Long(0)))
            continue; // the lowest of a ring that was resolved already
        m_orphans.push_back(rows->Long(0));
        m_moves[rows->Long(0)] = m_new.at(rows->Long(1)).Root;
    }
}

/// Follows the moves to a thread that stays where it is; moves in a circle mean that the messages answer in a ring.
qint32 CThreadLinker::FinalRoot(qint32 Orphan)
{
    std::vector<qint32> path;
    std::unordered_set<qint32> seen;
    qint32 root = Orphan;
    while (!m_final.contains(root) && m_moves.contains(root) && seen.insert(root).second) {
        path.push_back(root);
        root = m_moves.at(root);
    }
    if (const auto known = m_final.find(root); known != m_final.end())
        root = known->second;
    else if (seen.contains(root))
        root = LowestInRing(root);
    for (const qint32 orphan : path)
        m_final[orphan] = root;
    return root;
}

qint32 CThreadLinker::LowestInRing(qint32 Member) const
{
    std::unordered_set<qint32> seen;
    qint32 lowest = Member;
    for (qint32 at = Member; at != 0 && seen.insert(at).second; at = ParentOf(at))
        lowest = qMin(lowest, at);
    return lowest;
}

qint32 CThreadLinker::ParentOf(qint32 ID) const
{
    if (const auto node = m_new.find(ID); node != m_new.end())
        return node->second.InReplyTo;
    return FieldOf(u"InReplyTo"_s, ID).value_or(0);
}
