// The display list as data: filling, snap points, hit tests, extents, and how components use it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "geometry/fregion.h"
#include "model/draw_graph.h"
#include "model/goujian.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

std::string Number(double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%.5g", std::fabs(v) < 1e-3 ? 0.0 : v);
    return text;
}

std::string ShowSnap(CArray<CFPoint>& points, CArray<int>& kinds) {
    std::string out;
    EXPECT_EQ(points.GetSize(), kinds.GetSize());
    for (int i = 0; i < points.GetSize(); ++i)
        out += std::to_string(kinds[i]) + "@" + Number(points[i].x) + "," + Number(points[i].y) + " ";
    return out;
}

template <class Source>
std::string Snap(Source& source, unsigned mode) {
    CArray<CFPoint> points;
    CArray<int> kinds;
    source.QueryAbsSnapPoint(mode, points, kinds);
    return ShowSnap(points, kinds);
}

std::string Show(const CFRect& r) {
    return Number(r.m_fMinX) + "," + Number(r.m_fMinY) + " " + Number(r.m_fMaxX) + "," + Number(r.m_fMaxY);
}

CArray<CFPoint, CFPoint> Points(std::initializer_list<CFPoint> list) {
    CArray<CFPoint, CFPoint> points;
    for (const CFPoint& p : list) points.Add(p);
    return points;
}

// --- snap points ------------------------------------------------------------------------------------------

TEST(DisplayListSnap, PointsAndKindsOfEachPrimitive) {
    CGraph_Line line(0, 0, 600, 300, 1);
    CGraph_Point point(5, 6);
    CGraph_Circle circle(10, 20, 5, 1);
    CGraph_Arc quarter(0, 0, 100, 0, 90, 1), all(0, 0, 100, 45, 405, 1), fromHighToLow(0, 0, 100, 300, 60, 1);
    CGraph_Arc toFull(0, 0, 100, 180, 359.99995f, 1), overZero(0, 0, 100, 350, 370, 1);
    CGraph_PolyRgn triangle(Points({{0, 0, 0}, {6, 0, 0}, {0, 6, 0}})), empty;
    CGraph_CircleRgn disc(0, 0, 9);
    CGraph_Text text(0, 0, 100, 0, "A");
    CGraph_Locator locator(CFRect(0, 0, 9, 9));
    const unsigned all_kinds = 63;
    struct {
        const char* name;
        CGraphEntity& entity;
        unsigned mode;
        const char* snap;
    } const rows[] = {
        {"line, ends", line, 2, "2@0,0 2@600,300 "},
        {"line, middle", line, 4, "4@300,150 "},
        {"line, thirds", line, 16, "16@200,100 16@400,200 "},
        {"line, centre and quadrants: none", line, 8 | 32 | 1, ""},
        {"line, everything in order", line, all_kinds, "2@0,0 2@600,300 4@300,150 16@200,100 16@400,200 "},
        {"point, whatever the mode", point, 0, "1@5,6 "},
        {"circle, centre", circle, 8, "8@10,20 "},
        {"circle, quadrants", circle, 32, "32@15,20 32@10,25 32@5,20 32@10,15 "},
        {"circle, ends: none", circle, 2 | 4 | 16, ""},
        {"arc, centre", quarter, 8, "8@0,0 "},
        {"arc, ends, middle and thirds alone: none", quarter, 2 | 4 | 16, ""},
        {"arc, quadrants bring everything; start 0 is an axis point", quarter, 32,
         "32@0,100 32@100,0 4@70.711,70.711 16@86.603,50 16@50,86.603 2@100,0 2@0,100 "},
        {"arc beyond a full turn", all, 32,
         "32@0,100 32@-100,0 32@0,-100 32@100,0 4@-70.711,-70.711 16@-96.593,25.882 16@25.882,-96.593 "
         "2@70.711,70.711 2@70.711,70.711 "},
        {"arc from high to low: angles as they are, the middle at 180", fromHighToLow, 32,
         "4@-100,0 16@-76.604,-64.279 16@-76.604,64.279 2@50,-86.603 2@50,86.603 "},
        {"arc that nearly ends at 360 reaches it", toFull, 32,
         "32@-100,0 32@0,-100 32@100,0 4@0,-100 16@-50,-86.603 16@50,-86.603 2@-100,0 2@100,0 "},
        {"arc over 360", overZero, 32, "32@100,0 4@100,0 16@99.831,-5.8145 16@99.831,5.8145 2@98.481,-17.365 "
                                       "2@98.481,17.365 "},
        {"polygon, ends: each side's own", triangle, 2, "2@0,0 2@6,0 2@6,0 2@0,6 2@0,6 2@0,0 "},
        {"polygon, middles", triangle, 4, "4@3,0 4@3,3 4@0,3 "},
        {"polygon without vertices", empty, all_kinds, ""},
        {"disc", disc, all_kinds, ""},
        {"text", text, all_kinds, ""},
        {"locator", locator, all_kinds, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Snap(row.entity, row.mode), row.snap);
    }
}

