// Raster modes, regions, brushes, pens, blocks and the state of a context.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <vector>

#include "canvas_fixture.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"

using namespace canvas_test;

TEST(RasterModes, FollowTheirTruthTable) {
    // For each mode the results for pen, surface = 00, 01, 10, 11.
    struct {
        int rop;
        const char* name;
        const char* results;
    } const rows[] = {{R2_BLACK, "0", "0000"},
                      {R2_NOTMERGEPEN, "not (P or D)", "1000"},
                      {R2_MASKNOTPEN, "D and not P", "0100"},
                      {R2_NOTCOPYPEN, "not P", "1100"},
                      {R2_MASKPENNOT, "P and not D", "0010"},
                      {R2_NOT, "not D", "1010"},
                      {R2_XORPEN, "P xor D", "0110"},
                      {R2_NOTMASKPEN, "not (P and D)", "1110"},
                      {R2_MASKPEN, "P and D", "0001"},
                      {R2_NOTXORPEN, "not (P xor D)", "1001"},
                      {R2_NOP, "D", "0101"},
                      {R2_MERGENOTPEN, "D or not P", "1101"},
                      {R2_COPYPEN, "P", "0011"},
                      {R2_MERGEPENNOT, "P or not D", "1011"},
                      {R2_MERGEPEN, "P or D", "0111"},
                      {R2_WHITE, "1", "1111"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (int i = 0; i < 4; ++i) {
            const COLORREF pen = i / 2 ? kWhite : 0, ground = i % 2 ? kWhite : 0;
            const COLORREF expected = row.results[i] == '1' ? kWhite : 0;
            Canvas c(6, 3);
            c.surface->Fill(PixelFromColor(ground));
            CPen p(PS_SOLID, 1, pen);
            CBrush b(pen);
            c.dc.SelectObject(&p), c.dc.SelectObject(&b);
            EXPECT_EQ(c.dc.SetROP2(row.rop), R2_COPYPEN);
            c.dc.MoveTo(0, 0), c.dc.LineTo(2, 2);
            c.dc.Rectangle(3, 0, 6, 3);
            EXPECT_EQ(c.dc.GetPixel(1, 1), expected) << "line";
            EXPECT_EQ(c.dc.GetPixel(3, 0), expected) << "outline";
            EXPECT_EQ(c.dc.GetPixel(4, 1), expected) << "fill";
            EXPECT_EQ(c.dc.GetPixel(0, 2), ground) << "elsewhere";
        }
    }
    Canvas c(1, 1);
    EXPECT_EQ(c.dc.SetROP2(17), 0);
    EXPECT_EQ(c.dc.GetROP2(), R2_COPYPEN);
}

TEST(Regions, HoldThePixelsThatWindingOrParitySays) {
    Random random(6);
    for (int round = 0; round < 300; ++round) {
        std::vector<CPoint> p;
        const int far = round % 3 == 0 ? 2000000000 : 60;
        for (int i = Pick(random, 3, 9); i > 0; --i)
            p.emplace_back(Pick(random, -20, far), Pick(random, round % 3 == 1 ? -far : -20, 60));
        for (const int mode : {ALTERNATE, WINDING}) {
            Canvas c(40, 40);
            CRgn region;
            CBrush white(kWhite);
            ASSERT_TRUE(region.CreatePolygonRgn(p.data(), static_cast<int>(p.size()), mode));
            c.dc.FillRgn(&region, &white);
            for (int y = 0; y < 40; ++y) {
                for (int x = 0; x < 40; ++x) {
                    int turns = 0;
                    for (std::size_t i = 0; i < p.size(); ++i) {
                        const CPoint &a = p[i], &b = p[(i + 1) % p.size()];
                        if ((a.y <= y) == (b.y <= y)) continue;
                        const Wide side =
                            (Wide{b.x} - a.x) * (Wide{y} - a.y) - (Wide{b.y} - a.y) * (Wide{x} - a.x);
                        const bool leftOfPixel = a.y <= y ? side <= 0 : side >= 0;
                        if (leftOfPixel) turns += a.y <= y ? 1 : -1;
                    }
                    const bool inside = mode == WINDING ? turns != 0 : turns % 2 != 0;
                    ASSERT_EQ(c.surface->At(x, y) != 0, inside)
                        << "round " << round << " mode " << mode << " at " << x << "," << y;
                    ASSERT_EQ(region.PtInRegion(x, y) != 0, inside);
                }
            }
        }
    }
}

TEST(Regions, ThatShareSidesTileTheRectangle) {
    Random random(8);
    for (int round = 0; round < 50; ++round) {
        // A fan about a random point; XOR of all triangles lights each pixel of the square exactly once.
        const CPoint corner[] = {{3, 4}, {37, 4}, {37, 31}, {3, 31}};
        const CPoint middle(Pick(random, 3, 37), Pick(random, 4, 31));
        Canvas fan(40, 40), box(40, 40);
        fan.dc.SetROP2(R2_XORPEN);
        CBrush white(kWhite);
        for (int i = 0; i < 4; ++i) {
            const CPoint triangle[] = {corner[i], corner[(i + 1) % 4], middle};
            CRgn region;
            region.CreatePolygonRgn(triangle, 3, i % 2 ? WINDING : ALTERNATE);
            fan.dc.FillRgn(&region, &white);
        }
        CRgn region;
        region.CreateRectRgn(37, 31, 3, 4);
        box.dc.FillRgn(&region, &white);
        ASSERT_EQ(Show(fan), Show(box)) << "round " << round;
        ASSERT_EQ(box.Lit().size(), 34u * 27u);
    }
}

TEST(Brushes, HatchALatticeOfEightFixedToTheSurface) {
    struct {
        int style;
        const char* name;
        std::size_t lit;
    } const rows[] = {{HS_HORIZONTAL, "horizontal", 8}, {HS_VERTICAL, "vertical", 8},
                      {HS_FDIAGONAL, "falling", 8},     {HS_BDIAGONAL, "rising", 8},
                      {HS_CROSS, "cross", 15},          {HS_DIAGCROSS, "diagonal cross", 16}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Canvas c(32, 32), part(32, 32);
        CBrush brush(row.style, kWhite);
        for (Canvas* each : {&c, &part})
            each->dc.SetBkMode(TRANSPARENT), each->dc.SelectObject(&brush),
                each->dc.SelectStockObject(NULL_PEN);
        c.dc.Rectangle(0, 0, 32, 32);
        EXPECT_EQ(c.Lit().size(), 16 * row.lit);
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < 24; ++x) {
                EXPECT_EQ(c.surface->At(x, y), c.surface->At(x + 8, y));
                EXPECT_EQ(c.surface->At(x, y), c.surface->At(x, y + 8));
            }
        }
        part.dc.Rectangle(5, 3, 20, 30);
        for (const auto& [x, y] : part.Lit()) EXPECT_NE(c.surface->At(x, y), 0u);
        part.dc.SetBkMode(OPAQUE);
        part.dc.SetBkColor(RGB(1, 2, 3));
        part.dc.Rectangle(0, 0, 32, 32);
        EXPECT_EQ(part.Lit().size(), 32u * 32u);
    }
    Canvas slope(8, 8);
    CBrush falling(HS_FDIAGONAL, kWhite);
    slope.dc.SetBkMode(TRANSPARENT);
    slope.dc.FillRect(CRect(0, 0, 8, 8), &falling);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(slope.dc.GetPixel(i, i), kWhite) << "like a backslash";
    CBrush wrong;
    EXPECT_FALSE(wrong.CreateHatchBrush(6, 0));
}

