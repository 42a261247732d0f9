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

/// Whether a dashed pen is down at this distance from the start of the figure; a solid pen always is. The
/// pattern is in units of the pen's width.
bool IsDashOn(int penStyle, std::int64_t distance);

/// Number of strokes of the pattern; each is a length and the gap behind it. 0 for a solid pen.
struct CDash {
    int on, off;
};
const CDash* DashPattern(int penStyle, int& count, int& period);