TEST(DisplayListSnap, SwitchedOffPrimitivesGiveNone) {
    CDrawGraph graph;
    graph.Draw_Line(0, 0, 10, 0, 1, 'A', 0, 13);
    graph.Draw_Point(1, 1, 'A', 1, 13);
    graph.Draw_Circle(0, 0, 5, 1, 'A', 1, 13)->SetSnap(0);
    graph.Draw_Line(0, 0, 0, 8, 1, 'A', 1, 13);
    EXPECT_EQ(Snap(graph, 63), "1@1,1 2@0,0 2@0,8 4@0,4 16@0,2.6667 16@0,5.3333 ");
}

// --- filling ----------------------------------------------------------------------------------------------

TEST(DisplayListFilling, EachOperationMakesOnePrimitive) {
    CDrawGraph graph;
    graph.Draw_Point(1, 2, 'B', 0, 7);
    graph.Draw_Line(1, 2, 3, 4, -3, 'C', 1, 7);
    graph.Draw_Arc(1, 2, 3, 40, 50, 2, 'D', 1, 7);
    graph.Draw_Circle(1, 2, 3, 2, 'E', 1, 7);
    graph.Draw_CircleRgn(1, 2, 3, 'F', 1, 7);
    graph.Draw_PolyLineRgn(Points({{0, 0, 0}, {6, 0, 0}, {0, 6, 0}}), 'G', 1, 7);
    graph.Draw_Text(1, 2, 300, 0.5f, "轴", 'H');
    graph.Set_Locator(CFRect(1, 2, 3, 4));
    std::string got;
    for (CGraphEntity* e : graph.m_aEntity)
        got += std::to_string(e->GetGraphType()) + e->GetPart() + std::to_string(e->CanSnap()) + "/" +
               std::to_string(e->m_nRop2) + " ";
    EXPECT_EQ(got, "1B0/7 2C1/7 3D1/7 4E1/7 6F1/7 5G1/7 7H0/13 000/13 ");
    graph.RemoveAll();
    EXPECT_EQ(graph.m_aEntity.GetSize(), 0);
}

TEST(DisplayListFilling, LinesFanOutFromWhereThePenWasPut) {
    CDrawGraph graph;
    graph.Line_To(9, 9, 1, 'A', 1, 13);
    graph.Move_To(1, 2);
    graph.Line_To(3, 4, 1, 'A', 1, 13);
    graph.Line_To(5, 6, 1, 'A', 1, 13);
    EXPECT_EQ(Snap(graph, 2), "2@0,0 2@9,9 2@1,2 2@3,4 2@1,2 2@5,6 ");
}

TEST(DisplayListFilling, NewPrimitivesStartAsTold) {
    const CGraph_Line line;
    EXPECT_EQ(line.GetPart(), 'A');
    EXPECT_EQ(line.m_dwColor, 0xFFFFFFu);
    EXPECT_EQ(line.m_nLineType, 0);
    EXPECT_EQ(line.CanSnap(), 1);
    EXPECT_EQ(line.m_nRop2, 13);
    EXPECT_EQ(line.m_dwGraphType, 255u);
    EXPECT_EQ(line.m_fX2 + line.m_fY2 * 10 + line.m_fWidth * 10000, 11100);
    const CGraph_Arc arc;
    EXPECT_EQ(arc.m_fR, 100);
    EXPECT_EQ(arc.m_fEnd, 90);
    EXPECT_EQ(CGraph_CircleRgn().m_fR, 0);
    EXPECT_EQ(CGraph_Text().m_fHeight, 100);
    EXPECT_EQ(CGraph_Text().m_pFont, nullptr);
    CGraph_Line coloured;
    coloured.SetColor(0xFF123456ABCDEF01ul);
    EXPECT_EQ(coloured.m_dwColor, 0xABCDEF01u);
    EXPECT_LE(sizeof(CGraph_Line), 56u) << "there are hundreds of thousands";
    EXPECT_LE(sizeof(CDrawGraph), 56u);
}

