// viewer/CRowRanges.h
// A set of rows kept as runs, so that a hundred thousand selected rows cost as much as one.

#ifndef VIEWER_CROWRANGES_H
#define VIEWER_CROWRANGES_H

#include <vector>

/// Rows First to Last, both included.
struct RowRange
{
    int First;
    int Last;

    bool operator==(const RowRange& Other) const = default;
};

/// Rows, from 0. The cost of a change is that of the runs that it touches, not of the rows.
class CRowRanges
{
public:
    bool Contains(int Row) const;
    /// Number of rows in the set.
    int Count() const { return m_count; }
    bool IsEmpty() const { return m_runs.empty(); }
    /// In ascending order; between two runs at least one row is missing.
    const std::vector<RowRange>& Runs() const { return m_runs; }
    /// Every row, ascending.
    std::vector<int> Rows() const;

    /// Puts rows First to Last in or takes them out. Nothing happens where Last is below First.
    void Set(int First, int Last, bool On);
    /// Rows First to Last change sides.
    void Toggle(int First, int Last);
    void Clear();

    /// A row that is not in the set comes in before Row.
    void InsertRow(int Row);
    /// Rows First to Last go, those below move up.
    void RemoveRows(int First, int Last);

    bool operator==(const CRowRanges& Other) const = default;

private:
    using Place = std::vector<RowRange>::iterator;

    Place FirstTouching(int Row);
    void Replace(int First, int Last, const std::vector<RowRange>& Middle);

    std::vector<RowRange> m_runs;
    int m_count = 0;
};

#endif // VIEWER_CROWRANGES_H
