// Lines, arcs and outlined figures.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "platform/canvas/dc_stroke.h"
#include "platform/canvas/ellipse_raster.h"
#include "platform/canvas/line_raster.h"
#include "platform/canvas/polygon_raster.h"
#include "platform/canvas/raster_op.h"
#include "platform/canvas/stroke_outline.h"
#include "platform/saturate.h"

namespace {

constexpr double kPi = 3.141592653589793;

int Saturated(double v) { return SaturatedInt(std::round(v)); }

/// A box of pixels in 64 bits: right and bottom are not part of it.
struct Box {
    std::int64_t left, top, right, bottom;
    bool IsEmpty() const { return left >= right || top >= bottom; }
    void Deflate(std::int64_t low, std::int64_t high) {
        left += low, top += low;
        right -= high, bottom -= high;
    }
    Box Times(std::int64_t k) const { return {left * k, top * k, right * k, bottom * k}; }
};

Box Normalized(CRect r) {
    r.NormalizeRect();
    return {r.left, r.top, r.right, r.bottom};
}

void AddBox(const Box& box, CSpanSet& spans) {
    const std::int64_t end = std::min<std::int64_t>(box.bottom, spans.Clip().bottom);
    for (std::int64_t y = std::max<std::int64_t>(box.top, spans.Clip().top); y < end; ++y) {
        spans.Add(y, box.left, box.right);
    }
}

CEllipseRaster EllipseIn(const Box& box) {
    return {box.left, box.top, box.right - box.left, box.bottom - box.top};
}

/// What a row has of a box whose corners are quarters of an ellipse of width w and height h: the ellipse, pulled apart
/// in the middle.
CEllipseRaster::Extent RoundedRow(const Box& box, std::int64_t w, std::int64_t h, std::int64_t y) {
    const std::int64_t row = std::min({y - box.top, box.bottom - 1 - y, (h - 1) / 2});
    if (row < 0) return {};
    CEllipseRaster::Extent e = CEllipseRaster(box.left, box.top, w, h).RowExtent(box.top + row, 0);
    if (!e.IsEmpty()) e.right += box.right - box.left - w;
    return e;
}

}  // namespace

bool CDC::IsPenDashed() const {
    const int style = m_state.logPen.lopnStyle & PS_STYLE_MASK;
    return style >= PS_DASH && style <= PS_DASHDOTDOT;
}

CPoint CDC::MoveTo(int x, int y) { return std::exchange(m_state.position, CPoint(x, y)); }

BOOL CDC::LineTo(int x, int y) {
    if (m_pSurface == nullptr) return 0;
    const CPoint path[] = {MoveTo(x, y), {x, y}};
    if (!HasPen()) return 1;
    if (m_state.logPen.lopnWidth <= 1 && !IsPenDashed()) {
        const CRasterTarget target = Target(m_state.logPen.lopnColor, m_state.rop);
        if (m_nDensity == 1) PaintLine(target, path[0], path[1], false);
        else PaintSquare(target, path[0], path[1], m_nDensity);
        return 1;
    }
    Stroke stroke(DeviceClip());
    AddPath(path, 2, false, stroke);
    PaintFigure(stroke, nullptr);
    return 1;
}

BOOL CDC::Polyline(const CPoint* points, int count) {
    if (m_pSurface == nullptr || points == nullptr || count < 2) return 0;
    Stroke stroke(DeviceClip());
    AddPath(points, count, false, stroke);
    PaintFigure(stroke, nullptr);
    return 1;
}

BOOL CDC::Polygon(const CPoint* points, int count) {
    if (m_pSurface == nullptr || points == nullptr || count < 2) return 0;
    const CRect clip = DeviceClip();
    Stroke stroke(clip);
    AddPath(points, count, true, stroke);
    CSpanSet inside(clip);
    CPolygonRaster raster(clip);
    raster.AddPolygon(points, count, m_nDensity);
    raster.Finish(m_state.fillMode == WINDING, inside);
    PaintFigure(stroke, &inside);
    return 1;
}