// --- hit tests: exact oracles on a lattice -----------------------------------------------------------------

struct Lattice {
    int x, y;
};
long Cross(Lattice o, Lattice a, Lattice b) {
    return static_cast<long>(a.x - o.x) * (b.y - o.y) - static_cast<long>(a.y - o.y) * (b.x - o.x);
}
bool Between(Lattice p, Lattice a, Lattice b) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}
bool OnSegment(Lattice p, Lattice a, Lattice b) { return Cross(a, b, p) == 0 && Between(p, a, b); }
bool SegmentsMeet(Lattice a, Lattice b, Lattice c, Lattice d) {
    if (OnSegment(a, c, d) || OnSegment(b, c, d) || OnSegment(c, a, b) || OnSegment(d, a, b)) return true;
    const auto sign = [](long v) { return (v > 0) - (v < 0); };
    return sign(Cross(a, b, c)) * sign(Cross(a, b, d)) < 0 && sign(Cross(c, d, a)) * sign(Cross(c, d, b)) < 0;
}

using Outline = std::vector<Lattice>;

template <class F>
bool AnySide(const Outline& o, F f) {
    for (std::size_t i = 0; i < o.size(); ++i)
        if (f(o[i], o[(i + 1) % o.size()])) return true;
    return false;
}
bool Contains(const Outline& o, Lattice p) {  // border included, non-zero winding
    int winding = 0;
    const bool border = AnySide(o, [&](Lattice a, Lattice b) {
        if (a.y <= p.y && b.y > p.y && Cross(a, b, p) > 0) ++winding;
        if (a.y > p.y && b.y <= p.y && Cross(a, b, p) < 0) --winding;
        return OnSegment(p, a, b);
    });
    return border || winding != 0;
}
bool AllInside(const Outline& marks, const Outline& query) {
    return std::all_of(marks.begin(), marks.end(), [&](Lattice p) { return Contains(query, p); });
}
bool SegmentTouches(Lattice a, Lattice b, const Outline& query) {
    return Contains(query, a) || Contains(query, b) ||
           AnySide(query, [&](Lattice c, Lattice d) { return SegmentsMeet(a, b, c, d); });
}
bool AreasTouch(const Outline& area, const Outline& query) {
    return Contains(query, area[0]) || Contains(area, query[0]) ||
           AnySide(area, [&](Lattice a, Lattice b) {
               return AnySide(query, [&](Lattice c, Lattice d) { return SegmentsMeet(a, b, c, d); });
           });
}

struct Dice {
    explicit Dice(unsigned seed) : rng(seed) {}
    int operator()(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); }
    Lattice Point() { return {(*this)(0, 8), (*this)(0, 8)}; }
    Outline Polygon() {
        Outline o(static_cast<std::size_t>((*this)(3, 5)));
        for (Lattice& p : o) p = Point();
        return o;
    }
    std::mt19937 rng;
};

CFRegion Region(const Outline& o) {
    CFRegion region;
    for (const Lattice& p : o) region.Add(CFShoot(static_cast<float>(p.x), static_cast<float>(p.y), 0));
    return region;
}
CArray<CFPoint, CFPoint> Vertices(const Outline& o) {
    CArray<CFPoint, CFPoint> points;
    for (const Lattice& p : o) points.Add(CFPoint(static_cast<float>(p.x), static_cast<float>(p.y), 0));
    return points;
}
std::string Show(const Outline& o) {
    std::string out;
    for (const Lattice& p : o) out += std::to_string(p.x) + "," + std::to_string(p.y) + " ";
    return out;
}

