// platform/dao/CGapList.h
// A list of which much is removed in one place after the other.

#ifndef DAO_CGAPLIST_H
#define DAO_CGAPLIST_H

#include <QtGlobal>

#include <algorithm>
#include <utility>
#include <vector>

namespace dao
{

/// A vector with a gap where something was removed last. Removing costs the distance from the place of the last removal
/// and not the length of the list, so a walk that removes every other row is linear.
template<class Item> class CGapList
{
public:
    qsizetype Count() const { return qsizetype(m_items.size()) - m_gap; }
    const Item& At(qsizetype Index) const { return m_items[Place(Index)]; }

    void Append(Item Added)
    {
        CloseGap();
        m_items.push_back(std::move(Added));
    }

    void Remove(qsizetype Index)
    {
        MoveGap(Index);
        ++m_gap;
    }

    void Clear() { *this = CGapList(); }

    /// Where an equal item stands, -1 where there is none.
    qsizetype IndexOf(const Item& Wanted) const
    {
        const auto gap = m_items.begin() + m_gapBegin;
        const auto before = std::find(m_items.begin(), gap, Wanted);
        if (before != gap)
            return before - m_items.begin();
        const auto after = std::find(gap + m_gap, m_items.end(), Wanted);
        return after == m_items.end() ? -1 : after - m_items.begin() - m_gap;
    }

private:
    size_t Place(qsizetype Index) const { return size_t(Index < m_gapBegin ? Index : Index + m_gap); }

    void MoveGap(qsizetype Index)
    {
        const auto begin = m_items.begin();
        if (m_gap > 0 && Index < m_gapBegin)
            std::move_backward(begin + Index, begin + m_gapBegin, begin + m_gapBegin + m_gap);
        else if (m_gap > 0)
            std::move(begin + m_gapBegin + m_gap, begin + Index + m_gap, begin + m_gapBegin);
        m_gapBegin = Index;
    }

    void CloseGap()
    {
        if (m_gap == 0)
            return;
        MoveGap(Count());
        m_items.resize(size_t(Count()));
        m_gap = 0;
    }

    std::vector<Item> m_items;
    qsizetype m_gapBegin = 0; ///< within 0..Count()
    qsizetype m_gap = 0;
};

} // namespace dao

#endif