TEST(Pens, DashByTheirPattern) {
    struct {
        const char* name;
        int style;
        const char* pattern;
    } const rows[] = {{"dash", PS_DASH, "##################......##################......"},
                      {"dot", PS_DOT, "###...###...###...###...###...###...###...###..."},
                      {"dash dot", PS_DASHDOT, "#########......###......#########......###......"},
                      {"dash dot dot", PS_DASHDOTDOT, "#########...###...###...#########...###...###..."}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Canvas c(48, 1), gaps(48, 1), geometric(48, 1);
        CPen pen(row.style, 1, kWhite);
        const LOGBRUSH brush{BS_SOLID, kWhite, 0};
        CPen wide(row.style | PS_GEOMETRIC | PS_ENDCAP_SQUARE, 1, &brush);
        c.dc.SetBkMode(TRANSPARENT);
        for (CDC* dc : {&c.dc, &gaps.dc}) dc->SelectObject(&pen), dc->LineTo(48, 0);
        geometric.dc.SelectObject(&wide), geometric.dc.LineTo(48, 0);
        EXPECT_EQ(Show(c), std::string(row.pattern) + "\n");
        EXPECT_EQ(gaps.Lit().size(), 48u) << "gaps take the background colour, white";
        EXPECT_EQ(Show(geometric), Show(c)) << "gaps of a geometric pen stay";
    }
}

