// What a plate derives from its border.
#include <cmath>
#include <utility>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/side_line.h"
#include "platform/point_in_domain.h"

using tolerance::kFullTurnF;
using tolerance::kHalfTurnF;

namespace {

CGjNetNode* EntryOf(const CJainTuBanBian& side) {
    return side.m_nDirection ? side.m_pNetLine->m_pStartNode : side.m_pNetLine->m_pEndNode;
}
CGjNetNode* ExitOf(const CJainTuBanBian& side) {
    return side.m_nDirection ? side.m_pNetLine->m_pEndNode : side.m_pNetLine->m_pStartNode;
}

}  // namespace

// A border that isn't whole gives nothing: a plate that was read keeps its empty figures, and one that has
// let go of a line those that it had.
void CMianGouJian::CalcGeographicData() {
    if (m_bParamCalculated) return;
    if (HasWholeBorder()) {
        __FormDomainEdge();
        __CalcCenterPoint();
        __CalcArea();
        __CalcRegion();
        __CalcRect();
        __CalcZhouChang();
        __CalcGeographic();
    }
    m_bParamCalculated = 1;
}

void CMianGouJian::__FormDomainEdge() {
    delete[] m_pDomainEdge;
    m_pDomainEdge = nullptr;
    m_nDomainEdge = 0;
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian) m_nDomainEdge += shape.m_arrBian.GetSize();
    if (m_nDomainEdge < 2) return;
    m_pDomainEdge = new CDomainEdge[static_cast<std::size_t>(m_nDomainEdge)];
    CDomainEdge* edge = m_pDomainEdge;
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian) {
            const CGjNetLine& line = *side.m_pNetLine;
            edge->type = line.m_nArc != 0;
            edge->start_x = side.m_nDirection ? line.m_fStartX : line.m_fEndX;
            edge->start_y = side.m_nDirection ? line.m_fStartY : line.m_fEndY;
            line.GetCenterPoint(edge->center_x, edge->center_y);  // of a straight line whatever that gives
            if (line.m_nArc) edge->direction = side.m_nDirection != 0;
            ++edge;
        }
}

void CMianGouJian::__CalcCenterPoint() {
    CPointInDomain().Get_Centroid(m_nDomainEdge, m_pDomainEdge, m_fCenterX, m_fCenterY);
}
void CMianGouJian::__CalcArea() { m_fArea = CPointInDomain().Get_Area(m_nDomainEdge, m_pDomainEdge); }

namespace {

// Half the angle of the arc to the next edge, in radians, negative when it runs anticlockwise.
float HalfAngleOf(const CDomainEdge& edge, const CDomainEdge& next) {
    if (!edge.type) return 0;
    const float atStart = get_line_angle(edge.center_x, edge.center_y, edge.start_x, edge.start_y);
    const float atEnd = get_line_angle(edge.center_x, edge.center_y, next.start_x, next.start_y);
    const float a1 = edge.direction ? atStart : atEnd;
    float a2 = edge.direction ? atEnd : atStart;
    if (a1 > a2) a2 += kFullTurnF;
    const float half = (a2 - a1) / 2;
    return edge.direction ? -half : half;
}

}  // namespace

void CMianGouJian::__CalcRegion() {
    m_region.RemoveAll();
    if (!m_pDomainEdge) return;
    m_region.Reserve(m_nDomainEdge);
    for (int i = 0; i < m_nDomainEdge; ++i) {
        const CDomainEdge& edge = m_pDomainEdge[i];
        const CDomainEdge& next = m_pDomainEdge[i + 1 < m_nDomainEdge ? i + 1 : 0];
        m_region.Add(CFShoot(edge.start_x, edge.start_y, HalfAngleOf(edge, next)));
    }
}

void CMianGouJian::__CalcRect() {
    CFPoint min, max;
    m_region.GetRect(min, max);
    m_rect = CFRect(min, max);
}

void CMianGouJian::__CalcZhouChang() {
    m_fZhouChang = 0;
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian) m_fZhouChang += side.m_pNetLine->GetLength();
}

// --- border lists and synthetic lines --------------------------------------------------------------------

