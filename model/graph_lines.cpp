#include "model/graph_lines.h"

#include <algorithm>
#include <cmath>

#include "geometry/fcoor.h"
#include "geometry/frect.h"
#include "geometry/fregion.h"
#include "geometry/fshape.h"
#include "model/graph_hit_test.h"
#include "model/graph_paint.h"
#include "model/profile.h"

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kFullTurn = 6.2831855f;
constexpr float kAngleTolerance = 0.0001f;  // degrees: an arc that begins or ends at 0 reaches it

float Radians(float degrees) { return degrees * kPi / 180.0f; }

/// Curved figures are dotted whatever number their line type has; straight ones hand theirs to the pen.
int CurvePenStyle(int lineType) { return lineType != 0 ? PS_DOT : PS_SOLID; }

void AddSnap(const CFPoint& p, int kind, CArray<CFPoint>& points, CArray<int>& kinds) {
    points.Add(p);
    kinds.Add(kind);
}

}  // namespace

// --- CGraph_Line ------------------------------------------------------------------------------------------

void CGraph_Line::Draw(CDC* dc, CFCoor* coor) {
    const CPoint from = coor->FPtoDP(CFPoint(m_fX1, m_fY1, 0));
    const CPoint to = coor->FPtoDP(CFPoint(m_fX2, m_fY2, 0));
    const LOGBRUSH solid{BS_SOLID, m_dwColor, 0};
    CPen pen(m_nLineType | PS_GEOMETRIC | PS_JOIN_BEVEL | PS_ENDCAP_SQUARE, PenPixels(m_fWidth, *coor), &solid);
    const CPaintScope scope(dc, m_nRop2, &pen, nullptr);
    const COLORREF oldBackground = dc->SetBkColor(g_cTvoProfile.m_crBackground);
    dc->MoveTo(from);
    dc->LineTo(to);
    dc->SetBkColor(oldBackground);
}

int CGraph_Line::HitTest(const CFRegion& region, int mode) {
    return HitShape(CFShape(CFPoint(m_fX1, m_fY1, 0), CFPoint(m_fX2, m_fY2, 0)), region, mode);
}

CFRect CGraph_Line::GetFrect() { return CFRect(CFPoint(m_fX1, m_fY1, 0), CFPoint(m_fX2, m_fY2, 0)); }

CFPoint CGraph_Line::GetMidPoint(float t) const {
    return CFPoint(m_fX1 + (m_fX2 - m_fX1) * t, m_fY1 + (m_fY2 - m_fY1) * t, 0);
}

void CGraph_Line::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    if (mode & kSnapEnd) {
        AddSnap(CFPoint(m_fX1, m_fY1, 0), kSnapEnd, points, kinds);
        AddSnap(CFPoint(m_fX2, m_fY2, 0), kSnapEnd, points, kinds);
    }
    if (mode & kSnapMiddle) AddSnap(GetMidPoint(0.5f), kSnapMiddle, points, kinds);
    if (mode & kSnapThird) {
        AddSnap(GetMidPoint(0.33333334f), kSnapThird, points, kinds);
        AddSnap(GetMidPoint(0.6666667f), kSnapThird, points, kinds);
    }
}

// --- CGraph_Arc -------------------------------------------------------------------------------------------

namespace {

/// The arc as a shape: over zero when the end lies before the start. Without a sweep it would read as a straight
/// piece from the centre outwards; it is the point that it paints.
CFShape ShapeOf(const CGraph_Arc& arc) {
    float sweep = Radians(arc.m_fEnd) - Radians(arc.m_fStart);
    if (sweep < 0) sweep += kFullTurn;
    if (sweep == 0) return CFShape(arc.GetPointAt(arc.m_fStart));
    return CFShape(CFPoint(arc.m_fX, arc.m_fY, 0), arc.m_fR, Radians(arc.m_fStart), sweep);
}

}  // namespace

CFPoint CGraph_Arc::GetPointAt(float degrees) const {
    const float a = Radians(degrees);
    return CFPoint(m_fX + m_fR * std::cos(a), m_fY + m_fR * std::sin(a), 0);
}

