#include "fields/isoline_trace.h"

#include <bit>
#include <cstdint>
#include <vector>

#include "fields/field_mesh.h"

namespace {

enum Side : std::uint8_t { kBelow = 0, kAbove = 1, kUnusable = 2 };

std::vector<std::uint8_t> SidesOfNodes(const CFieldMesh& mesh, int nodes, float level) {
    std::vector<std::uint8_t> sides(static_cast<std::size_t>(nodes));
    for (int i = 0; i < nodes; ++i) {
        const bool usable = mesh.HasPlace(i) && mesh.HasValue(i);
        sides[static_cast<std::size_t>(i)] = !usable ? kUnusable : mesh.Value(i) >= level ? kAbove : kBelow;
    }
    return sides;
}

/// An edge that the level cuts, the node of the lower position first, so that both triangles at it get one
/// point.
struct CutEdge {
    int low, high;
    std::uint64_t Key() const {
        return static_cast<std::uint64_t>(static_cast<std::uint32_t>(low)) << 32 |
               static_cast<std::uint32_t>(high);
    }
};

/// The two cut edges of each mixed triangle, one pair behind the other, in the order of the triangles. Within
/// a pair edges stand in the order ab, bc, ca.
std::vector<CutEdge> CutTriangles(const CChang& field, const CFieldMesh& mesh, float level) {
    const auto sides = SidesOfNodes(mesh, field.m_arrNode.GetSize(), level);
    const auto side = [&](int at) { return sides[static_cast<std::size_t>(at)]; };
    std::vector<CutEdge> ends;
    CFieldMesh::Corners at;
    for (const CChangTri& tri : field.m_arrTri) {
        if (!mesh.Find(tri, at)) continue;
        if (side(at[0]) == side(at[1]) && side(at[1]) == side(at[2])) continue;
        if ((side(at[0]) | side(at[1]) | side(at[2])) & kUnusable) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            const int a = at[k], b = at[(k + 1) % 3];
            if (side(a) != side(b)) ends.push_back(a < b ? CutEdge{a, b} : CutEdge{b, a});
        }
    }
    return ends;
}

constexpr int kOpen = -1;

/// For each end the one that it is joined to, at the same edge. Where more than two triangles meet in an
/// edge, their ends are joined in pairs as they come; an odd one stays open.
std::vector<int> JoinEnds(const std::vector<CutEdge>& ends) {
    std::vector<int> joined(ends.size(), kOpen);
    const std::size_t slots = std::bit_ceil(2 * ends.size() + 1);
    const int shift = 64 - std::countr_zero(slots);
    std::vector<int> waiting(slots, kOpen);  // per slot, an end that looks for another
    std::vector<std::uint64_t> keys(slots,
                                    ~std::uint64_t{0});  // no edge has this key: positions are below 2^31
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const std::uint64_t key = ends[i].Key();
        std::size_t slot = shift == 64 ? 0 : static_cast<std::size_t>(key * 0x9E3779B97F4A7C15u >> shift);
        while (keys[slot] != key && keys[slot] != ~std::uint64_t{0}) slot = (slot + 1) & (slots - 1);
        keys[slot] = key;
        const int end = static_cast<int>(i);
        if (waiting[slot] == kOpen) {
            waiting[slot] = end;
        } else {
            joined[i] = waiting[slot];
            joined[static_cast<std::size_t>(waiting[slot])] = end;
            waiting[slot] = kOpen;
        }
    }
    return joined;
}

CFPoint PointOn(const CutEdge& edge, const CFieldMesh& mesh, double level) {
    const CChangNode &a = mesh.Node(edge.low), &b = mesh.Node(edge.high);
    const double va = static_cast<double>(mesh.Value(edge.low)),
                 vb = static_cast<double>(mesh.Value(edge.high));
    const double t = (level - va) / (vb - va);  // the values differ: one is below the level, the other is not
    const auto between = [t](float p, float q) {
        return static_cast<float>(static_cast<double>(p) +
                                  t * (static_cast<double>(q) - static_cast<double>(p)));
    };
    return {between(a.m_fX, b.m_fX), between(a.m_fY, b.m_fY), 0};
}

}  // namespace

void TraceIsoline(const CChang& field, const CFieldMesh& mesh, float level, CArray<CArray<CFPoint>>& lines) {
    lines.RemoveAll();
    const auto ends = CutTriangles(field, mesh, level);
    const auto joined = JoinEnds(ends);
    std::vector<bool> done(ends.size() / 2);  // by segment
    // Ends 2i and 2i + 1 belong to segment i, so that i ^ 1 is the other end of the same one.
    const auto follow = [&](std::size_t end) {
        CArray<CFPoint> line;
        line.Add(PointOn(ends[end], mesh, static_cast<double>(level)));
        for (;;) {
            done[end / 2] = true;
            end ^= 1;
            line.Add(PointOn(ends[end], mesh, static_cast<double>(level)));
            const int next = joined[end];
            if (next == kOpen || done[static_cast<std::size_t>(next) / 2]) break;
            end = static_cast<std::size_t>(next);
        }
        lines.SetSize(lines.GetSize() + 1);
        lines[lines.GetUpperBound()].Swap(line);
    };
    for (std::size_t end = 0; end < ends.size(); ++end)
        if (joined[end] == kOpen && !done[end / 2]) follow(end);
    for (std::size_t end = 0; end < ends.size(); end += 2)
        if (!done[end / 2]) follow(end);
}
