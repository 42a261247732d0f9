// Dense surfaces: the same calls give the same picture with four pixels for one.
#include <gtest/gtest.h>

#include "canvas_figures.h"

using namespace canvas_test;

namespace {

constexpr int kSize = 40;

CSurface Enlarged(const CSurface& plain) {
    CSurface dense(plain.Width(), plain.Height(), 2);
    for (int y = 0; y < dense.Height(); ++y)
        for (int x = 0; x < dense.Width(); ++x) dense.Row(y)[x] = plain.At(x / 2, y / 2);
    return dense;
}

/// Something whose borders all lie between pixels, so that it looks the same at any density.
void DrawSquare(CDC& dc, CDC& source, unsigned seed) {
    Random random(seed);
    const auto at = [&] { return Pick(random, -10, kSize + 10); };
    const COLORREF color = random() & 0xFFFFFF;
    constexpr int kModes[] = {R2_COPYPEN, R2_XORPEN, R2_NOT, R2_MERGEPEN};
    dc.SetROP2(kModes[random() % 4]);
    dc.SetBkMode(Pick(random, TRANSPARENT, OPAQUE));
    dc.SetBkColor(random() & 0xFFFFFF);
    constexpr int kPens[] = {PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOTDOT, PS_NULL, PS_INSIDEFRAME};
    const auto operation = random() % 16;
    const int style = kPens[random() % 6];
    // Wide dashes and bevelled corners end within pixels.
    CPen pen(style, operation == 2 || (style >= PS_DASH && style <= PS_DASHDOTDOT) ? 1 : Pick(random, 1, 3), color);
    constexpr int kHatches[] = {HS_HORIZONTAL, HS_VERTICAL, HS_CROSS};
    CBrush brush(color);
    if (random() % 2) brush.CreateHatchBrush(kHatches[random() % 3], color);
    CPen* const oldPen = dc.SelectObject(&pen);
    CBrush* const oldBrush = dc.SelectObject(&brush);
    const int x = at(), y = at(), x2 = at(), y2 = at(), w = Pick(random, 1, kSize), h = Pick(random, 1, kSize);
    CRect rect(x, y, x2, y2);
    switch (operation) {
        case 0: dc.MoveTo(x, y), dc.LineTo(x2, y); break;
        case 1: dc.MoveTo(x, y), dc.LineTo(x, y2); break;
        case 2: {
            const CPoint path[] = {{x, y}, {x2, y}, {x2, y2}, {x, y2}, {x, y}};
            dc.Polyline(path, 5);
            break;
        }
        case 3: dc.Rectangle(rect); break;
        case 4: dc.FillRect(&rect, &brush); break;
        case 5: dc.FrameRect(&rect, &brush); break;
        case 6: dc.Draw3dRect(rect, color, dc.GetBkColor()); break;
        case 7: dc.InvertRect(&rect); break;
        case 8: dc.DrawFocusRect(&rect); break;
        case 9: {
            const COLORREF set = dc.SetPixel(x, y, color);
            EXPECT_EQ(dc.GetPixel(x, y), set);
            break;
        }
        case 10: dc.PatBlt(x, y, w, h, PATINVERT); break;
        case 11: dc.BitBlt(x, y, w, h, &source, x2, y2, random() % 2 ? SRCCOPY : SRCINVERT); break;
        case 12: dc.StretchBlt(x, y, 3 * w, 2 * h, &source, x2, y2, w, h, SRCPAINT); break;
        case 13: TransparentBlt2(&dc, x, y, w, h, &source, x2, y2, w, h, source.GetPixel(3, 3)); break;
        case 14: {
            CRgn region;
            region.CreateRectRgnIndirect(rect);
            dc.FillRgn(&region, &brush);
            break;
        }
        default: {
            CIconImage icon{CSurface(3, 2), {1, 0, 1, 1, 1, 0}};
            icon.m_cImage.Fill(PixelFromColor(color));
            DrawIconEx(&dc, x, y, &icon, 0, 0, 0, nullptr, DI_NORMAL);
        }
    }
    dc.SelectObject(oldPen);
    dc.SelectObject(oldBrush);
}

/// Units that lie around a lit pixel, one more on each side.
std::set<Pixel> Around(const Canvas& c) {
    std::set<Pixel> units;
    const int k = c.dc.Density();
    for (const auto& [x, y] : c.Lit())
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i) units.emplace(x / k + i, y / k + j);
    return units;
}

}  // namespace

TEST(Density, WhatLiesBetweenPixelsIsTheSame) {
    Random random(21);
    Canvas plainSource(kSize, kSize);
    Noise(*plainSource.surface, random);
    plainSource.surface->Row(7)[7] = plainSource.surface->At(3, 3);
    CDC denseSource(std::make_shared<CSurface>(Enlarged(*plainSource.surface)));
    for (int round = 0; round < 400; ++round) {
        Canvas plain(kSize, kSize);
        Noise(*plain.surface, random);
        CDC dense(std::make_shared<CSurface>(Enlarged(*plain.surface)));
        const CRect clip = RandomClip(random, kSize);
        if (round % 2) plain.dc.IntersectClipRect(clip), dense.IntersectClipRect(clip);
        for (int i = 0; i < 4; ++i) {
            const auto seed = static_cast<unsigned>(random());
            DrawSquare(plain.dc, plainSource.dc, seed);
            DrawSquare(dense, seed % 2 ? plainSource.dc : denseSource, seed);
            ASSERT_TRUE(*dense.Surface() == Enlarged(*plain.surface)) << "round " << round << ", step " << i << ", seed " << seed;
        }
    }
}

