// Areas bounded by straight sides.
#pragma once
#include <cstdint>
#include <vector>

#include "platform/canvas/span_set.h"

/// Fills by crossings: each side leaves, on each visible row that it spans, the first pixel column at or to
/// the right of it. Upper ends belong to a side, lower ones do not. Sides between whole points are worked
/// exactly, whatever their size.
class CPolygonRaster {
public:
    explicit CPolygonRaster(const CRect& clip) : m_clip(clip) {}

    void AddSide(const CPoint& a, const CPoint& b, int scale = 1);  // the points times the scale
    void AddSide(double ax, double ay, double bx, double by);
    void AddPolygon(const CPoint* points, int count, int scale = 1);

    /// Appends the inside to the set, by non-zero winding or by parity, and starts afresh.
    void Finish(bool winding, CSpanSet& spans);

private:
    struct Crossing {
        int y, x;   // column cut to the clip
        int sense;  // 1 downwards, -1 upwards
    };
    void Cross(int y, std::int64_t x, int sense);

    CRect m_clip;                      // rows and columns that matter
    std::vector<Crossing> m_crossing;  // in the order of the sides
};
