// A packed tree of boxes in the plane, for asking which of them hold a point. Internal.
#pragma once
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/pool.h"

/// Millions of elements that are visited in no order: the pool keeps them on large pages.
template <class T>
using PooledVector = std::vector<T, CPoolAllocator<T>>;

/// A box that is closed on all sides. The empty one swallows nothing when it is united with another.
struct PlaneBox {
    float minX = 1, minY = 1, maxX = 0, maxY = 0;

    bool IsEmpty() const { return minX > maxX; }
    void Unite(const PlaneBox& other);
    /// The smallest box of floats about a box of doubles.
    static PlaneBox About(double minX, double minY, double maxX, double maxY);
};

/// Items in the order of a curve that fills the plane, boxes about each eight neighbours, and boxes about
/// each eight of those, up to one. Items of very different sizes and densities do no harm; the order they
/// come in does not matter.
class CBoxTree {
public:
    /// Items are the positions in `boxes`; those with an empty box are left out. Gives the items along the
    /// curve; a place in there is an item's rank.
    PooledVector<int> Build(PooledVector<PlaneBox> boxes);

    static constexpr std::size_t kFan = 8;  // neighbours under one box

    /// The lowest item for which `holds(item, rank)` is true, of those whose box holds the point; -1 if none
    /// is. `ahead(rank)` comes before kFan neighbours are looked at, the first of which has that rank.
    template <class Ahead, class Holds>
    int Lowest(float x, float y, Ahead ahead, Holds holds) const {
        int best = kNone;
        if (!m_aLevel.empty()) Descend(m_aLevel.size() - 1, 0, x, y, ahead, holds, best);
        return best == kNone ? -1 : best;
    }

private:
    static constexpr int kNone = 0x7FFFFFFF;

    /// Eight boxes, one array a side, so that all of them are compared without a branch.
    struct Eight {
        float minX[kFan], minY[kFan], maxX[kFan], maxY[kFan];
        int lowest[kFan];  // item in each: one that holds none lower than the best so far need not be looked
                           // at

        Eight();
        void Set(std::size_t k, const PlaneBox& box, int item);
        PlaneBox All() const;
        int Lowest() const;
        /// A bit for each box that holds the point and a lower item than `best`.
        unsigned Holding(float x, float y, int best) const {
            unsigned bits = 0;
            for (unsigned k = 0; k < kFan; ++k)
                bits |= static_cast<unsigned>((x >= minX[k]) & (x <= maxX[k]) & (y >= minY[k]) &
                                              (y <= maxY[k]) & (lowest[k] < best))
                        << k;
            return bits;
        }
    };

    template <class Ahead, class Holds>
    void Descend(std::size_t level, std::size_t at, float x, float y, Ahead& ahead, Holds& holds,
                 int& best) const {
        if (level == 0) ahead(at * kFan);
        const Eight& eight = m_aLevel[level][at];
        for (unsigned bits = eight.Holding(x, y, best); bits != 0; bits &= bits - 1) {
            const auto k = static_cast<std::size_t>(std::countr_zero(bits));
            if (eight.lowest[k] >= best) continue;  // one before it was better
            const std::size_t child = at * kFan + k;
            if (level > 0) Descend(level - 1, child, x, y, ahead, holds, best);
            else if (holds(eight.lowest[k], child)) best = eight.lowest[k];
        }
    }

    std::vector<PooledVector<Eight>> m_aLevel;  // boxes of the items first, by rank; the uppermost eight last
};
