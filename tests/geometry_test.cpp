// Points, angles and single pieces of outlines.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <type_traits>

#include "geometry/angles.h"
#include "geometry/fline.h"
#include "geometry/frect.h"
#include "geometry/fshape.h"
#include "geometry/fshoot.h"
#include "geometry/net_arc.h"
#include "platform/saturate.h"
#include "platform/win_types.h"
#include "outline_oracle.h"

static_assert(std::is_trivially_copyable_v<CFPoint> && sizeof(CFPoint) == 12);
static_assert(std::is_trivially_copyable_v<CFShoot> && sizeof(CFShoot) == 16);
static_assert(std::is_trivially_copyable_v<CFShape> && sizeof(CFShape) == 24);
static_assert(std::is_trivially_copyable_v<CFRect> && sizeof(CFRect) == 16);

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kPi = std::numbers::pi_v<float>;

CFPoint P(float x, float y) { return {x, y, 0}; }

}  // namespace

TEST(Points, EqualAndUnequalAtOnce) {
    const CFPoint a(0, 0, 0), near(0.0005f, 0, 0), atTolerance(0.001f, 0, 0);
    EXPECT_TRUE(a == near);
    EXPECT_TRUE(a != near);
    EXPECT_FALSE(a == atTolerance) << "the comparison is strict";
    EXPECT_FALSE(a != a);
    EXPECT_FALSE(a == CFPoint(0, 0, 1)) << "z counts";
    EXPECT_FALSE(a.Similar(a, 0)) << "strictly less than 0 nobody is";
    EXPECT_TRUE(CFPoint(1, 2, 3).Contain(CFPoint(1, 5, 3), CFPoint(0, 2, 3)))
        << "bounds belong, in any order";
    EXPECT_FALSE(CFPoint(1, 2, 4).Contain(CFPoint(1, 5, 3), CFPoint(0, 2, 3)));
}

TEST(Points, Move) {
    EXPECT_NEAR(CFPoint(2, 1, 0).Rotate(P(1, 1), kPi / 2).y, 2, 1e-6);
    EXPECT_TRUE(CFPoint(7, 8, 0).Rotate(P(7, 8), 1) == P(7, 8));
    // The distance in space is taken for the radius: 5 for (3, 0, 4).
    EXPECT_NEAR(CFPoint(3, 0, 4).Rotate(CFPoint(), kPi / 2).y, 5, 1e-5);
    const CFPoint stretched = CFPoint(3, 5, 7).Stretch(CFPoint(1, 1, 1), 2);
    EXPECT_TRUE(stretched == CFPoint(5, 9, 13));
    EXPECT_TRUE(CFPoint(3, 4, 0).Mirror(P(0, 0), P(1, 1)) == P(4, 3));

    std::mt19937 rng(5);
    std::uniform_real_distribution<float> any(-1000, 1000);
    for (int round = 0; round < 300; ++round) {
        const CFPoint p = P(any(rng), any(rng)), a = P(any(rng), any(rng)), b = P(any(rng), any(rng));
        CFPoint q = p;
        q.Mirror(a, b);
        ASSERT_NEAR(q.Distance(a), p.Distance(a), 1e-2) << "round " << round;
        ASSERT_NEAR(q.Distance(b), p.Distance(b), 1e-2) << "round " << round;
        q.Mirror(a, b);
        ASSERT_LT(q.Distance(p), 1e-2) << "round " << round;
    }
}

TEST(Vertices, LineArcAndCircle) {
    const struct {
        const char* name;
        float c;
        int line, arc, circle;
    } rows[] = {{"straight", 0, 1, 0, 0},        {"minus zero", -0.0f, 1, 0, 0},
                {"an arc", -1, 0, 1, 0},         {"a turn", 6.283185307f, 0, 1, 1},
                {"over a turn", -6.3f, 0, 1, 1}, {"not a number", kNaN, 0, 1, 0}};
    for (const auto& row : rows) {
        const CFShoot s(1, 2, row.c);
        EXPECT_EQ(s.IsLine(), row.line) << row.name;
        EXPECT_EQ(s.IsArc(), row.arc) << row.name;
        EXPECT_EQ(s.IsCircle(), row.circle) << row.name;
    }
}

