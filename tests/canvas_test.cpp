// Lines, arcs and figures: which pixels they light.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

#include "canvas_figures.h"

using namespace canvas_test;

namespace {

/// The pixel of a line at step i: nearest across, halves to the lower coordinate. Exact for any ends.
bool IsOnLine(const CPoint& a, const CPoint& b, int x, int y) {
    const Wide dx = Wide{b.x} - a.x, dy = Wide{b.y} - a.y;
    const Wide lx = dx < 0 ? -dx : dx, ly = dy < 0 ? -dy : dy;
    const bool steep = ly > lx;
    const Wide length = steep ? ly : lx, slope = steep ? dx : dy;
    const Wide step =
        steep ? (dy < 0 ? Wide{a.y} - y : Wide{y} - a.y) : (dx < 0 ? Wide{a.x} - x : Wide{x} - a.x);
    if (step < 0 || step >= length) return false;
    const Wide across = steep ? Wide{x} - a.x : Wide{y} - a.y;
    const Wide miss = 2 * (across * length - slope * step);  // -length <= miss < length: within half a pixel
    return miss >= -length && miss < length;
}

}  // namespace

TEST(Lines, ArePlainBresenhamCutByTheClip) {
    Random random(1);
    constexpr int kReach[] = {12, 200, 100000, INT_MAX};
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE(round);
        const int reach = kReach[round % 4];
        Canvas c(50, 40);
        c.dc.SelectStockObject(WHITE_PEN);
        c.dc.IntersectClipRect(RandomClip(random, 50));
        CRect clip;
        c.dc.GetClipBox(&clip);
        const CPoint a(Pick(random, -reach, reach), Pick(random, -reach, reach));
        // Far ends are paired with near ones or with their mirror image, so that many lines cross the
        // picture.
        CPoint b(Pick(random, -20, 70), Pick(random, -20, 60));
        if (round % 3 == 0) b = CPoint(30 - a.x / 2, 20 - a.y / 2);
        c.dc.MoveTo(a);
        c.dc.LineTo(b);
        std::set<Pixel> expected;
        for (int y = clip.top; y < clip.bottom; ++y) {
            for (int x = clip.left; x < clip.right; ++x) {
                if (IsOnLine(a, b, x, y)) expected.emplace(x, y);
            }
        }
        ASSERT_EQ(c.Lit(), expected) << a.x << "," << a.y << " - " << b.x << "," << b.y;
    }
}

TEST(Lines, BackwardsLightTheSamePixelsButTheEnds) {
    Random random(2);
    for (int round = 0; round < 300; ++round) {
        const CPoint a(Pick(random, 0, 39), Pick(random, 0, 39)), b(Pick(random, 0, 39), Pick(random, 0, 39));
        Canvas to(40, 40), back(40, 40);
        for (Canvas* c : {&to, &back}) c->dc.SelectStockObject(WHITE_PEN);
        to.dc.MoveTo(a), to.dc.LineTo(b);
        back.dc.MoveTo(b), back.dc.LineTo(a);
        auto lit = to.Lit(), reverse = back.Lit();
        if (!(a == b)) lit.emplace(b.x, b.y), reverse.emplace(a.x, a.y);
        ASSERT_EQ(lit, reverse) << "round " << round;
    }
}

TEST(Lines, WidePensCoverTheBandWithSquareCaps) {
    Random random(3);
    for (int round = 0; round < 200; ++round) {
        const int width = Pick(random, 2, 9);
        const CPoint a(Pick(random, 0, 60), Pick(random, 0, 60)), b(Pick(random, 0, 60), Pick(random, 0, 60));
        if (a == b) continue;
        Canvas c(60, 60);
        CPen pen(PS_GEOMETRIC | PS_ENDCAP_SQUARE, width, kWhite);
        c.dc.SelectObject(&pen);
        c.dc.MoveTo(a), c.dc.LineTo(b);
        const double length = std::hypot(b.x - a.x, b.y - a.y), ux = (b.x - a.x) / length,
                     uy = (b.y - a.y) / length;
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 60; ++x) {
                const double along = (x - a.x) * ux + (y - a.y) * uy,
                             across = std::abs((y - a.y) * ux - (x - a.x) * uy);
                const double out = std::max({across, -along, along - length}) - width / 2.0;
                if (std::abs(out) < 1e-6) continue;  // borders belong to one side only
                ASSERT_EQ(c.surface->At(x, y) != 0, out < 0) << "round " << round << " at " << x << "," << y;
            }
        }
    }
    struct {
        int width, top, bottom;
    } const rows[] = {{1, 20, 21}, {2, 19, 21}, {3, 19, 22}, {4, 18, 22}};
    for (const auto& row : rows) {
        Canvas c(40, 40);
        CPen pen(PS_GEOMETRIC | PS_ENDCAP_FLAT, row.width, kWhite);
        c.dc.SelectObject(&pen);
        c.dc.MoveTo(10, 20), c.dc.LineTo(30, 20);
        std::set<Pixel> expected;
        for (int y = row.top; y < row.bottom; ++y) {
            for (int x = 10; x < 30; ++x) expected.emplace(x, y);
        }
        EXPECT_EQ(c.Lit(), expected) << row.width;
    }
}

