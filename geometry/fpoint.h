// CFPoint: the point of the model.
#pragma once
#include <cmath>

#include "geometry/tolerance.h"

class CArchive;

/// A point of three floats in model units (millimetres), nearly always used in the plane. A plain record that
/// is copied by value everywhere. Int results are booleans, 0 or 1.
class CFPoint {
public:
    constexpr CFPoint() : x(0), y(0), z(0) {}
    constexpr CFPoint(float px, float py, float pz) : x(px), y(py), z(pz) {}

    float GetX() const { return x; }
    float GetY() const { return y; }
    float GetZ() const { return z; }
    void SetX(float v) { x = v; }
    void SetY(float v) { y = v; }
    void SetZ(float v) { z = v; }

    // Comparing.
    double Distance(const CFPoint& p) const;          // in space; all float, widened at the end
    int Similar(const CFPoint& p, float tol) const {  // strictly nearer than tol in each coordinate
        return std::fabs(x - p.x) < tol && std::fabs(y - p.y) < tol && std::fabs(z - p.z) < tol;
    }
    int HitTest(const CFPoint& p, float tol) const { return Similar(p, tol); }
    int Contain(const CFPoint& a, const CFPoint& b) const {  // in the box spanned by a and b, bounds included
        return Between(x, a.x, b.x) && Between(y, a.y, b.y) && Between(z, a.z, b.z);
    }
    /// == forgives 0.001 and != forgives nothing, so two points can be equal and unequal at once. That is
    /// meant: callers ask the one for "the same place" and the other for "changed at all".
    int operator==(const CFPoint& p) const { return Similar(p, tolerance::kSamePoint); }
    int operator!=(const CFPoint& p) const { return x != p.x || y != p.y || z != p.z; }

    // Moving.
    CFPoint& Offset(const CFPoint& d) {
        x += d.x;
        y += d.y;
        z += d.z;
        return *this;
    }
    CFPoint& operator+=(const CFPoint& d) { return Offset(d); }
    CFPoint& operator-=(const CFPoint& d) {
        x -= d.x;
        y -= d.y;
        z -= d.z;
        return *this;
    }
    CFPoint operator+(const CFPoint& p) const { return {x + p.x, y + p.y, z + p.z}; }
    CFPoint operator-(const CFPoint& p) const { return {x - p.x, y - p.y, z - p.z}; }
    /// Turns in the plane, anticlockwise, by radians. A point whose z differs from the centre's moves to a
    /// larger circle, since the distance in space is taken for the radius; points of the model have z 0.
    CFPoint& Rotate(const CFPoint& centre, double angle);
    CFPoint& Mirror(const CFPoint& p1, const CFPoint& p2);  // in the line through p1 and p2
    CFPoint& Stretch(const CFPoint& centre, double factor);

    void Serialize(CArchive& ar);  // x, y, z as 4-byte floats

    float x, y, z;

private:
    static bool Between(float v, float a, float b) { return a < b ? a <= v && v <= b : b <= v && v <= a; }
};

/// The direction from one point to another as a CFPoint turns: the float arctangent, widened. In (-pi, pi].
double direction_of(const CFPoint& from, const CFPoint& to);