TEST(ExchangeRecords, SameWithinTheTolerance) {
    const CFPLine line(P(0, 0), P(10, 0)), reversed(P(10, 0), P(0, 0));
    EXPECT_TRUE(IsSameFPLine(line, CFPLine(P(0, 0.9f), P(10.9f, 0)), 1));
    EXPECT_FALSE(IsSameFPLine(line, CFPLine(P(0, 1), P(10, 0)), 1)) << "strict";
    EXPECT_FALSE(IsSameFPLine(line, reversed, 1));
    EXPECT_TRUE(IsSameFPLine(line, reversed, 11)) << "a line shorter than the tolerance";
    EXPECT_TRUE(IsSameFPArc(CFPArc(0, 0, 5, 10, 20), CFPArc(0, 0, 5.4f, 10.4f, 19.6f), 0.5f));
    EXPECT_FALSE(IsSameFPArc(CFPArc(0, 0, 5, 10, 20), CFPArc(0, 0, 5, 10, 20.5f), 0.5f)) << "degrees, strict";
}

TEST(Rectangles, UnionsAndPoints) {
    const CFRect a(0, 0, 10, 20);
    const CFRect joined = a | CFRect(P(30, -5), P(25, 5));
    EXPECT_EQ(joined.m_fMinX, 0);
    EXPECT_EQ(joined.m_fMinY, -5);
    EXPECT_EQ(joined.m_fMaxX, 30);
    EXPECT_EQ(joined.m_fMaxY, 20);
    EXPECT_EQ((CFRect() | CFRect(5, 5, 6, 6)).m_fMinX, 0) << "a default box is the origin, not nothing";
    EXPECT_TRUE(a.FpInFRect(10, 20, 0));
    EXPECT_TRUE(a.FpInFRect(P(-1, 0), 1));
    EXPECT_FALSE(a.FpInFRect(10.01f, 5, 0));
    EXPECT_FALSE(a.FpInFRect(kNaN, 5, 1));
}

TEST(Angles, WithinOneTurn) {
    const struct {
        const char* name;
        float in, out;
    } rows[] = {
        {"just below 0 is 0", -0.000001f, 0},
        {"a turn", 6.2831855f, 0},
        {"two turns", 12.566371f, 0},
        {"a quarter back", -kPi / 2, 4.712389f},
        {"inside", 3, 3},
        {"just not 0", 2e-5f, 2e-5f},
        {"infinite", kInf, 0},
        {"not a number", kNaN, 0},
    };
    for (const auto& row : rows) EXPECT_FLOAT_EQ(Get2PIAngle(row.in), row.out) << row.name;
    std::mt19937 rng(7);
    std::uniform_int_distribution<std::uint32_t> bits;
    for (int round = 0; round < 20000; ++round) {
        const auto in = std::bit_cast<float>(bits(rng));
        const float out = Get2PIAngle(in);  // ends, however large the angle
        ASSERT_TRUE(out >= 0 && out < 6.2831855f) << "round " << round << ", angle " << in;
        if (std::fabs(in) < 100) {
            ASSERT_NEAR(std::sin(out), std::sin(in), 2e-5) << "round " << round;
            ASSERT_NEAR(std::cos(out), std::cos(in), 2e-5) << "round " << round;
        }
    }
}

TEST(Angles, DirectionFromTheFirstPointToTheSecond) {
    const struct {
        const char* name;
        float x1, y1, x2, y2, angle;
    } rows[] = {
        {"right", 0, 0, 5, 0, 0},
        {"up", 0, 0, 0, 5, kPi / 2},
        {"left", 5, 0, 0, 0, kPi},
        {"down", 0, 5, 0, 0, 4.712389f},
        {"a hair below right folds to 0", 0, 0, 1000000, -1, 0},
        {"less than a hair below", 0, 0, 100000, -2, 6.2831655f},
        {"one point", 3, 4, 3, 4, 0},
        {"one point, of two signs", 0.0f, 0.0f, -0.0f, -0.0f, 0},
        {"not a number", kNaN, 0, 1, 1, 0},
    };
    for (const auto& r : rows) EXPECT_FLOAT_EQ(get_line_angle(r.x1, r.y1, r.x2, r.y2), r.angle) << r.name;
}

