// How two net lines meet: questions that change nothing.
#include "geometry/angles.h"
#include "geometry/region_measures.h"
#include "geometry/tolerance.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "platform/intersection.h"

namespace {

using tolerance::kFullTurnF;

constexpr double kCollinear = 0.01;      // radians, strict
constexpr float kWrap = 0.01f;           // radians: a start this near a full turn counts as 0
constexpr double kEqualRadii = 0.0001;   // of the larger one, strict

struct Ends {
    explicit Ends(const CGjNetLine* l)
        : x1(l->m_pStartNode->m_fX), y1(l->m_pStartNode->m_fY), x2(l->m_pEndNode->m_fX), y2(l->m_pEndNode->m_fY) {}
    float x1, y1, x2, y2;
};

float DistanceTo(const Ends& l, float x, float y) { return JH_GetMinDist_PointToLineSection(x, y, l.x1, l.y1, l.x2, l.y2); }

bool Collinear(const Ends& a, const Ends& b) {
    return std::fabs(static_cast<double>(get_line_angle(a.x1, a.y1, a.x2, a.y2) - get_line_angle(b.x1, b.y1, b.x2, b.y2))) < kCollinear;
}

// An arc with its angles brought below a full turn.
struct WrappedArc {
    explicit WrappedArc(const CGjNetLine* l)
        : cx(l->m_fCenterX), cy(l->m_fCenterY), r(l->m_fR), start(l->m_fStartDir), end(l->m_fEndDir) {
        if (start > kFullTurnF || std::fabs(start - kFullTurnF) < kWrap) {
            start -= kFullTurnF;
            end -= kFullTurnF;
        }
    }
    float cx, cy, r, start, end;
};

LINE_INTER_ENUM operator|(LINE_INTER_ENUM a, LINE_INTER_ENUM b) {
    return static_cast<LINE_INTER_ENUM>(static_cast<int>(a) | static_cast<int>(b));
}

// The one answer of a test that gives a single point.
LINE_INTER_ENUM OnePoint(float* x, float* y, int& count, float px, float py, LINE_INTER_ENUM result) {
    count = 1;
    x[0] = px;
    y[0] = py;
    return result;
}

LINE_INTER_ENUM Overlap(int& count, LINE_INTER_ENUM result) {
    count = -1;
    return result;
}

LINE_INTER_ENUM TestStraightPair(CGridDataBase& db, CGjNetLine* l1, CGjNetLine* l2, float* x, float* y, int& count, float tol) {
    const Ends p(l1), q(l2);
    const float q1 = DistanceTo(p, q.x1, q.y1), q2 = DistanceTo(p, q.x2, q.y2);
    const bool q1AtEnd = db.IsDuanPoint(l1, q.x1, q.y1) != 0, q2AtEnd = db.IsDuanPoint(l1, q.x2, q.y2) != 0;
    // Opposite directions don't count: the net gives collinear lines one direction.
    const bool collinear = Collinear(p, q);
    if (q1 <= tol && q2 > tol && !q1AtEnd && collinear) return Overlap(count, INTER_OVERLAP_TAIL);
    if (q2 <= tol && q1 > tol && !q2AtEnd && collinear) return Overlap(count, INTER_OVERLAP_HEAD);
    // A short line lying across counts as lying on the other: no direction is asked here.
    if (q1 <= tol && q2 <= tol) return Overlap(count, INTER_SECOND_IN_FIRST);
    if (DistanceTo(q, p.x1, p.y1) <= tol && DistanceTo(q, p.x2, p.y2) <= tol) return Overlap(count, INTER_FIRST_IN_SECOND);
    // The meeting node is given: the first line's end, the second line's end.
    if (q1AtEnd && collinear) return OnePoint(x, y, count, p.x2, p.y2, INTER_AT_END);
    if (q2AtEnd && collinear) return OnePoint(x, y, count, q.x2, q.y2, INTER_AT_START);
    count = JH_GetInterPoint_LineSection_LineSection(p.x1, p.y1, p.x2, p.y2, q.x1, q.y1, q.x2, q.y2, &x[0], &y[0], tol);
    if (count != 1) {
        count = 0;
        return INTER_NONE;
    }
    if (get_dist(x[0], y[0], p.x1, p.y1) < tol) return INTER_AT_START;
    if (get_dist(x[0], y[0], p.x2, p.y2) < tol) return INTER_AT_END;
    return INTER_INTERIOR;
}

// One straight line and one arc. The bits speak of the straight line whichever argument it was.
LINE_INTER_ENUM TestMixedPair(CGjNetLine* l1, CGjNetLine* l2, float* x, float* y, int& count, float tol) {
    const bool straightFirst = !l1->m_nArc;
    const WrappedArc arc(straightFirst ? l2 : l1);
    const Ends s(straightFirst ? l1 : l2);
    count = JH_GetInterPoint_LineSection_Arc(s.x1, s.y1, s.x2, s.y2, arc.cx, arc.cy, arc.r, arc.start, arc.end, &x[0], &y[0],
                                             &x[1], &y[1], tol);
    if (count == 0) {  // the ends, in an order that depends on which line came first
        const Ends p(l1), q(l2);
        struct Trial { float ax, ay, bx, by; LINE_INTER_ENUM result; };  // the point given is a
        const Trial straightThenArc[] = {{p.x1, p.y1, q.x1, q.y1, INTER_AT_START},
                                         {p.x2, p.y2, q.x1, q.y1, INTER_AT_END},
                                         {p.x1, p.y1, q.x2, q.y2, INTER_AT_START},
                                         {p.x2, p.y2, q.x2, q.y2, INTER_AT_END}};
        const Trial arcThenStraight[] = {{q.x1, q.y1, p.x1, p.y1, INTER_AT_START},
                                         {q.x2, q.y2, p.x1, p.y1, INTER_AT_START},
                                         {p.x2, p.y2, q.x1, q.y1, INTER_AT_END},
                                         {q.x2, q.y2, p.x2, p.y2, INTER_AT_END}};
        for (const Trial& t : straightFirst ? straightThenArc : arcThenStraight)
            if (get_dist(t.ax, t.ay, t.bx, t.by) < tol) return OnePoint(x, y, count, t.ax, t.ay, t.result);
        return INTER_NONE;
    }
    LINE_INTER_ENUM result = INTER_NONE;
    for (int i = 0; i < count; ++i) {
        // Not exclusive: a point at the start is also not at the end.
        if (get_dist(x[i], y[i], s.x1, s.y1) < tol) result = result | INTER_AT_START;
        result = result | (get_dist(x[i], y[i], s.x2, s.y2) < tol ? INTER_AT_END : INTER_INTERIOR);
    }
    return result;
}

LINE_INTER_ENUM TestArcPair(CGridDataBase& db, CGjNetLine* l1, CGjNetLine* l2, float* x, float* y, int& count, float tol) {
    const WrappedArc a(l1), b(l2);
    const float e = db.m_fAngleTolerance;
    const bool sameCircle = get_dist(a.cx, a.cy, b.cx, b.cy) < static_cast<float>(g_cTvoProfile.m_nNetTolerance) &&
                            static_cast<double>(std::fabs(b.r - a.r)) / static_cast<double>(std::max(a.r, b.r)) < kEqualRadii;
    if (sameCircle) {
        const auto above = [e](float u, float v) { return u > v || std::fabs(u - v) < e; };
        if (above(b.start, a.start) && above(a.end, b.start) && above(b.end, a.start) && above(a.end, b.end))
            return Overlap(count, INTER_SECOND_IN_FIRST);
        if (above(a.start, b.start) && above(b.end, a.start) && above(a.end, b.start) && above(b.end, a.end))
            return Overlap(count, INTER_FIRST_IN_SECOND);
        if (b.start > a.start + e && a.end > b.start + e && b.end > a.end) return Overlap(count, INTER_OVERLAP_TAIL);
        if (b.end >= a.start + e && a.end >= b.end + e && a.start > b.start) return Overlap(count, INTER_OVERLAP_HEAD);
    }
    const Ends p(l1), q(l2);
    if (get_dist(p.x2, p.y2, q.x1, q.y1) < tol) return OnePoint(x, y, count, p.x2, p.y2, INTER_AT_END);
    if (get_dist(q.x2, q.y2, p.x1, p.y1) < tol) return OnePoint(x, y, count, q.x2, q.y2, INTER_AT_START);
    count = JH_GetInterPoint_Arc_Arc(a.cx, a.cy, a.r, a.start, a.end, b.cx, b.cy, b.r, b.start, b.end, &x[0], &y[0], &x[1],
                                     &y[1], tol);
    LINE_INTER_ENUM result = INTER_NONE;
    for (int i = 0; i < count; ++i)
        for (const WrappedArc* arc : {&a, &b}) {
            const bool on = std::fabs(get_dist(x[i], y[i], arc->cx, arc->cy) - arc->r) < tol;
            result = result | (on ? INTER_ON_BOTH : INTER_INTERIOR);
        }
    return result;
}

}  // namespace

