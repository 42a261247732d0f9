// A new line against one that stands: crossings are recorded, overlaps rewritten on the spot.
//
// A line that comes to lie on another's place has to give way; what must not be lost are the components that
// ride on lines. Below, L1 is the new line (P1 to P2, or the angles a0 to a1), L2 the one that stands (Q1 to Q2,
// b0 to b1). In each case there are three ways: no riders at all, riders on L1 only, riders on L2.
#include <vector>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "platform/intersection.h"

/// A line to be made: a straight section, or an arc on the circle of L1 between two directions in radians.
struct NetPiece {
    CFPoint from, to;
    float a0 = 0, a1 = 0;
};

namespace {

constexpr double kCollinear = 0.01;  // radians, strict

float LengthTolerance() { return static_cast<float>(g_cTvoProfile.m_nNetTolerance) / 10.0f; }

CFPoint At(const CGjNetNode* n) { return CFPoint(n->m_fX, n->m_fY, 0); }

float DistanceTo(const CFPoint& p, const CFPoint& a, const CFPoint& b) {
    return JH_GetMinDist_PointToLineSection(p.x, p.y, a.x, a.y, b.x, b.y);
}

float Degrees(float radians) { return static_cast<float>(static_cast<double>(radians) * 180.0 / 3.1415927410125732); }

/// How L1 and L2 lie: apart, L2 over the tail or the head of L1, one within the other.
enum Overlap { kApart, kTail, kHead, kSecondInFirst, kFirstInSecond };

/// What of L1 lies beyond L2: of the pieces before and behind it those that there are.
std::vector<NetPiece> Beyond(Overlap how, const NetPiece& before, const NetPiece& behind) {
    switch (how) {
        case kTail: return {before};
        case kHead: return {behind};
        case kSecondInFirst: return {before, behind};
        default: return {};
    }
}

/// A circle and what is left of a line when its object is gone.
struct Circle {
    CFPoint centre;
    float r;
};

}  // namespace

// A deletion that must not merge: what the two lines keep apart is about to be joined by the rewrite itself.
void CGridDataBase::DeleteUnmerged(CGjNetLine* line) {
    const int merge = std::exchange(m_bAutoMerge, 0);
    DeleteNetLine(line);
    m_bAutoMerge = merge;
}

// L2 stands with its riders; L1 is cut back to the pieces beyond it, and its riders are handed to them.
void CGridDataBase::KeepSecondLine(CGjNetLine* l1, const NetPiece* pieces, int count) {
    CArray<CGouJianEx*> riders;
    QueryGouJianOnNetLine(l1, riders);
    const bool arc = l1->m_nArc != 0;
    const Circle circle{CFPoint(l1->m_fCenterX, l1->m_fCenterY, 0), l1->m_fR};
    DeleteUnmerged(l1);  // alive in the log
    CGjNetLine* made[2] = {nullptr, nullptr};
    for (int i = 0; i < count; ++i)
        made[i] = arc ? GetArc(circle.centre, circle.r, Degrees(pieces[i].a0), Degrees(pieces[i].a1))
                      : GetNetLine(pieces[i].from, pieces[i].to, 0, 0);
    for (int i = 0; i < count; ++i) {
        // Breaking the first piece may have taken the second away with a third line that lies over both: riders
        // must not be made on a line that has left.
        if (!m_cContain.Holds(made[i])) continue;
        CreateGouJianAfterBreak(l1, made[i], riders);
        BreakNetLine(made[i]);
    }
}

// The point that both lines have as an end needs no cut.
void CGridDataBase::AddBreakUnlessEndOfBoth(CGjNetLine* l1, CGjNetLine* l2, float x, float y, CArray<CBreakNode>& breaks) {
    if (!IsDuanPoint(l1, x, y) || !IsDuanPoint(l2, x, y)) breaks.Add(CBreakNode(l2, CFPoint(x, y, 0)));
}

