// The background grid: texts of spacings, its extent, its pixels.
#include "fields/backgrnd.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "geometry/fcoor.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"
#include "tests/file_fixtures.h"

namespace {

CFCoor Plan(float scale) { return CFCoor(CFPoint(0, 0, 0), scale, 1); }

std::string Show(const CFRect& r) {
    CString s;
    s.Format("%g %g %g %g", static_cast<double>(r.m_fMinX), static_cast<double>(r.m_fMinY),
             static_cast<double>(r.m_fMaxX), static_cast<double>(r.m_fMaxY));
    return s.Std();
}

// As it is told: the union of the projections of all positions, one by one.
CFRect PlainFrect(const CBackgrnd& grid, const CFCoor& coor) {
    CArray<float, float> spacings[3];
    for (int axis = 0; axis < (grid.m_nMode == 0 ? 3 : 2); ++axis) grid.GetJianJu(axis, spacings[axis]);
    const CFPoint origin = coor.PointTouYing({grid.m_fX0, grid.m_fY0, grid.m_fZ0});
    CFRect rect(origin, origin);
    float x = grid.m_fX0;
    for (int i = 0; i <= spacings[0].GetSize(); x += i < spacings[0].GetSize() ? spacings[0][i] : 0, ++i) {
        float y = grid.m_fY0;
        for (int j = 0; j <= spacings[1].GetSize();
             y += j < spacings[1].GetSize() ? spacings[1][j] : 0, ++j) {
            float z = grid.m_fZ0;
            for (int k = 0; k <= spacings[2].GetSize();
                 z += k < spacings[2].GetSize() ? spacings[2][k] : 0, ++k) {
                const CFPoint p = coor.PointTouYing({x, y, z});
                rect = rect | CFRect(p, p);
            }
        }
    }
    return rect;
}

/// A surface of 64 by 64 pixels in the view's background colour, with the origin of a plan at pixel (8, 56).
struct Screen {
    explicit Screen(COLORREF background = g_cTvoProfile.m_crBackground)
        : surface(std::make_shared<CSurface>(64, 64)), dc(surface) {
        surface->Fill(PixelFromColor(background));
        coor.Init(CFPoint(-8, 56, 0), 1.0f, 1);
    }
    int Count(COLORREF color) const {
        const auto& pixels = surface->Pixels();
        return static_cast<int>(std::count(pixels.begin(), pixels.end(), PixelFromColor(color)));
    }
    std::shared_ptr<CSurface> surface;
    CDC dc;
    CFCoor coor;
};

constexpr COLORREF kGrey = RGB(0xC0, 0xC0, 0xC0);

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
        {"1*2000000000", 1, CBackgrnd::kMaxSpacings, 1000},
        {"1*9999;2*99999999999", 1, CBackgrnd::kMaxSpacings, 2000},
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
    EXPECT_EQ(::Show(out), "7.000000 3000.000000 3000.000000 ") << "not emptied";
    EXPECT_EQ(grid.GetJianJu(3, out), 1);
    EXPECT_EQ(out.GetSize(), 3);
}

TEST(Backgrnd, ExtentIsTheUnionOfAllPositions) {
    CBackgrnd grid;
    const CFCoor plan;
    EXPECT_EQ(Show(grid.GetFrect(&plan)), Show(PlainFrect(grid, plan)));
    std::mt19937 rng(99);
    const char* const texts[] = {"6*4", "0*0", "1.7*3;2.3*2", "-4*3", "5*2;-9*2;1*3", "*"};
    for (int round = 0; round < 400; ++round) {
        const auto text = [&] { return CString(texts[rng() % 6]); };
        const auto number = [&] { return static_cast<float>(rng() % 20000) - 10000.0f; };
        grid.m_nMode = static_cast<int>(rng() % 2);
        grid.m_fX0 = number();
        grid.m_fY0 = number();
        grid.m_fZ0 = number();
        grid.m_strKuaX = text();
        grid.m_strKuaY = text();
        grid.m_strKuaZ = text();
        CFCoor coor = Plan(1);
        coor.m_fAlpha = number() / 3000;
        coor.m_fBeta = number() / 3000;
        ASSERT_EQ(Show(grid.GetFrect(&coor)), Show(PlainFrect(grid, coor))) << "round " << round;
    }
}

TEST(Backgrnd, PointsAreSetOnBackgroundAndWipedFromGrey) {
    CBackgrnd grid;  // 3 x 3 points, 10 pixels apart
    grid.m_nMode = 1;
    grid.m_strKuaX = grid.m_strKuaY = "0.01*2";
    Screen screen;
    screen.dc.SetPixel(18, 56, RGB(255, 0, 0));  // something drawn over one of them
    EXPECT_EQ(grid.Draw(&screen.dc, &screen.coor, 0), 1);
    EXPECT_EQ(screen.Count(kGrey), 8);
    EXPECT_EQ(screen.dc.GetPixel(18, 56), RGB(255, 0, 0));
    EXPECT_EQ(screen.dc.GetPixel(28, 36), kGrey);

    grid.Draw(&screen.dc, &screen.coor, 2);  // paints grey over grey
    EXPECT_EQ(screen.Count(kGrey), 8);
    EXPECT_EQ(grid.Draw(&screen.dc, &screen.coor, 1), 1);
    EXPECT_EQ(screen.Count(g_cTvoProfile.m_crBackground), 64 * 64 - 1);
    EXPECT_EQ(screen.dc.GetPixel(18, 56), RGB(255, 0, 0)) << "wiping touches grey alone";

    Screen other(RGB(1, 2, 3));
    grid.Draw(&other.dc, &other.coor, 0);
    EXPECT_EQ(other.Count(RGB(1, 2, 3)), 64 * 64) << "no background, no points";
}

TEST(Backgrnd, WallsAreLinesAlongTheAxes) {
    CBackgrnd grid;
    grid.m_strKuaX = grid.m_strKuaY = "0.01*2";
    Screen screen;
    grid.Draw(&screen.dc, &screen.coor, 0);
    for (const int at : {8, 18, 28}) {  // a square of 20 pixels, divided in four
        for (int y = 37; y <= 56; ++y) EXPECT_EQ(screen.dc.GetPixel(at, y), kGrey) << at << "," << y;
        for (int x = 8; x <= 27; ++x) EXPECT_EQ(screen.dc.GetPixel(x, at + 28), kGrey) << x << "," << at + 28;
    }
    EXPECT_EQ(screen.dc.GetPixel(13, 51), g_cTvoProfile.m_crBackground);
    grid.Draw(&screen.dc, &screen.coor, 1);
    EXPECT_EQ(screen.Count(g_cTvoProfile.m_crBackground), 64 * 64);
}

TEST(Backgrnd, HostileTextsEnd) {
    CBackgrnd grid;
    grid.m_strKuaX = grid.m_strKuaY = grid.m_strKuaZ = "1e30*2000000000";
    Screen screen;
    EXPECT_EQ(grid.Draw(&screen.dc, &screen.coor, 0), 1);
    grid.GetFrect(&screen.coor);
}
