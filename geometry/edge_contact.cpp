// What two edges share.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "geometry/edge.h"
#include "platform/section_intersection.h"

namespace outline {

using section::Square;
using tolerance::kMergePoints;

void Shared::Add(double low, double high) {
    if (count < static_cast<int>(std::size(stretches))) stretches[count++] = {low, high};
}

CFPoint PointAt(const Edge& e, double place) {
    double x, y;
    if (e.IsArc()) {
        const double start = std::atan2(e.y0 - e.cy, e.x0 - e.cx);
        const double angle = start + (e.sweep > 0 ? place : -place) / e.r;
        x = e.cx + e.r * std::cos(angle);
        y = e.cy + e.r * std::sin(angle);
    } else {
        const double length = e.Length(), t = length > 0 ? place / length : 0;
        x = e.x0 + t * (e.x1 - e.x0);
        y = e.y0 + t * (e.y1 - e.y0);
    }
    return {static_cast<float>(x), static_cast<float>(y), 0};
}

namespace {

// Place along the edge of a point that lies on it or nearly.
double PlaceOf(const Edge& e, double x, double y) {
    const double length = e.Length();
    if (!e.IsArc()) {
        return length * section::FootFraction(x - e.x0, y - e.y0, e.x1 - e.x0, e.y1 - e.y0);
    }
    const double start = std::atan2(e.y0 - e.cy, e.x0 - e.cx), angle = std::atan2(y - e.cy, x - e.cx);
    const double offset = section::Wrapped(e.sweep > 0 ? angle - start : start - angle);
    const double sweep = length / e.r;
    if (offset <= sweep) return e.r * offset;
    return offset - sweep < section::kTurn - offset ? length : 0;
}

// The ends of each that lie on the other.
void ShareEnds(const Edge& a, const Edge& b, double tol, Shared& shared) {
    if (Within(b, a.x0, a.y0, tol)) shared.Add(0, 0);
    if (Within(b, a.x1, a.y1, tol)) shared.Add(a.Length(), a.Length());
    for (const auto& [x, y] : {std::pair(b.x0, b.y0), std::pair(b.x1, b.y1)})
        if (Within(a, x, y, tol)) {
            const double place = PlaceOf(a, x, y);
            shared.Add(place, place);
        }
}

void ShareLines(const Edge& a, const Edge& b, double tol, Shared& shared) {
    const double length = a.Length();
    if (length > 0 && b.Length() > 0) {
        // Side by side: where b lies along a, both ends of that stretch are on b.
        const double p = PlaceOf(a, b.x0, b.y0), q = PlaceOf(a, b.x1, b.y1);
        const double low = std::min(p, q), high = std::max(p, q);
        const auto onB = [&](double place) {
            const double t = place / length;
            return Within(b, a.x0 + t * (a.x1 - a.x0), a.y0 + t * (a.y1 - a.y0), tol);
        };
        if (high - low >= kMergePoints && onB(low) && onB(high)) return shared.Add(low, high);

        const section::LinePair pair(a.x0, a.y0, a.x1, a.y1, b.x0, b.y0, b.x1, b.y1);
        if (pair.Cross() && pair.WithinSections(tol)) {
            const double place = std::clamp(pair.t / pair.cross, 0.0, 1.0) * length;
            return shared.Add(place, place);
        }
    }
    ShareEnds(a, b, tol, shared);
}

// The line that carries `line` against the circle of `arc`; `first` is the one along which places count.
void ShareLineArc(const Edge& line, const Edge& arc, const Edge& first, double tol, Shared& shared) {
    const double ux = line.x1 - line.x0, uy = line.y1 - line.y0;
    const section::LineRoots roots =
        section::LineCircle(ux, uy, arc.cx - line.x0, arc.cy - line.y0, arc.r, tol);
    for (int i = 0; i < roots.count; ++i) {
        const double x = line.x0 + roots.t[i] * ux, y = line.y0 + roots.t[i] * uy;
        if (!Within(line, x, y, tol) || !Within(arc, x, y, tol)) continue;
        const double place = PlaceOf(first, x, y);
        shared.Add(place, place);
    }
}

// Two arcs of one circle: the stretches of b within a, which it may reach from either side.
void ShareArcsOfCircle(const Edge& a, const Edge& b, double tol, Shared& shared) {
    const double sweep = a.Length() / a.r, other = b.Length() / b.r, slack = tol / a.r;
    const double start = std::atan2(a.y0 - a.cy, a.x0 - a.cx);
    const bool along = (a.sweep > 0) == (b.sweep > 0);
    const double entry = along ? std::atan2(b.y0 - b.cy, b.x0 - b.cx) : std::atan2(b.y1 - b.cy, b.x1 - b.cx);
    const double offset = section::Wrapped(a.sweep > 0 ? entry - start : start - entry);
    for (const double from : {offset - section::kTurn, offset}) {
        const double low = std::max(from, 0.0), high = std::min(from + other, sweep);
        if (high >= low - slack) shared.Add(std::min(low, sweep) * a.r, std::max(high, 0.0) * a.r);
    }
}

void ShareArcs(const Edge& a, const Edge& b, double tol, Shared& shared) {
    const double dx = b.cx - a.cx, dy = b.cy - a.cy;
    if (std::hypot(dx, dy) + std::fabs(a.r - b.r) <= tol) return ShareArcsOfCircle(a, b, tol, shared);
    const section::CircleRoots roots = section::CircleCircle(dx, dy, a.r, b.r, tol);
    for (int i = 0; i < roots.count; ++i) {
        const double x = a.cx + roots.x[i], y = a.cy + roots.y[i];
        if (!Within(a, x, y, tol) || !Within(b, x, y, tol)) continue;
        const double place = PlaceOf(a, x, y);
        shared.Add(place, place);
    }
}

int Side(const Edge& e, double x, double y) {
    const double side = (e.x1 - e.x0) * (y - e.y0) - (e.y1 - e.y0) * (x - e.x0);
    return (side > 0) - (side < 0);
}

bool InSpan(const Edge& e, double x, double y) {
    return std::fmin(e.x0, e.x1) <= x && x <= std::fmax(e.x0, e.x1) && std::fmin(e.y0, e.y1) <= y &&
           y <= std::fmax(e.y0, e.y1);
}

// Closed sections, by the sides on which ends lie: no tolerance, so that boxes that are apart by the least
// bit stay apart.
bool SectionsTouch(const Edge& a, const Edge& b) {
    const int b0 = Side(a, b.x0, b.y0), b1 = Side(a, b.x1, b.y1);
    const int a0 = Side(b, a.x0, a.y0), a1 = Side(b, a.x1, a.y1);
    if (a0 * a1 < 0 && b0 * b1 < 0) return true;
    return (b0 == 0 && InSpan(a, b.x0, b.y0)) || (b1 == 0 && InSpan(a, b.x1, b.y1)) ||
           (a0 == 0 && InSpan(b, a.x0, a.y0)) || (a1 == 0 && InSpan(b, a.x1, a.y1));
}

}  // namespace

Shared SharedPlaces(const Edge& first, const Edge& second, double tol) {
    Shared shared;
    if (!first.IsArc() && !second.IsArc()) {
        ShareLines(first, second, tol, shared);
        return shared;
    }
    if (first.IsArc() && second.IsArc()) ShareArcs(first, second, tol, shared);
    else if (first.IsArc()) ShareLineArc(second, first, first, tol, shared);
    else ShareLineArc(first, second, first, tol, shared);
    if (shared.count == 0) ShareEnds(first, second, tol, shared);
    return shared;
}

bool Touch(const Edge& a, const Edge& b) {
    if (!a.IsArc() && !b.IsArc()) return SectionsTouch(a, b);
    return SharedPlaces(a, b, tolerance::kBorder).count > 0;
}

}  // namespace outline
