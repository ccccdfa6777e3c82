// boardd/CBoardLog.h
// The messages of one board side, in ascending numbers, with their records and page fragments rendered once.

#ifndef BOARDD_CBOARDLOG_H
#define BOARDD_CBOARDLOG_H

#include "boardd/Boards.h"
#include "boardd/CBoardMessage.h"

#include <QByteArray>
#include <QHash>

#include <span>
#include <vector>

/// Not thread-safe by itself: CCommunity guards it.
class CBoardLog
{
public:
    /// MaxCount messages are served; older ones belong to the past log. 0 serves all.
    CBoardLog(CBoardInfo Info, int MaxCount);

    const CBoardInfo& Info() const { return m_info; }

    /// Adds a message whose number is above all others; false (and nothing added) when it is not.
    bool Append(CBoardMessage Message);
    /// Takes a served message away; its number is never given again. Nothing happens when it is not served.
    void Remove(qint32 Number);
    /// Everything so far becomes past log, whatever its count.
    void ClosePastLog();

    /// The served messages, oldest first.
    std::span<const CBoardMessage> Messages() const;
    /// Null when the number is not served; a message of the past log is not.
    const CBoardMessage* Find(qint32 Number) const;
    /// The message's part of a board page, in code page 932. Message is one of Messages().
    const QByteArray& Fragment(const CBoardMessage& Message) const;
    /// Highest number ever given; 0 for an empty board.
    qint32 LastNumber() const { return m_lastNumber; }

    /// Log page Index (from 0) of the messages with numbers above After, Count records each; empty past the end.
    QByteArray LogPage(qint32 After, qint64 Index, qint64 Count) const;
    /// The records that are no longer served; empty when there are none.
    QByteArray PastLog() const;
    int PastCount() const { return static_cast<int>(m_first); }
    /// How many served messages have a number above After.
    int CountAbove(qint32 After) const;

    /// The message's thread: it, what it answers as far as it is served, and all that answers them, ascending.
    std::vector<const CBoardMessage*> Thread(qint32 Number) const;

private:
    std::size_t IndexAbove(qint32 After) const;
    QByteArray Slice(std::size_t From, std::size_t To) const;
    qint32 RootOf(const CBoardMessage& Message) const;

    CBoardInfo m_info;
    std::size_t m_maxCount;
    qint32 m_lastNumber = 0;
    std::size_t m_first = 0; // index of the oldest served message
    std::vector<CBoardMessage> m_messages;
    std::vector<QByteArray> m_fragments;
    QByteArray m_records;               // all records one after the other: a page is one slice
    std::vector<qsizetype> m_offsets;   // where each record begins, and one more for the end
    QHash<qint32, std::size_t> m_index;
};

#endif
