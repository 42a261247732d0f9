// Breaking lines at their crossings.
#include <algorithm>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "model/grid_index_service_object.h"
#include "model/profile.h"
#include "net/cut_points.h"
#include "net/grid_data_base.h"

namespace {

// Every overlap on the way of a line nests one call deeper. Deeper than this the rest waits in a list. A level
// takes about 1 KB of stack; the address sanitizer pads it to nearly 4.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kDeepestBreak = 1000;
#else
constexpr int kDeepestBreak = 4000;
#endif

}  // namespace

int CBreakNode::operator<(const CBreakNode& other) const {
    return m_pLine->get_m_dwGouJianID() < other.m_pLine->get_m_dwGouJianID();
}

void CGridDataBase::BreakNetLine(CGjNetLine* line) {
    if (!line || !m_cContain.Holds(line)) return;
    if (m_nBreakDepth >= kDeepestBreak) {
        m_aPendingBreak.push_back(line->get_m_dwGouJianID());
        return;
    }
    ++m_nBreakDepth;
    BreakNow(line);
    --m_nBreakDepth;
    while (m_nBreakDepth == 0 && !m_aPendingBreak.empty()) {
        CGouJianEx* next = FindGouJian(m_aPendingBreak.back());
        m_aPendingBreak.pop_back();
        if (next && next->QueryBasicType() == kBasicLine) BreakNetLine(static_cast<CGjNetLine*>(next));
    }
}

// Lines that may meet the given one, by ascending identity. Only those whose extent comes near the line itself
// are offered: any other in its rectangle would neither cross nor overlap it.
void CGridDataBase::CollectBreakCandidates(CGjNetLine* line, std::vector<CGouJianEx*>& near) {
    CGridIndexServiceObject& index = ReadyIndex();  // before the extent is taken: it comes from the display list
    const CFRect box = line->GetFrect();
    const float farthest = std::max({std::fabs(box.m_fMinX), std::fabs(box.m_fMinY), std::fabs(box.m_fMaxX), std::fabs(box.m_fMaxY)});
    // Two lines meet when they come within the tolerance; circles that count as one may be that far apart again.
    // Far coordinates are rounded.
    const float reach = 2 * static_cast<float>(std::max(g_cTvoProfile.m_nNetTolerance, 0)) + 1 + farthest * 1e-6f;
    if (line->m_nArc)
        index.OthersIn(CFRect(box.m_fMinX - reach, box.m_fMinY - reach, box.m_fMaxX + reach, box.m_fMaxY + reach), near);
    else
        index.OthersAlong(line->m_pStartNode->m_fX, line->m_pStartNode->m_fY, line->m_pEndNode->m_fX, line->m_pEndNode->m_fY, reach, near);
    std::erase_if(near, [&](CGouJianEx* obj) {
        if (obj == line || obj->QueryBasicType() != kBasicLine) return true;
        auto* other = static_cast<CGjNetLine*>(obj);
        __builtin_prefetch(&other->m_pStartNode);  // what the intersection reads of it
        __builtin_prefetch(&other->m_fStartX);
        return !CanBreakNetLine(other);
    });
}

// In a big model the way to a line that is to go is a row of waits for memory: components, maps, lists and stars lie
// far apart. The processor is told of them in two steps, the second when the first has brought where they are.
void CGridDataBase::FetchAhead(CGjNetLine* line) {
    m_cContain.FetchAhead(line);
    m_mapFamily[line->get_Gjlx()].FetchAhead(line->get_m_dwGouJianID());
    __builtin_prefetch(line->m_pStartNode);
    __builtin_prefetch(line->m_pEndNode);
}

void CGridDataBase::FetchRestAhead(CGjNetLine* line) {
    m_cContain.FetchEntryAhead(line);
    m_mapFamily[line->get_Gjlx()].FetchEntryAhead(line->get_m_dwGouJianID());
    __builtin_prefetch(line->m_pStartNode->m_pStar);
    __builtin_prefetch(line->m_pEndNode->m_pStar);
    __builtin_prefetch(line->m_pStartNode->m_pFirstPair);
}