void CGraph_Arc::Draw(CDC* dc, CFCoor* coor) {
    const CPoint centre = coor->FPtoDP(CFPoint(m_fX, m_fY, 0));
    const CPoint from = coor->FPtoDP(GetPointAt(m_fStart));
    const int r = coor->FPtoDP(static_cast<double>(m_fR));
    // A device y that grows upwards turns the picture over, and with it the sense of the angles.
    const double sense = coor->IsReverseY() ? 1.0 : -1.0;
    const double start = static_cast<double>(m_fStart) + (r < 0 ? 180.0 : 0.0);  // a negative radius points away
    const double sweep = static_cast<double>(m_fEnd) - static_cast<double>(m_fStart);
    CPen pen(CurvePenStyle(m_nLineType), PenPixels(m_fWidth, *coor), COLORREF{m_dwColor});
    const CPaintScope scope(dc, m_nRop2, &pen, nullptr);
    const COLORREF oldBackground = dc->SetBkColor(g_cTvoProfile.m_crBackground);
    dc->MoveTo(from);
    dc->AngleArc(centre.x, centre.y, std::abs(r), sense * start, sense * sweep);
    dc->SetBkColor(oldBackground);
}

int CGraph_Arc::HitTest(const CFRegion& region, int mode) { return HitShape(ShapeOf(*this), region, mode); }

CFRect CGraph_Arc::GetFrect() {
    CFPoint min, max;
    ShapeOf(*this).GetRect(min, max);
    return CFRect(min, max);
}

// Everything but the centre hangs on the quadrant bit. That is meant: arcs are snapped to by one switch, so that
// the many ends and middles of lines that meet them are not offered twice.
void CGraph_Arc::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    if (mode & kSnapCentre) AddSnap(CFPoint(m_fX, m_fY, 0), kSnapCentre, points, kinds);
    if (!(mode & kSnapQuadrant)) return;
    for (const float axis : {90.0f, 180.0f, 270.0f})
        if (m_fStart <= axis && m_fEnd >= axis) AddSnap(GetPointAt(axis), kSnapQuadrant, points, kinds);
    if ((m_fStart <= 360.0f && m_fEnd >= 360.0f) || std::fabs(m_fStart) < kAngleTolerance ||
        std::fabs(360.0f - m_fEnd) < kAngleTolerance)
        AddSnap(GetPointAt(0), kSnapQuadrant, points, kinds);
    AddSnap(GetPointAt((m_fStart + m_fEnd) / 2), kSnapMiddle, points, kinds);
    const float sweep = m_fEnd - m_fStart;
    AddSnap(GetPointAt(m_fStart + sweep / 3), kSnapThird, points, kinds);
    AddSnap(GetPointAt(m_fStart + 2 * sweep / 3), kSnapThird, points, kinds);
    AddSnap(GetPointAt(m_fStart), kSnapEnd, points, kinds);
    AddSnap(GetPointAt(m_fEnd), kSnapEnd, points, kinds);
}

// --- CGraph_Circle ----------------------------------------------------------------------------------------

void CGraph_Circle::Draw(CDC* dc, CFCoor* coor) {
    const CRect box = PixelBox(coor->FPtoDP(CFPoint(m_fX, m_fY, 0)), coor->FPtoDP(static_cast<double>(m_fR)));
    CPen pen(CurvePenStyle(m_nLineType), PenPixels(m_fWidth, *coor), COLORREF{m_dwColor});
    const CPaintScope scope(dc, m_nRop2, &pen, static_cast<CBrush*>(GetStockObject(NULL_BRUSH)));
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    dc->Ellipse(box);
    dc->SetBkMode(oldMode);
}

int CGraph_Circle::HitTest(const CFRegion& region, int mode) {
    return HitShape(CFShape(CFPoint(m_fX, m_fY, 0), m_fR, 0.0f, kFullTurn), region, mode);
}

CFRect CGraph_Circle::GetFrect() {
    return CFRect(CFPoint(m_fX - m_fR, m_fY - m_fR, 0), CFPoint(m_fX + m_fR, m_fY + m_fR, 0));
}

void CGraph_Circle::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    if (mode & kSnapCentre) AddSnap(CFPoint(m_fX, m_fY, 0), kSnapCentre, points, kinds);
    if (mode & kSnapQuadrant) {
        AddSnap(CFPoint(m_fX + m_fR, m_fY, 0), kSnapQuadrant, points, kinds);
        AddSnap(CFPoint(m_fX, m_fY + m_fR, 0), kSnapQuadrant, points, kinds);
        AddSnap(CFPoint(m_fX - m_fR, m_fY, 0), kSnapQuadrant, points, kinds);
        AddSnap(CFPoint(m_fX, m_fY - m_fR, 0), kSnapQuadrant, points, kinds);
    }
}
