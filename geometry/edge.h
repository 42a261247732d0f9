// A straight or circular edge of an outline in double: what the outlines' questions are worked with. Not
// installed.
#pragma once
#include "geometry/fshape.h"
#include "geometry/fshoot.h"

namespace outline {

/// A straight edge, or an arc on its circle. The ends of an arc lie on the circle, except that a full circle
/// about the middle of a chord keeps the two ends of the chord, which carry the outline on.
struct Edge {
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;  // ends
    double cx = 0, cy = 0, r = 0;           // circle of an arc
    double sweep = 0;                       // radians, positive anticlockwise; 0 straight

    bool IsArc() const { return sweep != 0; }
    bool IsFull() const;  // covers its whole circle
    double Length() const;
};

Edge StraightEdge(double x0, double y0, double x1, double y1);
/// c as in CFShoot. Straight when c is 0 or too flat to be an arc, or the ends are one.
Edge BulgeEdge(double x0, double y0, double x1, double y1, double c);
Edge EdgeOf(const CFShoot& from, const CFPoint& to);
Edge EdgeOf(const CFShape& shape);

struct Box {
    double minX, minY, maxX, maxY;
};
Box BoxOf(const Edge& e);

/// Square of the distance to the edge. Not less than 0 and never an error: NaN for what is not finite.
double DistanceSquared(const Edge& e, double x, double y);
/// At most tol from the edge.
bool Within(const Edge& e, double x, double y, double tol);

/// What the edge adds to the winding number of an outline about a point that isn't on it. An arc is worked as
/// its chord and, beside it, the segment between chord and arc; the two decide a point on the chord alike.
int Winding(const Edge& e, double x, double y);

/// A stretch that two edges share, as places along the first (lengths from its start); one place when they
/// only meet.
struct Stretch {
    double low, high;
};
struct Shared {
    int count = 0;
    Stretch stretches[8];
    void Add(double low, double high);
};
/// Everything that two edges share within tol.
Shared SharedPlaces(const Edge& first, const Edge& second, double tol);

/// The edges share a point: two straight ones exactly, with an arc within 0.001.
bool Touch(const Edge& a, const Edge& b);

/// The point at a place along the edge.
CFPoint PointAt(const Edge& e, double place);

}  // namespace outline