LINE_INTER_ENUM CGridDataBase::TestNetLineIntersection(CGjNetLine* l1, CGjNetLine* l2, float* const x, float* const y,
                                                       int& count, float tol) {
    count = 0;
    if (!l1->m_nArc && !l2->m_nArc) return TestStraightPair(*this, l1, l2, x, y, count, tol);
    if (l1->m_nArc && l2->m_nArc) return TestArcPair(*this, l1, l2, x, y, count, tol);
    return TestMixedPair(l1, l2, x, y, count, tol);
}

int CGridDataBase::IsDuanPoint(CGjNetLine* l, float x, float y) {
    const float t = static_cast<float>(g_cTvoProfile.m_nNetTolerance);
    return get_dist(x, y, l->m_pStartNode->m_fX, l->m_pStartNode->m_fY) < t ||
           get_dist(x, y, l->m_pEndNode->m_fX, l->m_pEndNode->m_fY) < t;
}

int CGridDataBase::IsNodeOnNetLine(float x, float y, CGjNetLine* l, float tol) {
    Ends ends(l);
    if (!l->m_nArc) {
        const float level = JH_GetAngle(ends.x1, ends.y1, ends.x2, ends.y2);
        rotate_coordinate(level, &x, &y);
        rotate_coordinate(level, &ends.x1, &ends.y1);
        rotate_coordinate(level, &ends.x2, &ends.y2);
        if (std::fabs(y - ends.y1) > tol || ends.x1 - x > tol || x - ends.x2 > tol) return 0;
    } else if (std::fabs(get_dist(l->m_fCenterX, l->m_fCenterY, x, y) - l->m_fR) > tol) {
        return 0;
    }
    if (get_dist(x, y, ends.x1, ends.y1) < tol) return 1;
    if (get_dist(x, y, ends.x2, ends.y2) < tol) return 2;
    if (!l->m_nArc) return 3;
    // The point's direction is in degrees here and the arc's in radians, unconverted. This is the behaviour that
    // callers know: nearly every point of the circle counts as on the arc.
    const double g = static_cast<double>(get_line_angle(l->m_fCenterX, l->m_fCenterY, x, y)) / 3.1415927410125732 * 180.0;
    const double s = l->m_fStartDir, e = l->m_fEndDir;
    if (360 >= e && g > s && e > g) return 3;
    if (g > 0 && e - 360 > g) return 3;
    if (g > s && 360 > g) return 3;
    return 0;
}

