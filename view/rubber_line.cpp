#include "view/rubber_line.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geometry/fshape.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "platform/saturate.h"
#include "view/tvo_view_kernel.h"

namespace {

/// The points given so far and the cursor, in pixels.
std::vector<CPoint> Path(CTvoViewKernel& view) {
    std::vector<CPoint> path;
    for (int i = 0; i < view.m_nInputPoint; ++i) path.push_back(view.PixelOf(view.m_aInputPoint[i]));
    path.push_back(view.PixelOf(view.EffectivePoint()));
    return path;
}

void Draw(CDC& dc, const std::vector<CPoint>& path) {
    dc.MoveTo(path[0]);
    for (std::size_t i = 1; i < path.size(); ++i) dc.LineTo(path[i]);
}

CRect CircleBox(const CPoint& centre, int r) {
    const auto at = [](int c, double d) { return SaturatedInt(c + d); };
    return {at(centre.x, -r), at(centre.y, -r), at(centre.x, r + 1.0), at(centre.y, r + 1.0)};
}

void DrawCorners(CTvoViewKernel& view, CDC& dc) {
    const CPoint a = view.PixelOf(view.m_aInputPoint[0]), b = view.PixelOf(view.EffectivePoint());
    Draw(dc, {a, {b.x, a.y}, b, {a.x, b.y}, a});
}

int Radius(CTvoViewKernel& view, const CFPoint& centre, const CFPoint& on) {
    return view.m_cCoor.FPtoDP(std::hypot(static_cast<double>(on.x) - centre.x, static_cast<double>(on.y) - centre.y));
}

}  // namespace

int CLineRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    Draw(dc, Path(*view));
    return 1;
}

int CPolyRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    std::vector<CPoint> path = Path(*view);
    path.push_back(path[0]);
    Draw(dc, path);
    return 1;
}

int CRectRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    DrawCorners(*view, dc);
    return 1;
}

int CRectSelectRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    const bool crossing = view->PixelOf(view->m_aInputPoint[0]).x > view->PixelOf(view->EffectivePoint()).x;
    CPen pen(crossing ? PS_DASH : PS_SOLID, 1, g_cTvoProfile.m_crRubber);
    CPen* const oldPen = dc.SelectObject(&pen);
    const int oldMode = dc.SetROP2(R2_XORPEN);
    const COLORREF oldBack = dc.SetBkColor(g_cTvoProfile.m_crBackground);
    DrawCorners(*view, dc);
    dc.SetBkColor(oldBack);
    dc.SetROP2(oldMode);
    dc.SelectObject(oldPen);
    return 1;
}

int CCircleRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    const CFPoint& centre = view->m_aInputPoint[0];
    CGdiObject* const old = dc.SelectStockObject(NULL_BRUSH);
    dc.Ellipse(CircleBox(view->PixelOf(centre), Radius(*view, centre, view->EffectivePoint())));
    dc.SelectObject(old);
    return 1;
}

// With one point the second place of the buffer holds something older.
int CPieRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    const CPoint cursor = view->PixelOf(view->EffectivePoint()), p0 = view->PixelOf(view->m_aInputPoint[0]);
    if (view->m_nInputPoint > 1) {
        const CPoint p1 = view->PixelOf(view->m_aInputPoint[1]);
        Draw(dc, {p0, p1});
        dc.Arc(CircleBox(p0, Radius(*view, view->m_aInputPoint[0], view->m_aInputPoint[1])), p1, cursor);
    }
    Draw(dc, {p0, cursor});
    return 1;
}

int CArcRubberLine::DrawRange(CTvoViewKernel* view, CDC& dc, int) {
    if (view->m_nInputPoint == 0) return 0;
    if (view->m_nInputPoint == 1) {
        Draw(dc, Path(*view));
        return 1;
    }
    const CFPoint a = view->m_aInputPoint[0], b = view->m_aInputPoint[1], c = view->EffectivePoint();
    const double x0 = a.x, y0 = a.y, x1 = b.x, y1 = b.y, x2 = c.x, y2 = c.y;
    const double d = 2 * (x0 - x1) * (y0 - y2) - 2 * (x0 - x2) * (y0 - y1);
    if (!(std::fabs(d) >= 1e-5)) return 0;
    const double s0 = x0 * x0 + y0 * y0, s1 = x1 * x1 + y1 * y1, s2 = x2 * x2 + y2 * y2;
    const double cx = ((s0 - s1) * (y0 - y2) - (s0 - s2) * (y0 - y1)) / d;
    const double cy = std::fabs(y0 - y1) < 1e-20 ? (s0 - s2 - 2 * cx * (x0 - x2)) / (2 * (y0 - y2))
                                                 : (s0 - s1 - 2 * cx * (x0 - x1)) / (2 * (y0 - y1));
    const double r = std::hypot(cx - x0, cy - y0);
    if (!(r <= 1e20 && r >= 1e-20)) return 0;
    const CPoint centre = view->PixelOf({static_cast<float>(cx), static_cast<float>(cy), 0});
    const CRect box = CircleBox(centre, view->m_cCoor.FPtoDP(r));
    const CPoint p0 = view->PixelOf(a), p1 = view->PixelOf(b);
    // The arc runs anticlockwise, and leaves the side of the chord on which the cursor is.
    if (CFShape(a, b).AtLeft(c)) dc.Arc(box, p1, p0);
    else dc.Arc(box, p0, p1);
    return 1;
}
