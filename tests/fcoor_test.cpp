// The transform between model and device.
#include "geometry/fcoor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr int kLimit = 1 << 30;

}  // namespace

TEST(ViewTransform, Rounds) {
    const CFCoor c;
    const struct {
        double length;
        int device;
    } rows[] = {{0.4, 0}, {0.5, 1},   {-0.5, 0},      {-1.4, 0},        {-1.5, -1},
                {7, 7},   {-20, -19}, {1e30, kLimit}, {-1e30, -kLimit}, {double{kNaN}, 0}};
    for (const auto& row : rows) EXPECT_EQ(c.FPtoDP(row.length), row.device) << row.length;
    EXPECT_EQ(c.FPtoDP(CFPoint(10, 20, 0)), CPoint(10, -19)) << "towards zero less one half below zero";
    EXPECT_EQ(c.FP2toDP(CFPoint(10, 20, 0)), CPoint(10, -19));
    EXPECT_TRUE(c.DPtoFP(CPoint(10, -20)) == CFPoint(10, 20, 0));
    EXPECT_EQ(CFCoor(CFPoint(), 2, 0).FP2toDP(CFPoint(10, 20, 0)), CPoint(20, 40)) << "not reversed";
}

TEST(ViewTransform, Saturates) {
    CFCoor c;
    EXPECT_EQ(c.FPtoDP(CFPoint(3e38f, -3e38f, 0)), CPoint(kLimit, kLimit));
    EXPECT_EQ(c.FP2toDP(CFPoint(-kInf, kInf, 0)), CPoint(-kLimit, -kLimit));
    EXPECT_EQ(c.FP2toDP(CFPoint(kNaN, kNaN, 0)), CPoint(0, 0));
    c.SetScale(0);
    EXPECT_EQ(c.FPtoDP(CFPoint(5, 5, 0)), CPoint(0, 0));
    const CFPoint back = c.DPtoFP(CPoint(5, 5));  // nothing to divide by: no number, no crash
    EXPECT_FALSE(std::isfinite(back.x));
}

TEST(ViewTransform, ConstructorsDiffer) {
    const CFCoor plan;
    const CFCoor elevation(CFPoint(1, 2, 3), 1, 1);
    EXPECT_EQ(plan.m_fBeta, 1.5707964f);
    EXPECT_EQ(elevation.m_fBeta, 0);
    EXPECT_EQ(elevation.GetOrigin().z, 0);
    EXPECT_EQ(elevation.PointTouYing(CFPoint(5, 6, 7)).y, 7) << "the model's z is the vertical";
    float x, y, z;
    elevation.FanTouYing2Dto3D(4, 9, 0, 0, x, y, z);
    EXPECT_EQ(z, 9);
    EXPECT_EQ(x, 4);
    CFCoor kept(CFPoint(1, 2, 3), 1, 1);
    kept.m_fBeta = 0.5f;
    kept.m_cOrigin.z = 8;
    kept.Init(CFPoint(4, 5, 6), 2, 256);
    EXPECT_EQ(kept.m_fBeta, 0.5f) << "Init leaves the angles";
    EXPECT_EQ(kept.GetOrigin().z, 8) << "and the origin's z";
    EXPECT_TRUE(kept.IsReverseY()) << "any value but 0";
}

// The plan's sine and cosine are written down; they must be what the functions give.
TEST(ViewTransform, PlanAnglesAreThoseOfTheFunctions) {
    const CFCoor c;
    volatile float quarter = 1.5707964f;
    float u, v;
    c.TouYing3Dto2D(0, 1, 0, 0, quarter, u, v);
    EXPECT_EQ(v, std::sin(quarter));
    c.TouYing3Dto2D(0, 0, 1, 0, quarter, u, v);
    EXPECT_EQ(v, std::cos(quarter));
    c.TouYing3Dto2D(1, 0, 0, quarter, quarter, u, v);
    EXPECT_EQ(u, std::cos(quarter));
    EXPECT_EQ(v, -1);
}

TEST(ViewTransform, ThereAndBack) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<float> model(-30000, 30000), scale(0.01f, 3), angle(-3, 3);
    std::uniform_int_distribution<int> device(-3000, 3000);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        CFCoor c(CFPoint(model(rng), model(rng), 0), scale(rng), round % 2);
        c.m_fBeta = 1.5707964f;
        const CPoint p(device(rng), device(rng));
        // Values below zero are cut by up to one.
        const CPoint plane = c.FP2toDP(c.DPtoFP(p)), plan = c.FPtoDP(c.DPtoFP3(p));
        for (const CPoint& q : {plane, plan}) {
            ASSERT_LE(std::abs(q.x - p.x), 1);
            ASSERT_LE(std::abs(q.y - p.y), 1);
        }
        c.m_fAlpha = angle(rng);
        c.m_fBeta = angle(rng);
        if (std::fabs(std::sin(c.m_fBeta)) < 0.1f || std::fabs(std::sin(c.m_fAlpha)) < 0.1f) continue;
        const CPoint tilted = c.FPtoDP(c.DPtoFP3(p));
        ASSERT_LE(std::abs(tilted.x - p.x), 2);
        ASSERT_LE(std::abs(tilted.y - p.y), 2);
    }
}

TEST(ViewTransform, RectanglesHoldTheirCorners) {
    std::mt19937 rng(19);
    std::uniform_real_distribution<float> model(-3000, 3000), angle(-3, 3);
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        CFCoor c(CFPoint(model(rng), model(rng), 0), 0.5f, round % 2);
        c.m_fAlpha = angle(rng);
        c.m_fBeta = angle(rng);
        const CFRect rect(CFPoint(model(rng), model(rng), 0), CFPoint(model(rng), model(rng), 0));
        const CRect box = c.FPtoDP(rect);
        ASSERT_LE(box.left, box.right);
        ASSERT_LE(box.top, box.bottom);
        for (const float x : {rect.m_fMinX, rect.m_fMaxX})
            for (const float y : {rect.m_fMinY, rect.m_fMaxY}) {
                const CPoint p = c.FPtoDP(CFPoint(x, y, 0));
                ASSERT_TRUE(p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom);
            }
        const CFRect back = c.DPtoFP(CRect(10, 40, -20, 5));
        ASSERT_LE(back.m_fMinX, back.m_fMaxX);
        ASSERT_LE(back.m_fMinY, back.m_fMaxY);
    }
}
