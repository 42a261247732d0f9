#include "platform/canvas/stroke_outline.h"

#include <cmath>

#include "platform/canvas/line_raster.h"
#include "platform/canvas/polygon_raster.h"

namespace {

struct Place {
    double x, y;
};

/// Pieces of the outline overlap at joins; as all of them turn the same way, non-zero winding unites them.
void AddConvex(CPolygonRaster& raster, const Place* p, int count) {
    double area = 0;
    for (int i = 1; i + 1 < count; ++i) {
        area += (p[i].x - p[0].x) * (p[i + 1].y - p[0].y) - (p[i + 1].x - p[0].x) * (p[i].y - p[0].y);
    }
    for (int i = 0; i < count; ++i) {
        const Place& a = p[i];
        const Place& b = p[(i + 1) % count];
        if (area >= 0) {
            raster.AddSide(a.x, a.y, b.x, b.y);
        } else {
            raster.AddSide(b.x, b.y, a.x, a.y);
        }
    }
}

class WideStroke {
public:
    WideStroke(const CRect& clip, int style, int width, int density)
        : m_raster(clip),
          m_clip(clip),
          m_style(style),
          m_scale(density),
          m_middle(width % 2 != 0 ? (density - 1) / 2.0 : 0),
          m_width(static_cast<double>(width) * density),
          m_half(m_width / 2) {}

    void Side(const CPoint& a, const CPoint& b, bool capAtA, bool capAtB) {
        const Place from = At(a), to = At(b);
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        const double ux = length > 0 ? (to.x - from.x) / length : 1,
                     uy = length > 0 ? (to.y - from.y) / length : 0;
        const bool flat = (m_style & PS_ENDCAP_MASK) == PS_ENDCAP_FLAT;
        const double startCap = capAtA && !flat ? m_half : 0, endCap = capAtB && !flat ? m_half : 0;
        int count = 0, period = 0;
        const CDash* pattern = DashPattern(m_style, count, period);
        if (count == 0) {
            Band(from, ux, uy, -startCap, length + endCap);
        } else {
            Dashes(from, ux, uy, length, pattern, count, static_cast<double>(period) * m_width);
        }
        m_travelled += length;
    }

    /// The triangle that two bands leave open on the outer side of a corner.
    void Join(const CPoint& before, const CPoint& at, const CPoint& behind) {
        if (DashCount() > 0) return;
        const Place a = At(before), p = At(at), b = At(behind);
        const double la = std::hypot(p.x - a.x, p.y - a.y), lb = std::hypot(b.x - p.x, b.y - p.y);
        if (la <= 0 || lb <= 0) return;
        const double ax = (p.x - a.x) / la, ay = (p.y - a.y) / la, bx = (b.x - p.x) / lb,
                     by = (b.y - p.y) / lb;
        const double side = ax * by - ay * bx > 0 ? m_half : -m_half;  // outer side is away from the turn
        const Place wedge[] = {p, {p.x + ay * side, p.y - ax * side}, {p.x + by * side, p.y - bx * side}};
        AddConvex(m_raster, wedge, 3);
    }

    void Finish(CSpanSet& spans) { m_raster.Finish(true, spans); }

private:
    int DashCount() const {
        int count = 0, period = 0;
        DashPattern(m_style, count, period);
        return count;
    }

    Place At(const CPoint& p) const { return {p.x * m_scale + m_middle, p.y * m_scale + m_middle}; }

    void Band(const Place& from, double ux, double uy, double start, double end) {
        const double nx = -uy * m_half, ny = ux * m_half;
        const Place a{from.x + ux * start, from.y + uy * start}, b{from.x + ux * end, from.y + uy * end};
        const Place corner[] = {
            {a.x + nx, a.y + ny}, {b.x + nx, b.y + ny}, {b.x - nx, b.y - ny}, {a.x - nx, a.y - ny}};
        AddConvex(m_raster, corner, 4);
    }

    void Dashes(const Place& from, double ux, double uy, double length, const CDash* pattern, int count,
                double period) {
        double low = 0, high = length;  // distances at which the band may be seen
        KeepVisible(from.x, ux, m_clip.left, m_clip.right, low, high);
        KeepVisible(from.y, uy, m_clip.top, m_clip.bottom, low, high);
        if (low > high) return;
        double at = std::floor((m_travelled + low) / period) * period - m_travelled;
        while (at <= high) {
            for (int i = 0; i < count; ++i) {
                const double end = at + pattern[i].on * m_width;
                if (end > 0 && at < length) Band(from, ux, uy, std::max(at, 0.0), std::min(end, length));
                at = end + pattern[i].off * m_width;
            }
        }
    }

    void KeepVisible(double from, double u, int low, int high, double& first, double& last) const {
        const double margin = m_width + 1;
        if (std::abs(u) < 1e-9) return;
        const double a = (low - margin - from) / u, b = (high + margin - from) / u;
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
    }

    CPolygonRaster m_raster;  // gathers the pieces
    CRect m_clip;             // what can be seen
    int m_style;              // of the pen
    double m_scale;           // pixels of a unit
    double m_middle;          // where the pen's middle lies in a unit: an even width leans up and left by half of one
    double m_width;           // of the pen, pixels
    double m_half;            // half the pen's width
    double m_travelled = 0;   // along the path so far, for the dashes
};

}  // namespace

void AddWideStroke(const CPoint* points, int count, bool closed, int penStyle, int penWidth, int density,
                   CSpanSet& spans) {
    WideStroke stroke(spans.Clip(), penStyle, penWidth, density);
    const int sides = closed ? count : count - 1;
    for (int i = 0; i < sides; ++i) {
        const CPoint& a = points[i];
        const CPoint& b = points[(i + 1) % count];
        const bool last = i + 1 == sides;
        stroke.Side(a, b, !closed && i == 0, !closed && last);
        if (closed || !last) stroke.Join(a, b, points[(i + 2) % count]);
    }
    stroke.Finish(spans);
}