void CGridDataBase::BreakNow(CGjNetLine* line) {
    CArray<CBreakNode> breaks;
    // One list for all calls: a nested call, which overwrites it, comes from a rewrite alone, and after a rewrite it
    // is not read again. Lists of their own would take memory by the square where a line covers many others.
    m_aNear.clear();
    CollectBreakCandidates(line, m_aNear);
    for (std::size_t i = 0; i < m_aNear.size(); ++i)
        // A rewrite ends the work: it has broken what it left by itself, and the line may be gone.
        if (!CalcNetLineInterSection(line, static_cast<CGjNetLine*>(m_aNear[i]), breaks)) return;
    if (breaks.IsEmpty()) return;
    std::stable_sort(breaks.begin(), breaks.end(), [](const CBreakNode& a, const CBreakNode& b) { return (a < b) != 0; });
    CArray<CFPoint> points;
    points.Reserve(breaks.GetSize());
    for (const CBreakNode& b : breaks) {
        points.Add(b.m_cPoint);
        FetchAhead(b.m_pLine);  // its turn comes when the line has been cut
    }
    BreakOneNetLine(line, points);
    // Each crossed line is cut once, at all of its crossings.
    for (int i = 0; i < breaks.GetSize();) {
        CGjNetLine* other = breaks[i].m_pLine;
        points.RemoveAll();
        for (; i < breaks.GetSize() && breaks[i].m_pLine == other; ++i) points.Add(breaks[i].m_cPoint);
        if (i < breaks.GetSize()) FetchRestAhead(breaks[i].m_pLine);
        BreakOneNetLine(other, points);
    }
}

void CGridDataBase::BreakOneNetLine(CGjNetLine* l, CArray<CFPoint>& points) {
    if (!m_cContain.Holds(l)) return;
    const float tolerance = static_cast<float>(g_cTvoProfile.m_nNetTolerance), t = tolerance / 10.0f;
    const CFPoint start(l->m_pStartNode->m_fX, l->m_pStartNode->m_fY, 0), end(l->m_pEndNode->m_fX, l->m_pEndNode->m_fY, 0);
    DropFirstPointNear(points, start, t);
    DropFirstPointNear(points, end, t);
    if (points.IsEmpty()) return;
    points.Add(start);  // last, so that they win over any point near them
    points.Add(end);
    ThinOutCutPoints(points, tolerance);
    CArray<CGouJianEx*> riders;
    QueryGouJianOnNetLine(l, riders);
    if (l->m_nArc)
        ReplaceByArcParts(l, points, riders);
    else
        ReplaceByStraightParts(l, points, riders);
}

void CGridDataBase::ReplaceByStraightParts(CGjNetLine* l, CArray<CFPoint>& points, CArray<CGouJianEx*>& riders) {
    SortAlongLine(points, l->GetStartPoint(), l->GetEndPoint(), l->IsVertical() != 0);
    for (CGouJianEx* rider : riders) DeleteGouJian(rider);
    __DeleteNetLineDirect(l);  // alive in the log
    CGjNetNode* last = nullptr;  // the node of the point before, while no node has come or gone since
    unsigned lastEdits = 0;
    for (int i = 0; i + 1 < points.GetSize(); ++i) {
        if (i + 2 < points.GetSize()) m_pIndex->FetchNodesNear(points[i + 2].x, points[i + 2].y);
        CGjNetNode* a = last && lastEdits == m_nNodeEdits ? last : AddNetNode(points[i].x, points[i].y);
        CGjNetNode* b = AddNetNode(points[i + 1].x, points[i + 1].y);
        last = b;
        lastEdits = m_nNodeEdits;
        // A part must not double a straight line that stands there already.
        if (a == b || HasStraightLine(a, b)) continue;
        NormalizeNetNodeBeforeCreation(a, b, 0);
        CGjNetLine* part = CreateNetLineObj(a, b, 0, 0, 1);
        __AddNetLineDirect(part);
        CreateGouJianAfterBreak(l, part, riders);
    }
}

void CGridDataBase::ReplaceByArcParts(CGjNetLine* l, CArray<CFPoint>& points, CArray<CGouJianEx*>& riders) {
    const float cx = l->m_fCenterX, cy = l->m_fCenterY, r = l->m_fR;
    std::vector<float> angles;  // the two ends give the first and the last
    for (const CFPoint& p : points) {
        const float g = get_line_angle(cx, cy, p.x, p.y);
        angles.push_back(g < l->m_fStartDir ? g + tolerance::kFullTurnF : g);
    }
    std::sort(angles.begin(), angles.end());
    for (CGouJianEx* rider : riders) DeleteGouJian(rider);
    __DeleteNetLineDirect(l);
    for (std::size_t i = 0; i + 1 < angles.size(); ++i) {
        CGjNetNode* a = AddNetNode(cx + r * std::cos(angles[i]), cy + r * std::sin(angles[i]));
        CGjNetNode* b = AddNetNode(cx + r * std::cos(angles[i + 1]), cy + r * std::sin(angles[i + 1]));
        if (a == b) continue;
        const double sweep = static_cast<double>(angles[i + 1] - angles[i]);
        const auto bulge = static_cast<float>(-sweep * 180.0 / 3.1415927410125732 / 2.0);
        CGjNetLine* part = CreateNetLineObj(a, b, 1, bulge, 1);
        __AddNetLineDirect(part);
        CreateGouJianAfterBreak(l, part, riders);
    }
}
