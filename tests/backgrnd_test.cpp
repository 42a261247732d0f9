// The background grid: texts of spacings, its extent, its pixels.
#include "fields/backgrnd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "geometry/fcoor.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "tests/file_fixtures.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr COLORREF kGrey = RGB(0xC0, 0xC0, 0xC0);

/// The settings of the profile, which come back.
struct Profile {
    CTvoProile before = g_cTvoProfile;
    ~Profile() { g_cTvoProfile = before; }
};

std::string Show(const CFRect& r) {
    CString s;
    s.Format("%g %g %g %g", static_cast<double>(r.m_fMinX), static_cast<double>(r.m_fMinY),
             static_cast<double>(r.m_fMaxX), static_cast<double>(r.m_fMaxY));
    return s.Std();
}

std::vector<float> Positions(const CBackgrnd& grid, int axis) {
    std::vector<float> out{axis == 0 ? grid.m_fX0 : axis == 1 ? grid.m_fY0 : grid.m_fZ0};
    CArray<float, float> spacings;
    grid.GetJianJu(axis, spacings);
    for (const float spacing : spacings) out.push_back(out.back() + spacing);
    return out;
}

template <class Each>
void ForEachPoint(const CBackgrnd& grid, bool withZ, Each each) {
    const auto xs = Positions(grid, 0), ys = Positions(grid, 1);
    const auto zs = withZ ? Positions(grid, 2) : std::vector<float>{grid.m_fZ0};
    for (const float x : xs)
        for (const float y : ys)
            for (const float z : zs) each(CFPoint(x, y, z));
}

CFRect PlainFrect(const CBackgrnd& grid, const CFCoor& coor) {
    const CFPoint origin = coor.PointTouYing({grid.m_fX0, grid.m_fY0, grid.m_fZ0});
    CFRect rect(origin, origin);
    ForEachPoint(grid, grid.m_nMode == 0, [&](const CFPoint& point) {
        const CFPoint p = coor.PointTouYing(point);
        rect = rect | CFRect(p, p);
    });
    return rect;
}

// As it is told: point by point, then line by line.
void PlainDraw(const CBackgrnd& grid, CDC& dc, const CFCoor& coor, int mode) {
    const COLORREF background = g_cTvoProfile.m_crBackground;
    const COLORREF color = mode == 1 ? background : g_cTvoProfile.m_crGrid;
    ForEachPoint(grid, true, [&](const CFPoint& point) {
        const CPoint p = coor.FPtoDP(point);
        const COLORREF pixel = dc.GetPixel(p);
        if (mode == 0 && pixel == background) dc.SetPixel(p, color);
        if (mode != 0 && pixel == kGrey) dc.SetPixel(p, color);
    });
    if (grid.m_nMode != 0) return;
    CPen pen(PS_SOLID, 1, color);
    CPen* const old = dc.SelectObject(&pen);
    const auto line = [&](const CFPoint& from, const CFPoint& to) {
        dc.MoveTo(coor.FPtoDP(from));
        dc.LineTo(coor.FPtoDP(to));
    };
    const auto xs = Positions(grid, 0), ys = Positions(grid, 1), zs = Positions(grid, 2);
    for (const float x : xs) {
        line({x, ys[0], zs[0]}, {x, ys.back(), zs[0]});
        line({x, ys[0], zs[0]}, {x, ys[0], zs.back()});
    }
    for (const float y : ys) {
        line({xs[0], y, zs[0]}, {xs.back(), y, zs[0]});
        line({xs[0], y, zs[0]}, {xs[0], y, zs.back()});
    }
    for (const float z : zs) {
        line({xs[0], ys[0], z}, {xs.back(), ys[0], z});
        line({xs[0], ys[0], z}, {xs[0], ys.back(), z});
    }
    dc.SelectObject(old);
}

/// Texts, origins and views from the plain to the absurd.
struct Chance {
    std::mt19937 rng;

