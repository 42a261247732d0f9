#include "geometry/region_measures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "geometry/angles.h"
#include "geometry/net_arc.h"
#include "platform/point_in_domain.h"

using namespace tolerance;

namespace {

const CFShoot& NextOf(const CFRegion& region, int i) { return region[i + 1 < region.GetSize() ? i + 1 : 0]; }

// Direction of the chord, with the noise about 0 taken off.
float ChordAngle(const CFPoint& from, const CFPoint& to) {
    const double direction = direction_of(from, to);
    return std::fabs(direction) < kZeroAngle ? 0.0f : Get2PIAngle(static_cast<float>(direction));
}

double DoubleArea(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3) {
    const double x1 = p1.x, x2 = p2.x, x3 = p3.x;
    return x1 * p2.y + x2 * p3.y + x3 * p1.y - p1.y * x2 - p2.y * x3 - p3.y * x1;
}

// The point 100 units from b along a piece that b ends (sense -1) or starts (sense +1); the far end of a
// shorter one.
CFPoint ProbeAlong(const CFShape& s, CFPoint b, double sense) {
    if (s.b == 0 || !(s.GetLength() >= kReversalProbe))
        return sense < 0 ? s.GetStartPoint() : s.GetEndPoint();
    return b.Rotate(s, sense * kReversalProbe / s.GetRadius() * (s.b < 0 ? -1 : 1));
}

std::vector<CDomainEdge> DomainOf(const CFRegion& region) {
    std::vector<CDomainEdge> edges(static_cast<std::size_t>(region.GetSize()));
    ChangeToEdge(region, edges.data());
    return edges;
}

float LengthOfEdge(const CFShoot& a, const CFShoot& b) {
    if (a.IsLine()) return get_dist(a.x, a.y, b.x, b.y);
    // As the net stores it: anticlockwise, so that the bulge is negative.
    const bool forward = a.c < 0;
    const CFShoot& start = forward ? a : b;
    const CFShoot& end = forward ? b : a;
    const double degrees = static_cast<double>(a.c) / kPi * 180.0;
    return net_arc::FromBulge(start.x, start.y, end.x, end.y,
                              static_cast<float>(forward ? degrees : -degrees))
        .Length();
}

}  // namespace

// --- vertices and edges ----------------------------------------------------------------------------------

CFShoot GetElement(const CFRegion& region, int i) {
    const int n = region.GetSize();
    if (n == 0) return CFShoot();
    const int wrapped = i % n;
    return region[wrapped < 0 ? wrapped + n : wrapped];
}

CFShoot GetFShoot(const CFShape* shape, int end) {
    const double sweep = shape->IsLine() ? 0.0 : shape->GetEndAngle() - shape->GetStartAngle();
    return end == 0 ? CFShoot(shape->GetStartPoint(), static_cast<float>((0 - sweep) / 2))  // never -0
                    : CFShoot(shape->GetEndPoint(), static_cast<float>(sweep / 2));
}

float GetAngle(const CFShoot& s, const CFPoint& p) { return Get2PIAngle(ChordAngle(s, p) + s.c); }

float GetShiLiangJiao(const CFShoot& a, const CFShoot& b, const CFPoint& c) {
    float t1 = GetAngle(a, b), t2 = GetAngle(b, c);
    float turn = Get2PIAngle(t2 - (t1 - 2 * a.c));
    if (std::fabs(turn - kHalfTurnF) >= kReversal) {
        if (turn > kHalfTurnF) turn -= kFullTurnF;
        return turn - 2 * a.c;
    }
    // The path nearly reverses at b. Which way it turns is seen a little farther along the true curves.
    const bool arcA = std::fabs(a.c) > kArcEdge, arcB = std::fabs(b.c) > kArcEdge;
    if (arcA && arcB) {
        t1 = static_cast<float>(direction_of(ProbeAlong(CFShape(a, b, a.c), b, -1.0), b));
        t2 = static_cast<float>(direction_of(b, ProbeAlong(CFShape(b, c, b.c), b, +1.0)));
    } else if (arcA) {
        t1 = ChordAngle(a, b);
    } else {
        t2 = ChordAngle(b, c);
    }
    turn = Get2PIAngle(t2 - t1) <= kHalfTurnF ? kHalfTurnF : -kHalfTurnF;
    return turn - 2 * a.c;
}

float GetYangJiaoFromPoint(float x0, float y0, float x1, float y1, float x2, float y2) {
    const float a = get_line_angle(x0, y0, x1, y1);
    float b = get_line_angle(x0, y0, x2, y2);
    if (a > b) b += kFullTurnF;
    return -(b - a) * 180.0f / kHalfTurnF / 2.0f;
}

// --- area and centroid of parts --------------------------------------------------------------------------

float GetSanJiaoMianJi(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3) {
    return static_cast<float>(DoubleArea(p1, p2, p3));
}

float GetXuanMianJi(const CFShoot& s, const CFPoint& p) {
    if (!(std::fabs(s.c) > kFlatSegment)) return 0;
    const float h = Get2PIAngle(std::fabs(s.c));
    const float r = CFShape(s, p, s.c).GetR();
    const float area = r * r * (2 * h - std::sin(2 * h)) / 2;
    return s.c > 0 ? -area : area;  // a clockwise edge cuts area out of an anticlockwise outline
}

// The triangle counts twice and the segment once. That is meant: the callers' figures rest on it.
float GetBianMianJi(const CFShoot& s, const CFPoint& p1, const CFPoint& p2) {
    return GetSanJiaoMianJi(s, p1, p2) + GetXuanMianJi(s, p1);
}

CFPoint GetSanJiaoXingXin(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3) {
    return {(p1.x + p2.x + p3.x) / 3, (p1.y + p2.y + p3.y) / 3, 0};
}