TEST(Figures, TouchEachPixelOnce) {
    // On black, XOR shows a pixel that is touched twice as dark; white shows it lit.
    ForEachFigure(60, 6,
                  [](const Figure& figure, const Style& style, const std::vector<CPoint>& points, Random& random) {
                      const int density = Pick(random, 1, 2);
                      Canvas once(60, 60, density), any(60, 60, density);
                      once.dc.SetROP2(R2_XORPEN);
                      any.dc.SetROP2(R2_WHITE);
                      Apply(once.dc, style, kWhite, [&] { figure.draw(once.dc, points); });
                      Apply(any.dc, style, kWhite, [&] { figure.draw(any.dc, points); });
                      ASSERT_EQ(Show(once), Show(any));
                  });
}

TEST(Figures, DrawnTwiceInXorOrNotRestoreEveryPixel) {
    ForEachFigure(
        60, 3,
        [](const Figure& figure, const Style& style, const std::vector<CPoint>& points, Random& random) {
            for (const int rop : {R2_XORPEN, R2_NOT}) {
                Canvas c(60, 60, rop == R2_NOT ? 1 : 2);
                Noise(*c.surface, random);
                const CSurface before = *c.surface;
                c.dc.IntersectClipRect(RandomClip(random, 60));
                c.dc.SetROP2(rop);
                for (int time = 0; time < 2; ++time) {
                    Apply(c.dc, style, RGB(200, 100, 50), [&] { figure.draw(c.dc, points); });
                }
                ASSERT_EQ(*c.surface, before) << "raster mode " << rop;
            }
        });
}

TEST(Figures, AClipChangesNothingOfWhatIsSeen) {
    ForEachFigure(
        60, 4,
        [](const Figure& figure, const Style& style, const std::vector<CPoint>& points, Random& random) {
            const int k = Pick(random, 1, 2);
            Canvas clipped(60, 60, k), whole(60, 60, k);
            clipped.dc.IntersectClipRect(RandomClip(random, 60));
            CRect clip;
            clipped.dc.GetClipBox(&clip);
            Apply(clipped.dc, style, RGB(9, 8, 7), [&] { figure.draw(clipped.dc, points); });
            Apply(whole.dc, style, RGB(9, 8, 7), [&] { figure.draw(whole.dc, points); });
            CSurface expected(60, 60, k);
            for (int y = clip.top * k; y < clip.bottom * k; ++y) {
                for (int x = clip.left * k; x < clip.right * k; ++x) expected.Row(y)[x] = whole.surface->At(x, y);
            }
            ASSERT_EQ(*clipped.surface, expected);
        });
}

TEST(Figures, ExtremeCoordinatesAndPensAreHarmless) {
    constexpr int kExtreme[] = {INT_MIN, INT_MIN + 1, -(1 << 30), -40000,      -1,     0,
                                30,      40000,       1 << 30,    INT_MAX - 1, INT_MAX};
    ForEachFigure(60, 12,
                  [&](const Figure& figure, const Style& style, const std::vector<CPoint>&, Random& random) {
                      std::vector<CPoint> points;
                      for (int i = 0; i < 8; ++i)
                          points.emplace_back(kExtreme[Pick(random, 0, 10)], kExtreme[Pick(random, 0, 10)]);
                      points[2].x = points[2].x == INT_MIN ? 0 : points[2].x;  // whose abs is a radius
                      points[3].x /= 8, points[3].y /= 8, points[1].x /= 32;  // angles are multiples of these
                      Style worst = style;
                      if (Pick(random, 0, 3) == 0) worst.width = INT_MAX - Pick(random, 0, 2);
                      Canvas c(60, 60, Pick(random, 1, 2));
                      Noise(*c.surface, random);
                      const CSurface before = *c.surface;
                      c.dc.SetROP2(R2_XORPEN);
                      for (int time = 0; time < 2; ++time)
                          Apply(c.dc, worst, kWhite, [&] { figure.draw(c.dc, points); });
                      ASSERT_EQ(*c.surface, before);
                  });
}

