// CTvoViewKernel: snapping, and the symbol that shows it.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "fields/backgrnd.h"
#include "geometry/projection.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/number_text.h"
#include "view/dt_work_ex.h"
#include "view/grid_snap.h"
#include "view/tvo_view_kernel.h"

int g_bSnapSymbolShown = 0;
int g_bSnapSymbolErasing = 0;
CFPoint g_cSnapSymbolPoint;
int g_nSnapSymbolKind = -1;

const int CATCH_SIZE = 9;

namespace {

constexpr int kAngleKind = 0x20001;
constexpr int kGridKind = 0x20002;

float Distance(const CFPoint& a, const CFPoint& b) { return std::hypot(a.x - b.x, a.y - b.y); }

/// Where the line from `a` to `b` cuts the one from `c` to `d`, both as segments that reach 0.1 beyond their ends.
bool Cut(const CFPoint& a, const CFPoint& b, const CFPoint& c, const CFPoint& d, CFPoint& at) {
    const double ux = static_cast<double>(b.x) - a.x, uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(d.x) - c.x, vy = static_cast<double>(d.y) - c.y;
    const double cross = ux * vy - uy * vx, u = std::hypot(ux, uy), v = std::hypot(vx, vy);
    if (!(std::fabs(cross) > 1e-12 * u * v)) return false;
    const double wx = static_cast<double>(c.x) - a.x, wy = static_cast<double>(c.y) - a.y;
    const double s = (wx * vy - wy * vx) / cross, t = (wx * uy - wy * ux) / cross;
    const double reachS = 0.1 / u, reachT = 0.1 / v;
    if (s < -reachS || s > 1 + reachS || t < -reachT || t > 1 + reachT) return false;
    at = CFPoint(static_cast<float>(a.x + s * ux), static_cast<float>(a.y + s * uy), 0);
    return true;
}

double Degrees(const CFPoint& from, const CFPoint& to) {
    const double a = std::atan2(static_cast<double>(to.y) - from.y, static_cast<double>(to.x) - from.x) * 180 / 3.14159265358979323846;
    return a < 0 ? a + 360 : a;
}

/// A symbol's square about a pixel. The 2 on the left and upper side only is meant.
CRect SymbolBox(const CPoint& p) {
    const int h = std::clamp(g_cTvoProfile.m_nSymbolSize, 1, 101) / 2;
    return {p.x - h + 2, p.y - h + 2, p.x + h, p.y + h};
}

CRect Touched(CRect box) {
    box.InflateRect(1, 1);
    return box;
}

/// Pen, no brush, XOR while it lives.
class SymbolDrawing {
public:
    SymbolDrawing(CDC& dc, int style, int width, COLORREF color) : m_dc(dc), m_pen(style, width, color) {
        m_oldPen = m_dc.SelectObject(&m_pen);
        m_oldBrush = m_dc.SelectStockObject(NULL_BRUSH);
        m_oldMode = m_dc.SetROP2(R2_XORPEN);
    }
    SymbolDrawing(const SymbolDrawing&) = delete;
    SymbolDrawing& operator=(const SymbolDrawing&) = delete;
    ~SymbolDrawing() {
        m_dc.SetROP2(m_oldMode);
        m_dc.SelectObject(m_oldBrush);
        m_dc.SelectObject(m_oldPen);
    }

private:
    CDC& m_dc;
    CPen m_pen;
    CPen* m_oldPen;
    CGdiObject* m_oldBrush;
    int m_oldMode;
};

}  // namespace

// ---- finding ----------------------------------------------------------------------------------------------

// Objects come before angles, these before the grid.
int CTvoViewKernel::GetSnapPoint(CFPoint& pt, int& kind) {
    kind = -1;
    if (m_nWorkState == 0 || !IsSnapping() || IsShowing() || (m_pWork && m_pWork->m_strName == "Zoom")) return 0;
    if (m_bObjectSnap == 1 && GetSnapPointByObject(pt, kind)) return 1;
    if (m_bAngleSnap == 1 && GetSnapPointByAngle(pt, kind)) return 1;
    return m_bGridSnap == 1 ? GetSnapPointByBackgrid(pt, kind) : 0;
}