CFPoint GetXuanXingXin(const CFShoot& s, const CFPoint& p) {
    const CFShape shape(s, p, s.c);
    const double h = Get2PIAngle(std::fabs(s.c)), sine = std::sin(h);
    // From the centre. In double: the difference below loses all of a float's digits on flat arcs.
    const double d = 4 * shape.GetRadius() / 3 * sine * sine * sine / (2 * h - std::sin(2 * h));
    const CFPoint centre(shape.x, shape.y, 0);
    CFPoint centroid(shape.x, static_cast<float>(s.c >= 0 ? shape.y + d : shape.y - d), 0);
    return centroid.Rotate(centre, ChordAngle(s, p));
}

CFPoint GetBianXingXin(const CFShoot& s, const CFPoint& p1, const CFPoint& p2) {
    const CFPoint triangle = GetSanJiaoXingXin(s, p1, p2);
    if (!(std::fabs(s.c) > kFlatSegment)) return triangle;
    const double a1 = GetSanJiaoMianJi(s, p1, p2), a2 = GetXuanMianJi(s, p1);
    if (a1 + a2 == 0) return triangle;
    const CFPoint segment = GetXuanXingXin(s, p1);
    return {static_cast<float>((a1 * triangle.x + a2 * segment.x) / (a1 + a2)),
            static_cast<float>((a1 * triangle.y + a2 * segment.y) / (a1 + a2)), 0};
}

// --- measures of an outline ------------------------------------------------------------------------------

float GetMianJi(const CFRegion& region) {
    return CPointInDomain().Get_Area(region.GetSize(), DomainOf(region).data());
}

CFPoint GetXingXin(const CFRegion& region) {
    CFPoint centroid;
    CPointInDomain().Get_Centroid(region.GetSize(), DomainOf(region).data(), centroid.x, centroid.y);
    return centroid;
}

float GetZhouChang(const CFRegion& region) {
    double sum = 0;
    for (int i = 0; i < region.GetSize(); ++i) sum += LengthOfEdge(region[i], NextOf(region, i));
    return static_cast<float>(sum);
}

CFRect GetRegionRect(const CFRegion& region) {
    if (region.IsEmpty()) return CFRect();
    CFRect rect(region[0], region[0]);
    for (int i = 1; i < region.GetSize(); ++i) rect = rect.UnionFRect(CFRect(region[i], region[i]));
    return rect;
}

namespace {

// The turn at the end of a straight edge: 1 clearly to the left, -1 clearly to the right, 0 anything else.
int ClearTurn(const CFShoot& a, const CFShoot& b, const CFPoint& c) {
    if (a.c != 0 || b.c != 0) return 0;
    const double ux = static_cast<double>(b.x) - a.x, uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(c.x) - b.x, vy = static_cast<double>(c.y) - b.y;
    const double cross = ux * vy - uy * vx, least = 1e-3 * (std::fabs(ux) + std::fabs(uy)) * (std::fabs(vx) + std::fabs(vy));
    if (!(std::fabs(cross) > least)) return 0;
    return cross > 0 ? 1 : -1;
}

// The sense of an outline that turns one way at every vertex, as most do; 0 when it must be summed up.
int SenseOfConvex(const CFRegion& region) {
    const int n = region.GetSize();
    if (n < 3) return 0;
    const int first = ClearTurn(region[0], region[1], region[2]);
    for (int i = 1; first != 0 && i < n; ++i)
        if (ClearTurn(region[i], region[i + 1 < n ? i + 1 : 0], region[i + 2 < n ? i + 2 : i + 2 - n]) != first) return 0;
    return first;
}

}  // namespace

int IsNiShiZhen(const CFRegion& region) {
    if (const int sense = SenseOfConvex(region)) return sense > 0;
    float sum = 0;
    for (int i = 0; i < region.GetSize(); ++i)
        sum += GetShiLiangJiao(region[i], GetElement(region, i + 1), GetElement(region, i + 2));
    return sum > 0;
}

int IsNiShiZhen(const CFPoint* points, int n) {
    double sum = 0;
    for (int i = 0; i < n; ++i) sum += DoubleArea(points[0], points[i], points[i + 1 < n ? i + 1 : 0]);
    return sum > 0;
}

int Point_Inside_Region(const CFRegion& region, float x, float y, float tol) {
    return CPointInDomain().Point_In_Domain(region.GetSize(), DomainOf(region).data(), x, y, tol);
}

int Point_Bordering_Region(const CFRegion& region, float x, float y, float tol) {
    return CPointInDomain().Point_On_Edge_Domain(region.GetSize(), DomainOf(region).data(), x, y, tol);
}

// --- small helpers ---------------------------------------------------------------------------------------

int RemoveDuplicatePoint(CArray<CFPoint, CFPoint>& points) {
    CArray<CFPoint, CFPoint> kept;
    for (const CFPoint& p : points) {
        if (!kept.IsEmpty()) {
            const CFPoint& last = kept[kept.GetUpperBound()];
            if (get_dist(last.x, last.y, p.x, p.y) < kDuplicatePoint) continue;
        }
        kept.Add(p);
    }
    points.Swap(kept);
    return points.GetSize();
}

void Add_Into_Array(CArray<float, float>* levels, float v) {
    if (v != v) return;  // it has no place in an order
    const auto near = [v](float level) { return std::fabs(level - v) < kLevelSpacing; };
    if (std::any_of(levels->begin(), levels->end(), near)) return;
    int at = 0;
    while (at < levels->GetSize() && levels->GetAt(at) < v) ++at;
    levels->InsertAt(at, v);
}

float GetDownModulus(float v, float step) {
    if (step == 0) return v;
    return std::trunc((v < 0 ? v - step : v) / step) * step;
}