TEST(Pixels, OutsideOfTheClipHaveNoColour) {
    Canvas c(10, 10);
    EXPECT_EQ(c.dc.SetPixel(3, 4, RGB(1, 2, 3)), RGB(1, 2, 3));
    EXPECT_EQ(c.dc.GetPixel(3, 4), 0x030201u);
    EXPECT_EQ(c.surface->At(3, 4), 0x010203u);
    c.dc.IntersectClipRect(0, 0, 5, 5);
    struct {
        int x, y;
    } const rows[] = {{-1, 0}, {0, -1}, {5, 0}, {0, 5}, {10, 10}, {INT_MAX, 0}, {0, INT_MIN}};
    for (const auto& p : rows) {
        EXPECT_EQ(c.dc.GetPixel(p.x, p.y), 0xFFFFFFFFu);
        EXPECT_EQ(c.dc.SetPixel(p.x, p.y, kWhite), CLR_INVALID);
    }
    EXPECT_EQ(c.Lit().size(), 1u);
}

TEST(Blocks, CombinePatternSourceAndDestination) {
    struct {
        const char* name;
        DWORD rop;
        std::function<unsigned(unsigned, unsigned, unsigned)> of;
    } const rows[] = {
        {"copy", SRCCOPY, [](unsigned, unsigned s, unsigned) { return s; }},
        {"invert", SRCINVERT, [](unsigned, unsigned s, unsigned d) { return s ^ d; }},
        {"and", SRCAND, [](unsigned, unsigned s, unsigned d) { return s & d; }},
        {"or", SRCPAINT, [](unsigned, unsigned s, unsigned d) { return s | d; }},
        {"erase", SRCERASE, [](unsigned, unsigned s, unsigned d) { return s & ~d; }},
        {"not source", NOTSRCCOPY, [](unsigned, unsigned s, unsigned) { return ~s; }},
        {"merge copy", MERGECOPY, [](unsigned p, unsigned s, unsigned) { return p & s; }},
        {"merge paint", MERGEPAINT, [](unsigned, unsigned s, unsigned d) { return ~s | d; }},
        {"pattern paint", PATPAINT, [](unsigned p, unsigned s, unsigned d) { return p | ~s | d; }},
        {"pattern", PATCOPY, [](unsigned p, unsigned, unsigned) { return p; }},
        {"pattern invert", PATINVERT, [](unsigned p, unsigned, unsigned d) { return p ^ d; }},
        {"destination invert", DSTINVERT, [](unsigned, unsigned, unsigned d) { return ~d; }},
        {"blackness", BLACKNESS, [](unsigned, unsigned, unsigned) { return 0u; }},
        {"whiteness", WHITENESS, [](unsigned, unsigned, unsigned) { return ~0u; }}};
    Random random(9);
    for (const auto& row : rows) {
        for (int round = 0; round < 20; ++round) {
            SCOPED_TRACE(std::string(row.name) + ", round " + std::to_string(round));
            Canvas from(20, 15), to(25, 18);
            Noise(*from.surface, random), Noise(*to.surface, random);
            const CSurface before = *to.surface;
            CBrush brush(0x123456);
            to.dc.SelectObject(&brush);
            const int x = Pick(random, -10, 25), y = Pick(random, -10, 18), w = Pick(random, 1, 30),
                      h = Pick(random, 1, 30);
            const int sx = Pick(random, -10, 20), sy = Pick(random, -10, 15);
            const bool source = ((row.rop >> 18 ^ row.rop >> 16) & 0x33) != 0;
            to.dc.BitBlt(x, y, w, h, &from.dc, sx, sy, row.rop);
            for (int j = 0; j < 18; ++j) {
                for (int i = 0; i < 25; ++i) {
                    const int fx = i - x + sx, fy = j - y + sy;
                    const bool exists = fx >= 0 && fy >= 0 && fx < 20 && fy < 15;
                    const bool in = i >= x && j >= y && i < x + w && j < y + h && (exists || !source);
                    const unsigned s = exists ? from.surface->At(fx, fy) : 0, d = before.At(i, j);
                    ASSERT_EQ(to.surface->At(i, j),
                              in ? row.of(PixelFromColor(0x123456), s, d) & 0xFFFFFF : d);
                }
            }
        }
    }
}

