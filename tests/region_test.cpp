// Outlines: where points lie, what outlines and pieces share, measures.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "geometry/angles.h"
#include "geometry/fregion.h"
#include "geometry/region_measures.h"
#include "net/gj_net_line.h"
#include "outline_oracle.h"
#include "platform/archive.h"
#include "platform/point_in_domain.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kPi = std::numbers::pi_v<float>;

CFPoint P(float x, float y) { return {x, y, 0}; }

CFRegion Region(const std::vector<CFShoot>& vertices) {
    CFRegion region;
    for (const CFShoot& v : vertices) region.Add(v);
    return region;
}

const CFRegion kSquare(CFRect(0, 0, 1000, 1000));
// A disc about the origin from two anticlockwise half circles.
const CFRegion kDisc = Region({{-500, 0, -kPi / 2}, {500, 0, -kPi / 2}});

// What a chord cuts off the same disc on its right.
const CFRegion kCap = Region({{353.5534f, -353.5534f, -kPi / 4}, {353.5534f, 353.5534f, 0}});

CFRegion Reversed(const CFRegion& region) {
    CFRegion out;
    const int n = region.GetSize();
    for (int i = n - 1; i >= 0; --i) out.Add(CFShoot(region[i], -region[(i + n - 1) % n].c));
    return out;
}

struct Maker {
    explicit Maker(unsigned seed) : rng(seed) {}
    int Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); }
    CFPoint Point() { return P(static_cast<float>(Int(-6, 6)) * 100, static_cast<float>(Int(-6, 6)) * 100); }
    float Half() { return Int(0, 1) ? 0.0f : static_cast<float>(Int(-25, 25)) / 10; }
    // Vertices anywhere on the lattice: crosses itself, doubles back, repeats vertices.
    CFRegion Wild() {
        CFRegion region;
        for (int n = Int(1, 7); n > 0; --n) region.Add(CFShoot(Point(), Half()));
        return region;
    }
    // Anticlockwise about a point, without crossing itself.
    CFRegion Simple() {
        CFRegion region;
        const CFPoint centre = Point();
        const int n = Int(3, 9);
        for (int i = 0; i < n; ++i) {
            const double angle = 2 * std::numbers::pi * i / n, r = Int(300, 400);
            region.Add(CFShoot(static_cast<float>(centre.x + r * std::cos(angle)),
                               static_cast<float>(centre.y + r * std::sin(angle)),
                               static_cast<float>(Int(-4, 4)) / 20));
        }
        return region;
    }
    std::mt19937 rng;
};

}  // namespace

TEST(Regions, APointInsideOrOnTheOutline) {
    const struct {
        const char* name;
        const CFRegion& region;
        CFPoint p;
        int inside;
    } rows[] = {
        {"inside", kSquare, P(500, 500), 1},
        {"on an edge", kSquare, P(1000, 500), 1},
        {"on a vertex", kSquare, P(1000, 1000), 1},
        {"beside the edge, within 0.001", kSquare, P(500, -0.0009f), 1},
        {"beside it, farther", kSquare, P(500, -0.0011f), 0},
        {"level with a vertex", kSquare, P(-5, 0), 0},
        {"under an arc, beyond its chord", kDisc, P(0, 499), 1},
        {"on the chord between two arcs", kDisc, P(100, 0), 1},
        {"on an arc", kDisc, P(0, -500), 1},
        {"outside an arc", kDisc, P(400, 400), 0},
        {"not a number", kSquare, P(kNaN, 5), 0},
    };
    for (const auto& row : rows) EXPECT_EQ(row.region.InRegion(row.p), row.inside) << row.name;
    EXPECT_FALSE(CFRegion().InRegion(P(0, 0)));
    EXPECT_TRUE(Region({{5, 5, 0}}).InRegion(P(5, 5))) << "one vertex is its own outline";
}