BOOL CDC::Rectangle(int left, int top, int right, int bottom) {
    if (m_pSurface == nullptr) return 0;
    Box box = Normalized(CRect(left, top, right, bottom));
    if (box.IsEmpty()) return 1;
    const std::int64_t width = m_state.logPen.lopnWidth;
    const CRect clip = DeviceClip();
    Stroke stroke(clip);
    CSpanSet inside(clip);
    if (m_state.logBrush.lbStyle != BS_NULL) AddBox(box.Times(m_nDensity), inside);
    if (HasPen() && width <= 1 && IsPenDashed()) {
        const int r = static_cast<int>(box.right - 1), b = static_cast<int>(box.bottom - 1);
        const int l = static_cast<int>(box.left), t = static_cast<int>(box.top);
        const CPoint corner[] = {{l, t}, {r, t}, {r, b}, {l, b}};
        AddPath(corner, 4, true, stroke);
        if (l == r && t == b) AddBox(box.Times(m_nDensity), stroke.on);
    } else if (HasPen()) {
        // Corners of a rectangle stay square, so it is a ring of boxes; a dashed pen wider than a pixel draws
        // solid.
        if ((m_state.logPen.lopnStyle & PS_STYLE_MASK) == PS_INSIDEFRAME)
            box.Deflate(width / 2, (width - 1) / 2);
        Box outer = box, inner = box;
        outer.Deflate(-(width / 2), -((width - 1) / 2));
        inner.Deflate((width + 1) / 2, width - (width - 1) / 2);
        AddBox(outer.Times(m_nDensity), stroke.on);
        if (!inner.IsEmpty()) {
            CSpanSet hole(clip);
            AddBox(inner.Times(m_nDensity), hole);
            stroke.on.Subtract(hole);
        }
    }
    PaintFigure(stroke, &inside);
    return 1;
}

BOOL CDC::Ellipse(int left, int top, int right, int bottom) {
    if (m_pSurface == nullptr) return 0;
    Box box = Normalized(CRect(left, top, right, bottom));
    if (box.IsEmpty()) return 1;
    const CRect clip = DeviceClip();
    CSpanSet inside(clip);
    if (m_state.logBrush.lbStyle != BS_NULL) EllipseIn(box.Times(m_nDensity)).AddInside(inside);
    const std::int64_t width = m_state.logPen.lopnWidth;
    if ((m_state.logPen.lopnStyle & PS_STYLE_MASK) == PS_INSIDEFRAME) box.Deflate(width / 2, (width - 1) / 2);
    Stroke stroke(clip);
    if (HasPen() && !box.IsEmpty()) AddEllipse(EllipseIn(box.Times(m_nDensity)), nullptr, stroke);
    PaintFigure(stroke, &inside);
    return 1;
}

BOOL CDC::RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight) {
    if (m_pSurface == nullptr) return 0;
    const std::int64_t k = m_nDensity;
    const Box box = Normalized(CRect(left, top, right, bottom)).Times(k);
    if (box.IsEmpty()) return 1;
    const std::int64_t w = std::clamp(k * std::abs(std::int64_t{cornerWidth}), k, box.right - box.left);
    const std::int64_t h = std::clamp(k * std::abs(std::int64_t{cornerHeight}), k, box.bottom - box.top);
    const auto extent = [&](std::int64_t y) { return RoundedRow(box, w, h, y); };
    Box hole = box;  // within the outline of a dense surface, a figure of the same kind
    hole.Deflate(k, k);
    const std::int64_t holeW = std::max<std::int64_t>(w - 2 * k, 1), holeH = std::max<std::int64_t>(h - 2 * k, 1);

    const CRect clip = DeviceClip();
    CSpanSet inside(clip);
    Stroke stroke(clip);
    const std::int64_t end = std::min<std::int64_t>(box.bottom, clip.bottom);
    for (std::int64_t y = std::max<std::int64_t>(box.top, clip.top); y < end; ++y) {
        const auto row = extent(y);
        inside.Add(y, row.left, row.right + 1);
        if (!HasPen()) continue;
        if (k == 1) {
            CEllipseRaster::AddRowOutline(y, extent(y - 1), row, extent(y + 1), stroke.on);
            continue;
        }
        const auto within = hole.IsEmpty() ? CEllipseRaster::Extent{} : RoundedRow(hole, holeW, holeH, y);
        if (within.IsEmpty()) {
            stroke.on.Add(y, row.left, row.right + 1);
        } else {
            stroke.on.Add(y, row.left, within.left);
            stroke.on.Add(y, within.right + 1, row.right + 1);
        }
    }
    PaintFigure(stroke, &inside);
    return 1;
}

