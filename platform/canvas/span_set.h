// CSpanSet: a set of pixels as horizontal runs.
#pragma once
#include <cstdint>
#include <vector>

#include "platform/win_types.h"

/// Pixels x0 <= x < x1 of row y.
struct CSpan {
    int y, x0, x1;
};

/// A figure on its way to the surface: runs are gathered in any order, cut to the clip as they come, and made
/// into a set by Normalize. Painting a set is what makes a figure touch each pixel once.
class CSpanSet {
public:
    explicit CSpanSet(const CRect& clip) : m_clip(clip) {}

    const CRect& Clip() const { return m_clip; }

    void Add(std::int64_t y, std::int64_t x0, std::int64_t x1) {
        if (y < m_clip.top || y >= m_clip.bottom) return;
        if (x0 < m_clip.left) x0 = m_clip.left;
        if (x1 > m_clip.right) x1 = m_clip.right;
        if (x0 < x1) m_span.push_back({static_cast<int>(y), static_cast<int>(x0), static_cast<int>(x1)});
    }
    void AddPixel(std::int64_t x, std::int64_t y) { Add(y, x, x + 1); }
    void Add(const CSpanSet& other) { m_span.insert(m_span.end(), other.m_span.begin(), other.m_span.end()); }

    void Normalize();                       // sorted by row and column, overlaps united
    void Subtract(const CSpanSet& other);   // both normalized; stays so
    void Intersect(const CSpanSet& other);  // both normalized; stays so

    bool IsEmpty() const { return m_span.empty(); }
    const std::vector<CSpan>& Spans() const { return m_span; }

private:
    CRect m_clip;               // bounds of all runs
    std::vector<CSpan> m_span;  // in the order of Add until Normalize
};