// Against the sum of angles over fine polylines.
TEST(Regions, AgreeWithPolylines) {
    Maker maker(23);
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const CFRegion region = round % 2 ? maker.Wild() : maker.Simple();
        const oracle::Polyline line = oracle::PointsOf(region, 9);
        const oracle::Extent extent = oracle::ExtentOf(line);
        const double size = std::max(extent.maxX - extent.minX, extent.maxY - extent.minY);
        const double slack = 1e-4 * size + 0.01;

        CFPoint low, high;
        region.GetRect(low, high);
        ASSERT_NEAR(low.x, extent.minX, slack);
        ASSERT_NEAR(low.y, extent.minY, slack);
        ASSERT_NEAR(high.x, extent.maxX, slack);
        ASSERT_NEAR(high.y, extent.maxY, slack);

        for (int k = 0; k < 12; ++k) {
            const CFPoint p = maker.Point();
            const double distance = oracle::DistanceTo(line, p.x, p.y);
            if (distance < slack) continue;
            const int inside = oracle::Winding(line, p.x, p.y) != 0;
            ASSERT_EQ(region.InRegion(p), inside) << p.x << "," << p.y;
            ASSERT_EQ(Point_Inside_Region(region, p.x, p.y, 0.001f), inside) << p.x << "," << p.y;
            if (std::fabs(distance - 50) > slack) {
                ASSERT_EQ(Point_Bordering_Region(region, p.x, p.y, 50), distance < 50) << p.x << "," << p.y;
                ASSERT_EQ(Point_Inside_Region(region, p.x, p.y, 50), inside && distance > 50);
            }
        }

        const oracle::Area area = oracle::AreaOf(line);
        ASSERT_NEAR(GetMianJi(region), std::fabs(area.signedArea), 2e-5 * size * size + 1);
        if (std::fabs(area.signedArea) > 0.05 * size * size) {
            for (const CFRegion& either : {region, Reversed(region)}) {
                const CFPoint centroid = GetXingXin(either);
                ASSERT_NEAR(centroid.x, area.x, 1e-3 * size);
                ASSERT_NEAR(centroid.y, area.y, 1e-3 * size);
            }
        }
        if (round % 2 == 0) {
            ASSERT_TRUE(IsNiShiZhen(region));
            ASSERT_FALSE(IsNiShiZhen(Reversed(region)));
        }
    }
}

TEST(Regions, WithoutAnArea) {
    EXPECT_TRUE(GetXingXin(CFRegion()) == P(0, 0));
    EXPECT_EQ(GetMianJi(CFRegion()), 0);
    // There and back on a slanted line, whose middle is no float: the mean of the vertices, not rounding's
    // idea.
    const CFRegion flat = Region({{100000, 100000, 0}, {100300, 100100, 0}, {100900.1f, 100300.03f, 0}});
    EXPECT_NEAR(GetXingXin(flat).x, 100400.03f, 0.05);
    EXPECT_NEAR(GetXingXin(flat).y, 100133.34f, 0.05);
    const CFPoint sliver = GetXingXin(Region({{0, 0, -0.004f}, {1000, 0, 0}}));  // one unit high
    EXPECT_NEAR(sliver.x, 500, 0.01);
    EXPECT_NEAR(sliver.y, -0.4, 0.001) << "two fifths of the way out";
    CDomainEdge circle;  // one edge that ends where it starts
    circle.type = 1;
    circle.start_x = 30;
    circle.center_x = 20;
    EXPECT_NEAR(CPointInDomain().Get_Area(1, &circle), 100 * kPi, 1e-3);
    EXPECT_TRUE(CPointInDomain().Point_In_Domain(1, &circle, 15, 0, 1));
    EXPECT_FALSE(CPointInDomain().Point_In_Domain(1, &circle, 10.5f, 0, 1));
    float x, y;
    CPointInDomain().Get_Centroid(1, &circle, x, y);
    EXPECT_EQ(x, 20);
}

