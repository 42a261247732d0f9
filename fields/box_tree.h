// A packed tree of boxes in the plane, for asking which of them hold a point. Internal.
#pragma once
#include <cstdint>
#include <vector>

/// A box that is closed on all sides. The empty one swallows nothing when it is united with another.
struct PlaneBox {
    float minX = 1, minY = 1, maxX = 0, maxY = 0;

    bool IsEmpty() const { return minX > maxX; }
    bool Holds(float x, float y) const { return x >= minX && x <= maxX && y >= minY && y <= maxY; }
    void Unite(const PlaneBox& other);
    /// The smallest box of floats about a box of doubles.
    static PlaneBox About(double minX, double minY, double maxX, double maxY);
};

/// Items in the order of a curve that fills the plane, boxes about each eight neighbours, and boxes about each eight of
/// those, up to one. Items of very different sizes and densities do no harm; the order they come in does not matter.
class CBoxTree {
public:
    /// Items are the positions in `boxes`; those with an empty box are left out.
    void Build(std::vector<PlaneBox> boxes);

    /// All items along the curve. A place in here is an item's rank.
    const std::vector<int>& Items() const { return m_aItem; }

    /// The lowest item for which `holds(item, rank)` is true, of those whose group's box holds the point; -1 if none is.
    template <class Holds>
    int Lowest(float x, float y, Holds holds) const {
        int best = -1;
        if (!m_aItem.empty() && m_aLevel.back()[0].box.Holds(x, y))
            Descend(m_aLevel.size() - 1, 0, x, y, holds, best);
        return best;
    }

private:
    static constexpr std::size_t kFan = 8;

    struct Group {
        PlaneBox box;
        int lowest;  // item in it: a group of none lower than the best so far need not be looked at
        void Add(const PlaneBox& other, int item) {
            box.Unite(other);
            if (item < lowest) lowest = item;
        }
    };


    template <class Holds>
    void Descend(std::size_t level, std::size_t at, float x, float y, Holds& holds, int& best) const {
        const std::size_t below = level > 0 ? m_aLevel[level - 1].size() : m_aItem.size();
        const std::size_t end = at * kFan + kFan < below ? at * kFan + kFan : below;
        for (std::size_t i = at * kFan; i < end; ++i) {
            if (level > 0) {
                const Group& group = m_aLevel[level - 1][i];
                if (group.box.Holds(x, y) && (best < 0 || group.lowest < best)) Descend(level - 1, i, x, y, holds, best);
            } else if ((best < 0 || m_aItem[i] < best) && holds(m_aItem[i], i)) {
                best = m_aItem[i];
            }
        }
    }

    std::vector<int> m_aItem;                  // along the curve
    std::vector<std::vector<Group>> m_aLevel;  // groups of items first, the one about all last
};
