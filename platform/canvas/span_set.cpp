#include "platform/canvas/span_set.h"

#include <algorithm>

namespace {

bool Before(const CSpan& a, const CSpan& b) { return a.y != b.y ? a.y < b.y : a.x0 < b.x0; }

}  // namespace

void CSpanSet::Normalize() {
    if (!std::is_sorted(m_span.begin(), m_span.end(), Before))
        std::sort(m_span.begin(), m_span.end(), Before);
    std::size_t kept = 0;
    for (const CSpan& s : m_span) {
        if (kept > 0 && m_span[kept - 1].y == s.y && s.x0 <= m_span[kept - 1].x1) {
            m_span[kept - 1].x1 = std::max(m_span[kept - 1].x1, s.x1);
        } else {
            m_span[kept++] = s;
        }
    }
    m_span.resize(kept);
}

void CSpanSet::Subtract(const CSpanSet& other) {
    if (other.m_span.empty()) return;
    std::vector<CSpan> rest;
    auto cut = other.m_span.begin();
    for (CSpan s : m_span) {
        while (cut != other.m_span.end() && (cut->y < s.y || (cut->y == s.y && cut->x1 <= s.x0))) ++cut;
        for (auto c = cut; c != other.m_span.end() && c->y == s.y && c->x0 < s.x1; ++c) {
            if (s.x0 < c->x0) rest.push_back({s.y, s.x0, c->x0});
            s.x0 = std::max(s.x0, c->x1);
        }
        if (s.x0 < s.x1) rest.push_back(s);
    }
    m_span.swap(rest);
}

void CSpanSet::Intersect(const CSpanSet& other) {
    std::vector<CSpan> common;
    auto a = m_span.begin();
    auto b = other.m_span.begin();
    while (a != m_span.end() && b != other.m_span.end()) {
        if (a->y == b->y) {
            const int x0 = std::max(a->x0, b->x0);
            const int x1 = std::min(a->x1, b->x1);
            if (x0 < x1) common.push_back({a->y, x0, x1});
        }
        const bool aEndsFirst = a->y != b->y ? a->y < b->y : a->x1 < b->x1;
        ++(aEndsFirst ? a : b);
    }
    m_span.swap(common);
}