TEST(Regions, Move) {
    Maker maker(53);
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const CFRegion region = maker.Simple();
        const CFPoint p = maker.Point(), q = p + P(300, 100);
        const double area = GetMianJi(region), length = GetZhouChang(region);
        CFRegion moved = region;
        moved.Rotate(p, 1);
        moved.Offset(P(1000, -70));
        ASSERT_NEAR(GetMianJi(moved), area, 1e-4 * area);
        ASSERT_TRUE(IsNiShiZhen(moved));
        moved.Mirror(p, q);
        ASSERT_NEAR(GetMianJi(moved), area, 1e-4 * area) << "arcs bulge to the same side of the outline";
        ASSERT_FALSE(IsNiShiZhen(moved));
        moved.Stretch(p, 2);
        ASSERT_NEAR(GetMianJi(moved), 4 * area, 1e-3 * area);
        ASSERT_NEAR(GetZhouChang(moved), 2 * length, 1e-3 * length);
    }
}

TEST(Regions, RectanglesMeetAsIntervalsDo) {
    Maker maker(29);
    for (int round = 0; round < 3000; ++round) {
        const auto next = [&] {
            return static_cast<float>(maker.Int(0, 5)) * 8000 + (maker.Int(0, 3) == 0 ? 0.0004f : 0);
        };
        const CFRect a(P(next(), next()), P(next(), next())), b(P(next(), next()), P(next(), next()));
        const bool meet = a.m_fMinX <= b.m_fMaxX && b.m_fMinX <= a.m_fMaxX && a.m_fMinY <= b.m_fMaxY &&
                          b.m_fMinY <= a.m_fMaxY;
        ASSERT_EQ(CFRegion(a).Intersect(CFRegion(b), 0), meet)
            << "round " << round << ": " << a.m_fMinX << "," << a.m_fMinY << "," << a.m_fMaxX << ","
            << a.m_fMaxY << " and " << b.m_fMinX << "," << b.m_fMinY << "," << b.m_fMaxX << "," << b.m_fMaxY;
    }
}

TEST(Regions, ShareAPoint) {
    const CFRegion inner(CFRect(400, 400, 600, 600)),
        tip = Region({{1000, 500, 0}, {1500, 0, 0}, {1500, 900, 0}});
    const CFRegion slope = Region({{0, 0, 0}, {1000, 0, 0}, {0, 1000, 0}});
    const struct {
        const char* name;
        CFRegion a, b;
        int areas, outlines;
    } rows[] = {
        {"one in the other", kSquare, inner, 1, 0},
        {"a tip on an edge", kSquare, tip, 1, 1},
        {"a tip on a slope", slope, Region({{500, 500, 0}, {900, 900, 0}, {800, 950, 0}}), 1, 1},
        {"beside a slope, in its box", slope, Region({{501, 500, 0}, {900, 900, 0}, {800, 950, 0}}), 0, 0},
        {"an arc's top on an edge", kDisc, CFRegion(CFRect(-100, 500, 100, 600)), 1, 1},
        {"above an arc, in its box", kDisc, CFRegion(CFRect(400, 400, 450, 450)), 0, 0},
        {"a point inside", kSquare, Region({{5, 5, 0}}), 1, 0},
        {"a point on the outline", kSquare, Region({{0, 5, 0}}), 1, 1},
        {"a section across", kSquare, Region({{-5, 5, 0}, {2000, 5, 0}}), 1, 1},
        {"itself", kDisc, kDisc, 1, 1},
        {"nothing", kSquare, CFRegion(), 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.a.Intersect(row.b, 0), row.areas) << row.name;
        EXPECT_EQ(row.b.Intersect(row.a, 0), row.areas) << row.name << ", exchanged";
        EXPECT_EQ(row.a.Intersect(row.b, 1), row.outlines) << row.name << ", outlines";
    }
    Maker maker(37);
    int met = 0, apart = 0;
    for (int round = 0; round < 400; ++round) {
        const CFRegion a = maker.Wild(), b = maker.Wild();
        const oracle::Polyline lineA = oracle::PointsOf(a, 6), lineB = oracle::PointsOf(b, 6);
        double least = 1e300;  // outlines that nearly touch are nobody's oracle
        for (const auto& p : lineA) least = std::min(least, oracle::DistanceTo(lineB, p.x, p.y));
        const bool cross = !oracle::Crossings(lineA, lineB).empty();
        if (!cross && least < 5) continue;
        const bool share = cross || oracle::Winding(lineB, lineA[0].x, lineA[0].y) != 0 ||
                           oracle::Winding(lineA, lineB[0].x, lineB[0].y) != 0;
        ASSERT_EQ(a.Intersect(b, 0), share) << "round " << round;
        ASSERT_EQ(a.Intersect(b, 1), cross) << "round " << round;
        ++(share ? met : apart);
    }
    EXPECT_GT(met, 50);
    EXPECT_GT(apart, 50);
}

