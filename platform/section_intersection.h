// Sections, lines and circles in double: the pure functions under the intersection procedures. Not installed,
// since inline arithmetic must be built with our own flags.
#pragma once
#include <cmath>

namespace section {

// A bound that is met exactly must hold whatever the last bits of the products do.
inline constexpr double kSlack = 1 + 1e-12;
inline constexpr double kTurn = 6.28318530717958647692;

inline double Square(double v) { return v * v; }

/// Where the nearest point of the section from a along u lies, as a fraction of u in [0, 1].
inline double FootFraction(double wx, double wy, double ux, double uy) {
    const double uu = ux * ux + uy * uy;
    const double along = wx * ux + wy * uy;
    if (!(along > 0)) return 0;
    return along < uu ? along / uu : 1;
}

/// Square of the distance from p to the closed section ab; NaN only for arguments that are not finite.
inline double PointSectionDistanceSquared(double px, double py, double ax, double ay, double bx, double by) {
    const double ux = bx - ax, uy = by - ay, wx = px - ax, wy = py - ay;
    const double t = FootFraction(wx, wy, ux, uy);
    return Square(wx - t * ux) + Square(wy - t * uy);
}

/// Two lines, a along u and c along v, and their crossing a + u * t / cross = c + v * s / cross. All tests
/// are on the numerators, so that nothing is divided before a crossing is accepted.
struct LinePair {
    LinePair(double ax, double ay, double bx, double by, double cx, double cy, double dx, double dy)
        : ux(bx - ax), uy(by - ay), vx(dx - cx), vy(dy - cy) {
        const double wx = cx - ax, wy = cy - ay;
        cross = ux * vy - uy * vx;
        t = wx * vy - wy * vx;
        s = wx * uy - wy * ux;
        uu = ux * ux + uy * uy;
        vv = vx * vx + vy * vy;
    }
    /// The sine of the angle between them exceeds 1e-7. False without a length or with arguments not finite.
    bool Cross() const { return cross * cross > 1e-14 * uu * vv; }
    /// The crossing is at most tol (not negative) from each section, along that section.
    bool WithinSections(double tol) const {
        const double room = tol * tol * cross * cross * kSlack;
        return Square(Excess(t)) * uu <= room && Square(Excess(s)) * vv <= room;
    }

    double ux, uy, vx, vy;
    double cross, t, s;  // u x v and the two numerators
    double uu, vv;       // squares of the lengths

private:
    // How far a numerator lies outside 0 .. cross.
    double Excess(double numerator) const {
        const double n = cross < 0 ? -numerator : numerator;
        return n < 0 ? -n : std::fmax(n - std::fabs(cross), 0.0);
    }
};

/// Places on a line as fractions of its direction vector, ascending.
struct LineRoots {
    int count = 0;
    double t[2] = {0, 0};
};

/// Where the line from the origin along u meets the circle about w: the foot of the centre when the line
/// passes outside, but by no more than tol.
inline LineRoots LineCircle(double ux, double uy, double wx, double wy, double r, double tol) {
    LineRoots roots;
    const double uu = ux * ux + uy * uy;
    const double cross = ux * wy - uy * wx;
    if (!(uu > 0) || !(cross * cross <= Square(r + tol) * uu * kSlack)) return roots;
    const double foot = (ux * wx + uy * wy) / uu;
    const double rest = r * r - cross * cross / uu;
    if (rest > 0) {
        const double half = std::sqrt(rest / uu);
        roots.count = 2;
        roots.t[0] = foot - half;
        roots.t[1] = foot + half;
    } else {
        roots.count = 1;
        roots.t[0] = foot;
    }
    return roots;
}

/// Points that two circles share, from the first one's centre.
struct CircleRoots {
    int count = 0;
    double x[2] = {0, 0};
    double y[2] = {0, 0};
    double apart = 0;  // distance of two roots
};

/// Circles about the origin and about d. One root, midway in the gap, when they miss or hold each other by no
/// more than tol; none when they are one circle within tol.
inline CircleRoots CircleCircle(double dx, double dy, double r1, double r2, double tol) {
    CircleRoots roots;
    const double dd = dx * dx + dy * dy;
    if (!(dd <= Square(r1 + r2 + tol) * kSlack)) return roots;
    const double d = std::sqrt(dd), difference = std::fabs(r1 - r2);
    if (!(d + difference > tol * kSlack) || !((d + tol) * kSlack >= difference) || !(d > 0)) return roots;
    const double nx = dx / d, ny = dy / d;
    if (d >= r1 + r2 || d <= difference) {
        double along;  // from the first centre
        if (d >= r1 + r2) along = r1 + (d - r1 - r2) / 2;
        else along = r1 >= r2 ? (r1 + d + r2) / 2 : (d - r1 - r2) / 2;
        roots.count = 1;
        roots.x[0] = nx * along;
        roots.y[0] = ny * along;
        return roots;
    }
    const double along = (dd + (r1 - r2) * (r1 + r2)) / (2 * d);
    const double aside = std::sqrt(std::fmax(r1 * r1 - along * along, 0.0));
    roots.count = 2;
    roots.x[0] = nx * along + ny * aside;
    roots.y[0] = ny * along - nx * aside;
    roots.x[1] = nx * along - ny * aside;
    roots.y[1] = ny * along + nx * aside;
    roots.apart = 2 * aside;
    return roots;
}

/// An angle brought into [0, 2 pi).
inline double Wrapped(double angle) {
    if (angle >= 0 && angle < kTurn) return angle;
    const double rest = std::fmod(angle, kTurn);
    return rest < 0 ? (rest + kTurn < kTurn ? rest + kTurn : 0) : rest;
}

/// An arc about the origin, anticlockwise from start to end, modulo a full turn.
struct ArcSpan {
    ArcSpan(double radius, double from, double to) : r(radius), start(from), sweep(to - from) {
        if (sweep < 0) sweep = Wrapped(sweep);
    }
    double OffsetOf(double x, double y) const { return Wrapped(std::atan2(y, x) - start); }
    /// The point lies in the arc's directions, or at most tol from one of its ends.
    bool Offers(double x, double y, double tol) const {
        if (sweep >= kTurn) return true;
        const double offset = OffsetOf(x, y);
        if (offset <= sweep) return true;
        const double gap = std::fmin(offset - sweep, kTurn - offset);
        const double away = std::sqrt(x * x + y * y);
        return Square(away - r) + 4 * away * r * Square(std::sin(gap / 2)) <= tol * tol * kSlack;
    }

    double r, start, sweep;
};

}  // namespace section
