// platform/dao/CPosition.cpp
// Moving within a list of rows.

#include "platform/dao/CPosition.h"

#include "platform/jetsql/Error.h"

#include <algorithm>

namespace dao
{

void CPosition::Open(qsizetype Total)
{
    m_place = Total > 0 ? Place::Row : Place::Empty;
    m_row = 0;
    m_visited = std::min<qsizetype>(Total, 1);
}

qsizetype CPosition::Row() const
{
    if (m_place == Place::Deleted)
        throw jetsql::MakeError(3167);
    if (m_place != Place::Row)
        throw jetsql::MakeError(3021);
    return m_row;
}

void CPosition::Set(qsizetype Row)
{
    m_place = Place::Row;
    m_row = Row;
    m_visited = std::max(m_visited, Row + 1);
}

void CPosition::Move(Step To, qsizetype Total)
{
    if (Total == 0)
        throw jetsql::MakeError(3021);
    Set(To == Step::First ? 0 : Total - 1);
}

void CPosition::Move(qint64 Rows, qsizetype Total)
{
    const bool isGone = Rows == 0 ? m_place != Place::Row : m_place == (Rows > 0 ? Place::Eof : Place::Bof);
    if (m_place == Place::Empty || m_place == Place::Lost || isGone)
        throw jetsql::MakeError(3021);
    qint64 from = m_row;
    if (m_place == Place::Bof)
        from = -1;
    else if (m_place == Place::Eof)
        from = Total;
    else if (m_place == Place::Deleted && Rows > 0)
        from = m_row - 1;
    const qint64 target = from + Rows;
    if (target >= 0 && target < Total) {
        Set(qsizetype(target));
        return;
    }
    m_visited = target >= Total ? Total : m_visited;
    m_place = target < 0 ? Place::Bof : Place::Eof;
}

void CPosition::RowDeleted()
{
    m_place = Place::Deleted;
    m_visited = std::max<qsizetype>(0, m_visited - 1);
}

void CPosition::RowAdded()
{
    if (m_place == Place::Empty)
        m_place = Place::Eof;
    ++m_visited;
}

} // namespace dao
