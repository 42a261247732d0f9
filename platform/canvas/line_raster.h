// Lines one pixel wide.
#pragma once
#include <cstdint>

#include "platform/canvas/raster_op.h"

/// The visible stretch of a digital line, ready for stepping. Step i of the line from a to b is i pixels
/// along its longer axis; across, it is rounded to the nearest pixel, halves to the lower coordinate, so that
/// a line and its reverse light the same pixels. Clipping solves for the first and last visible step and
/// starts the division there, thus lights exactly the pixels of the unclipped line.
struct CLineWalk {
    int x = 0, y = 0;            // first visible pixel
    std::int64_t first = 0;      // its step number
    std::int64_t count = 0;      // visible steps
    int majorX = 0, majorY = 0;  // each step
    int minorX = 0, minorY = 0;  // added when the rest overflows
    std::int64_t rest = 0;       // of the division, less `whole`: overflow at 0
    std::int64_t add = 0;        // to the rest at each step
    std::int64_t whole = 0;      // taken off at an overflow

    template <typename Visit>  // visit(x, y, step)
    void ForEach(Visit visit) const {
        int px = x, py = y;
        std::int64_t r = rest;
        for (std::int64_t i = 0; i < count; ++i) {
            visit(px, py, first + i);
            px += majorX;
            py += majorY;
            r += add;
            if (r >= 0) {
                r -= whole;
                px += minorX;
                py += minorY;
            }
        }
    }
};

/// The walk within the clip, with b itself or without; count 0 if nothing is visible. Any coordinates.
CLineWalk WalkLine(const CPoint& a, const CPoint& b, bool withLast, const CRect& clip);

/// Paints the walk of a solid line.
void PaintLine(const CRasterTarget& target, const CPoint& a, const CPoint& b, bool withLast);

/// The way of a square of `density` by `density` pixels from logical pixel a to b: each step is the square's left
/// upper pixel. It begins on the whole of a and ends, without the last, on the logical pixel next to b.
CLineWalk WalkSquare(const CPoint& a, const CPoint& b, bool withLast, int density, const CRect& clip);

/// Visits what the square covers on its way, each pixel once: visit(rectangle, step), at each step the part that it
/// has newly reached. Parts may lie outside of the clip.
template <typename Visit>
void ForEachCovered(const CLineWalk& walk, int density, Visit visit) {
    const int k = density;
    int oldX = 0, oldY = 0;
    walk.ForEach([&](int x, int y, std::int64_t step) {
        if (step == walk.first) {
            visit(CRect(x, y, x + k, y + k), step);
        } else {
            const int column = x > oldX ? x + k - 1 : x, row = y > oldY ? y + k - 1 : y;  // the fronts
            if (x != oldX) visit(CRect(column, y, column + 1, y + k), step);
            if (y != oldY) {
                const int left = x < oldX ? x + 1 : x, right = x > oldX ? x + k - 1 : x + k;
                if (left < right) visit(CRect(left, row, right, row + 1), step);
            }
        }
        oldX = x;
        oldY = y;
    });
}

/// Paints what the square covers on its way to b, without the last.
void PaintSquare(const CRasterTarget& target, const CPoint& a, const CPoint& b, int density);

/// Whether a dashed pen is down at this distance from the start of the figure; a solid pen always is. The
/// pattern is in units of the pen's width.
bool IsDashOn(int penStyle, std::int64_t distance);

/// Number of strokes of the pattern; each is a length and the gap behind it. 0 for a solid pen.
struct CDash {
    int on, off;
};
const CDash* DashPattern(int penStyle, int& count, int& period);
