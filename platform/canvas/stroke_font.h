// CStrokeFont: the built-in characters.
#pragma once
#include <vector>

#include "platform/canvas/glyph_source.h"

/// Printable ASCII and the degree sign, drawn from strokes, so any height and angle looks alike and no font
/// file is needed. Every character steps by half of the cell's height, which makes text extents the same
/// everywhere.
class CStrokeFont : public CGlyphSource {
public:
    bool Render(const CGlyphRequest& request, CGlyphMask& mask) override;
    double Advance(const CGlyphRequest& request) override;
    double AscentShare() const override { return 0.75; }
    double CellPerEm() const override { return 1.0; }
};

/// A point of a stroke in pixels, y up from the baseline.
struct CStrokePoint {
    double x, y;
};

/// Renders the union of round-ended strokes of a width in pixels, turned by an angle in radians about the pen
/// position, with smooth edges.
void RenderStrokes(const std::vector<std::vector<CStrokePoint>>& strokes, double width, double angle,
                   CGlyphMask& mask);