TEST(Regions, PointsSharedWithAPiece) {
    const auto show = [](const CFRegion& region, const CFShape& shape) {
        CFPoint points[10];
        const int n = region.Intersect(shape, points);
        EXPECT_EQ(region.Intersect(shape, nullptr), n);
        std::string text = n < 0 ? "none" : "";
        for (int i = 0; i < n; ++i)
            text += std::to_string(std::lround(points[i].x)) + "," +
                    std::to_string(std::lround(points[i].y)) + " ";
        return text;
    };
    const struct {
        const char* name;
        const CFRegion& region;
        CFShape shape;
        const char* points;
    } rows[] = {
        {"through", kSquare, CFShape(P(-100, 500), P(1500, 500)), "0,500 1000,500 "},
        {"through, backwards", kSquare, CFShape(P(1500, 500), P(-100, 500)), "1000,500 0,500 "},
        {"through two corners: each once", kSquare, CFShape(P(-100, -100), P(1500, 1500)), "0,0 1000,1000 "},
        {"ends on an edge", kSquare, CFShape(P(300, 500), P(1000, 500)), "1000,500 "},
        {"inside", kSquare, CFShape(P(300, 500), P(900, 500)), "none"},
        {"far away", kSquare, CFShape(P(3000, 500), P(9000, 500)), "none"},
        {"along an edge: the two ends in common", kSquare, CFShape(P(200, 0), P(1500, 0)), "200,0 1000,0 "},
        {"beyond an edge on both sides", kSquare, CFShape(P(-200, 0), P(1500, 0)), "0,0 1000,0 "},
        {"a point of the outline", kSquare, CFShape(P(0, 400)), "0,400 "},
        {"a point inside", kSquare, CFShape(P(5, 400)), "none"},
        {"a circle over an edge, from its start on", kSquare, CFShape(P(0, 500), 300, 0, 2 * kPi),
         "0,800 0,200 "},
        {"a circle that touches an edge", kSquare, CFShape(P(-300, 500), 300, kPi, 2 * kPi), "0,500 "},
        {"an arc through two edges, clockwise", kSquare, CFShape(P(0, 0), 500, 2, -2.5f), "0,500 500,0 "},
        {"arc against arcs", kDisc, CFShape(P(600, 0), 500, 0, 2 * kPi), "300,400 300,-400 "},
        {"along an arc", kDisc, CFShape(P(0, 0), 500, kPi / 4, kPi / 4), "354,354 0,500 "},
        {"the whole circle: it ends where it starts", kDisc, CFShape(P(0, 0), 500, 1, 2 * kPi), "270,421 "},
        {"along an arc over the circle's seam", kCap, CFShape(P(0, 0), 500, 0, 2 * kPi), "354,354 354,-354 "},
        {"nothing", CFRegion(), CFShape(P(0, 0), P(1, 1)), "none"},
    };
    for (const auto& row : rows) EXPECT_EQ(show(row.region, row.shape), row.points) << row.name;

    CFRegion comb;  // more crossings than there is room for
    for (int i = 0; i < 20; ++i) comb.Add(CFShoot(static_cast<float>(i) * 10, i % 2 ? 100.0f : -100.0f, 0));
    CFPoint points[10];
    EXPECT_EQ(comb.Intersect(CFShape(P(-50, 1), P(500, 1)), points), 10);
    EXPECT_TRUE(
        std::is_sorted(points, points + 10, [](const CFPoint& a, const CFPoint& b) { return a.x < b.x; }));
}

