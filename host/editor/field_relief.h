// A field as a surface in space, and its picture from any side.
#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "platform/win_types.h"

class CChang;
class CSurface;

/// The usable triangles of a field, each corner lifted by its value. In the plan the middle is the origin and
/// half the diagonal is 1; values go from 0, the least, to 1. A copy: the field may go.
class FieldRelief {
public:
    struct Point {
        float x = 0, y = 0;
        float t = 0;  // share of the value in the range
    };
    using Triangle = std::array<int, 3>;  // positions in the points

    FieldRelief() = default;
    explicit FieldRelief(const CChang& field);

    /// About so many triangles, from all over the field: each cell of a lattice keeps its most outlying
    /// point. For pictures while something moves.
    FieldRelief Thinned(int triangles) const;

    const std::vector<Point>& Points() const { return m_aPoint; }
    const std::vector<Triangle>& Triangles() const { return m_aTriangle; }
    float HalfWidth() const { return m_fHalfWidth; }  // of the plan's box
    float HalfHeight() const { return m_fHalfHeight; }

private:
    std::vector<Point> m_aPoint;
    std::vector<Triangle> m_aTriangle;
    float m_fHalfWidth = 0, m_fHalfHeight = 0;
};

/// From where a relief is seen.
struct ReliefView {
    float alpha = -0.5f;  // turn about the vertical, radians
    float beta = 0.65f;   // tilt, radians: pi/2 is the plan, 0 the elevation, negative from below
    float lift = 0.5f;    // height of the whole range, in half diagonals
    double scale = 100;   // pixels for half a diagonal
    double x = 0, y = 0;  // the pixel of the middle
};

/// Colours of values from the least to the greatest.
using ReliefColors = std::array<COLORREF, 256>;

/// Paints the relief over the part of the surface that `clip` names: nearer parts hide farther ones, and
/// slopes are a little darker. The outline of the plan lies under it at the height of the least value.
void PaintRelief(const FieldRelief& relief, const ReliefView& view, const ReliefColors& colors,
                 COLORREF frame, const CRect& clip, CSurface& surface);
