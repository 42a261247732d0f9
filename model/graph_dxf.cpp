// The primitives as figures of a drawing.
#include <cmath>

#include "geometry/fcoor.h"
#include "model/graph_lines.h"
#include "model/graph_regions.h"
#include "model/graph_text.h"
#include "platform/dxf/base_sgt.h"

namespace {

constexpr float kPen = 1.0f;

/// Whether a primitive is drawn as a thin figure. Its own width decides, not what becomes of that on a
/// device.
bool IsThin(float width) { return width == 0.0f || width == 1.0f; }

/// Device units, as the view would paint it at this moment: the width in the file follows the zoom. That is
/// meant.
float WideWidth(float width, const CFCoor& coor) {
    return static_cast<float>(coor.FPtoDP(static_cast<double>(std::fabs(width))));
}

}  // namespace

void CGraph_Point::DrawDXF(CBase_SGT* dxf, CFCoor*) { dxf->Draw_Point(m_fX, m_fY); }

void CGraph_Line::DrawDXF(CBase_SGT* dxf, CFCoor* coor) {
    if (IsThin(m_fWidth)) {
        dxf->Draw_Line(m_fX1, m_fY1, m_fX2, m_fY2, kPen);
        return;
    }
    const float w = WideWidth(m_fWidth, *coor);
    dxf->Draw_Pline(m_fX1, m_fY1, m_fX2, m_fY2, w, w, kPen);
}

void CGraph_Arc::DrawDXF(CBase_SGT* dxf, CFCoor* coor) {
    if (IsThin(m_fWidth)) {
        dxf->Draw_Arc(m_fX, m_fY, m_fR, m_fStart, m_fEnd, kPen);
        return;
    }
    const float w = WideWidth(m_fWidth, *coor);
    dxf->Draw_PArc(m_fX, m_fY, m_fR, m_fStart, m_fEnd, w, w);
}

void CGraph_Circle::DrawDXF(CBase_SGT* dxf, CFCoor* coor) {
    if (IsThin(m_fWidth)) {
        dxf->Draw_Circle(m_fX, m_fY, m_fR, kPen);
        return;
    }
    // One degree is left open, and is to stay so: readers take an arc whose ends meet for none at all.
    constexpr float kNearlyFull = 359.0f;
    const float w = WideWidth(m_fWidth, *coor);
    dxf->Draw_PArc(m_fX, m_fY, m_fR, 0, kNearlyFull, w, w);
}

/// The outline; what fills it is not in the drawing.
void CGraph_PolyRgn::DrawDXF(CBase_SGT* dxf, CFCoor*) {
    const int n = m_aPoint.GetSize();
    for (int i = 0; i < n; ++i) {
        const CFPoint &from = m_aPoint[i], &to = m_aPoint[(i + 1) % n];
        dxf->Draw_Line(from.x, from.y, to.x, to.y, kPen);
    }
}

void CGraph_CircleRgn::DrawDXF(CBase_SGT* dxf, CFCoor*) { dxf->Draw_Circle(m_fX, m_fY, m_fR, kPen); }

void CGraph_Text::DrawDXF(CBase_SGT* dxf, CFCoor*) {
    dxf->Draw_Text(m_fX, m_fY, m_fHeight, m_fAngle, m_strText);
}