TEST(Angles, ArcOfANetLine) {
    const net_arc::Arc quarter = net_arc::FromBulge(1000, 0, 0, 1000, -45);
    EXPECT_EQ(quarter.cx, 0) << "exactly";
    EXPECT_EQ(quarter.cy, 0) << "exactly";
    EXPECT_EQ(quarter.r, 1000);
    EXPECT_EQ(quarter.start, 0);
    EXPECT_FLOAT_EQ(quarter.end, kPi / 2);
    const net_arc::Arc half = net_arc::FromBulge(100, 0, 0, 0, -90);
    EXPECT_NEAR(half.cx, 50, 1e-4);
    EXPECT_NEAR(half.cy, 0, 1e-4);

    std::mt19937 rng(11);
    std::uniform_real_distribution<float> any(-20000, 20000), degrees(-170, -2);
    for (int round = 0; round < 2000; ++round) {
        const CFPoint a = P(any(rng), any(rng)), b = P(any(rng), any(rng));
        const float bulge = degrees(rng);
        const net_arc::Arc arc = net_arc::FromBulge(a.x, a.y, b.x, b.y, bulge);
        // The ends lie on the circle, and the arc in between turns by twice the bulge.
        ASSERT_NEAR(get_dist(arc.cx, arc.cy, b.x, b.y) / arc.r, 1, 1e-4) << "round " << round;
        ASSERT_NEAR(arc.end - arc.start, -2 * bulge * kPi / 180, 2e-3) << "round " << round;
    }
}

