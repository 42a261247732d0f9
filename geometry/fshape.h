// CFShape: one straight or circular piece in polar form.
#pragma once
#include <cmath>

#include "geometry/fpoint.h"

/// A point, line, arc or circle:
///
///          line            arc or circle              point
///   x, y   start           centre                     the point
///   r      length          radius, may be negative    0
///   a      direction       start angle                0
///   b      0               signed sweep, positive     0
///                          anticlockwise
///
/// Angles are radians. A negative r means that the stored angle points away from the geometry: GetA adds pi
/// to it, and so does SetA on the way in, so that for such a shape SetA(v) and then GetA gives v plus 2 pi.
/// The asymmetry is meant.
class CFShape : public CFPoint {
public:
    constexpr CFShape() : r(0), a(0), b(0) {}
    constexpr CFShape(float px, float py) : CFPoint(px, py, 0), r(0), a(0), b(0) {}           // point
    constexpr explicit CFShape(const CFPoint& p) : CFPoint(p.x, p.y, 0), r(0), a(0), b(0) {}  // point
    constexpr CFShape(const CFPoint& p, float angle)
        : CFPoint(p.x, p.y, 0), r(1), a(angle), b(0) {}  // unit ray
    CFShape(const CFPoint& p1, const CFPoint& p2);       // line
    constexpr CFShape(const CFPoint& c, float radius, float angle, float sweep)
        : CFPoint(c.x, c.y, 0), r(radius), a(angle), b(sweep) {}
    /// The piece from start to end with c as in CFShoot (half the central angle, positive clockwise). A line
    /// when c is 0 or too flat, a point when the ends are one, a circle about the chord's middle from a full
    /// turn on.
    CFShape(const CFPoint& start, const CFPoint& end, float c);
    /// The arc from p1 to p2 through p3, which stands between them; a line when the three are collinear.
    CFShape(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3);

    // What it is: the first of these that holds.
    int IsPoint() const { return r == 0; }
    int IsLine() const { return r != 0 && b == 0; }
    int IsArc() const { return r != 0 && b != 0 && AbsSweep() < tolerance::kFullTurn; }
    int IsCircle() const { return r != 0 && AbsSweep() >= tolerance::kFullTurn; }

    // Fields, seen with a radius that is not negative.
    float GetA() const { return static_cast<float>(GetStartAngle()); }
    float GetB() const { return b; }
    float GetR() const { return std::fabs(r); }
    void SetA(float v) { a = r < 0 ? static_cast<float>(v + tolerance::kHalfTurn) : v; }
    void SetB(float v) { b = v; }
    void SetR(float v) { r = r < 0 ? -v : v; }

    // Measures.
    double GetRadius() const { return std::fabs(r); }
    double GetLength() const { return b == 0 ? std::fabs(r) : std::fabs(r * b); }  // the product in float
    double GetStartAngle() const { return r < 0 ? a + tolerance::kHalfTurn : a; }
    double GetEndAngle() const { return GetStartAngle() + b; }
    CFPoint GetStartPoint() const;
    CFPoint GetEndPoint() const;
    CFPoint GetMiddlePoint() const;                  // of a full circle the top
    void GetRect(CFPoint& min, CFPoint& max) const;  // extent of the piece, arcs included

    // Where a point lies.
    double Distance(const CFPoint& p) const;         // to the endless line or whole circle, not to the piece
    int OnShape(const CFPoint& p, float tol) const;  // on the piece, bounds included
    int HitTest(const CFPoint& p, float tol) const { return OnShape(p, tol); }
    int AtLeft(const CFPoint& p) const;  // strictly to the left of the direction a

    // Moving.
    CFShape& Offset(const CFPoint& d) {
        CFPoint::Offset(d);
        return *this;
    }
    CFShape& Rotate(const CFPoint& centre, double angle);
    CFShape& Mirror(const CFPoint& p1, const CFPoint& p2);
    CFShape& Stretch(const CFPoint& centre, double factor);

    void Serialize(CArchive& ar);  // the point, then r, a, b

    float r;  // length or radius
    float a;  // direction or start angle, radians
    float b;  // sweep, radians

private:
    double AbsSweep() const { return std::fabs(static_cast<double>(b)); }
    CFPoint Along(double angle, double length) const;
    void InitPiece(const CFPoint& start, const CFPoint& end, double c);
};
