#include "fields/field_mesh.h"

#include <algorithm>

namespace {

constexpr int kNone = -1;

/// Number and position, by number, without those that stand more than once.
std::vector<std::pair<int, int>> UniqueNumbers(const CArray<CChangNode>& nodes) {
    std::vector<std::pair<int, int>> sorted;
    sorted.reserve(static_cast<std::size_t>(nodes.GetSize()));
    for (int i = 0; i < nodes.GetSize(); ++i) sorted.emplace_back(nodes[i].m_nNumber, i);
    std::sort(sorted.begin(), sorted.end());
    std::size_t kept = 0;
    for (std::size_t i = 0; i < sorted.size();) {
        std::size_t next = i + 1;
        while (next < sorted.size() && sorted[next].first == sorted[i].first) ++next;
        if (next == i + 1) sorted[kept++] = sorted[i];
        i = next;
    }
    sorted.resize(kept);
    return sorted;
}

}  // namespace

void CFieldMesh::Refresh() {
    const CArray<CChangNode>& nodes = m_field.m_arrNode;
    m_bPlain = true;
    std::uint64_t print = static_cast<std::uint64_t>(nodes.GetSize()) + 1;
    for (int i = 0; i < nodes.GetSize(); ++i) {
        const int number = nodes[i].m_nNumber;
        m_bPlain &= number == i + 1;
        print = (print ^ static_cast<std::uint32_t>(number)) * 0x9E3779B97F4A7C15u;
        print ^= print >> 29;
    }
    if (m_bPlain || print == m_nPrint) return;
    m_nPrint = print;
    m_aPosition.clear();
    m_aSorted = UniqueNumbers(nodes);
    if (m_aSorted.empty()) return;
    m_nLowest = m_aSorted.front().first;
    const std::int64_t span = m_aSorted.back().first - m_nLowest + 1;
    if (span > std::int64_t{8} * nodes.GetSize() + 1024) return;
    m_aPosition.assign(static_cast<std::size_t>(span), kNone);
    for (const auto& [number, at] : m_aSorted) m_aPosition[static_cast<std::size_t>(number - m_nLowest)] = at;
    m_aSorted = {};
}

int CFieldMesh::Find(int number) const {
    int at = kNone;
    if (!m_aPosition.empty()) {
        const std::int64_t entry = number - m_nLowest;
        if (entry >= 0 && entry < static_cast<std::int64_t>(m_aPosition.size()))
            at = m_aPosition[static_cast<std::size_t>(entry)];
    } else {
        const auto found = std::lower_bound(m_aSorted.begin(), m_aSorted.end(), std::pair(number, 0));
        if (found != m_aSorted.end() && found->first == number) at = found->second;
    }
    return at < m_field.m_arrNode.GetSize() ? at : kNone;  // nodes may have gone since the table was made
}