TEST(Regions, PointsSharedWithAPieceAgreeWithPolylines) {
    Maker maker(41);
    int points = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const CFRegion region = maker.Simple();
        const CFPoint a = maker.Point(), b = maker.Point();
        const float c = maker.Half();
        if (a == b) continue;
        const oracle::Polyline outline = oracle::PointsOf(region, 8), path = oracle::PointsOf(a, b, c, 8);
        CFPoint found[10];
        const int n = region.Intersect(CFShape(a, b, c), found);
        ASSERT_NE(n, 0);
        for (int i = 0; i < n; ++i) {
            ASSERT_LT(oracle::DistanceTo(outline, found[i].x, found[i].y), 0.1);
            ASSERT_LT(oracle::DistanceTo(path, found[i].x, found[i].y), 0.3);
            ++points;
        }
        if (n == 10) continue;
        for (const oracle::Point& p : oracle::Crossings(outline, path)) {
            const bool near = std::any_of(found, found + std::max(n, 0), [&](const CFPoint& q) {
                return std::hypot(q.x - p.x, q.y - p.y) < 25;  // where they meet at a flat angle
            });
            ASSERT_TRUE(near) << "misses " << p.x << "," << p.y;
        }
    }
    EXPECT_GT(points, 150);
}

TEST(Turning, SumsToATurnRoundAnOutline) {
    const auto sum = [](const CFRegion& r) {
        double total = 0;
        for (int i = 0; i < r.GetSize(); ++i)
            total += GetShiLiangJiao(GetElement(r, i), GetElement(r, i + 1), GetElement(r, i + 2));
        return total;
    };
    EXPECT_NEAR(sum(kSquare), 2 * kPi, 1e-4);
    EXPECT_NEAR(sum(kDisc), 2 * kPi, 1e-4);
    EXPECT_NEAR(sum(Reversed(kDisc)), -2 * kPi, 1e-4);
    Maker maker(43);
    for (int round = 0; round < 300; ++round) {
        const CFRegion r = maker.Simple();
        ASSERT_NEAR(sum(r), 2 * kPi, 1e-3) << "round " << round;
        ASSERT_NEAR(sum(Reversed(r)), -2 * kPi, 1e-3) << "round " << round;
    }
    const CFPoint square[] = {P(0, 0), P(10, 0), P(10, 10), P(0, 10)};
    const CFPoint back[] = {P(0, 10), P(10, 10), P(10, 0), P(0, 0)};
    EXPECT_TRUE(IsNiShiZhen(square, 4));
    EXPECT_FALSE(IsNiShiZhen(back, 4));
    EXPECT_FALSE(IsNiShiZhen(square, 0));
    EXPECT_TRUE(kSquare.IsOrder());
    EXPECT_FALSE(Reversed(kSquare).IsOrder());
}

