// Deleting lines, and healing the net afterwards: two pieces that the deleted line had separated join again.
#include <algorithm>
#include <map>
#include <set>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "model/profile.h"
#include "model/value_arrays.h"
#include "net/grid_data_base.h"

namespace {

constexpr float kSimilarDegrees = 0.5f;  // strict

/// Which ends of two lines are one node; the first that holds counts.
enum MergeMode { kNoSharedNode = 0, kStartStart = 1, kStartEnd = 2, kEndEnd = 3, kEndStart = 4 };

MergeMode SharedNode(const CGjNetLine* l1, const CGjNetLine* l2, CGjNetNode*& shared) {
    shared = l1->m_pStartNode;
    if (l1->m_pStartNode == l2->m_pStartNode) return kStartStart;
    if (l1->m_pStartNode == l2->m_pEndNode) return kStartEnd;
    shared = l1->m_pEndNode;
    if (l1->m_pEndNode == l2->m_pEndNode) return kEndEnd;
    if (l1->m_pEndNode == l2->m_pStartNode) return kEndStart;
    shared = nullptr;
    return kNoSharedNode;
}

// The pairs of a map by ascending identity; its keys are identities held as ints.
template <class T>
std::vector<T*> ByIdentity(const CMapOf<int, T*>& map) {
    std::vector<T*> all;
    all.reserve(static_cast<std::size_t>(map.GetCount()));
    map.ForEach([&](int, T* obj) { all.push_back(obj); });
    std::sort(all.begin(), all.end(), [](T* a, T* b) { return a->get_m_dwGouJianID() < b->get_m_dwGouJianID(); });
    return all;
}

template <class T>
int KeyOf(const T* obj) {
    return static_cast<int>(obj->get_m_dwGouJianID());
}

bool Touches(const CGjNetLine* line, const CGjNetNode* node) { return line->m_pStartNode == node || line->m_pEndNode == node; }

}  // namespace

// --- deleting -----------------------------------------------------------------------------------------------

void CGridDataBase::DeleteNetLine(CGjNetLine* line) {
    CArray<CGouJianEx*> one;
    if (line && FindGouJian(line->get_m_dwGouJianID())) one.Add(line);
    DeleteNetLine(one);
}

void CGridDataBase::DeleteNetLine(CArray<CGouJianEx*>& doomed) {
    CMap<int, CGjNetNode*> nodes;
    for (CGouJianEx* obj : doomed) {
        if (!obj || FindGouJian(obj->get_m_dwGouJianID()) != obj || obj->QueryBasicType() != kBasicLine) continue;
        auto* line = static_cast<CGjNetLine*>(obj);
        nodes.Insert(static_cast<int>(line->m_dwStartID), line->m_pStartNode);
        nodes.Insert(static_cast<int>(line->m_dwEndID), line->m_pEndNode);
        CArray<CGouJianEx*> riders;
        QueryGouJianOnNetLine(line, riders);
        for (CGouJianEx* rider : riders) DeleteGouJian(rider);
        __DeleteNetLineDirect(line);
    }
    CMap<int, CGjNetLine*> around;
    for (CGjNetNode* node : ByIdentity(nodes)) {
        if (IsIndependentNetNode(node)) {
            nodes.RemoveKey(KeyOf(node));
            continue;
        }
        CArray<CGouJianEx*> lines;
        GetConnectedNetLine(node, lines);
        for (CGouJianEx* l : lines) around.Insert(KeyOf(l), static_cast<CGjNetLine*>(l));
    }
    MergeAround(nodes, around);
}

