// Display list, extent, hit tests and painting of components.
#include "geometry/fcoor.h"
#include "geometry/fregion.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/graph_paint.h"
#include "platform/canvas/dc.h"
#include "platform/canvas/system_metrics.h"
#include "view/tvo_view_mgr.h"

CDrawGraph* CGouJianEx::GetDrawGraph() {
    if (!m_pDrawGraph) {
        m_pDrawGraph = new CDrawGraph;
        if (m_cMarks.m_bGraphDue) {
            m_cMarks.m_bGraphDue = 0;
            DrawGraph(m_pDrawGraph);
        }
    }
    return m_pDrawGraph;
}

void CGouJianEx::ClearDrawGraph() {
    delete m_pDrawGraph;
    m_pDrawGraph = nullptr;
    m_cMarks.m_bGraphDue = 0;
}

CFRect CGouJianEx::GetFrect() {
    CFRect extent = GetDrawGraph()->GetFrect();
    CArray<CFPoint> grips;
    GetJiaDian(grips);
    for (const CFPoint& grip : grips) extent = extent.UnionFRect(CFRect(grip.x, grip.y, grip.x, grip.y));
    return extent;
}

int CGouJianEx::HitTest(const CFRegion& region, int mode) {
    return IsVisable() ? GetDrawGraph()->HitTest(region, mode) : 0;
}

int CGouJianEx::HitTest(const CFRect& rect, int mode) {
    return IsVisable() ? GetDrawGraph()->HitTest(rect, mode) : 0;
}

int CGouJianEx::IndexHitTest(const CFRect& rect, int mode) { return GetDrawGraph()->HitTest(rect, mode); }

int CGouJianEx::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    if (!IsSnapEnabled(get_Gjlx())) return 0;
    points.RemoveAll();
    GetDrawGraph()->QueryAbsSnapPoint(mode, points, kinds);
    return 1;
}

int CGouJianEx::Draw(CDC* dc, CFCoor* coor) {
    if (!IsVisable()) return 0;
    GetDrawGraph()->Draw(dc, coor, this);
    if (m_byteStatus != GJ_STATUS_SELECTED) return 1;
    CArray<CFPoint> grips;
    GetJiaDian(grips);
    for (const CFPoint& grip : grips) DrawGripSquare(dc, coor->FPtoDP(grip));
    return 1;
}

int CGouJianEx::ReGen(CTvoViewMgr* mgr) {
    OnCalcParameters();
    if (mgr) ReDraw(mgr);
    return 1;
}

int CGouJianEx::ReDraw(CTvoViewMgr* mgr) {
    if (mgr) mgr->ReGenObject(this);
    if (m_bSelfDraw && !m_bDrawBoth) return 1;
    CDrawGraph* const graph = GetDrawGraph();
    if (graph->m_bFixed) return 1;  // filled by hand: nobody could fill it again
    graph->RemoveAll();
    DrawGraph(graph);
    return 1;
}

void DrawGripSquare(CDC* dc, const CPoint& at) {
    if (at.x < 0 || at.x > GetSystemMetrics(SM_CXFULLSCREEN)) return;
    if (at.y < 0 || at.y > GetSystemMetrics(SM_CYFULLSCREEN)) return;
    CBrush brush(COLORREF{0xFF0000});
    CPen pen(PS_SOLID, 1, COLORREF{0x808080});
    const CPaintScope scope(dc, R2_COPYPEN, &pen, &brush);
    dc->Rectangle(at.x - 3, at.y - 3, at.x + 4, at.y + 4);
}