// The first point within reach wins; no nearest one is looked for. The box of candidates has the pixel at its upper left
// corner, which favours the lower right: meant.
int CTvoViewKernel::GetSnapPointByObject(CFPoint& pt, int& kind) {
    kind = -1;
    if (!m_pDataBase) return 0;
    const CPoint pixel = PixelOf(pt);
    CRect box(pixel.x, pixel.y, pixel.x + CATCH_SIZE, pixel.y + CATCH_SIZE);
    box.InflateRect(2, 2);
    CFRect world = m_cCoor.DPtoFP(box);
    const double reach = m_cCoor.DPtoFP(CATCH_SIZE);
    CGouJianExList candidates;
    m_pDataBase->GetInterRect(world, candidates);
    const PlaneView plane(m_cCoor.m_fAlpha, m_cCoor.m_fBeta);
    CArray<CFPoint> points;
    CArray<int> kinds;
    for (POSITION p = candidates.GetHeadPosition(); p;) {
        CGouJianEx* const obj = candidates.GetNext(p);
        if (!obj->IsVisable()) continue;
        points.RemoveAll();
        kinds.RemoveAll();
        obj->QueryAbsSnapPoint(0xFFFFFFFF, points, kinds);
        for (int i = 0; i < points.GetSize(); ++i) {
            const CFPoint& at = points[i];
            const CFPoint seen(plane.U(at.x, at.y), plane.V(at.z, plane.Depth(at.x, at.y)), 0);
            if (!(static_cast<double>(Distance(seen, pt)) < reach)) continue;
            pt = at;
            if (m_bPlaneSnap == 1) pt.z = 0;
            kind = i < kinds.GetSize() ? kinds[i] : -1;
            return 1;
        }
    }
    return 0;
}

// The table is searched from its first entry; angles are of the world's plane, whatever the view.
int CTvoViewKernel::GetSnapPointByAngle(CFPoint& pt, int& kind) {
    kind = -1;
    if (m_nInputPoint <= 0) return 0;
    const double reach = m_cCoor.DPtoFP(CATCH_SIZE);
    const CFPoint base = m_pWork ? m_pWork->QueryAngleSnapPoint() : m_aInputPoint[m_nInputPoint - 1];
    const float length = Distance(base, pt);
    for (const float degrees : m_fSnapAngle) {
        const float a = degrees * 3.1415927f / 180;
        const CFPoint candidate(base.x + length * std::cos(a), base.y + length * std::sin(a), pt.z);
        if (!(static_cast<double>(Distance(candidate, pt)) < reach)) continue;
        pt = candidate;
        if (m_bPlaneSnap == 1) pt.z = 0;
        kind = kAngleKind;
        return 1;
    }
    return 0;
}

int CTvoViewKernel::GetSnapPointByBackgrid(CFPoint& pt, int& kind) {
    kind = -1;
    if (!m_pDataBase) return 0;
    CFPoint found;
    if (!FirstGridNodeNear(m_pDataBase->GetBackgrnd(), m_cCoor, pt, m_cCoor.DPtoFP(CATCH_SIZE), m_bPlaneSnap == 1, found)) return 0;
    pt = found;
    kind = kGridKind;
    return 1;
}

CFPoint GetOrthoPoint(CTvoViewKernel* view, CFPoint base, CFPoint p) {
    if (!view || !view->m_bOrtho) return p;
    const double a = Degrees(base, p);
    const bool alongX = a >= 315 || a < 45 || (a >= 135 && a < 225);
    return alongX ? CFPoint(p.x, base.y, base.z) : CFPoint(base.x, p.y, base.z);
}

// ---- the symbol -------------------------------------------------------------------------------------------

void CTvoViewKernel::EraseSnapSymbol(CDC& dc) {
    if (!g_bSnapSymbolShown) return;
    g_bSnapSymbolErasing = 1;
    DrawSnapSymbol(&dc, g_cTvoProfile.m_crSnap, g_cSnapSymbolPoint, g_nSnapSymbolKind);
    g_bSnapSymbolShown = 0;
}

void CTvoViewKernel::UpdateSnapSymbol(CDC& dc, int kind) {
    EraseSnapSymbol(dc);
    if (m_bSnapHit != 1) return;
    g_bSnapSymbolErasing = 0;
    DrawSnapSymbol(&dc, g_cTvoProfile.m_crSnap, m_cCursor, kind);
    g_cSnapSymbolPoint = m_cCursor;
    g_nSnapSymbolKind = kind;
    g_bSnapSymbolShown = 1;
}

CRect CTvoViewKernel::DrawSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt, int kind) {
    if (kind == kAngleKind) return DrawSnapSymbolByAngle(dc, colour, pt);
    if (kind == kGridKind) return DrawSnapSymbolByBackgrid(dc, colour, pt);
    return DrawSnapSymbolByObject(dc, colour, pt, kind);
}

CRect CTvoViewKernel::DrawSnapSymbolByObject(CDC* dc, unsigned long colour, CFPoint pt, int kind) {
    switch (kind) {
        case 1:
        case 2:
        case 4:
        case 32: return DrawRectSnapSymbol(dc, colour, pt);
        case 8: return DrawCircleSnapSymbol(dc, colour, pt);
        case 16: return DrawTriangleSnapSymbol(dc, colour, pt);
        default: return {};  // kinds that show nothing
    }
}