/// A query as a polygon, and as a rectangle if it is one.
struct Query {
    Outline outline;
    bool isRect = false;
    CFRect rect;
};
Query RandomQuery(Dice& dice) {
    Query q;
    if (dice(0, 1) == 0) {
        q.outline = dice.Polygon();
        return q;
    }
    const Lattice a = dice.Point(), b = dice.Point();
    const int x1 = std::min(a.x, b.x), x2 = std::max(a.x, b.x), y1 = std::min(a.y, b.y), y2 = std::max(a.y, b.y);
    q.outline = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    q.isRect = true;
    q.rect = CFRect(static_cast<float>(x1), static_cast<float>(y1), static_cast<float>(x2), static_cast<float>(y2));
    return q;
}
void ExpectHits(CGraphEntity& entity, const Query& q, bool touches, bool inside) {
    const CFRegion region = Region(q.outline);
    EXPECT_EQ(entity.HitTest(region, 0), touches) << "touching, by region";
    EXPECT_EQ(entity.HitTest(region, 1), inside) << "all inside, by region";
    if (!q.isRect) return;
    EXPECT_EQ(entity.HitTest(q.rect, 0), touches) << "touching, by rectangle";
    EXPECT_EQ(entity.HitTest(q.rect, 1), inside) << "all inside, by rectangle";
}

TEST(DisplayListHits, StraightPrimitivesAgreeWithExactArithmetic) {
    Dice dice(20240611);
    int touching = 0;
    for (int round = 0; round < 4000 && !testing::Test::HasFailure(); ++round) {
        const Query q = RandomQuery(dice);
        const Lattice a = dice.Point(), b = dice.Point();
        const Outline area = dice.Polygon();
        SCOPED_TRACE("round " + std::to_string(round) + ", query " + Show(q.outline) + "line/point " + Show({a, b}) +
                     "area " + Show(area));
        const auto f = [](int v) { return static_cast<float>(v); };

        CGraph_Point point(f(a.x), f(a.y));
        ExpectHits(point, q, Contains(q.outline, a), Contains(q.outline, a));

        const bool touches = SegmentTouches(a, b, q.outline);
        touching += touches;
        CGraph_Line line(f(a.x), f(a.y), f(b.x), f(b.y), 1);
        ExpectHits(line, q, touches || AllInside({a, b}, q.outline), AllInside({a, b}, q.outline));

        // The diagonal from the corner of the minima, whatever corners made the box.
        const Lattice low{std::min(a.x, b.x), std::min(a.y, b.y)}, high{std::max(a.x, b.x), std::max(a.y, b.y)};
        CGraph_Locator locator(CFRect(f(low.x), f(low.y), f(high.x), f(high.y)));
        ExpectHits(locator, q, SegmentTouches(low, high, q.outline), AllInside({low, high}, q.outline));

        CGraph_PolyRgn polygon(Vertices(area));
        ExpectHits(polygon, q, AreasTouch(area, q.outline), AllInside(area, q.outline));
    }
    EXPECT_GT(touching, 1000);
}

// --- hit tests: sampling for what is round or turned -------------------------------------------------------

/// Signed distance to a query's border, positive inside.
double Depth(const Outline& o, double x, double y) {
    double nearest = 1e300, winding = 0;
    AnySide(o, [&](Lattice a, Lattice b) {
        const double ax = a.x - x, ay = a.y - y, bx = b.x - x, by = b.y - y, dx = bx - ax, dy = by - ay;
        const double length2 = dx * dx + dy * dy;
        const double t = length2 == 0 ? 0 : std::clamp(-(ax * dx + ay * dy) / length2, 0.0, 1.0);
        nearest = std::min(nearest, std::hypot(ax + t * dx, ay + t * dy));
        winding += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
        return false;
    });
    return std::fabs(winding) > kPi ? nearest : -nearest;
}

using Samples = std::vector<std::pair<double, double>>;
Samples OfArc(double x, double y, double r, double start, double sweep, int n = 720) {
    Samples s;
    for (int i = 0; i <= n; ++i) {
        const double a = (start + sweep * i / n) * kPi / 180;
        s.emplace_back(x + r * std::cos(a), y + r * std::sin(a));
    }
    return s;
}
Samples OfBox(double x, double y, double w, double h, double angle, int n = 60) {
    Samples s;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; j <= n; ++j) {
            const double u = w * i / n, v = h * j / n;
            s.emplace_back(x + u * std::cos(angle) - v * std::sin(angle), y + u * std::sin(angle) + v * std::cos(angle));
        }
    return s;
}
Samples OfDisc(double x, double y, double r) {
    Samples s;
    for (int i = 0; i <= 24; ++i)
        for (const auto& p : OfArc(x, y, r * i / 24, 0, 360, 120)) s.push_back(p);
    return s;
}