    bool In(unsigned n) { return rng() % n == 0; }
    template <class T>
    T Of(std::initializer_list<T> values) {
        return values.begin()[rng() % values.size()];
    }
    float Number(float reach) { return (static_cast<float>(rng() % 2001) / 1000 - 1) * reach; }
    float Extended(float ordinary) {
        return In(20) ? Of({kNaN, kInf, -kInf, 3e38f, -3e38f, 1e30f, 8e9f}) : ordinary;
    }
    CString Text() {
        return Of({"0*0", "6*4", "0.004*30", "0.0003*80", "1.7*3;2.3*2", "-0.009*5;0.03*3",
                   "0.05*2;-0.1*3;0.02", "0.01*2;0*3;0.01", "*", "", "0.02*3;1e33*2;-1e33*3",
                   "1.1e35*3;-1e35*9;0.01", "0.01*9;5000*2"});
    }
    CBackgrnd Grid() {
        CBackgrnd grid;
        grid.m_nMode = static_cast<int>(rng() % 2);
        for (float* origin : {&grid.m_fX0, &grid.m_fY0, &grid.m_fZ0})
            *origin = Extended(Of({0.0f, Number(30)}));
        for (CString* text : {&grid.m_strKuaX, &grid.m_strKuaY, &grid.m_strKuaZ}) *text = Text();
        return grid;
    }
    CFCoor View() {
        CFCoor coor;
        const float scale = Of({1.0f, 1.0f, 0.3f, 0.05f, 0.002f, 7.0f, -1.0f});
        coor.Init(CFPoint(Number(30) - 20, Number(30) + 30, 0), scale, !In(4));
        if (In(10)) coor.SetScale(Of({0.0f, kNaN, kInf, 1e-36f, 3e38f, 1e12f}));
        if (In(20)) coor.SetOrigin(CFPoint(Extended(kInf), Extended(0), 0));
        coor.m_fAlpha = Of({0.0f, -0.0f, 1.5707964f, 3.1415927f, Number(3), Number(3), Extended(0.5f)});
        coor.m_fBeta = Of({1.5707964f, 1.5707964f, 0.0f, -1.5707964f, Number(3), Number(3), Extended(0.0f)});
        return coor;
    }
    /// At the end of the floats, seen from far enough to be within the picture; sums overflow on the way.
    void MakeHuge(CBackgrnd& grid, CFCoor& coor) {
        for (float* origin : {&grid.m_fX0, &grid.m_fY0, &grid.m_fZ0}) *origin = Number(3.4e38f);
        for (CString* text : {&grid.m_strKuaX, &grid.m_strKuaY, &grid.m_strKuaZ})
            *text = Of({"6e34*7", "-9e34*5", "2e35;-1e35*4", "0*0"});
        coor.Init(CFPoint(0, 0, 0), 1e-37f, static_cast<int>(rng() % 2));
        coor.m_fBeta = Of({0.0f, 0.0f, -0.0f, coor.m_fBeta});
    }
};

}  // namespace