int CGridDataBase::IsSameNetLine(CGjNetLine* l1, CGjNetLine* l2) {
    constexpr float kNear = 0.1f, kAngle = 0.0017453294f;
    if (l1->m_nArc != l2->m_nArc) return 0;
    if (l1->m_nArc)  // the radius is not compared: with centre and ends given it follows
        return get_dist(l1->m_fCenterX, l1->m_fCenterY, l2->m_fCenterX, l2->m_fCenterY) <= kNear &&
               std::fabs(l1->m_fStartDir - l2->m_fStartDir) <= kAngle && std::fabs(l1->m_fEndDir - l2->m_fEndDir) <= kAngle;
    const Ends p(l1), q(l2);
    return get_dist(p.x1, p.y1, q.x1, q.y1) <= kNear && get_dist(p.x2, p.y2, q.x2, q.y2) <= kNear;
}

// --- points of sections -------------------------------------------------------------------------------------

namespace {

// A line for the length of one question, destroyed unless it was given.
class Temporary {
public:
    Temporary(CGridDataBase*, CGjNetLine* given) : m_line(given), m_owned(false) {}
    template <class Section>
    Temporary(CGridDataBase* db, const Section& s) : m_line(ConstructNetLineObject(db, s)), m_owned(true) {}
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;
    ~Temporary() {
        if (m_owned) DeleteNetLineObject(m_line);
    }
    CGjNetLine* Get() const { return m_line; }

private:
    CGjNetLine* m_line;
    bool m_owned;
};

template <class A, class B>
int CountInterPoints(CGridDataBase* db, const A& a, const B& b, float* x, float* y, float tol) {
    const Temporary first(db, a), second(db, b);
    int count = 0;
    db->TestNetLineIntersection(first.Get(), second.Get(), x, y, count, tol);
    return count;
}

}  // namespace