int CGridDataBase::CalcNetLineInterSection(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks) {
    if (!l1->m_nArc && !l2->m_nArc) return CalcStraightPair(l1, l2, breaks);
    if (l1->m_nArc && l2->m_nArc) return CalcArcPair(l1, l2, breaks);
    // A straight line and an arc never overlap.
    const CGjNetLine* straight = l1->m_nArc ? l2 : l1;
    const CGjNetLine* arc = l1->m_nArc ? l1 : l2;
    const CFPoint s1 = At(straight->m_pStartNode), s2 = At(straight->m_pEndNode);
    float x[2], y[2];
    const int count = JH_GetInterPoint_LineSection_Arc(s1.x, s1.y, s2.x, s2.y, arc->m_fCenterX, arc->m_fCenterY, arc->m_fR,
                                                       arc->m_fStartDir, arc->m_fEndDir, &x[0], &y[0], &x[1], &y[1],
                                                       LengthTolerance());
    for (int i = 0; i < count; ++i) AddBreakUnlessEndOfBoth(l1, l2, x[i], y[i], breaks);
    return 1;
}

int CGridDataBase::CalcStraightPair(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks) {
    const float t = LengthTolerance();
    const CFPoint p1 = At(l1->m_pStartNode), p2 = At(l1->m_pEndNode);
    CFPoint q1 = At(l2->m_pStartNode), q2 = At(l2->m_pEndNode);
    const bool q1On = DistanceTo(q1, p1, p2) <= t, q2On = DistanceTo(q2, p1, p2) <= t;
    const auto collinear = [&] {  // asked last: it costs two arctangents
        return std::fabs(static_cast<double>(get_line_angle(p1.x, p1.y, p2.x, p2.y) - get_line_angle(q1.x, q1.y, q2.x, q2.y))) < kCollinear;
    };
    Overlap how = kApart;
    if (q1On && !q2On && !IsDuanPoint(l1, q1.x, q1.y) && collinear())
        how = kTail;
    else if (q2On && !q1On && !IsDuanPoint(l1, q2.x, q2.y) && collinear())
        how = kHead;
    else if (q1On && q2On)
        how = kSecondInFirst;
    else if (DistanceTo(p1, q1, q2) <= t && DistanceTo(p2, q1, q2) <= t)
        how = kFirstInSecond;

    if (how == kApart) {
        float x = 0, y = 0;
        if (JH_GetInterPoint_LineSection_LineSection(p1.x, p1.y, p2.x, p2.y, q1.x, q1.y, q2.x, q2.y, &x, &y, t) == 1 &&
            (!IsDuanPoint(l1, x, y) || !IsDuanPoint(l2, x, y))) {
            // The crossing of the endless lines takes the place of the sections', which may be off by up to t.
            JH_GetInterPoint_Line(p1.x, p1.y, p2.x, p2.y, q1.x, q1.y, q2.x, q2.y, &x, &y, 0.1f);
            breaks.Add(CBreakNode(l2, CFPoint(x, y, 0)));
        }
        return 1;
    }

    CArray<CGouJianEx*> riders;  // one array for both: riders1 is also true when only L2 has some
    const int riders2 = QueryGouJianOnNetLine(l2, riders);
    const int riders1 = QueryGouJianOnNetLine(l1, riders);
    // A line lying across another within t may run against it: its ends are taken in order along L1.
    if ((how == kSecondInFirst || how == kFirstInSecond) &&
        (static_cast<double>(q2.x) - q1.x) * (static_cast<double>(p2.x) - p1.x) +
                (static_cast<double>(q2.y) - q1.y) * (static_cast<double>(p2.y) - p1.y) <
            0)
        std::swap(q1, q2);

    if (riders2) {
        const auto left = Beyond(how, {p1, q1}, {q2, p2});
        KeepSecondLine(l1, left.data(), static_cast<int>(left.size()));
        return 0;
    }
    if (how == kFirstInSecond && !riders1) {
        DeleteUnmerged(l1);
        return 0;
    }
    DeleteUnmerged(l2);
    if (!riders1) {
        DeleteUnmerged(l1);
        AddNetLine(how == kHead ? q1 : p1, how == kTail ? q2 : p2, 0, 0);
        return 0;
    }
    if (how == kHead || how == kFirstInSecond) AddNetLine(q1, p1, 0, 0);
    if (how == kTail || how == kFirstInSecond) AddNetLine(p2, q2, 0, 0);
    BreakNetLine(l1);
    return 0;
}

