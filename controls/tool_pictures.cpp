#include "controls/tool_pictures.h"

#include <cmath>
#include <vector>

#include "platform/canvas/dc.h"

namespace {

/// Draws in sixteenths of the square, with two colours.
class Sketch {
public:
    Sketch(CDC& dc, const CRect& box, const ToolColours& colours)
        : m_dc(dc), m_box(box), m_colours(colours), m_saved(dc.SaveDC()) {
        m_dc.SetBkMode(TRANSPARENT);
        m_dc.SelectStockObject(NULL_BRUSH);
        Ink();
    }
    ~Sketch() { m_dc.RestoreDC(m_saved); }
    Sketch(const Sketch&) = delete;
    Sketch& operator=(const Sketch&) = delete;

    Sketch& Ink() { return Colour(m_colours.m_ink); }
    Sketch& Accent() { return Colour(m_colours.m_accent); }
    /// Both ends are lit.
    Sketch& Line(double x1, double y1, double x2, double y2) {
        const CPoint from = At(x1, y1), to = At(x2, y2);
        m_dc.MoveTo(from);
        m_dc.LineTo(to);
        m_dc.SetPixel(to, m_colour);
        return *this;
    }
    /// A line two sixteenths thick.
    Sketch& Bar(double x1, double y1, double x2, double y2) { return Line(x1, y1, x2, y2).Line(x1 + 1, y1, x2 + 1, y2); }
    Sketch& Frame(double x1, double y1, double x2, double y2) {
        const CPoint a = At(x1, y1), b = At(x2, y2);
        m_dc.Rectangle(a.x, a.y, b.x + 1, b.y + 1);
        return *this;
    }
    Sketch& Block(double x1, double y1, double x2, double y2) {
        const CPoint a = At(x1, y1), b = At(x2 + 1, y2 + 1);
        m_dc.FillSolidRect(a.x, a.y, b.x - a.x, b.y - a.y, m_colour);
        return *this;
    }
    Sketch& Circle(double x1, double y1, double x2, double y2) {
        const CPoint a = At(x1, y1), b = At(x2, y2);
        m_dc.Ellipse(a.x, a.y, b.x + 1, b.y + 1);
        return *this;
    }
    /// Part of a circle, degrees, anticlockwise from the right.
    Sketch& Arc(double x, double y, double r, double start, double sweep) {
        const CPoint centre = At(x, y);
        const int radius = static_cast<int>(std::lround(r * m_box.Width() / 16));
        const double angle = start * std::acos(-1.0) / 180;
        m_dc.MoveTo(centre.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                    centre.y - static_cast<int>(std::lround(radius * std::sin(angle))));
        m_dc.AngleArc(centre.x, centre.y, radius, start, sweep);
        return *this;
    }
    Sketch& Outline(std::initializer_list<CPoint> corners) {
        std::vector<CPoint> points;
        for (const CPoint& p : corners) points.push_back(At(p.x, p.y));
        m_dc.Polygon(points.data(), static_cast<int>(points.size()));
        return *this;
    }
    Sketch& Filled(std::initializer_list<CPoint> corners) {
        CBrush brush(m_colour);
        CBrush* const old = m_dc.SelectObject(&brush);
        Outline(corners);
        m_dc.SelectObject(old);
        return *this;
    }
    Sketch& Pointer(int x, int y) {
        return Ink().Filled({{x, y}, {x, y + 8}, {x + 2, y + 6}, {x + 3, y + 9}, {x + 4, y + 8}, {x + 4, y + 6}, {x + 6, y + 6}});
    }
    Sketch& Lens() { return Ink().Circle(1, 1, 10, 10).Bar(10, 10, 13, 13).Line(10, 9, 13, 12); }

private:
    Sketch& Colour(COLORREF colour) {
        m_colour = colour;
        m_dc.SelectStockObject(BLACK_PEN);
        m_pen.DeleteObject();
        m_pen.CreatePen(PS_SOLID, 1, colour);
        m_dc.SelectObject(&m_pen);
        return *this;
    }
    CPoint At(double x, double y) const {
        return {m_box.left + static_cast<int>(std::lround(x * m_box.Width() / 16)),
                m_box.top + static_cast<int>(std::lround(y * m_box.Height() / 16))};
    }