int CGridDataBase::GetInterPointOfLineSections(CFPLine a, CGjNetLine* b, float* const x, float* const y, float tol) {
    return CountInterPoints(this, a, b, x, y, tol);
}
int CGridDataBase::GetInterPointOfLineSections(CFPLine a, CFPLine b, float* const x, float* const y, float tol) {
    return CountInterPoints(this, a, b, x, y, tol);
}
int CGridDataBase::GetInterPointOfLineSections(CFPArc a, CGjNetLine* b, float* const x, float* const y, float tol) {
    return CountInterPoints(this, a, b, x, y, tol);
}
int CGridDataBase::GetInterPointOfLineSections(CFPArc a, CFPArc b, float* const x, float* const y, float tol) {
    return CountInterPoints(this, a, b, x, y, tol);
}
int CGridDataBase::GetInterPointOfLineSections(CFPArc a, CFPLine b, float* const x, float* const y, float tol) {
    return CountInterPoints(this, a, b, x, y, tol);
}

// --- outlines -----------------------------------------------------------------------------------------------

namespace {

// The edges of an outline as lines with nodes of their own.
class EdgeLines {
public:
    explicit EdgeLines(const CFRegion& region) {
        const int n = region.GetSize();
        m_lines.reserve(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) m_lines.push_back(GetNetLineFromShoot(region[i], region[(i + 1) % n]));
    }
    EdgeLines(const EdgeLines&) = delete;
    EdgeLines& operator=(const EdgeLines&) = delete;
    ~EdgeLines() {
        for (CGjNetLine* line : m_lines) DeleteNetLineObject(line);
    }
    const std::vector<CGjNetLine*>& Get() const { return m_lines; }

private:
    std::vector<CGjNetLine*> m_lines;
};

bool Meet(CGridDataBase* db, CGjNetLine* a, CGjNetLine* b, float tol) {
    float x[2], y[2];
    int count = 0;
    return db->TestNetLineIntersection(a, b, x, y, count, tol) != INTER_NONE;
}

bool AllInside(const CFRegion& inner, const CFRegion& outer, float tol) {
    for (const CFShoot& v : inner)
        if (!Point_Inside_Region(outer, v.x, v.y, tol)) return false;
    return true;
}

}  // namespace

int CGridDataBase::TestRegionIntersection(CFRegion& a, CFRegion& b) {
    constexpr float kTol = 0.001f;
    {
        const EdgeLines edgesA(a), edgesB(b);
        for (CGjNetLine* p : edgesA.Get())
            for (CGjNetLine* q : edgesB.Get())
                if (Meet(this, p, q, kTol)) return 2;
    }
    if (AllInside(a, b, kTol)) return 1;
    return AllInside(b, a, kTol) ? 0 : 3;
}

// Touching or crossing anywhere gives true, also for an inner outline that lies mostly outside: meant.
int IsRegionInsideRegion(CGridDataBase* grid, CFRegion& outer, CFRegion& inner) {
    constexpr float kPointTol = 0.01f, kLineTol = 0.05f;
    const EdgeLines outerEdges(outer), innerEdges(inner);
    int inside = 0;
    for (int i = 0; i < inner.GetSize(); ++i) {
        if (Point_Bordering_Region(outer, inner[i].x, inner[i].y, kPointTol) ||
            Point_Inside_Region(outer, inner[i].x, inner[i].y, kPointTol))
            ++inside;
        for (CGjNetLine* edge : outerEdges.Get())
            if (Meet(grid, innerEdges.Get()[static_cast<std::size_t>(i)], edge, kLineTol)) return 1;
    }
    return inside == inner.GetSize();
}