TEST(Backgrnd, TextsOfSpacings) {
    const struct {
        const char* text;
        int result, count;
        float last;
    } rows[] = {
        {"6*40", 1, 40, 6000},
        {"6.0*10", 1, 10, 6000},
        {"2.5", 1, 1, 2500},
        {"0*0", 1, 0, 0},
        {"", 1, 0, 0},
        {" 3*2 ; 4.5*1; 1 ", 1, 4, 1000},
        {"*5", 0, 0, 0},
        {"6*", 0, 0, 0},
        {"6*2;6*;7*3", 0, 2, 6000},
        {"6*-3", 1, 0, 0},
        {"-1.5*2", 1, 2, -1500},
        {"abc", 1, 1, 0},
        {"1*2000000000", 1, CBackgrnd::kMaxPositions - 1, 1000},
        {"1*99998;2*99999999999", 1, CBackgrnd::kMaxPositions - 1, 2000},
        {"1e39*3;nan*2;2*1", 1, 1, 2000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        CArray<float, float> out;
        EXPECT_EQ(CBackgrnd().Get_Kua_Data(row.text, out), row.result);
        EXPECT_EQ(out.GetSize(), row.count);
        EXPECT_EQ(out.IsEmpty() ? 0 : out[out.GetUpperBound()], row.last);
    }
    CBackgrnd grid;
    grid.m_strKuaY = "3*2;*4";
    CArray<float, float> out = Floats({7});
    EXPECT_EQ(grid.GetJianJu(1, out), 1) << "whatever the text gave";
    EXPECT_EQ(Show(out), "7.000000 3000.000000 3000.000000 ") << "not emptied";
    EXPECT_EQ(grid.GetJianJu(3, out), 1);
    EXPECT_EQ(out.GetSize(), 3);
}

TEST(Backgrnd, ExtentIsTheUnionOfAllPositions) {
    Chance chance{std::mt19937(99)};
    for (int round = 0; round < 2000; ++round) {
        const CBackgrnd grid = chance.Grid();
        const CFCoor coor = chance.View();
        ASSERT_EQ(Show(grid.GetFrect(&coor)), Show(PlainFrect(grid, coor))) << "round " << round;
    }
}

TEST(Backgrnd, PixelsAreThoseOfThePlainLoops) {
    const Profile profile;
    Chance chance{std::mt19937(20260117)};
    int changed = 0;
    CBackgrnd grid;
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        g_cTvoProfile.m_crBackground = static_cast<std::uint32_t>(chance.Of(
            {COLORREF{0}, COLORREF{0}, RGB(255, 255, 255), RGB(255, 255, 255), kGrey, COLORREF{0x1000000}}));
        g_cTvoProfile.m_crGrid =
            static_cast<std::uint32_t>(chance.Of({kGrey, kGrey, RGB(90, 0, 0), COLORREF{0xFF0000C0}}));
        // The same object from time to time: what it keeps has to follow its fields.
        grid = chance.In(3) ? CBackgrnd(grid) : chance.Grid();
        if (chance.In(2)) grid.m_strKuaX = chance.Text();
        if (chance.In(4)) grid.m_fZ0 += 1;
        CFCoor coor = chance.View();
        if (chance.In(8)) chance.MakeHuge(grid, coor);

        auto fast = std::make_shared<CSurface>(64, 48, round % 8 == 0 ? 2 : 1);
        const unsigned garbage = chance.Of({1u, 2u, 4u});
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 64; ++x) {
                const COLORREF colors[] = {g_cTvoProfile.m_crBackground, kGrey, RGB(255, 0, 0),
                                           RGB(90, 0, 0)};
                CDC(fast).SetPixel(x, y, colors[chance.rng() % garbage]);
            }
        const auto before = *fast;
        const auto plain = std::make_shared<CSurface>(before);
        CDC fastDc(fast), plainDc(plain);
        const int rop = chance.Of({R2_COPYPEN, R2_COPYPEN, R2_XORPEN, R2_NOT}),
                  mode = chance.Of({0, 0, 1, 2});
        const bool clipped = chance.In(3);
        for (CDC* dc : {&fastDc, &plainDc}) {
            dc->SetROP2(rop);
            if (clipped) dc->IntersectClipRect(5, 9, 50, 31);
        }
        PlainDraw(grid, plainDc, coor, mode);
        ASSERT_EQ(grid.Draw(&fastDc, &coor, mode), 1);
        ASSERT_TRUE(*fast == *plain) << grid.m_strKuaX.Std() << " by " << grid.m_strKuaY.Std() << " by "
                                     << grid.m_strKuaZ.Std() << ", grid mode " << grid.m_nMode << ", mode "
                                     << mode;
        changed += !(*fast == before);
    }
    EXPECT_GT(changed, 1000) << "most pictures have shown nothing";
}

TEST(Backgrnd, DenseLatticesFillWhatIsSeen) {
    CBackgrnd grid;
    grid.m_nMode = 1;
    grid.m_strKuaX = grid.m_strKuaY = "0.001*99999";
    for (const char* z : {"0*0", "0.001*99999"})
        for (const float turn : {0.0f, 0.6f}) {
            grid.m_strKuaZ = z;
            CFCoor coor;
            coor.m_fAlpha = turn;
            coor.m_fBeta -= turn;
            coor.Init(coor.PointTouYing(CFPoint(40000, 60000, 0)), 0.7f, 1);
            const auto surface = std::make_shared<CSurface>(300, 200);
            CDC dc(surface);
            grid.Draw(&dc, &coor, 0);
            const auto& pixels = surface->Pixels();
            EXPECT_EQ(std::count(pixels.begin(), pixels.end(), PixelFromColor(kGrey)), 300 * 200)
                << z << " " << turn;
        }
}

TEST(Backgrnd, HostileTextsEnd) {
    CBackgrnd grid;
    CDC dc(std::make_shared<CSurface>(64, 48)), none;
    CFCoor coor;
    for (const char* text : {"1e30*2000000000", "1e-9*99999", "1e33*50000;-1e33*50000", "-7*2000000000"})
        for (const float tilt : {1.5707964f, 1.0f, 0.0f}) {
            grid.m_strKuaX = grid.m_strKuaY = grid.m_strKuaZ = text;
            coor.m_fAlpha = coor.m_fBeta = tilt;
            EXPECT_EQ(grid.Draw(&dc, &coor, 0), 1);
            EXPECT_EQ(grid.Draw(&none, &coor, 1), 1);
            grid.GetFrect(&coor);
        }
}
