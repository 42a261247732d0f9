#include "model/graph_regions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "geometry/fcoor.h"
#include "geometry/fregion.h"
#include "geometry/fshape.h"
#include "model/graph_hit_test.h"
#include "model/graph_lines.h"
#include "model/graph_paint.h"

namespace {

constexpr float kPointReach = 2.0f;       // model units: a point has an extent, so that a union of boxes sees it
constexpr float kSmallPointScale = 0.05f;  // below this scale points are painted smaller
constexpr float kFullTurn = 6.2831855f;
constexpr float kEighthTurn = 0.78539816f;

CRgn& MakeRegion(CRgn& region, const CArray<CFPoint, CFPoint>& points, CFCoor& coor) {
    constexpr int kOnStack = 64;  // corners that need no allocation
    std::array<CPoint, kOnStack> few;
    std::vector<CPoint> many;
    const int n = points.GetSize();
    if (n > kOnStack) many.resize(static_cast<std::size_t>(n));
    CPoint* const device = n > kOnStack ? many.data() : few.data();
    for (int i = 0; i < n; ++i) device[i] = coor.FPtoDP(points[i]);
    region.CreatePolygonRgn(device, n, WINDING);
    return region;
}

CFRegion RegionOf(const CArray<CFPoint, CFPoint>& points) {
    CFRegion region;
    region.Reserve(points.GetSize());
    for (const CFPoint& p : points) region.Add(CFShoot(p, 0));
    return region;
}

}  // namespace

// --- CGraph_Locator ---------------------------------------------------------------------------------------

int CGraph_Locator::HitTest(const CFRegion& region, int mode) {
    return HitShape(CFShape(m_rcPlace.Nearest(), m_rcPlace.Furthest()), region, mode);
}

// --- CGraph_Point -----------------------------------------------------------------------------------------

void CGraph_Point::Draw(CDC* dc, CFCoor* coor) {
    const int half = coor->GetScale() < kSmallPointScale ? 1 : 2;
    CBrush brush(COLORREF{m_dwColor});
    const CPaintScope scope(dc, m_nRop2, static_cast<CPen*>(GetStockObject(NULL_PEN)), &brush);
    dc->Rectangle(PixelBox(coor->FPtoDP(CFPoint(m_fX, m_fY, 0)), half));
}

int CGraph_Point::HitTest(const CFRegion& region, int) { return region.InRegion(CFPoint(m_fX, m_fY, 0)) != 0; }
int CGraph_Point::HitTest(const CFRect& rect, int) { return rect.FpInFRect(m_fX, m_fY, 0) != 0; }

CFRect CGraph_Point::GetFrect() {
    return CFRect(m_fX - kPointReach, m_fY - kPointReach, m_fX + kPointReach, m_fY + kPointReach);
}

void CGraph_Point::QueryAbsSnapPoint(unsigned int, CArray<CFPoint>& points, CArray<int>& kinds) {
    points.Add(CFPoint(m_fX, m_fY, 0));
    kinds.Add(kSnapPoint);
}

// --- CGraph_PolyRgn ---------------------------------------------------------------------------------------

void CGraph_PolyRgn::Draw(CDC* dc, CFCoor* coor) {
    CRgn region;
    MakeRegion(region, m_aPoint, *coor);
    if (!region.IsCreated()) return;
    CBrush brush;
    if (m_nLineType != 0)
        brush.CreateHatchBrush(HS_DIAGCROSS, COLORREF{m_dwColor});
    else
        brush.CreateSolidBrush(COLORREF{m_dwColor});
    const CPaintScope scope(dc, m_nRop2, nullptr, nullptr);
    const int oldMode = dc->SetBkMode(TRANSPARENT);  // what lies under a hatched area stays seen
    dc->FillRgn(&region, &brush);
    dc->SetBkMode(oldMode);
}

int CGraph_PolyRgn::HitTest(const CFRegion& region, int mode) { return HitArea(RegionOf(m_aPoint), region, mode); }

CFRect CGraph_PolyRgn::GetFrect() {
    if (m_aPoint.IsEmpty()) return {};
    CFPoint min, max;
    RegionOf(m_aPoint).GetRect(min, max);
    return CFRect(min, max);
}

void CGraph_PolyRgn::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    const int n = m_aPoint.GetSize();
    for (int i = 0; i < n; ++i) {
        const CFPoint &a = m_aPoint[i], &b = m_aPoint[(i + 1) % n];
        CGraph_Line(a.x, a.y, b.x, b.y, 1.0f).QueryAbsSnapPoint(mode, points, kinds);
    }
}

// --- CGraph_CircleRgn -------------------------------------------------------------------------------------

void CGraph_CircleRgn::Draw(CDC* dc, CFCoor* coor) {
    CBrush brush(COLORREF{m_dwColor});
    const CPaintScope scope(dc, m_nRop2, static_cast<CPen*>(GetStockObject(NULL_PEN)), &brush);
    dc->Ellipse(PixelBox(coor->FPtoDP(CFPoint(m_fX, m_fY, 0)), coor->FPtoDP(static_cast<double>(m_fR))));
}

// A disc lies inside where its circle does; it touches where the areas share a point.
int CGraph_CircleRgn::HitTest(const CFRegion& region, int mode) {
    const float r = std::fabs(m_fR);
    const CFPoint centre(m_fX, m_fY, 0);
    if (HitShape(CFShape(centre, r, 0.0f, kFullTurn), region, mode)) return 1;
    if (mode == 1 || r == 0) return 0;
    CFRegion disc;
    disc.Reserve(4);
    disc.Add(CFShoot(m_fX + r, m_fY, -kEighthTurn));
    disc.Add(CFShoot(m_fX, m_fY + r, -kEighthTurn));
    disc.Add(CFShoot(m_fX - r, m_fY, -kEighthTurn));
    disc.Add(CFShoot(m_fX, m_fY - r, -kEighthTurn));
    return region.Intersect(disc, 0) != 0;
}

CFRect CGraph_CircleRgn::GetFrect() {
    return CFRect(CFPoint(m_fX - m_fR, m_fY - m_fR, 0), CFPoint(m_fX + m_fR, m_fY + m_fR, 0));
}