TEST(Density, AThinLineIsTheWayOfASquare) {
    Random random(22);
    for (int round = 0; round < 400; ++round) {
        Canvas c(30, 30, 2);
        c.dc.SelectStockObject(WHITE_PEN);
        const int reach = round % 3 ? 30 : 3000;
        const CPoint a(Pick(random, -5, 34), Pick(random, -5, 34));
        const CPoint b(Pick(random, -reach, reach), Pick(random, -reach, reach));
        c.dc.MoveTo(a), c.dc.LineTo(b);
        // Steps of half a unit, each the nearest place across; the last but one unit ends it.
        std::set<Pixel> expected;
        const int dx = b.x - a.x, dy = b.y - a.y, length = 2 * std::max(std::abs(dx), std::abs(dy));
        for (int step = 0; step < length - 1; ++step) {
            const auto nearest = [&](int from, int d) {
                return 2 * from + static_cast<int>(std::ceil((4.0 * d * step - length) / (2.0 * length)));
            };
            const int x = nearest(a.x, dx), y = nearest(a.y, dy);
            for (const Pixel& p : {Pixel(x, y), Pixel(x + 1, y), Pixel(x, y + 1), Pixel(x + 1, y + 1)})
                if (p.first >= 0 && p.second >= 0 && p.first < 60 && p.second < 60) expected.insert(p);
        }
        ASSERT_EQ(c.Lit(), expected) << "round " << round << ": " << a.x << "," << a.y << " - " << b.x << "," << b.y;
    }
}

TEST(Density, FiguresStayWhereTheyWere) {
    ForEachFigure(60, 4, [](const Figure& figure, const Style& style, const std::vector<CPoint>& points, Random&) {
        const auto is = [&](const char* what) { return std::string(figure.name).find(what) == 0; };
        const int line = style.pen & PS_STYLE_MASK;
        // Where a dash ends on a slim ellipse is a matter of much less than a pixel.
        if ((is("ellipse") || is("arc")) && line != PS_SOLID) return;
        const bool slivers = is("region") || (is("polygon") && line == PS_NULL);  // seen by finer eyes only
        Canvas plain(60, 60), dense(60, 60, 2);
        for (Canvas* c : {&plain, &dense}) Apply(c->dc, style, kWhite, [&] { figure.draw(c->dc, points); });
        const auto nearPlain = Around(plain), nearDense = Around(dense);
        const CRect within(1, 1, 59, 59);  // what is near may lie outside of the picture
        for (const auto& [x, y] : dense.Lit())
            ASSERT_TRUE(slivers || nearPlain.count({x / 2, y / 2}) || !within.PtInRect({x / 2, y / 2})) << x / 2.0 << "," << y / 2.0;
        for (const auto& [x, y] : plain.Lit())
            ASSERT_TRUE(nearDense.count({x, y}) || !within.PtInRect({x, y})) << x << "," << y;
        EXPECT_EQ(plain.dc.GetCurrentPosition(), dense.dc.GetCurrentPosition());
    });
}

TEST(Density, SizesAreInUnits) {
    Canvas plain(30, 20), dense(30, 20, 2);
    for (const int height : {0, 9, 14, -13, 100}) {
        CFont font;
        font.CreateFont(height, 0, 450, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, "");
        TEXTMETRIC metrics[2];
        CSize size[2];
        CRect box[2];
        for (Canvas* c : {&plain, &dense}) {
            const int i = c == &dense;
            c->dc.SelectObject(&font);
            c->dc.GetTextMetrics(&metrics[i]);
            size[i] = c->dc.GetTextExtent("Text 12 轴");
            c->dc.DrawText("one\ntwo", &box[i], DT_CALCRECT);
        }
        EXPECT_TRUE(size[0].cx == size[1].cx && size[0].cy == size[1].cy && box[0] == box[1]) << height;
        EXPECT_TRUE(metrics[0].tmHeight == metrics[1].tmHeight && metrics[0].tmAscent == metrics[1].tmAscent) << height;
    }
    CRect clip;
    dense.dc.GetClipBox(clip);
    EXPECT_TRUE(clip == CRect(0, 0, 30, 20));
    EXPECT_EQ(dense.surface->Width(), 60);
    CBitmap bitmap, vast;
    BITMAP size;
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(&dense.dc, 7, 5));
    bitmap.GetBitmap(&size);
    EXPECT_TRUE(size.bmWidth == 7 && size.bmHeight == 5 && bitmap.Surface()->Density() == 2);
    ASSERT_TRUE(vast.CreateCompatibleBitmap(&dense.dc, CSurface::kMaxSide, 1)) << "too long for a dense one";
    EXPECT_EQ(vast.Surface()->Density(), 1);

    CIconImage twice{CSurface(2, 2), {1, 0, 0, 1}};
    twice.m_cImage.Fill(0xFF0000);
    const CIconImage icon{CSurface(1, 1), {}, &twice};
    ASSERT_TRUE(DrawIconEx(&dense.dc, 3, 3, &icon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_EQ(dense.Lit(), (std::set<Pixel>{{6, 6}, {7, 7}}));
}
