// boardd/CBoardLog.cpp
// Keeping one board's messages and cutting log pages out of them.

#include "boardd/CBoardLog.h"

#include "boardd/MessageHtml.h"
#include "boardd/Record.h"

#include <algorithm>

CBoardLog::CBoardLog(CBoardInfo Info, int MaxCount)
    : m_info(std::move(Info))
    , m_maxCount(MaxCount > 0 ? static_cast<std::size_t>(MaxCount) : std::numeric_limits<std::size_t>::max())
    , m_offsets{0}
{
}

bool CBoardLog::Append(CBoardMessage Message)
{
    if (Message.Number <= LastNumber())
        return false;
    m_records.append(mdlRecord::Write(Message, m_info.IsTwoSided()));
    m_offsets.push_back(m_records.size());
    m_fragments.push_back(mdlMessageHtml::Fragment(m_info, Message, Find(Message.ReplyTo) != nullptr));
    m_index.insert(Message.Number, m_messages.size());
    m_lastNumber = Message.Number;
    m_messages.push_back(std::move(Message));
    if (m_messages.size() - m_first > m_maxCount)
        ++m_first;
    return true;
}

void CBoardLog::Remove(qint32 Number)
{
    if (!Find(Number))
        return;
    // Deletions are rare: rendering the board anew keeps its records in one piece.
    CBoardLog rest(m_info, 0);
    for (const CBoardMessage& message : m_messages) {
        if (message.Number != Number)
            rest.Append(message);
    }
    rest.m_maxCount = m_maxCount;
    rest.m_first = m_first;
    rest.m_lastNumber = m_lastNumber;
    *this = std::move(rest);
}

void CBoardLog::ClosePastLog()
{
    m_first = m_messages.size();
}

std::span<const CBoardMessage> CBoardLog::Messages() const
{
    return std::span(m_messages).subspan(m_first);
}

const CBoardMessage* CBoardLog::Find(qint32 Number) const
{
    const auto found = m_index.constFind(Number);
    return found != m_index.cend() && *found >= m_first ? &m_messages[*found] : nullptr;
}

const QByteArray& CBoardLog::Fragment(const CBoardMessage& Message) const
{
    return m_fragments[m_index.value(Message.Number)];
}

std::size_t CBoardLog::IndexAbove(qint32 After) const
{
    const auto first = m_messages.begin() + static_cast<std::ptrdiff_t>(m_first);
    const auto found = std::upper_bound(first, m_messages.end(), After,
                                        [](qint32 number, const CBoardMessage& message) { return number < message.Number; });
    return static_cast<std::size_t>(found - m_messages.begin());
}

QByteArray CBoardLog::Slice(std::size_t From, std::size_t To) const
{
    return m_records.mid(m_offsets[From], m_offsets[To] - m_offsets[From]);
}

QByteArray CBoardLog::LogPage(qint32 After, qint64 Index, qint64 Count) const
{
    const std::size_t above = IndexAbove(After);
    const auto available = static_cast<qint64>(m_messages.size() - above);
    // Compared by division: both numbers are the visitor's and their product may not fit.
    if (Index < 0 || Count < 1 || Index > available / Count)
        return {};
    const auto begin = above + static_cast<std::size_t>(Index * Count);
    return Slice(begin, std::min(m_messages.size(), begin + static_cast<std::size_t>(std::min(Count, available))));
}

QByteArray CBoardLog::PastLog() const
{
    return Slice(0, m_first);
}

int CBoardLog::CountAbove(qint32 After) const
{
    return static_cast<int>(m_messages.size() - IndexAbove(After));
}

qint32 CBoardLog::RootOf(const CBoardMessage& Message) const
{
    const CBoardMessage* current = &Message;
    // A message answers an earlier one only, so the walk ends.
    while (const CBoardMessage* parent = current->ReplyTo < current->Number ? Find(current->ReplyTo) : nullptr)
        current = parent;
    return current->Number;
}

std::vector<const CBoardMessage*> CBoardLog::Thread(qint32 Number) const
{
    std::vector<const CBoardMessage*> thread;
    const CBoardMessage* start = Find(Number);
    if (!start)
        return thread;
    const qint32 root = RootOf(*start);
    QHash<qint32, bool> members{{root, true}};
    for (const CBoardMessage& message : Messages().subspan(m_index.value(root) - m_first)) {
        if (message.Number != root && (message.ReplyTo >= message.Number || !members.contains(message.ReplyTo)))
            continue;
        members.insert(message.Number, true);
        thread.push_back(&message);
    }
    return thread;
}