TEST(Blocks, MayOverlapStretchAndLeaveAColourOut) {
    Random random(10);
    Canvas c(30, 30);
    Noise(*c.surface, random);
    const CSurface before = *c.surface;
    c.dc.BitBlt(3, 4, 20, 20, &c.dc, 0, 0, SRCCOPY);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) ASSERT_EQ(c.surface->At(x + 3, y + 4), before.At(x, y));
    }
    Canvas small(4, 3), large(20, 20);
    Noise(*small.surface, random);
    small.surface->Row(1)[2] = 0xFF00FF;
    large.surface->Fill(0x777777);
    TransparentBlt2(&large.dc, 2, 1, 16, 9, &small.dc, 0, 0, 4, 3, RGB(255, 0, 255));
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            const bool in = x >= 2 && y >= 1 && x < 18 && y < 10;
            const std::uint32_t s = in ? small.surface->At((x - 2) / 4, (y - 1) / 3) : 0;
            ASSERT_EQ(large.surface->At(x, y), in && s != 0xFF00FF ? s : 0x777777u) << x << "," << y;
        }
    }
    // Sizes beyond all bounds are cut, not multiplied out.
    EXPECT_TRUE(large.dc.StretchBlt(INT_MIN, -5, INT_MAX, INT_MAX, &small.dc, 0, 0, INT_MAX, 3, SRCCOPY));
    EXPECT_TRUE(large.dc.BitBlt(INT_MIN, 0, INT_MAX, 5, &small.dc, INT_MIN, 0, SRCINVERT));
    EXPECT_FALSE(large.dc.BitBlt(0, 0, 5, 5, nullptr, 0, 0, SRCCOPY));
    CIconImage icon{CSurface(2, 2), {1, 0, 0, 1}};
    icon.m_cImage.Fill(0x00FF00);
    large.surface->Fill(0);
    ASSERT_TRUE(DrawIconEx(&large.dc, 0, 0, &icon, 4, 4, 0, nullptr, DI_NORMAL));
    EXPECT_EQ(large.Lit().size(), 8u);
}

TEST(Context, HandsBackWhatWasSelectedAndRestoresStates) {
    CDC dc;
    EXPECT_FALSE(dc.LineTo(5, 5)) << "no surface yet";
    EXPECT_EQ(dc.GetPixel(0, 0), CLR_INVALID);
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    CBitmap bitmap, none;
    EXPECT_FALSE(none.CreateCompatibleBitmap(&dc, 0, 5));
    EXPECT_FALSE(none.CreateCompatibleBitmap(&dc, INT_MAX, INT_MAX));
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(&dc, 8, 8));
    CBitmap* first = dc.SelectObject(&bitmap);
    ASSERT_NE(first, nullptr);
    CPen pen(PS_SOLID, 1, kWhite);
    CPen* old = dc.SelectObject(&pen);
    EXPECT_EQ(old, GetStockObject(BLACK_PEN));
    pen.DeleteObject();  // what was selected stays in force
    dc.SetROP2(R2_XORPEN);
    EXPECT_EQ(dc.SaveDC(), 1);
    dc.SetROP2(R2_NOT), dc.SelectObject(old), dc.IntersectClipRect(0, 0, 1, 1), dc.SetTextColor(5),
        dc.MoveTo(3, 3);
    EXPECT_EQ(dc.SaveDC(), 2);
    EXPECT_FALSE(dc.RestoreDC(3));
    EXPECT_TRUE(dc.RestoreDC(1));
    EXPECT_FALSE(dc.RestoreDC(-1)) << "going back to 1 drops 2";
    EXPECT_EQ(dc.GetROP2(), R2_XORPEN);
    dc.LineTo(4, 0);
    EXPECT_EQ(dc.GetPixel(3, 0), kWhite);
    EXPECT_EQ(dc.SelectObject(first), &bitmap);
    EXPECT_EQ(bitmap.Surface()->At(3, 0), 0xFFFFFFu);
    EXPECT_EQ(dc.GetPixel(3, 0), CLR_INVALID) << "the one pixel of a fresh context";
    EXPECT_TRUE(dc.DeleteDC());
    EXPECT_FALSE(dc.DeleteDC());

    EXPECT_EQ(static_cast<CBrush*>(GetStockObject(NULL_BRUSH))->Log().lbStyle, BS_NULL);
    EXPECT_EQ(static_cast<CPen*>(GetStockObject(NULL_PEN))->Log().lopnStyle, PS_NULL);
    EXPECT_EQ(GetStockObject(9), nullptr);
    EXPECT_EQ(GetSystemMetrics(SM_CXFULLSCREEN), 1920);
    SetSystemMetrics(SM_CYFULLSCREEN, 700);
    EXPECT_EQ(CClientDC(nullptr).Surface()->Height(), 700);
    SetSystemMetrics(SM_CYFULLSCREEN, 1080);
}
