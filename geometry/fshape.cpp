#include "geometry/fshape.h"

#include "geometry/edge.h"

using tolerance::kFlatSine;
using tolerance::kFullTurn;

CFShape::CFShape(const CFPoint& p1, const CFPoint& p2)
    : CFPoint(p1.x, p1.y, 0),
      r(static_cast<float>(p1.Distance(p2))),
      a(static_cast<float>(direction_of(p1, p2))),
      b(0) {}

CFShape::CFShape(const CFPoint& start, const CFPoint& end, float c) : r(0), a(0), b(0) {
    InitPiece(start, end, c);
}

CFShape::CFShape(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3) : r(0), a(0), b(0) {
    // The inscribed angle at p3 gives the sweep: precise for flat arcs, too.
    const double ux = static_cast<double>(p1.x) - p3.x, uy = static_cast<double>(p1.y) - p3.y;
    const double vx = static_cast<double>(p2.x) - p3.x, vy = static_cast<double>(p2.y) - p3.y;
    const double cross = ux * vy - uy * vx, dot = ux * vx + uy * vy;
    const bool collinear = !(std::fabs(cross) > kFlatSine * std::hypot(ux, uy) * std::hypot(vx, vy));
    const double half = collinear ? 0 : std::atan2(std::fabs(cross), -dot);
    InitPiece(p1, p2, cross > 0 ? half : -half);  // p3 left of the chord: clockwise
}

void CFShape::InitPiece(const CFPoint& start, const CFPoint& end, double c) {
    const outline::Edge e = outline::BulgeEdge(start.x, start.y, end.x, end.y, c);
    if (!e.IsArc()) {
        const CFPoint from(start.x, start.y, 0), to(end.x, end.y, 0);
        if (e.Length() == 0) *this = CFShape(from);
        else *this = CFShape(from, to);
        return;
    }
    x = static_cast<float>(e.cx);
    y = static_cast<float>(e.cy);
    r = static_cast<float>(e.r);
    a = static_cast<float>(std::atan2(e.y0 - e.cy, e.x0 - e.cx));
    b = static_cast<float>(e.sweep);
}

CFPoint CFShape::Along(double angle, double length) const {
    return {static_cast<float>(x + length * std::cos(angle)),
            static_cast<float>(y + length * std::sin(angle)), 0};
}

CFPoint CFShape::GetStartPoint() const { return b == 0 ? CFPoint(x, y, 0) : Along(a, r); }

CFPoint CFShape::GetEndPoint() const { return b == 0 ? Along(a, r) : Along(static_cast<double>(a) + b, r); }

CFPoint CFShape::GetMiddlePoint() const {
    if (b == 0) return Along(a, r / 2.0);
    if (AbsSweep() < kFullTurn) return Along(a + b / 2.0, r);
    return {x, y + std::fabs(r), 0};
}

void CFShape::GetRect(CFPoint& min, CFPoint& max) const {
    const outline::Box box = outline::BoxOf(outline::EdgeOf(*this));
    min = CFPoint(static_cast<float>(box.minX), static_cast<float>(box.minY), 0);
    max = CFPoint(static_cast<float>(box.maxX), static_cast<float>(box.maxY), 0);
}

double CFShape::Distance(const CFPoint& p) const {
    const double d = CFPoint::Distance(p);
    return IsLine() ? std::fabs(d * std::sin(direction_of(*this, p) - a)) : std::fabs(d - r);
}

int CFShape::OnShape(const CFPoint& p, float tol) const {
    return tol >= 0 && outline::Within(outline::EdgeOf(*this), p.x, p.y, tol);
}

int CFShape::AtLeft(const CFPoint& p) const {
    CFPoint level(p.x - x, p.y - y, 0);
    level.Rotate(CFPoint(), -static_cast<double>(a));
    return level.y > 0;
}

CFShape& CFShape::Rotate(const CFPoint& centre, double angle) {
    CFPoint::Rotate(centre, angle);
    a += static_cast<float>(angle);
    return *this;
}

CFShape& CFShape::Mirror(const CFPoint& p1, const CFPoint& p2) {
    CFPoint::Mirror(p1, p2);
    a = static_cast<float>(2 * direction_of(p1, p2) - a);
    b = -b;
    return *this;
}

CFShape& CFShape::Stretch(const CFPoint& centre, double factor) {
    CFPoint::Stretch(centre, factor);
    r *= static_cast<float>(factor);
    return *this;
}
