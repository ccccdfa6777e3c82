// viewer/CHistory.h
// The ten places in a list that were shown last.

#ifndef VIEWER_CHISTORY_H
#define VIEWER_CHISTORY_H

#include <array>

/// List positions (from 1) of shown messages. Positions, not messages: after sorting or loading, an entry means
/// whatever stands there then. Never cleared during a run.
class CHistory
{
public:
    static constexpr int Size = 10;

    /// Records Position unless it is the one at hand; what lay ahead after going back is dropped.
    void Push(int Position);
    /// The next later (earlier) position that is not above Count, and goes there. 0, and stays, when there is none.
    int Forward(int Count);
    int Back(int Count);

private:
    int Go(int Step, int Count);

    std::array<int, Size> m_slots{};
    int m_current = 0;
};

#endif // VIEWER_CHISTORY_H