CRect CTvoViewKernel::DrawSnapSymbolByBackgrid(CDC* dc, unsigned long colour, CFPoint pt) {
    return DrawRectSnapSymbol(dc, colour, pt);
}

// These stand at a point of the model, where a turned view shows it: not where the cursor is that took its coordinates.
CRect CTvoViewKernel::DrawRectSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt) {
    const CRect box = SymbolBox(m_cCoor.FPtoDP(pt));
    const SymbolDrawing drawing(*dc, PS_SOLID, 2, colour);
    dc->Rectangle(box);
    return Touched(box);
}

CRect CTvoViewKernel::DrawCircleSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt) {
    const CRect box = SymbolBox(m_cCoor.FPtoDP(pt));
    const SymbolDrawing drawing(*dc, PS_SOLID, 2, colour);
    dc->Ellipse(box);
    return Touched(box);
}

CRect CTvoViewKernel::DrawTriangleSnapSymbol(CDC* dc, unsigned long colour, CFPoint pt) {
    const CPoint p = m_cCoor.FPtoDP(pt);
    const CRect box = SymbolBox(p);
    const int h = box.right - p.x;
    const SymbolDrawing drawing(*dc, PS_SOLID, 2, colour);
    const CPoint corners[] = {{p.x - h, p.y + h}, {p.x + h, p.y + h}, {p.x, p.y - h}, {p.x - h, p.y + h}};
    dc->Polyline(corners, 4);
    return Touched(box);
}

// A dashed ray from the base through the cursor to the border of the window, with its angle. The text is not in XOR: its
// place is painted over, and the objects there are painted again.
CRect CTvoViewKernel::DrawSnapSymbolByAngle(CDC* dc, unsigned long colour, CFPoint) {
    if (m_nInputPoint <= 0) return {};
    const CFPoint end = g_bSnapSymbolErasing ? g_cSnapSymbolPoint : m_cCursor;
    const CFPoint base = m_pWork ? m_pWork->QueryAngleSnapPoint() : m_aInputPoint[m_nInputPoint - 1];
    const CRect client = GetClientRect();
    const CFRect world = m_cCoor.DPtoFP(client);
    const double angle = Degrees(base, end);
    const float a = static_cast<float>(angle) * 3.1415927f / 180;
    const float length = std::hypot(world.m_fMaxX - world.m_fMinX, world.m_fMaxY - world.m_fMinY);
    const CFPoint far(base.x + length * std::cos(a), base.y + length * std::sin(a), 0);
    const CFPoint corners[] = {{world.m_fMinX, world.m_fMaxY, 0}, {world.m_fMaxX, world.m_fMaxY, 0},
                               {world.m_fMaxX, world.m_fMinY, 0}, {world.m_fMinX, world.m_fMinY, 0},
                               {world.m_fMinX, world.m_fMaxY, 0}};  // top, right, bottom, left
    CFPoint border = far;
    for (int i = 0; i < 4; ++i)
        if (Cut(base, far, corners[i], corners[i + 1], border)) break;
    {
        const SymbolDrawing drawing(*dc, PS_DASH, 1, 0xC0C0C0);
        const COLORREF oldBack = dc->SetBkColor(g_cTvoProfile.m_crBackground);
        dc->MoveTo(PixelOf(base));
        dc->LineTo(PixelOf(border));
        dc->SetBkColor(oldBack);
    }
    CFont font;
    font.CreateFont(14, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "Courier New");
    CFont* const oldFont = dc->SelectObject(&font);
    const CString text(FixedReal(angle, 0) + "°");
    const CPoint at = PixelOf(base);
    const CSize size = dc->GetTextExtent(text);
    CRect place(at.x + 3, at.y + 3, at.x + 3 + size.cx, at.y + 3 + size.cy);
    place.InflateRect(5, 5);
    CBrush background(g_cTvoProfile.m_crBackground);
    dc->FillRect(place, &background);
    if (m_pDataBase) {
        CGouJianExList behind;
        CFRect box = m_cCoor.DPtoFP(place);
        m_pDataBase->GetInterRect(box, behind);
        m_pDataBase->DrawOneType(behind, dc, &m_cCoor);
    }
    if (!g_bSnapSymbolErasing) {
        const int oldMode = dc->SetBkMode(TRANSPARENT);
        const COLORREF oldColor = dc->SetTextColor(colour);
        dc->TextOut(at.x + 3, at.y + 3, text);
        dc->SetTextColor(oldColor);
        dc->SetBkMode(oldMode);
    }
    dc->SelectObject(oldFont);
    return {};
}
