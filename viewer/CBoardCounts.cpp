// viewer/CBoardCounts.cpp
// Unread messages by board.

#include "viewer/CBoardCounts.h"

#include "app/Application.h"
#include "board/CBBSProperty.h"
#include "platform/dao/Error.h"

#include <algorithm>

/// Empty when the database refuses the count.
std::optional<int> CBoardCounts::CountStored(qint32 BBS_ID) const
{
    try {
        CBBSProperty board(m_app);
        return board.GetProperty(BBS_ID) ? board.NoReadCount() : 0;
    } catch (const dao::Error&) {
        return std::nullopt;
    }
}

int CBoardCounts::Count(qint32 BBS_ID)
{
    const auto known = m_counts.find(BBS_ID);
    if (known != m_counts.end())
        return known->second;
    const std::optional<int> stored = CountStored(BBS_ID);
    if (stored)
        m_counts.emplace(BBS_ID, *stored);
    return stored.value_or(0);
}

int CBoardCounts::Add(qint32 BBS_ID, int Change)
{
    const auto known = m_counts.find(BBS_ID);
    if (known == m_counts.end())
        return Count(BBS_ID);
    if (Change == 0) {
        m_counts.erase(known);
        return Count(BBS_ID);
    }
    known->second = std::max(0, known->second + Change);
    return known->second;
}

std::vector<qint32> CBoardCounts::Forget()
{
    std::vector<qint32> boards;
    for (const auto& [board, count] : m_counts)
        boards.push_back(board);
    m_counts.clear();
    return boards;
}
