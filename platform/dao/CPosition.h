// platform/dao/CPosition.h
// Where a recordset stands: on a row, before the first, past the last, or on a row that was just deleted.

#ifndef DAO_CPOSITION_H
#define DAO_CPOSITION_H

#include <QtGlobal>

namespace dao
{

/// A place in a list of rows, with the engine's rules for leaving it at either end.
class CPosition
{
public:
    enum class Step { First, Last };

    /// On the first of Total rows, or nowhere (Bof and Eof) when there is none.
    void Open(qsizetype Total);

    bool Bof() const { return m_place == Place::Bof || m_place == Place::Empty; }
    bool Eof() const { return m_place == Place::Eof || m_place == Place::Empty; }
    /// Throws 3021 when there is no current row and 3167 when it was deleted.
    qsizetype Row() const;
    /// True when Row would not throw.
    bool OnRow() const { return m_place == Place::Row; }
    /// Highest row number seen so far, plus one.
    qsizetype Visited() const { return m_visited; }

    /// To an end of Total rows; 3021 when there are none.
    void Move(Step To, qsizetype Total);
    /// By Rows within Total rows, at most one past an end. 3021 for going on where there is nothing more.
    void Move(qint64 Rows, qsizetype Total);
    /// To a row.
    void Set(qsizetype Row);
    /// No current row, though neither end is reached.
    void Lose() { m_place = Place::Lost; }
    /// The current row is gone from the list; the one after it has its number now.
    void RowDeleted();
    /// A row was added at the end of the list, now of Total rows.
    void RowAdded();

private:
    enum class Place { Empty, Bof, Row, Deleted, Lost, Eof };

    Place m_place = Place::Empty;
    qsizetype m_row = 0;
    qsizetype m_visited = 0;
};

} // namespace dao

#endif