/// What samples `gap` apart can decide: 1, 0, or -1 for too near to call.
int Touching(const Samples& samples, const Outline& o, double gap) {
    double deepest = -1e300;
    for (const auto& [x, y] : samples) deepest = std::max(deepest, Depth(o, x, y));
    return deepest > 0.01 ? 1 : deepest < -gap ? 0 : -1;
}
int Inside(const Samples& marks, const Outline& o) {
    double shallowest = 1e300;
    for (const auto& [x, y] : marks) shallowest = std::min(shallowest, Depth(o, x, y));
    return shallowest > 0.01 ? 1 : shallowest < -0.01 ? 0 : -1;
}

TEST(DisplayListHits, RoundAndTurnedPrimitivesAgreeWithSampling) {
    Dice dice(20240612);
    int decided[2] = {};
    for (int round = 0; round < 1500 && !testing::Test::HasFailure(); ++round) {
        const Query q = RandomQuery(dice);
        const Lattice c = dice.Point();
        const int r = dice(1, 5), start = dice(0, 23) * 15, end = dice(0, 23) * 15;
        SCOPED_TRACE("round " + std::to_string(round) + ", query " + Show(q.outline) + "centre " + Show({c}) + "r " +
                     std::to_string(r) + " from " + std::to_string(start) + " to " + std::to_string(end));
        const auto f = [](double v) { return static_cast<float>(v); };
        const auto check = [&](CGraphEntity& entity, const Samples& body, const Samples& marks, double gap) {
            const int touch = Touching(body, q.outline, gap), in = Inside(marks, q.outline);
            const CFRegion region = Region(q.outline);
            for (const int byRect : {0, 1}) {
                if (byRect && !q.isRect) continue;
                const int gotTouch = byRect ? entity.HitTest(q.rect, 0) : entity.HitTest(region, 0);
                const int gotIn = byRect ? entity.HitTest(q.rect, 1) : entity.HitTest(region, 1);
                EXPECT_TRUE(touch < 0 || gotTouch == touch) << "touching: " << gotTouch;
                EXPECT_TRUE(in < 0 || gotIn == in) << "all inside: " << gotIn;
            }
            if (touch >= 0) ++decided[touch];
        };
        // The gap: half the distance of samples, plus how thin a part of a query may lie between them.
        const double sweep = end < start ? end - start + 360 : end - start;
        CGraph_Arc arc(f(c.x), f(c.y), f(r), f(start), f(end), 1);
        check(arc, OfArc(c.x, c.y, r, start, sweep), OfArc(c.x, c.y, r, start, sweep, 2), 0.05);
        const Samples corners = OfBox(c.x - r, c.y - r, 2 * r, 2 * r, 0, 1);
        CGraph_Circle circle(f(c.x), f(c.y), f(r), 1);
        check(circle, OfArc(c.x, c.y, r, 0, 360), corners, 0.05);
        CGraph_CircleRgn disc(f(c.x), f(c.y), f(r));
        check(disc, OfDisc(c.x, c.y, r), corners, 0.3);
        CGraph_Text text(f(c.x), f(c.y), f(r), f(start * kPi / 180), "1轴B");
        check(text, OfBox(c.x, c.y, 2 * r, r, start * kPi / 180), OfBox(c.x, c.y, 2 * r, r, start * kPi / 180, 1), 0.3);
    }
    EXPECT_GT(decided[0], 500);
    EXPECT_GT(decided[1], 500);
}