TEST(Conversion, Saturates) {
    EXPECT_EQ(SaturatedInt(2.9), 2);
    EXPECT_EQ(SaturatedInt(-2.9), -2);
    EXPECT_EQ(SaturatedInt(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(SaturatedInt(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(SaturatedInt(kNaN), 0);
    EXPECT_EQ(SaturatedInt(300, 0, 255), 255);
    EXPECT_EQ(SaturatedInt64(kInf), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(SaturatedInt64(9223372036854775808.0), std::numeric_limits<std::int64_t>::max());
}

TEST(Conversion, DeviceRectanglesReachFromEndToEnd) {
    constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
    CRect all(kLow, kLow, kHigh, kHigh);
    EXPECT_EQ(all.Width(), kHigh);
    EXPECT_EQ(all.Height(), kHigh);
    EXPECT_EQ(all.CenterPoint(), CPoint(-1, -1));
    EXPECT_EQ(CRect(kHigh, kHigh, kLow, kLow).Width(), kLow) << "not normalised";
    EXPECT_EQ(CRect(-3, 10, 2, 20).CenterPoint(), CPoint(-1, 15));
    all.InflateRect(5, kHigh);
    EXPECT_EQ(all, CRect(kLow, kLow, kHigh, kHigh));
    all.InflateRect(kLow, -1);
    EXPECT_EQ(all, CRect(0, kLow + 1, -1, kHigh - 1));
    CPoint p(kHigh - 1, kLow);
    p.Offset(5, -5);
    EXPECT_EQ(p, CPoint(kHigh, kLow));
}

TEST(Pieces, OfTwoEndsAndHalfAngle) {
    const struct {
        const char* name;
        CFShape piece;
        float x, y, r, b;
    } rows[] = {
        {"quarter, anticlockwise", CFShape(P(1000, 0), P(0, 1000), -kPi / 4), 0, 0, 1000, kPi / 2},
        {"quarter, clockwise", CFShape(P(1000, 0), P(0, 1000), kPi / 4), 1000, 1000, 1000, -kPi / 2},
        {"three quarters", CFShape(P(1000, 0), P(0, -1000), -3 * kPi / 4), 0, 0, 1000, 1.5f * kPi},
        {"half", CFShape(P(0, 0), P(10, 0), kPi / 2), 5, 0, 5, -kPi},
        {"straight", CFShape(P(1, 2), P(4, 6), 0.0f), 1, 2, 5, 0},
        {"too flat for an arc", CFShape(P(1, 2), P(4, 6), 0.9e-7f), 1, 2, 5, 0},
        {"not a number", CFShape(P(1, 2), P(4, 6), kNaN), 1, 2, 5, 0},
        {"equal ends", CFShape(P(1, 2), P(1, 2), 0.5f), 1, 2, 0, 0},
        {"a turn: circle about the middle", CFShape(P(0, 0), P(10, 0), -6.2831855f), 5, 0, 5, 12.566371f},
        {"through a third point", CFShape(P(1000, 0), P(0, 1000), P(707.1068f, 707.1068f)), 0, 0, 1000,
         kPi / 2},
        {"through one on the far side", CFShape(P(1000, 0), P(0, 1000), P(-707.1068f, -707.1068f)), 0, 0,
         1000, -1.5f * kPi},
        {"collinear", CFShape(P(0, 0), P(10, 0), P(5, 0)), 0, 0, 10, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_NEAR(row.piece.x, row.x, 1e-3);
        EXPECT_NEAR(row.piece.y, row.y, 1e-3);
        EXPECT_NEAR(row.piece.r, row.r, 1e-3);
        EXPECT_NEAR(row.piece.b, row.b, 1e-5);
    }
    EXPECT_TRUE(CFShape(P(1, 2), P(1, 2)).IsPoint()) << "equal points are a point and no line";
    EXPECT_TRUE(CFShape(P(0, 0), P(10, 0), 6.2831855f).IsCircle());
}

TEST(Pieces, WithARadiusBelowZero) {
    CFShape s(P(0, 0), -10, 0, kPi / 2);
    EXPECT_NEAR(s.GetA(), kPi, 1e-6);
    EXPECT_EQ(s.GetR(), 10);
    EXPECT_NEAR(s.GetStartPoint().x, -10, 1e-5);
    s.SetA(1);
    EXPECT_NEAR(s.GetA(), 1 + 2 * kPi, 1e-5) << "pi is added on both ways";
    s.SetR(4);
    EXPECT_EQ(s.r, -4);
}

TEST(Pieces, MiddleDistanceAndSide) {
    const CFShape line(P(0, 0), P(10, 0)), circle(P(5, 5), 2, 0, 6.2831855f);
    EXPECT_NEAR(line.Distance(P(50, 3)), 3, 1e-5) << "to the endless line";
    EXPECT_NEAR(CFShape(P(0, 0), 10, 0, 1).Distance(P(-13, 0)), 3, 1e-5) << "to the whole circle";
    EXPECT_TRUE(circle.GetMiddlePoint() == P(5, 7)) << "the top";
    EXPECT_TRUE(line.AtLeft(P(3, 0.5f)));
    EXPECT_FALSE(line.AtLeft(P(3, 0))) << "strictly";
    EXPECT_TRUE(CFShape(P(5, 5), P(5, 15)).AtLeft(P(0, 0)));
}

TEST(Pieces, AgreeWithTheirPoints) {
    std::mt19937 rng(13);
    std::uniform_int_distribution<int> lattice(-8, 8), half(-30, 30);
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const auto next = [&] {
            return P(static_cast<float>(lattice(rng)) * 100, static_cast<float>(lattice(rng)) * 100);
        };
        const CFPoint a = next(), b = next();
        if (a == b) continue;
        const float c = static_cast<float>(half(rng)) / 10;
        const CFShape piece(a, b, c);
        const auto points = oracle::PointsOf(a, b, c, 12);
        const double slack = 2e-6 * piece.GetR() + 1e-2;
        ASSERT_LT(piece.GetStartPoint().Distance(a), slack);
        ASSERT_LT(piece.GetEndPoint().Distance(b), slack);
        // Through any point of it the same piece again.
        const auto& mid = points[points.size() / 3];
        const CFShape again(a, b, P(static_cast<float>(mid.x), static_cast<float>(mid.y)));
        if (std::fabs(c) > 0.05f) {
            ASSERT_NEAR(again.b, piece.b, 1e-3);
        }

        CFPoint low, high;
        piece.GetRect(low, high);
        const oracle::Extent extent = oracle::ExtentOf(points);
        ASSERT_NEAR(low.x, extent.minX, slack + 0.02);
        ASSERT_NEAR(low.y, extent.minY, slack + 0.02);
        ASSERT_NEAR(high.x, extent.maxX, slack + 0.02);
        ASSERT_NEAR(high.y, extent.maxY, slack + 0.02);

        for (int k = 0; k < 10; ++k) {
            const CFPoint p = next();
            const double distance = oracle::DistanceTo(points, p.x, p.y);
            if (std::fabs(distance - 150) > slack + 0.05) {
                ASSERT_EQ(piece.OnShape(p, 150), distance < 150) << p.x << "," << p.y << " c " << c;
            }
        }
        CFShape mirrored = piece;
        mirrored.Mirror(P(17, 3), P(300, 900)).Mirror(P(17, 3), P(300, 900));
        ASSERT_LT(mirrored.GetStartPoint().Distance(a), 10 * slack);
        ASSERT_LT(mirrored.GetEndPoint().Distance(b), 10 * slack);
    }
    const CFShape on(P(0, 0), P(1000, 0));
    EXPECT_TRUE(on.OnShape(P(1003, 4), 5)) << "the tolerance belongs";
    EXPECT_FALSE(on.OnShape(P(1003, 4.01f), 5));
    EXPECT_FALSE(on.OnShape(P(kNaN, 0), 5));
}
