// The triangles of a field with their corners found. Internal.
#pragma once
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "fields/chang.h"

/// Finds nodes by number. Borrows the field's arrays, which may change: Refresh before a walk over the
/// triangles.
class CFieldMesh {
public:
    using Corners = std::array<int, 3>;  // positions in the node array

    explicit CFieldMesh(const CChang& field) : m_field(field) {}

    /// Has the table of numbers follow the nodes. It is made again only if the numbers have changed.
    void Refresh();

    /// Position of the node with a number; -1 if there is none, or more than one.
    int PositionOf(int number) const {
        if (m_bPlain) return number >= 1 && number <= m_field.m_arrNode.GetSize() ? number - 1 : -1;
        return Find(number);
    }
    /// False for a missing corner or a repeated one.
    bool Find(const CChangTri& tri, Corners& at) const {
        for (std::size_t k = 0; k < 3; ++k) {
            at[k] = PositionOf(tri.m_aNode[k]);
            if (at[k] < 0) return false;
        }
        return at[0] != at[1] && at[1] != at[2] && at[2] != at[0];
    }

    const CChangNode& Node(int at) const { return m_field.m_arrNode[at]; }
    float Value(int at) const { return m_field.m_arrNode[at].m_aValue[ValueIndex()]; }
    int ValueIndex() const {
        return m_field.m_nValue >= 0 && m_field.m_nValue < CChang::kValues ? m_field.m_nValue : 0;
    }
    bool HasPlace(int at) const { return std::isfinite(Node(at).m_fX) && std::isfinite(Node(at).m_fY); }
    bool HasValue(int at) const { return std::isfinite(Value(at)); }
    /// Find, with all places and values finite.
    bool FindUsable(const CChangTri& tri, Corners& at) const {
        if (!Find(tri, at)) return false;
        for (const int corner : at)
            if (!HasPlace(corner) || !HasValue(corner)) return false;
        return true;
    }

private:
    int Find(int number) const;

    const CChang& m_field;
    bool m_bPlain = true;                        // the numbers are 1, 2, 3 and so on
    std::uint64_t m_nPrint = 0;                  // of the numbers that the table was made for
    std::int64_t m_nLowest = 0;                  // number of the first entry of the table
    std::vector<int> m_aPosition;                // by number, where that is not wasteful
    std::vector<std::pair<int, int>> m_aSorted;  // else number and position, by number; no number twice
};
