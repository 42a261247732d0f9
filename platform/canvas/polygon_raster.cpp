#include "platform/canvas/polygon_raster.h"

#include <algorithm>
#include <cmath>

namespace {
__extension__ typedef __int128 Wide;
}

void CPolygonRaster::Cross(int y, std::int64_t x, int sense) {
    const std::int64_t cut = std::clamp<std::int64_t>(x, m_clip.left, m_clip.right);
    m_crossing.push_back({y, static_cast<int>(cut), sense});
}

void CPolygonRaster::AddSide(const CPoint& a, const CPoint& b, int scale) {
    if (a.y == b.y || m_clip.IsRectEmpty()) return;
    const int sense = a.y < b.y ? 1 : -1;
    struct Place {
        std::int64_t x, y;
    };
    const auto place = [&](const CPoint& p) { return Place{std::int64_t{p.x} * scale, std::int64_t{p.y} * scale}; };
    const Place top = place(sense > 0 ? a : b), low = place(sense > 0 ? b : a);
    const auto first = static_cast<int>(std::clamp<std::int64_t>(top.y, m_clip.top, m_clip.bottom));
    const auto end = static_cast<int>(std::clamp<std::int64_t>(low.y, m_clip.top, m_clip.bottom));
    if (first >= end) return;
    // x = top.x + ceil((y - top.y) dx / dy), carried from row to row as quotient and rest.
    const std::int64_t dx = low.x - top.x, dy = low.y - top.y;
    const Wide travel = Wide{std::int64_t{first} - top.y} * dx + (dy - 1);
    Wide quotient = travel / dy;
    if (travel % dy < 0) --quotient;
    std::int64_t rest = static_cast<std::int64_t>(travel - quotient * dy);
    std::int64_t x = top.x + static_cast<std::int64_t>(quotient);
    std::int64_t stepX = dx / dy, stepRest = dx % dy;
    if (stepRest < 0) {
        --stepX;
        stepRest += dy;
    }
    for (int y = first; y < end; ++y) {
        Cross(y, x, sense);
        x += stepX;
        rest += stepRest;
        if (rest >= dy) {
            rest -= dy;
            ++x;
        }
    }
}

void CPolygonRaster::AddSide(double ax, double ay, double bx, double by) {
    if (m_clip.IsRectEmpty() || !(ay < by || by < ay)) return;
    const int sense = ay < by ? 1 : -1;
    if (sense < 0) {
        std::swap(ax, bx);
        std::swap(ay, by);
    }
    const double first = std::max(std::ceil(ay), static_cast<double>(m_clip.top));
    const double end = std::min(std::ceil(by), static_cast<double>(m_clip.bottom));  // rows below `by`
    for (double y = first; y < end; y += 1) {
        const double x = std::ceil(ax + (y - ay) * ((bx - ax) / (by - ay)));
        const double cut = std::clamp(x, static_cast<double>(m_clip.left), static_cast<double>(m_clip.right));
        Cross(static_cast<int>(y), static_cast<std::int64_t>(cut), sense);
    }
}

void CPolygonRaster::AddPolygon(const CPoint* points, int count, int scale) {
    for (int i = 0; i < count; ++i) AddSide(points[i], points[i + 1 < count ? i + 1 : 0], scale);
}

void CPolygonRaster::Finish(bool winding, CSpanSet& spans) {
    std::sort(m_crossing.begin(), m_crossing.end(),
              [](const Crossing& a, const Crossing& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
    int turns = 0;
    for (std::size_t i = 0; i + 1 < m_crossing.size(); ++i) {
        const Crossing& c = m_crossing[i];
        turns = i > 0 && m_crossing[i - 1].y != c.y ? c.sense : turns + c.sense;
        const Crossing& next = m_crossing[i + 1];
        if (next.y == c.y && (winding ? turns != 0 : turns % 2 != 0)) spans.Add(c.y, c.x, next.x);
    }
    m_crossing.clear();
}
