// viewer/CHistory.cpp
// Ten slots and the current one; 0 is an empty slot.

#include "viewer/CHistory.h"

#include <algorithm>

void CHistory::Push(int Position)
{
    const auto at = [this](int Slot) { return m_slots.begin() + Slot; };
    if (Position == m_slots[static_cast<std::size_t>(m_current)])
        return;
    if (m_current == Size - 1) {
        std::shift_left(m_slots.begin(), m_slots.end(), 1);
        --m_current;
    }
    ++m_current;
    std::fill(at(m_current), m_slots.end(), 0);
    *at(m_current) = Position;
}

int CHistory::Forward(int Count) { return Go(1, Count); }

int CHistory::Back(int Count) { return Go(-1, Count); }

/// Entries that lie beyond the list by now are passed over, so that they never bar the way.
int CHistory::Go(int Step, int Count)
{
    for (int slot = m_current + Step; slot >= 0 && slot < Size; slot += Step) {
        const int position = m_slots[static_cast<std::size_t>(slot)];
        if (position <= 0)
            return 0;
        if (position <= Count) {
            m_current = slot;
            return position;
        }
    }
    return 0;
}
