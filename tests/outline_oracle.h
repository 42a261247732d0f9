// Outlines as fine polylines: an oracle for everything that is worked exactly. Arcs are made by halving (the
// middle of an arc lies beside the middle of its chord by half the chord times tan(c / 2)), so that no
// centre, radius or direction is shared with what is tested.
#pragma once
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "geometry/fregion.h"

namespace oracle {

struct Point {
    double x, y;
};
using Polyline = std::vector<Point>;

inline void Halve(const Point& a, const Point& b, double c, int depth, Polyline& out) {
    if (depth == 0 || c == 0) {
        out.push_back(b);
        return;
    }
    const double dx = b.x - a.x, dy = b.y - a.y, k = std::tan(c / 2) / 2;  // positive c: to the left
    const Point mid{(a.x + b.x) / 2 - dy * k, (a.y + b.y) / 2 + dx * k};
    Halve(a, mid, c / 2, depth - 1, out);
    Halve(mid, b, c / 2, depth - 1, out);
}

inline Polyline PointsOf(const CFPoint& a, const CFPoint& b, double c, int depth) {
    Polyline points{{a.x, a.y}};
    Halve({a.x, a.y}, {b.x, b.y}, c, depth, points);
    return points;
}

/// Closed: the last point is the first.
inline Polyline PointsOf(const CFRegion& region, int depth) {
    Polyline points;
    const int n = region.GetSize();
    if (n > 0) points.push_back({region[0].x, region[0].y});
    for (int i = 0; i < n; ++i) {
        const CFShoot& to = region[(i + 1) % n];
        Halve({region[i].x, region[i].y}, {to.x, to.y}, region[i].c, depth, points);
    }
    return points;
}

struct Extent {
    double minX, minY, maxX, maxY;
};
inline Extent ExtentOf(const Polyline& points) {
    Extent e{points[0].x, points[0].y, points[0].x, points[0].y};
    for (const Point& p : points)
        e = {std::min(e.minX, p.x), std::min(e.minY, p.y), std::max(e.maxX, p.x), std::max(e.maxY, p.y)};
    return e;
}

inline double DistanceTo(const Polyline& points, double x, double y) {
    double least = points.size() == 1 ? std::hypot(x - points[0].x, y - points[0].y) : 1e300;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double ux = points[i + 1].x - points[i].x, uy = points[i + 1].y - points[i].y;
        const double uu = ux * ux + uy * uy, wx = x - points[i].x, wy = y - points[i].y;
        const double t = uu > 0 ? std::clamp((wx * ux + wy * uy) / uu, 0.0, 1.0) : 0;
        least = std::min(least, std::hypot(wx - t * ux, wy - t * uy));
    }
    return least;
}

/// By the sum of the angles under which the sides are seen.
inline int Winding(const Polyline& points, double x, double y) {
    double sum = 0;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double ax = points[i].x - x, ay = points[i].y - y, bx = points[i + 1].x - x,
                     by = points[i + 1].y - y;
        sum += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
    }
    return static_cast<int>(std::lround(sum / (2 * std::numbers::pi)));
}

struct Area {
    double signedArea, x, y;
};
inline Area AreaOf(const Polyline& points) {
    double area = 0, mx = 0, my = 0;
    const Point& o = points[0];
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double ax = points[i].x - o.x, ay = points[i].y - o.y, bx = points[i + 1].x - o.x,
                     by = points[i + 1].y - o.y, part = (ax * by - ay * bx) / 2;
        area += part;
        mx += part * (ax + bx) / 3;
        my += part * (ay + by) / 3;
    }
    return {area, o.x + mx / area, o.y + my / area};
}

/// Proper crossings of two polylines.
inline Polyline Crossings(const Polyline& a, const Polyline& b) {
    Polyline found;
    for (std::size_t i = 0; i + 1 < a.size(); ++i)
        for (std::size_t k = 0; k + 1 < b.size(); ++k) {
            const double ux = a[i + 1].x - a[i].x, uy = a[i + 1].y - a[i].y, vx = b[k + 1].x - b[k].x,
                         vy = b[k + 1].y - b[k].y, wx = b[k].x - a[i].x, wy = b[k].y - a[i].y;
            const double cross = ux * vy - uy * vx;
            if (cross == 0) continue;
            const double t = (wx * vy - wy * vx) / cross, s = (wx * uy - wy * ux) / cross;
            if (t > 0 && t < 1 && s > 0 && s < 1) found.push_back({a[i].x + t * ux, a[i].y + t * uy});
        }
    return found;
}

}  // namespace oracle