BOOL CDC::AngleArc(int x, int y, int r, double start, double sweep) {
    if (m_pSurface == nullptr || r < 0 || !std::isfinite(start) || !std::isfinite(sweep)) return 0;
    const double from = std::fmod(start, 360.0) * kPi / 180;
    const double turn = std::clamp(sweep, -360.0, 360.0) * kPi / 180;
    const double to = from + std::fmod(sweep, 360.0) * kPi / 180;
    const auto at = [&](double angle) {
        return CPoint(Saturated(x + r * std::cos(angle)), Saturated(y - r * std::sin(angle)));
    };
    const CPoint first = at(from), last = at(to);
    const CPoint path[] = {m_state.position, first};
    m_state.position = last;
    if (!HasPen()) return 1;
    const std::int64_t k = m_nDensity;
    Stroke stroke(DeviceClip());
    if (!(path[0] == first)) AddPath(path, 2, false, stroke);
    if (sweep != 0) {
        const CSector sector(from, turn, m_nDensity);
        const std::int64_t box = k * (2 * std::int64_t{r} + 1);
        AddEllipse({k * (std::int64_t{x} - r), k * (std::int64_t{y} - r), box, box}, &sector, stroke);
        if (m_state.logPen.lopnWidth <= 1 && !IsPenDashed()) {
            for (const CPoint& p : {first, last})
                AddBox(Box{p.x, p.y, std::int64_t{p.x} + 1, std::int64_t{p.y} + 1}.Times(k), stroke.on);
        }
    }
    PaintFigure(stroke, nullptr);
    return 1;
}

BOOL CDC::Arc(const CRect& rect, const CPoint& start, const CPoint& end) {
    if (m_pSurface == nullptr) return 0;
    const Box box = Normalized(rect);
    if (box.IsEmpty()) return 0;
    if (!HasPen()) return 1;
    const CEllipseRaster ellipse = EllipseIn(box);  // directions are those of logical pixels
    const auto direction = [&](const CPoint& p) {
        return std::atan2(-static_cast<double>(ellipse.OffsetY(p.y)),
                          static_cast<double>(ellipse.OffsetX(p.x)));
    };
    const double from = direction(start), to = direction(end);
    const CSector sector(from, to > from ? to - from : to - from + 2 * kPi, m_nDensity);
    Stroke stroke(DeviceClip());
    AddEllipse(EllipseIn(box.Times(m_nDensity)), &sector, stroke);
    PaintFigure(stroke, nullptr);
    return 1;
}

