// Ellipses, circles and their arcs.
#pragma once
#include <cstdint>

#include "platform/canvas/span_set.h"

/// An ellipse in a box of pixels, of any size. A pixel is inside if its centre is, for the ellipse that
/// touches the borders of the box's outer pixels; `grow` widens both axes by so many half pixels on either
/// side.
class CEllipseRaster {
public:
    CEllipseRaster(std::int64_t left, std::int64_t top, std::int64_t width, std::int64_t height)
        : m_left(left), m_top(top), m_width(width), m_height(height) {}

    /// Pixels [left, right] of a row; left > right if there are none.
    struct Extent {
        std::int64_t left = 0, right = -1;
        bool IsEmpty() const { return left > right; }
    };
    Extent RowExtent(std::int64_t y, std::int64_t grow) const;

    /// Outline of the pen's width: inside pixels with an outside neighbour for width 1, a ring about that for
    /// wider pens and on dense surfaces. The pen's width is in units. Costs what is visible of it, whatever the size.
    void AddOutline(int penWidth, int density, CSpanSet& spans) const;
    void AddInside(CSpanSet& spans) const;

    /// The outline's part of one row of any convex figure: pixels with a neighbour above, below or beside
    /// them that is outside.
    static void AddRowOutline(std::int64_t y, const Extent& above, const Extent& row, const Extent& below,
                              CSpanSet& spans);

    /// Offset of a pixel from the centre, in half pixels (so it is whole).
    std::int64_t OffsetX(std::int64_t x) const { return 2 * x - (2 * m_left + m_width - 1); }
    std::int64_t OffsetY(std::int64_t y) const { return 2 * y - (2 * m_top + m_height - 1); }
    std::int64_t Width() const { return m_width; }
    std::int64_t Height() const { return m_height; }
    double CentreX() const { return static_cast<double>(2 * m_left + m_width - 1) / 2; }  // pixels
    double CentreY() const { return static_cast<double>(2 * m_top + m_height - 1) / 2; }

private:
    std::int64_t m_left, m_top;      // first pixel of the box
    std::int64_t m_width, m_height;  // of the box, 1 or more
};

/// The part of the plane between two directions from a centre, anticlockwise on the screen (y down), widened
/// by half a unit at either side so that the rounded ends of an arc belong to it.
class CSector {
public:
    CSector(double startRadians, double sweepRadians, int density);  // a sweep below 0 runs the other way

    bool IsFull() const { return m_bFull; }
    double Start() const { return m_start; }
    bool IsReversed() const { return m_bReversed; }

    /// The part of the clip where pixels of the ellipse's arc can be.
    CRect Bounds(const CEllipseRaster& ellipse, std::int64_t penWidth, const CRect& clip) const;  // all in pixels

    /// (dx, dy) in half pixels from the centre.
    bool Contains(double dx, double dy) const;

private:
    double m_start;     // direction where drawing begins, radians
    double m_slack;     // half a unit, in half pixels
    bool m_bReversed;   // drawing runs clockwise
    bool m_bFull;       // a full turn or more
    bool m_bWide;       // more than half a turn
    double m_ax, m_ay;  // unit vector of the clockwise limit, y down
    double m_bx, m_by;  // unit vector of the anticlockwise limit, y down
    double m_mx, m_my;  // unit vector of the middle, y down
};