// At a reversal the two edges leave side by side; the sense is that of the true curves.
TEST(Turning, ReversalsAreDecidedByTheCurves) {
    const struct {
        const char* name;
        CFShoot a, b;
        CFPoint c;
        float turn;  // at the vertex
    } rows[] = {
        {"straight there and back", {0, 0, 0}, {1000, 0, 0}, P(0, 0), kPi},
        {"an arc that bends to the left, then straight back along its tangent",
         {0, 0, -0.1f},
         {1000, 0, 0},
         P(1000 - 995.004f, -99.8334f),
         -kPi},
        {"an arc that bends to the right, the same",
         {0, 0, 0.1f},
         {1000, 0, 0},
         P(1000 - 995.004f, 99.8334f),
         kPi},
        {"hardly bent: its chord decides", {0, 0, 0.004f}, {1000, 0, 0}, P(0, -1), -kPi},
        {"straight, then back on an arc", {0, 0, 0}, {1000, 0, -0.1f}, P(1000 - 995.004f, -99.8334f), -kPi},
        {"an arc, and back above it on another", {0, 0, 0.1f}, {1000, 0, 0.1f}, P(0, 199.6668f), kPi},
        {"an arc, and back below it on another", {0, 0, -0.1f}, {1000, 0, -0.1f}, P(0, -199.6668f), -kPi},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(GetShiLiangJiao(row.a, row.b, row.c) + 2 * row.a.c, row.turn, 1e-3) << row.name;
}

TEST(Measures, OfPartsAndVertices) {
    CFRegion five;
    for (int i = 0; i < 5; ++i) five.Add(CFShoot(static_cast<float>(i), 0, 0));
    EXPECT_EQ(GetElement(five, -1).x, 4);
    EXPECT_EQ(GetElement(five, 12).x, 2);
    EXPECT_EQ(GetElement(five, std::numeric_limits<int>::min()).x, 2);
    EXPECT_EQ(GetElement(CFRegion(), 3).x, 0);

    const CFShape arc(P(0, 0), 100, 0, kPi / 2), line(P(0, 0), P(3, 4));
    EXPECT_NEAR(GetFShoot(&arc, 0).c, -kPi / 4, 1e-6) << "leads along the anticlockwise arc";
    EXPECT_NEAR(GetFShoot(&arc, 1).c, kPi / 4, 1e-6) << "leads back";
    EXPECT_NEAR(GetFShoot(&arc, 1).y, 100, 1e-4);
    EXPECT_EQ(GetFShoot(&line, 0).c, 0);
    EXPECT_EQ(GetFShoot(&line, 1).c, 0);

    EXPECT_EQ(GetSanJiaoMianJi(P(0, 0), P(10, 0), P(0, 10)), 100) << "twice the area";
    EXPECT_EQ(GetXuanMianJi({0, 0, 0.0017f}, P(1000, 0)), 0) << "too flat to count";
    EXPECT_NEAR(GetXuanMianJi({-500, 0, -kPi / 2}, P(500, 0)), kPi * 125000, 1);
    EXPECT_NEAR(GetXuanMianJi({-500, 0, kPi / 2}, P(500, 0)), -kPi * 125000, 1) << "clockwise";
    for (const float c : {-0.0018f, -0.3f, -1.5f, -2.5f, 0.3f, 2.5f}) {
        const auto area = oracle::AreaOf(oracle::PointsOf(Region({{100, 200, c}, {1100, 900, 0}}), 13));
        const CFPoint centroid = GetXuanXingXin({100, 200, c}, P(1100, 900));
        EXPECT_NEAR(centroid.x, area.x, 0.5) << c;
        EXPECT_NEAR(centroid.y, area.y, 0.5) << c;
    }
    // The triangle counts twice and the segment once.
    EXPECT_NEAR(GetBianMianJi({-500, 0, -kPi / 2}, P(500, 0), P(0, 500)), 500000 + kPi * 125000, 1);
    EXPECT_NEAR(GetYangJiaoFromPoint(0, 0, 1, 0, 0, 1), -45, 1e-4);
    EXPECT_NEAR(GetYangJiaoFromPoint(0, 0, 0, 1, 1, 0), -135, 1e-4);
    EXPECT_NEAR(GetZhouChang(kSquare), 4000, 1e-3);
    EXPECT_NEAR(GetZhouChang(kDisc), 1000 * kPi, 0.1);
    EXPECT_NEAR(GetZhouChang(Reversed(kDisc)), 1000 * kPi, 0.1) << "measured as anticlockwise arcs";
    EXPECT_EQ(GetRegionRect(kDisc).m_fMaxY, 0) << "vertices alone";
    EXPECT_EQ(GetRegionRect(CFRegion()).m_fMaxX, 0);
    EXPECT_FALSE(Point_Inside_Region(kSquare, 0, 0, 0.01f)) << "a vertex borders";
    EXPECT_TRUE(Point_Bordering_Region(kSquare, 0, 0, 0.01f));
}

TEST(Measures, PerimeterIsThatOfNetLines) {
    Maker maker(59);
    for (int round = 0; round < 200; ++round) {
        const CFRegion region = maker.Wild();
        double sum = 0;
        for (int i = 0; i < region.GetSize(); ++i) {
            CGjNetLine* line = GetNetLineFromShoot(region[i], region[(i + 1) % region.GetSize()]);
            sum += line->GetLength();
            DeleteNetLineObject(line);
        }
        ASSERT_EQ(GetZhouChang(region), static_cast<float>(sum)) << "round " << round;
    }
}

TEST(Measures, SmallHelpers) {
    CArray<CFPoint, CFPoint> points;
    EXPECT_EQ(RemoveDuplicatePoint(points), 0);
    for (const float x : {0.0f, 0.009f, 0.012f, 5.0f, 0.0f}) points.Add(P(x, 0));
    EXPECT_EQ(RemoveDuplicatePoint(points), 4) << "neighbours only: the last comes back to the first";
    EXPECT_EQ(points[1].x, 0.012f) << "compared with the last one kept";

    CArray<float, float> levels;
    for (const float v : {100.0f, 104.9f, 90.0f, 105.0f, kNaN, 98.0f, 200.0f}) Add_Into_Array(&levels, v);
    std::string text;
    for (const float v : levels) text += std::to_string(std::lround(v)) + " ";
    EXPECT_EQ(text, "90 100 105 200 ");

    EXPECT_EQ(GetDownModulus(8500, 8000), 8000);
    EXPECT_EQ(GetDownModulus(-1, 8000), -8000);
    EXPECT_EQ(GetDownModulus(-8000, 8000), -16000) << "one step further down";
    EXPECT_EQ(GetDownModulus(5, 0), 5);
}

TEST(Stored, OutlinesComeBack) {
    CFRegion out = kDisc, in;
    CArchive to;
    out.Serialize(to);
    const std::string bytes = to.Stored();
    ASSERT_EQ(bytes.size(), 4u + 2 * 16);
    CArchive from{std::string_view(bytes)};
    in.Serialize(from);
    ASSERT_EQ(in.GetSize(), 2);
    EXPECT_EQ(in[1].x, 500);
    EXPECT_EQ(in[1].c, -kPi / 2);

    std::string torn = bytes.substr(0, 30);
    torn[3] = '\x7f';  // promises two thousand million vertices
    CArchive bad{std::string_view(torn)};
    in.Serialize(bad);
    EXPECT_EQ(in.GetSize(), 1) << "what was there, and nothing made up";
}

// Whatever the floats are, nothing hangs, overflows or indexes astray (run under the sanitizers).
TEST(Regions, SurviveAnyFloats) {
    std::mt19937 rng(47);
    std::uniform_int_distribution<std::uint32_t> bits;
    const float odd[] = {0, kNaN, 1e38f, -1e38f, 3.4e38f, 1e-40f, std::numeric_limits<float>::infinity(),
                         1, -1,   1e9f};
    const auto any = [&] {
        return bits(rng) % 3 ? odd[bits(rng) % std::size(odd)] : std::bit_cast<float>(bits(rng));
    };
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        CFRegion a, b;
        for (unsigned n = bits(rng) % 5; n > 0; --n) a.Add(CFShoot(any(), any(), any()));
        for (unsigned n = bits(rng) % 5; n > 0; --n) b.Add(CFShoot(any(), any(), any()));
        CFShape shape(P(any(), any()), any(), any(), any());
        if (round % 2) shape = CFShape(P(any(), any()), P(any(), any()), any());
        CFPoint points[10], low, high;
        const int n = a.Intersect(shape, points);
        ASSERT_TRUE(n == -1 || (n > 0 && n <= 10));
        a.Intersect(b, 0);
        a.GetRect(low, high);
        shape.GetRect(low, high);
        a.InRegion(P(any(), any()));
        a.IsOrder();
        IsNiShiZhen(a);
        GetZhouChang(a);
        Point_Inside_Region(a, any(), any(), any());
        ASSERT_GE(GetMianJi(a), 0);
        const CFPoint centroid = GetXingXin(a);
        ASSERT_TRUE(std::isfinite(centroid.x) && std::isfinite(centroid.y));
    }
}
