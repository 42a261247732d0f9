// All that a context draws, with pens and brushes of all kinds, for tests.
#pragma once
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "canvas_fixture.h"

namespace canvas_test {

struct Figure {
    const char* name;
    std::function<void(CDC&, const std::vector<CPoint>&)> draw;  // from eight random points
};
inline const std::vector<Figure>& Figures() {
    using Points = std::vector<CPoint>;
    static const std::vector<Figure> figures = {
        {"line", [](CDC& dc, const Points& p) { dc.MoveTo(p[0]), dc.LineTo(p[1]); }},
        {"polyline", [](CDC& dc, const Points& p) { dc.Polyline(p.data(), 8); }},
        {"rectangle", [](CDC& dc, const Points& p) { dc.Rectangle(CRect(p[0], p[1])); }},
        {"round rectangle", [](CDC& dc, const Points& p) { dc.RoundRect(CRect(p[0], p[1]), p[2]); }},
        {"ellipse", [](CDC& dc, const Points& p) { dc.Ellipse(CRect(p[0], p[1])); }},
        {"arc in a box", [](CDC& dc, const Points& p) { dc.Arc(CRect(p[0], p[1]), p[2], p[3]); }},
        {"arc by angles",
         [](CDC& dc, const Points& p) {
             dc.MoveTo(p[0]), dc.AngleArc(p[1].x, p[1].y, std::abs(p[2].x / 2), p[3].x * 5, p[3].y * 4);
         }},
        {"polygon", [](CDC& dc, const Points& p) { dc.Polygon(p.data(), 8); }},
        {"region",
         [](CDC& dc, const Points& p) {
             CRgn region;
             CBrush brush(HS_DIAGCROSS, kWhite);
             region.CreatePolygonRgn(p.data(), 7, WINDING);
             dc.FillRgn(&region, &brush);
         }},
        {"text", [](CDC& dc, const Points& p) { dc.TextOut(p[0].x, p[0].y, "Ag 4\xC2\xB0 \xE8\xBD\xB4"); }},
        {"turned text",
         [](CDC& dc, const Points& p) {
             CFont font;
             font.CreateFont(20, 0, p[1].x * 17, 0, 400, 1, 1, 1, 0, 0, 0, 0, 0, "");
             CFont* old = dc.SelectObject(&font);
             dc.TextOut(p[0].x, p[0].y, "Wg%");
             dc.SelectObject(old);
         }},
    };
    return figures;
}

struct Style {
    const char* name;
    int pen, width;
    int brush;  // -2 null, -1 solid, else hatch
    int bkMode;
};
inline constexpr Style kStyles[] = {
    {"thin", PS_SOLID, 1, -2, TRANSPARENT},
    {"thin, filled", PS_SOLID, 1, -1, OPAQUE},
    {"no pen, hatched", PS_NULL, 1, HS_CROSS, TRANSPARENT},
    {"dashes and filled gaps", PS_DASH, 1, HS_BDIAGONAL, OPAQUE},
    {"dots", PS_DOT, 1, -2, TRANSPARENT},
    {"dash dot", PS_DASHDOT, 1, -1, TRANSPARENT},
    {"geometric dashes", PS_GEOMETRIC | PS_DASHDOTDOT | PS_ENDCAP_SQUARE, 1, -2, OPAQUE},
    {"2 wide", PS_SOLID, 2, -2, TRANSPARENT},
    {"7 wide, filled", PS_GEOMETRIC | PS_JOIN_BEVEL, 7, -1, OPAQUE},
    {"wide dashes", PS_DASH, 3, -2, OPAQUE},
    {"wide inside frame", PS_INSIDEFRAME, 5, -1, TRANSPARENT},
};

inline void Apply(CDC& dc, const Style& s, COLORREF color, const std::function<void()>& draw) {
    CPen pen(s.pen, s.width, color);
    CBrush brush(color);
    if (s.brush == -2) brush.CreateStockObject(NULL_BRUSH);
    if (s.brush >= 0) brush.CreateHatchBrush(s.brush, color);
    CPen* oldPen = dc.SelectObject(&pen);
    CBrush* oldBrush = dc.SelectObject(&brush);
    dc.SetBkMode(s.bkMode);
    dc.SetBkColor(color);
    dc.SetTextColor(color);
    draw();
    dc.SelectObject(oldPen);
    dc.SelectObject(oldBrush);
}

/// Calls test(figure, style, points) with a trace of what it is; points scattered about a square of `size`.
inline void ForEachFigure(
    int size, int rounds,
    const std::function<void(const Figure&, const Style&, const std::vector<CPoint>&, Random&)>& test) {
    Random random(7);
    for (const Figure& figure : Figures()) {
        for (const Style& style : kStyles) {
            for (int round = 0; round < rounds; ++round) {
                std::vector<CPoint> points;
                for (int i = 0; i < 8; ++i)
                    points.emplace_back(Pick(random, -size / 3, size * 4 / 3),
                                        Pick(random, -size / 3, size * 4 / 3));
                SCOPED_TRACE(std::string(figure.name) + ", " + style.name + ", round " +
                             std::to_string(round));
                test(figure, style, points, random);
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}

}  // namespace canvas_test