void CDC::AddPath(const CPoint* points, int count, bool closed, Stroke& stroke) const {
    if (!HasPen()) return;
    const LOGPEN& pen = m_state.logPen;
    if (pen.lopnWidth > 1) {
        AddWideStroke(points, count, closed, pen.lopnStyle, pen.lopnWidth, m_nDensity, stroke.on);
        return;
    }
    const bool dashed = IsPenDashed();
    const int k = m_nDensity;
    const CRect clip = DeviceClip();
    std::int64_t travelled = 0;
    const auto set = [&](std::int64_t distance) -> CSpanSet& {
        return !dashed || IsDashOn(pen.lopnStyle, distance) ? stroke.on : stroke.gaps;
    };
    for (int i = 0; i < (closed ? count : count - 1); ++i) {
        const CPoint& a = points[i];
        const CPoint& b = points[i + 1 < count ? i + 1 : 0];
        if (k == 1) {
            WalkLine(a, b, false, clip).ForEach([&](int x, int y, std::int64_t step) {
                set(travelled + step).AddPixel(x, y);
            });
        } else {
            // The square's front is k - 1 pixels ahead of it.
            ForEachCovered(WalkSquare(a, b, false, k, clip), k, [&](const CRect& r, std::int64_t step) {
                CSpanSet& to = set(travelled + (step + k - 1) / k);
                for (int y = r.top; y < r.bottom; ++y) to.Add(y, r.left, r.right);
            });
        }
        travelled += std::max(std::abs(std::int64_t{b.x} - a.x), std::abs(std::int64_t{b.y} - a.y));
    }
}

void CDC::AddEllipse(const CEllipseRaster& ellipse, const CSector* sector, Stroke& stroke) const {
    const LOGPEN& pen = m_state.logPen;
    const bool dashed = IsPenDashed();
    if (!dashed && (sector == nullptr || sector->IsFull())) {
        ellipse.AddOutline(pen.lopnWidth, m_nDensity, stroke.on);
        return;
    }
    const std::int64_t penWidth = std::int64_t{pen.lopnWidth} * m_nDensity;
    CSpanSet whole(sector ? sector->Bounds(ellipse, penWidth, DeviceClip()) : DeviceClip());
    ellipse.AddOutline(pen.lopnWidth, m_nDensity, whole);
    // Dashes go by the distance along the outline: exact for a circle, by the mean radius for others.
    const auto w = static_cast<double>(ellipse.Width()), h = static_cast<double>(ellipse.Height());
    const double unit = std::sqrt((w * w + h * h) / 8) / static_cast<double>(penWidth);
    enum Kind { kNone, kOn, kGap };
    const auto isOn = [&](double dx, double dy) {
        const double start = sector ? sector->Start() : 0;
        double angle = std::atan2(-dy / h, dx / w) - start;
        if (sector && sector->IsReversed()) angle = -angle;
        angle -= std::floor(angle / (2 * kPi)) * 2 * kPi;
        return IsDashOn(pen.lopnStyle, static_cast<std::int64_t>(angle * unit));
    };
    for (const CSpan& span : whole.Spans()) {
        const auto dy = static_cast<double>(ellipse.OffsetY(span.y));
        const auto firstX = static_cast<double>(ellipse.OffsetX(span.x0));
        const auto kindAt = [&](int x) {
            const double dx = firstX + 2.0 * (x - span.x0);
            if (sector && !sector->Contains(dx, dy)) return kNone;
            return !dashed || isOn(dx, dy) ? kOn : kGap;
        };
        for (int x = span.x0; x < span.x1;) {
            const Kind kind = kindAt(x);
            const int from = x++;
            while (x < span.x1 && kindAt(x) == kind) ++x;
            if (kind != kNone) (kind == kOn ? stroke.on : stroke.gaps).Add(span.y, from, x);
        }
    }
}

void CDC::PaintFigure(Stroke& stroke, CSpanSet* inside) {
    const LOGPEN& pen = m_state.logPen;
    stroke.on.Normalize();
    stroke.gaps.Normalize();
    stroke.gaps.Subtract(stroke.on);
    const bool paintGaps = m_state.bkMode == OPAQUE && (pen.lopnStyle & PS_GEOMETRIC) == 0;
    if (inside != nullptr && m_state.logBrush.lbStyle != BS_NULL) {
        inside->Normalize();
        inside->Subtract(stroke.on);
        if (paintGaps) inside->Subtract(stroke.gaps);
        PaintBrush(*inside, m_state.logBrush, m_state.rop);
    }
    PaintSpans(stroke.on, pen.lopnColor, m_state.rop);
    if (paintGaps) PaintSpans(stroke.gaps, m_state.bkColor, m_state.rop);
}
