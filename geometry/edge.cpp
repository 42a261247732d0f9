#include "geometry/edge.h"

#include <algorithm>
#include <cmath>

#include "platform/section_intersection.h"

namespace outline {

using tolerance::kPi;

namespace {

// Coordinates are floats, whose squares a double holds: no need for the slow care of std::hypot.
double Hypot(double x, double y) { return std::sqrt(x * x + y * y); }

double Cross(double ax, double ay, double bx, double by) { return ax * by - ay * bx; }

// A point of the circle lies on the arc when it lies beyond the chord: to the right of it, when the arc runs
// anticlockwise, whatever the sweep.
bool BeyondChord(const Edge& e, double x, double y) {
    const double side = Cross(e.x1 - e.x0, e.y1 - e.y0, x - e.x0, y - e.y0);
    return e.sweep > 0 ? side <= 0 : side >= 0;
}

}  // namespace

bool Edge::IsFull() const { return std::fabs(sweep) >= tolerance::kFullTurn; }

double Edge::Length() const {
    return IsArc() ? r * std::min(std::fabs(sweep), 2 * kPi) : Hypot(x1 - x0, y1 - y0);
}

Edge StraightEdge(double x0, double y0, double x1, double y1) {
    Edge e;
    e.x0 = x0;
    e.y0 = y0;
    e.x1 = x1;
    e.y1 = y1;
    return e;
}

Edge BulgeEdge(double x0, double y0, double x1, double y1, double c) {
    Edge e = StraightEdge(x0, y0, x1, y1);
    if (c == 0) return e;
    const double dx = x1 - x0, dy = y1 - y0, half = Hypot(dx, dy) / 2;
    if (!(half > 0)) return e;
    e.cx = (x0 + x1) / 2;
    e.cy = (y0 + y1) / 2;
    if (std::fabs(c) >= tolerance::kFullTurn && std::isfinite(c)) {
        e.r = half;
    } else {
        const double s = std::sin(c);
        if (!(std::fabs(s) >= tolerance::kFlatSine)) return e;
        // From the middle of the chord along its left normal by -half / tan c.
        const double k = -0.5 * std::cos(c) / s;
        e.r = half / std::fabs(s);
        e.cx -= dy * k;
        e.cy += dx * k;
    }
    e.sweep = -2 * c;
    return e;
}

Edge EdgeOf(const CFShoot& from, const CFPoint& to) { return BulgeEdge(from.x, from.y, to.x, to.y, from.c); }

Edge EdgeOf(const CFShape& s) {
    const double r = s.r;
    if (s.r == 0 || s.b == 0)
        return StraightEdge(s.x, s.y, s.x + r * std::cos(static_cast<double>(s.a)),
                            s.y + r * std::sin(static_cast<double>(s.a)));
    const double start = s.a, end = start + s.b;
    Edge e = StraightEdge(s.x + r * std::cos(start), s.y + r * std::sin(start), s.x + r * std::cos(end),
                          s.y + r * std::sin(end));
    e.cx = s.x;
    e.cy = s.y;
    e.r = std::fabs(r);
    e.sweep = s.b;
    if (e.IsFull()) {  // ends where it starts
        e.x1 = e.x0;
        e.y1 = e.y0;
    }
    return e;
}

Box BoxOf(const Edge& e) {
    Box box{std::fmin(e.x0, e.x1), std::fmin(e.y0, e.y1), std::fmax(e.x0, e.x1), std::fmax(e.y0, e.y1)};
    if (!e.IsArc()) return box;
    const bool all = e.IsFull();
    if (all || BeyondChord(e, e.cx - e.r, e.cy)) box.minX = std::fmin(box.minX, e.cx - e.r);
    if (all || BeyondChord(e, e.cx, e.cy - e.r)) box.minY = std::fmin(box.minY, e.cy - e.r);
    if (all || BeyondChord(e, e.cx + e.r, e.cy)) box.maxX = std::fmax(box.maxX, e.cx + e.r);
    if (all || BeyondChord(e, e.cx, e.cy + e.r)) box.maxY = std::fmax(box.maxY, e.cy + e.r);
    return box;
}

double DistanceSquared(const Edge& e, double x, double y) {
    if (!e.IsArc()) return section::PointSectionDistanceSquared(x, y, e.x0, e.y0, e.x1, e.y1);
    const double wx = x - e.cx, wy = y - e.cy, away = Hypot(wx, wy);
    if (away == 0) return e.r * e.r;
    const double k = e.r / away;
    if (e.IsFull() || BeyondChord(e, e.cx + wx * k, e.cy + wy * k)) return section::Square(away - e.r);
    return std::min(section::Square(x - e.x0) + section::Square(y - e.y0),
                    section::Square(x - e.x1) + section::Square(y - e.y1));
}

bool Within(const Edge& e, double x, double y, double tol) {
    if (!e.IsArc()) {
        const bool right = e.x0 < e.x1, up = e.y0 < e.y1;
        if (x < (right ? e.x0 : e.x1) - tol || x > (right ? e.x1 : e.x0) + tol ||
            y < (up ? e.y0 : e.y1) - tol || y > (up ? e.y1 : e.y0) + tol)
            return false;
    }
    return DistanceSquared(e, x, y) <= tol * tol;
}

int Winding(const Edge& e, double x, double y) {
    const double dx = e.x1 - e.x0, dy = e.y1 - e.y0;
    const double side = Cross(dx, dy, x - e.x0, y - e.y0);  // positive: the point is to the left
    int winding = 0;
    // Crossings of the ray to the right. A point level with an end counts as above it, and one exactly on the
    // chord as to its right.
    if (e.y0 <= y && y < e.y1) winding = side > 0;
    else if (e.y1 <= y && y < e.y0) winding = -(side < 0);
    if (!e.IsArc() || !(section::Square(x - e.cx) + section::Square(y - e.cy) < e.r * e.r)) return winding;

    const int sense = e.sweep > 0 ? 1 : -1;
    const bool circle = std::fabs(e.sweep) >= 2 * tolerance::kFullTurn || (dx == 0 && dy == 0);
    if (circle) return winding + sense;
    if (e.IsFull()) winding += sense;  // more than once round, and then the arc
    const double decided = side != 0 ? side : dy != 0 ? -dy : dx;
    return (sense > 0 ? decided < 0 : decided > 0) ? winding + sense : winding;
}

}  // namespace outline