TEST(DisplayListHits, WhatSamplingCannotSee) {
    const CFRegion square(CFRect(0, 0, 10, 10));
    struct {
        const char* name;
        std::unique_ptr<CGraphEntity> entity;
        int touches, inside;
    } const rows[] = {
        {"arc from 300 to 60 goes over 0", std::make_unique<CGraph_Arc>(-5.f, 5.f, 6.f, 300.f, 60.f, 1.f), 1, 0},
        {"arc from 60 to 300 goes the other way", std::make_unique<CGraph_Arc>(-5.f, 5.f, 6.f, 60.f, 300.f, 1.f), 0, 0},
        {"arc by ends and middle alone: its bulges don't count",
         std::make_unique<CGraph_Arc>(5.f, 9.f, 4.f, 170.f, 370.f, 1.f), 1, 1},
        {"arc without sweep is its start", std::make_unique<CGraph_Arc>(-5.f, 5.f, 100.f, 0.f, 0.f, 1.f), 0, 0},
        {"circle around the query: the curve stays off", std::make_unique<CGraph_Circle>(5.f, 5.f, 20.f, 1.f), 0, 0},
        {"disc around the query", std::make_unique<CGraph_CircleRgn>(5.f, 5.f, 20.f), 1, 0},
        {"disc without radius is a point", std::make_unique<CGraph_CircleRgn>(5.f, 5.f, 0.f), 1, 1},
        {"disc without radius outside", std::make_unique<CGraph_CircleRgn>(15.f, 5.f, 0.f), 0, 0},
        {"locator around the query, its diagonal passing by",
         std::make_unique<CGraph_Locator>(CFRect(-100, -10, 20, 200)), 0, 0},
        {"text without characters is a stroke of its height", std::make_unique<CGraph_Text>(5.f, 5.f, 2.f, 0.f, ""), 1, 1},
        {"base primitive", std::make_unique<CGraphEntity>(), 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.entity->HitTest(square, 0), row.touches);
        EXPECT_EQ(row.entity->HitTest(square, 1), row.inside);
    }
    // The rectangle form of a point is exact, the region form forgives a thousandth.
    CGraph_Point beside(10.0005f, 5);
    EXPECT_EQ(beside.HitTest(square, 0), 1);
    EXPECT_EQ(beside.HitTest(CFRect(0, 0, 10, 10), 0), 0);
}

// A list decides many rectangles by boxes alone; the region form is the plain way.
TEST(DisplayListHits, ListsAnswerRectanglesAsRegions) {
    Dice dice(20240614);
    int hits[2][2] = {};
    for (int round = 0; round < 3000; ++round) {
        CDrawGraph graph;
        const auto lattice = [&] { return static_cast<float>(dice(-3, 12)); };
        for (int n = dice(0, 3); n > 0; --n) {
            graph.Draw_Line(lattice(), lattice(), lattice(), lattice(), 1, 'A', 1, 13);
            if (dice(0, 5) == 0) graph.Draw_Point(lattice(), lattice(), 'A', 1, 13);
            if (dice(0, 5) == 0) graph.Draw_Arc(lattice(), lattice(), 4, 0, 90, 1, 'A', 1, 13);
        }
        const CFRect rect(lattice(), lattice(), lattice() + 4, lattice() + 4);  // at times with corners exchanged
        for (const int mode : {0, 1, 2}) {
            const int got = graph.HitTest(rect, mode);
            ASSERT_EQ(got, graph.HitTest(CFRegion(rect), mode)) << "round " << round << ", mode " << mode << ", rect "
                                                                << Show(rect);
            if (mode < 2) ++hits[mode][got];
        }
    }
    for (const int mode : {0, 1})
        for (const int answer : {0, 1}) EXPECT_GT(hits[mode][answer], 300);
}

TEST(DisplayListHits, TheListAsksAllOrAny) {
    const CFRect square(0, 0, 10, 10);
    CDrawGraph graph;
    EXPECT_EQ(graph.HitTest(square, 1), 1) << "an empty list lies anywhere";
    EXPECT_EQ(graph.HitTest(square, 0), 0);
    graph.Draw_Point(5, 5, 'A', 1, 13);
    EXPECT_EQ(graph.HitTest(square, 1), 1);
    EXPECT_EQ(graph.HitTest(square, 7), 1) << "any mode but 1 is touching";
    graph.Draw_Point(50, 50, 'A', 1, 13);
    EXPECT_EQ(graph.HitTest(square, 1), 0);
    EXPECT_EQ(graph.HitTest(CFRegion(square), 0), 1);
}

// A host's line with a reach of its own is asked itself, wherever its box lies.
TEST(DisplayListHits, DerivedLinesAnswerForThemselves) {
    struct FarReaching : CGraph_Line {
        using CGraph_Line::HitTest;
        int HitTest(const CFRegion&, int) override { return 1; }
    };
    CDrawGraph graph;
    graph.Append(new FarReaching);
    for (const int mode : {0, 1}) EXPECT_EQ(graph.HitTest(CFRect(5000, 5000, 5010, 5010), mode), 1);
}