// Merges pair after pair. The plain loop asks GetSimilarNetLine for the next pair until it finds none, which
// looks at every node again from the lowest identity on. What a node answers can only change when the lines at
// it change, so here a node that had nothing to merge is looked at again only after a merge next to it; and the
// lines of the working set are kept by node. The pairs and their order are the same.
void CGridDataBase::MergeAround(CMap<int, CGjNetNode*>& nodes, CMap<int, CGjNetLine*>& lines) {
    if (!m_bAutoMerge) return;  // CanMergeNetLine would refuse every pair
    const auto earlier = [](const CGouJianEx* a, const CGouJianEx* b) { return a->get_m_dwGouJianID() < b->get_m_dwGouJianID(); };
    using LineSet = std::set<CGjNetLine*, decltype(earlier)>;
    std::map<std::uint32_t, LineSet> at;  // by identity of the node
    const auto enter = [&](CGjNetLine* l) {
        for (CGjNetNode* n : {l->m_pStartNode, l->m_pEndNode}) at.try_emplace(n->get_m_dwGouJianID(), earlier).first->second.insert(l);
    };
    const auto remove = [&](CGjNetLine* l) {
        for (CGjNetNode* n : {l->m_pStartNode, l->m_pEndNode})
            if (auto found = at.find(n->get_m_dwGouJianID()); found != at.end()) found->second.erase(l);
    };
    std::set<CGjNetNode*, decltype(earlier)> due(earlier);
    nodes.ForEach([&](int, CGjNetNode* n) { due.insert(n); });
    lines.ForEach([&](int, CGjNetLine* l) { enter(l); });
    while (!due.empty()) {
        CGjNetNode* node = *due.begin();
        due.erase(due.begin());
        const auto here = at.find(node->get_m_dwGouJianID());
        if (here == at.end() || here->second.size() < 2) continue;
        CGjNetLine* l1 = *here->second.begin();
        CGjNetLine* l2 = *std::next(here->second.begin());
        if (!IsSimilarNetLine(l1, l2, kSimilarDegrees)) continue;
        const int mode = CanMergeNetLine(nodes, lines, l1, l2);
        if (mode <= 0) continue;
        CGjNetNode* const touched[] = {l1->m_pStartNode, l1->m_pEndNode, l2->m_pStartNode, l2->m_pEndNode};
        CGjNetLine* merged = MergeTowNetLine(l1, l2, mode);
        if (merged) {
            remove(l1);
            remove(l2);
            enter(merged);
            lines.SetAt(KeyOf(merged), merged);
            lines.RemoveKey(KeyOf(l1));
            lines.RemoveKey(KeyOf(l2));
            for (CGjNetNode* n : touched) nodes.Insert(KeyOf(n), n);
            // Mostly two of those touched; an arc's end may have snapped to another node of the working set.
            for (CGjNetNode* n : {merged->m_pStartNode, merged->m_pEndNode})
                if (nodes.Contains(KeyOf(n))) due.insert(n);
        }
        // Also when nothing was made: the two are gone, and the count at their ends has changed.
        for (CGjNetNode* n : touched)
            if (nodes.Contains(KeyOf(n))) due.insert(n);
    }
}

// --- finding a pair -----------------------------------------------------------------------------------------

int CGridDataBase::GetSimilarNetLine(CMap<int, CGjNetNode*>& nodes, CMap<int, CGjNetLine*>& lines, CGjNetLine*& l1,
                                     CGjNetLine*& l2, CGjNetNode*& node, int& mode) {
    for (CGjNetNode* candidate : ByIdentity(nodes)) {
        l1 = l2 = nullptr;
        node = candidate;
        if (!ConnectedOnNetNode(lines, l1, l2, node) || !IsSimilarNetLine(l1, l2, kSimilarDegrees)) continue;
        mode = CanMergeNetLine(nodes, lines, l1, l2);
        if (mode > 0) return 1;
    }
    return 0;
}

int CGridDataBase::ConnectedOnNetNode(CMap<int, CGjNetLine*>& lines, CGjNetLine*& l1, CGjNetLine*& l2, CGjNetNode* node) {
    l1 = l2 = nullptr;
    lines.ForEach([&](int, CGjNetLine* l) {  // the two lowest identities at the node
        if (!Touches(l, node)) return;
        if (!l1 || l->get_m_dwGouJianID() < l1->get_m_dwGouJianID())
            l2 = std::exchange(l1, l);
        else if (!l2 || l->get_m_dwGouJianID() < l2->get_m_dwGouJianID())
            l2 = l;
    });
    return l1 && l2;
}

int CGridDataBase::IsSimilarNetLine(CGjNetLine* a, CGjNetLine* b, float tol) {
    if (a->m_nArc != b->m_nArc) return 0;
    if (a->m_nArc) {
        const float t = static_cast<float>(g_cTvoProfile.m_nNetTolerance);
        return get_dist(a->m_fCenterX, a->m_fCenterY, b->m_fCenterX, b->m_fCenterY) < t && std::fabs(a->m_fR - b->m_fR) < t;
    }
    // Directions count with their sense: the net gives collinear pieces the same one.
    const auto degrees = [](const CGjNetLine* l) {
        return get_line_angle(l->m_fStartX, l->m_fStartY, l->m_fEndX, l->m_fEndY) * 180.0f / tolerance::kHalfTurnF;
    };
    const float turn = std::fabs(degrees(b) - degrees(a));
    return std::fabs(360.0f - turn) < tol || turn < tol;
}

