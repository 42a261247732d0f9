#include "platform/point_in_domain.h"

#include <algorithm>
#include <cmath>

#include "geometry/edge.h"

namespace {

using outline::Edge;
using tolerance::kPi;

Edge EdgeAt(int n, const CDomainEdge* edges, int i) {
    const CDomainEdge& from = edges[i];
    const CDomainEdge& to = edges[i + 1 < n ? i + 1 : 0];
    Edge e = outline::StraightEdge(from.start_x, from.start_y, to.start_x, to.start_y);
    if (from.type != 1) return e;
    const double cx = from.center_x, cy = from.center_y;
    const double ux = e.x0 - cx, uy = e.y0 - cy, vx = e.x1 - cx, vy = e.y1 - cy;
    const bool anticlockwise = from.direction == 1;
    if (e.x0 == e.x1 && e.y0 == e.y1) {
        e.cx = cx;
        e.cy = cy;
        e.r = std::hypot(ux, uy);
        e.sweep = anticlockwise ? 2 * kPi : -2 * kPi;
        return e;
    }
    const double turn = std::atan2(ux * vy - uy * vx, ux * vx + uy * vy);  // from start to end, anticlockwise
    double sweep = anticlockwise ? turn : -turn;
    if (sweep < 0) sweep += 2 * kPi;
    // The sweep is kept and the circle made anew, so that both ends lie on it; a centre in floats can miss
    // the middle of a flat arc's far circle by much.
    return outline::BulgeEdge(e.x0, e.y0, e.x1, e.y1, anticlockwise ? -sweep / 2 : sweep / 2);
}

// v - sin v without loss of digits.
double MinusSine(double v) {
    if (v > 0.05) return v - std::sin(v);
    const double vv = v * v;
    return v * vv / 6 * (1 - vv / 20 * (1 - vv / 42));
}

// Area with its sign, and first moments, all about an origin near the outline.
struct Moments {
    double area = 0, mx = 0, my = 0;

    void AddTriangle(double ax, double ay, double bx, double by) {  // origin, a, b
        const double part = (ax * by - ay * bx) / 2;
        area += part;
        mx += part * (ax + bx) / 3;
        my += part * (ay + by) / 3;
    }
    void AddSegment(const Edge& e, double ox, double oy) {  // between the chord of an arc and the arc
        const double turn = std::min(std::fabs(e.sweep), 2 * kPi);
        const double part = e.r * e.r * MinusSine(turn) / 2 * (e.sweep > 0 ? 1 : -1);
        const double dx = e.x1 - e.x0, dy = e.y1 - e.y0, chord = std::hypot(dx, dy);
        double x = e.cx, y = e.cy;
        if (chord > 0) {
            // To the side on which the arc lies, from the centre, or from the chord where the centre is far.
            const double side = (e.sweep > 0 ? 1 : -1) / chord, nx = dy * side, ny = -dx * side;
            double d;
            if (turn < 0.01) {
                d = 0.2 * chord * std::tan(turn / 4);  // two fifths of the rise
                x = (e.x0 + e.x1) / 2;
                y = (e.y0 + e.y1) / 2;
            } else {
                const double s = std::sin(turn / 2);
                d = 4 * e.r * s * s * s / (3 * MinusSine(turn));
            }
            x += nx * d;
            y += ny * d;
        }
        area += part;
        mx += part * (x - ox);
        my += part * (y - oy);
    }
};

Moments MomentsOf(int n, const CDomainEdge* edges) {
    const double ox = edges[0].start_x, oy = edges[0].start_y;
    Moments m;
    for (int i = 0; i < n; ++i) {
        const Edge e = EdgeAt(n, edges, i);
        m.AddTriangle(e.x0 - ox, e.y0 - oy, e.x1 - ox, e.y1 - oy);
        if (e.IsArc()) m.AddSegment(e, ox, oy);
    }
    return m;
}

// What is left of an area when every vertex is only known to half the last bit of a float.
double AreaNoise(int n, const CDomainEdge* edges) {
    double coordinate = 0, extent = 0;
    for (int i = 0; i < n; ++i) {
        coordinate = std::max({coordinate, std::fabs(static_cast<double>(edges[i].start_x)),
                               std::fabs(static_cast<double>(edges[i].start_y))});
        const double dx = static_cast<double>(edges[i].start_x) - edges[0].start_x;
        const double dy = static_cast<double>(edges[i].start_y) - edges[0].start_y;
        extent = std::max(extent, std::hypot(dx, dy));
    }
    return coordinate * extent * 6e-8;
}

void MeanOfVertices(int n, const CDomainEdge* edges, float& x, float& y) {
    double sx = 0, sy = 0;
    for (int i = 0; i < n; ++i) {
        sx += edges[i].start_x;
        sy += edges[i].start_y;
    }
    x = static_cast<float>(sx / n);
    y = static_cast<float>(sy / n);
}

}  // namespace

float CPointInDomain::Get_Area(int n, const CDomainEdge* edges) const {
    if (n <= 0 || !edges) return 0;
    const auto area = static_cast<float>(std::fabs(MomentsOf(n, edges).area));
    return std::isfinite(area) ? area : 0.0f;
}

void CPointInDomain::Get_Centroid(int n, const CDomainEdge* edges, float& x, float& y) const {
    x = y = 0;
    if (n <= 0 || !edges) return;
    const Moments m = MomentsOf(n, edges);
    if (std::fabs(m.area) > AreaNoise(n, edges)) {
        x = static_cast<float>(edges[0].start_x + m.mx / m.area);
        y = static_cast<float>(edges[0].start_y + m.my / m.area);
    } else {
        MeanOfVertices(n, edges, x, y);
    }
    if (!std::isfinite(x) || !std::isfinite(y)) x = y = 0;
}

int CPointInDomain::Point_In_Domain(int n, const CDomainEdge* edges, float x, float y, float tol) const {
    if (!edges || Point_On_Edge_Domain(n, edges, x, y, tol)) return 0;
    int winding = 0;
    for (int i = 0; i < n; ++i) winding += outline::Winding(EdgeAt(n, edges, i), x, y);
    return winding != 0;
}

int CPointInDomain::Point_On_Edge_Domain(int n, const CDomainEdge* edges, float x, float y, float tol) const {
    if (!edges || !(tol >= 0)) return 0;
    for (int i = 0; i < n; ++i)
        if (outline::Within(EdgeAt(n, edges, i), x, y, tol)) return 1;
    return 0;
}
