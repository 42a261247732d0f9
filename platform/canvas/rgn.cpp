#include "platform/canvas/rgn.h"

#include <algorithm>
#include <cstdint>

#include "platform/canvas/polygon_raster.h"

BOOL CRgn::CreateRectRgn(int x1, int y1, int x2, int y2) {
    CRect r(x1, y1, x2, y2);
    r.NormalizeRect();
    m_aPoint = {r.TopLeft(), {r.right, r.top}, r.BottomRight(), {r.left, r.bottom}};
    m_nMode = ALTERNATE;
    m_bRectangle = true;
    m_bCreated = true;
    return 1;
}

BOOL CRgn::CreatePolygonRgn(const CPoint* points, int count, int mode) {
    if (points == nullptr || count < 3 || (mode != ALTERNATE && mode != WINDING)) return 0;
    m_aPoint.assign(points, points + count);
    m_nMode = mode;
    m_bRectangle = false;
    m_bCreated = true;
    return 1;
}

int CRgn::GetRgnBox(CRect* box) const {
    if (box == nullptr || !m_bCreated) return ERROR;
    const auto byX = [](const CPoint& a, const CPoint& b) { return a.x < b.x; };
    const auto byY = [](const CPoint& a, const CPoint& b) { return a.y < b.y; };
    const auto x = std::minmax_element(m_aPoint.begin(), m_aPoint.end(), byX);
    const auto y = std::minmax_element(m_aPoint.begin(), m_aPoint.end(), byY);
    *box = CRect(x.first->x, y.first->y, x.second->x, y.second->y);
    if (box->IsRectEmpty()) return NULLREGION;
    return m_bRectangle ? SIMPLEREGION : COMPLEXREGION;
}

BOOL CRgn::PtInRegion(int x, int y) const {
    CRect box;
    if (GetRgnBox(&box) <= NULLREGION || !box.PtInRect({x, y})) return 0;
    const CRect pixel(x, y, x + 1, y + 1);  // no overflow: x is below the box's right side
    CPolygonRaster raster(pixel);
    CSpanSet spans(pixel);
    raster.AddPolygon(m_aPoint.data(), static_cast<int>(m_aPoint.size()));
    raster.Finish(m_nMode == WINDING, spans);
    return spans.IsEmpty() ? 0 : 1;
}

void CRgn::Reset() {
    m_aPoint.clear();
    m_nMode = ALTERNATE;
    m_bRectangle = false;
}
