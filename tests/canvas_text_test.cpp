// Text: extents, places, shapes and sources.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "canvas_fixture.h"
#include "platform/canvas/glyph_source.h"

using namespace canvas_test;

TEST(Text, KeepsItsExtentAndPlaceAtEveryAlignmentAndAngle) {
    Canvas c(200, 200);
    CFont font;
    font.CreateFont(24, 0, 0, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, "any");
    c.dc.SelectObject(&font);
    c.dc.SetBkMode(TRANSPARENT), c.dc.SetTextColor(kWhite);
    EXPECT_EQ(c.dc.GetTextExtent("12345").cx, 60) << "half the height a character";
    EXPECT_EQ(c.dc.GetTextExtent("12345").cy, 24);
    EXPECT_EQ(c.dc.GetTextExtent("\xE8\xBD\xB4").cx, 24) << "a wide character takes its height";
    EXPECT_EQ(c.dc.GetTextExtent("\xFF").cx, 24) << "a broken byte is one unknown character";

    struct {
        const char* name;
        UINT align;
        int left, top;
    } const rows[] = {{"left top", TA_LEFT | TA_TOP, 100, 100},
                      {"centred", TA_CENTER, 70, 100},
                      {"right", TA_RIGHT, 40, 100},
                      {"on the baseline", TA_BASELINE, 100, 82},
                      {"above", TA_BOTTOM, 100, 76}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        c.surface->Fill(0);
        c.dc.SetTextAlign(row.align);
        c.dc.TextOut(100, 100, "HHHHH");
        const auto lit = c.Lit();
        ASSERT_FALSE(lit.empty());
        for (const auto& [x, y] : lit) {
            ASSERT_TRUE(x >= row.left && x < row.left + 60 && y >= row.top && y < row.top + 24)
                << x << "," << y;
        }
        EXPECT_TRUE(lit.count({row.left + 2, row.top + 10})) << "the first stem";
    }
    c.dc.SetTextAlign(0);
    struct {
        const char* name;
        int escapement, left, top, right, bottom;
    } const turned[] = {{"upwards", 900, 100, 40, 124, 101},
                        {"upside down", 1800, 40, 76, 101, 101},
                        {"downwards", 2700, 76, 100, 101, 160}};
    for (const auto& row : turned) {
        SCOPED_TRACE(row.name);
        c.surface->Fill(0);
        font.CreateFont(24, 0, row.escapement, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, "any");
        c.dc.SelectObject(&font);
        c.dc.TextOut(100, 100, "HHHHH");
        ASSERT_GT(c.Lit().size(), 200u);
        for (const auto& [x, y] : c.Lit()) {
            ASSERT_TRUE(x >= row.left && x < row.right && y >= row.top && y < row.bottom) << x << "," << y;
        }
    }
}

TEST(Text, EveryPrintableCharacterHasAShapeOfItsOwn) {
    std::set<std::string> shapes;
    for (char32_t code = '!'; code <= '~'; ++code) {
        CGlyphMask mask;
        CGlyphRequest request;
        request.code = code;
        request.height = 36;
        ASSERT_TRUE(BuiltInGlyphSource().Render(request, mask)) << static_cast<int>(code);
        std::string shape(mask.coverage.begin(), mask.coverage.end());
        for (const int place : {mask.width, mask.top, mask.left}) shape += std::to_string(place) + ' ';
        EXPECT_TRUE(shapes.insert(shape).second) << static_cast<char>(code);
        EXPECT_GE(mask.left, -2) << static_cast<char>(code);
        EXPECT_LE(mask.left + mask.width, 21) << static_cast<char>(code);
        EXPECT_GE(mask.top, -27) << static_cast<char>(code);
        EXPECT_LE(mask.top + mask.height, 11) << static_cast<char>(code);
    }
}

TEST(Text, ComesFromTheSourceThatIsSet) {
    struct Blocks : CGlyphSource {
        bool Render(const CGlyphRequest& r, CGlyphMask& mask) override {
            if (r.code != 'x') return false;
            mask.width = mask.height = 4;
            mask.top = -4;
            mask.coverage.assign(16, 255);
            return true;
        }
        double Advance(const CGlyphRequest& r) override { return r.code == 'x' ? 7 : -1; }
    };
    Canvas c(60, 40);
    c.dc.SetTextColor(kWhite), c.dc.SetBkMode(TRANSPARENT);
    SetGlyphSource(std::make_shared<Blocks>());
    c.dc.TextOut(0, 0, "xx");
    EXPECT_EQ(c.Lit().size(), 32u);
    EXPECT_EQ(c.dc.GetTextExtent("xx").cx, 14);
    EXPECT_GT(c.dc.GetTextExtent("y").cx, 0) << "the built-in source has it";
    const int steps[] = {20, 0};
    c.surface->Fill(0);
    c.dc.ExtTextOut(0, 0, 0, nullptr, "xx", 2, steps);
    EXPECT_EQ(c.Lit().rbegin()->first, 23) << "steps given by the caller";
    SetGlyphSource(nullptr);
    EXPECT_EQ(c.dc.GetTextExtent("xx").cx, 16);
}

TEST(Text, LaysOutLinesInARectangle) {
    Canvas c(200, 100);
    c.dc.SetTextColor(kWhite), c.dc.SetBkMode(TRANSPARENT);
    CRect r(10, 10, 0, 0);
    EXPECT_EQ(c.dc.DrawText("abc\nde", &r, DT_CALCRECT), 32);
    EXPECT_TRUE(r == CRect(10, 10, 34, 42));
    CRect pane(100, 40, 180, 60);
    EXPECT_EQ(c.dc.DrawText("HH", &pane, DT_SINGLELINE | DT_VCENTER | DT_CENTER), 16);
    for (const auto& [x, y] : c.Lit()) EXPECT_TRUE(CRect(132, 42, 148, 58).PtInRect({x, y})) << x << "," << y;
    c.surface->Fill(0);
    CRect narrow(100, 40, 110, 44);
    c.dc.DrawText("HHHHHHHH", &narrow, DT_SINGLELINE | DT_VCENTER);
    EXPECT_FALSE(c.Lit().empty());
    for (const auto& [x, y] : c.Lit()) EXPECT_TRUE(narrow.PtInRect({x, y}));
}