int CGridDataBase::CanMergeNetLine(CMap<int, CGjNetNode*>&, CMap<int, CGjNetLine*>&, CGjNetLine* l1, CGjNetLine* l2) {
    CArray<CGouJianEx*> riders1, riders2, atNode;
    QueryGouJianOnNetLine(l1, riders1);
    QueryGouJianOnNetLine(l2, riders2);
    CGjNetNode* shared = nullptr;
    const MergeMode mode = SharedNode(l1, l2, shared);
    if (mode == kNoSharedNode || GetConnectedNetLine(shared, atNode) != 2) return 0;
    // Loose: one of the two is enough. With stars that are right both are there.
    const auto isOne = [&](CGouJianEx* l) { return l == l1 || l == l2; };
    if (!isOne(atNode[0]) && !isOne(atNode[1])) return 0;
    // The merged line would double one that runs straight past the shared node.
    CGjNetNode* outer1 = l1->m_pStartNode == shared ? l1->m_pEndNode : l1->m_pStartNode;
    CGjNetNode* outer2 = l2->m_pStartNode == shared ? l2->m_pEndNode : l2->m_pStartNode;
    if (!l1->m_nArc && HasStraightLine(outer1, outer2)) return 0;
    return CanMergeNetLineTogetherWithGouJian(l1, riders1, l2, riders2, mode, shared) && m_bAutoMerge ? mode : 0;
}

// --- merging ------------------------------------------------------------------------------------------------

CGjNetLine* CGridDataBase::MergeTowNetLine(CGjNetLine* l1, CGjNetLine* l2, int mode) {
    if (!IsSimilarNetLine(l1, l2, kSimilarDegrees)) return nullptr;
    CArray<CGouJianEx*> riders1, riders2;
    QueryGouJianOnNetLine(l1, riders1);
    QueryGouJianOnNetLine(l2, riders2);
    CGjNetLine* merged = GetMergedNetLine(l1, l2, mode);  // while both still stand
    for (CGouJianEx* rider : riders1) DeleteGouJian(rider);
    __DeleteNetLineDirect(l1);
    for (CGouJianEx* rider : riders2) DeleteGouJian(rider);
    __DeleteNetLineDirect(l2);
    if (!merged) return nullptr;  // both are gone then, and nothing takes their place
    __AddNetLineDirect(merged);
    CreateGouJianAfterMerge(merged, l1, l2, riders1, riders2, mode);
    return merged;
}

CGjNetLine* CGridDataBase::GetMergedNetLine(CGjNetLine* l1, CGjNetLine* l2, int mode) {
    if (l1->m_nArc) {
        float sx, sy, ex, ey, bulge;
        if (!GetMergedArcData(l1, l2, mode, sx, sy, ex, ey, bulge)) return nullptr;
        CGjNetNode* end = AddNetNode(ex, ey);
        CGjNetNode* start = AddNetNode(sx, sy);
        return start == end ? nullptr : CreateNetLineObj(start, end, 1, bulge, 1);
    }
    // The line between the extreme points, whatever the mode: a shared node a little aside falls off it.
    CArray<CFPoint> points;
    for (const CGjNetLine* l : {l1, l2}) {
        points.Add(CFPoint(l->m_pStartNode->m_fX, l->m_pStartNode->m_fY, 0));
        points.Add(CFPoint(l->m_pEndNode->m_fX, l->m_pEndNode->m_fY, 0));
    }
    SortFloatPointArray(points, l1->IsVertical() ? 'Y' : 'X');
    CGjNetNode* last = AddNetNode(points[3].x, points[3].y);
    CGjNetNode* first = AddNetNode(points[0].x, points[0].y);
    return first == last ? nullptr : CreateNetLineObj(first, last, 0, 0, 1);
}

int CGridDataBase::GetMergedArcData(CGjNetLine* l1, CGjNetLine* l2, int mode, float& startX, float& startY, float& endX,
                                    float& endY, float& bulge) {
    // With mode 2 the second line comes first along the arc.
    const float s = mode == kStartEnd ? l2->m_fStartDir : l1->m_fStartDir;
    float e = mode == kStartEnd ? l1->m_fEndDir : l2->m_fEndDir;
    if (s > e) e += tolerance::kFullTurnF;
    if (e - s < 0.001f) return 0;
    bulge = static_cast<float>(-(static_cast<double>(e) - s) / 2 * 180.0 / 3.1415927410125732);
    if (std::fabs(bulge + 180.0f) < 0.05f) return 0;  // a full circle, which two nodes can't express
    startX = l1->m_fCenterX + l1->m_fR * std::cos(s);
    startY = l1->m_fCenterY + l1->m_fR * std::sin(s);
    endX = l1->m_fCenterX + l1->m_fR * std::cos(e);
    endY = l1->m_fCenterY + l1->m_fR * std::sin(e);
    return 1;
}