namespace {

struct SideLine {
    CGjNetLine* line;
    int dir;  // of the walk along it
};

// Runs to the right, or upwards when it is vertical, whichever way the walk goes.
SideLine StraightSide(CGridDataBase* db, CGjNetNode* from, CGjNetNode* to) {
    const bool vertical = std::fabs(static_cast<double>(from->m_fX - to->m_fX)) < 0.1;
    const bool against = vertical ? to->m_fY < from->m_fY : to->m_fX < from->m_fX;
    if (against) std::swap(from, to);
    return {side_line::Make(db, from, to, 0, 0), against ? 0 : 1};
}

// Runs anticlockwise as the lines do. One that comes back to its own start is a full circle, whether its
// directions meet at one value or a turn apart; so is one that is flatter than 0.01 radian: meant.
SideLine ArcSide(CGridDataBase* db, const CJainTuBanBian& first, const CJainTuBanBian& last) {
    const int dir = first.m_nDirection ? 1 : 0;
    const CGjNetLine& f = *first.m_pNetLine;
    const CGjNetLine& start = dir ? f : *last.m_pNetLine;
    const CGjNetLine& end = dir ? *last.m_pNetLine : f;
    const float a1 = start.m_fStartDir;
    float a2 = end.m_fEndDir;
    const float apart = std::fabs(a1 - a2);
    const bool isCircle = apart < 0.01f || std::fabs(apart - kFullTurnF) < 0.01f;
    if (a2 < a1 - 0.01f) a2 += kFullTurnF;  // the merged arc passes direction 0
    const float sweep = a2 * 180.0f / kHalfTurnF - a1 * 180.0f / kHalfTurnF;
    CGjNetLine* line = side_line::Make(db, start.m_pStartNode, end.m_pEndNode, 1, -sweep / 2);
    if (isCircle) side_line::BecomeFullCircle(*line, f.m_fCenterX, f.m_fCenterY, f.m_fR);
    return {line, dir};
}

}  // namespace

// The nodes are taken from the lines themselves: the net holds no others at these places.
void CMianGouJian::__CalcGeographic() {
    m_arrBoundery.RemoveAll();
    m_arrBounderyDir.RemoveAll();
    m_arrVertex.RemoveAll();
    m_arrBoundery.Reserve(m_nDomainEdge);
    m_arrBounderyDir.Reserve(m_nDomainEdge);
    m_arrVertex.Reserve(m_nDomainEdge);
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian) {
            m_arrBoundery.Add(side.m_pNetLine);
            m_arrBounderyDir.Add(side.m_nDirection ? 1 : 0);
            m_arrVertex.Add(EntryOf(side));
        }

    DropSideLines();
    m_arrXingZhuangLine.Reserve(m_arrXingZhuangBian.GetSize());
    m_arrXingZhuangDir.Reserve(m_arrXingZhuangBian.GetSize());
    CGridDataBase* db = side_line::OwnerFor(*this);
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian) {
        const CJainTuBanBian& first = shape.m_arrBian[0];
        const CJainTuBanBian& last = shape.m_arrBian[shape.m_arrBian.GetUpperBound()];
        const SideLine made = first.m_pNetLine->m_nArc ? ArcSide(db, first, last)
                                                       : StraightSide(db, EntryOf(first), ExitOf(last));
        m_arrXingZhuangLine.Add(made.line);
        m_arrXingZhuangDir.Add(made.dir);
    }
}

// --- making synthetic lines ------------------------------------------------------------------------------

namespace side_line {

CGridDataBase* OwnerFor(const CGouJianEx& plate) {
    if (!plate.m_pDataBase || plate.m_pDataBase == g_pGridDataBase) return g_pGridDataBase;
    auto* own = dynamic_cast<CGridDataBase*>(plate.m_pDataBase);
    return own ? own : g_pGridDataBase;
}

CGjNetLine* Make(CGridDataBase* db, CGjNetNode* a, CGjNetNode* b, int arc, float bulge) {
    if (CGjNetLine* made = db ? db->CreateNetLineObj(a, b, arc, bulge, 1) : nullptr) return made;
    auto* line = new CGjNetLine;  // the caller's
    line->set_Gjlx(GJLX_NET_LINE);
    line->m_nArc = arc;
    line->m_fBulge = bulge;
    line->m_pStartNode = a;
    line->m_pEndNode = b;
    line->OnCalcParameters();
    return line;
}

void BecomeFullCircle(CGjNetLine& line, float cx, float cy, float r) {
    line.m_bFullCircle = 1;
    line.m_fMidX = cx - r;
    line.m_fMidY = cy;
    line.m_fCenterX = cx;
    line.m_fCenterY = cy;
    // In degrees, where such a pair holds radians otherwise: that is how a full circle is told here.
    line.m_fStartDir = 0;
    line.m_fEndDir = 360.0f;
    line.m_fR = r;
    line.m_fStartTangent = 360.0f;
    line.m_fEndTangent = 0;
    line.m_fLength = r * 2 * kHalfTurnF;
    line.m_fStartX = line.m_fEndX = cx + r;
    line.m_fStartY = line.m_fEndY = cy;
    line.m_fChordLength = line.m_fLength;
    line.m_cShape = CFShape(CFPoint(cx, cy, 0), r, 0, kFullTurnF);
}

CGjNetLine* Copy(CGridDataBase* db, const CGjNetLine& source) {
    CGjNetLine* line = Make(db, source.m_pStartNode, source.m_pEndNode, source.m_nArc, source.m_fBulge);
    if (source.m_bFullCircle) BecomeFullCircle(*line, source.m_fCenterX, source.m_fCenterY, source.m_fR);
    return line;
}

}  // namespace side_line
