// CFShoot: a vertex of an outline, with the arc that leaves it.
#pragma once
#include <cmath>

#include "geometry/fpoint.h"

/// A vertex and half the central angle, in radians, of the arc to the next vertex. c is positive when that
/// arc turns clockwise and negative when it turns anticlockwise: the arc leaves in the direction of the chord
/// plus c and arrives in the direction of the chord minus c. c 0 is a straight edge.
class CFShoot : public CFPoint {
public:
    constexpr CFShoot() : c(0) {}
    constexpr CFShoot(float px, float py, float half) : CFPoint(px, py, 0), c(half) {}
    constexpr CFShoot(const CFPoint& p, float half) : CFPoint(p.x, p.y, 0), c(half) {}

    float GetC() const { return c; }
    void SetC(float v) { c = v; }

    int IsLine() const { return c == 0; }
    int IsArc() const { return c != 0; }  // of a circle, too, and of a NaN
    int IsCircle() const { return std::fabs(static_cast<double>(c)) >= tolerance::kFullTurn; }

    void Serialize(CArchive& ar);  // the point, then c

    float c;  // half the central angle, radians, positive clockwise
};