TEST(Figures, HaveNoRightAndBottomSide) {
    struct {
        const char* name;
        int width;
        int pen;
        const char* picture;
    } const rows[] = {
        {"outline", 1, PS_SOLID, "......\n.###..\n.#.#..\n.###..\n......\n"},
        {"no outline: the fill takes all", 1, PS_NULL, "......\n.###..\n.###..\n.###..\n......\n"},
        {"3 wide, about the outline", 3, PS_SOLID, "#####.\n#####.\n#####.\n#####.\n#####.\n"},
        {"2 wide, inside frame", 2, PS_INSIDEFRAME, "......\n.###..\n.###..\n.###..\n......\n"},
        {"dashed", 1, PS_DASH, "......\n.###..\n.#.#..\n.###..\n......\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Canvas c(6, 5);
        CPen pen(row.pen, row.width, kWhite);
        c.dc.SelectObject(&pen);
        c.dc.SelectStockObject(row.pen == PS_NULL ? WHITE_BRUSH : NULL_BRUSH);
        c.dc.Rectangle(4, 4, 1, 1);  // in any order
        EXPECT_EQ(Show(c), row.picture);
    }
    Canvas ellipse(9, 9), fill(9, 9);
    ellipse.dc.SelectStockObject(WHITE_PEN), ellipse.dc.SelectStockObject(NULL_BRUSH);
    ellipse.dc.Ellipse(1, 1, 8, 8);
    EXPECT_EQ(Show(ellipse),
              ".........\n...###...\n..#...#..\n.#.....#.\n.#.....#.\n.#.....#.\n..#...#..\n...###...\n......"
              "...\n");
    fill.dc.SelectStockObject(NULL_PEN);
    fill.dc.Ellipse(1, 1, 8, 8);
    EXPECT_EQ(Show(fill),
              ".........\n...###...\n..#####..\n.#######.\n.#######.\n.#######.\n..#####..\n...###...\n......"
              "...\n");
}

namespace {

/// Every lit pixel lies within a pixel of the circle and every visible place of the arc has a lit pixel
/// within one.
void CheckArc(Canvas& c, double cx, double cy, double r, double start, double sweep) {
    const auto lit = c.Lit();
    for (const auto& [x, y] : lit) {
        const double off = std::hypot(x - cx, y - cy) - r;
        ASSERT_LE(std::abs(off), 0.75) << x << "," << y;
        if (std::abs(sweep) >= 360) continue;
        // Out of the arc by at most a pixel.
        const double angle = std::atan2(cy - y, x - cx) * 180 / kPi;
        double into = std::fmod(sweep > 0 ? angle - start : start - angle, 360.0);
        if (into < 0) into += 360;
        const double beyond = std::min(into - std::abs(sweep), 360 - into) * kPi / 180 * r;
        ASSERT_LE(beyond, 1.3) << x << "," << y;
    }
    // Walk the curve where it can be seen: by columns and by rows.
    const double width = c.surface->Width(), height = c.surface->Height();
    const auto check = [&](double x, double y) {
        if (x < 0 || y < 0 || x > width - 1 || y > height - 1) return;
        double into =
            std::fmod((sweep > 0 ? 1 : -1) * (std::atan2(cy - y, x - cx) * 180 / kPi - start), 360.0);
        if (into < 0) into += 360;
        if (into > std::abs(sweep)) return;
        bool near = false;
        for (int j = -1; j <= 1; ++j) {
            for (int i = -1; i <= 1; ++i) {
                const int px = static_cast<int>(std::lround(x)) + i,
                          py = static_cast<int>(std::lround(y)) + j;
                near = near || (lit.count({px, py}) != 0 && std::hypot(px - x, py - y) <= 1.0);
            }
        }
        // A pixel off the edge may be the one.
        const bool edge = x < 1 || y < 1 || x > width - 2 || y > height - 2;
        ASSERT_TRUE(near || edge) << x << "," << y;
    };
    for (double x = 0; x < width; x += 0.25) {
        const double h = (r - (x - cx)) * (r + (x - cx));
        if (h < 0) continue;
        check(x, cy + std::sqrt(h)), check(x, cy - std::sqrt(h));
    }
    for (double y = 0; y < height; y += 0.25) {
        const double h = (r - (y - cy)) * (r + (y - cy));
        if (h < 0) continue;
        check(cx + std::sqrt(h), y), check(cx - std::sqrt(h), y);
    }
}

}  // namespace

TEST(Arcs, StayWithinAPixelForEveryRadius) {
    Random random(4);
    for (const int r : {1, 2, 3, 5, 8, 13, 40, 200, 1000, 12345, 1000000, 33333333, 100000000}) {
        for (int round = 0; round < 40; ++round) {
            SCOPED_TRACE("radius " + std::to_string(r) + ", round " + std::to_string(round));
            Canvas c(120, 90);
            c.dc.SelectStockObject(WHITE_PEN);
            c.dc.SelectStockObject(NULL_BRUSH);
            // The centre lies so that the circle passes near the middle of the picture.
            const double toward = round * 9.0 * kPi / 180;
            const int cx = static_cast<int>(std::lround(60 - r * std::cos(toward)));
            const int cy = static_cast<int>(std::lround(45 + r * std::sin(toward)));
            const double shown = round * 9.0, part = std::min(300.0, 30 / (r * kPi / 180));
            const double sweep = round % 4 == 0   ? 360
                                 : round % 4 == 1 ? -part
                                 : round % 4 == 2 ? part
                                                  : Pick(random, 1, 359);
            const double start = round % 4 == 3 ? Pick(random, -720, 720) : shown - part / 3;
            c.dc.MoveTo(static_cast<int>(std::lround(cx + r * std::cos(start * kPi / 180))),
                        static_cast<int>(std::lround(cy - r * std::sin(start * kPi / 180))));
            if (round % 8 == 0) {
                c.dc.Ellipse(cx - r, cy - r, cx + r + 1, cy + r + 1);
            } else {
                c.dc.AngleArc(cx, cy, r, start, sweep);
            }
            ASSERT_NO_FATAL_FAILURE(CheckArc(c, cx, cy, r, start, sweep));
        }
    }
}

TEST(Arcs, RunAnticlockwiseAndMoveThePosition) {
    Canvas c(41, 41);
    c.dc.SelectStockObject(WHITE_PEN);
    c.dc.MoveTo(30, 20);
    ASSERT_TRUE(c.dc.AngleArc(20, 20, 10, 0, 90));
    EXPECT_TRUE(c.dc.GetCurrentPosition() == CPoint(20, 10));
    EXPECT_EQ(c.dc.GetPixel(27, 13), kWhite);
    EXPECT_EQ(c.dc.GetPixel(13, 13), 0u);
    EXPECT_EQ(c.dc.GetPixel(30, 20), kWhite) << "both ends are lit";
    EXPECT_EQ(c.dc.GetPixel(20, 10), kWhite);

    Canvas box(41, 41);
    box.dc.SelectStockObject(WHITE_PEN);
    ASSERT_TRUE(box.dc.Arc(10, 10, 31, 31, 40, 20, 20, 0));
    EXPECT_EQ(box.Lit(), c.Lit()) << "the same quarter, told by directions";

    EXPECT_FALSE(c.dc.AngleArc(20, 20, -1, 0, 90));
    EXPECT_FALSE(c.dc.AngleArc(20, 20, 5, std::nan(""), 90));
    EXPECT_FALSE(c.dc.AngleArc(20, 20, 5, 0, INFINITY));
}

TEST(Ellipses, OutlineStaysNearTheCurveAndIsTheRimOfTheFill) {
    Random random(5);
    for (int round = 0; round < 400; ++round) {
        const int w = Pick(random, 1, 70), h = Pick(random, 1, 70);
        Canvas outline(72, 72), fill(72, 72);
        outline.dc.SelectStockObject(WHITE_PEN), outline.dc.SelectStockObject(NULL_BRUSH);
        fill.dc.SelectStockObject(NULL_PEN), fill.dc.SelectStockObject(WHITE_BRUSH);
        outline.dc.Ellipse(1, 1, 1 + w, 1 + h);
        fill.dc.Ellipse(1, 1, 1 + w, 1 + h);
        const auto inside = fill.Lit();
        std::set<Pixel> rim;
        for (const auto& [x, y] : inside) {
            const bool inner = inside.count({x - 1, y}) && inside.count({x + 1, y}) &&
                               inside.count({x, y - 1}) && inside.count({x, y + 1});
            if (!inner) rim.emplace(x, y);
        }
        ASSERT_EQ(outline.Lit(), rim) << "round " << round << ": " << w << " by " << h;
        // Distance to the ellipse through the centres of the box's outer pixels, by trying its points.
        const double a = (w - 1) / 2.0, b = (h - 1) / 2.0;
        int left = 99, top = 99, right = -1, bottom = -1;
        for (const auto& [x, y] : rim) {
            double least = 1e9;
            for (int t = 0; t < 720; ++t) {
                const double angle = t * kPi / 360;
                least = std::min(
                    least, std::hypot(1 + a + a * std::cos(angle) - x, 1 + b + b * std::sin(angle) - y));
            }
            ASSERT_LE(least, 1.0) << "round " << round << ": " << w << " by " << h << " at " << x << "," << y;
            left = std::min(left, x), right = std::max(right, x), top = std::min(top, y),
            bottom = std::max(bottom, y);
        }
        ASSERT_TRUE(left == 1 && top == 1 && right == w && bottom == h) << "round " << round;
    }
}