// --- extents ----------------------------------------------------------------------------------------------

void ExpectExtent(CGraphEntity& entity, const Samples& body, double tolerance) {
    double box[4] = {1e300, 1e300, -1e300, -1e300};
    for (const auto& [x, y] : body) {
        box[0] = std::min(box[0], x), box[1] = std::min(box[1], y);
        box[2] = std::max(box[2], x), box[3] = std::max(box[3], y);
    }
    const CFRect got = entity.GetFrect();
    EXPECT_NEAR(got.m_fMinX, box[0], tolerance);
    EXPECT_NEAR(got.m_fMinY, box[1], tolerance);
    EXPECT_NEAR(got.m_fMaxX, box[2], tolerance);
    EXPECT_NEAR(got.m_fMaxY, box[3], tolerance);
}

TEST(DisplayListExtent, AgreesWithSampling) {
    Dice dice(20240613);
    for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
        const double x = dice(-90, 90) * 100, y = dice(-90, 90) * 100, r = dice(1, 50) * 100;
        const int start = dice(-24, 24) * 15, end = dice(-24, 24) * 15;
        SCOPED_TRACE("round " + std::to_string(round) + " from " + std::to_string(start) + " to " + std::to_string(end));
        const auto f = [](double v) { return static_cast<float>(v); };
        const double sweep = end < start ? end - start + 360 : end - start;
        if (sweep >= 0) {
            CGraph_Arc arc(f(x), f(y), f(r), f(start), f(end), 1);
            ExpectExtent(arc, OfArc(x, y, r, start, std::min(sweep, 360.0), 7200), r * 1e-6 + 0.01);
        }
        CGraph_Circle circle(f(x), f(y), f(r), 1);
        ExpectExtent(circle, OfArc(x, y, r, 0, 360), 0.01);
        CGraph_CircleRgn disc(f(x), f(y), f(-r));
        ExpectExtent(disc, OfArc(x, y, r, 0, 360), 0.01);
        CGraph_Text text(f(x), f(y), f(r), f(start * kPi / 180), "ab轴");
        ExpectExtent(text, OfBox(x, y, 2 * r, r, start * kPi / 180, 1), 0.02);
        CGraph_Line line(f(x), f(y), f(r), f(start), 1);
        ExpectExtent(line, {{x, y}, {r, start}}, 0);
        CGraph_PolyRgn polygon(Points({{f(x), f(y), 0}, {f(r), 0, 0}, {0, f(start), 0}}));
        ExpectExtent(polygon, {{x, y}, {r, 0}, {0, start}}, 0);
    }
}

TEST(DisplayListExtent, OfPointLocatorAndList) {
    EXPECT_EQ(Show(CGraph_Point(10, 20).GetFrect()), "8,18 12,22");
    EXPECT_EQ(Show(CGraph_Locator(CFRect(1, 2, 3, 4)).GetFrect()), "1,2 3,4");
    EXPECT_EQ(Show(CGraph_PolyRgn().GetFrect()), "0,0 0,0");
    CDrawGraph graph;
    EXPECT_EQ(Show(graph.GetFrect()), "0,0 0,0");
    graph.Draw_Line(5, 9, 7, 6, 1, 'A', 1, 13);
    EXPECT_EQ(Show(graph.GetFrect()), "5,6 7,9") << "the origin is no part of it";
    graph.Draw_Line(-5, 7, 6, 7, 1, 'A', 1, 13);
    EXPECT_EQ(Show(graph.GetFrect()), "-5,6 7,9");
}

TEST(DisplayListText, HasOneMetricEverywhere) {
    EXPECT_EQ(ModelTextWidth("", 300), 0);
    EXPECT_EQ(ModelTextWidth("A-1", 300), 450);
    EXPECT_EQ(ModelTextWidth("1轴", 300), 450);
    EXPECT_EQ(ModelTextWidth("楼梯间", 100), 300);
    CGraph_Text upright(100, 200, 50, static_cast<float>(kPi / 2), "1轴B");
    EXPECT_EQ(Show(upright.GetFrect()), "50,200 100,300");
    EXPECT_EQ(upright.GetFRegion().GetSize(), 4);
}