int CGridDataBase::CalcArcPair(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks) {
    const float t = LengthTolerance(), e = m_fAngleTolerance;
    const Circle c{CFPoint(l1->m_fCenterX, l1->m_fCenterY, 0), l1->m_fR};
    const float a0 = l1->m_fStartDir, a1 = l1->m_fEndDir, b0 = l2->m_fStartDir, b1 = l2->m_fEndDir;
    Overlap how = kApart;
    // Two arcs of one circle: the test is by lengths here, where the mere question goes by a ratio of radii.
    if (get_dist(c.centre.x, c.centre.y, l2->m_fCenterX, l2->m_fCenterY) < static_cast<float>(g_cTvoProfile.m_nNetTolerance) &&
        std::fabs(l2->m_fR - l1->m_fR) < t) {
        if (b0 > a0 + e && a1 > b0 + e && b1 > a1)
            how = kTail;
        else if (b1 >= a0 + e && a1 >= b1 + e && a0 > b0)
            how = kHead;
        else if (b0 >= a0 - e && a1 >= b0 + e && b1 >= a0 - e && a1 >= b1 + e)
            how = kSecondInFirst;
        else if (a0 >= b0 - e && b1 >= a0 + e && a1 >= b0 - e && b1 >= a1 + e)
            how = kFirstInSecond;
    }
    if (how == kApart) {
        float x[2], y[2];
        const int count = JH_GetInterPoint_Arc_Arc(c.centre.x, c.centre.y, c.r, a0, a1, l2->m_fCenterX, l2->m_fCenterY, l2->m_fR,
                                                   b0, b1, &x[0], &y[0], &x[1], &y[1], t);
        for (int i = 0; i < count; ++i) AddBreakUnlessEndOfBoth(l1, l2, x[i], y[i], breaks);
        return 1;
    }

    CArray<CGouJianEx*> riders;
    const int riders2 = QueryGouJianOnNetLine(l2, riders);
    const int riders1 = QueryGouJianOnNetLine(l1, riders);
    const auto addArc = [&](float from, float to) { AddArc(c.centre, c.r, Degrees(from), Degrees(to)); };

    if (riders2) {
        const auto left = Beyond(how, {{}, {}, a0, b0}, {{}, {}, b1, a1});
        KeepSecondLine(l1, left.data(), static_cast<int>(left.size()));
        return 0;
    }
    switch (how) {
        case kTail:
            // The other way round from all other cases, here alone: with riders on L1 one arc is made of both,
            // without any L2 is cut back and nothing merged. Meant; it is not to be evened out.
            DeleteUnmerged(l2);
            if (riders1) {
                DeleteUnmerged(l1);
                addArc(a0, b1);
            } else {
                addArc(a1, b1);
                BreakNetLine(l1);
            }
            break;
        case kHead:
            if (!riders1) {
                DeleteUnmerged(l1);
                DeleteUnmerged(l2);
                addArc(b0, a1);
            } else {
                DeleteUnmerged(l2);
                addArc(b0, a0);
                BreakNetLine(l1);
            }
            break;
        case kSecondInFirst:
            DeleteUnmerged(l2);
            if (!riders1) {
                DeleteUnmerged(l1);
                addArc(a0, a1);
            } else {
                BreakNetLine(l1);
            }
            break;
        default:
            if (!riders1) {
                DeleteUnmerged(l1);
            } else {
                DeleteUnmerged(l2);
                addArc(b0, a0);
                addArc(a1, b1);
                BreakNetLine(l1);
            }
            break;
    }
    return 0;
}
