#include "fields/mesh_densify.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "fields/box_tree.h"
#include "fields/chang.h"
#include "fields/field_mesh.h"

namespace {

struct Edge {
    int from, to;
    friend bool operator==(const Edge&, const Edge&) = default;
};

/// The directed edges of a mesh, numbered in the order of the triangles: entry i is number `first` + i.
class NumberedEdges {
public:
    NumberedEdges(const CArray<CChangTri>& triangles, int first) : m_first(first) {
        const auto count = static_cast<std::size_t>(triangles.GetSize()) * 3;
        m_edges.reserve(count);
        m_slots.assign(std::bit_ceil(2 * count + 1), kFree);
        for (const CChangTri& tri : triangles)
            for (std::size_t k = 0; k < 3; ++k) Enter({tri.m_aNode[k], tri.m_aNode[(k + 1) % 3]});
    }

    int Next() const { return m_first + static_cast<int>(m_edges.size()); }
    const Edge& At(int number) const { return m_edges[static_cast<std::size_t>(number - m_first)]; }

    /// The number of edge `k` of triangle `triangle`: an edge that stands there twice in one direction has
    /// the later one.
    int NumberOf(int triangle, int k) const {
        const int own = m_first + 3 * triangle + k;
        return m_repeated ? m_first + static_cast<int>(m_slots[SlotOf(At(own))]) : own;
    }

private:
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    void Enter(const Edge& edge) {
        m_edges.push_back(edge);
        std::uint32_t& slot = m_slots[SlotOf(edge)];
        m_repeated |= slot != kFree;
        slot = static_cast<std::uint32_t>(m_edges.size() - 1);
    }
    /// Where the edge stands, or may be entered.
    std::size_t SlotOf(const Edge& edge) const {
        const std::uint64_t key = static_cast<std::uint64_t>(static_cast<std::uint32_t>(edge.from)) << 32 |
                                  static_cast<std::uint32_t>(edge.to);
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = static_cast<std::size_t>((key ^ key >> 29) * 0x9E3779B97F4A7C15u >> 20) & mask;
        while (m_slots[slot] != kFree && !(m_edges[m_slots[slot]] == edge)) slot = (slot + 1) & mask;
        return slot;
    }

    int m_first;
    bool m_repeated = false;              // some edge stands there twice
    PooledVector<Edge> m_edges;           // by number
    PooledVector<std::uint32_t> m_slots;  // entries of the former, by hash
};

CChangNode Middle(const CChangNode& a, const CChangNode& b, int number) {
    const auto mean = [](float p, float q) {
        return static_cast<float>((static_cast<double>(p) + static_cast<double>(q)) / 2.0);
    };
    CChangNode node;
    node.m_nNumber = number;
    node.m_fX = mean(a.m_fX, b.m_fX);
    node.m_fY = mean(a.m_fY, b.m_fY);
    for (int i = 0; i < CChang::kValues; ++i) node.m_aValue[i] = mean(a.m_aValue[i], b.m_aValue[i]);
    return node;
}

/// The greatest number in a triangle and one; -1 and one without triangles.
std::int64_t FirstNumber(const CArray<CChangTri>& triangles) {
    int greatest = -1;
    for (const CChangTri& tri : triangles)
        greatest = std::max({greatest, tri.m_aNode[0], tri.m_aNode[1], tri.m_aNode[2]});
    return std::int64_t{greatest} + 1;
}

}  // namespace

void wange_ge_jia_mi(CChang* source, CChang* target) {
    if (!source || !target || source == target) return;
    target->Clear();
    const int triangles = source->m_arrTri.GetSize(), nodes = source->m_arrNode.GetSize();
    const std::int64_t first = FirstNumber(source->m_arrTri);
    // Numbers beyond an int can't be given, nor more triangles than that: then only the nodes are copied.
    const bool possible = first + std::int64_t{3} * triangles <= std::numeric_limits<int>::max() &&
                          std::int64_t{4} * triangles <= std::numeric_limits<int>::max();
    if (!possible || triangles == 0) {
        target->m_arrNode.Copy(source->m_arrNode);
        target->CreateQuadTree();
        return;
    }
    {
        const NumberedEdges edges(source->m_arrTri, static_cast<int>(first));
        target->m_arrTri.Reserve(4 * triangles);
        for (int i = 0; i < triangles; ++i) {
            const auto [a, b, c] = source->m_arrTri[i].m_aNode;
            const int ab = edges.NumberOf(i, 0), bc = edges.NumberOf(i, 1), ca = edges.NumberOf(i, 2);
            target->m_arrTri.Add({{a, ab, ca}});
            target->m_arrTri.Add({{ab, bc, ca}});
            target->m_arrTri.Add({{ab, b, bc}});
            target->m_arrTri.Add({{bc, c, ca}});
        }
        // The numbers up to the count of nodes are taken to be the nodes', whatever these are: only those
        // behind it get a node. Numbers without an edge, or whose edge lacks a node, get none.
        const int from = std::max(nodes + 1, static_cast<int>(first));
        target->m_arrNode.Reserve(nodes + std::max(edges.Next() - from, 0));
        for (const CChangNode& node : source->m_arrNode) target->m_arrNode.Add(node);
        CFieldMesh mesh(*source);
        mesh.Refresh();
        for (int number = from; number < edges.Next(); ++number) {
            const Edge& edge = edges.At(number);
            const int a = mesh.PositionOf(edge.from), b = mesh.PositionOf(edge.to);
            if (a >= 0 && b >= 0) target->m_arrNode.Add(Middle(mesh.Node(a), mesh.Node(b), number));
        }
    }
    target->CreateQuadTree();
}
