// viewer/CRowRanges.cpp
// Runs of rows, found by their ends and joined where they meet.

#include "viewer/CRowRanges.h"

#include <algorithm>

namespace
{

int RowsOf(const RowRange& Run) { return Run.Last - Run.First + 1; }

int RowsOf(const std::vector<RowRange>& Runs)
{
    int count = 0;
    for (const RowRange& run : Runs)
        count += RowsOf(run);
    return count;
}

bool EndsBefore(const RowRange& Run, int Row) { return Run.Last < Row; }

/// Adds a run behind those of To; one that it meets grows.
void Append(std::vector<RowRange>& To, RowRange Run)
{
    if (Run.Last < Run.First)
        return;
    if (!To.empty() && To.back().Last + 1 >= Run.First)
        To.back().Last = std::max(To.back().Last, Run.Last);
    else
        To.push_back(Run);
}

} // namespace

bool CRowRanges::Contains(int Row) const
{
    const auto run = std::lower_bound(m_runs.begin(), m_runs.end(), Row, EndsBefore);
    return run != m_runs.end() && run->First <= Row;
}

std::vector<int> CRowRanges::Rows() const
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(m_count));
    for (const RowRange& run : m_runs) {
        for (int row = run.First; row <= run.Last; ++row)
            rows.push_back(row);
    }
    return rows;
}

void CRowRanges::Clear()
{
    m_runs.clear();
    m_count = 0;
}

/// The first run that reaches Row or ends directly before it.
CRowRanges::Place CRowRanges::FirstTouching(int Row)
{
    return std::lower_bound(m_runs.begin(), m_runs.end(), Row - 1, EndsBefore);
}

/// Rows First to Last become those of Middle, which lie there; the runs that reach in from outside are cut or joined.
void CRowRanges::Replace(int First, int Last, const std::vector<RowRange>& Middle)
{
    const Place begin = FirstTouching(First);
    Place end = begin;
    while (end != m_runs.end() && end->First <= Last + 1)
        ++end;
    std::vector<RowRange> runs;
    if (begin != end)
        Append(runs, {begin->First, std::min(begin->Last, First - 1)});
    for (const RowRange& run : Middle)
        Append(runs, run);
    if (begin != end)
        Append(runs, {std::max(std::prev(end)->First, Last + 1), std::prev(end)->Last});
    m_count += RowsOf(runs) - RowsOf(std::vector<RowRange>(begin, end));
    const auto same = std::min(runs.size(), static_cast<std::size_t>(end - begin));
    const Place rest = std::copy_n(runs.begin(), same, begin);
    const auto more = runs.begin() + static_cast<std::ptrdiff_t>(same);
    if (more == runs.end())
        m_runs.erase(rest, end);
    else
        m_runs.insert(rest, more, runs.end());
}

void CRowRanges::Set(int First, int Last, bool On)
{
    if (Last >= First)
        Replace(First, Last, On ? std::vector<RowRange>{{First, Last}} : std::vector<RowRange>());
}

void CRowRanges::Toggle(int First, int Last)
{
    std::vector<RowRange> gaps;
    int next = First;
    for (Place run = FirstTouching(First); run != m_runs.end() && run->First <= Last; ++run) {
        Append(gaps, {next, run->First - 1});
        next = std::max(next, run->Last + 1);
    }
    Append(gaps, {next, Last});
    if (Last >= First)
        Replace(First, Last, gaps);
}

void CRowRanges::InsertRow(int Row)
{
    Place run = std::lower_bound(m_runs.begin(), m_runs.end(), Row, EndsBefore);
    if (run != m_runs.end() && run->First < Row) {
        const RowRange below{Row, run->Last};
        run->Last = Row - 1;
        run = m_runs.insert(std::next(run), below);
    }
    for (; run != m_runs.end(); ++run) {
        ++run->First;
        ++run->Last;
    }
}

void CRowRanges::RemoveRows(int First, int Last)
{
    Set(First, Last, false);
    const int gone = Last - First + 1;
    const Place below = std::lower_bound(m_runs.begin(), m_runs.end(), Last, EndsBefore);
    for (Place run = below; run != m_runs.end(); ++run) {
        run->First -= gone;
        run->Last -= gone;
    }
    if (below == m_runs.begin() || below == m_runs.end() || std::prev(below)->Last + 1 != below->First)
        return;
    std::prev(below)->Last = below->Last;
    m_runs.erase(below);
}