    CDC& m_dc;
    CRect m_box;
    ToolColours m_colours;
    int m_saved;  // the context's state before
    CPen m_pen;
    COLORREF m_colour = 0;
};

}  // namespace

void DrawZoomIn(CDC& dc, const CRect& box, const ToolColours& colours) { Sketch(dc, box, colours).Lens().Accent().Block(5, 3, 6, 8).Block(3, 5, 8, 6); }
void DrawZoomOut(CDC& dc, const CRect& box, const ToolColours& colours) { Sketch(dc, box, colours).Lens().Accent().Block(3, 5, 8, 6); }

void DrawShowAll(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    sketch.Accent().Block(5, 5, 10, 10).Ink();
    sketch.Block(1, 1, 5, 1).Block(1, 1, 1, 5).Block(10, 1, 14, 1).Block(14, 1, 14, 5);
    sketch.Block(1, 14, 5, 14).Block(1, 10, 1, 14).Block(10, 14, 14, 14).Block(14, 10, 14, 14);
}

void DrawShowMove(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    sketch.Ink().Block(2, 7, 12, 7).Block(7, 2, 7, 12).Accent();
    sketch.Filled({{7, 0}, {4, 3}, {10, 3}}).Filled({{7, 14}, {4, 11}, {10, 11}});
    sketch.Filled({{0, 7}, {3, 4}, {3, 10}}).Filled({{14, 7}, {11, 4}, {11, 10}});
}

void DrawShowRect(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    for (int i = 1; i < 15; i += 3) sketch.Accent().Block(i, 1, i + 1, 1).Block(1, i, 1, i + 1).Block(i, 14, i + 1, 14).Block(14, i, 14, i + 1);
    sketch.Ink().Circle(4, 4, 9, 9).Bar(9, 9, 11, 11);
}

void DrawShowAgain(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    sketch.Ink().Arc(7, 8, 5, 60, 280).Arc(7, 8, 6, 60, 280).Accent().Filled({{9, 0}, {9, 7}, {14, 4}});
}

void DrawShowPre(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Ink().Frame(1, 2, 14, 11).Block(5, 14, 10, 14).Block(7, 12, 8, 13).Accent().Filled({{4, 7}, {8, 4}, {8, 10}}).Block(8, 6, 12, 8);
}

void DrawSelectOne(CDC& dc, const CRect& box, const ToolColours& colours) { Sketch(dc, box, colours).Accent().Frame(1, 1, 7, 7).Pointer(6, 5); }

void DrawSelectWindow(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    for (int i = 1; i < 12; i += 3) sketch.Accent().Block(i, 1, i + 1, 1).Block(1, i, 1, i + 1).Block(i, 11, i + 1, 11).Block(12, i, 12, i + 1);
    sketch.Pointer(8, 6);
}

void DrawSelectPolygon(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Accent().Outline({{1, 5}, {6, 1}, {13, 4}, {11, 11}, {3, 12}}).Pointer(8, 6);
}

void DrawUndo(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    sketch.Ink().Arc(8, 9, 5, -60, 200).Arc(8, 9, 4, -60, 200).Accent().Filled({{1, 6}, {6, 2}, {6, 9}});
}

void DrawRedo(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch sketch(dc, box, colours);
    sketch.Ink().Arc(7, 9, 5, 40, 200).Arc(7, 9, 4, 40, 200).Accent().Filled({{14, 6}, {9, 2}, {9, 9}});
}

void DrawNewFile(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Ink().Outline({{3, 1}, {9, 1}, {12, 4}, {12, 14}, {3, 14}}).Line(9, 1, 9, 4).Line(9, 4, 12, 4);
}

void DrawOpenFile(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Ink().Outline({{1, 13}, {1, 3}, {5, 3}, {7, 5}, {12, 5}, {12, 13}}).Accent().Filled({{1, 13}, {4, 8}, {15, 8}, {12, 13}});
}

void DrawSaveFile(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Ink().Outline({{1, 1}, {12, 1}, {14, 3}, {14, 14}, {1, 14}}).Block(4, 9, 11, 13).Accent().Block(5, 2, 10, 5);
}

void DrawPrint(CDC& dc, const CRect& box, const ToolColours& colours) {
    Sketch(dc, box, colours).Ink().Frame(4, 1, 11, 5).Frame(1, 5, 14, 11).Accent().Block(4, 9, 11, 13).Ink().Block(12, 7, 12, 7);
}
