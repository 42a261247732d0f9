// Net lines off the net: temporary ones that own their nodes.
#include <memory>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
#include "platform/canvas/dc.h"
#include "view/tvo_view_mgr.h"

namespace {

using tolerance::kHalfTurnF;

// Counters of the process for nodes and lines that are in no store.
unsigned int g_nNodeSerial = 0, g_nLineSerial = 0;

CGjNetNode* MakePrivateNode(const CFPoint& p) {
    auto* node = new CGjNetNode;  // owned by the line that it is made for
    node->m_fX = p.x;
    node->m_fY = p.y;
    node->set_m_dwGouJianID((g_nNodeSerial & 0xFFFFFF) | 0x1000000);
    node->set_m_dwGouJianNO(++g_nNodeSerial);
    return node;
}

void TakeNodes(CGjNetLine& line, CGjNetNode* start, CGjNetNode* end) {
    line.m_pStartNode = start;
    line.m_dwStartNO = start->get_m_dwGouJianNO();
    line.m_dwStartID = start->get_m_dwGouJianID();
    line.m_pEndNode = end;
    line.m_dwEndNO = end->get_m_dwGouJianNO();
    line.m_dwEndID = end->get_m_dwGouJianID();
}

CFPoint PointOnArc(const CFPArc& arc, float degrees) {
    const float t = degrees * kHalfTurnF / 180.0f;
    return CFPoint(arc.m_fCenterX + arc.m_fR * std::cos(t), arc.m_fCenterY + arc.m_fR * std::sin(t), 0);
}

float BulgeOf(const CFPArc& arc) { return (arc.m_fStartAngle - arc.m_fEndAngle) / 2; }

CGjNetLine* ConstructInDataBase(CGridDataBase* db, const CFPoint& start, const CFPoint& end, int arc, float bulge) {
    CGjNetNode* a = db->CreateNetNodeObj(start.x, start.y);
    CGjNetNode* b = db->CreateNetNodeObj(end.x, end.y);
    db->NormalizeNetNodeBeforeCreation(a, b, arc);
    return db->CreateNetLineObj(a, b, arc, bulge, 1);
}

}  // namespace

CGjNetLine* ConstructNetLineObject(CFPoint a, CFPoint b, int arc, float bulge) {
    CGjNetNode* start = MakePrivateNode(a);
    CGjNetNode* end = MakePrivateNode(b);
    if (!arc && std::fabs(a.x - b.x) < 0.01f && a.y > b.y) std::swap(start, end);
    auto line = std::make_unique<CGjNetLine>();
    TakeNodes(*line, start, end);
    line->m_nArc = arc;
    line->m_fBulge = bulge;
    line->set_m_dwGouJianID((g_nLineSerial++ & 0xFFFFFF) | 0x2000000);
    line->set_m_dwGouJianNO(line->get_m_dwGouJianID() & 0xFFFFFF);
    line->m_bParamCalculated = 0;
    line->OnCalcParameters();
    return line.release();  // the caller's
}

CGjNetLine* ConstructNetLineObject(CFPLine line) { return ConstructNetLineObject(line.m_cStart, line.m_cEnd, 0, 0); }

CGjNetLine* ConstructNetLineObject(CFPArc arc) {
    return ConstructNetLineObject(PointOnArc(arc, arc.m_fStartAngle), PointOnArc(arc, arc.m_fEndAngle), 1, BulgeOf(arc));
}

CGjNetLine* ConstructNetLineObject(CGridDataBase* db, CFPLine line) {
    return ConstructInDataBase(db, line.m_cStart, line.m_cEnd, 0, 0);
}

CGjNetLine* ConstructNetLineObject(CGridDataBase* db, CFPArc arc) {
    return ConstructInDataBase(db, PointOnArc(arc, arc.m_fStartAngle), PointOnArc(arc, arc.m_fEndAngle), 1, BulgeOf(arc));
}

CGjNetLine* GetNetLineFromShoot(const CFShoot& a, const CFShoot& b) {
    auto line = std::make_unique<CGjNetLine>();
    auto* nodeA = new CGjNetNode;  // both owned by the line
    auto* nodeB = new CGjNetNode;
    nodeA->m_fX = a.x;
    nodeA->m_fY = a.y;
    nodeB->m_fX = b.x;
    nodeB->m_fY = b.y;
    bool aIsStart;
    if (a.IsLine()) {
        const bool vertical = std::fabs(static_cast<double>(a.x - b.x)) < 0.01;
        aIsStart = vertical ? b.y > a.y : b.x > a.x;
        line->m_nArc = 0;
        line->m_fBulge = 0;
    } else {  // arcs run anticlockwise: the stored bulge is never positive
        aIsStart = a.GetC() < 0;
        line->m_nArc = 1;
        const double degrees = static_cast<double>(a.GetC()) / tolerance::kPi * 180.0;
        line->m_fBulge = static_cast<float>(aIsStart ? degrees : -degrees);
    }
    TakeNodes(*line, aIsStart ? nodeA : nodeB, aIsStart ? nodeB : nodeA);
    line->OnCalcParameters();
    return line.release();  // the caller's
}

void DeleteNetLineObject(CGjNetLine* line) {
    if (!line) return;
    delete line->m_pStartNode;
    line->m_pStartNode = nullptr;
    delete line->m_pEndNode;
    line->m_pEndNode = nullptr;
    delete line;
}

void DrawNetLine(CTvoViewKernel* view, CDC* dc, CGjNetLine* line) {
    if (!view || !dc || !line) return;
    const CFCoor& coor = view->m_cCoor;
    const CPoint start = coor.FPtoDP(line->GetStartPoint());
    dc->MoveTo(start.x, start.y);
    if (!line->m_nArc) {
        const CPoint end = coor.FPtoDP(line->GetEndPoint());
        dc->LineTo(end.x, end.y);
        return;
    }
    const CPoint centre = coor.FPtoDP(CFPoint(line->m_fCenterX, line->m_fCenterY, 0));
    const int r = coor.FPtoDP(static_cast<double>(line->GetR()));
    float from = line->m_fStartDir * 180.0f / kHalfTurnF;
    float sweep = (line->m_fEndDir - line->m_fStartDir) * 180.0f / kHalfTurnF;
    if (!coor.IsReverseY()) {  // a device with y upwards turns the other way
        from = -from;
        sweep = -sweep;
    }
    dc->AngleArc(centre.x, centre.y, r, from, sweep);
}