// --- components -------------------------------------------------------------------------------------------

class Gripped : public CGouJianEx {
public:
    int GetJiaDian(CArray<CFPoint>& grips) override {
        grips.Add(CFPoint(-7, 3, 0));
        grips.Add(CFPoint(2, 90, 0));
        return 1;
    }
    int DrawGraph(CDrawGraph* graph) override {
        ++generated;
        graph->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
        return 1;
    }
    void OnCalcParameters() override { ++calculated; }
    int generated = 0, calculated = 0;
};

TEST(ComponentDisplay, ExtentCoversPictureAndGrips) {
    Gripped gj;
    EXPECT_EQ(Show(gj.GetFrect()), "-7,0 2,90") << "an empty list counts as the origin";
    gj.DrawGraph(gj.GetDrawGraph());
    EXPECT_EQ(Show(gj.GetFrect()), "-7,0 10,90");
}

TEST(ComponentDisplay, HiddenOnesAreNotHitButStayInTheIndex) {
    CGouJianEx gj;
    gj.GetDrawGraph()->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
    const CFRect there(5, 0, 20, 20);
    EXPECT_EQ(gj.HitTest(there, 0), 1);
    EXPECT_EQ(gj.HitTest(CFRegion(there), 0), 1);
    gj.set_m_byteStatus(GJ_STATUS_HIDDEN);
    EXPECT_EQ(gj.HitTest(there, 0), 0);
    EXPECT_EQ(gj.HitTest(CFRegion(there), 0), 0);
    EXPECT_EQ(gj.IndexHitTest(there, 0), 1);
}

TEST(ComponentDisplay, SnapSwitchOfTheTypeDecides) {
    CGouJianEx gj;
    gj.set_Gjlx(77);
    gj.GetDrawGraph()->Draw_Line(0, 0, 10, 10, 1, 'A', 1, 13);
    CArray<CFPoint> points;
    CArray<int> kinds;
    points.Add(CFPoint(1, 2, 3));
    DisableSnap(77);
    EXPECT_EQ(gj.QueryAbsSnapPoint(2, points, kinds), 0);
    EXPECT_EQ(ShowSnap(points, (kinds.Add(9), kinds)), "9@1,2 ") << "both arrays as they were";
    EnableSnap(77);
    EXPECT_EQ(gj.QueryAbsSnapPoint(4, points, kinds), 1);
    EXPECT_EQ(points.GetSize(), 1) << "emptied first";
    EXPECT_EQ(kinds.GetSize(), 2) << "never emptied";
    EXPECT_EQ(gj.QueryAbsSnapPoint(8, points, kinds), 1) << "1 though nothing was found";
    EXPECT_EQ(points.GetSize(), 0);
}

TEST(ComponentDisplay, GeneratedPicturesAreMadeAnewAndFixedOnesStay) {
    Gripped gj;
    EXPECT_EQ(gj.ReGen(nullptr), 1);
    EXPECT_EQ(gj.calculated, 1);
    EXPECT_EQ(gj.generated, 0) << "no view, no picture";
    gj.GetDrawGraph()->Draw_Point(1, 1, 'A', 1, 13);
    EXPECT_EQ(gj.ReDraw(nullptr), 1);
    EXPECT_EQ(gj.GetDrawGraph()->m_aEntity.GetSize(), 1) << "emptied, then filled";
    EXPECT_EQ(gj.GetDrawGraph()->m_aEntity[0]->GetGraphType(), 2u);
    gj.m_bGraphBuilt = 1;
    gj.ClearDrawGraph();
    EXPECT_EQ(gj.m_pDrawGraph, nullptr);
    EXPECT_EQ(gj.m_bGraphBuilt, 1);

    gj.GetDrawGraph()->m_bFixed = 1;
    gj.ReDraw(nullptr);
    EXPECT_EQ(gj.generated, 1);
    gj.GetDrawGraph()->m_bFixed = 0;
    gj.m_bSelfDraw = 1;
    gj.ReDraw(nullptr);
    EXPECT_EQ(gj.generated, 1);
    gj.m_bDrawBoth = 1;
    gj.ReDraw(nullptr);
    EXPECT_EQ(gj.generated, 2);
}

}  // namespace
